// The locale a thread's conversions, comparisons and messages follow. By
// default it is the user's locale (LC_ALL, LC_TIME or LANG; unset, "C" and
// "POSIX" mean en-US). A program may pin another one for the calling thread.
//
//   crvlib::SetThreadLocale("de-DE");
//   crvlib::ThreadLocale() == "de-DE"
#ifndef CRVLIB_LOCALE_H_
#define CRVLIB_LOCALE_H_

#include <string>
#include <string_view>

#include "crvlib/export.h"

namespace crvlib {

// Loads the settings of `name` (a BCP 47 tag such as "de-DE", or a POSIX name
// such as "de_DE.UTF-8") for the calling thread. Unknown names give en-US.
CRVLIB_EXPORT void SetThreadLocale(std::string_view name);

// True when SetThreadLocale(name) loads the settings of `name` itself or of
// its language rather than falling back to en-US. "C", "POSIX" and "" mean
// en-US and are known.
//   IsKnownLocale("de-DE") && IsKnownLocale("de-XX")
//   !IsKnownLocale("xx-YY")
CRVLIB_EXPORT bool IsKnownLocale(std::string_view name);

// The BCP 47 tag of the calling thread's locale.
CRVLIB_EXPORT std::string ThreadLocale();

}  // namespace crvlib

#endif  // CRVLIB_LOCALE_H_
