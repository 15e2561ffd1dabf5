// Letters with the runtime's meaning: UCase and LCase (Unicode simple case
// mapping, the same in every locale, one code point for one), and the letter
// and letter-or-digit tests of IsCharAlphaW and IsCharAlphaNumericW.
//
//   UpperCase(u"straße") == u"STRAßE"      LowerCase(u"ÀB") == u"àb"
//   IsCharAlpha(u'é') && !IsCharAlpha(u'1')     IsCharAlphaNumeric(u'7')
#ifndef CRVLIB_RUNTIME_LETTERS_H_
#define CRVLIB_RUNTIME_LETTERS_H_

#include <string>
#include <string_view>

#include "crvlib/string.h"

namespace crvlib::internal {

String UpperCase(std::u16string_view text);
String LowerCase(std::u16string_view text);

// In place, for builders.
void UpperCaseInPlace(std::u16string& text);
void LowerCaseInPlace(std::u16string& text);

// One code unit alone, as UCase and LCase map a one-character string: a
// surrogate stays as it is.
char16_t UpperCaseUnit(char16_t c);
char16_t LowerCaseUnit(char16_t c);

// A code unit with the Alphabetic property (letters, and the marks that
// behave as letters); surrogates are not letters.
bool IsCharAlpha(char16_t c);
// A letter or a decimal digit of any script.
bool IsCharAlphaNumeric(char16_t c);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_LETTERS_H_
