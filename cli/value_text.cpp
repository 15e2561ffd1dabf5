// Command-line text to values and back. The conversions are as strict as the
// JSON ones: text either is a value of the parameter's type in full or the
// call is refused; nothing is rounded or read partially.
#include "cli/value_text.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>

namespace crvlib::cli {

namespace {

int HexDigit(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

std::string AsciiOf(std::u16string_view text) {
  return String(text).ToUtf8();
}

std::optional<int64_t> WholeText(std::string_view s) {
  if (s.starts_with('+')) s.remove_prefix(1);
  int64_t n = 0;
  auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), n);
  if (s.empty() || ec != std::errc() || end != s.data() + s.size()) return std::nullopt;
  return n;
}

std::optional<double> DoubleText(std::string_view s) {
  if (s.starts_with('+')) s.remove_prefix(1);
  double d = 0;
  auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), d);
  if (s.empty() || ec != std::errc() || end != s.data() + s.size()) return std::nullopt;
  return d;
}

// The printable ASCII spelling of one code unit.
void AppendEscaped(std::string& out, char16_t u) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  if (u == u'\\') {
    out += "\\\\";
  } else if (u == u'\n') {
    out += "\\n";
  } else if (u == u'\r') {
    out += "\\r";
  } else if (u == u'\t') {
    out += "\\t";
  } else if (u >= 0x20 && u < 0x7F) {
    out.push_back(static_cast<char>(u));
  } else if (u < 0x100) {
    out += "\\x";
    out.push_back(kHex[u >> 4]);
    out.push_back(kHex[u & 0xF]);
  } else {
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) out.push_back(kHex[(u >> shift) & 0xF]);
  }
}

}  // namespace

std::u16string DecodeEscapes(std::u16string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != u'\\') {
      out.push_back(text[i]);
      continue;
    }
    if (++i == text.size()) throw UsageError("a lone backslash ends the argument (write \\\\)");
    switch (text[i]) {
      case u'\\':
        out.push_back(u'\\');
        break;
      case u'n':
        out.push_back(u'\n');
        break;
      case u'r':
        out.push_back(u'\r');
        break;
      case u't':
        out.push_back(u'\t');
        break;
      case u'x':
      case u'u': {
        size_t digits = text[i] == u'x' ? 2 : 4;
        unsigned unit = 0;
        for (size_t k = 1; k <= digits; ++k) {
          int h = i + k < text.size() ? HexDigit(text[i + k]) : -1;
          if (h < 0) {
            throw UsageError(std::string("\\") + static_cast<char>(text[i]) + " needs " +
                             std::to_string(digits) + " hex digits");
          }
          unit = unit * 16 + static_cast<unsigned>(h);
        }
        out.push_back(static_cast<char16_t>(unit));
        i += digits;
        break;
      }
      default:
        throw UsageError("unknown escape \\" + AsciiOf(text.substr(i, 1)) +
                         " (known: \\xHH \\uHHHH \\n \\r \\t \\\\)");
    }
  }
  return out;
}

std::string EscapeText(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char16_t u : text) AppendEscaped(out, u);
  return out;
}

std::string EscapeControls(std::u16string_view text) {
  std::u16string kept;
  std::string out;
  auto flush = [&] {
    out += String(kept).ToUtf8();
    kept.clear();
  };
  for (char16_t u : text) {
    if (u < 0x20 || (u >= 0x7F && u < 0xA0)) {
      flush();
      AppendEscaped(out, u);
    } else {
      kept.push_back(u);
    }
  }
  flush();
  return out;
}

