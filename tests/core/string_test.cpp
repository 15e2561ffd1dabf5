// UTF-8 in and out of the automation string: every ill-formed sequence
// becomes one U+FFFD and takes its continuation bytes with it, and
// InvalidUtf8At finds the first one.
#include "crvlib/string.h"

#include <gtest/gtest.h>

namespace crvlib {
namespace {

TEST(String, FromUtf8ReplacesEachIllFormedSequenceOnce) {
  constexpr size_t kValid = std::string_view::npos;
  struct Case {
    const char* utf8;
    std::u16string units;
    size_t invalid_at;  // String::InvalidUtf8At
  };
  const Case kCases[] = {
      {"a\xC3\xBF", u"a\u00FF", kValid},
      {"\xE2\x82\xAC", u"\u20AC", kValid},
      {"\xF0\x9F\x98\x80", u"\U0001F600", kValid},  // a surrogate pair
      {"\xC0\xAFx", u"\uFFFDx", 0},                 // overlong: the lead and its tail
      {"\xE0\x80\xAF", u"\uFFFD", 0},               // overlong at three bytes
      {"\xED\xA0\x80", u"\uFFFD", 0},               // a surrogate in UTF-8
      {"\xF4\x90\x80\x80", u"\uFFFD", 0},           // past U+10FFFF
      {"\x80\x80z", u"\uFFFDz", 0},                 // stray continuation bytes
      {"ok\xE2\x82", u"ok\uFFFD", 2},               // cut short
      {"\xC3\xBF\xFF", u"\u00FF\uFFFD", 2},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.utf8);
    EXPECT_EQ(String::FromUtf8(c.utf8).ToU16(), c.units);
    EXPECT_EQ(String::InvalidUtf8At(c.utf8), c.invalid_at);
    std::u16string appended = u"<";
    String::AppendUtf16(appended, c.utf8);
    EXPECT_EQ(appended, u"<" + c.units);
  }
}

TEST(String, CodePointsAtTheEdgesOfEachLengthConvertBothWays) {
  struct Case {
    std::u16string units;
    const char* utf8;
  };
  const Case kCases[] = {
      {u"\u007F", "\x7F"},
      {u"\u0080", "\xC2\x80"},
      {u"\u07FF", "\xDF\xBF"},
      {u"\u0800", "\xE0\xA0\x80"},
      {u"\uFFFF", "\xEF\xBF\xBF"},
      {u"\U00010000", "\xF0\x90\x80\x80"},  // D800 DC00
      {u"\U0010FFFF", "\xF4\x8F\xBF\xBF"},  // DBFF DFFF, the last code point
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.utf8);
    EXPECT_EQ(String(c.units).ToUtf8(), c.utf8);
    EXPECT_EQ(String::FromUtf8(c.utf8).ToU16(), c.units);
    EXPECT_EQ(String::InvalidUtf8At(c.utf8), std::string_view::npos);
  }
}

TEST(String, ToUtf8TurnsLoneSurrogatesIntoReplacements) {
  EXPECT_EQ(String(u"\U0001F600\u00FF").ToUtf8(), "\xF0\x9F\x98\x80\xC3\xBF");
  EXPECT_EQ(String(u"\xD800x\xDC00").ToUtf8(), "\xEF\xBF\xBDx\xEF\xBF\xBD");
  std::string appended = "<";
  String::AppendUtf8(appended, u"\U0001F600\xD800");
  EXPECT_EQ(appended, "<\xF0\x9F\x98\x80\xEF\xBF\xBD");
}

}  // namespace
}  // namespace crvlib
