// Lets GoogleTest print crvlib::String as readable text in failure messages:
// printable ASCII as is, everything else as \uXXXX, an odd trailing byte as
// \xNN.
#ifndef CRVLIB_TESTS_TESTING_STRING_PRINTER_H_
#define CRVLIB_TESTS_TESTING_STRING_PRINTER_H_

#include <cstdio>
#include <ostream>

#include "crvlib/string.h"

namespace crvlib {

inline void PrintTo(const String& s, std::ostream* os) {
  *os << "u\"";
  for (char16_t c : s.view()) {
    if (c >= 0x20 && c < 0x7F && c != u'"' && c != u'\\') {
      *os << static_cast<char>(c);
    } else {
      char buf[8];
      std::snprintf(buf, sizeof buf, "\\u%04X", static_cast<unsigned>(c));
      *os << buf;
    }
  }
  if (s.odd()) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "\\x%02X", static_cast<unsigned>(s.bytes()[s.LenB() - 1]));
    *os << buf;
  }
  *os << '"';
}

}  // namespace crvlib

#endif  // CRVLIB_TESTS_TESTING_STRING_PRINTER_H_
