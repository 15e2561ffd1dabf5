// DLLRoutines: the element routines in the calling style of an older
// procedural interface. The array and the outputs travel in by-reference
// arguments and the result is a status: -1 (True) when no error occurred, 0
// when one did. No error ever leaves a wrapper; an output whose step failed
// keeps what it held. Each runs the same DynamicString operation as the
// Functions routine of the same job.
//
//   String a = u"a|b";
//   DLLRoutines::CRVDeleteElement(a, u"|", 1) == -1
//   a == u"b"
//   DLLRoutines::CRVDeleteElement(a, u"|", -2) == 0
//   a == u"b"   // unchanged by the failed call
#ifndef CRVLIB_DLL_ROUTINES_H_
#define CRVLIB_DLL_ROUTINES_H_

#include <cstdint>

#include "crvlib/enums.h"
#include "crvlib/export.h"
#include "crvlib/string.h"

namespace crvlib {

class CRVLIB_EXPORT DLLRoutines {
 public:
  // Wraps VChangeDelimiter. ArrayValue receives the new array.
  static int32_t CRVChangeDelimiter(String& ArrayValue, const String& OldDelimiter,
                                    const String& NewDelimiter);
  // Wraps VCountValue. Returns the count (0 on error).
  static int32_t CRVCountElements(const String& ArrayValue, const String& Delimiter);
  // Wraps VDeleteValue. ArrayValue receives the new array.
  static int32_t CRVDeleteElement(String& ArrayValue, const String& Delimiter, int32_t Position);
  // Wraps VExtractValue. ExtractedElement receives the element; ArrayValue
  // is left untouched.
  static int32_t CRVExtractElement(const String& ArrayValue, const String& Delimiter,
                                   int32_t Position, String& ExtractedElement);
  // Wraps VInsertValue. ArrayValue receives the new array.
  static int32_t CRVInsertElement(String& ArrayValue, const String& Delimiter, int32_t Position,
                                  const String& InsertElement);
  // Wraps VInsertValueSorted. Deliberately, the new array is not written
  // back: Position receives the 1-based position minus 1 (0 for the first
  // place, -1 when a duplicate was refused).
  static int32_t CRVInsertElementSorted(const String& ArrayValue, const String& Delimiter,
                                        int32_t& Position, const String& InsertElement,
                                        vxSortOrderEnum SortOrder = vxAscending,
                                        vxJustificationEnum Justification = vxLeftJustify,
                                        vxCaseEnum CaseType = vxCaseSensitive,
                                        vxDuplicatesEnum AllowDuplication = vxAllowDuplicates);
  // Wraps VLocateValueEx. Returns the position found (0 when none or on
  // error).
  static int32_t CRVLocateElement(const String& ArrayValue, const String& Element,
                                  const String& Delimiter, int32_t Position,
                                  vxMatchingEnum SearchType = vxExactMatch,
                                  vxCaseEnum CaseType = vxCaseSensitive);
  // Wraps VReplaceValue. ArrayValue receives the new array.
  static int32_t CRVReplaceElement(String& ArrayValue, const String& Delimiter, int32_t Position,
                                   const String& ReplaceElement);
  // Wraps VSortValues. ArrayValue receives the sorted array.
  static int32_t CRVSortElements(String& ArrayValue, const String& Delimiter,
                                 vxSortOrderEnum SortOrder = vxAscending,
                                 vxJustificationEnum Justification = vxLeftJustify,
                                 vxCaseEnum CaseType = vxCaseSensitive);
};

}  // namespace crvlib

#endif  // CRVLIB_DLL_ROUTINES_H_
