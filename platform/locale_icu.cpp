// The user's locale from the environment and its settings from ICU (CLDR).
// en-US is not read from ICU: its settings are Windows' en-US defaults, which
// are the defaults of LocaleSettings.
//
// CLDR patterns use the letters of ICU's SimpleDateFormat; they are rewritten
// into Windows picture letters (EEEE -> dddd, y -> yyyy, a -> tt, ...). Two
// adjustments bring CLDR closer to Windows' defaults: a two-digit year in the
// short date becomes four digits (Windows' short dates show four), and the
// narrow no-break space CLDR puts before AM/PM becomes a plain space.
#include <unicode/datefmt.h>
#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/numfmt.h>
#include <unicode/smpdtfmt.h>
#include <unicode/uloc.h>
#include <unicode/ures.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "platform/locale_source.h"

namespace crvlib::platform {
namespace {

using internal::LocaleSettings;

// "de_DE.UTF-8@euro" -> "de-DE"; "", "C" and "POSIX" -> "en-US"; nullopt
// for a name that is no locale tag.
std::optional<std::string> TagOf(std::string_view name) {
  std::string s(name.substr(0, name.find_first_of(".@")));
  if (s.empty() || s == "C" || s == "POSIX") return "en-US";
  for (char& c : s) {
    if (c == '_') c = '-';
  }
  char tag[ULOC_FULLNAME_CAPACITY];
  UErrorCode status = U_ZERO_ERROR;
  uloc_toLanguageTag(s.c_str(), tag, sizeof tag, false, &status);
  if (U_FAILURE(status) || tag[0] == '\0' || std::string_view(tag) == "und") return std::nullopt;
  return tag;
}

std::string ToTag(std::string_view name) {
  return TagOf(name).value_or("en-US");
}

String ToString(const icu::UnicodeString& s) {
  return String(std::u16string_view(s.getBuffer(), static_cast<size_t>(s.length())));
}

// ICU has data for the locale itself or for its language (not just root).
bool IcuKnows(const char* icu_id) {
  UErrorCode status = U_ZERO_ERROR;
  UResourceBundle* rb = ures_open(nullptr, icu_id, &status);
  bool known = U_SUCCESS(status) && status != U_USING_DEFAULT_WARNING;
  ures_close(rb);
  return known;
}

// Rewrites a CLDR date/time pattern into Windows picture letters.
String ToWindowsPicture(const icu::UnicodeString& icu_pattern, bool widen_year) {
  std::u16string_view p(icu_pattern.getBuffer(), static_cast<size_t>(icu_pattern.length()));
  std::u16string out;
  size_t i = 0;
  while (i < p.size()) {
    char16_t c = p[i];
    if (c == u'\'') {
      // Quoted text keeps its quotes: Windows pictures quote the same way.
      size_t j = i + 1;
      while (j < p.size()) {
        if (p[j] == u'\'') {
          if (j + 1 < p.size() && p[j + 1] == u'\'') {
            j += 2;
            continue;
          }
          break;
        }
        ++j;
      }
      out.append(p.substr(i, j + 1 - i));
      i = j + 1;
      continue;
    }
    if (!((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'))) {
      out.push_back(c == u'\u202F' || c == u'\u00A0' ? u' ' : c);
      ++i;
      continue;
    }
    size_t n = 1;
    while (i + n < p.size() && p[i + n] == c) ++n;
    i += n;
    auto put = [&](char16_t letter, size_t count) { out.append(count, letter); };
    switch (c) {
      case u'y':
      case u'u':
      case u'Y':
        put(u'y', n == 2 && !widen_year ? 2 : 4);
        break;
      case u'M':
      case u'L':
        put(u'M', n > 4 ? 4 : n);
        break;
      case u'd':
        put(u'd', n > 2 ? 2 : n);
        break;
      case u'E':
      case u'c':
      case u'e':
        put(u'd', n >= 4 ? 4 : 3);
        break;
      case u'h':
      case u'K':
        put(u'h', n >= 2 ? 2 : 1);
        break;
      case u'H':
      case u'k':
        put(u'H', n >= 2 ? 2 : 1);
        break;
      case u'm':
        put(u'm', n >= 2 ? 2 : 1);
        break;
      case u's':
        put(u's', n >= 2 ? 2 : 1);
        break;
      case u'a':
      case u'b':
      case u'B':
        put(u't', 2);
        break;
      default:
        // Eras, time zones and the like have no place in these settings.
        break;
    }
  }
  // A dropped field may leave a separator hanging at either end.
  while (!out.empty() && out.back() == u' ') out.pop_back();
  return String(std::move(out));
}

String PatternOf(icu::DateFormat* format, bool widen_year) {
  auto* simple = dynamic_cast<icu::SimpleDateFormat*>(format);
  if (!simple) return String();
  icu::UnicodeString pattern;
  simple->toPattern(pattern);
  return ToWindowsPicture(pattern, widen_year);
}

// The first character between two fields of a picture: "dd.MM.yyyy" -> ".".
std::optional<String> SeparatorOf(const String& picture, std::u16string_view field_letters) {
  std::u16string_view p = picture.view();
  size_t start = p.find_first_of(field_letters);
  if (start == std::u16string_view::npos) return std::nullopt;
  size_t end = p.find_first_not_of(p[start], start);
  if (end == std::u16string_view::npos) return std::nullopt;
  size_t next = p.find_first_of(u"dMyhHms", end);
  if (next == end || next == std::u16string_view::npos) return std::nullopt;
  std::u16string_view sep = p.substr(end, next - end);
  if (sep.front() == u'\'') return std::nullopt;
  return String(sep);
}

// Windows' LOCALE_ICURRENCY and LOCALE_INEGCURR from a CLDR currency pattern
// ("¤#,##0.00" symbol first, "#,##0.00 ¤" symbol last with a space).
void CurrencyLayout(const icu::UnicodeString& pattern, LocaleSettings& s) {
  std::u16string_view p(pattern.getBuffer(), static_cast<size_t>(pattern.length()));
  p = p.substr(0, p.find(u';'));
  size_t symbol = p.find(u'\u00A4');
  if (symbol == std::u16string_view::npos) return;
  size_t digit = p.find_first_of(u"#0");
  bool before = digit == std::u16string_view::npos || symbol < digit;
  bool spaced = false;
  if (before && symbol + 1 < p.size()) {
    char16_t c = p[symbol + 1];
    spaced = c == u' ' || c == u'\u00A0' || c == u'\u202F';
  } else if (!before && symbol > 0) {
    char16_t c = p[symbol - 1];
    spaced = c == u' ' || c == u'\u00A0' || c == u'\u202F';
  }
  s.currency_positive = before ? (spaced ? 2 : 0) : (spaced ? 3 : 1);
  // CLDR's standard currency pattern has no negative form of its own: the
  // minus goes in front, as Windows' "-$1.1" (1), "-$ 1.1" (9), "-1.1$" (5)
  // and "-1.1 $" (8).
  s.currency_negative = before ? (spaced ? 9 : 1) : (spaced ? 8 : 5);
}

void LoadFromIcu(const char* icu_id, LocaleData& data) {
  LocaleSettings& s = data.settings;
  icu::Locale loc(icu_id);
  UErrorCode status = U_ZERO_ERROR;

  icu::DecimalFormatSymbols symbols(loc, status);
  if (U_SUCCESS(status)) {
    using Sym = icu::DecimalFormatSymbols;
    data.items[kThousandItem] = ToString(symbols.getSymbol(Sym::kGroupingSeparatorSymbol));
    data.items[kDecimalItem] = ToString(symbols.getSymbol(Sym::kDecimalSeparatorSymbol));
    data.items[kCurrencyItem] = ToString(symbols.getSymbol(Sym::kCurrencySymbol));
    s.monetary_thousands_separator =
        ToString(symbols.getSymbol(Sym::kMonetaryGroupingSeparatorSymbol));
    s.monetary_decimal_separator = ToString(symbols.getSymbol(Sym::kMonetarySeparatorSymbol));
  }
  status = U_ZERO_ERROR;
  std::unique_ptr<icu::NumberFormat> currency(
      icu::NumberFormat::createCurrencyInstance(loc, status));
  if (U_SUCCESS(status) && currency) {
    s.currency_digits = currency->getMaximumFractionDigits();
    if (auto* decimal = dynamic_cast<icu::DecimalFormat*>(currency.get())) {
      icu::UnicodeString pattern;
      decimal->toPattern(pattern);
      CurrencyLayout(pattern, s);
    }
  }

  std::unique_ptr<icu::DateFormat> short_date(
      icu::DateFormat::createDateInstance(icu::DateFormat::kShort, loc));
  std::unique_ptr<icu::DateFormat> full_date(
      icu::DateFormat::createDateInstance(icu::DateFormat::kFull, loc));
  std::unique_ptr<icu::DateFormat> time(
      icu::DateFormat::createTimeInstance(icu::DateFormat::kMedium, loc));
  if (short_date) {
    String picture = PatternOf(short_date.get(), true);
    if (!picture.empty()) {
      data.short_date_formats.push_back(picture);
      data.items[kDateItem] = SeparatorOf(picture, u"dMy");
    }
  }
  if (full_date) {
    String picture = PatternOf(full_date.get(), false);
    if (!picture.empty()) s.long_date_pattern = picture;
  }
  if (time) {
    String picture = PatternOf(time.get(), false);
    if (!picture.empty()) {
      s.time_pattern = picture;
      data.items[kTimeItem] = SeparatorOf(picture, u"hH");
    }
  }

  status = U_ZERO_ERROR;
  icu::DateFormatSymbols names(loc, status);
  if (U_SUCCESS(status)) {
    using Dfs = icu::DateFormatSymbols;
    int32_t n = 0;
    const icu::UnicodeString* v = names.getMonths(n, Dfs::FORMAT, Dfs::WIDE);
    for (int32_t i = 0; i < 12 && i < n; ++i) s.month_names[i] = ToString(v[i]);
    v = names.getMonths(n, Dfs::STANDALONE, Dfs::ABBREVIATED);
    for (int32_t i = 0; i < 12 && i < n; ++i) s.month_abbreviations[i] = ToString(v[i]);
    // ICU's weekday arrays are indexed from 1 (Sunday).
    v = names.getWeekdays(n, Dfs::FORMAT, Dfs::WIDE);
    for (int32_t i = 0; i < 7 && i + 1 < n; ++i) s.day_names[i] = ToString(v[i + 1]);
    v = names.getWeekdays(n, Dfs::STANDALONE, Dfs::ABBREVIATED);
    for (int32_t i = 0; i < 7 && i + 1 < n; ++i) s.day_abbreviations[i] = ToString(v[i + 1]);
    v = names.getAmPmStrings(n);
    if (n >= 2) {
      data.items[kAmItem] = ToString(v[0]);
      data.items[kPmItem] = ToString(v[1]);
    }
  }
}

// The ICU id of `tag` when ICU has data for it or its language.
std::optional<std::string> IcuIdOf(const std::string& tag) {
  char icu_id[ULOC_FULLNAME_CAPACITY];
  UErrorCode status = U_ZERO_ERROR;
  uloc_forLanguageTag(tag.c_str(), icu_id, sizeof icu_id, nullptr, &status);
  if (U_FAILURE(status) || !IcuKnows(icu_id)) return std::nullopt;
  return icu_id;
}

}  // namespace

std::string UserLocaleName() {
  for (const char* var : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* v = std::getenv(var);
    if (v && *v) return ToTag(v);
  }
  return "en-US";
}

bool IsKnownLocale(std::string_view locale_name) {
  std::optional<std::string> tag = TagOf(locale_name);
  return tag && (*tag == "en-US" || IcuIdOf(*tag));
}

LocaleData LoadLocaleData(std::string_view locale_name) {
  LocaleData data;
  LocaleSettings& s = data.settings;
  s.name = ToTag(locale_name);
  std::optional<std::string> icu_id = s.name == "en-US" ? std::nullopt : IcuIdOf(s.name);
  if (!icu_id) {
    s.name = "en-US";
    data.items = {s.thousands_separator, s.decimal_separator, s.currency_symbol, s.date_separator,
                  s.time_separator,      s.am_designator,     s.pm_designator};
    data.short_date_formats = s.short_date_patterns;
    return data;
  }
  uint32_t lcid = uloc_getLCID(icu_id->c_str());
  s.lcid = lcid ? static_cast<int32_t>(lcid) : 1033;
  LoadFromIcu(icu_id->c_str(), data);
  return data;
}

bool IsNtFamily() {
  return true;
}

}  // namespace crvlib::platform
