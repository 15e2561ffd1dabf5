// The Format language in two steps: CompileFormat turns the format text into
// tokens and per-section layout facts (how many digit placeholders, where the
// first "0" is, whether commas group or scale); FormatCompiled converts the
// value to what the format's kind needs (decimal digits, date parts or text)
// and walks the tokens of the chosen section. Compiled formats are kept in a
// small per-thread cache, so a format used in a loop is parsed once.
#include "runtime/format.h"

#include <cmath>
#include <cstring>
#include <memory>

#include "core/error_frame.h"
#include "core/thread_state.h"
#include "runtime/date_format.h"
#include "runtime/date_parse.h"
#include "runtime/date_time.h"
#include "runtime/number_format.h"
#include "runtime/number_parse.h"
#include "runtime/text.h"
#include "runtime/text_buffer.h"
#include "runtime/variant_text.h"

namespace crvlib::internal {
namespace {

char16_t Lower(char16_t c) {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

bool EqualsIgnoringCase(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t k = 0; k < a.size(); ++k) {
    if (Lower(a[k]) != Lower(b[k])) return false;
  }
  return true;
}

bool StartsIgnoringCase(std::u16string_view s, size_t i, std::u16string_view word) {
  return s.size() - i >= word.size() && EqualsIgnoringCase(s.substr(i, word.size()), word);
}

// ---------------------------------------------------------------------------
// Named formats.

void AppendQuoted(std::u16string& out, std::u16string_view text) {
  out.push_back(u'"');
  for (char16_t c : text) {
    if (c != u'"') out.push_back(c);
  }
  out.push_back(u'"');
}

std::u16string NumberMask(bool group, bool leading_zero, int decimals) {
  std::u16string m = group ? u"#,##" : u"";
  m += leading_zero ? u"0" : u"#";
  if (decimals > 0) m += u"." + std::u16string(static_cast<size_t>(decimals), u'0');
  return m;
}

// Fixed and Standard: the locale's digits and negative-number layout.
std::u16string NumberFormat(const LocaleSettings& loc, bool group) {
  std::u16string n = NumberMask(group, loc.leading_zero != 0, loc.digits);
  switch (loc.negative_number) {
    case 0:
      return n + u";(" + n + u")";
    case 2:
      return n + u";- " + n;
    case 3:
      return n + u";" + n + u"-";
    case 4:
      return n + u";" + n + u" -";
    default:
      return n;
  }
}

// Currency: the locale's positive and negative currency layouts (Windows'
// LOCALE_ICURRENCY and LOCALE_INEGCURR patterns).
std::u16string CurrencyFormat(const LocaleSettings& loc) {
  std::u16string n = NumberMask(true, true, loc.currency_digits);
  std::u16string s;
  AppendQuoted(s, loc.currency_symbol.view());
  static constexpr const char16_t* kPositive[] = {u"$n", u"n$", u"$ n", u"n $"};
  static constexpr const char16_t* kNegative[] = {
      u"($n)", u"-$n",  u"$-n",  u"$n-",  u"(n$)", u"-n$",  u"n-$",   u"n$-",
      u"-n $", u"-$ n", u"n $-", u"$ n-", u"$ -n", u"n- $", u"($ n)", u"(n $)"};
  auto expand = [&](std::u16string_view pattern) {
    std::u16string out;
    for (char16_t c : pattern) {
      if (c == u'$') {
        out += s;
      } else if (c == u'n') {
        out += n;
      } else {
        out.push_back(c);
      }
    }
    return out;
  };
  int pos = loc.currency_positive >= 0 && loc.currency_positive < 4 ? loc.currency_positive : 0;
  int neg = loc.currency_negative >= 0 && loc.currency_negative < 16 ? loc.currency_negative : 0;
  return expand(kPositive[pos]) + u";" + expand(kNegative[neg]);
}

enum class Named { kNone, kGeneralNumber, kTrueFalse, kYesNo, kOnOff, kMediumDate, kText };

// The format a named format stands for, or kNone.
Named ExpandNamed(std::u16string_view f, const LocaleSettings& loc, std::u16string* out) {
  struct Entry {
    std::u16string_view name;
    Named kind;
    std::u16string_view text;
  };
  static constexpr Entry kNamed[] = {
      {u"General Number", Named::kGeneralNumber, u""},
      {u"Currency", Named::kText, u""},
      {u"Fixed", Named::kText, u""},
      {u"Standard", Named::kText, u""},
      {u"Percent", Named::kText, u"0.00%"},
      {u"Scientific", Named::kText, u"0.00E+00"},
      {u"Yes/No", Named::kYesNo, u""},
      {u"True/False", Named::kTrueFalse, u""},
      {u"On/Off", Named::kOnOff, u""},
      {u"General Date", Named::kText, u"c"},
      {u"Long Date", Named::kText, u"dddddd"},
      {u"Medium Date", Named::kMediumDate, u""},
      {u"Short Date", Named::kText, u"ddddd"},
      {u"Long Time", Named::kText, u"ttttt"},
      {u"Medium Time", Named::kText, u"hh:nn AMPM"},
      {u"Short Time", Named::kText, u"hh:nn"},
  };
  if (f.size() < 5 || f.size() > 14) return Named::kNone;
  for (const Entry& e : kNamed) {
    if (!EqualsIgnoringCase(f, e.name)) continue;
    if (e.name == u"Currency") {
      *out = CurrencyFormat(loc);
    } else if (e.name == u"Fixed") {
      *out = NumberFormat(loc, false);
    } else if (e.name == u"Standard") {
      *out = NumberFormat(loc, true);
    } else {
      *out = e.text;
    }
    return e.kind;
  }
  return Named::kNone;
}

// ---------------------------------------------------------------------------
// Compiling.

class Compiler {
 public:
  Compiler(CompiledFormat* out) : out_(*out), s_(out->text) {}

