// Val reads the text as if its blanks were removed first: a sign, then either
// a radix literal or decimal digits with an optional point, fraction and
// exponent. It stops at the first character that cannot continue the number.
#include "runtime/val.h"

#include <cfloat>

namespace crvlib::internal {
namespace {

bool Skipped(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\n';
}

// The text with blanks skipped, one code unit at a time.
struct Reader {
  std::u16string_view s;
  size_t i = 0;

  char16_t Peek() {
    while (i < s.size() && Skipped(s[i])) ++i;
    return i < s.size() ? s[i] : u'\0';
  }
  void Next() { ++i; }
};

}  // namespace

ParseStatus TryVal(std::u16string_view text, double* out) {
  *out = 0;
  Reader r{text};
  bool negative = false;
  char16_t c = r.Peek();
  if (c == u'+' || c == u'-') {
    negative = c == u'-';
    r.Next();
    c = r.Peek();
  }
  if (c == u'&') {
    r.Next();
    char16_t kind = r.Peek();
    int shift = kind == u'H' || kind == u'h' ? 4 : kind == u'O' || kind == u'o' ? 3 : 0;
    if (!shift) return ParseStatus::kOk;
    r.Next();
    uint64_t v = 0;
    bool overflow = false;
    for (;; r.Next()) {
      char16_t d = r.Peek();
      int digit = d >= u'0' && d <= u'9'   ? d - u'0'
                  : d >= u'a' && d <= u'f' ? d - u'a' + 10
                  : d >= u'A' && d <= u'F' ? d - u'A' + 10
                                           : 99;
      if (digit >= (1 << shift)) break;
      v = (v << shift) | static_cast<uint64_t>(digit);
      if (v > 0xFFFFFFFFu) overflow = true;
    }
    if (overflow) return ParseStatus::kOverflow;
    bool as_long = r.Peek() == u'&' || v > 0xFFFF;
    double value = as_long ? static_cast<int32_t>(static_cast<uint32_t>(v))
                           : static_cast<int16_t>(static_cast<uint16_t>(v));
    *out = negative ? -value : value;
    return ParseStatus::kOk;
  }

  DecimalNumber n;
  n.count = 0;
  n.exponent = 0;
  n.inexact = false;
  n.radix_literal = false;
  n.negative = negative;
  bool point = false;
  for (;; r.Next()) {
    c = r.Peek();
    if (c >= u'0' && c <= u'9') {
      n.AddDigit(c, point);
    } else if (c == u'.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  if (c == u'E' || c == u'e' || c == u'D' || c == u'd') {
    // The exponent counts only when digits follow it.
    Reader probe = r;
    probe.Next();
    char16_t s = probe.Peek();
    bool negative_exponent = false;
    if (s == u'+' || s == u'-') {
      negative_exponent = s == u'-';
      probe.Next();
    }
    char16_t d = probe.Peek();
    if (d >= u'0' && d <= u'9') {
      int64_t e = 0;
      for (; (d = probe.Peek()) >= u'0' && d <= u'9'; probe.Next()) {
        if (e < 100000000) e = e * 10 + (d - u'0');
      }
      e = n.exponent + (negative_exponent ? -e : e);
      n.exponent = static_cast<int32_t>(e < -200000000  ? -200000000
                                        : e > 200000000 ? 200000000
                                                        : e);
    }
  }
  while (n.count > 0 && n.digits[n.count - 1] == '0') {
    --n.count;
    ++n.exponent;
  }
  double v = 0;
  if (ToDouble(n, &v) == ParseStatus::kOverflow) {
    *out = negative ? -DBL_MAX : DBL_MAX;
    return ParseStatus::kOverflow;
  }
  *out = v;
  return ParseStatus::kOk;
}

double Val(std::u16string_view text) {
  double v;
  TryVal(text, &v);
  return v;
}

}  // namespace crvlib::internal
