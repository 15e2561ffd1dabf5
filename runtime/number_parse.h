// String to number conversion with the automation runtime's acceptance rules
// for the thread's locale (the rules of CDbl, CCur, CLng, CInt):
//   - blanks (space, tab, CR, LF) around the number;
//   - one sign, leading or trailing ("-5", "5-"), or parentheses for a
//     negative ("(5)");
//   - the currency symbol before or after the number ("$5", "5$");
//   - thousands separators among the integer digits ("1,234", leniently);
//   - a decimal separator and an exponent ("1.5E+3");
//   - "&H" and "&O" prefixes for hexadecimal and octal integers.
// Anything else makes the text no number (error 13); a value beyond the
// target type's range is error 6.
//
//   ParseDouble(u" ($1,234.50) ") == -1234.5
//   ParseDouble(u"&HFF") == 255         ParseDouble(u"1e999") raises 6
#ifndef CRVLIB_RUNTIME_NUMBER_PARSE_H_
#define CRVLIB_RUNTIME_NUMBER_PARSE_H_

#include <string_view>

#include "core/locale_settings.h"

namespace crvlib::internal {

enum class ParseStatus { kOk, kTypeMismatch, kOverflow };

// Non-raising form, for callers that ignore failures (a sort comparing
// elements as numbers). `*out` is set only on kOk.
ParseStatus TryParseDouble(std::u16string_view text, const LocaleSettings& locale, double* out);

// CDbl for the thread's locale: raises 13 or 6.
double ParseDouble(std::u16string_view text);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_NUMBER_PARSE_H_
