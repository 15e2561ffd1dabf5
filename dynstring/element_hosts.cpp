// PlainText: the element engine's host for a caller's string. Reads go to the
// caller's string; the first edit copies it, laying the edit in on the way,
// so an insertion costs one pass over the text. ChangeAllOfFresh likewise
// writes its result once, at its final size.
#include "dynstring/element_hosts.h"

#include "core/checked.h"
#include "core/error_frame.h"
#include "platform/collation.h"
#include "runtime/compare.h"

namespace crvlib::internal {

int32_t PlainText::FindB(const String& Value, int32_t Start, int32_t Length,
                         int32_t CaseType) const {
  // DynamicString::FindB's clamps, then DynStringBuf::FindBytes' checks, in
  // their order: an empty Value is found before the mode is looked at.
  const int32_t size = LengthB();
  Start = std::clamp(Start, 0, size);
  if (Length <= 0) return -1;
  Length = std::min(Length, size - Start);
  const int32_t n = Value.LenB();
  if (Start > size - n) return -1;
  if (n == 0) return Start;
  if (n > Length) return -1;
  const int32_t mode = ModeOfCase(CaseType);
  if (mode != kBinaryCompare && mode != kTextCompare) Raise(kInvalidProcedureCall);

  const std::u16string_view range = Units().substr(size_t(Start / 2), size_t(Length / 2));
  const std::u16string_view needle = Value.view();
  size_t hit = std::u16string_view::npos;
  if (mode == kBinaryCompare) {
    hit = range.find(needle);
  } else {
    std::u16string folded(needle);
    for (char16_t& c : folded) c = platform::FoldCase(c);
    for (size_t r = 0; r + folded.size() <= range.size() && hit == std::u16string_view::npos; ++r) {
      size_t k = 0;
      while (k < folded.size() && platform::FoldCase(range[r + k]) == folded[k]) ++k;
      if (k == folded.size()) hit = r;
    }
  }
  return hit == std::u16string_view::npos ? -1 : Start + static_cast<int32_t>(hit * 2);
}

void PlainText::Edit(std::u16string_view a, std::u16string_view b, bool two, bool b_first,
                     int32_t Start, int32_t Length) {
  const std::u16string_view old = Units();
  const size_t at = size_t(Start / 2);
  const size_t cut = size_t(Length / 2);
  const int64_t grown = int64_t{LengthB()} + 2 * int64_t(a.size() + b.size()) - Length;
  if (grown > String::kMaxBytes) Raise(kOverflow);

  const std::u16string_view first = b_first ? b : a;
  const std::u16string_view second = b_first ? a : b;
  if (target_ != nullptr) {
    // In place when the string has room: one move of the text behind the
    // edit (none at the end), the pieces written into the opening. They are
    // the caller's arguments, never views of the string itself.
    std::u16string& text = target_->units();
    const size_t size = old.size() - cut + a.size() + b.size();
    if (size <= text.capacity()) {
      text.replace(at, cut, first.size() + second.size(), u'\0');
      std::copy(first.begin(), first.end(), text.begin() + static_cast<ptrdiff_t>(at));
      std::copy(second.begin(), second.end(),
                text.begin() + static_cast<ptrdiff_t>(at + first.size()));
    } else {
      // Otherwise one copy into new storage with an eighth to spare, so a
      // caller that goes on inserting finds room; a doubling would leave
      // most of a large block untouched and, above the allocator's mapping
      // threshold, costs fresh pages on every growth.
      std::u16string out;
      out.reserve(size + size / 8);
      out.append(old.substr(0, at)).append(first).append(second).append(old.substr(at + cut));
      text.swap(out);
    }
  } else if (owned_) {
    text_.replace(at, cut, first);
    text_.insert(at + first.size(), second);
  } else {
    std::u16string out;
    out.reserve(old.size() - cut + a.size() + b.size());
    out.append(old.substr(0, at)).append(first).append(second).append(old.substr(at + cut));
    text_ = std::move(out);
    owned_ = true;
  }
  // The cache follows the edits one at a time, as the object's would.
  const int32_t after_a = CheckedLong(int64_t{LengthB()} - 2 * int64_t(b.size()));
  cache_.AdjustForEdit(Start, after_a);
  if (two) {
    cache_.AdjustForEdit(b_first ? Start : Start + static_cast<int32_t>(a.size() * 2), LengthB());
  }
  index_.Forget();
}

bool ChangeAllOfFresh(const String& value, const String& OldValue, const String& NewValue,
                      String* out) {
  if (OldValue.LenB() == 0 || value.odd() || OldValue.odd() || NewValue.odd()) return false;
  // No more matches than OldValue fits in the text, each growing it by the
  // difference at most.
  const int64_t most = int64_t{value.LenB()} + int64_t{value.LenB()} / OldValue.LenB() *
                                                   std::max(0, NewValue.LenB() - OldValue.LenB());
  if (most > String::kMaxBytes) return false;
  *out = String(ReplaceMatches(value.view(), UnitDelimiter(OldValue.view()), NewValue.view()));
  return true;
}

}  // namespace crvlib::internal
