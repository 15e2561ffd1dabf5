// DynamicString members, grouped by member: clamps, errors and their sources,
// root-relative Find, the view notification rules, byte mode, and the
// internal scan-cache rule and element comparison.
#include "crvlib/dynamic_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <vector>

#include "core/thread_state.h"
#include "crvlib/error.h"
#include "dynstring/dynamic_string_impl.h"
#include "tests/testing/string_printer.h"

namespace crvlib {
namespace {

constexpr int32_t kInvalidView = kObjectErrorBase + 1701;

struct Raised {
  int32_t number = 0;
  std::u16string source;
  friend bool operator==(const Raised&, const Raised&) = default;
  friend std::ostream& operator<<(std::ostream& os, const Raised& r) {
    return os << r.number << " from " << String(r.source).ToUtf8();
  }
};

Raised RaisedBy(const std::function<void()>& fn) {
  try {
    fn();
  } catch (const Error& e) {
    return {e.Number(), e.Source().ToU16()};
  }
  return {};
}

Raised Err(int32_t number, std::u16string_view member) {
  return {number, u"CRVLIB.DynamicString::" + std::u16string(member)};
}

DynamicString Make(std::u16string_view text) {
  DynamicString d;
  d.SetValue(String(text));
  return d;
}

String Bytes(std::string_view b) {
  return String::FromBytes(b.data(), b.size());
}

TEST(DynamicString, ViewsFollowEditsBeforeThemAndDieOfEditsInside) {
  DynamicString root = Make(u"Hello World");
  DynamicString world = root.SubString(6, 5);
  EXPECT_EQ(world.Value(), u"World");
  root.Insert(u"Big ", 6);
  EXPECT_EQ(root.Value(), u"Hello Big World");
  EXPECT_EQ(world.Value(), u"World");
  EXPECT_EQ(world.Start(), 10);

  DynamicString orld = world.SubString(1, 4);
  root.Insert(u"!", 12);  // inside "World"
  EXPECT_EQ(RaisedBy([&] { world.Length(); }), Err(kInvalidView, u"ValidateState"));
  EXPECT_EQ(RaisedBy([&] { orld.Length(); }), Err(kInvalidView, u"ValidateState"));
  EXPECT_EQ(root.Value(), u"Hello Big Wo!rld");
}

TEST(DynamicString, EditingAViewEditsTheRoot) {
  DynamicString root = Make(u"Hello World");
  DynamicString world = root.SubString(6, 5);
  world.SetValue(u"There, Earth");
  EXPECT_EQ(root.Value(), u"Hello There, Earth");
  EXPECT_EQ(root.Length(), 18);
  EXPECT_EQ(world.Length(), 12);
  world.SetValue(u"");
  EXPECT_EQ(root.Value(), u"Hello ");
  world.Append(u"you");
  EXPECT_EQ(root.Value(), u"Hello you");
}

TEST(DynamicString, SubStringClampsAndRejectsNegatives) {
  struct Case {
    const char* name;
    std::function<DynamicString(DynamicString&)> make;
    int32_t start_b, length_b;
    Raised error;
  };
  const Case kCases[] = {
      {"inside", [](auto& d) { return d.SubString(2, 2); }, 4, 4, {}},
      {"length clamped", [](auto& d) { return d.SubString(4, 99); }, 8, 4, {}},
      {"start clamped", [](auto& d) { return d.SubString(99, 5); }, 12, 0, {}},
      {"bytes at odd offsets", [](auto& d) { return d.SubStringB(3, 2); }, 3, 2, {}},
      {"byte extremes", [](auto& d) { return d.SubStringB(INT32_MAX, INT32_MAX); }, 12, 0, {}},
      {"negative start", [](auto& d) { return d.SubString(-1, 2); }, 0, 0, Err(5, u"SubStringB")},
      {"negative length", [](auto& d) { return d.SubString(0, -1); }, 0, 0, Err(5, u"SubStringB")},
      {"negative byte start", [](auto& d) { return d.SubStringB(INT32_MIN, 0); }, 0, 0,
       Err(5, u"SubStringB")},
      {"start overflows", [](auto& d) { return d.SubString(1073741824, 0); }, 0, 0,
       Err(6, u"SubString")},
      {"length overflows", [](auto& d) { return d.SubString(0, -1073741825); }, 0, 0,
       Err(6, u"SubString")},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    DynamicString root = Make(u"abcdef");
    DynamicString view;
    EXPECT_EQ(RaisedBy([&] { view = c.make(root); }), c.error);
    if (c.error.number != 0) continue;
    EXPECT_EQ(view.StartB(), c.start_b);
    EXPECT_EQ(view.LengthB(), c.length_b);
    EXPECT_TRUE(view.Parent().Is(root));
  }
  // A view of a view clamps to its parent, not to the root.
  DynamicString root = Make(u"abcdef");
  DynamicString inner = root.SubString(1, 3).SubString(1, 9);
  EXPECT_EQ(inner.Value(), u"cd");
  EXPECT_EQ(inner.Start(), 1);
}

TEST(DynamicString, ExtractCopiesAClampedRange) {
  DynamicString root = Make(u"abcdef");
  DynamicString view = root.SubString(2, 3);  // "cde"
  struct Case {
    const char* name;
    std::function<String()> extract;
    std::u16string_view want;
    Raised error;
  };
  const Case kCases[] = {
      {"defaults", [&] { return root.Extract(); }, u"abcdef", {}},
      {"middle", [&] { return root.Extract(1, 2); }, u"bc", {}},
      {"to the end", [&] { return root.Extract(4); }, u"ef", {}},
      {"past the end", [&] { return root.Extract(9, 1); }, u"", {}},
      {"bytes", [&] { return root.ExtractB(2, 4); }, u"bc", {}},
      {"in a view", [&] { return view.Extract(1, 5); }, u"de", {}},
      {"negative start", [&] { return root.Extract(-1); }, u"", Err(5, u"ExtractB")},
      {"negative length", [&] { return root.ExtractB(0, -1); }, u"", Err(5, u"ExtractB")},
      {"overflowing start", [&] { return root.Extract(INT32_MAX); }, u"", Err(6, u"Extract")},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    String got;
    EXPECT_EQ(RaisedBy([&] { got = c.extract(); }), c.error);
    EXPECT_EQ(got, c.want);
  }
}

TEST(DynamicString, EditsThroughAViewClampToTheView) {
  struct Case {
    const char* name;
    std::function<void(DynamicString&)> edit;  // applied to the view "bcde" of "abcdef"
    std::u16string_view root, view;
    Raised error;
  };
  const Case kCases[] = {
      {"insert", [](auto& v) { v.Insert(u"X", 2); }, u"abcXdef", u"bcXde", {}},
      {"insert before start", [](auto& v) { v.Insert(u"X", -5); }, u"aXbcdef", u"Xbcde", {}},
      {"insert past end", [](auto& v) { v.Insert(u"X", 99); }, u"abcdeXf", u"bcdeX", {}},
      {"append", [](auto& v) { v.Append(u"XY"); }, u"abcdeXYf", u"bcdeXY", {}},
      {"prefix", [](auto& v) { v.Prefix(u"XY"); }, u"aXYbcdef", u"XYbcde", {}},
      {"delete", [](auto& v) { v.Delete(1, 2); }, u"abef", u"be", {}},
      {"delete past end", [](auto& v) { v.Delete(3, 99); }, u"abcdf", u"bcd", {}},
      {"delete nothing", [](auto& v) { v.Delete(2, 0); }, u"abcdef", u"bcde", {}},
      {"delete at end", [](auto& v) { v.Delete(99, 5); }, u"abcdef", u"bcde", {}},
      {"delete from before start", [](auto& v) { v.Delete(-3, 1); }, u"acdef", u"cde", {}},
      {"delete bytes", [](auto& v) { v.DeleteB(2, 4); }, u"abef", u"be", {}},
      {"replace", [](auto& v) { v.Replace(u"XY", 1, 1); }, u"abXYdef", u"bXYde", {}},
      {"replace with defaults", [](auto& v) { v.Replace(u"X"); }, u"aXf", u"X", {}},
      {"replace negative length",
       [](auto& v) { v.Replace(u"X", 2, -4); },
       u"abcXdef",
       u"bcXde",
       {}},
      {"replace past end", [](auto& v) { v.Replace(u"X", 9, 9); }, u"abcdeXf", u"bcdeX", {}},
      {"replace bytes", [](auto& v) { v.ReplaceB(u"Z", 0, 2); }, u"aZcdef", u"Zcde", {}},
      {"set value", [](auto& v) { v.SetValue(u""); }, u"af", u"", {}},
      {"insert overflows", [](auto& v) { v.Insert(u"X", 1073741824); }, u"abcdef", u"bcde",
       Err(6, u"Insert")},
      {"delete overflows", [](auto& v) { v.Delete(0, INT32_MAX); }, u"abcdef", u"bcde",
       Err(6, u"Delete")},
      {"replace overflows", [](auto& v) { v.Replace(u"X", 0, -1073741825); }, u"abcdef", u"bcde",
       Err(6, u"Replace")},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    DynamicString root = Make(u"abcdef");
    DynamicString view = root.SubString(1, 4);
    EXPECT_EQ(RaisedBy([&] { c.edit(view); }), c.error);
    EXPECT_EQ(root.Value(), c.root);
    EXPECT_EQ(view.Value(), c.view);
    EXPECT_EQ(root.Length(), static_cast<int32_t>(c.root.size()));
  }
}

TEST(DynamicString, FindAnswersRootRelativePositions) {
  DynamicString root = Make(u"abcabcABC");
  DynamicString view = root.SubString(3, 6);  // "abcABC"
  struct Case {
    const char* name;
    std::function<int32_t()> find;
    int32_t want;
    Raised error;
  };
  const Case kCases[] = {
      {"first", [&] { return root.Find(u"c"); }, 2, {}},
      {"from a start", [&] { return root.Find(u"c", 3); }, 5, {}},
      {"at position 0", [&] { return root.Find(u"a"); }, 0, {}},
      {"range too short", [&] { return root.Find(u"c", 0, 2); }, -1, {}},
      {"range just long enough", [&] { return root.Find(u"bc", 4, 2); }, 4, {}},
      {"empty value", [&] { return root.Find(u"", 4); }, 4, {}},
      {"case-insensitive", [&] { return root.Find(u"C", 0, 9, vxCaseNotSensitive); }, 2, {}},
      {"missing", [&] { return root.Find(u"x"); }, -1, {}},
      {"negative start", [&] { return root.Find(u"c", -5); }, 2, {}},
      {"start past end", [&] { return root.Find(u"c", 99); }, -1, {}},
      {"zero length", [&] { return root.Find(u"c", 0, 0); }, -1, {}},
      {"view", [&] { return view.Find(u"c"); }, 5, {}},
      {"view, upper case", [&] { return view.Find(u"C"); }, 8, {}},
      {"view, short range", [&] { return view.Find(u"b", 0, 1); }, -1, {}},
      {"view, empty value", [&] { return view.Find(u""); }, 3, {}},
      {"view, bytes", [&] { return view.FindB(u"c"); }, 10, {}},
      {"bad case type", [&] { return root.Find(u"c", 0, 9, vxCaseEnum(3)); }, 0, Err(5, u"Find")},
      {"bad case type, bytes", [&] { return root.FindB(u"c", 0, 9, vxCaseEnum(-1)); }, 0,
       Err(5, u"FindB")},
      {"overflowing start", [&] { return root.Find(u"c", 1073741824); }, 0, Err(6, u"Find")},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    int32_t got = 0;
    EXPECT_EQ(RaisedBy([&] { got = c.find(); }), c.error);
    EXPECT_EQ(got, c.want);
  }
}

TEST(DynamicString, MatchNeverMatches) {
  DynamicString root = Make(u"abc");
  for (const char16_t* pattern : {u"", u"a", u".*", u"abc"}) {
    EXPECT_EQ(root.Match(pattern), -1);
    EXPECT_EQ(root.MatchB(pattern, 1, 3, vxIgnoreCase), -1);
  }
  DynamicString view = root.SubString(0, 2);
  root.Insert(u"x", 1);
  EXPECT_EQ(view.MatchB(u"b"), -1);  // no validity check
  EXPECT_EQ(RaisedBy([&] { view.Match(u"b"); }), Err(kInvalidView, u"ValidateState"));
  EXPECT_EQ(RaisedBy([&] { root.Match(u"b", INT32_MIN); }), Err(6, u"Match"));
}

TEST(DynamicString, ChangeAllReplacesLeftToRightWithoutRescanning) {
  struct Case {
    std::u16string_view text, old_value, new_value;
    vxCaseEnum case_type;
    std::u16string_view want;
  };
  constexpr Case kCases[] = {
      {u"aaa", u"a", u"aa", vxCaseSensitive, u"aaaaaa"},
      {u"abcabc", u"bc", u"", vxCaseSensitive, u"aa"},
      {u"abcabc", u"abc", u"x", vxCaseSensitive, u"xx"},
      {u"aaaa", u"aa", u"b", vxCaseSensitive, u"bb"},  // matches never overlap
      {u"aXaxa", u"x", u"-", vxCaseNotSensitive, u"a-a-a"},
      {u"aXaxa", u"x", u"-", vxCaseSensitive, u"aXa-a"},
      {u"abc", u"z", u"y", vxCaseSensitive, u"abc"},
      {u"", u"z", u"y", vxCaseSensitive, u""},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(String(c.text).ToUtf8() + " " + String(c.old_value).ToUtf8());
    DynamicString d = Make(c.text);
    EXPECT_TRUE(d.ChangeAll(String(c.old_value), String(c.new_value), c.case_type).Is(d));
    EXPECT_EQ(d.Value(), c.want);
  }
  DynamicString d = Make(u"abc");
  EXPECT_EQ(RaisedBy([&] { d.ChangeAll(u"", u"x"); }), Err(5, u"ChangeAll"));
  EXPECT_EQ(RaisedBy([&] { d.ChangeAll(u"b", u"x", vxCaseEnum(5)); }), Err(5, u"ChangeAll"));
  EXPECT_EQ(d.Value(), u"abc");
}

TEST(DynamicString, ChangeAllOnAViewAppliesRootOffsetsInTheView) {
  DynamicString root = Make(u"xxab ab");
  DynamicString view = root.SubString(2, 5);  // "ab ab"
  view.ChangeAll(u"ab", u"Z");
  // The first hit is at root offset 2, which in the view is " a".
  EXPECT_EQ(view.Value(), u"abZb");
  EXPECT_EQ(root.Value(), u"xxabZb");
}

TEST(DynamicString, CompareCrossesItsOptions) {
  struct Case {
    std::u16string_view value, other;
    vxCaseEnum case_type;
    vxJustificationEnum justification;
    int16_t want;
  };
  constexpr Case kCases[] = {
      {u"abc", u"ABC", vxCaseSensitive, vxLeftJustify, 0},  // defaults: numeric, then text
      {u"10", u"9", vxCaseSensitive, vxLeftJustify, 1},
      {u"9", u"10", vxCaseSensitive, vxLeftJustify, -1},
      {u"abc", u"9", vxCaseSensitive, vxLeftJustify, 1},          // no number: text, not 0 vs 9
      {u"1.0", u"1", vxCaseSensitive, vxLeftJustify, 1},          // numeric tie: text
      {u"10", u"9", vxCaseNotSensitive, vxLeftJustify, -1},       // text only
      {u"abc", u"ABC", vxCaseSensitive, vxRightJustify, 1},       // binary compare
      {u"1", u"2", vxCaseSensitive, vxJustificationEnum(3), -1},  // numbers decide first
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(String(c.value).ToUtf8() + " vs " + String(c.other).ToUtf8());
    EXPECT_EQ(Make(c.value).Compare(String(c.other), c.case_type, c.justification), c.want);
  }
  EXPECT_EQ(RaisedBy([] { Make(u"a").Compare(u"b", vxCaseSensitive, vxJustificationEnum(3)); }),
            Err(5, u"Compare"));
}

TEST(DynamicString, CompareWidensBytesInByteMode) {
  DynamicString d;
  d.SetValue(Bytes("abc"));  // three bytes: byte mode
  ASSERT_TRUE(d.Binary());
  // "abc" against the two bytes "ab": widened, the longer one is greater.
  EXPECT_EQ(d.Compare(u"\u6261", vxCaseNotSensitive, vxRightJustify), 1);
  EXPECT_EQ(d.Compare(Bytes("abc"), vxCaseNotSensitive, vxRightJustify), 0);
}

TEST(DynamicString, ByteModeStopsTheCharacterMembers) {
  DynamicString root = Make(u"abcdef");
  DynamicString odd = root.SubStringB(3, 2);
  EXPECT_FALSE(root.Binary());  // making the view reads nothing
  odd.Value();
  EXPECT_TRUE(root.Binary());
  EXPECT_TRUE(odd.Binary());
  EXPECT_EQ(odd.LengthB(), 2);

  using Member = std::pair<const char16_t*, std::function<void()>>;
  const Member kCharacterMembers[] = {
      {u"Start", [&] { odd.Start(); }},
      {u"Length", [&] { odd.Length(); }},
      {u"SubString", [&] { root.SubString(0, 1); }},
      {u"Extract", [&] { root.Extract(); }},
      {u"Insert", [&] { root.Insert(u"x"); }},
      {u"Delete", [&] { root.Delete(0, 1); }},
      {u"Replace", [&] { root.Replace(u"x"); }},
      {u"Find", [&] { root.Find(u"x"); }},
      {u"Match", [&] { root.Match(u"x"); }},
  };
  for (const auto& [name, call] : kCharacterMembers) {
    SCOPED_TRACE(String(name).ToUtf8());
    EXPECT_EQ(RaisedBy(call), Err(6, name));
  }
  EXPECT_EQ(root.Value(), u"abcdef");
  // The byte members, Append and Prefix go on working.
  root.Append(u"g");
  root.Prefix(u"<");
  root.InsertB(Bytes("!"), 3);
  EXPECT_EQ(root.LengthB(), 17);
  // The lone byte went inside "a", so every unit after it sits at an odd
  // offset; byte-wise search still finds "g".
  EXPECT_EQ(root.FindB(u"g"), 15);
}

TEST(DynamicString, ClearingBinaryNeedsAnEvenText) {
  DynamicString root = Make(u"abc");
  root.DeleteB(1, 2);  // the gap now sits at an odd byte
  EXPECT_EQ(RaisedBy([&] { root.SetBinary(false); }), Err(380, u"Binary"));
  EXPECT_TRUE(root.Binary());
  root.SetValue(u"xyz");  // replacing the whole text starts afresh
  EXPECT_FALSE(root.Binary());
  root.SetBinary(true);
  root.SetBinary(false);
  EXPECT_EQ(root.Length(), 3);
}

TEST(DynamicString, InvalidViewsRefuseAllButAFewMembers) {
  DynamicString root = Make(u"abcdef");
  DynamicString view = root.SubString(1, 3);
  DynamicString child = view.SubString(0, 1);
  root.Insert(u"x", 2);
  ASSERT_TRUE(view.impl().Invalid());
  ASSERT_TRUE(child.impl().Invalid());

  const std::function<void()> kRefused[] = {
      [&] { view.SetValue(u"x"); },
      [&] { view.Start(); },
      [&] { view.StartB(); },
      [&] { view.Length(); },
      [&] { view.LengthB(); },
      [&] { view.Binary(); },
      [&] { view.Parent(); },
      [&] { view.SubString(0, 1); },
      [&] { view.SubStringB(0, 1); },
      [&] { view.Extract(); },
      [&] { view.ExtractB(); },
      [&] { view.Append(u"x"); },
      [&] { view.Prefix(u"x"); },
      [&] { view.Insert(u"x"); },
      [&] { view.InsertB(u"x"); },
      [&] { view.Delete(0, 1); },
      [&] { view.DeleteB(0, 1); },
      [&] { view.Replace(u"x"); },
      [&] { view.ReplaceB(u"x"); },
      [&] { view.Find(u"x"); },
      [&] { view.FindB(u"x"); },
      [&] { view.Match(u"x"); },
      [&] { view.ChangeAll(u"a", u"b"); },
      [&] { view.Compare(u"x"); },
      [&] { child.Length(); },
  };
  for (size_t i = 0; i < std::size(kRefused); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(RaisedBy(kRefused[i]), Err(kInvalidView, u"ValidateState"));
  }
  try {
    view.Length();
  } catch (const Error& e) {
    EXPECT_EQ(e.Description(), internal::State().catalogue->GetMessage(1701, {}));
  }
  EXPECT_EQ(root.Value(), u"abxcdef");

  EXPECT_EQ(view.Value(), u"bxc");  // its stale range, read as it is
  EXPECT_EQ(view.MatchB(u"x"), -1);
  EXPECT_EQ(view.Clone().Value(), u"bxc");
  view.SetBinary(true);
  EXPECT_TRUE(root.Binary());
}

TEST(DynamicString, ParentAndClone) {
  DynamicString root = Make(u"abcdef");
  EXPECT_TRUE(root.Parent().IsNothing());
  DynamicString view = root.SubString(2, 2);
  EXPECT_TRUE(view.Parent().Is(root));
  EXPECT_TRUE(view.SubString(0, 1).Parent().Is(view));

  DynamicString copy = view.Clone();
  EXPECT_TRUE(copy.Parent().IsNothing());
  copy.Append(u"!");
  EXPECT_EQ(copy.Value(), u"cd!");
  EXPECT_EQ(root.Value(), u"abcdef");

  DynamicString nothing = root.Parent();
  EXPECT_EQ(RaisedBy([&] { nothing.Value(); }).number, 91);
}

// Each row edits the root "0123456789" that has one child view and states
// where the view ends up, or that it is invalid (start -1).
TEST(DynamicString, EditsMoveLeaveOrInvalidateViews) {
  struct Case {
    const char* name;
    int32_t view_start, view_length;
    std::u16string_view value;
    int32_t edit_start, edit_length;
    int32_t want_start;
  };
  constexpr Case kCases[] = {
      {"insert at the view's start moves it", 2, 3, u"X", 2, 0, 3},
      {"insert at the view's end leaves it", 2, 3, u"X", 5, 0, 2},
      {"insert inside invalidates", 2, 3, u"X", 3, 0, -1},
      {"empty insert inside invalidates too", 2, 3, u"", 3, 0, -1},
      {"delete before moves back", 2, 3, u"", 0, 2, 0},
      {"delete overlapping the start", 2, 3, u"", 1, 2, -1},
      {"delete after leaves it", 2, 3, u"", 5, 2, 2},
      {"replace exactly the view", 2, 3, u"XYZ", 2, 3, -1},
      {"replace before, growing", 2, 3, u"XYZ", 0, 1, 4},
      {"empty view at an insertion point stays", 2, 0, u"X", 2, 0, 2},
      {"empty view inside a deletion", 2, 0, u"", 1, 2, -1},
      {"empty view at a deletion's end moves", 2, 0, u"", 0, 2, 0},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    DynamicString root = Make(u"0123456789");
    DynamicString view = root.SubString(c.view_start, c.view_length);
    const String before = view.Value();
    root.Replace(String(c.value), c.edit_start, c.edit_length);
    if (c.want_start < 0) {
      EXPECT_TRUE(view.impl().Invalid());
      continue;
    }
    ASSERT_FALSE(view.impl().Invalid());
    EXPECT_EQ(view.Start(), c.want_start);
    EXPECT_EQ(view.Value(), before);
  }
}

TEST(DynamicString, AParentSeesTheWholeEditedChildAsTheEdit) {
  // a = "234567" with b = "34" inside it; c and d are siblings of a.
  DynamicString root = Make(u"0123456789");
  DynamicString a = root.SubString(2, 6);
  DynamicString b = a.SubString(1, 2);
  DynamicString c = root.SubString(5, 3);  // "567": overlaps a, not b
  DynamicString d = root.SubString(3, 3);  // "345": overlaps b
  DynamicString e = a.SubString(3, 2);     // "56": a sibling of b
  b.Insert(u"x", 0);                       // at the start of b and of d
  EXPECT_EQ(root.Value(), u"012x3456789");
  EXPECT_EQ(a.Value(), u"2x34567");
  EXPECT_EQ(b.Value(), u"x34");
  // Beside a, the edited range is all of b's old range [3, 5): c lies after
  // it and moves; d overlaps it and dies, though the insertion was at its
  // start. Beside b, the range is the insertion point itself: e moves.
  EXPECT_EQ(c.Start(), 6);
  EXPECT_EQ(c.Value(), u"567");
  EXPECT_TRUE(d.impl().Invalid());
  EXPECT_EQ(e.Start(), 4);
  EXPECT_EQ(e.Value(), u"56");
}

// ---- Internal operations ----

using internal::DynamicStringImpl;
using internal::ScanCache;

TEST(DynamicStringImpl, EditsKeepOrResetTheScanCache) {
  struct Case {
    const char* name;
    int32_t edit_start, edit_length;  // a replacement by "X" in the root
    ScanCache want;
  };
  // "a|bb|c": element 2 ("bb") cached at bytes 4..7, element 1 before it.
  const ScanCache cached{u"|", false, 2, 4, 4, 1, 0, 2};
  const ScanCache reset{u"|", false, 0, 0, 0, 0, 0, 0};
  const Case kCases[] = {
      {"at the cached start: back up one", 4, 0, {u"|", false, 1, 0, 2, 1, 0, 2}},
      {"inside the element", 6, 0, reset},
      {"inside the delimiter after it", 8, 2, reset},
      {"after the delimiter", 10, 0, cached},
      {"before the element", 0, 2, reset},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    DynamicString root = Make(u"a|bb|c");
    DynamicStringImpl& d = root.impl();
    d.scan() = cached;
    root.ReplaceB(u"X", c.edit_start, c.edit_length);
    const ScanCache& s = d.scan();
    EXPECT_EQ(s.ScanDelimiter, c.want.ScanDelimiter);
    EXPECT_EQ(s.ScanAtEnd, c.want.ScanAtEnd);
    EXPECT_EQ(s.ScanElement, c.want.ScanElement);
    EXPECT_EQ(s.ScanStart, c.want.ScanStart);
    EXPECT_EQ(s.ScanLength, c.want.ScanLength);
    EXPECT_EQ(s.ScanPrevElement, c.want.ScanPrevElement);
    EXPECT_EQ(s.ScanPrevStart, c.want.ScanPrevStart);
    EXPECT_EQ(s.ScanPrevLength, c.want.ScanPrevLength);
  }
}

TEST(DynamicStringImpl, AParentsCacheSeesTheEditAtTheChildsStart) {
  DynamicString root = Make(u"a|bb|c");
  root.impl().scan() = ScanCache{u"|", false, 2, 4, 4, 1, 0, 2};
  DynamicString bb = root.SubStringB(4, 4);
  bb.InsertB(u"x", 2);  // inside bb; the root sees an edit at bb's start
  EXPECT_EQ(root.impl().scan().ScanElement, 1);

  DynamicString empty = Make(u"ab");
  empty.impl().scan() = ScanCache{u"|", false, 1, 0, 4, 0, 0, 0};
  empty.SetValue(u"");
  EXPECT_EQ(empty.impl().scan().ScanElement, 0);
  EXPECT_TRUE(empty.impl().scan().ScanAtEnd);

  DynamicString fresh = Make(u"ab");  // nothing cached: reset after each edit
  EXPECT_FALSE(fresh.impl().scan().ScanAtEnd);
  fresh.Delete(0, 2);
  EXPECT_TRUE(fresh.impl().scan().ScanAtEnd);
}

TEST(DynamicStringImpl, CompareElementsTriesNumbersThenText) {
  DynamicString d;
  DynamicStringImpl& impl = d.impl();
  struct Case {
    std::u16string_view a, b;
    int32_t justification, case_type;
    int16_t want;
  };
  constexpr Case kCases[] = {
      {u"10", u"9", vxRightJustify, vxCaseSensitive, 1},
      {u"10", u"9", vxLeftJustify, vxCaseSensitive, -1},
      {u"1,000", u"999", vxRightJustify, vxCaseSensitive, 1},
      {u"x", u"5", vxRightJustify, vxCaseSensitive, 1},  // a non-number is not zero
      {u"-1", u"x", vxRightJustify, vxCaseSensitive, -1},
      {u"2.50", u"2.5", vxRightJustify, vxCaseSensitive, 1},  // tie: text decides
      {u"B", u"a", vxRightJustify, vxCaseNotSensitive, 1},
      {u"B", u"a", vxRightJustify, vxCaseSensitive, -1},
      {u"b", u"a", 7, vxCaseSensitive, 1},  // other justifications: text only
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(String(c.a).ToUtf8() + " vs " + String(c.b).ToUtf8());
    EXPECT_EQ(impl.CompareElements(String(c.a), String(c.b), c.justification, c.case_type), c.want);
  }
  EXPECT_EQ(RaisedBy([&] { impl.CompareElements(u"a", u"b", 0, 3); }).number, 5);
}

TEST(DynamicString, DeepChainsNeitherRecurseNorLeak) {
  constexpr int kDepth = 100000;
  std::vector<DynamicString> chain;
  chain.reserve(kDepth);
  chain.push_back(Make(u"0123456789"));
  for (int i = 1; i < kDepth; ++i) chain.push_back(chain.back().SubStringB(0, 20));
  std::weak_ptr<DynamicStringImpl> root = chain.front().impl().weak_from_this();

  chain.back().Append(u"!");  // notifies every level
  EXPECT_EQ(chain.front().Value(), u"0123456789!");
  EXPECT_EQ(chain[kDepth / 2].Length(), 11);
  chain.front().InsertB(u"?", 2);  // cuts into every view
  EXPECT_TRUE(chain.back().impl().Invalid());

  DynamicString deepest = chain.back();
  chain.clear();  // the deepest view keeps the whole chain alive
  EXPECT_FALSE(root.expired());
  deepest = DynamicString();  // releases the chain, one level at a time
  EXPECT_TRUE(root.expired());
}

}  // namespace
}  // namespace crvlib
