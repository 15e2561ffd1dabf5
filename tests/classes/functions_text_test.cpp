// The substring utilities that work directly on strings.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <random>

#include "crvlib/functions.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

TEST(Characters, StripAndSwap) {
  EXPECT_EQ(Functions::StripChar(u"a-b-c", u"-x"), u"abc");  // only the first character counts
  EXPECT_EQ(Functions::StripChar(u"a-b-c", u""), u"a-b-c");
  EXPECT_EQ(Functions::Swap(u"a.b.c", 46, 45), u"a-b-c");
  EXPECT_EQ(Functions::Swap(u"x.y", 46, 128), u"x\u20ACy");  // through the code page
  EXPECT_EQ(Functions::Swap(u"abc", 120, 120), u"abc");      // equal codes, character absent
  EXPECT_EQ(RaisedBy([] { Functions::Swap(u"a", 256, 45); }), Raised(5, u"CRVLIB.Functions::Swap"));
  EXPECT_EQ(RaisedBy([] { Functions::Swap(u"a", 45, -1); }).number, 5);
}

TEST(ParseStr, WalksSegmentsAndWritesBackThePosition) {
  struct Case {
    std::u16string_view value, delimiters;
    int32_t position;
    std::u16string_view want;
    int32_t position_after;  // or the error number when `want` is "!"
  };
  constexpr Case kCases[] = {
      {u"  ab, cd", u" ,", 1, u"ab", 5},
      {u"  ab, cd", u" ,", 5, u"cd", 9},
      {u"  ab, cd", u" ,", 9, u"", 9},  // past the end: left as it is, not 0
      {u"abc", u"", 1, u"ab", 3},       // empty set: the last character is left off
      {u"abc", u"", 3, u"", 0},         // a single remaining character gives ""
      {u",,,", u",", 1, u"", 4},        // only separators: stops past the end
      {u"abc", u",", 0, u"!", 5},       // mid with a start below 1
      {u"", u"", 1, u"!", 5},           // mid with a negative length
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << String(c.value).ToUtf8() << " @" << c.position);
    int32_t position = c.position;
    auto call = [&] {
      return Functions::ParseStr(String(c.value), String(c.delimiters), position);
    };
    if (c.want == u"!") {
      EXPECT_EQ(RaisedBy(call), Raised(c.position_after, u"CRVLIB.Functions::ParseStr"));
    } else {
      EXPECT_EQ(call(), c.want);
      EXPECT_EQ(position, c.position_after);
    }
  }
  EXPECT_EQ(Functions::ParseStr(u",x,y", u","), u"x");  // Position defaults to 1
}

TEST(RevInStr, FindsTheLastStartAtOrBeforeStart) {
  struct Case {
    int32_t start;
    std::u16string_view value, find;
    int32_t want;
  };
  constexpr Case kCases[] = {
      {0, u"abcabc", u"bc", 5}, {4, u"abcabc", u"bc", 2}, {5, u"abcabc", u"bc", 5},
      {2, u"abcd", u"bcd", 0},  // a Start closer to the front than FindStr is long
      {3, u"abcd", u"bcd", 2},  // yet the match may run past Start
      {3, u"abcd", u"ab", 1},   // the scan reaches position 1
      {1, u"", u"a", 0},        {9, u"abc", u"", 3},      {-5, u"abc", u"x", 0},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << c.start << " " << String(c.find).ToUtf8());
    EXPECT_EQ(Functions::RevInStr(c.start, String(c.value), String(c.find)), c.want);
  }
}

