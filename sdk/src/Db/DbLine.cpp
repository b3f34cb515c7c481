#include "DbLine.h"
#include "DxfFile/DbDxfGroups.h"
#include "Ge/GeFinite.h"

#include "DbFiler.h"
#include "Ge/GeIntersect.h"
#include "Gi/GiWorldDraw.h"

#include <cmath>

ODRX_CONS_DEFINE_MEMBERS(OdDbLine, OdDbCurve, OD_T("LINE"))

namespace {

/// Checks the indices before anything moves, so a bad index leaves the line untouched.
bool allIndicesBelow(const OdIntArray& indices, int count) {
  for (int index : indices) {
    if (index < 0 || index >= count)
      return false;
  }
  return true;
}

} // namespace

OdDbLine::OdDbLine() = default;

OdGePoint3d OdDbLine::startPoint() const {
  assertReadEnabled();
  return m_start;
}

void OdDbLine::setStartPoint(const OdGePoint3d& point) {
  assertWriteEnabled();
  m_start = point;
}

OdGePoint3d OdDbLine::endPoint() const {
  assertReadEnabled();
  return m_end;
}

void OdDbLine::setEndPoint(const OdGePoint3d& point) {
  assertWriteEnabled();
  m_end = point;
}

double OdDbLine::thickness() const {
  assertReadEnabled();
  return m_thickness;
}

void OdDbLine::setThickness(double thickness) {
  assertWriteEnabled();
  m_thickness = thickness;
}

OdGeVector3d OdDbLine::normal() const {
  assertReadEnabled();
  return m_normal;
}

void OdDbLine::setNormal(const OdGeVector3d& normal) {
  if (normal.isZeroLength() || !odgeIsFinite(normal))
    throw OdError(eInvalidInput, OD_T("A line's normal must be a non-zero vector"));
  assertWriteEnabled();
  m_normal = normal.normal();
}

// Curve queries ------------------------------------------------------------------------------

bool OdDbLine::isClosed() const {
  assertReadEnabled();
  return false;
}

OdResult OdDbLine::getStartParam(double& startParam) const {
  assertReadEnabled();
  startParam = 0.0;
  return eOk;
}

OdResult OdDbLine::getEndParam(double& endParam) const {
  assertReadEnabled();
  endParam = m_start.distanceTo(m_end);
  return eOk;
}

OdResult OdDbLine::getStartPoint(OdGePoint3d& startPoint) const {
  assertReadEnabled();
  startPoint = m_start;
  return eOk;
}

OdResult OdDbLine::getEndPoint(OdGePoint3d& endPoint) const {
  assertReadEnabled();
  endPoint = m_end;
  return eOk;
}

OdResult OdDbLine::getPointAtParam(double param, OdGePoint3d& pointOnCurve) const {
  assertReadEnabled();
  const double length = m_start.distanceTo(m_end);
  const double tol = OdGeContext::gTol.equalPoint();
  if (!std::isfinite(param) || param < -tol || param > length + tol)
    return eInvalidInput;
  if (length <= tol) {
    pointOnCurve = m_start;
    return eOk;
  }
  pointOnCurve = m_start + (m_end - m_start) * (param / length);
  return eOk;
}

OdResult OdDbLine::getParamAtPoint(const OdGePoint3d& pointOnCurve, double& param) const {
  assertReadEnabled();
  double fraction = 0.0;
  const OdGePoint3d foot = odgeClosestPointOnSegment(pointOnCurve, m_start, m_end, &fraction);
  if (!foot.isEqualTo(pointOnCurve))
    return eInvalidInput;
  param = fraction * m_start.distanceTo(m_end);
  return eOk;
}

OdResult OdDbLine::getDistAtParam(double param, double& dist) const {
  assertReadEnabled();
  const double length = m_start.distanceTo(m_end);
  const double tol = OdGeContext::gTol.equalPoint();
  if (!std::isfinite(param) || param < -tol || param > length + tol)
    return eInvalidInput;
  dist = param;
  return eOk;
}

OdResult OdDbLine::getParamAtDist(double dist, double& param) const {
  assertReadEnabled();
  const double length = m_start.distanceTo(m_end);
  const double tol = OdGeContext::gTol.equalPoint();
  if (!std::isfinite(dist) || dist < -tol || dist > length + tol)
    return eInvalidInput;
  param = dist;
  return eOk;
}

OdResult OdDbLine::getClosestPointTo(const OdGePoint3d& givenPoint, OdGePoint3d& pointOnCurve,
                                     bool extend) const {
  assertReadEnabled();
  const OdGeVector3d dir = m_end - m_start;
  if (!extend || dir.isZeroLength()) {
    pointOnCurve = odgeClosestPointOnSegment(givenPoint, m_start, m_end);
    return eOk;
  }
  const double t = (givenPoint - m_start).dotProduct(dir) / dir.lengthSqrd();
  pointOnCurve = m_start + dir * t;
  return eOk;
}

OdResult OdDbLine::getArea(double& area) const {
  assertReadEnabled();
  area = 0.0;
  return eOk;
}

// Filing -------------------------------------------------------------------------------------

void OdDbLine::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbCurve::dwgOutFields(filer);
  filer->wrPoint3d(m_start);
  filer->wrPoint3d(m_end);
  filer->wrDouble(m_thickness);
  filer->wrVector3d(m_normal);
}

OdResult OdDbLine::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbCurve::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdGePoint3d start = filer->rdPoint3d();
  const OdGePoint3d end = filer->rdPoint3d();
  const double thickness = filer->rdDouble();
  const OdGeVector3d normal = filer->rdVector3d();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!odgeIsFinite(start) || !odgeIsFinite(end) || !std::isfinite(thickness) ||
      !odgeIsFinite(normal) || normal.isZeroLength())
    return eInvalidInput;
  m_start = start;
  m_end = end;
  m_thickness = thickness;
  m_normal = normal.normal();
  return eOk;
}

