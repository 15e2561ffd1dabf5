// Reading an example line is one left-to-right pass that skips string and
// character literals (with their escapes) and keeps the depth of (), [] and
// {}: at depth 0 it notes where a note begins and where "==", "&&" and "||"
// stand. The file writer then cuts the files into blocks and writes each
// line behind a #line directive, so that a compile error or a failed check
// names the header line the example is written on.
#include "tests/testing/examples.h"

#include <cctype>
#include <sstream>

namespace crvlib::examples {
namespace {

std::string_view Trim(std::string_view s) {
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front()))) s.remove_prefix(1);
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back()))) s.remove_suffix(1);
  return s;
}

struct Shape {
  size_t note = std::string_view::npos;  // where "//" begins, if anywhere
  std::vector<size_t> equals;            // where each "==" stands
  bool logic = false;                    // a "&&" or "||"
  bool open = false;                     // a bracket or quote left open
};

Shape ShapeOf(std::string_view s) {
  Shape shape;
  int depth = 0;
  for (size_t i = 0; i < s.size(); ++i) {
    const char c = s[i];
    if (c == '"' || c == '\'') {
      size_t j = i + 1;
      while (j < s.size() && s[j] != c) j += s[j] == '\\' ? 2 : 1;
      if (j >= s.size()) {
        shape.open = true;
        return shape;
      }
      i = j;
    } else if (c == '(' || c == '[' || c == '{') {
      ++depth;
    } else if (c == ')' || c == ']' || c == '}') {
      if (--depth < 0) break;
    } else if (depth == 0 && s.compare(i, 2, "//") == 0) {
      shape.note = i;
      break;
    } else if (depth == 0 && s.compare(i, 2, "==") == 0) {
      // Not the end of "!=", "<=" or ">=".
      if (i == 0 || (s[i - 1] != '!' && s[i - 1] != '<' && s[i - 1] != '>')) {
        shape.equals.push_back(i);
      }
      ++i;
    } else if (depth == 0 && (s.compare(i, 2, "&&") == 0 || s.compare(i, 2, "||") == 0)) {
      shape.logic = true;
      ++i;
    }
  }
  shape.open = shape.open || depth != 0;
  return shape;
}

}  // namespace

bool ReadLine(std::string_view text, Line* line, std::string* error) {
  Shape shape = ShapeOf(text);
  if (shape.open) {
    *error = "a bracket or a quote is left open";
    return false;
  }
  const std::string_view code = Trim(text.substr(0, shape.note));
  if (code.empty()) {
    *error = "no code before the note";
    return false;
  }
  *line = Line();
  if (code.starts_with("#define ")) {
    line->kind = Line::kDefine;
    line->code = std::string(code);
    std::string_view name = Trim(code.substr(8));
    name = name.substr(0, name.find_first_of("( "));
    line->macro = std::string(name);
    return true;
  }
  if (code.back() == ';') {
    line->kind = Line::kStatement;
    line->code = std::string(code);
    return true;
  }
  if (shape.equals.size() > 1 && !shape.logic) {
    *error = "more than one \"==\"";
    return false;
  }
  if (shape.equals.size() == 1 && !shape.logic) {
    const size_t at = shape.equals[0];
    line->kind = Line::kEqual;
    line->code = std::string(Trim(code.substr(0, at)));
    line->expected = std::string(Trim(code.substr(at + 2)));
    if (line->code.empty() || line->expected.empty()) {
      *error = "\"==\" needs a value on each side";
      return false;
    }
    return true;
  }
  line->kind = Line::kTrue;
  line->code = std::string(code);
  return true;
}

