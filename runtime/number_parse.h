// String to number conversion with the automation runtime's acceptance rules
// for the thread's locale (the rules of CDbl, CCur, CLng, CInt and CBool):
//   - blanks (any white space) around the number and between its signs;
//   - one sign, leading or trailing ("-5", "5-"), or parentheses for a
//     negative ("(5)");
//   - the currency symbol once, before or after the digits ("$5", "5$");
//   - thousands separators anywhere after the first digit ("1,234", "1,2,3");
//   - a decimal separator and an exponent ("1.5E+3"; not after a currency
//     symbol);
//   - "&H" and "&O" prefixes for hexadecimal and octal integers.
// Anything else makes the text no number (error 13); a value beyond the
// target type's range is error 6. Integers and Currency round half to even
// from the exact decimal digits of the text.
//
//   ParseDouble(u" ($1,234.50) ") == -1234.5
//   ParseDouble(u"&HFF") == 255         ParseDouble(u"1e999") raises 6
//   ParseLong(u"2.5") == 2              ParseInteger(u"&HFFFF") == -1
#ifndef CRVLIB_RUNTIME_NUMBER_PARSE_H_
#define CRVLIB_RUNTIME_NUMBER_PARSE_H_

#include <cstdint>
#include <string_view>

#include "core/locale_settings.h"
#include "crvlib/variant.h"

namespace crvlib::internal {

enum class ParseStatus { kOk, kTypeMismatch, kOverflow };

// The runtime error number of a failed status: 13 or 6 (0 for kOk).
int32_t ErrorNumberOf(ParseStatus status);

// A number as read from text: value = (negative ? -1 : 1) * digits * 10^exponent,
// with `digits` the significant decimal digits (no leading or trailing
// zeros; none at all for zero). Hexadecimal and octal literals keep their
// bits instead.
struct DecimalNumber {
  static constexpr int kMaxDigits = 40;
  bool negative = false;
  bool radix_literal = false;  // &H or &O
  uint64_t radix_value = 0;
  int count = 0;         // digits kept
  bool inexact = false;  // nonzero digits beyond kMaxDigits were dropped
  int32_t exponent = 0;
  char digits[kMaxDigits];  // '0'..'9'

  // Takes the next decimal digit '0'..'9', before or after the decimal
  // point: leading zeros only move the exponent, and digits past kMaxDigits
  // only scale it (and mark the number inexact when one is not zero).
  void AddDigit(char16_t c, bool after_point) {
    if (count == 0 && c == u'0') {
      if (after_point) --exponent;
    } else if (count < kMaxDigits) {
      digits[count++] = static_cast<char>(c);
      if (after_point) --exponent;
    } else {
      if (c != u'0') inexact = true;
      if (!after_point) ++exponent;
    }
  }
};

// Reads `text` with the rules above into `out`; no heap use.
ParseStatus ScanNumber(std::u16string_view text, const LocaleSettings& locale, DecimalNumber* out);

// The value of a scanned number in each type; kOverflow beyond its range.
ParseStatus ToDouble(const DecimalNumber& n, double* out);
ParseStatus ToCurrency(const DecimalNumber& n, Currency* out);
ParseStatus ToLong(const DecimalNumber& n, int32_t* out);
ParseStatus ToInteger(const DecimalNumber& n, int16_t* out);

// Non-raising forms, for callers that ignore failures (a sort comparing
// elements as numbers). `*out` is set only on kOk.
ParseStatus TryParseDouble(std::u16string_view text, const LocaleSettings& locale, double* out);
ParseStatus TryParseCurrency(std::u16string_view text, const LocaleSettings& locale, Currency* out);
ParseStatus TryParseLong(std::u16string_view text, const LocaleSettings& locale, int32_t* out);
ParseStatus TryParseInteger(std::u16string_view text, const LocaleSettings& locale, int16_t* out);
// CBool of text: "True" and "False" in any case, "#TRUE#" and "#FALSE#"
// exactly, or a number (nonzero is True).
ParseStatus TryParseBoolean(std::u16string_view text, const LocaleSettings& locale, bool* out);

// The same for the thread's locale, raising 13 or 6.
double ParseDouble(std::u16string_view text);
Currency ParseCurrency(std::u16string_view text);
int32_t ParseLong(std::u16string_view text);
int16_t ParseInteger(std::u16string_view text);
bool ParseBoolean(std::u16string_view text);

// True when the text reads as a number under the rules above (a number
// beyond the Double range still counts): IsNumeric.
//   IsNumeric(u" $1,234.50 ") && IsNumeric(u"&HFF") && !IsNumeric(u"") && !IsNumeric(u"1e")
bool IsNumeric(std::u16string_view text, const LocaleSettings& locale);
bool IsNumeric(std::u16string_view text);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_NUMBER_PARSE_H_
