// Where the user's locale and its settings come from. On Linux the locale is
// named by LC_ALL, LC_TIME or LANG and its settings come from ICU's CLDR data;
// "C", "POSIX" and an unset environment mean en-US, whose settings are
// Windows' en-US defaults exactly.
//
// The source answers like the Windows locale queries it stands for: each of
// the seven items the start-up routine reads may be missing (the query
// failed), and the short-date formats come as a list in order of preference.
//
//   LocaleData d = LoadLocaleData("de_DE.UTF-8");
//   d.settings.name == "de-DE"     *d.items[kDecimalItem] == u","
//   d.short_date_formats.front() == u"dd.MM.yyyy"
#ifndef CRVLIB_PLATFORM_LOCALE_SOURCE_H_
#define CRVLIB_PLATFORM_LOCALE_SOURCE_H_

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/locale_settings.h"

namespace crvlib::platform {

// The seven items, in the order of LocaleData::items.
enum LocaleItem : int {
  kThousandItem = 0,  // LOCALE_STHOUSAND
  kDecimalItem,       // LOCALE_SDECIMAL
  kCurrencyItem,      // LOCALE_SCURRENCY
  kDateItem,          // LOCALE_SDATE
  kTimeItem,          // LOCALE_STIME
  kAmItem,            // LOCALE_S1159
  kPmItem,            // LOCALE_S2359
  kLocaleItemCount,
};

struct LocaleData {
  // Everything but the seven items and the date order, which the start-up
  // routine derives from `items` and `short_date_formats`.
  internal::LocaleSettings settings;
  std::array<std::optional<String>, kLocaleItemCount> items;
  std::vector<String> short_date_formats;
};

// The user's default locale as a BCP 47 tag ("en-US", "de-DE").
std::string UserLocaleName();

// The data of a locale given as a BCP 47 tag or a POSIX name
// ("de_DE.UTF-8"). An unknown or empty name gives en-US.
LocaleData LoadLocaleData(std::string_view locale_name);

// True when `locale_name` means en-US ("C", "POSIX", "") or the locale data
// knows its language ("de-XX" is known through "de"; "xx-YY" is not).
bool IsKnownLocale(std::string_view locale_name);

// True where the wide-character letter tests apply; always on Linux.
bool IsNtFamily();

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_LOCALE_SOURCE_H_
