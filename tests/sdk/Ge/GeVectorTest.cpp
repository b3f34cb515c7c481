#include "Ge/GeMatrix3d.h"
#include "Ge/GePoint2d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeVector2d.h"
#include "Ge/GeVector3d.h"
#include "OdError.h"

#include <gtest/gtest.h>

namespace {

const double kEps = 1e-12;

void expectVector(const OdGeVector3d& actual, const OdGeVector3d& expected) {
  EXPECT_NEAR(actual.x, expected.x, kEps);
  EXPECT_NEAR(actual.y, expected.y, kEps);
  EXPECT_NEAR(actual.z, expected.z, kEps);
}

TEST(GeVector3d, NormalOfZeroVectorIsLeftUnchanged) {
  const struct {
    OdGeVector3d input;
    OdGeVector3d expected;
  } cases[] = {
      {{3, 4, 0}, {0.6, 0.8, 0}},
      {{0, 0, -7}, {0, 0, -1}},
      {{0, 0, 0}, {0, 0, 0}},
      {{1e-11, 0, 0}, {1e-11, 0, 0}}, // below the tolerance: no direction
  };
  for (const auto& c : cases) {
    expectVector(c.input.normal(), c.expected);
    OdGeVector3d v = c.input;
    expectVector(v.normalize(), c.expected);
  }
  EXPECT_TRUE(OdGeVector3d(3, 4, 0).normal().isUnitLength());
  EXPECT_TRUE(OdGeVector3d(0, 0, 0).isZeroLength());
  EXPECT_FALSE(OdGeVector3d(0, 0, 1e-6).isZeroLength());
}

TEST(GeVector3d, CrossProductIsRightHanded) {
  expectVector(OdGeVector3d::kXAxis.crossProduct(OdGeVector3d::kYAxis), OdGeVector3d::kZAxis);
  expectVector(OdGeVector3d::kYAxis.crossProduct(OdGeVector3d::kZAxis), OdGeVector3d::kXAxis);
  expectVector(OdGeVector3d::kYAxis.crossProduct(OdGeVector3d::kXAxis), -OdGeVector3d::kZAxis);
  EXPECT_DOUBLE_EQ(OdGeVector3d(1, 2, 3).dotProduct(OdGeVector3d(4, -5, 6)), 12.0);
}

TEST(GeVector3d, UnsignedAngleLiesBetweenZeroAndPi) {
  const struct {
    OdGeVector3d a;
    OdGeVector3d b;
    double expected;
  } cases[] = {
      {{1, 0, 0}, {1, 0, 0}, 0.0},
      {{1, 0, 0}, {5, 0, 0}, 0.0},
      {{1, 0, 0}, {0, 1, 0}, OdaPI2},
      {{1, 0, 0}, {0, -1, 0}, OdaPI2},
      {{1, 0, 0}, {-2, 0, 0}, OdaPI},
      {{1, 0, 0}, {1, 1, 0}, OdaPI / 4},
      {{0, 0, 1}, {1, 0, -1}, 3 * OdaPI / 4},
      {{1, 0, 0}, {1, 1e-9, 0}, 1e-9}, // nearly parallel keeps full precision
      {{0, 0, 0}, {1, 0, 0}, 0.0},
  };
  for (const auto& c : cases)
    EXPECT_NEAR(c.a.angleTo(c.b), c.expected, 1e-15) << c.b.x << "," << c.b.y << "," << c.b.z;
}

TEST(GeVector3d, AngleWithReferenceRunsCounterClockwiseAboutReference) {
  const OdGeVector3d z = OdGeVector3d::kZAxis;
  const struct {
    OdGeVector3d from;
    OdGeVector3d to;
    OdGeVector3d reference;
    double expected;
  } cases[] = {
      {{1, 0, 0}, {0, 1, 0}, z, OdaPI2},
      {{1, 0, 0}, {0, 1, 0}, -z, 3 * OdaPI2},
      {{1, 0, 0}, {0, -1, 0}, z, 3 * OdaPI2},
      {{1, 0, 0}, {-1, 0, 0}, z, OdaPI},
      {{1, 0, 0}, {1, 0, 0}, z, 0.0},
      {{1, 0, 0}, {-1, -1, 0}, z, 5 * OdaPI / 4},
      {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}, OdaPI2},
      {{0, 1, 0}, {0, 0, 1}, {-1, 0, 0}, 3 * OdaPI2},
  };
  for (const auto& c : cases) {
    const double angle = c.from.angleTo(c.to, c.reference);
    EXPECT_NEAR(angle, c.expected, 1e-14);
    EXPECT_GE(angle, 0.0);
    EXPECT_LT(angle, Oda2PI);
  }
  // A hair clockwise must not come back as exactly 2π.
  const double tiny = OdGeVector3d::kXAxis.angleTo(OdGeVector3d(1, -1e-17, 0), z);
  EXPECT_LT(tiny, Oda2PI);
}

