// DLLRoutines: statuses, outputs that keep their content when their
// statement fails, and the two deliberate differences from Functions.
#include "crvlib/dll_routines.h"

#include <gtest/gtest.h>

namespace crvlib {
namespace {

using W = DLLRoutines;

TEST(DLLRoutines, StatusesAndOutputs) {
  String a = u"a|b";
  EXPECT_EQ(W::CRVDeleteElement(a, u"|", 1), -1);
  EXPECT_EQ(a, u"b");
  a = u"a|b";
  EXPECT_EQ(W::CRVDeleteElement(a, u"|", -2), 0);
  EXPECT_EQ(a, u"a|b");

  EXPECT_EQ(W::CRVCountElements(u"", u"|"), 0);
  EXPECT_EQ(W::CRVCountElements(u"a|b", u""), 0);
  EXPECT_EQ(W::CRVCountElements(u"a|b", u"|"), 2);

  int32_t p = 99;
  EXPECT_EQ(W::CRVInsertElementSorted(u"a|c", u"|", p, u"b"), -1);
  EXPECT_EQ(p, 1);  // position minus 1; the array is not written back
  EXPECT_EQ(W::CRVInsertElementSorted(u"a|b", u"|", p, u"b", vxAscending, vxLeftJustify,
                                      vxCaseSensitive, vxNoDuplicates),
            -1);
  EXPECT_EQ(p, -1);  // a refused duplicate
  p = 7;
  EXPECT_EQ(W::CRVInsertElementSorted(u"a|b", u"", p, u"b"), 0);
  EXPECT_EQ(p, 7);

  EXPECT_EQ(W::CRVLocateElement(u"a|b", u"b", u"|", 1), 2);
  EXPECT_EQ(W::CRVLocateElement(u"a|b", u"b", u"|", -1), 0);

  String e = u"old";
  EXPECT_EQ(W::CRVExtractElement(u"a|b", u"|", 2, e), -1);
  EXPECT_EQ(e, u"b");
  EXPECT_EQ(W::CRVExtractElement(u"a|b", u"|", -2, e), 0);
  EXPECT_EQ(e, u"b");

  a = u"a|c";
  EXPECT_EQ(W::CRVChangeDelimiter(a, u"", u";"), 0);  // ChangeAll refuses an empty value
  EXPECT_EQ(a, u"a|c");

  a = u"a|b";
  EXPECT_EQ(W::CRVInsertElement(a, u"|", 2, u"x"), -1);
  EXPECT_EQ(a, u"a|x|b");
  EXPECT_EQ(W::CRVReplaceElement(a, u"|", -1, u"y"), 0);
  EXPECT_EQ(a, u"a|x|b");
  EXPECT_EQ(W::CRVSortElements(a, u"|", vxDescending), -1);
  EXPECT_EQ(a, u"x|b|a");
}

}  // namespace
}  // namespace crvlib
