// The crvlib Python module: the library's classes, enumerations and marks
// made from the member table, the value types, the bulk call and the
// thread's locale.
#include <pybind11/pybind11.h>

#include "crvlib/locale.h"
#include "python/bulk.h"
#include "python/members.h"
#include "python/values.h"
#include "typelib/surface.h"

namespace crvlib::python {
namespace {

constexpr const char* kModuleDoc = R"(crvlib: the Corvane Tessel 2005 Global Procedure Library.

String routines around the dynamic string array of multi-value databases.
The classes, their members, parameters, defaults and help strings are those
of the type library:

    crvlib.Functions.ExtractElement("a|b|c", "|", 2)              # 'b'
    crvlib.Functions.LocateElement(a, "x", "|", 1, SearchType=crvlib.vxSubStringMatch)
    d = crvlib.DynamicString(); d.Value = "Hello World"

Values: String is str (bytes for a string of odd byte length), Long and
Integer int, Boolean bool, Double float, Currency decimal.Decimal, Date
datetime.datetime, Variant any of these with None for Null and crvlib.Empty
for Empty, String() crvlib.StrArray (a list with an lbound attribute), an
object parameter takes None for Nothing.

A member that writes some of its parameters returns (result, written...), the
written parameters in parameter order; every other member returns its result.

Failures raise crvlib.Error(number, source, description); calls that do not
fit a member raise TypeError or ValueError naming the member and parameter.
crvlib.map(member, column, ...) applies a routine to every item of a column
with the GIL released. crvlib.set_locale(name) sets the calling thread's
locale; the library keeps its state per thread, and a DynamicString with its
views belongs to the thread that made it.)";

constexpr const char* kMapDoc = R"(map(member, column, *args, errors='raise', **kwargs)
--

Applies a routine of a global class to every item of column, which gives its
first parameter; args and kwargs give the others, the same for every item.
Returns a list with what each single call would return.

    crvlib.map(crvlib.Functions.ExtractElement, ["a|b", "c|d"], "|", 2)   # ['b', 'd']

column is a list, tuple, pandas Series, NumPy array or other iterable. The
routine runs with the GIL released, so threads that map run in parallel.
errors="raise" stops at the first item the routine fails on with crvlib.Error,
whose index is that item's position; errors="coerce" gives None for it, and
for an item of the wrong type (TypeError or ValueError otherwise).)";

void AddEnumerations(py::module_& m) {
  py::object int_enum = py::module_::import("enum").attr("IntEnum");
  for (const typelib::EnumInfo& e : typelib::Enumerations()) {
    py::list members;
    for (const typelib::EnumMember& member : e.members) {
      members.append(py::make_tuple(member.name, member.value));
    }
    py::object cls = int_enum(e.name, members, py::arg("module") = "crvlib");
    cls.attr("__doc__") = "The enumeration " + e.name + " of the type library.";
    // A member shows as its name, as the type library's defaults do.
    cls.attr("__repr__") =
        py::cpp_function([](py::handle self) { return self.attr("_name_"); }, py::is_method(cls));
    m.attr(e.name.c_str()) = cls;
    for (const typelib::EnumMember& member : e.members) {
      m.attr(member.name.c_str()) = cls.attr(member.name.c_str());
    }
  }
}

// The global classes' properties (the marks) as module constants.
void AddConstants(py::module_& m, const typelib::Surface& surface) {
  for (const typelib::ClassInfo& c : surface.classes) {
    if (c.kind != typelib::ClassKind::kGlobal) continue;
    for (const typelib::MemberInfo& member : c.members) {
      if (member.kind == typelib::MemberKind::kPropertyGet && member.params.empty()) {
        m.attr(member.name.c_str()) = m.attr(c.name.c_str()).attr(member.name.c_str());
      }
    }
  }
}

void SetLocale(const std::string& name) {
  if (!IsKnownLocale(name)) {
    PyErr_SetString(PyExc_ValueError,
                    ("crvlib.set_locale(): unknown locale '" + name + "'").c_str());
    throw py::error_already_set();
  }
  SetThreadLocale(name);
}

}  // namespace
}  // namespace crvlib::python

PYBIND11_MODULE(crvlib, m) {
  namespace py = pybind11;
  using namespace crvlib::python;
  // Every function carries its own text signature in its docstring.
  py::options options;
  options.disable_function_signatures();

  const crvlib::typelib::Surface& surface = crvlib::typelib::ShippedSurface();
  m.doc() = kModuleDoc;
  m.attr("__version__") = CRVLIB_VERSION;
  AddValueTypes(m);
  AddEnumerations(m);
  AddClasses(m, surface);
  AddConstants(m, surface);
  m.def("map", &Map, kMapDoc);
  m.def("set_locale", &SetLocale,
        "set_locale(name)\n--\n\nSets the calling thread's locale (\"de-DE\", \"fr_FR.UTF-8\"): "
        "its conversions,\ncomparisons and messages follow it. Other threads keep theirs. "
        "Raises\nValueError for a locale the library does not know.");
  m.def("get_locale", &crvlib::ThreadLocale,
        "get_locale()\n--\n\nThe calling thread's locale, as a BCP 47 tag (\"en-US\").");
}
