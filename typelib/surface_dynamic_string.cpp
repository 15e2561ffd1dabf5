// The DynamicString class: a string edited in place, with live child views
// and element operations, in type-library order.
#include "crvlib/dynamic_string.h"
#include "typelib/surface.h"

namespace crvlib::typelib {

namespace {
constexpr int32_t kLength = DynamicString::kMaxLength;
constexpr int32_t kLengthB = DynamicString::kMaxLengthB;
// The overload the type library shows, with its by-reference EOF flag.
using ExtractElementWithEof = DynamicString (DynamicString::*)(const String&, int32_t, bool&);
}  // namespace

ClassInfo DynamicStringClass() {
  return CreatableClass<DynamicString>(
      {.clsid = "C3BD00BB-87D9-4BC5-A875-CDF06DC8EF6F",
       .iid = "33E1E908-F1F3-459F-B5C9-A55D1F1C715A"},
      "A string edited in place in a gap buffer, with live child views and element operations.",
      {
          CRV_PROPERTY_GET(DynamicString, Value, "Returns or sets the text of this string or view.")
              .Default(),
          CRV_PROPERTY_LET(DynamicString, Value, SetValue, ByRef("NewValue")).Default(),
          CRV_PROPERTY_GET(DynamicString, Start,
                           "Returns the start of this view within its parent, in "
                           "characters (0-based)."),
          CRV_PROPERTY_GET(DynamicString, StartB,
                           "Returns the start of this view within its parent, in bytes "
                           "(0-based), ANSI(Binary)."),
          CRV_PROPERTY_GET(DynamicString, Length, "Returns the length of this view in characters."),
          CRV_PROPERTY_GET(DynamicString, LengthB,
                           "Returns the length of this view in bytes, ANSI(Binary)."),
          CRV_PROPERTY_GET(DynamicString, Binary,
                           "Returns or sets whether the text is used as bytes. It is set "
                           "once an odd byte offset or count has been used."),
          CRV_PROPERTY_LET(DynamicString, Binary, SetBinary, In("Value")),
          CRV_PROPERTY_GET(DynamicString, Parent,
                           "Returns the DynamicString this view was made from; Nothing "
                           "for a root."),
          CRV_METHOD(DynamicString, SubString,
                     "Returns a new DynamicString that is a live view of part of this "
                     "string. Start and Length are in characters.",
                     In("Start"), In("Length")),
          CRV_METHOD(DynamicString, SubStringB,
                     "Returns a new DynamicString that is a live view of part of "
                     "this string. Start and Length are in bytes, ANSI(Binary).",
                     In("Start"), In("Length")),
          CRV_METHOD(DynamicString, Extract,
                     "Returns a copy of part of the text. Start and Length are in "
                     "characters.",
                     Optional("Start", int32_t{0}), Optional("Length", kLength)),
          CRV_METHOD(DynamicString, ExtractB,
                     "Returns a copy of part of the text. Start and Length are in "
                     "bytes, ANSI(Binary).",
                     Optional("Start", int32_t{0}), Optional("Length", kLengthB)),
          CRV_METHOD(DynamicString, Append, "Adds text at the end.", ByRef("NewValue")),
          CRV_METHOD(DynamicString, Prefix, "Adds text at the beginning.", ByRef("NewValue")),
          CRV_METHOD(DynamicString, Insert, "Inserts text before character Start.",
                     ByRef("NewValue"), Optional("Start", int32_t{0})),
          CRV_METHOD(DynamicString, InsertB, "Inserts text before byte Start, ANSI(Binary).",
                     ByRef("NewValue"), Optional("Start", int32_t{0})),
          CRV_METHOD(DynamicString, Delete, "Removes Length characters from Start.", In("Start"),
                     In("Length")),
          CRV_METHOD(DynamicString, DeleteB, "Removes Length bytes from Start, ANSI(Binary).",
                     In("Start"), In("Length")),
          CRV_METHOD(DynamicString, Replace,
                     "Replaces Length characters from Start with new text; by default "
                     "the whole text.",
                     ByRef("NewValue"), Optional("Start", int32_t{0}), Optional("Length", kLength)),
          CRV_METHOD(DynamicString, ReplaceB,
                     "Replaces Length bytes from Start with new text, ANSI(Binary); by "
                     "default the whole text.",
                     ByRef("NewValue"), Optional("Start", int32_t{0}),
                     Optional("Length", kLengthB)),
          CRV_METHOD(DynamicString, Find,
                     "Returns the character position, counted from the start of the root "
                     "string, of the first occurrence of FindValue in the range; -1 when "
                     "there is none.",
                     ByRef("FindValue"), Optional("Start", int32_t{0}), Optional("Length", kLength),
                     Optional("CaseType", vxCaseSensitive)),
          CRV_METHOD(DynamicString, FindB,
                     "Returns the byte position, counted from the start of the root "
                     "string, of the first occurrence of FindValue in the range; -1 when "
                     "there is none. ANSI(Binary).",
                     ByRef("FindValue"), Optional("Start", int32_t{0}),
                     Optional("Length", kLengthB), Optional("CaseType", vxCaseSensitive)),
          CRV_METHOD(DynamicString, Match,
                     "Regular-expression search; not offered in this version: always "
                     "returns -1.",
                     ByRef("Pattern"), Optional("Start", int32_t{0}), Optional("Length", kLength),
                     Optional("Options", vxNoOptionsSet)),
          CRV_METHOD(DynamicString, MatchB,
                     "Regular-expression search, ANSI(Binary); not offered in this "
                     "version: always returns -1.",
                     ByRef("Pattern"), Optional("Start", int32_t{0}), Optional("Length", kLengthB),
                     Optional("Options", vxNoOptionsSet)),
          CRV_METHOD_OVERLOAD(
              DynamicString, ExtractElement, ExtractElementWithEof,
              "Returns a live view of element Position of the dynamic string array (0 the whole "
              "value, -1 the last element). Past the end the view is empty and EOF is set to "
              "True.",
              ByRef("Delimiter"), In("Position"), OptionalByRef("EOF", false)),
          CRV_METHOD(DynamicString, InsertElement,
                     "Inserts NewValue so that it becomes element Position, padding with empty "
                     "elements beyond the end. Returns this object.",
                     ByRef("NewValue"), ByRef("Delimiter"), Optional("Position", int32_t{0})),
          CRV_METHOD(
              DynamicString, InsertElementSorted,
              "Inserts NewValue into an ordered dynamic string array. Returns the position given "
              "to it, or 0 when a duplicate was refused.",
              ByRef("NewValue"), ByRef("Delimiter"), Optional("SortOrder", vxAscending),
              Optional("Justification", vxLeftJustify), Optional("CaseType", vxCaseSensitive),
              Optional("AllowDuplication", vxAllowDuplicates)),
          CRV_METHOD(DynamicString, DeleteElement,
                     "Removes element Position together with one delimiter (0 "
                     "removes everything, -1 the last element). Returns this "
                     "object.",
                     ByRef("Delimiter"), In("Position")),
          CRV_METHOD(DynamicString, ReplaceElement,
                     "Replaces element Position with NewValue, padding beyond "
                     "the end (0 replaces the whole value). Returns this object.",
                     ByRef("NewValue"), ByRef("Delimiter"), In("Position")),
          CRV_METHOD(DynamicString, LocateElement,
                     "Returns the number of the first element from Position on that equals, begins "
                     "with, ends with or contains FindValue; 0 when there is none.",
                     ByRef("FindValue"), ByRef("Delimiter"), Optional("Position", int32_t{0}),
                     Optional("MatchType", vxExactMatch), Optional("CaseType", vxCaseSensitive)),
          CRV_METHOD(DynamicString, MatchElement,
                     "Regular-expression location of an element; not offered in "
                     "this version: always returns 0.",
                     ByRef("Pattern"), ByRef("Delimiter"), Optional("Position", int32_t{0}),
                     Optional("RegexOptions", vxNoOptionsSet)),
          CRV_METHOD(DynamicString, CountElements,
                     "Returns the number of elements in the dynamic string array.",
                     ByRef("Delimiter")),
          CRV_METHOD(
              DynamicString, SortElements,
              "Sorts the elements of the dynamic string array (equal elements keep their order). "
              "Returns this object.",
              ByRef("Delimiter"), Optional("SortOrder", vxAscending),
              Optional("Justification", vxLeftJustify), Optional("CaseType", vxCaseSensitive)),
          CRV_METHOD(DynamicString, ChangeAll,
                     "Replaces every occurrence of OldValue with NewValue. Returns "
                     "this object.",
                     ByRef("OldValue"), ByRef("NewValue"), Optional("CaseType", vxCaseSensitive)),
          CRV_METHOD(DynamicString, Compare,
                     "Compares the text with CompareValue: -1, 0 or 1. CaseType "
                     "selects the numeric comparison, Justification the case mode.",
                     ByRef("CompareValue"), Optional("CaseType", vxCaseSensitive),
                     Optional("Justification", vxLeftJustify)),
          CRV_METHOD(DynamicString, Clone,
                     "Returns a new, separate DynamicString with a copy of the text."),
      });
}

}  // namespace crvlib::typelib
