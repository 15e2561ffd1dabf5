// The batch session, line by line: what each request answers, how object
// names live and die, and that no line, however bad, stops the session.
#include "cli/batch.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "tests/cli/test_values.h"

namespace crvlib::cli {
namespace {

using fixtures::Probe;
using fixtures::TestSurface;

struct Exchange {
  const char* request;
  std::string response;  // exact; a trailing '*' matches any rest
};

// The answer to a request refused before any routine ran.
std::string Refused(std::string_view description) {
  std::string out = R"({"error":{"number":-1,"description":")" + std::string(description);
  return description.ends_with('*') ? out : out + "\"}}";
}

void Play(BatchSession& session, std::initializer_list<Exchange> script) {
  for (const Exchange& x : script) {
    SCOPED_TRACE(x.request);
    std::string got = session.Answer(x.request);
    std::string_view want = x.response;
    if (want.ends_with('*')) {
      want.remove_suffix(1);
      EXPECT_EQ(got.substr(0, want.size()), want) << got;
    } else {
      EXPECT_EQ(got, want);
    }
  }
}

TEST(Batch, BadRequestsAndRoutineErrorsAnswerAndTheSessionGoesOn) {
  BatchSession s(TestSurface());
  Play(
      s,
      {
          {"{", Refused(R"(not valid JSON: expected a string key*)")},
          {"[1]", Refused(R"(a request is a JSON object*)")},
          {R"({"call":"Tools.Half","set":"x"})", Refused(R"(a request has exactly one of*)")},
          {R"({"call":"Tools.Half","args":[1],"id":7})",
           Refused(R"(unknown key \"id\" in a \"call\" request)")},
          {R"({"call":"Tools"})", Refused(R"(\"Tools\" is not CLASS.MEMBER or NAME.MEMBER)")},
          {R"({"call":"Nope.X"})", Refused(R"(there is no class or object named \"Nope\")")},
          {R"({"call":"Tools.Nope"})", Refused(R"(Tools has no member \"Nope\")")},
          {R"({"call":"Tools.Half"})", Refused(R"(Tools.Half takes 1 argument, got 0)")},
          {R"({"call":"Tools.Half","args":["x"]})",
           Refused(R"(Tools.Half argument 1 (Value): expected a number, got a string)")},
          {R"({"call":"Tools.Half","args":3})", Refused(R"(\"args\" must be an array)")},
          {R"({"call":"Tools.Half","args":[3],"as":"h"})",
           Refused(R"(\"as\" names an object result, and Tools.Half returns Double)")},
          {R"({"call":"Probe.Value"})", Refused(R"(Probe is a creatable class*)")},
          {R"({"new":"Tools"})", Refused(R"(Tools is a global class*)")},
          {R"({"new":"Probe","as":"Tools"})", Refused(R"(\"Tools\" is a class name*)")},
          {R"({"new":"Probe","as":"a.b"})", Refused(R"(an object name has no \".\")")},
          {R"({"release":"nobody"})", Refused(R"(there is no object named \"nobody\")")},
          {R"({"call":"tools.half","args":[3]})", R"({"result":1.5})"},
          // A routine's own error carries its number, source and description.
          {R"({"call":"Tools.Fail","args":[5]})",
           R"({"error":{"number":5,"source":"CRVLIB.Tools::Fail","description":"Invalid procedure call or argument"}})"},
          // The description is exact, line end and all.
          {R"({"call":"Functions.ConvertHexToStr","args":["zz"]})",
           R"({"error":{"number":-2147220495,"source":"CRVLIB.Functions::ConvertHexToStr","description":"Invalid hex string.\rEach*)"},
      });
  EXPECT_TRUE(s.names().empty());
}

TEST(Batch, ByReferenceParametersAreReportedAfterTheCall) {
  BatchSession s(TestSurface());
  Play(s, {
              {R"({"call":"Tools.Swap","args":["ab","\ud800"]})",
               R"({"result":1,"byref":{"First":"\ud800","Second":"ab"}})"},
              {R"({"call":"Tools.Swap","args":[null,"x"]})",
               R"({"result":1,"byref":{"First":"x","Second":""}})"},
              {R"({"call":"Tools.Flip"})", R"({"result":false,"byref":{"Flag":false}})"},
              {R"({"call":"Tools.Join","args":["-","a","b",3]})",
               R"({"result":"a-b-?","byref":{"Delimiter":"-"}})"},
              {R"({"call":"Tools.Pick","args":[1,"vxAscending",true]})", R"({"result":-1})"},
              {R"({"call":"Tools.Pair","args":["x"]})",
               R"({"result":{"lbound":1,"items":["x","x"]}})"},
          });
}

TEST(Batch, ObjectsLiveWhileNamed) {
  ASSERT_EQ(Probe::live, 0);
  {
    BatchSession s(TestSurface());
    Play(
        s,
        {
            {R"({"new":"Probe","as":"p"})", R"({"result":{"object":"p"}})"},
            {R"({"set":"p.Value","value":"hello"})",
             R"({"result":null,"byref":{"NewValue":"hello"}})"},
            {R"({"call":"p.Value"})", R"({"result":"hello"})"},
            {R"({"set":"p.Child","value":1})", Refused(R"(Probe.Child cannot be set)")},
            {R"({"call":"p.Child","as":"c"})", R"({"result":{"object":"c"}})"},
            {R"({"call":"p.Child"})", R"({"result":{"object":"obj1"}})"},
            // The same object keeps its name.
            {R"({"call":"c.Parent"})", R"({"result":{"object":"p"}})"},
            {R"({"call":"p.Self"})", R"({"result":{"object":"p"}})"},
            {R"({"call":"p.Parent"})", R"({"result":null})"},
            {R"({"call":"p.Parent","as":"n"})", R"({"result":null})"},
            {R"({"call":"n.Value"})", Refused(R"(\"n\" is Nothing)")},
            {R"({"call":"Tools.ValueOf","args":[{"object":"p"}]})", R"({"result":"hello"})"},
            {R"({"call":"Tools.ValueOf","args":[{"object":"n"}]})",
             R"({"error":{"number":91,"source":"","description":"Object variable or With block variable not set"}})"},
            {R"({"call":"p.Split","args":[null,"vxOneBased"]})",
             R"({"result":2,"byref":{"Items":{"lbound":1,"items":["hello","hello"]}}})"},
            {R"({"new":"Probe"})", R"({"result":{"object":"obj2"}})"},
        });
    EXPECT_EQ(Probe::live, 4);  // p, c, obj1, obj2
    Play(s, {
                {R"({"release":"c"})", R"({"result":null})"},
                {R"({"call":"c.Value"})", Refused(R"(there is no class or object named \"c\")")},
                {R"({"release":"obj1"})", R"({"result":null})"},
            });
    EXPECT_EQ(Probe::live, 2);
    // Naming another object "p" lets the old one go.
    Play(s, {{R"({"call":"Tools.Make","args":["x"],"as":"p"})", R"({"result":{"object":"p"}})"}});
    EXPECT_EQ(Probe::live, 2);
    // An object with two names is written under the first; a name moved or
    // released no longer stands for it.
    Play(s, {
                {R"({"call":"p.Self","as":"q"})", R"({"result":{"object":"q"}})"},
                {R"({"call":"q.Self"})", R"({"result":{"object":"p"}})"},
                {R"({"call":"Tools.Make","args":["y"],"as":"p"})", R"({"result":{"object":"p"}})"},
                {R"({"call":"q.Self"})", R"({"result":{"object":"q"}})"},
                {R"({"call":"p.Self","as":"a"})", R"({"result":{"object":"a"}})"},
                {R"({"release":"a"})", R"({"result":null})"},
                {R"({"call":"p.Self"})", R"({"result":{"object":"p"}})"},
            });
    EXPECT_EQ(Probe::live, 3);  // p, q, obj2
  }
  EXPECT_EQ(Probe::live, 0);  // the session's end releases the rest
}

std::string RunLines(const std::string& input) {
  std::FILE* in = std::tmpfile();
  std::FILE* out = std::tmpfile();
  std::fwrite(input.data(), 1, input.size(), in);
  std::rewind(in);
  std::string failure;
  EXPECT_TRUE(RunBatch(TestSurface(), fileno(in), out, &failure)) << failure;
  std::string text(static_cast<size_t>(std::ftell(out)), '\0');
  std::rewind(out);
  text.resize(std::fread(text.data(), 1, text.size(), out));
  std::fclose(in);
  std::fclose(out);
  return text;
}

TEST(Batch, LinesAreAnsweredInOrderBlankOnesSkipped) {
  EXPECT_EQ(RunLines("\xEF\xBB\xBF{\"call\":\"Tools.Half\",\"args\":[1]}\r\n"
                     "\n  \t\n"
                     "nonsense\n"
                     "{\"call\":\"Tools.Half\",\"args\":[4]}"),  // no final line end
            "{\"result\":0.5}\n"
            "{\"error\":{\"number\":-1,\"description\":\"not valid JSON: invalid JSON literal\"}}\n"
            "{\"result\":2.0}\n");
}

TEST(Batch, OverlongAndDeepLinesAreRefusedWithoutHarm) {
  std::string deep = "{\"call\":\"Tools.Echo\",\"args\":[" + std::string(100000, '[') + "]}\n";
  std::string huge =
      "{\"call\":\"Tools.Echo\",\"args\":[\"" + std::string(kMaxBatchLine, 'x') + "\"]}\n";
  std::string got = RunLines(deep + huge + "{\"call\":\"Tools.Twice\",\"args\":[1]}\n");
  EXPECT_EQ(got,
            "{\"error\":{\"number\":-1,\"description\":\"not valid JSON: JSON nesting deeper than "
            "64 levels\"}}\n"
            "{\"error\":{\"number\":-1,\"description\":\"line longer than 64 MiB\"}}\n"
            "{\"result\":2}\n");
}

TEST(Batch, MangledRequestsAlwaysGetAnAnswer) {
  // Random edits of valid requests: every answer must itself be a JSON
  // object with a result or an error, and nothing may escape the session.
  const std::string seeds[] = {
      R"({"call":"Tools.Swap","args":["ab","\ud800"]})",
      R"({"call":"Tools.Pick","args":[1,"vxAscending",true]})",
      R"({"call":"Tools.Echo","args":[{"Currency":"12.3456"}]})",
      R"({"call":"Tools.NextDay","args":[{"Date":"2004-12-31T10:00:00"}]})",
      R"({"call":"Tools.Join","args":["-",{"bytes":"414243"},{"Integer":5}]})",
      R"({"new":"Probe","as":"p"})",
      R"({"set":"p.Value","value":"x"})",
      R"({"call":"p.Split","args":[{"lbound":3,"items":["a"]},1]})",
      R"({"call":"Tools.ValueOf","args":[{"object":"p"}]})",
      R"({"release":"p"})",
  };
  const char alphabet[] = "{}[]\",:\\u0123456789.eE-+ tnfalsrDCbyx";
  std::mt19937 rng(20041231);
  BatchSession s(TestSurface());
  for (int round = 0; round < 20000; ++round) {
    std::string line = seeds[rng() % std::size(seeds)];
    for (int edits = 1 + static_cast<int>(rng() % 4); edits > 0; --edits) {
      const size_t at = rng() % (line.size() + 1);
      const auto edit = rng() % 3;  // insert, erase or overwrite one character
      if (edit == 0) {
        line.insert(at, 1, alphabet[rng() % (sizeof alphabet - 1)]);
      } else if (at < line.size() && edit == 1) {
        line.erase(at, 1);
      } else if (at < line.size()) {
        line[at] = static_cast<char>(rng());
      }
    }
    std::string answer = s.Answer(line);
    std::optional<Json> j = ParseJson(answer, nullptr);
    ASSERT_TRUE(j) << line << " -> " << answer;
    ASSERT_TRUE(j->Find("result") || j->Find("error")) << line << " -> " << answer;
  }
}

}  // namespace
}  // namespace crvlib::cli
