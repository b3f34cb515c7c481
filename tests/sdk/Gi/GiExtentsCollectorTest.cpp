#include "Gi/GiExtentsCollector.h"
#include "Gi/GiFixedViewport.h"

#include "sdk/SdkTestSupport.h"

#include <cmath>

namespace {

const double kEps = 1e-9;
const OdGeVector3d kZ(0, 0, 1);
const double kH = std::sqrt(0.5); // cos 45°

void expectBox(const OdGeExtents3d& ext, const OdGePoint3d& min, const OdGePoint3d& max) {
  ASSERT_TRUE(ext.isValidExtents());
  expectPoint(min, ext.minPoint(), kEps);
  expectPoint(max, ext.maxPoint(), kEps);
}

double deg(double degrees) {
  return degrees * OdaPI / 180.0;
}

TEST(GiExtentsCollector, TextBoxFollowsDirectionHeightAndSlant) {
  OdGiExtentsCollector collector;
  collector.setTextWidthFunction([](const OdString&, double h, double w) { return 10.0 * h * w; });
  collector.text(OdGePoint3d(0, 0, 0), kZ, OdGeVector3d(0, 3, 0), 1, 1, OdaPI / 4, OdString("ab"));
  // Baseline along +Y for 10; up is -X; the slant shifts the top by height along +Y.
  expectBox(collector.extents(), OdGePoint3d(-1, 0, 0), OdGePoint3d(0, 11, 0));
}

} // namespace

TEST(GiExtentsCollector, VerticesThroughStackedTransformsAndUnbalancedPop) {
  OdGiExtentsCollector collector;
  const OdGePoint3d pts[2] = {{0, 0, 0}, {2, 1, 0}};
  collector.popModelTransform(); // nothing pushed: ignored
  collector.pushModelTransform(OdGeMatrix3d::translation(OdGeVector3d(10, 0, 0)));
  collector.pushModelTransform(OdGeMatrix3d::rotation(OdaPI2, kZ));
  collector.polyline(2, pts); // (10, 0) and (9, 2)
  collector.popModelTransform();
  collector.popModelTransform();
  collector.popModelTransform();
  collector.polygon(2, pts); // untransformed again
  expectBox(collector.extents(), OdGePoint3d(0, 0, 0), OdGePoint3d(10, 2, 0));
}

TEST(GiExtentsCollector, FullCircleBoxIsExactForAnyNormal) {
  const struct {
    OdGeVector3d normal;
  } cases[] = {{OdGeVector3d(0, 0, 1)}, {OdGeVector3d(0, 0, -3)}, {OdGeVector3d(1, 0, 0)},
               {OdGeVector3d(0, 1, 1)}, {OdGeVector3d(1, 2, 3)},  {OdGeVector3d(-0.2, 0.9, 0.1)}};
  const OdGePoint3d center(1, -2, 3);
  const double r = 2.5;
  for (const auto& c : cases) {
    OdGiExtentsCollector collector;
    collector.circle(center, r, c.normal);
    const OdGeVector3d n = c.normal.normal();
    const OdGeVector3d half(r * std::sqrt(1 - n.x * n.x), r * std::sqrt(1 - n.y * n.y),
                            r * std::sqrt(1 - n.z * n.z));
    SCOPED_TRACE(testing::Message() << c.normal.x << "," << c.normal.y << "," << c.normal.z);
    expectBox(collector.extents(), center - half, center + half);
  }
}

