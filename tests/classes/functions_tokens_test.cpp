// ReplaceParams: in-place overwrite of tokens by parameter texts.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "crvlib/functions.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

TEST(ReplaceParams, OverwritesWithoutChangingTheLength) {
  struct Case {
    std::u16string value, token;
    VariantArray params;
    std::u16string want;
  };
  const Case cases[] = {
      {u"{0} and {0}", u"{0}", {0, {12, 34}}, u"12} and 34}"},  // shorter: the tail stays
      {u"a%1b", u"%1", {0, {u"ABCD"}}, u"aABC"},                // longer: cut at the end
      {u"##-##", u"##", {0, {5, true}}, u"5#-Tr"},
      {u"%1", u"%1", {0, {u"A", u"B", u"C"}}, u"A1"},     // "A1" holds no token: stop
      {u"%1%1", u"%1", {0, {u"%", u"Z"}}, u"Z1%1"},       // "%" leaves "%1" in place
      {u"abc", u"", {0, {u"X", u"Y"}}, u"Ybc"},           // empty token: position 1
      {u"x%1", u"%1", {0, {Variant()}}, u"x%1"},          // Empty writes nothing
      {u"%1%1", u"%1", {0, {Variant(), u"Q"}}, u"Q1%1"},  // and the token is found again
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message()
                 << String(c.value).ToUtf8() << " / " << String(c.token).ToUtf8());
    EXPECT_EQ(Functions::ReplaceParams(c.value, c.token, c.params), c.want);
  }
}

TEST(ReplaceParams, NullRaises94WithTheRoutineSource) {
  EXPECT_EQ(RaisedBy([] { Functions::ReplaceParams(u"a%1", u"%1", kNull); }),
            Raised(94, u"CRVLIB.Functions::ReplaceParams"));
  // A Null past the last token is never converted.
  EXPECT_EQ(Functions::ReplaceParams(u"a%1", u"%1", u"b", kNull), u"ab1");
}

// Each round searching the whole text again, as the routine is defined.
std::u16string Literal(std::u16string s, const std::u16string& token,
                       const std::vector<std::u16string>& values) {
  for (const std::u16string& v : values) {
    if (s.empty()) break;
    size_t at = s.find(token);
    if (at == std::u16string::npos) break;
    for (size_t i = 0; i < v.size() && at + i < s.size(); ++i) s[at + i] = v[i];
  }
  return s;
}

TEST(ReplaceParams, AgreesWithSearchingFromTheStartEveryRound) {
  std::mt19937 rng(7);
  auto word = [&](size_t max) {
    std::u16string w(rng() % (max + 1), u'a');
    for (char16_t& c : w) c = u"ab%1"[rng() % 4];
    return w;
  };
  for (int i = 0; i < 3000; ++i) {
    std::u16string value = word(12), token = word(3);
    std::vector<std::u16string> values(rng() % 5);
    VariantArray params{0, {}};
    for (auto& v : values) {
      v = word(4);
      params.items.emplace_back(String(v));
    }
    ASSERT_EQ(Functions::ReplaceParams(value, token, params), Literal(value, token, values))
        << String(value).ToUtf8() << " " << String(token).ToUtf8();
  }
}

}  // namespace
}  // namespace crvlib