void OdDbLine::dxfOutFields(OdDbDxfFiler* filer) const {
  OdDbCurve::dxfOutFields(filer);
  filer->wrSubclassMarker(OD_T("AcDbLine"));
  if (m_thickness != 0.0 || filer->includesDefaultValues())
    filer->wrDouble(39, m_thickness);
  filer->wrPoint3d(10, m_start);
  filer->wrPoint3d(11, m_end);
  if (m_normal != OdGeVector3d::kZAxis || filer->includesDefaultValues())
    filer->wrVector3d(210, m_normal);
}

OdResult OdDbLine::dxfInFields(OdDbDxfFiler* filer) {
  const OdResult base = OdDbCurve::dxfInFields(filer);
  if (base != eOk)
    return base;
  if (!filer->atSubclassData(OD_T("AcDbLine")))
    return eInvalidDxfCode;
  OdGePoint3d start;
  OdGePoint3d end;
  double thickness = 0.0;
  OdGeVector3d normal(0.0, 0.0, 1.0);
  const OdResult groups = odDbReadDxfSubclassGroups(filer, [&](int code) {
    switch (code) {
    case 10:
      filer->rdPoint3d(start);
      break;
    case 11:
      filer->rdPoint3d(end);
      break;
    case 39:
      thickness = filer->rdDouble();
      break;
    case 210:
      filer->rdVector3d(normal);
      break;
    default:
      break;
    }
  });
  if (groups != eOk)
    return groups;
  if (!odgeIsFinite(start) || !odgeIsFinite(end) || !std::isfinite(thickness) ||
      !odgeIsFinite(normal) || normal.isZeroLength())
    return eInvalidInput;
  m_start = start;
  m_end = end;
  m_thickness = thickness;
  m_normal = normal.normal();
  return eOk;
}

// Drawing and editing ------------------------------------------------------------------------

bool OdDbLine::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  const OdGePoint3d points[2] = {m_start, m_end};
  worldDraw->geometry().polyline(2, points, &m_normal);
  return true;
}

OdResult OdDbLine::subGetGripPoints(OdGePoint3dArray& gripPoints) const {
  assertReadEnabled();
  gripPoints.append(m_start);
  gripPoints.append(m_start + (m_end - m_start) * 0.5);
  gripPoints.append(m_end);
  return eOk;
}

OdResult OdDbLine::subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  if (!allIndicesBelow(indices, 3))
    return eInvalidIndex;
  assertWriteEnabled();
  if (indices.contains(1)) {
    m_start += offset;
    m_end += offset;
    return eOk;
  }
  if (indices.contains(0))
    m_start += offset;
  if (indices.contains(2))
    m_end += offset;
  return eOk;
}

OdResult OdDbLine::subGetStretchPoints(OdGePoint3dArray& stretchPoints) const {
  assertReadEnabled();
  stretchPoints.append(m_start);
  stretchPoints.append(m_end);
  return eOk;
}

OdResult OdDbLine::subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  if (!allIndicesBelow(indices, 2))
    return eInvalidIndex;
  assertWriteEnabled();
  if (indices.contains(0))
    m_start += offset;
  if (indices.contains(1))
    m_end += offset;
  return eOk;
}

OdResult OdDbLine::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker /*gsSelectionMark*/,
                                     const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                                     const OdGeMatrix3d& /*xWorldToEye*/,
                                     OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  switch (osnapMode) {
  case OdDb::kOsModeEnd:
    snapPoints.append(m_start);
    snapPoints.append(m_end);
    break;
  case OdDb::kOsModeMid:
    snapPoints.append(m_start + (m_end - m_start) * 0.5);
    break;
  case OdDb::kOsModeNear:
    snapPoints.append(odgeClosestPointOnSegment(pickPoint, m_start, m_end));
    break;
  case OdDb::kOsModePerp: {
    const OdGeVector3d dir = m_end - m_start;
    if (dir.isZeroLength())
      break;
    const double t = (lastPoint - m_start).dotProduct(dir) / dir.lengthSqrd();
    const double tol = OdGeContext::gTol.equalPoint() / dir.length();
    if (t >= -tol && t <= 1.0 + tol)
      snapPoints.append(m_start + dir * t);
    break;
  }
  default:
    break;
  }
  return eOk;
}

OdResult OdDbLine::subTransformBy(const OdGeMatrix3d& xform) {
  const OdGeVector3d normal = xform * m_normal;
  if (normal.isZeroLength())
    return eInvalidInput;
  assertWriteEnabled();
  m_start = xform * m_start;
  m_end = xform * m_end;
  m_normal = normal.normal();
  // The extrusion is the normal carried through the matrix: its new length is the scale.
  m_thickness *= normal.length();
  return eOk;
}

OdResult OdDbLine::subExplode(OdRxObjectPtrArray& /*entitySet*/) const {
  assertReadEnabled();
  return eNotApplicable;
}

OdResult OdDbLine::subGetGeomExtents(OdGeExtents3d& extents) const {
  assertReadEnabled();
  extents = OdGeExtents3d();
  extents.addPoint(m_start);
  extents.addPoint(m_end);
  return eOk;
}

bool OdDbLine::subGetPieces(OdDbCurvePieceArray& pieces) const {
  assertReadEnabled();
  OdDbCurvePiece piece;
  piece.kind = OdDbCurvePiece::kLine;
  piece.start = m_start;
  piece.end = m_end;
  piece.extendable = true;
  pieces.append(piece);
  return true;
}