TEST(GeVector3d, PerpVectorFollowsArbitraryAxisRule) {
  const struct {
    OdGeVector3d input;
    OdGeVector3d expected;
  } cases[] = {
      {{0, 0, 1}, {1, 0, 0}},
      {{0, 0, -1}, {-1, 0, 0}}, // mirrored entities: OCS X axis points to -X
      {{0, 0, 5}, {1, 0, 0}},   // length does not matter
      {{1, 0, 0}, {0, 1, 0}},   // far from Z: world Z cross N
      {{0, 1, 0}, {-1, 0, 0}},
  };
  for (const auto& c : cases)
    expectVector(c.input.perpVector(), c.expected);

  const OdGeVector3d tilted[] = {{1, 1, 1}, {0.01, 0, 1}, {0.02, 0, 1}, {-3, 2, 0.5}};
  for (const OdGeVector3d& n : tilted) {
    const OdGeVector3d perp = n.perpVector();
    EXPECT_TRUE(perp.isUnitLength());
    EXPECT_NEAR(perp.dotProduct(n), 0.0, kEps);
  }
  expectVector(OdGeVector3d().perpVector(), OdGeVector3d());
}

TEST(GeVector3d, DirectionPredicates) {
  const OdGeVector3d x(2, 0, 0);
  const struct {
    OdGeVector3d other;
    bool parallel;
    bool codirectional;
    bool perpendicular;
  } cases[] = {
      {{5, 0, 0}, true, true, false},
      {{-1, 0, 0}, true, false, false},
      {{1, 1e-12, 0}, true, true, false},
      {{1, 1e-6, 0}, false, false, false},
      {{0, 3, 0}, false, false, true},
      {{0, 0, -1}, false, false, true},
      {{1, 1, 0}, false, false, false},
      {{0, 0, 0}, false, false, false}, // no direction: neither parallel nor perpendicular
  };
  for (const auto& c : cases) {
    EXPECT_EQ(x.isParallelTo(c.other), c.parallel) << c.other.x << "," << c.other.y;
    EXPECT_EQ(x.isCodirectionalTo(c.other), c.codirectional) << c.other.x << "," << c.other.y;
    EXPECT_EQ(x.isPerpendicularTo(c.other), c.perpendicular) << c.other.x << "," << c.other.y;
  }
  EXPECT_TRUE(x.isParallelTo(OdGeVector3d(1, 1e-6, 0), OdGeTol(1e-5)));
}

TEST(GeVector3d, EqualityUsesTolerance) {
  const OdGeVector3d v(1, 2, 3);
  EXPECT_TRUE(v == OdGeVector3d(1, 2, 3 + 1e-12));
  EXPECT_FALSE(v == OdGeVector3d(1, 2, 3 + 1e-8));
  EXPECT_TRUE(v.isEqualTo(OdGeVector3d(1, 2, 3 + 1e-8), OdGeTol(1e-6)));
  EXPECT_TRUE(v != -v);
}

