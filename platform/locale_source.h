// Where the user's locale and its settings come from. On Linux the locale is
// named by LC_ALL, LC_TIME or LANG and its settings come from ICU's CLDR data;
// "C", "POSIX" and an unset environment mean en-US, whose settings are
// Windows' en-US defaults exactly.
#ifndef CRVLIB_PLATFORM_LOCALE_SOURCE_H_
#define CRVLIB_PLATFORM_LOCALE_SOURCE_H_

#include <string>
#include <string_view>

#include "core/locale_settings.h"

namespace crvlib::platform {

// The user's default locale as a BCP 47 tag ("en-US", "de-DE").
std::string UserLocaleName();

// The settings of a locale given as a BCP 47 tag or a POSIX name
// ("de_DE.UTF-8"). An unknown or empty name gives en-US.
internal::LocaleSettings LoadLocaleSettings(std::string_view locale_name);

// True where the wide-character letter tests apply; always on Linux.
bool IsNtFamily();

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_LOCALE_SOURCE_H_
