// The start-up routine: runs once in each thread before the library is first
// used there, and again when the thread pins another locale.
//
// Locale start-up:
//   1. Read the seven settings (separators, currency symbol, designators);
//      a setting the locale source cannot answer takes its fallback.
//   2. Collect the locale's non-empty short-date formats, in its order.
//   3. The first format's first character, upper-cased, gives the date
//      order: "M" month first, "D" day first, anything else year first. No
//      format at all leaves month first. Only the first format is looked at,
//      even when a later one would say otherwise.
#include "core/thread_state.h"

#include "platform/locale_source.h"

namespace crvlib::internal {
namespace {

// A locale item's text, cut at its first NUL, or the fallback when the
// locale source has none.
String LocaleString(const platform::LocaleData& data, platform::LocaleItem item,
                    std::u16string_view fallback) {
  const std::optional<String>& text = data.items[item];
  if (!text) return String(fallback);
  std::u16string_view v = text->view();
  return String(v.substr(0, v.find(u'\0')));
}

DateOrder OrderOf(const std::vector<String>& short_date_formats) {
  if (short_date_formats.empty()) return DateOrder::kMonthDayYear;
  char16_t c = short_date_formats.front()[0];
  if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - 32);
  if (c == u'M') return DateOrder::kMonthDayYear;
  if (c == u'D') return DateOrder::kDayMonthYear;
  return DateOrder::kYearMonthDay;
}

void Load(ThreadState& state, std::string_view locale_name) {
  platform::LocaleData data = platform::LoadLocaleData(locale_name);
  LocaleSettings& s = data.settings;
  s.thousands_separator = LocaleString(data, platform::kThousandItem, u",");
  s.decimal_separator = LocaleString(data, platform::kDecimalItem, u".");
  s.currency_symbol = LocaleString(data, platform::kCurrencyItem, u"$");
  s.date_separator = LocaleString(data, platform::kDateItem, u"/");
  s.time_separator = LocaleString(data, platform::kTimeItem, u":");
  s.am_designator = LocaleString(data, platform::kAmItem, u"AM");
  s.pm_designator = LocaleString(data, platform::kPmItem, u"PM");

  s.short_date_patterns.clear();
  for (String& f : data.short_date_formats) {
    if (!f.empty()) s.short_date_patterns.push_back(std::move(f));
  }
  s.date_order = OrderOf(s.short_date_patterns);
  if (s.short_date_patterns.empty()) s.short_date_patterns.push_back(String(u"M/d/yyyy"));

  state.locale = std::move(s);
  state.catalogue = MakeBuiltinCatalogue();
  state.catalogue->SetLocale(state.locale.lcid);
  state.is_nt = platform::IsNtFamily();
  state.ClearSlots();
}

ThreadState* Create() {
  thread_local ThreadState state;
  Load(state, platform::UserLocaleName());
  return &state;
}

}  // namespace

ThreadState& State() {
  thread_local ThreadState* state = Create();
  return *state;
}

void PinThreadLocale(std::string_view locale_name) {
  Load(State(), locale_name);
}

}  // namespace crvlib::internal
