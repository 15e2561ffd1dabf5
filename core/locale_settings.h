// The locale settings of one thread: everything the conversions, the
// formatting and the parsing read from the user's locale. They are loaded once
// per thread by the start-up routine (thread_state.h) and never change after,
// unless the program pins another locale for the thread.
//
// The defaults are Windows' en-US settings (LCID 1033). Patterns use Windows'
// picture letters: d dd ddd dddd (day), M MM MMM MMMM (month), y yy yyyy
// (year), h hh H HH m mm s ss t tt (time), '...' quoted text.
#ifndef CRVLIB_CORE_LOCALE_SETTINGS_H_
#define CRVLIB_CORE_LOCALE_SETTINGS_H_

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "crvlib/string.h"

namespace crvlib::internal {

// Order of the fields of a short date, from the first short-date pattern.
enum class DateOrder : int16_t {
  kMonthDayYear = 0,
  kDayMonthYear = 1,
  kYearMonthDay = 2,
};

struct LocaleSettings {
  std::string name = "en-US";  // BCP 47 tag
  int32_t lcid = 1033;

  // The seven settings of the conversion engine.
  String thousands_separator = u",";
  String decimal_separator = u".";
  String currency_symbol = u"$";
  String date_separator = u"/";
  String time_separator = u":";
  String am_designator = u"AM";
  String pm_designator = u"PM";

  // Short-date patterns in the locale's order of preference; the first one
  // decides `date_order`.
  std::vector<String> short_date_patterns = {u"M/d/yyyy"};
  DateOrder date_order = DateOrder::kMonthDayYear;
  String long_date_pattern = u"dddd, MMMM d, yyyy";
  String time_pattern = u"h:mm:ss tt";
  // The "Medium Date" named format. It is not a Windows locale item: the
  // runtime takes it from its own (English) resources for every locale.
  String medium_date_pattern = u"dd-MMM-yy";

  std::array<String, 12> month_names = {u"January",   u"February", u"March",    u"April",
                                        u"May",       u"June",     u"July",     u"August",
                                        u"September", u"October",  u"November", u"December"};
  std::array<String, 12> month_abbreviations = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                                                u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
  // Sunday first.
  std::array<String, 7> day_names = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                     u"Thursday", u"Friday", u"Saturday"};
  std::array<String, 7> day_abbreviations = {u"Sun", u"Mon", u"Tue", u"Wed",
                                             u"Thu", u"Fri", u"Sat"};

  // Number and currency layout, as the Windows locale items of the same names.
  int32_t digits = 2;             // LOCALE_IDIGITS
  int32_t leading_zero = 1;       // LOCALE_ILZERO
  int32_t negative_number = 1;    // LOCALE_INEGNUMBER: 1 is "-1.1"
  int32_t currency_digits = 2;    // LOCALE_ICURRDIGITS
  int32_t currency_positive = 0;  // LOCALE_ICURRENCY: 0 is "$1.1"
  int32_t currency_negative = 0;  // LOCALE_INEGCURR: 0 is "($1.1)"
  String monetary_thousands_separator = u",";
  String monetary_decimal_separator = u".";

  // Two-digit years are read into the hundred years ending with this one
  // (Windows' TwoDigitYearMax): 2029 reads "29" as 2029 and "30" as 1930.
  int32_t two_digit_year_max = 2029;
};

}  // namespace crvlib::internal

#endif  // CRVLIB_CORE_LOCALE_SETTINGS_H_
