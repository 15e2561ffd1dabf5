// The timer reads the wall clock and splits off the local time of day, so
// it follows the local zone (a change to or from summer time moves it by an
// hour, as the timer of the system the library was written for does).
#include "platform/clock.h"

#include <sched.h>

#include <ctime>

namespace crvlib::platform {

float SecondsSinceMidnight() {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  std::tm local{};
  ::localtime_r(&now.tv_sec, &local);
  double seconds = local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec;
  return static_cast<float>(seconds + now.tv_nsec / 1e9);
}

void YieldProcessor() {
  ::sched_yield();
}

}  // namespace crvlib::platform
