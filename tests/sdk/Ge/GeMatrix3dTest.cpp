#include "Ge/GeMatrix3d.h"
#include "OdError.h"

#include "sdk/SdkTestSupport.h"

#include <cmath>

namespace {

const double kEps = 1e-12;

void expectIdentity(const OdGeMatrix3d& m) {
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c)
      EXPECT_NEAR(m.entry[r][c], r == c ? 1.0 : 0.0, 1e-12) << r << "," << c;
  }
}

/// A collection of invertible transforms of every kind the builders make.
std::vector<OdGeMatrix3d> invertibleSamples() {
  OdGeMatrix3d shear;
  shear.entry[0][1] = 0.7;
  shear.entry[2][0] = -0.3;
  return {
      OdGeMatrix3d::kIdentity,
      OdGeMatrix3d::translation(OdGeVector3d(5, -3, 12)),
      OdGeMatrix3d::rotation(0.3, OdGeVector3d(1, 2, 3), OdGePoint3d(4, 5, 6)),
      OdGeMatrix3d::scaling(1e-6, OdGePoint3d(1, 1, 1)),
      OdGeMatrix3d::scaling(OdGeScale3d(2, -3, 0.5), OdGePoint3d(7, 0, -1)),
      OdGeMatrix3d::mirroring(OdGePoint3d(1, 2, 3), OdGeVector3d(1, 1, 0)),
      OdGeMatrix3d::mirroring(OdGePoint3d(-4, 0, 9)),
      OdGeMatrix3d::planeToWorld(OdGeVector3d(0.2, -0.5, 0.8)),
      OdGeMatrix3d::translation(OdGeVector3d(1e5, 2e5, 0)) * shear,
  };
}

TEST(GeMatrix3d, RotationTurnsKnownPointsCounterClockwise) {
  const struct {
    double angle;
    OdGeVector3d axis;
    OdGePoint3d center;
    OdGePoint3d input;
    OdGePoint3d expected;
  } cases[] = {
      {OdaPI2, {0, 0, 1}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}},
      {OdaPI2, {0, 0, -1}, {0, 0, 0}, {1, 0, 0}, {0, -1, 0}},
      {OdaPI2, {1, 0, 0}, {0, 0, 0}, {0, 1, 0}, {0, 0, 1}},
      {OdaPI2, {0, 1, 0}, {0, 0, 0}, {0, 0, 1}, {1, 0, 0}},
      {OdaPI, {0, 0, 1}, {1, 1, 0}, {2, 1, 3}, {0, 1, 3}},
      {2 * OdaPI / 3, {1, 1, 1}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, // cycles the axes
      {-OdaPI2, {0, 0, 1}, {10, 0, 0}, {10, 5, 0}, {15, 0, 0}},
      {Oda2PI, {3, -2, 1}, {1, 2, 3}, {4, 5, 6}, {4, 5, 6}},
      {0.7, {0, 0, 2}, {5, 5, 5}, {5, 5, 9}, {5, 5, 9}}, // points on the axis stay put
  };
  for (const auto& c : cases) {
    const OdGeMatrix3d m = OdGeMatrix3d::rotation(c.angle, c.axis, c.center);
    expectPoint(m * c.input, c.expected, kEps);
    EXPECT_NEAR(m.det(), 1.0, kEps);
    EXPECT_TRUE(m.isUniScaledOrtho());
  }
}

