// Convert: the code parser, each code family in both directions, and the
// failures that leave through Convert's frame. Rows run in en-US unless a
// table says otherwise; day 13515 is Friday 31 December 2004.
#include <gtest/gtest.h>

#include <string>

#include "classes/conversion_codes.h"
#include "core/thread_state.h"
#include "crvlib/conversions.h"
#include "tests/runtime/runtime_test_util.h"
#include "tests/testing/raised.h"

namespace crvlib::internal {
namespace {

struct Row {
  std::u16string_view data, code;
  std::u16string_view want;
};

void ExpectRows(std::initializer_list<Row> rows, bool input) {
  for (const Row& r : rows) {
    SCOPED_TRACE(U8(r.code) + " of \"" + U8(r.data) + "\"");
    EXPECT_EQ(U8(Conversions::Convert(String(r.data), String(r.code), input).view()), U8(r.want));
  }
}

void ExpectError(std::u16string_view data, std::u16string_view code, bool input, int32_t number,
                 std::u16string_view description) {
  SCOPED_TRACE(U8(code) + " of \"" + U8(data) + "\"");
  String got;
  EXPECT_EQ(RaisedBy([&] { Conversions::Convert(String(data), String(code), input); }, &got),
            Raised(number, u"CRVLIB.Converions::Convert"));
  EXPECT_TRUE(description.empty() || got == description) << got;
}

using ConvertTest = EnUs;

TEST_F(ConvertTest, ParsesEachFamilyFromItsLeadingLetters) {
  struct Case {
    std::u16string_view code;
    CodeFamily family;
  };
  constexpr Case kCases[] = {
      {u"Dz", CodeFamily::kDate},    {u"Tx", CodeFamily::kTime},    {u"MX!", CodeFamily::kHex},
      {u"ML9", CodeFamily::kMask},   {u"", CodeFamily::kInvalid},   {u"M", CodeFamily::kInvalid},
      {u"d", CodeFamily::kInvalid},  {u"mt", CodeFamily::kInvalid}, {u"MCu", CodeFamily::kInvalid},
      {u"MC", CodeFamily::kInvalid}, {u"MQ", CodeFamily::kInvalid},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(U8(c.code));
    EXPECT_EQ(ParseConversionCode(c.code, State().locale).family, c.family);
  }
}

TEST_F(ConvertTest, ParsesMaskDigitsOptionsAndItems) {
  const LocaleSettings& loc = State().locale;
  MaskCode m = ParseConversionCode(u"ML23Z,$CN#4-%", loc).mask;
  EXPECT_TRUE(m.left_justified && m.suppress_zero && m.grouping && m.currency);
  EXPECT_EQ(m.decimals, 2);
  EXPECT_EQ(m.scale, 3);
  EXPECT_EQ(m.sign, SignMode::kNoSign);  // the last sign option wins
  ASSERT_EQ(m.items.size(), 3u);
  EXPECT_EQ(m.items[0].fill, u' ');
  EXPECT_EQ(m.items[0].count, 4);
  EXPECT_EQ(m.items[1].literal, u'-');
  EXPECT_EQ(m.items[2].fill, u'0');
  EXPECT_EQ(m.width, 6);

  EXPECT_EQ(ParseConversionCode(u"MD2((##) #)", loc).mask.width, 6);  // "(##) #" without ")"
  EXPECT_TRUE(ParseConversionCode(u"MD2(", loc).mask.items.empty());
  EXPECT_EQ(ParseConversionCode(u"MD#0", loc).mask.width, 1);  // count 0 means 1
  EXPECT_TRUE(ParseConversionCode(u"MD#2147483648", loc).mask.count_overflow);
  // The locale's one-character settings count as well as "," and "$".
  SetThreadLocale("de-DE");
  EXPECT_TRUE(ParseConversionCode(u"MD2.", State().locale).mask.grouping);
  EXPECT_TRUE(ParseConversionCode(u"MD2\u20AC", State().locale).mask.currency);
}

TEST_F(ConvertTest, EmptyDataIsAnsweredBeforeTheCodeIsRead) {
  ExpectRows({{u"", u"MCZ", u""}, {u"", u"", u""}, {u"", u"D", u""}}, false);
  ExpectError(u"x", u"MCZ", false, 1611, u"Invalid conversion code: MCZ");
  ExpectError(u"x", u"", true, 1611, u"Invalid conversion code: ");
}

TEST_F(ConvertTest, DateAndTimeOutput) {
  ExpectRows(
      {
          {u"13515", u"D", u"31 Dec 2004"},
          {u"13515", u"D0", u"31 Dec"},
          {u"13515", u"D1", u"31 Dec 366"},  // "y" is the day of the year
          {u"13515", u"D2/", u"12/31/04"},
          {u"13515", u"D/x", u"12/31/2004"},  // only the first character separates
          {u"13515", u"DD", u"31"},
          {u"13515", u"DMA", u"Dec"},
          {u"13515", u"DY", u"2004"},
          {u"13515", u"DJ", u"366"},
          {u"13515", u"DQ", u"4"},
          {u"13510", u"DW", u"0"},  // a Sunday
          {u"13515", u"DWA", u"Fri"},
          {u"13515", u"DMAX", u""},        // a letter rest that names no field
          {u"abc", u"D", u"31 Dec 1967"},  // Val reads no number: day 0
          {u"0.5", u"D", u"01 Jan 1968"},  // ties go to the even serial
          {u"99999999", u"D", u""},        // past 9999
          {u"1e999", u"D", u""},
          // Times.
          {u"29100.4", u"MT", u"08:05"},
          {u"29125", u"Ts", u"08:05:25"},  // options in any case, after "T" too
          {u"0", u"MTH", u"12:00AM"},
          {u"43200", u"MTH", u"12:00AM"},  // noon reads as morning
          {u"48600", u"MTHS", u"01:30:00PM"},
          {u"90000", u"MTH", u"25:00"},  // outside 0-23: the 24-hour form
          {u"-3600", u"MTH", u"-01:00"},
          {u"-60", u"MT", u"00:01"},         // the sign rides on the hours only
          {u"abc", u"MT", u"00:00"},         // no number: 0 seconds
          {u"2147483648", u"MT", u"00:00"},  // past a Long: 0 seconds
          {u"2147483647", u"MTS", u"596523:14:07"},
          {u"-2147483648", u"MTS", u"596523:-14:-08"},  // |t| overflows: t keeps its sign
      },
      false);
}

TEST(ConvertLocales, DateSeparatorsFollowTheLocaleOrder) {
  struct Case {
    const char* locale;
    std::u16string_view code, want;
  };
  constexpr Case kCases[] = {
      {"de-DE", u"D2/", u"31.12.04"},  // "/" is the date separator
      {"ja-JP", u"D2-", u"04-12-31"},
      {"ja-JP", u"D0-", u"12-31"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(std::string(c.locale) + " " + U8(c.code));
    SetThreadLocale(c.locale);
    EXPECT_EQ(U8(Conversions::Convert(u"13515", String(c.code)).view()), U8(c.want));
  }
  SetThreadLocale("en-US");
}

TEST_F(ConvertTest, DateAndTimeInput) {
  ExpectRows(
      {
          {u"12/31/1967", u"D", u"0"},
          {u"12/31/2004", u"D2/", u"13515"},
          {u"12/31/1967 18:00", u"D", u"1"},  // the serial rounds to the nearest day
          {u"not a date", u"D", u""},
          // Times.
          {u"12/31/2004 8:05:25 PM", u"MT", u"72325"},
          {u"25:00", u"MT", u"90000"},  // no time of day: read as fields
          {u"-30:15", u"MT", u"-108900"},
          {u"-0:30", u"MT", u"0"},         // the sign comes from the hour field
          {u"1:-30", u"MT", u"5400"},      // minutes and seconds count unsigned
          {u"30.5:00", u"MT", u"108000"},  // hours round half to even
          {u"99999999:00", u"MT", u""},    // the seconds overflow a Long
      },
      true);
}

TEST(FieldPrivate, SplitsAtEveryDelimiter) {
  struct Case {
    std::u16string_view text, delimiter;
    int32_t n;
    std::u16string_view want;
  };
  constexpr Case kCases[] = {
      {u"12:30:45", u":", 0, u"12:30:45"},
      {u"12:30:45", u":", 3, u"45"},
      {u"12:30", u":", 3, u""},
      {u"a::b", u"::", 2, u"b"},
      {u"abc", u"", 1, u"abc"},
      {u"abc", u"", 2, u""},
      {u"a:b", u":", -1, u""},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(U8(c.text) + " " + std::to_string(c.n));
    EXPECT_EQ(U8(FieldPrivate(c.text, c.delimiter, c.n)), U8(c.want));
  }
}

TEST_F(ConvertTest, CharacterCodes) {
  ExpectRows(
      {
          {u"Straße é", u"MCU", u"STRAßE É"},
          {u"ÀB", u"MCL", u"àb"},
          {u"a1-é c", u"MCA", u"aéc"},  // the platform's letters, accents included
          {u"a1-é c", u"MC/A", u"1- "},
          {u"a1-é 2", u"MCN", u"12"},
          {u"a1-é 2", u"MC/N", u"a-é "},
          {u"a1-é 2", u"MCAN", u"a1é2"},
          {u"a1-é 2", u"MC/AN", u"- "},
          {u"a\tb\u00FF\u0100~\u007F", u"MCP", u"a.b.\u0100~."},  // by code page code
          {u"o'NEIL  mc-donald 2nd", u"MCT", u"O'neil  Mc-donald 2nd"},
          {u"  hello. WORLD", u"MCS", u"  Hello. world"},
          {u"1ST place", u"MCS", u"1st place"},  // a digit still starts the sentence
          {u"FF", u"MCXD", u"255"},
          {u"ffffffff", u"MCXD", u"-1"},
          {u"-1", u"MCDX", u"FFFFFFFF"},
          {u"1,234.5", u"MCDX", u"4D2"},  // the Long conversion rounds half to even
      },
      false);
  ExpectRows({{u"hello WORLD", u"MCT", u"Hello World"},
              {u"255", u"MCXD", u"FF"},
              {u"ff", u"MCDX", u"255"}},
             true);
  ExpectError(u"zz", u"MCXD", false, 13, u"Type mismatch");
  ExpectError(u"1FFFFFFFF", u"MCXD", false, 6, u"Overflow");
}

TEST_F(ConvertTest, HexStrings) {
  ExpectRows({{u"AB", u"MX", u"4142"}, {u"\u20AC\u0100\n", u"MXjunk", u"803F0A"}}, false);
  ExpectRows(
      {
          {u"414", u"MX", u"A"},    // the odd digit is dropped
          {u"0G", u"MX", u"\x10"},  // "G" reads as 16
          {u"!", u"MX", u""},
      },
      true);
  ExpectError(u"G0", u"MX", true, 5, u"Invalid procedure call or argument");  // code 256
}

TEST_F(ConvertTest, MaskOutput) {
  ExpectRows(
      {
          {u"123456", u"MD2", u"1234.56"},
          {u"123456", u"MD2,$", u"$1,234.56"},
          {u"$1,234.56", u"MR2,", u"1,234.56"},  // "$", "," and "." fall away first
          {u"123456", u"MD20", u"123456.00"},
          {u"125", u"MD12", u"1.2"},  // ties to even at the decimals
          {u"135", u"MD12", u"1.4"},
          {u"-123456", u"MD2", u"-1234.56"},
          {u"-123456", u"MD2C", u"1234.56CR"},
          {u"123456", u"MD2D", u"1234.56DB"},
          {u"-123456", u"MD2E", u"<1234.56>"},
          {u"123456", u"MD2E", u" 1234.56 "},
          {u"-123456", u"MD2M", u"1234.56-"},
          {u"-123456", u"MD2N", u"1234.56"},
          {u"4", u"MD12Z", u""},  // rounds to zero before the test
          {u"4", u"MD2Z", u"0.04"},
          {u"1.2.3x", u"MD2", u"123x"},  // no number: the cleaned datum
          {u"123456", u"MD2#10", u"   1234.56"},
          {u"123456", u"ML2#10", u"1234.56   "},
          {u"123456", u"MR2%10", u"0001234.56"},
          {u"123456", u"ML2*10", u"1234.56***"},
          {u"123456", u"MD2##", u"56"},  // the mask sets the width
          {u"123456", u"ML2##", u"12"},
          {u"5551234567", u"MD0((###) ###-####)", u"(555) 123-4567"},
          {u"12", u"MD0((###) ###-####)", u"(   )    -  12"},
          {u"123456", u"MD234", u"4"},  // a third digit starts a literal mask
      },
      false);
  ExpectError(u"1", u"MD2#2147483648", false, 6, u"Overflow");
  ExpectError(u"1", u"MD2#1073741824", false, 14, u"");  // too wide: refused before allocating
  ExpectError(u"1e999", u"MD2", false, 6, u"Overflow");
  ExpectRows({{u"x", u"MD2#2147483648", u"x"}}, false);  // the mask is never reached
}

TEST_F(ConvertTest, MaskInput) {
  ExpectRows(
      {
          {u"1,234.56", u"MD2", u"123456"},
          {u"0.125", u"MD2", u"12"},  // ties to even
          {u"-0.001", u"MD2", u"0"},
          {u"1234567890123", u"MD2", u"123456789012300"},
          {u"12345678901234", u"MD2", u"1234567890123400"},  // text only past 13 characters
          {u"$1,2x", u"MD2", u"12x"},
      },
      true);
}

}  // namespace
}  // namespace crvlib::internal
