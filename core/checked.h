// 32-bit signed arithmetic with overflow checking, as the automation runtime
// does it: a result outside the Long range raises error 6 (Overflow).
#ifndef CRVLIB_CORE_CHECKED_H_
#define CRVLIB_CORE_CHECKED_H_

#include <cstdint>

#include "core/error_frame.h"

namespace crvlib::internal {

inline int32_t CheckedAdd(int32_t a, int32_t b) {
  int32_t r;
  if (__builtin_add_overflow(a, b, &r)) Raise(kOverflow);
  return r;
}

inline int32_t CheckedSub(int32_t a, int32_t b) {
  int32_t r;
  if (__builtin_sub_overflow(a, b, &r)) Raise(kOverflow);
  return r;
}

inline int32_t CheckedMul(int32_t a, int32_t b) {
  int32_t r;
  if (__builtin_mul_overflow(a, b, &r)) Raise(kOverflow);
  return r;
}

// Narrows a wider integer to a Long, raising error 6 when it does not fit.
inline int32_t CheckedLong(int64_t v) {
  if (v < INT32_MIN || v > INT32_MAX) Raise(kOverflow);
  return static_cast<int32_t>(v);
}

}  // namespace crvlib::internal

#endif  // CRVLIB_CORE_CHECKED_H_
