// The type library description: the automation form of each kind of
// member and parameter, what is written as comments for widl, and the
// identifiers as the README lists them. (That crv prints the checked-in
// typelib/crvlib.idl is a crv test; that it compiles is the widl test.)
#include "typelib/surface_idl.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/testing/source_file.h"
#include "tests/typelib/test_surface.h"

namespace crvlib::typelib {
namespace {

TEST(SurfaceIdl, WritesEachKindOfMemberInItsAutomationForm) {
  const std::string idl = TypeLibraryIdl(fixtures::TestSurface());
  const char* kFragments[] = {
      // The library, its attributes and the standard types.
      R"idl(import "oaidl.idl";

[
  uuid(EB81C65E-C7F0-44B5-A2F4-EA253F0722A2),
  version(1.0),
  lcid(1033),
  helpstring("Corvane Tessel 2005 Global Procedure Library"),
  helpfile("crvlib.chm")
]
library crvlib
{
    importlib("stdole2.tlb");
)idl",
      // Enumerations by value; each member's help string is its name.
      R"idl(
    typedef enum vxPositionEnum {
        vxFirstPosition = 1,  // helpstring("vxFirstPosition")
        vxLastPosition = -1  // helpstring("vxLastPosition")
    } vxPositionEnum;
)idl",
      // A dual interface; a help string with CR LF; a read-only property.
      R"idl(
    [
      object,
      uuid(8F45AF67-55DC-4DA8-9F82-94CE92679750),
      dual,
      oleautomation,
      nonextensible,
      helpstring("Delimiter marks of dynamic string arrays.")
    ]
    interface _Constants : IDispatch {
        // helpstring holds CR LF: "Record mark delimiter for dynamic string arrays.\r\nvxRM = Chr$(255)"
        [id(0x68030006), propget, helpstring("Record mark delimiter for dynamic string arrays. vxRM = Chr$(255)")]
        HRESULT vxRM([out, retval] BSTR* Result);
)idl",
      // By-reference and by-value parameters; quotes in a help string.
      R"idl(
        [id(0x60030007), helpstring("Convert a string to a Hex representation of the string. Each character's Hex representation is prefixed with \"^H\".")]
        HRESULT ConvertStrToHex(
            [in, out] BSTR* Value,
            [out, retval] BSTR* Result);
)idl",
      // Enumeration-typed optional parameters; an array filled by the routine.
      R"idl(
        HRESULT DynArrayToArray(
            [in, out] BSTR* ArrayValue,
            [in, out] BSTR* Delimiter,
            [in, out] SAFEARRAY(BSTR)* NewArray,
            [in, optional, defaultvalue(0)] vxArrayBaseEnum ArrayBase,
            [out, retval] long* Result);
)idl",
      // Optional by reference: a Long's default is written, a String's is a
      // comment.
      R"idl(
        HRESULT ParseStr(
            [in, out] BSTR* Value,
            [in, out] BSTR* Delimiters,
            [in, out, optional, defaultvalue(1)] long* Position,
            [out, retval] BSTR* Result);
)idl",
      R"idl(
        HRESULT BooleanOut(
            [in] VARIANT Bool,
            [in, out, optional /* , defaultvalue("True/False"): not expressible for widl */] BSTR* OutputFormat,
            [out, retval] BSTR* Result);
)idl",
      // An object result; a by-value String with a default.
      R"idl(
        HRESULT ToDynamicString(
            [in, out] BSTR* Value,
            [out, retval] _DynamicString** Result);
)idl",
      R"idl(
        HRESULT CenterJustify(
            [in, out] BSTR* Value,
            [in] long Length,
            [in, optional, defaultvalue(" ")] BSTR FillCharacter,
            [out, retval] BSTR* Result);
)idl",
      // The default property: get and put share DISPID 0 and the help.
      R"idl(
        [id(0x00000000), propget, helpstring("The text.")]
        HRESULT Value([out, retval] BSTR* Result);
        [id(0x00000000), propput, helpstring("The text.")]
        HRESULT Value([in, out] BSTR* NewValue);
)idl",
      // A ParamArray.
      R"idl(
        [id(0x6003000B), vararg]
        HRESULT Join(
            [in, out] BSTR* Delimiter,
            [in, out] SAFEARRAY(VARIANT)* Items,
            [out, retval] BSTR* Result);
)idl",
      // The remaining scalar types, a Boolean default, a Sub.
      R"idl(
            [in, optional, defaultvalue(0)] VARIANT_BOOL Negate,
)idl",
      "HRESULT Twice(\n            [in] short Value,\n            [out, retval] short* Result);",
      "HRESULT Cents(\n            [in] CY Amount,\n            [out, retval] CY* Result);",
      "HRESULT NextDay(\n            [in] DATE Day,\n            [out, retval] DATE* Result);",
      "HRESULT Half(\n            [in] double Value,\n            [out, retval] double* Result);",
      "HRESULT Echo(\n            [in] VARIANT Value,\n            [out, retval] VARIANT* Result);",
      "HRESULT Fail([in] long Number);",
      "[in, out, optional, defaultvalue(-1)] VARIANT_BOOL* Flag,",
      "[out, retval] SAFEARRAY(BSTR)* Result);",
      "[in] _Probe* Object,",
      // Classes: the global ones are application objects.
      R"idl(
    [
      uuid(7CE37537-6A3E-4197-BFF8-335A393746D7),
      helpstring("Dynamic string arrays and general string, path, file and number routines."),
      appobject  // and predeclid: a predeclared instance
    ]
    coclass Functions {
        [default] interface _Functions;
    };
)idl",
      R"idl(
    [
      uuid(C3BD00BB-87D9-4BC5-A875-CDF06DC8EF6F),
      helpstring("A string edited in place in a gap buffer, with live child views and element operations.")
    ]
    coclass DynamicString {
        [default] interface _DynamicString;
    };
)idl",
  };
  for (const char* fragment : kFragments) {
    EXPECT_NE(idl.find(fragment), std::string::npos) << "missing:\n" << fragment;
  }
  // Every interface is declared before the first one that may name it.
  EXPECT_LT(idl.find("    interface _DynamicString;\n"), idl.find("interface _Functions :"));
}  // namespace

