// The Constants class: the delimiter marks, read-only String properties.
#include "crvlib/constants.h"
#include "typelib/surface.h"

namespace crvlib::typelib {

ClassInfo ConstantsClass() {
  return GlobalClass(
      "Constants",
      {.clsid = "789571D6-8D97-4352-AE7F-D430DBDA570B",
       .iid = "8F45AF67-55DC-4DA8-9F82-94CE92679750"},
      "Delimiter marks of dynamic string arrays.",
      {
          CRV_PROPERTY_GET(Constants, vxRM,
                           "Record mark delimiter for dynamic string arrays.\r\nvxRM = Chr$(255)"),
          CRV_PROPERTY_GET(
              Constants, vxAM,
              "Attribute or Field  mark delimiter for dynamic string arrays.\r\nvxAM = Chr$(254)"),
          CRV_PROPERTY_GET(Constants, vxVM,
                           "Value mark delimiter for dynamic string arrays.\r\nvxVM = Chr$(253)"),
          CRV_PROPERTY_GET(
              Constants, vxSVM,
              "SubValue mark delimiter for dynamic string arrays.\r\nvxSVM = Chr$(252)"),
          CRV_PROPERTY_GET(Constants, vxTM,
                           "Text mark delimiter for dynamic string arrays.\r\nvxTM = Chr$(251)"),
          CRV_PROPERTY_GET(Constants, vxEM,
                           "Element mark delimiter for dynamic string arrays.\r\nvxEM = Chr$(250)"),
          CRV_PROPERTY_GET(
              Constants, vxVBAR,
              "Vertical Bar delimiter for dynamic string arrays.\r\nvxVBAR = Chr$(124)"),
      });
}

}  // namespace crvlib::typelib
