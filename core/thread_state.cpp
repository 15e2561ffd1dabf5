// The start-up routine: runs once in each thread before the library is first
// used there, and again when the thread pins another locale.
#include "core/thread_state.h"

#include "platform/locale_source.h"

namespace crvlib::internal {
namespace {

DateOrder OrderOf(const std::vector<String>& short_date_patterns) {
  // The first pattern decides by its first letter: "M" month first, "D" day
  // first, anything else year first. No pattern leaves month first.
  if (short_date_patterns.empty() || short_date_patterns.front().empty()) {
    return DateOrder::kMonthDayYear;
  }
  char16_t c = short_date_patterns.front()[0];
  if (c == u'M' || c == u'm') return DateOrder::kMonthDayYear;
  if (c == u'D' || c == u'd') return DateOrder::kDayMonthYear;
  return DateOrder::kYearMonthDay;
}

void Load(ThreadState& state, std::string_view locale_name) {
  state.locale = platform::LoadLocaleSettings(locale_name);
  state.locale.date_order = OrderOf(state.locale.short_date_patterns);
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
