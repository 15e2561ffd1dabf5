// Values in JSON: exact round trips (every class of code unit, odd byte
// lengths, the edges of Currency and Date), the reader's refusals, and the
// strict conversion of arguments to parameter types.
#include "cli/value_json.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/cli/test_values.h"

namespace crvlib::cli {
namespace {

std::string ToJson(const Variant& v) {
  std::string out;
  AppendVariantJson(out, v);
  return out;
}

Variant FromJson(std::string_view text) {
  std::string error;
  std::optional<Json> j = ParseJson(text, &error);
  if (!j) throw UsageError("parse: " + error);
  return VariantFromJson(*j);
}

TEST(ValueJson, VariantsRoundTripExactly) {
  struct Case {
    Variant value;
    const char* json;  // null: only the round trip is checked
  } cases[] = {
      {Variant(), R"({"Empty":true})"},
      {kNull, "null"},
      {true, "true"},
      {int32_t{-2147483647 - 1}, "-2147483648"},
      {5.0, "5.0"},  // stays a Double
      {-1e300, "-1e+300"},
      {5e-324, "5e-324"},  // below 1e-5: the shortest form, not plain digits
      {Currency::FromScaled(123456), R"({"Currency":"12.3456"})"},
      {Currency::FromScaled(-1), R"({"Currency":"-0.0001"})"},
      {Currency::FromScaled(INT64_MIN), R"({"Currency":"-922337203685477.5808"})"},
      {Currency::FromScaled(INT64_MAX), R"({"Currency":"922337203685477.5807"})"},
      {Date{38352.0}, R"({"Date":"2004-12-31T00:00:00"})"},
      {Date{-1.25}, R"({"Date":"1899-12-29T06:00:00"})"},
      {Date{2958465.0}, R"({"Date":"9999-12-31T00:00:00"})"},
      {Date{3e6}, R"({"Date":3000000})"},  // past year 9999: the serial
      {std::numeric_limits<double>::infinity(), R"({"Double":"Infinity"})"},
      {String(u"a\"b\\c/"), R"("a\"b\\c/")"},
      {String(std::u16string(u"\0\x1f\x7f\n", 4)), R"("\u0000\u001f\u007f\n")"},
      {String(u"\u00ff\u00e9\u20ac"), "\"\u00ff\u00e9\u20ac\""},        // UTF-8
      {String(u"\U0001F600"), "\"\U0001F600\""},                        // a pair
      {String(u"\xD800"), R"("\ud800")"},                               // lone high
      {String::FromBytes("\x41\x00\xFF", 3), R"({"bytes":"4100ff"})"},  // odd length
  };
  for (const Case& c : cases) {
    std::string json = ToJson(c.value);
    SCOPED_TRACE(json);
    if (c.json) {
      EXPECT_EQ(json, c.json);
    }
    EXPECT_EQ(FromJson(json), c.value);
  }
  // Integers go out as numbers and come back as Longs.
  EXPECT_EQ(FromJson(ToJson(int16_t{7})), Variant(int32_t{7}));
}

TEST(ValueJson, EveryCodeUnitSurvivesARoundTrip) {
  std::u16string all;
  for (char32_t u = 0; u <= 0xFFFF; ++u) all.push_back(static_cast<char16_t>(u));
  for (bool ascii : {false, true}) {
    std::string out;
    AppendJsonString(out, all, ascii);
    std::string error;
    std::optional<Json> j = ParseJson(out, &error);
    ASSERT_TRUE(j) << error;
    EXPECT_EQ(j->string, all);
    if (ascii) {
      for (char c : out) ASSERT_LT(static_cast<unsigned char>(c), 0x80);
    }
  }
}

// (String arrays, objects and Nothing show in the batch tests.)
TEST(ValueJson, VariantArraysHaveTheirForm) {
  EXPECT_EQ(fixtures::JsonOrError([] {
              return VariantArray{0, {Variant(), int32_t{2}}};
            }),
            R"({"lbound":0,"items":[{"Empty":true},2]})");
}

TEST(ValueJson, TheReaderRefusesWhatIsNotStrictJson) {
  struct Case {
    std::string text;
    const char* error;
  } cases[] = {
      {"", "unexpected end"},
      {"{", "expected a string key"},
      {"[1,]", "unexpected character"},
      {"01", "unexpected text after"},
      {"1.", "invalid JSON number"},
      {"-", "invalid JSON number"},
      {"1e999", "out of range"},
      {R"("\x41")", "bad escape"},
      {R"("\u12G4")", "bad \\u escape"},
      {"\"a\tb\"", "control character"},
      {"\"\xFF\"", "invalid UTF-8"},
      {"\"\xC0\xAF\"", "invalid UTF-8"},          // overlong
      {"\"\xE0\x80\xAF\"", "invalid UTF-8"},      // overlong at three bytes
      {"\"\xF4\x90\x80\x80\"", "invalid UTF-8"},  // past U+10FFFF
      {"\"\xED\xA0\x80\"", "invalid UTF-8"},      // a surrogate in UTF-8
      {"\"\xE2\x82\"", "invalid UTF-8"},          // cut short
      {R"({"a":1,"a":2})", "duplicate key"},
      {std::string(65, '[') + std::string(65, ']'), "deeper than 64"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    std::string error;
    EXPECT_FALSE(ParseJson(c.text, &error));
    EXPECT_NE(error.find(c.error), std::string::npos) << error;
  }
  std::string error;
  EXPECT_TRUE(ParseJson(std::string(64, '[') + std::string(64, ']'), &error)) << error;
  std::optional<Json> j = ParseJson(R"( {"n":-0, "big":12345678901234567890, "f":1E2} )", &error);
  ASSERT_TRUE(j) << error;
  EXPECT_EQ(j->Find("n")->type, Json::Type::kInteger);
  EXPECT_EQ(j->Find("big")->type, Json::Type::kFloat);
  EXPECT_EQ(j->Find("f")->number, 100.0);
  EXPECT_TRUE(ParseJson("1e-400", &error));  // underflows to zero
  EXPECT_EQ(ParseJson(R"("\"\\\/\b\f\n\r\t")", &error)->string, u"\"\\/\b\f\n\r\t");
}

// Converts `json` for parameter `index` of cls.member; returns the value's
// JSON or "error: <message>". Only the object "p" exists.
std::string Convert(const char* member, size_t index, std::string_view json, const char* cls) {
  return fixtures::JsonOrError([&] {
    return ArgumentFromJson(*ParseJson(json, nullptr), fixtures::ParamOf(cls, member, index),
                            [](std::string_view name) -> Object {
                              if (name == "p") return typelib::MakeObject(fixtures::Probe());
                              throw UsageError("no object " + std::string(name));
                            });
  });
}

TEST(ValueJson, TypedParametersTakeOnlyTheirOwnForms) {
  struct Case {
    const char* member;  // routine whose parameter `index` has the type
    size_t index;
    const char* json;
    const char* want;  // the value's JSON, or the start of the error
  } cases[] = {
      // Long (Pick.Base) and an enumeration (Pick.Order)
      {"Pick", 0, "5", "5"},
      {"Pick", 0, "5.0", "5"},
      {"Pick", 0, "5.5", "error: expected a whole number, got a number"},
      {"Pick", 0, "2147483648", "error: expected a Long"},
      {"Pick", 0, "-2147483648", "-2147483648"},
      {"Pick", 0, R"("5")", "error: expected a whole number, got a string"},
      {"Pick", 0, R"({"Long":7})", "7"},
      {"Pick", 0, R"({"Integer":-32768})", "-32768"},
      {"Pick", 0, R"({"Integer":40000})", "error: expected an Integer"},  // as for a Variant
      {"Twice", 0, R"({"Long":40000})", "error: expected an Integer"},
      {"Pick", 0, "null", "error: expected a whole number, got null"},
      {"Pick", 1, R"("vxDescending")", "1"},
      {"Pick", 1, "7", "7"},  // any 32-bit value
      {"Pick", 1, R"("vxUp")", "error: \"vxUp\" is not a member of vxSortOrderEnum"},
      // Integer, Boolean, Double
      {"Twice", 0, "32767", "32767"},
      {"Twice", 0, "32768", "error: expected an Integer"},
      {"Pick", 2, "true", "true"},
      {"Pick", 2, "1", "error: expected true or false"},
      {"Half", 0, "5", "5.0"},
      {"Half", 0, R"({"Integer":3})", "3.0"},
      {"Half", 0, R"({"Double":"NaN"})", R"({"Double":"NaN"})"},
      {"Half", 0, R"("5")", "error: expected a number"},
      // Currency and Date
      {"Cents", 0, R"({"Currency":"1.5"})", R"({"Currency":"1.5"})"},
      {"Cents", 0, "2.25", R"({"Currency":"2.25"})"},
      {"Cents", 0, R"({"Currency":"922337203685477.5808"})", "error: a Currency"},
      {"Cents", 0, "1e300", "error: Currency out of range"},
      {"NextDay", 0, R"({"Date":"2004-02-29"})", R"({"Date":"2004-02-29T00:00:00"})"},
      {"NextDay", 0, R"({"Date":"2004-12-31 23:59"})", R"({"Date":"2004-12-31T23:59:00"})"},
      {"NextDay", 0, R"({"Date":"1900-02-29"})", "error: a Date is"},
      {"NextDay", 0, R"({"Date":"2004-12-31T24:00:00"})", "error: a Date is"},
      {"NextDay", 0, R"({"Date":"0099-12-31"})", "error: a Date is"},
      {"NextDay", 0, R"("2004-12-31")", "error: expected a Date"},
      // String
      {"Swap", 0, R"("x")", R"("x")"},
      {"Swap", 0, R"({"bytes":"41"})", R"({"bytes":"41"})"},
      {"Swap", 0, R"({"bytes":"4"})", "error: {\"bytes\":…} needs two hex digits"},
      {"Swap", 0, R"({"bytes":"zz"})", "error: {\"bytes\":…} holds a character"},
      {"Swap", 0, R"({"String":"y"})", R"("y")"},
      {"Swap", 0, "5", "error: expected a string, got a number"},
      {"Swap", 0, "null", R"("")"},  // by reference: input does not matter
      // Variant
      {"Echo", 0, "2147483647", "2147483647"},
      {"Echo", 0, "2147483648", "2147483648.0"},
      {"Echo", 0, R"({"Empty":false})", "error: expected {\"Empty\":true}"},
      {"Echo", 0, "[1]", "error: expected a Variant"},
      {"Echo", 0, R"({"Currency":"1","Date":"2004-01-01"})", "error: expected a Variant"},
      {"Echo", 0, R"({"Colour":1})", "error: expected a Variant"},
      // Objects
      {"ValueOf", 0, R"({"object":"p"})", R"({"object":"Probe"})"},
      {"ValueOf", 0, "null", "null"},
      {"ValueOf", 0, R"({"object":"q"})", "error: no object q"},
      {"ValueOf", 0, R"("p")", "error: expected an object"},
      // String arrays (Probe.Split) keep their lower bound
      {"Split", 0, R"(["a","b"])", R"({"lbound":0,"items":["a","b"]})"},
      {"Split", 0, R"({"lbound":-3,"items":[]})", R"({"lbound":-3,"items":[]})"},
      {"Split", 0, "null", R"({"lbound":0,"items":[]})"},
      {"Split", 0, R"({"lbound":2147483647,"items":["a"]})",
       R"({"lbound":2147483647,"items":["a"]})"},
      {"Split", 0, R"({"lbound":2147483647,"items":["a","b"]})", "error: the array's upper bound"},
      {"Split", 0, R"({"items":[1]})", "error: expected a string"},
      {"Split", 0, R"({"lbound":0,"items":[],"x":1})", "error: an array is"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.member << "#" << c.index << " " << c.json);
    const char* cls = std::string_view(c.member) == "Split" ? "Probe" : "Tools";
    std::string got = Convert(c.member, c.index, c.json, cls);
    EXPECT_EQ(got.substr(0, std::string_view(c.want).size()), c.want) << got;
  }
}

TEST(ValueJson, CurrencyAndDateTextForms) {
  struct CurrencyCase {
    const char* text;
    std::optional<int64_t> scaled;
  } currencies[] = {
      {"0", 0},
      {"12.3456", 123456},
      {"-7.05", -70500},
      {"1.", std::nullopt},
      {".5", std::nullopt},
      {"+1", std::nullopt},
      {"1.00000", std::nullopt},
      {"99999999999999999999", std::nullopt},
  };
  for (const CurrencyCase& c : currencies) {
    SCOPED_TRACE(c.text);
    std::optional<Currency> got = ParseCurrency(c.text);
    ASSERT_EQ(got.has_value(), c.scaled.has_value());
    if (got) {
      EXPECT_EQ(got->scaled, *c.scaled);
    }
  }
  EXPECT_EQ(FormatCurrency(Currency::FromScaled(70000)), "7");

  struct DateCase {
    const char* text;
    double serial;
  } dates[] = {
      {"1899-12-30", 0},
      {"1900-03-01", 61},
      {"0100-01-01", -657434},
      {"9999-12-31T12:00:00", 2958465.5},
  };
  for (const DateCase& d : dates) {
    SCOPED_TRACE(d.text);
    std::optional<Date> got = ParseDate(d.text);
    ASSERT_TRUE(got);
    EXPECT_DOUBLE_EQ(got->serial, d.serial);
    std::string iso = *FormatDate(*got);
    EXPECT_EQ(iso.substr(0, std::string_view(d.text).size()), d.text);
  }
  // A time that rounds to midnight moves to the next day, on both sides of 0.
  EXPECT_EQ(*FormatDate(Date{0.99999999}), "1899-12-31T00:00:00");
  EXPECT_EQ(*FormatDate(Date{-1.99999999}), "1899-12-30T00:00:00");
  EXPECT_FALSE(FormatDate(Date{std::nan("")}));
}

}  // namespace
}  // namespace crvlib::cli
