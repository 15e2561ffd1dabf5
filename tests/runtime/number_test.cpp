// String to number (CDbl, CCur, CLng, CInt, CBool), Val, rounding and the
// text form of numbers.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <random>

#include "core/error_frame.h"
#include "core/thread_state.h"
#include "runtime/number_format.h"
#include "runtime/number_parse.h"
#include "runtime/rounding.h"
#include "runtime/val.h"
#include "runtime/variant_text.h"
#include "tests/runtime/runtime_test_util.h"
#include "tests/testing/raised.h"

namespace crvlib::internal {
namespace {

using NumberTest = EnUs;
constexpr ParseStatus kOk = ParseStatus::kOk;
constexpr ParseStatus k13 = ParseStatus::kTypeMismatch;
constexpr ParseStatus k6 = ParseStatus::kOverflow;

// Plain decimals are compared with strtod at random below.
TEST_F(NumberTest, StringToDouble) {
  struct Row {
    const char* source;
    std::u16string_view text;
    ParseStatus status;
    double want;
  };
  const Row rows[] = {
      {"win", u"", k13, 0},
      {"win", u" ", k13, 0},
      {"win", u"1e-94938484", kOk, 0},
      {"win", u"$1,234", kOk, 1234},
      {"win", u"(0)", kOk, 0},
      {"win", u"()", k13, 0},
      {"win", u"0()", k13, 0},
      {"win", u"+ +0", k13, 0},
      {"win", u" + 0 ", kOk, 0},
      {"win", u"1e", k13, 0},
      {"win", u"1e1.", k13, 0},

      {"win", u"&HF800", kOk, 63488},
      {"win", u"&o0777", kOk, 511},
      {"win", u"0x0", k13, 0},

      {"hand", u" ($1,234.50) ", kOk, -1234.5},
      {"hand", u"(5", k13, 0},  // parentheses come in pairs
      {"hand", u"5)", k13, 0},
      {"hand", u"((5))", k13, 0},
      {"hand", u"5-", kOk, -5},
      {"hand", u"-5-", k13, 0},
      {"hand", u"1,2,3", kOk, 123},
      {"hand", u",5", k13, 0},
      {"hand", u".5", kOk, 0.5},
      {"hand", u"5$", kOk, 5},
      {"hand", u"$5$", k13, 0},
      {"hand", u"$1e3", k13, 0},
      {"hand", u"1e999", k6, 0},

      {"hand", u"&H", k13, 0},
      {"hand", u"&HFFFFFFFF", kOk, -1},
      {"hand", u"&H100000000", k6, 0},
      {"hand", u"&O18", k13, 0},
      {"hand", u"1.2.3", k13, 0},
      {"hand", u"12abc", k13, 0},
      {"hand", u"\u30001\u3000", kOk, 1},
      {"hand", u"123456789012345678901234567890", kOk, 1.2345678901234568e29},
      {"hand", u"1.7976931348623157e308", kOk, DBL_MAX},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << U8(r.text));
    double v = -42;
    ASSERT_EQ(TryParseDouble(r.text, State().locale, &v), r.status);
    if (r.status == kOk) {
      EXPECT_EQ(v, r.want);
    }
  }
}

TEST_F(NumberTest, StringToIntegersAndCurrency) {
  struct Row {
    const char* source;
    std::u16string_view text;
    ParseStatus long_status;
    int32_t long_want;
    ParseStatus int_status;
    int16_t int_want;
    ParseStatus cur_status;
    int64_t cur_scaled;
  };
  const Row rows[] = {
      {"win", u"-2147483649", k6, 0, k6, 0, kOk, -21474836490000},
      {"win", u"-2147483648", kOk, INT32_MIN, k6, 0, kOk, -21474836480000},
      {"win", u"2147483647", kOk, INT32_MAX, k6, 0, kOk, 21474836470000},
      {"win", u"-1.5", kOk, -2, kOk, -2, kOk, -15000},
      {"win", u"0.5", kOk, 0, kOk, 0, kOk, 5000},
      {"win", u"0.6", kOk, 1, kOk, 1, kOk, 6000},
      {"win", u"1.5", kOk, 2, kOk, 2, kOk, 15000},
      {"hand", u"32767.5", kOk, 32768, k6, 0, kOk, 327675000},
      {"hand", u"-32768.5", kOk, -32768, kOk, -32768, kOk, -327685000},
      {"hand", u"0.00005", kOk, 0, kOk, 0, kOk, 0},
      {"hand", u"0.00015", kOk, 0, kOk, 0, kOk, 2},
      {"hand", u"0.000150001", kOk, 0, kOk, 0, kOk, 2},
      {"hand", u"&HFFFF", kOk, 65535, kOk, -1, kOk, 655350000},
      {"hand", u"&H10000", kOk, 65536, k6, 0, kOk, 655360000},
      {"hand", u"&HFFFFFFFF", kOk, -1, k6, 0, kOk, -10000},
      {"hand", u"922337203685477.5807", k6, 0, k6, 0, kOk, INT64_MAX},
      {"hand", u"-922337203685477.5808", k6, 0, k6, 0, kOk, INT64_MIN},
      {"hand", u"922337203685477.5808", k6, 0, k6, 0, k6, 0},
      {"hand", u"$1,234.56", kOk, 1235, kOk, 1235, kOk, 12345600},
      {"hand", u"abc", k13, 0, k13, 0, k13, 0},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << U8(r.text));
    int32_t l = 0;
    int16_t i = 0;
    Currency c;
    ASSERT_EQ(TryParseLong(r.text, State().locale, &l), r.long_status);
    if (r.long_status == kOk) {
      EXPECT_EQ(l, r.long_want);
    }
    ASSERT_EQ(TryParseInteger(r.text, State().locale, &i), r.int_status);
    if (r.int_status == kOk) {
      EXPECT_EQ(i, r.int_want);
    }
    ASSERT_EQ(TryParseCurrency(r.text, State().locale, &c), r.cur_status);
    if (r.cur_status == kOk) {
      EXPECT_EQ(c.scaled, r.cur_scaled);
    }
  }
}

