// Binary comparison walks code units; text comparison asks the platform's
// collation for the thread's locale.
#include "runtime/compare.h"

#include "core/checked.h"
#include "platform/collation.h"

namespace crvlib::internal {

int32_t ModeOfCase(int32_t case_type) {
  int32_t m = CheckedSub(case_type, 1);
  return m < 0 ? CheckedSub(0, m) : m;
}

int StrComp(std::u16string_view a, std::u16string_view b, int32_t mode) {
  if (mode == kTextCompare) return platform::TextCompare(a, b);
  if (mode != kBinaryCompare) Raise(kInvalidProcedureCall);
  int c = a.compare(b);
  return c < 0 ? -1 : c > 0 ? 1 : 0;
}

}  // namespace crvlib::internal
