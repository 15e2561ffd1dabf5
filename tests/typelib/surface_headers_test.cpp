// The member table against the public headers, read as text, so the two
// cannot drift: every member calls the C++ function of its own name, every
// public function of a header's class is in the table, and each parameter
// has the header's name and the header's default.
//
// Where the header cannot say the same thing the table does, the test knows
// why: an optional by-reference parameter is a C++ overload without it
// (Functions::ParseStr(Value, Delimiters)), whose answer must be the one the
// table's default gives; a ParamArray is optional without a default; and a
// few functions are the handle's plumbing, not automation members.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "crvlib/conversions.h"
#include "crvlib/dynamic_string.h"
#include "crvlib/functions.h"
#include "tests/testing/source_file.h"
#include "typelib/surface.h"

namespace crvlib::typelib {
namespace {

// --- Reading a class out of a header -----------------------------------------

struct HeaderParam {
  std::string name;
  std::string default_text;  // the text after `=`, empty when there is none
};

struct HeaderFunction {
  std::string name;
  std::vector<HeaderParam> params;
};

struct HeaderClass {
  std::vector<HeaderFunction> functions;         // public, without constructors
  std::map<std::string, std::string> constants;  // static constexpr NAME = TEXT
};

std::string Trim(std::string_view s) {
  size_t b = s.find_first_not_of(" \t\n");
  size_t e = s.find_last_not_of(" \t\n");
  return b == std::string_view::npos ? "" : std::string(s.substr(b, e - b + 1));
}

// Copies the string or character literal at text[i] to `out`; returns the
// index past it.
size_t CopyLiteral(std::string_view text, size_t i, std::string& out) {
  char quote = text[i];
  out.push_back(text[i++]);
  while (i < text.size() && text[i] != quote) {
    if (text[i] == '\\') out.push_back(text[i++]);
    out.push_back(text[i++]);
  }
  out.push_back(quote);
  return i + 1;
}

std::string WithoutComments(std::string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size();) {
    if (text[i] == '"' || text[i] == '\'') {
      i = CopyLiteral(text, i, out);
    } else if (text.substr(i, 2) == "//") {
      i = text.find('\n', i);
    } else if (text.substr(i, 2) == "/*") {
      i = text.find("*/", i) + 2;
    } else {
      out.push_back(text[i++]);
    }
  }
  return out;
}

// The index of the bracket that closes the one at text[open].
size_t Closing(std::string_view text, size_t open) {
  int depth = 0;
  std::string ignored;
  for (size_t i = open; i < text.size();) {
    if (text[i] == '"' || text[i] == '\'') {
      i = CopyLiteral(text, i, ignored);
      continue;
    }
    if (text[i] == '(' || text[i] == '{' || text[i] == '[') ++depth;
    if ((text[i] == ')' || text[i] == '}' || text[i] == ']') && --depth == 0) return i;
    ++i;
  }
  return std::string_view::npos;
}

// Splits at the commas outside brackets and literals.
std::vector<std::string> SplitTopLevel(std::string_view text) {
  std::vector<std::string> parts(1);
  int depth = 0;
  for (size_t i = 0; i < text.size();) {
    char c = text[i];
    if (c == '"' || c == '\'') {
      i = CopyLiteral(text, i, parts.back());
      continue;
    }
    if (c == '(' || c == '<' || c == '{') ++depth;
    if (c == ')' || c == '>' || c == '}') --depth;
    if (c == ',' && depth == 0) {
      parts.emplace_back();
    } else {
      parts.back().push_back(c);
    }
    ++i;
  }
  return parts;
}

HeaderParam ReadParam(const std::string& text) {
  size_t eq = text.find('=');
  std::string left = Trim(text.substr(0, eq));
  size_t start =
      left.find_last_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_");
  return {left.substr(start + 1), eq == std::string::npos ? "" : Trim(text.substr(eq + 1))};
}

// The public functions and constants of class `name` in `header_text`.
HeaderClass ReadClass(const std::string& header_text, const std::string& name) {
  const std::string text = WithoutComments(header_text);
  std::smatch m;
  if (!std::regex_search(text, m, std::regex("class\\s+(?:CRVLIB_EXPORT\\s+)?" + name + "\\s*\\{")))
    return {};
  const size_t open = static_cast<size_t>(m.position(0) + m.length(0)) - 1;
  const std::string body = text.substr(open + 1, Closing(text, open) - open - 1);

  // Statements end at a `;` or at a body in braces outside parentheses.
  std::vector<std::string> statements(1);
  int parens = 0;
  for (size_t i = 0; i < body.size();) {
    char c = body[i];
    if (c == '"' || c == '\'') {
      i = CopyLiteral(body, i, statements.back());
      continue;
    }
    if (c == '(') ++parens;
    if (c == ')') --parens;
    if (c == '{' && parens == 0) {
      i = Closing(body, i) + 1;
      statements.emplace_back();
      continue;
    }
    if (c == ';' && parens == 0) {
      statements.emplace_back();
    } else {
      statements.back().push_back(c);
    }
    ++i;
  }

  HeaderClass out;
  bool is_public = false;
  const std::regex label("^\\s*(public|private|protected)\\s*:");
  const std::regex constant("^static\\s+constexpr\\s+\\w+\\s+(\\w+)\\s*=\\s*(.+)$");
  for (std::string s : statements) {
    while (std::regex_search(s, m, label)) {
      is_public = m[1] == "public";
      s = m.suffix().str();
    }
    s = Trim(s);
    if (!is_public || s.empty()) continue;
    if (std::regex_match(s, m, constant)) {
      out.constants[m[1]] = Trim(m[2].str());
      continue;
    }
    size_t paren = s.find('(');
    if (paren == std::string::npos || s.starts_with("template") || s.starts_with("friend")) {
      continue;
    }
    HeaderFunction f = {ReadParam(s.substr(0, paren)).name, {}};
    if (f.name == name || s.find('~') < paren) continue;  // constructor or destructor
    std::string params = s.substr(paren + 1, Closing(s, paren) - paren - 1);
    if (!Trim(params).empty()) {
      for (const std::string& p : SplitTopLevel(params)) f.params.push_back(ReadParam(p));
    }
    out.functions.push_back(std::move(f));
  }
  return out;
}

// --- The comparison ----------------------------------------------------------

struct ClassHeader {
  const char* cls;
  const char* header;
};
constexpr ClassHeader kHeaders[] = {
    {"Constants", "constants.h"},        {"Conversions", "conversions.h"},
    {"Validations", "validations.h"},    {"Functions", "functions.h"},
    {"DLLRoutines", "dll_routines.h"},   {"DynamicString", "dynamic_string.h"},
    {"SharedString", "shared_string.h"},
};

// Functions of the handle classes that are not automation members.
constexpr std::string_view kPlumbing[] = {"IsNothing", "Is", "impl"};

const HeaderClass& HeaderOf(const std::string& cls) {
  static const std::map<std::string, HeaderClass> classes = [] {
    std::map<std::string, HeaderClass> out;
    for (const ClassHeader& h : kHeaders) {
      out[h.cls] = ReadClass(SourceFile(std::string("include/crvlib/") + h.header), h.cls);
    }
    return out;
  }();
  return classes.at(cls);
}

// The C++ function a member should call: its own name, or Set<Name> for a
// property's let.
std::string ExpectedFunction(const ClassInfo& c, const MemberInfo& m) {
  return c.name + "::" + (m.kind == MemberKind::kPropertyLet ? "Set" : "") + m.name;
}

// The header's declaration of the function `m` binds: same name, one
// parameter per table parameter.
const HeaderFunction* Declaration(const ClassInfo& c, const MemberInfo& m) {
  std::string name = m.function.substr(m.function.find("::") + 2);
  for (const HeaderFunction& f : HeaderOf(c.name).functions) {
    if (f.name == name && f.params.size() == m.params.size()) return &f;
  }
  return nullptr;
}

// A default written in a header, in the form Canonical gives a table value:
// string literals, true/false, integers, enumeration members and the
// class's own constants.
std::string EvaluateDefault(const std::string& text, const HeaderClass& cls) {
  if (text.starts_with("u\"") && text.ends_with('"') && text.find('\\') == std::string::npos) {
    return text.substr(1);
  }
  if (text == "true" || text == "false") return text;
  if (std::regex_match(text, std::regex("-?[0-9]+"))) return std::to_string(std::stoll(text));
  for (const EnumInfo& e : Enumerations()) {
    if (const EnumMember* m = e.Find(text); m && m->name == text) return std::to_string(m->value);
  }
  if (auto it = cls.constants.find(text); it != cls.constants.end()) {
    return EvaluateDefault(it->second, cls);
  }
  return "unreadable default " + text;
}

std::string Canonical(const Value& v) {
  const Variant& x = std::get<Variant>(v);
  switch (x.Type()) {
    case VarType::kString:
      return "\"" + x.AsString().ToUtf8() + "\"";
    case VarType::kBoolean:
      return x.AsBoolean() ? "true" : "false";
    case VarType::kLong:
      return std::to_string(x.AsLong());
    case VarType::kInteger:
      return std::to_string(x.AsInteger());
    default:
      return "a default of another type";
  }
}

TEST(SurfaceHeaders, EveryMemberCallsTheFunctionOfItsNameDeclaredInItsHeader) {
  for (const ClassInfo& c : ShippedSurface().classes) {
    for (const MemberInfo& m : c.members) {
      SCOPED_TRACE(c.name + "." + m.name);
      EXPECT_EQ(m.function, ExpectedFunction(c, m));
      EXPECT_NE(Declaration(c, m), nullptr) << "no declaration with this many parameters";
    }
  }
}

TEST(SurfaceHeaders, EveryPublicFunctionOfAHeaderIsInTheTable) {
  for (const ClassHeader& h : kHeaders) {
    const ClassInfo* c = ShippedSurface().FindClass(h.cls);
    ASSERT_NE(c, nullptr) << h.cls;
    const HeaderClass& header = HeaderOf(h.cls);
    ASSERT_FALSE(header.functions.empty()) << h.header << " read no functions";
    for (const HeaderFunction& f : header.functions) {
      SCOPED_TRACE(std::string(h.cls) + "::" + f.name + "/" + std::to_string(f.params.size()));
      if (std::find(std::begin(kPlumbing), std::end(kPlumbing), f.name) != std::end(kPlumbing)) {
        continue;
      }
      bool bound = false, short_form = false;
      for (const MemberInfo& m : c->members) {
        if (m.function != std::string(h.cls) + "::" + f.name) continue;
        bound = bound || m.params.size() == f.params.size();
        // The overload that leaves out an optional by-reference parameter.
        short_form =
            short_form || (f.params.size() < m.params.size() &&
                           m.params[f.params.size()].optional && m.params[f.params.size()].by_ref);
      }
      EXPECT_TRUE(bound || short_form) << "not in the member table";
    }
  }
}

TEST(SurfaceHeaders, ParametersHaveTheHeadersNamesAndDefaults) {
  int defaults_compared = 0;
  for (const ClassInfo& c : ShippedSurface().classes) {
    for (const MemberInfo& m : c.members) {
      const HeaderFunction* f = Declaration(c, m);
      if (!f) continue;  // reported above
      for (size_t i = 0; i < m.params.size(); ++i) {
        const ParamInfo& p = m.params[i];
        const HeaderParam& h = f->params[i];
        SCOPED_TRACE(c.name + "." + m.name + " " + p.name);
        EXPECT_TRUE(SameName(p.name, h.name)) << "the header calls it " << h.name;
        if (p.type.kind == TypeKind::kParamArray) {
          EXPECT_EQ(h.default_text, "");
        } else if (p.optional && p.by_ref && h.default_text.empty()) {
          // A short overload stands for the default; checked below.
        } else if (p.optional != !h.default_text.empty()) {
          ADD_FAILURE() << (p.optional ? "optional in the table only"
                                       : "optional in the header only");
        } else if (p.optional) {
          EXPECT_EQ(EvaluateDefault(h.default_text, HeaderOf(c.name)), Canonical(p.default_value));
          ++defaults_compared;
        }
      }
    }
  }
  EXPECT_GT(defaults_compared, 50);
}

// An optional by-reference parameter is written in C++ as an overload
// without it; calling the member with the parameter left out must answer as
// that overload does.
TEST(SurfaceHeaders, ShortOverloadsAnswerAsTheTablesDefaultDoes) {
  struct Case {
    const char* cls;
    const char* member;
    std::vector<Value> args;  // the leading arguments; the rest take defaults
    std::function<Value()> overload;
  };
  const Case kCases[] = {
      {"Functions",
       "ParseStr",
       {Variant(u"ab,cd"), Variant(u",")},
       [] { return Value(Variant(Functions::ParseStr(u"ab,cd", u","))); }},
      {"Conversions",
       "BooleanOut",
       {Variant(false)},
       [] { return Value(Variant(Conversions::BooleanOut(Variant(false)))); }},
      {"DynamicString",
       "ExtractElement",
       {Variant(u"|"), Variant(int32_t{2})},
       [] {
         DynamicString d;
         d.SetValue(u"a|b|c");
         return Value(Variant(d.ExtractElement(u"|", 2).Value()));
       }},
  };
  for (const Case& k : kCases) {
    SCOPED_TRACE(std::string(k.cls) + "." + k.member);
    const ClassInfo* c = ShippedSurface().FindClass(k.cls);
    const MemberInfo* m = c->Find(k.member, MemberKind::kMethod);
    std::vector<Value> args = BindArguments(k.member, *m, k.args.size(),
                                            [&](const ParamInfo&, size_t i) { return k.args[i]; });
    Object self;
    if (c->kind == ClassKind::kCreatable) {
      self = c->factory();
      std::vector<Value> value{Variant(u"a|b|c")};
      c->Find("Value", MemberKind::kPropertyLet)->invoke(&self, value);
    }
    Value got = m->invoke(c->kind == ClassKind::kCreatable ? &self : nullptr, args);
    if (const auto* o = std::get_if<Object>(&got)) {
      std::vector<Value> none;
      got = c->Find("Value", MemberKind::kPropertyGet)->invoke(o, none);
    }
    EXPECT_EQ(Canonical(got), Canonical(k.overload()));
  }
}

}  // namespace
}  // namespace crvlib::typelib
