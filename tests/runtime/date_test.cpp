// Date serials and parts, DateSerial, and string to date (CDate, DateValue,
// TimeValue) in en-US and de-DE.
#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <vector>

#include "core/error_frame.h"
#include "core/thread_state.h"
#include "runtime/date_format.h"
#include "runtime/date_parse.h"
#include "runtime/date_time.h"
#include "runtime/variant_text.h"
#include "tests/runtime/runtime_test_util.h"
#include "tests/testing/raised.h"

namespace crvlib::internal {
namespace {

using DateTest = EnUs;
constexpr int32_t kYear = 2011;  // the "current year" the two-field rows are read in

double Serial(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
  return MakeDate(DaysFromCivil(y, m, d), h * 3600 + mi * 60 + s);
}

TEST_F(DateTest, SerialToParts) {
  struct Row {
    const char* source;
    double serial;
    DateParts want;
  };
  const Row rows[] = {
      {"win", 29221.0, {1980, 1, 1, 0, 0, 0, 3, 1}},
      {"win", 0.0, {1899, 12, 30, 0, 0, 0, 7, 364}},
      {"win", -657434.0, {100, 1, 1, 0, 0, 0, 6, 1}},
      {"win", 2958465.0, {9999, 12, 31, 0, 0, 0, 6, 365}},
      {"win", 29221.9888884444, {1980, 1, 1, 23, 44, 0, 3, 1}},
      {"hand", -1.25, {1899, 12, 29, 6, 0, 0, 6, 363}},
      {"hand", 38352.99999999, {2005, 1, 1, 0, 0, 0, 7, 1}},  // rounds over midnight
  };
  auto fields = [](const DateParts& p) {
    return std::vector<int32_t>{p.year,   p.month,  p.day,     p.hour,
                                p.minute, p.second, p.weekday, p.day_of_year};
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << r.serial);
    DateParts p;
    ASSERT_TRUE(SplitDate(r.serial, &p));
    EXPECT_EQ(fields(p), fields(r.want));
  }
  DateParts p;
  EXPECT_FALSE(SplitDate(-657435.0, &p));  // win: before 1 Jan 100
  EXPECT_FALSE(SplitDate(2958466.0, &p));  // win: after 31 Dec 9999
  EXPECT_FALSE(SplitDate(NAN, &p));
}

// The public calendar form of a Date: only days and times that exist, in the
// years 100 to 9999; before day 0 the time still counts forward.
TEST(Date, FromCivilTakesOnlyDaysAndTimesThatExist) {
  struct Row {
    CivilDateTime civil;
    std::optional<double> serial;
  };
  const Row rows[] = {
      {{2004, 12, 31, 18, 0, 0}, 38352.75},
      {{1899, 12, 29, 6, 0, 0}, -1.25},
      {{100, 1, 1, 0, 0, 0}, -657434.0},
      {{2004, 2, 29, 0, 0, 0}, 38046.0},
      {{9999, 12, 31, 23, 59, 59}, Serial(9999, 12, 31, 23, 59, 59)},
      {{2005, 2, 29, 0, 0, 0}, std::nullopt},
      {{99, 12, 31, 0, 0, 0}, std::nullopt},
      {{10000, 1, 1, 0, 0, 0}, std::nullopt},
      {{2004, 13, 1, 0, 0, 0}, std::nullopt},
      {{2004, 1, 0, 0, 0, 0}, std::nullopt},
      {{2004, 1, 1, 24, 0, 0}, std::nullopt},
      {{2004, 1, 1, 0, 60, 0}, std::nullopt},
      {{2004, 1, 1, 0, 0, -1}, std::nullopt},
  };
  for (const Row& r : rows) {
    const CivilDateTime& c = r.civil;
    SCOPED_TRACE(testing::Message() << c.year << "-" << c.month << "-" << c.day << " " << c.hour
                                    << ":" << c.minute << ":" << c.second);
    std::optional<Date> d = Date::FromCivil(c);
    ASSERT_EQ(d.has_value(), r.serial.has_value());
    if (!d) continue;
    EXPECT_EQ(d->serial, *r.serial);
    std::optional<CivilDateTime> back = d->ToCivil();
    ASSERT_TRUE(back);
    EXPECT_EQ(std::vector<int32_t>(
                  {back->year, back->month, back->day, back->hour, back->minute, back->second}),
              std::vector<int32_t>({c.year, c.month, c.day, c.hour, c.minute, c.second}));
  }
  EXPECT_FALSE(Date{NAN}.ToCivil());
  EXPECT_FALSE(Date{2958466.0}.ToCivil());
}

// Day numbers against a naive walk, one day at a time, across leap years.
TEST_F(DateTest, DayNumbersAgreeWithADayByDayWalk) {
  int y = 1899, m = 12, d = 30;
  for (int64_t days = 0; days < 80000; ++days) {
    int32_t yy, mm, dd;
    CivilFromDays(days, &yy, &mm, &dd);
    ASSERT_EQ(yy, y);
    ASSERT_EQ(mm, m);
    ASSERT_EQ(dd, d);
    ASSERT_EQ(DaysFromCivil(y, m, d), days);
    if (++d > DaysInMonth(y, m)) {
      d = 1;
      if (++m > 12) m = 1, ++y;
    }
  }
}

TEST_F(DateTest, DateSerialCarriesMonthsAndDays) {
  struct Row {
    const char* source;
    int y, m, d;
    double want;
  };
  const Row rows[] = {
      {"doc", 1990 - 10, 8 - 2, 1 - 1, Serial(1980, 5, 31)},
      {"win", 1980, 1, 0, 29220.0},
      {"doc", 29, 1, 1, Serial(2029, 1, 1)},
      {"doc", 30, 1, 1, Serial(1930, 1, 1)},
      {"hand", 99, 13, 1, Serial(2000, 1, 1)},
      {"hand", 2000, -1, 1, Serial(1999, 11, 1)},
      {"hand", 2004, 2, 30, Serial(2004, 3, 1)},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << r.y << "-" << r.m << "-" << r.d);
    EXPECT_EQ(DateSerial(r.y, r.m, r.d), r.want);
  }
  double v;
  EXPECT_EQ(TryDateSerial(10000, 1, 1, 2029, &v), DateStatus::kOutOfRange);
  EXPECT_EQ(TryDateSerial(2000, 1, 40000, 2029, &v), DateStatus::kOverflow);
  // The window is a setting: 1950-2049 reads "49" as 2049 and "50" as 1950.
  EXPECT_EQ(TryDateSerial(49, 1, 1, 2049, &v), DateStatus::kOk);
  EXPECT_EQ(v, Serial(2049, 1, 1));
  EXPECT_EQ(TryDateSerial(50, 1, 1, 2049, &v), DateStatus::kOk);
  EXPECT_EQ(v, Serial(1950, 1, 1));
}

