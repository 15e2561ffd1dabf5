// Fuzzes the pattern checks of Validations: Matches, IsValid and
// EmailAddressCheck, with one string read both as a picture and as a regular
// expression.
//
// Input: one flag byte, then the pattern, a separator, and the value.
//   flag bit 0   IgnoreCase for IsValid
//   flag bit 1   the text is UTF-16LE and the separator the unit 0; otherwise
//                each byte is one unit (Latin-1) and the separator byte 0
//
// Besides running without crashing and within the engine's limits, two
// answers are checked against a twin:
//   - Matches(value, p) equals IsValid(value, p written as a regular
//     expression), where a 0 count becomes the atomic (?=(C*))\k of its class;
//   - IsValid(value, every unit of value escaped as \uhhhh) is True, with or
//     without IgnoreCase (for values up to 512 units).
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "crvlib/string.h"
#include "crvlib/validations.h"

namespace {

using crvlib::Validations;

void AppendUnitEscape(std::u16string& re, char16_t c) {
  static constexpr char16_t kHex[] = u"0123456789abcdef";
  re += u"\\u";
  for (int shift = 12; shift >= 0; shift -= 4) re += kHex[(c >> shift) & 0xF];
}

void AppendDecimal(std::u16string& s, uint64_t v) {
  for (char c : std::to_string(v)) s += static_cast<char16_t>(c);
}

struct Twin {
  bool valid = true;                    // false: the picture cannot match anything
  std::optional<std::u16string> regex;  // none for counts a regex cannot repeat
};

// The picture as a regular expression.
Twin PictureAsRegex(std::u16string_view picture) {
  Twin twin;
  std::u16string re = u"^";
  bool representable = true;
  uint64_t groups = 0;
  for (size_t i = 0; i < picture.size();) {
    char16_t c = picture[i];
    if (c >= u'0' && c <= u'9') {
      uint64_t n = 0;
      for (; i < picture.size() && picture[i] >= u'0' && picture[i] <= u'9'; ++i) {
        n = n * 10 + (picture[i] - u'0');
        if (n > INT32_MAX) {
          twin.valid = false;
          return twin;
        }
      }
      std::u16string_view cls;
      if (i < picture.size()) {
        char16_t letter = picture[i++] | 0x20;
        if (letter == u'n') cls = u"[0-9]";
        if (letter == u'a') cls = u"[A-Za-z]";
        if (letter == u'x') cls = u"[\\s\\S]";
      }
      if (cls.empty()) continue;
      if (n > 65535) representable = false;
      if (n == 0) {
        re += u"(?=(";
        re += cls;
        re += u"*))\\";
        AppendDecimal(re, ++groups);
      } else {
        re += cls;
        re += u'{';
        AppendDecimal(re, n);
        re += u'}';
      }
    } else if (c == u'\'') {
      size_t close = picture.find(u'\'', i + 1);
      if (close == std::u16string_view::npos) {
        twin.valid = false;
        return twin;
      }
      if (close == i + 1) AppendUnitEscape(re, u'\'');
      for (size_t k = i + 1; k < close; ++k) AppendUnitEscape(re, picture[k]);
      i = close + 1;
    } else {
      AppendUnitEscape(re, c);
      ++i;
    }
  }
  if (representable) twin.regex = re + u"$";
  return twin;
}

[[noreturn]] void Fail(const char* what, const crvlib::String& value,
                       const crvlib::String& pattern) {
  std::fprintf(stderr, "%s\n  value:   %s\n  pattern: %s\n", what, value.ToUtf8().c_str(),
               pattern.ToUtf8().c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const bool ignore_case = (data[0] & 1) != 0;
  const bool wide = (data[0] & 2) != 0;
  std::u16string text;
  if (wide) {
    for (size_t i = 1; i + 1 < size; i += 2) {
      text += static_cast<char16_t>(data[i] | (data[i + 1] << 8));
    }
  } else {
    for (size_t i = 1; i < size; ++i) text += static_cast<char16_t>(data[i]);
  }
  size_t split = text.find(u'\0');
  if (split == std::u16string::npos) split = text.size();
  const crvlib::String pattern(std::u16string_view(text).substr(0, split));
  const crvlib::String value(
      std::u16string_view(text).substr(split == text.size() ? split : split + 1));

  const bool matches = Validations::Matches(value, pattern);
  Twin twin = PictureAsRegex(pattern.view());
  if (twin.regex && matches != Validations::IsValid(value, crvlib::String(*twin.regex))) {
    Fail("Matches disagrees with its regular-expression twin", value, pattern);
  }
  if (!twin.valid && matches) Fail("Matches accepted an invalid picture", value, pattern);

  Validations::IsValid(value, pattern, ignore_case ? crvlib::vxIgnoreCase : crvlib::vxNoOptionsSet);
  Validations::EmailAddressCheck(value);

  // (Long values are left out: their caseless escaped form can outgrow
  // PCRE2's compiled-size limit.)
  if (value.Len() > 512) return 0;
  std::u16string literal = u"^";
  for (char16_t c : value.view()) AppendUnitEscape(literal, c);
  literal += u'$';
  if (!Validations::IsValid(value, crvlib::String(literal)) ||
      !Validations::IsValid(value, crvlib::String(literal), crvlib::vxIgnoreCase)) {
    Fail("a value does not match its own escaped text", value, pattern);
  }
  return 0;
}
