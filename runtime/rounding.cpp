// std::nearbyint rounds in the current rounding mode, which the library never
// changes from round-to-nearest-even: exactly the runtime's rule. A NaN or an
// infinity cannot be represented in any target and is an overflow.
#include "runtime/rounding.h"

#include <cmath>

#include "core/error_frame.h"

namespace crvlib::internal {

double RoundHalfEven(double v) {
  return std::nearbyint(v);
}

ParseStatus TryDoubleToLong(double v, int32_t* out) {
  double r = std::nearbyint(v);
  if (!(r >= -2147483648.0 && r <= 2147483647.0)) return ParseStatus::kOverflow;
  *out = static_cast<int32_t>(r);
  return ParseStatus::kOk;
}

ParseStatus TryDoubleToInteger(double v, int16_t* out) {
  double r = std::nearbyint(v);
  if (!(r >= -32768.0 && r <= 32767.0)) return ParseStatus::kOverflow;
  *out = static_cast<int16_t>(r);
  return ParseStatus::kOk;
}

ParseStatus TryDoubleToCurrency(double v, Currency* out) {
  double r = std::nearbyint(v * static_cast<double>(Currency::kScale));
  // 2^63 is the first Double past the range; -2^63 itself fits.
  if (!(r >= -9223372036854775808.0 && r < 9223372036854775808.0)) return ParseStatus::kOverflow;
  *out = Currency{static_cast<int64_t>(r)};
  return ParseStatus::kOk;
}

int32_t DoubleToLong(double v) {
  int32_t r = 0;
  if (TryDoubleToLong(v, &r) != ParseStatus::kOk) Raise(kOverflow);
  return r;
}

int16_t DoubleToInteger(double v) {
  int16_t r = 0;
  if (TryDoubleToInteger(v, &r) != ParseStatus::kOk) Raise(kOverflow);
  return r;
}

Currency DoubleToCurrency(double v) {
  Currency r;
  if (TryDoubleToCurrency(v, &r) != ParseStatus::kOk) Raise(kOverflow);
  return r;
}

}  // namespace crvlib::internal
