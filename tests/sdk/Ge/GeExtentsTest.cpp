#include "Ge/GeExtents2d.h"
#include "Ge/GeExtents3d.h"
#include "Ge/GeMatrix3d.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

const double kEps = 1e-12;

void expectPoint(const OdGePoint3d& actual, const OdGePoint3d& expected) {
  EXPECT_NEAR(actual.x, expected.x, kEps);
  EXPECT_NEAR(actual.y, expected.y, kEps);
  EXPECT_NEAR(actual.z, expected.z, kEps);
}

OdGeExtents3d box(double x0, double y0, double z0, double x1, double y1, double z1) {
  return OdGeExtents3d(OdGePoint3d(x0, y0, z0), OdGePoint3d(x1, y1, z1));
}

TEST(GeExtents3d, InvalidExtentsStayInvalid) {
  OdGeExtents3d ext;
  EXPECT_FALSE(ext.isValidExtents());
  EXPECT_FALSE(OdGeExtents3d::kInvalid.isValidExtents());
  ext.expandBy(OdGeVector3d(1, 1, 1));
  EXPECT_FALSE(ext.isValidExtents());
  ext.transformBy(OdGeMatrix3d::scaling(-1.0));
  EXPECT_FALSE(ext.isValidExtents());
  ext.addExt(OdGeExtents3d());
  EXPECT_FALSE(ext.isValidExtents());
  ext.addPoints(OdGePoint3dArray());
  EXPECT_FALSE(ext.isValidExtents());
  EXPECT_FALSE(box(1, 0, 0, 0, 1, 1).isValidExtents()); // min above max on one axis

  EXPECT_FALSE(ext.contains(OdGePoint3d::kOrigin));
  EXPECT_TRUE(ext.isDisjoint(box(-1e30, -1e30, -1e30, 1e30, 1e30, 1e30)));
  EXPECT_FALSE(box(-1, -1, -1, 1, 1, 1).contains(ext));
  expectPoint(ext.center(), OdGePoint3d::kOrigin);
  EXPECT_TRUE(ext.diagonal().isZeroLength());
  // Invalid extents are equal to each other, whatever corners they carry.
  EXPECT_TRUE(ext == box(5, 5, 5, 0, 0, 0));
  EXPECT_FALSE(ext == box(0, 0, 0, 0, 0, 0));
}

TEST(GeExtents3d, AddingPointsAndExtents) {
  OdGeExtents3d ext;
  ext.addPoint(OdGePoint3d(1, 2, 3));
  ASSERT_TRUE(ext.isValidExtents()); // a single point is valid extents
  expectPoint(ext.minPoint(), OdGePoint3d(1, 2, 3));
  expectPoint(ext.maxPoint(), OdGePoint3d(1, 2, 3));

  ext.addPoints({OdGePoint3d(-1, 5, 3), OdGePoint3d(0, 0, 9)});
  expectPoint(ext.minPoint(), OdGePoint3d(-1, 0, 3));
  expectPoint(ext.maxPoint(), OdGePoint3d(1, 5, 9));
  expectPoint(ext.center(), OdGePoint3d(0, 2.5, 6));

  ext.addExt(box(-3, 1, 4, -2, 1, 4));
  expectPoint(ext.minPoint(), OdGePoint3d(-3, 0, 3));

  OdGeExtents3d fromInvalid;
  fromInvalid.addExt(ext);
  EXPECT_TRUE(fromInvalid == ext);

  OdGeExtents3d corners;
  corners.comparingSet(OdGePoint3d(4, -1, 2), OdGePoint3d(1, 3, -2));
  EXPECT_TRUE(corners == box(1, -1, -2, 4, 3, 2));
}

TEST(GeExtents3d, ExpandByStretchesInVectorDirectionOnly) {
  OdGeExtents3d ext = box(0, 0, 0, 1, 1, 1);
  ext.expandBy(OdGeVector3d(2, -3, 0));
  EXPECT_TRUE(ext == box(0, -3, 0, 3, 1, 1));
}

TEST(GeExtents3d, TransformCoversRotatedBox) {
  const double r = std::sqrt(0.5);
  const struct {
    const char* name;
    OdGeMatrix3d xfm;
    OdGeExtents3d expected;
  } cases[] = {
      {"quarter turn about z", OdGeMatrix3d::rotation(OdaPI / 4, OdGeVector3d::kZAxis),
       box(-r, 0, 0, r, 2 * r, 1)},
      {"eighth turn about y", OdGeMatrix3d::rotation(OdaPI / 4, OdGeVector3d::kYAxis),
       box(0, 0, -r, 2 * r, 1, r)},
      {"half turn about x", OdGeMatrix3d::rotation(OdaPI, OdGeVector3d::kXAxis),
       box(0, -1, -1, 1, 0, 0)},
      {"mirror", OdGeMatrix3d::mirroring(OdGePoint3d(0, 0, 0), OdGeVector3d(1, 0, 0)),
       box(-1, 0, 0, 0, 1, 1)},
      {"scale and move",
       OdGeMatrix3d::translation(OdGeVector3d(10, 0, 0)) *
           OdGeMatrix3d::scaling(OdGeScale3d(2, 3, -1)),
       box(10, 0, -1, 12, 3, 0)},
  };
  for (const auto& c : cases) {
    OdGeExtents3d ext = box(0, 0, 0, 1, 1, 1);
    ext.transformBy(c.xfm);
    EXPECT_TRUE(ext.isEqualTo(c.expected, OdGeTol(1e-12))) << c.name;
  }
}

