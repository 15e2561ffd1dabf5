// The VBScript pattern dialect rewritten as explicit PCRE2 patterns: what
// each construct becomes, and what the dialect rejects. Whether PCRE2 then
// matches as the dialect does is regex_test.cpp's business.
#include "platform/regex_to_pcre2.h"

#include <gtest/gtest.h>

#include <string>

#include "crvlib/string.h"

namespace crvlib::platform {
namespace {

// `want` is the translation, or "!" for a syntax error ("!" itself would be
// written \x{21}).
struct Case {
  std::u16string_view pattern;
  std::u16string_view want;
};

void RunTable(std::initializer_list<Case> cases, const CaseClasses* case_classes) {
  for (const Case& c : cases) {
    SCOPED_TRACE(String(c.pattern).ToUtf8());
    std::u16string out = u"left over";
    const bool ok = TranslateToPcre2(c.pattern, case_classes, &out);
    EXPECT_EQ(ok ? String(out).ToUtf8() : "!", String(c.want).ToUtf8());
  }
}

TEST(RegExpTranslation, RejectsWhatTheDialectRejects) {
  RunTable(
      {
          {u"(", u"!"},
          {u")", u"!"},
          {u"[a", u"!"},
          {u"\\", u"!"},
          {u"*a", u"!"},
          {u"a{2}{3}", u"!"},
          {u"^*", u"!"},
          {u"\\b+", u"!"},
          {u"[z-a]", u"!"},
          {u"a{3,2}", u"!"},
          {u"(?<=a)b", u"!"},  // no look-behind
          {u"(?", u"!"},
          {u"a{65536}", u"!"},  // past PCRE2's largest count
          {u"a{1,65536}", u"!"},
          {u"a{65535}", u"a{65535}"},
          {u"a**", u"!"},
          {u"a*?", u"a*?"},  // a lazy quantifier is one quantifier
          {u"(a|)*", u"(a|)*"},
      },
      nullptr);
  std::u16string too_long(300000, u'a');
  std::u16string out;
  EXPECT_FALSE(TranslateToPcre2(too_long, nullptr, &out));
}

TEST(RegExpTranslation, WritesEveryCharacterExplicitly) {
  RunTable(
      {
          // Letters without an escape meaning stand for themselves.
          {u"x\\A", u"xA"},
          {u"\\p{L}", u"p\\x{7b}L\\x{7d}"},
          {u"^\\/$", u"^\\x{2f}\\z"},  // $ is the very end
                                       // \v is the vertical tab, not a class of vertical space.
          {u"\\v", u"\\x{b}"},
          {u"\\cJ", u"\\x{a}"},
          {u"\\c1", u"\\x{5c}c1"},  // \c without a letter is a backslash
          {u"\\x41", u"A"},
          {u"\\x4", u"x4"},  // incomplete: the letter itself
          {u"\\u00e9", u"\\x{e9}"},
          {u"\\u12", u"u12"},
          {u"\\101", u"A"},  // octal
          {u"\\0", u"\\x{0}"},
          {u"\\400", u"\\x{20}0"},  // octal stops at 0377
                                    // Back-references while the pattern has that many groups, octal
                                    // (or the digit) past them.
          {u"(a)\\1", u"(a)\\g{1}"},
          {u"\\1(a)", u"\\g{1}(a)"},
          {u"(a)\\2", u"(a)\\x{2}"},
          {u"(a)\\10", u"(a)\\x{8}"},
          {u"(a)\\9", u"(a)9"},
          {u"(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)\\10", u"(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)\\g{10}"},
          {u"(?:a)[(]\\(\\1", u"(?:a)\\x{28}\\x{28}\\x{1}"},  // none of these is a group
                                                              // Classes.
          {u"\\d\\w\\s", u"[0-9][0-9A-Z\\x{5f}a-z][\\x{9}-\\x{d}\\x{20}]"},
          {u"\\D", u"[\\x{0}-\\x{2f}\\x{3a}-\\x{ffff}]"},
          {u".", u"[\\x{0}-\\x{9}\\x{b}-\\x{ffff}]"},
          {u"[\\d-z]", u"[\\x{2d}0-9z]"},  // a class escape next to "-" keeps the dash
          {u"[a-]", u"[\\x{2d}a]"},
          {u"[a-c-e]", u"[\\x{2d}a-ce]"},
          {u"[\\b]", u"\\x{8}"},
          {u"[\\101]", u"A"},
          {u"[\\c_]", u"\\x{1f}"},
          {u"[ab]", u"[ab]"},
          {u"[a-c]", u"[a-c]"},
          {u"[]", u"[^\\x{0}-\\x{ffff}]"},  // the empty class never matches
          {u"[^]", u"[\\x{0}-\\x{ffff}]"},
          {u"[^\\W]", u"[0-9A-Z\\x{5f}a-z]"},
          {u"]", u"\\x{5d}"},
          // Braces that are no quantifier are literal text.
          {u"a{,3}", u"a\\x{7b}\\x{2c}3\\x{7d}"},
          {u"x{", u"x\\x{7b}"},
          {u"a{2,}b{0}c{1,3}?", u"a{2,}b{0}c{1,3}?"},
          {u"a{2,2}", u"a{2}"},
          {u"(?=a)|(?!b)", u"(?=a)|(?!b)"},
      },
      nullptr);
}

TEST(RegExpTranslation, IgnoreCaseWritesCaseClosures) {
  const CaseClasses cases;
  RunTable(
      {
          {u"^[a-z]+$", u"^[A-Za-z]+\\z"},
          {u"\u00e9", u"[\\x{c9}\\x{e9}]"},
          {u"^[\u00e0-\u00fe]$", u"^[\\x{c0}-\\x{d6}\\x{d8}-\\x{de}\\x{e0}-\\x{fe}]\\z"},
          {u"[^a]", u"[\\x{0}-\\x{40}B-\\x{60}b-\\x{ffff}]"},
          {u"\\W", u"[\\x{0}-\\x{2f}\\x{3a}-\\x{40}\\x{5b}-\\x{5e}\\x{60}\\x{7b}-\\x{ffff}]"},
          {u"\u03c3", u"[\\x{3a3}\\x{3c2}\\x{3c3}]"},  // both upper-case to capital sigma
          {u"\u00b5", u"[\\x{b5}\\x{39c}\\x{3bc}]"},   // micro sign and mu
          // Nothing above 127 meets ASCII: long s, Kelvin sign, dotless i.
          {u"s", u"[Ss]"},
          {u"k", u"[Kk]"},
          {u"i", u"[Ii]"},
          {u"\\w", u"[0-9A-Z\\x{5f}a-z]"},
          {u"7", u"7"},
          // The engine compares back-references caselessly; \b looks at ASCII
          // word characters only.
          {u"(a)\\1", u"([Aa])(?i:\\g{1})"},
          {u"\\b", u"(?:(?<=[0-9A-Z_a-z])(?![0-9A-Z_a-z])|(?<![0-9A-Z_a-z])(?=[0-9A-Z_a-z]))"},
      },
      &cases);
}

TEST(RegExpTranslation, ReportsBackReferences) {
  struct Row {
    std::u16string_view pattern;
    bool back_references;
  };
  constexpr Row kRows[] = {{u"(a)\\1", true}, {u"(a)\\2", false}, {u"[\\1]", false}};
  for (const Row& r : kRows) {
    std::u16string out;
    bool back_references = !r.back_references;
    TranslateToPcre2(r.pattern, nullptr, &out, &back_references);
    EXPECT_EQ(back_references, r.back_references) << String(r.pattern).ToUtf8();
  }
}

}  // namespace
}  // namespace crvlib::platform
