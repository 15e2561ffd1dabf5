// Functions' element routines in tables: results, errors and their sources,
// and the edges of positions. LocateElement, the sorts, InsertSorted and the
// array conversions are checked at random against their naive twins in
// dynstring/element_engine_test.cpp; here only their edges and errors.
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>

#include "crvlib/dll_routines.h"
#include "crvlib/dynamic_string.h"
#include "crvlib/functions.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

using F = Functions;

TEST(FunctionsElements, ExtractAndCount) {
  struct Case {
    const char16_t *array, *delim;
    int32_t pos;
    const char16_t* want;
  };
  const Case kCases[] = {
      {u"a|b|c", u"|", 2, u"b"},    {u"a|b|c", u"|", 4, u""},
      {u"a|b|c", u"|", -1, u"c"},   {u"a|b|c", u"|", 0, u"a|b|c"},
      {u"a|", u"|", 2, u""},        {u"", u"|", 1, u""},
      {u"aXYbXYc", u"XY", 2, u"b"}, {u"aXb", u"x", 1, u"aXb"},
      {u"a|||b", u"||", 2, u"|b"},  // matches never overlap
      {u"a|b", u"", 0, u"a|b"},     // position 0 never scans
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(::testing::Message() << String(c.array) << " @" << c.pos);
    EXPECT_EQ(F::ExtractElement(c.array, c.delim, c.pos), c.want);
  }
  struct Count {
    const char16_t* array;
    int32_t elements, delimiters;
  };
  const Count kCounts[] = {
      {u"", 0, 0}, {u"a", 1, 0}, {u"|", 2, 1}, {u"a|b|", 3, 2}, {u"a||b", 3, 2}};
  for (const Count& c : kCounts) {
    SCOPED_TRACE(String(c.array));
    EXPECT_EQ(F::CountElements(c.array, u"|"), c.elements);
    EXPECT_EQ(F::CountDelimiters(c.array, u"|"), c.delimiters);
  }
}

TEST(FunctionsElements, OnlyMinusOneAsksForTheLastElement) {
  // On every face: -1 is the last element; INT_MAX - 1, the scan's own target
  // for the end, is found and gives it too; INT_MAX is past the end.
  struct Case {
    const char16_t* array;
    int32_t pos;
    const char16_t* want;
    bool eof;
  };
  const Case kCases[] = {
      {u"a|b", -1, u"b", true},       {u"a|b", INT_MAX - 1, u"b", false},
      {u"a|b", INT_MAX, u"", true},   {u"a|b", 3, u"", true},
      {u"", -1, u"", true},           {u"", INT_MAX, u"", true},
      {u"a|b|c", INT_MAX, u"", true}, {u"a|b|c", INT_MAX - 1, u"c", false},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(::testing::Message() << String(c.array) << " @" << c.pos);
    EXPECT_EQ(F::ExtractElement(c.array, u"|", c.pos), c.want);
    EXPECT_EQ(F::Field(c.array, u"|", c.pos), c.want);
    String out = u"old";
    EXPECT_EQ(DLLRoutines::CRVExtractElement(c.array, u"|", c.pos, out), -1);
    EXPECT_EQ(out, c.want);
    DynamicString d;
    d.SetValue(c.array);
    bool eof = false;
    const DynamicString view = d.ExtractElement(u"|", c.pos, eof);
    EXPECT_EQ(view.Value(), c.want);
    EXPECT_EQ(eof, c.eof);
    if (std::u16string_view(c.want).empty()) {
      EXPECT_EQ(view.StartB(), d.LengthB());  // an empty view at the end
    }
  }
}

