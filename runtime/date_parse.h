// String to Date with the runtime's acceptance rules for the thread's locale
// (CDate; DateValue keeps the date part, TimeValue the time part).
//
// The text is read as up to six fields: numbers, month names or
// abbreviations (any case), with day names skipped and the locale's AM/PM
// designators (or a lone "a"/"p") attached to the number before them.
// Fields joined by ":" (or the locale's time separator, or "." where the
// locale's date separator is not ".") form the time: h:m or h:m:s; a lone
// number with AM/PM is an hour. The time comes before or after the date.
// The date has two fields (month and day of the current year) or three.
// Numbers are tried in the locale's order first (month-day-year,
// day-month-year or year-month-day), then in the orders that fit it, then
// in any order; a month name fixes its field. Two fields that cannot be a
// day and a month are read as a month and a year (the 1st of that month).
// Years 0 to 99 go through the two-digit window (1930-2029 by default);
// years run from 100 to 9999. Anything else is error 13.
//
//   en-US:  ParseDate(u"12/31/2004")       == 38352
//           ParseDate(u"31/12/2004")       == 38352   (no month 31: day first)
//           ParseDate(u"Dec 31, 2004 6:00 PM") == 38352.75
//           ParseDate(u"2.5")              == 2:05 AM (the point joins a time)
//           TimeValue(u"1/2/2003 14:24")   == 0.6           DateValue(u"14:24") == 0
#ifndef CRVLIB_RUNTIME_DATE_PARSE_H_
#define CRVLIB_RUNTIME_DATE_PARSE_H_

#include <cstdint>
#include <string_view>

#include "core/locale_settings.h"
#include "runtime/number_parse.h"

namespace crvlib::internal {

enum class DateParseMode {
  kDateTime,  // CDate
  kDateOnly,  // DateValue: the time is checked, then dropped
  kTimeOnly,  // TimeValue: the date is checked, then dropped
};

// Non-raising form; `current_year` supplies the year of a two-field date
// (0: the year of the system clock, local time).
// Returns kOk or kTypeMismatch; `*out` is set only on kOk. No heap use.
ParseStatus TryParseDate(std::u16string_view text, const LocaleSettings& locale, DateParseMode mode,
                         int32_t current_year, double* out);

// The same with the current year of the system clock (local time).
ParseStatus TryParseDate(std::u16string_view text, const LocaleSettings& locale, DateParseMode mode,
                         double* out);

// The year of today's date, local time.
int32_t CurrentYear();

// For the thread's locale, raising 13.
double ParseDate(std::u16string_view text);
double DateValue(std::u16string_view text);
double TimeValue(std::u16string_view text);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_DATE_PARSE_H_
