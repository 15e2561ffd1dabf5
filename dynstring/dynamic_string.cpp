// DynamicString: views onto one gap buffer, kept consistent under edits.
//
// Positions inside the object are byte offsets relative to the view's parent;
// AbsoluteStartB sums them up the parent chain to address the buffer. Every
// edit goes to the buffer as one ReplaceBytes and is then announced with
// NotifyEdit, which walks from the edited view up to the root: each ancestor
// grows or shrinks by the edit's delta, and at each level the siblings of the
// view on the path are moved (when they lie after the edited range), left
// alone (when they end at or before its start) or invalidated (when the range
// cuts into them). At the edited view's own level the range is the edit
// itself; one level up it is the whole of the child that was edited, since a
// parent sees only that its child changed. The edited view's children are
// handled the same way against the edit range. Grandchildren need nothing:
// their offsets are relative to their parent.
//
// Families can be deep (a view of a view of …), so the walk up, the
// invalidation of a subtree and the release of a chain of parents are loops,
// never recursion.
//
// The character members double their positions in checked arithmetic and
// call the byte members; they refuse to run (error 6) once the family has
// used an odd byte offset, since characters are then no longer aligned.
#include "crvlib/dynamic_string.h"

#include <algorithm>

#include "core/checked.h"
#include "core/error_frame.h"
#include "core/thread_state.h"
#include "dynstring/dynamic_string_impl.h"
#include "runtime/code_page.h"
#include "runtime/compare.h"
#include "runtime/number_parse.h"

