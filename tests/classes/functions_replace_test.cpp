// StripChar and Swap, and Change and the quoting routines, which replace
// through a temporary DynamicString.
#include <gtest/gtest.h>

#include <random>
#include <string>

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

// Swap as a literal loop: search again from the start after each
// replacement.
std::u16string NaiveSwap(std::u16string s, char16_t from, char16_t to) {
  for (size_t p; (p = s.find(from)) != std::u16string::npos;) s[p] = to;
  return s;
}

TEST(Characters, SwapAgreesWithSearchingAgain) {
  std::mt19937 rng(20240611);
  std::uniform_int_distribution<int> unit(u'a', u'd'), len(0, 12);
  for (int round = 0; round < 2000; ++round) {
    std::u16string v(static_cast<size_t>(len(rng)), u'\0');
    for (char16_t& c : v) c = static_cast<char16_t>(unit(rng));
    SCOPED_TRACE(String(v).ToUtf8());
    EXPECT_EQ(Functions::Swap(v, u'a', u'b'), String(NaiveSwap(v, u'a', u'b')));
  }
}

TEST(Change, ReplacesEveryOccurrenceCaseSensitively) {
  struct Case {
    std::u16string_view value, find, replace, want;
  };
  constexpr Case kCases[] = {
      {u"a.b.c", u".", u"-", u"a-b-c"},  // every occurrence
      {u"aAa", u"a", u"x", u"xAx"},      // case-sensitive
      {u"aaa", u"a", u"aa", u"aaaaaa"},  // replaced text is not searched again
      {u"aaaa", u"aa", u"b", u"bb"},     // matches never overlap
      {u"abcabc", u"bc", u"", u"aa"},    // deleting
      {u"abc", u"abcd", u"x", u"abc"},   // longer than the value
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(String(c.value).ToUtf8() + " / " + String(c.find).ToUtf8());
    EXPECT_EQ(Functions::Change(String(c.value), String(c.find), String(c.replace)), c.want);
  }
  // An empty FindValue is refused by ChangeAll, reported under Change.
  EXPECT_EQ(RaisedBy([] { Functions::Change(u"abc", u"", u"x"); }),
            Raised(5, u"CRVLIB.Functions::Change"));
}

TEST(QuoteStr, DoublesEmbeddedQuotesAndWraps) {
  EXPECT_EQ(Functions::QuoteStr(u""), u"''");
  EXPECT_EQ(Functions::QuoteStr(u"it's"), u"'it''s'");
  EXPECT_EQ(Functions::QuoteStr(u"say \"hi\""), u"'say \"hi\"'");  // the other quote stays
  EXPECT_EQ(Functions::DblQuoteStr(u""), u"\"\"");
  EXPECT_EQ(Functions::DblQuoteStr(u"a\"b\"c"), u"\"a\"\"b\"\"c\"");
}

}  // namespace
}  // namespace crvlib
