// Doubles are cut to 15 significant digits with std::to_chars (correctly
// rounded from the exact binary value), then written in the runtime's
// layout. Integers and Currency are exact.
#include "runtime/number_format.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace crvlib::internal {

void DoubleToDecimal(double v, DecimalNumber* out) {
  DecimalNumber& n = *out;
  n.radix_literal = false;
  n.inexact = false;
  n.negative = std::signbit(v) && v != 0;
  n.count = 0;
  n.exponent = 0;
  if (v == 0 || !std::isfinite(v)) return;
  char buf[40];
  // "d.dddddddddddddde+XX": 15 significant digits.
  auto [end, ec] =
      std::to_chars(buf, buf + sizeof buf, std::fabs(v), std::chars_format::scientific, 14);
  char* e = static_cast<char*>(std::memchr(buf, 'e', static_cast<size_t>(end - buf)));
  int exp10 = 0;
  std::from_chars(e + 1 + (e[1] == '+'), end, exp10);
  for (char* p = buf; p < e; ++p) {
    if (*p != '.') n.digits[n.count++] = *p;
  }
  n.exponent = exp10 - (n.count - 1);
  while (n.count > 0 && n.digits[n.count - 1] == '0') {
    --n.count;
    ++n.exponent;
  }
}

void IntegerToDecimal(int64_t v, DecimalNumber* out) {
  DecimalNumber& n = *out;
  n.radix_literal = false;
  n.inexact = false;
  n.negative = v < 0;
  n.count = 0;
  n.exponent = 0;
  uint64_t u = v < 0 ? 0 - static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
  char buf[24];
  int k = 0;
  while (u) {
    buf[k++] = static_cast<char>('0' + u % 10);
    u /= 10;
  }
  while (k) n.digits[n.count++] = buf[--k];
  while (n.count > 0 && n.digits[n.count - 1] == '0') {
    --n.count;
    ++n.exponent;
  }
}

void CurrencyToDecimal(Currency c, DecimalNumber* out) {
  IntegerToDecimal(c.scaled, out);
  if (out->count) out->exponent -= 4;
}

namespace {

// Writes |n| in fixed notation: integer digits, then the point and the
// fraction when there is one.
void AppendFixed(TextBuffer& out, const DecimalNumber& n, std::u16string_view point) {
  int whole = n.count + n.exponent;  // digits before the point
  if (whole <= 0) {
    out.Append(u'0');
  } else {
    for (int k = 0; k < whole; ++k) out.Append(k < n.count ? char16_t(n.digits[k]) : u'0');
  }
  if (n.exponent < 0) {
    out.Append(point);
    for (int k = whole; k < 0; ++k) out.Append(u'0');
    for (int k = whole < 0 ? 0 : whole; k < n.count; ++k) out.Append(char16_t(n.digits[k]));
  }
}

}  // namespace

void AppendDoubleText(TextBuffer& out, double v, const LocaleSettings& locale) {
  if (std::isnan(v)) {
    out.Append(u"-1.#IND");
    return;
  }
  if (std::isinf(v)) {
    out.Append(v < 0 ? u"-1.#INF" : u"1.#INF");
    return;
  }
  DecimalNumber n;
  DoubleToDecimal(v, &n);
  if (n.count == 0) {
    out.Append(u'0');
    return;
  }
  if (n.negative) out.Append(u'-');
  int x = n.count + n.exponent - 1;  // exponent of the leading digit
  if (x >= -4 && x < 15) {
    AppendFixed(out, n, locale.decimal_separator.view());
    return;
  }
  out.Append(char16_t(n.digits[0]));
  if (n.count > 1) {
    out.Append(locale.decimal_separator.view());
    for (int k = 1; k < n.count; ++k) out.Append(char16_t(n.digits[k]));
  }
  out.Append(u'E');
  out.Append(x < 0 ? u'-' : u'+');
  out.AppendNumber(x < 0 ? -x : x, 2);
}

void AppendCurrencyText(TextBuffer& out, Currency c, const LocaleSettings& locale) {
  DecimalNumber n;
  CurrencyToDecimal(c, &n);
  if (n.negative) out.Append(u'-');
  AppendFixed(out, n, locale.decimal_separator.view());
}

String DoubleToText(double v, const LocaleSettings& locale) {
  TextBuffer b;
  AppendDoubleText(b, v, locale);
  return b.ToString();
}

String CurrencyToText(Currency c, const LocaleSettings& locale) {
  TextBuffer b;
  AppendCurrencyText(b, c, locale);
  return b.ToString();
}

}  // namespace crvlib::internal
