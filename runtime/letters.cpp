// Case mapping walks code points so that supplementary letters map too; the
// simple (one-to-one) mapping keeps every string its length, as the
// runtime's does. ASCII takes a fast path; the rest asks the platform's
// character tables.
#include "runtime/letters.h"

#include "platform/char_props.h"

namespace crvlib::internal {
namespace {

bool IsSurrogate(char16_t c) {
  return (c & 0xF800) == 0xD800;
}
bool IsLeadSurrogate(char16_t c) {
  return (c & 0xFC00) == 0xD800;
}
bool IsTrailSurrogate(char16_t c) {
  return (c & 0xFC00) == 0xDC00;
}

template <bool kUpper>
void MapCase(std::u16string& s) {
  const size_t n = s.size();
  for (size_t i = 0; i < n;) {
    char16_t c = s[i];
    if (c < 0x80) {
      if (kUpper ? (c >= u'a' && c <= u'z') : (c >= u'A' && c <= u'Z')) {
        s[i] = static_cast<char16_t>(kUpper ? c - 32 : c + 32);
      }
      ++i;
      continue;
    }
    // A surrogate pair is one code point; a lone surrogate stands for itself.
    char32_t cp = c;
    size_t units = 1;
    if (IsLeadSurrogate(c) && i + 1 < n && IsTrailSurrogate(s[i + 1])) {
      cp = 0x10000 + ((char32_t{c} - 0xD800) << 10) + (s[i + 1] - 0xDC00u);
      units = 2;
    }
    const char32_t mapped = kUpper ? platform::SimpleUpperCase(cp) : platform::SimpleLowerCase(cp);
    // The simple mapping stays in the same plane, so the length is kept.
    if (mapped != cp && (mapped > 0xFFFF ? 2u : 1u) == units) {
      if (units == 1) {
        s[i] = static_cast<char16_t>(mapped);
      } else {
        s[i] = static_cast<char16_t>(0xD800 + ((mapped - 0x10000) >> 10));
        s[i + 1] = static_cast<char16_t>(0xDC00 + (mapped & 0x3FF));
      }
    }
    i += units;
  }
}

// One unit through a code point mapping: a surrogate, or a unit that would
// map outside the BMP, stays as it is.
char16_t MapUnit(char16_t c, char32_t (*map)(char32_t)) {
  if (IsSurrogate(c)) return c;
  const char32_t mapped = map(c);
  return mapped <= 0xFFFF ? static_cast<char16_t>(mapped) : c;
}

}  // namespace

void UpperCaseInPlace(std::u16string& text) {
  MapCase<true>(text);
}

void LowerCaseInPlace(std::u16string& text) {
  MapCase<false>(text);
}

char16_t UpperCaseUnit(char16_t c) {
  if (c < 0x80) return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c;
  return MapUnit(c, platform::SimpleUpperCase);
}

char16_t LowerCaseUnit(char16_t c) {
  if (c < 0x80) return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
  return MapUnit(c, platform::SimpleLowerCase);
}

String UpperCase(std::u16string_view text) {
  std::u16string s(text);
  MapCase<true>(s);
  return String(std::move(s));
}

String LowerCase(std::u16string_view text) {
  std::u16string s(text);
  MapCase<false>(s);
  return String(std::move(s));
}

bool IsCharAlpha(char16_t c) {
  if (c < 0x80) return (c | 0x20) >= u'a' && (c | 0x20) <= u'z';
  return !IsSurrogate(c) && platform::IsAlphabetic(c);
}

bool IsCharAlphaNumeric(char16_t c) {
  if (c < 0x80) return IsCharAlpha(c) || (c >= u'0' && c <= u'9');
  return !IsSurrogate(c) && platform::IsAlphanumeric(c);
}

}  // namespace crvlib::internal
