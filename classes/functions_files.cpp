// Text files and Pause. Files are read and written whole, the bytes passing
// through the fixed single-byte code page; file names are taken as UTF-8
// paths. Pause is a busy wait on the seconds-since-midnight timer in which
// each round yields the processor, the stand-in for processing the host's
// window messages where there is no message loop.
#include <string>

#include "core/error_frame.h"
#include "crvlib/functions.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "runtime/code_page.h"

namespace crvlib {

String Functions::OpenTextFile(const String& FileName) {
  return internal::Trap(u"CRVLIB.Functions::OpenTextFile", [&] {
    // One byte becomes one character: the content may take up to the
    // automation string limit in characters.
    std::string bytes = platform::ReadWholeFile(FileName.ToUtf8(), String::kMaxBytes / 2);
    return String(internal::FromAnsi(bytes));
  });
}

void Functions::SaveTextFile(const String& FileName, const String& Text) {
  internal::Trap(u"CRVLIB.Functions::SaveTextFile", [&] {
    std::string bytes = internal::ToAnsi(Text.view());
    bytes += "\r\n";
    platform::WriteWholeFile(FileName.ToUtf8(), bytes);
  });
}

void Functions::Pause(int32_t TimePeriod) {
  internal::Trap(u"CRVLIB.Functions::Pause", [&] {
    // Timer and end time are single precision, as the runtime's timer is, so
    // the resolution near the end of the day is 1/128 s. The timer restarts
    // at 0 at midnight: a wait whose end falls at or after midnight never
    // ends. That is the routine's long-standing behaviour and is kept.
    const float start = platform::SecondsSinceMidnight();
    const float end = static_cast<float>(static_cast<double>(start) + TimePeriod / 1000.0);
    do {
      platform::YieldProcessor();
    } while (platform::SecondsSinceMidnight() < end);
  });
}

}  // namespace crvlib
