// DynamicString members in tables (the element members here only as they
// forward, see the cache and raise; their engine is checked against naive
// twins in element_engine_test.cpp), then byte mode, invalid views, the
// scan-cache rule and deep families. Edits, clamps, Find and how views
// follow or die of edits are driven at random against a model
// (dynamic_string_model_test.cpp); the tables here hold what a model run
// does not see: error sources, byte members, Extract, Match, Compare.
#include "crvlib/dynamic_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "dynstring/dynamic_string_impl.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

using D = DynamicString;
constexpr int32_t kInvalidView = -2147219803;  // vxInvalidDynamicString on the object-error base

Raised Err(int32_t number, std::u16string_view member) {
  return {number, u"CRVLIB.DynamicString::" + std::u16string(member)};
}

D Make(std::u16string_view text) {
  D d;
  d.SetValue(String(text));
  return d;
}

String Bytes(std::string_view b) {
  return String::FromBytes(b.data(), b.size());
}

// A call on a root, its result compared as text: numbers in decimal, a view
// as "StartB LengthB Value", and for an edit the root's value afterwards.
struct Call {
  template <class F>
  Call(F f)  // NOLINT: rows are written as bare lambdas
      : fn([f](D& root) -> std::u16string {
          using R = decltype(f(root));
          if constexpr (std::is_void_v<R>) {
            f(root);
            return root.Value().ToU16();
          } else if constexpr (std::is_same_v<R, String>) {
            return f(root).ToU16();
          } else if constexpr (std::is_same_v<R, D>) {
            D v = f(root);
            return Ascii(std::to_string(v.StartB()) + " " + std::to_string(v.LengthB()) + " ") +
                   v.Value().ToU16();
          } else {
            return Ascii(std::to_string(f(root)));
          }
        }) {}
  static std::u16string Ascii(const std::string& s) { return {s.begin(), s.end()}; }
  std::function<std::u16string(D&)> fn;
};

struct Case {
  const char* name;
  std::u16string_view text;
  Call call;
  std::u16string_view want;  // "" when an error is expected
  Raised error = {};
};

void RunCases(std::span<const Case> cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    D root = Make(c.text);
    std::u16string got;
    EXPECT_EQ(RaisedBy([&] { got = c.call.fn(root); }), c.error);
    EXPECT_EQ(got, c.want);
    EXPECT_TRUE(c.error.number == 0 || root.Value() == c.text);  // errors change nothing
  }
}

TEST(DynamicString, SubstringsEditsFindAndChangeAll) {
  constexpr std::u16string_view t = u"abcabcABC";
  const Case kCases[] = {
      // SubString, Extract
      {"inside", u"abcdef", [](D& r) { return r.SubString(2, 2); }, u"4 4 cd"},
      {"byte extremes", u"abc", [](D& r) { return r.SubStringB(INT32_MAX, INT32_MAX); }, u"6 0 "},
      {"negative start", u"ab", [](D& r) { r.SubString(-1, 2); }, u"", Err(5, u"SubStringB")},
      {"negative length", u"ab", [](D& r) { r.SubStringB(0, INT32_MIN); }, u"",
       Err(5, u"SubStringB")},
      {"overflow", u"ab", [](D& r) { r.SubString(1073741824, 0); }, u"", Err(6, u"SubString")},
      {"extract past the end", u"abcdef", [](D& r) { return r.Extract(9, 1); }, u""},
      {"extract bytes", u"abcdef", [](D& r) { return r.ExtractB(2, 4); }, u"bc"},
      {"extract in a view", u"abcdef", [](D& r) { return r.SubString(2, 3).Extract(1, 5); }, u"de"},
      {"extract before 0", u"ab", [](D& r) { r.Extract(-1); }, u"", Err(5, u"ExtractB")},
      {"extract overflow", u"ab", [](D& r) { r.Extract(INT32_MAX); }, u"", Err(6, u"Extract")},
      // Edits
      {"delete bytes", u"abcdef", [](D& r) { r.SubString(1, 4).DeleteB(2, 4); }, u"abef"},
      {"replace bytes", u"abcdef", [](D& r) { r.SubString(1, 4).ReplaceB(u"Z", 0, 2); }, u"aZcdef"},
      {"insert overflow", u"ab", [](D& r) { r.Insert(u"X", 1073741824); }, u"", Err(6, u"Insert")},
      {"delete overflow", u"ab", [](D& r) { r.Delete(0, INT32_MAX); }, u"", Err(6, u"Delete")},
      {"replace overflow", u"ab", [](D& r) { r.Replace(u"X", 0, -1073741825); }, u"",
       Err(6, u"Replace")},
      // Find and Match count from the root.
      {"find in a view, bytes", t, [](D& r) { return r.SubString(3, 6).FindB(u"C"); }, u"16"},
      {"find, bad case type", t, [](D& r) { r.Find(u"c", 0, 9, vxCaseEnum(3)); }, u"",
       Err(5, u"Find")},
      {"find bytes, bad case type", t, [](D& r) { r.FindB(u"c", 0, 9, vxCaseEnum(-1)); }, u"",
       Err(5, u"FindB")},
      {"find overflow", t, [](D& r) { r.Find(u"c", 1073741824); }, u"", Err(6, u"Find")},
      {"match", t, [](D& r) { return r.Match(u"a"); }, u"-1"},
      {"match bytes", t, [](D& r) { return r.MatchB(u".*", 1, 3, vxIgnoreCase); }, u"-1"},
      {"match overflow", t, [](D& r) { r.Match(u"b", INT32_MIN); }, u"", Err(6, u"Match")},
      // ChangeAll (at random in the model run, from views too)
      {"change all", u"abcb", [](D& r) { return r.ChangeAll(u"B", u"x", vxCaseNotSensitive); },
       u"0 8 axcx"},
      {"bad case type", u"abc", [](D& r) { r.ChangeAll(u"b", u"x", vxCaseEnum(5)); }, u"",
       Err(5, u"ChangeAll")},
  };
  RunCases(kCases);
}