TEST(GiExtentsCollector, ArcBoxIncludesOnlyTheAxisPointsWithinTheSweep) {
  const struct {
    const char* what;
    double startDeg;
    double sweepDeg;
    OdGePoint3d min;
    OdGePoint3d max;
  } cases[] = {
      {"first quadrant", 0, 90, {0, 0, 0}, {1, 1, 0}},
      {"across 90", 45, 90, {-kH, kH, 0}, {kH, 1, 0}},
      {"across 180", 135, 90, {-1, -kH, 0}, {-kH, kH, 0}},
      {"across 270", 225, 90, {-kH, -1, 0}, {kH, -kH, 0}},
      {"across 0", 315, 90, {kH, -kH, 0}, {1, kH, 0}},
      {"no crossing",
       10,
       20,
       {std::cos(deg(30)), std::sin(deg(10)), 0},
       {std::cos(deg(10)), std::sin(deg(30)), 0}},
      {"clockwise across 0", 45, -90, {kH, -kH, 0}, {1, kH, 0}},
      {"start vector past a full turn", 405, 90, {-kH, kH, 0}, {kH, 1, 0}},
      {"across 90, 180 and 270", 80, 250, {-1, -1, 0}, {std::cos(deg(30)), 1, 0}},
      {"across all four", 80, 300, {-1, -1, 0}, {1, 1, 0}},
      {"more than a full turn", 30, 400, {-1, -1, 0}, {1, 1, 0}},
      {"zero sweep", 90, 0, {0, 1, 0}, {0, 1, 0}},
  };
  for (const auto& c : cases) {
    OdGiExtentsCollector collector;
    const OdGeVector3d start(std::cos(deg(c.startDeg)), std::sin(deg(c.startDeg)), 0);
    collector.circularArc(OdGePoint3d(0, 0, 0), 1, kZ, start * 3.0, deg(c.sweepDeg));
    SCOPED_TRACE(c.what);
    expectBox(collector.extents(), c.min, c.max);
  }
}

TEST(GiExtentsCollector, TiltedAndTransformedArcs) {
  {
    // Plane x = 0 (normal +X, start along +Y): the half turn counter-clockwise about +X runs
    // through +Z to -Y.
    OdGiExtentsCollector collector;
    collector.circularArc(OdGePoint3d(0, 0, 0), 2, OdGeVector3d(1, 0, 0), OdGeVector3d(0, 1, 0),
                          OdaPI);
    expectBox(collector.extents(), OdGePoint3d(0, -2, 0), OdGePoint3d(0, 2, 2));
  }
  {
    // A unit circle stretched to semi-axes 2 and 1 and turned 45°: an ellipse whose half-width
    // along x and y is sqrt((2 cos 45)^2 + (sin 45)^2) = sqrt(2.5).
    OdGiExtentsCollector collector;
    OdGeMatrix3d stretch;
    stretch.entry[0][0] = 2.0;
    collector.pushModelTransform(OdGeMatrix3d::rotation(OdaPI / 4, kZ) * stretch);
    collector.circle(OdGePoint3d(0, 0, 0), 1, kZ);
    const double half = std::sqrt(2.5);
    expectBox(collector.extents(), OdGePoint3d(-half, -half, 0), OdGePoint3d(half, half, 0));
  }
  {
    // The upper half of the same stretched circle, unrotated: x from -2 to 2, y up to 1.
    OdGiExtentsCollector collector;
    OdGeMatrix3d stretch;
    stretch.entry[0][0] = 2.0;
    collector.pushModelTransform(stretch);
    collector.circularArc(OdGePoint3d(0, 0, 0), 1, kZ, OdGeVector3d(1, 0, 0), OdaPI);
    expectBox(collector.extents(), OdGePoint3d(-2, 0, 0), OdGePoint3d(2, 1, 0));
  }
}

// A view needs a direction; without one the view stays as it was.
TEST(GiFixedViewport, AViewWithoutDirectionIsRefused) {
  OdGiFixedViewport viewport(nullptr);
  ASSERT_TRUE(viewport.setView(OdGePoint3d(1, 2, 3), OdGeVector3d(0, 0, 2), OdGeVector3d::kYAxis));
  EXPECT_FALSE(
      viewport.setView(OdGePoint3d(5, 5, 5), OdGeVector3d::kIdentity, OdGeVector3d::kYAxis));
  EXPECT_EQ(viewport.getCameraTarget(), OdGePoint3d(1, 2, 3));
  EXPECT_EQ(viewport.viewDir(), OdGeVector3d::kZAxis);
}
