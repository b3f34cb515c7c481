#include "GeoRectBody.h"

#include "common/NotLoaded.h"

#include "DbFiler.h"
#include "DbLine.h"
#include "OdDbGeo3dRect.h"
#include "OdDbGeoRect.h"
#include "common/CustFiling.h"

#include <cstdint>

namespace custents {

template <class Derived>
GeoRectBody<Derived>::GeoRectBody(const OdGePoint3d& p1, const OdGePoint3d& p2)
    : m_rect(GeoRectGeometry::fromDiagonal(p1, p2)) {}

template <class Derived>
void GeoRectBody<Derived>::setPts(const OdGePoint3d& p1, const OdGePoint3d& p2) {
  assertWriteEnabled();
  m_rect = GeoRectGeometry::fromDiagonal(p1, p2);
}

template <class Derived> double GeoRectBody<Derived>::width() const {
  assertReadEnabled();
  return m_rect.lengthEdge();
}

template <class Derived> double GeoRectBody<Derived>::height() const {
  assertReadEnabled();
  return m_rect.widthEdge();
}

template <class Derived> double GeoRectBody<Derived>::area() const {
  return height() * width();
}

template <class Derived> void GeoRectBody<Derived>::setWidth(double length) {
  assertWriteEnabled();
  m_rect.setLengthEdge(length);
}

template <class Derived> void GeoRectBody<Derived>::setHeight(double width) {
  assertWriteEnabled();
  m_rect.setWidthEdge(width);
}

template <class Derived> OdGePoint3d GeoRectBody<Derived>::getCenterPt() const {
  assertReadEnabled();
  return m_rect.center;
}

template <class Derived> OdGePoint3dArray GeoRectBody<Derived>::getPts() const {
  assertReadEnabled();
  OdGePoint3dArray points;
  for (const OdGePoint3d& corner : m_rect.corners)
    points.append(corner);
  return points;
}

template <class Derived> OdGePoint3d GeoRectBody<Derived>::getRotatePt() const {
  assertReadEnabled();
  return m_rect.rotatePt;
}

template <class Derived> OdGeMatrix3d GeoRectBody<Derived>::accumulatedTransform() const {
  assertReadEnabled();
  return m_transform;
}

template <class Derived> void GeoRectBody<Derived>::setZCoor2Zero() {
  assertWriteEnabled();
  m_rect.setZToZero();
}

// ---------------------------------------------------------------------------------------------
// Filing

template <class Derived> OdResult GeoRectBody<Derived>::dwgInFields(OdDbDwgFiler* filer) {
  assertWriteEnabled();
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdInt16 version = filer->rdInt16();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  // Only a newer version is refused; 0 and negative versions are read like version 1.
  if (version > Derived::s_kCurrentVersionNumber)
    return kRefusedVersion;
  GeoRectGeometry read;
  for (OdGePoint3d& corner : read.corners)
    corner = filer->rdPoint3d();
  read.center = filer->rdPoint3d();
  read.rotatePt = filer->rdPoint3d();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  for (const OdGePoint3d& corner : read.corners)
    if (!custents::allFinite(corner))
      return custents::kDamagedStream;
  if (!custents::allFinite(read.center, read.rotatePt))
    return custents::kDamagedStream;
  m_rect = read;
  return eOk;
}

template <class Derived> void GeoRectBody<Derived>::dwgOutFields(OdDbDwgFiler* filer) const {
  assertReadEnabled();
  OdDbEntity::dwgOutFields(filer);
  filer->wrInt16(Derived::s_kCurrentVersionNumber);
  for (const OdGePoint3d& corner : m_rect.corners)
    filer->wrPoint3d(corner);
  filer->wrPoint3d(m_rect.center);
  filer->wrPoint3d(m_rect.rotatePt);
}

template <class Derived> OdResult GeoRectBody<Derived>::dxfInFields(OdDbDxfFiler* filer) {
  return refuseDxfIn(this, filer);
}

// ---------------------------------------------------------------------------------------------
// Editing

template <class Derived> OdResult GeoRectBody<Derived>::subTransformBy(const OdGeMatrix3d& xform) {
  assertWriteEnabled();
  m_rect.transformBy(xform);
  m_transform = m_transform * xform;
  return eOk;
}

template <class Derived>
OdSmartPtr<OdDbLine> GeoRectBody<Derived>::newLine(const OdGePoint3d& from, const OdGePoint3d& to) {
  if (!OdDbLine::desc())
    return OdSmartPtr<OdDbLine>();
  OdSmartPtr<OdDbLine> line = OdDbLine::createObject();
  line->setStartPoint(from);
  line->setEndPoint(to);
  return line;
}

template <class Derived>
OdResult GeoRectBody<Derived>::subExplode(OdRxObjectPtrArray& entitySet) const {
  assertReadEnabled();
  for (int i = 0; i < 4; ++i) {
    OdSmartPtr<OdDbLine> line = newLine(m_rect.corners[i], m_rect.corners[(i + 1) % 4]);
    if (line.isNull())
      throw notLoadedError(OD_T("Line"));
    line->setPropertiesFrom(this);
    entitySet.append(OdRxObjectPtr(line.get()));
  }
  return eOk;
}

template <class Derived>
OdResult
GeoRectBody<Derived>::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                                        const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                                        const OdGeMatrix3d& xWorldToEye,
                                        OdGePoint3dArray& snapPoints) const {
  OdRxObjectPtrArray edges;
  const OdResult exploded = subExplode(edges);
  if (exploded != eOk)
    return exploded;
  if (osnapMode == OdDb::kOsModeCen)
    snapPoints.append(m_rect.center);
  for (const OdRxObjectPtr& edge : edges)
    OdDbEntity::cast(edge.get())
        ->getOsnapPoints(osnapMode, gsSelectionMark, pickPoint, lastPoint, xWorldToEye, snapPoints);
  return eOk;
}

