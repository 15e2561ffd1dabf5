// Writes the IDL of a member table. The text is built in table order, so the
// same table always gives the same bytes (typelib/crvlib.idl is checked
// against it). Types map to their automation forms: String BSTR, Long long
// (or the enumeration's name), Integer short, Boolean VARIANT_BOOL, Double
// double, Currency CY, Date DATE, Variant VARIANT, String() SAFEARRAY(BSTR)*,
// a ParamArray SAFEARRAY(VARIANT)* on a [vararg] method, an object its
// interface pointer; a by-reference parameter adds one `*`.
#include "typelib/surface_idl.h"

#include <string_view>
#include <vector>

namespace crvlib::typelib {

namespace {

constexpr std::string_view kIndent = "    ";

// `text` as the inside of a C string literal.
std::string Escaped(std::string_view text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\n':
        out += "\\n";
        break;
      default:
        out.push_back(c);
    }
  }
  return out;
}

bool HoldsLineEnd(std::string_view text) {
  return text.find_first_of("\r\n") != std::string_view::npos;
}

// The helpstring widl can store: each line end (CR LF, CR or LF) becomes
// one space, since widl keeps "\r\n" as the four characters.
std::string OneLine(std::string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' || text[i] == '\n') {
      if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
      out.push_back(' ');
    } else {
      out.push_back(text[i]);
    }
  }
  return out;
}

std::string HelpAttribute(std::string_view help) {
  return "helpstring(\"" + Escaped(OneLine(help)) + "\")";
}

// The comment that carries a help string widl cannot, or "".
std::string HelpComment(std::string_view help, std::string_view indent) {
  if (!HoldsLineEnd(help)) return "";
  return std::string(indent) + "// helpstring holds CR LF: \"" + Escaped(help) + "\"\n";
}

std::string InterfaceName(std::string_view class_name) {
  return "_" + std::string(class_name);
}

// The type of a value of `type`, before any by-reference `*`.
std::string BaseType(const TypeInfo& type) {
  switch (type.kind) {
    case TypeKind::kString:
      return "BSTR";
    case TypeKind::kLong:
      return type.Enum() ? type.name : "long";
    case TypeKind::kInteger:
      return "short";
    case TypeKind::kBoolean:
      return "VARIANT_BOOL";
    case TypeKind::kDouble:
      return "double";
    case TypeKind::kCurrency:
      return "CY";
    case TypeKind::kDate:
      return "DATE";
    case TypeKind::kVariant:
      return "VARIANT";
    case TypeKind::kStringArray:
      return "SAFEARRAY(BSTR)";
    case TypeKind::kParamArray:
      return "SAFEARRAY(VARIANT)";
    case TypeKind::kObject:
      return InterfaceName(type.name) + "*";
    case TypeKind::kVoid:
      break;
  }
  return "void";
}

// The default as the type library writes it: numbers and enumeration
// members by value, Booleans as -1 and 0, strings quoted. Empty when the
// default is no scalar (an Empty Variant).
std::string DefaultValue(const Value& v) {
  const auto* variant = std::get_if<Variant>(&v);
  if (!variant) return "";
  switch (variant->Type()) {
    case VarType::kString:
      return "\"" + Escaped(variant->AsString().ToUtf8()) + "\"";
    case VarType::kLong:
      return std::to_string(variant->AsLong());
    case VarType::kInteger:
      return std::to_string(variant->AsInteger());
    case VarType::kBoolean:
      return variant->AsBoolean() ? "-1" : "0";
    case VarType::kDouble:
      return std::to_string(variant->AsDouble());
    default:
      return "";
  }
}

std::string Parameter(const ParamInfo& p) {
  const bool array = p.type.kind == TypeKind::kStringArray || p.type.kind == TypeKind::kParamArray;
  const bool by_ref = p.by_ref || array;
  std::string flags = by_ref ? "in, out" : "in";
  std::string type = BaseType(p.type) + (by_ref ? "*" : "");
  if (p.optional && p.type.kind != TypeKind::kParamArray) {
    flags += ", optional";
    std::string value = DefaultValue(p.default_value);
    if (value.empty()) {
      // No default to give.
    } else if (by_ref && p.type.kind == TypeKind::kString) {
      flags += " /* , defaultvalue(" + value + "): not expressible for widl */";
    } else {
      flags += ", defaultvalue(" + value + ")";
    }
  }
  return "[" + flags + "] " + type + " " + p.name;
}

