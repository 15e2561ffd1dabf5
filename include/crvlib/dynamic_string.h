// DynamicString: a string that is edited in place in a gap buffer and that
// hands out live child views onto parts of itself.
//
// A DynamicString value is a reference to an object, as an automation object
// reference is: copies refer to the same object, and an object lives while any
// reference to it (or to one of its views) does. A new DynamicString is an
// empty root. SubString and SubStringB make child views that share the root's
// text; an edit through any view is seen by all of them, views after the edit
// move with it, and views the edit cut into become invalid (every member but
// reading Value, SetBinary, MatchB, MatchElement and Clone then raises
// kObjectErrorBase + 1701).
//
// Character members count in characters; "B" members count in bytes of the
// UTF-16 text (two per character). All positions are 0-based and relative to
// the view, except the results of Find and FindB. While the family's Binary
// flag is set (an odd byte offset or count was used), the character members
// Start, Length, SubString, Extract, Insert, Delete, Replace, Find and Match
// raise error 6. Out-of-range starts and lengths of the editing members are
// clamped, never reported; a character position whose byte double overflows
// raises 6.
//
// Errors carry the source "CRVLIB.DynamicString::<Member>", except the few a
// member names itself (the validity check reports "::ValidateState", a
// negative range in SubString and Extract "::SubStringB" and "::ExtractB").
// A failed call changes nothing, except that ChangeAll keeps the replacements
// made before the failure. Calling a member through a reference to no object
// (IsNothing) raises 91.
//
//   DynamicString d;
//   d.SetValue(u"Hello World");
//   DynamicString w = d.SubString(6, 5);
//   w.Value() == u"World"
//   d.Insert(u"Big ", 6);
//   w.Value() == u"World"   // the view moved with the edit
//   w.Start() == 10
//   d.Find(u"World") == 10
#ifndef CRVLIB_DYNAMIC_STRING_H_
#define CRVLIB_DYNAMIC_STRING_H_

#include <cstdint>
#include <memory>

#include "crvlib/enums.h"
#include "crvlib/export.h"
#include "crvlib/string.h"

namespace crvlib {

namespace internal {
class DynamicStringImpl;
}

class CRVLIB_EXPORT DynamicString {
 public:
  // The largest character length whose byte length still fits a Long, and
  // the byte-length default.
  static constexpr int32_t kMaxLength = 1073741822;
  static constexpr int32_t kMaxLengthB = 2147483646;

  // A new, empty root object.
  DynamicString();

  // True for a reference to no object (Nothing), as Parent() of a root.
  bool IsNothing() const { return impl_ == nullptr; }
  // True when both refer to the same object.
  bool Is(const DynamicString& other) const { return impl_ == other.impl_; }

  // The text of this view (the default member). Setting it replaces the
  // view's whole range in the shared text; the views of the family move or
  // become invalid as for any edit.
  String Value() const;
  void SetValue(const String& NewValue);

  int32_t Start() const;   // StartB() / 2
  int32_t StartB() const;  // byte offset inside the parent view (0 for a root)
  int32_t Length() const;  // LengthB() / 2
  int32_t LengthB() const;

  // The family's byte-mode flag, shared by all its views. It is set by any
  // read or edit at an odd byte offset or with an odd byte count, and cleared
  // when the whole text is replaced or deleted. Setting False while the text's
  // length or internal layout is odd raises error 380.
  bool Binary() const;
  void SetBinary(bool Value);

  // The parent view; Nothing for a root.
  DynamicString Parent() const;

  // A new child view of `Length` characters (bytes) from `Start`; a negative
  // Start or Length raises error 5, larger ones are clamped. The view shares
  // the text; it follows edits made before it and becomes invalid when an
  // edit cuts into it (an edit touching only its ends does not).
  //   DynamicString d;
  //   d.SetValue(u"Hello World");
  //   d.SubString(6, 5).Value() == u"World"
  DynamicString SubString(int32_t Start, int32_t Length);
  DynamicString SubStringB(int32_t Start, int32_t Length);

