// The DLLRoutines class: the status-returning element wrappers.
#include "crvlib/dll_routines.h"
#include "typelib/surface.h"

namespace crvlib::typelib {

ClassInfo DLLRoutinesClass() {
  return GlobalClass(
      "DLLRoutines",
      {.clsid = "C71B10F3-62B3-44F3-9D95-FD38EA4A082D",
       .iid = "D2208E9D-B6FA-40F0-B8F6-A95BAC07951F"},
      "Element routines in the calling style of the older procedural interface.",
      {
          CRV_METHOD(DLLRoutines, CRVChangeDelimiter,
                     "Wraps VChangeDelimiter: replaces every OldDelimiter in ArrayValue "
                     "by NewDelimiter. Returns True (-1) on success, False (0) on error.",
                     ByRef("ArrayValue"), ByRef("OldDelimiter"), ByRef("NewDelimiter")),
          CRV_METHOD(DLLRoutines, CRVCountElements,
                     "Wraps VCountValue: returns the number of elements in ArrayValue, "
                     "0 on error.",
                     ByRef("ArrayValue"), ByRef("Delimiter")),
          CRV_METHOD(DLLRoutines, CRVDeleteElement,
                     "Wraps VDeleteValue: removes element Position from ArrayValue. "
                     "Returns True (-1) on success, False (0) on error.",
                     ByRef("ArrayValue"), ByRef("Delimiter"), In("Position")),
          CRV_METHOD(DLLRoutines, CRVExtractElement,
                     "Wraps VExtractValue: returns element Position of ArrayValue in "
                     "ExtractedElement. Returns True (-1) on success, False (0) on "
                     "error.",
                     ByRef("ArrayValue"), ByRef("Delimiter"), In("Position"),
                     ByRef("ExtractedElement")),
          CRV_METHOD(DLLRoutines, CRVInsertElement,
                     "Wraps VInsertValue: inserts InsertElement into ArrayValue as "
                     "element Position. Returns True (-1) on success, False (0) on "
                     "error.",
                     ByRef("ArrayValue"), ByRef("Delimiter"), In("Position"),
                     ByRef("InsertElement")),
          CRV_METHOD(DLLRoutines, CRVInsertElementSorted,
                     "Wraps VInsertValueSorted: finds where InsertElement belongs in the "
                     "ordered ArrayValue and returns that position minus 1 in Position "
                     "(ArrayValue is not changed). Returns True (-1) on success, False "
                     "(0) on error.",
                     ByRef("ArrayValue"), ByRef("Delimiter"), ByRef("Position"),
                     ByRef("InsertElement"), Optional("SortOrder", vxAscending),
                     Optional("Justification", vxLeftJustify),
                     Optional("CaseType", vxCaseSensitive),
                     Optional("AllowDuplication", vxAllowDuplicates)),
          CRV_METHOD(DLLRoutines, CRVLocateElement,
                     "Wraps VLocateValueEx: returns the position of the first element "
                     "from Position on that matches Element, 0 when none or on error.",
                     ByRef("ArrayValue"), ByRef("Element"), ByRef("Delimiter"), In("Position"),
                     Optional("SearchType", vxExactMatch), Optional("CaseType", vxCaseSensitive)),
          CRV_METHOD(DLLRoutines, CRVReplaceElement,
                     "Wraps VReplaceValue: replaces element Position of ArrayValue by "
                     "ReplaceElement. Returns True (-1) on success, False (0) on error.",
                     ByRef("ArrayValue"), ByRef("Delimiter"), In("Position"),
                     ByRef("ReplaceElement")),
          CRV_METHOD(DLLRoutines, CRVSortElements,
                     "Wraps VSortValues: sorts the elements of ArrayValue. Returns True "
                     "(-1) on success, False (0) on error.",
                     ByRef("ArrayValue"), ByRef("Delimiter"), Optional("SortOrder", vxAscending),
                     Optional("Justification", vxLeftJustify),
                     Optional("CaseType", vxCaseSensitive)),
      });
}

}  // namespace crvlib::typelib
