// Case mapping, letter tests and StrComp.
#include "runtime/text.h"

#include <gtest/gtest.h>

#include "core/error_frame.h"
#include "runtime/compare.h"
#include "tests/runtime/runtime_test_util.h"
#include "tests/testing/raised.h"

namespace crvlib::internal {
namespace {

using TextTest = EnUs;

TEST_F(TextTest, CaseMappingIsSimpleAndKeepsLength) {
  struct Row {
    const char* source;
    std::u16string_view in, upper, lower;
  };
  const Row rows[] = {
      {"doc", u"Hello World", u"HELLO WORLD", u"hello world"},
      {"hand", u"stra\u00DFe", u"STRA\u00DFE", u"stra\u00DFe"},  // no 1:2 mapping
      {"hand", u"\u00C0b\u0130", u"\u00C0B\u0130",
       u"\u00E0bi"},                                          // simple mapping: one unit for one
      {"hand", u"\U00010428", u"\U00010400", u"\U00010428"},  // Deseret, outside the BMP
      {"hand", u"123 $%", u"123 $%", u"123 $%"},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << U8(r.in));
    EXPECT_EQ(U8(UpperCase(r.in).view()), U8(r.upper));
    EXPECT_EQ(U8(LowerCase(r.in).view()), U8(r.lower));
  }
}

TEST_F(TextTest, LetterTests) {
  struct Row {
    const char* source;
    char16_t c;
    bool alpha, alnum;
  };
  const Row rows[] = {
      {"hand", u'a', true, true},        {"hand", u'Z', true, true},
      {"hand", u'5', false, true},       {"hand", u' ', false, false},
      {"hand", u'_', false, false},      {"hand", u'\u00E9', true, true},
      {"hand", u'\u0416', true, true},   {"hand", u'\u0663', false, true},  // Arabic-Indic three
      {"hand", u'\u00D7', false, false}, {"hand", char16_t{0xD800}, false, false},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " U+" << std::hex << int(r.c));
    EXPECT_EQ(IsCharAlpha(r.c), r.alpha);
    EXPECT_EQ(IsCharAlphaNumeric(r.c), r.alnum);
  }
}

TEST_F(TextTest, StrCompModes) {
  struct Row {
    const char* source;
    std::u16string_view a, b;
    int32_t mode;
    int want;
  };
  const Row rows[] = {
      {"doc", u"ABCD", u"abcd", 1, 0}, {"doc", u"ABCD", u"abcd", 0, -1},
      {"doc", u"abcd", u"ABCD", 0, 1}, {"hand", u"a", u"B", 0, 1},
      {"hand", u"a", u"B", 1, -1},     {"hand", u"", u"", 0, 0},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << U8(r.a) << " " << U8(r.b));
    EXPECT_EQ(StrComp(r.a, r.b, r.mode), r.want);
  }
  EXPECT_EQ(RaisedBy([] { StrComp(u"a", u"b", 2); }).number, 5);
}

}  // namespace
}  // namespace crvlib::internal
