// One call from the command line, the member listing and the help text.
#include "cli/commands.h"

#include <algorithm>
#include <vector>

#include "cli/value_json.h"
#include "cli/value_text.h"
#include "crvlib/error.h"
#include "typelib/surface_idl.h"

namespace crvlib::cli {

namespace {

// Names objects printed by one call: the same object keeps its name.
class MadeUpNames {
 public:
  std::string operator()(const Object& o) {
    for (size_t i = 0; i < seen_.size(); ++i) {
      if (seen_[i] == o) return "obj" + std::to_string(i + 1);
    }
    seen_.push_back(o);
    return "obj" + std::to_string(seen_.size());
  }

 private:
  std::vector<Object> seen_;
};

int Usage(Output& output, const std::string& message) {
  output.err += "crv: " + EscapeControls(String::FromUtf8(message).view()) + "\n";
  return kExitUsage;
}

// "error NUMBER (SOURCE): DESCRIPTION" on one line: a description may hold a
// line end, which would otherwise garble the line on a terminal.
std::string ErrorLine(const Error& e, bool escapes) {
  auto text = [&](const String& s) {
    return escapes ? EscapeText(s.view()) : EscapeControls(s.view());
  };
  return "error " + std::to_string(e.Number()) + " (" + text(e.Source()) +
         "): " + text(e.Description()) + "\n";
}

const char* VarTypeName(VarType t) {
  switch (t) {
    case VarType::kEmpty:
      return "Empty";
    case VarType::kNull:
      return "Null";
    case VarType::kInteger:
      return "Integer";
    case VarType::kLong:
      return "Long";
    case VarType::kDouble:
      return "Double";
    case VarType::kCurrency:
      return "Currency";
    case VarType::kDate:
      return "Date";
    case VarType::kString:
      return "String";
    case VarType::kBoolean:
      return "Boolean";
  }
  return "Variant";
}

// After a type mismatch (13): a line for each Variant argument written as
// plain text, saying what it was read as and the typed forms its text fits.
// A routine that wants a Currency or a Date cannot tell from "-1234.5".
void AppendTypeHints(std::string& err, const MemberInfo& member, std::span<const std::string> args,
                     bool escapes) {
  const ParamInfo variant{"", TypeOf<Variant>(), false, false, {}};
  for (size_t i = 0; i < args.size() && !member.params.empty(); ++i) {
    // Arguments past the last parameter are items of its ParamArray.
    const ParamInfo& p = member.params[std::min(i, member.params.size() - 1)];
    bool is_variant = p.type.kind == TypeKind::kVariant || p.type.kind == TypeKind::kParamArray;
    const std::string& arg = args[i];
    if (!is_variant || arg.starts_with('{') || arg.starts_with('"')) continue;
    Variant read;
    try {
      read = std::get<Variant>(ArgumentFromText(arg, variant, escapes));
    } catch (const UsageError&) {
      continue;
    }
    std::string forms;
    auto add = [&](const char* tag) {
      forms += forms.empty() ? "{\"" : ", {\"";
      forms += tag;
      forms += "\":";
      AppendJsonString(forms, String::FromUtf8(arg).view());
      forms += "}";
    };
    if (ParseCurrency(arg)) add("Currency");
    if (ParseDate(arg)) add("Date");
    if (forms.empty()) forms = R"(True, False, {"Currency":"1.5"}, {"Date":"2004-12-31"})";
    err += "hint: argument " + std::to_string(i + 1) + " (" + p.name + ") was read as a " +
           VarTypeName(read.Type()) + "; write another type in its typed form: " + forms +
           " (see crv list)\n";
  }
}

// A default value as it would be written in a declaration.
std::string DefaultText(const ParamInfo& p) {
  if (const EnumInfo* e = p.type.Enum()) {
    int32_t value = std::get<Variant>(p.default_value).AsLong();
    if (const EnumMember* m = e->Find(value)) return m->name;
  }
  if (const auto* v = std::get_if<Variant>(&p.default_value); v && v->Type() == VarType::kString) {
    std::string quoted = "\"";
    for (char c : EscapeText(v->AsString().view())) {
      quoted += c;
      if (c == '"') quoted += '"';
    }
    return quoted + "\"";
  }
  return ValueText(p.default_value, true, MadeUpNames());
}

std::string Declaration(const MemberInfo& m) {
  std::string out;
  switch (m.kind) {
    case MemberKind::kMethod:
      out = m.result.kind == TypeKind::kVoid ? "Sub " : "Function ";
      break;
    case MemberKind::kPropertyGet:
      out = "Property Get ";
      break;
    case MemberKind::kPropertyLet:
      out = "Property Let ";
      break;
  }
  out += m.name + "(";
  for (size_t i = 0; i < m.params.size(); ++i) {
    const ParamInfo& p = m.params[i];
    if (i) out += ", ";
    if (p.type.kind == TypeKind::kParamArray) {
      out += "ParamArray " + p.name + "() As Variant";
      continue;
    }
    if (p.optional) out += "Optional ";
    out += p.by_ref ? "ByRef " : "ByVal ";
    out += p.name + " As " + p.type.name;
    if (p.optional) out += " = " + DefaultText(p);
  }
  out += ")";
  if (m.result.kind != TypeKind::kVoid) out += " As " + m.result.name;
  return out;
}

void AppendHelp(std::string& out, std::string_view help, std::string_view indent) {
  while (!help.empty()) {
    size_t nl = help.find('\n');
    std::string_view line = help.substr(0, nl);
    if (line.ends_with('\r')) line.remove_suffix(1);
    out += std::string(indent) + std::string(line) + "\n";
    help = nl == std::string_view::npos ? std::string_view() : help.substr(nl + 1);
  }
}

void ListClass(std::string& out, const ClassInfo& c) {
  out += "class " + c.name + (c.kind == ClassKind::kGlobal ? " (global)" : " (creatable)") + "\n";
  AppendHelp(out, c.help, "  ");
  bool takes_variants = false;
  for (const MemberInfo& m : c.members) {
    out += "  " + typelib::DispidText(m.dispid) + "  " + Declaration(m) +
           (m.is_default ? "  [default]" : "") + "\n";
    AppendHelp(out, m.help, "              ");
    if (!m.note.empty()) AppendHelp(out, "Note: " + m.note, "              ");
    for (const ParamInfo& p : m.params) {
      takes_variants = takes_variants || p.type.kind == TypeKind::kVariant ||
                       p.type.kind == TypeKind::kParamArray;
    }
  }
  if (takes_variants) {
    out += R"(  A Variant argument of crv is typed by its form: 5 (Long), 2.5 (Double),
  True or False (Boolean), null (Null), {"Currency":"-1234.5"},
  {"Date":"2004-12-31"}, {"Integer":5}, {"Empty":true}; other text is a String.
)";
  }
}

void ListEnum(std::string& out, const EnumInfo& e) {
  out += "enum " + e.name + "\n";
  for (const EnumMember& m : e.members)
    out += "  " + m.name + " = " + std::to_string(m.value) + "\n";
}

}  // namespace

