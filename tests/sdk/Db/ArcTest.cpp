#include "DbArc.h"

#include "sdk/SdkTestSupport.h"

#include <cmath>
#include <vector>

namespace {

constexpr double kDeg = OdaPI / 180.0;

OdDbArcPtr makeArc(const OdGePoint3d& center, double radius, double startDeg, double endDeg,
                   const OdGeVector3d& normal = OdGeVector3d::kZAxis) {
  OdDbArcPtr arc = OdDbArc::createObject();
  arc->setNormal(normal);
  arc->setCenter(center);
  arc->setRadius(radius);
  arc->setStartAngle(startDeg * kDeg);
  arc->setEndAngle(endDeg * kDeg);
  return arc;
}

/// The distance from point to the nearest point of the arc.
double distanceToArc(const OdDbArc* arc, const OdGePoint3d& point) {
  OdGePoint3d closest;
  EXPECT_EQ(eOk, arc->getClosestPointTo(point, closest));
  return closest.distanceTo(point);
}

// Sizes and normals no arc can have refuse the stream and leave the arc as it was (values that
// are no numbers at all are the class contract's check).
TEST(ArcTest, BadValuesInStreamAreRefused) {
  const struct {
    const char* name;
    double radius;
    OdGeVector3d normal;
  } cases[] = {{"zero radius", 0.0, OdGeVector3d::kZAxis},
               {"negative radius", -2.0, OdGeVector3d::kZAxis},
               {"zero normal", 1.0, OdGeVector3d(0.0, 0.0, 0.0)}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbArcPtr blank = OdDbArc::createObject();
    DwgFiler filer;
    filer.openForWrite();
    blank->OdDbEntity::dwgOutFields(&filer);
    filer.wrPoint3d(OdGePoint3d());
    filer.wrDouble(c.radius);
    filer.wrDouble(0.0); // thickness
    filer.wrVector3d(c.normal);
    filer.wrDouble(0.0);
    filer.wrDouble(1.0);
    filer.rewind();
    OdDbArcPtr arc = makeArc(OdGePoint3d(5.0, 5.0, 0.0), 7.0, 0.0, 90.0);
    EXPECT_EQ(eInvalidInput, arc->dwgInFields(&filer));
    EXPECT_EQ(7.0, arc->radius());
    EXPECT_EQ(OdGePoint3d(5.0, 5.0, 0.0), arc->center());
  }
}

// Snaps lie on the arc's sweep only; tangents exist from outside the circle only.
TEST(ArcTest, ObjectSnapsOnTheSweep) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(1, 1, 0), 2.0, 0.0, 180.0);
  const double s3 = std::sqrt(3.0);
  const struct {
    OdDb::OsnapMode mode;
    OdGePoint3d last;
    std::vector<OdGePoint3d> expected;
  } cases[] = {
      {OdDb::kOsModeQuad, {}, {{3, 1, 0}, {1, 3, 0}, {-1, 1, 0}}},
      {OdDb::kOsModePerp, {1, 5, 0}, {{1, 3, 0}}},
      {OdDb::kOsModeTan, {1, 5, 0}, {{1 + s3, 2, 0}, {1 - s3, 2, 0}}},
      {OdDb::kOsModeTan, {1, 2, 0}, {}},  // inside
      {OdDb::kOsModeTan, {1, 3, 0}, {}},  // on the circle
      {OdDb::kOsModeTan, {1, -3, 0}, {}}, // tangent points off the sweep
  };
  for (const auto& c : cases) {
    OdGePoint3dArray snaps;
    ASSERT_EQ(eOk, arc->getOsnapPoints(c.mode, 0, c.last, c.last, OdGeMatrix3d::kIdentity, snaps));
    ASSERT_EQ(c.expected.size(), snaps.size()) << c.mode;
    for (std::size_t i = 0; i < c.expected.size(); ++i)
      expectPoint(c.expected[i], snaps[static_cast<unsigned>(i)]);
  }
}

