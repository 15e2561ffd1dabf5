// The single-byte code page that stands for the system's ANSI code page: Chr$,
// Asc and the byte <-> character conversions of text files and StrConv.
// crvlib fixes it to Windows-1252 on every platform, in both directions; the
// five codes 1252 leaves unassigned (0x81, 0x8D, 0x8F, 0x90, 0x9D) map to the
// C1 controls of the same number, as Windows does.
//
//   Chr(255) == u'\u00FF'     Chr(128) == u'\u20AC'     Chr(256) raises 5
//   AnsiCode(u'\u20AC') == 128                AnsiCode(u'\u0100') == 63 ("?")
#ifndef CRVLIB_RUNTIME_CODE_PAGE_H_
#define CRVLIB_RUNTIME_CODE_PAGE_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "crvlib/string.h"

namespace crvlib::internal {

// Chr$: the character of code page code `code`; error 5 outside 0..255.
char16_t Chr(int32_t code);

// The code page code of `c`; a character outside the code page gives 63, the
// code of "?", as the system's conversion substitutes it.
uint8_t AnsiCode(char16_t c);

// Asc: the code of the first character of `s`; error 5 for an empty string.
int16_t Asc(std::u16string_view s);

// StrConv(s, vbUnicode): every byte of `s` widened to the character of that
// code through the code page ("AB" as bytes 41 00 42 00 gives four
// characters "A", NUL, "B", NUL).
String StrConvUnicode(const String& s);

// Whole-string conversions through the code page.
std::string ToAnsi(std::u16string_view text);
std::u16string FromAnsi(std::string_view bytes);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_CODE_PAGE_H_
