// The member table: DISPID numbering, what the binding deduces from a
// signature, the checks a class table passes, and argument arrangement.
#include "cli/surface.h"

#include <gtest/gtest.h>

#include "cli/value_json.h"
#include "crvlib/constants.h"
#include "tests/cli/test_surface.h"

namespace crvlib::cli {
namespace {

using fixtures::Probe;
using fixtures::TestSurface;
using fixtures::Tools;

TEST(Surface, ConstantsAreReadOnlyStringPropertiesNumberedDownFromSix) {
  const ClassInfo* c = ShippedSurface().FindClass("Constants");
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(c->kind, ClassKind::kGlobal);
  const char* names[] = {"vxRM", "vxAM", "vxVM", "vxSVM", "vxTM", "vxEM", "vxVBAR"};
  ASSERT_EQ(c->members.size(), 7u);
  for (size_t i = 0; i < 7; ++i) {
    const MemberInfo& m = c->members[i];
    SCOPED_TRACE(m.name);
    EXPECT_EQ(m.name, names[i]);
    EXPECT_EQ(m.kind, MemberKind::kPropertyGet);
    EXPECT_EQ(m.dispid, 0x68030006 - static_cast<int32_t>(i));
    EXPECT_EQ(m.result.kind, TypeKind::kString);
    EXPECT_TRUE(m.params.empty());
    EXPECT_NE(m.help.find("\r\n" + m.name + " = Chr$("), std::string::npos);
  }
  EXPECT_EQ(c->members[1].help,
            "Attribute or Field  mark delimiter for dynamic string arrays.\r\nvxAM = Chr$(254)");
}

TEST(Surface, ConstantsCallTheLibrary) {
  const ClassInfo* c = ShippedSurface().FindClass("constants");  // names ignore case
  ASSERT_NE(c, nullptr);
  std::vector<Value> none;
  EXPECT_EQ(c->Find("VXRM", MemberKind::kMethod)->invoke(nullptr, none),
            Value(Variant(Constants::vxRM())));
  EXPECT_EQ(c->Find("vxVBAR", MemberKind::kPropertyGet)->invoke(nullptr, none),
            Value(Variant(u"|")));
}

TEST(Surface, NumberingCountsAPropertyOnceAndKeepsTheDefaultsPlace) {
  // Probe: Value (default get + let), Child, Parent, Self, Split.
  const ClassInfo* c = TestSurface().FindClass("Probe");
  ASSERT_NE(c, nullptr);
  struct Row {
    const char* name;
    MemberKind kind;
    int32_t dispid;
  } rows[] = {
      {"Value", MemberKind::kPropertyGet, 0},     {"Value", MemberKind::kPropertyLet, 0},
      {"Child", MemberKind::kMethod, 0x60030003}, {"Parent", MemberKind::kPropertyGet, 0x68030002},
      {"Self", MemberKind::kMethod, 0x60030001},  {"Split", MemberKind::kMethod, 0x60030000},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    const MemberInfo* m = c->Find(r.name, r.kind);
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(m->dispid, r.dispid);
  }
  // A get and a let of one property share a number even when not default.
  std::vector<MemberInfo> members = {PropertyGet<&Probe::Value>("Text", ""),
                                     Method<&Probe::Child>("Child", ""),
                                     PropertyLet<&Probe::SetValue>("Text", "", ByRef("NewValue"))};
  NumberMembers(members);
  EXPECT_EQ(members[0].dispid, 0x68030001);
  EXPECT_EQ(members[1].dispid, 0x60030000);
  EXPECT_EQ(members[2].dispid, 0x68030001);
}

TEST(Surface, BindingDeducesTypesAndFlagsFromTheSignature) {
  const ClassInfo* tools = TestSurface().FindClass("Tools");
  struct Row {
    const char* member;
    size_t index;
    TypeKind kind;
    const char* type_name;
    bool by_ref, optional;
  } rows[] = {
      {"Swap", 0, TypeKind::kString, "String", true, false},
      {"Join", 1, TypeKind::kParamArray, "Variant()", false, true},
      {"Echo", 0, TypeKind::kVariant, "Variant", false, false},
      {"Pick", 1, TypeKind::kLong, "vxSortOrderEnum", false, true},
      {"Pick", 2, TypeKind::kBoolean, "Boolean", false, true},
      {"Twice", 0, TypeKind::kInteger, "Integer", false, false},
      {"Cents", 0, TypeKind::kCurrency, "Currency", false, false},
      {"NextDay", 0, TypeKind::kDate, "Date", false, false},
      {"Flip", 0, TypeKind::kBoolean, "Boolean", true, true},
      {"ValueOf", 0, TypeKind::kObject, "Probe", false, false},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(::testing::Message() << r.member << " #" << r.index);
    const MemberInfo* m = tools->Find(r.member, MemberKind::kMethod);
    ASSERT_NE(m, nullptr);
    const ParamInfo& p = m->params.at(r.index);
    EXPECT_EQ(p.type.kind, r.kind);
    EXPECT_EQ(p.type.name, r.type_name);
    EXPECT_EQ(p.by_ref, r.by_ref);
    EXPECT_EQ(p.optional, r.optional);
  }
  const MemberInfo* pick = tools->Find("Pick", MemberKind::kMethod);
  EXPECT_EQ(pick->params[1].default_value, Value(Variant(int32_t{vxDescending})));
  EXPECT_EQ(pick->params[1].type.Enum(), FindEnum("vxSortOrderEnum"));
  EXPECT_EQ(tools->Find("Make", MemberKind::kMethod)->result.name, "Probe");
  EXPECT_EQ(tools->Find("Pair", MemberKind::kMethod)->result.kind, TypeKind::kStringArray);
  EXPECT_EQ(tools->Find("Fail", MemberKind::kMethod)->result.kind, TypeKind::kVoid);
}

TEST(Surface, InvokeWritesBackOnlyWhatTheRoutineWrites) {
  const ClassInfo* tools = TestSurface().FindClass("Tools");
  std::vector<Value> args = {Variant(u"ab"), Variant(u"xyz")};
  Value r = tools->Find("Swap", MemberKind::kMethod)->invoke(nullptr, args);
  EXPECT_EQ(r, Value(Variant(int32_t{3})));
  EXPECT_EQ(args[0], Value(Variant(u"xyz")));
  EXPECT_EQ(args[1], Value(Variant(u"ab")));

  // A failing routine leaves its by-reference arguments as they were.
  std::vector<Value> fail = {Variant(int32_t{5})};
  EXPECT_THROW(tools->Find("Fail", MemberKind::kMethod)->invoke(nullptr, fail), Error);
}

TEST(Surface, MemberFunctionsNeedTheirObject) {
  const ClassInfo* probe = TestSurface().FindClass("Probe");
  const MemberInfo* child = probe->Find("Child", MemberKind::kMethod);
  std::vector<Value> none;
  try {
    child->invoke(nullptr, none);
    FAIL();
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), 91);
  }
  Object nothing = MakeObject(Probe().Parent());
  EXPECT_TRUE(nothing.IsNothing());
  EXPECT_THROW(child->invoke(&nothing, none), Error);
  Object p = probe->factory();
  Value c = child->invoke(&p, none);
  ASSERT_TRUE(std::holds_alternative<Object>(c));
  EXPECT_EQ(std::get<Object>(c).ClassName(), "Probe");
  EXPECT_FALSE(std::get<Object>(c) == p);
  EXPECT_EQ(probe->Find("Parent", MemberKind::kMethod)->invoke(&std::get<Object>(c), none),
            Value(p));
}

