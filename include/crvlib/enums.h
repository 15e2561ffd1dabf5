// The library's enumerations. All are 32-bit signed automation enumerations:
// a parameter typed with one accepts any 32-bit value, and each routine says
// what it does with values outside the listed members.
//
// Each enumeration is written once, as a list of its members below; the C++
// enums here, the member table's enumeration rows and the type library are
// all made from these lists. CRVLIB_ENUMERATIONS(E) calls E(name) for every
// enumeration in declaration order, and CRVLIB_ENUM_<name>(X) calls
// X(member, value) for its members in order:
//
//   #define NAME(member, value) #member,
//   const char* names[] = {CRVLIB_ENUM_vxCaseEnum(NAME)};
//   std::string_view(names[1]) == "vxCaseSensitive"
#ifndef CRVLIB_ENUMS_H_
#define CRVLIB_ENUMS_H_

#include <cstdint>

// The library's own error numbers (1009 and 1701 reach callers as
// 0x80040000 + n; see error.h).
#define CRVLIB_ENUM_vxLibErrorCodes(X) \
  X(vxInvalidEntry, 1003)              \
  X(vxInvalidHexString, 1009)          \
  X(vxInvalidConversionCode, 1611)     \
  X(vxInvalidDynamicString, 1701)

// Comparison mode: binary (case-sensitive) or the locale's text order.
#define CRVLIB_ENUM_vxCaseEnum(X) \
  X(vxCaseNotSensitive, 0)        \
  X(vxCaseSensitive, 1)

// Regular-expression option flags; only vxIgnoreCase has an effect.
#define CRVLIB_ENUM_vxMatchOptionsEnum(X) \
  X(vxNoOptionsSet, 0)                    \
  X(vxIgnoreCase, 1)                      \
  X(vxIgnorePatternWhiteSpaces, 2)        \
  X(vxDotMatchesAllMode, 4)               \
  X(vxEnhancedLineAnchorMode, 8)          \
  X(vxExplicitCapture, 16)                \
  X(vxRightToLeft, 32)                    \
  X(vxLiteralTextMode, 64)

#define CRVLIB_ENUM_vxSortOrderEnum(X) \
  X(vxAscending, 0)                    \
  X(vxDescending, 1)

// Right justification compares elements as numbers first.
#define CRVLIB_ENUM_vxJustificationEnum(X) \
  X(vxLeftJustify, 0)                      \
  X(vxRightJustify, 1)

#define CRVLIB_ENUM_vxDuplicatesEnum(X) \
  X(vxNoDuplicates, 0)                  \
  X(vxAllowDuplicates, 1)

#define CRVLIB_ENUM_vxPositionEnum(X) \
  X(vxFirstPosition, 1)               \
  X(vxLastPosition, -1)

// How LocateElement compares an element with what it looks for.
#define CRVLIB_ENUM_vxMatchingEnum(X) \
  X(vxExactMatch, 0)                  \
  X(vxFirstCharMatch, 1)              \
  X(vxLastCharMatch, 2)               \
  X(vxSubStringMatch, 3)              \
  X(vxRegexMatch, 4)

#define CRVLIB_ENUM_vxArrayBaseEnum(X) \
  X(vxZeroBased, 0)                    \
  X(vxOneBased, 1)

// Every enumeration, in declaration order.
#define CRVLIB_ENUMERATIONS(E) \
  E(vxLibErrorCodes)           \
  E(vxCaseEnum)                \
  E(vxMatchOptionsEnum)        \
  E(vxSortOrderEnum)           \
  E(vxJustificationEnum)       \
  E(vxDuplicatesEnum)          \
  E(vxPositionEnum)            \
  E(vxMatchingEnum)            \
  E(vxArrayBaseEnum)

namespace crvlib {

#define CRVLIB_ENUM_MEMBER_(member, value) member = value,
#define CRVLIB_DECLARE_ENUM_(name) enum name : int32_t { CRVLIB_ENUM_##name(CRVLIB_ENUM_MEMBER_) };
CRVLIB_ENUMERATIONS(CRVLIB_DECLARE_ENUM_)
#undef CRVLIB_DECLARE_ENUM_
#undef CRVLIB_ENUM_MEMBER_

}  // namespace crvlib

#endif  // CRVLIB_ENUMS_H_
