// Val: the leading number of a text, as the runtime reads it regardless of
// the locale. Blanks, tabs and line feeds are ignored wherever they stand;
// the longest prefix that forms a decimal number is taken, with "." as the
// only decimal point and an exponent written with E or D; "&H" and "&O"
// read hexadecimal and octal; a text with no number gives 0.
//
// A hexadecimal or octal literal is an Integer when its value fits 16 bits
// and a Long otherwise, both read as two's complement, unless a trailing "&"
// makes it a Long:
//   Val(u" 2 45 7") == 2457           Val(u"24 and 57") == 24
//   Val(u"1615 198th Street N.E.") == 1615198
//   Val(u"&HFFFF") == -1              Val(u"&HFFFF&") == 65535
//   Val(u"&O17") == 15                Val(u"1.5D2") == 150      Val(u"$5") == 0
#ifndef CRVLIB_RUNTIME_VAL_H_
#define CRVLIB_RUNTIME_VAL_H_

#include <string_view>

#include "runtime/number_parse.h"

namespace crvlib::internal {

// Never fails. A number beyond the Double range gives the largest Double of
// its sign; a hexadecimal or octal literal beyond 32 bits gives 0.
double Val(std::u16string_view text);

// The same, telling kOverflow apart (where the runtime raises error 6);
// `*out` is set either way.
ParseStatus TryVal(std::u16string_view text, double* out);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_VAL_H_
