// The error frame: numbers, sources and descriptions as callers see them.
// The numbers of the library's own errors are checked where routines raise
// them (ConvertHexToStr, Convert, the DynamicString views).
#include "core/error_frame.h"

#include <gtest/gtest.h>

#include "tests/testing/raised.h"

namespace crvlib::internal {
namespace {

TEST(ErrorFrame, TrapReplacesSourceKeepsNumberAndDescription) {
  String description;
  EXPECT_EQ(RaisedBy(
                [] {
                  Trap(u"CRVLIB.Functions::Pause",
                       [] { Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::Scan"); });
                },
                &description),
            Raised(5, u"CRVLIB.Functions::Pause"));
  EXPECT_EQ(description, u"Invalid procedure call or argument");
}

TEST(ErrorFrame, TrapUnnamedKeepsANamedSource) {
  auto raised_by = [](auto raise) {
    return RaisedBy([&] { TrapUnnamed(u"CRVLIB.DynamicString::Binary", raise); });
  };
  EXPECT_EQ(raised_by([] { Raise(kInvalidPropertyValue); }),
            Raised(380, u"CRVLIB.DynamicString::Binary"));
  EXPECT_EQ(raised_by([] { Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::SubStringB"); }),
            Raised(5, u"CRVLIB.DynamicString::SubStringB"));
}

TEST(ErrorFrame, ResumeNextKeepsTheLastErrorNumber) {
  ResumeNext err;
  int out = 1;
  err([&] { Raise(kOverflow); });
  err([&] { out = 2; });
  EXPECT_EQ(err.Number(), 6);
  EXPECT_EQ(out, 2);
}

}  // namespace
}  // namespace crvlib::internal
