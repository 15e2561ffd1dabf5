// The SharedString class: a string kept in a named shared memory section.
#include "cli/surface.h"
#include "crvlib/shared_string.h"

namespace crvlib::cli {

ClassInfo SharedStringClass() {
  return CreatableClass<SharedString>(
      "A string shared between processes through a named memory section.",
      {
          Method<&SharedString::Create>(
              "Create",
              "Creates or opens the named shared memory section that holds the string. A section "
              "that already exists keeps its content.",
              ByRef("Name"), Optional("Size", int32_t{65535})),
          PropertyGet<&SharedString::Item>("Item", "Returns or sets the shared string.").Default(),
          PropertyLet<&SharedString::SetItem>("Item", "Returns or sets the shared string.",
                                              ByRef("Value"))
              .Default(),
      });
}

}  // namespace crvlib::cli
