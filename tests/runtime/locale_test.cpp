// The thread's locale: Windows' en-US defaults, settings loaded from ICU for
// another locale, the start-up fallbacks and the date order.
#include <gtest/gtest.h>

#include "core/thread_state.h"
#include "platform/locale_source.h"
#include "tests/runtime/runtime_test_util.h"

namespace crvlib::internal {
namespace {

using LocaleTest = EnUs;

TEST_F(LocaleTest, EnUsIsWindowsDefaults) {
  const LocaleSettings& s = State().locale;
  struct Row {
    const char* source;
    const String& got;
    std::u16string_view want;
  };
  const Row rows[] = {
      {"doc", s.thousands_separator, u","},
      {"doc", s.decimal_separator, u"."},
      {"doc", s.currency_symbol, u"$"},
      {"doc", s.date_separator, u"/"},
      {"doc", s.time_separator, u":"},
      {"doc", s.am_designator, u"AM"},
      {"doc", s.pm_designator, u"PM"},
      {"doc", s.short_date_patterns.front(), u"M/d/yyyy"},
      {"doc", s.long_date_pattern, u"dddd, MMMM d, yyyy"},
      {"doc", s.time_pattern, u"h:mm:ss tt"},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << U8(r.want));
    EXPECT_EQ(r.got, r.want);
  }
  EXPECT_EQ(s.lcid, 1033);
  EXPECT_EQ(s.date_order, DateOrder::kMonthDayYear);
  EXPECT_EQ(s.currency_negative, 0);
  EXPECT_EQ(s.two_digit_year_max, 2029);
}

TEST_F(LocaleTest, PosixNamesMapToTags) {
  struct Row {
    const char* source;
    const char* name;
    const char* tag;
  };
  const Row rows[] = {
      {"hand", "", "en-US"},
      {"hand", "C", "en-US"},
      {"hand", "POSIX", "en-US"},
      {"hand", "C.UTF-8", "en-US"},
      {"hand", "de_DE.UTF-8@euro", "de-DE"},
      {"hand", "zz_QQ", "en-US"},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    EXPECT_EQ(platform::LoadLocaleData(r.name).settings.name, r.tag);
  }
}

TEST_F(LocaleTest, GermanSettingsComeFromIcu) {
  SetThreadLocale("de_DE.UTF-8");
  const LocaleSettings& s = State().locale;
  EXPECT_EQ(ThreadLocale(), "de-DE");
  EXPECT_EQ(s.lcid, 1031);
  EXPECT_EQ(s.thousands_separator, u".");
  EXPECT_EQ(s.decimal_separator, u",");
  EXPECT_EQ(s.currency_symbol, u"\u20AC");
  EXPECT_EQ(s.date_separator, u".");
  EXPECT_EQ(s.time_separator, u":");
  EXPECT_EQ(s.short_date_patterns.front(), u"dd.MM.yyyy");
  EXPECT_EQ(s.long_date_pattern, u"dddd, d. MMMM yyyy");
  EXPECT_EQ(s.time_pattern, u"HH:mm:ss");
  EXPECT_EQ(s.date_order, DateOrder::kDayMonthYear);
  EXPECT_EQ(s.month_names[2], u"M\u00E4rz");
  EXPECT_EQ(s.day_abbreviations[0], u"So");
  EXPECT_EQ(s.currency_positive, 3);  // "1,1 €"
  EXPECT_EQ(s.currency_negative, 8);  // "-1,1 €"
}

TEST_F(LocaleTest, YearFirstLocale) {
  SetThreadLocale("ja-JP");
  EXPECT_EQ(State().locale.date_order, DateOrder::kYearMonthDay);
  EXPECT_EQ(State().locale.short_date_patterns.front(), u"yyyy/MM/dd");
}

}  // namespace
}  // namespace crvlib::internal
