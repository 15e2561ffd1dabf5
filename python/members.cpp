// Python classes made from the member table. Each member becomes one Python
// function that matches its arguments to the table's parameters, converts
// them, calls the member's thunk and converts what comes back; nothing here
// is written per member. The docstring of each function starts with a text
// signature (so inspect.signature and help() show the parameter names and
// defaults) followed by the member as an object browser shows it.
#include "python/members.h"

#include <deque>
#include <set>
#include <unordered_map>

namespace crvlib::python {

namespace {

using typelib::ClassKind;
using typelib::MemberKind;

[[noreturn]] void Raise(PyObject* type, const std::string& message) {
  PyErr_SetString(type, message.c_str());
  throw py::error_already_set();
}

// The members the Python functions refer to; they never move.
std::deque<MemberRef>& AllMembers() {
  static auto* members = new std::deque<MemberRef>;
  return *members;
}
std::unordered_map<PyObject*, const MemberRef*>& GlobalMembers() {
  static auto* members = new std::unordered_map<PyObject*, const MemberRef*>;
  return *members;
}

bool HasParamArray(const MemberInfo& m) {
  return !m.params.empty() && m.params.back().type.kind == TypeKind::kParamArray;
}

bool WritesParameters(const MemberInfo& m) {
  for (const ParamInfo& p : m.params) {
    if (p.written) return true;
  }
  return false;
}

// A property get without parameters is a Python property; a get with
// parameters stays a method.
bool IsPythonProperty(const MemberInfo& m) {
  return (m.kind == MemberKind::kPropertyGet && m.params.empty()) ||
         m.kind == MemberKind::kPropertyLet;
}

std::string Utf8(const py::handle& o) {
  return py::str(o).cast<std::string>();
}

// ---------------------------------------------------------------------------
// Docstrings

// An optional parameter's default: an enumeration's by its member's name,
// anything else as Python writes it (for the text signature) or as Basic
// does (for the object browser line).
std::string DefaultText(const ParamInfo& p, bool python) {
  const auto* v = std::get_if<Variant>(&p.default_value);
  if (const typelib::EnumInfo* e = p.type.Enum(); e && v) {
    if (const typelib::EnumMember* member = e->Find(v->AsLong())) return member->name;
  }
  if (!python && v && v->Type() == VarType::kString) return "\"" + v->AsString().ToUtf8() + "\"";
  if (!python && v && v->Type() == VarType::kBoolean) return v->AsBoolean() ? "True" : "False";
  return Utf8(py::repr(ValueToPython(p.default_value)));
}

std::string TextSignature(const MemberInfo& m, bool method) {
  std::string s = m.name + "(";
  if (method) s += "$self";
  for (const ParamInfo& p : m.params) {
    if (s.back() != '(') s += ", ";
    if (p.type.kind == TypeKind::kParamArray) {
      s += "*" + p.name;
    } else {
      s += p.name;
      if (p.optional) s += "=" + DefaultText(p, true);
    }
  }
  return s + ")";
}

// "[ByVal Count As Long = 1]", "NewArray() As String",
// "ParamArray Parameters() As Variant".
std::string BrowserParam(const ParamInfo& p) {
  if (p.type.kind == TypeKind::kParamArray) return "ParamArray " + p.name + "() As Variant";
  std::string s = p.by_ref ? "" : "ByVal ";
  s += p.name;
  s += p.type.kind == TypeKind::kStringArray ? "() As String" : " As " + p.type.name;
  if (p.optional) s = "[" + s + " = " + DefaultText(p, false) + "]";
  return s;
}

std::string Indented(const std::string& help) {
  std::string out = "    ";
  for (size_t i = 0; i < help.size(); ++i) {
    if (help[i] == '\r' && i + 1 < help.size() && help[i + 1] == '\n') continue;
    out += help[i];
    if (help[i] == '\n') out += "    ";
  }
  return out;
}

std::string MemberOf(const ClassInfo& c, const MemberInfo& m) {
  return std::string(m.is_default ? "    Default member of crvlib." : "    Member of crvlib.") +
         c.name + "\n";
}

std::string MethodDoc(const ClassInfo& c, const MemberInfo& m, bool method) {
  std::string doc = TextSignature(m, method) + "\n--\n\n";
  const bool sub = m.result.kind == TypeKind::kVoid;
  doc += (sub ? "Sub " : "Function ") + m.name + "(";
  for (size_t i = 0; i < m.params.size(); ++i) doc += (i ? ", " : "") + BrowserParam(m.params[i]);
  doc += sub ? ")\n" : ") As " + m.result.name + "\n";
  doc += MemberOf(c, m) + Indented(m.help) + "\n";
  if (!m.note.empty()) doc += "    Note: " + m.note + "\n";
  if (WritesParameters(m)) {
    std::string written;
    for (const ParamInfo& p : m.params) {
      if (p.written) written += ", " + p.name;
    }
    doc += "\n    Returns (" + std::string(sub ? "None" : "result") + written +
           "): the routine writes" + written.substr(1) + ".\n";
  }
  return doc;
}

std::string PropertyDoc(const ClassInfo& c, const MemberInfo& get_or_let, bool read_only) {
  std::string doc = "Property " + get_or_let.name + " As ";
  doc += get_or_let.kind == MemberKind::kPropertyGet ? get_or_let.result.name
                                                     : get_or_let.params.back().type.name;
  doc += "\n";
  if (read_only) doc += "    read-only\n";
  return doc + MemberOf(c, get_or_let) + Indented(get_or_let.help) + "\n";
}

// ---------------------------------------------------------------------------
// Calls

// Runs the member: library errors become crvlib.Error.
Value Invoke(const MemberRef& ref, const Object* self, std::vector<Value>& values) {
  try {
    if (RunsWithoutGil(self, values)) {
      py::gil_scoped_release unlocked;
      return ref.member->invoke(self, values);
    }
    return ref.member->invoke(self, values);
  } catch (const Error& e) {
    PyErr_SetObject(GetRuntime().error.ptr(), ErrorToPython(e).ptr());
    throw py::error_already_set();
  }
}

py::object Call(const MemberRef& ref, const Object* self, const py::args& args,
                const py::kwargs& kwargs) {
  std::vector<Value> values = ConvertArguments(ref, MatchArguments(ref, {}, args, kwargs));
  Value result = Invoke(ref, self, values);
  return ResultToPython(*ref.member, result, TakeWritten(*ref.member, values));
}

// The object `self` refers to, for a member of `ref`'s class.
const Object& SelfOf(const MemberRef& ref, py::handle self) {
  const Object* object = ObjectOf(self.ptr());
  if (!object || object->ClassName() != ref.cls->name) {
    Raise(PyExc_TypeError,
          ref.what + "() needs a crvlib." + ref.cls->name + ", not " + TypeName(self.ptr()));
  }
  return *object;
}

const MemberRef& Remember(const ClassInfo& c, const MemberInfo& m) {
  return AllMembers().emplace_back(MemberRef{&c, &m, c.name + "." + m.name});
}

py::object Builtin(const char* name) {
  return py::module_::import("builtins").attr(name);
}

py::object NewClass(py::handle metaclass, const std::string& name, py::handle base,
                    const std::string& doc, py::dict ns = py::dict()) {
  ns["__module__"] = "crvlib";
  ns["__qualname__"] = name;
  ns["__doc__"] = doc;
  return metaclass(name, py::make_tuple(base), ns);
}

// The property of get `get` and let `let` (either may be null) of a class:
// `bind` makes the Python function of a member, taking the object (or
// class) the property is read on, and for a let the value.
template <class Bind>
py::object MakeProperty(const ClassInfo& c, const MemberInfo* get, const MemberInfo* let,
                        Bind bind) {
  py::object fget = py::none(), fset = py::none();
  if (get) fget = bind(Remember(c, *get));
  if (let) fset = bind(Remember(c, *let));
  return Builtin("property")(fget, fset, py::none(),
                             PropertyDoc(c, get ? *get : *let, let == nullptr));
}

// The get of a property and its let; null for the one it lacks.
std::pair<const MemberInfo*, const MemberInfo*> GetAndLet(const ClassInfo& c,
                                                          const MemberInfo& member) {
  if (member.kind == MemberKind::kPropertyGet) {
    return {&member, c.Find(member.name, MemberKind::kPropertyLet)};
  }
  return {c.Find(member.name, MemberKind::kPropertyGet), &member};
}

void AddGlobalClass(py::module_& m, const ClassInfo& c) {
  // Properties read on the class itself (crvlib.Constants.vxAM) live on a
  // metaclass; they are on the class too, for its instances and for help().
  auto bind_property = [](const MemberRef& ref) {
    return py::cpp_function([&ref](py::handle /*class or instance*/, py::args args) {
      return Call(ref, nullptr, args, py::kwargs());
    });
  };
  py::dict properties;
  for (const MemberInfo& member : c.members) {
    if (!IsPythonProperty(member) || properties.contains(member.name)) continue;
    auto [get, let] = GetAndLet(c, member);
    properties[member.name.c_str()] = MakeProperty(c, get, let, bind_property);
  }
  py::object type = Builtin("type");
  py::object metaclass = properties.empty()
                             ? type
                             : NewClass(type, c.name + "Type", type,
                                        "The metaclass of " + c.name + ".", py::dict(properties));
  py::object cls = NewClass(metaclass, c.name, Builtin("object"), c.help, py::dict(properties));
  for (const MemberInfo& member : c.members) {
    if (IsPythonProperty(member)) continue;
    const MemberRef& ref = Remember(c, member);
    py::cpp_function function(
        [&ref](py::args args, py::kwargs kwargs) { return Call(ref, nullptr, args, kwargs); },
        py::name(member.name.c_str()), py::doc(MethodDoc(c, member, false).c_str()),
        py::scope(cls));
    GlobalMembers()[function.ptr()] = &ref;
    py::setattr(cls, member.name.c_str(), py::staticmethod(function));
  }
  m.attr(c.name.c_str()) = cls;
}

void AddCreatableClass(py::module_& m, const ClassInfo& c) {
  Runtime& rt = GetRuntime();
  py::object cls = NewClass(py::type::of(rt.instance), c.name, rt.instance, c.help);
  py::setattr(cls, "__init__",
              py::cpp_function(
                  [&c](py::handle self) {
                    GetRuntime().instance.attr("__init__")(self);
                    self.cast<Instance&>().object = c.factory();
                  },
                  // Not named __init__: pybind11 would take it for a constructor of
                  // its own kind. The base's __init__ is the constructor.
                  py::is_method(cls), py::name(c.name.c_str()),
                  py::doc((c.name + "($self)\n--\n\nMakes a new " + c.name + ".").c_str())));
  auto bind_property = [](const MemberRef& ref) {
    return py::cpp_function([&ref](py::handle self, py::args args) {
      return Call(ref, &SelfOf(ref, self), args, py::kwargs());
    });
  };
  std::set<std::string> properties;
  for (const MemberInfo& member : c.members) {
    if (IsPythonProperty(member)) {
      if (!properties.insert(member.name).second) continue;  // made with its get or let
      auto [get, let] = GetAndLet(c, member);
      py::setattr(cls, member.name.c_str(), MakeProperty(c, get, let, bind_property));
      continue;
    }
    const MemberRef& ref = Remember(c, member);
    py::setattr(cls, member.name.c_str(),
                py::cpp_function(
                    [&ref](py::handle self, py::args args, py::kwargs kwargs) {
                      return Call(ref, &SelfOf(ref, self), args, kwargs);
                    },
                    py::is_method(cls), py::name(member.name.c_str()),
                    py::doc(MethodDoc(c, member, true).c_str())));
  }
  // str(x) is the default String property; len(x) the Length property.
  for (const MemberInfo& member : c.members) {
    if (member.kind != MemberKind::kPropertyGet || !member.params.empty()) continue;
    if (member.is_default && member.result.kind == TypeKind::kString) {
      const MemberRef& ref = Remember(c, member);
      py::setattr(cls, "__str__",
                  py::cpp_function(
                      [&ref](py::handle self) {
                        std::vector<Value> none;
                        Value v = Invoke(ref, &SelfOf(ref, self), none);
                        // A str has whole characters only.
                        return StringToPython(String(std::get<Variant>(v).AsString().view()));
                      },
                      py::is_method(cls), py::name("__str__"),
                      py::doc(("__str__($self)\n--\n\nThe " + member.name +
                               " property (its whole characters).")
                                  .c_str())));
    }
    if (member.name == "Length" && member.result.kind == TypeKind::kLong) {
      const MemberRef& ref = Remember(c, member);
      py::setattr(cls, "__len__",
                  py::cpp_function(
                      [&ref](py::handle self) {
                        return Call(ref, &SelfOf(ref, self), py::args(), py::kwargs());
                      },
                      py::is_method(cls), py::name("__len__"),
                      py::doc("__len__($self)\n--\n\nThe Length property.")));
    }
  }
  rt.classes[c.name] = cls;
  m.attr(c.name.c_str()) = cls;
}

}  // namespace

void AddClasses(py::module_& m, const typelib::Surface& surface) {
  for (const ClassInfo& c : surface.classes) {
    if (c.kind == ClassKind::kGlobal) {
      AddGlobalClass(m, c);
    } else {
      AddCreatableClass(m, c);
    }
  }
}

const MemberRef* FindGlobalMember(py::handle function) {
  auto it = GlobalMembers().find(function.ptr());
  return it == GlobalMembers().end() ? nullptr : it->second;
}

MatchedArguments MatchArguments(const MemberRef& ref, py::handle first, const py::args& args,
                                const py::kwargs& kwargs) {
  const std::vector<ParamInfo>& params = ref.member->params;
  const bool has_rest = HasParamArray(*ref.member);
  const size_t fixed = params.size() - (has_rest ? 1 : 0);
  MatchedArguments out;
  out.fixed.assign(fixed, nullptr);
  std::vector<PyObject*> positional;
  if (first) positional.push_back(first.ptr());
  for (py::handle a : args) positional.push_back(a.ptr());
  if (positional.size() > fixed && !has_rest) {
    Raise(PyExc_TypeError, ref.what + "() takes " + std::to_string(fixed) + " positional argument" +
                               (fixed == 1 ? "" : "s") + " but " +
                               std::to_string(positional.size()) + " were given");
  }
  for (size_t i = 0; i < positional.size(); ++i) {
    if (i < fixed) {
      out.fixed[i] = positional[i];
    } else {
      out.rest.push_back(positional[i]);
    }
  }
  for (auto [key, value] : kwargs) {
    std::string name = Utf8(key);
    size_t j = 0;
    while (j < fixed && params[j].name != name) ++j;
    if (j == fixed) {
      Raise(PyExc_TypeError, ref.what + "() got an unexpected keyword argument '" + name + "'");
    }
    if (out.fixed[j]) {
      Raise(PyExc_TypeError, ref.what + "() got multiple values for argument '" + name + "'");
    }
    out.fixed[j] = value.ptr();
  }
  std::string missing;
  size_t count = 0;
  for (size_t j = 0; j < fixed; ++j) {
    if (out.fixed[j] || params[j].optional) continue;
    missing += (count++ ? ", '" : "'") + params[j].name + "'";
  }
  if (count) {
    Raise(PyExc_TypeError, ref.what + "() missing " + std::to_string(count) + " required argument" +
                               (count == 1 ? "" : "s") + ": " + missing);
  }
  return out;
}

std::string ArgumentMessage(const MemberRef& ref, const ParamInfo& param, const ArgumentError& e) {
  return ref.what + "() argument '" + param.name + "' " + e.what();
}

std::vector<Value> ConvertArguments(const MemberRef& ref, const MatchedArguments& matched,
                                    std::optional<size_t> skip) {
  const size_t fixed = matched.fixed.size();
  auto convert = [&](const ParamInfo& p, size_t i) -> Value {
    if (i == skip) return Value();
    PyObject* o = i < fixed ? matched.fixed[i] : matched.rest[i - fixed];
    if (!o) return p.default_value;  // an omitted optional parameter
    try {
      return ValueFromPython(o, p.type);
    } catch (const ArgumentError& e) {
      Raise(e.type(), ArgumentMessage(ref, p, e));
    }
  };
  // The table's own binding gives the defaults and gathers the ParamArray.
  return typelib::BindArguments(ref.what, *ref.member, fixed + matched.rest.size(), convert);
}

bool RunsWithoutGil(const Object* self, std::span<const Value> values) {
  if (self) return false;
  for (const Value& v : values) {
    if (std::holds_alternative<Object>(v)) return false;
  }
  return true;
}

py::object ResultToPython(const MemberInfo& member, const Value& result,
                          std::span<const Value> written) {
  py::object r = member.result.kind == TypeKind::kVoid ? py::none() : ValueToPython(result);
  if (!WritesParameters(member)) return r;
  py::tuple out(1 + written.size());
  out[0] = r;
  for (size_t i = 0; i < written.size(); ++i) out[i + 1] = ValueToPython(written[i]);
  return out;
}

std::vector<Value> TakeWritten(const MemberInfo& member, std::vector<Value>& values) {
  std::vector<Value> written;
  for (size_t i = 0; i < member.params.size(); ++i) {
    if (member.params[i].written) written.push_back(std::move(values[i]));
  }
  return written;
}

}  // namespace crvlib::python