TEST(Justify, RaisesTheStringPrimitivesErrors) {
  struct Case {
    std::function<void()> call;
    int32_t number;
    std::u16string_view routine;
  };
  const Case kCases[] = {
      {[] { Functions::Pad(u"1", u"", 3); }, 5, u"Pad"},
      {[] { Functions::Pad(u"1", u"0", INT_MIN); }, 6, u"Pad"},
      {[] { Functions::Pad(u"1", u"0", INT_MAX); }, 14, u"Pad"},
      {[] { Functions::LeftJustify(u"a", -1); }, 5, u"LeftJustify"},
      {[] { Functions::LeftJustify(u"abc", 1, u""); }, 5, u"LeftJustify"},
      {[] { Functions::LeftJustify(u"a", INT_MAX); }, 14, u"LeftJustify"},
      {[] { Functions::RightJustify(u"", 0, u""); }, 5, u"RightJustify"},
      {[] { Functions::RightJustify(u"a", 0x40000000); }, 14, u"RightJustify"},
      {[] { Functions::CenterJustify(u"a", 1, u""); }, 5, u"CenterJustify"},
      {[] { Functions::CenterJustify(u"a", INT_MAX); }, 14, u"CenterJustify"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(String(c.routine).ToUtf8());
    EXPECT_EQ(RaisedBy(c.call),
              Raised(c.number, u"CRVLIB.Functions::" + std::u16string(c.routine)));
  }
  EXPECT_EQ(Functions::Pad(u"123", u"", 2), u"123");            // no padding needed
  EXPECT_EQ(Functions::CenterJustify(u"abc", 1, u""), u"abc");  // too long: fill unused
}

// The routines as literal compositions of the primitives: Swap searching
// again from the start after each replacement, and the justifications built
// from repeat, left and right, with d / 2 rounded by the floating point unit.
std::u16string Repeat(int32_t n, char16_t c) {
  return std::u16string(static_cast<size_t>(n), c);
}
std::u16string Right(const std::u16string& s, int32_t n) {
  return s.substr(s.size() - std::min(s.size(), static_cast<size_t>(n)));
}
std::u16string NaiveSwap(std::u16string s, char16_t from, char16_t to) {
  for (size_t p; (p = s.find(from)) != std::u16string::npos;) s[p] = to;
  return s;
}
std::u16string NaiveCenter(const std::u16string& v, int32_t length) {
  const auto len = static_cast<int32_t>(v.size());
  if (len > length) return v;
  const auto half = static_cast<int32_t>(std::nearbyint((length - len) / 2.0));
  return Right(Repeat(half, u'*') + v + Repeat(half, u'*'), length);
}

TEST(SubstringTwins, AgreeWithLiteralCompositions) {
  std::mt19937 rng(20240611);
  std::uniform_int_distribution<int> unit(u'a', u'd'), len(0, 12);
  for (int round = 0; round < 2000; ++round) {
    std::u16string v(static_cast<size_t>(len(rng)), u'\0');
    for (char16_t& c : v) c = static_cast<char16_t>(unit(rng));
    const int32_t n = len(rng);
    const auto missing = n - static_cast<int32_t>(v.size());
    SCOPED_TRACE(testing::Message() << String(v).ToUtf8() << " " << n);
    EXPECT_EQ(Functions::Swap(v, u'a', u'b'), String(NaiveSwap(v, u'a', u'b')));
    EXPECT_EQ(Functions::Pad(v, u"*", n), String(missing >= 1 ? Repeat(missing, u'*') + v : v));
    EXPECT_EQ(Functions::CenterJustify(v, n, u"*"), String(NaiveCenter(v, n)));
    EXPECT_EQ(Functions::LeftJustify(v, n, u"*"),
              String((v + Repeat(n, u'*')).substr(0, static_cast<size_t>(n))));
    EXPECT_EQ(Functions::RightJustify(v, n, u"*"), String(Right(Repeat(n, u'*') + v, n)));
  }
  // The rounding examples: d = 1, 3, 5 and 7 for "ab".
  EXPECT_EQ(Functions::CenterJustify(u"ab", 3, u"*"), u"ab");
  EXPECT_EQ(Functions::CenterJustify(u"ab", 5, u"*"), u"*ab**");
  EXPECT_EQ(Functions::CenterJustify(u"ab", 7, u"*"), u"**ab**");
  EXPECT_EQ(Functions::CenterJustify(u"ab", 9, u"*"), u"***ab****");
}

}  // namespace
}  // namespace crvlib
