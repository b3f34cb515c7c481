#include "DbArc.h"
#include "DxfFile/DbDxfGroups.h"
#include "Ge/GeFinite.h"

#include "DbFiler.h"
#include "Ge/GeBulge.h"
#include "Ge/GePoint2d.h"
#include "Ge/GeVector2d.h"
#include "Gi/GiWorldDraw.h"

#include <algorithm>
#include <cmath>

ODRX_CONS_DEFINE_MEMBERS(OdDbArc, OdDbCurve, OD_T("ARC"))

namespace {

constexpr double kDegreesPerRadian = 180.0 / OdaPI;

/// The angle in [0, 2π).
double normalizedAngle(double angle) {
  double result = std::fmod(angle, Oda2PI);
  if (result < 0.0)
    result += Oda2PI;
  // A tiny negative angle rounds up to exactly 2π; keep the range half-open.
  return result >= Oda2PI ? 0.0 : result;
}

/// Checks the indices before anything moves, so a bad index leaves the arc untouched.
bool allIndicesBelow(const OdIntArray& indices, int count) {
  for (int index : indices) {
    if (index < 0 || index >= count)
      return false;
  }
  return true;
}

/// The arc through three points of a plane, as centre, radius and the counter-clockwise
/// start and end angles; false when the points lie on one line or two of them coincide.
bool arcThroughPoints(const OdGePoint2d& start, const OdGePoint2d& mid, const OdGePoint2d& end,
                      OdGePoint2d& center, double& radius, double& startAngle, double& endAngle) {
  const OdGeVector2d b = mid - start;
  const OdGeVector2d c = end - start;
  const double cross = b.x * c.y - b.y * c.x;
  if (!(std::fabs(cross) > 1.e-10 * b.length() * c.length()))
    return false;
  const double d = 2.0 * cross;
  const double bb = b.lengthSqrd();
  const double cc = c.lengthSqrd();
  center = start + OdGeVector2d((c.y * bb - b.y * cc) / d, (b.x * cc - c.x * bb) / d);
  radius = center.distanceTo(start);
  // Points that run clockwise make the counter-clockwise arc from end to start.
  const OdGePoint2d& from = cross > 0.0 ? start : end;
  const OdGePoint2d& to = cross > 0.0 ? end : start;
  startAngle = normalizedAngle((from - center).angle());
  endAngle = normalizedAngle((to - center).angle());
  return true;
}

} // namespace

OdDbArc::OdDbArc() = default;

OdGePoint3d OdDbArc::center() const {
  assertReadEnabled();
  return m_center;
}

void OdDbArc::setCenter(const OdGePoint3d& center) {
  if (!odgeIsFinite(center))
    throw OdError(eInvalidInput, OD_T("An arc's centre must be a finite point"));
  assertWriteEnabled();
  m_center = center;
}

double OdDbArc::radius() const {
  assertReadEnabled();
  return m_radius;
}

void OdDbArc::setRadius(double radius) {
  if (!std::isfinite(radius) || radius <= 0.0)
    throw OdError(eInvalidInput, OD_T("An arc's radius must be a positive number"));
  assertWriteEnabled();
  m_radius = radius;
}

double OdDbArc::startAngle() const {
  assertReadEnabled();
  return m_startAngle;
}

void OdDbArc::setStartAngle(double angle) {
  if (!std::isfinite(angle))
    throw OdError(eInvalidInput, OD_T("An arc's angle must be a finite number"));
  assertWriteEnabled();
  m_startAngle = normalizedAngle(angle);
}

double OdDbArc::endAngle() const {
  assertReadEnabled();
  return m_endAngle;
}

void OdDbArc::setEndAngle(double angle) {
  if (!std::isfinite(angle))
    throw OdError(eInvalidInput, OD_T("An arc's angle must be a finite number"));
  assertWriteEnabled();
  m_endAngle = normalizedAngle(angle);
}

OdGeVector3d OdDbArc::normal() const {
  assertReadEnabled();
  return m_normal;
}

