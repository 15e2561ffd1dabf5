// The bulk call. The column is taken as a list or tuple, then handled in
// blocks: convert the block's items (GIL held), run the routine over them
// (GIL released), convert the results (GIL held). Items are only read with
// the GIL held and the list's size is read again for every block, so another
// thread changing the list meanwhile cannot pull an item away. The argument vector is reused from
// item to item; only the first parameter and the parameters the routine writes are set again.
#include "python/bulk.h"

#include <optional>
#include <vector>

#include "python/members.h"

namespace crvlib::python {

namespace {

constexpr size_t kBlock = 2048;

[[noreturn]] void Raise(PyObject* type, const std::string& message) {
  PyErr_SetString(type, message.c_str());
  throw py::error_already_set();
}

// The column as a list or tuple.
py::object ColumnItems(py::handle column) {
  if (PyTuple_Check(column.ptr()) || PyList_Check(column.ptr())) {
    return py::reinterpret_borrow<py::object>(column);
  }
  if (PyUnicode_Check(column.ptr()) || PyBytes_Check(column.ptr())) {
    Raise(PyExc_TypeError,
          "crvlib.map() takes a column of items, not a single " + TypeName(column.ptr()));
  }
  // pandas Series and NumPy arrays give their items fastest this way.
  if (py::hasattr(column, "tolist")) {
    py::object items = column.attr("tolist")();
    if (PyList_Check(items.ptr())) return items;
  }
  PyObject* items = PySequence_List(column.ptr());
  if (!items) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(items);
}

}  // namespace

py::list Map(py::handle member, py::handle column, const py::args& args, const py::kwargs& kwargs) {
  py::dict fixed_kwargs(kwargs);  // a copy: "errors" is the map's own
  bool coerce = false;
  if (fixed_kwargs.contains("errors")) {
    py::object errors = fixed_kwargs["errors"];
    PyDict_DelItemString(fixed_kwargs.ptr(), "errors");
    if (!PyUnicode_Check(errors.ptr()) ||
        (errors.cast<std::string>() != "raise" && errors.cast<std::string>() != "coerce")) {
      Raise(PyExc_ValueError, "crvlib.map() errors must be \"raise\" or \"coerce\", not " +
                                  py::repr(errors).cast<std::string>());
    }
    coerce = errors.cast<std::string>() == "coerce";
  }
  const MemberRef* ref = FindGlobalMember(member);
  if (!ref) {
    Raise(PyExc_TypeError,
          "crvlib.map() takes a routine of a global class (crvlib.Functions.ExtractElement, "
          "say), not " +
              py::repr(member).cast<std::string>());
  }
  const MemberInfo& m = *ref->member;
  if (m.params.empty() || m.params[0].type.kind == TypeKind::kParamArray) {
    Raise(PyExc_TypeError, "crvlib.map(): " + ref->what + "() has no first parameter to map over");
  }
  const ParamInfo& first = m.params[0];
  // The column stands in for the first argument while the others are bound.
  std::vector<Value> values =
      ConvertArguments(*ref, MatchArguments(*ref, column, args, fixed_kwargs), 0);
  const std::vector<Value> fixed_values = values;
  std::vector<size_t> written;
  for (size_t i = 0; i < m.params.size(); ++i) {
    if (m.params[i].written) written.push_back(i);
  }
  const bool without_gil = RunsWithoutGil(nullptr, values);

  py::object items = ColumnItems(column);
  const auto n = static_cast<size_t>(PySequence_Fast_GET_SIZE(items.ptr()));
  py::list out(n);

  std::vector<std::optional<Value>> inputs(kBlock);
  std::vector<Value> results(kBlock);
  std::vector<std::vector<Value>> written_values(written.empty() ? 0 : kBlock);
  for (size_t start = 0; start < n; start += kBlock) {
    const size_t count = std::min(kBlock, n - start);
    if (static_cast<size_t>(PySequence_Fast_GET_SIZE(items.ptr())) < start + count) {
      Raise(PyExc_RuntimeError, "crvlib.map(): the column changed size during the call");
    }
    PyObject** item = PySequence_Fast_ITEMS(items.ptr());
    for (size_t k = 0; k < count; ++k) {
      try {
        inputs[k] = ValueFromPython(item[start + k], first.type);
      } catch (const ArgumentError& e) {
        if (!coerce) {
          Raise(e.type(), ArgumentMessage(*ref, first, e) + " (item " + std::to_string(start + k) +
                              " of the column)");
        }
        inputs[k].reset();
      }
    }
    std::optional<Error> failure;
    size_t failed_at = 0;
    auto run = [&] {
      for (size_t k = 0; k < count; ++k) {
        if (!inputs[k]) continue;
        values[0] = std::move(*inputs[k]);
        for (size_t i : written) values[i] = fixed_values[i];
        try {
          results[k] = m.invoke(nullptr, values);
          if (!written.empty()) written_values[k] = values;
        } catch (const Error& e) {
          inputs[k].reset();
          if (coerce) continue;
          failure = e;
          failed_at = start + k;
          return;
        }
      }
    };
    if (without_gil) {
      py::gil_scoped_release unlocked;
      run();
    } else {
      run();
    }
    if (failure) {
      py::object error = ErrorToPython(*failure);
      error.attr("index") = failed_at;
      PyErr_SetObject(GetRuntime().error.ptr(), error.ptr());
      throw py::error_already_set();
    }
    for (size_t k = 0; k < count; ++k) {
      out[start + k] =
          inputs[k] ? ResultToPython(m, results[k], written.empty() ? values : written_values[k])
                    : py::none();
    }
  }
  return out;
}

}  // namespace crvlib::python
