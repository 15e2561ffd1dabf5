// The error frame: numbers, sources and descriptions as callers see them.
// The numbers of the library's own errors are checked where routines raise
// them (ConvertHexToStr, Convert, the DynamicString views).
#include "core/error_frame.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <utility>

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

// Exceptions of other kinds that code inside a routine might let out.
struct NotAnException {};
const std::function<void()> kForeign[] = {
    [] { throw std::bad_alloc(); },
    [] { std::u16string().reserve(std::u16string().max_size() + 1); },  // length_error
    [] { (void)std::u16string_view(u"ab").substr(3); },                 // out_of_range
    [] { throw NotAnException(); },
};
struct Mapped {
  int32_t number;
  const char16_t* description;
};
constexpr Mapped kMapped[] = {
    {7, u"Out of memory"},
    {14, u"Out of string space"},
    {51, u"Internal error"},
    {51, u"Internal error"},
};

TEST(ErrorFrame, ForeignExceptionsBecomeRuntimeErrorsOnEveryFace) {
  constexpr std::u16string_view kSource = u"CRVLIB.Functions::Pause";
  using Frame = std::function<void(const std::function<void()>&)>;
  const std::pair<const char*, Frame> kFrames[] = {
      {"Trap", [&](const auto& fn) { Trap(kSource, fn); }},
      {"TrapUnnamed", [&](const auto& fn) { TrapUnnamed(kSource, fn); }},
      {"TrapForeign", [&](const auto& fn) { TrapForeign(kSource, fn); }},
  };
  for (size_t i = 0; i < std::size(kForeign); ++i) {
    SCOPED_TRACE(::testing::Message() << "exception " << i);
    for (const auto& [name, frame] : kFrames) {
      SCOPED_TRACE(name);
      String description;
      EXPECT_EQ(RaisedBy([&] { frame(kForeign[i]); }, &description),
                Raised(kMapped[i].number, kSource));
      EXPECT_EQ(description, kMapped[i].description);
    }
    ResumeNext err;
    bool went_on = false;
    err(kForeign[i]);
    err([&] { went_on = true; });
    EXPECT_EQ(err.Number(), kMapped[i].number);
    EXPECT_TRUE(went_on);
  }
}

TEST(ErrorFrame, TrapForeignLeavesErrorsAsRaised) {
  EXPECT_EQ(RaisedBy([] { TrapForeign(u"CRVLIB.Functions::X", [] { Raise(kOverflow); }); }),
            Raised(6, u""));
  EXPECT_EQ(RaisedBy([] {
              TrapForeign(u"CRVLIB.Functions::X", [] { Raise(kOverflow, u"CRVLIB.Other::Y"); });
            }),
            Raised(6, u"CRVLIB.Other::Y"));
}

}  // namespace
}  // namespace crvlib::internal
