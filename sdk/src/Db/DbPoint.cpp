#include "DbPoint.h"
#include "DxfFile/DbDxfGroups.h"
#include "Ge/GeFinite.h"

#include "DbFiler.h"
#include "Gi/GiWorldDraw.h"

#include <cmath>

ODRX_CONS_DEFINE_MEMBERS(OdDbPoint, OdDbEntity, OD_T("POINT"))

namespace {

constexpr double kDegreesPerRadian = 180.0 / OdaPI;

/// The point's own X axis in world coordinates.
OdGeVector3d ecsXAxis(const OdGeVector3d& normal, double rotation) {
  OdGeVector3d xAxis = normal.perpVector();
  return xAxis.rotateBy(rotation, normal);
}

} // namespace

OdDbPoint::OdDbPoint() = default;

OdDbPoint::OdDbPoint(const OdGePoint3d& position) : m_position(position) {}

OdGePoint3d OdDbPoint::position() const {
  assertReadEnabled();
  return m_position;
}

void OdDbPoint::setPosition(const OdGePoint3d& position) {
  assertWriteEnabled();
  m_position = position;
}

double OdDbPoint::thickness() const {
  assertReadEnabled();
  return m_thickness;
}

void OdDbPoint::setThickness(double thickness) {
  assertWriteEnabled();
  m_thickness = thickness;
}

OdGeVector3d OdDbPoint::normal() const {
  assertReadEnabled();
  return m_normal;
}

void OdDbPoint::setNormal(const OdGeVector3d& normal) {
  if (normal.isZeroLength() || !odgeIsFinite(normal))
    throw OdError(eInvalidInput, OD_T("A point's normal must be a non-zero vector"));
  assertWriteEnabled();
  m_normal = normal.normal();
}

double OdDbPoint::ecsRotation() const {
  assertReadEnabled();
  return m_ecsRotation;
}

void OdDbPoint::setEcsRotation(double rotation) {
  assertWriteEnabled();
  m_ecsRotation = rotation;
}

// Filing -------------------------------------------------------------------------------------

void OdDbPoint::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbEntity::dwgOutFields(filer);
  filer->wrPoint3d(m_position);
  filer->wrDouble(m_thickness);
  filer->wrVector3d(m_normal);
  filer->wrDouble(m_ecsRotation);
}

OdResult OdDbPoint::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdGePoint3d position = filer->rdPoint3d();
  const double thickness = filer->rdDouble();
  const OdGeVector3d normal = filer->rdVector3d();
  const double ecsRotation = filer->rdDouble();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!odgeIsFinite(position) || !std::isfinite(thickness) || !odgeIsFinite(normal) ||
      normal.isZeroLength() || !std::isfinite(ecsRotation))
    return eInvalidInput;
  m_position = position;
  m_thickness = thickness;
  m_normal = normal.normal();
  m_ecsRotation = ecsRotation;
  return eOk;
}

void OdDbPoint::dxfOutFields(OdDbDxfFiler* filer) const {
  OdDbEntity::dxfOutFields(filer);
  filer->wrSubclassMarker(OD_T("AcDbPoint"));
  filer->wrPoint3d(10, m_position);
  const bool all = filer->includesDefaultValues();
  if (m_thickness != 0.0 || all)
    filer->wrDouble(39, m_thickness);
  if (m_normal != OdGeVector3d::kZAxis || all)
    filer->wrVector3d(210, m_normal);
  if (m_ecsRotation != 0.0 || all)
    filer->wrAngle(50, m_ecsRotation);
}

OdResult OdDbPoint::dxfInFields(OdDbDxfFiler* filer) {
  const OdResult base = OdDbEntity::dxfInFields(filer);
  if (base != eOk)
    return base;
  if (!filer->atSubclassData(OD_T("AcDbPoint")))
    return eInvalidDxfCode;
  OdGePoint3d position;
  double thickness = 0.0;
  OdGeVector3d normal(0.0, 0.0, 1.0);
  double ecsRotation = 0.0;
  const OdResult groups = odDbReadDxfSubclassGroups(filer, [&](int code) {
    switch (code) {
    case 10:
      filer->rdPoint3d(position);
      break;
    case 39:
      thickness = filer->rdDouble();
      break;
    case 210:
      filer->rdVector3d(normal);
      break;
    case 50:
      ecsRotation = filer->rdDouble() / kDegreesPerRadian;
      break;
    default:
      break;
    }
  });
  if (groups != eOk)
    return groups;
  if (!odgeIsFinite(position) || !std::isfinite(thickness) || !odgeIsFinite(normal) ||
      normal.isZeroLength() || !std::isfinite(ecsRotation))
    return eInvalidInput;
  m_position = position;
  m_thickness = thickness;
  m_normal = normal.normal();
  m_ecsRotation = ecsRotation;
  return eOk;
}

// Drawing and editing ------------------------------------------------------------------------

bool OdDbPoint::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  const OdGePoint3d points[2] = {m_position, m_position + m_normal * m_thickness};
  worldDraw->geometry().polyline(2, points, &m_normal);
  return true;
}

OdResult OdDbPoint::subGetGripPoints(OdGePoint3dArray& gripPoints) const {
  assertReadEnabled();
  gripPoints.append(m_position);
  return eOk;
}

OdResult OdDbPoint::subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  for (int index : indices) {
    if (index != 0)
      return eInvalidIndex;
  }
  if (indices.isEmpty())
    return eOk;
  assertWriteEnabled();
  m_position += offset;
  return eOk;
}

OdResult OdDbPoint::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker /*gsSelectionMark*/,
                                      const OdGePoint3d& /*pickPoint*/,
                                      const OdGePoint3d& /*lastPoint*/,
                                      const OdGeMatrix3d& /*xWorldToEye*/,
                                      OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  if (osnapMode == OdDb::kOsModeNode)
    snapPoints.append(m_position);
  return eOk;
}

OdResult OdDbPoint::subTransformBy(const OdGeMatrix3d& xform) {
  const OdGeVector3d normal = xform * m_normal;
  if (normal.isZeroLength())
    return eInvalidInput;
  assertWriteEnabled();
  const OdGeVector3d newNormal = normal.normal();
  // Carry the point's own X axis through the matrix and measure it again in the new plane.
  const OdGeVector3d xAxis = (xform * ecsXAxis(m_normal, m_ecsRotation)).orthoProject(newNormal);
  double rotation = 0.0;
  if (!xAxis.isZeroLength())
    rotation = newNormal.perpVector().angleTo(xAxis, newNormal);
  m_position = xform * m_position;
  m_normal = newNormal;
  m_ecsRotation = rotation;
  // The extrusion is the normal carried through the matrix: its new length is the scale, and
  // a mirror that keeps the normal's side keeps the thickness's side too.
  m_thickness *= normal.length();
  return eOk;
}

OdResult OdDbPoint::subExplode(OdRxObjectPtrArray& /*entitySet*/) const {
  assertReadEnabled();
  return eNotApplicable;
}

OdResult OdDbPoint::subGetGeomExtents(OdGeExtents3d& extents) const {
  assertReadEnabled();
  extents = OdGeExtents3d();
  extents.addPoint(m_position);
  extents.addPoint(m_position + m_normal * m_thickness);
  return eOk;
}
