// The automation Date: days since 30 December 1899 (day 0) with the time of
// day as the fraction. Before day 0 the whole part counts back and the
// fraction still counts forward from midnight (-1.25 is 29 Dec 1899 06:00).
// The calendar is the proleptic Gregorian one; dates run from 1 January 100
// (-657434) to 31 December 9999 (2958465).
//
//   SplitDate(38352.75, &p)   p.year == 2004, p.month == 12, p.day == 31,
//                             p.hour == 18, p.weekday == 6 (Friday; Sunday is 1)
//   DateSerial(1990 - 10, 8 - 2, 1 - 1) == DateSerial(1980, 5, 31)
//   DateSerial(29, 1, 1) is 1 Jan 2029, DateSerial(30, 1, 1) is 1 Jan 1930
#ifndef CRVLIB_RUNTIME_DATE_TIME_H_
#define CRVLIB_RUNTIME_DATE_TIME_H_

#include <cstdint>

namespace crvlib::internal {

inline constexpr double kMinDate = -657434.0;      // 1 Jan 100
inline constexpr double kMaxDate = 2958465.99999;  // 31 Dec 9999 23:59:59

struct DateParts {
  int32_t year = 1899, month = 12, day = 30;
  int32_t hour = 0, minute = 0, second = 0;
  int32_t weekday = 7;  // Sunday = 1 ... Saturday = 7
  int32_t day_of_year = 364;
};

// The parts of `serial`, the time rounded to the nearest second (a time that
// rounds to midnight moves to the next day). False when the serial is no
// date of the range above (or not a number).
bool SplitDate(double serial, DateParts* out);

// 28 to 31; 0 for a month outside 1..12.
int32_t DaysInMonth(int64_t year, int32_t month);

// Day number of a valid calendar date, and back.
int64_t DaysFromCivil(int64_t year, int32_t month, int32_t day);
void CivilFromDays(int64_t days, int32_t* year, int32_t* month, int32_t* day);

// The serial of a date and a time of day (0 <= seconds < 86400).
double MakeDate(int64_t days, int32_t seconds_of_day);

// A year of 0 to 99 read into the hundred years ending with `two_digit_year_max`.
int32_t ExpandYear(int32_t year, int32_t two_digit_year_max);

// DateSerial: months beyond 1..12 and days beyond the month carry into the
// year and the month (day 0 is the last day of the month before). Years 0 to
// 99 go through the two-digit window. kOverflow when an argument is outside
// -32768..32767 (the runtime's Integer), kOutOfRange for a date outside the
// years 100 to 9999.
enum class DateStatus { kOk, kOverflow, kOutOfRange };
DateStatus TryDateSerial(int32_t year, int32_t month, int32_t day, int32_t two_digit_year_max,
                         double* out);

// For the thread's locale window: raises 6 or 5 as above.
double DateSerial(int32_t year, int32_t month, int32_t day);

// Day of year and weekday helpers on a split date.
int32_t WeekOfYear(const DateParts& p);  // week 1 holds 1 January; weeks start on Sunday
int32_t Quarter(const DateParts& p);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_DATE_TIME_H_
