// crvlib::Error is the automation error every public routine raises: a number,
// a source naming the class and routine ("CRVLIB.Functions::ExtractElement")
// and a description. There is no help file or help context.
//
// Numbers are the automation runtime's (5 "Invalid procedure call or
// argument", 6 "Overflow", 13 "Type mismatch", …) or the library's own:
// vxInvalidHexString and vxInvalidDynamicString arrive as the object-error base
// plus the code (kObjectErrorBase + 1009 == -2147220495), vxInvalidConversionCode
// as the bare 1611.
//
// No other exception leaves the library: memory running out arrives as 7
// "Out of memory", a string beyond what can be allocated as 14 "Out of string
// space" and any other failure inside the library as 51 "Internal error",
// each with the source of the routine it happened in. Routines that never
// raise (the DLLRoutines, the Validations predicates) count these as any
// other error.
#ifndef CRVLIB_ERROR_H_
#define CRVLIB_ERROR_H_

#include <cstdint>
#include <exception>
#include <string>

#include "crvlib/export.h"
#include "crvlib/string.h"

namespace crvlib {

// vbObjectError: the base of the numbers of errors an object defines itself.
inline constexpr int32_t kObjectErrorBase = static_cast<int32_t>(0x80040000u);

class CRVLIB_EXPORT Error : public std::exception {
 public:
  Error(int32_t number, String source, String description);

  // Runtime error `number` as the library raises it: the automation
  // runtime's standard description and no source. A program that drives the
  // library (a tool, a server) raises the runtime's errors with it.
  //   Error::Runtime(91).Description() == u"Object variable or With block variable not set"
  //   Error::Runtime(5).Source()       == u""
  static Error Runtime(int32_t number);

  int32_t Number() const noexcept { return number_; }
  const String& Source() const noexcept { return source_; }
  const String& Description() const noexcept { return description_; }

  // Re-raising in a routine's error frame replaces only the source.
  void SetSource(String source);

  // "error NUMBER (SOURCE): DESCRIPTION" in UTF-8.
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  void Render();

  int32_t number_;
  String source_;
  String description_;
  std::string what_;
};

}  // namespace crvlib

#endif  // CRVLIB_ERROR_H_
