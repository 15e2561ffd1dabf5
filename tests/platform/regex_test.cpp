// platform::RegExp: the VBScript pattern dialect on PCRE2, its limits and its
// per-thread cache.
#include "platform/regex.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/testing/raised.h"

namespace crvlib::platform {
namespace {

enum Want { kNo, kYes, kBadPattern };

struct Case {
  std::u16string_view pattern;
  std::u16string_view subject;
  Want want;
};

// The outcome of one Test: kYes, kNo, or kBadPattern when it raises the
// syntax error.
Want Outcome(std::u16string_view pattern, std::u16string_view subject, bool ignore_case = false) {
  RegExp re;
  re.SetIgnoreCase(ignore_case);
  re.SetPattern(pattern);
  bool matched = false;
  const Raised raised = RaisedBy([&] { matched = re.Test(subject); });
  EXPECT_TRUE(raised.number == 0 || raised.number == kRegExpSyntaxError) << raised;
  return raised.number ? kBadPattern : matched ? kYes : kNo;
}

// For a Test that may give up at the engine's limits: `want`, or the
// out-of-stack error.
void ExpectAnswerOrGivingUp(std::u16string_view pattern, std::u16string_view subject, bool want) {
  RegExp re;
  re.SetPattern(pattern);
  bool matched = !want;
  const int32_t number = RaisedBy([&] { matched = re.Test(subject); }).number;
  EXPECT_TRUE(number == kOutOfStackSpace || (number == 0 && matched == want)) << number;
}

void RunTable(std::initializer_list<Case> cases, bool ignore_case) {
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "pattern " << String(c.pattern).ToUtf8() << " subject "
                                    << String(c.subject).ToUtf8());
    EXPECT_EQ(Outcome(c.pattern, c.subject, ignore_case), c.want);
  }
}

// What the translated patterns mean once PCRE2 runs them with the backend's
// options; what each construct is translated to is regex_to_pcre2_test.cpp's.
TEST(RegExp, ReadsTheVBScriptDialect) {
  RunTable(
      {
          {u"^(a)\\1$", u"aa", kYes},
          {u"^(a)\\1$", u"ab", kNo},
          {u"^\\1(a)$", u"a", kYes},        // forward: not yet set, matches empty
          {u"^(?:(a)|b)\\1$", u"b", kYes},  // unset: matches empty
          {u"^b", u"a\nb", kNo},            // ^ is the very start
          {u"a\\b", u"a\u00e9", kYes},      // é is no word character
          {u"(?=a)b|b", u"b", kYes},
          {u"^(?!a).", u"b", kYes},
          // Code units, not code points.
          {u"^\\ud800$", u"\xd800", kYes},
          {u"^.$", u"\xdc00", kYes},
          {u"^.$", u"\U0001F600", kNo},
          {u"^..$", u"\U0001F600", kYes},
          {u"^[\\ud800-\\udbff]", u"\U0001F600", kYes},
      },
      false);
}

TEST(RegExp, IgnoreCaseComparesCanonicalForms) {
  RunTable(
      {
          {u"^(\u00e9)\\1$", u"\u00e9\u00c9", kYes},
          {u"\\bfoo\\b", u"\u00e9FOO\u00e9", kYes},
          {u"\\Bfoo", u"xFOO", kYes},
      },
      true);
}

TEST(RegExp, CatastrophicPatternsEndWithinLimits) {
  std::u16string long_a(30000, u'a');
  struct Limit {
    std::u16string_view pattern;
    std::u16string subject;
  };
  const Limit cases[] = {
      {u"^(a|aa)+$", long_a.substr(0, 60) + u"!"},
      {u"^(\\w+\\s?)*$", std::u16string(40, u'w') + u"!"},
      {u"(a*)*b", long_a},
  };
  for (const Limit& c : cases) {
    SCOPED_TRACE(String(c.pattern).ToUtf8());
    auto start = std::chrono::steady_clock::now();
    ExpectAnswerOrGivingUp(c.pattern, c.subject, false);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  }
}

TEST(RegExp, LongSubjectsAndHugePatterns) {
  std::u16string subject(100000, u'a');
  subject += u'b';
  EXPECT_EQ(Outcome(u"ab$", subject), kYes);
  EXPECT_EQ(Outcome(u"^(?:a|c)*b$", subject), kYes);
  // A million backtracking points are past every stack and heap limit.
  std::u16string huge(1 << 20, u'a');
  huge += u'b';
  EXPECT_EQ(Outcome(u"ab$", huge), kYes);
  ExpectAnswerOrGivingUp(u"^(?:a|c)*b$", huge, true);

  std::u16string too_big;
  for (int i = 0; i < 20000; ++i) too_big += u"(?:ab|cd)";
  EXPECT_EQ(Outcome(too_big, u"ab"), kBadPattern);  // compiled form past PCRE2's size limit
  std::u16string deep = std::u16string(300, u'(') + u"a" + std::u16string(300, u')');
  EXPECT_EQ(Outcome(deep, u"a"), kBadPattern);
  std::u16string nested = std::u16string(200, u'(') + u"a" + std::u16string(200, u')');
  EXPECT_EQ(Outcome(nested, u"a"), kYes);
}

TEST(RegExp, CacheStaysBoundedAndKeepsAnswersRight) {
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 200; ++i) {
      std::u16string pattern = u"^x" + std::u16string(static_cast<size_t>(i % 50), u'y') + u"$";
      std::u16string subject = u"x" + std::u16string(static_cast<size_t>(i % 50), u'y');
      bool ignore_case = i >= 100;
      if (ignore_case) subject[0] = u'X';
      EXPECT_EQ(Outcome(pattern, subject, ignore_case), kYes);
      EXPECT_EQ(Outcome(pattern, subject + u"y", ignore_case), kNo);
    }
  }
  EXPECT_LE(CachedRegExpCountForTesting(), 64u);
  // A cached invalid pattern keeps failing.
  EXPECT_EQ(Outcome(u"(", u"("), kBadPattern);
  EXPECT_EQ(Outcome(u"(", u"("), kBadPattern);
  // The same text with and without IgnoreCase are different patterns.
  EXPECT_EQ(Outcome(u"a", u"A", false), kNo);
  EXPECT_EQ(Outcome(u"a", u"A", true), kYes);
  EXPECT_EQ(Outcome(u"a", u"A", false), kNo);
}

TEST(RegExp, ThreadsKeepTheirOwnEngines) {
  std::vector<std::thread> threads;
  std::vector<int> failures(4, 0);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &failures] {
      for (int i = 0; i < 2000; ++i) {
        std::u16string digits(static_cast<size_t>(t + 1), u'7');
        RegExp re;
        re.SetIgnoreCase(i % 2 == 0);
        re.SetPattern(i % 3 == 0 ? std::u16string_view(u"^7+$") : std::u16string_view(u"^[a7]+$"));
        if (!re.Test(digits) || re.Test(u"b")) ++failures[static_cast<size_t>(t)];
      }
    });
  }
  for (std::thread& th : threads) th.join();
  EXPECT_EQ(failures, std::vector<int>(4, 0));
}

}  // namespace
}  // namespace crvlib::platform
