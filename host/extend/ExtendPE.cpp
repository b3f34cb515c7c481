#include "ExtendPE.h"

#include "OdError.h"

// Releasing an OdSmartPtr<OdDbHatch>, even a null one, needs the class's relation to OdRxObject.
#if __has_include("DbHatch.h")
#include "DbHatch.h"
#else
// Until the platform's hatch entity is part of the build, the base operations (which only hand
// back null) see it as what every hatch is at least: a run-time object.
class OdDbHatch : public OdRxObject {};
#endif

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
