// The DLLRoutines class: the status-returning element wrappers.
#include "cli/surface.h"
#include "crvlib/dll_routines.h"

namespace crvlib::cli {

ClassInfo DLLRoutinesClass() {
  return GlobalClass("DLLRoutines",
                     "Element routines in the calling style of the older procedural interface.",
                     {});
}

}  // namespace crvlib::cli