TEST_F(NumberTest, StringToBoolean) {
  struct Row {
    const char* source;
    std::u16string_view text;
    ParseStatus status;
    bool want;
  };
  const Row rows[] = {
      {"win", u"#FALSE#", kOk, false}, {"win", u"#TRUE#", kOk, true},
      {"win", u"#False#", k13, false}, {"win", u"false", kOk, false},
      {"win", u"On", k13, false},      {"win", u"0", kOk, false},
      {"win", u"-1", kOk, true},       {"win", u"0.1", kOk, true},
      {"hand", u"TRUE", kOk, true},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << U8(r.text));
    bool b = !r.want;
    ASSERT_EQ(TryParseBoolean(r.text, State().locale, &b), r.status);
    if (r.status == kOk) {
      EXPECT_EQ(b, r.want);
    }
  }
}

TEST_F(NumberTest, RaisingFormsGiveTheRuntimeErrors) {
  EXPECT_EQ(RaisedBy([] { ParseDouble(u"x"); }).number, 13);
  EXPECT_EQ(RaisedBy([] { ParseDouble(u"1e400"); }).number, 6);
  EXPECT_EQ(RaisedBy([] { ParseLong(u"3000000000"); }).number, 6);
  EXPECT_EQ(RaisedBy([] { ParseInteger(u"40000"); }).number, 6);
  EXPECT_EQ(RaisedBy([] { DoubleToLong(2147483647.5); }).number, 6);
  EXPECT_EQ(RaisedBy([] { DoubleToCurrency(1e300); }).number, 6);
  EXPECT_EQ(ParseCurrency(u"$1,234.56").scaled, 12345600);  // doc (CurrencyIn example)
}

TEST_F(NumberTest, RoundingIsHalfToEven) {
  struct Row {
    const char* source;
    double in;
    int32_t as_long;
    int64_t as_currency;
  };
  const Row rows[] = {
      {"win", -1.5, -2, -15000},   {"win", 0.5, 0, 5000},   {"win", 1.5, 2, 15000},
      {"hand", 2.5, 2, 25000},     {"hand", 0.00025, 0, 2},  // 2.5 exactly: to even
      {"hand", 1.00005, 1, 10001},  // the product is 10000.500000000002, above the tie
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << r.in);
    EXPECT_EQ(DoubleToLong(r.in), r.as_long);
    EXPECT_EQ(DoubleToCurrency(r.in).scaled, r.as_currency);
  }
  EXPECT_EQ(DoubleToInteger(-32768.5), -32768);
}

// Long and Integer hold their limits exactly: the last value in, rounded to
// even, and the first value out.
TEST_F(NumberTest, LongAndIntegerLimitsHoldAtTheirEdges) {
  struct Row {
    double in;
    ParseStatus as_long;
    int32_t want;  // when it fits
    ParseStatus as_integer;
  };
  const Row rows[] = {
      {2147483647.0, kOk, INT32_MAX, k6}, {2147483647.49, kOk, INT32_MAX, k6},
      {2147483647.5, k6, 0, k6},          {-2147483648.5, kOk, INT32_MIN, k6},
      {-2147483649.0, k6, 0, k6},         {32767.0, kOk, 32767, kOk},
      {32767.5, kOk, 32768, k6},          {-32768.5, kOk, -32768, kOk},
      {-32769.0, kOk, -32769, k6},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << std::fixed << r.in);
    int32_t as_long = 0;
    int16_t as_integer = 0;
    EXPECT_EQ(TryDoubleToLong(r.in, &as_long), r.as_long);
    if (r.as_long == kOk) {
      EXPECT_EQ(as_long, r.want);
    }
    EXPECT_EQ(TryDoubleToInteger(r.in, &as_integer), r.as_integer);
    if (r.as_integer == kOk) {
      EXPECT_EQ(as_integer, r.want);
    }
  }
}

