#include "GeoRectGeometry.h"

#include "Ge/GeMatrix3d.h"
#include "Ge/GeTol.h"

namespace custents {

namespace {

/// Below this an edge has no direction of its own.
const double kDegenerateEdge = 1e-10;

/// For each dragged corner: the opposite corner, which stays, and the two adjacent corners,
/// which follow along their edges.
struct CornerNeighbours {
  int opposite;
  int adjacentA;
  int adjacentB;
};
const CornerNeighbours kNeighbours[4] = {{2, 3, 1}, {3, 2, 0}, {0, 1, 3}, {1, 0, 2}};

/// The direction across each edge, as (from, to) corner indices, for a stretch of both its ends.
struct EdgeStretch {
  int end0;
  int end1;
  int acrossFrom;
  int acrossTo;
};
// Edge P0-P1 slides along P3->P0, P0-P3 along P1->P0, P1-P2 along P0->P1, P2-P3 along P1->P2.
const EdgeStretch kEdgeStretches[4] = {{0, 1, 3, 0}, {0, 3, 1, 0}, {1, 2, 0, 1}, {2, 3, 1, 2}};

bool isCorner(int index) {
  return index >= 0 && index < 4;
}

} // namespace

int calcCenterPt(const OdGePoint3d* points, int count, OdGePoint3d& center) {
  if (!points || count < 1)
    return 0;
  OdGeVector3d sum;
  for (int i = 0; i < count; ++i)
    sum += points[i].asVector();
  center = OdGePoint3d::kOrigin + sum / count;
  return 1;
}

GeoRectGeometry GeoRectGeometry::fromDiagonal(const OdGePoint3d& p1, const OdGePoint3d& p2) {
  GeoRectGeometry rect;
  rect.corners[0] = p1;
  // The generated corners lie at z = 0 whatever the inputs' z, while the centre keeps their
  // mean z: drawings already written carry such rectangles.
  rect.corners[1] = OdGePoint3d(p2.x, p1.y, 0.0);
  rect.corners[2] = p2;
  rect.corners[3] = OdGePoint3d(p1.x, p2.y, 0.0);
  rect.center = OdGePoint3d((p1.x + p2.x) / 2, (p1.y + p2.y) / 2, (p1.z + p2.z) / 2);
  rect.rotatePt = OdGePoint3d(rect.center.x, rect.center.y + 50.0, rect.center.z);
  return rect;
}

double GeoRectGeometry::lengthEdge() const {
  return corners[0].distanceTo(corners[1]);
}

double GeoRectGeometry::widthEdge() const {
  return corners[0].distanceTo(corners[3]);
}

void GeoRectGeometry::setLengthEdge(double length) {
  OdGeVector3d dir = corners[1] - corners[0];
  if (OdZero(dir.length(), kDegenerateEdge)) {
    dir = corners[3] - corners[0];
    if (OdZero(dir.length(), kDegenerateEdge))
      dir = OdGeVector3d::kYAxis;
    // Negated here but not for the width edge: the two fallbacks differ on purpose, so that a
    // degenerate rectangle grows along +X for its length and +Y for its width.
    dir = -dir.perpVector();
  }
  dir /= dir.length();
  corners[1] = corners[0] + dir * length;
  corners[2] = corners[3] + dir * length;
  recomputeCenter();
}

void GeoRectGeometry::setWidthEdge(double width) {
  OdGeVector3d dir = corners[3] - corners[0];
  if (OdZero(dir.length(), kDegenerateEdge)) {
    dir = corners[1] - corners[0];
    if (OdZero(dir.length(), kDegenerateEdge))
      dir = OdGeVector3d::kXAxis;
    dir = dir.perpVector();
  }
  dir /= dir.length();
  corners[3] = corners[0] + dir * width;
  corners[2] = corners[1] + dir * width;
  recomputeCenter();
}

void GeoRectGeometry::moveCorner(int corner, const OdGeVector3d& offset) {
  if (!isCorner(corner))
    return;
  const CornerNeighbours& n = kNeighbours[corner];
  corners[corner] += offset;
  const OdGeVector3d a = corners[n.adjacentA] - corners[n.opposite];
  const OdGeVector3d b = corners[n.adjacentB] - corners[n.opposite];
  // Only an edge of length exactly 0 has no direction to follow; a tiny one still leads.
  if (a.length() == 0.0 || b.length() == 0.0)
    return;
  const OdGeVector3d unitA = a / a.length();
  const OdGeVector3d unitB = b / b.length();
  corners[n.adjacentA] += unitA * offset.dotProduct(unitA);
  corners[n.adjacentB] += unitB * offset.dotProduct(unitB);
}

void GeoRectGeometry::moveGrip(int grip, const OdGeVector3d& offset) {
  if (grip == 4) {
    for (OdGePoint3d& corner : corners)
      corner += offset;
  } else {
    moveCorner(grip, offset);
  }
  recomputeCenter();
}

void GeoRectGeometry::moveStretchPoints(const OdIntArray& indices, const OdGeVector3d& offset) {
  if (indices.isEmpty() || indices.size() > 2) {
    for (OdGePoint3d& corner : corners)
      corner += offset;
    recomputeCenter();
    return;
  }
  const int first = indices[0];
  OdGeVector3d drag = offset;
  if (indices.size() == 2) {
    const int second = indices[1];
    for (const EdgeStretch& edge : kEdgeStretches) {
      const bool isEdge = (first == edge.end0 && second == edge.end1) ||
                          (first == edge.end1 && second == edge.end0);
      if (!isEdge)
        continue;
      const OdGeVector3d across = corners[edge.acrossTo] - corners[edge.acrossFrom];
      if (!across.isZeroLength()) {
        const OdGeVector3d unit = across / across.length();
        drag = unit * offset.dotProduct(unit);
      }
      break;
    }
  }
  moveCorner(first, drag);
  recomputeCenter();
}

void GeoRectGeometry::transformBy(const OdGeMatrix3d& xform) {
  for (OdGePoint3d& corner : corners)
    corner.transformBy(xform);
  center.transformBy(xform);
}

void GeoRectGeometry::setZToZero() {
  // Tested on the centre alone: a rectangle whose corners have z but whose centre has z = 0 is
  // left as it is, as drawings already written expect.
  if (center.z == 0.0)
    return;
  for (OdGePoint3d& corner : corners)
    corner.z = 0.0;
  center.z = 0.0;
  rotatePt.z = 0.0;
}

void GeoRectGeometry::recomputeCenter() {
  calcCenterPt(corners, 4, center);
}

} // namespace custents