  FormatStatus Run() {
    out_.kind = FormatKind::kLiteral;
    size_t section = 0;
    size_t section_start = 0;
    Open(0);
    for (i_ = 0; i_ < s_.size();) {
      char16_t c = s_[i_];
      if (c == u';') {
        Close(section, section_start);
        if (++section > 3) return FormatStatus::kTooManySections;
        ++i_;
        section_start = i_;
        Open(section);
        continue;
      }
      Item(c);
    }
    Close(section, section_start);
    if (out_.kind == FormatKind::kNumber) {
      for (FormatSection& sec : out_.sections) Layout(sec);
    }
    return FormatStatus::kOk;
  }

 private:
  bool Could(FormatKind k) const { return out_.kind == FormatKind::kLiteral || out_.kind == k; }

  void Open(size_t section) {
    sec_ = &out_.sections[section];
    *sec_ = FormatSection();
    sec_->first = static_cast<uint32_t>(out_.tokens.size());
    point_ = false;
    hour_seen_ = false;
    minute_written_ = false;
  }

  void Close(size_t section, size_t start) {
    FormatSection& sec = out_.sections[section];
    sec.last = static_cast<uint32_t>(out_.tokens.size());
    sec.present = i_ > start;
  }

  void Add(FormatOp op, uint8_t arg = 0, uint32_t pos = 0, uint32_t len = 0) {
    out_.tokens.push_back({op, arg, pos, len});
  }

  // Literal text [pos, pos + len), merged with a literal right before it.
  void Literal(size_t pos, size_t len) {
    if (len == 0) return;
    if (out_.tokens.size() > sec_->first) {
      FormatToken& t = out_.tokens.back();
      if (t.op == FormatOp::kLiteral && t.pos + t.len == pos) {
        t.len += static_cast<uint32_t>(len);
        return;
      }
    }
    Add(FormatOp::kLiteral, 0, static_cast<uint32_t>(pos), static_cast<uint32_t>(len));
  }

  size_t Run(char16_t lower_letter, size_t max) const {
    size_t n = 0;
    while (i_ + n < s_.size() && n < max && Lower(s_[i_ + n]) == lower_letter) ++n;
    return n;
  }

  void Date(FormatOp op, size_t consumed) {
    out_.kind = FormatKind::kDate;
    Add(op);
    i_ += consumed;
  }

