#ifndef OD_DB_ARC_H
#define OD_DB_ARC_H

/// A circular arc: part of the circle of radius() about center() in the plane through the
/// centre with normal(). The angles are radians measured counter-clockwise about the normal
/// from the X axis that the arbitrary-axis rule gives that plane (OdGeMatrix3d::planeToWorld),
/// and the arc runs counter-clockwise from startAngle() to endAngle(). Equal angles make a
/// full turn. The thickness only matters for extrusion; it is kept, filed and scaled but not
/// drawn (as for lines).
///
/// A new arc has radius 0, which is no shape: it draws nothing and its filed data is refused
/// on reading, so give it a radius before use.
///
/// The curve parameter is the angle: getStartParam() is startAngle(), getEndParam() is
/// startAngle() plus the sweep (so larger than endAngle() when the arc passes angle 0).
///
/// Grips, by index: 0 the start point, 1 the midpoint of the arc, 2 the end point, 3 the
/// centre. Moving the centre moves the whole arc (once, whatever else moves with it); moving
/// the others refits the arc through the start, mid and end points as moved. Stretch points:
/// 0 the start point, 1 the end point; moving one end keeps the other and the sweep. Apart
/// from the centre grip, only the offset's part in the arc's plane moves anything, so the arc
/// stays in its plane.

#include "DbCurve.h"
#include "DbFiledPlanePoint.h"

class OdDbArc : public OdDbCurve {
  ODRX_DECLARE_MEMBERS(OdDbArc);

  OdDbArc();

  OdGePoint3d center() const;
  void setCenter(const OdGePoint3d& center);

  double radius() const;
  /// Throws OdError(eInvalidInput) for a radius that is not a positive finite number.
  void setRadius(double radius);

  /// In [0, 2π).
  double startAngle() const;
  /// Stored reduced to [0, 2π); throws OdError(eInvalidInput) for a non-finite angle.
  void setStartAngle(double angle);
  /// In [0, 2π).
  double endAngle() const;
  /// Stored reduced to [0, 2π); throws OdError(eInvalidInput) for a non-finite angle.
  void setEndAngle(double angle);

  OdGeVector3d normal() const;
  /// Stores the unit vector; throws OdError(eInvalidInput) for a zero-length normal. The
  /// centre and angles stay, so the arc turns into the new plane about its centre.
  void setNormal(const OdGeVector3d& normal);

  double thickness() const;
  void setThickness(double thickness);

  // OdDbCurve. An arc is never closed, not even a full turn. getClosestPointTo with extend
  // uses the whole circle. getArea is the area between the arc and its chord.
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
  OdResult getArea(double& area) const override;

  /// After the entity's data: 3BD centre (in the arc's plane coordinates, as drawing files
  /// keep it), BD radius, BD thickness, 3BD normal, BD start angle, BD end angle. Reading
  /// refuses non-finite values, a zero normal and a radius that is not positive
  /// (eInvalidInput), leaving the arc as it was.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Subclass "AcDbCircle": 10 centre (plane coordinates), 40 radius, 39 thickness (when not
  /// 0), 210 normal (when not the Z axis); then subclass "AcDbArc": 50 start angle, 51 end
  /// angle, in degrees. Reading accepts the groups of each subclass in any order and refuses
  /// what dwgInFields refuses.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;
  void dxfOutFields(OdDbDxfFiler* filer) const override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// One circular arc (nothing for radius 0); returns true (nothing depends on the view).
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  OdResult subGetGripPoints(OdGePoint3dArray& gripPoints) const override;
  /// An index outside 0..3 gives eInvalidIndex; start, mid and end points moved onto one line
  /// (or onto one point) have no arc and give eInvalidInput. Either way nothing moves.
  OdResult subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  OdResult subGetStretchPoints(OdGePoint3dArray& stretchPoints) const override;
  /// Both ends, or one end of a full turn, move the whole arc. An index outside 0..1 gives
  /// eInvalidIndex, ends moved onto each other give eInvalidInput; nothing moves then.
  OdResult subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// End: both ends. Mid: the midpoint of the arc. Cen: the centre. Near: the point of the arc
  /// nearest to pickPoint. Quad: the points at 0, 90, 180 and 270 degrees that the arc passes.
  /// Perp: the points of the arc on the line from the centre through lastPoint. Tan: the
  /// points where lines from lastPoint touch the arc. Other modes add nothing. Always eOk.
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// Matrices that keep circles circular (rotations, translations, uniform scales, mirrors)
  /// carry centre, normal and ends through; the radius and thickness scale. A mirror keeps
  /// the normal's image and swaps the ends, so the arc covers exactly the mirrored points.
  /// Any other matrix would make an elliptical arc and gives eNotApplicable, changing nothing.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// An arc is a standard entity already: eNotApplicable.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// The ends and the points of the arc furthest along each world axis; the centre alone for
  /// radius 0.
  OdResult subGetGeomExtents(OdGeExtents3d& extents) const override;
  /// One arc piece; none for radius 0.
  bool subGetPieces(OdDbCurvePieceArray& pieces) const override;

private:
  /// The counter-clockwise angle from start to end, in (0, 2π].
  double sweep() const;
  OdGePoint3d pointAtAngle(double angle) const;
  /// Replaces centre, radius and angles from plane coordinates (elevation kept).
  void setFromPlane(const OdGePoint2d& center, double radius, double startAngle, double endAngle);
  OdGePoint3d m_center;
  OdDbFiledPlanePoint m_filedCenter;
  double m_radius = 0.0;
  double m_startAngle = 0.0;
  double m_endAngle = 0.0;
  OdGeVector3d m_normal{0.0, 0.0, 1.0};
  double m_thickness = 0.0;
};

typedef OdSmartPtr<OdDbArc> OdDbArcPtr;

#endif
