// The printable hex form and C strings. The hex form writes every character
// as "^H" and its code page code in upper-case hexadecimal without leading
// zeros ("AB\n" -> "^H41^H42^HA"); codes come from the fixed single-byte code
// page, so each is one or two digits and a character outside the page is
// written as the code of "?", 3F. The reverse conversion runs on the element
// engine and lives with the element routines.
#include <string>

#include "core/error_frame.h"
#include "crvlib/functions.h"
#include "runtime/code_page.h"

namespace crvlib {

String Functions::ConvertStrToHex(const String& Value) {
  return internal::Trap(u"CRVLIB.Functions::ConvertStrToHex", [&] {
    std::u16string_view value = Value.view();
    int64_t size = 0;
    for (char16_t c : value) size += internal::AnsiCode(c) < 16 ? 3 : 4;
    if (size > String::kMaxBytes / 2) internal::Raise(internal::kOutOfStringSpace);

    constexpr char16_t kDigits[] = u"0123456789ABCDEF";
    std::u16string hex;
    hex.reserve(static_cast<size_t>(size));
    for (char16_t c : value) {
      const uint8_t code = internal::AnsiCode(c);
      hex += u"^H";
      if (code >= 16) hex.push_back(kDigits[code >> 4]);
      hex.push_back(kDigits[code & 15]);
    }
    return String(std::move(hex));
  });
}

String Functions::CStrToBStr(const String& CString) {
  return internal::Trap(u"CRVLIB.Functions::CStrToBStr", [&] {
    const size_t nul = CString.view().find(u'\0');
    if (nul == std::u16string_view::npos) return CString;
    return String(CString.view().substr(0, nul));
  });
}

}  // namespace crvlib