TEST(FunctionsElements, Editing) {
  struct Case {
    char op;  // Insert, Delete, Replace
    const char16_t* array;
    int32_t pos;
    const char16_t* want;
  };
  const Case kCases[] = {
      {'I', u"a|b|c", 0, u"x|a|b|c"}, {'I', u"a|b|c", 2, u"a|x|b|c"},
      {'I', u"a|b|c", 4, u"a|b|c|x"}, {'I', u"a|b|c", 6, u"a|b|c|||x"},
      {'I', u"", -1, u"x"},           {'I', u"", 3, u"||x"},
      {'I', u"a|", 2, u"a|x"},        {'I', u"a|b", -3, u"a|x|b"},
      {'I', u"a|", -3, u"a|x"},       {'D', u"a|b|c", 1, u"b|c"},
      {'D', u"a|b|c", -1, u"a|b"},    {'D', u"a|b|c", 4, u"a|b|c"},
      {'D', u"a|b|c", 0, u""},        {'D', u"|b", 1, u"b"},
      {'D', u"a|", 2, u"a"},          {'D', u"", -1, u""},
      {'R', u"a|b|c", 2, u"a|x|c"},   {'R', u"a|b|c", 5, u"a|b|c||x"},
      {'R', u"a|b|c", 0, u"x"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(::testing::Message() << c.op << " " << String(c.array) << " @" << c.pos);
    const String got = c.op == 'I'   ? F::InsertElement(c.array, u"|", c.pos, u"x")
                       : c.op == 'D' ? F::DeleteElement(c.array, u"|", c.pos)
                                     : F::ReplaceElement(c.array, u"|", c.pos, u"x");
    EXPECT_EQ(got, c.want);
  }
  EXPECT_EQ(F::ChangeDelimiter(u"a|b|c", u"", u";"), u"a|b|c");  // never asks ChangeAll
  EXPECT_EQ(F::InsertElement(u"a|b", u"", 1, u"x"), u"xa|b");    // no scan needed
}

TEST(FunctionsElements, ErrorsCarryTheRoutineSource) {
  struct Case {
    std::function<void()> call;
    int32_t number;
    std::u16string_view routine;
  };
  const Case kCases[] = {
      {[] { F::ExtractElement(u"a|b", u"|", -2); }, 5, u"ExtractElement"},
      {[] { F::ExtractElement(u"a|b", u"", 1); }, 5, u"ExtractElement"},
      {[] { F::ExtractElement(u"a|b", u"|", INT_MIN); }, 5, u"ExtractElement"},
      {[] { F::DeleteElement(u"a|b", u"|", INT_MIN); }, 5, u"DeleteElement"},
      {[] { F::CountDelimiters(u"a", u""); }, 5, u"CountDelimiters"},
      {[] { F::DeleteElement(u"a|b", u"|", -2); }, 5, u"DeleteElement"},
      {[] { F::ReplaceElement(u"a|b", u"|", -1, u"x"); }, 5, u"ReplaceElement"},
      {[] { F::InsertElement(u"a|b", u"", -2, u"x"); }, 5, u"InsertElement"},
      {[] { F::InsertElement(u"a", u"|", INT_MAX, u"x"); }, 6, u"InsertElement"},
      {[] { F::LocateElement(u"a|b", u"b", u"|", -1); }, 5, u"LocateElement"},
      {[] { F::LocateElement(u"a|b", u"b", u"|", 0, vxRegexMatch); }, 5, u"LocateElement"},
      {[] { F::SortElements(u"", u""); }, 5, u"SortElements"},
      {[] {
         StringArray a;
         F::DynArrayToArray(u"", u"|", a);
       },
       9, u"DynArrayToArray"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(String(c.routine).ToUtf8());
    EXPECT_EQ(RaisedBy(c.call),
              Raised(c.number, u"CRVLIB.Functions::" + std::u16string(c.routine)));
  }
  EXPECT_EQ(F::MatchElement(u"a|b", u"[", u"", -5), 0);  // an empty delimiter: no match, no error
}

TEST(FunctionsElements, SortedInsertionEdges) {
  String s = u"";
  EXPECT_EQ(F::InsertSorted(s, u"", u"x"), 1);  // an empty array needs no delimiter
  EXPECT_EQ(s, u"x");
  s = u"a|b";
  EXPECT_EQ(RaisedBy([&] { F::InsertSorted(s, u"", u"x"); }).number, 5);
  EXPECT_EQ(s, u"a|b");  // not written back on an error
}

TEST(FunctionsElements, ArrayConversions) {
  StringArray a;
  EXPECT_EQ(F::DynArrayToArray(u"a|", u"|", a, vxArrayBaseEnum(7)), 2);
  EXPECT_EQ(a, (StringArray{0, {u"a", u""}}));  // other bases end up zero-based
  EXPECT_EQ(RaisedBy([&] { F::DynArrayToArray(u"a|b", u"|", a, vxArrayBaseEnum(INT_MAX)); }).number,
            6);  // the upper bound overflows
  EXPECT_EQ(a, (StringArray{0, {u"a", u""}}));
  // A one-byte delimiter: the count splits the bytes ("a" and "\0b"), the
  // runtime's Split sees no whole character and gives the whole string.
  const String bar_byte = String::FromBytes("|", 1);
  EXPECT_EQ(F::DynArrayToArray(u"a|b", bar_byte, a), 2);
  EXPECT_EQ(a, (StringArray{0, {u"a|b"}}));
  EXPECT_EQ(F::DynArrayToArray(u"a|b", bar_byte, a, vxOneBased), 2);
  EXPECT_EQ(a.items.size(), 2u);

  EXPECT_EQ(F::ArrayToDynArray(StringArray{5, {u"a", u"", u"c"}}, u"|"), u"a||c");  // any lbound
  EXPECT_EQ(F::ToDynamicString(u"x|y").Value(), u"x|y");
}

}  // namespace
}  // namespace crvlib
