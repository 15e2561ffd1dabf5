// The Validations class: value checks, ranges and pattern checks.
#include "cli/surface.h"
#include "crvlib/validations.h"

namespace crvlib::cli {

ClassInfo ValidationsClass() {
  return GlobalClass("Validations", "Value checks, ranges and pattern checks of user input.", {});
}

}  // namespace crvlib::cli
