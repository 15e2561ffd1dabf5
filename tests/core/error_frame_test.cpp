// The error frame: numbers, sources and descriptions as callers see them.
#include "core/error_frame.h"

#include <gtest/gtest.h>

#include "core/checked.h"
#include "crvlib/constants.h"

namespace crvlib::internal {
namespace {

TEST(ErrorFrame, TrapReplacesSourceKeepsNumberAndDescription) {
  try {
    Trap(u"CRVLIB.Functions::Pause",
         [] { Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::Scan"); });
    FAIL();
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), 5);
    EXPECT_EQ(e.Source(), u"CRVLIB.Functions::Pause");
    EXPECT_EQ(e.Description(), u"Invalid procedure call or argument");
  }
}

TEST(ErrorFrame, TrapUnnamedKeepsANamedSource) {
  auto source_of = [](auto raise) {
    try {
      TrapUnnamed(u"CRVLIB.DynamicString::Binary", raise);
    } catch (const Error& e) {
      return e.Source();
    }
    return String();
  };
  EXPECT_EQ(source_of([] { Raise(kInvalidPropertyValue); }), u"CRVLIB.DynamicString::Binary");
  EXPECT_EQ(source_of([] { Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::SubStringB"); }),
            u"CRVLIB.DynamicString::SubStringB");
}

TEST(ErrorFrame, LibraryErrorsCarryTheObjectErrorBase) {
  struct Case {
    vxLibErrorCodes code;
    int32_t number;
  };
  for (Case c : {Case{vxInvalidHexString, -2147220495}, Case{vxInvalidDynamicString, -2147219803},
                 Case{vxInvalidConversionCode, 1611}, Case{vxInvalidEntry, 1003}}) {
    EXPECT_EQ(LibraryErrorNumber(c.code), c.number);
  }
  try {
    RaiseLibrary(vxInvalidConversionCode, u"", {}, u"MCZ");
  } catch (const Error& e) {
    EXPECT_EQ(e.Description(), u"Invalid conversion code: MCZ");
  }
}

TEST(ErrorFrame, CheckedArithmeticRaisesOverflow) {
  EXPECT_EQ(CheckedAdd(2147483646, 1), 2147483647);
  EXPECT_THROW(CheckedAdd(2147483647, 1), Error);
  EXPECT_THROW(CheckedMul(65536, 32768), Error);
  EXPECT_THROW(CheckedSub(-2147483647 - 1, 1), Error);
}

TEST(ErrorFrame, ResumeNextKeepsTheLastErrorNumber) {
  ResumeNext err;
  int out = 1;
  err([&] { Raise(kOverflow); });
  err([&] { out = 2; });
  EXPECT_EQ(err.Number(), 6);
  EXPECT_EQ(out, 2);
}

TEST(Constants, MarksComeThroughTheCodePage) {
  EXPECT_EQ(Constants::vxRM(), u"\u00FF");
  EXPECT_EQ(Constants::vxEM(), u"\u00FA");
  EXPECT_EQ(Constants::vxVBAR(), u"|");
}

}  // namespace
}  // namespace crvlib::internal
