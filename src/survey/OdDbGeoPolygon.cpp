#include "OdDbGeoPolygon.h"

#include "DbDwgStreamFiler.h"
#include "GeoPolygonGeometry.h"
#include "GeoPolygonOutline.h"
#include "OdError.h"
#include "common/CustFiling.h"

#include <algorithm>
#include <cmath>

namespace {

/// The fewest data bits a filed point takes: three BDs of two bits each (0.0 and 1.0 are coded
/// by their prefix alone).
constexpr OdUInt64 kMinBitsPerPoint = 6;

constexpr OdInt32 kMinVertexCount = -32768;

/// The data bits a DWG filer can still deliver, so that a count read from the stream is checked
/// before anything is allocated for it; unknown for filers that cannot tell.
bool remainingDataBits(OdDbDwgFiler* filer, OdUInt64& bits) {
  const OdDbDwgStreamFiler* stream = dynamic_cast<const OdDbDwgStreamFiler*>(filer);
  if (!stream || !stream->isReading())
    return false;
  bits = stream->remainingDataBits();
  return true;
}

void* gripTag(OdIntPtr index) {
  return reinterpret_cast<void*>(index);
}

} // namespace

OdDbGeoPolygon::OdDbGeoPolygon() = default;

OdDbGeoPolygon::OdDbGeoPolygon(const OdGePoint3d& center) : m_center(center) {}

void OdDbGeoPolygon::init(const OdGePoint3d& point, OdInt32 sideCount) {
  assertWriteEnabled();
  if (sideCount < kMinVertexCount || sideCount > kMaxVertexCount)
    throw OdError(eInvalidInput, OD_T("OdDbGeoPolygon::init: side count out of range"));
  m_center = point;
  m_startPt = point;
  m_vertexCount = sideCount;
}

void OdDbGeoPolygon::setValue(const OdGePoint3d& startPt) {
  assertWriteEnabled();
  m_startPt = startPt;
  m_angleStep = custents::polygonStepAngle(m_vertexCount);
  m_radiusVector = m_startPt - m_center;
  rebuildVertices();
}

void OdDbGeoPolygon::SetVertexNub(double sideCount) {
  assertWriteEnabled();
  const double truncated = std::trunc(sideCount);
  if (!std::isfinite(truncated) || truncated < kMinVertexCount || truncated > kMaxVertexCount)
    throw OdError(eInvalidInput, OD_T("OdDbGeoPolygon::SetVertexNub: side count out of range"));
  m_vertexCount = static_cast<OdInt32>(truncated);
  m_angleStep = custents::polygonStepAngle(m_vertexCount);
  // The radius vector is taken as the last construction left it; startPt is not read again.
  rebuildVertices();
}

void OdDbGeoPolygon::rebuildVertices() {
  m_vertices.clear();
  custents::appendRegularVertices(m_center, m_radiusVector, m_vertexCount, m_angleStep, m_vertices);
}

double OdDbGeoPolygon::GetVertexNub() const {
  assertReadEnabled();
  return m_vertexCount;
}

double OdDbGeoPolygon::GetAngel() const {
  assertReadEnabled();
  m_angleStep = custents::polygonStepAngle(m_vertexCount);
  return custents::polygonStepDegrees(m_angleStep);
}

OdGePoint3dArray OdDbGeoPolygon::getPts() const {
  assertReadEnabled();
  OdGePoint3dArray points;
  for (OdInt32 i = 0; i < m_vertexCount; ++i)
    points.append(m_vertices.at(static_cast<unsigned int>(i)));
  return points;
}

OdGePoint3dArray OdDbGeoPolygon::getVertexList() const {
  assertReadEnabled();
  return m_vertices;
}

OdGePoint3d OdDbGeoPolygon::getCenterPt() const {
  assertReadEnabled();
  return m_center;
}

OdGePoint3d OdDbGeoPolygon::getStartPt() const {
  assertReadEnabled();
  return m_startPt;
}

OdGeVector3d OdDbGeoPolygon::getRadiusVector() const {
  assertReadEnabled();
  return m_radiusVector;
}

