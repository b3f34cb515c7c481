#include "OdDbGeoTriangle.h"

#include "DbFiler.h"
#include "GeoPolygonOutline.h"
#include "GeoTriangleGeometry.h"
#include "common/CustFiling.h"

namespace {

constexpr int kCenterGrip = 3;

custents::TriangleCorners cornersOf(const OdGePoint3d (&vertices)[3]) {
  return {vertices[0], vertices[1], vertices[2]};
}

/// The rotation handle sits this far along +Y from the centre when the shape is built.
const OdGeVector3d kRotateHandleOffset(0.0, 50.0, 0.0);

} // namespace

OdDbGeoTriangle::OdDbGeoTriangle() = default;

OdDbGeoTriangle::OdDbGeoTriangle(const OdGePoint3d& p1, const OdGePoint3d& p2,
                                 const OdGePoint3d& p3)
    : m_vertices{p1, p2, p3} {
  m_center = custents::triangleCentroid(cornersOf(m_vertices));
  m_rotatePt = m_center + kRotateHandleOffset;
}

void OdDbGeoTriangle::setPts(const OdGePoint3d& center, const OdGePoint3d& through) {
  assertWriteEnabled();
  const custents::TriangleCorners corners = custents::equilateralTriangle(center, through);
  m_vertices[0] = corners.v0;
  m_vertices[1] = corners.v1;
  m_vertices[2] = corners.v2;
  m_center = center;
}

void OdDbGeoTriangle::calcRotatePt() {
  assertWriteEnabled();
  m_rotatePt = m_center + kRotateHandleOffset;
}

OdGePoint3dArray OdDbGeoTriangle::getPts() const {
  assertReadEnabled();
  return OdGePoint3dArray{m_vertices[0], m_vertices[1], m_vertices[2]};
}

OdGePoint3d OdDbGeoTriangle::getCenterPt() const {
  assertReadEnabled();
  return m_center;
}

OdGePoint3d OdDbGeoTriangle::getRotatePt() const {
  assertReadEnabled();
  return m_rotatePt;
}

double OdDbGeoTriangle::girth() const {
  assertReadEnabled();
  return custents::triangleGirth(cornersOf(m_vertices));
}

double OdDbGeoTriangle::area() const {
  assertReadEnabled();
  return custents::triangleArea(cornersOf(m_vertices));
}

void OdDbGeoTriangle::recomputeCenter() {
  m_center = custents::triangleCentroid(cornersOf(m_vertices));
}

// ---------------------------------------------------------------------------------------------
// Filing

void OdDbGeoTriangle::dwgOutFields(OdDbDwgFiler* filer) const {
  assertReadEnabled();
  OdDbEntity::dwgOutFields(filer);
  filer->wrInt16(s_kCurrentVersionNumber);
  filer->wrPoint3d(m_vertices[0]);
  filer->wrPoint3d(m_vertices[1]);
  filer->wrPoint3d(m_vertices[2]);
  filer->wrPoint3d(m_center);
  filer->wrPoint3d(m_rotatePt);
}

OdResult OdDbGeoTriangle::dwgInFields(OdDbDwgFiler* filer) {
  assertWriteEnabled();
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdInt16 version = filer->rdInt16();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (version > s_kCurrentVersionNumber)
    return custents::kRefusedVersion;
  OdGePoint3d vertices[3];
  vertices[0] = filer->rdPoint3d();
  vertices[1] = filer->rdPoint3d();
  vertices[2] = filer->rdPoint3d();
  const OdGePoint3d center = filer->rdPoint3d();
  const OdGePoint3d rotatePt = filer->rdPoint3d();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!custents::allFinite(vertices[0], vertices[1], vertices[2], center, rotatePt))
    return custents::kDamagedStream;
  for (int i = 0; i < 3; ++i)
    m_vertices[i] = vertices[i];
  m_center = center;
  m_rotatePt = rotatePt;
  return eOk;
}

OdResult OdDbGeoTriangle::dxfInFields(OdDbDxfFiler* filer) {
  return custents::refuseDxfIn(this, filer);
}

// ---------------------------------------------------------------------------------------------
// Drawing and editing

bool OdDbGeoTriangle::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  custents::drawClosedOutline(m_vertices, 3, worldDraw);
  return true;
}

OdResult OdDbGeoTriangle::subTransformBy(const OdGeMatrix3d& xform) {
  assertWriteEnabled();
  for (OdGePoint3d& vertex : m_vertices)
    vertex.transformBy(xform);
  m_center.transformBy(xform);
  return eOk;
}

OdResult OdDbGeoTriangle::subExplode(OdRxObjectPtrArray& entitySet) const {
  assertReadEnabled();
  for (int i = 0; i < 3; ++i)
    custents::appendEdge(m_vertices[i], m_vertices[(i + 1) % 3], this, entitySet);
  return eOk;
}

OdResult OdDbGeoTriangle::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                                            const OdGePoint3d& pickPoint,
                                            const OdGePoint3d& lastPoint,
                                            const OdGeMatrix3d& xWorldToEye,
                                            OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  OdRxObjectPtrArray edges;
  subExplode(edges);
  custents::appendEdgeSnaps(edges, osnapMode, gsSelectionMark, pickPoint, lastPoint, xWorldToEye,
                            snapPoints);
  // The centroid comes after the edges' points (the rectangle puts its centre first).
  if (osnapMode == OdDb::kOsModeCen)
    snapPoints.append(m_center);
  return eOk;
}

OdResult OdDbGeoTriangle::subGetGripPoints(OdDbGripDataPtrArray& grips, double /*curViewUnitSize*/,
                                           int /*gripSize*/, const OdGeVector3d& /*curViewDir*/,
                                           int /*bitFlags*/) const {
  assertReadEnabled();
  for (OdIntPtr i = 0; i <= kCenterGrip; ++i) {
    OdDbGripDataPtr grip(new OdDbGripData());
    grip->setGripPoint(i < kCenterGrip ? m_vertices[i] : m_center);
    grip->setAppData(reinterpret_cast<void*>(i));
    grips.append(grip);
  }
  return eOk;
}

OdResult OdDbGeoTriangle::subMoveGripPointsAt(const OdDbVoidPtrArray& grips,
                                              const OdGeVector3d& offset, int /*bitFlags*/) {
  assertWriteEnabled();
  for (unsigned int i = 0; i < grips.size(); ++i) {
    const OdIntPtr index = reinterpret_cast<OdIntPtr>(grips.at(i));
    if (index >= 0 && index < kCenterGrip) {
      m_vertices[index] += offset;
    } else if (index == kCenterGrip) {
      for (OdGePoint3d& vertex : m_vertices)
        vertex += offset;
    }
    recomputeCenter();
  }
  return eOk;
}

OdResult OdDbGeoTriangle::subGetStretchPoints(OdGePoint3dArray& stretchPoints) const {
  assertReadEnabled();
  for (const OdGePoint3d& vertex : m_vertices)
    stretchPoints.append(vertex);
  return eOk;
}

OdResult OdDbGeoTriangle::subMoveStretchPointsAt(const OdIntArray& indices,
                                                 const OdGeVector3d& offset) {
  assertWriteEnabled();
  for (int index : indices) {
    if (index >= 0 && index < 3)
      m_vertices[index] += offset;
    recomputeCenter();
  }
  return eOk;
}

OdResult OdDbGeoTriangle::subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                                           OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                                           OdGsMarker otherGsMarker) const {
  assertReadEnabled();
  OdRxObjectPtrArray edges;
  subExplode(edges);
  return custents::intersectEdges(edges, other, intType, points, thisGsMarker, otherGsMarker);
}
