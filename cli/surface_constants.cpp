// The Constants class: the delimiter marks, read-only String properties.
#include "cli/surface.h"
#include "crvlib/constants.h"

namespace crvlib::cli {

ClassInfo ConstantsClass() {
  return GlobalClass(
      "Constants", "Delimiter marks of dynamic string arrays.",
      {
          PropertyGet<&Constants::vxRM>(
              "vxRM", "Record mark delimiter for dynamic string arrays.\r\nvxRM = Chr$(255)"),
          PropertyGet<&Constants::vxAM>(
              "vxAM",
              "Attribute or Field  mark delimiter for dynamic string arrays.\r\nvxAM = Chr$(254)"),
          PropertyGet<&Constants::vxVM>(
              "vxVM", "Value mark delimiter for dynamic string arrays.\r\nvxVM = Chr$(253)"),
          PropertyGet<&Constants::vxSVM>(
              "vxSVM", "SubValue mark delimiter for dynamic string arrays.\r\nvxSVM = Chr$(252)"),
          PropertyGet<&Constants::vxTM>(
              "vxTM", "Text mark delimiter for dynamic string arrays.\r\nvxTM = Chr$(251)"),
          PropertyGet<&Constants::vxEM>(
              "vxEM", "Element mark delimiter for dynamic string arrays.\r\nvxEM = Chr$(250)"),
          PropertyGet<&Constants::vxVBAR>(
              "vxVBAR", "Vertical Bar delimiter for dynamic string arrays.\r\nvxVBAR = Chr$(124)"),
      });
}

}  // namespace crvlib::cli