void OdDbArc::setNormal(const OdGeVector3d& normal) {
  if (normal.isZeroLength() || !odgeIsFinite(normal))
    throw OdError(eInvalidInput, OD_T("An arc's normal must be a non-zero vector"));
  assertWriteEnabled();
  m_normal = normal.normal();
}

double OdDbArc::thickness() const {
  assertReadEnabled();
  return m_thickness;
}

void OdDbArc::setThickness(double thickness) {
  if (!std::isfinite(thickness))
    throw OdError(eInvalidInput, OD_T("An arc's thickness must be a finite number"));
  assertWriteEnabled();
  m_thickness = thickness;
}

// Plane geometry -----------------------------------------------------------------------------

double OdDbArc::sweep() const {
  const double turn = normalizedAngle(m_endAngle - m_startAngle);
  return turn > 0.0 ? turn : Oda2PI;
}

OdGePoint3d OdDbArc::pointAtAngle(double angle) const {
  const OdGeMatrix3d toWorld = OdGeMatrix3d::planeToWorld(m_normal);
  return m_center +
         (toWorld.getCsXAxis() * std::cos(angle) + toWorld.getCsYAxis() * std::sin(angle)) *
             m_radius;
}

void OdDbArc::setFromPlane(const OdGePoint2d& center, double radius, double startAngle,
                           double endAngle) {
  const double elevation = (OdGeMatrix3d::worldToPlane(m_normal) * m_center).z;
  m_center = OdGeMatrix3d::planeToWorld(m_normal) * OdGePoint3d(center.x, center.y, elevation);
  m_radius = radius;
  m_startAngle = normalizedAngle(startAngle);
  m_endAngle = normalizedAngle(endAngle);
}

namespace {

/// How far along the sweep (from the start, 0..sweep) an angle lies, or -1 when the arc does
/// not pass it. slack is an angle allowed past either end.
double angleAlong(double angle, double startAngle, double sweep, double slack) {
  const double along = normalizedAngle(angle - startAngle);
  if (along <= sweep + slack)
    return std::min(along, sweep);
  if (along >= Oda2PI - slack)
    return 0.0;
  return -1.0;
}

} // namespace

// Curve queries ------------------------------------------------------------------------------

bool OdDbArc::isClosed() const {
  assertReadEnabled();
  return false;
}

OdResult OdDbArc::getStartParam(double& startParam) const {
  assertReadEnabled();
  startParam = m_startAngle;
  return eOk;
}

OdResult OdDbArc::getEndParam(double& endParam) const {
  assertReadEnabled();
  endParam = m_startAngle + sweep();
  return eOk;
}

OdResult OdDbArc::getStartPoint(OdGePoint3d& startPoint) const {
  assertReadEnabled();
  startPoint = pointAtAngle(m_startAngle);
  return eOk;
}

OdResult OdDbArc::getEndPoint(OdGePoint3d& endPoint) const {
  assertReadEnabled();
  endPoint = pointAtAngle(m_endAngle);
  return eOk;
}

OdResult OdDbArc::getPointAtParam(double param, OdGePoint3d& pointOnCurve) const {
  assertReadEnabled();
  const double tol = 1.e-10;
  if (!std::isfinite(param) || param < m_startAngle - tol || param > m_startAngle + sweep() + tol)
    return eInvalidInput;
  pointOnCurve = pointAtAngle(param);
  return eOk;
}

OdResult OdDbArc::getParamAtPoint(const OdGePoint3d& pointOnCurve, double& param) const {
  assertReadEnabled();
  OdGePoint3d closest;
  getClosestPointTo(pointOnCurve, closest, false);
  if (!closest.isEqualTo(pointOnCurve))
    return eInvalidInput;
  if (m_radius <= 0.0) {
    param = m_startAngle;
    return eOk;
  }
  const OdGePoint3d inPlane = OdGeMatrix3d::worldToPlane(m_normal) * pointOnCurve;
  const OdGePoint3d centerInPlane = OdGeMatrix3d::worldToPlane(m_normal) * m_center;
  const double angle = (inPlane.convert2d() - centerInPlane.convert2d()).angle();
  const double slack = OdGeContext::gTol.equalPoint() / m_radius;
  param = m_startAngle + std::max(0.0, angleAlong(angle, m_startAngle, sweep(), slack));
  return eOk;
}

