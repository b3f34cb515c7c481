// The triangle's measures and its equilateral construction.

#include "survey/GeoTriangleGeometry.h"

#include "common/EntityTestSupport.h"

#include <cmath>

namespace {

using custents::TriangleCorners;
using enttest::samePoint;

TEST(GeoTriangleGeometry, EquilateralTriangleKeepsThroughPointLastAndTurnsTheOthersByThirds) {
  struct Case {
    OdGePoint3d center;
    OdGePoint3d through;
  } cases[] = {
      {{0, 0, 0}, {10, 0, 0}},
      {{-2, 4, 0}, {1, 8, 0}},
      // A through point above the centre's plane keeps its height at every corner.
      {{0, 0, 0}, {3, 4, 2}},
  };
  for (const Case& c : cases) {
    const TriangleCorners t = custents::equilateralTriangle(c.center, c.through);
    const double r = c.through.distanceTo(c.center);
    EXPECT_TRUE(samePoint(t.v2, c.through));
    EXPECT_NEAR(t.v0.distanceTo(c.center), r, 1e-9);
    EXPECT_NEAR(t.v1.distanceTo(c.center), r, 1e-9);
    // v1 lies 120° and v0 240° counter-clockwise from v2 about the centre.
    const double a2 = std::atan2(t.v2.y - c.center.y, t.v2.x - c.center.x);
    const double a1 = std::atan2(t.v1.y - c.center.y, t.v1.x - c.center.x);
    const double a0 = std::atan2(t.v0.y - c.center.y, t.v0.x - c.center.x);
    EXPECT_NEAR(std::remainder(a1 - a2 - 2 * OdaPI / 3, 2 * OdaPI), 0.0, 1e-9);
    EXPECT_NEAR(std::remainder(a0 - a2 - 4 * OdaPI / 3, 2 * OdaPI), 0.0, 1e-9);
    EXPECT_NEAR(t.v0.distanceTo(t.v1), t.v1.distanceTo(t.v2), 1e-9);
    EXPECT_NEAR(t.v0.distanceTo(t.v2), t.v1.distanceTo(t.v2), 1e-9);
  }
  // On its centre it collapses to that point.
  const OdGePoint3d p(2, 3, 0);
  const TriangleCorners t = custents::equilateralTriangle(p, p);
  enttest::expectPoints(std::vector<OdGePoint3d>{t.v0, t.v1, t.v2}, {p, p, p});
}

TEST(GeoTriangleGeometry, MeasuresFollowTheSideLengths) {
  const double s = 2.0;
  struct Case {
    TriangleCorners corners;
    double girth;
    double area;
  } cases[] = {
      {{{0, 0, 0}, {3, 0, 0}, {0, 4, 0}}, 12.0, 6.0},
      {{{0, 0, 0}, {s, 0, 0}, {s / 2, s * std::sqrt(3.0) / 2, 0}}, 3 * s, std::sqrt(3.0)},
      // In space: a right triangle standing in the XZ plane.
      {{{0, 0, 0}, {0, 0, 3}, {4, 0, 0}}, 12.0, 6.0},
      // Collinear corners enclose nothing, also where rounding makes Heron's product negative.
      {{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, 4.0, 0.0},
      {{{0, 0, 0}, {0.1, 0.3, 0}, {0.7, 2.1, 0}}, 2 * std::sqrt(0.7 * 0.7 + 2.1 * 2.1), 0.0},
      {{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, 0.0, 0.0},
  };
  for (const Case& c : cases) {
    EXPECT_NEAR(custents::triangleGirth(c.corners), c.girth, 1e-9);
    const double area = custents::triangleArea(c.corners);
    EXPECT_FALSE(std::isnan(area));
    EXPECT_NEAR(area, c.area, 1e-7);
  }
}

} // namespace