OdGeMatrix3d OdDbGeoPolygon::getTransform() const {
  assertReadEnabled();
  return m_transform;
}

bool OdDbGeoPolygon::isConsistent() const {
  return static_cast<OdInt64>(m_vertices.size()) == m_vertexCount;
}

OdResult OdDbGeoPolygon::getArea(double& area) const {
  assertReadEnabled();
  if (!isConsistent())
    return eOk;
  OdDbPolylinePtr outline = custents::closedOutline(m_vertices.getPtr(), m_vertices.size());
  if (outline.isNull())
    return eOk;
  return outline->getArea(area);
}

// ---------------------------------------------------------------------------------------------
// Filing

void OdDbGeoPolygon::dwgOutFields(OdDbDwgFiler* filer) const {
  assertReadEnabled();
  OdDbEntity::dwgOutFields(filer);
  const OdInt64 listed = m_vertices.size();
  const OdInt64 filed = listed < m_vertexCount ? listed : m_vertexCount;
  filer->wrInt16(s_kCurrentVersionNumber);
  filer->wrInt16(static_cast<OdInt16>(filed));
  filer->wrPoint3d(m_center);
  filer->wrPoint3d(m_startPt);
  for (OdInt64 i = 0; i < filed; ++i)
    filer->wrPoint3d(m_vertices[static_cast<unsigned int>(i)]);
}

OdResult OdDbGeoPolygon::dwgInFields(OdDbDwgFiler* filer) {
  assertWriteEnabled();
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdInt16 version = filer->rdInt16();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  // Older versions are refused as well as newer ones: version 1 is the only layout there is.
  if (version != s_kCurrentVersionNumber)
    return custents::kRefusedVersion;
  const OdInt32 vertexCount = filer->rdInt16();
  const OdGePoint3d center = filer->rdPoint3d();
  const OdGePoint3d startPt = filer->rdPoint3d();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  const OdUInt64 wanted = vertexCount > 0 ? static_cast<OdUInt64>(vertexCount) : 0;
  OdUInt64 available = 0;
  const bool knowsSize = remainingDataBits(filer, available);
  if (knowsSize && wanted * kMinBitsPerPoint > available)
    return eEndOfFile;
  OdGePoint3dArray vertices;
  if (knowsSize)
    vertices.reserve(static_cast<unsigned int>(wanted));
  // A filer that cannot tell its size stops the loop at its first failed read, so the list
  // never grows beyond what the stream holds.
  for (OdUInt64 i = 0; i < wanted && filer->filerStatus() == eOk; ++i)
    vertices.append(filer->rdPoint3d());
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!custents::allFinite(center, startPt) ||
      !std::all_of(vertices.begin(), vertices.end(),
                   [](const OdGePoint3d& vertex) { return custents::allFinite(vertex); }))
    return custents::kDamagedStream;
  m_vertexCount = vertexCount;
  m_center = center;
  m_startPt = startPt;
  m_vertices = vertices;
  return eOk;
}

OdResult OdDbGeoPolygon::dxfInFields(OdDbDxfFiler* filer) {
  return custents::refuseDxfIn(this, filer);
}

// ---------------------------------------------------------------------------------------------
// Drawing and editing

bool OdDbGeoPolygon::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  if (isConsistent())
    custents::drawClosedOutline(m_vertices.getPtr(), m_vertices.size(), worldDraw);
  return true;
}

OdResult OdDbGeoPolygon::subTransformBy(const OdGeMatrix3d& xform) {
  assertWriteEnabled();
  for (OdGePoint3d& vertex : m_vertices)
    vertex.transformBy(xform);
  m_transform = m_transform * xform;
  m_center.transformBy(xform);
  // startPt and the radius vector stay untransformed: a later setValue or SetVertexNub
  // rebuilds from them as they were, which drawings made with the polygon rely on.
  return eOk;
}

OdResult OdDbGeoPolygon::subExplode(OdRxObjectPtrArray& entitySet) const {
  assertReadEnabled();
  const unsigned int count = m_vertices.size();
  if (count < 3)
    return eOk;
  for (unsigned int i = 1; i <= count; ++i)
    custents::appendEdge(m_vertices[i - 1], m_vertices[i % count], this, entitySet);
  return eOk;
}

