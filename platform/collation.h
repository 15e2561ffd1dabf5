// Text comparison in the thread locale's collation order, ignoring case but
// not accents (the ICU collator at secondary strength, which is what the
// runtime's case-insensitive comparison is on Windows).
#ifndef CRVLIB_PLATFORM_COLLATION_H_
#define CRVLIB_PLATFORM_COLLATION_H_

#include <string_view>

namespace crvlib::platform {

// -1, 0 or 1.
int TextCompare(std::u16string_view a, std::u16string_view b);

// The simple case fold of one code unit (ICU's default folding), for
// case-insensitive searches that match code unit by code unit.
char16_t FoldCase(char16_t c);

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_COLLATION_H_
