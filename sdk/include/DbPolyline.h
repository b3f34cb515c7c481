#ifndef OD_DB_POLYLINE_H
#define OD_DB_POLYLINE_H

/// The lightweight polyline: a chain of straight and circular segments in one plane.
///
/// Vertices are 2D points in the polyline's plane, the plane with the polyline's normal at
/// height elevation() above the world origin along it; the plane's axes come from the
/// arbitrary-axis rule (OdGeMatrix3d::planeToWorld). Segment i runs from vertex i to vertex
/// i + 1, and a closed polyline has one more segment back from the last vertex to the first.
/// Each vertex carries the segment that starts at it: its bulge (the tangent of a quarter of
/// the arc's sweep; 0 straight, positive counter-clockwise about the normal, 1 a half circle)
/// and its start and end widths.
///
/// The curve parameter runs from 0 at vertex 0 by one per segment: vertex i sits at i, and
/// within an arc the parameter grows in proportion to the angle (so also to the length).
///
/// Vertex access by index returns eInvalidIndex for an index that is not a vertex and changes
/// nothing; addVertexAt cannot fail (an index past the end appends).

#include "DbCurve.h"

class OdDbPolyline : public OdDbCurve {
  ODRX_DECLARE_MEMBERS(OdDbPolyline);

  /// What a segment is, as the SDK reports it.
  enum SegType { kLine, kArc, kCoincident, kPoint, kEmpty };

  OdDbPolyline();

  unsigned int numVerts() const;
  /// Inserts before index (appends when index is numVerts() or more). A negative width takes
  /// the polyline's constant width, or 0 when its widths differ.
  void addVertexAt(unsigned int index, const OdGePoint2d& point, double bulge = 0.0,
                   double startWidth = -1.0, double endWidth = -1.0);
  OdResult removeVertexAt(unsigned int index);
  /// With reuse, keeps the first numVerts vertices (all of them when there are fewer);
  /// without, removes every vertex.
  void reset(bool reuse, unsigned int numVerts);

  /// The vertex in world coordinates.
  OdResult getPointAt(unsigned int index, OdGePoint3d& point) const;
  /// The vertex in the polyline's plane.
  OdResult getPointAt(unsigned int index, OdGePoint2d& point) const;
  OdResult setPointAt(unsigned int index, const OdGePoint2d& point);
  OdResult getBulgeAt(unsigned int index, double& bulge) const;
  /// A bulge that is not a finite number gives eInvalidInput.
  OdResult setBulgeAt(unsigned int index, double bulge);
  OdResult getWidthsAt(unsigned int index, double& startWidth, double& endWidth) const;
  /// A negative or non-finite width gives eInvalidInput.
  OdResult setWidthsAt(unsigned int index, double startWidth, double endWidth);
  /// The kind of segment index: kArc for a bulged one, kLine for a straight one, kCoincident
  /// when its ends coincide, kPoint for the only vertex, kEmpty for no vertices. An index that
  /// is not a segment gives kEmpty.
  SegType segType(unsigned int index) const;

  /// Gives every segment this width at both ends, and new vertices this width by default.
  /// A negative or non-finite width is refused with OdError(eInvalidInput).
  void setConstantWidth(double width);
  /// eOk and the width when every segment has the same width at both ends (or there are no
  /// vertices: the width new ones get); eNotApplicable when the widths differ.
  OdResult getConstantWidth(double& width) const;
  /// True when some segment has a width other than 0.
  bool hasWidth() const;
  bool hasBulges() const;
  bool isOnlyLines() const;

  void setClosed(bool closed);
  /// Whether linetype patterns run continuously over the vertices (kept and filed).
  bool hasPlinegen() const;
  void setPlinegen(bool plinegen);

  double elevation() const;
  void setElevation(double elevation);
  double thickness() const;
  void setThickness(double thickness);
  OdGeVector3d normal() const;
  /// Stores the unit vector; throws OdError(eInvalidInput) for a zero-length normal. The 2D
  /// vertices stay as they are, so the polyline moves into the new plane.
  void setNormal(const OdGeVector3d& normal);

  // OdDbCurve. A polyline without vertices has no parameters or points: eInvalidInput.
  // getClosestPointTo ignores extend (the polyline is not extended).
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
  /// The positive area enclosed: the vertices' polygon plus or minus the circular segment of
  /// each bulged segment. An open polyline counts as closed by a straight segment from its
  /// last vertex to its first (the last vertex's bulge is not used).
  OdResult getArea(double& area) const override;

