// The typed conversions, the character filters and proper case, and the
// Conversions rows of crv's member table.
#include <gtest/gtest.h>

#include <string>

#include "crvlib/conversions.h"
#include "tests/runtime/runtime_test_util.h"
#include "tests/testing/raised.h"

namespace crvlib::internal {
namespace {

Raised Err(int32_t number, std::u16string_view routine) {
  return Raised(number, u"CRVLIB.Converions::" + std::u16string(routine));
}

using TypedTest = EnUs;

TEST_F(TypedTest, BooleanInKnowsItsWordsInAnyCase) {
  struct Case {
    std::u16string_view text;
    bool want;
  };
  constexpr Case kCases[] = {
      {u"", false},   {u"maybe", false}, {u"active", true},    {u"-1", true},   {u"tRuE", true},
      {u"y", true},   {u"no", false},    {u"INACTIVE", false}, {u"T,F", false}, {u"1,", false},
      {u" 1", false}, {u"2", false},     {u"\u00E9", false},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(U8(c.text));
    EXPECT_EQ(Conversions::BooleanIn(String(c.text)), Variant(c.want));
  }
}

TEST_F(TypedTest, BooleanOutAnswersItsFormatsAndRewritesAnyOther) {
  struct Case {
    bool value;
    std::u16string_view format, want, format_after;
  };
  constexpr Case kCases[] = {
      {true, u"T/F", u"T", u"T/F"},
      {false, u"y/n", u"n", u"y/n"},
      {false, u"Yes/No", u"No", u"Yes/No"},
      {true, u"yes/no", u"True", u"True/False"},  // matched case and all
      {false, u"", u"False", u"True/False"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(U8(c.format));
    String format(c.format);
    EXPECT_EQ(U8(Conversions::BooleanOut(Variant(c.value), format).view()), U8(c.want));
    EXPECT_EQ(U8(format.view()), U8(c.format_after));
  }
  EXPECT_EQ(Conversions::BooleanOut(Variant(true)), u"True");

  String format(u"nonsense");  // a failed call leaves the format alone
  EXPECT_EQ(RaisedBy([&] { Conversions::BooleanOut(Variant(int32_t{1}), format); }),
            Err(13, u"BooleanOut"));
  EXPECT_EQ(format, u"nonsense");
}

TEST_F(TypedTest, OutRoutinesFormatOnlyTheirOwnType) {
  EXPECT_EQ(Conversions::CurrencyOut(Variant(Currency{-12345000})), u"($1,234.50)");
  EXPECT_EQ(Conversions::DateOut(Variant(Date{38352.75})), u"12/31/2004");
  EXPECT_EQ(Conversions::DateOut(Variant(Date{38352.75}), u"dd mmm yyyy"), u"31 Dec 2004");
  EXPECT_EQ(Conversions::TimeOut(Variant(Date{38352.75})), u"6:00:00 PM");
  EXPECT_EQ(Conversions::PercentOut(Currency{1250}), u"12.50%");

  EXPECT_EQ(RaisedBy([] { Conversions::CurrencyOut(Variant(1234.5)); }), Err(13, u"CurrencyOut"));
  EXPECT_EQ(RaisedBy([] { Conversions::DateOut(Variant(u"12/31/2004")); }), Err(13, u"DateOut"));
  EXPECT_EQ(RaisedBy([] { Conversions::TimeOut(Variant(0.5)); }), Err(13, u"TimeOut"));
  EXPECT_EQ(RaisedBy([] { Conversions::DateOut(Variant(Date{38352}), u"a;b;c;d;e"); }),
            Err(5, u"DateOut"));
}

TEST_F(TypedTest, CurrencyAndPercentInputKeepOnlyNumberCharacters) {
  struct Case {
    std::u16string_view text;
    int64_t currency, percent;  // scaled by 10000
  };
  constexpr Case kCases[] = {
      {u"$1,234.56", 12345600, 123456},
      {u"($12.00)", 120000, 1200},  // the parentheses fall away with the "$"
      {u"-7%", -70000, -700},
      {u"0.00005", 0, 0},  // half to even at the fourth decimal
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(U8(c.text));
    EXPECT_EQ(Conversions::CurrencyIn(String(c.text)), Variant(Currency{c.currency}));
    EXPECT_EQ(Conversions::PercentIn(String(c.text)).scaled, c.percent);
  }
  EXPECT_EQ(Conversions::CurrencyIn(u""), Variant(Currency{0}));
  EXPECT_EQ(RaisedBy([] { Conversions::CurrencyIn(u"abc"); }), Err(13, u"CurrencyIn"));
  EXPECT_EQ(RaisedBy([] { Conversions::PercentIn(u""); }), Err(13, u"PercentIn"));
  EXPECT_EQ(RaisedBy([] { Conversions::PercentIn(u"99999999999999999"); }), Err(6, u"PercentIn"));
}

TEST_F(TypedTest, DateInReadsFullStopsAsSlashes) {
  EXPECT_EQ(Conversions::DateIn(u"12.31.2004"), Conversions::DateIn(u"12/31/2004"));
  EXPECT_EQ(Conversions::DateIn(u"Dec. 31 2004 6:00 PM"), Variant(Date{38352}));  // date part only
  EXPECT_EQ(RaisedBy([] { Conversions::DateIn(u"12.31.x"); }), Err(13, u"DateIn"));
  SetThreadLocale("de-DE");  // already the separator: the same text
  EXPECT_EQ(Conversions::DateIn(u"31.12.2004"), Variant(Date{38352}));
}

TEST_F(TypedTest, TimeInTakesTheTimeOfDay) {
  EXPECT_EQ(Conversions::TimeIn(u"6:30 PM"), Variant(Date{0.7708333333333334}));
  EXPECT_EQ(Conversions::TimeIn(u"12/31/2004 18:00"), Variant(Date{0.75}));
  EXPECT_EQ(RaisedBy([] { Conversions::TimeIn(u"25:00"); }), Err(13, u"TimeIn"));
}

TEST(Filters, KeepCharactersByTheirCodePageCode) {
  // "\u0100" is outside the code page and judged as "?" (63): only NonNum
  // keeps it, as itself. "\u20AC" is code 128 and "\u00E9" code 233.
  struct Case {
    std::u16string_view value, alpha, alpha_plus, num, num_plus, non_num;
  };
  constexpr Case kCases[] = {
      {u"a1-B c", u"aBc", u"aB c", u"1", u"1-", u"aB c"},
      {u"$1,234.50-", u"", u"", u"123450", u"1,234.50-", u"$,"},
      {u"a-1/b.2 c", u"abc", u"ab c", u"12", u"-1.2", u"a/b c"},
      {u"\u00E9\u0100\u20AC\t\u007F~", u"", u"", u"", u"", u"\u0100~"},
      {u"", u"", u"", u"", u"", u""},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(U8(c.value));
    const String v(c.value);
    EXPECT_EQ(U8(Conversions::Alpha(v).view()), U8(c.alpha));
    EXPECT_EQ(U8(Conversions::AlphaPlus(v).view()), U8(c.alpha_plus));
    EXPECT_EQ(U8(Conversions::Num(v).view()), U8(c.num));
    EXPECT_EQ(U8(Conversions::NumPlus(v).view()), U8(c.num_plus));
    EXPECT_EQ(U8(Conversions::NonNum(v).view()), U8(c.non_num));
  }
}

TEST(PCase, StartsWordsAfterWhiteSpaceOnly) {
  struct Case {
    std::u16string_view value, want;
  };
  constexpr Case kCases[] = {
      {u"o'neil-smith, jr.", u"O'neil-smith, Jr."},
      {u"a\tb\rc\nd\fe\vf", u"A\tB\rC\nD\fE\vf"},  // vertical tab is no break
      {u"1st  \u00C9T\u00C9", u"1st  \u00C9t\u00E9"},
      {u"a,b", u"A,b"},  // the list's delimiter is no break either
      {u"", u""},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(U8(c.value));
    EXPECT_EQ(U8(Conversions::PCase(String(c.value)).view()), U8(c.want));
  }
}

}  // namespace
}  // namespace crvlib::internal
