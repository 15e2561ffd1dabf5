// The thread's locale: Windows' en-US defaults, settings loaded from ICU for
// another locale, the start-up fallbacks and the date order.
#include <gtest/gtest.h>

#include "core/thread_state.h"
#include "platform/locale_source.h"
#include "tests/runtime/runtime_test_util.h"

namespace crvlib::internal {
namespace {

using LocaleTest = EnUs;

// The separators, names, patterns and date orders that formatting and parsing
// use show in their own tests (format_test, date_test, number_test and the
// Convert rows in de-DE and ja-JP); these are the settings those do not reach.
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

TEST_F(LocaleTest, SettingsOfOtherLocalesComeFromIcu) {
  EXPECT_EQ(State().locale.lcid, 1033);  // en-US: Windows' defaults
  SetThreadLocale("de_DE.UTF-8");
  const LocaleSettings& s = State().locale;
  EXPECT_EQ(ThreadLocale(), "de-DE");
  EXPECT_EQ(s.lcid, 1031);
  EXPECT_EQ(s.long_date_pattern, u"dddd, d. MMMM yyyy");
  EXPECT_EQ(s.month_names[2], u"M\u00E4rz");
  EXPECT_EQ(s.day_abbreviations[0], u"So");
  SetThreadLocale("ja-JP");
  EXPECT_EQ(State().locale.short_date_patterns.front(), u"yyyy/MM/dd");
}

// Pictures space their fields with plain spaces, as Windows' pictures do,
// where ICU's patterns hold no-break ones (CLDR puts a narrow one before the
// AM/PM field of English times).
TEST_F(LocaleTest, PicturesSpaceWithPlainSpaces) {
  for (const char* name : {"en-AU", "en-CA", "en-IN", "fr-FR", "fr-CA", "ru-RU"}) {
    SCOPED_TRACE(name);
    const platform::LocaleData d = platform::LoadLocaleData(name);
    std::vector<String> pictures = d.short_date_formats;
    pictures.push_back(d.settings.time_pattern);
    pictures.push_back(d.settings.long_date_pattern);
    for (const String& p : pictures) {
      EXPECT_EQ(p.view().find_first_of(u"\u00A0\u202F"), std::u16string_view::npos) << p;
    }
  }
  EXPECT_EQ(platform::LoadLocaleData("en-AU").settings.time_pattern, u"h:mm:ss tt");
}

}  // namespace
}  // namespace crvlib::internal
