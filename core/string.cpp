// UTF-8 <-> UTF-16 conversion and byte construction for crvlib::String.
#include "crvlib/string.h"

#include <cstring>
#include <ostream>

#include "core/utf8.h"

namespace crvlib {

String String::FromUtf8(std::string_view utf8) {
  std::u16string out;
  out.reserve(utf8.size());
  const auto* p = reinterpret_cast<const unsigned char*>(utf8.data());
  const auto* end = p + utf8.size();
  while (p < end) {
    unsigned char b = *p;
    if (b < 0x80) {
      out.push_back(b);
      ++p;
      continue;
    }
    int extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : -1;
    char32_t cp = extra == 3 ? (b & 0x07) : extra == 2 ? (b & 0x0F) : (b & 0x1F);
    bool ok = extra > 0 && b < 0xF5 && end - p > extra;
    for (int i = 1; ok && i <= extra; ++i) {
      ok = (p[i] & 0xC0) == 0x80;
      cp = (cp << 6) | (p[i] & 0x3F);
    }
    // Reject overlong forms, surrogates and values past U+10FFFF.
    static constexpr char32_t kMin[] = {0, 0x80, 0x800, 0x10000};
    if (ok) ok = cp >= kMin[extra] && cp <= 0x10FFFF && (cp < 0xD800 || cp > 0xDFFF);
    if (!ok) {
      out.push_back(0xFFFD);
      ++p;
      while (p < end && (*p & 0xC0) == 0x80) ++p;
      continue;
    }
    p += extra + 1;
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(cp));
    }
  }
  return String(std::move(out));
}

String String::FromBytes(const void* data, size_t count) {
  String s;
  s.units_.assign((count + 1) / 2, u'\0');
  if (count) std::memcpy(s.units_.data(), data, count);
  s.odd_ = count % 2 != 0;
  return s;
}

std::string String::ToUtf8() const {
  std::u16string_view v = view();
  std::string out;
  out.reserve(v.size());
  for (size_t i = 0; i < v.size(); ++i) {
    char32_t cp = v[i];
    if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < v.size() && v[i + 1] >= 0xDC00 &&
        v[i + 1] <= 0xDFFF) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (v[i + 1] - 0xDC00);
      ++i;
    } else if (cp >= 0xD800 && cp <= 0xDFFF) {
      cp = 0xFFFD;
    }
    internal::AppendUtf8(out, cp);
  }
  return out;
}

std::ostream& operator<<(std::ostream& out, const String& s) {
  return out << s.ToUtf8();
}

}  // namespace crvlib
