// DynamicStringImpl: the object behind a DynamicString handle. A root owns
// (lazily creates) a DynStringBuf; a child view shares its parent's buffer and
// is a byte range (StartB, LengthB) of its parent. Views hold counted
// references to their parent and to the buffer; a parent lists its children
// through uncounted links, and a child unlinks itself when it goes.
//
// The public members below run the preamble of the public class (the
// validity check, the byte-mode check of the character forms) but no error
// frame; the handle in dynamic_string.cpp adds that. Library code inside
// dynstring/ (the element engine) calls them directly, together with the
// lower-level operations further down: absolute offsets, the buffer itself,
// edits that notify the family, and the element-scan cache.
//
// Every edit ends in NotifyEdit, which keeps the family consistent: the
// edited view and its ancestors change length, views after the edit move,
// views the edit cut into become Invalid for good (and so do their children).
#ifndef CRVLIB_DYNSTRING_DYNAMIC_STRING_IMPL_H_
#define CRVLIB_DYNSTRING_DYNAMIC_STRING_IMPL_H_

#include <cstdint>
#include <memory>

#include "core/checked.h"
#include "crvlib/enums.h"
#include "crvlib/string.h"
#include "dynstring/dyn_string_buf.h"
#include "dynstring/scan_cache.h"

namespace crvlib::internal {

// -1, 0 or 1: the comparison of elements, with the family's byte-mode flag
// given. See DynamicStringImpl::CompareElements.
int16_t CompareElementValues(const String& A, const String& B, int32_t Justification,
                             int32_t CaseType, bool binary);

class DynamicStringImpl : public std::enable_shared_from_this<DynamicStringImpl> {
 public:
  using Ptr = std::shared_ptr<DynamicStringImpl>;

  // A new, empty root.
  DynamicStringImpl();
  // Unlinks this view from its parent's child list. Releasing the parent may
  // release a whole chain of ancestors; that runs as a loop, not recursion.
  ~DynamicStringImpl();
  DynamicStringImpl(const DynamicStringImpl&) = delete;
  DynamicStringImpl& operator=(const DynamicStringImpl&) = delete;

  // ---- Public members (see crvlib/dynamic_string.h for the contracts) ----
  String Value();
  void SetValue(const String& NewValue);
  int32_t Start();
  int32_t StartB();
  int32_t Length();
  int32_t LengthB();
  bool Binary();
  void SetBinary(bool Value);
  Ptr Parent();
  Ptr SubString(int32_t Start, int32_t Length);
  Ptr SubStringB(int32_t Start, int32_t Length);
  // SubStringB for a caller that holds this object's own pointer (`self`):
  // the child takes that reference instead of asking shared_from_this, a
  // locked compare-and-swap on every view a walk makes.
  Ptr SubStringB(int32_t Start, int32_t Length, Ptr self);
  String Extract(int32_t Start, int32_t Length);
  String ExtractB(int32_t Start, int32_t Length);
  void Append(const String& NewValue);
  void Prefix(const String& NewValue);
  void Insert(const String& NewValue, int32_t Start);
  void InsertB(const String& NewValue, int32_t Start);
  void Delete(int32_t Start, int32_t Length);
  void DeleteB(int32_t Start, int32_t Length);
  void Replace(const String& NewValue, int32_t Start, int32_t Length);
  void ReplaceB(const String& NewValue, int32_t Start, int32_t Length);
  int32_t Find(const String& FindValue, int32_t Start, int32_t Length, int32_t CaseType);
  int32_t FindB(const String& FindValue, int32_t Start, int32_t Length, int32_t CaseType);
  int32_t Match(const String& Pattern, int32_t Start, int32_t Length, int32_t Options);
  int32_t MatchB(const String& Pattern, int32_t Start, int32_t Length, int32_t Options);
  void ChangeAll(const String& OldValue, const String& NewValue, int32_t CaseType);
  int16_t Compare(const String& CompareValue, int32_t CaseType, int32_t Justification);
  Ptr Clone();

  // ---- Library-internal operations ----

  // Raises kObjectErrorBase + 1701 once an edit has cut into this view.
  void ValidateState() const;
  bool Invalid() const { return Invalid_; }