  void Item(char16_t c) {
    const char16_t next = i_ + 1 < s_.size() ? s_[i_ + 1] : u'\0';
    const char16_t lc = Lower(c);
    if (c == u'\\') {
      Literal(i_ + 1, i_ + 1 < s_.size() ? 1 : 0);
      i_ += 2;
      return;
    }
    if (c == u'"') {
      size_t end = s_.find(u'"', i_ + 1);
      if (end == std::u16string::npos) end = s_.size();
      Literal(i_ + 1, end - i_ - 1);
      i_ = end + 1;
      return;
    }
    // Numbers.
    if ((c == u'0' || c == u'#') && Could(FormatKind::kNumber)) {
      out_.kind = FormatKind::kNumber;
      Add(c == u'0' ? FormatOp::kDigitZero : FormatOp::kDigitOptional);
      ++i_;
      return;
    }
    if (c == u'.' && !point_ && Could(FormatKind::kNumber)) {
      out_.kind = FormatKind::kNumber;
      point_ = true;
      Add(FormatOp::kPoint);
      ++i_;
      return;
    }
    if (out_.kind == FormatKind::kNumber) {
      if (c == u',') {
        Add(FormatOp::kComma);
        ++i_;
        return;
      }
      if (c == u'%') sec_->percent = true;  // and the character itself shows
      if (lc == u'e' && (next == u'+' || next == u'-')) {
        uint8_t arg = (c == u'E' ? kExponentUpper : 0) | (next == u'+' ? kExponentPlus : 0);
        i_ += 2;
        uint32_t zeros = 0;
        while (i_ < s_.size() && (s_[i_] == u'0' || s_[i_] == u'#')) zeros += s_[i_++] == u'0';
        sec_->exponent = true;
        Add(FormatOp::kExponent, arg, 0, zeros);
        return;
      }
    }
    // Dates.
    if (Could(FormatKind::kDate)) {
      if (StartsIgnoringCase(s_, i_, u"ampm")) {
        sec_->twelve_hour = true;
        return Date(FormatOp::kAmPmLocale, 4);
      }
      if (s_.compare(i_, 5, u"AM/PM") == 0 || s_.compare(i_, 5, u"am/pm") == 0) {
        sec_->twelve_hour = true;
        return Date(c == u'A' ? FormatOp::kAmPmUpper : FormatOp::kAmPmLower, 5);
      }
      if (lc == u'a' && next == u'/' && i_ + 2 < s_.size() && Lower(s_[i_ + 2]) == u'p') {
        sec_->twelve_hour = true;
        return Date(c == u'A' ? FormatOp::kAPUpper : FormatOp::kAPLower, 3);
      }
      switch (lc) {
        case u'/':
          return Date(FormatOp::kDateSeparator, 1);
        case u':':
          return Date(FormatOp::kTimeSeparator, 1);
        case u'c':
          return Date(FormatOp::kGeneralDate, 1);
        case u'd': {
          static constexpr FormatOp kOps[] = {
              FormatOp::kDay,     FormatOp::kDay2,      FormatOp::kDayAbbreviation,
              FormatOp::kDayName, FormatOp::kShortDate, FormatOp::kLongDate};
          size_t n = Run(u'd', 6);
          hour_seen_ = false;
          return Date(kOps[n - 1], n);
        }
        case u'w': {
          size_t n = Run(u'w', 2);
          return Date(n == 1 ? FormatOp::kWeekday : FormatOp::kWeekOfYear, n);
        }
        case u'm': {
          size_t n = Run(u'm', 4);
          if (n <= 2 && hour_seen_ && !minute_written_) {
            minute_written_ = true;
            return Date(n == 1 ? FormatOp::kMinute : FormatOp::kMinute2, n);
          }
          static constexpr FormatOp kOps[] = {FormatOp::kMonth, FormatOp::kMonth2,
                                              FormatOp::kMonthAbbreviation, FormatOp::kMonthName};
          return Date(kOps[n - 1], n);
        }
        case u'q':
          return Date(FormatOp::kQuarter, 1);
        case u'y': {
          size_t n = Run(u'y', 4);
          if (n == 3) n = 2;  // "yyy" is "yy" then "y"
          return Date(n == 1   ? FormatOp::kDayOfYear
                      : n == 2 ? FormatOp::kYear2
                               : FormatOp::kYear4,
                      n);
        }
        case u'h': {
          size_t n = Run(u'h', 2);
          hour_seen_ = true;
          minute_written_ = false;
          return Date(n == 1 ? FormatOp::kHour : FormatOp::kHour2, n);
        }
        case u'n': {
          size_t n = Run(u'n', 2);
          return Date(n == 1 ? FormatOp::kMinute : FormatOp::kMinute2, n);
        }
        case u's': {
          size_t n = Run(u's', 2);
          return Date(n == 1 ? FormatOp::kSecond : FormatOp::kSecond2, n);
        }
        case u't':
          if (Run(u't', 5) == 5) return Date(FormatOp::kLongTime, 5);
          break;
        default:
          break;
      }
    }
    // Strings.
    if (Could(FormatKind::kString)) {
      switch (c) {
        case u'@':
        case u'&':
          out_.kind = FormatKind::kString;
          ++sec_->char_count;
          Add(c == u'@' ? FormatOp::kCharOrSpace : FormatOp::kCharOrNothing);
          ++i_;
          return;
        case u'<':
        case u'>':
        case u'!':
          out_.kind = FormatKind::kString;
          (c == u'<' ? sec_->lower : c == u'>' ? sec_->upper : sec_->left_to_right) = true;
          ++i_;
          return;
        default:
          break;
      }
    }
    Literal(i_, 1);
    ++i_;
  }