OdResult OdDbArc::getDistAtParam(double param, double& dist) const {
  assertReadEnabled();
  const double tol = 1.e-10;
  const double total = sweep();
  if (!std::isfinite(param) || param < m_startAngle - tol || param > m_startAngle + total + tol)
    return eInvalidInput;
  dist = m_radius * std::clamp(param - m_startAngle, 0.0, total);
  return eOk;
}

OdResult OdDbArc::getParamAtDist(double dist, double& param) const {
  assertReadEnabled();
  const double length = m_radius * sweep();
  if (!std::isfinite(dist) || dist < 0.0 || dist > length + OdGeContext::gTol.equalPoint())
    return eInvalidInput;
  param = m_radius > 0.0 ? m_startAngle + std::min(dist, length) / m_radius : m_startAngle;
  return eOk;
}

OdResult OdDbArc::getClosestPointTo(const OdGePoint3d& givenPoint, OdGePoint3d& pointOnCurve,
                                    bool extend) const {
  assertReadEnabled();
  const OdGeMatrix3d toPlane = OdGeMatrix3d::worldToPlane(m_normal);
  const OdGeVector2d radial = (toPlane * givenPoint).convert2d() - (toPlane * m_center).convert2d();
  const OdGePoint3d start = pointAtAngle(m_startAngle);
  if (radial.isZeroLength()) {
    // Every point of the circle is as near as any other: take the start.
    pointOnCurve = start;
    return eOk;
  }
  const double angle = radial.angle();
  if (extend || angleAlong(angle, m_startAngle, sweep(), 0.0) >= 0.0) {
    pointOnCurve = pointAtAngle(angle);
    return eOk;
  }
  const OdGePoint3d end = pointAtAngle(m_endAngle);
  pointOnCurve = givenPoint.distanceTo(start) <= givenPoint.distanceTo(end) ? start : end;
  return eOk;
}

OdResult OdDbArc::getArea(double& area) const {
  assertReadEnabled();
  const double turn = sweep();
  area = 0.5 * m_radius * m_radius * (turn - std::sin(turn));
  return eOk;
}

// Filing -------------------------------------------------------------------------------------

void OdDbArc::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbCurve::dwgOutFields(filer);
  filer->wrPoint3d(m_filedCenter.toFile(m_center, m_normal));
  filer->wrDouble(m_radius);
  filer->wrDouble(m_thickness);
  filer->wrVector3d(m_normal);
  filer->wrDouble(m_startAngle);
  filer->wrDouble(m_endAngle);
}

OdResult OdDbArc::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbCurve::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdGePoint3d planeCenter = filer->rdPoint3d();
  const double radius = filer->rdDouble();
  const double thickness = filer->rdDouble();
  const OdGeVector3d normal = filer->rdVector3d();
  const double startAngle = filer->rdDouble();
  const double endAngle = filer->rdDouble();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!odgeIsFinite(planeCenter) || !std::isfinite(radius) || !(radius > 0.0) ||
      !std::isfinite(thickness) || !odgeIsFinite(normal) || normal.isZeroLength() ||
      !std::isfinite(startAngle) || !std::isfinite(endAngle))
    return eInvalidInput;
  m_normal = normal.normal();
  m_center = m_filedCenter.read(planeCenter, m_normal);
  m_radius = radius;
  m_thickness = thickness;
  m_startAngle = normalizedAngle(startAngle);
  m_endAngle = normalizedAngle(endAngle);
  return eOk;
}

void OdDbArc::dxfOutFields(OdDbDxfFiler* filer) const {
  OdDbCurve::dxfOutFields(filer);
  const bool all = filer->includesDefaultValues();
  filer->wrSubclassMarker(OD_T("AcDbCircle"));
  filer->wrPoint3d(10, m_filedCenter.toFile(m_center, m_normal));
  filer->wrDouble(40, m_radius);
  if (m_thickness != 0.0 || all)
    filer->wrDouble(39, m_thickness);
  if (m_normal != OdGeVector3d::kZAxis || all)
    filer->wrVector3d(210, m_normal);
  filer->wrSubclassMarker(OD_T("AcDbArc"));
  filer->wrAngle(50, m_startAngle);
  filer->wrAngle(51, m_endAngle);
}