int RunCall(const Surface& surface, std::string_view target, std::span<const std::string> args,
            CallOptions options, Output& output) {
  const bool escapes = options.escapes;
  const MemberInfo* member = nullptr;
  try {
    size_t dot = target.find('.');
    const ClassInfo* cls = surface.FindClass(target.substr(0, dot));
    if (dot == std::string_view::npos || !cls) {
      return Usage(output, "\"" + std::string(target) +
                               "\" is not CLASS.MEMBER of a known class (see crv list)");
    }
    std::string_view name = target.substr(dot + 1);
    member = cls->Find(name, MemberKind::kMethod);
    if (!member) {
      if (cls->Find(name, MemberKind::kPropertyLet)) {
        return Usage(
            output, cls->name + "." + std::string(name) + " can only be set, which crv batch does");
      }
      return Usage(output, cls->name + " has no member \"" + std::string(name) + "\"");
    }
    std::string what = cls->name + "." + member->name;
    std::vector<Value> values = BindArguments(
        what, *member, args.size(),
        [&](const ParamInfo& p, size_t i) { return ArgumentFromText(args[i], p, escapes); });
    Object self;
    if (cls->kind == ClassKind::kCreatable) self = cls->factory();
    Value result = member->invoke(cls->kind == ClassKind::kCreatable ? &self : nullptr, values);

    MadeUpNames names;
    ObjectNamer name_of = std::ref(names);
    if (member->result.kind != TypeKind::kVoid) {
      output.out += ValueText(result, escapes, name_of) + "\n";
    }
    for (size_t i = 0; i < member->params.size() && !options.result_only; ++i) {
      if (!member->params[i].by_ref) continue;
      output.out += member->params[i].name + "=" + ValueText(values[i], escapes, name_of) + "\n";
    }
    return kExitOk;
  } catch (const Error& e) {
    output.err += ErrorLine(e, escapes);
    if (e.Number() == 13 && member) AppendTypeHints(output.err, *member, args, escapes);
    return kExitRoutineError;
  } catch (const UsageError& e) {
    return Usage(output, e.what());
  }
}

int RunList(const Surface& surface, std::optional<std::string_view> name, Output& output) {
  std::string& out = output.out;
  if (name) {
    if (const ClassInfo* c = surface.FindClass(*name)) {
      ListClass(out, *c);
      return kExitOk;
    }
    if (const EnumInfo* e = FindEnum(*name)) {
      ListEnum(out, *e);
      return kExitOk;
    }
    return Usage(output, "there is no class or enumeration named \"" + std::string(*name) + "\"");
  }
  for (const ClassInfo& c : surface.classes) {
    ListClass(out, c);
    out += "\n";
  }
  for (const EnumInfo& e : Enumerations()) {
    ListEnum(out, e);
    out += "\n";
  }
  if (!out.empty()) out.pop_back();
  return kExitOk;
}

