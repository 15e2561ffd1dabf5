// The DynamicString class: a string edited in place, with live child views
// and element operations.
#include "cli/surface.h"
#include "crvlib/dynamic_string.h"

namespace crvlib::cli {

ClassInfo DynamicStringClass() {
  return CreatableClass<DynamicString>(
      "A string edited in place in a gap buffer, with live child views.", {});
}

}  // namespace crvlib::cli
