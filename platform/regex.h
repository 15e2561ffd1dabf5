// platform::RegExp is the regular-expression object the library tests patterns
// with. It behaves as the scripting runtime's RegExp object (VBScript 5.5):
// ECMAScript-style pattern syntax, an IgnoreCase switch, and Test, which looks
// for a match anywhere in the subject (the pattern anchors itself with ^ and $
// when it wants to). Global and MultiLine are never set, so ^ and $ mean the
// start and the end of the whole subject. Subjects and patterns are UTF-16
// code units; a lone surrogate is an ordinary unit.
//
// Which engine stands behind the object is the platform's business: the
// Linux build translates the pattern to PCRE2 (regex_to_pcre2.h) and caches
// the compiled form per thread (regex_pcre2.cpp); a Windows build may wrap the system's own RegExp
// object instead. Like that object, a RegExp is created fresh for each use,
// and creating it can fail when no engine is available.
//
//   RegExp re;                        // raises when no engine can be created
//   re.SetPattern(u"^[a-z]+$");
//   re.Test(u"abc") == true           re.Test(u"ABC") == false
//   re.SetIgnoreCase(true);
//   re.Test(u"ABC") == true
//   re.SetPattern(u"(");              re.Test(u"x") raises kRegExpSyntaxError
#ifndef CRVLIB_PLATFORM_REGEX_H_
#define CRVLIB_PLATFORM_REGEX_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace crvlib::platform {

// The runtime's number for a pattern that does not parse ("Syntax error in
// regular expression").
inline constexpr int32_t kRegExpSyntaxError = 5017;
// Raised when a match cannot be decided within the engine's step and memory
// limits (a catastrophic pattern on a long subject): "Out of stack space",
// which is how the scripting engine's recursive matcher gives up.
inline constexpr int32_t kOutOfStackSpace = 28;

class RegExp {
 public:
  // Creates the object; raises the engine's creation error (a runtime error,
  // 7 when memory runs out) when there is no engine to create.
  RegExp();
  ~RegExp();
  RegExp(const RegExp&) = delete;
  RegExp& operator=(const RegExp&) = delete;

  void SetIgnoreCase(bool ignore_case) { ignore_case_ = ignore_case; }

  // Keeps a view of `pattern`, which must stay alive until the last Test. A
  // pattern that does not parse is only reported by Test, as the runtime's
  // object does it.
  void SetPattern(std::u16string_view pattern) { pattern_ = pattern; }

  // True when the pattern matches somewhere in `subject`. Raises
  // kRegExpSyntaxError for an invalid pattern and kOutOfStackSpace when the
  // match runs into the engine's limits.
  bool Test(std::u16string_view subject);

 private:
  friend void FailRegExpCreationForTesting(int32_t error_number);
  friend size_t CachedRegExpCountForTesting();

  struct Engine;  // defined by the platform's implementation

  Engine* engine_;
  std::u16string_view pattern_;
  bool ignore_case_ = false;
};

// For tests: while `error_number` is not 0, creating a RegExp on the calling
// thread raises runtime error `error_number`, as a missing engine does.
void FailRegExpCreationForTesting(int32_t error_number);

// For tests: how many compiled patterns the calling thread keeps.
size_t CachedRegExpCountForTesting();

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_REGEX_H_
