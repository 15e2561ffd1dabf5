// StrComp: the runtime's string comparison in its two modes.
//
//   StrComp(u"a", u"B", kBinaryCompare) == 1     code units: 'a' (97) > 'B' (66)
//   StrComp(u"a", u"B", kTextCompare)   == -1    the locale's order, case ignored
//   StrComp(u"abc", u"ABC", kTextCompare) == 0
#ifndef CRVLIB_RUNTIME_COMPARE_H_
#define CRVLIB_RUNTIME_COMPARE_H_

#include <cstdint>
#include <string_view>

namespace crvlib::internal {

inline constexpr int32_t kBinaryCompare = 0;
inline constexpr int32_t kTextCompare = 1;

// -1, 0 or 1. Mode 0 compares code units; mode 1 compares in the text order
// of the thread's locale, ignoring case. Any other mode is error 5, as the
// runtime rejects a database comparison (2) outside a database host.
int StrComp(std::u16string_view a, std::u16string_view b, int32_t mode);

// The comparison mode a vxCaseEnum value selects: |CaseType - 1| in checked
// arithmetic, so vxCaseSensitive (1) is binary, vxCaseNotSensitive (0) is
// text, and other values give modes StrComp rejects.
int32_t ModeOfCase(int32_t case_type);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_COMPARE_H_
