// Fuzzes crv's batch protocol: every input is a few request lines answered by
// one session, and every answer must be one line of valid JSON. Routines that
// wait (Pause), that may never return by design (Swap with equal codes), that
// touch files, shared memory or the home folder are left out, and so are
// numbers of more than six digits, which would let a routine legitimately
// build strings of gigabytes.
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "cli/batch.h"
#include "cli/json.h"

namespace {

bool Excluded(std::string_view line) {
  std::string lower(line);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  for (std::string_view word : {"pause", "swap", "textfile", "sharedstring", "documents"}) {
    if (lower.find(word) != std::string::npos) return true;
  }
  int digits = 0;
  for (char c : line) {
    digits = std::isdigit(static_cast<unsigned char>(c)) ? digits + 1 : 0;
    if (digits > 6) return true;
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 4096) return 0;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  crvlib::cli::BatchSession session(crvlib::cli::ShippedSurface());
  size_t start = 0;
  while (start <= input.size()) {
    size_t end = input.find('\n', start);
    if (end == std::string_view::npos) end = input.size();
    const std::string_view line = input.substr(start, end - start);
    if (!line.empty() && !Excluded(line)) {
      const std::string answer = session.Answer(line);
      if (answer.find('\n') != std::string::npos || !crvlib::cli::ParseJson(answer, nullptr).has_value()) {
        std::abort();
      }
    }
    start = end + 1;
  }
  return 0;
}