  // Digit counts, and what each comma does: with a digit placeholder after it
  // (before the point) it groups thousands, otherwise it scales by 1000.
  void Layout(FormatSection& sec) {
    bool point = false, first_zero_seen = false, digit_before = false;
    int frac_index = 0;
    for (uint32_t k = sec.first; k < sec.last; ++k) {
      FormatOp op = out_.tokens[k].op;
      if (op == FormatOp::kPoint) {
        point = true;
        sec.has_digits = true;
      } else if (op == FormatOp::kDigitZero || op == FormatOp::kDigitOptional) {
        sec.has_digits = true;
        if (!point) {
          ++sec.int_digits;
          if (op == FormatOp::kDigitZero) first_zero_seen = true;
          if (first_zero_seen) ++sec.int_min;
          digit_before = true;
        } else {
          ++frac_index;
          ++sec.frac_digits;
          if (op == FormatOp::kDigitZero) sec.frac_min = static_cast<uint32_t>(frac_index);
        }
      } else if (op == FormatOp::kComma && !point && digit_before) {
        bool digit_after = false;
        for (uint32_t j = k + 1; j < sec.last; ++j) {
          FormatOp o = out_.tokens[j].op;
          if (o == FormatOp::kPoint || o == FormatOp::kExponent) break;
          if (o == FormatOp::kDigitZero || o == FormatOp::kDigitOptional) {
            digit_after = true;
            break;
          }
        }
        if (digit_after) {
          sec.grouping = true;
        } else {
          ++sec.scale;
        }
      }
    }
  }

