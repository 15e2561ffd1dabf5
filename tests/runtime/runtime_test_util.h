// Shared pieces of the runtime tests: a fixture that pins the thread to a
// locale, and the legend of the `source` column of every table.
//
// Each table row says where its expected value comes from:
//   "doc"  an example of the runtime's documentation (VBA language reference);
//   "win"  a result of the Windows runtime as recorded by a published
//          conformance suite of a peer implementation (Wine's oleaut32 tests);
//   "hand" worked out by hand from the documented rules.
#ifndef CRVLIB_TESTS_RUNTIME_RUNTIME_TEST_UTIL_H_
#define CRVLIB_TESTS_RUNTIME_RUNTIME_TEST_UTIL_H_

#include <gtest/gtest.h>

#include <string>

#include "crvlib/locale.h"
#include "crvlib/string.h"

namespace crvlib::internal {

class EnUs : public testing::Test {
 protected:
  void SetUp() override { SetThreadLocale("en-US"); }
  void TearDown() override { SetThreadLocale("en-US"); }
};

class DeDe : public testing::Test {
 protected:
  void SetUp() override { SetThreadLocale("de-DE"); }
  void TearDown() override { SetThreadLocale("en-US"); }
};

inline std::string U8(std::u16string_view s) {
  return String(s).ToUtf8();
}

}  // namespace crvlib::internal

#endif  // CRVLIB_TESTS_RUNTIME_RUNTIME_TEST_UTIL_H_