OdResult OdDbGeoPolygon::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                                           const OdGePoint3d& pickPoint,
                                           const OdGePoint3d& lastPoint,
                                           const OdGeMatrix3d& xWorldToEye,
                                           OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  const OdGsMarker count = static_cast<OdGsMarker>(m_vertices.size());
  if (gsSelectionMark >= 1 && gsSelectionMark <= m_vertexCount && gsSelectionMark <= count &&
      count >= 3) {
    OdDbLinePtr edge = custents::newOutlineLine();
    const unsigned int k = static_cast<unsigned int>(gsSelectionMark);
    // The start point is set twice and the end point never, so the side's line runs from its
    // second vertex to the origin. Required behaviour: snapping on a picked side has always
    // given these points.
    edge->setStartPoint(m_vertices[k - 1]);
    edge->setStartPoint(m_vertices[k % count]);
    return edge->getOsnapPoints(osnapMode, gsSelectionMark, pickPoint, lastPoint, xWorldToEye,
                                snapPoints);
  }
  OdRxObjectPtrArray edges;
  subExplode(edges);
  if (osnapMode == OdDb::kOsModeCen)
    snapPoints.append(m_center);
  custents::appendEdgeSnaps(edges, osnapMode, gsSelectionMark, pickPoint, lastPoint, xWorldToEye,
                            snapPoints);
  return eOk;
}

OdResult OdDbGeoPolygon::subGetGripPoints(OdDbGripDataPtrArray& grips, double /*curViewUnitSize*/,
                                          int /*gripSize*/, const OdGeVector3d& /*curViewDir*/,
                                          int /*bitFlags*/) const {
  assertReadEnabled();
  // Taken first, so a vertex list shorter than the number of sides throws before any grip is
  // added.
  const OdGePoint3dArray points = getPts();
  for (unsigned int i = 0; i < points.size(); ++i) {
    OdDbGripDataPtr grip(new OdDbGripData());
    grip->setGripPoint(points[i]);
    grip->setAppData(gripTag(static_cast<OdIntPtr>(i)));
    grips.append(grip);
  }
  OdDbGripDataPtr centerGrip(new OdDbGripData());
  centerGrip->setGripPoint(m_center);
  centerGrip->setAppData(gripTag(m_vertexCount));
  grips.append(centerGrip);
  return eOk;
}

OdResult OdDbGeoPolygon::subMoveGripPointsAt(const OdDbVoidPtrArray& grips,
                                             const OdGeVector3d& offset, int /*bitFlags*/) {
  assertWriteEnabled();
  for (unsigned int i = 0; i < grips.size(); ++i) {
    const OdIntPtr index = reinterpret_cast<OdIntPtr>(grips.at(i));
    if (index < m_vertexCount) {
      // Only this vertex moves: the polygon stops being regular.
      if (index < 0)
        throw OdError_InvalidIndex();
      m_vertices.at(static_cast<unsigned int>(index)) += offset;
      continue;
    }
    for (OdGePoint3d& vertex : m_vertices)
      vertex += offset;
    m_center += offset;
    m_startPt += offset;
  }
  return eOk;
}

OdResult OdDbGeoPolygon::subGetStretchPoints(OdGePoint3dArray& stretchPoints) const {
  assertReadEnabled();
  stretchPoints.append(getPts());
  return eOk;
}

OdResult OdDbGeoPolygon::subMoveStretchPointsAt(const OdIntArray& indices,
                                                const OdGeVector3d& offset) {
  assertWriteEnabled();
  for (int index : indices) {
    if (index >= 0 && index < m_vertexCount && static_cast<unsigned int>(index) < m_vertices.size())
      m_vertices[static_cast<unsigned int>(index)] += offset;
  }
  return eOk;
}

OdResult OdDbGeoPolygon::subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                                          OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                                          OdGsMarker otherGsMarker) const {
  assertReadEnabled();
  OdRxObjectPtrArray edges;
  subExplode(edges);
  return custents::intersectEdges(edges, other, intType, points, thisGsMarker, otherGsMarker);
}
