// VarFormat: the runtime's Format language, in the thread's locale.
//
// Grammar (one state machine over the characters; the first placeholder of
// the whole format fixes its kind, and a character that is a placeholder of
// another kind is literal text):
//   format   := named-format | section (";" section){0,3}
//   section  := item*
//   item     := "\" char | '"' text '"' | placeholder | literal
//   number   := "0" | "#" | "." | "," | "%" | ("E"|"e")("+"|"-") ("0"|"#")*
//   date     := "/" | ":" | c | d..dddddd | w | ww | m..mmmm | q | y | yy | yyyy
//             | h | hh | n | nn | s | ss | ttttt | AM/PM | am/pm | A/P | a/p | AMPM
//   string   := "@" | "&" | "<" | ">" | "!"
// Sections: numbers use positive;negative;zero;Null (an empty or missing
// section falls back to the first, which then shows a leading minus); strings
// use text;empty-or-Null. Named formats (General Number, Currency, Fixed,
// Standard, Percent, Scientific, Yes/No, True/False, On/Off, General Date,
// Long Date, Medium Date, Short Date, Long Time, Medium Time, Short Time; any
// case) stand for their equivalent formats in the locale.
//
// Numbers are laid out from their decimal digits (a Double's 15 significant
// digits), rounded half away from zero at the last place shown. "," between
// digit placeholders groups thousands; commas right before the point (or
// the end of the digits) divide by 1000 each. A value the format's kind
// cannot take (text that is no number for a number format) comes back as
// its plain text. Weeks start on Sunday; week 1 holds 1 January.
//
//   VarFormat(1234.5, u"$#,##0.00;($#,##0.00)") == u"$1,234.50"
//   VarFormat(-1234.5, u"$#,##0.00;($#,##0.00)") == u"($1,234.50)"
//   VarFormat(Date{38352.75}, u"dd mmm yyyy hh:nn AM/PM") == u"31 Dec 2004 06:00 PM"
//   VarFormat(0.125, u"Percent") == u"12.50%"      VarFormat(u"hello", u">@") == u"HELLO"
//   VarFormat(1, u"a;b;c;d;e") raises 5 (more than four sections)
#ifndef CRVLIB_RUNTIME_FORMAT_H_
#define CRVLIB_RUNTIME_FORMAT_H_

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/locale_settings.h"
#include "crvlib/variant.h"

namespace crvlib::internal {

enum class FormatKind : uint8_t {
  kLiteral,  // no placeholder at all: only literal text
  kGeneral,  // empty format, General Number: the value's text
  kNumber,
  kDate,
  kString,
  kBoolean,  // True/False, Yes/No, On/Off
};

enum class FormatOp : uint8_t {
  kLiteral,  // text [pos, pos + len) of CompiledFormat::text
  // Numbers.
  kDigitZero,
  kDigitOptional,
  kPoint,
  kComma,
  kExponent,  // arg: kExponentUpper | kExponentPlus; len: minimum digits
  // Dates.
  kDateSeparator,
  kTimeSeparator,
  kGeneralDate,
  kDay,
  kDay2,
  kDayAbbreviation,
  kDayName,
  kShortDate,
  kLongDate,
  kMediumDate,
  kWeekday,
  kWeekOfYear,
  kMonth,
  kMonth2,
  kMonthAbbreviation,
  kMonthName,
  kQuarter,
  kDayOfYear,
  kYear2,
  kYear4,
  kHour,
  kHour2,
  kMinute,
  kMinute2,
  kSecond,
  kSecond2,
  kLongTime,
  kAmPmUpper,
  kAmPmLower,
  kAPUpper,
  kAPLower,
  kAmPmLocale,
  // Strings.
  kCharOrSpace,
  kCharOrNothing,
  // Booleans.
  kTrueFalse,
  kYesNo,
  kOnOff,
};

inline constexpr uint8_t kExponentUpper = 1;
inline constexpr uint8_t kExponentPlus = 2;

struct FormatToken {
  FormatOp op;
  uint8_t arg = 0;
  uint32_t pos = 0;
  uint32_t len = 0;
};

struct FormatSection {
  bool present = false;
  uint32_t first = 0, last = 0;  // token range
  // Numbers.
  uint32_t int_digits = 0;  // digit placeholders before the point
  uint32_t int_min = 0;     // of them, from the first "0" on
  uint32_t frac_digits = 0;
  uint32_t frac_min = 0;  // up to the last "0" after the point
  uint32_t scale = 0;     // thousands the value is divided by
  bool grouping = false;
  bool percent = false;
  bool exponent = false;
  bool has_digits = false;  // any digit placeholder or point
  // Dates.
  bool twelve_hour = false;
  // Strings.
  bool lower = false;
  bool upper = false;
  bool left_to_right = false;
  uint32_t char_count = 0;
};

struct CompiledFormat {
  FormatKind kind = FormatKind::kGeneral;
  std::u16string text;  // the format (a named format's expansion)
  std::vector<FormatToken> tokens;
  std::array<FormatSection, 4> sections;
};

enum class FormatStatus { kOk, kTooManySections };

// Parses a format for `locale` (named formats expand with its settings).
FormatStatus CompileFormat(std::u16string_view format, const LocaleSettings& locale,
                           CompiledFormat* out);

// Formats `value`; error 5 for a format of more than four sections, error 6
// never (a value out of range comes back as its text).
String VarFormat(const Variant& value, std::u16string_view format);
String VarFormat(const Variant& value, std::u16string_view format, const LocaleSettings& locale);

// Formats with an already compiled format.
String FormatCompiled(const Variant& value, const CompiledFormat& format,
                      const LocaleSettings& locale);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_FORMAT_H_
