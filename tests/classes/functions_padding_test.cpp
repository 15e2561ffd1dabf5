// Pad and the justification routines.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <random>
#include <string>

#include "crvlib/functions.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

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

// The routines as literal compositions of the primitives: repeat, left and
// right, with d / 2 rounded by the floating point unit.
std::u16string Repeat(int32_t n, char16_t c) {
  return std::u16string(static_cast<size_t>(n), c);
}
std::u16string Right(const std::u16string& s, int32_t n) {
  return s.substr(s.size() - std::min(s.size(), static_cast<size_t>(n)));
}
std::u16string NaiveCenter(const std::u16string& v, int32_t length) {
  const auto len = static_cast<int32_t>(v.size());
  if (len > length) return v;
  const auto half = static_cast<int32_t>(std::nearbyint((length - len) / 2.0));
  return Right(Repeat(half, u'*') + v + Repeat(half, u'*'), length);
}

TEST(PaddingTwins, AgreeWithLiteralCompositions) {
  std::mt19937 rng(20240611);
  std::uniform_int_distribution<int> unit(u'a', u'd'), len(0, 12);
  for (int round = 0; round < 2000; ++round) {
    std::u16string v(static_cast<size_t>(len(rng)), u'\0');
    for (char16_t& c : v) c = static_cast<char16_t>(unit(rng));
    const int32_t n = len(rng);
    const auto missing = n - static_cast<int32_t>(v.size());
    SCOPED_TRACE(testing::Message() << String(v).ToUtf8() << " " << n);
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
