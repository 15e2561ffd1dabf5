// Functions' element routines in tables: results, errors and their sources,
// and the edges of positions. The sorts are checked at random against the
// literal insertion sort in dynstring/element_engine_test.cpp.
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>

#include "crvlib/error.h"
#include "crvlib/functions.h"

namespace crvlib {
namespace {

using F = Functions;

struct Raised {
  int32_t number = 0;
  std::string source;
};

Raised RaisedBy(const std::function<void()>& fn) {
  try {
    fn();
  } catch (const Error& e) {
    return {e.Number(), e.Source().ToUtf8()};
  }
  return {};
}

TEST(FunctionsElements, ExtractAndCount) {
  struct Case {
    const char16_t *array, *delim;
    int32_t pos;
    const char16_t* want;
  };
  const Case kCases[] = {
      {u"a|b|c", u"|", 2, u"b"},
      {u"a|b|c", u"|", 3, u"c"},
      {u"a|b|c", u"|", 4, u""},
      {u"a|b|c", u"|", -1, u"c"},
      {u"a|b|c", u"|", 0, u"a|b|c"},
      {u"a|", u"|", 2, u""},
      {u"a|", u"|", 3, u""},
      {u"", u"|", 1, u""},
      {u"", u"|", -1, u""},
      {u"aXYbXYc", u"XY", 2, u"b"},
      {u"aXb", u"x", 1, u"aXb"},
      {u"a|||b", u"||", 2, u"|b"},
      {u"a|b", u"", 0,
       u"a|b"},  // -1 is taken as INT_MAX, which the scan never reaches: the last element
      // is reported; INT_MAX - 1 is the scan's own "last" target.
      {u"a|b", u"|", INT_MAX, u"b"},
      {u"a|b|c", u"|", INT_MAX - 1, u"c"},
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

TEST(FunctionsElements, Editing) {
  struct Case {
    char op;  // Insert, Delete, Replace
    const char16_t* array;
    int32_t pos;
    const char16_t* want;
  };
  const Case kCases[] = {
      {'I', u"a|b|c", 0, u"x|a|b|c"},
      {'I', u"a|b|c", 1, u"x|a|b|c"},
      {'I', u"a|b|c", 2, u"a|x|b|c"},
      {'I', u"a|b|c", 4, u"a|b|c|x"},
      {'I', u"a|b|c", 6, u"a|b|c|||x"},
      {'I', u"a|b|c", -1, u"a|b|c|x"},
      {'I', u"", -1, u"x"},
      {'I', u"", 3, u"||x"},
      {'I', u"a|", 2, u"a|x"},
      {'I', u"a|b", -3, u"a|x|b"},
      {'I', u"a|", -3, u"a|x"},
      {'I', u"a|b", 4, u"a|b||x"},
      {'D', u"a|b|c", 1, u"b|c"},
      {'D', u"a|b|c", 2, u"a|c"},
      {'D', u"a|b|c", -1, u"a|b"},
      {'D', u"a|b|c", 4, u"a|b|c"},
      {'D', u"a|b|c", 0, u""},
      {'D', u"a", 1, u""},
      {'D', u"|b", 1, u"b"},
      {'D', u"a|", 2, u"a"},
      {'D', u"", -1, u""},
      {'R', u"a|b|c", 2, u"a|x|c"},
      {'R', u"a|b|c", 5, u"a|b|c||x"},
      {'R', u"a|b|c", 0, u"x"},
      {'R', u"", 1, u"x"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(::testing::Message() << c.op << " " << String(c.array) << " @" << c.pos);
    const String got = c.op == 'I'   ? F::InsertElement(c.array, u"|", c.pos, u"x")
                       : c.op == 'D' ? F::DeleteElement(c.array, u"|", c.pos)
                                     : F::ReplaceElement(c.array, u"|", c.pos, u"x");
    EXPECT_EQ(got, c.want);
  }
  EXPECT_EQ(F::ChangeDelimiter(u"a|b|c", u"|", u";"), u"a;b;c");
  EXPECT_EQ(F::ChangeDelimiter(u"a|b|c", u"|", u"||"), u"a||b||c");
  EXPECT_EQ(F::ChangeDelimiter(u"a|b|c", u"", u";"), u"a|b|c");
  EXPECT_EQ(F::ChangeDelimiter(u"aXbxc", u"x", u";"), u"aXb;c");
  EXPECT_EQ(F::InsertElement(u"a|b", u"", 1, u"x"), u"xa|b");  // no scan needed
}

TEST(FunctionsElements, ErrorsCarryTheRoutineSource) {
  struct Case {
    std::function<void()> call;
    int32_t number;
    const char* source;
  };
  const Case kCases[] = {
      {[] { F::ExtractElement(u"a|b", u"|", -2); }, 5, "CRVLIB.Functions::ExtractElement"},
      {[] { F::ExtractElement(u"a|b", u"", 1); }, 5, "CRVLIB.Functions::ExtractElement"},
      {[] { F::ExtractElement(u"a|b", u"|", INT_MIN); }, 5, "CRVLIB.Functions::ExtractElement"},
      {[] { F::DeleteElement(u"a|b", u"|", INT_MIN); }, 5, "CRVLIB.Functions::DeleteElement"},
      {[] { F::CountDelimiters(u"a", u""); }, 5, "CRVLIB.Functions::CountDelimiters"},
      {[] { F::DeleteElement(u"a|b", u"|", -2); }, 5, "CRVLIB.Functions::DeleteElement"},
      {[] { F::ReplaceElement(u"a|b", u"|", -1, u"x"); }, 5, "CRVLIB.Functions::ReplaceElement"},
      {[] { F::InsertElement(u"a|b", u"", -2, u"x"); }, 5, "CRVLIB.Functions::InsertElement"},
      {[] { F::InsertElement(u"a", u"|", INT_MAX, u"x"); }, 6, "CRVLIB.Functions::InsertElement"},
      {[] { F::LocateElement(u"a|b", u"b", u"|", -1); }, 5, "CRVLIB.Functions::LocateElement"},
      {[] { F::LocateElement(u"a|b", u"b", u"|", 0, vxRegexMatch); }, 5,
       "CRVLIB.Functions::LocateElement"},
      {[] { F::SortElements(u"", u""); }, 5, "CRVLIB.Functions::SortElements"},
      {[] {
         StringArray a;
         F::DynArrayToArray(u"", u"|", a);
       },
       9, "CRVLIB.Functions::DynArrayToArray"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.source);
    const Raised r = RaisedBy(c.call);
    EXPECT_EQ(r.number, c.number);
    EXPECT_EQ(r.source, c.source);
  }
}

TEST(FunctionsElements, Locate) {
  struct Case {
    const char16_t *array, *find;
    int32_t pos, type, case_type, want;
  };
  const Case kCases[] = {
      {u"a|b|c", u"b", 0, 0, 1, 2},
      {u"a|b|c", u"b", 3, 0, 1, 0},
      {u"a|b|c", u"b", 2, 0, 1, 2},
      {u"Apple|Banana", u"banana", 1, 0, 0, 2},
      {u"Apple|Banana", u"banana", 1, 0, 1, 0},
      {u"Apple|Banana", u"Ban", 1, 1, 1, 2},
      {u"Apple|Banana", u"an", 1, 1, 1, 0},
      {u"Apple|Banana", u"na", 1, 2, 1, 2},
      {u"Apple|Banana", u"ppl", 1, 2, 1, 0},
      {u"Apple|Banana", u"nan", 1, 3, 1, 2},
      {u"Apple|Banana", u"xyz", 1, 3, 1, 0},
      {u"a||c", u"", 1, 0, 1, 2},
      {u"a||c", u"", 2, 3, 1, 3},
      {u"a||c", u"", 1, 1, 1, 1},
      {u"", u"b", 1, 4, 1, 0},
      {u"", u"", 1, 0, 1, 0},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(::testing::Message()
                 << String(c.array) << " " << String(c.find) << " type " << c.type);
    EXPECT_EQ(F::LocateElement(c.array, c.find, u"|", c.pos, vxMatchingEnum(c.type),
                               vxCaseEnum(c.case_type)),
              c.want);
  }
  EXPECT_EQ(F::MatchElement(u"a|b", u"[", u"", -5), 0);
}

TEST(FunctionsElements, SortingAndSortedInsertion) {
  String s = u"a|c";
  EXPECT_EQ(F::InsertSorted(s, u"|", u"b"), 2);
  EXPECT_EQ(s, u"a|b|c");
  s = u"a|b";
  EXPECT_EQ(
      F::InsertSorted(s, u"|", u"b", vxAscending, vxLeftJustify, vxCaseSensitive, vxNoDuplicates),
      0);
  EXPECT_EQ(s, u"a|b");
  EXPECT_EQ(F::InsertSorted(s, u"|", u"b"), 3);  // ties go after
  EXPECT_EQ(s, u"a|b|b");
  s = u"";
  EXPECT_EQ(F::InsertSorted(s, u"", u"x"), 1);
  EXPECT_EQ(s, u"x");
  s = u"c|a";
  EXPECT_EQ(F::InsertSorted(s, u"|", u"b", vxDescending), 2);
  EXPECT_EQ(s, u"c|b|a");
  s = u"a|b";
  EXPECT_EQ(RaisedBy([&] { F::InsertSorted(s, u"", u"x"); }).number, 5);
  EXPECT_EQ(s, u"a|b");  // not written back on an error

  struct Case {
    const char16_t* array;
    int32_t order, just, case_type;
    const char16_t* want;
  };
  const Case kCases[] = {
      {u"10|9|100", 0, 0, 1, u"10|100|9"}, {u"10|9|100", 0, 1, 1, u"9|10|100"},
      {u"b|10|a|9", 0, 1, 1, u"9|10|a|b"}, {u"b|A|a", 0, 0, 0, u"A|a|b"},
      {u"b|A|a", 0, 0, 1, u"A|a|b"},       {u"|b|a", 0, 0, 1, u"a|b"},
      {u"b||a", 0, 0, 1, u"|a|b"},         {u"", 0, 0, 1, u""},
      {u"b||a", 1, 0, 1, u"b|a"},          {u"a|b|", 1, 0, 1, u"b|a|"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(::testing::Message() << String(c.array) << " order " << c.order);
    EXPECT_EQ(F::SortElements(c.array, u"|", vxSortOrderEnum(c.order), vxJustificationEnum(c.just),
                              vxCaseEnum(c.case_type)),
              c.want);
  }
}

TEST(FunctionsElements, ArrayConversions) {
  StringArray a;
  EXPECT_EQ(F::DynArrayToArray(u"a|b|c", u"|", a, vxOneBased), 3);
  EXPECT_EQ(a, (StringArray{1, {u"a", u"b", u"c"}}));
  EXPECT_EQ(F::DynArrayToArray(u"a|b|c", u"|", a, vxZeroBased), 3);
  EXPECT_EQ(a, (StringArray{0, {u"a", u"b", u"c"}}));
  EXPECT_EQ(F::DynArrayToArray(u"a|", u"|", a, vxArrayBaseEnum(7)), 2);
  EXPECT_EQ(a, (StringArray{0, {u"a", u""}}));  // other bases end up zero-based
  EXPECT_EQ(RaisedBy([&] { F::DynArrayToArray(u"a|b", u"|", a, vxArrayBaseEnum(INT_MAX)); }).number,
            6);  // the upper bound overflows
  EXPECT_EQ(a, (StringArray{0, {u"a", u""}}));
  // A one-byte delimiter: the count splits the bytes ("a" and "\0b"), the
  // runtime's Split sees no whole character to split at. Regression: the
  // Split searched for an empty delimiter and ran out of memory.
  const String bar_byte = String::FromBytes("|", 1);
  EXPECT_EQ(F::DynArrayToArray(u"a|b", bar_byte, a), 2);
  EXPECT_EQ(a, (StringArray{0, {u"a|b"}}));
  EXPECT_EQ(F::DynArrayToArray(u"a|b", bar_byte, a, vxOneBased), 2);
  EXPECT_EQ(a.items.size(), 2u);

  EXPECT_EQ(F::ArrayToDynArray(StringArray{0, {u"a", u"b"}}, u"|"), u"a|b");
  EXPECT_EQ(F::ArrayToDynArray(StringArray{0, {u""}}, u"|"), u"");
  EXPECT_EQ(F::ArrayToDynArray(StringArray{0, {u"", u"b"}}, u"|"), u"b");
  EXPECT_EQ(F::ArrayToDynArray(StringArray{0, {u"a", u""}}, u"|"), u"a|");
  EXPECT_EQ(F::ArrayToDynArray(StringArray{5, {u"a", u"", u"c"}}, u"|"), u"a||c");
  EXPECT_EQ(F::ArrayToDynArray(StringArray{0, {u"a", u"b"}}, u""), u"ab");
  EXPECT_EQ(F::ToDynamicString(u"x|y").Value(), u"x|y");
}

}  // namespace
}  // namespace crvlib
