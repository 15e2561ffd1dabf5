// The character properties the runtime's text routines are built on: the
// simple (one-to-one) case mappings, and the letter tests of IsCharAlphaW and
// IsCharAlphaNumericW. They come from the platform's Unicode tables (ICU
// here; the system's own functions on Windows). Callers answer ASCII and
// surrogates themselves and ask only about the rest.
//
//   SimpleUpperCase(U'é') == U'É'     SimpleUpperCase(U'ß') == U'ß'   (no 1:2 mapping)
//   SimpleLowerCase(U'\U00010400') == U'\U00010428'
//   IsAlphabetic(u'Ж') && !IsAlphabetic(u'×')
//   IsAlphanumeric(u'\u0663') && !IsAlphabetic(u'\u0663')   (Arabic-Indic three)
#ifndef CRVLIB_PLATFORM_CHAR_PROPS_H_
#define CRVLIB_PLATFORM_CHAR_PROPS_H_

namespace crvlib::platform {

// The simple case mapping of code point `c`; `c` itself when it has none
// (a lone surrogate has none).
char32_t SimpleUpperCase(char32_t c);
char32_t SimpleLowerCase(char32_t c);

// A code unit that is no surrogate, with the Alphabetic property (letters,
// and the marks that behave as letters).
bool IsAlphabetic(char16_t c);
// Alphabetic, or a decimal digit of any script.
bool IsAlphanumeric(char16_t c);

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_CHAR_PROPS_H_
