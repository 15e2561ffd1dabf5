// Calendar arithmetic on day numbers (the days-from-civil algorithm, shifted
// so that day 0 is 30 December 1899), the split of a serial into parts, and
// the public Date's conversions to and from a calendar day built on them.
#include "runtime/date_time.h"

#include <cmath>

#include "core/error_frame.h"
#include "core/thread_state.h"
#include "crvlib/variant.h"

namespace crvlib::internal {
namespace {

// Days from 0000-03-01 to 1899-12-30 in the algorithm's count.
constexpr int64_t kEpochShift = 693899;  // DaysFromEpoch0(1899, 12, 30)

int64_t DaysFromEpoch0(int64_t y, int32_t m, int32_t d) {
  y -= m <= 2;
  int64_t era = (y >= 0 ? y : y - 399) / 400;
  int64_t yoe = y - era * 400;
  int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe;
}

}  // namespace

int32_t DaysInMonth(int64_t year, int32_t month) {
  static constexpr int8_t kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 0;
  bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return kDays[month - 1] + (month == 2 && leap);
}

int64_t DaysFromCivil(int64_t year, int32_t month, int32_t day) {
  return DaysFromEpoch0(year, month, day) - kEpochShift;
}

void CivilFromDays(int64_t days, int32_t* year, int32_t* month, int32_t* day) {
  int64_t z = days + kEpochShift;
  int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  int64_t doe = z - era * 146097;
  int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  int64_t mp = (5 * doy + 2) / 153;
  int64_t d = doy - (153 * mp + 2) / 5 + 1;
  int64_t m = mp < 10 ? mp + 3 : mp - 9;
  *year = static_cast<int32_t>(yoe + era * 400 + (m <= 2));
  *month = static_cast<int32_t>(m);
  *day = static_cast<int32_t>(d);
}

double MakeDate(int64_t days, int32_t seconds_of_day) {
  double fraction = seconds_of_day / 86400.0;
  return days < 0 ? static_cast<double>(days) - fraction : static_cast<double>(days) + fraction;
}

bool SplitDate(double serial, DateParts* out) {
  if (!(serial > kMinDate - 1 && serial < kMaxDate + 1)) return false;
  double whole = std::trunc(serial);
  double fraction = std::fabs(serial - whole);
  int64_t days = static_cast<int64_t>(whole);
  int64_t ms = std::llround(fraction * 86400000.0);
  int64_t seconds = (ms + 500) / 1000;
  if (seconds >= 86400) {
    seconds -= 86400;
    ++days;
  }
  if (days < static_cast<int64_t>(kMinDate) || days > static_cast<int64_t>(kMaxDate)) return false;
  DateParts& p = *out;
  CivilFromDays(days, &p.year, &p.month, &p.day);
  p.hour = static_cast<int32_t>(seconds / 3600);
  p.minute = static_cast<int32_t>(seconds / 60 % 60);
  p.second = static_cast<int32_t>(seconds % 60);
  // Day 1 (31 Dec 1899) was a Sunday.
  p.weekday = static_cast<int32_t>(((days - 1) % 7 + 7) % 7 + 1);
  p.day_of_year = static_cast<int32_t>(days - DaysFromCivil(p.year, 1, 1) + 1);
  return true;
}

int32_t ExpandYear(int32_t year, int32_t two_digit_year_max) {
  if (year < 0 || year > 99) return year;
  int32_t y = two_digit_year_max / 100 * 100 + year;
  return y > two_digit_year_max ? y - 100 : y;
}

DateStatus TryDateSerial(int32_t year, int32_t month, int32_t day, int32_t two_digit_year_max,
                         double* out) {
  auto in_integer = [](int32_t v) { return v >= -32768 && v <= 32767; };
  if (!in_integer(year) || !in_integer(month) || !in_integer(day)) return DateStatus::kOverflow;
  int64_t months = static_cast<int64_t>(ExpandYear(year, two_digit_year_max)) * 12 + (month - 1);
  int64_t y = months >= 0 ? months / 12 : (months - 11) / 12;
  int32_t m = static_cast<int32_t>(months - y * 12) + 1;
  int64_t days = DaysFromCivil(y, m, 1) + (day - 1);
  if (days < static_cast<int64_t>(kMinDate) || days > static_cast<int64_t>(kMaxDate)) {
    return DateStatus::kOutOfRange;
  }
  *out = static_cast<double>(days);
  return DateStatus::kOk;
}

double DateSerial(int32_t year, int32_t month, int32_t day) {
  double v = 0;
  switch (TryDateSerial(year, month, day, State().locale.two_digit_year_max, &v)) {
    case DateStatus::kOk:
      return v;
    case DateStatus::kOverflow:
      Raise(kOverflow);
    case DateStatus::kOutOfRange:
      break;
  }
  Raise(kInvalidProcedureCall);
}

int32_t WeekOfYear(const DateParts& p) {
  // Weekday of 1 January, Sunday = 0.
  int32_t jan1 = ((p.weekday - 1) - (p.day_of_year - 1)) % 7;
  if (jan1 < 0) jan1 += 7;
  return (p.day_of_year - 1 + jan1) / 7 + 1;
}

int32_t Quarter(const DateParts& p) {
  return (p.month - 1) / 3 + 1;
}

}  // namespace crvlib::internal

namespace crvlib {

std::optional<Date> Date::FromCivil(const CivilDateTime& c) {
  if (c.year < 100 || c.year > 9999 || c.day < 1 ||
      c.day > internal::DaysInMonth(c.year, c.month) || c.hour < 0 || c.hour > 23 || c.minute < 0 ||
      c.minute > 59 || c.second < 0 || c.second > 59) {
    return std::nullopt;
  }
  return Date{internal::MakeDate(internal::DaysFromCivil(c.year, c.month, c.day),
                                 c.hour * 3600 + c.minute * 60 + c.second)};
}

std::optional<CivilDateTime> Date::ToCivil() const {
  internal::DateParts p;
  if (!internal::SplitDate(serial, &p)) return std::nullopt;
  return CivilDateTime{p.year, p.month, p.day, p.hour, p.minute, p.second};
}

}  // namespace crvlib
