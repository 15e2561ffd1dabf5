// Text comparison in the thread locale's collation order, ignoring case but
// not accents (the ICU collator at secondary strength, which is what the
// runtime's case-insensitive comparison is on Windows).
#ifndef CRVLIB_PLATFORM_COLLATION_H_
#define CRVLIB_PLATFORM_COLLATION_H_

#include <string>
#include <string_view>

namespace crvlib::platform {

// -1, 0 or 1.
int TextCompare(std::u16string_view a, std::u16string_view b);

// Appends the collation sort key of `s` in the thread locale's order to
// `out`, with the zero byte that ends it. Two keys compared byte by byte up
// to that zero order their strings exactly as TextCompare does, so a sort
// can make each key once instead of collating at every comparison.
//   AppendSortKey(u"abc", &k1); AppendSortKey(u"ABC", &k2);   k1 == k2
void AppendSortKey(std::u16string_view s, std::string* out);

// The simple case fold of one code unit (ICU's default folding), for
// case-insensitive searches that match code unit by code unit.
char16_t FoldCase(char16_t c);

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_COLLATION_H_
