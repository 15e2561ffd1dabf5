// Text helpers with the runtime's meaning: UCase and LCase (Unicode simple
// case mapping, the same in every locale, one code point for one), the
// letter and letter-or-digit tests of IsCharAlphaW and IsCharAlphaNumericW
// (from ICU's character properties), and IsNumeric.
//
//   UpperCase(u"straße") == u"STRAßE"      LowerCase(u"ÀB") == u"àb"
//   IsCharAlpha(u'é') && !IsCharAlpha(u'1')     IsCharAlphaNumeric(u'7')
//   IsNumeric(u" $1,234.50 ") && IsNumeric(u"&HFF") && !IsNumeric(u"") && !IsNumeric(u"1e")
#ifndef CRVLIB_RUNTIME_TEXT_H_
#define CRVLIB_RUNTIME_TEXT_H_

#include <string_view>

#include "core/locale_settings.h"
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

// True when the text reads as a number under the acceptance rules of
// number_parse.h (a number beyond the Double range still counts).
bool IsNumeric(std::u16string_view text, const LocaleSettings& locale);
bool IsNumeric(std::u16string_view text);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_TEXT_H_
