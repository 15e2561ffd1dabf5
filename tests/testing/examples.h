// The examples written in the public headers and in the README's library
// snippet, read into a GoogleTest file so that every one is compiled and
// checked (tests/examples/extract_examples.cpp runs this at build time).
//
// The written form of an example. In a header, an example block is a run of
// comment lines indented by three spaces ("//   ", after the indentation of
// the comment itself); any other line ends it. In the README, the block is
// the first ```cpp fence after "## The library"; its blank lines are skipped
// and its #include lines go to the top of the test file. Each line is one of
//   statement;                  run as written
//   #define NAME ...            a macro for the block, undefined after it
//   ACTUAL == EXPECTED          checked with EXPECT_EQ
//   EXPRESSION                  any other expression, checked with EXPECT_TRUE
// and may end in a note, "// ...", which is dropped. So an example reads
//   //   String a = u"apple|fig|pear";
//   //   Functions::ExtractElement(a, u"|", 2) == u"fig"
// Names are those of namespace crvlib; each block runs in a scope of its
// own, each file in a test of its own on an en-US thread. A line that fits
// none of the forms (brackets or quotes left open, nothing but a note, two
// "==" outside "&&" or "||") is an error naming the file and line.
#ifndef CRVLIB_TESTS_TESTING_EXAMPLES_H_
#define CRVLIB_TESTS_TESTING_EXAMPLES_H_

#include <string>
#include <string_view>
#include <vector>

namespace crvlib::examples {

struct Line {
  enum Kind { kStatement, kDefine, kEqual, kTrue };
  Kind kind = kStatement;
  std::string code;      // the statement, the #define, ACTUAL or EXPRESSION
  std::string expected;  // EXPECTED of kEqual
  std::string macro;     // NAME of kDefine
};

// Reads the text of one example line (after "//   "); on failure returns
// false and says why in `*error`.
bool ReadLine(std::string_view text, Line* line, std::string* error);

struct SourceText {
  std::string path;  // as the #line directives and messages name it
  std::string text;
};

// The GoogleTest file checking the examples of `files` (headers, and the
// README by its ".md" ending; a header may hold none); false, with
// "path:line: why" in `*error`, when an example cannot be read, the README
// has no snippet or there is no example at all.
bool WriteTests(const std::vector<SourceText>& files, std::string* out, std::string* error);

}  // namespace crvlib::examples

#endif  // CRVLIB_TESTS_TESTING_EXAMPLES_H_
