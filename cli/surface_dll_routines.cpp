// The DLLRoutines class: the status-returning element wrappers.
#include "cli/surface.h"
#include "crvlib/dll_routines.h"

namespace crvlib::cli {

ClassInfo DLLRoutinesClass() {
  return GlobalClass(
      "DLLRoutines", "Element routines in the calling style of the older procedural interface.",
      {
          Method<&DLLRoutines::CRVChangeDelimiter>(
              "CRVChangeDelimiter",
              "Wraps VChangeDelimiter: replaces every OldDelimiter in ArrayValue "
              "by NewDelimiter. Returns True (-1) on success, False (0) on error.",
              ByRef("ArrayValue"), ByRef("OldDelimiter"), ByRef("NewDelimiter")),
          Method<&DLLRoutines::CRVCountElements>(
              "CRVCountElements",
              "Wraps VCountValue: returns the number of elements in ArrayValue, "
              "0 on error.",
              ByRef("ArrayValue"), ByRef("Delimiter")),
          Method<&DLLRoutines::CRVDeleteElement>(
              "CRVDeleteElement",
              "Wraps VDeleteValue: removes element Position from ArrayValue. "
              "Returns True (-1) on success, False (0) on error.",
              ByRef("ArrayValue"), ByRef("Delimiter"), In("Position")),
          Method<&DLLRoutines::CRVExtractElement>(
              "CRVExtractElement",
              "Wraps VExtractValue: returns element Position of ArrayValue in "
              "ExtractedElement. Returns True (-1) on success, False (0) on "
              "error.",
              ByRef("ArrayValue"), ByRef("Delimiter"), In("Position"), ByRef("ExtractedElement")),
          Method<&DLLRoutines::CRVInsertElement>(
              "CRVInsertElement",
              "Wraps VInsertValue: inserts InsertElement into ArrayValue as "
              "element Position. Returns True (-1) on success, False (0) on "
              "error.",
              ByRef("ArrayValue"), ByRef("Delimiter"), In("Position"), ByRef("InsertElement")),
          Method<&DLLRoutines::CRVInsertElementSorted>(
              "CRVInsertElementSorted",
              "Wraps VInsertValueSorted: finds where InsertElement belongs in the "
              "ordered ArrayValue and returns that position minus 1 in Position "
              "(ArrayValue is not changed). Returns True (-1) on success, False "
              "(0) on error.",
              ByRef("ArrayValue"), ByRef("Delimiter"), ByRef("Position"), ByRef("InsertElement"),
              Optional("SortOrder", vxAscending), Optional("Justification", vxLeftJustify),
              Optional("CaseType", vxCaseSensitive),
              Optional("AllowDuplication", vxAllowDuplicates)),
          Method<&DLLRoutines::CRVLocateElement>(
              "CRVLocateElement",
              "Wraps VLocateValueEx: returns the position of the first element "
              "from Position on that matches Element, 0 when none or on error.",
              ByRef("ArrayValue"), ByRef("Element"), ByRef("Delimiter"), In("Position"),
              Optional("SearchType", vxExactMatch), Optional("CaseType", vxCaseSensitive)),
          Method<&DLLRoutines::CRVReplaceElement>(
              "CRVReplaceElement",
              "Wraps VReplaceValue: replaces element Position of ArrayValue by "
              "ReplaceElement. Returns True (-1) on success, False (0) on error.",
              ByRef("ArrayValue"), ByRef("Delimiter"), In("Position"), ByRef("ReplaceElement")),
          Method<&DLLRoutines::CRVSortElements>(
              "CRVSortElements",
              "Wraps VSortValues: sorts the elements of ArrayValue. Returns True "
              "(-1) on success, False (0) on error.",
              ByRef("ArrayValue"), ByRef("Delimiter"), Optional("SortOrder", vxAscending),
              Optional("Justification", vxLeftJustify), Optional("CaseType", vxCaseSensitive)),
      });
}

}  // namespace crvlib::cli
