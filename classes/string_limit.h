// The automation string limit in characters, and the checks that raise 14
// (Out of string space) before a result would pass it — before anything is
// allocated, so a huge length fails at once instead of exhausting memory.
#ifndef CRVLIB_CLASSES_STRING_LIMIT_H_
#define CRVLIB_CLASSES_STRING_LIMIT_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "core/error_frame.h"
#include "crvlib/string.h"

namespace crvlib::internal {

inline constexpr int64_t kMaxChars = String::kMaxBytes / 2;

// Raises 14 when a string of `chars` characters would pass the limit.
inline void CheckLength(int64_t chars) {
  if (chars > kMaxChars) Raise(kOutOfStringSpace);
}

// Appends `piece`, raising 14 first when the text would pass the limit.
inline void AppendChecked(std::u16string& text, std::u16string_view piece) {
  CheckLength(static_cast<int64_t>(text.size()) + static_cast<int64_t>(piece.size()));
  text.append(piece);
}

}  // namespace crvlib::internal

#endif  // CRVLIB_CLASSES_STRING_LIMIT_H_
