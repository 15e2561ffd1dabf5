// The conversion codes of Conversions::Convert, parsed into small structs
// before anything is done with the datum. The parser never fails: a code it
// does not know has family kInvalid (Convert raises 1611 for it), and the
// faults a code can only show once it is applied (a fill count past 32 bits,
// say) are recorded and raised by the family routine that meets them.
//
// Grammar (one character at a time, case-sensitive unless said otherwise):
//
//   code      := date | time | character | hex | mask
//   date      := "D" [digit] [rest]
//                  rest: "" (day, month, years), a field name led by a letter
//                  (D M MA Y J Q W WA) or a separator (any other character)
//   time      := ("MT" | "T") any*          "H"/"h" anywhere: 12-hour clock,
//                                           "S"/"s" anywhere: seconds
//   character := "MC" selector              U L A /A N /N AN NA /AN /NA P T S XD DX
//   hex       := "MX" any*
//   mask      := "M" ("D" | "R" | "L") [digit [digit]] option* ["(" items tail | items]
//   option    := "Z" | "C" | "D" | "E" | "M" | "N"
//              | "," | the locale's thousands separator | "$" | the locale's currency symbol
//   items     := (fill [count] | literal)*  fill: "#" (pads " "), "%" (pads "0"), "*" (pads "*")
//
// In a "(" mask the last character of the code (its closing parenthesis,
// whatever it is) is not part of the items. The first character that is no
// option starts the mask, so "MD2#10" is two decimals and the mask "#10".
//
//   ParseConversionCode(u"D2/")   date, 2 year digits, separator '/'
//   ParseConversionCode(u"MTHS")  time, 12-hour clock with seconds
//   ParseConversionCode(u"MD2,$") mask, 2 decimals, scale 2, grouping, currency
#ifndef CRVLIB_CLASSES_CONVERSION_CODES_H_
#define CRVLIB_CLASSES_CONVERSION_CODES_H_

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/locale_settings.h"
#include "crvlib/string.h"

namespace crvlib::internal {

enum class CodeFamily : uint8_t { kInvalid, kDate, kTime, kCharacter, kHex, kMask };

// ---------------------------------------------------------------------------
// Dates: "D", "D2", "D0", "DM", "DWA", "D2/", "D-", …

enum class DateLayout : uint8_t {
  kDayMonthYears,  // nothing after the year digits: "dd mmm yyyy"
  kField,          // one field of the date
  kSeparated,      // month, day and years joined by a separator, in the locale's order
};

enum class DateField : uint8_t {
  kUnknown,  // a rest led by a letter that names no field: the result is ""
  kDay,
  kMonth,
  kMonthAbbreviation,
  kYear,
  kDayOfYear,
  kQuarter,
  kWeekday,  // Sunday is 0
  kWeekdayAbbreviation,
};

struct DateCode {
  // 0 to 9. Counts above 4 are accepted as they stand ("D7" writes seven
  // year letters into the pattern).
  int32_t year_digits = 4;
  DateLayout layout = DateLayout::kDayMonthYears;
  DateField field = DateField::kUnknown;
  char16_t separator = 0;
};

// ---------------------------------------------------------------------------
// Times: "MT", "MTH", "MTS", "MTHS", and any code that begins with "T".

struct TimeCode {
  bool twelve_hour = false;
  bool seconds = false;
};

// ---------------------------------------------------------------------------
// Characters: "MCU", "MCT", "MC/AN", "MCXD", …

enum class CharacterAction : uint8_t {
  kInvalid,
  kUpper,
  kLower,
  kKeepLetters,
  kDropLetters,
  kKeepDigits,
  kDropDigits,
  kKeepLettersAndDigits,
  kDropLettersAndDigits,
  kPrintable,
  kTitleCase,
  kSentenceCase,
  kHexToDecimal,  // MCXD; the reverse when converting input
  kDecimalToHex,  // MCDX; the reverse when converting input
};

struct CharacterCode {
  CharacterAction action = CharacterAction::kInvalid;
};

// ---------------------------------------------------------------------------
// Numeric masks: "MD2", "MR2,$", "ML2#10", "MD2C(###-###)", …

enum class SignMode : uint8_t {
  kLeadingMinus,   // no sign option: the signed value is formatted
  kCredit,         // "C": "CR" after negatives
  kDebit,          // "D": "DB" after values >= 0
  kEnclosed,       // "E": "<" ">" around negatives, " " " " around the rest
  kTrailingMinus,  // "M": "-" after negatives, " " after the rest
  kNoSign,         // "N": the absolute value alone
};

// One item of a mask: a fill of `count` characters (fill is the pad
// character) or one literal character (fill is 0).
struct MaskItem {
  char16_t fill = 0;
  char16_t literal = 0;
  int32_t count = 1;
};

struct MaskCode {
  bool left_justified = false;  // "ML"
  int32_t decimals = 0;
  int32_t scale = 0;  // the stored value is the shown value times 10^scale
  bool suppress_zero = false;
  bool grouping = false;
  bool currency = false;
  SignMode sign = SignMode::kLeadingMinus;  // the last sign option wins
  // The mask; none when empty ("MD2", and also "MD2()" and "MD2(").
  std::vector<MaskItem> items;
  // The number of characters the mask lays out, and whether a fill count
  // went past the 32-bit range (applying the mask then raises 6).
  int64_t width = 0;
  bool count_overflow = false;
};

// ---------------------------------------------------------------------------

struct ConversionCode {
  CodeFamily family = CodeFamily::kInvalid;
  DateCode date;
  TimeCode time;
  CharacterCode character;
  MaskCode mask;
};

// Parses `code`. The locale supplies the thousands separator and currency
// symbol a mask may use besides "," and "$" (each counts only when it is a
// single character).
ConversionCode ParseConversionCode(std::u16string_view code, const LocaleSettings& locale);

// The family routines. `data` is never empty here. Dates and times never
// raise; the others raise what the runtime raises (5 from Chr, 6, 13, 14).
String ConvertDate(std::u16string_view data, const DateCode& code, bool input,
                   const LocaleSettings& locale);
String ConvertTime(std::u16string_view data, const TimeCode& code, bool input,
                   const LocaleSettings& locale);
String ConvertCharacters(std::u16string_view data, const CharacterCode& code, bool input,
                         const LocaleSettings& locale);
String ConvertHex(std::u16string_view data, bool input);
String ConvertMask(std::u16string_view data, const MaskCode& code, bool input,
                   const LocaleSettings& locale);

// The platform's letter and letter-or-digit tests of one code unit: the
// wide tests on NT-family systems, the ANSI tests of its low byte elsewhere.
bool IsPlatformLetter(char16_t c);
bool IsPlatformLetterOrDigit(char16_t c);

// Field `n` of `text` split at `delimiter`: n = 0 is the whole text, n < 0
// gives "". The search starts at the beginning and each next one just after
// the previous hit; the last field runs to the end of the text, and a field
// past the last gives "". An empty delimiter is never found.
//   FieldPrivate(u"12:30:45", u":", 2) == u"30"
//   FieldPrivate(u"12:30", u":", 3)    == u""
std::u16string_view FieldPrivate(std::u16string_view text, std::u16string_view delimiter,
                                 int32_t n);

}  // namespace crvlib::internal

#endif  // CRVLIB_CLASSES_CONVERSION_CODES_H_