TEST(GeVector3d, TransformIgnoresTranslation) {
  const OdGeMatrix3d m =
      OdGeMatrix3d::translation(OdGeVector3d(10, 20, 30)) * OdGeMatrix3d::scaling(2.0);
  OdGeVector3d v(1, 2, 3);
  expectVector(v.transformBy(m), OdGeVector3d(2, 4, 6));
  expectVector(m * OdGeVector3d(0, 0, 1), OdGeVector3d(0, 0, 2));
}

TEST(GeVector3d, RotateAndMirror) {
  OdGeVector3d v = OdGeVector3d::kXAxis;
  expectVector(v.rotateBy(OdaPI2, OdGeVector3d::kZAxis), OdGeVector3d::kYAxis);
  expectVector(v.rotateBy(OdaPI2, OdGeVector3d(0, 0, 7)), -OdGeVector3d::kXAxis);
  OdGeVector3d w(1, 2, 3);
  expectVector(w.mirror(OdGeVector3d(0, 0, 2)), OdGeVector3d(1, 2, -3));
  expectVector(OdGeVector3d(1, 2, 3).orthoProject(OdGeVector3d(0, 0, 5)), OdGeVector3d(1, 2, 0));

  OdGeVector3d u(1, 0, 0);
  EXPECT_THROW(u.rotateBy(1.0, OdGeVector3d()), OdError);
  EXPECT_THROW(u.mirror(OdGeVector3d()), OdError);
  expectVector(u, OdGeVector3d(1, 0, 0));
}

TEST(GePoint3d, ArithmeticAndDistance) {
  const OdGePoint3d a(1, 2, 3);
  const OdGePoint3d b(4, 6, 3);
  expectVector(b - a, OdGeVector3d(3, 4, 0));
  EXPECT_DOUBLE_EQ(a.distanceTo(b), 5.0);
  EXPECT_TRUE(a + (b - a) == b);
  EXPECT_TRUE((a + b.asVector()) / 2.0 == OdGePoint3d(2.5, 4, 3));
  EXPECT_TRUE(2.0 * a == OdGePoint3d(2, 4, 6));
  EXPECT_DOUBLE_EQ(a[0] + a[1] + a[2], 6.0);
  EXPECT_TRUE(a.convert2d() == OdGePoint2d(1, 2));
  EXPECT_TRUE(a.isEqualTo(OdGePoint3d(1, 2, 3.001), OdGeTol(0.01)));
  EXPECT_FALSE(a.isEqualTo(OdGePoint3d(1, 2, 3.001)));
}

TEST(GePoint3d, RotateAndScaleAboutPoint) {
  OdGePoint3d p(2, 1, 5);
  p.rotateBy(OdaPI2, OdGeVector3d::kZAxis, OdGePoint3d(1, 1, 0));
  EXPECT_TRUE(p == OdGePoint3d(1, 2, 5));
  p.scaleBy(3.0, OdGePoint3d(1, 2, 4));
  EXPECT_TRUE(p == OdGePoint3d(1, 2, 7));
  OdGePoint3d q(1, 0, 0);
  EXPECT_THROW(q.rotateBy(1.0, OdGeVector3d(), OdGePoint3d::kOrigin), OdError);
}