  // This view's offset in the family's text: StartB plus the ancestors'.
  // Inline: the element scan asks for it on every step.
  int32_t AbsoluteStartB() const {
    int32_t start = StartB_;
    for (const DynamicStringImpl* v = Parent_.get(); v != nullptr; v = v->Parent_.get()) {
      start = CheckedAdd(start, v->StartB_);
    }
    return start;
  }
  // The family's buffer, created on first use.
  DynStringBuf& Buffer() { return Buffer_ ? *Buffer_ : CreateBuffer(); }

  // Replaces bytes [Start, Start + Length) of this view (a range the caller
  // has already clamped to the view) with NewValue and notifies the family.
  void EditB(const String& NewValue, int32_t Start, int32_t Length);
  // Keeps the family consistent after this view's bytes [EditStart,
  // EditStart + EditLength) were replaced by EditLength + Delta bytes:
  // PropagateEdit, then this view's own children against the edited range.
  void NotifyEdit(int32_t EditStart, int32_t EditLength, int32_t Delta);
  // The edit's effect on this view and everything above it: each view on the
  // way to the root changes length by Delta and keeps, backs up or resets its
  // scan cache; at each level the other children are moved, left alone or
  // invalidated.
  void PropagateEdit(int32_t EditStart, int32_t EditLength, int32_t Delta);

  // Forgets the cached element; ScanAtEnd becomes (LengthB == 0). The
  // delimiter is kept.
  void ResetScan();
  ScanCache& scan() { return scan_; }
  const ScanCache& scan() const { return scan_; }
  ScanIndexSlot& scan_index() { return scan_index_; }
  // LengthB without the validity check, for the element engine.
  int32_t ViewLengthB() const { return LengthB_; }

  // -1, 0 or 1. With Justification vxRightJustify both sides are compared as
  // numbers first (locale-aware); a tie, or a side that is no number, leaves
  // the decision to StrComp in the mode of CaseType. In byte mode both sides
  // are widened byte by byte (StrConv vbUnicode) first.
  //   CompareElements(u"10", u"9", vxRightJustify, vxCaseSensitive) == 1
  //   CompareElements(u"10", u"9", vxLeftJustify, vxCaseSensitive)  == -1
  int16_t CompareElements(const String& A, const String& B, int32_t Justification,
                          int32_t CaseType);

  // The family links (uncounted, except the parent).
  DynamicStringImpl* ParentView() const { return Parent_.get(); }
  DynamicStringImpl* FirstChild() const { return FirstChild_; }
  DynamicStringImpl* PrevSibling() const { return PrevSibling_; }
  DynamicStringImpl* NextSibling() const { return NextSibling_; }

 private:
  DynStringBuf& CreateBuffer();
  // Raises 6 with this member's source when the family is in byte mode.
  void CheckCharacterMode(const char16_t* member);
  // The edit bookkeeping of one view: its length and its scan cache. An edit
  // at the cached element's start backs the cache up by one element; one
  // before the end of the cached element's delimiter resets it; one after
  // keeps it.
  void AdjustSelf(int32_t EditStart, int32_t Delta);
  // Moves or invalidates each valid child of this view except `skip`
  // against the replaced range [a, b) in this view's coordinates.
  void AdjustChildren(const DynamicStringImpl* skip, int64_t a, int64_t b, int32_t Delta);
  static void Invalidate(DynamicStringImpl* view);
  // Takes this view out of its parent's child list.
  void Unlink();

  int32_t StartB_ = 0;
  int32_t LengthB_ = 0;
  std::shared_ptr<DynStringBuf> Buffer_;
  Ptr Parent_;
  DynamicStringImpl* FirstChild_ = nullptr;
  DynamicStringImpl* PrevSibling_ = nullptr;
  DynamicStringImpl* NextSibling_ = nullptr;
  ScanCache scan_;
  ScanIndexSlot scan_index_;
  bool Invalid_ = false;
};

}  // namespace crvlib::internal

#endif  // CRVLIB_DYNSTRING_DYNAMIC_STRING_IMPL_H_
