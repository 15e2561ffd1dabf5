// Conversion between Python objects and the member table's values. Strings
// are copied code unit by code unit from and into the str object's own
// storage rather than through a codec, because a bulk call converts millions
// of them; a str holds code points, so a code point past U+FFFF becomes a
// surrogate pair and a lone surrogate stays a lone code unit, which is what
// the "surrogatepass" error handler does.
#include "python/values.h"

#include <datetime.h>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define CRVLIB_PYTHON_SSE2 1
#endif

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <tuple>

namespace crvlib::python {

namespace {

[[noreturn]] void Fail(PyObject* type, const std::string& message) {
  throw ArgumentError(type, message);
}

[[noreturn]] void WrongType(std::string_view expected, PyObject* o) {
  Fail(PyExc_TypeError, "must be " + std::string(expected) + ", not " + TypeName(o));
}

// The text loops of a bulk call, sixteen or eight code units at a time where
// the processor allows it.

// Latin-1 bytes as UTF-16 code units.
void Widen(const uint8_t* in, size_t n, char16_t* out) {
  size_t i = 0;
#ifdef CRVLIB_PYTHON_SSE2
  const __m128i zero = _mm_setzero_si128();
  for (; i + 16 <= n; i += 16) {
    __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_unpacklo_epi8(bytes, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i + 8), _mm_unpackhi_epi8(bytes, zero));
  }
#endif
  for (; i < n; ++i) out[i] = in[i];
}

// Code units below 256 as bytes.
void Narrow(const char16_t* in, size_t n, uint8_t* out) {
  size_t i = 0;
#ifdef CRVLIB_PYTHON_SSE2
  for (; i + 16 <= n; i += 16) {
    __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i));
    __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i + 8));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packus_epi16(low, high));
  }
#endif
  for (; i < n; ++i) out[i] = static_cast<uint8_t>(in[i]);
}

// The bitwise OR of all code units: below 0x80 all are ASCII, below 0x100
// all are Latin-1, below 0xD800 none is a surrogate.
unsigned UnitsOr(const char16_t* in, size_t n) {
  size_t i = 0;
  unsigned all = 0;
#ifdef CRVLIB_PYTHON_SSE2
  __m128i acc = _mm_setzero_si128();
  for (; i + 8 <= n; i += 8) {
    acc = _mm_or_si128(acc, _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i)));
  }
  alignas(16) uint16_t lanes[8];
  _mm_store_si128(reinterpret_cast<__m128i*>(lanes), acc);
  for (uint16_t lane : lanes) all |= lane;
#endif
  for (; i < n; ++i) all |= in[i];
  return all;
}

// Rethrows the Python error a C API call has set.
void Check(bool ok) {
  if (!ok) throw py::error_already_set();
}

// An int (or an object with __index__, but not a bool) as a 64-bit number;
// nullopt when it does not fit.
std::optional<int64_t> WholeNumber(PyObject* o, std::string_view expected) {
  if (PyBool_Check(o) || !PyIndex_Check(o)) WrongType(expected, o);
  py::object n = py::reinterpret_steal<py::object>(PyNumber_Index(o));
  Check(bool(n));
  int overflow = 0;
  long long v = PyLong_AsLongLongAndOverflow(n.ptr(), &overflow);
  Check(!(v == -1 && PyErr_Occurred()));
  if (overflow) return std::nullopt;
  return v;
}

Value IntegerFromPython(PyObject* o, const TypeInfo& type) {
  const bool is_integer = type.kind == TypeKind::kInteger;
  std::string expected = type.Enum() ? "int (" + type.name + ")" : "int";
  std::optional<int64_t> n = WholeNumber(o, expected);
  const int64_t low = is_integer ? INT16_MIN : INT32_MIN;
  const int64_t high = is_integer ? INT16_MAX : INT32_MAX;
  if (!n || *n < low || *n > high) {
    Fail(PyExc_ValueError, "is out of range for " +
                               std::string(is_integer ? "an Integer" : "a Long") + " (" +
                               std::to_string(low) + " to " + std::to_string(high) + ")");
  }
  if (is_integer) return Variant(static_cast<int16_t>(*n));
  return Variant(static_cast<int32_t>(*n));
}

double DoubleFromPython(PyObject* o) {
  if (PyFloat_Check(o)) return PyFloat_AS_DOUBLE(o);
  if (PyBool_Check(o) || !PyIndex_Check(o)) WrongType("float", o);
  py::object n = py::reinterpret_steal<py::object>(PyNumber_Index(o));
  Check(bool(n));
  double d = PyLong_AsDouble(n.ptr());
  if (d == -1.0 && PyErr_Occurred()) {
    if (!PyErr_ExceptionMatches(PyExc_OverflowError)) throw py::error_already_set();
    PyErr_Clear();
    Fail(PyExc_ValueError, "is too large for a Double");
  }
  return d;
}

