// A recursive-descent JSON reader over a byte string. Recursion only happens
// on '[' and '{' and stops at kMaxJsonDepth, so the stack use is bounded
// whatever the input. Strings are decoded to UTF-16 as they are read: raw
// UTF-8 is validated and converted, \uXXXX escapes give their code unit as is
// (a surrogate pair written as two escapes simply gives the two units).
// Numbers follow the JSON grammar exactly; the integer form is kept apart
// from the others so that 5 and 5.0 stay distinguishable.
#include "cli/json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

#include "crvlib/string.h"

namespace crvlib::cli {

const Json* Json::Find(std::string_view key) const {
  for (const auto& [k, v] : object) {
    if (k == key) return &v;
  }
  return nullptr;
}

namespace {

// The power of ten of the leading digit of a number in JSON form
// ("123.4e5" -> 7, "0.001" -> -3), enough to tell overflow from underflow.
int64_t DecimalExponent(const char* p, const char* end) {
  if (*p == '-') ++p;
  const char* mantissa_end = std::find_if(p, end, [](char c) { return c == 'e' || c == 'E'; });
  const char* point = std::find(p, mantissa_end, '.');
  std::optional<int64_t> power;
  for (const char* q = p; q < mantissa_end && !power; ++q) {
    if (*q != '.' && *q != '0') power = q < point ? point - q - 1 : -(q - point);
  }
  if (!power) return INT64_MIN;  // zero
  int64_t exponent = 0;
  if (mantissa_end < end) {
    const char* q = mantissa_end + 1;
    bool negative = *q == '-';
    if (*q == '+' || *q == '-') ++q;
    for (; q < end; ++q) exponent = std::min<int64_t>(exponent * 10 + (*q - '0'), 1'000'000'000);
    if (negative) exponent = -exponent;
  }
  return *power + exponent;
}

class Parser {
 public:
  explicit Parser(std::string_view text) : p_(text.data()), end_(text.data() + text.size()) {}

  std::optional<Json> ParseDocument(std::string* error) {
    Json value;
    SkipBlanks();
    if (!ParseValue(value, 0)) {
      *error = std::move(error_);
      return std::nullopt;
    }
    SkipBlanks();
    if (p_ != end_) {
      *error = "unexpected text after the JSON value";
      return std::nullopt;
    }
    return value;
  }

 private:
  bool Fail(std::string message) {
    if (error_.empty()) error_ = std::move(message);
    return false;
  }

  void SkipBlanks() {
    while (p_ < end_ && (*p_ == ' ' || *p_ == '\t' || *p_ == '\r' || *p_ == '\n')) ++p_;
  }

  bool Literal(std::string_view word) {
    if (static_cast<size_t>(end_ - p_) < word.size() || std::string_view(p_, word.size()) != word) {
      return Fail("invalid JSON literal");
    }
    p_ += word.size();
    return true;
  }

  bool ParseValue(Json& out, int depth) {
    if (p_ == end_) return Fail("unexpected end of JSON text");
    switch (*p_) {
      case '{':
        return ParseObject(out, depth + 1);
      case '[':
        return ParseArray(out, depth + 1);
      case '"':
        out.type = Json::Type::kString;
        return ParseString(out.string);
      case 't':
        out.type = Json::Type::kBoolean;
        out.boolean = true;
        return Literal("true");
      case 'f':
        out.type = Json::Type::kBoolean;
        return Literal("false");
      case 'n':
        out.type = Json::Type::kNull;
        return Literal("null");
      default:
        if (*p_ == '-' || (*p_ >= '0' && *p_ <= '9')) return ParseNumber(out);
        return Fail("unexpected character in JSON text");
    }
  }

  bool ParseObject(Json& out, int depth) {
    if (depth > kMaxJsonDepth) return Fail("JSON nesting deeper than 64 levels");
    out.type = Json::Type::kObject;
    ++p_;  // '{'
    SkipBlanks();
    if (p_ < end_ && *p_ == '}') {
      ++p_;
      return true;
    }
    for (;;) {
      SkipBlanks();
      if (p_ == end_ || *p_ != '"') return Fail("expected a string key in JSON object");
      std::u16string key;
      if (!ParseString(key)) return false;
      std::string utf8 = String(std::move(key)).ToUtf8();
      if (out.Find(utf8)) return Fail("duplicate key \"" + utf8 + "\" in JSON object");
      SkipBlanks();
      if (p_ == end_ || *p_ != ':') return Fail("expected ':' in JSON object");
      ++p_;
      SkipBlanks();
      out.object.push_back({std::move(utf8), Json()});
      if (!ParseValue(out.object.back().value, depth)) return false;
      SkipBlanks();
      if (p_ < end_ && *p_ == ',') {
        ++p_;
        continue;
      }
      if (p_ < end_ && *p_ == '}') {
        ++p_;
        return true;
      }
      return Fail("expected ',' or '}' in JSON object");
    }
  }

  bool ParseArray(Json& out, int depth) {
    if (depth > kMaxJsonDepth) return Fail("JSON nesting deeper than 64 levels");
    out.type = Json::Type::kArray;
    ++p_;  // '['
    SkipBlanks();
    if (p_ < end_ && *p_ == ']') {
      ++p_;
      return true;
    }
    for (;;) {
      SkipBlanks();
      out.array.emplace_back();
      if (!ParseValue(out.array.back(), depth)) return false;
      SkipBlanks();
      if (p_ < end_ && *p_ == ',') {
        ++p_;
        continue;
      }
      if (p_ < end_ && *p_ == ']') {
        ++p_;
        return true;
      }
      return Fail("expected ',' or ']' in JSON array");
    }
  }

  static int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
  }

  bool ParseString(std::u16string& out) {
    ++p_;  // '"'
    for (;;) {
      if (p_ == end_) return Fail("unterminated JSON string");
      auto b = static_cast<unsigned char>(*p_);
      if (b == '"') {
        ++p_;
        return true;
      }
      if (b < 0x20) return Fail("control character in JSON string (escape it)");
      if (b == '\\') {
        if (!ParseEscape(out)) return false;
        continue;
      }
      if (b < 0x80) {
        out.push_back(b);
        ++p_;
        continue;
      }
      if (!ParseUtf8(out)) return false;
    }
  }

  bool ParseEscape(std::u16string& out) {
    ++p_;  // '\\'
    if (p_ == end_) return Fail("unterminated JSON string");
    char c = *p_++;
    switch (c) {
      case '"':
      case '\\':
      case '/':
        out.push_back(static_cast<char16_t>(c));
        return true;
      case 'b':
        out.push_back(u'\b');
        return true;
      case 'f':
        out.push_back(u'\f');
        return true;
      case 'n':
        out.push_back(u'\n');
        return true;
      case 'r':
        out.push_back(u'\r');
        return true;
      case 't':
        out.push_back(u'\t');
        return true;
      case 'u': {
        if (end_ - p_ < 4) return Fail("bad \\u escape in JSON string");
        unsigned unit = 0;
        for (int i = 0; i < 4; ++i) {
          int h = HexDigit(p_[i]);
          if (h < 0) return Fail("bad \\u escape in JSON string");
          unit = unit * 16 + static_cast<unsigned>(h);
        }
        p_ += 4;
        out.push_back(static_cast<char16_t>(unit));
        return true;
      }
      default:
        return Fail("bad escape in JSON string");
    }
  }

  // The run of non-ASCII bytes from here: well-formed UTF-8 sequences of two
  // to four bytes (no sequence reaches past an ASCII byte).
  bool ParseUtf8(std::u16string& out) {
    const char* run_end = p_;
    while (run_end < end_ && static_cast<unsigned char>(*run_end) >= 0x80) ++run_end;
    std::string_view run(p_, static_cast<size_t>(run_end - p_));
    if (String::InvalidUtf8At(run) != std::string_view::npos) {
      return Fail("invalid UTF-8 in JSON string");
    }
    String::AppendUtf16(out, run);
    p_ = run_end;
    return true;
  }

  bool ParseNumber(Json& out) {
    const char* start = p_;
    auto digits = [&] {
      const char* d = p_;
      while (p_ < end_ && *p_ >= '0' && *p_ <= '9') ++p_;
      return p_ - d;
    };
    if (*p_ == '-') ++p_;
    if (p_ < end_ && *p_ == '0') {
      ++p_;
    } else if (digits() == 0) {
      return Fail("invalid JSON number");
    }
    bool integral = true;
    if (p_ < end_ && *p_ == '.') {
      ++p_;
      integral = false;
      if (digits() == 0) return Fail("invalid JSON number");
    }
    if (p_ < end_ && (*p_ == 'e' || *p_ == 'E')) {
      ++p_;
      integral = false;
      if (p_ < end_ && (*p_ == '+' || *p_ == '-')) ++p_;
      if (digits() == 0) return Fail("invalid JSON number");
    }
    if (integral) {
      auto [end, ec] = std::from_chars(start, p_, out.integer);
      if (ec == std::errc() && end == p_) {
        out.type = Json::Type::kInteger;
        out.number = static_cast<double>(out.integer);
        return true;
      }
    }
    auto [end, ec] = std::from_chars(start, p_, out.number);
    if (ec == std::errc::result_out_of_range && DecimalExponent(start, p_) < 0) {
      out.number = 0;  // underflow: the nearest double is zero
    } else if (ec != std::errc() || end != p_) {
      return Fail("JSON number out of range");
    }
    out.type = Json::Type::kFloat;
    return true;
  }

  const char* p_;
  const char* end_;
  std::string error_;
};

void AppendEscape(std::string& out, unsigned unit) {
  static constexpr char kHex[] = "0123456789abcdef";
  out += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) out.push_back(kHex[(unit >> shift) & 0xF]);
}

}  // namespace

