#include "DbCurve.h"

ODRX_NO_CONS_DEFINE_MEMBERS(OdDbCurve, OdDbEntity)

OdDbCurve::OdDbCurve() = default;

bool OdDbCurve::isClosed() const {
  OdGePoint3d start;
  OdGePoint3d end;
  if (getStartPoint(start) != eOk || getEndPoint(end) != eOk)
    return false;
  return start.isEqualTo(end);
}

bool OdDbCurve::isPeriodic() const {
  return false;
}

OdResult OdDbCurve::getStartParam(double& /*startParam*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getEndParam(double& /*endParam*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getStartPoint(OdGePoint3d& startPoint) const {
  double param = 0.0;
  const OdResult res = getStartParam(param);
  if (res != eOk)
    return res;
  return getPointAtParam(param, startPoint);
}

OdResult OdDbCurve::getEndPoint(OdGePoint3d& endPoint) const {
  double param = 0.0;
  const OdResult res = getEndParam(param);
  if (res != eOk)
    return res;
  return getPointAtParam(param, endPoint);
}

OdResult OdDbCurve::getPointAtParam(double /*param*/, OdGePoint3d& /*pointOnCurve*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getParamAtPoint(const OdGePoint3d& /*pointOnCurve*/, double& /*param*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getDistAtParam(double /*param*/, double& /*dist*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getParamAtDist(double /*dist*/, double& /*param*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getDistAtPoint(const OdGePoint3d& pointOnCurve, double& dist) const {
  double param = 0.0;
  const OdResult res = getParamAtPoint(pointOnCurve, param);
  if (res != eOk)
    return res;
  return getDistAtParam(param, dist);
}

OdResult OdDbCurve::getClosestPointTo(const OdGePoint3d& /*givenPoint*/,
                                      OdGePoint3d& /*pointOnCurve*/, bool /*extend*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getArea(double& /*area*/) const {
  return eNotImplemented;
}
