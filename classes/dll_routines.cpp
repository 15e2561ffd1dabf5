// DLLRoutines: the element operations with errors suspended. Each wrapper
// makes a DynamicString of ArrayValue and runs the object's operation
// statement by statement (ResumeNext): a failed statement leaves what it
// would have written as it was, the rest still run, and the status is -1
// when no statement failed, 0 otherwise. No error leaves a wrapper.
#include "crvlib/dll_routines.h"

#include <cstdint>

#include "core/error_frame.h"
#include "crvlib/dynamic_string.h"
#include "dynstring/element_hosts.h"

namespace crvlib {
namespace {

using internal::ResumeNext;

int32_t Status(const ResumeNext& err) {
  return err.Number() == 0 ? -1 : 0;
}

// The wrapper's object, made as its first statement: should that fail, the
// statements that use it fail too (91) and the status says so.
DynamicString Created(ResumeNext& err) {
  DynamicString d(nullptr);
  err([&] { d = DynamicString(); });
  return d;
}

}  // namespace

int32_t DLLRoutines::CRVChangeDelimiter(String& ArrayValue, const String& OldDelimiter,
                                        const String& NewDelimiter) {
  ResumeNext err;
  // A fresh object's ChangeAll in one pass where that gives the object's
  // result; it cannot fail but for memory.
  bool done = false;
  err([&] {
    done = internal::ChangeAllOfFresh(ArrayValue, OldDelimiter, NewDelimiter, &ArrayValue);
  });
  if (done || err.Number() != 0) return Status(err);
  DynamicString d = Created(err);
  err([&] { d.SetValue(ArrayValue); });
  // Unlike Functions.ChangeDelimiter, an empty OldDelimiter reaches ChangeAll
  // and fails there.
  err([&] { d.ChangeAll(OldDelimiter, NewDelimiter, vxCaseSensitive); });
  err([&] { ArrayValue = d.Value(); });
  return Status(err);
}

int32_t DLLRoutines::CRVCountElements(const String& ArrayValue, const String& Delimiter) {
  ResumeNext err;
  DynamicString d = Created(err);
  int32_t count = 0;
  err([&] { d.SetValue(ArrayValue); });
  err([&] { count = d.CountElements(Delimiter); });
  return count;
}

int32_t DLLRoutines::CRVDeleteElement(String& ArrayValue, const String& Delimiter,
                                      int32_t Position) {
  ResumeNext err;
  DynamicString d = Created(err);
  err([&] { d.SetValue(ArrayValue); });
  err([&] { d.DeleteElement(Delimiter, Position); });
  err([&] { ArrayValue = d.Value(); });
  return Status(err);
}

int32_t DLLRoutines::CRVExtractElement(const String& ArrayValue, const String& Delimiter,
                                       int32_t Position, String& ExtractedElement) {
  ResumeNext err;
  DynamicString d = Created(err);
  err([&] { d.SetValue(ArrayValue); });
  err([&] { ExtractedElement = d.ExtractElement(Delimiter, Position).Value(); });
  return Status(err);
}

int32_t DLLRoutines::CRVInsertElement(String& ArrayValue, const String& Delimiter, int32_t Position,
                                      const String& InsertElement) {
  ResumeNext err;
  DynamicString d = Created(err);
  err([&] { d.SetValue(ArrayValue); });
  err([&] { d.InsertElement(InsertElement, Delimiter, Position); });
  err([&] { ArrayValue = d.Value(); });
  return Status(err);
}

int32_t DLLRoutines::CRVInsertElementSorted(const String& ArrayValue, const String& Delimiter,
                                            int32_t& Position, const String& InsertElement,
                                            vxSortOrderEnum SortOrder,
                                            vxJustificationEnum Justification, vxCaseEnum CaseType,
                                            vxDuplicatesEnum AllowDuplication) {
  ResumeNext err;
  DynamicString d = Created(err);
  err([&] { d.SetValue(ArrayValue); });
  // Deliberately, only the position comes back, and 0-based.
  err([&] {
    Position = d.InsertElementSorted(InsertElement, Delimiter, SortOrder, Justification, CaseType,
                                     AllowDuplication) -
               1;
  });
  return Status(err);
}

int32_t DLLRoutines::CRVLocateElement(const String& ArrayValue, const String& Element,
                                      const String& Delimiter, int32_t Position,
                                      vxMatchingEnum SearchType, vxCaseEnum CaseType) {
  ResumeNext err;
  DynamicString d = Created(err);
  int32_t found = 0;
  err([&] { d.SetValue(ArrayValue); });
  err([&] { found = d.LocateElement(Element, Delimiter, Position, SearchType, CaseType); });
  return found;
}

int32_t DLLRoutines::CRVReplaceElement(String& ArrayValue, const String& Delimiter,
                                       int32_t Position, const String& ReplaceElement) {
  ResumeNext err;
  DynamicString d = Created(err);
  err([&] { d.SetValue(ArrayValue); });
  err([&] { d.ReplaceElement(ReplaceElement, Delimiter, Position); });
  err([&] { ArrayValue = d.Value(); });
  return Status(err);
}

int32_t DLLRoutines::CRVSortElements(String& ArrayValue, const String& Delimiter,
                                     vxSortOrderEnum SortOrder, vxJustificationEnum Justification,
                                     vxCaseEnum CaseType) {
  ResumeNext err;
  DynamicString d = Created(err);
  err([&] { d.SetValue(ArrayValue); });
  err([&] { d.SortElements(Delimiter, SortOrder, Justification, CaseType); });
  err([&] { ArrayValue = d.Value(); });
  return Status(err);
}

}  // namespace crvlib
