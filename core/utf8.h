// UTF-8 encoding and decoding of one code point, under String's conversions
// (whose public forms are String::AppendUtf8, AppendUtf16 and
// InvalidUtf8At).
#ifndef CRVLIB_CORE_UTF8_H_
#define CRVLIB_CORE_UTF8_H_

#include <cstddef>
#include <string>

namespace crvlib::internal {

// Appends `cp` (at most U+10FFFF) as one to four UTF-8 bytes.
inline void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

// Decodes the multi-byte sequence at `p` (whose lead byte is 0x80 or above)
// into `cp`. Returns its length, or 0 when it is not well formed: a stray
// continuation byte, a truncated sequence, an overlong form, a surrogate or a
// value past U+10FFFF.
inline size_t DecodeUtf8Sequence(const unsigned char* p, const unsigned char* end, char32_t& cp) {
  const unsigned char b = *p;
  const int extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
  if (extra == 0 || b > 0xF4 || end - p <= extra) return 0;
  cp = b & (0x3F >> extra);
  for (int i = 1; i <= extra; ++i) {
    if ((p[i] & 0xC0) != 0x80) return 0;
    cp = (cp << 6) | (p[i] & 0x3F);
  }
  static constexpr char32_t kMin[] = {0, 0x80, 0x800, 0x10000};
  if (cp < kMin[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
  return static_cast<size_t>(extra) + 1;
}

// Appends `cp` (at most U+10FFFF) as one UTF-16 unit or a surrogate pair.
inline void AppendUtf16(std::u16string& out, char32_t cp) {
  if (cp >= 0x10000) {
    cp -= 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
  } else {
    out.push_back(static_cast<char16_t>(cp));
  }
}

}  // namespace crvlib::internal

#endif  // CRVLIB_CORE_UTF8_H_
