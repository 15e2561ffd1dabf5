// Case mapping walks code points so that supplementary letters map too; the
// simple (one-to-one) mapping keeps every string its length, as the
// runtime's does. ASCII takes a fast path.
#include "runtime/text.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include "core/thread_state.h"
#include "runtime/number_parse.h"

namespace crvlib::internal {
namespace {

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
    UChar32 cp;
    size_t start = i;
    U16_NEXT(s.data(), i, n, cp);
    UChar32 mapped = kUpper ? u_toupper(cp) : u_tolower(cp);
    if (mapped == cp) continue;
    // The simple mapping stays in the same plane, so the length is kept.
    if (U16_LENGTH(mapped) != static_cast<int32_t>(i - start)) continue;
    size_t k = start;
    U16_APPEND_UNSAFE(s.data(), k, mapped);
  }
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
  if (U16_IS_SURROGATE(c)) return c;
  const UChar32 mapped = u_toupper(c);
  return mapped <= 0xFFFF ? static_cast<char16_t>(mapped) : c;
}

char16_t LowerCaseUnit(char16_t c) {
  if (c < 0x80) return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
  if (U16_IS_SURROGATE(c)) return c;
  const UChar32 mapped = u_tolower(c);
  return mapped <= 0xFFFF ? static_cast<char16_t>(mapped) : c;
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
  if (U16_IS_SURROGATE(c)) return false;
  return u_hasBinaryProperty(c, UCHAR_ALPHABETIC);
}

bool IsCharAlphaNumeric(char16_t c) {
  if (c < 0x80) return IsCharAlpha(c) || (c >= u'0' && c <= u'9');
  return IsCharAlpha(c) || (!U16_IS_SURROGATE(c) && u_isdigit(c));
}

bool IsNumeric(std::u16string_view text, const LocaleSettings& locale) {
  DecimalNumber n;
  return ScanNumber(text, locale, &n) != ParseStatus::kTypeMismatch;
}

bool IsNumeric(std::u16string_view text) {
  return IsNumeric(text, State().locale);
}

}  // namespace crvlib::internal
