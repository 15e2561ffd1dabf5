// FormatCompiled: a value laid out by a compiled format. The value is first
// converted to what the format's kind needs (decimal digits for a number,
// date parts for a date, text for a string), the section is chosen by the
// value's sign, emptiness or Null, and the section's tokens are walked once.
// A value the kind cannot take comes back as its plain text.
#include "runtime/format.h"

#include <cmath>
#include <cstring>

#include "runtime/date_format.h"
#include "runtime/date_parse.h"
#include "runtime/date_time.h"
#include "runtime/letters.h"
#include "runtime/number_format.h"
#include "runtime/number_parse.h"
#include "runtime/text_buffer.h"
#include "runtime/variant_text.h"

namespace crvlib::internal {
namespace {

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

String RenderBoolean(const Variant& value, const CompiledFormat& f, const LocaleSettings& loc) {
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

// The section goes by the value: Null takes the fourth (or gives ""), Empty
// the fourth when there is one, zero the third, a negative the second (or
// the first with a leading minus), anything else the first.
String RenderNumber(const Variant& value, const CompiledFormat& f, const LocaleSettings& loc) {
  TextBuffer out;
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

String RenderDate(const Variant& value, const CompiledFormat& f, const LocaleSettings& loc) {
  if (value.IsNull()) return String();
  double serial = 0;
  DateParts p;
  if ((!value.IsEmpty() && !ValueSerial(value, loc, &serial)) || !SplitDate(serial, &p)) {
    return PlainText(value, loc);
  }
  TextBuffer out;
  FormatDate(out, serial, p, f, f.sections[0], loc);
  return out.ToString();
}

// Empty text (and Null) takes the second section when there is one.
String RenderString(const Variant& value, const CompiledFormat& f, const LocaleSettings& loc) {
  TextBuffer src;
  if (!value.IsNull()) AppendVariantText(src, value, loc);
  const FormatSection& sec = src.size() == 0 ? SectionOr(f, 1) : f.sections[0];
  TextBuffer out;
  FormatString(out, src.view(), f, sec);
  return out.ToString();
}

}  // namespace

String FormatCompiled(const Variant& value, const CompiledFormat& f, const LocaleSettings& loc) {
  switch (f.kind) {
    case FormatKind::kGeneral:
      return PlainText(value, loc);
    case FormatKind::kBoolean:
      return RenderBoolean(value, f, loc);
    case FormatKind::kNumber:
      return RenderNumber(value, f, loc);
    case FormatKind::kDate:
      return RenderDate(value, f, loc);
    case FormatKind::kLiteral:
      // Literal text alone is laid out as the value's own kind would be.
      if (value.Type() == VarType::kDate) return RenderDate(value, f, loc);
      if (value.Type() != VarType::kString) return RenderNumber(value, f, loc);
      break;
    case FormatKind::kString:
      break;
  }
  return RenderString(value, f, loc);
}

}  // namespace crvlib::internal
