// NumToWords: amounts in words for cheques.
#include <gtest/gtest.h>

#include "crvlib/functions.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

TEST(NumToWords, WritesAmountsForCheques) {
  struct Case {
    int64_t scaled;  // ten-thousandths
    const char* want;
  };
  constexpr Case kCases[] = {
      {12345600, "One Thousand Two Hundred and Thirty Four and 56/100"},
      {0, "Zero and 00/100"},
      {10020000000000, "One Thousand Million Two Million and 00/100"},
      {123450, "Twelve and 35/100"},  // cents round half away from zero
      {123449, "Twelve and 34/100"},
      {9950, "One and 00/100"},  // and may carry into the whole part
      {INT64_MAX,
       "Nine Hundred and Twenty Two Million Million Three Hundred and Thirty Seven Thousand "
       "Million Two Hundred and Three Million Six Hundred and Eighty Five Thousand Four Hundred "
       "and Seventy Seven and 58/100"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.scaled);
    EXPECT_EQ(Functions::NumToWords(Currency::FromScaled(c.scaled)).ToUtf8(), c.want);
  }
}

TEST(NumToWords, RefusesNegativeAmounts) {
  for (int64_t scaled : {int64_t{-1}, INT64_MIN}) {
    EXPECT_EQ(RaisedBy([&] { Functions::NumToWords(Currency::FromScaled(scaled)); }),
              Raised(5, u"CRVLIB.Functions::NumToWords"))
        << scaled;
  }
}

}  // namespace
}  // namespace crvlib
