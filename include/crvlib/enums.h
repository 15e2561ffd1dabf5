// The library's enumerations. All are 32-bit signed automation enumerations:
// a parameter typed with one accepts any 32-bit value, and each routine says
// what it does with values outside the listed members.
#ifndef CRVLIB_ENUMS_H_
#define CRVLIB_ENUMS_H_

#include <cstdint>

namespace crvlib {

// The library's own error numbers (1009 and 1701 reach callers as
// 0x80040000 + n; see error.h).
enum vxLibErrorCodes : int32_t {
  vxInvalidEntry = 1003,
  vxInvalidHexString = 1009,
  vxInvalidConversionCode = 1611,
  vxInvalidDynamicString = 1701,
};

// Comparison mode: binary (case-sensitive) or the locale's text order.
enum vxCaseEnum : int32_t {
  vxCaseNotSensitive = 0,
  vxCaseSensitive = 1,
};

// Regular-expression option flags; only vxIgnoreCase has an effect.
enum vxMatchOptionsEnum : int32_t {
  vxNoOptionsSet = 0,
  vxIgnoreCase = 1,
  vxIgnorePatternWhiteSpaces = 2,
  vxDotMatchesAllMode = 4,
  vxEnhancedLineAnchorMode = 8,
  vxExplicitCapture = 16,
  vxRightToLeft = 32,
  vxLiteralTextMode = 64,
};

enum vxSortOrderEnum : int32_t {
  vxAscending = 0,
  vxDescending = 1,
};

// Right justification compares elements as numbers first.
enum vxJustificationEnum : int32_t {
  vxLeftJustify = 0,
  vxRightJustify = 1,
};

enum vxDuplicatesEnum : int32_t {
  vxNoDuplicates = 0,
  vxAllowDuplicates = 1,
};

enum vxPositionEnum : int32_t {
  vxFirstPosition = 1,
  vxLastPosition = -1,
};

enum vxMatchingEnum : int32_t {
  vxExactMatch = 0,
  vxFirstCharMatch = 1,
  vxLastCharMatch = 2,
  vxSubStringMatch = 3,
  vxRegexMatch = 4,
};

enum vxArrayBaseEnum : int32_t {
  vxZeroBased = 0,
  vxOneBased = 1,
};

}  // namespace crvlib

#endif  // CRVLIB_ENUMS_H_
