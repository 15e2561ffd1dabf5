// The bulk call. The column is taken as a list or tuple and handled in
// blocks: prepare the block's items (GIL held), run the routine over them
// (GIL released), convert the results (GIL held). Items are only read from
// the column with the GIL held, and its size is read again for every block,
// so another thread changing a list meanwhile cannot pull an item away.
//
// A str item for a String parameter is not converted while the GIL is held:
// the block keeps a reference to it, and the loop copies its code units
// straight into the one argument string it reuses from item to item (a str
// never changes, so reading it needs no GIL). Any other item is converted to
// its library value first. The argument vector is reused too; only the first
// parameter and the parameters the routine writes are set again.
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

// The code units of the String argument `v`, made a String first if it
// holds anything else (an item converted the slow way, a value taken after
// the routine wrote it).
std::u16string& ArgumentUnits(Value& v) {
  const auto* variant = std::get_if<Variant>(&v);
  if (!variant || variant->Type() != VarType::kString || variant->AsString().odd()) {
    v = Variant(String());
    variant = &std::get<Variant>(v);
  }
  // The String lives in `v`, which is not const: writing its units in place
  // keeps their storage from one item to the next.
  return const_cast<String&>(variant->AsString()).units();
}

// One block's items: the str items referenced (for the copy without the
// GIL), every other item converted. Releases the references when it goes.
struct Block {
  std::vector<PyObject*> texts = std::vector<PyObject*>(kBlock);
  std::vector<std::optional<Value>> values = std::vector<std::optional<Value>>(kBlock);
  std::vector<char> ok = std::vector<char>(kBlock);
  size_t count = 0;

  void Release() {
    for (size_t k = 0; k < count; ++k) Py_CLEAR(texts[k]);
    count = 0;
  }
  ~Block() { Release(); }
};

std::string Text(py::handle o) {
  return py::str(o).cast<std::string>();
}

}  // namespace

py::list Map(py::handle member, py::handle column, const py::args& args, const py::kwargs& kwargs) {
  py::dict fixed_kwargs(kwargs);  // a copy: "errors" is the map's own
  bool coerce = false;
  if (fixed_kwargs.contains("errors")) {
    py::object errors = fixed_kwargs["errors"];
    PyDict_DelItemString(fixed_kwargs.ptr(), "errors");
    if (!PyUnicode_Check(errors.ptr()) || (Text(errors) != "raise" && Text(errors) != "coerce")) {
      Raise(PyExc_ValueError,
            "crvlib.map() errors must be \"raise\" or \"coerce\", not " + Text(py::repr(errors)));
    }
    coerce = Text(errors) == "coerce";
  }
  const MemberRef* ref = FindGlobalMember(member);
  if (!ref) {
    Raise(PyExc_TypeError,
          "crvlib.map() takes a routine of a global class (crvlib.Functions.ExtractElement, "
          "say), not " +
              Text(py::repr(member)));
  }
  const MemberInfo& m = *ref->member;
  if (m.params.empty() || m.params[0].type.kind == TypeKind::kParamArray) {
    Raise(PyExc_TypeError, "crvlib.map(): " + ref->what + "() has no first parameter to map over");
  }
  const ParamInfo& first = m.params[0];
  const bool copy_texts = first.type.kind == TypeKind::kString;
  const bool has_result = m.result.kind != TypeKind::kVoid;
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
  Block block;
  std::vector<Value> results(kBlock);
  std::vector<std::vector<Value>> written_values(written.empty() ? 0 : kBlock);
  for (size_t start = 0; start < n; start += kBlock) {
    const size_t count = std::min(kBlock, n - start);
    if (static_cast<size_t>(PySequence_Fast_GET_SIZE(items.ptr())) < start + count) {
      Raise(PyExc_RuntimeError, "crvlib.map(): the column changed size during the call");
    }
    PyObject** item = PySequence_Fast_ITEMS(items.ptr());
    block.count = count;
    for (size_t k = 0; k < count; ++k) {
      PyObject* o = item[start + k];
#if defined(__GNUC__)
      // The items lie scattered over the heap: ask for the next ones early.
      if (k + 8 < count) __builtin_prefetch(item[start + k + 8]);
#endif
      block.values[k].reset();
      if (copy_texts && PyUnicode_Check(o) && PyUnicode_READY(o) == 0) {
        Py_INCREF(o);
        block.texts[k] = o;
        continue;
      }
      try {
        block.values[k] = ValueFromPython(o, first.type);
      } catch (const ArgumentError& e) {
        if (!coerce) {
          Raise(e.type(), ArgumentMessage(*ref, first, e) + " (item " + std::to_string(start + k) +
                              " of the column)");
        }
      }
    }
    std::optional<Error> failure;
    size_t failed_at = 0;
    auto run = [&] {
      for (size_t k = 0; k < count; ++k) {
        block.ok[k] = false;
#if defined(__GNUC__)
        if (k + 2 < count && block.texts[k + 2])
          __builtin_prefetch(PyUnicode_DATA(block.texts[k + 2]));
#endif
        if (block.texts[k]) {
          CopyUnits(block.texts[k], ArgumentUnits(values[0]));
        } else if (block.values[k]) {
          values[0] = std::move(*block.values[k]);
        } else {
          continue;  // an item of the wrong type, coerced to None
        }
        for (size_t i : written) {
          if (i > 0) values[i] = fixed_values[i];
        }
        try {
          results[k] = m.invoke(nullptr, values);
          if (!written.empty()) written_values[k] = TakeWritten(m, values);
          block.ok[k] = true;
        } catch (const Error& e) {
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
    block.Release();
    if (failure) {
      py::object error = ErrorToPython(*failure);
      error.attr("index") = failed_at;
      PyErr_SetObject(GetRuntime().error.ptr(), error.ptr());
      throw py::error_already_set();
    }
    for (size_t k = 0; k < count; ++k) {
      PyObject* result = Py_None;
      if (block.ok[k]) {
        result = (written.empty() ? (has_result ? ValueToPython(results[k]) : py::none())
                                  : ResultToPython(m, results[k], written_values[k]))
                     .release()
                     .ptr();
      } else {
        Py_INCREF(result);
      }
      PyList_SET_ITEM(out.ptr(), static_cast<Py_ssize_t>(start + k), result);
    }
  }
  return out;
}

}  // namespace crvlib::python
