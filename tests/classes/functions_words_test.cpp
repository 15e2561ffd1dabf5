// NumToWords: amounts in words for cheques.
#include <gtest/gtest.h>

#include "crvlib/error.h"
#include "crvlib/functions.h"

namespace crvlib {
namespace {

TEST(NumToWords, WritesAmountsForCheques) {
  struct Case {
    uint64_t scaled;  // ten-thousandths
    std::u16string_view want;
  };
  constexpr Case kCases[] = {
      {12345600, u"One Thousand Two Hundred and Thirty Four and 56/100"},
      {0, u"Zero and 00/100"},
      {500, u"Zero and 05/100"},
      {1000000, u"One Hundred and 00/100"},
      {1015000, u"One Hundred and One and 50/100"},
      {110000, u"Eleven and 00/100"},
      {200000, u"Twenty and 00/100"},
      {990000, u"Ninety Nine and 00/100"},
      {10050000, u"One Thousand Five and 00/100"},
      {20000000000, u"Two Million and 00/100"},
      {10000000000000, u"One Thousand Million and 00/100"},
      {10020000000000, u"One Thousand Million Two Million and 00/100"},
      {10000000000000000, u"One Million Million and 00/100"},
      {10000010000000000, u"One Million Million One Million and 00/100"},
      // Cents round half away from zero, and may carry into the whole part.
      {123450, u"Twelve and 35/100"},
      {123449, u"Twelve and 34/100"},
      {9950, u"One and 00/100"},
      {49, u"Zero and 00/100"},
      {INT64_MAX,
       u"Nine Hundred and Twenty Two Million Million Three Hundred and Thirty Seven Thousand "
       u"Million Two Hundred and Three Million Six Hundred and Eighty Five Thousand Four Hundred "
       u"and Seventy Seven and 58/100"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.scaled);
    EXPECT_EQ(Functions::NumToWords(Currency::FromScaled(static_cast<int64_t>(c.scaled))).ToUtf8(),
              String(c.want).ToUtf8());
  }
}

TEST(NumToWords, RefusesNegativeAmounts) {
  for (int64_t scaled : {int64_t{-1}, int64_t{-10000}, INT64_MIN}) {
    SCOPED_TRACE(scaled);
    try {
      Functions::NumToWords(Currency::FromScaled(scaled));
      ADD_FAILURE() << "no error";
    } catch (const Error& e) {
      EXPECT_EQ(e.Number(), 5);
      EXPECT_EQ(e.Source(), u"CRVLIB.Functions::NumToWords");
    }
  }
}

}  // namespace
}  // namespace crvlib
