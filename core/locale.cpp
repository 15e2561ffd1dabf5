// Public access to the thread's locale.
#include "crvlib/locale.h"

#include "core/thread_state.h"
#include "platform/locale_source.h"

namespace crvlib {

void SetThreadLocale(std::string_view name) {
  internal::PinThreadLocale(name);
}

bool IsKnownLocale(std::string_view name) {
  return platform::IsKnownLocale(name);
}

std::string ThreadLocale() {
  return internal::State().locale.name;
}

}  // namespace crvlib
