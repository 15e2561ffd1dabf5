// Date and time codes.
//
// A stored date is a whole number of days counted from 31 December 1967
// (day 0), 24837 days after the automation Date's day 0. Output reads the
// datum with Val, moves it onto the Date serial and formats it with the
// Format language ("dd mmm yyyy", "mm/dd/yy", "MMM", …); input parses the
// text with the runtime's string-to-date conversion and counts back.
//
// A stored time is a signed number of seconds since midnight. Output reads
// the datum as a Long, splits off hours, minutes and seconds and writes them
// two digits wide; input takes the time of day of a text the date parser
// accepts and otherwise reads up to three fields split at the locale's time
// separator, so durations such as "25:00" and "-30:15" convert too.
//
// Neither family raises. A date code gives "" for anything that fails. A
// time code runs statement by statement and goes on past a failed statement
// with what it had (a datum that is no number counts as 0 seconds), as its
// callers have always relied on.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "classes/conversion_codes.h"
#include "core/checked.h"
#include "core/error_frame.h"
#include "runtime/date_parse.h"
#include "runtime/date_time.h"
#include "runtime/format.h"
#include "runtime/number_parse.h"
#include "runtime/rounding.h"
#include "runtime/text_buffer.h"
#include "runtime/val.h"

namespace crvlib::internal {
namespace {

// The serial of day 0 of the stored form.
constexpr double kInternalDateOffset = 24837;

String DateInput(std::u16string_view data, const LocaleSettings& locale) {
  double serial;
  if (TryParseDate(data, locale, DateParseMode::kDateTime, &serial) != ParseStatus::kOk) {
    return String();
  }
  TextBuffer out;
  out.AppendNumber(static_cast<long long>(RoundHalfEven(serial) - kInternalDateOffset));
  return out.ToString();
}

// The Format pattern of a date code without a field name.
void AppendDatePattern(TextBuffer& pattern, const DateCode& code, const LocaleSettings& locale) {
  const int32_t years = code.year_digits;
  if (code.layout == DateLayout::kDayMonthYears) {
    pattern.Append(u"dd mmm");
    if (years > 0) {
      pattern.Append(u' ');
      pattern.Append(static_cast<size_t>(years), u'y');
    }
    return;
  }
  const char16_t s = code.separator;
  switch (locale.date_order) {
    case DateOrder::kMonthDayYear:
    case DateOrder::kDayMonthYear:
      pattern.Append(locale.date_order == DateOrder::kMonthDayYear ? u"mm" : u"dd");
      pattern.Append(s);
      pattern.Append(locale.date_order == DateOrder::kMonthDayYear ? u"dd" : u"mm");
      if (years > 0) {
        pattern.Append(s);
        pattern.Append(static_cast<size_t>(years), u'y');
      }
      break;
    case DateOrder::kYearMonthDay:
      if (years > 0) {
        pattern.Append(static_cast<size_t>(years), u'y');
        pattern.Append(s);
      }
      pattern.Append(u"mm");
      pattern.Append(s);
      pattern.Append(u"dd");
      break;
  }
}

String Formatted(double serial, std::u16string_view pattern, const LocaleSettings& locale) {
  String out;
  ResumeNext err;
  err([&] { out = VarFormat(Variant(Date{serial}), pattern, locale); });
  return out;
}

String DateOutput(std::u16string_view data, const DateCode& code, const LocaleSettings& locale) {
  double stored;
  if (TryVal(data, &stored) != ParseStatus::kOk) return String();
  const double serial = RoundHalfEven(stored + kInternalDateOffset);
  DateParts p;
  if (!(serial >= kMinDate && serial <= kMaxDate) || !SplitDate(serial, &p)) return String();

  if (code.layout != DateLayout::kField) {
    TextBuffer pattern;
    AppendDatePattern(pattern, code, locale);
    return Formatted(serial, pattern.view(), locale);
  }
  int32_t number = 0;
  switch (code.field) {
    case DateField::kUnknown:
      return String();
    case DateField::kMonthAbbreviation:
      return Formatted(serial, u"MMM", locale);
    case DateField::kWeekdayAbbreviation:
      return Formatted(serial, u"DDD", locale);
    case DateField::kDay:
      number = p.day;
      break;
    case DateField::kMonth:
      number = p.month;
      break;
    case DateField::kYear:
      number = p.year;
      break;
    case DateField::kDayOfYear:
      number = p.day_of_year;
      break;
    case DateField::kQuarter:
      number = (p.month - 1) / 3 + 1;
      break;
    case DateField::kWeekday:
      number = p.weekday - 1;
      break;
  }
  TextBuffer out;
  out.AppendNumber(number);
  return out.ToString();
}

String TimeInput(std::u16string_view data, const LocaleSettings& locale) {
  double serial;
  DateParts p;
  if (TryParseDate(data, locale, DateParseMode::kDateTime, &serial) == ParseStatus::kOk &&
      SplitDate(serial, &p)) {
    TextBuffer out;
    out.AppendNumber(p.hour * 3600 + p.minute * 60 + p.second);
    return out.ToString();
  }
  // Not a time of day: hours, minutes and seconds as numbers. Only the hour
  // field carries the sign, so "-0:30" is 0.
  const std::u16string_view sep = locale.time_separator.view();
  ResumeNext err;
  int32_t h = 0, m = 0, s = 0;
  err([&] { h = DoubleToLong(Val(FieldPrivate(data, sep, 1))); });
  const int32_t sign = (h > 0) - (h < 0);
  err([&] { h = CheckedLong(h < 0 ? -int64_t{h} : h); });
  err([&] { m = CheckedLong(std::abs(int64_t{DoubleToLong(Val(FieldPrivate(data, sep, 2)))})); });
  err([&] { s = CheckedLong(std::abs(int64_t{DoubleToLong(Val(FieldPrivate(data, sep, 3)))})); });
  String result;
  err([&] {
    const int32_t seconds = CheckedAdd(CheckedAdd(CheckedMul(h, 3600), CheckedMul(m, 60)), s);
    TextBuffer out;
    out.AppendNumber(CheckedMul(sign, seconds));
    result = out.ToString();
  });
  return result;
}

String TimeOutput(std::u16string_view data, const TimeCode& code, const LocaleSettings& locale) {
  ResumeNext err;
  int32_t t = 0;
  err([&] { t = ParseLong(data); });
  const int32_t sign = (t > 0) - (t < 0);
  err([&] { t = CheckedLong(t < 0 ? -int64_t{t} : t); });
  // Truncating division: a Long of -2^31 stays negative and its parts keep
  // the sign, as the runtime's \ and Mod give them.
  int32_t hours = t / 3600;
  const int32_t minutes = t % 3600 / 60;
  const int32_t seconds = t % 60;
  hours *= sign;  // |hours| < 2^31 / 3600: no overflow

  const std::u16string_view sep = locale.time_separator.view();
  const bool clock = code.twelve_hour && hours >= 0 && hours <= 23;
  TextBuffer out;
  out.AppendNumber(!clock ? hours : hours > 12 ? hours - 12 : hours == 0 ? 12 : hours, 2);
  out.Append(sep);
  out.AppendNumber(minutes, 2);
  if (code.seconds) {
    out.Append(sep);
    out.AppendNumber(seconds, 2);
  }
  // Hours 1 to 12 all read as morning, noon included ("12:00AM"): the form
  // stored data has always been shown in.
  if (clock) out.Append(hours > 12 ? locale.pm_designator.view() : locale.am_designator.view());
  return out.ToString();
}

}  // namespace

String ConvertDate(std::u16string_view data, const DateCode& code, bool input,
                   const LocaleSettings& locale) {
  return input ? DateInput(data, locale) : DateOutput(data, code, locale);
}

String ConvertTime(std::u16string_view data, const TimeCode& code, bool input,
                   const LocaleSettings& locale) {
  return input ? TimeInput(data, locale) : TimeOutput(data, code, locale);
}

std::u16string_view FieldPrivate(std::u16string_view text, std::u16string_view delimiter,
                                 int32_t n) {
  if (n < 0) return {};
  if (n == 0) return text;
  if (delimiter.empty()) return n == 1 ? text : std::u16string_view();
  size_t start = 0;
  for (int32_t i = 1;; ++i) {
    const size_t hit = text.find(delimiter, start);
    if (hit == std::u16string_view::npos)
      return i == n ? text.substr(start) : std::u16string_view();
    if (i == n) return text.substr(start, hit - start);
    start = hit + delimiter.size();
  }
}

}  // namespace crvlib::internal