void AppendMember(std::string& out, const MemberInfo& m) {
  const std::string indent = std::string(kIndent) + std::string(kIndent);
  out += HelpComment(m.help, indent);
  std::string attributes = "id(" + DispidText(m.dispid) + ")";
  if (m.kind == MemberKind::kPropertyGet) attributes += ", propget";
  if (m.kind == MemberKind::kPropertyLet) attributes += ", propput";
  if (!m.params.empty() && m.params.back().type.kind == TypeKind::kParamArray) {
    attributes += ", vararg";
  }
  if (!m.help.empty()) attributes += ", " + HelpAttribute(m.help);
  out += indent + "[" + attributes + "]\n";

  std::vector<std::string> params;
  for (const ParamInfo& p : m.params) params.push_back(Parameter(p));
  if (m.result.kind != TypeKind::kVoid) {
    params.push_back("[out, retval] " + BaseType(m.result) + "* Result");
  }
  out += indent + "HRESULT " + m.name + "(";
  if (params.size() == 1) {
    out += params[0];
  } else {
    for (size_t i = 0; i < params.size(); ++i) {
      out += "\n" + indent + std::string(kIndent) + params[i] + (i + 1 < params.size() ? "," : "");
    }
  }
  out += ");\n";
}

void AppendEnum(std::string& out, const EnumInfo& e) {
  out += std::string(kIndent) + "typedef enum " + e.name + " {\n";
  for (size_t i = 0; i < e.members.size(); ++i) {
    const EnumMember& m = e.members[i];
    out += std::string(kIndent) + std::string(kIndent) + m.name + " = " + std::to_string(m.value) +
           (i + 1 < e.members.size() ? "," : "") + "  // helpstring(\"" + m.name + "\")\n";
  }
  out += std::string(kIndent) + "} " + e.name + ";\n\n";
}

void AppendInterface(std::string& out, const ClassInfo& c) {
  const std::string in(kIndent);
  out += in + "[\n";
  out += in + "  object,\n";
  out += in + "  uuid(" + c.ids.iid + "),\n";
  out += in + "  dual,\n";
  out += in + "  oleautomation,\n";
  out += in + "  nonextensible,\n";
  out += in + "  " + HelpAttribute(c.help) + "\n";
  out += in + "]\n";
  out += in + "interface " + InterfaceName(c.name) + " : IDispatch {\n";
  for (const MemberInfo& m : c.members) AppendMember(out, m);
  out += in + "};\n\n";
}

void AppendCoclass(std::string& out, const ClassInfo& c) {
  const std::string in(kIndent);
  out += in + "[\n";
  out += in + "  uuid(" + c.ids.clsid + "),\n";
  if (c.kind == ClassKind::kGlobal) {
    out += in + "  " + HelpAttribute(c.help) + ",\n";
    out += in + "  appobject  // and predeclid: a predeclared instance\n";
  } else {
    out += in + "  " + HelpAttribute(c.help) + "\n";
  }
  out += in + "]\n";
  out += in + "coclass " + c.name + " {\n";
  out += in + in + "[default] interface " + InterfaceName(c.name) + ";\n";
  out += in + "};\n\n";
}

}  // namespace

std::string TypeLibraryIdl(const Surface& surface) {
  const LibraryInfo& lib = surface.library;
  std::string out =
      "// The type library of " + lib.name +
      ", written by `crv idl` from the member table.\n"
      "// Regenerate it rather than editing it.\n"
      "//\n"
      "// What widl cannot express is given in comments next to its construct: the help\n"
      "// strings of enumeration members, the predeclared instance (predeclid) of the\n"
      "// global classes, the defaults of optional by-reference Strings, and help\n"
      "// strings holding CR LF.\n"
      "//\n"
      "// The in-process server is " +
      lib.server_file + ".dll. The message catalogue class it creates at start-up\n" + "// is {" +
      lib.message_catalogue_clsid + "}.\n\n";
  out += "import \"oaidl.idl\";\n\n";
  out += "[\n";
  out += "  uuid(" + lib.guid + "),\n";
  out += "  version(" + std::to_string(lib.major_version) + "." +
         std::to_string(lib.minor_version) + "),\n";
  out += "  lcid(" + std::to_string(lib.lcid) + "),\n";
  out += "  " + HelpAttribute(lib.help) + ",\n";
  out += "  helpfile(\"" + Escaped(lib.help_file) + "\")\n";
  out += "]\n";
  out += "library " + lib.name + "\n{\n";
  out += std::string(kIndent) + "importlib(\"stdole2.tlb\");\n\n";
  for (const ClassInfo& c : surface.classes) {
    out += std::string(kIndent) + "interface " + InterfaceName(c.name) + ";\n";
  }
  out += "\n";
  for (const EnumInfo& e : Enumerations()) AppendEnum(out, e);
  for (const ClassInfo& c : surface.classes) AppendInterface(out, c);
  for (const ClassInfo& c : surface.classes) AppendCoclass(out, c);
  out.pop_back();  // one line end after the last coclass
  out += "};\n";
  return out;
}

}  // namespace crvlib::typelib
