// VarFormat: number, date, string and named formats, en-US and de-DE.
#include "runtime/format.h"

#include <gtest/gtest.h>

#include "core/error_frame.h"
#include "core/thread_state.h"
#include "tests/runtime/runtime_test_util.h"

namespace crvlib::internal {
namespace {

using FormatTest = EnUs;

struct Row {
  const char* source;
  Variant value;
  std::u16string_view format;
  std::u16string_view want;
};

void Check(const Row* rows, size_t n) {
  for (size_t k = 0; k < n; ++k) {
    const Row& r = rows[k];
    SCOPED_TRACE(testing::Message() << r.source << " format " << U8(r.format) << " row " << k);
    EXPECT_EQ(U8(VarFormat(r.value, r.format).view()), U8(r.want));
  }
}

TEST_F(FormatTest, NumberFormats) {
  const Row rows[] = {
      // Digit placeholders.
      {"win", 1, u"#", u"1"},
      {"win", 0, u"#", u""},
      {"win", 0, u"#.#", u"."},
      {"win", 1, u"00", u"01"},
      {"win", 0, u"0.0", u"0.0"},
      {"win", 1, u"00\\c\\o\\p\\y", u"01copy"},
      {"win", 1, u"000###", u"000001"},
      {"win", 1, u"##abcdefghijklmnopqrstuvwxyz", u"1abcdefghijklmnopqrstuvwxyz"},
      {"win", 1, u"0,000,000,000", u"0,000,000,001"},
      {"win", 123456789, u"#,#.#", u"123,456,789."},
      {"win", 123456789, u"###, ###, ###", u"123, 456, 789"},
      {"win", 1.2, u"0#.0#0#0#0#0", u"01.200000000"},
      {"win", 0.17, u"#.00", u".17"},
      {"win", 1.7, u"#.33", u"2.33"},
      {"win", 9.9999999, u"#0.000000", u"10.000000"},
      {"win", -0.1, u".#", u"-.1"},
      {"win", 0.0995, u"#.##", u".1"},
      {"hand", 2.675, u"0.00", u"2.68"},  // from the 15-digit text, half away from zero
      {"hand", -2.5, u"0", u"-3"},
      {"hand", -0.001, u"0.00", u"-0.00"},
      {"hand", 123, u"#-#", u"12-3"},
      // Scientific notation, percent and scaling by thousands.
      {"win", 1.7, u"0.0000E-000", u"1.7000E000"},
      {"win", 1.7, u"0.0000e-1", u"1.7000e01"},
      {"win", 1.73245, u"0.0000E+000", u"1.7325E+000"},
      {"win", 1.7, u"0.0000e+0#", u"1.7000e+0"},
      {"win", 1000001.0, u"0.0000e+1", u"1.0000e+61"},
      {"win", 450.0001e+43, u"#000.0000e+0", u"4500.0010e+42"},
      {"win", 0.0317e-11, u"0000.0000e-0", u"3170.0000e-16"},
      {"win", 47.11, u".0000E+0", u".4711E+2"},
      {"win", 3.0401e-13, u"#####.####e-0%", u"30401.e-15%"},
      {"hand", 9.99, u"0.0E+0", u"1.0E+1"},
      {"doc", 100000000, u"##0,,", u"100"},
      {"hand", 1234567, u"#,##0,", u"1,235"},
      {"hand", 0.125, u"0.0%", u"12.5%"},
      // Sections.
      {"win", 0, u"\"pos\";\"neg\"", u"pos"},
      {"win", -1, u"\"pos\";\"neg\"", u"neg"},
      {"win", 0, u"\"pos\";\"neg\";\"zero\"", u"zero"},
      {"win", -1, u"#;-#", u"-1"},
      {"hand", -1234.5, u"$#,##0.00;($#,##0.00)", u"($1,234.50)"},
      {"doc", 0, u"$#,##0;;\\Z\\e\\r\\o", u"Zero"},
      {"hand", -5, u"0;;\\Z\\e\\r\\o", u"-5"},  // an empty section borrows the first, sign and all
      {"hand", kNull, u"0;-0;\\z;\\n\\u\\l\\l", u"null"},
      {"hand", kNull, u"0.00", u""},
      {"hand", 0.001, u"0;-0;\\z", u"0"},  // zero means exactly zero
      // Named formats.
      {"win", 1, u"Percent", u"100.00%"},
      {"win", 0, u"Scientific", u"0.00E+00"},
      {"win", true, u"True/False", u"True"},
      {"win", false, u"True/False", u"False"},
      {"win", 1, u"On/Off", u"On"},
      {"win", 0, u"Yes/No", u"No"},
      {"hand", -1234.5, u"Currency", u"($1,234.50)"},
      {"hand", -1234.5, u"Standard", u"-1,234.50"},
      {"hand", 1234.5, u"Fixed", u"1234.50"},
      {"hand", 1234.5, u"General Number", u"1234.5"},
      {"hand", 0.125, u"percent", u"12.50%"},
      {"hand", u"abc", u"Percent", u"abc"},
      {"hand", u"0.5", u"Percent", u"50.00%"},
      {"hand", Currency{12345}, u"0.0000", u"1.2345"},
      {"hand", true, u"0", u"-1"},
  };
  Check(rows, std::size(rows));
}

TEST_F(FormatTest, DateTokens) {
  const Row rows[] = {
      {"win", Date{0.0}, u"w", u"7"},
      {"win", Date{2.525}, u"am/pm", u"pm"},
      {"win", Date{2.525}, u"AM/PM", u"PM"},
      {"win", Date{2.525}, u"A/P", u"P"},
      {"win", Date{2.525}, u"a/p", u"p"},
      {"win", Date{2.525}, u"q", u"1"},
      {"win", Date{2.525}, u"d", u"1"},
      {"win", Date{2.525}, u"dd", u"01"},
      {"win", Date{2.525}, u"ddd", u"Mon"},
      {"win", Date{2.525}, u"dddd", u"Monday"},
      {"win", Date{2.525}, u"mmm", u"Jan"},
      {"win", Date{2.525}, u"mmmm", u"January"},
      {"win", Date{2.525}, u"y", u"1"},
      {"win", Date{2.525}, u"yy", u"00"},
      {"win", Date{2.525}, u"yyy", u"001"},
      {"win", Date{2.525}, u"yyyy", u"1900"},
      {"win", Date{2.525}, u"dd mm yyyy hh:mm:ss", u"01 01 1900 12:36:00"},
      {"win", Date{2.525}, u"mm :ss:mm", u"01 :00:01"},
      {"win", Date{2.525}, u"hh:mm :ss:mm", u"12:36 :00:01"},
      {"win", Date{2.525}, u"hh:dd :mm:mm", u"12:01 :01:01"},
      {"win", Date{2.525}, u"dd :mm:nn", u"01 :01:36"},
      {"win", Date{2.725}, u"hh:nn:ss A/P", u"05:24:00 P"},
      {"win", Date{40531.0}, u"dddd", u"Sunday"},
      {"win", Date{2.525}, u"short time", u"12:36"},
      {"win", Date{2.525}, u"medium time", u"12:36 PM"},
      {"win", Date{2.525}, u"long time", u"12:36:00 PM"},
      {"win", u"39697.11", u"hh:mm", u"02:38"},
      {"hand", Date{38352.75}, u"c", u"12/31/2004 6:00:00 PM"},
      {"hand", Date{38352.75}, u"ddddd ttttt", u"12/31/2004 6:00:00 PM"},
      {"hand", Date{38352.0}, u"dddddd", u"Friday, December 31, 2004"},
      {"hand", Date{38352.0}, u"Medium Date", u"31-Dec-04"},
      {"hand", Date{38352.0}, u"General Date", u"12/31/2004"},
      {"hand", Date{38352.0}, u"ww", u"53"},
      {"hand", Date{38352.75}, u"h AMPM", u"6 PM"},
      {"hand", u"12/31/2004", u"yyyy-mm-dd", u"2004-12-31"},
      {"hand", u"not a date", u"yyyy", u"not a date"},
      {"hand", 1e10, u"yyyy", u"10000000000"},
  };
  Check(rows, std::size(rows));
}

TEST_F(FormatTest, StringFormats) {
  const Row rows[] = {
      {"win", u"testing", u"", u"testing"},
      {"win", u"testing", u"@", u"testing"},
      {"win", u"testing", u"\\x@\\x@", u"xtxesting"},
      {"win", u"testing", u"@@@@@@@@", u" testing"},
      {"win", u"testing", u"@\\x@@@@@@@", u" xtesting"},
      {"win", u"testing", u"&&&&&&&&", u"testing"},
      {"win", u"testing", u">&&", u"TESTING"},
      {"win", u"testing", u"<&>&", u"testing"},
      {"hand", u"ab", u"!@@@@", u"ab  "},
      {"hand", u"Hello", u"<", u"hello"},
      {"hand", u"", u"@;\\e\\m\\p\\t\\y", u"empty"},
      {"hand", kNull, u"@;\\n\\o\\n\\e", u"none"},
  };
  Check(rows, std::size(rows));
}

// Regression: placeholder counts beyond the layout buffers once overran them.
TEST_F(FormatTest, VeryLongMasksStayInBounds) {
  std::u16string mask(1000, u'0');
  mask += u'.';
  mask += std::u16string(1000, u'0');
  String s = VarFormat(1.5, mask);
  EXPECT_EQ(s.view().substr(0, 3), u"000");
  EXPECT_NE(s.view().find(u"1.5"), std::u16string_view::npos);
  std::u16string hashes(70000, u'#');
  EXPECT_EQ(VarFormat(12345, hashes), u"12345");
}

using FormatGerman = DeDe;

TEST_F(FormatGerman, SeparatorsNamesAndCurrency) {
  const Row rows[] = {
      {"hand", 1234.5, u"#,##0.00", u"1.234,50"},
      {"hand", 1234.5, u"Currency", u"1.234,50 \u20AC"},
      {"hand", -1234.5, u"Currency", u"-1.234,50 \u20AC"},
      {"hand", Date{38352.75}, u"dd/mm/yyyy hh:nn", u"31.12.2004 18:00"},
      {"hand", Date{38352.75}, u"dddd, d. mmmm yyyy", u"Freitag, 31. Dezember 2004"},
      {"hand", Date{38352.75}, u"General Date", u"31.12.2004 18:00:00"},
      {"hand", u"1.234,5", u"0.00", u"1234,50"},
  };
  Check(rows, std::size(rows));
}

}  // namespace
}  // namespace crvlib::internal
