// One scanner for the runtime's number syntax. It reads the text into a sign,
// a run of significant decimal digits and a decimal exponent (or the bits of a
// hex/octal literal), and only then builds the value, so every target type
// rounds from the same exact digits.
//
// Grammar (blank = any white space):
//   number   := leading* body trailing*
//   leading  := blank | sign | "(" | currency            each at most once
//   body     := radix | decimal
//   radix    := "&" ("H"|"h") hexdigit+ | "&" ("O"|"o") octdigit+
//   decimal  := digit (digit | group)* [point (digit | group)*] [exponent]
//             | point (digit | group)* [exponent]
//   exponent := ("E"|"e") ["+"|"-"] digit+               not after a currency
//   trailing := blank | group | sign | ")" | currency
// with one sign in all (leading or trailing), parentheses balanced, at
// least one digit, and no group separator before the first digit. A radix
// literal takes no currency symbol, point or group separator.
#include "runtime/number_parse.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "core/error_frame.h"
#include "core/thread_state.h"

namespace crvlib::internal {
namespace {

bool IsBlank(char16_t c) {
  if (c == u' ' || (c >= u'\t' && c <= u'\r')) return true;
  if (c < 0x80) return false;
  return c == 0x85 || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 ||
         c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

bool At(std::u16string_view s, size_t i, std::u16string_view token) {
  return !token.empty() && token.size() <= s.size() - i &&
         std::memcmp(s.data() + i, token.data(), token.size() * sizeof(char16_t)) == 0;
}

// The locale's separators as the scanner uses them. A group separator equal
// to the decimal separator is ignored (the point wins); a no-break space as
// group separator lets an ordinary space group digits too.
struct Separators {
  std::u16string_view point, group, money_point, money_group, currency;
  bool space_groups = false;

  explicit Separators(const LocaleSettings& loc)
      : point(loc.decimal_separator.view()),
        group(loc.thousands_separator.view()),
        money_point(loc.monetary_decimal_separator.view()),
        money_group(loc.monetary_thousands_separator.view()),
        currency(loc.currency_symbol.view()) {
    if (group == point) group = {};
    if (money_group == point || money_group == money_point) money_group = {};
    space_groups = group == u"\u00A0" || group == u"\u202F";
  }

  size_t Point(std::u16string_view s, size_t i) const {
    if (At(s, i, point)) return point.size();
    if (At(s, i, money_point)) return money_point.size();
    return 0;
  }
  size_t Group(std::u16string_view s, size_t i) const {
    if (At(s, i, group)) return group.size();
    if (At(s, i, money_group)) return money_group.size();
    if (space_groups && s[i] == u' ') return 1;
    return 0;
  }
};

int DigitValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return 99;
}

constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Rounds digits * 10^(exponent + scale) half to even into an integer, within
// [-limit - 1, limit] for negatives and [-limit, limit] otherwise.
ParseStatus ToScaled(const DecimalNumber& n, int scale, int64_t limit, int64_t* out) {
  if (n.count == 0) {
    *out = 0;
    return ParseStatus::kOk;
  }
  int64_t e = static_cast<int64_t>(n.exponent) + scale;
  int64_t whole_digits = n.count + e;
  if (whole_digits > 19) return ParseStatus::kOverflow;
  uint64_t whole = 0;  // at most 19 digits: below 2^64
  for (int64_t k = 0; k < whole_digits && k < n.count; ++k)
    whole = whole * 10 + (n.digits[k] - '0');
  for (int64_t k = n.count; k < whole_digits; ++k) whole *= 10;
  if (whole_digits >= 0 && whole_digits < n.count) {
    int first = n.digits[whole_digits] - '0';
    bool rest = n.inexact;
    for (int k = static_cast<int>(whole_digits) + 1; k < n.count && !rest; ++k) {
      rest = n.digits[k] != '0';
    }
    if (first > 5 || (first == 5 && (rest || (whole & 1)))) ++whole;
  }
  uint64_t max = static_cast<uint64_t>(limit) + (n.negative ? 1 : 0);
  if (whole > max) return ParseStatus::kOverflow;
  *out = n.negative ? static_cast<int64_t>(0 - whole) : static_cast<int64_t>(whole);
  return ParseStatus::kOk;
}

}  // namespace

int32_t ErrorNumberOf(ParseStatus status) {
  switch (status) {
    case ParseStatus::kOk:
      return 0;
    case ParseStatus::kOverflow:
      return kOverflow;
    case ParseStatus::kTypeMismatch:
      break;
  }
  return kTypeMismatch;
}

ParseStatus ScanNumber(std::u16string_view s, const LocaleSettings& locale, DecimalNumber* out) {
  DecimalNumber& n = *out;
  n.negative = false;
  n.radix_literal = false;
  n.radix_value = 0;
  n.count = 0;
  n.inexact = false;
  n.exponent = 0;
  const Separators sep(locale);
  const size_t len = s.size();
  size_t i = 0;
  bool sign = false, minus = false, currency = false, open = false, closed = false;
  bool point = false, any_digit = false;

  for (size_t k; i < len;) {
    char16_t c = s[i];
    if ((k = sep.Point(s, i))) {
      point = true;
      i += k;
      break;
    }
    if (IsBlank(c)) {
      ++i;
    } else if (sep.Group(s, i)) {
      return ParseStatus::kTypeMismatch;  // no group separator before the first digit
    } else if ((c == u'+' || c == u'-') && !sign) {
      sign = true;
      minus = c == u'-';
      ++i;
    } else if (c == u'(' && !open) {
      open = true;
      ++i;
    } else if (!currency && At(s, i, sep.currency)) {
      currency = true;
      i += sep.currency.size();
    } else {
      break;
    }
  }

  if (!point && !currency && i + 1 < len && s[i] == u'&' &&
      (s[i + 1] == u'H' || s[i + 1] == u'h' || s[i + 1] == u'O' || s[i + 1] == u'o')) {
    const int shift = (s[i + 1] == u'H' || s[i + 1] == u'h') ? 4 : 3;
    i += 2;
    for (; i < len; ++i) {
      int d = DigitValue(s[i]);
      if (d >= (1 << shift)) break;
      if (n.radix_value >> (64 - shift)) return ParseStatus::kOverflow;
      n.radix_value = (n.radix_value << shift) | static_cast<uint64_t>(d);
      any_digit = true;
    }
    n.radix_literal = true;
  } else {
    for (size_t k; i < len;) {
      char16_t c = s[i];
      if (c >= u'0' && c <= u'9') {
        any_digit = true;
        n.AddDigit(c, point);
        ++i;
      } else if (!point && (k = sep.Point(s, i))) {
        point = true;
        i += k;
      } else if ((k = sep.Group(s, i))) {
        i += k;
      } else if ((c == u'E' || c == u'e') && !currency) {
        size_t j = i + 1;
        bool negative_exponent = false;
        if (j < len && (s[j] == u'+' || s[j] == u'-')) negative_exponent = s[j++] == u'-';
        size_t start = j;
        int64_t e = 0;
        for (; j < len && s[j] >= u'0' && s[j] <= u'9'; ++j) {
          if (e < 100000000) e = e * 10 + (s[j] - u'0');
        }
        if (j == start) return ParseStatus::kTypeMismatch;  // an exponent needs digits
        e = n.exponent + (negative_exponent ? -e : e);
        n.exponent = static_cast<int32_t>(e < -200000000  ? -200000000
                                          : e > 200000000 ? 200000000
                                                          : e);
        i = j;
        break;
      } else {
        break;
      }
    }
    while (n.count > 0 && n.digits[n.count - 1] == '0') {
      --n.count;
      ++n.exponent;
    }
  }
  if (!any_digit) return ParseStatus::kTypeMismatch;

  for (size_t k; i < len;) {
    char16_t c = s[i];
    if (!n.radix_literal && (k = sep.Group(s, i))) {
      i += k;
    } else if (IsBlank(c)) {
      ++i;
    } else if ((c == u'+' || c == u'-') && !sign) {
      sign = true;
      minus = c == u'-';
      ++i;
    } else if (c == u')' && open && !closed) {
      closed = true;
      ++i;
    } else if (!n.radix_literal && !currency && At(s, i, sep.currency)) {
      currency = true;
      i += sep.currency.size();
    } else {
      break;
    }
  }
  if (i != len || open != closed) return ParseStatus::kTypeMismatch;
  n.negative = minus || closed;
  return ParseStatus::kOk;
}

ParseStatus ToDouble(const DecimalNumber& n, double* out) {
  if (n.radix_literal) {
    if (n.radix_value > 0xFFFFFFFFu) return ParseStatus::kOverflow;
    double v = static_cast<int32_t>(static_cast<uint32_t>(n.radix_value));
    *out = n.negative ? -v : v;
    return ParseStatus::kOk;
  }
  if (n.count == 0) {
    *out = 0.0;
    return ParseStatus::kOk;
  }
  // The leading digit stands for 10^(count + exponent - 1).
  int64_t magnitude = static_cast<int64_t>(n.count) + n.exponent;
  if (magnitude > 310) return ParseStatus::kOverflow;
  if (magnitude < -330) {
    *out = 0.0;
    return ParseStatus::kOk;
  }
  double v;
  if (n.count <= 15 && !n.inexact && n.exponent >= -22 && n.exponent <= 22) {
    // Exact digits and an exact power of ten: one correctly rounded step.
    uint64_t m = 0;
    for (int k = 0; k < n.count; ++k) m = m * 10 + static_cast<uint64_t>(n.digits[k] - '0');
    v = static_cast<double>(m);
    v = n.exponent >= 0 ? v * kPow10[n.exponent] : v / kPow10[-n.exponent];
  } else {
    char buf[DecimalNumber::kMaxDigits + 16];
    std::memcpy(buf, n.digits, static_cast<size_t>(n.count));
    size_t used = static_cast<size_t>(n.count);
    int32_t e = n.exponent;
    if (n.inexact) {
      buf[used++] = '1';  // a sticky digit for the dropped nonzero tail
      --e;
    }
    buf[used++] = 'e';
    auto [end, ec] = std::to_chars(buf + used, buf + sizeof buf, e);
    auto [last, err] = std::from_chars(buf, end, v);
    if (err == std::errc::result_out_of_range) {
      if (magnitude > 0) return ParseStatus::kOverflow;
      v = 0.0;
    }
  }
  if (std::isinf(v)) return ParseStatus::kOverflow;
  *out = n.negative ? -v : v;
  return ParseStatus::kOk;
}

ParseStatus ToCurrency(const DecimalNumber& n, Currency* out) {
  int64_t v;
  if (n.radix_literal) {
    if (n.radix_value > 0xFFFFFFFFu) return ParseStatus::kOverflow;
    v = static_cast<int32_t>(static_cast<uint32_t>(n.radix_value));
    *out = Currency{(n.negative ? -v : v) * Currency::kScale};
    return ParseStatus::kOk;
  }
  ParseStatus st = ToScaled(n, 4, INT64_MAX, &v);
  if (st == ParseStatus::kOk) *out = Currency{v};
  return st;
}

ParseStatus ToLong(const DecimalNumber& n, int32_t* out) {
  int64_t v;
  if (n.radix_literal) {
    if (n.radix_value > 0xFFFFFFFFu) return ParseStatus::kOverflow;
    v = static_cast<int32_t>(static_cast<uint32_t>(n.radix_value));
    if (n.negative) v = -v;
    if (v > INT32_MAX) return ParseStatus::kOverflow;
    *out = static_cast<int32_t>(v);
    return ParseStatus::kOk;
  }
  ParseStatus st = ToScaled(n, 0, INT32_MAX, &v);
  if (st == ParseStatus::kOk) *out = static_cast<int32_t>(v);
  return st;
}

ParseStatus ToInteger(const DecimalNumber& n, int16_t* out) {
  int64_t v;
  if (n.radix_literal) {
    if (n.radix_value > 0xFFFFu) return ParseStatus::kOverflow;
    v = static_cast<int16_t>(static_cast<uint16_t>(n.radix_value));
    if (n.negative) v = -v;
    if (v > INT16_MAX) return ParseStatus::kOverflow;
    *out = static_cast<int16_t>(v);
    return ParseStatus::kOk;
  }
  ParseStatus st = ToScaled(n, 0, INT16_MAX, &v);
  if (st == ParseStatus::kOk) *out = static_cast<int16_t>(v);
  return st;
}

ParseStatus TryParseDouble(std::u16string_view text, const LocaleSettings& locale, double* out) {
  DecimalNumber n;
  ParseStatus st = ScanNumber(text, locale, &n);
  return st == ParseStatus::kOk ? ToDouble(n, out) : st;
}

ParseStatus TryParseCurrency(std::u16string_view text, const LocaleSettings& locale,
                             Currency* out) {
  DecimalNumber n;
  ParseStatus st = ScanNumber(text, locale, &n);
  return st == ParseStatus::kOk ? ToCurrency(n, out) : st;
}

ParseStatus TryParseLong(std::u16string_view text, const LocaleSettings& locale, int32_t* out) {
  DecimalNumber n;
  ParseStatus st = ScanNumber(text, locale, &n);
  return st == ParseStatus::kOk ? ToLong(n, out) : st;
}

ParseStatus TryParseInteger(std::u16string_view text, const LocaleSettings& locale, int16_t* out) {
  DecimalNumber n;
  ParseStatus st = ScanNumber(text, locale, &n);
  return st == ParseStatus::kOk ? ToInteger(n, out) : st;
}

ParseStatus TryParseBoolean(std::u16string_view text, const LocaleSettings& locale, bool* out) {
  if (text == u"#TRUE#" || text == u"#FALSE#") {
    *out = text[1] == u'T';
    return ParseStatus::kOk;
  }
  auto equals_folded = [&](std::u16string_view word) {
    if (text.size() != word.size()) return false;
    for (size_t k = 0; k < word.size(); ++k) {
      char16_t c = text[k];
      if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
      if (c != word[k]) return false;
    }
    return true;
  };
  if (equals_folded(u"true") || equals_folded(u"false")) {
    *out = text.size() == 4;
    return ParseStatus::kOk;
  }
  double v;
  ParseStatus st = TryParseDouble(text, locale, &v);
  if (st == ParseStatus::kOk) *out = v != 0;
  return st;
}

namespace {

template <class T, class Fn>
T RaiseOnFailure(std::u16string_view text, Fn try_parse) {
  T v{};
  ParseStatus st = try_parse(text, State().locale, &v);
  if (st != ParseStatus::kOk) Raise(ErrorNumberOf(st));
  return v;
}

}  // namespace

double ParseDouble(std::u16string_view text) {
  return RaiseOnFailure<double>(text, TryParseDouble);
}
Currency ParseCurrency(std::u16string_view text) {
  return RaiseOnFailure<Currency>(text, TryParseCurrency);
}
int32_t ParseLong(std::u16string_view text) {
  return RaiseOnFailure<int32_t>(text, TryParseLong);
}
int16_t ParseInteger(std::u16string_view text) {
  return RaiseOnFailure<int16_t>(text, TryParseInteger);
}
bool ParseBoolean(std::u16string_view text) {
  return RaiseOnFailure<bool>(text, TryParseBoolean);
}

bool IsNumeric(std::u16string_view text, const LocaleSettings& locale) {
  DecimalNumber n;
  return ScanNumber(text, locale, &n) != ParseStatus::kTypeMismatch;
}

bool IsNumeric(std::u16string_view text) {
  return IsNumeric(text, State().locale);
}

}  // namespace crvlib::internal