struct ParseRow {
  const char* source;
  std::u16string_view text;
  double want;  // NAN: error 13
};

void CheckParse(const ParseRow* rows, size_t n, DateParseMode mode = DateParseMode::kDateTime) {
  for (size_t k = 0; k < n; ++k) {
    const ParseRow& r = rows[k];
    SCOPED_TRACE(testing::Message() << r.source << " \"" << U8(r.text) << "\"");
    double v = -1;
    ParseStatus st = TryParseDate(r.text, State().locale, mode, kYear, &v);
    if (std::isnan(r.want)) {
      EXPECT_EQ(st, ParseStatus::kTypeMismatch) << v;
    } else {
      ASSERT_EQ(st, ParseStatus::kOk);
      EXPECT_NEAR(v, r.want, 1e-9);
    }
  }
}

TEST_F(DateTest, ParsesDatesAndTimes) {
  const ParseRow rows[] = {
      // Times.
      {"win", u"1 am", 0.04166666666666666},
      {"win", u"2.5", 0.08680555555555555},
      {"win", u"3:5", 0.1284722222222222},
      {"win", u"00:00 a", 0.0},
      {"win", u"12:59 AM", 0.04097222222222222},
      {"win", u"00:00 pm", 0.5},
      {"win", u"12:59 p", 0.5409722222222222},
      {"win", u"13:00 AM", 0.5416666666666666},
      {"win", u"1.5.2", 0.04516203703703704},
      {"doc", u"2:24PM", Serial(1899, 12, 30, 14, 24)},
      {"doc", u"89:98", NAN},
      // Dates, with and without a time.
      {"win", u"1 2", Serial(kYear, 1, 2)},
      {"win", u"14 1", Serial(kYear, 1, 14)},
      {"win", u"30 2", 10990.0},
      {"win", u"2 30", 10990.0},
      {"win", u"Jan 2", Serial(kYear, 1, 2)},
      {"win", u"2 Jan", Serial(kYear, 1, 2)},
      {"win", u"Jan 35", 12785.0},
      {"win", u"35-Jan", 12785.0},
      {"win", u"1 2 3", 37623.0},
      {"win", u"14 2 3", 41673.0},
      {"win", u"1 2 29", 47120.0},
      {"win", u"1 2 30", 10960.0},
      {"win", u"3 am 1 2", Serial(kYear, 1, 2, 3)},
      {"win", u"1 2 3 am", Serial(kYear, 1, 2, 3)},
      {"win", u"1.2 3 4", Serial(kYear, 3, 4, 1, 2)},
      {"win", u"3 4 1.2", Serial(kYear, 3, 4, 1, 2)},
      {"win", u"1.2.3 4 5", Serial(kYear, 4, 5, 1, 2, 3)},
      {"win", u"1 2 3 4.5", 37623.17013888889},
      {"win", u"1.2.3 4 5 6", 38812.04309027778},
      {"win", u"2 January, 1970", 25570.0},
      {"win", u"13-1-1970", 25581.0},
      {"win", u"1970-1-13", 25581.0},
      {"win", u"6/30/2011 01:20:34", 40724.05594907407},
      {"win", u"6/30/2011\u30001:20:34", 40724.05594907407},
      {"doc", u"12/30/91", Serial(1991, 12, 30)},
      {"hand", u"Friday, December 31, 2004", 38352.0},
      {"hand", u"1/1/100", -657434.0},
      {"hand", u"12/31/9999", 2958465.0},
      {"hand", u"2/29/2004", Serial(2004, 2, 29)},
      // What the runtime rejects.
      {"win", u"", NAN},
      {"win", u"True", NAN},
      {"win", u"0.", NAN},
      {"win", u".0", NAN},
      {"win", u"-1.1", NAN},
      {"win", u"1.1-", NAN},
      {"win", u"1;2;3", NAN},
      {"win", u"1|2|3", NAN},  // "|" lies just past "z"
      {"win", u"1", NAN},
      {"win", u"24.00", NAN},
      {"win", u"0:60", NAN},
      {"win", u"1 2 am", NAN},
      {"win", u"1.5 2", NAN},
      {"win", u"2 32 3", NAN},
      {"win", u"1 2.3 4", NAN},
      {"win", u"1.2.3 4", NAN},
      {"win", u"1.2 3.4", NAN},
      {"win", u"1.2.3.4", NAN},
      {"win", u"1 2 3 4", NAN},
      {"win", u"1.2 3 4 am", NAN},
      {"win", u"32 49", NAN},
      {"win", u"0 49", NAN},
      {"win", u"02.01.1970", NAN},
      {"win", u"2013-05-14 02:04:12.017000000", NAN},
      {"hand", u"1/2/3/4", NAN},
      {"hand", u"2/30/2004", NAN},
      {"hand", u"1/1/10000", NAN},
      {"hand", u"12/31/2004,", NAN},
  };
  CheckParse(rows, std::size(rows));
}

