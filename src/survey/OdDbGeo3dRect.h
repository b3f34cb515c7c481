#ifndef CUSTENTS_ODDBGEO3DRECT_H
#define CUSTENTS_ODDBGEO3DRECT_H

#include "GeoRectBody.h"

/// The rectangle drawn edge by edge with the corners' full 3D coordinates, so that one tilted
/// out of the XY plane shows as it is. Everything else is the flat rectangle's behaviour.
class OdDbGeo3dRect : public custents::GeoRectBody<OdDbGeo3dRect> {
  ODRX_DECLARE_MEMBERS(OdDbGeo3dRect);

  /// The format version this class writes and the newest it reads.
  static constexpr OdInt16 s_kCurrentVersionNumber = 1;

  OdDbGeo3dRect() = default;
  OdDbGeo3dRect(const OdGePoint3d& p1, const OdGePoint3d& p2);

protected:
  /// Four lines P0-P1, P1-P2, P2-P3, P3-P0 in that order. Nothing is drawn when the line class
  /// is missing; true either way.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
};

typedef OdSmartPtr<OdDbGeo3dRect> OdDbGeo3dRectPtr;

extern template class custents::GeoRectBody<OdDbGeo3dRect>;

#endif
