#include "Ge/GeIntersect.h"

#include "sdk/SdkTestSupport.h"

#include <cmath>
#include <limits>

namespace {

const double kEps = 1e-9;
const OdGeVector3d kZ = OdGeVector3d::kZAxis;
const double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr OdGeExtend kNone = OdGeExtend::kNone, kFirst = OdGeExtend::kFirst,
                     kSecond = OdGeExtend::kSecond, kBoth = OdGeExtend::kBoth;

TEST(GeIntersect, LinesMeetWhereBoundsAllow) {
  const struct {
    const char* name;
    OdGePoint3d s1, e1, s2, e2;
    OdGeExtend extend;
    int count;
    OdGePoint3d expected;
  } cases[] = {
      {"crossing", {0, 0, 0}, {2, 2, 0}, {0, 2, 0}, {2, 0, 0}, kNone, 1, {1, 1, 0}},
      {"tilted plane", {0, 0, 0}, {2, 2, 2}, {0, 2, 2}, {2, 0, 0}, kNone, 1, {1, 1, 1}},
      {"meeting at end points", {0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {1, 5, 0}, kNone, 1, {1, 0, 0}},
      {"T junction", {0, 0, 0}, {4, 0, 0}, {2, 0, 0}, {2, 3, 0}, kNone, 1, {2, 0, 0}},
      {"short of first", {0, 0, 0}, {1, 0, 0}, {3, -1, 0}, {3, 1, 0}, kNone, 0, {}},
      {"first extended", {0, 0, 0}, {1, 0, 0}, {3, -1, 0}, {3, 1, 0}, kFirst, 1, {3, 0, 0}},
      {"wrong one extended", {0, 0, 0}, {1, 0, 0}, {3, -1, 0}, {3, 1, 0}, kSecond, 0, {}},
      {"short of second", {3, -1, 0}, {3, 1, 0}, {0, 0, 0}, {1, 0, 0}, kFirst, 0, {}},
      {"second extended", {3, -1, 0}, {3, 1, 0}, {0, 0, 0}, {1, 0, 0}, kSecond, 1, {3, 0, 0}},
      {"both extended", {0, 0, 0}, {1, 0, 0}, {5, 1, 0}, {5, 2, 0}, kBoth, 1, {5, 0, 0}},
      {"parallel", {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}, kBoth, 0, {}},
      {"collinear overlapping", {0, 0, 0}, {2, 0, 0}, {1, 0, 0}, {3, 0, 0}, kBoth, 0, {}},
      {"skew", {0, 0, 0}, {1, 0, 0}, {0, 0, 1}, {0, 1, 1}, kBoth, 0, {}},
      {"zero-length first", {1, 1, 0}, {1, 1, 0}, {0, 0, 0}, {2, 2, 0}, kBoth, 0, {}},
      {"zero-length second", {0, 0, 0}, {2, 2, 0}, {1, 1, 0}, {1, 1, 0}, kBoth, 0, {}},
      {"not a number", {0, 0, 0}, {2, 2, 0}, {kNaN, 2, 0}, {2, 0, 0}, kBoth, 0, {}},
  };
  for (const auto& c : cases) {
    const OdGePoint3d sentinel(-99, -99, -99);
    OdGePoint3d point = sentinel;
    ASSERT_EQ(odgeIntersectLines(c.s1, c.e1, c.s2, c.e2, c.extend, point), c.count) << c.name;
    if (c.count == 1)
      expectPoint(point, c.expected);
    else
      expectPoint(point, sentinel); // untouched
  }
}

TEST(GeIntersect, LineAndCircle) {
  const OdGePoint3d center(1, 1, 0);
  const double radius = 2.0;
  const struct {
    const char* name;
    OdGePoint3d start, end;
    bool bounded;
    int count;
    OdGePoint3d first, second;
  } cases[] = {
      {"secant, ordered from start", {-5, 1, 0}, {5, 1, 0}, true, 2, {-1, 1, 0}, {3, 1, 0}},
      {"secant reversed", {5, 1, 0}, {-5, 1, 0}, true, 2, {3, 1, 0}, {-1, 1, 0}},
      {"tangent", {-5, 3, 0}, {5, 3, 0}, true, 1, {1, 3, 0}, {}},
      {"miss", {-5, 3.5, 0}, {5, 3.5, 0}, false, 0, {}, {}},
      {"segment inside", {0, 1, 0}, {2, 1, 0}, true, 0, {}, {}},
      {"segment inside, extended", {0, 1, 0}, {2, 1, 0}, false, 2, {-1, 1, 0}, {3, 1, 0}},
      {"one end inside", {1, 1, 0}, {1, 9, 0}, true, 1, {1, 3, 0}, {}},
      {"ends on the circle", {-1, 1, 0}, {3, 1, 0}, true, 2, {-1, 1, 0}, {3, 1, 0}},
      {"through the plane on the circle", {3, 1, -1}, {3, 1, 1}, true, 1, {3, 1, 0}, {}},
      {"through the plane inside", {1, 1, -1}, {1, 1, 1}, false, 0, {}, {}},
      {"through the plane, segment short", {3, 1, 1}, {3, 1, 2}, true, 0, {}, {}},
      {"through the plane, extended", {3, 1, 1}, {3, 1, 2}, false, 1, {3, 1, 0}, {}},
      {"parallel to the plane, above", {-5, 1, 1}, {5, 1, 1}, false, 0, {}, {}},
      {"zero-length segment", {3, 1, 0}, {3, 1, 0}, false, 0, {}, {}},
  };
  for (const auto& c : cases) {
    OdGePoint3d p1;
    OdGePoint3d p2;
    ASSERT_EQ(odgeIntersectLineCircle(c.start, c.end, c.bounded, center, kZ, radius, p1, p2),
              c.count)
        << c.name;
    if (c.count >= 1)
      expectPoint(p1, c.first);
    if (c.count == 2)
      expectPoint(p2, c.second);
  }
}

TEST(GeIntersect, TwoCircles) {
  const struct {
    const char* name;
    OdGePoint3d c2;
    OdGeVector3d n2;
    double r1, r2;
    int count;
  } cases[] = {
      {"crossing", {3, 0, 0}, kZ, 2, 2, 2},
      {"crossing, opposite normal", {3, 0, 0}, -kZ, 2, 2, 2},
      {"touching outside", {4, 0, 0}, kZ, 2, 2, 1},
      {"touching inside, first larger", {1, 0, 0}, kZ, 3, 2, 1},
      {"touching inside, second larger", {1, 0, 0}, kZ, 2, 3, 1},
      {"apart", {5, 0, 0}, kZ, 2, 2, 0},
      {"one inside the other", {0.5, 0, 0}, kZ, 3, 1, 0},
      {"concentric", {0, 0, 0}, kZ, 3, 1, 0},
      {"coincident", {0, 0, 0}, kZ, 2, 2, 0},
      {"parallel planes", {3, 0, 1}, kZ, 2, 2, 0},
      {"crossing planes", {3, 0, 0}, {1, 0, 0}, 2, 2, 0},
      {"zero radius", {2, 0, 0}, kZ, 2, 0, 0},
      {"NaN center", {kNaN, 0, 0}, kZ, 2, 2, 0},
  };
  const OdGePoint3d c1 = OdGePoint3d::kOrigin;
  for (const auto& c : cases) {
    OdGePoint3d p1(-99, 0, 0);
    OdGePoint3d p2(-99, 0, 0);
    ASSERT_EQ(odgeIntersectCircles(c1, kZ, c.r1, c.c2, c.n2, c.r2, p1, p2), c.count) << c.name;
    const int count = c.count;
    for (int i = 0; i < count; ++i) {
      const OdGePoint3d& p = i == 0 ? p1 : p2;
      EXPECT_NEAR(p.distanceTo(c1), c.r1, kEps) << c.name;
      EXPECT_NEAR(p.distanceTo(c.c2), c.r2, kEps) << c.name;
      EXPECT_NEAR(p.z, 0.0, kEps) << c.name;
    }
    if (count < 2)
      expectPoint(p2, OdGePoint3d(-99, 0, 0));
  }

  OdGePoint3d p1;
  OdGePoint3d p2;
  ASSERT_EQ(odgeIntersectCircles(c1, kZ, 2, OdGePoint3d(3, 0, 0), kZ, 2, p1, p2), 2);
  const double h = std::sqrt(4 - 1.5 * 1.5);
  expectPoint(p1, OdGePoint3d(1.5, h, 0)); // left of the line of centers
  expectPoint(p2, OdGePoint3d(1.5, -h, 0));
  ASSERT_EQ(odgeIntersectCircles(c1, kZ, 2, OdGePoint3d(1, 0, 0), kZ, 3, p1, p2), 1);
  expectPoint(p1, OdGePoint3d(-2, 0, 0));
}

} // namespace
