// The runtime's text form of numbers (CStr, Str without the sign space), and
// the decimal digits the Format language lays out.
//
// A Double shows at most 15 significant digits, in fixed notation for
// exponents -4 to 14 and as d.dddE+nn otherwise; a Currency shows up to four
// decimals; both use the locale's decimal separator and no grouping.
//   DoubleToText(1234.5) == u"1234.5"          DoubleToText(1e15) == u"1E+15"
//   DoubleToText(0.00001) == u"1E-05"          DoubleToText(1 / 3.0) == u"0.333333333333333"
//   CurrencyToText(Currency{15000}) == u"1.5"  (de-DE: u"1,5")
#ifndef CRVLIB_RUNTIME_NUMBER_FORMAT_H_
#define CRVLIB_RUNTIME_NUMBER_FORMAT_H_

#include <cstdint>

#include "core/locale_settings.h"
#include "crvlib/variant.h"
#include "runtime/number_parse.h"
#include "runtime/text_buffer.h"

namespace crvlib::internal {

// The significant digits of a value, as DecimalNumber (no leading or
// trailing zeros). A Double gives at most 15 digits, rounded to nearest.
void DoubleToDecimal(double v, DecimalNumber* out);
void IntegerToDecimal(int64_t v, DecimalNumber* out);
void CurrencyToDecimal(Currency c, DecimalNumber* out);

void AppendDoubleText(TextBuffer& out, double v, const LocaleSettings& locale);
void AppendCurrencyText(TextBuffer& out, Currency c, const LocaleSettings& locale);

String DoubleToText(double v, const LocaleSettings& locale);
String CurrencyToText(Currency c, const LocaleSettings& locale);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_NUMBER_FORMAT_H_