// Parameters are angles over the sweep, which may run past a full turn's angle.
TEST(ArcTest, ParametersRunOverTheSweep) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(1, 1, 0), 2.0, 270.0, 90.0);
  const struct {
    double param;
    bool onArc;
  } cases[] = {{270 * kDeg, true},  {360 * kDeg, true},  {450 * kDeg, true},
               {260 * kDeg, false}, {460 * kDeg, false}, {std::nan(""), false}};
  for (const auto& c : cases) {
    OdGePoint3d point;
    EXPECT_EQ(c.onArc ? eOk : eInvalidInput, arc->getPointAtParam(c.param, point)) << c.param;
    if (c.onArc)
      expectPoint(OdGePoint3d(1 + 2 * std::cos(c.param), 1 + 2 * std::sin(c.param), 0), point);
  }
}

TEST(ArcTest, EqualAnglesMakeAFullTurn) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(), 1.0, 30.0, 30.0);
  double start = 0.0;
  double end = 0.0;
  arc->getStartParam(start);
  arc->getEndParam(end);
  EXPECT_NEAR(Oda2PI, end - start, 1e-12);
  EXPECT_FALSE(arc->isClosed());
}

TEST(ArcTest, MirrorInThePlaneKeepsTheNormalAndSwapsTheEnds) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(), 1.0, 0.0, 90.0);
  ASSERT_EQ(eOk, arc->transformBy(OdGeMatrix3d::mirroring(OdGePoint3d(), OdGeVector3d::kXAxis)));
  EXPECT_EQ(OdGeVector3d::kZAxis, arc->normal());
  EXPECT_NEAR(OdaPI2, arc->startAngle(), 1e-12);
  EXPECT_NEAR(OdaPI, arc->endAngle(), 1e-12);
}

TEST(ArcTest, GripsRefitTheArcThroughThreePoints) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(), 2.0, 0.0, 180.0);
  // Moves that leave no arc change nothing: the midpoint onto the chord puts the three points
  // on one line.
  EXPECT_EQ(eInvalidInput, arc->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(0.0, -2.0, 0.0)));
  EXPECT_EQ(eInvalidIndex, arc->moveGripPointsAt(OdIntArray{0, 4}, OdGeVector3d(1.0, 0.0, 0.0)));
  EXPECT_EQ(eInvalidIndex, arc->moveGripPointsAt(OdIntArray{-1}, OdGeVector3d(1.0, 0.0, 0.0)));
  EXPECT_EQ(2.0, arc->radius());
  EXPECT_EQ(OdGePoint3d(), arc->center());
  OdGePoint3dArray grips;
  ASSERT_EQ(eOk, arc->getGripPoints(grips));
  ASSERT_EQ(4u, grips.size());
  expectPoint(OdGePoint3d(2.0, 0.0, 0.0), grips[0]);
  expectPoint(OdGePoint3d(0.0, 2.0, 0.0), grips[1]);
  expectPoint(OdGePoint3d(-2.0, 0.0, 0.0), grips[2]);
  expectPoint(OdGePoint3d(0.0, 0.0, 0.0), grips[3]);

  // Pulling the midpoint down flattens the arc over the same chord.
  ASSERT_EQ(eOk, arc->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(0.0, -1.0, 0.0)));
  EXPECT_NEAR(2.5, arc->radius(), 1e-12);
  expectPoint(OdGePoint3d(0.0, -1.5, 0.0), arc->center());
  OdGePoint3d start;
  arc->getStartPoint(start);
  expectPoint(OdGePoint3d(2.0, 0.0, 0.0), start);

  // Past the chord the arc turns the other way round, still counter-clockwise about +Z.
  ASSERT_EQ(eOk, arc->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(0.0, -2.0, 0.0)));
  EXPECT_EQ(OdGeVector3d::kZAxis, arc->normal());
  arc->getStartPoint(start);
  expectPoint(OdGePoint3d(-2.0, 0.0, 0.0), start);
  EXPECT_NEAR(0.0, distanceToArc(arc.get(), OdGePoint3d(0.0, -1.0, 0.0)), 1e-12);

  // The centre moves it all, once.
  const OdGePoint3d center = arc->center();
  ASSERT_EQ(eOk, arc->moveGripPointsAt(OdIntArray{0, 3}, OdGeVector3d(1.0, 1.0, 1.0)));
  expectPoint(center + OdGeVector3d(1.0, 1.0, 1.0), arc->center());
}

} // namespace
