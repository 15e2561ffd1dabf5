// Conversions::Convert, the character filters and proper case.
//
// Convert parses the code into a ConversionCode (conversion_codes.h) and
// hands the datum to its family. An empty datum is answered before the code
// is looked at, so even an unknown code gives "" for it. An unknown code
// raises 1611, whose description is the catalogue's text with the code
// appended; like every failure of a family it leaves through Convert's
// frame under Convert's source.
//
// The filters keep a character by its code page code (Asc), so a character
// outside the code page is judged as the "?" it would become; what is kept
// is the character itself.
#include <cstdint>
#include <string>

#include "classes/conversion_codes.h"
#include "core/error_frame.h"
#include "core/thread_state.h"
#include "crvlib/conversions.h"
#include "crvlib/dynamic_string.h"
#include "runtime/code_page.h"
#include "runtime/letters.h"

namespace crvlib {
namespace {

using internal::Trap;

template <class Keep>
String KeepCodes(const String& value, Keep keep) {
  std::u16string out;
  for (char16_t c : value.view()) {
    if (keep(internal::AnsiCode(c))) out.push_back(c);
  }
  return String(std::move(out));
}

bool IsAsciiLetter(uint8_t code) {
  return (code >= 65 && code <= 90) || (code >= 97 && code <= 122);
}

bool IsAsciiDigit(uint8_t code) {
  return code >= 48 && code <= 57;
}

}  // namespace

String Conversions::Convert(const String& Data, const String& Conversion, bool InputConvert) {
  return Trap(u"CRVLIB.Converions::Convert", [&]() -> String {
    if (Data.Len() == 0) return String();
    const internal::LocaleSettings& locale = internal::State().locale;
    const std::u16string_view data = Data.view();
    const internal::ConversionCode code = internal::ParseConversionCode(Conversion.view(), locale);
    switch (code.family) {
      case internal::CodeFamily::kDate:
        return internal::ConvertDate(data, code.date, InputConvert, locale);
      case internal::CodeFamily::kTime:
        return internal::ConvertTime(data, code.time, InputConvert, locale);
      case internal::CodeFamily::kCharacter:
        return internal::ConvertCharacters(data, code.character, InputConvert, locale);
      case internal::CodeFamily::kHex:
        return internal::ConvertHex(data, InputConvert);
      case internal::CodeFamily::kMask:
        return internal::ConvertMask(data, code.mask, InputConvert, locale);
      case internal::CodeFamily::kInvalid:
        break;
    }
    internal::RaiseLibrary(vxInvalidConversionCode, {}, {}, Conversion.view());
  });
}

String Conversions::Alpha(const String& Value) {
  return Trap(u"CRVLIB.Conversions::Alpha", [&] { return KeepCodes(Value, IsAsciiLetter); });
}

String Conversions::AlphaPlus(const String& Value) {
  return Trap(u"CRVLIB.Conversions::AlphaPlus", [&] {
    return KeepCodes(Value, [](uint8_t c) { return c == 32 || IsAsciiLetter(c); });
  });
}

String Conversions::Num(const String& Value) {
  return Trap(u"CRVLIB.Conversions::Num", [&] { return KeepCodes(Value, IsAsciiDigit); });
}

String Conversions::NumPlus(const String& Value) {
  return Trap(u"CRVLIB.Conversions::NumPlus", [&] {
    return KeepCodes(Value, [](uint8_t c) { return (c >= 44 && c <= 46) || IsAsciiDigit(c); });
  });
}

String Conversions::NonNum(const String& Value) {
  return Trap(u"CRVLIB.Conversions::NonNum", [&] {
    return KeepCodes(
        Value, [](uint8_t c) { return (c >= 32 && c <= 44) || c == 47 || (c >= 58 && c <= 126); });
  });
}

String Conversions::PCase(const String& Value) {
  return Trap(u"CRVLIB.Converions::PCase", [&] {
    // A word starts at the beginning and after a space, carriage return,
    // line feed, tab or form feed, and nowhere else: "o'neil-smith, jr."
    // becomes "O'neil-smith, Jr.". The four control characters are looked
    // up as the elements of a list, one search per character.
    std::u16string text = internal::LowerCase(Value.view()).ToU16();
    DynamicString breaks;
    breaks.SetValue(u"\r,\n,\t,\f");
    bool after_break = true;  // the text is preceded by a space
    for (char16_t& c : text) {
      const bool is_break = breaks.LocateElement(std::u16string_view(&c, 1), u",", 1, vxExactMatch,
                                                 vxCaseSensitive) != 0;
      const bool is_space = c == u' ';
      if (!is_break && after_break) c = internal::UpperCaseUnit(c);
      after_break = is_space || is_break;
    }
    return String(std::move(text));
  });
}

}  // namespace crvlib