TEST(GeMatrix3d, ProductAppliesRightOperandFirst) {
  const OdGeMatrix3d a = OdGeMatrix3d::rotation(OdaPI2, OdGeVector3d::kZAxis);
  const OdGeMatrix3d b = OdGeMatrix3d::translation(OdGeVector3d(1, 0, 0));
  const OdGePoint3d p(1, 0, 0);
  // Translate first, then rotate: (2,0,0) turns to (0,2,0).
  expectPoint((a * b) * p, OdGePoint3d(0, 2, 0), kEps);
  expectPoint(a * (b * p), OdGePoint3d(0, 2, 0), kEps);
  // The other order: (0,1,0) moves to (1,1,0).
  expectPoint((b * a) * p, OdGePoint3d(1, 1, 0), kEps);

  OdGeMatrix3d pre = b;
  pre.preMultBy(a);
  EXPECT_TRUE(pre.isEqualTo(a * b));
  OdGeMatrix3d post = b;
  post.postMultBy(a);
  EXPECT_TRUE(post.isEqualTo(b * a));
  OdGeMatrix3d product;
  product.setToProduct(a, b);
  EXPECT_TRUE(product.isEqualTo(a * b));
  OdGeMatrix3d compound = a;
  compound *= b;
  EXPECT_TRUE(compound.isEqualTo(a * b));

  for (const OdGeMatrix3d& m1 : invertibleSamples()) {
    for (const OdGeMatrix3d& m2 : invertibleSamples()) {
      const OdGePoint3d q(0.3, -2, 7);
      const OdGePoint3d viaProduct = (m1 * m2) * q;
      const OdGePoint3d stepwise = m1 * (m2 * q);
      EXPECT_NEAR(viaProduct.distanceTo(stepwise), 0.0, 1e-9);
    }
  }
}

TEST(GeMatrix3d, InverseTimesMatrixIsIdentity) {
  for (const OdGeMatrix3d& m : invertibleSamples()) {
    ASSERT_FALSE(m.isSingular());
    expectIdentity(m.inverse() * m);
    expectIdentity(m * m.inverse());
    OdGeMatrix3d viaBool;
    ASSERT_TRUE(m.inverse(viaBool, 1e-10));
    EXPECT_TRUE(viaBool.isEqualTo(m.inverse()));
    OdGeMatrix3d inverted = m;
    inverted.invert();
    EXPECT_TRUE(inverted.isEqualTo(m.inverse()));
  }
}

TEST(GeMatrix3d, SingularMatrixIsRefused) {
  OdGeMatrix3d dependentAxes;
  dependentAxes.setCoordSystem(OdGePoint3d(1, 2, 3), OdGeVector3d(1, 0, 0), OdGeVector3d(0, 1, 0),
                               OdGeVector3d(1, 1, 0));
  const OdGeMatrix3d singular[] = {
      OdGeMatrix3d::scaling(0.0),
      OdGeMatrix3d::scaling(OdGeScale3d(1, 0, 1), OdGePoint3d(3, 3, 3)),
      dependentAxes,
      OdGeMatrix3d::scaling(1e-11),
  };
  for (const OdGeMatrix3d& m : singular) {
    EXPECT_TRUE(m.isSingular());
    OdGeMatrix3d untouched = OdGeMatrix3d::translation(OdGeVector3d(9, 9, 9));
    EXPECT_FALSE(m.inverse(untouched, 1e-10));
    EXPECT_TRUE(untouched.isEqualTo(OdGeMatrix3d::translation(OdGeVector3d(9, 9, 9))));
    EXPECT_EQ(eInvalidInput, resultOf([&] { m.inverse(); }));
    OdGeMatrix3d copy = m;
    EXPECT_THROW(copy.invert(), OdError);
    EXPECT_TRUE(copy.isEqualTo(m));
  }
  // A looser tolerance refuses what the default accepts.
  EXPECT_FALSE(OdGeMatrix3d::scaling(1e-6).isSingular());
  EXPECT_TRUE(OdGeMatrix3d::scaling(1e-6).isSingular(OdGeTol(1e-5)));
}