TEST_F(DateTest, DateValueAndTimeValueKeepOnePart) {
  const ParseRow dates[] = {
      {"doc", u"12/30/1991 14:24", Serial(1991, 12, 30)},
      {"hand", u"14:24", 0.0},
      {"doc", u"12/30/1991 89:98", NAN},  // a bad time fails DateValue too
  };
  CheckParse(dates, std::size(dates), DateParseMode::kDateOnly);
  const ParseRow times[] = {
      {"doc", u"4:35:17 PM", Serial(1899, 12, 30, 16, 35, 17)},
      {"hand", u"1/2/2003 14:24", 0.6},
      {"hand", u"2/30/2003 14:24", NAN},  // a bad date fails TimeValue too
  };
  CheckParse(times, std::size(times), DateParseMode::kTimeOnly);
  EXPECT_EQ(ParseDate(u"1/2/1970"), 25570.0);
  EXPECT_EQ(RaisedBy([] { TimeValue(u"noon"); }).number, 13);
}

TEST_F(DateTest, TextOfDates) {
  struct Row {
    const char* source;
    double serial;
    std::u16string_view want;
  };
  const Row rows[] = {
      {"win", 0.0, u"12:00:00 AM"},
      {"win", 3.34, u"1/2/1900 8:09:36 AM"},
      {"win", 1461.5, u"12/31/1903 12:00:00 PM"},
      {"win", -49192.24, u"4/24/1765 5:45:36 AM"},
      {"win", -657434.0, u"1/1/100"},
      {"win", 2958465.0, u"12/31/9999"},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << r.serial);
    EXPECT_EQ(U8(VariantToText(Variant(Date{r.serial})).view()), U8(r.want));
  }
}

using DateGerman = DeDe;

TEST_F(DateGerman, DayFirstOrderAndGermanNames) {
  const ParseRow rows[] = {
      {"win", u"02.01.1970", 25570.0},         {"win", u"02.13.1970", 25612.0},
      {"win", u"02-13-1970", 25612.0},         {"win", u"2020-01-11", 43841.0},
      {"win", u"2173-10-14", 100000.0},        {"win", u"02.01.1970 00:00:00", 25570.0},
      {"hand", u"31. Dezember 2004", 38352.0}, {"hand", u"Freitag, 31. Dezember 2004", 38352.0},
      {"hand", u"2.5", Serial(kYear, 5, 2)},  // "." is the date separator here
  };
  CheckParse(rows, std::size(rows));
  EXPECT_EQ(U8(VariantToText(Variant(Date{38352.75})).view()), "31.12.2004 18:00:00");
}

}  // namespace
}  // namespace crvlib::internal
