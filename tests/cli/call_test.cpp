// The call form: escapes, command-line argument conversion and printing
// in-process, then the built crv run as a program for its exit statuses,
// output streams, list and batch.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

#include "cli/commands.h"
#include "cli/value_text.h"
#include "tests/cli/test_values.h"
#include "tests/testing/source_file.h"
#include "tests/testing/temporary_folder.h"

namespace crvlib::cli {
namespace {

using fixtures::TestSurface;

TEST(Call, EscapesDecodeAndEncodeEveryCodeUnit) {
  struct Case {
    std::u16string_view typed;
    std::u16string_view decoded;
  } cases[] = {
      {u"\\u20ac\\uD800", u"\u20AC\xD800"},
      {u"\\n\\r\\t\\\\", u"\n\r\t\\"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(String(c.typed).ToUtf8());
    EXPECT_EQ(DecodeEscapes(c.typed), c.decoded);
  }
  for (std::u16string_view bad : {u"\\", u"\\q", u"\\x4", u"\\u12", u"\\xG0"}) {
    SCOPED_TRACE(String(bad).ToUtf8());
    EXPECT_THROW(DecodeEscapes(bad), UsageError);
  }
  std::u16string all;
  for (char32_t u = 0; u <= 0xFFFF; ++u) all.push_back(static_cast<char16_t>(u));
  std::string escaped = EscapeText(all);
  for (char c : escaped) ASSERT_TRUE(c >= 0x20 && c < 0x7F);
  EXPECT_EQ(DecodeEscapes(String::FromUtf8(escaped).ToU16()), all);
  EXPECT_EQ(EscapeText(u"\u00FFa\\\n\x7F\u0100"), "\\xFFa\\\\\\n\\x7F\\u0100");
}

TEST(Call, ArgumentsAreReadAsTheirParameterType) {
  struct Case {
    const char* member;
    size_t index;
    const char* arg;
    bool escapes;
    const char* want;  // JSON of the value, or the start of the error
  } cases[] = {
      // A Variant is JSON when it is one of the value forms, else text.
      {"Echo", 0, "5", false, "5"},
      {"Echo", 0, "abc", false, "\"abc\""},
      {"Echo", 0, "[1,2]", false, "\"[1,2]\""},
      {"Echo", 0, "\\xFE", true, "\"\u00fe\""},
      // Typed parameters.
      {"Swap", 0, "a\\tb", true, "\"a\\tb\""},
      {"Swap", 0, "a\\tb", false, "\"a\\\\tb\""},
      {"Pick", 0, "+12", false, "12"},
      {"Pick", 0, "1.0", false, "error: expected a whole number"},
      {"Pick", 1, "vxdescending", false, "1"},
      {"Pick", 1, "vxSideways", false, "error: expected a whole number or a member of"},
      {"Pick", 2, "TRUE", false, "true"},
      {"Pick", 2, "1", false, "error: expected True or False"},
      {"Twice", 0, "-32769", false, "error: expected an Integer"},
      {"Half", 0, "1,5", false, "error: expected a number"},
      {"Cents", 0, "12.3456", false, R"({"Currency":"12.3456"})"},
      {"NextDay", 0, "2004-12-31T10:20:30", false, R"({"Date":"2004-12-31T10:20:30"})"},
      {"NextDay", 0, "31/12/2004", false, "error: expected a Date"},
      {"Flip", 0, "", false, "false"},  // by reference and empty: starts empty
      {"ValueOf", 0, "p", false, "error: objects can be passed only in crv batch"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.member << "#" << c.index << " " << c.arg);
    std::string got = fixtures::JsonOrError([&] {
      return ArgumentFromText(c.arg, fixtures::ParamOf("Tools", c.member, c.index), c.escapes);
    });
    EXPECT_EQ(got.substr(0, std::string_view(c.want).size()), c.want) << got;
  }
}

TEST(Call, AnyArgumentTextIsEitherAValueOrAUsageError) {
  const char alphabet[] = "0123456789-+.eE:T \\xuU\"{}[]nulltrFAE\xC3\xBF\xFF";
  std::mt19937 rng(1899);
  const ClassInfo* tools = TestSurface().FindClass("Tools");
  for (int round = 0; round < 20000; ++round) {
    std::string arg(rng() % 24, ' ');
    for (char& c : arg) c = alphabet[rng() % (sizeof alphabet - 1)];
    for (const MemberInfo& m : tools->members) {
      for (const ParamInfo& p : m.params) {
        if (p.type.kind == TypeKind::kParamArray) continue;
        try {
          ArgumentFromText(arg, p, round % 2 == 0);
        } catch (const UsageError&) {
        }
      }
    }
  }
}

TEST(Call, ResultsAndByRefsPrintForAPerson) {
  constexpr CallOptions kPlain, kEscapes{.escapes = true}, kResultOnly{.result_only = true};
  struct Case {
    std::vector<std::string> args;
    CallOptions options;
    int status;
    const char* text;  // stdout when the status is 0, else stderr (null: any one line)
  } cases[] = {
      {{"Tools.Swap", "a\\xFE", "b"}, kEscapes, 0, "1\nFirst=b\nSecond=a\\xFE\n"},
      {{"Tools.Swap", "a\\xFE", "b"}, kPlain, 0, "1\nFirst=b\nSecond=a\\xFE\n"},
      {{"Tools.Swap", "\xC3\xBF", "b"}, kPlain, 0, "1\nFirst=b\nSecond=\xC3\xBF\n"},
      {{"Tools.Swap", "a", "b"}, kResultOnly, 0, "1\n"},
      {{"Tools.Flip", "False"}, kResultOnly, 0, "True\n"},
      {{"Tools.Echo", "null"}, kPlain, 0, "Null\n"},
      {{"Tools.Echo", "tRUE"}, kPlain, 0, "True\n"},
      {{"Tools.Join", "+", "FALSE", "x"}, kPlain, 0, "?+x\nDelimiter=+\n"},
      // Arguments are UTF-8: a stray byte is refused, not read as U+FFFD.
      {{"Tools.Swap", "a\xFF", "b"},
       kPlain,
       2,
       "crv: Tools.Swap argument 1 (First): not valid UTF-8 (byte 0xFF at offset 1); type other "
       "code units with -e as \\xHH or \\uHHHH escapes\n"},
      {{"Tools.Echo", "\xC0\xAF"}, kEscapes, 2, nullptr},  // an overlong "/"
      // The error line stays one line: control characters are escaped.
      {{"Functions.ConvertHexToStr", "zz"},
       kPlain,
       1,
       "error -2147220495 (CRVLIB.Functions::ConvertHexToStr): Invalid hex string.\\rEach "
       "character must be written as ^H followed by its code in hexadecimal.\n"},
      {{"Tools.Fail", "13"},  // no Variant argument, no hint
       kPlain,
       1,
       "error 13 (CRVLIB.Tools::Fail): Invalid procedure call or argument\n"},
      // A type mismatch on a plainly typed Variant names the typed forms.
      {{"Conversions.CurrencyOut", "-1234.5"},
       kPlain,
       1,
       "error 13 (CRVLIB.Converions::CurrencyOut): Type mismatch\n"
       "hint: argument 1 (CurrencyValue) was read as a Double; write another type in its typed "
       "form: {\"Currency\":\"-1234.5\"} (see crv list)\n"},
      {{"Conversions.DateOut", "2004-12-31"},
       kPlain,
       1,
       "error 13 (CRVLIB.Converions::DateOut): Type mismatch\n"
       "hint: argument 1 (DateValue) was read as a String; write another type in its typed "
       "form: {\"Date\":\"2004-12-31\"} (see crv list)\n"},
      {{"Conversions.CurrencyOut", "{\"Double\":5}"},
       kPlain,
       1,
       "error 13 (CRVLIB.Converions::CurrencyOut): Type mismatch\n"},
      {{"Tools.Echo", "{\"Empty\":true}"}, kPlain, 0, "\n"},
      {{"Tools.Echo", "{\"bytes\":\"414243\"}"}, kPlain, 0, "{\"bytes\":\"414243\"}\n"},
      {{"Tools.Half", "4"}, kPlain, 0, "2\n"},
      {{"Tools.Cents", "12.3456"}, kPlain, 0, "12.34\n"},
      {{"Tools.NextDay", "2004-12-31"}, kPlain, 0, "2005-01-01T00:00:00\n"},
      {{"Tools.Flip", "False"}, kPlain, 0, "True\nFlag=True\n"},
      {{"Tools.Pair", "\\n"}, kEscapes, 0, "{\"lbound\":1,\"items\":[\"\\n\",\"\\n\"]}\n"},
      {{"Tools.Make", "x"}, kPlain, 0, "{\"object\":\"obj1\"}\n"},
      {{"Probe.Parent"}, kPlain, 0, "Nothing\n"},
      {{"Probe.Split", ""}, kPlain, 0, "2\nItems={\"lbound\":0,\"items\":[\"\",\"\"]}\n"},
      {{"Tools.Fail", "5"},
       kPlain,
       1,
       "error 5 (CRVLIB.Tools::Fail): Invalid procedure call or argument\n"},
      {{"Tools.Nope"}, kPlain, 2, "crv: Tools has no member \"Nope\"\n"},
      {{"Tools"},
       kPlain,
       2,
       "crv: \"Tools\" is not CLASS.MEMBER of a known class (see crv list)\n"},
      {{"Tools.Swap", "\\q", "x"}, kEscapes, 2, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.args[0] + (c.args.size() > 1 ? " " + c.args[1] : ""));
    Output output;
    int status = RunCall(TestSurface(), c.args[0], std::span<const std::string>(c.args).subspan(1),
                         c.options, output);
    EXPECT_EQ(status, c.status);
    EXPECT_EQ(c.status == 0 ? output.err : output.out, "");
    if (c.text) {
      EXPECT_EQ(c.status == 0 ? output.out : output.err, c.text);
    } else {
      EXPECT_EQ(std::count(output.err.begin(), output.err.end(), '\n'), 1) << output.err;
    }
  }
}

// The listing shows what the binding deduced from each signature: types,
// ByRef and ByVal, optional parameters with their defaults, and the DISPIDs.
TEST(Call, ListShowsDeclarationsDispidsAndHelp) {
  Output output;
  EXPECT_EQ(RunList(TestSurface(), "tools", output), 0);
  EXPECT_EQ(RunList(TestSurface(), "Probe", output), 0);
  EXPECT_EQ(RunList(TestSurface(), "vxCaseEnum", output), 0);
  EXPECT_EQ(output.out, R"(class Tools (global)
  Test routines.
  0x6003000C  Function Swap(ByRef First As String, ByRef Second As String) As Long
  0x6003000B  Function Join(ByRef Delimiter As String, ParamArray Items() As Variant) As String
  0x6003000A  Function Echo(ByVal Value As Variant) As Variant
  0x60030009  Function Pick(ByVal Base As Long, Optional ByVal Order As vxSortOrderEnum = vxDescending, Optional ByVal Negate As Boolean = False) As Long
  0x60030008  Function Twice(ByVal Value As Integer) As Integer
  0x60030007  Function Cents(ByVal Amount As Currency) As Currency
  0x60030006  Function NextDay(ByVal Day As Date) As Date
  0x60030005  Function Half(ByVal Value As Double) As Double
  0x60030004  Sub Fail(ByVal Number As Long)
  0x60030003  Function Flip(Optional ByRef Flag As Boolean = True) As Boolean
  0x60030002  Function Pair(ByVal Value As String) As String()
  0x60030001  Function Make(ByVal Value As String) As Probe
  0x60030000  Function ValueOf(ByVal Object As Probe) As String
  A Variant argument of crv is typed by its form: 5 (Long), 2.5 (Double),
  True or False (Boolean), null (Null), {"Currency":"-1234.5"},
  {"Date":"2004-12-31"}, {"Integer":5}, {"Empty":true}; other text is a String.
class Probe (creatable)
  A test object.
  0x00000000  Property Get Value() As String  [default]
              The text.
  0x00000000  Property Let Value(ByRef NewValue As String)  [default]
              The text.
  0x60030003  Function Child() As Probe
              A new child.
  0x68030002  Property Get Parent() As Probe
              The parent, or Nothing.
  0x60030001  Function Self() As Probe
              This object.
  0x60030000  Function Split(ByRef Items As String(), Optional ByVal Base As vxArrayBaseEnum = vxZeroBased) As Long
              Two copies of the text.
enum vxCaseEnum
  vxCaseNotSensitive = 0
  vxCaseSensitive = 1
)");
  EXPECT_EQ(RunList(TestSurface(), "Nope", output), 2);
}

TEST(Call, ListNotesTheRoutinesThatMayNeverReturn) {
  Output output;
  ASSERT_EQ(RunList(ShippedSurface(), "Functions", output), 0);
  for (const char* member : {"Swap(", "Pause("}) {
    SCOPED_TRACE(member);
    size_t at = output.out.find(member);
    ASSERT_NE(at, std::string::npos);
    size_t note = output.out.find("Note: ", at);
    EXPECT_LT(note, output.out.find("  0x6003", at));  // before the next member
    std::string line = output.out.substr(note, output.out.find('\n', note) - note);
    EXPECT_TRUE(line.ends_with("never returns.")) << line;
  }
}

// Runs the built crv with `args` (none holding a single quote), `input` on
// stdin, after the shell commands `before`, its stdout sent to `out_path`
// when one is given.
struct Finished {
  int status;
  std::string out, err;
};

std::string Slurp(const std::string& path) {
  std::ifstream f(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(f), {});
}

Finished Crv(const std::vector<std::string>& args, const std::string& input = "",
             const std::string& before = "", const std::string& out_path = "") {
  TemporaryFolder folder;
  const std::string& dir = folder.path();
  std::ofstream(dir + "/in", std::ios::binary) << input;
  std::string command = before + "'" CRV_BINARY "'";
  for (const std::string& a : args) command += " '" + a + "'";
  command += " <'" + dir + "/in' >'" + (out_path.empty() ? dir + "/out" : out_path) + "' 2>'" +
             dir + "/err'";
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Slurp(dir + "/out"), Slurp(dir + "/err")};
}

TEST(Crv, ExitStatusesAndStreams) {
  struct Case {
    std::vector<std::string> args;
    int status;
    const char* out;  // exact, or null for "any"; a failure writes one line on stderr
  } cases[] = {
      {{"Constants.vxVBAR"}, 0, "|\n"},
      {{"-e", "Constants.vxAM"}, 0, "\\xFE\n"},
      {{"--locale", "de-DE", "-e", "Constants.vxSVM"}, 0, "\\xFC\n"},
      {{"Constants.vxRM", "x"}, 2, ""},
      {{"Nope.Nope"}, 2, ""},
      {{}, 2, ""},
      {{"--bogus"}, 2, ""},
      {{"--locale"}, 2, ""},
      {{"list", "a", "b"}, 2, ""},
      {{"batch", "x"}, 2, ""},
      {{"--help"}, 0, nullptr},
      {{"list"}, 0, nullptr},
      {{"-r", "Functions.ParseStr", "a b", " "}, 0, "a\n"},
      {{"--locale", "xx-YY", "Constants.vxVBAR"}, 2, ""},
      {{"--locale=", "batch"}, 2, ""},
      {{"--locale", "de-XX", "-e", "Constants.vxSVM"}, 0, "\\xFC\n"},  // known language
      {{"Functions.Field", "a\xFF|b", "|", "2"}, 2, ""},
      {{"idl", "Functions"}, 2, ""},
  };
  for (const Case& c : cases) {
    std::string shown;
    for (const std::string& a : c.args) shown += a + " ";
    SCOPED_TRACE(shown);
    Finished r = Crv(c.args);
    EXPECT_EQ(r.status, c.status);
    if (c.out) {
      EXPECT_EQ(r.out, c.out);
    }
    if (c.status != 0) {
      EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    } else {
      EXPECT_EQ(r.err, "");
    }
  }
}

TEST(Crv, VersionIsTheProjects) {
  Finished r = Crv({"--version"});
  EXPECT_EQ(r.status, 0);
  EXPECT_TRUE(r.out.starts_with("crv ") && r.out.ends_with("\n") &&
              r.out.find_first_not_of("0123456789.", 4) == r.out.size() - 1)
      << r.out;
}

TEST(Crv, OutputThatCannotBeWrittenIsAnError) {
  const std::vector<std::string> commands[] = {{"Constants.vxVBAR"}, {"list"},      {"idl"},
                                               {"--help"},           {"--version"}, {"batch"}};
  for (const auto& args : commands) {
    SCOPED_TRACE(args[0]);
    Finished r = Crv(args, "{\"call\":\"Constants.vxVBAR\"}\n", "", "/dev/full");
    EXPECT_EQ(r.status, 3);
    EXPECT_TRUE(r.err.starts_with("crv: cannot write") && r.err.ends_with("\n") &&
                std::count(r.err.begin(), r.err.end(), '\n') == 1)
        << r.err;
  }
}

TEST(Crv, AFileOverTheSizeLimitIsError61) {
  TemporaryFolder folder;
  Finished r = Crv({"Functions.SaveTextFile", folder.path() + "/big", std::string(4096, 'x')}, "",
                   "ulimit -f 1; ");
  EXPECT_EQ(r.status, 1);
  EXPECT_TRUE(r.err.starts_with("error 61 (CRVLIB.Functions::SaveTextFile)")) << r.err;
}

// A co-process sends one request and waits for its answer before it sends
// the next or closes the pipe.
TEST(Crv, BatchAnswersEachLineAsItArrives) {
  int to_crv[2], from_crv[2];
  ASSERT_EQ(pipe(to_crv), 0);
  ASSERT_EQ(pipe(from_crv), 0);
  pid_t pid = fork();
  ASSERT_GE(pid, 0);
  if (pid == 0) {
    dup2(to_crv[0], 0);
    dup2(from_crv[1], 1);
    for (int fd : {to_crv[0], to_crv[1], from_crv[0], from_crv[1]}) close(fd);
    execl(CRV_BINARY, "crv", "batch", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(to_crv[0]);
  close(from_crv[1]);
  auto ask = [&](std::string_view request) {
    EXPECT_EQ(write(to_crv[1], request.data(), request.size()),
              static_cast<ssize_t>(request.size()));
    std::string answer;
    char c;
    pollfd ready{from_crv[0], POLLIN, 0};
    while ((answer.empty() || answer.back() != '\n') && poll(&ready, 1, 10000) == 1 &&
           read(from_crv[0], &c, 1) == 1) {
      answer.push_back(c);
    }
    return answer;
  };
  EXPECT_EQ(ask("{\"new\":\"DynamicString\",\"as\":\"d\"}\n"), "{\"result\":{\"object\":\"d\"}}\n");
  EXPECT_EQ(ask("{\"call\":\"Constants.vxVBAR\"}\n"), "{\"result\":\"|\"}\n");
  close(to_crv[1]);
  int status = 0;
  waitpid(pid, &status, 0);
  close(from_crv[0]);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

// typelib/crvlib.idl is what crv idl prints; after a change to the table,
// regenerate it with `crv idl > typelib/crvlib.idl`.
TEST(Crv, IdlPrintsTheCheckedInTypeLibraryDescription) {
  std::string checked_in = SourceFile("typelib/crvlib.idl");
  ASSERT_FALSE(checked_in.empty());
  Finished r = Crv({"idl"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.err, "");
  EXPECT_TRUE(r.out == checked_in) << "typelib/crvlib.idl differs from what crv idl prints";
}

TEST(Crv, TheBundledExampleRunsCleanly) {
  std::string example = Slurp(CRVLIB_SOURCE_DIR "/examples/orders.jsonl");
  ASSERT_FALSE(example.empty());
  Finished r = Crv({"batch"}, example);
  EXPECT_EQ(r.status, 0);
  std::istringstream lines(r.out);
  std::string line;
  int answers = 0;
  while (std::getline(lines, line)) {
    ++answers;
    EXPECT_EQ(line.find("\"error\""), std::string::npos) << line;
  }
  EXPECT_GT(answers, 0);
}

}  // namespace
}  // namespace crvlib::cli