Currency CurrencyFromPython(PyObject* o) {
  constexpr int64_t kUnits = Currency::kScale;
  auto out_of_range = [] { Fail(PyExc_ValueError, "is out of range for a Currency"); };
  if (PyFloat_Check(o)) {
    double scaled = std::nearbyint(PyFloat_AS_DOUBLE(o) * kUnits);
    if (!(std::fabs(scaled) < 9.2233720368547758e18)) out_of_range();
    return Currency::FromScaled(static_cast<int64_t>(scaled));
  }
  const Runtime& rt = GetRuntime();
  int is_decimal = PyObject_IsInstance(o, rt.decimal.ptr());
  Check(is_decimal >= 0);
  if (is_decimal) {
    py::handle d(o);
    if (!d.attr("is_finite")().cast<bool>()) out_of_range();
    py::object units = d.attr("scaleb")(4).attr("to_integral_value")("ROUND_HALF_EVEN");
    py::object whole = py::reinterpret_steal<py::object>(PyNumber_Long(units.ptr()));
    Check(bool(whole));
    int overflow = 0;
    long long v = PyLong_AsLongLongAndOverflow(whole.ptr(), &overflow);
    Check(!(v == -1 && PyErr_Occurred()));
    if (overflow) out_of_range();
    return Currency::FromScaled(v);
  }
  std::optional<int64_t> n = WholeNumber(o, "decimal.Decimal");
  if (!n || *n > INT64_MAX / kUnits || *n < INT64_MIN / kUnits) out_of_range();
  return Currency::FromScaled(*n * kUnits);
}

Date DateFromPython(PyObject* o) {
  CivilDateTime c;
  int microsecond = 0;
  if (PyDateTime_Check(o)) {
    if (PyDateTime_DATE_GET_TZINFO(o) != Py_None) {
      Fail(PyExc_ValueError, "is a datetime with a time zone; a Date has none");
    }
    c = {PyDateTime_GET_YEAR(o),      PyDateTime_GET_MONTH(o),       PyDateTime_GET_DAY(o),
         PyDateTime_DATE_GET_HOUR(o), PyDateTime_DATE_GET_MINUTE(o), PyDateTime_DATE_GET_SECOND(o)};
    microsecond = PyDateTime_DATE_GET_MICROSECOND(o);
  } else if (PyDate_Check(o)) {
    c = {PyDateTime_GET_YEAR(o), PyDateTime_GET_MONTH(o), PyDateTime_GET_DAY(o), 0, 0, 0};
  } else {
    WrongType("datetime.datetime", o);
  }
  std::optional<Date> d = Date::FromCivil(c);
  if (!d) Fail(PyExc_ValueError, "is outside the years 100 to 9999 of a Date");
  // Before day 0 the whole part counts back while the time of day still
  // counts forward, so the fraction of a second moves the serial down.
  const double fraction = microsecond / 86400e6;
  const bool before_day_0 = std::make_tuple(c.year, c.month, c.day) < std::make_tuple(1899, 12, 30);
  d->serial += before_day_0 ? -fraction : fraction;
  return *d;
}

py::object DateToPython(Date d) {
  std::optional<CivilDateTime> c = d.ToCivil();
  // A serial outside the years 100 to 9999 (or not a number) has no
  // datetime: it comes back as the number itself.
  if (!c) return py::float_(d.serial);
  PyObject* dt =
      PyDateTime_FromDateAndTime(c->year, c->month, c->day, c->hour, c->minute, c->second, 0);
  Check(dt != nullptr);
  return py::reinterpret_steal<py::object>(dt);
}

bool IsStringLike(PyObject* o) {
  return PyUnicode_Check(o) || PyBytes_Check(o);
}

Variant VariantFromPython(PyObject* o) {
  const Runtime& rt = GetRuntime();
  if (o == Py_None) return kNull;
  if (o == rt.empty.ptr()) return Variant();
  if (PyBool_Check(o)) return Variant(o == Py_True);
  if (IsStringLike(o)) return Variant(StringFromPython(o));
  if (PyFloat_Check(o)) return Variant(PyFloat_AS_DOUBLE(o));
  if (PyIndex_Check(o)) {
    std::optional<int64_t> n = WholeNumber(o, "int");
    if (n && *n >= INT32_MIN && *n <= INT32_MAX) return Variant(static_cast<int32_t>(*n));
    return Variant(DoubleFromPython(o));
  }
  if (PyDate_Check(o)) return Variant(DateFromPython(o));
  int is_decimal = PyObject_IsInstance(o, rt.decimal.ptr());
  Check(is_decimal >= 0);
  if (is_decimal) return Variant(CurrencyFromPython(o));
  WrongType("str, int, float, bool, Decimal, datetime, None or crvlib.Empty", o);
}

