// The "^H" hex form and C strings.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "crvlib/functions.h"
#include "runtime/code_page.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

TEST(ConvertStrToHex, WritesCodePageCodesWithoutLeadingZeros) {
  EXPECT_EQ(Functions::ConvertStrToHex(u""), u"");
  EXPECT_EQ(Functions::ConvertStrToHex(String(std::u16string(1, u'\0'))), u"^H0");
  EXPECT_EQ(Functions::ConvertStrToHex(u"AB\n\u00FF"), u"^H41^H42^HA^HFF");
  EXPECT_EQ(Functions::ConvertStrToHex(u"\u20AC\u0100"), u"^H80^H3F");  // euro; outside: "?"
}

TEST(ConvertHexToStr, ReadsEachCodeAsAHexLiteral) {
  struct Case {
    std::u16string_view hex;
    std::u16string want;
  };
  const Case kCases[] = {
      {u"^H41^H42", u"AB"},
      {u"^H41^Hzz^H42", std::u16string(u"A\0B", 3)},  // no digit reads as 0
      {u"^H4G", u"\x04"},                             // the digits end at G
      {u"^H", std::u16string(1, u'\0')},              // one empty code, not nothing
      {u"^Hff^H80", u"\u00FF\u20AC"},                 // lower case; codes through the code page
      {u"^H 4 1", u"A"},                              // blanks are skipped inside a literal
      {u"^H41&", u"A"},                               // a type suffix ends the literal
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(String(c.hex).ToUtf8());
    EXPECT_EQ(Functions::ConvertHexToStr(String(c.hex)), c.want);
  }
}

TEST(ConvertHexToStr, RaisesForAMissingMarkAndCodesOutsideTheCodePage) {
  const Raised invalid_hex(-2147220495, u"CRVLIB.Functions::ConvertHexToStr");
  const String description =
      u"Invalid hex string.\rEach character must be written as ^H followed by its code in "
      u"hexadecimal.";
  for (std::u16string_view hex : {u"", u"41", u"^h41", u" ^H41"}) {
    String got;
    EXPECT_EQ(RaisedBy([&] { Functions::ConvertHexToStr(String(hex)); }, &got), invalid_hex)
        << String(hex);
    EXPECT_EQ(got, description);
  }
  // FFFF is a 16-bit -1 and 100 is past the code page: Chr refuses both.
  for (std::u16string_view hex : {u"^H41^HFFFF", u"^H100", u"^HFFFF&"}) {
    EXPECT_EQ(RaisedBy([&] { Functions::ConvertHexToStr(String(hex)); }),
              Raised(5, u"CRVLIB.Functions::ConvertHexToStr"))
        << String(hex);
  }
}

TEST(ConvertHexToStr, UndoesConvertStrToHex) {
  std::mt19937 rng(7);
  for (int round = 0; round < 2000; ++round) {
    std::u16string text;
    for (int k = std::uniform_int_distribution<int>(1, 40)(rng); k > 0; --k) {
      text += internal::Chr(std::uniform_int_distribution<int>(0, 255)(rng));
    }
    const String hex = Functions::ConvertStrToHex(String(text));
    ASSERT_EQ(Functions::ConvertHexToStr(hex), text) << hex;
  }
}

TEST(CStrToBStr, CutsAtTheFirstNul) {
  EXPECT_EQ(Functions::CStrToBStr(String(std::u16string(u"abc\0def\0", 8))), u"abc");
  EXPECT_EQ(Functions::CStrToBStr(String(std::u16string(u"\0abc", 4))), u"");
  const String odd = String::FromBytes("a\0b", 3);  // no NUL character: whole, odd byte too
  EXPECT_EQ(Functions::CStrToBStr(odd), odd);
}

}  // namespace
}  // namespace crvlib
