// The rectangle's corner maths, without any entity or database.

#include "survey/GeoRectGeometry.h"

#include "Ge/GeMatrix3d.h"

#include "common/EntityTestSupport.h"

#include <cmath>

namespace {

using custents::GeoRectGeometry;

void expectPoint(const OdGePoint3d& actual, const OdGePoint3d& expected) {
  EXPECT_TRUE(enttest::samePoint(actual, expected));
}

void expectCorners(const GeoRectGeometry& rect, const OdGePoint3d (&expected)[4]) {
  for (int i = 0; i < 4; ++i)
    EXPECT_TRUE(enttest::samePoint(rect.corners[i], expected[i])) << "corner " << i;
}

/// 10 long along X, 4 wide along Y, P0 at (1, 2).
GeoRectGeometry axisAligned() {
  return GeoRectGeometry::fromDiagonal(OdGePoint3d(1, 2, 0), OdGePoint3d(11, 6, 0));
}

TEST(GeoRectGeometry, DiagonalGivesCornersInOrderWithGeneratedCornersAtZeroHeight) {
  const GeoRectGeometry rect =
      GeoRectGeometry::fromDiagonal(OdGePoint3d(1, 2, 4), OdGePoint3d(5, 8, 10));
  expectCorners(rect, {{1, 2, 4}, {5, 2, 0}, {5, 8, 10}, {1, 8, 0}});
  // The centre takes the mean z of the two given points, not of the four corners.
  expectPoint(rect.center, OdGePoint3d(3, 5, 7));
  expectPoint(rect.rotatePt, OdGePoint3d(3, 55, 7));
  EXPECT_DOUBLE_EQ(rect.lengthEdge(), std::sqrt(16.0 + 16.0));
  EXPECT_DOUBLE_EQ(rect.widthEdge(), std::sqrt(36.0 + 16.0));
}

TEST(GeoRectGeometry, ResizingKeepsTheOppositeEdge) {
  GeoRectGeometry rect = axisAligned();
  rect.setLengthEdge(3);
  expectCorners(rect, {{1, 2, 0}, {4, 2, 0}, {4, 6, 0}, {1, 6, 0}});
  expectPoint(rect.center, OdGePoint3d(2.5, 4, 0));
  rect.setWidthEdge(1);
  expectCorners(rect, {{1, 2, 0}, {4, 2, 0}, {4, 3, 0}, {1, 3, 0}});
  // A negative length flips the rectangle through P0-P3.
  rect.setLengthEdge(-2);
  expectCorners(rect, {{1, 2, 0}, {-1, 2, 0}, {-1, 3, 0}, {1, 3, 0}});
  EXPECT_DOUBLE_EQ(rect.lengthEdge(), 2);
  // The rotation handle is never moved by edits.
  expectPoint(rect.rotatePt, OdGePoint3d(6, 54, 0));
  // Corners running clockwise keep their own directions.
  GeoRectGeometry clockwise =
      GeoRectGeometry::fromDiagonal(OdGePoint3d(0, 0, 0), OdGePoint3d(10, -4, 0));
  clockwise.setLengthEdge(3);
  clockwise.setWidthEdge(2);
  expectCorners(clockwise, {{0, 0, 0}, {3, 0, 0}, {3, -2, 0}, {0, -2, 0}});
}

TEST(GeoRectGeometry, DegenerateEdgesTakeTheirFallbackDirections) {
  struct Case {
    const char* name;
    OdGePoint3d p1, p2; // the diagonal
    bool resizeLength;
    OdGePoint3d expected[4];
  };
  const Case cases[] = {
      // All corners equal: the length goes along -perp(+Y) = +X, the width along perp(+X) = +Y.
      {"point, length", {1, 1, 0}, {1, 1, 0}, true, {{1, 1, 0}, {3, 1, 0}, {3, 1, 0}, {1, 1, 0}}},
      {"point, width", {1, 1, 0}, {1, 1, 0}, false, {{1, 1, 0}, {1, 1, 0}, {1, 3, 0}, {1, 3, 0}}},
      // A zero length edge turns the width edge's direction (+Y) by -perp: +X.
      {"flat, Y", {0, 0, 0}, {0, 5, 0}, true, {{0, 0, 0}, {2, 0, 0}, {2, 5, 0}, {0, 5, 0}}},
      // A zero width edge turns the length edge's direction (-X) by perp: -Y.
      {"flat, -X", {0, 0, 0}, {-4, 0, 0}, false, {{0, 0, 0}, {-4, 0, 0}, {-4, -2, 0}, {0, -2, 0}}},
      // Edges shorter than 1e-10 count as degenerate.
      {"tiny length", {0, 0, 0}, {1e-11, 3, 0}, true, {{0, 0, 0}, {2, 0, 0}, {2, 3, 0}, {0, 3, 0}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    GeoRectGeometry rect = GeoRectGeometry::fromDiagonal(c.p1, c.p2);
    if (c.resizeLength)
      rect.setLengthEdge(2);
    else
      rect.setWidthEdge(2);
    expectCorners(rect, c.expected);
  }
}

TEST(GeoRectGeometry, GripsAndStretchPointsMoveTheCornersEachTheirOwnWay) {
  struct Case {
    const char* name;
    bool grip; // the grip of the first index, or the stretch points of all
    OdIntArray indices;
    OdGePoint3d expected[4];
  };
  // Corners (1,2) (11,2) (11,6) (1,6), moved by (1, -1); the centre is their mean throughout.
  const Case cases[] = {
      // A corner grip keeps the opposite corner; the centre grip moves all; others nothing.
      {"grip P0", true, {0}, {{2, 1, 0}, {11, 1, 0}, {11, 6, 0}, {2, 6, 0}}},
      {"grip P1", true, {1}, {{1, 1, 0}, {12, 1, 0}, {12, 6, 0}, {1, 6, 0}}},
      {"grip P2", true, {2}, {{1, 2, 0}, {12, 2, 0}, {12, 5, 0}, {1, 5, 0}}},
      {"grip P3", true, {3}, {{2, 2, 0}, {11, 2, 0}, {11, 5, 0}, {2, 5, 0}}},
      {"centre grip", true, {4}, {{2, 1, 0}, {12, 1, 0}, {12, 5, 0}, {2, 5, 0}}},
      {"grip -1", true, {-1}, {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}}},
      {"grip 5", true, {5}, {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}}},
      // No corner or more than two: everything moves.
      {"none selected", false, {}, {{2, 1, 0}, {12, 1, 0}, {12, 5, 0}, {2, 5, 0}}},
      {"three selected", false, {0, 1, 2}, {{2, 1, 0}, {12, 1, 0}, {12, 5, 0}, {2, 5, 0}}},
      {"one corner", false, {2}, {{1, 2, 0}, {12, 2, 0}, {12, 5, 0}, {1, 5, 0}}},
      {"one index past the corners", false, {4}, {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}}},
      // Both ends of an edge: the edge slides across itself, the sideways part is dropped.
      {"edge P0-P1", false, {0, 1}, {{1, 1, 0}, {11, 1, 0}, {11, 6, 0}, {1, 6, 0}}},
      {"edge P1-P0", false, {1, 0}, {{1, 1, 0}, {11, 1, 0}, {11, 6, 0}, {1, 6, 0}}},
      {"edge P3-P0", false, {3, 0}, {{2, 2, 0}, {11, 2, 0}, {11, 6, 0}, {2, 6, 0}}},
      {"edge P1-P2", false, {1, 2}, {{1, 2, 0}, {12, 2, 0}, {12, 6, 0}, {1, 6, 0}}},
      {"edge P2-P3", false, {2, 3}, {{1, 2, 0}, {11, 2, 0}, {11, 5, 0}, {1, 5, 0}}},
      // A diagonal or a repeated index drags the first corner by the full offset.
      {"diagonal", false, {0, 2}, {{2, 1, 0}, {11, 1, 0}, {11, 6, 0}, {2, 6, 0}}},
      {"repeated", false, {2, 2}, {{1, 2, 0}, {12, 2, 0}, {12, 5, 0}, {1, 5, 0}}},
      {"pair from past the corners", false, {7, 0}, {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    GeoRectGeometry rect = axisAligned();
    if (c.grip)
      rect.moveGrip(c.indices[0], OdGeVector3d(1, -1, 0));
    else
      rect.moveStretchPoints(c.indices, OdGeVector3d(1, -1, 0));
    expectCorners(rect, c.expected);
    expectPoint(rect.center, c.expected[0] + (c.expected[2] - c.expected[0]) / 2);
  }
  // P0 and P3 at the origin, P1 and P2 at (4, 0). Dragging P0: B = P1 - P2 is exactly zero, so
  // nothing follows. Stretching edge P0-P1: the direction across it (P0 - P3) is zero, so P0
  // moves by the unprojected offset, and P1 and P3 cannot follow an edge of length zero.
  const GeoRectGeometry flat =
      GeoRectGeometry::fromDiagonal(OdGePoint3d(0, 0, 0), OdGePoint3d(4, 0, 0));
  GeoRectGeometry rect = flat;
  rect.moveGrip(0, OdGeVector3d(1, 1, 0));
  expectCorners(rect, {{1, 1, 0}, {4, 0, 0}, {4, 0, 0}, {0, 0, 0}});
  rect = flat;
  rect.moveStretchPoints(OdIntArray{0, 1}, OdGeVector3d(1, 2, 0));
  expectCorners(rect, {{1, 2, 0}, {4, 0, 0}, {4, 0, 0}, {0, 0, 0}});
}

TEST(GeoRectGeometry, DraggingACornerOfARotatedRectangleKeepsItRectangular) {
  GeoRectGeometry rect = axisAligned();
  rect.transformBy(OdGeMatrix3d::rotation(0.5, OdGeVector3d::kZAxis));
  const OdGePoint3d fixed = rect.corners[2];
  rect.moveGrip(0, OdGeVector3d(0.7, 1.3, 0));
  expectPoint(rect.corners[2], fixed);
  for (int i = 0; i < 4; ++i) {
    const OdGeVector3d in = rect.corners[i] - rect.corners[(i + 3) % 4];
    const OdGeVector3d out = rect.corners[(i + 1) % 4] - rect.corners[i];
    EXPECT_NEAR(in.dotProduct(out), 0.0, 1e-9) << "corner " << i;
  }
}

TEST(GeoRectGeometry, FlatteningDependsOnTheCentreHeightAlone) {
  GeoRectGeometry raised =
      GeoRectGeometry::fromDiagonal(OdGePoint3d(0, 0, 2), OdGePoint3d(4, 4, 6));
  raised.setZToZero();
  expectCorners(raised, {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}});
  expectPoint(raised.center, OdGePoint3d(2, 2, 0));
  expectPoint(raised.rotatePt, OdGePoint3d(2, 52, 0));

  // Corners at z = ±3 around a centre at exactly z = 0 are left as they are.
  GeoRectGeometry tilted =
      GeoRectGeometry::fromDiagonal(OdGePoint3d(0, 0, 3), OdGePoint3d(4, 4, -3));
  ASSERT_EQ(tilted.center.z, 0.0);
  tilted.setZToZero();
  EXPECT_EQ(tilted.corners[0].z, 3.0);
  EXPECT_EQ(tilted.corners[2].z, -3.0);
}

} // namespace
