// Windows-1252: identical to Latin-1 except for 0x80..0x9F, which hold
// typographic characters; the reverse map checks that block first.
#include "runtime/code_page.h"

#include "core/error_frame.h"

namespace crvlib::internal {
namespace {

constexpr char16_t kHighBlock[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80-87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88-8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90-97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98-9F
};

}  // namespace

char16_t Chr(int32_t code) {
  if (code < 0 || code > 255) Raise(kInvalidProcedureCall);
  if (code >= 0x80 && code < 0xA0) return kHighBlock[code - 0x80];
  return static_cast<char16_t>(code);
}

uint8_t AnsiCode(char16_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<uint8_t>(c);
  for (int i = 0; i < 32; ++i) {
    if (kHighBlock[i] == c) return static_cast<uint8_t>(0x80 + i);
  }
  return '?';
}

int16_t Asc(std::u16string_view s) {
  if (s.empty()) Raise(kInvalidProcedureCall);
  return AnsiCode(s[0]);
}

String StrConvUnicode(const String& s) {
  std::u16string out(static_cast<size_t>(s.LenB()), u'\0');
  for (size_t i = 0; i < out.size(); ++i) out[i] = Chr(s.bytes()[i]);
  return String(std::move(out));
}

std::string ToAnsi(std::u16string_view text) {
  std::string out(text.size(), '\0');
  for (size_t i = 0; i < text.size(); ++i) out[i] = static_cast<char>(AnsiCode(text[i]));
  return out;
}

std::u16string FromAnsi(std::string_view bytes) {
  std::u16string out(bytes.size(), u'\0');
  for (size_t i = 0; i < bytes.size(); ++i) out[i] = Chr(static_cast<uint8_t>(bytes[i]));
  return out;
}

}  // namespace crvlib::internal