namespace crvlib {
namespace internal {

DynamicStringImpl::DynamicStringImpl() {
  ResetScan();
}

DynamicStringImpl::~DynamicStringImpl() {
  Unlink();
  // A parent held only by this view dies with it, and so on up the chain.
  // Detach each such parent from its own parent before releasing it, so its
  // destructor has nothing left to release and the chain unwinds here.
  Ptr parent = std::move(Parent_);
  while (parent && parent.use_count() == 1) {
    parent->Unlink();
    Ptr grandparent = std::move(parent->Parent_);
    parent.reset();
    parent = std::move(grandparent);
  }
}

void DynamicStringImpl::Unlink() {
  if (!Parent_) return;
  if (NextSibling_) NextSibling_->PrevSibling_ = PrevSibling_;
  if (PrevSibling_) PrevSibling_->NextSibling_ = NextSibling_;
  if (Parent_->FirstChild_ == this) Parent_->FirstChild_ = NextSibling_;
  PrevSibling_ = nullptr;
  NextSibling_ = nullptr;
}

// ---- Library-internal operations ----

void DynamicStringImpl::ValidateState() const {
  if (Invalid_) RaiseLibrary(vxInvalidDynamicString, u"CRVLIB.DynamicString::ValidateState");
}

void DynamicStringImpl::CheckCharacterMode(const char16_t* member) {
  if (Buffer().Binary()) Raise(kOverflow, member);
}

DynStringBuf& DynamicStringImpl::CreateBuffer() {
  Buffer_ = std::make_shared<DynStringBuf>();
  return *Buffer_;
}

void DynamicStringImpl::ResetScan() {
  scan_.Reset(LengthB_);
}

void DynamicStringImpl::EditB(const String& NewValue, int32_t Start, int32_t Length) {
  Buffer().ReplaceBytes(NewValue, CheckedAdd(AbsoluteStartB(), Start), Length);
  NotifyEdit(Start, Length, NewValue.LenB() - Length);
}

void DynamicStringImpl::AdjustSelf(int32_t EditStart, int32_t Delta) {
  LengthB_ += Delta;
  scan_.AdjustForEdit(EditStart, LengthB_);
  scan_index_.Forget();  // the text changed: what the scan knew ahead is stale
}

void DynamicStringImpl::AdjustChildren(const DynamicStringImpl* skip, int64_t a, int64_t b,
                                       int32_t Delta) {
  for (DynamicStringImpl* c = FirstChild_; c != nullptr; c = c->NextSibling_) {
    if (c == skip || c->Invalid_) continue;
    if (int64_t{c->StartB_} + c->LengthB_ <= a) continue;  // ends at or before the edit
    if (c->StartB_ >= b) {
      c->StartB_ += Delta;  // begins at or after the replaced range
    } else {
      Invalidate(c);
    }
  }
}

void DynamicStringImpl::Invalidate(DynamicStringImpl* view) {
  if (view->Invalid_) return;
  view->Invalid_ = true;
  // Pre-order walk of the subtree through the links; a child that is already
  // invalid has an invalid subtree and is skipped whole.
  DynamicStringImpl* v = view->FirstChild_;
  while (v != nullptr) {
    if (!v->Invalid_) {
      v->Invalid_ = true;
      if (v->FirstChild_ != nullptr) {
        v = v->FirstChild_;
        continue;
      }
    }
    while (v != view && v->NextSibling_ == nullptr) v = v->Parent_.get();
    v = v == view ? nullptr : v->NextSibling_;
  }
}

void DynamicStringImpl::NotifyEdit(int32_t EditStart, int32_t EditLength, int32_t Delta) {
  PropagateEdit(EditStart, EditLength, Delta);
  AdjustChildren(nullptr, EditStart, int64_t{EditStart} + EditLength, Delta);
}

void DynamicStringImpl::PropagateEdit(int32_t EditStart, int32_t EditLength, int32_t Delta) {
  // Up the chain: at each level the parent sees the whole old range of the
  // child below as edited, and that child's siblings are checked against the
  // range the child itself was edited in.
  DynamicStringImpl* v = this;
  int32_t edit_start = EditStart;
  int32_t edit_length = EditLength;
  int32_t old_length = LengthB_;
  AdjustSelf(EditStart, Delta);
  while (v->Parent_) {
    DynamicStringImpl* p = v->Parent_.get();
    const int32_t parent_old_length = p->LengthB_;
    p->AdjustSelf(v->StartB_, Delta);
    const int64_t a = int64_t{v->StartB_} + edit_start;
    p->AdjustChildren(v, a, a + edit_length, Delta);
    edit_start = v->StartB_;
    edit_length = old_length;
    old_length = parent_old_length;
    v = p;
  }
}

int16_t DynamicStringImpl::CompareElements(const String& A, const String& B, int32_t Justification,
                                           int32_t CaseType) {
  return CompareElementValues(A, B, Justification, CaseType, Buffer().Binary());
}

int16_t CompareElementValues(const String& A, const String& B, int32_t Justification,
                             int32_t CaseType, bool binary) {
  // Widened copies only in byte mode; otherwise the arguments themselves.
  String wide_a, wide_b;
  if (binary) {
    wide_a = StrConvUnicode(A);
    wide_b = StrConvUnicode(B);
  }
  const String& a = binary ? wide_a : A;
  const String& b = binary ? wide_b : B;
  if (Justification == vxRightJustify) {
    // Numbers first; a tie or a side that is no number falls through to the
    // text comparison (a non-number does not count as zero).
    const LocaleSettings& locale = State().locale;
    double x = 0;
    double y = 0;
    if (TryParseDouble(a.view(), locale, &x) == ParseStatus::kOk &&
        TryParseDouble(b.view(), locale, &y) == ParseStatus::kOk) {
      if (x < y) return -1;
      if (x > y) return 1;
    }
  }
  return static_cast<int16_t>(StrComp(a.view(), b.view(), ModeOfCase(CaseType)));
}

// ---- Public members ----

String DynamicStringImpl::Value() {
  return Buffer().ReadBytes(AbsoluteStartB(), LengthB_);
}

void DynamicStringImpl::SetValue(const String& NewValue) {
  ValidateState();
  EditB(NewValue, 0, LengthB_);
}

int32_t DynamicStringImpl::Start() {
  ValidateState();
  CheckCharacterMode(u"CRVLIB.DynamicString::Start");
  return StartB_ / 2;
}

int32_t DynamicStringImpl::StartB() {
  ValidateState();
  return StartB_;
}

int32_t DynamicStringImpl::Length() {
  ValidateState();
  CheckCharacterMode(u"CRVLIB.DynamicString::Length");
  return LengthB_ / 2;
}

int32_t DynamicStringImpl::LengthB() {
  ValidateState();
  return LengthB_;
}

bool DynamicStringImpl::Binary() {
  ValidateState();
  return Buffer().Binary();
}

void DynamicStringImpl::SetBinary(bool Value) {
  Buffer().SetBinary(Value);
}

DynamicStringImpl::Ptr DynamicStringImpl::Parent() {
  ValidateState();
  return Parent_;
}

DynamicStringImpl::Ptr DynamicStringImpl::SubStringB(int32_t Start, int32_t Length) {
  return SubStringB(Start, Length, shared_from_this());
}

DynamicStringImpl::Ptr DynamicStringImpl::SubStringB(int32_t Start, int32_t Length, Ptr self) {
  ValidateState();
  if (Start < 0) Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::SubStringB");
  Start = std::min(Start, LengthB_);
  if (Length < 0) Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::SubStringB");
  Length = std::min(Length, LengthB_ - Start);

  auto child = std::make_shared<DynamicStringImpl>();
  child->StartB_ = Start;
  child->LengthB_ = Length;
  child->Parent_ = std::move(self);
  Buffer();
  child->Buffer_ = Buffer_;
  child->NextSibling_ = FirstChild_;
  if (FirstChild_ != nullptr) FirstChild_->PrevSibling_ = child.get();
  FirstChild_ = child.get();
  return child;
}

DynamicStringImpl::Ptr DynamicStringImpl::SubString(int32_t Start, int32_t Length) {
  ValidateState();
  CheckCharacterMode(u"CRVLIB.DynamicString::SubString");
  return SubStringB(CheckedMul(Start, 2), CheckedMul(Length, 2));
}

String DynamicStringImpl::ExtractB(int32_t Start, int32_t Length) {
  ValidateState();
  if (Start < 0) Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::ExtractB");
  Start = std::min(Start, LengthB_);
  if (Length < 0) Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::ExtractB");
  Length = std::min(Length, LengthB_ - Start);
  return Buffer().ReadBytes(CheckedAdd(AbsoluteStartB(), Start), Length);
}

String DynamicStringImpl::Extract(int32_t Start, int32_t Length) {
  ValidateState();
  CheckCharacterMode(u"CRVLIB.DynamicString::Extract");
  return ExtractB(CheckedMul(Start, 2), CheckedMul(Length, 2));
}

void DynamicStringImpl::InsertB(const String& NewValue, int32_t Start) {
  ValidateState();
  EditB(NewValue, std::clamp(Start, 0, LengthB_), 0);
}

void DynamicStringImpl::Insert(const String& NewValue, int32_t Start) {
  ValidateState();
  CheckCharacterMode(u"CRVLIB.DynamicString::Insert");
  InsertB(NewValue, CheckedMul(Start, 2));
}

void DynamicStringImpl::Append(const String& NewValue) {
  ValidateState();
  InsertB(NewValue, LengthB_);
}

void DynamicStringImpl::Prefix(const String& NewValue) {
  ValidateState();
  InsertB(NewValue, 0);
}

void DynamicStringImpl::DeleteB(int32_t Start, int32_t Length) {
  ValidateState();
  Start = std::clamp(Start, 0, LengthB_);
  if (Length <= 0) return;
  EditB(String(), Start, std::min(Length, LengthB_ - Start));
}

void DynamicStringImpl::Delete(int32_t Start, int32_t Length) {
  ValidateState();
  CheckCharacterMode(u"CRVLIB.DynamicString::Delete");
  DeleteB(CheckedMul(Start, 2), CheckedMul(Length, 2));
}

void DynamicStringImpl::ReplaceB(const String& NewValue, int32_t Start, int32_t Length) {
  ValidateState();
  Start = std::clamp(Start, 0, LengthB_);
  Length = std::clamp(Length, 0, LengthB_ - Start);
  EditB(NewValue, Start, Length);
}

void DynamicStringImpl::Replace(const String& NewValue, int32_t Start, int32_t Length) {
  ValidateState();
  CheckCharacterMode(u"CRVLIB.DynamicString::Replace");
  ReplaceB(NewValue, CheckedMul(Start, 2), CheckedMul(Length, 2));
}

int32_t DynamicStringImpl::FindB(const String& FindValue, int32_t Start, int32_t Length,
                                 int32_t CaseType) {
  ValidateState();
  Start = std::clamp(Start, 0, LengthB_);
  if (Length <= 0) return -1;
  Length = std::min(Length, LengthB_ - Start);
  // The result is left in the family's coordinates, counted from the root.
  return Buffer().FindBytes(FindValue, CheckedAdd(AbsoluteStartB(), Start), Length, CaseType);
}

int32_t DynamicStringImpl::Find(const String& FindValue, int32_t Start, int32_t Length,
                                int32_t CaseType) {
  ValidateState();
  CheckCharacterMode(u"CRVLIB.DynamicString::Find");
  const int32_t r = FindB(FindValue, CheckedMul(Start, 2), CheckedMul(Length, 2), CaseType);
  return r > 0 ? r / 2 : r;
}

int32_t DynamicStringImpl::MatchB(const String&, int32_t, int32_t, int32_t) {
  // Pattern search is not offered inside a DynamicString: nothing matches.
  return -1;
}

int32_t DynamicStringImpl::Match(const String& Pattern, int32_t Start, int32_t Length,
                                 int32_t Options) {
  ValidateState();
  CheckCharacterMode(u"CRVLIB.DynamicString::Match");
  const int32_t r = MatchB(Pattern, CheckedMul(Start, 2), CheckedMul(Length, 2), Options);
  return r > 0 ? r / 2 : r;
}

void DynamicStringImpl::ChangeAll(const String& OldValue, const String& NewValue,
                                  int32_t CaseType) {
  ValidateState();
  if (OldValue.LenB() == 0) Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::ChangeAll");
  ResetScan();
  // FindB answers root-relative offsets and they go to ReplaceB as they are:
  // exact on a root, shifted on a view. Replaced text is never searched
  // again, so an OldValue inside NewValue cannot loop.
  int32_t p = 0;
  for (;;) {
    const int32_t r = FindB(OldValue, p, LengthB_, CaseType);
    if (r < 0) break;
    ReplaceB(NewValue, r, OldValue.LenB());
    p = CheckedAdd(r, NewValue.LenB());
  }
}

int16_t DynamicStringImpl::Compare(const String& CompareValue, int32_t CaseType,
                                   int32_t Justification) {
  ValidateState();
  // Crosswise on purpose: CaseType picks the justification and Justification
  // the case mode.
  return CompareElements(Value(), CompareValue, CaseType, Justification);
}

DynamicStringImpl::Ptr DynamicStringImpl::Clone() {
  auto copy = std::make_shared<DynamicStringImpl>();
  copy->SetValue(Value());
  return copy;
}

}  // namespace internal

// ---- The public handle: each member runs in the object's error frame ----

namespace {

using internal::DynamicStringImpl;
using std::literals::operator""sv;  // sources with their length known at compile time

template <class Fn>
decltype(auto) Run(const DynamicString& self, std::u16string_view source, Fn&& fn) {
  DynamicStringImpl& d = self.impl();
  return internal::TrapUnnamed(source, [&]() -> decltype(auto) { return fn(d); });
}

}  // namespace

DynamicString::DynamicString()
    : impl_(internal::TrapUnnamed(u"CRVLIB.DynamicString::Class_Initialize"sv,
                                  [] { return std::make_shared<DynamicStringImpl>(); })) {}

internal::DynamicStringImpl& DynamicString::impl() const {
  if (!impl_) internal::Raise(internal::kObjectNotSet);
  return *impl_;
}

String DynamicString::Value() const {
  return Run(*this, u"CRVLIB.DynamicString::Value"sv, [](auto& d) { return d.Value(); });
}

void DynamicString::SetValue(const String& NewValue) {
  Run(*this, u"CRVLIB.DynamicString::Value"sv, [&](auto& d) { d.SetValue(NewValue); });
}

int32_t DynamicString::Start() const {
  return Run(*this, u"CRVLIB.DynamicString::Start"sv, [](auto& d) { return d.Start(); });
}

int32_t DynamicString::StartB() const {
  return Run(*this, u"CRVLIB.DynamicString::StartB"sv, [](auto& d) { return d.StartB(); });
}

int32_t DynamicString::Length() const {
  return Run(*this, u"CRVLIB.DynamicString::Length"sv, [](auto& d) { return d.Length(); });
}

int32_t DynamicString::LengthB() const {
  return Run(*this, u"CRVLIB.DynamicString::LengthB"sv, [](auto& d) { return d.LengthB(); });
}

bool DynamicString::Binary() const {
  return Run(*this, u"CRVLIB.DynamicString::Binary"sv, [](auto& d) { return d.Binary(); });
}

void DynamicString::SetBinary(bool Value) {
  Run(*this, u"CRVLIB.DynamicString::Binary"sv, [&](auto& d) { d.SetBinary(Value); });
}

DynamicString DynamicString::Parent() const {
  return DynamicString(
      Run(*this, u"CRVLIB.DynamicString::Parent"sv, [](auto& d) { return d.Parent(); }));
}

DynamicString DynamicString::SubString(int32_t Start, int32_t Length) {
  return DynamicString(Run(*this, u"CRVLIB.DynamicString::SubString"sv,
                           [&](auto& d) { return d.SubString(Start, Length); }));
}

DynamicString DynamicString::SubStringB(int32_t Start, int32_t Length) {
  return DynamicString(Run(*this, u"CRVLIB.DynamicString::SubStringB"sv,
                           [&](auto& d) { return d.SubStringB(Start, Length); }));
}

String DynamicString::Extract(int32_t Start, int32_t Length) const {
  return Run(*this, u"CRVLIB.DynamicString::Extract"sv,
             [&](auto& d) { return d.Extract(Start, Length); });
}

String DynamicString::ExtractB(int32_t Start, int32_t Length) const {
  return Run(*this, u"CRVLIB.DynamicString::ExtractB"sv,
             [&](auto& d) { return d.ExtractB(Start, Length); });
}

void DynamicString::Append(const String& NewValue) {
  Run(*this, u"CRVLIB.DynamicString::Append"sv, [&](auto& d) { d.Append(NewValue); });
}

void DynamicString::Prefix(const String& NewValue) {
  Run(*this, u"CRVLIB.DynamicString::Prefix"sv, [&](auto& d) { d.Prefix(NewValue); });
}

void DynamicString::Insert(const String& NewValue, int32_t Start) {
  Run(*this, u"CRVLIB.DynamicString::Insert"sv, [&](auto& d) { d.Insert(NewValue, Start); });
}

void DynamicString::InsertB(const String& NewValue, int32_t Start) {
  Run(*this, u"CRVLIB.DynamicString::InsertB"sv, [&](auto& d) { d.InsertB(NewValue, Start); });
}

void DynamicString::Delete(int32_t Start, int32_t Length) {
  Run(*this, u"CRVLIB.DynamicString::Delete"sv, [&](auto& d) { d.Delete(Start, Length); });
}

void DynamicString::DeleteB(int32_t Start, int32_t Length) {
  Run(*this, u"CRVLIB.DynamicString::DeleteB"sv, [&](auto& d) { d.DeleteB(Start, Length); });
}

void DynamicString::Replace(const String& NewValue, int32_t Start, int32_t Length) {
  Run(*this, u"CRVLIB.DynamicString::Replace"sv,
      [&](auto& d) { d.Replace(NewValue, Start, Length); });
}

void DynamicString::ReplaceB(const String& NewValue, int32_t Start, int32_t Length) {
  Run(*this, u"CRVLIB.DynamicString::ReplaceB"sv,
      [&](auto& d) { d.ReplaceB(NewValue, Start, Length); });
}

int32_t DynamicString::Find(const String& FindValue, int32_t Start, int32_t Length,
                            vxCaseEnum CaseType) const {
  return Run(*this, u"CRVLIB.DynamicString::Find"sv,
             [&](auto& d) { return d.Find(FindValue, Start, Length, CaseType); });
}

int32_t DynamicString::FindB(const String& FindValue, int32_t Start, int32_t Length,
                             vxCaseEnum CaseType) const {
  return Run(*this, u"CRVLIB.DynamicString::FindB"sv,
             [&](auto& d) { return d.FindB(FindValue, Start, Length, CaseType); });
}

int32_t DynamicString::Match(const String& Pattern, int32_t Start, int32_t Length,
                             vxMatchOptionsEnum Options) const {
  return Run(*this, u"CRVLIB.DynamicString::Match"sv,
             [&](auto& d) { return d.Match(Pattern, Start, Length, Options); });
}

int32_t DynamicString::MatchB(const String& Pattern, int32_t Start, int32_t Length,
                              vxMatchOptionsEnum Options) const {
  return Run(*this, u"CRVLIB.DynamicString::MatchB"sv,
             [&](auto& d) { return d.MatchB(Pattern, Start, Length, Options); });
}

DynamicString DynamicString::ChangeAll(const String& OldValue, const String& NewValue,
                                       vxCaseEnum CaseType) {
  Run(*this, u"CRVLIB.DynamicString::ChangeAll"sv,
      [&](auto& d) { d.ChangeAll(OldValue, NewValue, CaseType); });
  return *this;
}

int16_t DynamicString::Compare(const String& CompareValue, vxCaseEnum CaseType,
                               vxJustificationEnum Justification) const {
  return Run(*this, u"CRVLIB.DynamicString::Compare"sv,
             [&](auto& d) { return d.Compare(CompareValue, CaseType, Justification); });
}

DynamicString DynamicString::Clone() const {
  return DynamicString(
      Run(*this, u"CRVLIB.DynamicString::Clone"sv, [](auto& d) { return d.Clone(); }));
}

}  // namespace crvlib
