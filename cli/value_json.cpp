// Writing values as JSON and reading arguments back. Reading is where the
// strictness lives: every conversion either gives exactly the value the JSON
// says or a UsageError naming what was expected, so a caller never gets a
// silently rounded number or a string where it sent a number.
#include "cli/value_json.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>

namespace crvlib::cli {

namespace {

std::string KindOf(const Json& j) {
  switch (j.type) {
    case Json::Type::kNull:
      return "null";
    case Json::Type::kBoolean:
      return "a Boolean";
    case Json::Type::kInteger:
    case Json::Type::kFloat:
      return "a number";
    case Json::Type::kString:
      return "a string";
    case Json::Type::kArray:
      return "an array";
    case Json::Type::kObject:
      return j.object.size() == 1 ? "an object {\"" + j.object[0].key + "\":…}" : "an object";
  }
  return "a value";
}

[[noreturn]] void Expected(std::string_view what, const Json& got) {
  throw UsageError("expected " + std::string(what) + ", got " + KindOf(got));
}

// The single member of a tagged form such as {"Currency":"1.5"}, or null.
const JsonMember* Tag(const Json& j) {
  return j.type == Json::Type::kObject && j.object.size() == 1 ? &j.object[0] : nullptr;
}

int HexDigit(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

String StringFromBytes(const Json& hex) {
  if (hex.type != Json::Type::kString) Expected("a hex string in {\"bytes\":…}", hex);
  const std::u16string& h = hex.string;
  if (h.size() % 2) throw UsageError("{\"bytes\":…} needs two hex digits per byte");
  std::string bytes;
  for (size_t i = 0; i < h.size(); i += 2) {
    int hi = HexDigit(h[i]), lo = HexDigit(h[i + 1]);
    if (hi < 0 || lo < 0) throw UsageError("{\"bytes\":…} holds a character that is not hex");
    bytes.push_back(static_cast<char>(hi * 16 + lo));
  }
  return String::FromBytes(bytes.data(), bytes.size());
}

// A JSON number with a whole value (5, -3, 1e3, 2.0), or nullopt.
std::optional<int64_t> WholeNumber(const Json& j) {
  if (j.type == Json::Type::kInteger) return j.integer;
  if (j.type == Json::Type::kFloat && std::trunc(j.number) == j.number &&
      std::fabs(j.number) < 9.2e18) {
    return static_cast<int64_t>(j.number);
  }
  return std::nullopt;
}

Currency CurrencyFromJson(const Json& j) {
  if (j.type == Json::Type::kString) {
    std::optional<Currency> c = ParseCurrency(String(j.string).ToUtf8());
    if (!c)
      throw UsageError("a Currency is a decimal with up to 4 places in range, as \"12.3456\"");
    return *c;
  }
  if (j.type == Json::Type::kInteger) {
    if (j.integer > INT64_MAX / Currency::kScale || j.integer < INT64_MIN / Currency::kScale) {
      throw UsageError("Currency out of range");
    }
    return Currency::FromScaled(j.integer * Currency::kScale);
  }
  if (j.type == Json::Type::kFloat) {
    double scaled = std::nearbyint(j.number * Currency::kScale);
    if (!(std::fabs(scaled) < 9.2233720368547758e18)) throw UsageError("Currency out of range");
    return Currency::FromScaled(static_cast<int64_t>(scaled));
  }
  Expected("a Currency (\"12.3456\" or a number)", j);
}

Date DateFromJson(const Json& j) {
  if (j.type == Json::Type::kString) {
    std::optional<Date> d = ParseDate(String(j.string).ToUtf8());
    if (!d)
      throw UsageError("a Date is \"YYYY-MM-DD\" or \"YYYY-MM-DDThh:mm:ss\" (years 100 to 9999)");
    return *d;
  }
  if (j.IsNumber()) return Date{j.number};
  Expected("a Date (\"2004-12-31T00:00:00\" or a serial number)", j);
}

double DoubleFromJson(const Json& j) {
  if (j.IsNumber()) return j.number;
  if (j.type == Json::Type::kString) {
    if (j.string == u"Infinity") return std::numeric_limits<double>::infinity();
    if (j.string == u"-Infinity") return -std::numeric_limits<double>::infinity();
    if (j.string == u"NaN") return std::numeric_limits<double>::quiet_NaN();
  }
  Expected("a number", j);
}

const TypeInfo& LongType() {
  static const TypeInfo t = TypeOf<int32_t>();
  return t;
}
const TypeInfo& IntegerType() {
  static const TypeInfo t = TypeOf<int16_t>();
  return t;
}

Value WholeFromJson(const Json& j, const TypeInfo& type) {
  std::optional<int64_t> n = WholeNumber(j);
  if (!n) Expected("a whole number", j);
  return IntegerValue(*n, type);
}

// Tagged forms that give a Variant of one exact type, or nullopt when `j` is
// not one of them.
std::optional<Variant> TaggedVariant(const Json& j) {
  const auto* tag = Tag(j);
  if (!tag) return std::nullopt;
  const auto& [key, v] = *tag;
  if (key == "Empty") {
    if (v.type != Json::Type::kBoolean || !v.boolean) Expected("{\"Empty\":true}", v);
    return Variant();
  }
  if (key == "bytes") return Variant(StringFromBytes(v));
  if (key == "String") {
    if (v.type != Json::Type::kString) Expected("a string in {\"String\":…}", v);
    return Variant(String(v.string));
  }
  if (key == "Currency") return Variant(CurrencyFromJson(v));
  if (key == "Date") return Variant(DateFromJson(v));
  if (key == "Double") return Variant(DoubleFromJson(v));
  if (key == "Long") return std::get<Variant>(WholeFromJson(v, LongType()));
  if (key == "Integer") return std::get<Variant>(WholeFromJson(v, IntegerType()));
  return std::nullopt;
}

String StringFromJson(const Json& j) {
  if (j.type == Json::Type::kString) return String(j.string);
  if (std::optional<Variant> v = TaggedVariant(j); v && v->Type() == VarType::kString) {
    return v->AsString();
  }
  Expected("a string", j);
}

Value ArrayFromJson(const Json& j) {
  const Json* items = &j;
  int64_t lbound = 0;
  if (j.type == Json::Type::kObject) {
    items = j.Find("items");
    const Json* lb = j.Find("lbound");
    if (!items || j.object.size() != (lb ? 2u : 1u)) {
      throw UsageError("an array is {\"lbound\":N,\"items\":[…]}");
    }
    if (lb) {
      std::optional<int64_t> n = WholeNumber(*lb);
      if (!n || *n < INT32_MIN || *n > INT32_MAX) throw UsageError("lbound must be a Long");
      lbound = *n;
    }
  }
  if (items->type != Json::Type::kArray) Expected("an array of strings", *items);
  if (lbound + static_cast<int64_t>(items->array.size()) - 1 > INT32_MAX) {
    throw UsageError("the array's upper bound is beyond the range of a Long");
  }
  StringArray a{static_cast<int32_t>(lbound), {}};
  a.items.reserve(items->array.size());
  for (const Json& item : items->array) a.items.push_back(StringFromJson(item));
  return a;
}

void AppendHexBytes(std::string& out, const String& s) {
  static constexpr char kHex[] = "0123456789abcdef";
  for (int32_t i = 0; i < s.LenB(); ++i) {
    out.push_back(kHex[s.bytes()[i] >> 4]);
    out.push_back(kHex[s.bytes()[i] & 0xF]);
  }
}

void AppendString(std::string& out, const String& s, bool ascii_only) {
  if (s.odd()) {
    out += "{\"bytes\":\"";
    AppendHexBytes(out, s);
    out += "\"}";
  } else {
    AppendJsonString(out, s.view(), ascii_only);
  }
}

}  // namespace

std::string BytesHex(const String& s) {
  std::string out;
  AppendHexBytes(out, s);
  return out;
}

Value IntegerValue(int64_t n, const TypeInfo& type) {
  if (type.kind == TypeKind::kInteger) {
    if (n < INT16_MIN || n > INT16_MAX)
      throw UsageError("expected an Integer from -32768 to 32767");
    return Variant(static_cast<int16_t>(n));
  }
  if (n < INT32_MIN || n > INT32_MAX) {
    throw UsageError("expected a Long from -2147483648 to 2147483647");
  }
  return Variant(static_cast<int32_t>(n));
}

std::string FormatCurrency(Currency c) {
  uint64_t mag =
      c.scaled < 0 ? 0 - static_cast<uint64_t>(c.scaled) : static_cast<uint64_t>(c.scaled);
  std::string out = c.scaled < 0 ? "-" : "";
  out += std::to_string(mag / Currency::kScale);
  if (uint64_t frac = mag % Currency::kScale) {
    std::string digits = std::to_string(frac + Currency::kScale).substr(1);
    while (digits.back() == '0') digits.pop_back();
    out += "." + digits;
  }
  return out;
}

std::optional<Currency> ParseCurrency(std::string_view text) {
  size_t i = 0;
  bool negative = i < text.size() && text[i] == '-';
  if (negative) ++i;
  uint64_t mag = 0;
  size_t int_digits = 0;
  constexpr uint64_t kLimit = uint64_t{1} << 63;  // |INT64_MIN|
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i, ++int_digits) {
    if (mag > kLimit / 10) return std::nullopt;
    mag = mag * 10 + static_cast<uint64_t>(text[i] - '0');
  }
  if (int_digits == 0) return std::nullopt;
  uint64_t frac = 0;
  int frac_digits = 0;
  if (i < text.size() && text[i] == '.') {
    for (++i; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
      if (++frac_digits > 4) return std::nullopt;
      frac = frac * 10 + static_cast<uint64_t>(text[i] - '0');
    }
    if (frac_digits == 0) return std::nullopt;
  }
  if (i != text.size()) return std::nullopt;
  for (int k = frac_digits; k < 4; ++k) frac *= 10;
  if (mag > kLimit / Currency::kScale) return std::nullopt;
  uint64_t scaled = mag * Currency::kScale + frac;
  if (scaled > (negative ? kLimit : kLimit - 1)) return std::nullopt;
  return Currency::FromScaled(negative ? static_cast<int64_t>(0 - scaled)
                                       : static_cast<int64_t>(scaled));
}

std::optional<std::string> FormatDate(Date d) {
  std::optional<CivilDateTime> c = d.ToCivil();
  if (!c) return std::nullopt;
  char buf[32];
  std::snprintf(buf, sizeof buf, "%04d-%02d-%02dT%02d:%02d:%02d", c->year, c->month, c->day,
                c->hour, c->minute, c->second);
  return std::string(buf);
}

std::optional<Date> ParseDate(std::string_view text) {
  auto number = [&](size_t pos, size_t len, int32_t* out) {
    if (pos + len > text.size()) return false;
    *out = 0;
    for (size_t k = pos; k < pos + len; ++k) {
      if (text[k] < '0' || text[k] > '9') return false;
      *out = *out * 10 + (text[k] - '0');
    }
    return true;
  };
  CivilDateTime c;
  if (!number(0, 4, &c.year) || text.size() < 10 || text[4] != '-' || !number(5, 2, &c.month) ||
      text[7] != '-' || !number(8, 2, &c.day)) {
    return std::nullopt;
  }
  if (text.size() > 10) {
    if ((text[10] != 'T' && text[10] != ' ') || !number(11, 2, &c.hour) || text.size() < 16 ||
        text[13] != ':' || !number(14, 2, &c.minute)) {
      return std::nullopt;
    }
    if (text.size() > 16 && (text[16] != ':' || text.size() != 19 || !number(17, 2, &c.second))) {
      return std::nullopt;
    }
  }
  return Date::FromCivil(c);
}

void AppendVariantJson(std::string& out, const Variant& v, bool ascii_only) {
  switch (v.Type()) {
    case VarType::kEmpty:
      out += "{\"Empty\":true}";
      return;
    case VarType::kNull:
      out += "null";
      return;
    case VarType::kBoolean:
      out += v.AsBoolean() ? "true" : "false";
      return;
    case VarType::kInteger:
      out += std::to_string(v.AsInteger());
      return;
    case VarType::kLong:
      out += std::to_string(v.AsLong());
      return;
    case VarType::kDouble: {
      double d = v.AsDouble();
      if (std::isnan(d)) {
        out += "{\"Double\":\"NaN\"}";
      } else if (std::isinf(d)) {
        out += d > 0 ? "{\"Double\":\"Infinity\"}" : "{\"Double\":\"-Infinity\"}";
      } else {
        std::string text = FormatDouble(d);
        // Keep a Double recognizable as one: 5 would read back as a Long.
        if (text.find_first_of(".e") == std::string::npos) text += ".0";
        out += text;
      }
      return;
    }
    case VarType::kCurrency:
      out += "{\"Currency\":\"" + FormatCurrency(v.AsCurrency()) + "\"}";
      return;
    case VarType::kDate:
      if (std::optional<std::string> iso = FormatDate(v.AsDate())) {
        out += "{\"Date\":\"" + *iso + "\"}";
      } else if (std::isfinite(v.AsDate().serial)) {
        out += "{\"Date\":" + FormatDouble(v.AsDate().serial) + "}";
      } else {
        out += "{\"Date\":null}";  // not a date any reader accepts back
      }
      return;
    case VarType::kString:
      AppendString(out, v.AsString(), ascii_only);
      return;
  }
}

void AppendValueJson(std::string& out, const Value& v, const ObjectNamer& name_of,
                     bool ascii_only) {
  if (const auto* variant = std::get_if<Variant>(&v)) {
    AppendVariantJson(out, *variant, ascii_only);
    return;
  }
  if (const auto* object = std::get_if<Object>(&v)) {
    if (object->IsNothing()) {
      out += "null";
    } else {
      out += "{\"object\":";
      AppendJsonString(out, name_of(*object));
      out += "}";
    }
    return;
  }
  auto append_array = [&](int32_t lbound, const auto& items, auto append_item) {
    out += "{\"lbound\":" + std::to_string(lbound) + ",\"items\":[";
    for (size_t i = 0; i < items.size(); ++i) {
      if (i) out.push_back(',');
      append_item(items[i]);
    }
    out += "]}";
  };
  if (const auto* strings = std::get_if<StringArray>(&v)) {
    append_array(strings->lbound, strings->items,
                 [&](const String& s) { AppendString(out, s, ascii_only); });
  } else {
    const auto& variants = std::get<VariantArray>(v);
    append_array(variants.lbound, variants.items,
                 [&](const Variant& item) { AppendVariantJson(out, item, ascii_only); });
  }
}

Variant VariantFromJson(const Json& j) {
  switch (j.type) {
    case Json::Type::kNull:
      return kNull;
    case Json::Type::kBoolean:
      return j.boolean;
    case Json::Type::kInteger:
      if (j.integer >= INT32_MIN && j.integer <= INT32_MAX) return static_cast<int32_t>(j.integer);
      return j.number;
    case Json::Type::kFloat:
      return j.number;
    case Json::Type::kString:
      return String(j.string);
    case Json::Type::kArray:
      break;
    case Json::Type::kObject:
      if (std::optional<Variant> v = TaggedVariant(j)) return *v;
      break;
  }
  Expected("a Variant (a string, number, true/false, null or a form such as {\"Currency\":…})", j);
}

Value EmptyValue(const TypeInfo& type) {
  switch (type.kind) {
    case TypeKind::kString:
      return Variant(String());
    case TypeKind::kLong:
      return Variant(int32_t{0});
    case TypeKind::kInteger:
      return Variant(int16_t{0});
    case TypeKind::kBoolean:
      return Variant(false);
    case TypeKind::kDouble:
      return Variant(0.0);
    case TypeKind::kCurrency:
      return Variant(Currency{});
    case TypeKind::kDate:
      return Variant(Date{});
    case TypeKind::kStringArray:
      return StringArray{};
    case TypeKind::kParamArray:
      return VariantArray{};
    case TypeKind::kObject:
      return Object{};
    case TypeKind::kVoid:
    case TypeKind::kVariant:
      break;
  }
  return Variant();
}

Value ArgumentFromJson(const Json& j, const ParamInfo& param, const ObjectResolver& resolve) {
  const TypeInfo& type = param.type;
  if (j.type == Json::Type::kNull && param.by_ref && type.kind != TypeKind::kVariant) {
    return EmptyValue(type);
  }
  switch (type.kind) {
    case TypeKind::kString:
      return Variant(StringFromJson(j));
    case TypeKind::kLong:
    case TypeKind::kInteger: {
      if (const EnumInfo* e = type.Enum(); e && j.type == Json::Type::kString) {
        if (const EnumMember* m = e->Find(String(j.string).ToUtf8())) return Variant(m->value);
        throw UsageError("\"" + String(j.string).ToUtf8() + "\" is not a member of " + e->name);
      }
      if (const auto* tag = Tag(j); tag && (tag->key == "Long" || tag->key == "Integer")) {
        // The tag's own range holds too: {"Integer":40000} is no Integer.
        WholeFromJson(tag->value, tag->key == "Long" ? LongType() : IntegerType());
        return WholeFromJson(tag->value, type);
      }
      return WholeFromJson(j, type);
    }
    case TypeKind::kBoolean:
      if (j.type != Json::Type::kBoolean) Expected("true or false", j);
      return Variant(j.boolean);
    case TypeKind::kDouble:
      if (j.IsNumber()) return Variant(j.number);
      if (std::optional<Variant> v = TaggedVariant(j)) {
        switch (v->Type()) {
          case VarType::kDouble:
            return *v;
          case VarType::kLong:
            return Variant(static_cast<double>(v->AsLong()));
          case VarType::kInteger:
            return Variant(static_cast<double>(v->AsInteger()));
          default:
            break;
        }
      }
      Expected("a number", j);
    case TypeKind::kCurrency:
      if (const auto* tag = Tag(j); tag && tag->key == "Currency") {
        return Variant(CurrencyFromJson(tag->value));
      }
      if (j.IsNumber()) return Variant(CurrencyFromJson(j));
      Expected("a Currency ({\"Currency\":\"12.3456\"} or a number)", j);
    case TypeKind::kDate:
      if (const auto* tag = Tag(j); tag && tag->key == "Date") {
        return Variant(DateFromJson(tag->value));
      }
      Expected("a Date ({\"Date\":\"2004-12-31T00:00:00\"})", j);
    case TypeKind::kVariant:
      return VariantFromJson(j);
    case TypeKind::kStringArray:
      if (j.type != Json::Type::kArray && j.type != Json::Type::kObject) {
        Expected("an array ({\"lbound\":0,\"items\":[…]})", j);
      }
      return ArrayFromJson(j);
    case TypeKind::kParamArray:
      throw UsageError("a ParamArray takes the trailing arguments, one by one");
    case TypeKind::kObject: {
      if (j.type == Json::Type::kNull) return Object{};
      const auto* tag = Tag(j);
      if (!tag || tag->key != "object" || tag->value.type != Json::Type::kString) {
        Expected("an object ({\"object\":\"NAME\"}) or null", j);
      }
      Object o = resolve(String(tag->value.string).ToUtf8());
      if (!o.IsNothing() && o.ClassName() != type.name) {
        throw UsageError("expected a " + type.name + " object, got a " +
                         std::string(o.ClassName()));
      }
      return o;
    }
    case TypeKind::kVoid:
      break;
  }
  throw UsageError("this parameter takes no value");
}

}  // namespace crvlib::cli