  /// After the entity's data, the LWPOLYLINE data of the DWG format:
  ///   BS flags: 1 normal, 2 thickness, 4 constant width, 8 elevation, 16 bulges, 32 widths,
  ///             256 plinegen, 512 closed, 1024 vertex ids (read and skipped, never written)
  ///   BD constant width, BD elevation, BD thickness, 3BD normal   (each when flagged)
  ///   BL vertex count, BL bulge count, [BL vertex id count], BL width count (when flagged)
  ///   the vertices as BD pairs (not the delta-coded pairs of drawing files), BD bulges,
  ///   BL vertex ids, BD start and end width pairs.
  /// A width list is written only when the widths are not constant. Reading refuses counts
  /// that the rest of the stream cannot hold before allocating anything, and bulge or width
  /// counts other than 0 or the vertex count (eDwgObjectImproperlyRead).
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Subclass "AcDbPolyline": 90 vertex count, 70 flags (1 closed, 128 plinegen), 43 constant
  /// width (when constant), 38 elevation and 39 thickness (when not 0), per vertex 10/20 and
  /// 40/41 widths (when not constant) and 42 bulge (when not 0), then 210 normal (when not
  /// the Z axis). Reading takes the vertices as they come; 90 is only a hint.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;
  void dxfOutFields(OdDbDxfFiler* filer) const override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// Without widths: the centreline as one polyline through the vertices, closed polylines
  /// back to the first vertex. A bulged segment is cut into equal-angle pieces: 64 to the full
  /// circle (at least one per arc), more when the draw context's curve deviation asks for finer
  /// pieces, at most 1024 per arc. A single vertex is drawn as a dot; no vertices draw nothing.
  ///
  /// When some segment has a width, each segment is drawn on its own: one with a width as a
  /// filled polygon (fill type kOdGiFillAlways, restored to what it was afterwards) between
  /// its two outlines at half the width either side of the centreline, the width changing
  /// evenly from the segment's start width to its end width; a straight segment gives a
  /// quadrilateral, a bulged one the band between two offset arcs, cut into the pieces its
  /// centreline would have. A segment of width 0 at both ends is drawn as its centreline, and
  /// a segment whose ends coincide is not drawn. Joints between segments are not mitred.
  /// Returns true.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// Grip i is vertex i.
  OdResult subGetGripPoints(OdGePoint3dArray& gripPoints) const override;
  /// Moves the vertices by the offset's part in the polyline's plane. An index that is not a
  /// vertex gives eInvalidIndex and moves nothing.
  OdResult subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  OdResult subGetStretchPoints(OdGePoint3dArray& stretchPoints) const override;
  OdResult subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// End: the vertices. Mid: the middle of each segment (on the arc for a bulged one). Cen:
  /// the centre of each bulged segment. Near: the point of the polyline nearest to pickPoint.
  /// Perp: the feet of the perpendiculars from lastPoint that lie on a segment. Always eOk.
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// Moves the plane with the matrix: vertices, elevation and normal follow it. A mirroring
  /// matrix (negative determinant) turns the plane's orientation, so bulges change sign.
  /// Widths scale with the in-plane scale, thickness with the matrix's scale. A matrix that
  /// flattens the plane to a line gives eInvalidInput and changes nothing.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// The box of the vertices and of every arc's extreme points; eInvalidExtents when there
  /// are no vertices.
  OdResult subGetGeomExtents(OdGeExtents3d& extents) const override;
  /// One OdDbLine per straight segment and one OdDbArc per bulged one, in segment order
  /// (a closed polyline's closing segment last), each in the polyline's plane and at its
  /// elevation, with its normal and thickness and with the polyline's properties
  /// (setPropertiesFrom). Widths are lost, as lines and arcs have none. Segments whose ends
  /// coincide give nothing, so fewer than two distinct vertices give nothing. Always eOk.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// One piece per segment, segments whose ends coincide left out.
  bool subGetPieces(OdDbCurvePieceArray& pieces) const override;

private:
  struct Vertex {
    OdGePoint2d point;
    double bulge = 0.0;
    double startWidth = 0.0;
    double endWidth = 0.0;
  };

  unsigned int numSegments() const;
  OdGeMatrix3d planeToWorld() const;
  /// The point with plane coordinates (x, y) at the polyline's elevation, in world terms.
  OdGePoint3d toWorld(const OdGeMatrix3d& planeToWorld, const OdGePoint2d& point) const;
  /// The segment nearest to point (in plane coordinates) and the parameter of its nearest
  /// point; false without vertices.
  bool closestParam(const OdGePoint2d& point, double& param) const;
  OdGePoint2d planePointAtParam(double param) const;
  double segmentLength(unsigned int index) const;
  OdResult moveVertices(const OdIntArray& indices, const OdGeVector3d& offset);
  /// The segments one by one, those with a width as filled polygons (see subWorldDraw).
  void drawWithWidths(OdGiWorldDraw* worldDraw) const;

  OdArray<Vertex> m_vertices;
  bool m_closed = false;
  bool m_plinegen = false;
  double m_constantWidth = 0.0;
  double m_elevation = 0.0;
  double m_thickness = 0.0;
  OdGeVector3d m_normal{0.0, 0.0, 1.0};
};

typedef OdSmartPtr<OdDbPolyline> OdDbPolylinePtr;

#endif
