// The substring utilities that work directly on strings.
#include <gtest/gtest.h>

#include <cfenv>
#include <climits>
#include <cmath>
#include <functional>
#include <random>

#include "crvlib/error.h"
#include "crvlib/functions.h"

namespace crvlib {
namespace {

// The number and source of the error `fn` raises; 0 when it raises none.
template <class Fn>
std::pair<int32_t, std::u16string> ErrorOf(Fn fn) {
  try {
    fn();
  } catch (const Error& e) {
    return {e.Number(), e.Source().ToU16()};
  }
  return {0, u""};
}

TEST(StripChar, OnlyTheFirstCharacterCounts) {
  struct Case {
    std::u16string_view value, character, want;
  };
  constexpr Case kCases[] = {
      {u"a-b-c", u"-x", u"abc"},
      {u"a-b-c", u"", u"a-b-c"},
      {u"aAa", u"a", u"A"},  // binary comparison
      {u"", u"a", u""},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message()
                 << String(c.value).ToUtf8() << " / " << String(c.character).ToUtf8());
    EXPECT_EQ(Functions::StripChar(String(c.value), String(c.character)), c.want);
  }
}

TEST(Swap, ReplacesEveryOccurrenceThroughTheCodePage) {
  EXPECT_EQ(Functions::Swap(u"a.b.c", 46, 45), u"a-b-c");
  EXPECT_EQ(Functions::Swap(u"x.y", 46, 128), u"x\u20ACy");  // 128 is the euro sign
  EXPECT_EQ(Functions::Swap(u"abc", 120, 120), u"abc");      // equal codes, character absent
  EXPECT_EQ(Functions::Swap(u"", 46, 45), u"");
  for (int16_t bad : {int16_t{-1}, int16_t{256}}) {
    SCOPED_TRACE(bad);
    EXPECT_EQ(ErrorOf([&] { Functions::Swap(u"a", bad, 45); }),
              std::make_pair(5, std::u16string(u"CRVLIB.Functions::Swap")));
    EXPECT_EQ(ErrorOf([&] { Functions::Swap(u"a", 45, bad); }).first, 5);
  }
}

TEST(ParseStr, WalksSegmentsOfAString) {
  const String value = u"  ab, cd";
  int32_t position = 1;
  EXPECT_EQ(Functions::ParseStr(value, u" ,", position), u"ab");
  EXPECT_EQ(position, 5);
  EXPECT_EQ(Functions::ParseStr(value, u" ,", position), u"cd");
  EXPECT_EQ(position, 9);
  EXPECT_EQ(Functions::ParseStr(value, u" ,", position), u"");
  EXPECT_EQ(position, 9);  // past the end: left as it is, not 0
}

TEST(ParseStr, EdgeCases) {
  struct Case {
    std::u16string_view value, delimiters;
    int32_t position;
    std::u16string_view want;
    int32_t position_after;
  };
  constexpr Case kCases[] = {
      {u"abc", u",", 7, u"", 7},      // past the end
      {u"abc", u"", 1, u"ab", 3},     // empty set: the last character is left off
      {u"abc", u"", 3, u"", 0},       // a single remaining character gives ""
      {u"a,b", u",", 2, u"b", 4},     // leading separator skipped
      {u",,,", u",", 1, u"", 4},      // nothing but separators: stops past the end
      {u"a;b,c", u",;", 1, u"a", 2},  // any character of the set separates
      {u"ab", u"b", 1, u"a", 2},      // stops on the separator
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << String(c.value).ToUtf8() << " @" << c.position);
    int32_t position = c.position;
    EXPECT_EQ(Functions::ParseStr(String(c.value), String(c.delimiters), position), c.want);
    EXPECT_EQ(position, c.position_after);
  }
  EXPECT_EQ(Functions::ParseStr(u",x,y", u","), u"x");
}

TEST(ParseStr, RaisesFiveFromMid) {
  struct Case {
    std::u16string_view value, delimiters;
    int32_t position;
  };
  constexpr Case kCases[] = {{u"abc", u",", 0}, {u"abc", u",", -3}, {u"", u"", 1}};
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.position);
    int32_t position = c.position;
    EXPECT_EQ(
        ErrorOf([&] { Functions::ParseStr(String(c.value), String(c.delimiters), position); }),
        std::make_pair(5, std::u16string(u"CRVLIB.Functions::ParseStr")));
  }
}

TEST(RevInStr, FindsTheLastStartAtOrBeforeStart) {
  struct Case {
    int32_t start;
    std::u16string_view value, find;
    int32_t want;
  };
  constexpr Case kCases[] = {
      {0, u"abcabc", u"bc", 5}, {4, u"abcabc", u"bc", 2}, {5, u"abcabc", u"bc", 5},
      {2, u"abcd", u"bcd", 0},  // the match may not start before its length
      {3, u"abcd", u"bcd", 2},  // but may run past Start
      {1, u"", u"a", 0},        {9, u"abc", u"", 3},      {2, u"abc", u"", 2},
      {-5, u"abc", u"x", 0},    {99, u"aXa", u"a", 3},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message()
                 << c.start << " " << String(c.value).ToUtf8() << " " << String(c.find).ToUtf8());
    EXPECT_EQ(Functions::RevInStr(c.start, String(c.value), String(c.find)), c.want);
  }
}

