#include "OdDbGeoRect.h"

#include "DbPolyline.h"

OdDbGeoRect::OdDbGeoRect(const OdGePoint3d& p1, const OdGePoint3d& p2)
    : custents::GeoRectBody<OdDbGeoRect>(p1, p2) {}

bool OdDbGeoRect::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  if (!OdDbPolyline::desc())
    return true;
  // A temporary polyline at elevation 0 with the default normal: the corners' z is dropped, so
  // a tilted rectangle draws flat. The 3D rectangle is the one that keeps z.
  OdDbPolylinePtr outline = OdDbPolyline::createObject();
  const custents::GeoRectGeometry& rect = geometry();
  for (unsigned int i = 0; i < 4; ++i)
    outline->addVertexAt(i, rect.corners[i].convert2d(), 0.0, -1.0, -1.0);
  outline->setClosed(true);
  outline->worldDraw(worldDraw);
  return true;
}
