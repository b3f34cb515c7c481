#include "OdDbGeo3dRect.h"

#include "DbLine.h"

OdDbGeo3dRect::OdDbGeo3dRect(const OdGePoint3d& p1, const OdGePoint3d& p2)
    : custents::GeoRectBody<OdDbGeo3dRect>(p1, p2) {}

bool OdDbGeo3dRect::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  const custents::GeoRectGeometry& rect = geometry();
  for (int i = 0; i < 4; ++i) {
    OdDbLinePtr edge = newLine(rect.corners[i], rect.corners[(i + 1) % 4]);
    if (edge.isNull())
      return true;
    edge->worldDraw(worldDraw);
  }
  return true;
}
