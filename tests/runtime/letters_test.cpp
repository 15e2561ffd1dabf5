// Case mapping and letter tests.
#include "runtime/letters.h"

#include <gtest/gtest.h>

#include "tests/runtime/runtime_test_util.h"

namespace crvlib::internal {
namespace {

using LettersTest = EnUs;

TEST_F(LettersTest, CaseMappingIsSimpleAndKeepsLength) {
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

TEST_F(LettersTest, LetterTests) {
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

}  // namespace
}  // namespace crvlib::internal
