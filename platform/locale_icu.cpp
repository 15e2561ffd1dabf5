// The user's locale from the environment and its settings from ICU (CLDR).
// en-US is not read from ICU: its settings are Windows' en-US defaults, which
// are the defaults of LocaleSettings.
#include <unicode/uloc.h>

#include <cstdlib>
#include <string>

#include "platform/locale_source.h"

namespace crvlib::platform {
namespace {

// "de_DE.UTF-8@euro" -> "de-DE"; "", "C" and "POSIX" -> "en-US".
std::string ToTag(std::string_view name) {
  std::string s(name.substr(0, name.find_first_of(".@")));
  if (s.empty() || s == "C" || s == "POSIX") return "en-US";
  for (char& c : s) {
    if (c == '_') c = '-';
  }
  char tag[ULOC_FULLNAME_CAPACITY];
  UErrorCode status = U_ZERO_ERROR;
  uloc_toLanguageTag(s.c_str(), tag, sizeof tag, false, &status);
  if (U_FAILURE(status) || tag[0] == '\0' || std::string_view(tag) == "und") return "en-US";
  return tag;
}

}  // namespace

std::string UserLocaleName() {
  for (const char* var : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* v = std::getenv(var);
    if (v && *v) return ToTag(v);
  }
  return "en-US";
}

internal::LocaleSettings LoadLocaleSettings(std::string_view locale_name) {
  internal::LocaleSettings s;
  s.name = ToTag(locale_name);
  if (s.name == "en-US") return s;
  char icu_id[ULOC_FULLNAME_CAPACITY];
  UErrorCode status = U_ZERO_ERROR;
  uloc_forLanguageTag(s.name.c_str(), icu_id, sizeof icu_id, nullptr, &status);
  uint32_t lcid = U_SUCCESS(status) ? uloc_getLCID(icu_id) : 0;
  s.lcid = lcid ? static_cast<int32_t>(lcid) : 1033;
  return s;
}

bool IsNtFamily() {
  return true;
}

}  // namespace crvlib::platform
