#include "DbFiler.h"

#include "OdError.h"

ODRX_NO_CONS_DEFINE_MEMBERS(OdDbFiler, OdRxObject)
ODRX_NO_CONS_DEFINE_MEMBERS(OdDbDwgFiler, OdDbFiler)
ODRX_NO_CONS_DEFINE_MEMBERS(OdDbDxfFiler, OdDbFiler)

OdResult OdDbFiler::filerStatus() const {
  return eOk;
}

void OdDbFiler::resetFilerStatus() {}

int OdDbFiler::dwgVersion(int* maintVer) const {
  if (maintVer)
    *maintVer = 0;
  return kCurrentDwgVersion;
}

void OdDbDxfFiler::wrAngle(int groupCode, double radians, int precision) {
  constexpr double kDegreesPerRadian = 57.29577951308232;
  wrDouble(groupCode, radians * kDegreesPerRadian, precision);
}
