// The routines of Functions that read pieces out of a string: Field joins
// elements read with ExtractElement, ParseStr walks the segments between
// separator characters, and RevInStr searches backwards.
//
// ParseStr and RevInStr are written in terms of the runtime's mid primitive
// and raise what it raises (5 for a start below 1 or a negative length).
// Field runs on a temporary DynamicString, so its element rules (positions
// 0 and -1, elements past the end) are exactly the engine's. It may be asked
// for billions of elements: its result is checked against the automation
// string limit before every piece is added (error 14), and once the
// positions have run past the last element every further piece is one
// delimiter and an empty element, so the rest is sized and written at once
// instead of being fetched element by element.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "classes/string_limit.h"
#include "core/checked.h"
#include "core/error_frame.h"
#include "crvlib/functions.h"

namespace crvlib {
namespace {

using internal::AppendChecked;
using internal::kInvalidProcedureCall;
using internal::Raise;
using internal::Trap;

// mid(s, start, length): "" past the end; a start below 1 or a negative
// length raises 5.
std::u16string_view Mid(std::u16string_view s, int64_t start, int64_t length) {
  if (start < 1 || length < 0) Raise(kInvalidProcedureCall);
  if (start > static_cast<int64_t>(s.size())) return {};
  return s.substr(static_cast<size_t>(start - 1), static_cast<size_t>(length));
}

// InStr(haystack, needle) > 0. An empty needle is found in any non-empty
// haystack and in no empty one.
bool Contains(std::u16string_view haystack, std::u16string_view needle) {
  if (haystack.empty()) return false;
  return haystack.find(needle) != std::u16string_view::npos;
}

String ParseStrAt(const String& Value, const String& Delimiters, int32_t& Position) {
  std::u16string_view value = Value.view();
  std::u16string_view delimiters = Delimiters.view();
  const int32_t length = Value.Len();
  // True when the character at `p` is a separator. Past the end the
  // character is "", which any non-empty set contains: the end counts as a
  // separator unless the set is empty.
  auto separator = [&](int32_t p) { return Contains(delimiters, Mid(value, p, 1)); };

  while (separator(Position)) {
    if (Position > length) return String();  // Position stays past the end
    ++Position;
  }
  const int32_t start = Position;
  while (!separator(Position)) {
    // Reached only with an empty set. Stopping at the last character (and so
    // leaving it out of the segment) is deliberate and kept; an empty Value
    // then asks mid for a negative length, which raises 5.
    if (Position > length) {
      Position = length;
      break;
    }
    ++Position;
  }
  String segment(Mid(value, start, int64_t{Position} - start));
  if (segment.empty()) Position = 0;
  return segment;
}

// Adds the pieces for i = from .. Count once every position from `from` on
// is past the last element: each is the delimiter and an empty element. The
// positions are still computed as Position + i - 1 one by one, left to right,
// so the first i with Position + i beyond the Long range raises 6, unless the
// text has passed the string limit (14) by then.
void AppendPastTheEnd(std::u16string& text, std::u16string_view delimiter, int32_t Position,
                      int64_t from, int32_t Count) {
  const int64_t overflow_at = int64_t{INT32_MAX} - Position + 1;  // first i that overflows
  const int64_t last_fine = std::min<int64_t>(Count, overflow_at - 1);
  const int64_t pieces = last_fine >= from ? last_fine - from + 1 : 0;
  const int64_t room = internal::kMaxChars - static_cast<int64_t>(text.size());
  const int64_t piece = static_cast<int64_t>(delimiter.size());
  if (piece > 0 && pieces > room / piece) Raise(internal::kOutOfStringSpace);
  if (last_fine < Count) Raise(internal::kOverflow);
  text.reserve(text.size() + static_cast<size_t>(pieces * piece));
  for (int64_t k = 0; k < pieces; ++k) text.append(delimiter);
}

String FieldOf(const String& Value, const String& Delimiter, int32_t Position, int32_t Count) {
  DynamicString array;
  array.SetValue(Value);
  bool ignored = false;
  std::u16string text(array.ExtractElement(Delimiter, Position, ignored).Value().view());
  for (int64_t i = 2; i <= Count; ++i) {
    const int32_t position =
        internal::CheckedSub(internal::CheckedAdd(Position, static_cast<int32_t>(i)), 1);
    bool past_end = false;
    const String element = array.ExtractElement(Delimiter, position, past_end).Value();
    AppendChecked(text, Delimiter.view());
    AppendChecked(text, element.view());
    // Past the end for a positive position means every later one is too.
    if (past_end && position > 0) {
      AppendPastTheEnd(text, Delimiter.view(), Position, i + 1, Count);
      break;
    }
  }
  return String(std::move(text));
}

}  // namespace

String Functions::Field(const String& Value, const String& Delimiter, int32_t Position,
                        int32_t Count) {
  return Trap(u"CRVLIB.Functions::Field",
              [&] { return FieldOf(Value, Delimiter, Position, Count); });
}

String Functions::ParseStr(const String& Value, const String& Delimiters, int32_t& Position) {
  return Trap(u"CRVLIB.Functions::ParseStr",
              [&] { return ParseStrAt(Value, Delimiters, Position); });
}

String Functions::ParseStr(const String& Value, const String& Delimiters) {
  int32_t position = 1;
  return ParseStr(Value, Delimiters, position);
}

int32_t Functions::RevInStr(int32_t Start, const String& Value, const String& FindStr) {
  return Trap(u"CRVLIB.Functions::RevInStr", [&]() -> int32_t {
    std::u16string_view value = Value.view();
    std::u16string_view find = FindStr.view();
    if (value.empty()) return 0;
    const int32_t length = Value.Len();
    int32_t p = (Start >= 1 && Start <= length) ? Start : length;
    if (find.empty()) return p;
    // The match may run past Start, yet a Start closer to the beginning than
    // FindStr is long finds nothing: both halves of that asymmetry are kept.
    if (int64_t{p} - static_cast<int64_t>(find.size()) + 1 <= 0) return 0;
    for (; p > 0; --p) {
      if (Mid(value, p, static_cast<int64_t>(find.size())) == find) return p;
    }
    return 0;
  });
}

}  // namespace crvlib