TEST(Justify, PadsCutsAndCentres) {
  EXPECT_EQ(Functions::Pad(u"123", u"0", 6), u"000123");
  EXPECT_EQ(Functions::Pad(u"1234567", u"0", 6), u"1234567");
  EXPECT_EQ(Functions::Pad(u"123", u"", 2), u"123");  // no padding needed: no error
  EXPECT_EQ(Functions::Pad(u"1", u"xy", 3), u"xx1");
  EXPECT_EQ(Functions::LeftJustify(u"abcdef", 3), u"abc");
  EXPECT_EQ(Functions::RightJustify(u"abcdef", 3), u"def");
  EXPECT_EQ(Functions::CenterJustify(u"abcdef", 3), u"abcdef");
  EXPECT_EQ(Functions::LeftJustify(u"ab", 5, u"*-"), u"ab***");
  EXPECT_EQ(Functions::RightJustify(u"ab", 5, u"*"), u"***ab");
  EXPECT_EQ(Functions::LeftJustify(u"ab", 0), u"");
  EXPECT_EQ(Functions::RightJustify(u"ab", 0), u"");
}

TEST(Justify, CenterRoundsHalfToEven) {
  struct Case {
    int32_t length;
    std::u16string_view want;
  };
  constexpr Case kCases[] = {
      {2, u"ab"},        {3, u"ab"},      // d = 1: h = 0
      {4, u"*ab*"},      {5, u"*ab**"},   // d = 3: h = 2, one cut from the left
      {6, u"**ab**"},    {7, u"**ab**"},  // d = 5: h = 2, one short
      {9, u"***ab****"},                  // d = 7: h = 4
      {1, u"ab"},        {-1, u"ab"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.length);
    EXPECT_EQ(Functions::CenterJustify(u"ab", c.length, u"*"), c.want);
  }
}

TEST(Justify, RaisesTheStringPrimitivesErrors) {
  struct Case {
    const char* what;
    std::function<void()> call;
    int32_t number;
    std::u16string_view source;
  };
  const Case kCases[] = {
      {"pad empty", [] { Functions::Pad(u"1", u"", 3); }, 5, u"CRVLIB.Functions::Pad"},
      {"pad overflow", [] { Functions::Pad(u"1", u"0", INT_MIN); }, 6, u"CRVLIB.Functions::Pad"},
      {"pad huge", [] { Functions::Pad(u"1", u"0", INT_MAX); }, 14, u"CRVLIB.Functions::Pad"},
      {"left negative", [] { Functions::LeftJustify(u"a", -1); }, 5,
       u"CRVLIB.Functions::LeftJustify"},
      {"left empty fill", [] { Functions::LeftJustify(u"abc", 1, u""); }, 5,
       u"CRVLIB.Functions::LeftJustify"},
      {"left huge", [] { Functions::LeftJustify(u"a", INT_MAX); }, 14,
       u"CRVLIB.Functions::LeftJustify"},
      {"right negative", [] { Functions::RightJustify(u"a", -1); }, 5,
       u"CRVLIB.Functions::RightJustify"},
      {"right empty fill", [] { Functions::RightJustify(u"", 0, u""); }, 5,
       u"CRVLIB.Functions::RightJustify"},
      {"right huge", [] { Functions::RightJustify(u"a", 0x40000000); }, 14,
       u"CRVLIB.Functions::RightJustify"},
      {"center empty fill", [] { Functions::CenterJustify(u"a", 1, u""); }, 5,
       u"CRVLIB.Functions::CenterJustify"},
      {"center huge", [] { Functions::CenterJustify(u"a", INT_MAX); }, 14,
       u"CRVLIB.Functions::CenterJustify"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(ErrorOf(c.call), std::make_pair(c.number, std::u16string(c.source)));
  }
  // A value longer than Length never looks at the fill.
  EXPECT_EQ(Functions::CenterJustify(u"abc", 1, u""), u"abc");
}

// The routines as literal compositions of the primitives, for comparison.
std::u16string Repeat(int32_t n, char16_t c) {
  return std::u16string(static_cast<size_t>(n), c);
}
std::u16string Right(const std::u16string& s, int32_t n) {
  return s.substr(s.size() - std::min(s.size(), static_cast<size_t>(n)));
}
std::u16string NaiveSwap(std::u16string s, char16_t from, char16_t to) {
  for (size_t p; (p = s.find(from)) != std::u16string::npos;) s[p] = to;  // restarts at 1
  return s;
}
std::u16string NaiveCenter(const std::u16string& v, int32_t length, char16_t fill) {
  if (static_cast<int32_t>(v.size()) > length) return v;
  std::fesetround(FE_TONEAREST);
  auto half = static_cast<int32_t>(std::nearbyint((length - static_cast<int32_t>(v.size())) / 2.0));
  return Right(Repeat(half, fill) + v + Repeat(half, fill), length);
}

TEST(SubstringTwins, AgreeWithLiteralCompositions) {
  std::mt19937 rng(20240611);
  std::uniform_int_distribution<int> unit(u'a', u'd'), len(0, 12);
  for (int round = 0; round < 2000; ++round) {
    std::u16string v(static_cast<size_t>(len(rng)), u'\0');
    for (char16_t& c : v) c = static_cast<char16_t>(unit(rng));
    const int32_t length = len(rng);
    SCOPED_TRACE(testing::Message() << String(v).ToUtf8() << " " << length);
    EXPECT_EQ(Functions::Swap(v, u'a', u'b'), String(NaiveSwap(v, u'a', u'b')));
    EXPECT_EQ(Functions::CenterJustify(v, length, u"*"), String(NaiveCenter(v, length, u'*')));
    EXPECT_EQ(Functions::LeftJustify(v, length, u"*"),
              String((v + Repeat(length, u'*')).substr(0, static_cast<size_t>(length))));
    EXPECT_EQ(Functions::RightJustify(v, length, u"*"),
              String(Right(Repeat(length, u'*') + v, length)));
  }
}

}  // namespace
}  // namespace crvlib
