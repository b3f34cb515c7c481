#ifndef OD_DB_LINE_H
#define OD_DB_LINE_H

/// A straight segment between two world points. Its normal and thickness only matter for
/// extrusion; they are kept and filed but the segment is drawn without its extrusion.
///
/// The curve parameter is the distance from the start point: 0 at the start, the length at
/// the end.
///
/// Grips, by index: 0 the start, 1 the midpoint, 2 the end. Moving the midpoint moves the
/// whole line (once, even when an end is moved along with it). Stretch points: 0 the start,
/// 1 the end.

#include "DbCurve.h"

class OdDbLine : public OdDbCurve {
  ODRX_DECLARE_MEMBERS(OdDbLine);

  OdDbLine();

  OdGePoint3d startPoint() const;
  void setStartPoint(const OdGePoint3d& point);
  OdGePoint3d endPoint() const;
  void setEndPoint(const OdGePoint3d& point);

  double thickness() const;
  void setThickness(double thickness);

  OdGeVector3d normal() const;
  /// Stores the unit vector; throws OdError(eInvalidInput) for a zero-length normal, which
  /// has no plane.
  void setNormal(const OdGeVector3d& normal);

  // OdDbCurve. A line is never closed; getClosestPointTo with extend uses the infinite line.
  bool isClosed() const override;
  OdResult getStartParam(double& startParam) const override;
  OdResult getEndParam(double& endParam) const override;
  OdResult getStartPoint(OdGePoint3d& startPoint) const override;
  OdResult getEndPoint(OdGePoint3d& endPoint) const override;
  OdResult getPointAtParam(double param, OdGePoint3d& pointOnCurve) const override;
  OdResult getParamAtPoint(const OdGePoint3d& pointOnCurve, double& param) const override;
  OdResult getDistAtParam(double param, double& dist) const override;
  OdResult getParamAtDist(double dist, double& param) const override;
  OdResult getClosestPointTo(const OdGePoint3d& givenPoint, OdGePoint3d& pointOnCurve,
                             bool extend = false) const override;
  /// A line encloses nothing: eOk with area 0.
  OdResult getArea(double& area) const override;

  /// After the entity's data: 3BD start, 3BD end, BD thickness, 3BD normal.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Subclass "AcDbLine": 39 thickness (when not 0), 10 start, 11 end, 210 normal (when not
  /// the Z axis). Reading accepts the groups in any order after the marker.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;
  void dxfOutFields(OdDbDxfFiler* filer) const override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// One two-point polyline; returns true (nothing depends on the view).
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  OdResult subGetGripPoints(OdGePoint3dArray& gripPoints) const override;
  /// An index outside 0..2 gives eInvalidIndex and moves nothing.
  OdResult subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  OdResult subGetStretchPoints(OdGePoint3dArray& stretchPoints) const override;
  /// An index outside 0..1 gives eInvalidIndex and moves nothing.
  OdResult subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// End: both ends. Mid: the midpoint. Near: the point of the segment nearest to pickPoint.
  /// Perp: the foot of the perpendicular from lastPoint, only when it lies on the segment.
  /// Other modes add nothing. Always eOk.
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// Points and normal through the matrix, thickness times the matrix's scale. A matrix that
  /// flattens the normal to nothing gives eInvalidInput and changes nothing.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// A line is a standard entity already: eNotApplicable.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// The box of the two end points.
  OdResult subGetGeomExtents(OdGeExtents3d& extents) const override;
  /// One line piece, which the OdDb::Intersect modes extend.
  bool subGetPieces(OdDbCurvePieceArray& pieces) const override;

private:
  OdGePoint3d m_start;
  OdGePoint3d m_end;
  double m_thickness = 0.0;
  OdGeVector3d m_normal{0.0, 0.0, 1.0};
};

typedef OdSmartPtr<OdDbLine> OdDbLinePtr;

#endif
