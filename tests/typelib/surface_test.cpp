// The member table: DISPID numbering, what the binding deduces from a
// signature, the checks a class table passes, and argument arrangement.
#include "typelib/surface.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>

#include "tests/testing/raised.h"
#include "tests/typelib/test_surface.h"

namespace crvlib::typelib {
namespace {

using fixtures::Probe;
using fixtures::TestSurface;
using fixtures::Tools;

TEST(Surface, ConstantsAreReadOnlyStringPropertiesNumberedDownFromSix) {
  const ClassInfo* c = ShippedSurface().FindClass("constants");  // names ignore case
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(c->kind, ClassKind::kGlobal);
  const char* names[] = {"vxRM", "vxAM", "vxVM", "vxSVM", "vxTM", "vxEM", "vxVBAR"};
  const char16_t values[] = {u'\u00FF', u'\u00FE', u'\u00FD', u'\u00FC',
                             u'\u00FB', u'\u00FA', u'|'};
  ASSERT_EQ(c->members.size(), 7u);
  std::vector<Value> none;
  for (size_t i = 0; i < 7; ++i) {
    const MemberInfo& m = c->members[i];
    SCOPED_TRACE(m.name);
    EXPECT_EQ(m.name, names[i]);
    EXPECT_EQ(m.kind, MemberKind::kPropertyGet);
    EXPECT_EQ(m.dispid, 0x68030006 - static_cast<int32_t>(i));
    EXPECT_EQ(m.result.kind, TypeKind::kString);
    EXPECT_TRUE(m.params.empty());
    EXPECT_NE(m.help.find("\r\n" + m.name + " = Chr$("), std::string::npos);
    EXPECT_EQ(m.invoke(nullptr, none), Value(Variant(String(std::u16string(1, values[i])))));
  }
  EXPECT_EQ(c->members[1].help,
            "Attribute or Field  mark delimiter for dynamic string arrays.\r\nvxAM = Chr$(254)");
}

// The numbering and what the binding deduces from each signature show in
// the listing (Call.ListShowsDeclarationsDispidsAndHelp).
TEST(Surface, AGetAndALetOfOnePropertyShareANumberEvenWhenNotDefault) {
  std::vector<MemberInfo> members = {PropertyGet<&Probe::Value>("Text", ""),
                                     Method<&Probe::Child>("Child", ""),
                                     PropertyLet<&Probe::SetValue>("Text", ByRef("NewValue"))};
  NumberMembers(members);
  EXPECT_EQ(members[0].dispid, 0x68030001);
  EXPECT_EQ(members[1].dispid, 0x60030000);
  EXPECT_EQ(members[2].dispid, 0x68030001);
}

TEST(Surface, MemberFunctionsNeedTheirObject) {
  const ClassInfo* probe = TestSurface().FindClass("Probe");
  const MemberInfo* child = probe->Find("Child", MemberKind::kMethod);
  std::vector<Value> none;
  String description;
  EXPECT_EQ(RaisedBy([&] { child->invoke(nullptr, none); }, &description).number, 91);
  EXPECT_EQ(description, u"Object variable or With block variable not set");
  Object nothing = MakeObject(Probe().Parent());
  EXPECT_TRUE(nothing.IsNothing());
  EXPECT_EQ(RaisedBy([&] { child->invoke(&nothing, none); }).number, 91);
}

TEST(Surface, BadTablesAreRefusedWhenBuilt) {
  // A required parameter after an optional one.
  EXPECT_THROW(
      GlobalClass("Bad", {}, "",
                  {Method<&Tools::Swap>("Swap", "", OptionalByRef("First", u""), ByRef("Second"))}),
      std::logic_error);
  // A member function in a global class.
  EXPECT_THROW(GlobalClass("Bad", {}, "", {Method<&Probe::Child>("Child", "")}), std::logic_error);
  // One name twice.
  EXPECT_THROW(GlobalClass("Bad", {}, "",
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

TEST(Surface, EveryNameIsFoundInEitherCase) {
  auto recased = [](std::string s, bool upper) {
    for (char& c : s) c = static_cast<char>(upper ? std::toupper(c) : std::tolower(c));
    return s;
  };
  for (bool upper : {false, true}) {
    for (const ClassInfo& c : ShippedSurface().classes) {
      EXPECT_EQ(ShippedSurface().FindClass(recased(c.name, upper)), &c) << c.name;
      for (const MemberInfo& m : c.members) {
        const MemberInfo* found = c.Find(recased(m.name, upper), m.kind);
        ASSERT_NE(found, nullptr) << c.name << "." << m.name;
        EXPECT_EQ(found->name, m.name);
      }
    }
    for (const EnumInfo& e : Enumerations()) {
      EXPECT_EQ(FindEnum(recased(e.name, upper)), &e) << e.name;
      for (const EnumMember& m : e.members) {
        EXPECT_EQ(e.Find(recased(m.name, upper)), &m) << m.name;
      }
    }
  }
}

TEST(Surface, EnumerationsAreFoundByNameIgnoringCaseAndByValue) {
  EXPECT_EQ(FindEnum("VXPOSITIONENUM")->Find("vxlastposition")->value, -1);
  EXPECT_EQ(FindEnum("vxMatchOptionsEnum")->Find(64)->name, "vxLiteralTextMode");
  EXPECT_EQ(FindEnum("vxMatchOptionsEnum")->Find(3), nullptr);  // flags are not combined
  EXPECT_EQ(FindEnum("vxNoSuchEnum"), nullptr);
  // A parameter typed with an enumeration finds it through its type.
  EXPECT_EQ(TypeOf<vxSortOrderEnum>().Enum(), FindEnum("vxSortOrderEnum"));
  EXPECT_EQ(TypeOf<int32_t>().Enum(), nullptr);
}

TEST(Surface, ValidationsListsItsRoutinesInTypeLibraryOrder) {
  const ClassInfo* c = ShippedSurface().FindClass("Validations");
  ASSERT_NE(c, nullptr);
  std::string names, by_ref;
  for (const MemberInfo& m : c->members) {
    names += m.name + " ";
    for (const ParamInfo& p : m.params) by_ref += p.optional ? 'O' : p.by_ref ? 'R' : 'V';
    by_ref += ' ';
  }
  EXPECT_EQ(names,
            "BooleanCheck CurrencyCheck DateCheck TimeCheck IsNum PercentCheck RangeDate RangeNum "
            "RangeTime IsValid EmailAddressCheck Matches ");
  EXPECT_EQ(by_ref, "V R R R R R RRR RRR RRR RRO R RR ");
}

TEST(Surface, ConversionsListsItsRoutinesInTypeLibraryOrder) {
  const ClassInfo* c = ShippedSurface().FindClass("Conversions");
  ASSERT_NE(c, nullptr);
  std::string names;
  for (const MemberInfo& m : c->members) names += m.name + " ";
  EXPECT_EQ(names,
            "Convert BooleanIn BooleanOut CurrencyIn CurrencyOut DateIn DateOut TimeIn TimeOut "
            "PercentIn PercentOut Alpha AlphaPlus Num NumPlus NonNum PCase ");
  const MemberInfo* out = c->Find("BooleanOut", MemberKind::kMethod);
  ASSERT_NE(out, nullptr);
  ASSERT_EQ(out->params.size(), 2u);
  EXPECT_TRUE(out->params[1].by_ref && out->params[1].optional);
  std::vector<Value> args{Variant(true), Variant(u"yes/no")};
  out->invoke(nullptr, args);
  EXPECT_EQ(std::get<Variant>(args[1]), Variant(u"True/False"));  // written back
}

}  // namespace
}  // namespace crvlib::typelib
