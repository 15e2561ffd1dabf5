// The SharedString class: a string kept in a named shared memory section.
#include "crvlib/shared_string.h"
#include "typelib/surface.h"

namespace crvlib::typelib {

ClassInfo SharedStringClass() {
  return CreatableClass<SharedString>(
      {.clsid = "208CB377-319F-46F1-8B0E-52510B079D0F",
       .iid = "7F3A78B7-CF79-4EA8-B7F3-E8765C0B786D"},
      "A string shared between processes through a named memory section.",
      {
          CRV_METHOD(
              SharedString, Create,
              "Creates or opens the named shared memory section that holds the string. A section "
              "that already exists keeps its content.",
              ByRef("Name"), Optional("Size", int32_t{65535})),
          CRV_PROPERTY_GET(SharedString, Item, "Returns or sets the shared string.").Default(),
          CRV_PROPERTY_LET(SharedString, Item, SetItem, ByRef("Value")).Default(),
      });
}

}  // namespace crvlib::typelib
