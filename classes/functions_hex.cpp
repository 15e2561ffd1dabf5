// The printable hex form and C strings. The hex form writes every character
// as "^H" and its code page code in upper-case hexadecimal without leading
// zeros ("AB\n" -> "^H41^H42^HA"); codes come from the fixed single-byte code
// page, so each is one or two digits and a character outside the page is
// written as the code of "?", 3F.
//
// The reverse reads the form as a dynamic string array with the delimiter
// "^H": element 1 is the empty text before the leading "^H" and every later
// element is one code. Each code is read as the runtime reads "&H" followed
// by it: the longest hexadecimal prefix counts and the rest is ignored, no
// digit at all gives 0 (so "^H" alone is one character of code 0), and up to
// FFFF the value is a signed 16-bit one, so FFFF is -1. A code the code page
// has no character for raises 5.
#include <string>

#include "core/error_frame.h"
#include "crvlib/functions.h"
#include "runtime/code_page.h"
#include "runtime/rounding.h"
#include "runtime/val.h"

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

String Functions::ConvertHexToStr(const String& HexString) {
  constexpr std::u16string_view kSource = u"CRVLIB.Functions::ConvertHexToStr";
  constexpr std::u16string_view kMark = u"^H";
  // Raised outside the trap, so the caller gets it exactly as built here.
  if (!HexString.view().starts_with(kMark)) {
    internal::TrapForeign(kSource, [] {
      const Variant inserts[] = {Variant(u"\r")};
      internal::RaiseLibrary(vxInvalidHexString, kSource, inserts);
    });
  }
  return internal::Trap(kSource, [&] {
    const String mark(kMark);
    DynamicString hex;
    hex.SetValue(HexString);
    DynamicString text;
    std::u16string literal(u"&H");
    const int32_t count = hex.CountElements(mark);
    for (int32_t i = 2; i <= count; ++i) {
      literal.resize(2);
      literal.append(hex.ExtractElement(mark, i).Value().view());
      const int32_t code = internal::DoubleToLong(internal::Val(literal));
      text.Append(String(std::u16string(1, internal::Chr(code))));
    }
    return text.Value();
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