  // A copy of part of the text; a negative Start or Length raises error 5,
  // larger ones are clamped.
  String Extract(int32_t Start = 0, int32_t Length = kMaxLength) const;
  String ExtractB(int32_t Start = 0, int32_t Length = kMaxLengthB) const;

  // Edits of the view's text. Insert adds NewValue before Start (clamped to
  // the view), Delete removes up to Length characters (bytes) from Start,
  // Replace does both at once; with its defaults Replace sets the whole value.
  //   DynamicString d;
  //   d.SetValue(u"abc");
  //   d.Insert(u"X", 1);
  //   d.Value() == u"aXbc"
  //   d.Delete(2, 99);
  //   d.Value() == u"aX"
  //   d.Replace(u"YZ", 1, 1);
  //   d.Value() == u"aYZ"
  void Append(const String& NewValue);
  void Prefix(const String& NewValue);
  void Insert(const String& NewValue, int32_t Start = 0);
  void InsertB(const String& NewValue, int32_t Start = 0);
  void Delete(int32_t Start, int32_t Length);
  void DeleteB(int32_t Start, int32_t Length);
  void Replace(const String& NewValue, int32_t Start = 0, int32_t Length = kMaxLength);
  void ReplaceB(const String& NewValue, int32_t Start = 0, int32_t Length = kMaxLengthB);

  // The first occurrence of FindValue lying wholly in the range, or -1; an
  // empty FindValue answers the start. The result counts from the start of
  // the whole family's text (the root), not from this view, deliberately.
  // vxCaseNotSensitive compares case-folded code units; a CaseType other
  // than the two members raises 5.
  //   DynamicString d;
  //   d.SetValue(u"abcabc");
  //   d.Find(u"c") == 2
  //   d.Find(u"c", 3) == 5
  //   d.SubString(3, 3).Find(u"c") == 5   // counted from the root
  int32_t Find(const String& FindValue, int32_t Start = 0, int32_t Length = kMaxLength,
               vxCaseEnum CaseType = vxCaseSensitive) const;
  int32_t FindB(const String& FindValue, int32_t Start = 0, int32_t Length = kMaxLengthB,
                vxCaseEnum CaseType = vxCaseSensitive) const;

  // Regular-expression search is not offered by this class: always -1.
  int32_t Match(const String& Pattern, int32_t Start = 0, int32_t Length = kMaxLength,
                vxMatchOptionsEnum Options = vxNoOptionsSet) const;
  int32_t MatchB(const String& Pattern, int32_t Start = 0, int32_t Length = kMaxLengthB,
                 vxMatchOptionsEnum Options = vxNoOptionsSet) const;

  // --- Elements --------------------------------------------------------------
  // The value as a dynamic string array: elements separated by Delimiter
  // (matched exactly), numbered from 1. The object caches its scan, so
  // asking for elements 1, 2, 3, … in turn scans the text once.