TEST(GeExtents3d, ContainmentAndOverlap) {
  const OdGeExtents3d unit = box(0, 0, 0, 1, 1, 1);
  const struct {
    const char* name;
    OdGeExtents3d other;
    bool contains;
    bool disjoint;
    OdGeExtents3d::IntersectionStatus status;
  } cases[] = {
      {"inside", box(0.2, 0.2, 0.2, 0.8, 0.8, 0.8), true, false, OdGeExtents3d::kIntersectOpIn},
      {"same", unit, true, false, OdGeExtents3d::kIntersectOpIn},
      {"around", box(-1, -1, -1, 2, 2, 2), false, false, OdGeExtents3d::kIntersectOpOut},
      {"overlapping", box(0.5, 0.5, 0.5, 2, 2, 2), false, false, OdGeExtents3d::kIntersectOk},
      {"touching face", box(1, 0, 0, 2, 1, 1), false, false, OdGeExtents3d::kIntersectOk},
      {"touching corner", box(1, 1, 1, 2, 2, 2), false, false, OdGeExtents3d::kIntersectOk},
      {"apart in z only", box(0, 0, 1.5, 1, 1, 2), false, true, OdGeExtents3d::kIntersectNot},
      {"invalid", OdGeExtents3d(), false, true, OdGeExtents3d::kIntersectUnknown},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(unit.contains(c.other), c.contains) << c.name;
    EXPECT_EQ(unit.isDisjoint(c.other), c.disjoint) << c.name;
    EXPECT_EQ(c.other.isDisjoint(unit), c.disjoint) << c.name;
    EXPECT_EQ(unit.intersectWith(c.other), c.status) << c.name;
  }

  OdGeExtents3d common;
  EXPECT_EQ(unit.intersectWith(box(0.5, -1, 0.25, 2, 0.5, 0.75), &common),
            OdGeExtents3d::kIntersectOk);
  EXPECT_TRUE(common == box(0.5, 0, 0.25, 1, 0.5, 0.75));
  // A gap within the tolerance counts as touching; the common box is flat, not inverted.
  EXPECT_EQ(unit.intersectWith(box(1 + 1e-11, 0, 0, 2, 1, 1), &common),
            OdGeExtents3d::kIntersectOk);
  ASSERT_TRUE(common.isValidExtents());
  EXPECT_NEAR(common.minPoint().x, 1.0, 1e-10);
  EXPECT_DOUBLE_EQ(common.minPoint().x, common.maxPoint().x);
  common = unit;
  unit.intersectWith(box(5, 5, 5, 6, 6, 6), &common);
  EXPECT_FALSE(common.isValidExtents());

  EXPECT_TRUE(unit.contains(OdGePoint3d(1, 0.5, 0)));
  EXPECT_FALSE(unit.contains(OdGePoint3d(1.001, 0.5, 0)));
  EXPECT_TRUE(unit.contains(OdGePoint3d(1.001, 0.5, 0), OdGeTol(0.01)));
}

TEST(GeExtents2d, BehavesLikeThreeDimensionalExtents) {
  OdGeExtents2d ext;
  EXPECT_FALSE(ext.isValidExtents());
  ext.addExt(OdGeExtents2d());
  EXPECT_FALSE(ext.isValidExtents());
  EXPECT_FALSE(ext.contains(OdGePoint2d(0, 0)));

  ext.addPoints({OdGePoint2d(1, 4), OdGePoint2d(-2, 0)});
  ASSERT_TRUE(ext.isValidExtents());
  EXPECT_TRUE(ext.minPoint() == OdGePoint2d(-2, 0));
  EXPECT_TRUE(ext.maxPoint() == OdGePoint2d(1, 4));
  EXPECT_TRUE(ext.center() == OdGePoint2d(-0.5, 2));
  EXPECT_TRUE(ext.contains(OdGePoint2d(1, 4)));
  EXPECT_FALSE(ext.contains(OdGePoint2d(1, 4.1)));
  EXPECT_TRUE(ext.contains(OdGeExtents2d(OdGePoint2d(0, 1), OdGePoint2d(1, 2))));
  EXPECT_FALSE(ext.isDisjoint(OdGeExtents2d(OdGePoint2d(1, 4), OdGePoint2d(3, 5))));
  EXPECT_TRUE(ext.isDisjoint(OdGeExtents2d(OdGePoint2d(1.5, 0), OdGePoint2d(3, 5))));
  EXPECT_TRUE(ext.isDisjoint(OdGeExtents2d()));
  EXPECT_TRUE(OdGeExtents2d() == OdGeExtents2d::kInvalid);
  EXPECT_FALSE(ext == OdGeExtents2d());
}

} // namespace
