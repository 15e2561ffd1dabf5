// The conversion-code parser: one pass over the code, family by its first
// one or two characters (compared exactly), then the family's own fields.
// The grammar is in conversion_codes.h.
//
// The numeric test the codes apply to a single character (year digits,
// decimals and scale, fill counts) holds for the ten ASCII digits and for
// nothing else, so it is written here as a plain range test.
#include <string_view>

#include "classes/conversion_codes.h"
#include "core/thread_state.h"
#include "runtime/code_page.h"
#include "runtime/letters.h"

namespace crvlib::internal {
namespace {

bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

// True when `c` is the whole of a one-character locale setting.
bool IsSetting(char16_t c, const String& setting) {
  return setting.Len() == 1 && setting.view().front() == c;
}

DateCode ParseDateCode(std::u16string_view code) {
  DateCode d;
  std::u16string_view rest = code.substr(1);
  if (!rest.empty() && IsDigit(rest.front())) {
    // Counts above 4 are no valid year width; the report of that is
    // suppressed and the count kept, so "D7" asks for seven year letters.
    d.year_digits = rest.front() - u'0';
    rest.remove_prefix(1);
  }
  if (rest.empty()) return d;
  if (!IsPlatformLetter(rest.front())) {
    d.layout = DateLayout::kSeparated;
    d.separator = rest.front();  // only the first character counts
    return d;
  }
  d.layout = DateLayout::kField;
  struct Name {
    std::u16string_view name;
    DateField field;
  };
  static constexpr Name kFields[] = {
      {u"D", DateField::kDay},
      {u"M", DateField::kMonth},
      {u"MA", DateField::kMonthAbbreviation},
      {u"Y", DateField::kYear},
      {u"J", DateField::kDayOfYear},
      {u"Q", DateField::kQuarter},
      {u"W", DateField::kWeekday},
      {u"WA", DateField::kWeekdayAbbreviation},
  };
  for (const Name& n : kFields) {
    if (rest == n.name) d.field = n.field;
  }
  return d;
}

TimeCode ParseTimeCode(std::u16string_view code) {
  TimeCode t;
  for (char16_t c : code) {
    if (c == u'H' || c == u'h') t.twelve_hour = true;
    if (c == u'S' || c == u's') t.seconds = true;
  }
  return t;
}

CharacterCode ParseCharacterCode(std::u16string_view code) {
  struct Selector {
    std::u16string_view name;
    CharacterAction action;
  };
  static constexpr Selector kSelectors[] = {
      {u"U", CharacterAction::kUpper},
      {u"L", CharacterAction::kLower},
      {u"A", CharacterAction::kKeepLetters},
      {u"/A", CharacterAction::kDropLetters},
      {u"N", CharacterAction::kKeepDigits},
      {u"/N", CharacterAction::kDropDigits},
      {u"AN", CharacterAction::kKeepLettersAndDigits},
      {u"NA", CharacterAction::kKeepLettersAndDigits},
      {u"/AN", CharacterAction::kDropLettersAndDigits},
      {u"/NA", CharacterAction::kDropLettersAndDigits},
      {u"P", CharacterAction::kPrintable},
      {u"T", CharacterAction::kTitleCase},
      {u"S", CharacterAction::kSentenceCase},
      {u"XD", CharacterAction::kHexToDecimal},
      {u"DX", CharacterAction::kDecimalToHex},
  };
  CharacterCode c;
  const std::u16string_view selector = code.substr(2);
  for (const Selector& s : kSelectors) {
    if (selector == s.name) c.action = s.action;
  }
  return c;
}

// Splits a mask into fill and literal items and adds up its width.
void ParseMaskItems(std::u16string_view text, MaskCode* m) {
  for (size_t j = 0; j < text.size(); ++j) {
    MaskItem item;
    const char16_t c = text[j];
    if (c != u'#' && c != u'*' && c != u'%') {
      item.literal = c;
      m->items.push_back(item);
      m->width += 1;
      continue;
    }
    item.fill = c == u'#' ? u' ' : c == u'%' ? u'0' : u'*';
    int64_t count = 0;
    while (j + 1 < text.size() && IsDigit(text[j + 1])) {
      ++j;
      if (count <= INT32_MAX) count = count * 10 + (text[j] - u'0');
    }
    if (count > INT32_MAX) {
      m->count_overflow = true;
      count = 1;
    }
    item.count = count == 0 ? 1 : static_cast<int32_t>(count);
    m->items.push_back(item);
    m->width += item.count;
  }
}

MaskCode ParseMaskCode(std::u16string_view code, const LocaleSettings& locale) {
  MaskCode m;
  m.left_justified = code[1] == u'L';
  size_t i = 2;
  if (i < code.size() && IsDigit(code[i])) {
    m.decimals = m.scale = code[i++] - u'0';
    if (i < code.size() && IsDigit(code[i])) m.scale = code[i++] - u'0';
  }
  for (; i < code.size(); ++i) {
    const char16_t c = code[i];
    switch (c) {
      case u'Z':
        m.suppress_zero = true;
        continue;
      case u'C':
        m.sign = SignMode::kCredit;
        continue;
      case u'D':
        m.sign = SignMode::kDebit;
        continue;
      case u'E':
        m.sign = SignMode::kEnclosed;
        continue;
      case u'M':
        m.sign = SignMode::kTrailingMinus;
        continue;
      case u'N':
        m.sign = SignMode::kNoSign;
        continue;
      default:
        break;
    }
    if (c == u',' || IsSetting(c, locale.thousands_separator)) {
      m.grouping = true;
    } else if (c == u'$' || IsSetting(c, locale.currency_symbol)) {
      m.currency = true;
    } else if (c == u'(') {
      // Up to, not including, the code's last character; "MD2(" has none.
      const size_t end = code.size() - 1;
      ParseMaskItems(end > i ? code.substr(i + 1, end - i - 1) : std::u16string_view(), &m);
      break;
    } else {
      ParseMaskItems(code.substr(i), &m);
      break;
    }
  }
  return m;
}

}  // namespace

bool IsPlatformLetter(char16_t c) {
  return State().is_nt ? IsCharAlpha(c) : IsCharAlpha(Chr(c & 0xFF));
}

bool IsPlatformLetterOrDigit(char16_t c) {
  return State().is_nt ? IsCharAlphaNumeric(c) : IsCharAlphaNumeric(Chr(c & 0xFF));
}

ConversionCode ParseConversionCode(std::u16string_view code, const LocaleSettings& locale) {
  ConversionCode c;
  const std::u16string_view c2 = code.substr(0, 2);
  if (code.starts_with(u'D')) {
    c.family = CodeFamily::kDate;
    c.date = ParseDateCode(code);
  } else if (c2 == u"MT" || code.starts_with(u'T')) {
    c.family = CodeFamily::kTime;
    c.time = ParseTimeCode(code);
  } else if (c2 == u"MC") {
    c.character = ParseCharacterCode(code);
    if (c.character.action != CharacterAction::kInvalid) c.family = CodeFamily::kCharacter;
  } else if (c2 == u"MX") {
    c.family = CodeFamily::kHex;
  } else if (c2 == u"MR" || c2 == u"MD" || c2 == u"ML") {
    c.family = CodeFamily::kMask;
    c.mask = ParseMaskCode(code, locale);
  }
  return c;
}

}  // namespace crvlib::internal