Value ArgumentFromText(std::string_view arg, const ParamInfo& param, bool escapes) {
  const TypeInfo& type = param.type;
  if (size_t at = String::InvalidUtf8At(arg); at != std::string_view::npos) {
    char byte[8];
    std::snprintf(byte, sizeof byte, "0x%02X", static_cast<unsigned char>(arg[at]));
    throw UsageError(std::string("not valid UTF-8 (byte ") + byte + " at offset " +
                     std::to_string(at) +
                     "); type other code units with -e as \\xHH or \\uHHHH escapes");
  }
  if (type.kind == TypeKind::kVariant) {
    if (SameName(arg, "True")) return Variant(true);
    if (SameName(arg, "False")) return Variant(false);
    std::string ignored;
    if (std::optional<Json> j = ParseJson(arg, &ignored)) {
      try {
        return VariantFromJson(*j);
      } catch (const UsageError&) {
        // JSON, but not a Variant form ([1,2], {"a":1}): the text itself.
      }
    }
  }
  std::u16string text = String::FromUtf8(arg).ToU16();
  if (escapes) text = DecodeEscapes(text);
  if (text.empty() && param.by_ref && type.kind != TypeKind::kString &&
      type.kind != TypeKind::kVariant) {
    return EmptyValue(type);
  }
  std::string utf8 = String(text).ToUtf8();
  switch (type.kind) {
    case TypeKind::kString:
    case TypeKind::kVariant:
      return Variant(String(std::move(text)));
    case TypeKind::kLong:
    case TypeKind::kInteger:
      if (std::optional<int64_t> n = WholeText(utf8)) return IntegerValue(*n, type);
      if (const EnumInfo* e = type.Enum()) {
        if (const EnumMember* m = e->Find(utf8)) return Variant(m->value);
        throw UsageError("expected a whole number or a member of " + e->name + ", got \"" + utf8 +
                         "\"");
      }
      throw UsageError("expected a whole number, got \"" + utf8 + "\"");
    case TypeKind::kBoolean:
      if (SameName(utf8, "True")) return Variant(true);
      if (SameName(utf8, "False")) return Variant(false);
      throw UsageError("expected True or False, got \"" + utf8 + "\"");
    case TypeKind::kDouble:
      if (std::optional<double> d = DoubleText(utf8)) return Variant(*d);
      throw UsageError("expected a number, got \"" + utf8 + "\"");
    case TypeKind::kCurrency:
      if (std::optional<Currency> c = ParseCurrency(utf8)) return Variant(*c);
      throw UsageError("expected a Currency (a decimal with up to 4 places), got \"" + utf8 + "\"");
    case TypeKind::kDate:
      if (std::optional<Date> d = ParseDate(utf8)) return Variant(*d);
      throw UsageError("expected a Date (YYYY-MM-DD or YYYY-MM-DDThh:mm:ss), got \"" + utf8 + "\"");
    case TypeKind::kStringArray: {
      std::string error;
      std::optional<Json> j = ParseJson(utf8, &error);
      if (!j)
        throw UsageError("expected an array in JSON ({\"lbound\":0,\"items\":[…]}): " + error);
      return ArgumentFromJson(*j, param, [](std::string_view) -> Object {
        throw UsageError("objects can be passed only in crv batch");
      });
    }
    case TypeKind::kObject:
      throw UsageError("objects can be passed only in crv batch");
    case TypeKind::kParamArray:
    case TypeKind::kVoid:
      break;
  }
  throw UsageError("this parameter takes no value");
}

std::string ValueText(const Value& v, bool escapes, const ObjectNamer& name_of) {
  const auto* variant = std::get_if<Variant>(&v);
  if (!variant) {
    if (const auto* o = std::get_if<Object>(&v); o && o->IsNothing()) return "Nothing";
    std::string out;
    AppendValueJson(out, v, name_of, escapes);
    return out;
  }
  switch (variant->Type()) {
    case VarType::kEmpty:
      return "";
    case VarType::kNull:
      return "Null";
    case VarType::kBoolean:
      return variant->AsBoolean() ? "True" : "False";
    case VarType::kInteger:
      return std::to_string(variant->AsInteger());
    case VarType::kLong:
      return std::to_string(variant->AsLong());
    case VarType::kDouble:
      return FormatDouble(variant->AsDouble());
    case VarType::kCurrency:
      return FormatCurrency(variant->AsCurrency());
    case VarType::kDate:
      if (std::optional<std::string> iso = FormatDate(variant->AsDate())) return *iso;
      return FormatDouble(variant->AsDate().serial);
    case VarType::kString: {
      const String& s = variant->AsString();
      if (s.odd()) {
        std::string out;
        AppendVariantJson(out, *variant);
        return out;
      }
      return escapes ? EscapeText(s.view()) : s.ToUtf8();
    }
  }
  return "";
}

}  // namespace crvlib::cli