TEST_F(NumberTest, Val) {
  struct Row {
    const char* source;
    std::u16string_view text;
    double want;
  };
  const Row rows[] = {
      {"doc", u" 2 45 7", 2457},
      {"doc", u"24 and 57", 24},
      {"doc", u"&HFFFF", -1},
      {"hand", u"&HFFFF&", 65535},
      {"hand", u"&H10000", 65536},
      {"hand", u"&HFFFFFFFF", -1},
      {"hand", u"&O17", 15},
      {"hand", u"&O", 0},
      {"hand", u"&17", 0},
      {"hand", u"1.5D2", 150},
      {"hand", u"1.5e-1", 0.15},
      {"hand", u"1e+", 1},
      {"hand", u"- 5", -5},
      {"hand", u"--5", 0},
      {"hand", u".5.5", 0.5},
      {"hand", u"1,000", 1},
      {"hand", u"\t1\n2", 12},
      {"hand", u"1\r2", 1},
      {"hand", u"", 0},
      {"hand", u"1e999", DBL_MAX},
      {"hand", u"&H100000000", 0},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << U8(r.text));
    EXPECT_EQ(Val(r.text), r.want);
  }
  double v;
  EXPECT_EQ(TryVal(u"1e999", &v), k6);
}

TEST_F(NumberTest, TextOfNumbers) {
  struct Row {
    const char* source;
    Variant value;
    std::u16string_view want;
  };
  const Row rows[] = {
      {"win", Variant(int32_t{-2147483647 - 1}), u"-2147483648"},
      {"win", Variant(Currency{0}), u"0"},
      {"win", Variant(Currency{-15000}), u"-1.5"},

      {"win", Variant(Currency{INT64_MAX}), u"922337203685477.5807"},
      {"win", Variant(Currency{9}), u"0.0009"},
      {"win", Variant(true), u"True"},
      {"win", Variant(-0.0), u"0"},

      {"hand", Variant(2.0 / 3), u"0.666666666666667"},
      {"hand", Variant(123456789012345.0), u"123456789012345"},
      {"hand", Variant(1234567890123456.0), u"1.23456789012346E+15"},
      {"hand", Variant(1e15), u"1E+15"},
      {"hand", Variant(0.0001), u"0.0001"},
      {"hand", Variant(0.00001), u"1E-05"},
      {"hand", Variant(-1.5e-7), u"-1.5E-07"},
      {"hand", Variant(1e100), u"1E+100"},
      {"hand", Variant(0.1 + 0.2), u"0.3"},
      {"hand", Variant(), u""},
      {"hand", Variant(int16_t{-5}), u"-5"},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.source << " " << U8(r.want));
    EXPECT_EQ(U8(VariantToText(r.value).view()), U8(r.want));
  }
}

TEST_F(NumberTest, IsNumeric) {
  EXPECT_TRUE(IsNumeric(u" $1,234.50 "));
  EXPECT_TRUE(IsNumeric(u"&HFF"));
  EXPECT_TRUE(IsNumeric(u"1e400"));
  EXPECT_FALSE(IsNumeric(u""));
  EXPECT_FALSE(IsNumeric(u"1e"));
  EXPECT_FALSE(IsNumeric(u"abc"));
}

// The scanner against strtod, the naive reference, on random plain decimals.
TEST_F(NumberTest, AgreesWithStrtodOnRandomDecimals) {
  std::mt19937_64 rng(7);
  for (int k = 0; k < 20000; ++k) {
    std::string s;
    if (rng() % 4 == 0) s += '-';
    int whole = static_cast<int>(rng() % 20);
    for (int d = 0; d < whole; ++d) s += static_cast<char>('0' + rng() % 10);
    int frac = static_cast<int>(rng() % 20);
    if (frac || !whole) s += '.';
    for (int d = 0; d < frac || (!whole && d == 0); ++d) s += static_cast<char>('0' + rng() % 10);
    if (rng() % 3 == 0) s += "e" + std::to_string(static_cast<int>(rng() % 600) - 300);
    std::u16string u(s.begin(), s.end());
    double got = 0;
    SCOPED_TRACE(s);
    double want = std::strtod(s.c_str(), nullptr);
    if (std::isinf(want)) {
      EXPECT_EQ(TryParseDouble(u, State().locale, &got), k6);
      continue;
    }
    ASSERT_EQ(TryParseDouble(u, State().locale, &got), kOk);
    EXPECT_EQ(got, want == 0 ? 0.0 : want);
  }
}

using NumberGerman = DeDe;

TEST_F(NumberGerman, SeparatorsFollowTheLocale) {
  double v = 0;
  ASSERT_EQ(TryParseDouble(u"1.234,5", State().locale, &v), kOk);
  EXPECT_EQ(v, 1234.5);
  ASSERT_EQ(TryParseDouble(u"1.5", State().locale, &v), kOk);  // "." groups here
  EXPECT_EQ(v, 15);
  ASSERT_EQ(TryParseDouble(u"12,50 \u20AC", State().locale, &v), kOk);
  EXPECT_EQ(v, 12.5);
  EXPECT_EQ(VariantToText(Variant(1.5)), u"1,5");
  EXPECT_EQ(VariantToText(Variant(Currency{9})), u"0,0009");
  EXPECT_EQ(Val(u"1,5"), 1);  // Val keeps "." whatever the locale
  EXPECT_EQ(Val(u"1.5"), 1.5);
}

}  // namespace
}  // namespace crvlib::internal
