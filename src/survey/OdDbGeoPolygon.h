#ifndef CUSTENTS_ODDBGEOPOLYGON_H
#define CUSTENTS_ODDBGEOPOLYGON_H

#include "DbEntity.h"
#include "Ge/GePoint3dArray.h"

/// A survey polygon: a regular polygon built from a centre, one vertex and a number of sides,
/// drawn as a closed polyline and exploded into lines. Once built its vertices are kept as
/// they are: dragging one vertex makes the polygon irregular, and transforms move the vertices
/// and the centre but not the construction values (startPt, radiusVector) that a rebuild
/// starts from.
class OdDbGeoPolygon : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbGeoPolygon);

  /// The format version this class writes; any other version is refused on reading.
  static constexpr OdInt16 s_kCurrentVersionNumber = 1;
  /// The most sides a polygon can have: the count is filed as a 16-bit integer.
  static constexpr OdInt32 kMaxVertexCount = 32767;

  /// No sides and no vertices, everything at the origin.
  OdDbGeoPolygon();
  /// As the default, centred on `center`.
  explicit OdDbGeoPolygon(const OdGePoint3d& center);

  /// Sets the centre and the start vertex to `point` and the number of sides to `sideCount`,
  /// without rebuilding the vertices (setValue does). Throws OdError(eInvalidInput), changing
  /// nothing, for a count outside the 16-bit range that drawings can hold.
  void init(const OdGePoint3d& point, OdInt32 sideCount);
  /// Rebuilds the vertices counter-clockwise from `startPt` (vertex 0) about the centre.
  void setValue(const OdGePoint3d& startPt);
  /// Rebuilds the polygon with `sideCount` sides (truncated toward zero) from the radius
  /// vector as the last construction left it; fewer than 1 side leaves no vertices. Throws
  /// OdError(eInvalidInput), changing nothing, for a value that is not a number or whose
  /// truncation lies outside the 16-bit range.
  void SetVertexNub(double sideCount);
  /// The number of sides.
  double GetVertexNub() const;
  /// The central angle in degrees, 360 / sides. Also brings the stored step angle up to date
  /// with the number of sides.
  double GetAngel() const;

  /// The first GetVertexNub() vertices; throws OdError_InvalidIndex when the vertex list is
  /// shorter.
  OdGePoint3dArray getPts() const;
  /// The vertex list as kept, whatever the number of sides says.
  OdGePoint3dArray getVertexList() const;
  OdGePoint3d getCenterPt() const;
  OdGePoint3d getStartPt() const;
  /// The vector from the centre to the vertex the next construction starts at.
  OdGeVector3d getRadiusVector() const;
  /// The product of all transforms applied to the polygon.
  OdGeMatrix3d getTransform() const;

  /// The enclosed area of the vertices' outline in the XY plane. When the vertex list does
  /// not match the number of sides the polygon has no outline: eOk and `area` untouched.
  virtual OdResult getArea(double& area) const;

  /// After the entity's data: a 16-bit version (1), a 16-bit vertex count, the centre, the
  /// start vertex and the vertices. Any version other than 1 is refused with result 1 after
  /// the entity's data. A count that the rest of the stream cannot hold is refused before
  /// anything is allocated; a stream that ends early gives the filer's error. In both cases
  /// the polygon's own fields stay as they were.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Refuses with result 1 and reads nothing, as all the module's shapes do: the polygon
  /// travels in DWG form only.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// A closed polyline through the vertices' x and y; nothing when the vertex list does not
  /// match the number of sides. Returns true.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// The vertices and the centre follow the matrix, which is also multiplied into the kept
  /// transform; startPt and the radius vector stay.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// One line per side, V(i-1) to V(i), the closing side last, with the polygon's properties;
  /// nothing for fewer than 3 vertices.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// A gs marker k in 1..sides names side k; otherwise the snaps of all exploded sides, the
  /// centre first for the centre mode.
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// Grip k at vertex k for k below the number of sides, then the centre grip with the
  /// number of sides as its application data.
  OdResult subGetGripPoints(OdDbGripDataPtrArray& grips, double curViewUnitSize, int gripSize,
                            const OdGeVector3d& curViewDir, int bitFlags) const override;
  /// A vertex grip moves its vertex alone; the centre grip (or any index from the number of
  /// sides on) moves the whole polygon with its centre and start vertex.
  OdResult subMoveGripPointsAt(const OdDbVoidPtrArray& grips, const OdGeVector3d& offset,
                               int bitFlags) override;
  /// The first GetVertexNub() vertices.
  OdResult subGetStretchPoints(OdGePoint3dArray& stretchPoints) const override;
  /// Moves each listed vertex; indices that are not vertices are ignored and the centre
  /// stays.
  OdResult subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// The intersections of the exploded sides with `other`.
  OdResult subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                            OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                            OdGsMarker otherGsMarker) const override;

private:
  /// Whether the vertex list holds exactly the number of sides, the state in which the
  /// polygon draws and measures itself.
  bool isConsistent() const;
  void rebuildVertices();

  OdGePoint3d m_startPt;
  OdGePoint3d m_center;
  OdGePoint3dArray m_vertices;
  OdInt32 m_vertexCount = 0;
  /// Brought up to date whenever the angle is asked for, also on a polygon opened for read.
  mutable double m_angleStep = 0.0;
  OdGeVector3d m_radiusVector;
  OdGeMatrix3d m_transform;
};

typedef OdSmartPtr<OdDbGeoPolygon> OdDbGeoPolygonPtr;

#endif