std::optional<Json> ParseJson(std::string_view text, std::string* error) {
  return Parser(text).ParseDocument(error);
}

void AppendJsonString(std::string& out, std::u16string_view s, bool ascii_only) {
  out.push_back('"');
  // Code units that go out as they are gather in [plain, i) and are written
  // as UTF-8 in one piece before the next escape.
  size_t plain = 0;
  auto flush = [&](size_t i) {
    String::AppendUtf8(out, s.substr(plain, i - plain));
    plain = i + 1;
  };
  for (size_t i = 0; i < s.size(); ++i) {
    char16_t u = s[i];
    const char* named = nullptr;
    switch (u) {
      case u'"':
        named = "\\\"";
        break;
      case u'\\':
        named = "\\\\";
        break;
      case u'\n':
        named = "\\n";
        break;
      case u'\r':
        named = "\\r";
        break;
      case u'\t':
        named = "\\t";
        break;
      default:
        break;
    }
    if (named) {
      flush(i);
      out += named;
    } else if (u < 0x20 || u == 0x7F || (u >= 0x80 && ascii_only)) {
      flush(i);
      AppendEscape(out, u);
    } else if (u >= 0xD800 && u <= 0xDBFF && i + 1 < s.size() && s[i + 1] >= 0xDC00 &&
               s[i + 1] <= 0xDFFF) {
      ++i;  // a pair: UTF-8 writes it as one code point
    } else if (u >= 0xD800 && u <= 0xDFFF) {
      flush(i);
      AppendEscape(out, u);  // unpaired: UTF-8 has no form for it
    }
  }
  flush(s.size());
  out.push_back('"');
}

void AppendJsonString(std::string& out, std::string_view utf8) {
  AppendJsonString(out, String::FromUtf8(utf8).view());
}

std::string FormatDouble(double d) {
  std::array<char, 400> buf;
  // Plain digits for everyday magnitudes (3000000 rather than 3e+06), the
  // shortest form otherwise; both read back to the same double.
  double mag = std::fabs(d);
  auto format = mag == 0 || (mag >= 1e-5 && mag < 1e17) ? std::chars_format::fixed
                                                        : std::chars_format::general;
  auto [end, ec] = std::to_chars(buf.data(), buf.data() + buf.size(), d, format);
  if (ec != std::errc()) return "0";
  return std::string(buf.data(), end);
}

}  // namespace crvlib::cli
