// The "^H" hex form and C strings.
#include <gtest/gtest.h>

#include "crvlib/functions.h"

namespace crvlib {
namespace {

TEST(ConvertStrToHex, WritesCodePageCodesWithoutLeadingZeros) {
  struct Case {
    std::u16string_view value, want;
  };
  constexpr Case kCases[] = {
      {u"", u""},
      {u"A", u"^H41"},
      {std::u16string_view(u"\0", 1), u"^H0"},
      {u"AB\n", u"^H41^H42^HA"},
      {u"\u00FF\u00A0", u"^HFF^HA0"},
      {u"\u20AC", u"^H80"},  // the euro sign is 128 in the code page
      {u"\u0100", u"^H3F"},  // outside the code page: the code of "?"
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(String(c.want).ToUtf8());
    EXPECT_EQ(Functions::ConvertStrToHex(String(c.value)), c.want);
  }
}

TEST(CStrToBStr, CutsAtTheFirstNul) {
  struct Case {
    std::u16string_view value, want;
  };
  constexpr Case kCases[] = {
      {std::u16string_view(u"abc\0def\0", 8), u"abc"},
      {std::u16string_view(u"\0abc", 4), u""},
      {u"abc", u"abc"},
      {u"", u""},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(String(c.want).ToUtf8());
    EXPECT_EQ(Functions::CStrToBStr(String(c.value)), c.want);
  }
  // Without a NUL the string comes back whole, a lone trailing byte included.
  const String odd = String::FromBytes("a\0b", 3);
  EXPECT_EQ(Functions::CStrToBStr(odd), odd);
}

}  // namespace
}  // namespace crvlib
