// The DynamicString class: a string edited in place, with live child views
// and element operations, in type-library order.
#include "cli/surface.h"
#include "crvlib/dynamic_string.h"

namespace crvlib::cli {

namespace {
using DS = DynamicString;
constexpr int32_t kLength = DynamicString::kMaxLength;
constexpr int32_t kLengthB = DynamicString::kMaxLengthB;
// The overload the type library shows, with its by-reference EOF flag.
constexpr auto kExtractElement =
    static_cast<DynamicString (DS::*)(const String&, int32_t, bool&)>(&DS::ExtractElement);
}  // namespace

ClassInfo DynamicStringClass() {
  return CreatableClass<DynamicString>(
      "A string edited in place in a gap buffer, with live child views and element operations.",
      {
          PropertyGet<&DS::Value>("Value", "Returns or sets the text of this string or view.")
              .Default(),
          PropertyLet<&DS::SetValue>("Value", "Returns or sets the text of this string or view.",
                                     ByRef("NewValue"))
              .Default(),
          PropertyGet<&DS::Start>("Start",
                                  "Returns the start of this view within its parent, in "
                                  "characters (0-based)."),
          PropertyGet<&DS::StartB>("StartB",
                                   "Returns the start of this view within its parent, in bytes "
                                   "(0-based), ANSI(Binary)."),
          PropertyGet<&DS::Length>("Length", "Returns the length of this view in characters."),
          PropertyGet<&DS::LengthB>("LengthB",
                                    "Returns the length of this view in bytes, ANSI(Binary)."),
          PropertyGet<&DS::Binary>("Binary",
                                   "Returns or sets whether the text is used as bytes. It is set "
                                   "once an odd byte offset or count has been used."),
          PropertyLet<&DS::SetBinary>(
              "Binary",
              "Returns or sets whether the text is used as bytes. It is set "
              "once an odd byte offset or count has been used.",
              In("Value")),
          PropertyGet<&DS::Parent>("Parent",
                                   "Returns the DynamicString this view was made from; Nothing "
                                   "for a root."),
          Method<&DS::SubString>("SubString",
                                 "Returns a new DynamicString that is a live view of part of this "
                                 "string. Start and Length are in characters.",
                                 In("Start"), In("Length")),
          Method<&DS::SubStringB>("SubStringB",
                                  "Returns a new DynamicString that is a live view of part of "
                                  "this string. Start and Length are in bytes, ANSI(Binary).",
                                  In("Start"), In("Length")),
          Method<&DS::Extract>("Extract",
                               "Returns a copy of part of the text. Start and Length are in "
                               "characters.",
                               Optional("Start", int32_t{0}), Optional("Length", kLength)),
          Method<&DS::ExtractB>("ExtractB",
                                "Returns a copy of part of the text. Start and Length are in "
                                "bytes, ANSI(Binary).",
                                Optional("Start", int32_t{0}), Optional("Length", kLengthB)),
          Method<&DS::Append>("Append", "Adds text at the end.", ByRef("NewValue")),
          Method<&DS::Prefix>("Prefix", "Adds text at the beginning.", ByRef("NewValue")),
          Method<&DS::Insert>("Insert", "Inserts text before character Start.", ByRef("NewValue"),
                              Optional("Start", int32_t{0})),
          Method<&DS::InsertB>("InsertB", "Inserts text before byte Start, ANSI(Binary).",
                               ByRef("NewValue"), Optional("Start", int32_t{0})),
          Method<&DS::Delete>("Delete", "Removes Length characters from Start.", In("Start"),
                              In("Length")),
          Method<&DS::DeleteB>("DeleteB", "Removes Length bytes from Start, ANSI(Binary).",
                               In("Start"), In("Length")),
          Method<&DS::Replace>("Replace",
                               "Replaces Length characters from Start with new text; by default "
                               "the whole text.",
                               ByRef("NewValue"), Optional("Start", int32_t{0}),
                               Optional("Length", kLength)),
          Method<&DS::ReplaceB>("ReplaceB",
                                "Replaces Length bytes from Start with new text, ANSI(Binary); by "
                                "default the whole text.",
                                ByRef("NewValue"), Optional("Start", int32_t{0}),
                                Optional("Length", kLengthB)),
          Method<&DS::Find>("Find",
                            "Returns the character position, counted from the start of the root "
                            "string, of the first occurrence of FindValue in the range; -1 when "
                            "there is none.",
                            ByRef("FindValue"), Optional("Start", int32_t{0}),
                            Optional("Length", kLength), Optional("CaseType", vxCaseSensitive)),
          Method<&DS::FindB>("FindB",
                             "Returns the byte position, counted from the start of the root "
                             "string, of the first occurrence of FindValue in the range; -1 when "
                             "there is none. ANSI(Binary).",
                             ByRef("FindValue"), Optional("Start", int32_t{0}),
                             Optional("Length", kLengthB), Optional("CaseType", vxCaseSensitive)),
          Method<&DS::Match>("Match",
                             "Regular-expression search; not offered in this version: always "
                             "returns -1.",
                             ByRef("Pattern"), Optional("Start", int32_t{0}),
                             Optional("Length", kLength), Optional("Options", vxNoOptionsSet)),
          Method<&DS::MatchB>("MatchB",
                              "Regular-expression search, ANSI(Binary); not offered in this "
                              "version: always returns -1.",
                              ByRef("Pattern"), Optional("Start", int32_t{0}),
                              Optional("Length", kLengthB), Optional("Options", vxNoOptionsSet)),
          Method<kExtractElement>(
              "ExtractElement",
              "Returns a live view of element Position of the dynamic string array (0 the whole "
              "value, -1 the last element). Past the end the view is empty and EOF is set to "
              "True.",
              ByRef("Delimiter"), In("Position"), OptionalByRef("EOF", false)),
          Method<&DS::InsertElement>(
              "InsertElement",
              "Inserts NewValue so that it becomes element Position, padding with empty "
              "elements beyond the end. Returns this object.",
              ByRef("NewValue"), ByRef("Delimiter"), Optional("Position", int32_t{0})),
          Method<&DS::InsertElementSorted>(
              "InsertElementSorted",
              "Inserts NewValue into an ordered dynamic string array. Returns the position given "
              "to it, or 0 when a duplicate was refused.",
              ByRef("NewValue"), ByRef("Delimiter"), Optional("SortOrder", vxAscending),
              Optional("Justification", vxLeftJustify), Optional("CaseType", vxCaseSensitive),
              Optional("AllowDuplication", vxAllowDuplicates)),
          Method<&DS::DeleteElement>("DeleteElement",
                                     "Removes element Position together with one delimiter (0 "
                                     "removes everything, -1 the last element). Returns this "
                                     "object.",
                                     ByRef("Delimiter"), In("Position")),
          Method<&DS::ReplaceElement>("ReplaceElement",
                                      "Replaces element Position with NewValue, padding beyond "
                                      "the end (0 replaces the whole value). Returns this object.",
                                      ByRef("NewValue"), ByRef("Delimiter"), In("Position")),
          Method<&DS::LocateElement>(
              "LocateElement",
              "Returns the number of the first element from Position on that equals, begins "
              "with, ends with or contains FindValue; 0 when there is none.",
              ByRef("FindValue"), ByRef("Delimiter"), Optional("Position", int32_t{0}),
              Optional("MatchType", vxExactMatch), Optional("CaseType", vxCaseSensitive)),
          Method<&DS::MatchElement>("MatchElement",
                                    "Regular-expression location of an element; not offered in "
                                    "this version: always returns 0.",
                                    ByRef("Pattern"), ByRef("Delimiter"),
                                    Optional("Position", int32_t{0}),
                                    Optional("RegexOptions", vxNoOptionsSet)),
          Method<&DS::CountElements>("CountElements",
                                     "Returns the number of elements in the dynamic string array.",
                                     ByRef("Delimiter")),
          Method<&DS::SortElements>(
              "SortElements",
              "Sorts the elements of the dynamic string array (equal elements keep their order). "
              "Returns this object.",
              ByRef("Delimiter"), Optional("SortOrder", vxAscending),
              Optional("Justification", vxLeftJustify), Optional("CaseType", vxCaseSensitive)),
          Method<&DS::ChangeAll>("ChangeAll",
                                 "Replaces every occurrence of OldValue with NewValue. Returns "
                                 "this object.",
                                 ByRef("OldValue"), ByRef("NewValue"),
                                 Optional("CaseType", vxCaseSensitive)),
          Method<&DS::Compare>("Compare",
                               "Compares the text with CompareValue: -1, 0 or 1. CaseType "
                               "selects the numeric comparison, Justification the case mode.",
                               ByRef("CompareValue"), Optional("CaseType", vxCaseSensitive),
                               Optional("Justification", vxLeftJustify)),
          Method<&DS::Clone>("Clone",
                             "Returns a new, separate DynamicString with a copy of the text."),
      });
}

}  // namespace crvlib::cli