template <class Derived>
OdResult GeoRectBody<Derived>::subGetGripPoints(OdDbGripDataPtrArray& grips,
                                                double /*curViewUnitSize*/, int /*gripSize*/,
                                                const OdGeVector3d& /*curViewDir*/,
                                                int /*bitFlags*/) const {
  assertReadEnabled();
  const OdGePoint3d points[5] = {m_rect.corners[0], m_rect.corners[1], m_rect.corners[2],
                                 m_rect.corners[3], m_rect.center};
  for (std::intptr_t i = 0; i < 5; ++i) {
    OdDbGripDataPtr grip = std::make_shared<OdDbGripData>();
    grip->setGripPoint(points[i]);
    grip->setAppData(reinterpret_cast<void*>(i));
    grips.append(grip);
  }
  return eOk;
}

template <class Derived>
OdResult GeoRectBody<Derived>::subMoveGripPointsAt(const OdDbVoidPtrArray& grips,
                                                   const OdGeVector3d& offset, int /*bitFlags*/) {
  assertWriteEnabled();
  for (unsigned int i = 0; i < grips.size(); ++i)
    m_rect.moveGrip(static_cast<int>(reinterpret_cast<std::intptr_t>(grips.at(i))), offset);
  return eOk;
}

template <class Derived>
OdResult GeoRectBody<Derived>::subGetStretchPoints(OdGePoint3dArray& stretchPoints) const {
  assertReadEnabled();
  for (const OdGePoint3d& corner : m_rect.corners)
    stretchPoints.append(corner);
  return eOk;
}

template <class Derived>
OdResult GeoRectBody<Derived>::subMoveStretchPointsAt(const OdIntArray& indices,
                                                      const OdGeVector3d& offset) {
  assertWriteEnabled();
  m_rect.moveStretchPoints(indices, offset);
  return eOk;
}

template <class Derived>
OdResult GeoRectBody<Derived>::subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                                                OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                                                OdGsMarker otherGsMarker) const {
  if (!other)
    return eInvalidInput;
  OdRxObjectPtrArray edges;
  const OdResult exploded = subExplode(edges);
  if (exploded != eOk)
    return exploded;
  OdResult result = eOk;
  for (const OdRxObjectPtr& edge : edges) {
    const OdResult found = OdDbEntity::cast(edge.get())
                               ->intersectWith(other, intType, points, thisGsMarker, otherGsMarker);
    if (result == eOk)
      result = found;
  }
  return result;
}

template class GeoRectBody<OdDbGeoRect>;
template class GeoRectBody<OdDbGeo3dRect>;

} // namespace custents