namespace {

struct Block {
  std::vector<std::pair<int, Line>> lines;  // line number, line
};

// The example text of a header line, when the line is one.
bool HeaderExample(std::string_view source_line, std::string_view* text) {
  const std::string_view s = Trim(source_line);
  if (!s.starts_with("//   ") || s.size() < 6 || s[5] == ' ') return false;
  *text = s.substr(5);
  return true;
}

bool ReadBlocks(const SourceText& file, std::vector<Block>* blocks,
                std::vector<std::string>* includes, std::string* error) {
  const bool readme = file.path.ends_with(".md");
  std::istringstream in(file.text);
  std::string source_line;
  int number = 0;
  bool in_block = false;
  enum { kBefore, kSection, kFence, kDone } readme_state = kBefore;
  while (std::getline(in, source_line)) {
    ++number;
    std::string_view text;
    if (readme) {
      const std::string_view s = Trim(source_line);
      if (readme_state == kBefore && s == "## The library") readme_state = kSection;
      if (readme_state == kSection && s == "```cpp") {
        readme_state = kFence;
        blocks->emplace_back();
        continue;
      }
      if (readme_state != kFence) continue;
      if (s == "```") {
        readme_state = kDone;
        continue;
      }
      if (s.empty()) continue;
      if (s.starts_with("#include")) {
        includes->push_back(std::string(s));
        continue;
      }
      text = s;
    } else if (!HeaderExample(source_line, &text)) {
      in_block = false;
      continue;
    } else if (!in_block) {
      blocks->emplace_back();
      in_block = true;
    }
    Line line;
    std::string why;
    if (!ReadLine(text, &line, &why)) {
      *error = file.path + ":" + std::to_string(number) + ": cannot read this example (" + why +
               "): " + std::string(text);
      return false;
    }
    blocks->back().lines.emplace_back(number, std::move(line));
  }
  if (readme && readme_state != kDone) {
    *error = file.path + ": no ```cpp block closed under \"## The library\"";
    return false;
  }
  return true;
}

std::string TestName(const std::string& path) {
  std::string name = path.substr(path.find_last_of('/') + 1);
  name = name.substr(0, name.find('.'));
  for (char& c : name) {
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  }
  return name;
}

// A C string literal naming `path` for #line.
std::string Quoted(const std::string& path) {
  std::string out = "\"";
  for (char c : path) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + "\"";
}

}  // namespace

bool WriteTests(const std::vector<SourceText>& files, std::string* out, std::string* error) {
  std::ostringstream body;
  std::vector<std::string> includes;
  int tested = 0;
  for (const SourceText& file : files) {
    std::vector<Block> blocks;
    if (!ReadBlocks(file, &blocks, &includes, error)) return false;
    if (blocks.empty()) continue;  // a header may have no examples
    ++tested;
    body << "\nTEST(HeaderExamples, " << TestName(file.path) << ") {\n"
         << "  SetThreadLocale(\"en-US\");\n";
    for (const Block& block : blocks) {
      body << "  {\n";
      std::vector<std::string> macros;
      for (const auto& [number, line] : block.lines) {
        body << "#line " << number << " " << Quoted(file.path) << "\n";
        switch (line.kind) {
          case Line::kStatement:
            body << "    " << line.code << "\n";
            break;
          case Line::kDefine:
            body << line.code << "\n";
            macros.push_back(line.macro);
            break;
          case Line::kEqual:
            body << "    EXPECT_EQ((" << line.code << "), (" << line.expected << "));\n";
            break;
          case Line::kTrue:
            body << "    EXPECT_TRUE((" << line.code << "));\n";
            break;
        }
      }
      for (const std::string& m : macros) body << "#undef " << m << "\n";
      body << "  }\n";
    }
    body << "}\n";
  }
  if (tested == 0) {
    *error = "no examples found";
    return false;
  }
  std::ostringstream file;
  file << "// Written by tests/examples/extract_examples from the examples in the public\n"
       << "// headers and the README; edit those, not this file.\n"
       << "#include <gtest/gtest.h>\n\n";
  for (const std::string& include : includes) file << include << "\n";
  file << "#include \"crvlib/crvlib.h\"\n\nnamespace crvlib {\nnamespace {\n"
       << body.str() << "\n}  // namespace\n}  // namespace crvlib\n";
  *out = file.str();
  return true;
}

}  // namespace crvlib::examples