StringArray StringArrayFromPython(PyObject* o) {
  if (!PyList_Check(o) && !PyTuple_Check(o)) WrongType("a list of str", o);
  StringArray a;
  int is_array = PyObject_IsInstance(o, GetRuntime().str_array.ptr());
  Check(is_array >= 0);
  if (is_array) {
    py::object lbound = py::handle(o).attr("lbound");
    std::optional<int64_t> n = WholeNumber(lbound.ptr(), "an int lbound");
    if (!n || *n < INT32_MIN || *n > INT32_MAX)
      Fail(PyExc_ValueError, "has an lbound out of range");
    a.lbound = static_cast<int32_t>(*n);
  }
  const Py_ssize_t size = PySequence_Fast_GET_SIZE(o);
  if (a.lbound + static_cast<int64_t>(size) - 1 > INT32_MAX) {
    Fail(PyExc_ValueError, "has an upper bound beyond the range of a Long");
  }
  PyObject** items = PySequence_Fast_ITEMS(o);
  a.items.reserve(static_cast<size_t>(size));
  for (Py_ssize_t i = 0; i < size; ++i) {
    if (!IsStringLike(items[i])) {
      Fail(PyExc_TypeError,
           "item " + std::to_string(i) + " must be str, not " + TypeName(items[i]));
    }
    a.items.push_back(StringFromPython(items[i]));
  }
  return a;
}

Object ObjectFromPython(PyObject* o, const TypeInfo& type) {
  if (o == Py_None) return Object{};
  const Object* object = ObjectOf(o);
  if (!object || object->ClassName() != type.name) WrongType("crvlib." + type.name + " or None", o);
  return *object;
}

py::object WrapObject(const Object& o) {
  if (o.IsNothing()) return py::none();
  const Runtime& rt = GetRuntime();
  auto it = rt.classes.find(o.ClassName());
  if (it == rt.classes.end()) {
    throw std::logic_error("no Python class for " + std::string(o.ClassName()));
  }
  // A new instance without its class's __init__ (which would make a new
  // object): the base's __init__ makes the empty holder, then it takes `o`.
  py::object instance = it->second.attr("__new__")(it->second);
  rt.instance.attr("__init__")(instance);
  instance.cast<Instance&>().object = o;
  return instance;
}

}  // namespace

Runtime& GetRuntime() {
  static Runtime* runtime = new Runtime;
  return *runtime;
}

std::string TypeName(PyObject* o) {
  return Py_TYPE(o)->tp_name;
}

void CopyUnits(PyObject* str, std::u16string& units) {
  const auto n = static_cast<size_t>(PyUnicode_GET_LENGTH(str));
  switch (PyUnicode_KIND(str)) {
    case PyUnicode_1BYTE_KIND:
      units.resize(n);
      Widen(PyUnicode_1BYTE_DATA(str), n, units.data());
      break;
    case PyUnicode_2BYTE_KIND:
      units.resize(n);
      std::memcpy(units.data(), PyUnicode_2BYTE_DATA(str), n * sizeof(char16_t));
      break;
    default: {
      const Py_UCS4* p = PyUnicode_4BYTE_DATA(str);
      units.clear();
      units.reserve(n + n / 2);
      for (size_t i = 0; i < n; ++i) {
        Py_UCS4 c = p[i];
        if (c > 0xFFFF) {
          c -= 0x10000;
          units.push_back(static_cast<char16_t>(0xD800 + (c >> 10)));
          units.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
        } else {
          units.push_back(static_cast<char16_t>(c));
        }
      }
    }
  }
}

String StringFromPython(PyObject* o) {
  if (PyBytes_Check(o)) {
    return String::FromBytes(PyBytes_AS_STRING(o), static_cast<size_t>(PyBytes_GET_SIZE(o)));
  }
  if (!PyUnicode_Check(o)) WrongType("str", o);
  Check(PyUnicode_READY(o) == 0);
  std::u16string units;
  CopyUnits(o, units);
  return String(std::move(units));
}

