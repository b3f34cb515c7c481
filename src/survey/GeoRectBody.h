#ifndef CUSTENTS_GEO_RECT_BODY_H
#define CUSTENTS_GEO_RECT_BODY_H

// The code that the flat and the 3D rectangle share: fields, editing, filing, explode, snaps,
// grips and stretches. The two classes differ only in how they draw and in their identity, so
// each derives from this body with itself as `Derived` and adds its drawing.

#include "DbEntity.h"
#include "GeoRectGeometry.h"

class OdDbLine;

namespace custents {

template <class Derived> class GeoRectBody : public OdDbEntity {
public:
  /// The corners as P0..P3 in order, from the diagonal p1-p2 (see GeoRectGeometry).
  void setPts(const OdGePoint3d& p1, const OdGePoint3d& p2);
  /// The length edge |P0 - P1|: the grid's "长".
  double width() const;
  /// The width edge |P0 - P3|: the grid's "宽".
  double height() const;
  double area() const;
  /// Resizes the length edge, keeping P0-P3 in place.
  void setWidth(double length);
  /// Resizes the width edge, keeping P0-P1 in place.
  void setHeight(double width);
  OdGePoint3d getCenterPt() const;
  /// P0, P1, P2, P3.
  OdGePoint3dArray getPts() const;
  /// The rotation handle as last set by setPts; transforms and edits leave it.
  OdGePoint3d getRotatePt() const;
  /// The product of every matrix applied by transformBy; kept in memory only, never filed.
  OdGeMatrix3d accumulatedTransform() const;
  /// Flattens the rectangle to z = 0 unless its centre lies at z = 0 already.
  void setZCoor2Zero();

  /// After the entity's data: BS version, then P0..P3, centre and rotation handle as 3BD.
  /// A version above the class's own is refused with the module's refusal result and nothing
  /// more is read; a short stream gives the filer's error and leaves the rectangle as it was.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Reads nothing and refuses: the rectangle travels in DWG form only.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;

protected:
  GeoRectBody() = default;
  GeoRectBody(const OdGePoint3d& p1, const OdGePoint3d& p2);

  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// Corners and centre through the matrix; the rotation handle stays. Always eOk.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// Four lines P0-P1, P1-P2, P2-P3, P3-P0 with the rectangle's properties. Throws OdError
  /// when the line class is not loaded.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// The snaps of the exploded edges; for the centre mode the centre comes first.
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// P0..P3 with application data 0..3, then the centre with 4.
  OdResult subGetGripPoints(OdDbGripDataPtrArray& grips, double curViewUnitSize, int gripSize,
                            const OdGeVector3d& curViewDir, int bitFlags) const override;
  /// Each grip's application data picks what moves (see GeoRectGeometry::moveGrip).
  OdResult subMoveGripPointsAt(const OdDbVoidPtrArray& grips, const OdGeVector3d& offset,
                               int bitFlags) override;
  /// P0..P3.
  OdResult subGetStretchPoints(OdGePoint3dArray& stretchPoints) const override;
  OdResult subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// The intersections of the exploded edges with `other`; the result of the first edge whose
  /// intersection fails, after every edge has added its points.
  OdResult subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                            OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                            OdGsMarker otherGsMarker) const override;

  /// A free-standing line from `from` to `to`; null when the line class is not loaded.
  static OdSmartPtr<OdDbLine> newLine(const OdGePoint3d& from, const OdGePoint3d& to);
  const GeoRectGeometry& geometry() const { return m_rect; }

private:
  OdGeMatrix3d m_transform;
  GeoRectGeometry m_rect;
};

} // namespace custents

#endif
