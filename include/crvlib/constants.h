// Constants: the delimiter marks of dynamic string arrays, each a one-
// character string made from its code through the code page (Chr$).
//
//   Constants::vxRM() == u"\u00FF"
//   Constants::vxVBAR() == u"|"
#ifndef CRVLIB_CONSTANTS_H_
#define CRVLIB_CONSTANTS_H_

#include "crvlib/export.h"
#include "crvlib/string.h"

namespace crvlib {

class CRVLIB_EXPORT Constants {
 public:
  static String vxRM();    // record mark, Chr$(255)
  static String vxAM();    // attribute (field) mark, Chr$(254)
  static String vxVM();    // value mark, Chr$(253)
  static String vxSVM();   // sub-value mark, Chr$(252)
  static String vxTM();    // text mark, Chr$(251)
  static String vxEM();    // element mark, Chr$(250)
  static String vxVBAR();  // vertical bar, Chr$(124)
};

}  // namespace crvlib

#endif  // CRVLIB_CONSTANTS_H_
