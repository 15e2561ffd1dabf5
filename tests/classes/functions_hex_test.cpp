// The "^H" hex form and C strings.
#include <gtest/gtest.h>

#include "crvlib/functions.h"

namespace crvlib {
namespace {

TEST(ConvertStrToHex, WritesCodePageCodesWithoutLeadingZeros) {
  EXPECT_EQ(Functions::ConvertStrToHex(u""), u"");
  EXPECT_EQ(Functions::ConvertStrToHex(String(std::u16string(1, u'\0'))), u"^H0");
  EXPECT_EQ(Functions::ConvertStrToHex(u"AB\n\u00FF"), u"^H41^H42^HA^HFF");
  EXPECT_EQ(Functions::ConvertStrToHex(u"\u20AC\u0100"), u"^H80^H3F");  // euro; outside: "?"
}

TEST(CStrToBStr, CutsAtTheFirstNul) {
  EXPECT_EQ(Functions::CStrToBStr(String(std::u16string(u"abc\0def\0", 8))), u"abc");
  EXPECT_EQ(Functions::CStrToBStr(String(std::u16string(u"\0abc", 4))), u"");
  const String odd = String::FromBytes("a\0b", 3);  // no NUL character: whole, odd byte too
  EXPECT_EQ(Functions::CStrToBStr(odd), odd);
}

}  // namespace
}  // namespace crvlib
