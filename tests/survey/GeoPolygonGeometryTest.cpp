// The polygon's vertex construction and central angle.

#include "survey/GeoPolygonGeometry.h"

#include "GeoPolygonTestSupport.h"

#include <cmath>

namespace {

using polygontest::samePoint;

TEST(GeoPolygonGeometry, StepAngleIsAFullTurnOverTheSides) {
  struct Case {
    OdInt32 sides;
    double degrees;
  } cases[] = {{3, 120.0}, {4, 90.0}, {6, 60.0}, {12, 30.0}, {-4, 90.0}};
  for (const Case& c : cases) {
    const double step = custents::polygonStepAngle(c.sides);
    EXPECT_NEAR(step, 2 * OdaPI / c.sides, 1e-12) << c.sides;
    EXPECT_NEAR(custents::polygonStepDegrees(step), c.degrees, 1e-9) << c.sides;
  }
  // No sides: the angle is infinite rather than a trap.
  EXPECT_TRUE(std::isinf(custents::polygonStepAngle(0)));
}

TEST(GeoPolygonGeometry, RegularVerticesRunCounterClockwiseFromTheRadius) {
  const OdGePoint3d center(10, -5, 0);
  for (OdInt32 sides : {3, 6, 12}) {
    SCOPED_TRACE(sides);
    const OdGeVector3d start(4, 3, 0);
    OdGeVector3d radius = start;
    OdGePoint3dArray vertices;
    vertices.append(OdGePoint3d(99, 99, 99)); // kept: the function appends
    custents::appendRegularVertices(center, radius, sides, custents::polygonStepAngle(sides),
                                    vertices);
    ASSERT_EQ(vertices.size(), static_cast<unsigned int>(sides + 1));
    EXPECT_TRUE(samePoint(vertices[0], OdGePoint3d(99, 99, 99)));
    EXPECT_TRUE(samePoint(vertices[1], center + start));
    const double side = 2 * 5.0 * std::sin(OdaPI / sides);
    for (OdInt32 i = 1; i <= sides; ++i) {
      const OdGePoint3d& p = vertices[i];
      const OdGePoint3d& q = vertices[i % sides + 1];
      EXPECT_NEAR(p.distanceTo(center), 5.0, 1e-9);
      EXPECT_NEAR(p.distanceTo(q), side, 1e-9);
      // Counter-clockwise seen from +Z: each step turns left about the centre.
      const OdGeVector3d a = p - center, b = q - center;
      EXPECT_GT(a.x * b.y - a.y * b.x, 0.0);
    }
    // A full turn brings the radius back to where it started.
    EXPECT_NEAR((radius - start).length(), 0.0, 1e-9);
  }
}

TEST(GeoPolygonGeometry, NoSidesAppendNothingAndKeepTheRadius) {
  for (OdInt32 sides : {0, -3}) {
    OdGeVector3d radius(1, 2, 0);
    OdGePoint3dArray vertices;
    custents::appendRegularVertices(OdGePoint3d::kOrigin, radius, sides,
                                    custents::polygonStepAngle(sides), vertices);
    EXPECT_TRUE(vertices.isEmpty());
    EXPECT_EQ(radius.x, 1.0);
    EXPECT_EQ(radius.y, 2.0);
  }
}

} // namespace