OdResult OdDbArc::dxfInFields(OdDbDxfFiler* filer) {
  const OdResult base = OdDbCurve::dxfInFields(filer);
  if (base != eOk)
    return base;
  if (!filer->atSubclassData(OD_T("AcDbCircle")))
    return eInvalidDxfCode;
  OdGePoint3d planeCenter;
  double radius = 0.0;
  double thickness = 0.0;
  OdGeVector3d normal(0.0, 0.0, 1.0);
  const OdResult groups = odDbReadDxfSubclassGroups(filer, [&](int code) {
    switch (code) {
    case 10:
      filer->rdPoint3d(planeCenter);
      break;
    case 40:
      radius = filer->rdDouble();
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
  if (!filer->atSubclassData(OD_T("AcDbArc")))
    return eInvalidDxfCode;
  double startDegrees = 0.0;
  double endDegrees = 0.0;
  const OdResult arcGroups = odDbReadDxfSubclassGroups(filer, [&](int code) {
    if (code == 50)
      startDegrees = filer->rdDouble();
    else if (code == 51)
      endDegrees = filer->rdDouble();
  });
  if (arcGroups != eOk)
    return arcGroups;
  if (!odgeIsFinite(planeCenter) || !std::isfinite(radius) || !(radius > 0.0) ||
      !std::isfinite(thickness) || !odgeIsFinite(normal) || normal.isZeroLength() ||
      !std::isfinite(startDegrees) || !std::isfinite(endDegrees))
    return eInvalidInput;
  m_normal = normal.normal();
  m_center = m_filedCenter.read(planeCenter, m_normal);
  m_radius = radius;
  m_thickness = thickness;
  m_startAngle = normalizedAngle(startDegrees / kDegreesPerRadian);
  m_endAngle = normalizedAngle(endDegrees / kDegreesPerRadian);
  return eOk;
}

// Drawing and editing ------------------------------------------------------------------------

bool OdDbArc::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  if (m_radius <= 0.0)
    return true;
  const OdGeVector3d startVector = pointAtAngle(m_startAngle) - m_center;
  worldDraw->geometry().circularArc(m_center, m_radius, m_normal, startVector, sweep());
  return true;
}

OdResult OdDbArc::subGetGripPoints(OdGePoint3dArray& gripPoints) const {
  assertReadEnabled();
  gripPoints.append(pointAtAngle(m_startAngle));
  gripPoints.append(pointAtAngle(m_startAngle + sweep() * 0.5));
  gripPoints.append(pointAtAngle(m_endAngle));
  gripPoints.append(m_center);
  return eOk;
}

OdResult OdDbArc::subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  if (!allIndicesBelow(indices, 4))
    return eInvalidIndex;
  if (indices.isEmpty())
    return eOk;
  if (indices.contains(3)) {
    assertWriteEnabled();
    m_center += offset;
    return eOk;
  }
  const OdGeMatrix3d toPlane = OdGeMatrix3d::worldToPlane(m_normal);
  const OdGeVector2d inPlane = (toPlane * offset).convert2d();
  OdGePoint2d points[3] = {(toPlane * pointAtAngle(m_startAngle)).convert2d(),
                           (toPlane * pointAtAngle(m_startAngle + sweep() * 0.5)).convert2d(),
                           (toPlane * pointAtAngle(m_endAngle)).convert2d()};
  for (int i = 0; i < 3; ++i) {
    if (indices.contains(i))
      points[i] += inPlane;
  }
  OdGePoint2d center;
  double radius = 0.0;
  double startAngle = 0.0;
  double endAngle = 0.0;
  if (!arcThroughPoints(points[0], points[1], points[2], center, radius, startAngle, endAngle))
    return eInvalidInput;
  assertWriteEnabled();
  setFromPlane(center, radius, startAngle, endAngle);
  return eOk;
}

OdResult OdDbArc::subGetStretchPoints(OdGePoint3dArray& stretchPoints) const {
  assertReadEnabled();
  stretchPoints.append(pointAtAngle(m_startAngle));
  stretchPoints.append(pointAtAngle(m_endAngle));
  return eOk;
}

OdResult OdDbArc::subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  if (!allIndicesBelow(indices, 2))
    return eInvalidIndex;
  if (indices.isEmpty())
    return eOk;
  const OdGeMatrix3d toPlane = OdGeMatrix3d::worldToPlane(m_normal);
  const OdGeVector2d inPlane = (toPlane * offset).convert2d();
  const double turn = sweep();
  if ((indices.contains(0) && indices.contains(1)) || turn >= Oda2PI) {
    assertWriteEnabled();
    m_center += OdGeMatrix3d::planeToWorld(m_normal) * OdGeVector3d(inPlane.x, inPlane.y, 0.0);
    return eOk;
  }
  OdGePoint2d start = (toPlane * pointAtAngle(m_startAngle)).convert2d();
  OdGePoint2d end = (toPlane * pointAtAngle(m_endAngle)).convert2d();
  if (indices.contains(0))
    start += inPlane;
  else
    end += inPlane;
  const OdGeVector2d chord = end - start;
  if (chord.length() <= OdGeContext::gTol.equalPoint())
    return eInvalidInput;
  // The arc over the new chord with the same sweep, as a polyline's bulged segment keeps its
  // bulge when a vertex moves: bulge = tan(sweep / 4).
  const double bulge = std::tan(turn * 0.25);
  const OdGePoint2d center =
      start + chord * 0.5 + chord.perpVector() * (0.25 * (1.0 / bulge - bulge));
  assertWriteEnabled();
  setFromPlane(center, center.distanceTo(start), (start - center).angle(), (end - center).angle());
  return eOk;
}