TEST(GeMatrix3d, PlaneToWorldUsesArbitraryAxisRule) {
  const double s = 1.0 / std::sqrt(2.0);
  const struct {
    OdGeVector3d normal;
    OdGeVector3d xAxis;
  } cases[] = {
      {{0, 0, 1}, {1, 0, 0}},
      {{0, 0, -1}, {-1, 0, 0}},
      {{0.01, 0, 1}, OdGeVector3d(1, 0, -0.01).normal()}, // inside the 1/64 box: world Y
      {{0, 0.015, -1}, {-1, 0, 0}},                       // inside the box on the other side
      {{0.02, 0, 1}, {0, 1, 0}},                          // outside the box: from world Z
      {{1, 1, 1}, {-s, s, 0}},                            // tilted
      {{1, 0, 0}, {0, 1, 0}},
      {{0, -3, 0}, {1, 0, 0}},
  };
  for (const auto& c : cases) {
    const OdGeMatrix3d toWorld = OdGeMatrix3d::planeToWorld(c.normal);
    OdGePoint3d origin;
    OdGeVector3d x;
    OdGeVector3d y;
    OdGeVector3d z;
    toWorld.getCoordSystem(origin, x, y, z);
    expectPoint(origin, OdGePoint3d::kOrigin, kEps);
    expectVector(x, c.xAxis, kEps);
    expectVector(z, c.normal.normal(), kEps);
    expectVector(y, z.crossProduct(x), kEps); // right-handed
    EXPECT_TRUE(x.isUnitLength() && y.isUnitLength());
    EXPECT_NEAR(x.dotProduct(y), 0.0, kEps);
    EXPECT_NEAR(toWorld.det(), 1.0, kEps);
    expectIdentity(OdGeMatrix3d::worldToPlane(c.normal) * toWorld);
  }
  // Plane coordinates (1, 0, 0) of an extrusion (0, 0, -1) are world (-1, 0, 0).
  expectPoint(OdGeMatrix3d::planeToWorld(OdGeVector3d(0, 0, -1)) * OdGePoint3d(1, 2, 3),
              OdGePoint3d(-1, 2, -3), kEps);
  EXPECT_THROW(OdGeMatrix3d::planeToWorld(OdGeVector3d()), OdError);
  EXPECT_THROW(OdGeMatrix3d::worldToPlane(OdGeVector3d()), OdError);
}

TEST(GeMatrix3d, ShapePredicates) {
  OdGeMatrix3d shear;
  shear.entry[0][1] = 0.5;
  const OdGeMatrix3d rotation = OdGeMatrix3d::rotation(0.3, OdGeVector3d(1, 1, 0));
  const struct {
    const char* name;
    OdGeMatrix3d m;
    bool uniScaledOrtho;
    bool scaledOrtho;
    double scale;
  } cases[] = {
      {"identity", OdGeMatrix3d::kIdentity, true, true, 1.0},
      {"rotated and scaled", rotation * OdGeMatrix3d::scaling(2.5), true, true, 2.5},
      {"large uniform", OdGeMatrix3d::scaling(1000.0), true, true, 1000.0},
      // Uniformity is judged relative to the scale: rounding of a large scale is uniform, the
      // same absolute difference in a small one is not.
      {"large, rounded", OdGeMatrix3d::scaling(OdGeScale3d(1000, 1000 + 1e-9, 1000)), true, true,
       1000 + 1e-9},
      {"small, uneven", OdGeMatrix3d::scaling(OdGeScale3d(1e-3, 1e-3 + 1e-9, 1e-3)), false, true,
       1e-3 + 1e-9},
      {"mirrored", OdGeMatrix3d::mirroring(OdGePoint3d(), OdGeVector3d(1, 0, 0)), true, true, 1.0},
      {"non-uniform", OdGeMatrix3d::scaling(OdGeScale3d(2, 3, 4)), false, true, 4.0},
      {"stretched along z", OdGeMatrix3d::scaling(OdGeScale3d(1, 1, 2)), false, true, 2.0},
      {"sheared", shear, false, false, std::sqrt(1.25)},
      {"flattened", OdGeMatrix3d::scaling(OdGeScale3d(1, 1, 0)), false, false, 1.0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.m.isUniScaledOrtho(), c.uniScaledOrtho) << c.name;
    EXPECT_EQ(c.m.isScaledOrtho(), c.scaledOrtho) << c.name;
    EXPECT_NEAR(c.m.scale(), c.scale, kEps) << c.name;
  }
  EXPECT_DOUBLE_EQ(OdGeMatrix3d::translation(OdGeVector3d(3, -7, 2)).norm(), 7.0);
  // Anything in the bottom row but 0 0 0 1 makes a projection.
  EXPECT_FALSE(rotation.isPerspective());
  for (int column = 0; column < 4; ++column) {
    OdGeMatrix3d projection;
    projection.entry[3][column] += 0.5;
    EXPECT_TRUE(projection.isPerspective()) << column;
  }
}

} // namespace