// The identifiers never change, so the README's table of them must stay
// the table's: one line per class names the class, its interface and both
// GUIDs. No identifier is used twice.
TEST(SurfaceIdl, ReadmeListsEveryIdentifier) {
  const std::string readme = SourceFile("README.md");
  const Surface& surface = ShippedSurface();
  auto line_with = [&](const std::string& name) {
    size_t at = readme.find("| `" + name + "` |");
    if (at == std::string::npos) return std::string();
    size_t begin = readme.rfind('\n', at) + 1;
    return readme.substr(begin, readme.find('\n', at) - begin);
  };
  EXPECT_NE(line_with(surface.library.name).find("`{" + surface.library.guid + "}`"),
            std::string::npos);
  EXPECT_NE(
      line_with("MessageCatalogue").find("`{" + surface.library.message_catalogue_clsid + "}`"),
      std::string::npos);
  std::set<std::string> distinct = {surface.library.guid, surface.library.message_catalogue_clsid};
  for (const ClassInfo& c : surface.classes) {
    SCOPED_TRACE(c.name);
    distinct.insert({c.ids.clsid, c.ids.iid});
    std::string line = line_with(c.name);
    EXPECT_NE(line.find("`{" + c.ids.clsid + "}`"), std::string::npos) << line;
    EXPECT_NE(line.find("`_" + c.name + "`"), std::string::npos) << line;
    EXPECT_NE(line.find("`{" + c.ids.iid + "}`"), std::string::npos) << line;
  }
  EXPECT_EQ(distinct.size(), 2 + 2 * surface.classes.size()) << "an identifier is used twice";
}

}  // namespace
}  // namespace crvlib::typelib
