#ifndef CUSTENTS_ODDBGEORECT_H
#define CUSTENTS_ODDBGEORECT_H

#include "GeoRectBody.h"

/// A survey rectangle drawn flat: a closed four-vertex polyline through the corners' x and y at
/// elevation 0. It reports its length, width, perimeter and area to the property grid and keeps
/// itself a rectangle while corners, edges or the whole shape are dragged.
class OdDbGeoRect : public custents::GeoRectBody<OdDbGeoRect> {
  ODRX_DECLARE_MEMBERS(OdDbGeoRect);

  /// The format version this class writes and the newest it reads.
  static constexpr OdInt16 s_kCurrentVersionNumber = 1;

  OdDbGeoRect() = default;
  OdDbGeoRect(const OdGePoint3d& p1, const OdGePoint3d& p2);

protected:
  /// The corners' z is not drawn. Nothing is drawn when the polyline class is missing; true
  /// either way.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
};

typedef OdSmartPtr<OdDbGeoRect> OdDbGeoRectPtr;

extern template class custents::GeoRectBody<OdDbGeoRect>;

#endif
