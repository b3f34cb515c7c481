#include "Ge/GeBulge.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

const double kEps = 1e-9;
const double kRt2 = std::sqrt(2.0);
// Bulges of a quarter and of three quarters of a turn.
const double kQuarter = std::tan(OdaPI / 8.0);
const double kThreeQ = std::tan(3.0 * OdaPI / 8.0);
const double kVertical = 4.0 * std::atan(0.5); // the sweep of bulge 0.5
const double kVerticalArea = 0.5 * 6.25 * (kVertical - std::sin(kVertical));

void expectPoint(const OdGePoint2d& actual, const OdGePoint2d& expected, double eps = kEps) {
  EXPECT_NEAR(actual.x, expected.x, eps);
  EXPECT_NEAR(actual.y, expected.y, eps);
}

TEST(GeBulge, ArcThroughChordEnds) {
  // The expected values are worked out from the chord: the arc's middle stands the sagitta
  // bulge * chord / 2 to the right of the chord's midpoint, and radius = chord / (2
  // sin(|sweep|/2)).
  const struct {
    const char* name;
    OdGePoint2d p1, p2;
    double bulge;
    OdGePoint2d center;
    double radius;
    double sweep;
    OdGePoint2d middle;
    double segmentArea;
  } cases[] = {
      {"semicircle", {0, 0}, {2, 0}, 1.0, {1, 0}, 1.0, OdaPI, {1, -1}, OdaPI2},
      {"clockwise semicircle", {0, 0}, {2, 0}, -1.0, {1, 0}, 1.0, -OdaPI, {1, 1}, -OdaPI2},
      {"quarter", {0, 0}, {2, 0}, kQuarter, {1, 1}, kRt2, OdaPI2, {1, 1 - kRt2}, OdaPI2 - 1},
      {"cw quarter", {0, 0}, {2, 0}, -kQuarter, {1, -1}, kRt2, -OdaPI2, {1, kRt2 - 1}, 1 - OdaPI2},
      {"3/4", {0, 0}, {2, 0}, kThreeQ, {1, -1}, kRt2, 3 * OdaPI2, {1, -1 - kRt2}, 3 * OdaPI2 + 1},
      {"vertical chord", {3, 1}, {3, 5}, 0.5, {1.5, 3}, 2.5, kVertical, {4, 3}, kVerticalArea},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    OdGeBulgeArc arc;
    ASSERT_TRUE(arc.set(c.p1, c.p2, c.bulge));
    expectPoint(arc.center, c.center);
    EXPECT_NEAR(arc.radius, c.radius, kEps);
    EXPECT_NEAR(arc.sweep, c.sweep, kEps);
    expectPoint(arc.pointAt(0.0), c.p1);
    expectPoint(arc.pointAt(1.0), c.p2);
    expectPoint(arc.pointAt(0.5), c.middle);
    EXPECT_NEAR(arc.length(), c.radius * std::fabs(c.sweep), kEps);
    EXPECT_NEAR(arc.signedSegmentArea(), c.segmentArea, kEps);
  }
}

TEST(GeBulge, FractionAtAngleFollowsTheTurningSense) {
  const struct {
    const char* name;
    double bulge;
    double angle;
    double fraction; // negative: the arc does not pass the angle
  } cases[] = {
      // From (0,0) to (2,0) about (1,0): counter-clockwise below the chord, clockwise above.
      {"ccw start", 1.0, OdaPI, 0.0},
      {"ccw middle", 1.0, 1.5 * OdaPI, 0.5},
      {"ccw end", 1.0, 0.0, 1.0},
      {"ccw end a turn later", 1.0, Oda2PI, 1.0},
      {"ccw missed side", 1.0, 0.5 * OdaPI, -1.0},
      {"ccw just before the start", 1.0, OdaPI - 1e-6, -1.0},
      {"ccw start within slack", 1.0, OdaPI - 1e-13, 0.0},
      {"cw start", -1.0, OdaPI, 0.0},
      {"cw middle", -1.0, 0.5 * OdaPI, 0.5},
      {"cw end", -1.0, 0.0, 1.0},
      {"cw missed side", -1.0, 1.5 * OdaPI, -1.0},
      {"cw missed side, negative angle", -1.0, -0.5 * OdaPI, -1.0},
      {"quarter turn middle", kQuarter, 1.5 * OdaPI, 0.5},
      {"quarter turn outside", kQuarter, 0.0, -1.0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    OdGeBulgeArc arc;
    ASSERT_TRUE(arc.set({0, 0}, {2, 0}, c.bulge));
    if (c.fraction < 0.0)
      EXPECT_LT(arc.fractionAtAngle(c.angle), 0.0);
    else
      EXPECT_NEAR(arc.fractionAtAngle(c.angle), c.fraction, kEps);
  }
}

TEST(GeBulge, CircleExtremeAnglesAreWhereEachCoordinateTurns) {
  const double r = 1.0 / kRt2;
  const struct {
    const char* name;
    OdGeVector3d xAxis, yAxis;
    unsigned int count;
  } cases[] = {
      {"world XY plane", {1, 0, 0}, {0, 1, 0}, 4},
      {"world XZ plane", {1, 0, 0}, {0, 0, 1}, 4},
      {"plane rotated about X", {1, 0, 0}, {0, r, r}, 6},
      {"tilted plane", {r, 0, -r}, {0.5, r, 0.5}, 6},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    double angles[6];
    ASSERT_EQ(odgeCircleExtremeAngles(c.xAxis, c.yAxis, angles), c.count);
    // Each pair belongs to one axis in axis order: there the coordinate's rate of change,
    // -x_k sin a + y_k cos a, is zero; the first of the pair is the greatest, half a turn on
    // the least.
    unsigned int next = 0;
    for (unsigned int k = 0; k < 3; ++k) {
      if (c.xAxis[k] == 0.0 && c.yAxis[k] == 0.0)
        continue;
      for (unsigned int j = 0; j < 2; ++j) {
        const double a = angles[next + j];
        EXPECT_NEAR(-c.xAxis[k] * std::sin(a) + c.yAxis[k] * std::cos(a), 0.0, kEps);
      }
      const double greatest =
          c.xAxis[k] * std::cos(angles[next]) + c.yAxis[k] * std::sin(angles[next]);
      EXPECT_GT(greatest, 0.0);
      EXPECT_NEAR(angles[next + 1] - angles[next], OdaPI, kEps);
      next += 2;
    }
    EXPECT_EQ(next, c.count);
  }
}

} // namespace
