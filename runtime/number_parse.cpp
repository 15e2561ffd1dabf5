// One scanner for the runtime's number syntax. It reads the text into a sign,
// a run of significant decimal digits and a decimal exponent (or a hex/octal
// integer), and only then builds the value, so every target type rounds from
// the same exact digits.
//
// Grammar (after trimming blanks):
//   number  := prefix* body suffix*
//   prefix  := sign | "(" | currency-symbol
//   body    := "&H" hexdigits | "&O" octdigits | decimal
//   decimal := (digit | thousands-sep)* [decimal-sep digit*] [exponent]
//   exponent:= ("E" | "e" | "D" | "d") [sign] digit+
//   suffix  := sign | ")" | currency-symbol
// with at most one sign, parentheses balanced, at least one digit.
#include "runtime/number_parse.h"

#include <charconv>
#include <string>

#include "core/error_frame.h"
#include "core/thread_state.h"

namespace crvlib::internal {
namespace {

bool IsBlank(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

bool StartsWith(std::u16string_view s, size_t i, const String& token) {
  std::u16string_view t = token.view();
  return !t.empty() && s.substr(i, t.size()) == t;
}

struct Scanner {
  std::u16string_view s;
  const LocaleSettings& loc;
  size_t i = 0;
  bool negative = false;
  bool have_sign = false;
  int parens = 0;
  bool have_currency = false;

  // Reads signs, "(" / ")" and the currency symbol; false on a second sign.
  bool Affixes(bool leading) {
    for (;;) {
      while (i < s.size() && IsBlank(s[i])) ++i;
      if (i >= s.size()) return true;
      char16_t c = s[i];
      if (c == u'+' || c == u'-') {
        if (have_sign) return false;
        have_sign = true;
        negative = c == u'-';
        ++i;
      } else if (leading && c == u'(') {
        if (parens) return false;
        parens = 1;
        ++i;
      } else if (!leading && c == u')') {
        if (parens != 1) return false;
        parens = 2;
        ++i;
      } else if (!have_currency && StartsWith(s, i, loc.currency_symbol)) {
        have_currency = true;
        i += loc.currency_symbol.Len();
      } else {
        return true;
      }
    }
  }
};

}  // namespace

ParseStatus TryParseDouble(std::u16string_view text, const LocaleSettings& locale, double* out) {
  Scanner sc{text, locale};
  if (!sc.Affixes(true)) return ParseStatus::kTypeMismatch;
  std::u16string_view s = text;
  size_t& i = sc.i;
  double value = 0;
  bool any_digit = false;

  if (i + 1 < s.size() && s[i] == u'&' &&
      (s[i + 1] == u'H' || s[i + 1] == u'h' || s[i + 1] == u'O' || s[i + 1] == u'o')) {
    // &H / &O integers: up to 32 bits; 16-bit-looking literals keep their
    // unsigned value here (CDbl("&HFFFF") is 65535 only through CLng rules;
    // the literal value is sign-extended from its natural width).
    int base = (s[i + 1] == u'H' || s[i + 1] == u'h') ? 16 : 8;
    i += 2;
    uint64_t v = 0;
    size_t digits = 0;
    for (; i < s.size(); ++i) {
      char16_t c = s[i];
      int d = c >= u'0' && c <= u'9'   ? c - u'0'
              : c >= u'a' && c <= u'f' ? c - u'a' + 10
              : c >= u'A' && c <= u'F' ? c - u'A' + 10
                                       : 99;
      if (d >= base) break;
      v = v * base + d;
      if (v > 0xFFFFFFFFull) return ParseStatus::kOverflow;
      ++digits;
    }
    if (!digits) return ParseStatus::kTypeMismatch;
    value = v <= 0xFFFF && digits <= (base == 16 ? 4u : 6u)
                ? static_cast<int16_t>(static_cast<uint16_t>(v))
                : static_cast<int32_t>(static_cast<uint32_t>(v));
    any_digit = true;
  } else {
    std::string digits;  // "123.45e-6" handed to strtod once checked
    bool seen_point = false;
    for (; i < s.size(); ++i) {
      char16_t c = s[i];
      if (c >= u'0' && c <= u'9') {
        digits.push_back(static_cast<char>(c));
        any_digit = true;
      } else if (!seen_point && StartsWith(s, i, locale.decimal_separator)) {
        seen_point = true;
        digits.push_back('.');
        i += locale.decimal_separator.Len() - 1;
      } else if (!seen_point && any_digit && StartsWith(s, i, locale.thousands_separator)) {
        i += locale.thousands_separator.Len() - 1;
      } else {
        break;
      }
    }
    if (!any_digit) return ParseStatus::kTypeMismatch;
    if (i < s.size() && (s[i] == u'E' || s[i] == u'e' || s[i] == u'D' || s[i] == u'd')) {
      size_t j = i + 1;
      std::string exp = "e";
      if (j < s.size() && (s[j] == u'+' || s[j] == u'-')) exp.push_back(static_cast<char>(s[j++]));
      size_t start = j;
      while (j < s.size() && s[j] >= u'0' && s[j] <= u'9') exp.push_back(static_cast<char>(s[j++]));
      if (j == start) return ParseStatus::kTypeMismatch;
      digits += exp;
      i = j;
    }
    auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (ec == std::errc::result_out_of_range) {
      // from_chars reports both ends of the range; only the large one is an
      // overflow, a tiny value reads as 0.
      if (digits.find("e-") == std::string::npos && digits.rfind("0.", 0) != 0) {
        return ParseStatus::kOverflow;
      }
      value = 0;
    }
  }
  if (!sc.Affixes(false)) return ParseStatus::kTypeMismatch;
  if (i != s.size() || sc.parens == 1) return ParseStatus::kTypeMismatch;
  if (sc.parens == 2) {
    if (sc.have_sign) return ParseStatus::kTypeMismatch;
    sc.negative = true;
  }
  *out = sc.negative ? -value : value;
  return ParseStatus::kOk;
}

double ParseDouble(std::u16string_view text) {
  double v = 0;
  switch (TryParseDouble(text, State().locale, &v)) {
    case ParseStatus::kOk:
      return v;
    case ParseStatus::kOverflow:
      Raise(kOverflow);
    case ParseStatus::kTypeMismatch:
      break;
  }
  Raise(kTypeMismatch);
}

}  // namespace crvlib::internal