OdResult OdDbArc::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker /*gsSelectionMark*/,
                                    const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                                    const OdGeMatrix3d& /*xWorldToEye*/,
                                    OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  const double turn = sweep();
  const double slack = m_radius > 0.0 ? OdGeContext::gTol.equalPoint() / m_radius : 0.0;
  const auto addIfOnArc = [&](double angle) {
    if (angleAlong(angle, m_startAngle, turn, slack) >= 0.0)
      snapPoints.append(pointAtAngle(angle));
  };
  // lastPoint as seen from the centre, in the arc's plane.
  const OdGeMatrix3d toPlane = OdGeMatrix3d::worldToPlane(m_normal);
  const OdGeVector2d fromCenter =
      (toPlane * lastPoint).convert2d() - (toPlane * m_center).convert2d();
  switch (osnapMode) {
  case OdDb::kOsModeEnd:
    snapPoints.append(pointAtAngle(m_startAngle));
    snapPoints.append(pointAtAngle(m_endAngle));
    break;
  case OdDb::kOsModeMid:
    snapPoints.append(pointAtAngle(m_startAngle + turn * 0.5));
    break;
  case OdDb::kOsModeCen:
    snapPoints.append(m_center);
    break;
  case OdDb::kOsModeNear: {
    OdGePoint3d nearest;
    getClosestPointTo(pickPoint, nearest, false);
    snapPoints.append(nearest);
    break;
  }
  case OdDb::kOsModeQuad:
    for (int quadrant = 0; quadrant < 4; ++quadrant)
      addIfOnArc(quadrant * OdaPI2);
    break;
  case OdDb::kOsModePerp:
    // The perpendiculars to a circle run through its centre.
    if (!fromCenter.isZeroLength()) {
      addIfOnArc(fromCenter.angle());
      addIfOnArc(fromCenter.angle() + OdaPI);
    }
    break;
  case OdDb::kOsModeTan: {
    const double distance = fromCenter.length();
    if (m_radius <= 0.0 || distance <= m_radius)
      break; // on or inside the circle: no tangent from there
    const double spread = std::acos(m_radius / distance);
    addIfOnArc(fromCenter.angle() - spread);
    addIfOnArc(fromCenter.angle() + spread);
    break;
  }
  default:
    break;
  }
  return eOk;
}

