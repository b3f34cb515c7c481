// The polygon's central angle and vertex construction where the entity's tests
// (GeoPolygonTest.cpp) do not reach: negative side counts and vertices appended
// to a list that is not empty.

#include "survey/GeoPolygonGeometry.h"

#include "common/EntityTestSupport.h"

#include <cmath>

namespace {

TEST(GeoPolygonGeometry, StepIsAFullTurnOverTheSidesShownInDegreesWithoutItsSign) {
  for (OdInt32 sides : {3, 12, -4}) {
    const double step = custents::polygonStepAngle(sides);
    EXPECT_NEAR(step, 2 * OdaPI / sides, 1e-12) << sides;
    EXPECT_NEAR(custents::polygonStepDegrees(step), 360.0 / std::abs(sides), 1e-9) << sides;
  }
  EXPECT_TRUE(std::isinf(custents::polygonStepAngle(0))); // infinite rather than a trap
}

TEST(GeoPolygonGeometry, VerticesAreAppendedAndTheRadiusEndsAFullTurnOn) {
  OdGeVector3d radius(4, 3, 0);
  OdGePoint3dArray vertices;
  vertices.append(OdGePoint3d(99, 99, 99));
  custents::appendRegularVertices(OdGePoint3d(10, -5, 0), radius, 4, OdaPI / 2, vertices);
  enttest::expectPoints(vertices, {{99, 99, 99}, {14, -2, 0}, {7, -1, 0}, {6, -8, 0}, {13, -9, 0}});
  EXPECT_TRUE(enttest::samePoint(OdGePoint3d::kOrigin + radius, OdGePoint3d(4, 3, 0)));
}

} // namespace
