// The per-thread start-up state: the message catalogue, the locale settings
// and the platform flag, created once in each thread before its first use.
// Nothing else in the library is global and mutable; per-thread caches that
// the library keeps (compiled patterns, collators) hang off this state as
// slots and go away with it.
//
//   State().locale.currency_symbol           // "$" in en-US
//   State().Slot<CollatorCache>()            // created on first use
//   PinThreadLocale("de-DE")                 // reload for another locale
#ifndef CRVLIB_CORE_THREAD_STATE_H_
#define CRVLIB_CORE_THREAD_STATE_H_

#include <memory>
#include <string_view>
#include <typeinfo>
#include <utility>
#include <vector>

#include "core/locale_settings.h"
#include "core/message_catalogue.h"

namespace crvlib::internal {

class ThreadState {
 public:
  std::unique_ptr<MessageCatalogue> catalogue;
  LocaleSettings locale;
  // True where the platform's wide-character letter tests apply (the NT
  // family on Windows; always on Linux).
  bool is_nt = true;

  // A per-thread object of type T, default-constructed on first use and
  // dropped when the thread's locale changes.
  template <class T>
  T& Slot() {
    for (auto& s : slots_) {
      if (s.type == &typeid(T)) return *static_cast<T*>(s.object.get());
    }
    slots_.push_back({&typeid(T), std::shared_ptr<void>(std::make_shared<T>())});
    return *static_cast<T*>(slots_.back().object.get());
  }

  void ClearSlots() { slots_.clear(); }

 private:
  struct SlotEntry {
    const std::type_info* type;
    std::shared_ptr<void> object;
  };
  std::vector<SlotEntry> slots_;
};

// The calling thread's state; the start-up routine runs on the first call.
ThreadState& State();

// Loads the settings of `locale_name` (a BCP 47 tag or a POSIX locale name)
// for the calling thread and hands the catalogue its identifier.
void PinThreadLocale(std::string_view locale_name);

}  // namespace crvlib::internal

#endif  // CRVLIB_CORE_THREAD_STATE_H_
