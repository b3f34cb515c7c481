#ifndef OD_DB_POINT_H
#define OD_DB_POINT_H

/// A single location in the drawing: survey marks, node snaps, insertion references.
///
/// It is drawn as a zero-length polyline (the position twice), which every sink shows as a
/// dot and which the proxy-graphics metafile carries as an ordinary polyline; display styles
/// (PDMODE markers) are not drawn. With a thickness it is drawn as the segment from the
/// position along the normal by the thickness instead, as an extruded point looks.
///
/// ecsRotation is the angle of the point's own X axis in its plane, measured from the X axis
/// the arbitrary-axis rule gives that plane; transforms keep it pointing where it pointed.

#include "DbEntity.h"

class OdDbPoint : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbPoint);

  OdDbPoint();
  explicit OdDbPoint(const OdGePoint3d& position);

  OdGePoint3d position() const;
  void setPosition(const OdGePoint3d& position);

  double thickness() const;
  void setThickness(double thickness);

  OdGeVector3d normal() const;
  /// Stores the unit vector; throws OdError(eInvalidInput) for a zero-length normal.
  void setNormal(const OdGeVector3d& normal);

  /// In radians.
  double ecsRotation() const;
  void setEcsRotation(double rotation);

  /// After the entity's data: 3BD position, BD thickness, 3BD normal, BD ECS rotation.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Subclass "AcDbPoint": 10 position, 39 thickness (when not 0), 210 normal (when not the
  /// Z axis), 50 ECS rotation in degrees (when not 0).
  OdResult dxfInFields(OdDbDxfFiler* filer) override;
  void dxfOutFields(OdDbDxfFiler* filer) const override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// Returns true (nothing depends on the view).
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// One grip: the position.
  OdResult subGetGripPoints(OdGePoint3dArray& gripPoints) const override;
  /// An index other than 0 gives eInvalidIndex and moves nothing.
  OdResult subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// Node: the position. Other modes add nothing. Always eOk.
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// Position, normal and ECS rotation through the matrix, thickness times its scale. A
  /// matrix that flattens the normal to nothing gives eInvalidInput and changes nothing.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// A point is a standard entity already: eNotApplicable.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// The position, and the extruded position when there is a thickness.
  OdResult subGetGeomExtents(OdGeExtents3d& extents) const override;

private:
  OdGePoint3d m_position;
  double m_thickness = 0.0;
  OdGeVector3d m_normal{0.0, 0.0, 1.0};
  double m_ecsRotation = 0.0;
};

typedef OdSmartPtr<OdDbPoint> OdDbPointPtr;

#endif
