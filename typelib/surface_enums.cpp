// The enumerations of the type library, members in declaration order, made
// from the lists in crvlib/enums.h. Each member's help string is its own
// name, so only names and values are kept.
#include "crvlib/enums.h"

#include "typelib/surface.h"

namespace crvlib::typelib {

const std::vector<EnumInfo>& Enumerations() {
#define CRVLIB_TYPELIB_MEMBER_(member, value) {#member, member},
#define CRVLIB_TYPELIB_ENUM_(name) {#name, {CRVLIB_ENUM_##name(CRVLIB_TYPELIB_MEMBER_)}},
  static const std::vector<EnumInfo> enums = {CRVLIB_ENUMERATIONS(CRVLIB_TYPELIB_ENUM_)};
#undef CRVLIB_TYPELIB_ENUM_
#undef CRVLIB_TYPELIB_MEMBER_
  return enums;
}

}  // namespace crvlib::typelib
