// The substring utilities of Functions that work directly on strings:
// stripping and swapping characters, the ParseStr scanner, the backward
// search and the padding and justification routines.
//
// They are written in terms of the runtime's string primitives — mid, left,
// right and repeat (n copies of a fill character) — and raise what those
// raise: 5 for a start below 1, a negative length or count, or an empty fill
// character; 6 where 32-bit arithmetic overflows; 14 when a result (or the
// intermediate string the primitives would build) would pass the automation
// string limit. That last check comes before anything is allocated, so a
// huge Length fails at once instead of exhausting memory.
#include <string>
#include <string_view>

#include "core/checked.h"
#include "core/error_frame.h"
#include "crvlib/functions.h"
#include "platform/clock.h"
#include "runtime/code_page.h"

namespace crvlib {
namespace {

using internal::kInvalidProcedureCall;
using internal::Raise;
using internal::Trap;

constexpr int64_t kMaxChars = String::kMaxBytes / 2;

void CheckLength(int64_t chars) {
  if (chars > kMaxChars) Raise(internal::kOutOfStringSpace);
}

// The character repeat(count, fill) repeats, after its argument checks.
char16_t FillUnit(const String& fill, int64_t count) {
  if (count < 0 || fill.view().empty()) Raise(kInvalidProcedureCall);
  return fill.view().front();
}

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

// Round-half-to-even of d / 2 for d >= 0, as the conversion of a floating
// value to a Long rounds it: 1 -> 0, 3 -> 2, 5 -> 2, 7 -> 4.
int32_t HalfToEven(int32_t d) {
  int32_t half = d / 2;
  if (d % 2 == 1 && half % 2 == 1) ++half;
  return half;
}

[[noreturn]] void SpinForever() {
  for (;;) platform::YieldProcessor();
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

}  // namespace

String Functions::StripChar(const String& Value, const String& Character) {
  return Trap(u"CRVLIB.Functions::StripChar", [&] {
    std::u16string_view value = Value.view();
    if (Character.view().empty()) return String(value);  // nothing equals ""
    const char16_t strip = Character.view().front();
    std::u16string kept;
    kept.reserve(value.size());
    for (char16_t c : value) {
      if (c != strip) kept.push_back(c);
    }
    return String(std::move(kept));
  });
}

String Functions::Swap(const String& Value, int16_t OldCharASCII, int16_t NewCharASCII) {
  return Trap(u"CRVLIB.Functions::Swap", [&] {
    const char16_t old_char = internal::Chr(OldCharASCII);
    const char16_t new_char = internal::Chr(NewCharASCII);
    // Replacing one occurrence and searching again from the start finds the
    // next occurrence, since a replaced character no longer matches; so a
    // single pass gives the same result. The exception is kept on purpose:
    // when both codes name the same character, the search finds it again
    // every time and the routine never returns.
    String result = Value;
    std::u16string& units = result.units();
    const size_t length = static_cast<size_t>(Value.Len());
    for (size_t i = 0; i < length; ++i) {
      if (units[i] != old_char) continue;
      if (old_char == new_char) SpinForever();
      units[i] = new_char;
    }
    return result;
  });
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

String Functions::Pad(const String& Value, const String& PadCharacter, int32_t Length) {
  return Trap(u"CRVLIB.Functions::Pad", [&] {
    const int32_t missing = internal::CheckedSub(Length, Value.Len());
    if (missing < 1) return Value;  // never cut
    const char16_t fill = FillUnit(PadCharacter, missing);
    CheckLength(Length);
    std::u16string padded(static_cast<size_t>(missing), fill);
    padded.append(Value.view());
    return String(std::move(padded));
  });
}

String Functions::LeftJustify(const String& Value, int32_t Length, const String& FillCharacter) {
  return Trap(u"CRVLIB.Functions::LeftJustify", [&] {
    // left(Value & repeat(Length, fill), Length)
    const char16_t fill = FillUnit(FillCharacter, Length);
    const int32_t length = Value.Len();
    CheckLength(int64_t{length} + Length);
    if (length >= Length) return String(Value.view().substr(0, static_cast<size_t>(Length)));
    std::u16string justified(Value.view());
    justified.append(static_cast<size_t>(Length - length), fill);
    return String(std::move(justified));
  });
}

String Functions::RightJustify(const String& Value, int32_t Length, const String& FillCharacter) {
  return Trap(u"CRVLIB.Functions::RightJustify", [&] {
    // right(repeat(Length, fill) & Value, Length)
    const char16_t fill = FillUnit(FillCharacter, Length);
    const int32_t length = Value.Len();
    CheckLength(int64_t{length} + Length);
    if (length >= Length) return String(Value.view().substr(static_cast<size_t>(length - Length)));
    std::u16string justified(static_cast<size_t>(Length - length), fill);
    justified.append(Value.view());
    return String(std::move(justified));
  });
}

String Functions::CenterJustify(const String& Value, int32_t Length, const String& FillCharacter) {
  return Trap(u"CRVLIB.Functions::CenterJustify", [&] {
    const int32_t length = Value.Len();
    if (length > Length) return Value;  // never cut
    // right(S & Value & S, Length) with S = repeat(h, fill). Rounding d / 2
    // half to even is deliberate: for odd d the result is either one
    // character short of Length (h rounded down) or has one character less
    // fill on the left (h rounded up, the extra one cut off by right).
    const int32_t half = HalfToEven(Length - length);
    const char16_t fill = FillUnit(FillCharacter, half);
    const int64_t padded = 2 * int64_t{half} + length;
    CheckLength(padded);
    const int64_t cut = padded > Length ? padded - Length : 0;
    std::u16string centred(static_cast<size_t>(half - cut), fill);
    centred.append(Value.view());
    centred.append(static_cast<size_t>(half), fill);
    return String(std::move(centred));
  });
}

}  // namespace crvlib