TEST(Surface, BadTablesAreRefusedWhenBuilt) {
  // A required parameter after an optional one.
  EXPECT_THROW(
      GlobalClass("Bad", "",
                  {Method<&Tools::Swap>("Swap", "", OptionalByRef("First", u""), ByRef("Second"))}),
      std::logic_error);
  // A member function in a global class.
  EXPECT_THROW(GlobalClass("Bad", "", {Method<&Probe::Child>("Child", "")}), std::logic_error);
  // One name twice.
  EXPECT_THROW(GlobalClass("Bad", "",
                           {Method<&Tools::Half>("Half", "", In("Value")),
                            Method<&Tools::Half>("HALF", "", In("Value"))}),
               std::logic_error);
}

TEST(Surface, ArgumentsAreArrangedByCountDefaultsAndParamArray) {
  const ClassInfo* tools = TestSurface().FindClass("Tools");
  auto bind = [&](const char* member, std::vector<Value> given) {
    return BindArguments(member, *tools->Find(member, MemberKind::kMethod), given.size(),
                         [&](const ParamInfo&, size_t i) { return given[i]; });
  };
  std::vector<Value> pick = bind("Pick", {Variant(int32_t{4})});
  ASSERT_EQ(pick.size(), 3u);
  EXPECT_EQ(pick[1], Value(Variant(int32_t{1})));
  EXPECT_EQ(pick[2], Value(Variant(false)));

  std::vector<Value> join = bind("Join", {Variant(u","), Variant(u"a"), Variant(int32_t{2})});
  ASSERT_EQ(join.size(), 2u);
  EXPECT_EQ(join[1], Value(VariantArray{0, {Variant(u"a"), Variant(int32_t{2})}}));
  EXPECT_EQ(bind("Join", {Variant(u",")})[1], Value(VariantArray{}));

  struct Bad {
    const char* member;
    size_t count;
    const char* message;
  } bad[] = {
      {"Pick", 0, "Pick takes 1 to 3 arguments, got 0"},
      {"Pick", 4, "Pick takes 1 to 3 arguments, got 4"},
      {"Swap", 1, "Swap takes 2 arguments, got 1"},
      {"Join", 0, "Join takes at least 1 argument, got 0"},
  };
  const Value one = Variant(int32_t{1});
  for (const Bad& b : bad) {
    SCOPED_TRACE(b.member);
    try {
      bind(b.member, std::vector<Value>(b.count, one));
      FAIL();
    } catch (const UsageError& e) {
      EXPECT_STREQ(e.what(), b.message);
    }
  }
}

TEST(Surface, EveryEnumerationTypeHasItsEntry) {
  // A parameter typed with an enumeration finds its members by the type's
  // name; an entry missing or misspelled would make names like
  // "vxDescending" unusable.
  std::string_view names[] = {
      EnumTraits<vxLibErrorCodes>::kName,     EnumTraits<vxCaseEnum>::kName,
      EnumTraits<vxMatchOptionsEnum>::kName,  EnumTraits<vxSortOrderEnum>::kName,
      EnumTraits<vxJustificationEnum>::kName, EnumTraits<vxDuplicatesEnum>::kName,
      EnumTraits<vxPositionEnum>::kName,      EnumTraits<vxMatchingEnum>::kName,
      EnumTraits<vxArrayBaseEnum>::kName,
  };
  for (std::string_view name : names) {
    SCOPED_TRACE(std::string(name));
    const EnumInfo* e = FindEnum(name);
    ASSERT_NE(e, nullptr);
    EXPECT_FALSE(e->members.empty());
  }
  EXPECT_EQ(Enumerations().size(), std::size(names));
  EXPECT_EQ(FindEnum("vxPositionEnum")->Find("VXLASTPOSITION")->value, -1);
  EXPECT_EQ(FindEnum("vxMatchOptionsEnum")->Find(64)->name, "vxLiteralTextMode");
}

}  // namespace
}  // namespace crvlib::cli