  CompiledFormat& out_;
  const std::u16string& s_;
  size_t i_ = 0;
  FormatSection* sec_ = nullptr;
  bool point_ = false;
  bool hour_seen_ = false;
  bool minute_written_ = false;
};

// ---------------------------------------------------------------------------
// Numbers.

// Rounds |n| half away from zero to keep `keep` digits (counted from the
// first); keep <= 0 rounds to a power of ten. The result may gain a digit.
void RoundDigits(DecimalNumber& n, int keep) {
  if (n.count <= keep) return;
  if (keep < 0) {
    n.count = 0;
    n.exponent = 0;
    return;
  }
  bool up = n.digits[keep] >= '5';
  n.exponent += n.count - keep;
  n.count = keep;
  if (up) {
    int k = keep - 1;
    while (k >= 0 && n.digits[k] == '9') --k;
    if (k < 0) {
      // 999 -> 1000: one digit "1" at a higher power.
      n.exponent += n.count;
      n.digits[0] = '1';
      n.count = 1;
    } else {
      ++n.digits[k];
      n.count = k + 1;
      n.exponent += keep - n.count;
    }
  }
  while (n.count > 0 && n.digits[n.count - 1] == '0') {
    --n.count;
    ++n.exponent;
  }
  if (n.count == 0) n.exponent = 0;
}

// The digit strings a number section lays out.
struct NumberLayout {
  char whole[400];
  int whole_len = 0;
  char frac[400];
  int frac_len = 0;
  int32_t exponent = 0;  // shown exponent, for exponent formats
};

void LayoutNumber(DecimalNumber n, const FormatSection& sec, NumberLayout* out) {
  NumberLayout& l = *out;
  if (n.count) {
    int64_t e = static_cast<int64_t>(n.exponent) + (sec.percent ? 2 : 0) - 3 * sec.scale;
    n.exponent = static_cast<int32_t>(e < -100000 ? -100000 : e > 100000 ? 100000 : e);
  }
  const int frac_cap = sec.frac_digits < 300 ? static_cast<int>(sec.frac_digits) : 300;
  if (sec.exponent) {
    int p = sec.int_digits < 300 ? static_cast<int>(sec.int_digits) : 300;
    int shown = 0;
    if (n.count) {
      RoundDigits(n, p + frac_cap);
      int x = n.count + n.exponent - 1;  // power of ten of the leading digit
      shown = p > 0 ? x - (p - 1) : x + 1;
    }
    l.exponent = shown;
    // Mantissa digits: the first p are whole, the rest fraction.
    if (n.count) {
      for (int k = 0; k < p; ++k) l.whole[l.whole_len++] = k < n.count ? n.digits[k] : '0';
      for (int k = p; k < n.count && l.frac_len < frac_cap; ++k) l.frac[l.frac_len++] = n.digits[k];
    }
  } else {
    if (n.count) {
      int64_t keep = static_cast<int64_t>(n.count) + n.exponent + frac_cap;
      if (keep < n.count) RoundDigits(n, static_cast<int>(keep < -1 ? -1 : keep));
    }
    if (n.count) {
      int64_t whole = static_cast<int64_t>(n.count) + n.exponent;
      if (whole > 390) whole = 390;  // beyond any Double: never reached by real values
      for (int64_t k = 0; k < whole; ++k) l.whole[l.whole_len++] = k < n.count ? n.digits[k] : '0';
      // After rounding, the fraction ends with the last digit and fits frac_cap.
      int64_t available = n.count - whole;
      l.frac_len = static_cast<int>(available < 0          ? 0
                                    : available > frac_cap ? frac_cap
                                                           : available);
      for (int f = 0; f < l.frac_len; ++f) {
        int64_t k = whole + f;
        l.frac[f] = k < 0 ? '0' : n.digits[k];
      }
    }
  }
  const int frac_min = sec.frac_min < 300 ? static_cast<int>(sec.frac_min) : 300;
  while (l.frac_len > frac_min && l.frac[l.frac_len - 1] == '0') --l.frac_len;
  while (l.frac_len < frac_min) l.frac[l.frac_len++] = '0';
  int int_min = sec.int_min < 300 ? static_cast<int>(sec.int_min) : 300;
  if (l.whole_len < int_min) {
    int pad = int_min - l.whole_len;
    std::memmove(l.whole + pad, l.whole, static_cast<size_t>(l.whole_len));
    for (int k = 0; k < pad; ++k) l.whole[k] = '0';
    l.whole_len = int_min;
  }
}

void FormatNumber(TextBuffer& out, const DecimalNumber& n, bool show_minus, const CompiledFormat& f,
                  const FormatSection& sec, const LocaleSettings& loc) {
  NumberLayout l;
  LayoutNumber(n, sec, &l);
  if (show_minus && sec.has_digits) out.Append(u'-');
  const std::u16string_view group = loc.thousands_separator.view();
  int64_t placeholder = 0, frac_placeholder = 0;
  bool after_point = false;
  const int64_t p = sec.int_digits;
  auto put_whole = [&](int j) {
    out.Append(static_cast<char16_t>(l.whole[j]));
    int left = l.whole_len - 1 - j;
    if (sec.grouping && left > 0 && left % 3 == 0) out.Append(group);
  };
  for (uint32_t k = sec.first; k < sec.last; ++k) {
    const FormatToken& t = f.tokens[k];
    switch (t.op) {
      case FormatOp::kLiteral:
        out.Append(std::u16string_view(f.text).substr(t.pos, t.len));
        break;
      case FormatOp::kDigitZero:
      case FormatOp::kDigitOptional:
        if (after_point) {
          if (frac_placeholder < l.frac_len)
            out.Append(static_cast<char16_t>(l.frac[frac_placeholder]));
          ++frac_placeholder;
        } else {
          int64_t first = placeholder == 0 ? 0 : placeholder + l.whole_len - p;
          int64_t last = placeholder + l.whole_len - p;  // inclusive
          for (int64_t j = first < 0 ? 0 : first; j <= last && j < l.whole_len; ++j) {
            put_whole(static_cast<int>(j));
          }
          ++placeholder;
        }
        break;
      case FormatOp::kPoint:
        after_point = true;
        out.Append(loc.decimal_separator.view());
        break;
      case FormatOp::kExponent: {
        out.Append(t.arg & kExponentUpper ? u'E' : u'e');
        if (l.exponent < 0) {
          out.Append(u'-');
        } else if (t.arg & kExponentPlus) {
          out.Append(u'+');
        }
        int32_t e = l.exponent < 0 ? -l.exponent : l.exponent;
        out.AppendNumber(e, static_cast<int>(t.len < 20 ? (t.len ? t.len : 1) : 20));
        break;
      }
      default:
        break;
    }
  }
}

// ---------------------------------------------------------------------------
// Dates.

void FormatDate(TextBuffer& out, double serial, const DateParts& p, const CompiledFormat& f,
                const FormatSection& sec, const LocaleSettings& loc) {
  const int hour = sec.twelve_hour ? (p.hour % 12 == 0 ? 12 : p.hour % 12) : p.hour;
  const bool am = p.hour < 12;
  for (uint32_t k = sec.first; k < sec.last; ++k) {
    const FormatToken& t = f.tokens[k];
    switch (t.op) {
      case FormatOp::kLiteral:
        out.Append(std::u16string_view(f.text).substr(t.pos, t.len));
        break;
      case FormatOp::kDateSeparator:
        out.Append(loc.date_separator.view());
        break;
      case FormatOp::kTimeSeparator:
        out.Append(loc.time_separator.view());
        break;
      case FormatOp::kGeneralDate:
        AppendDateText(out, serial, loc);
        break;
      case FormatOp::kDay:
        out.AppendNumber(p.day);
        break;
      case FormatOp::kDay2:
        out.AppendNumber(p.day, 2);
        break;
      case FormatOp::kDayAbbreviation:
        out.Append(loc.day_abbreviations[p.weekday - 1].view());
        break;
      case FormatOp::kDayName:
        out.Append(loc.day_names[p.weekday - 1].view());
        break;
      case FormatOp::kShortDate:
        AppendPicture(out, loc.short_date_patterns.front().view(), p, loc);
        break;
      case FormatOp::kLongDate:
        AppendPicture(out, loc.long_date_pattern.view(), p, loc);
        break;
      case FormatOp::kMediumDate:
        AppendPicture(out, loc.medium_date_pattern.view(), p, loc);
        break;
      case FormatOp::kWeekday:
        out.AppendNumber(p.weekday);
        break;
      case FormatOp::kWeekOfYear:
        out.AppendNumber(WeekOfYear(p));
        break;
      case FormatOp::kMonth:
        out.AppendNumber(p.month);
        break;
      case FormatOp::kMonth2:
        out.AppendNumber(p.month, 2);
        break;
      case FormatOp::kMonthAbbreviation:
        out.Append(loc.month_abbreviations[p.month - 1].view());
        break;
      case FormatOp::kMonthName:
        out.Append(loc.month_names[p.month - 1].view());
        break;
      case FormatOp::kQuarter:
        out.AppendNumber(Quarter(p));
        break;
      case FormatOp::kDayOfYear:
        out.AppendNumber(p.day_of_year);
        break;
      case FormatOp::kYear2:
        out.AppendNumber(p.year % 100, 2);
        break;
      case FormatOp::kYear4:
        out.AppendNumber(p.year);
        break;
      case FormatOp::kHour:
        out.AppendNumber(hour);
        break;
      case FormatOp::kHour2:
        out.AppendNumber(hour, 2);
        break;
      case FormatOp::kMinute:
        out.AppendNumber(p.minute);
        break;
      case FormatOp::kMinute2:
        out.AppendNumber(p.minute, 2);
        break;
      case FormatOp::kSecond:
        out.AppendNumber(p.second);
        break;
      case FormatOp::kSecond2:
        out.AppendNumber(p.second, 2);
        break;
      case FormatOp::kLongTime:
        AppendTimeText(out, p, loc);
        break;
      case FormatOp::kAmPmUpper:
        out.Append(am ? u"AM" : u"PM");
        break;
      case FormatOp::kAmPmLower:
        out.Append(am ? u"am" : u"pm");
        break;
      case FormatOp::kAPUpper:
        out.Append(am ? u'A' : u'P');
        break;
      case FormatOp::kAPLower:
        out.Append(am ? u'a' : u'p');
        break;
      case FormatOp::kAmPmLocale:
        out.Append((am ? loc.am_designator : loc.pm_designator).view());
        break;
      default:
        break;
    }
  }
}

// ---------------------------------------------------------------------------
// Strings.

void FormatString(TextBuffer& out, std::u16string_view src, const CompiledFormat& f,
                  const FormatSection& sec) {
  std::u16string text(src);
  if (sec.lower) {
    LowerCaseInPlace(text);
  } else if (sec.upper) {
    UpperCaseInPlace(text);
  }
  size_t next = 0;
  int64_t blanks = sec.left_to_right ? 0 : static_cast<int64_t>(sec.char_count) - text.size();
  for (uint32_t k = sec.first; k < sec.last; ++k) {
    const FormatToken& t = f.tokens[k];
    switch (t.op) {
      case FormatOp::kLiteral:
        out.Append(std::u16string_view(f.text).substr(t.pos, t.len));
        break;
      case FormatOp::kCharOrSpace:
        if (blanks > 0) {
          --blanks;
          out.Append(u' ');
        } else if (next < text.size()) {
          out.Append(text[next++]);
        } else {
          out.Append(u' ');
        }
        break;
      case FormatOp::kCharOrNothing:
        if (next < text.size()) out.Append(text[next++]);
        break;
      default:
        break;
    }
  }
  out.Append(std::u16string_view(text).substr(next));
}

// ---------------------------------------------------------------------------
// Values.

// The number a value stands for, as decimal digits; false when it has none
// (text that is neither a number nor a date, a Date out of range).
bool ValueDigits(const Variant& v, const LocaleSettings& loc, DecimalNumber* n) {
  switch (v.Type()) {
    case VarType::kEmpty:
      IntegerToDecimal(0, n);
      return true;
    case VarType::kBoolean:
      IntegerToDecimal(v.AsBoolean() ? -1 : 0, n);
      return true;
    case VarType::kInteger:
      IntegerToDecimal(v.AsInteger(), n);
      return true;
    case VarType::kLong:
      IntegerToDecimal(v.AsLong(), n);
      return true;
    case VarType::kCurrency:
      CurrencyToDecimal(v.AsCurrency(), n);
      return true;
    case VarType::kDouble:
      if (!std::isfinite(v.AsDouble())) return false;
      DoubleToDecimal(v.AsDouble(), n);
      return true;
    case VarType::kDate:
      if (!std::isfinite(v.AsDate().serial)) return false;
      DoubleToDecimal(v.AsDate().serial, n);
      return true;
    case VarType::kString: {
      std::u16string_view s = v.AsString().view();
      if (ScanNumber(s, loc, n) == ParseStatus::kOk) {
        if (n->radix_literal) {
          double d;
          if (ToDouble(*n, &d) != ParseStatus::kOk) return false;
          DoubleToDecimal(d, n);
        }
        return true;
      }
      double serial;
      if (TryParseDate(s, loc, DateParseMode::kDateTime, &serial) != ParseStatus::kOk) return false;
      DoubleToDecimal(serial, n);
      return true;
    }
    case VarType::kNull:
      break;
  }
  return false;
}

bool ValueSerial(const Variant& v, const LocaleSettings& loc, double* serial) {
  switch (v.Type()) {
    case VarType::kDate:
      *serial = v.AsDate().serial;
      return true;
    case VarType::kDouble:
      *serial = v.AsDouble();
      return true;
    case VarType::kString: {
      std::u16string_view s = v.AsString().view();
      if (TryParseDouble(s, loc, serial) == ParseStatus::kOk) return true;
      return TryParseDate(s, loc, DateParseMode::kDateTime, serial) == ParseStatus::kOk;
    }
    case VarType::kNull:
      return false;
    default: {
      DecimalNumber n;
      if (!ValueDigits(v, loc, &n)) return false;
      return ToDouble(n, serial) == ParseStatus::kOk;
    }
  }
}

const FormatSection& SectionOr(const CompiledFormat& f, int index) {
  return f.sections[index].present ? f.sections[index] : f.sections[0];
}

// Falls back to the value's own text (Null gives "").
String PlainText(const Variant& value, const LocaleSettings& loc) {
  TextBuffer b;
  AppendVariantText(b, value, loc);
  return b.ToString();
}

struct FormatCache {
  struct Entry {
    std::u16string key;
    std::shared_ptr<const CompiledFormat> format;
  };
  static constexpr size_t kSize = 16;
  std::array<Entry, kSize> entries;
  size_t next = 0;
};

std::shared_ptr<const CompiledFormat> Compile(std::u16string_view format,
                                              const LocaleSettings& loc) {
  auto f = std::make_shared<CompiledFormat>();
  if (CompileFormat(format, loc, f.get()) != FormatStatus::kOk) Raise(kInvalidProcedureCall);
  return f;
}

}  // namespace

FormatStatus CompileFormat(std::u16string_view format, const LocaleSettings& locale,
                           CompiledFormat* out) {
  *out = CompiledFormat();
  std::u16string expanded;
  const Named named = ExpandNamed(format, locale, &expanded);
  switch (named) {
    case Named::kNone:
      out->text.assign(format);
      break;
    case Named::kGeneralNumber:
      out->kind = FormatKind::kGeneral;
      out->sections[0].present = true;
      return FormatStatus::kOk;
    case Named::kTrueFalse:
    case Named::kYesNo:
    case Named::kOnOff:
      out->kind = FormatKind::kBoolean;
      out->tokens.push_back({named == Named::kTrueFalse ? FormatOp::kTrueFalse
                             : named == Named::kYesNo   ? FormatOp::kYesNo
                                                        : FormatOp::kOnOff});
      out->sections[0].present = true;
      out->sections[0].last = 1;
      return FormatStatus::kOk;
    case Named::kMediumDate:
      out->kind = FormatKind::kDate;
      out->tokens.push_back({FormatOp::kMediumDate});
      out->sections[0].present = true;
      out->sections[0].last = 1;
      return FormatStatus::kOk;
    case Named::kText:
      out->text = std::move(expanded);
      break;
  }
  if (out->text.empty()) {
    out->kind = FormatKind::kGeneral;
    return FormatStatus::kOk;
  }
  return Compiler(out).Run();
}

String FormatCompiled(const Variant& value, const CompiledFormat& f, const LocaleSettings& loc) {
  TextBuffer out;
  switch (f.kind) {
    case FormatKind::kGeneral:
      return PlainText(value, loc);
    case FormatKind::kBoolean: {
      if (value.IsNull()) return String();
      DecimalNumber n;
      if (!ValueDigits(value, loc, &n)) return PlainText(value, loc);
      bool yes = n.count != 0;
      switch (f.tokens[0].op) {
        case FormatOp::kYesNo:
          return String(yes ? u"Yes" : u"No");
        case FormatOp::kOnOff:
          return String(yes ? u"On" : u"Off");
        default:
          return String(yes ? u"True" : u"False");
      }
    }
    case FormatKind::kNumber:
    case FormatKind::kLiteral:
      if (f.kind == FormatKind::kLiteral && value.Type() == VarType::kString) break;
      if (f.kind == FormatKind::kLiteral && value.Type() == VarType::kDate) {
        DateParts p;
        if (!SplitDate(value.AsDate().serial, &p)) return PlainText(value, loc);
        FormatDate(out, value.AsDate().serial, p, f, f.sections[0], loc);
        return out.ToString();
      }
      {
        if (value.IsNull()) {
          if (!f.sections[3].present) return String();
          DecimalNumber zero;
          IntegerToDecimal(0, &zero);
          FormatNumber(out, zero, false, f, f.sections[3], loc);
          return out.ToString();
        }
        DecimalNumber n;
        if (!ValueDigits(value, loc, &n)) return PlainText(value, loc);
        const FormatSection* sec;
        bool minus = false;
        if (value.IsEmpty() && f.sections[3].present) {
          sec = &f.sections[3];
        } else if (n.count == 0) {
          sec = &SectionOr(f, 2);
        } else if (n.negative) {
          minus = !f.sections[1].present;
          sec = &SectionOr(f, 1);
        } else {
          sec = &f.sections[0];
        }
        FormatNumber(out, n, minus, f, *sec, loc);
        return out.ToString();
      }
    case FormatKind::kDate: {
      if (value.IsNull()) return String();
      double serial = 0;
      DateParts p;
      if ((!value.IsEmpty() && !ValueSerial(value, loc, &serial)) || !SplitDate(serial, &p)) {
        return PlainText(value, loc);
      }
      FormatDate(out, serial, p, f, f.sections[0], loc);
      return out.ToString();
    }
    case FormatKind::kString:
      break;
  }
  // Strings (and literal-only formats applied to text).
  TextBuffer src;
  if (!value.IsNull()) AppendVariantText(src, value, loc);
  const FormatSection& sec = src.size() == 0 ? SectionOr(f, 1) : f.sections[0];
  FormatString(out, src.view(), f, sec);
  return out.ToString();
}

String VarFormat(const Variant& value, std::u16string_view format, const LocaleSettings& locale) {
  ThreadState& state = State();
  if (&locale != &state.locale) return FormatCompiled(value, *Compile(format, locale), locale);
  FormatCache& cache = state.Slot<FormatCache>();
  for (const FormatCache::Entry& e : cache.entries) {
    if (e.format && e.key == format) return FormatCompiled(value, *e.format, locale);
  }
  FormatCache::Entry& slot = cache.entries[cache.next];
  cache.next = (cache.next + 1) % FormatCache::kSize;
  slot.format = Compile(format, locale);
  slot.key.assign(format);
  return FormatCompiled(value, *slot.format, locale);
}

String VarFormat(const Variant& value, std::u16string_view format) {
  return VarFormat(value, format, State().locale);
}

}  // namespace crvlib::internal