OdResult OdDbArc::subTransformBy(const OdGeMatrix3d& xform) {
  if (xform.isPerspective())
    return eNotApplicable;
  const OdGeMatrix3d toWorld = OdGeMatrix3d::planeToWorld(m_normal);
  const OdGeVector3d xAxis = xform * toWorld.getCsXAxis();
  const OdGeVector3d yAxis = xform * toWorld.getCsYAxis();
  const double scale = xAxis.length();
  // The arc stays circular only when its plane's axes stay perpendicular and of one length.
  const double tol = 1.e-10 * scale;
  if (!(scale > 1.e-12) || !odgeIsFinite(xAxis) || !odgeIsFinite(yAxis) ||
      std::fabs(xAxis.dotProduct(yAxis)) > tol * scale || std::fabs(yAxis.length() - scale) > tol)
    return eNotApplicable;
  // As for polylines, a mirror keeps the image of the normal, against which the arc now
  // turns clockwise: its ends swap so that it covers the same points counter-clockwise.
  const OdGeVector3d areaNormal = xAxis.crossProduct(yAxis);
  const bool mirrors = xform.det() < 0.0;
  const OdGeVector3d newNormal = (mirrors ? -areaNormal : areaNormal).normal();
  OdGeVector3d startVector = xform * (toWorld.getCsXAxis() * std::cos(m_startAngle) +
                                      toWorld.getCsYAxis() * std::sin(m_startAngle));
  OdGeVector3d endVector = xform * (toWorld.getCsXAxis() * std::cos(m_endAngle) +
                                    toWorld.getCsYAxis() * std::sin(m_endAngle));
  if (mirrors)
    std::swap(startVector, endVector);
  const OdGeMatrix3d newToPlane = OdGeMatrix3d::worldToPlane(newNormal);
  assertWriteEnabled();
  // The extrusion vector follows the matrix; measured along the new normal it is the new
  // thickness, which changes sign where the normal turned against it.
  m_thickness *= (xform * m_normal).dotProduct(newNormal);
  m_center = xform * m_center;
  m_normal = newNormal;
  m_radius *= scale;
  m_startAngle = normalizedAngle((newToPlane * startVector).convert2d().angle());
  m_endAngle = normalizedAngle((newToPlane * endVector).convert2d().angle());
  return eOk;
}

OdResult OdDbArc::subExplode(OdRxObjectPtrArray& /*entitySet*/) const {
  assertReadEnabled();
  return eNotApplicable;
}

OdResult OdDbArc::subGetGeomExtents(OdGeExtents3d& extents) const {
  assertReadEnabled();
  extents = OdGeExtents3d();
  extents.addPoint(pointAtAngle(m_startAngle));
  extents.addPoint(pointAtAngle(m_endAngle));
  if (m_radius <= 0.0)
    return eOk;
  const OdGeMatrix3d toWorld = OdGeMatrix3d::planeToWorld(m_normal);
  double extremes[6];
  const unsigned int numExtremes =
      odgeCircleExtremeAngles(toWorld.getCsXAxis(), toWorld.getCsYAxis(), extremes);
  const double turn = sweep();
  for (unsigned int k = 0; k < numExtremes; ++k) {
    if (angleAlong(extremes[k], m_startAngle, turn, 0.0) >= 0.0)
      extents.addPoint(pointAtAngle(extremes[k]));
  }
  return eOk;
}

bool OdDbArc::subGetPieces(OdDbCurvePieceArray& pieces) const {
  assertReadEnabled();
  if (m_radius <= OdGeContext::gTol.equalPoint())
    return true;
  OdDbCurvePiece piece;
  piece.kind = OdDbCurvePiece::kArc;
  piece.start = pointAtAngle(m_startAngle);
  piece.end = pointAtAngle(m_endAngle);
  piece.center = m_center;
  piece.radius = m_radius;
  piece.normal = m_normal;
  piece.startVector = (piece.start - m_center) / m_radius;
  piece.sweep = sweep();
  pieces.append(piece);
  return true;
}
