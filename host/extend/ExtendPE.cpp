#include "ExtendPE.h"

#include "DbHatch.h"
#include "OdError.h"

ODRX_NO_CONS_DEFINE_MEMBERS(ExtendPE, OdRxObject)

OdSmartPtr<OdDbHatch> ExtendPE::FillColor(const OdSmartPtr<OdDbEntity>& /*shape*/,
                                          const OdCmColor& /*color*/) {
  return nullptr;
}

OdSmartPtr<OdDbHatch> ExtendPE::FillPattern(const OdSmartPtr<OdDbEntity>& /*shape*/,
                                            const OdString& /*patternName*/,
                                            double /*patternScale*/, double /*patternAngle*/,
                                            double& /*result*/) {
  return nullptr;
}
