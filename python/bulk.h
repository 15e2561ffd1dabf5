// crvlib.map: one routine of a global class applied to every item of a
// column.
//
//   crvlib.map(crvlib.Functions.ExtractElement, ["a|b", "c|d"], "|", 2)  == ["b", "d"]
//   crvlib.map(crvlib.Conversions.Convert, dates, "D2/")
//
// The column (a list, a tuple, a pandas Series, a NumPy array: anything
// iterable but a str) gives the routine's first parameter, item by item; the
// other arguments are fixed for every item and bound as in a single call.
// The result is a list, one entry per item, each what the single call would
// return. The items are converted to library values with the GIL held, then
// the routine runs over them with the GIL released (unless an object is
// involved), then the results are converted back, a block of items at a time:
// other Python threads run meanwhile, and threads that map scale.
//
// errors="raise" (the default) stops at the first item the routine fails on
// with crvlib.Error, its `index` the item's position; errors="coerce" gives
// None for such an item and for an item of the wrong type. Without "coerce",
// an item of the wrong type raises TypeError or ValueError naming the member,
// the parameter and the item.
#ifndef CRVLIB_PYTHON_BULK_H_
#define CRVLIB_PYTHON_BULK_H_

#include "python/values.h"

namespace crvlib::python {

py::list Map(py::handle member, py::handle column, const py::args& args, const py::kwargs& kwargs);

}  // namespace crvlib::python

#endif  // CRVLIB_PYTHON_BULK_H_
