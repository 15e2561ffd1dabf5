// The routines of Functions that pad and justify: Pad, LeftJustify,
// RightJustify and CenterJustify.
//
// They are written in terms of the runtime's string primitives — left,
// right and repeat (n copies of a fill character) — and raise what those
// raise: 5 for a negative count or an empty fill character; 6 where 32-bit
// arithmetic overflows; 14 when a result (or the intermediate string the
// primitives would build) would pass the automation string limit. That last
// check comes before anything is allocated, so a huge Length fails at once
// instead of exhausting memory.
#include <string>

#include "classes/string_limit.h"
#include "core/checked.h"
#include "core/error_frame.h"
#include "crvlib/functions.h"

namespace crvlib {
namespace {

using internal::CheckLength;
using internal::Trap;

// The character repeat(count, fill) repeats, after its argument checks.
char16_t FillUnit(const String& fill, int64_t count) {
  if (count < 0 || fill.view().empty()) internal::Raise(internal::kInvalidProcedureCall);
  return fill.view().front();
}

// Round-half-to-even of d / 2 for d >= 0, as the conversion of a floating
// value to a Long rounds it: 1 -> 0, 3 -> 2, 5 -> 2, 7 -> 4.
int32_t HalfToEven(int32_t d) {
  int32_t half = d / 2;
  if (d % 2 == 1 && half % 2 == 1) ++half;
  return half;
}

}  // namespace

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