py::object StringToPython(const String& s) {
  if (s.odd()) {
    return py::reinterpret_steal<py::object>(PyBytes_FromStringAndSize(
        reinterpret_cast<const char*>(s.bytes()), static_cast<Py_ssize_t>(s.LenB())));
  }
  std::u16string_view u = s.view();
  const unsigned all = UnitsOr(u.data(), u.size());
  bool surrogates = false;
  if (all >= 0xD800) {
    for (char16_t c : u) surrogates |= c >= 0xD800 && c <= 0xDFFF;
  }
  PyObject* str;
  if (surrogates) {
    // Pairs become one code point, lone surrogates stay as they are.
    int little_endian = -1;
    str = PyUnicode_DecodeUTF16(reinterpret_cast<const char*>(u.data()),
                                static_cast<Py_ssize_t>(u.size() * 2), "surrogatepass",
                                &little_endian);
  } else {
    // A str is stored in the narrowest kind its code points allow; the OR of
    // the units says which, as the largest unit would.
    str = PyUnicode_New(static_cast<Py_ssize_t>(u.size()), static_cast<Py_UCS4>(all));
    if (str && all < 0x100) {
      Narrow(u.data(), u.size(), PyUnicode_1BYTE_DATA(str));
    } else if (str) {
      std::memcpy(PyUnicode_2BYTE_DATA(str), u.data(), u.size() * sizeof(char16_t));
    }
  }
  Check(str != nullptr);
  return py::reinterpret_steal<py::object>(str);
}

const Object* ObjectOf(PyObject* o) {
  const Runtime& rt = GetRuntime();
  int is_instance = PyObject_IsInstance(o, rt.instance.ptr());
  Check(is_instance >= 0);
  if (!is_instance) return nullptr;
  try {
    return &py::handle(o).cast<Instance&>().object;
  } catch (const py::cast_error&) {
    return nullptr;  // made by __new__ alone, never initialized
  }
}

Value ValueFromPython(PyObject* o, const TypeInfo& type) {
  switch (type.kind) {
    case TypeKind::kString:
      return Variant(StringFromPython(o));
    case TypeKind::kLong:
    case TypeKind::kInteger:
      return IntegerFromPython(o, type);
    case TypeKind::kBoolean:
      if (!PyBool_Check(o)) WrongType("bool", o);
      return Variant(o == Py_True);
    case TypeKind::kDouble:
      return Variant(DoubleFromPython(o));
    case TypeKind::kCurrency:
      return Variant(CurrencyFromPython(o));
    case TypeKind::kDate:
      return Variant(DateFromPython(o));
    case TypeKind::kVariant:
    case TypeKind::kParamArray:  // one item of the trailing arguments
      return VariantFromPython(o);
    case TypeKind::kStringArray:
      return StringArrayFromPython(o);
    case TypeKind::kObject:
      return ObjectFromPython(o, type);
    case TypeKind::kVoid:
      break;
  }
  Fail(PyExc_TypeError, "takes no value");
}

py::object ValueToPython(const Value& value) {
  const Runtime& rt = GetRuntime();
  if (const auto* v = std::get_if<Variant>(&value)) {
    switch (v->Type()) {
      case VarType::kEmpty:
        return rt.empty;
      case VarType::kNull:
        return py::none();
      case VarType::kBoolean:
        return py::bool_(v->AsBoolean());
      case VarType::kInteger:
        return py::int_(v->AsInteger());
      case VarType::kLong:
        return py::int_(v->AsLong());
      case VarType::kDouble:
        return py::float_(v->AsDouble());
      case VarType::kCurrency:
        return rt.decimal(v->AsCurrency().scaled).attr("scaleb")(-4);
      case VarType::kDate:
        return DateToPython(v->AsDate());
      case VarType::kString:
        return StringToPython(v->AsString());
    }
  }
  if (const auto* object = std::get_if<Object>(&value)) return WrapObject(*object);
  if (const auto* strings = std::get_if<StringArray>(&value)) {
    // Made without calling StrArray(), which would cost more than the items.
    auto* type = reinterpret_cast<PyTypeObject*>(rt.str_array.ptr());
    py::object array = py::reinterpret_steal<py::object>(type->tp_alloc(type, 0));
    Check(bool(array));
    for (const String& s : strings->items)
      Check(PyList_Append(array.ptr(), StringToPython(s).ptr()) == 0);
    array.attr("lbound") = strings->lbound;
    return array;
  }
  const auto& variants = std::get<VariantArray>(value);
  py::list items(variants.items.size());
  for (size_t i = 0; i < variants.items.size(); ++i) items[i] = ValueToPython(variants.items[i]);
  return items;
}

py::object ErrorToPython(const Error& e) {
  return GetRuntime().error(e.Number(), StringToPython(e.Source()),
                            StringToPython(e.Description()));
}

