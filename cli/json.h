// A small JSON reader and the string writer crv needs. It exists because the
// values crv carries are UTF-16 strings that may hold any code unit: a lone
// surrogate written as "\uD800" must come back as that one code unit, which
// general-purpose JSON libraries refuse. Strings are therefore decoded
// straight to UTF-16, and written with \uXXXX escapes wherever UTF-8 cannot
// carry a code unit.
//
// The reader is strict RFC 8259 on one line of input: no comments, no
// trailing commas, no duplicate keys in an object, raw bytes of strings must
// be well-formed UTF-8, and nesting is limited so that hostile input cannot
// exhaust the stack.
//
//   std::string error;
//   std::optional<Json> j = ParseJson(R"({"a":[1,2.5,"\uD800"]})", &error);
//   j->Find("a")->array[0].integer == 1
//   j->Find("a")->array[2].string == u"\xD800"
#ifndef CRVLIB_CLI_JSON_H_
#define CRVLIB_CLI_JSON_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace crvlib::cli {

struct JsonMember;

struct Json {
  enum class Type { kNull, kBoolean, kInteger, kFloat, kString, kArray, kObject };

  Type type = Type::kNull;
  bool boolean = false;
  // kInteger: a number written without fraction or exponent that fits 64 bits.
  int64_t integer = 0;
  // Every number (kInteger and kFloat) has its value here as well.
  double number = 0;
  std::u16string string;
  std::vector<Json> array;
  // Members in the order written; keys in UTF-8 (a lone surrogate in a key
  // becomes U+FFFD: keys are names, not data).
  std::vector<JsonMember> object;

  bool IsNumber() const { return type == Type::kInteger || type == Type::kFloat; }
  // The member `key` of an object, or null.
  const Json* Find(std::string_view key) const;
};

struct JsonMember {
  std::string key;
  Json value;
};

inline constexpr int kMaxJsonDepth = 64;

// Parses `text` as one JSON value (surrounding blanks allowed). On failure
// returns nullopt and describes the first problem in `*error`.
std::optional<Json> ParseJson(std::string_view text, std::string* error);

// Appends `s` as a JSON string literal. Well-formed text goes out as UTF-8
// (or as \uXXXX escapes for everything past ASCII when `ascii_only`); control
// characters and unpaired surrogates always as escapes.
void AppendJsonString(std::string& out, std::u16string_view s, bool ascii_only = false);
void AppendJsonString(std::string& out, std::string_view utf8);

// A double in the shortest form that reads back to the same value, in plain
// digits for magnitudes from 1e-5 to 1e17 (0.1 -> "0.1", 5 -> "5",
// 3e6 -> "3000000", 1e300 -> "1e+300").
std::string FormatDouble(double d);

}  // namespace crvlib::cli

#endif  // CRVLIB_CLI_JSON_H_