  // A live child view of element Position: 0 is the whole value, -1 the last
  // element. Past the end (2147483647 included) the view is empty, at the
  // end, and Eof is set to True (it is never cleared); -1 sets it too. Below
  // -1 raises 5. Once the scan has reached the end (after CountElements,
  // say), -1 answers an empty view at the end, and so does 2147483646, the
  // scan's own target for the last element; every other answer is the one
  // a fresh object holding the same value gives.
  //   DynamicString d;
  //   d.SetValue(u"a|b|c");
  //   d.ExtractElement(u"|", 2).Value() == u"b"
  //   d.ExtractElement(u"|", -1).Value() == u"c"
  //   d.CountElements(u"|") == 3
  //   d.ExtractElement(u"|", -1).Value() == u""   // the scan knows the end now
  DynamicString ExtractElement(const String& Delimiter, int32_t Position, bool& Eof);
  DynamicString ExtractElement(const String& Delimiter, int32_t Position);
  // Inserts NewValue so that it becomes element Position, padding with empty
  // elements beyond the end. Returns this object.
  //   DynamicString d;
  //   d.SetValue(u"a|b");
  //   d.InsertElement(u"x", u"|", 4).Value() == u"a|b||x"
  DynamicString InsertElement(const String& NewValue, const String& Delimiter,
                              int32_t Position = 0);
  // Inserts NewValue into an ordered array; returns its position, 0 when a
  // duplicate was refused.
  //   DynamicString d;
  //   d.SetValue(u"2|9");
  //   d.InsertElementSorted(u"10", u"|", vxAscending, vxRightJustify) == 3
  int32_t InsertElementSorted(const String& NewValue, const String& Delimiter,
                              vxSortOrderEnum SortOrder = vxAscending,
                              vxJustificationEnum Justification = vxLeftJustify,
                              vxCaseEnum CaseType = vxCaseSensitive,
                              vxDuplicatesEnum AllowDuplication = vxAllowDuplicates);
  // Removes element Position with one delimiter; 0 deletes everything, -1 is
  // the last element, below -1 raises 5. Returns this object.
  DynamicString DeleteElement(const String& Delimiter, int32_t Position);
  // Replaces element Position (padding beyond the end); 0 sets the whole
  // value; a negative Position raises 5. Returns this object.
  DynamicString ReplaceElement(const String& NewValue, const String& Delimiter, int32_t Position);
  // The first element at or after Position (0 means 1) that equals, begins
  // with, ends with or contains FindValue; 0 when none.
  int32_t LocateElement(const String& FindValue, const String& Delimiter, int32_t Position = 0,
                        vxMatchingEnum MatchType = vxExactMatch,
                        vxCaseEnum CaseType = vxCaseSensitive);
  // Regular-expression location is not offered: always 0, even on an
  // invalid view.
  int32_t MatchElement(const String& Pattern, const String& Delimiter, int32_t Position = 0,
                       vxMatchOptionsEnum RegexOptions = vxNoOptionsSet);
  //   DynamicString d;
  //   d.CountElements(u"|") == 0
  //   d.SetValue(u"a||b");
  //   d.CountElements(u"|") == 3
  int32_t CountElements(const String& Delimiter);
  // Sorts the elements (stable; empty elements at the very start vanish).
  // Returns this object.
  DynamicString SortElements(const String& Delimiter, vxSortOrderEnum SortOrder = vxAscending,
                             vxJustificationEnum Justification = vxLeftJustify,
                             vxCaseEnum CaseType = vxCaseSensitive);

  // Replaces every occurrence of OldValue, left to right; replaced text is
  // not searched again. An empty OldValue raises 5. Returns this object. On a
  // child view the root-relative offsets of Find are applied within the view
  // as they are, deliberately, so only a root (or a view at offset 0) is
  // changed exactly.
  //   DynamicString d;
  //   d.SetValue(u"aaa");
  //   d.ChangeAll(u"a", u"aa").Value() == u"aaaaaa"
  DynamicString ChangeAll(const String& OldValue, const String& NewValue,
                          vxCaseEnum CaseType = vxCaseSensitive);

  // Compares Value with CompareValue: -1, 0 or 1. The two options are passed
  // on crosswise, deliberately: CaseType selects the numeric comparison of
  // right justification and Justification the case mode, so with the
  // defaults "10" vs "9" is 1 (numeric) and "abc" vs "ABC" is 0 (text). A
  // numeric tie, or a side that is no number, is decided by the text.
  int16_t Compare(const String& CompareValue, vxCaseEnum CaseType = vxCaseSensitive,
                  vxJustificationEnum Justification = vxLeftJustify) const;

  // A new, separate root holding a copy of Value; it works on invalid views.
  DynamicString Clone() const;

  // Library-internal access to the object.
  internal::DynamicStringImpl& impl() const;
  explicit DynamicString(std::shared_ptr<internal::DynamicStringImpl> impl)
      : impl_(std::move(impl)) {}

 private:
  std::shared_ptr<internal::DynamicStringImpl> impl_;
};

}  // namespace crvlib

#endif  // CRVLIB_DYNAMIC_STRING_H_
