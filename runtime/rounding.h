// The runtime's rounding of Doubles to whole numbers and to Currency: half to
// even ("banker's rounding"), with error 6 when the result does not fit.
//
//   RoundHalfEven(2.5) == 2        RoundHalfEven(3.5) == 4      RoundHalfEven(-2.5) == -2
//   DoubleToLong(2147483647.5) raises 6       DoubleToInteger(-32768.5) == -32768
//   DoubleToCurrency(1.23455).scaled == 12346  (the product 12345.5 rounds to even)
#ifndef CRVLIB_RUNTIME_ROUNDING_H_
#define CRVLIB_RUNTIME_ROUNDING_H_

#include <cstdint>

#include "crvlib/variant.h"
#include "runtime/number_parse.h"

namespace crvlib::internal {

// The nearest whole number, ties to the even one.
double RoundHalfEven(double v);

// CLng, CInt and CCur of a Double. The Currency conversion rounds
// v * 10000 half to even, in Double arithmetic as the runtime does.
ParseStatus TryDoubleToLong(double v, int32_t* out);
ParseStatus TryDoubleToInteger(double v, int16_t* out);
ParseStatus TryDoubleToCurrency(double v, Currency* out);

// Raising forms: error 6 on overflow.
int32_t DoubleToLong(double v);
int16_t DoubleToInteger(double v);
Currency DoubleToCurrency(double v);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_ROUNDING_H_
