// Validations: the value checks and the range tests, in en-US unless a test
// says otherwise.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "crvlib/locale.h"
#include "crvlib/validations.h"
#include "tests/runtime/runtime_test_util.h"

namespace crvlib {
namespace {

using internal::U8;

// Values a check accepts and values it refuses.
struct CheckTable {
  const char* name;
  bool (*check)(const String&);
  std::vector<std::u16string_view> accepted, refused;
};

void ExpectTable(const CheckTable& t) {
  for (bool want : {true, false}) {
    for (std::u16string_view value : want ? t.accepted : t.refused) {
      SCOPED_TRACE(std::string(t.name) + "(\"" + U8(value) + "\")");
      EXPECT_EQ(t.check(value), want);
    }
  }
}

using ValueChecks = internal::EnUs;

TEST_F(ValueChecks, Checks) {
  const CheckTable kTables[] = {
      {"BooleanCheck",
       &Validations::BooleanCheck,
       {u"", u"yes", u"Inactive", u"-1", u"oFf"},
       {u"2", u"TRUE ", u"y,n", u"YES,", u"ACTIVEX"}},
      // The filters judge characters by their code page code: é is no ASCII
      // letter and ٣ no ASCII digit; a no-break space (160) and ‰ (137) are
      // dropped, while ٪, which the code page lacks, reads as "?" and stays.
      {"CurrencyCheck",
       &Validations::CurrencyCheck,
       {u"--1", u"$1,234.50", u"(12)", u"1-2-3", u"12%", u"\u00e91"},
       {u"", u"12e3", u"$", u"\u0663"}},
      {"PercentCheck",
       &Validations::PercentCheck,
       {u"12.5%", u"%12", u"-5", u"1.2.3", u"12\u00a0%", u"12\u2030"},
       {u"", u"%", u"12 %", u"%%", u"abc", u"1/2", u"12\u066a"}},
      {"IsNum",
       &Validations::IsNum,
       {u".", u"1.2.3", u"007", u"0123456789"},
       {u"", u"-1", u"1 2", u"1e3", u"1,000", u"\uff11", u"/",
        u":"}},  // '/' and ':' flank the digits
      // "." becomes "/" first, so "31.12.2005" is no time 31:12; en-US then
      // reads it day first because there is no month 31.
      {"DateCheck",
       &Validations::DateCheck,
       {u"31.12.2005", u"12.31.2005", u"Dec. 31 2005", u"14:24"},
       {u"", u"31.13.2005", u"1/1/2005 25:00"}},
      {"TimeCheck",
       &Validations::TimeCheck,
       {u"6:30 PM", u"2.5", u"12/31/2004"},
       {u"", u"31.12.2005", u"12:60"}},
  };
  for (const CheckTable& t : kTables) ExpectTable(t);
  SetThreadLocale("de-DE");
  ExpectTable({"DateCheck", &Validations::DateCheck, {u"31.12.2005"}, {u"14.30"}});
}

// Both bounds are included; dates compare without their time; only the
// value reads "." as "/"; RangeNum compares and then answers False anyway.
TEST_F(ValueChecks, Ranges) {
  struct Case {
    bool (*range)(const String&, const String&, const String&);
    std::u16string_view value, lower, upper;
    bool want;
  };
  constexpr auto kDate = &Validations::RangeDate, kTime = &Validations::RangeTime;
  const Case kCases[] = {
      {kDate, u"15.6.2005", u"1/1/2005", u"12/31/2005", true},
      {kDate, u"1/1/2005", u"1/1/2005", u"12/31/2005", true},
      {kDate, u"12/31/2005 23:59", u"1/1/2005", u"12/31/2005", true},
      {kDate, u"12/31/2004", u"1/1/2005", u"12/31/2005", false},
      {kDate, u"1/1/2006", u"1/1/2005", u"12/31/2005", false},
      {kDate, u"6/15/2005", u"1.1.2005", u"12/31/2005", false},
      {kDate, u"6/15/2005", u"1/1/2005", u"never", false},
      {kTime, u"9:00 AM", u"9:00", u"17:00", true},
      {kTime, u"5:00 PM", u"9:00", u"17:00", true},
      {kTime, u"17:00:01", u"9:00", u"17:00", false},
      {kTime, u"12/31/2004 18:00", u"17:00", u"19:00", true},
      {kTime, u"12:00", u"9:00", u"noon", false},
      {&Validations::RangeNum, u"5", u"1", u"10", false},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(U8(c.value) + " in " + U8(c.lower) + " .. " + U8(c.upper));
    EXPECT_EQ(c.range(c.value, c.lower, c.upper), c.want);
  }
}

}  // namespace
}  // namespace crvlib
