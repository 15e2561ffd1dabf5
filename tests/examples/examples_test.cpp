// The reader of the written examples: which lines are statements, equalities
// and other checks, where a note begins, and which lines are refused. A
// misread line either fails to compile (and names its header line) or, worse,
// checks something else than it says; these rows are the second kind.
#include "tests/testing/examples.h"

#include <gtest/gtest.h>

namespace crvlib::examples {
namespace {

TEST(Examples, LinesAreReadByTheirShape) {
  struct Case {
    std::string_view text;
    Line::Kind kind;
    std::string_view code, expected;
  };
  const Case kCases[] = {
      {R"(Functions::ExtractElement(a, u"|", 2) == u"fig")", Line::kEqual,
       R"(Functions::ExtractElement(a, u"|", 2))", R"(u"fig")"},
      {R"(String a = u"a == b";)", Line::kStatement, R"(String a = u"a == b";)", ""},
      {R"(F(u"a==b", '=') == u"==")", Line::kEqual, R"(F(u"a==b", '='))", R"(u"==")"},
      {R"(F(u"\"==") == u"\\")", Line::kEqual, R"(F(u"\"=="))", R"(u"\\")"},
      {R"(f(x == 1) == g(y == 2))", Line::kEqual, "f(x == 1)", "g(y == 2)"},
      {R"(s == u"a|b"   // a note, dropped)", Line::kEqual, "s", R"(u"a|b")"},
      {R"(s == u"http://x")", Line::kEqual, "s", R"(u"http://x")"},
      {R"(d.Insert(u"Big ", 6);  // w == u"World")", Line::kStatement, R"(d.Insert(u"Big ", 6);)",
       ""},
      {"a != b", Line::kTrue, "a != b", ""},
      {"a <= b", Line::kTrue, "a <= b", ""},
      {R"(IsKnownLocale("de") && !IsKnownLocale("xx"))", Line::kTrue,
       R"(IsKnownLocale("de") && !IsKnownLocale("xx"))", ""},
      {"a == b || c == d", Line::kTrue, "a == b || c == d", ""},
      {"#define ROW(m, v) #m,", Line::kDefine, "#define ROW(m, v) #m,", ""},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.text);
    Line line;
    std::string error;
    ASSERT_TRUE(ReadLine(c.text, &line, &error)) << error;
    EXPECT_EQ(line.kind, c.kind);
    EXPECT_EQ(line.code, c.code);
    EXPECT_EQ(line.expected, c.expected);
  }
  Line define;
  std::string error;
  ASSERT_TRUE(ReadLine("#define NAME(member, value) #member,", &define, &error));
  EXPECT_EQ(define.macro, "NAME");
}

TEST(Examples, UnreadableLinesAreRefused) {
  const std::string_view kLines[] = {
      R"(f(1 == 2)",         // a bracket left open
      R"(s == u"abc)",       // a quote left open
      "// only a note",      //
      "a == b == c",         // which is the expected value?
      "== 3",                // no actual value
      R"(f(u"x") ==  // y)"  // the expected value is in the note
  };
  for (std::string_view text : kLines) {
    Line line;
    std::string error;
    EXPECT_FALSE(ReadLine(text, &line, &error)) << text;
    EXPECT_FALSE(error.empty()) << text;
  }
}

TEST(Examples, BlocksAndFiles) {
  const SourceText header{"h.h",
                          "//   int a = 1;\n"
                          "//   a == 1\n"
                          "// prose ends the block\n"
                          "  //   int a = 2;\n"
                          "  //    a continuation, not an example\n"
                          "//  two spaces, not an example\n"};
  std::string out, error;
  ASSERT_TRUE(WriteTests({header}, &out, &error)) << error;
  // Two blocks, so `a` is declared twice in scopes of their own.
  EXPECT_NE(out.find("#line 1 \"h.h\"\n    int a = 1;\n#line 2 \"h.h\"\n"
                     "    EXPECT_EQ((a), (1));\n  }\n  {\n#line 4 \"h.h\"\n    int a = 2;\n  }\n"),
            std::string::npos)
      << out;
  EXPECT_EQ(out.find("continuation"), std::string::npos);
  EXPECT_EQ(out.find("two spaces"), std::string::npos);

  const SourceText readme{
      "R.md",
      "```cpp\nint ignored = 0;\n```\n## The library\n\n```cpp\n"
      "#include <vector>\n\nint b = 1;\nb == 1\n```\n```cpp\nnot = read;\n```\n"};
  ASSERT_TRUE(WriteTests({readme}, &out, &error)) << error;
  EXPECT_NE(out.find("#include <vector>\n"), std::string::npos);
  EXPECT_NE(out.find("#line 9 \"R.md\"\n    int b = 1;\n#line 10 \"R.md\"\n"
                     "    EXPECT_EQ((b), (1));\n"),
            std::string::npos)
      << out;
  EXPECT_EQ(out.find("ignored"), std::string::npos);
  EXPECT_EQ(out.find("not = read"), std::string::npos);

  EXPECT_FALSE(WriteTests({{"h.h", "//   f(\n"}}, &out, &error));
  EXPECT_EQ(error.rfind("h.h:1: ", 0), 0u) << error;
  EXPECT_FALSE(WriteTests({{"R.md", "## The library\nno snippet\n"}}, &out, &error));
  EXPECT_FALSE(WriteTests({{"h.h", "// no examples\n"}}, &out, &error));
}

}  // namespace
}  // namespace crvlib::examples
