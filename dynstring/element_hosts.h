// The two hosts the element engine runs on, and ChangeAll of a fresh
// object's whole text, the one edit of a caller's string made outside them. Both offer the same
// small set of operations: the text's byte length and its code units, the scan cache and its
// checkpoints, reads, edits with the edit rule of the scan cache, and the literal byte-wise search.
//
// ObjectText is a DynamicString view: every edit goes through the object's
// members and notifies the family. PlainText is a fresh state over a caller's
// string, as a new object holding that string would be: it reads the string
// in place and copies it only when an edit comes. It never enters byte mode,
// so it only takes strings of whole code units; callers with an odd byte
// length use a real object.
#ifndef CRVLIB_DYNSTRING_ELEMENT_HOSTS_H_
#define CRVLIB_DYNSTRING_ELEMENT_HOSTS_H_

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "crvlib/string.h"
#include "dynstring/dynamic_string_impl.h"
#include "dynstring/element_scan.h"

namespace crvlib::internal {

class ObjectText {
 public:
  explicit ObjectText(DynamicStringImpl& view) : view_(view) {}

  int32_t LengthB() const { return view_.ViewLengthB(); }
  bool Binary() { return view_.Buffer().Binary(); }
  ScanCache& Cache() { return view_.scan(); }
  void ResetScan() { view_.ResetScan(); }
  ScanIndexSlot& IndexSlot() { return view_.scan_index(); }

  // Searching code units is the same as the byte-wise search while the family
  // is not in byte mode and every offset the search would use is even.
  bool UnitMode(const String& Delimiter) {
    return !Binary() && !Delimiter.odd() && (Delimiter.LenB() & 1) == 0 &&
           ((view_.AbsoluteStartB() | LengthB()) & 1) == 0;
  }
  // The view's text as code units when the scan may search it so (as for
  // UnitMode) and it lies in one piece of the buffer; false otherwise. One
  // look at the buffer, for the scan's single steps.
  bool UnitsInPlace(const String& Delimiter, std::u16string_view* units) {
    DynStringBuf& b = view_.Buffer();
    const int32_t a = view_.AbsoluteStartB();
    const int32_t n = LengthB();
    if (b.Binary() || Delimiter.odd() || ((a | n) & 1) != 0) return false;
    const int32_t front = b.FrontLength();
    if (n == 0) {
      *units = {};
    } else if (a + n <= front) {
      *units = {reinterpret_cast<const char16_t*>(b.Front().data() + a),
                static_cast<size_t>(n / 2)};
    } else if (a >= front) {
      *units = {reinterpret_cast<const char16_t*>(b.Back().data() + (a - front)),
                static_cast<size_t>(n / 2)};
    } else {
      return false;
    }
    return true;
  }
  // Whether Units() needs no rearranging of the buffer.
  bool Contiguous() {
    const DynStringBuf& b = view_.Buffer();
    const int32_t a = view_.AbsoluteStartB();
    return a + LengthB() <= b.FrontLength() || a >= b.FrontLength();
  }
  // The view's text as code units; closes the gap when it lies inside.
  std::u16string_view Units() {
    const int32_t n = LengthB();
    if (n == 0) return {};
    DynStringBuf& b = view_.Buffer();
    const int32_t a = view_.AbsoluteStartB();
    if (a < b.FrontLength() && a + n > b.FrontLength()) b.Compact();
    const uint8_t* p =
        a + n <= b.FrontLength() ? b.Front().data() + a : b.Back().data() + (a - b.FrontLength());
    return {reinterpret_cast<const char16_t*>(p), static_cast<size_t>(n / 2)};
  }
  // The literal search: the delimiter's first match in [Start, LengthB), as
  // a view offset, or -1.
  int32_t FindBytesFrom(const String& Delimiter, int32_t Start) {
    const int32_t abs = view_.AbsoluteStartB();
    const int32_t r =
        view_.Buffer().FindBytes(Delimiter, abs + Start, LengthB() - Start, vxCaseSensitive);
    return r < 0 ? r : r - abs;
  }

  String ReadB(int32_t Start, int32_t Length) { return view_.ExtractB(Start, Length); }
  int32_t FindB(const String& Value, int32_t Start, int32_t Length, int32_t CaseType) {
    return view_.FindB(Value, Start, Length, CaseType);
  }

  void SetValue(const String& v) { view_.SetValue(v); }
  void InsertB(const String& v, int32_t Start) { view_.InsertB(v, Start); }
  void Append(const String& v) { view_.Append(v); }
  void Prefix(const String& v) { view_.Prefix(v); }
  void DeleteB(int32_t Start, int32_t Length) { view_.DeleteB(Start, Length); }
  void ReplaceB(const String& v, int32_t Start, int32_t Length) {
    view_.ReplaceB(v, Start, Length);
  }
  // `a` at Start, then `b` right behind it (or, with b_first, at Start too,
  // so before it): two edits, each notifying the family.
  void InsertBoth(const String& a, const String& b, int32_t Start, bool b_first) {
    view_.InsertB(a, Start);
    view_.InsertB(b, b_first ? Start : Start + a.LenB());
  }
  void MarkBinary() { view_.Buffer().SetBinary(true); }