TEST(DynamicString, ElementMembers) {
  const Case kCases[] = {
      {"count, empty", u"", [](D& r) { return r.CountElements(u"|"); }, u"0"},
      {"count", u"a||b", [](D& r) { return r.CountElements(u"|"); }, u"3"},
      {"insert past the end", u"a|b", [](D& r) { return r.InsertElement(u"x", u"|", 4); },
       u"0 12 a|b||x"},
      {"insert", u"a|b", [](D& r) { return r.InsertElement(u"x", u"|", 2); }, u"0 10 a|x|b"},
      {"delete", u"a|b|c", [](D& r) { return r.DeleteElement(u"|", 3); }, u"0 6 a|b"},
      {"sort", u"b|a|c", [](D& r) { return r.SortElements(u"|", vxDescending); }, u"0 10 c|b|a"},
      {"sorted insert, defaults", u"2|9", [](D& r) { return r.InsertElementSorted(u"10", u"|"); },
       u"1"},
      {"sorted insert, numbers", u"2|9",
       [](D& r) { return r.InsertElementSorted(u"10", u"|", vxAscending, vxRightJustify); }, u"3"},
      {"locate", u"a|b", [](D& r) { return r.LocateElement(u"b", u"|"); }, u"2"},
      {"replace element -1", u"a", [](D& r) { r.ReplaceElement(u"x", u"|", -1); }, u"",
       Err(5, u"ReplaceElement")},
      {"locate by regex", u"a", [](D& r) { r.LocateElement(u"b", u"|", 0, vxRegexMatch); }, u"",
       Err(5, u"LocateElement")},
      {"extract element -2", u"a", [](D& r) { r.ExtractElement(u"|", -2); }, u"",
       Err(5, u"ExtractElement")},
      {"delete element -2", u"a", [](D& r) { r.DeleteElement(u"|", -2); }, u"",
       Err(5, u"DeleteElement")},
      {"insert below -1, no delimiter", u"a|b", [](D& r) { r.InsertElement(u"x", u"", -3); }, u"",
       Err(5, u"Scan")},
  };
  RunCases(kCases);
}

TEST(DynamicString, LastElementDependsOnTheCache) {
  D d = Make(u"a|b");
  bool eof = false;
  EXPECT_EQ(d.ExtractElement(u"|", -1, eof).Value(), u"b");
  EXPECT_TRUE(eof);  // -1 always reports the end
  EXPECT_EQ(d.CountElements(u"|"), 2);
  D end = d.ExtractElement(u"|", -1);
  EXPECT_EQ(end.Value(), u"");  // the cache knows the end: an empty view there
  EXPECT_EQ(end.StartB(), 6);
  eof = false;
  EXPECT_EQ(d.ExtractElement(u"|", 1, eof).Value(), u"a");
  EXPECT_FALSE(eof);
  EXPECT_EQ(d.ExtractElement(u"|", 5, eof).Value(), u"");
  EXPECT_TRUE(eof);
  d.ExtractElement(u"|", 1, eof);
  EXPECT_TRUE(eof);  // never cleared
  // Below -1 an insertion goes before the last element, or at the very end
  // once the cache knows it.
  EXPECT_EQ(Make(u"a|b").InsertElement(u"x", u"|", -3).Value(), u"a|x|b");
  EXPECT_EQ(Make(u"a|").InsertElement(u"x", u"|", -3).Value(), u"a|x");
  d.SetValue(u"a|b");
  d.CountElements(u"|");
  EXPECT_EQ(d.InsertElement(u"x", u"|", -3).Value(), u"a|bx");
}

