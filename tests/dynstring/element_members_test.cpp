// DynamicString's element members: what the scan cache makes visible, live
// views, errors with the member's source, and validity.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "crvlib/dynamic_string.h"
#include "crvlib/error.h"

namespace crvlib {
namespace {

DynamicString Holding(const char16_t* value) {
  DynamicString d;
  d.SetValue(value);
  return d;
}

std::u16string Num(int32_t n) {
  return String::FromUtf8(std::to_string(n)).ToU16();
}

std::string SourceOf(const std::function<void()>& fn) {
  try {
    fn();
  } catch (const Error& e) {
    return std::to_string(e.Number()) + " " + e.Source().ToUtf8();
  }
  return "none";
}

TEST(ElementMembers, LastElementDependsOnTheCache) {
  DynamicString d = Holding(u"a|b");
  bool eof = false;
  DynamicString last = d.ExtractElement(u"|", -1, eof);
  EXPECT_EQ(last.Value(), u"b");
  EXPECT_TRUE(eof);  // -1 always reports the end
  EXPECT_EQ(d.CountElements(u"|"), 2);
  DynamicString end = d.ExtractElement(u"|", -1);
  EXPECT_EQ(end.Value(), u"");  // the cache knows the end: an empty view there
  EXPECT_EQ(end.StartB(), 6);

  eof = false;
  EXPECT_EQ(d.ExtractElement(u"|", 1, eof).Value(), u"a");
  EXPECT_FALSE(eof);
  EXPECT_EQ(d.ExtractElement(u"|", 5, eof).Value(), u"");
  EXPECT_TRUE(eof);
  d.ExtractElement(u"|", 1, eof);
  EXPECT_TRUE(eof);  // never cleared
}

TEST(ElementMembers, PositionBelowMinusOneInsertsDependOnTheCache) {
  DynamicString fresh = Holding(u"a|b");
  EXPECT_EQ(fresh.InsertElement(u"x", u"|", -3).Value(), u"a|x|b");
  DynamicString counted = Holding(u"a|b");
  counted.CountElements(u"|");
  EXPECT_EQ(counted.InsertElement(u"x", u"|", -3).Value(), u"a|bx");
  EXPECT_EQ(Holding(u"a|").InsertElement(u"x", u"|", -3).Value(), u"a|x");
  EXPECT_EQ(SourceOf([] { Holding(u"a|b").InsertElement(u"x", u"", -3); }),
            "5 CRVLIB.DynamicString::Scan");
}

TEST(ElementMembers, ViewsAreLiveAndEditsKeepTheWalk) {
  DynamicString d = Holding(u"aa|bb|cc");
  DynamicString b = d.ExtractElement(u"|", 2);
  d.ReplaceElement(u"X", u"|", 1);
  EXPECT_EQ(b.Value(), u"bb");
  EXPECT_EQ(b.Start(), 2);
  // Editing each element in turn stays on the walk: the edit at the cached
  // element's start backs the cache up by one.
  for (int32_t i = 1; i <= 3; ++i)
    d.ReplaceElement(u"<" + d.ExtractElement(u"|", i).Value().ToU16() + u">", u"|", i);
  EXPECT_EQ(d.Value(), u"<X>|<bb>|<cc>");
  EXPECT_EQ(d.ExtractElement(u"|", 0).Value(), u"<X>|<bb>|<cc>");
}

TEST(ElementMembers, TableOfResults) {
  struct Case {
    const char16_t* value;
    std::function<std::u16string(DynamicString&)> op;
    const char16_t* want;
  };
  const Case kCases[] = {
      {u"", [](DynamicString& d) { return Num(d.CountElements(u"|")); }, u"0"},
      {u"a||b", [](DynamicString& d) { return Num(d.CountElements(u"|")); }, u"3"},
      {u"a|b", [](DynamicString& d) { return d.InsertElement(u"x", u"|", 4).Value().ToU16(); },
       u"a|b||x"},
      {u"a|b", [](DynamicString& d) { return d.InsertElement(u"x", u"|", 2).Value().ToU16(); },
       u"a|x|b"},
      {u"a|b|c", [](DynamicString& d) { return d.DeleteElement(u"|", 3).Value().ToU16(); }, u"a|b"},
      {u"2|9",
       [](DynamicString& d) {
         const int32_t p = d.InsertElementSorted(u"10", u"|", vxAscending, vxRightJustify);
         return Num(p) + u":" + d.Value().ToU16();
       },
       u"3:2|9|10"},
      {u"2|9",
       [](DynamicString& d) {
         const int32_t p = d.InsertElementSorted(u"10", u"|");
         return Num(p) + u":" + d.Value().ToU16();
       },
       u"1:10|2|9"},
      {u"b|a|c",
       [](DynamicString& d) { return d.SortElements(u"|", vxDescending).Value().ToU16(); },
       u"c|b|a"},
      {u"a|b", [](DynamicString& d) { return Num(d.LocateElement(u"b", u"|")); }, u"2"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(String(c.value));
    DynamicString d = Holding(c.value);
    EXPECT_EQ(c.op(d), c.want);
  }
}

TEST(ElementMembers, ErrorsAndInvalidViews) {
  EXPECT_EQ(SourceOf([] { Holding(u"a").ReplaceElement(u"x", u"|", -1); }),
            "5 CRVLIB.DynamicString::ReplaceElement");
  EXPECT_EQ(SourceOf([] { Holding(u"a").LocateElement(u"b", u"|", 0, vxRegexMatch); }),
            "5 CRVLIB.DynamicString::LocateElement");
  EXPECT_EQ(SourceOf([] { Holding(u"a").ExtractElement(u"|", -2); }),
            "5 CRVLIB.DynamicString::ExtractElement");
  EXPECT_EQ(SourceOf([] { Holding(u"a").DeleteElement(u"|", -2); }),
            "5 CRVLIB.DynamicString::DeleteElement");
  DynamicString d = Holding(u"abc|def");
  DynamicString v = d.SubString(1, 4);
  d.Insert(u"x", 2);  // cuts into the view
  EXPECT_EQ(SourceOf([&] { v.CountElements(u"|"); }),
            std::to_string(kObjectErrorBase + 1701) + " CRVLIB.DynamicString::ValidateState");
  EXPECT_EQ(v.MatchElement(u"x", u"|"), 0);  // no check at all
}

}  // namespace
}  // namespace crvlib
