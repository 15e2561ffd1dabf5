// The classes of the member table as Python classes, and calls of their
// members with Python arguments.
//
// A global class becomes a class whose methods are static (call them on the
// class: crvlib.Functions.ExtractElement("a|b|c", "|", 2)) and whose
// property gets are readable on the class itself (crvlib.Constants.vxAM). A
// creatable class becomes a subclass of crvlib.Object: instances refer to one
// library object, methods are methods, properties are Python properties, the
// default String property is str(x) and a Length property is len(x).
//
// Every member takes its parameters by position or by their table names, the
// omitted optional ones taking the table's defaults, and a ParamArray takes
// the remaining positional arguments. A member that writes some of its
// parameters returns the tuple (result, written1, written2, ...), the written
// parameters in parameter order (result None for a routine with no result);
// every other member returns its result alone, even where the type library
// passes its strings by reference.
#ifndef CRVLIB_PYTHON_MEMBERS_H_
#define CRVLIB_PYTHON_MEMBERS_H_

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "python/values.h"

namespace crvlib::python {

using typelib::ClassInfo;
using typelib::MemberInfo;
using typelib::ParamInfo;

// A member and its class, with the name messages give it
// ("Functions.ExtractElement").
struct MemberRef {
  const ClassInfo* cls;
  const MemberInfo* member;
  std::string what;
};

// Adds a Python class to `m` for every class of `surface` (which must outlive
// the module).
void AddClasses(py::module_& m, const typelib::Surface& surface);

// The member a function of a global class stands for (as
// crvlib.Functions.ExtractElement is), or null for any other object.
const MemberRef* FindGlobalMember(py::handle function);

// A call's Python arguments matched to the member's parameters: `fixed` has
// one entry per parameter but the ParamArray (null where omitted), `rest`
// the ParamArray's items. `first`, when not null, is the first positional
// argument, ahead of `args`. Raises TypeError for arguments that do not fit
// the parameters, as Python does for its own functions.
struct MatchedArguments {
  std::vector<PyObject*> fixed;
  std::vector<PyObject*> rest;
};
MatchedArguments MatchArguments(const MemberRef& ref, py::handle first, const py::args& args,
                                const py::kwargs& kwargs);

// The values of a call: each matched argument converted to its parameter's
// type, defaults for the omitted optional ones. Parameter `skip`, when
// given, is left Empty for the caller to fill. Raises TypeError or ValueError
// naming the member and the parameter.
std::vector<Value> ConvertArguments(const MemberRef& ref, const MatchedArguments& matched,
                                    std::optional<size_t> skip = std::nullopt);

// "Functions.ExtractElement() argument 'Position' must be int, not str".
std::string ArgumentMessage(const MemberRef& ref, const ParamInfo& param, const ArgumentError& e);

// True when the call may run without the GIL: it touches no object, so
// nothing another thread can reach.
bool RunsWithoutGil(const Object* self, std::span<const Value> values);

// What a call returns to Python: the result alone, or (result, written...)
// for a member that writes parameters, `written` holding the final values of
// the written parameters in parameter order.
py::object ResultToPython(const MemberInfo& member, const Value& result,
                          std::span<const Value> written);

// The final values of the parameters `member` writes, taken from a call's
// `values`.
std::vector<Value> TakeWritten(const MemberInfo& member, std::vector<Value>& values);

}  // namespace crvlib::python

#endif  // CRVLIB_PYTHON_MEMBERS_H_