TEST(GeVector2d, AngleFromXAxisIsHalfOpen) {
  const struct {
    OdGeVector2d v;
    double expected;
  } cases[] = {
      {{1, 0}, 0.0},       {{0, 2}, OdaPI2},   {{-1, 0}, OdaPI}, {{0, -1}, 3 * OdaPI2},
      {{1, 1}, OdaPI / 4}, {{1, -1e-20}, 0.0}, {{0, 0}, 0.0},
  };
  for (const auto& c : cases) {
    EXPECT_NEAR(c.v.angle(), c.expected, 1e-15) << c.v.x << "," << c.v.y;
    EXPECT_LT(c.v.angle(), Oda2PI);
  }
  EXPECT_NEAR(OdGeVector2d(1, 0).angleTo(OdGeVector2d(-1, -1)), 3 * OdaPI / 4, 1e-15);
  EXPECT_DOUBLE_EQ(OdGeVector2d(1, 0).crossProduct(OdGeVector2d(0, 1)), 1.0);
  EXPECT_TRUE(OdGeVector2d(3, 4).perpVector() == OdGeVector2d(-4, 3));
  EXPECT_TRUE(OdGeVector2d(3, 4).normal() == OdGeVector2d(0.6, 0.8));
  EXPECT_TRUE(OdGeVector2d(0, 0).normal() == OdGeVector2d(0, 0));
  EXPECT_TRUE(OdGeVector2d(2, 0).isCodirectionalTo(OdGeVector2d(1, 1e-12)));
  EXPECT_FALSE(OdGeVector2d(2, 0).isCodirectionalTo(OdGeVector2d(-1, 0)));
  EXPECT_TRUE(OdGeVector2d(2, 0).isPerpendicularTo(OdGeVector2d(0, -3)));
  EXPECT_FALSE(OdGeVector2d(2, 0).isParallelTo(OdGeVector2d(0, 0)));
}

TEST(GePoint2d, RotateAndScaleAboutPoint) {
  OdGePoint2d p(3, 1);
  p.rotateBy(OdaPI, OdGePoint2d(2, 1));
  EXPECT_TRUE(p == OdGePoint2d(1, 1));
  p.scaleBy(2.0, OdGePoint2d(0, 1));
  EXPECT_TRUE(p == OdGePoint2d(2, 1));
  EXPECT_DOUBLE_EQ(OdGePoint2d(0, 0).distanceTo(OdGePoint2d(3, 4)), 5.0);
}

TEST(GeTol, ScalarHelpersIncludeTheBoundary) {
  EXPECT_TRUE(OdZero(1e-10));
  EXPECT_TRUE(OdZero(-1e-10));
  EXPECT_FALSE(OdZero(2e-10));
  EXPECT_TRUE(OdEqual(1.0, 1.0 + 5e-11));
  EXPECT_FALSE(OdEqual(1.0, 1.001));
  EXPECT_TRUE(OdEqual(1.0, 1.001, 0.01));
  OdGeTol tol;
  tol.setEqualPoint(0.5);
  tol.setEqualVector(0.25);
  EXPECT_DOUBLE_EQ(tol.equalPoint(), 0.5);
  EXPECT_DOUBLE_EQ(tol.equalVector(), 0.25);
  EXPECT_DOUBLE_EQ(OdGeContext::gTol.equalPoint(), 1e-10);
}

} // namespace

TEST(GeVector3dRobustness, HugeComponentsKeepTheirLengthAndNormalisingIsIdempotent) {
  struct Case {
    OdGeVector3d v;
    double length;
  } cases[] = {
      {OdGeVector3d(1e200, 0, 0), 1e200},
      {OdGeVector3d(3e200, 4e200, 0), 5e200},
      {OdGeVector3d(3e-200, 0, 4e-200), 5e-200},
      {OdGeVector3d(0, 1, 1), std::sqrt(2.0)},
  };
  for (const Case& c : cases) {
    EXPECT_DOUBLE_EQ(c.v.length(), c.length);
    const OdGeVector3d once = c.v.normal(OdGeTol(0.0, 0.0));
    EXPECT_NEAR(once.length(), 1.0, 1e-15);
    const OdGeVector3d twice = once.normal();
    // Bit for bit: a normal read back from a drawing must not drift.
    EXPECT_EQ(twice.x, once.x);
    EXPECT_EQ(twice.y, once.y);
    EXPECT_EQ(twice.z, once.z);
  }
}
