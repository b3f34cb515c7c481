#ifndef CUSTENTS_GEO_RECT_GEOMETRY_H
#define CUSTENTS_GEO_RECT_GEOMETRY_H

// The corner maths of the survey rectangles, kept apart from the entities so that it can be
// tested without a database: the entities file, draw and explode what this computes.

#include "Ge/GePoint3d.h"
#include "OdArray.h"

class OdGeMatrix3d;

namespace custents {

/// Mean of `count` points into `center`: 1 on success; 0 for a null list or a count below 1,
/// leaving `center` untouched.
int calcCenterPt(const OdGePoint3d* points, int count, OdGePoint3d& center);

/// A rectangle kept as four corners P0..P3 in order around it, plus its centre and the
/// rotation handle. P0-P1 is the "length" edge, P0-P3 the "width" edge. Every edit keeps the
/// opposite corner or edge in place and the shape a rectangle in its own plane.
struct GeoRectGeometry {
  OdGePoint3d corners[4];
  /// Mean of the corners after every edit; after fromDiagonal the midpoint of the diagonal.
  OdGePoint3d center;
  /// The centre raised by 50 along Y when the corners were last set from a diagonal; edits and
  /// transforms leave it where it is.
  OdGePoint3d rotatePt;

  /// The rectangle with diagonal p1-p2 along the X and Y axes. The two corners not given get
  /// z = 0 whatever the inputs' z, while the centre takes the mean z of p1 and p2.
  static GeoRectGeometry fromDiagonal(const OdGePoint3d& p1, const OdGePoint3d& p2);

  /// |P0 - P1|.
  double lengthEdge() const;
  /// |P0 - P3|.
  double widthEdge() const;

  /// Moves P1 and P2 so that the length edge is `length` long (negative flips the rectangle
  /// through P0-P3). A degenerate length edge takes its direction from the width edge, or from
  /// +Y when that is degenerate too, turned by the negated arbitrary-axis perpendicular.
  void setLengthEdge(double length);
  /// Moves P3 and P2 so that the width edge is `width` long. A degenerate width edge takes its
  /// direction from the length edge, or from +X, turned by the arbitrary-axis perpendicular
  /// (not negated).
  void setWidthEdge(double width);

  /// Drags one corner (0..3) by `offset` with the opposite corner fixed; the two adjacent
  /// corners follow by the offset's projection on their edges. Any other index moves nothing.
  /// The centre is not recomputed.
  void moveCorner(int corner, const OdGeVector3d& offset);
  /// One grip of the entity: 0..3 a corner as moveCorner, 4 the whole rectangle, anything else
  /// nothing; then the centre is recomputed.
  void moveGrip(int grip, const OdGeVector3d& offset);
  /// A stretch of the selected corners: none or more than two move the whole rectangle; one
  /// drags that corner; the two ends of an edge slide the edge across itself (the drag's
  /// component along the edge is dropped); any other pair drags the first corner alone.
  void moveStretchPoints(const OdIntArray& indices, const OdGeVector3d& offset);

  /// Corners and centre through the matrix; the rotation handle stays.
  void transformBy(const OdGeMatrix3d& xform);
  /// Flattens corners, centre and rotation handle to z = 0, unless the centre's z is exactly 0.
  void setZToZero();
  void recomputeCenter();
};

} // namespace custents

#endif
