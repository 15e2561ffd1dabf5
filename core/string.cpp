// UTF-8 <-> UTF-16 conversion and byte construction for crvlib::String.
#include "crvlib/string.h"

#include <cstring>
#include <ostream>

#include "core/utf8.h"

namespace crvlib {

String String::FromUtf8(std::string_view utf8) {
  std::u16string out;
  out.reserve(utf8.size());
  AppendUtf16(out, utf8);
  return String(std::move(out));
}

void String::AppendUtf16(std::u16string& out, std::string_view utf8) {
  const auto* p = reinterpret_cast<const unsigned char*>(utf8.data());
  const auto* end = p + utf8.size();
  while (p < end) {
    unsigned char b = *p;
    if (b < 0x80) {
      out.push_back(b);
      ++p;
      continue;
    }
    char32_t cp;
    size_t length = internal::DecodeUtf8Sequence(p, end, cp);
    if (length == 0) {
      // An ill-formed sequence becomes one U+FFFD with its continuation bytes.
      out.push_back(0xFFFD);
      ++p;
      while (p < end && (*p & 0xC0) == 0x80) ++p;
      continue;
    }
    p += length;
    internal::AppendUtf16(out, cp);
  }
}

size_t String::InvalidUtf8At(std::string_view utf8) {
  const auto* begin = reinterpret_cast<const unsigned char*>(utf8.data());
  const auto* end = begin + utf8.size();
  for (const unsigned char* p = begin; p < end;) {
    char32_t cp;
    size_t n = *p < 0x80 ? 1 : internal::DecodeUtf8Sequence(p, end, cp);
    if (n == 0) return static_cast<size_t>(p - begin);
    p += n;
  }
  return std::string_view::npos;
}

String String::FromBytes(const void* data, size_t count) {
  String s;
  s.units_.assign((count + 1) / 2, u'\0');
  if (count) std::memcpy(s.units_.data(), data, count);
  s.odd_ = count % 2 != 0;
  return s;
}

std::string String::ToUtf8() const {
  std::string out;
  out.reserve(view().size());
  AppendUtf8(out, view());
  return out;
}

void String::AppendUtf8(std::string& out, std::u16string_view units) {
  for (size_t i = 0; i < units.size(); ++i) {
    char32_t cp = units[i];
    if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < units.size() && units[i + 1] >= 0xDC00 &&
        units[i + 1] <= 0xDFFF) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (units[i + 1] - 0xDC00);
      ++i;
    } else if (cp >= 0xD800 && cp <= 0xDFFF) {
      cp = 0xFFFD;
    }
    internal::AppendUtf8(out, cp);
  }
}

std::ostream& operator<<(std::ostream& out, const String& s) {
  return out << s.ToUtf8();
}

}  // namespace crvlib