void AddValueTypes(py::module_& m) {
  PyDateTime_IMPORT;
  Check(PyDateTimeAPI != nullptr);
  Runtime& rt = GetRuntime();
  rt.decimal = py::module_::import("decimal").attr("Decimal");

  // crvlib.Error: the library's error, with its three parts as attributes.
  // They are also the exception's args, so it pickles (to a Dask client, say).
  rt.error = py::reinterpret_steal<py::object>(PyErr_NewExceptionWithDoc(
      "crvlib.Error",
      "Error(number, source, description): an error the library raised.\n\n"
      "number is the automation error number (5, 13, -2147220495, ...), source the\n"
      "routine that raised it (\"CRVLIB.Functions::ExtractElement\") and description\n"
      "its text. index is the item of a crvlib.map call that failed, else None.",
      PyExc_Exception, nullptr));
  Check(bool(rt.error));
  rt.error.attr("__init__") = py::cpp_function(
      [](py::handle self, py::object number, py::object source, py::object description) {
        py::handle(PyExc_Exception).attr("__init__")(self, number, source, description);
        self.attr("number") = number;
        self.attr("source") = source;
        self.attr("description") = description;
        if (!py::hasattr(self, "index")) self.attr("index") = py::none();
      },
      py::is_method(rt.error), py::arg("number"), py::arg("source") = "",
      py::arg("description") = "");
  rt.error.attr("__str__") = py::cpp_function(
      [](py::handle self) {
        return py::str("error {} ({}): {}")
            .format(self.attr("number"), self.attr("source"), self.attr("description"));
      },
      py::is_method(rt.error));
  m.attr("Error") = rt.error;

  // crvlib.Empty: the Empty Variant, one instance, false in a Boolean context.
  struct EmptyValue {};
  py::class_<EmptyValue>(m, "EmptyType", "The type of crvlib.Empty, the Empty Variant.")
      .def("__repr__", [](const EmptyValue&) { return "crvlib.Empty"; })
      .def("__bool__", [](const EmptyValue&) { return false; })
      .def("__reduce__", [](const EmptyValue&) { return "Empty"; });
  rt.empty = py::cast(EmptyValue{});
  m.attr("Empty") = rt.empty;

  // crvlib.StrArray: an array of strings keeps its lower bound beside its items.
  py::dict ns;
  ns["__module__"] = "crvlib";
  ns["__slots__"] = py::make_tuple("lbound");
  ns["__doc__"] =
      "StrArray(items=(), lbound=0): a list of str with the lower bound of the\n"
      "array it came from (or goes to). Item i of the list is element lbound + i\n"
      "of the array; a plain list or tuple passed for an array has lbound 0.";
  rt.str_array = py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(&PyType_Type))(
      "StrArray",
      py::make_tuple(py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(&PyList_Type))),
      ns);
  rt.str_array.attr("__init__") = py::cpp_function(
      [](py::handle self, py::object items, py::object lbound) {
        py::handle(reinterpret_cast<PyObject*>(&PyList_Type)).attr("__init__")(self, items);
        if (!PyLong_Check(lbound.ptr()) || PyBool_Check(lbound.ptr())) {
          throw py::type_error("StrArray(): lbound must be int, not " + TypeName(lbound.ptr()));
        }
        self.attr("lbound") = lbound;
      },
      py::is_method(rt.str_array), py::arg("items") = py::tuple(), py::arg("lbound") = 0);
  rt.str_array.attr("__repr__") = py::cpp_function(
      [](py::handle self) {
        return py::str("StrArray({}, lbound={})")
            .format(py::handle(reinterpret_cast<PyObject*>(&PyList_Type)).attr("__repr__")(self),
                    self.attr("lbound"));
      },
      py::is_method(rt.str_array));
  m.attr("StrArray") = rt.str_array;

  // The base of the creatable classes: an instance refers to one library
  // object, and two instances are equal when they refer to the same one.
  rt.instance = py::class_<Instance>(m, "Object",
                                     "The base of crvlib's creatable classes "
                                     "(DynamicString, SharedString).")
                    .def(py::init<>())
                    .def("__eq__",
                         [](const Instance& self, py::handle other) -> py::object {
                           const Object* o = ObjectOf(other.ptr());
                           if (!o) return py::reinterpret_borrow<py::object>(Py_NotImplemented);
                           return py::bool_(self.object == *o);
                         })
                    .def("__hash__", [](const Instance& self) {
                      return std::hash<const void*>()(self.object.Identity());
                    });
}

}  // namespace crvlib::python
