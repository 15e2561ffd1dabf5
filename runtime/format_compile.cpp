// CompileFormat: the format text, parsed once into tokens and per-section
// layout facts (how many digit placeholders, where the first "0" is,
// whether commas group or scale) that FormatCompiled then walks.
//
// A named format is first replaced by the format it stands for in the
// locale. The rest is one pass over the characters of the grammar in
// format.h: Item reads one item and hands placeholders to the handler of
// their kind (number, date, string); the first placeholder of the whole
// format fixes the kind, after which a placeholder of another kind is
// literal text. Number sections then get their layout from their tokens.
#include "runtime/format.h"

#include <string>

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

  // How many `lower_letter`s, in either case, stand at i_ (at most `max`).
  size_t RunLength(char16_t lower_letter, size_t max) const {
    size_t n = 0;
    while (i_ + n < s_.size() && n < max && Lower(s_[i_ + n]) == lower_letter) ++n;
    return n;
  }

  bool Date(FormatOp op, size_t consumed) {
    out_.kind = FormatKind::kDate;
    Add(op);
    i_ += consumed;
    return true;
  }

  // One item at i_: an escaped character, quoted text, a placeholder of the
  // format's kind, or a literal character.
  void Item(char16_t c) {
    switch (c) {
      case u'\\':
        Literal(i_ + 1, i_ + 1 < s_.size() ? 1 : 0);
        i_ += 2;
        return;
      case u'"': {
        size_t end = s_.find(u'"', i_ + 1);
        if (end == std::u16string::npos) end = s_.size();
        Literal(i_ + 1, end - i_ - 1);
        i_ = end + 1;
        return;
      }
      default:
        break;
    }
    const char16_t next = i_ + 1 < s_.size() ? s_[i_ + 1] : u'\0';
    if (NumberItem(c, next) || DateItem(c, next) || StringItem(c)) return;
    Literal(i_, 1);
    ++i_;
  }

  // Digit placeholders and the point open a number format; commas and
  // exponents count only in one. "%" marks the section and stays literal.
  bool NumberItem(char16_t c, char16_t next) {
    if ((c == u'0' || c == u'#') && Could(FormatKind::kNumber)) {
      out_.kind = FormatKind::kNumber;
      Add(c == u'0' ? FormatOp::kDigitZero : FormatOp::kDigitOptional);
      ++i_;
      return true;
    }
    if (c == u'.' && !point_ && Could(FormatKind::kNumber)) {
      out_.kind = FormatKind::kNumber;
      point_ = true;
      Add(FormatOp::kPoint);
      ++i_;
      return true;
    }
    if (out_.kind != FormatKind::kNumber) return false;
    if (c == u',') {
      Add(FormatOp::kComma);
      ++i_;
      return true;
    }
    if (c == u'%') sec_->percent = true;  // and the character itself shows
    if (Lower(c) == u'e' && (next == u'+' || next == u'-')) {
      uint8_t arg = (c == u'E' ? kExponentUpper : 0) | (next == u'+' ? kExponentPlus : 0);
      i_ += 2;
      uint32_t zeros = 0;
      while (i_ < s_.size() && (s_[i_] == u'0' || s_[i_] == u'#')) zeros += s_[i_++] == u'0';
      sec_->exponent = true;
      Add(FormatOp::kExponent, arg, 0, zeros);
      return true;
    }
    return false;
  }

  // Date placeholders, matched case-insensitively except AM/PM and am/pm.
  // "m" and "mm" right after an hour are minutes, once per hour.
  bool DateItem(char16_t c, char16_t next) {
    if (!Could(FormatKind::kDate)) return false;
    const char16_t lc = Lower(c);
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
        size_t n = RunLength(u'd', 6);
        hour_seen_ = false;
        return Date(kOps[n - 1], n);
      }
      case u'w': {
        size_t n = RunLength(u'w', 2);
        return Date(n == 1 ? FormatOp::kWeekday : FormatOp::kWeekOfYear, n);
      }
      case u'm': {
        size_t n = RunLength(u'm', 4);
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
        size_t n = RunLength(u'y', 4);
        if (n == 3) n = 2;  // "yyy" is "yy" then "y"
        return Date(n == 1   ? FormatOp::kDayOfYear
                    : n == 2 ? FormatOp::kYear2
                             : FormatOp::kYear4,
                    n);
      }
      case u'h': {
        size_t n = RunLength(u'h', 2);
        hour_seen_ = true;
        minute_written_ = false;
        return Date(n == 1 ? FormatOp::kHour : FormatOp::kHour2, n);
      }
      case u'n': {
        size_t n = RunLength(u'n', 2);
        return Date(n == 1 ? FormatOp::kMinute : FormatOp::kMinute2, n);
      }
      case u's': {
        size_t n = RunLength(u's', 2);
        return Date(n == 1 ? FormatOp::kSecond : FormatOp::kSecond2, n);
      }
      case u't':
        return RunLength(u't', 5) == 5 && Date(FormatOp::kLongTime, 5);
      default:
        return false;
    }
  }

  // Character placeholders, and the case and direction flags of a section.
  bool StringItem(char16_t c) {
    if (!Could(FormatKind::kString)) return false;
    switch (c) {
      case u'@':
      case u'&':
        out_.kind = FormatKind::kString;
        ++sec_->char_count;
        Add(c == u'@' ? FormatOp::kCharOrSpace : FormatOp::kCharOrNothing);
        ++i_;
        return true;
      case u'<':
      case u'>':
      case u'!':
        out_.kind = FormatKind::kString;
        (c == u'<' ? sec_->lower : c == u'>' ? sec_->upper : sec_->left_to_right) = true;
        ++i_;
        return true;
      default:
        return false;
    }
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

}  // namespace crvlib::internal
