// Field, ParseStr and RevInStr.
#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>
#include <vector>

#include "crvlib/functions.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

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

TEST(Field, JoinsElementsFromPosition) {
  struct Case {
    std::u16string_view value, delimiter;
    int32_t position, count;
    std::u16string_view want;  // "!" when `error` is expected instead
    int32_t error = 0;
  };
  const Case kCases[] = {
      {u"a|b|c", u"|", 0, 2, u"a|b|c|a"},       // position 0 is the whole value, then element 1
      {u"a|b|c", u"|", -1, 3, u"c|a|b|c|a"},    // -1 is the last element, then positions 0 and 1
      {u"abc", u"", 0, 1, u"abc"},              // position 0 never looks at the delimiter
      {u"a|b", u"|", INT_MAX, 1, u""},          // past the end: only -1 is the last element
      {u"a|b", u"|", -2, 1, u"!", 5},           // ExtractElement refuses below -1
      {u"abc", u"", 0, 2, u"!", 5},             // an empty delimiter cannot be scanned
      {u"a|b", u"|", INT_MAX - 1, 2, u"!", 6},  // Position + i overflows before the - 1
      {u"a|b", u"|", INT_MAX - 5, 100, u"!", 6},
      {u"a|b", u"|", 1, INT_MAX, u"!", 14},         // a billion delimiters: refused, not built
      {u"a|b", u"||", 1 << 30, 1 << 30, u"!", 14},  // out of space before the overflow
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message()
                 << String(c.value).ToUtf8() << " pos " << c.position << " count " << c.count);
    auto call = [&] {
      return Functions::Field(String(c.value), String(c.delimiter), c.position, c.count);
    };
    if (c.error) {
      EXPECT_EQ(RaisedBy(call), Raised(c.error, u"CRVLIB.Functions::Field"));
    } else {
      EXPECT_EQ(call(), c.want);
    }
  }
}

// A plain model: split the value once, then join the elements one by one;
// elements past the end are empty but keep their delimiter, and a Count of
// 0 or below gives one element.
std::u16string NaiveField(const std::u16string& value, const std::u16string& delimiter,
                          int32_t position, int32_t count) {
  std::vector<std::u16string> elements;
  if (!value.empty()) {
    size_t from = 0;
    for (;;) {
      const size_t at = value.find(delimiter, from);
      elements.push_back(value.substr(from, at == std::u16string::npos ? at : at - from));
      if (at == std::u16string::npos) break;
      from = at + delimiter.size();
    }
  }
  auto element = [&](int64_t p) -> std::u16string {
    if (p == 0) return value;
    if (p == -1) return elements.empty() ? u"" : elements.back();  // a fresh object
    return p <= static_cast<int64_t>(elements.size()) ? elements[size_t(p - 1)] : u"";
  };
  std::u16string out = element(position);
  for (int64_t i = 2; i <= count; ++i) out += delimiter + element(position + i - 1);
  return out;
}

TEST(Field, MatchesANaiveSplitAndJoin) {
  std::mt19937 rng(20240611);
  const std::u16string kDelimiters[] = {u"|", u"||", u"ab"};
  const char16_t kAlphabet[] = u"ab|";
  for (int round = 0; round < 3000; ++round) {
    std::u16string value;
    for (int k = std::uniform_int_distribution<int>(0, 12)(rng); k > 0; --k) {
      value += kAlphabet[std::uniform_int_distribution<int>(0, 2)(rng)];
    }
    const std::u16string& delimiter = kDelimiters[rng() % 3];
    const int32_t position = std::uniform_int_distribution<int32_t>(-1, 8)(rng);
    const int32_t count = std::uniform_int_distribution<int32_t>(-1, 10)(rng);
    SCOPED_TRACE(String(value).ToUtf8() + " by " + String(delimiter).ToUtf8() + " pos " +
                 std::to_string(position) + " count " + std::to_string(count));
    ASSERT_EQ(Functions::Field(String(value), String(delimiter), position, count),
              NaiveField(value, delimiter, position, count));
  }
}

}  // namespace
}  // namespace crvlib
