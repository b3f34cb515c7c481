#ifndef CUSTENTS_ODDBGEOTRIANGLE_H
#define CUSTENTS_ODDBGEOTRIANGLE_H

#include "DbEntity.h"
#include "Ge/GePoint3dArray.h"

/// A survey triangle: three free vertices that report their perimeter and area, drawn as a
/// closed polyline and exploded into three lines. It keeps its centroid for the centre grip
/// and snap, and a rotation handle point that only the commands that build the shape set.
class OdDbGeoTriangle : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbGeoTriangle);

  /// The format version this class writes; a newer one is refused on reading.
  static constexpr OdInt16 s_kCurrentVersionNumber = 1;

  /// All points at the origin.
  OdDbGeoTriangle();
  /// The triangle p1, p2, p3 with its centroid, and the rotation handle 50 units above it.
  OdDbGeoTriangle(const OdGePoint3d& p1, const OdGePoint3d& p2, const OdGePoint3d& p3);

  /// Makes the triangle equilateral with centre `center` and its last vertex at `through`;
  /// the rotation handle stays where it was (calcRotatePt moves it).
  void setPts(const OdGePoint3d& center, const OdGePoint3d& through);
  /// Puts the rotation handle 50 units along +Y from the centre.
  void calcRotatePt();

  /// V0, V1, V2.
  OdGePoint3dArray getPts() const;
  OdGePoint3d getCenterPt() const;
  OdGePoint3d getRotatePt() const;
  /// The perimeter.
  double girth() const;
  /// The area (Heron's formula); 0 for collinear vertices.
  double area() const;

  /// After the entity's data: a 16-bit version (1), the three vertices, the centroid and the
  /// rotation handle. A newer version is refused with result 1 after the entity's data; a
  /// stream that ends early gives the filer's error and leaves the triangle's own fields as they
  /// were.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Refuses with result 1 and reads nothing, as all the module's shapes do: the triangle
  /// travels in DWG form only.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// A closed polyline through the vertices' x and y. Returns true.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// Vertices and centroid follow the matrix; the rotation handle stays.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// Three lines V0-V1, V1-V2, V2-V0 with the triangle's properties.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// The snaps of the three exploded lines, then the centroid for the centre mode.
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// Grips 0..2 at the vertices, grip 3 at the centroid; the grip's index is its application
  /// data.
  OdResult subGetGripPoints(OdDbGripDataPtrArray& grips, double curViewUnitSize, int gripSize,
                            const OdGeVector3d& curViewDir, int bitFlags) const override;
  /// Grips 0..2 move their vertex, grip 3 the whole triangle; other indices move nothing. The
  /// centroid follows after each grip.
  OdResult subMoveGripPointsAt(const OdDbVoidPtrArray& grips, const OdGeVector3d& offset,
                               int bitFlags) override;
  /// The three vertices.
  OdResult subGetStretchPoints(OdGePoint3dArray& stretchPoints) const override;
  /// Moves each listed vertex; indices outside 0..2 are ignored.
  OdResult subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// The intersections of the three exploded lines with `other`.
  OdResult subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                            OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                            OdGsMarker otherGsMarker) const override;

private:
  void recomputeCenter();

  OdGePoint3d m_vertices[3];
  OdGePoint3d m_center;
  OdGePoint3d m_rotatePt;
};

typedef OdSmartPtr<OdDbGeoTriangle> OdDbGeoTrianglePtr;

#endif