  String TakeValue() { return view_.Value(); }

 private:
  DynamicStringImpl& view_;
};

class PlainText {
 public:
  // `value` must outlive this object and have an even byte length.
  explicit PlainText(const String& value) : source_(&value) { cache_.Reset(LengthB()); }
  // A host whose edits go straight into `*value` (even byte length), for a
  // routine that hands its result back in the caller's string: one edit
  // moves the text behind it once, in the string's own storage when it has
  // room.
  static PlainText EditingInPlace(String* value) {
    PlainText t(*value);
    t.target_ = value;
    return t;
  }

  int32_t LengthB() const { return static_cast<int32_t>(Units().size() * 2); }
  bool Binary() const { return false; }
  ScanCache& Cache() { return cache_; }
  void ResetScan() { cache_.Reset(LengthB()); }
  ScanIndexSlot& IndexSlot() { return index_; }
  bool UnitMode(const String&) const { return true; }
  bool Contiguous() const { return true; }
  bool UnitsInPlace(const String&, std::u16string_view* units) const {
    *units = Units();
    return true;
  }
  std::u16string_view Units() const {
    return owned_ ? std::u16string_view(text_) : source_->view();
  }

  int32_t FindBytesFrom(const String& Delimiter, int32_t Start) {
    const size_t r =
        FindDelimiter(Units(), static_cast<size_t>(Start / 2), UnitDelimiter(Delimiter.view()));
    return r == kNoMatch ? -1 : static_cast<int32_t>(r * 2);
  }
  // Clamped to the text, like every read of an object.
  String ReadB(int32_t Start, int32_t Length) const {
    const std::u16string_view units = Units();
    const size_t start = std::min(static_cast<size_t>(std::max(Start, 0) / 2), units.size());
    return String(units.substr(start, static_cast<size_t>(std::max(Length, 0) / 2)));
  }
  // DynamicString::FindB on a root holding this text.
  int32_t FindB(const String& Value, int32_t Start, int32_t Length, int32_t CaseType) const;

  void SetValue(const String& v) { Edit(v.view(), {}, false, false, 0, LengthB()); }
  void InsertB(const String& v, int32_t Start) {
    Edit(v.view(), {}, false, false, Clamp(Start), 0);
  }
  void Append(const String& v) { InsertB(v, LengthB()); }
  void Prefix(const String& v) { InsertB(v, 0); }
  void DeleteB(int32_t Start, int32_t Length) {
    Start = Clamp(Start);
    if (Length <= 0) return;
    Edit({}, {}, false, false, Start, std::min(Length, LengthB() - Start));
  }
  void ReplaceB(const String& v, int32_t Start, int32_t Length) {
    Start = Clamp(Start);
    Edit(v.view(), {}, false, false, Start, std::clamp(Length, 0, LengthB() - Start));
  }
  // The two insertions of ObjectText::InsertBoth, with one copy of the text.
  void InsertBoth(const String& a, const String& b, int32_t Start, bool b_first) {
    Edit(a.view(), b.view(), true, b_first, Start, 0);
  }
  void MarkBinary() {}

  // The text; moves it out when this object made its own copy. (Editing in
  // place, the text is the caller's string itself.)
  String TakeValue() { return owned_ ? String(std::move(text_)) : *source_; }

 private:
  int32_t Clamp(int32_t Start) const { return std::clamp(Start, 0, LengthB()); }
  // Replaces bytes [Start, Start + Length) with `a` and, as a second edit
  // when `two`, inserts `b` behind `a` (before it with b_first), updating the
  // cache as the object's edits would, one edit at a time.
  void Edit(std::u16string_view a, std::u16string_view b, bool two, bool b_first, int32_t Start,
            int32_t Length);

  const String* source_;
  String* target_ = nullptr;  // edits go here, when set
  std::u16string text_;
  bool owned_ = false;
  ScanCache cache_;
  ScanIndexSlot index_;
};

// ChangeAll(OldValue, NewValue, vxCaseSensitive) on a fresh object holding
// `value`, in one pass over code units into a result of its final size:
// true with the result in *out, or false, with nothing done, when only the
// object gives the literal result: an empty OldValue (ChangeAll raises 5),
// an odd byte length (byte mode), or a result that might pass the string
// limit (ChangeAll raises 6 partway).
//   ChangeAllOfFresh(u"a|b", u"|", u";;", &out) == true, out == u"a;;b"
bool ChangeAllOfFresh(const String& value, const String& OldValue, const String& NewValue,
                      String* out);

}  // namespace crvlib::internal

#endif  // CRVLIB_DYNSTRING_ELEMENT_HOSTS_H_
