// Values crossing between Python and the library. Each parameter type of the
// member table takes one family of Python values, and every result comes
// back as the Python value of its type:
//
//   String       str, lone surrogates kept (as the "surrogatepass" error
//                handler does); a string of odd byte length is bytes, and
//                bytes are taken as a string's raw UTF-16LE bytes
//   Long, Integer  int, an IntEnum member, any object with __index__; not bool
//   Boolean      bool                 Double  float or int
//   Currency     decimal.Decimal (int and float too; rounded half to even
//                to 4 places)
//   Date         datetime.datetime (a datetime.date is midnight), no time zone
//   Variant      any of the above, None for Null, crvlib.Empty for Empty;
//                an int beyond a Long is a Double
//   String()     crvlib.StrArray, a list with an `lbound` attribute; any
//                list or tuple of str is an array from 0
//   objects      the class's instances; None is Nothing
//
//   ValueFromPython(PyUnicode_FromString("ab"), TypeOf<String>())  holds u"ab"
//   ValueToPython(Variant(Currency::FromScaled(123456)))          Decimal('12.3456')
//
// A value that does not fit its parameter raises ArgumentError: TypeError for
// the wrong kind of value, ValueError for one out of range. It says what was
// wrong ("must be int, not str"); the caller names the member and parameter.
#ifndef CRVLIB_PYTHON_VALUES_H_
#define CRVLIB_PYTHON_VALUES_H_

#include <pybind11/pybind11.h>

#include <map>
#include <stdexcept>
#include <string>

#include "crvlib/error.h"
#include "crvlib/string.h"
#include "typelib/surface.h"

namespace crvlib::python {

namespace py = pybind11;
using typelib::Object;
using typelib::TypeInfo;
using typelib::TypeKind;
using typelib::Value;

class ArgumentError : public std::runtime_error {
 public:
  ArgumentError(PyObject* type, const std::string& message)
      : std::runtime_error(message), type_(type) {}
  // PyExc_TypeError or PyExc_ValueError.
  PyObject* type() const { return type_; }

 private:
  PyObject* type_;
};

// The Python objects the conversions need, made once when the module loads.
// They live as long as the process: nothing here is released at exit, when
// the interpreter may already be gone.
struct Runtime {
  py::object error;      // crvlib.Error
  py::object empty;      // crvlib.Empty
  py::object str_array;  // crvlib.StrArray
  py::object decimal;    // decimal.Decimal
  py::object instance;   // the base of the creatable classes
  // The Python class of each creatable class, by its name, for object results.
  std::map<std::string, py::object, std::less<>> classes;
};
Runtime& GetRuntime();

// Makes crvlib.Error, crvlib.Empty, crvlib.StrArray and the base of the
// creatable classes, and adds them to `m`.
void AddValueTypes(py::module_& m);

// What a creatable class's instance refers to: it is set by the class's
// __init__, or when an object result is handed to Python.
struct Instance {
  Object object;
};

// The object `o` refers to, or null when `o` is no instance of a creatable
// class.
const Object* ObjectOf(PyObject* o);

// The Python text of a string (bytes for an odd byte length) and back; a
// string is built from str or bytes only (ArgumentError otherwise).
py::object StringToPython(const String& s);
String StringFromPython(PyObject* o);
// The code units of `str`, a ready str object, into `units` (whose storage
// is reused). It reads only what never changes in a str, so it may run
// without the GIL while the caller holds a reference to `str`.
void CopyUnits(PyObject* str, std::u16string& units);

// One argument of parameter type `type`, and one result.
Value ValueFromPython(PyObject* o, const TypeInfo& type);
py::object ValueToPython(const Value& v);

// A crvlib.Error carrying the library error `e`.
py::object ErrorToPython(const Error& e);

// "int", "str", "NoneType": how messages name the type of `o`.
std::string TypeName(PyObject* o);

}  // namespace crvlib::python

#endif  // CRVLIB_PYTHON_VALUES_H_
