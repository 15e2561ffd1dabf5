// crvlib::String is the automation string: a run of UTF-16 code units whose
// length is counted in bytes. Almost every string holds whole code units, but a
// byte-mode read at an odd offset (DynamicString::ExtractB(1, 3), say) yields a
// string of odd byte length; its character length is then the byte length
// integer-divided by 2 and the last byte stands alone.
//
//   String s = u"abc";
//   s.Len() == 3
//   s.LenB() == 6
//   String::FromUtf8("ÿ") == u"\u00ff"
//   String b = String::FromBytes("\x41\x00\x42", 3);
//   b.Len() == 1
//   b.LenB() == 3
//
// Strings compare equal when their bytes are equal. The byte view assumes a
// little-endian host, as the automation layout does.
#ifndef CRVLIB_STRING_H_
#define CRVLIB_STRING_H_

#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

#include "crvlib/export.h"

namespace crvlib {

static_assert(std::endian::native == std::endian::little,
              "crvlib keeps UTF-16LE text and needs a little-endian host");

class CRVLIB_EXPORT String {
 public:
  // The largest byte length an automation string may have.
  static constexpr int32_t kMaxBytes = 0x7FFFFFFE;

  String() = default;
  String(const char16_t* text) : units_(text) {}            // NOLINT: implicit by design
  String(std::u16string text) : units_(std::move(text)) {}  // NOLINT
  String(std::u16string_view text) : units_(text) {}        // NOLINT

  // Decodes UTF-8; malformed sequences become U+FFFD.
  static String FromUtf8(std::string_view utf8);
  // Takes `count` raw bytes (little-endian code units); `count` may be odd.
  static String FromBytes(const void* data, size_t count);
  // `count` copies of code unit `unit`.
  static String Repeat(size_t count, char16_t unit) { return String(std::u16string(count, unit)); }

  // Character length (whole code units) and byte length.
  int32_t Len() const { return static_cast<int32_t>(units_.size() - odd_); }
  int32_t LenB() const { return static_cast<int32_t>(units_.size() * 2 - odd_); }
  bool empty() const { return units_.empty(); }
  bool odd() const { return odd_; }

  // The whole code units (an odd trailing byte is left out).
  std::u16string_view view() const { return {units_.data(), units_.size() - odd_}; }
  const char16_t* data() const { return units_.data(); }
  const uint8_t* bytes() const { return reinterpret_cast<const uint8_t*>(units_.data()); }
  char16_t operator[](size_t i) const { return units_[i]; }

  // Converts to UTF-8 (unpaired surrogates become U+FFFD; an odd trailing byte
  // is dropped). Use the bytes for an exact round trip.
  std::string ToUtf8() const;

  // UTF-8 for programs that read and write text at their edges (arguments,
  // JSON, files), without building a String for each piece:
  // The offset of the first byte of `utf8` that is not part of a well-formed
  // sequence (a stray continuation byte, a cut-short or overlong sequence, a
  // surrogate, a value past U+10FFFF), or npos when all of it is well formed.
  //   String::InvalidUtf8At("a\xC3\xBF")  == std::string_view::npos
  //   String::InvalidUtf8At("ab\xC3")      == 2
  static size_t InvalidUtf8At(std::string_view utf8);
  // Appends `units` as UTF-8, as ToUtf8 converts them.
  //   std::string out = "a";
  //   String::AppendUtf8(out, u"\u00FF\xD800");
  //   out == "a\xC3\xBF\xEF\xBF\xBD"
  static void AppendUtf8(std::string& out, std::u16string_view units);
  // Appends `utf8` as UTF-16 code units, as FromUtf8 converts it.
  static void AppendUtf16(std::u16string& out, std::string_view utf8);
  // The code units as a std::u16string (odd trailing byte dropped).
  std::u16string ToU16() const { return std::u16string(view()); }
  // Moves the storage out. Only for strings of even byte length.
  std::u16string&& Release() && { return std::move(units_); }

  // Mutable access to the code units of an even-length string, for builders.
  std::u16string& units() { return units_; }

  friend bool operator==(const String& a, const String& b) {
    return a.odd_ == b.odd_ && a.units_ == b.units_;
  }
  friend bool operator==(const String& a, std::u16string_view b) {
    return !a.odd_ && a.units_ == b;
  }
  friend bool operator==(const String& a, const char16_t* b) { return a == std::u16string_view(b); }
  friend bool operator==(const String& a, const std::u16string& b) {
    return a == std::u16string_view(b);
  }

 private:
  // ceil(LenB / 2) units; when odd_, the last unit holds the lone byte in its
  // low half and zero in its high half, so equal bytes mean equal units.
  std::u16string units_;
  bool odd_ = false;
};

// Writes the string as UTF-8.
CRVLIB_EXPORT std::ostream& operator<<(std::ostream& out, const String& s);

}  // namespace crvlib

#endif  // CRVLIB_STRING_H_
