// The timer reads the wall clock and splits off the local time of day, so
// it follows the local zone (a change to or from summer time moves it by an
// hour, as the timer of the system the library was written for does).
#include "platform/clock.h"

#include <sched.h>

#include <chrono>
#include <ctime>

namespace crvlib::platform {

float SecondsSinceMidnight() {
  using std::chrono::system_clock;
  const auto now = system_clock::now();
  const std::time_t whole = system_clock::to_time_t(now);
  const auto fraction = now - system_clock::from_time_t(whole);
  std::tm local{};
  ::localtime_r(&whole, &local);
  double seconds = local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec;
  return static_cast<float>(seconds + std::chrono::duration<double>(fraction).count());
}

void YieldProcessor() {
  ::sched_yield();
}

}  // namespace crvlib::platform
