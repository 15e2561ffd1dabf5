// The runtime timer and the processor yield that Pause is built from.
//
//   float t = SecondsSinceMidnight();   // 45296.5f at 12:34:56.5 local time
//   YieldProcessor();                   // lets other threads run, then returns
#ifndef CRVLIB_PLATFORM_CLOCK_H_
#define CRVLIB_PLATFORM_CLOCK_H_

namespace crvlib::platform {

// Seconds since local midnight, with fractions, in single precision: the
// runtime's Timer. It starts again at 0 at midnight.
float SecondsSinceMidnight();

// Gives up the rest of the calling thread's time slice. This is the whole
// of a round of message processing where there is no message loop.
void YieldProcessor();

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_CLOCK_H_
