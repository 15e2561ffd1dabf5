// Character codes ("MC…") and the hex string code ("MX").
//
// The character codes walk the datum one code unit at a time. Letters and
// letter-or-digit tests are the platform's (wide tests on NT-family systems,
// the ANSI tests of the low byte elsewhere); the digit test is the runtime's
// numeric test of one character, which holds for "0" to "9" only. Title and
// sentence case need no letter test: upper- and lower-casing leave every
// character that is no letter as it is. MCXD and MCDX convert between
// hexadecimal and decimal text through a Long; they swap roles on input.
//
// MX writes each character's code page code as two upper-case hex digits
// and reads such pairs back. The reader takes any character as a digit:
// code AND 79, and when that has bit 64 set, its low three bits plus 9, so
// "0"-"9", "A"-"F" and "a"-"f" give their values and "G" or "O" give 16; a
// pair worth more than 255 is no character (error 5), and a trailing odd
// digit is dropped.
#include <cstdint>
#include <string>
#include <string_view>

#include "classes/conversion_codes.h"
#include "core/error_frame.h"
#include "runtime/code_page.h"
#include "runtime/letters.h"
#include "runtime/number_parse.h"
#include "runtime/text_buffer.h"

namespace crvlib::internal {
namespace {

constexpr char16_t kHexDigits[] = u"0123456789ABCDEF";

bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

template <class Test>
String Filter(std::u16string_view data, bool keep, Test test) {
  std::u16string out;
  out.reserve(data.size());
  for (char16_t c : data) {
    if (test(c) == keep) out.push_back(c);
  }
  return String(std::move(out));
}

// Title case restarts a word after every space; sentence case only at the
// start of the datum, with spaces before its first letter allowed.
String ChangeCase(std::u16string_view data, bool title) {
  std::u16string out(data);
  bool capital = true;
  for (char16_t& c : out) {
    if (c == u' ') {
      if (title) capital = true;
      continue;
    }
    c = capital ? UpperCaseUnit(c) : LowerCaseUnit(c);
    capital = false;
  }
  return String(std::move(out));
}

// CLng("&H" & data) in decimal.
String HexToDecimal(std::u16string_view data) {
  std::u16string text = u"&H";
  text.append(data);
  TextBuffer out;
  out.AppendNumber(ParseLong(text));
  return out.ToString();
}

// Hex$(CLng(data)): a negative Long shows its 32-bit two's complement.
String DecimalToHex(std::u16string_view data) {
  uint32_t v = static_cast<uint32_t>(ParseLong(data));
  char16_t digits[8];
  int n = 0;
  do {
    digits[n++] = kHexDigits[v & 15];
    v >>= 4;
  } while (v);
  std::u16string out;
  while (n) out.push_back(digits[--n]);
  return String(std::move(out));
}

}  // namespace

String ConvertCharacters(std::u16string_view data, const CharacterCode& code, bool input,
                         const LocaleSettings&) {
  switch (code.action) {
    case CharacterAction::kInvalid:
      break;
    case CharacterAction::kUpper:
      return UpperCase(data);
    case CharacterAction::kLower:
      return LowerCase(data);
    case CharacterAction::kKeepLetters:
    case CharacterAction::kDropLetters:
      return Filter(data, code.action == CharacterAction::kKeepLetters, IsPlatformLetter);
    case CharacterAction::kKeepDigits:
    case CharacterAction::kDropDigits:
      return Filter(data, code.action == CharacterAction::kKeepDigits, IsDigit);
    case CharacterAction::kKeepLettersAndDigits:
    case CharacterAction::kDropLettersAndDigits:
      return Filter(data, code.action == CharacterAction::kKeepLettersAndDigits,
                    IsPlatformLetterOrDigit);
    case CharacterAction::kPrintable: {
      std::u16string out(data);
      for (char16_t& c : out) {
        const uint8_t ansi = AnsiCode(c);
        if (ansi < 32 || ansi > 126) c = u'.';
      }
      return String(std::move(out));
    }
    case CharacterAction::kTitleCase:
    case CharacterAction::kSentenceCase:
      return ChangeCase(data, code.action == CharacterAction::kTitleCase);
    case CharacterAction::kHexToDecimal:
      return input ? DecimalToHex(data) : HexToDecimal(data);
    case CharacterAction::kDecimalToHex:
      return input ? HexToDecimal(data) : DecimalToHex(data);
  }
  return String();
}

String ConvertHex(std::u16string_view data, bool input) {
  std::u16string out;
  if (!input) {
    if (data.size() > static_cast<size_t>(String::kMaxBytes / 4)) Raise(kOutOfStringSpace);
    out.reserve(data.size() * 2);
    for (char16_t c : data) {
      const uint8_t code = AnsiCode(c);
      out.push_back(kHexDigits[code >> 4]);
      out.push_back(kHexDigits[code & 15]);
    }
    return String(std::move(out));
  }
  out.reserve(data.size() / 2);
  int32_t high = 0;
  for (size_t i = 0; i < data.size(); ++i) {
    int32_t digit = AnsiCode(data[i]) & 79;
    if (digit & 64) digit = (digit & 7) + 9;
    if (i % 2 == 0) {
      high = digit;
    } else {
      out.push_back(Chr(high * 16 + digit));
    }
  }
  return String(std::move(out));
}

}  // namespace crvlib::internal
