#include "GeoPolygonOutline.h"

#include "Ge/GePoint2d.h"
#include "OdError.h"
#include "common/NotLoaded.h"

namespace custents {

OdDbLinePtr newOutlineLine() { return createStandardEntity<OdDbLine>(OD_T("Line")); }

OdDbPolylinePtr closedOutline(const OdGePoint3d* points, unsigned int count) {
  if (!OdDbPolyline::desc())
    return OdDbPolylinePtr();
  OdDbPolylinePtr outline = OdDbPolyline::createObject();
  for (unsigned int i = 0; i < count; ++i)
    outline->addVertexAt(i, OdGePoint2d(points[i].x, points[i].y), 0.0, -1.0, -1.0);
  outline->setClosed(true);
  return outline;
}

void drawClosedOutline(const OdGePoint3d* points, unsigned int count, OdGiWorldDraw* worldDraw) {
  OdDbPolylinePtr outline = closedOutline(points, count);
  if (!outline.isNull())
    outline->worldDraw(worldDraw);
}

void appendEdge(const OdGePoint3d& from, const OdGePoint3d& to, const OdDbEntity* source,
                OdRxObjectPtrArray& entitySet) {
  OdDbLinePtr edge = newOutlineLine();
  edge->setStartPoint(from);
  edge->setEndPoint(to);
  edge->setPropertiesFrom(source);
  entitySet.append(OdRxObjectPtr(edge.get()));
}

void appendEdgeSnaps(const OdRxObjectPtrArray& edges, OdDb::OsnapMode osnapMode,
                     OdGsMarker gsSelectionMark, const OdGePoint3d& pickPoint,
                     const OdGePoint3d& lastPoint, const OdGeMatrix3d& xWorldToEye,
                     OdGePoint3dArray& snapPoints) {
  for (const OdRxObjectPtr& object : edges) {
    OdDbEntityPtr edge = OdDbEntity::cast(object.get());
    if (!edge.isNull())
      edge->getOsnapPoints(osnapMode, gsSelectionMark, pickPoint, lastPoint, xWorldToEye,
                           snapPoints);
  }
}

OdResult intersectEdges(const OdRxObjectPtrArray& edges, const OdDbEntity* other,
                        OdDb::Intersect intType, OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                        OdGsMarker otherGsMarker) {
  for (const OdRxObjectPtr& object : edges) {
    OdDbEntityPtr edge = OdDbEntity::cast(object.get());
    if (edge.isNull())
      continue;
    const OdResult result =
        edge->intersectWith(other, intType, points, thisGsMarker, otherGsMarker);
    if (result != eOk)
      return result;
  }
  return eOk;
}

} // namespace custents
