// StrComp in its binary and text modes.
#include "runtime/compare.h"

#include <gtest/gtest.h>

#include "tests/runtime/runtime_test_util.h"
#include "tests/testing/raised.h"

namespace crvlib::internal {
namespace {

using CompareTest = EnUs;

TEST_F(CompareTest, StrCompModes) {
  struct Row {
    const char* source;
    std::u16string_view a, b;
    int32_t mode;
    int want;
  };
  const Row rows[] = {
      {"doc", u"ABCD", u"abcd", 1, 0}, {"doc", u"ABCD", u"abcd", 0, -1},
      {"doc", u"abcd", u"ABCD", 0, 1}, {"hand", u"a", u"B", 0, 1},
      {"hand", u"a", u"B", 1, -1},     {"hand", u"", u"", 0, 0},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << U8(r.a) << " " << U8(r.b));
    EXPECT_EQ(StrComp(r.a, r.b, r.mode), r.want);
  }
  EXPECT_EQ(RaisedBy([] { StrComp(u"a", u"b", 2); }).number, 5);
}

}  // namespace
}  // namespace crvlib::internal
