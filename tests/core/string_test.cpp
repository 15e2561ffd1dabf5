// UTF-8 in and out of the automation string: every ill-formed sequence
// becomes one U+FFFD and takes its continuation bytes with it.
#include "crvlib/string.h"

#include <gtest/gtest.h>

namespace crvlib {
namespace {

TEST(String, FromUtf8ReplacesEachIllFormedSequenceOnce) {
  struct Case {
    const char* utf8;
    std::u16string units;
  };
  const Case kCases[] = {
      {"a\xC3\xBF", u"a\u00FF"},
      {"\xE2\x82\xAC", u"\u20AC"},
      {"\xF0\x9F\x98\x80", u"\U0001F600"},  // a surrogate pair
      {"\xC0\xAFx", u"\uFFFDx"},            // overlong: the lead and its tail
      {"\xE0\x80\xAF", u"\uFFFD"},          // overlong at three bytes
      {"\xED\xA0\x80", u"\uFFFD"},          // a surrogate in UTF-8
      {"\xF4\x90\x80\x80", u"\uFFFD"},      // past U+10FFFF
      {"\x80\x80z", u"\uFFFDz"},            // stray continuation bytes
      {"\xE2\x82", u"\uFFFD"},              // cut short
      {"\xFF", u"\uFFFD"},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(String::FromUtf8(c.utf8).ToU16(), c.units) << c.utf8;
  }
}

TEST(String, ToUtf8TurnsLoneSurrogatesIntoReplacements) {
  EXPECT_EQ(String(u"\U0001F600\u00FF").ToUtf8(), "\xF0\x9F\x98\x80\xC3\xBF");
  EXPECT_EQ(String(u"\xD800x\xDC00").ToUtf8(), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

}  // namespace
}  // namespace crvlib
