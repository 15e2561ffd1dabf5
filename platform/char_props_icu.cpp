// Character properties from ICU's tables.
#include <unicode/uchar.h>

#include "platform/char_props.h"

namespace crvlib::platform {

char32_t SimpleUpperCase(char32_t c) {
  return static_cast<char32_t>(u_toupper(static_cast<UChar32>(c)));
}

char32_t SimpleLowerCase(char32_t c) {
  return static_cast<char32_t>(u_tolower(static_cast<UChar32>(c)));
}

bool IsAlphabetic(char16_t c) {
  return u_hasBinaryProperty(c, UCHAR_ALPHABETIC);
}

bool IsAlphanumeric(char16_t c) {
  return u_hasBinaryProperty(c, UCHAR_ALPHABETIC) || u_isdigit(c);
}

}  // namespace crvlib::platform