int RunIdl(const Surface& surface, Output& output) {
  output.out += typelib::TypeLibraryIdl(surface);
  return kExitOk;
}

std::string_view HelpText() {
  return R"(usage: crv [--locale TAG] [-e] [-r] CLASS.MEMBER [ARG...]
       crv [--locale TAG] batch
       crv list [CLASS]
       crv idl
       crv --help | --version

crv calls the routines of crvlib from the command line.

crv CLASS.MEMBER [ARG...]
  Calls one routine and prints its result, then each by-reference parameter
  as NAME=value. Omitted trailing optional arguments take their defaults. A
  member of a creatable class runs on a new object. Each argument is
  converted to its parameter's type:
    String           the text as it is
    Long, Integer    a whole number; for an enumeration also a member name
                     (vxDescending)
    Boolean          True or False
    Double           a number: 1.5, -2, 1e-3
    Currency         a decimal with up to 4 places: 12.3456
    Date             YYYY-MM-DD or YYYY-MM-DDThh:mm:ss
    String()         JSON: {"lbound":1,"items":["a","b"]} or ["a","b"]
    Variant          the JSON value when the text is one of its forms:
                     5 (Long), 2.5 (Double), true, false, null, "5" (String),
                     {"Currency":"1.5"}, {"Date":"2004-12-31"}, {"Empty":true};
                     True or False in any letter case (Boolean); any other
                     text is a String. A routine that answers error 13 to a
                     Variant typed plainly gets a hint line naming its typed
                     form: crv Conversions.CurrencyOut '{"Currency":"-1234.5"}'
    ParamArray       the remaining arguments, each read as a Variant
  An empty argument for a by-reference parameter of another type than String
  or Variant (a number, an array the routine fills) starts it empty.
  Arguments are UTF-8; one that is not is refused (type such code units as
  escapes with -e).
  Results print strings as UTF-8, Booleans as True/False, Currency as a
  decimal, Dates in ISO 8601, Null as Null, Nothing as Nothing and arrays and
  objects in JSON.
  Exit status: 0 done; 1 the routine raised an error, printed on stderr as
  "error NUMBER (SOURCE): DESCRIPTION" with control characters as escapes;
  2 a usage error (unknown member, wrong argument count or type, unknown
  locale), printed as one line on stderr; 3 the output could not be written
  (or, for batch, the input read), reported on stderr.

  -e             decodes backslash escapes in the arguments and prints
                 strings with the same escapes: \xHH and \uHHHH (one code
                 unit), \n, \r, \t, \\. Marks and control characters can then
                 be typed and seen: crv -e Constants.vxAM prints \xFE.
                 In a Variant argument the escapes apply to text that is not
                 JSON.
  -r             prints the result only, without the NAME=value lines:
                 x=$(crv -r Functions.ExtractElement 'a|b' '|' 2)
  --locale TAG   runs in the locale TAG (de-DE, fr_FR.UTF-8, ...) instead of
                 the user's; a TAG whose language is unknown is refused.

crv batch
  Reads requests as JSON Lines on stdin and answers each with one line on
  stdout, in order, as soon as its line has arrived (a program may send a
  request and wait for the answer); no line stops it. The error's
  description is exact in the JSON.
    {"call":"Functions.ExtractElement","args":["a|b|c","|",2]}
    {"new":"DynamicString","as":"d"}
    {"set":"d.Value","value":"x"}
    {"call":"d.SubString","args":[0,1],"as":"v"}
    {"release":"v"}
  A call runs a method or gets a property (no args) of a global class or of
  a named object; "as" names the object it returns. Answers:
    {"result":VALUE,"byref":{"NAME":VALUE,...}}
    {"error":{"number":5,"source":"CRVLIB.Functions::ExtractElement",
              "description":"Invalid procedure call or argument"}}
    {"error":{"number":-1,"description":"..."}}   (a request crv cannot make)
  Values: strings as JSON strings (any code unit via \uXXXX), an odd byte
  length as {"bytes":"HEX"}, numbers, true/false, null (Null, Nothing),
  {"Empty":true}, {"Currency":"12.3456"}, {"Date":"2004-12-31T00:00:00"},
  {"lbound":0,"items":[...]}, {"object":"NAME"}. Arguments also take
  {"Integer":5}, {"Long":5}, {"Double":5} and {"String":"x"}; a
  by-reference argument may be null when its input does not matter.

crv list [CLASS]
  Prints the members of CLASS, or of every class and the enumerations: DISPID,
  declaration with parameters, types and defaults, help string and crv's
  notes, and the forms a Variant argument takes.

crv idl
  Prints the type library description (IDL) generated from the member
  table: the library's attributes and identifiers, the enumerations, one
  dual interface per class with DISPIDs, parameter flags, defaults and help
  strings, and the classes. What widl cannot express is given in comments.

crv --version
  Prints the version of crv, which is that of crvlib.
)";
}

}  // namespace crvlib::cli