TEST(DynamicString, ElementViewsAreLiveAndEditsKeepTheWalk) {
  D d = Make(u"aa|bb|cc");
  D b = d.ExtractElement(u"|", 2);
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

TEST(DynamicString, CompareCrossesItsOptions) {
  auto cmp = [](const char16_t* other, int32_t case_type = 1, int32_t justification = 0) {
    return [=](D& r) {
      return int32_t{r.Compare(other, vxCaseEnum(case_type), vxJustificationEnum(justification))};
    };
  };
  const Case kCases[] = {
      {"defaults: text ignoring case", u"abc", cmp(u"ABC"), u"0"},
      {"defaults: numbers first", u"10", cmp(u"9"), u"1"},
      {"a non-number is not 0", u"abc", cmp(u"9"), u"1"},
      {"numeric tie goes to text", u"1.0", cmp(u"1"), u"1"},
      {"CaseType 0: text only", u"10", cmp(u"9", 0), u"-1"},
      {"Justification 1: binary", u"abc", cmp(u"ABC", 1, 1), u"1"},
      {"numbers decide before the mode", u"1", cmp(u"2", 1, 3), u"-1"},
      {"bad mode", u"a", cmp(u"b", 1, 3), u"", Err(5, u"Compare")},
  };
  RunCases(kCases);

  // The element comparison itself, options in their own slots.
  D scratch;
  internal::DynamicStringImpl& impl = scratch.impl();
  EXPECT_EQ(impl.CompareElements(u"1,000", u"999", vxRightJustify, vxCaseSensitive), 1);
  EXPECT_EQ(impl.CompareElements(u"-1", u"x", vxRightJustify, vxCaseSensitive), -1);
  EXPECT_EQ(impl.CompareElements(u"B", u"a", vxRightJustify, vxCaseNotSensitive), 1);
  EXPECT_EQ(impl.CompareElements(u"10", u"9", 7, vxCaseSensitive), -1);

  D bytes;
  bytes.SetValue(Bytes("abc"));  // odd length: byte mode; both sides are widened byte-wise
  EXPECT_EQ(bytes.Compare(u"\u6261", vxCaseNotSensitive, vxRightJustify), 1);
  EXPECT_EQ(bytes.Compare(Bytes("abc"), vxCaseNotSensitive, vxRightJustify), 0);
}

TEST(DynamicString, ByteModeStopsTheCharacterMembers) {
  D root = Make(u"abcdef");
  D odd = root.SubStringB(3, 2);
  EXPECT_FALSE(root.Binary());  // making the view reads nothing
  odd.Value();
  EXPECT_TRUE(root.Binary());
  EXPECT_EQ(odd.LengthB(), 2);
  const std::pair<const char16_t*, std::function<void()>> kCharacterMembers[] = {
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
  for (const auto& [name, call] : kCharacterMembers) EXPECT_EQ(RaisedBy(call), Err(6, name));
  root.Append(u"g");
  root.InsertB(Bytes("!"), 3);  // inside "a": every later unit sits at an odd offset
  EXPECT_EQ(root.FindB(u"g"), 13);
  EXPECT_EQ(RaisedBy([&] { root.SetBinary(false); }), Err(380, u"Binary"));
  root.SetValue(u"xyz");  // replacing the whole text starts afresh
  EXPECT_FALSE(root.Binary());
}

TEST(DynamicString, InvalidViewsRefuseAllButAFewMembers) {
  D root = Make(u"abcdef");
  D view = root.SubString(1, 3);
  D child = view.SubString(0, 1);
  root.Insert(u"x", 2);
  const std::function<void()> kRefused[] = {
      [&] { view.SetValue(u"x"); },
      [&] { view.Start(); },
      [&] { view.StartB(); },
      [&] { view.Length(); },
      [&] { view.LengthB(); },
      [&] { view.Binary(); },
      [&] { view.Parent(); },
      [&] { view.SubStringB(0, 1); },
      [&] { view.ExtractB(); },
      [&] { view.Append(u"x"); },
      [&] { view.Prefix(u"x"); },
      [&] { view.InsertB(u"x"); },
      [&] { view.DeleteB(0, 1); },
      [&] { view.ReplaceB(u"x"); },
      [&] { view.FindB(u"x"); },
      [&] { view.Match(u"x"); },
      [&] { view.ChangeAll(u"a", u"b"); },
      [&] { view.Compare(u"x"); },
      [&] { view.CountElements(u"|"); },
      [&] { child.Length(); },
  };
  for (const auto& call : kRefused) EXPECT_EQ(RaisedBy(call), Err(kInvalidView, u"ValidateState"));
  String description;
  RaisedBy([&] { view.Length(); }, &description);
  EXPECT_EQ(description, u"Invalid DynamicString: an edit has cut into the range of this view.");
  EXPECT_EQ(root.Value().ToU16(), u"abxcdef");
  EXPECT_EQ(view.Value().ToU16(), u"bxc");  // its stale range, read as it is
  EXPECT_EQ(view.MatchB(u"x"), -1);
  EXPECT_EQ(view.MatchElement(u"x", u"|"), 0);
  EXPECT_EQ(view.Clone().Value().ToU16(), u"bxc");
  EXPECT_TRUE(view.Clone().Parent().IsNothing());
  view.SetBinary(true);
  EXPECT_TRUE(root.Binary());
  EXPECT_EQ(RaisedBy([&] { root.Parent().Value(); }).number, 91);  // a root's parent is Nothing
}

TEST(DynamicStringImpl, EditsKeepOrResetTheScanCache) {
  using internal::ScanCache;
  // "a|bb|c": element 2 ("bb") cached at bytes 4..7, element 1 before it.
  const ScanCache cached{u"|", false, 2, 4, 4, 1, 0, 2};
  // Backed up, the element before the cached one is no longer known.
  const ScanCache backed_up{u"|", false, 1, 0, 2, 0, 0, 0};
  const ScanCache reset{u"|", false, 0, 0, 0, 0, 0, 0};
  struct Case {
    const char* name;
    int32_t edit_start, edit_length;  // a replacement by "X" in the root
    const ScanCache& want;
  };
  const Case kCases[] = {
      {"at the cached start: back up one", 4, 0, backed_up},
      {"inside the element", 6, 0, reset},
      {"inside the delimiter after it", 8, 2, reset},
      {"after the delimiter", 10, 0, cached},
      {"before the element", 0, 2, reset},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    D root = Make(u"a|bb|c");
    root.impl().scan() = cached;
    root.ReplaceB(u"X", c.edit_start, c.edit_length);
    EXPECT_TRUE(root.impl().scan() == c.want);
  }
  // An edit inside a child is an edit at the child's start for the parent.
  D root = Make(u"a|bb|c");
  root.impl().scan() = cached;
  root.SubStringB(4, 4).InsertB(u"x", 2);
  EXPECT_TRUE(root.impl().scan() == backed_up);
  // Backing up onto an emptied text marks the end.
  D two = Make(u"ab");
  two.impl().scan() = ScanCache{u"|", false, 1, 0, 4, 0, 0, 0};
  two.SetValue(u"");
  EXPECT_TRUE(two.impl().scan().ScanAtEnd);
}

TEST(DynamicString, DeepChainsNeitherRecurseNorLeak) {
  constexpr int kDepth = 100000;
  std::vector<D> chain{Make(u"0123456789")};
  chain.reserve(kDepth);
  for (int i = 1; i < kDepth; ++i) chain.push_back(chain.back().SubStringB(0, 20));
  std::weak_ptr<internal::DynamicStringImpl> root = chain.front().impl().weak_from_this();
  chain.back().Append(u"!");  // notifies every level
  EXPECT_EQ(chain[kDepth / 2].Length(), 11);
  chain.front().InsertB(u"?", 2);  // cuts into every view
  EXPECT_TRUE(chain.back().impl().Invalid());
  D deepest = chain.back();
  chain.clear();
  EXPECT_FALSE(root.expired());  // the deepest view keeps the chain alive
  deepest = D();                 // and releases it, one level at a time
  EXPECT_TRUE(root.expired());
}

}  // namespace
}  // namespace crvlib
