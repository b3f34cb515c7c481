// intersectWith of lines, arcs and polylines with each other and with entities that only
// explode into them.

#include "DbArc.h"
#include "DbLine.h"
#include "DbPoint.h"
#include "DbPolyline.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace intersect_test {

/// A custom entity with no geometry of its own but what it explodes into: two crossing lines.
class IntersectCross : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(IntersectCross);

protected:
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override {
    for (const auto& ends : {std::make_pair(OdGePoint3d(0, 0, 0), OdGePoint3d(4, 4, 0)),
                             std::make_pair(OdGePoint3d(0, 4, 0), OdGePoint3d(4, 0, 0))}) {
      OdDbLinePtr line = OdDbLine::createObject();
      line->setStartPoint(ends.first);
      line->setEndPoint(ends.second);
      entitySet.append(line);
    }
    return eOk;
  }
};
ODRX_DEFINE_PSEUDO_CONSTRUCTOR(IntersectCross)
ODRX_DEFINE_MEMBERS2(IntersectCross, OdDbEntity, &IntersectCross::pseudoConstructor, 0, 0, 0,
                     OD_T("INTERSECTCROSS"), OdString::kEmpty)

namespace {

constexpr double kDeg = OdaPI / 180.0;

OdDbEntityPtr line(const OdGePoint3d& start, const OdGePoint3d& end) {
  OdDbLinePtr entity = OdDbLine::createObject();
  entity->setStartPoint(start);
  entity->setEndPoint(end);
  return entity;
}

OdDbEntityPtr arc(const OdGePoint3d& center, double radius, double startDeg, double endDeg,
                  const OdGeVector3d& normal = OdGeVector3d::kZAxis) {
  OdDbArcPtr entity = OdDbArc::createObject();
  entity->setNormal(normal);
  entity->setCenter(center);
  entity->setRadius(radius);
  entity->setStartAngle(startDeg * kDeg);
  entity->setEndAngle(endDeg * kDeg);
  return entity;
}

struct Vertex {
  double x;
  double y;
  double bulge;
};

OdDbEntityPtr polyline(const std::vector<Vertex>& vertices, bool closed) {
  OdDbPolylinePtr entity = OdDbPolyline::createObject();
  for (const Vertex& v : vertices)
    entity->addVertexAt(entity->numVerts(), OdGePoint2d(v.x, v.y), v.bulge);
  entity->setClosed(closed);
  return entity;
}

std::string describe(const OdGePoint3dArray& points) {
  std::string text;
  for (const OdGePoint3d& p : points)
    text +=
        "(" + std::to_string(p.x) + ", " + std::to_string(p.y) + ", " + std::to_string(p.z) + ") ";
  return text;
}

/// The same points, in any order, each once.
void expectSamePoints(const std::vector<OdGePoint3d>& expected, const OdGePoint3dArray& actual) {
  ASSERT_EQ(expected.size(), actual.size()) << describe(actual);
  for (const OdGePoint3d& point : expected) {
    bool found = false;
    for (const OdGePoint3d& candidate : actual)
      found = found || candidate.isEqualTo(point, OdGeTol(1e-9));
    EXPECT_TRUE(found) << "missing (" << point.x << ", " << point.y << ", " << point.z << ") in "
                       << describe(actual);
  }
}

struct Case {
  const char* name;
  OdDbEntityPtr self;
  OdDbEntityPtr other;
  OdDb::Intersect mode;
  std::vector<OdGePoint3d> expected;
};

/// Checks each case both ways round (swapping the operands swaps the extend modes too).
void checkCases(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdGePoint3dArray points;
    ASSERT_EQ(eOk, c.self->intersectWith(c.other.get(), c.mode, points));
    expectSamePoints(c.expected, points);

    OdDb::Intersect swapped = c.mode;
    if (c.mode == OdDb::kExtendThis)
      swapped = OdDb::kExtendArg;
    else if (c.mode == OdDb::kExtendArg)
      swapped = OdDb::kExtendThis;
    OdGePoint3dArray reversed;
    ASSERT_EQ(eOk, c.other->intersectWith(c.self.get(), swapped, reversed));
    SCOPED_TRACE("operands swapped");
    expectSamePoints(c.expected, reversed);
  }
}

typedef OdGePoint3d P;

TEST(IntersectTest, LinesWithArcs) {
  const double s3 = std::sqrt(3.0);
  const std::vector<Case> cases = {
      {"through both ends of a half circle's chord band",
       line(P(-3, 1, 0), P(3, 1, 0)),
       arc(P(0, 0, 0), 2.0, 0.0, 180.0),
       OdDb::kOnBothOperands,
       {P(-s3, 1, 0), P(s3, 1, 0)}},
      {"one crossing outside the sweep",
       line(P(-3, 1, 0), P(3, 1, 0)),
       arc(P(0, 0, 0), 2.0, 0.0, 90.0),
       OdDb::kOnBothOperands,
       {P(s3, 1, 0)}},
      {"tangent",
       line(P(-3, 2, 0), P(3, 2, 0)),
       arc(P(0, 0, 0), 2.0, 0.0, 180.0),
       OdDb::kOnBothOperands,
       {P(0, 2, 0)}},
      {"tangent outside the sweep",
       line(P(-3, -2, 0), P(3, -2, 0)),
       arc(P(0, 0, 0), 2.0, 0.0, 180.0),
       OdDb::kOnBothOperands,
       {}},
      {"line short of the arc",
       line(P(-3, 1, 0), P(-2.5, 1, 0)),
       arc(P(0, 0, 0), 2.0, 0.0, 180.0),
       OdDb::kOnBothOperands,
       {}},
      {"line extended to the arc",
       line(P(-3, 1, 0), P(-2.5, 1, 0)),
       arc(P(0, 0, 0), 2.0, 0.0, 180.0),
       OdDb::kExtendThis,
       {P(-s3, 1, 0), P(s3, 1, 0)}},
      {"line through the arc's plane",
       line(P(0, 2, -1), P(0, 2, 1)),
       arc(P(0, 0, 0), 2.0, 0.0, 180.0),
       OdDb::kOnBothOperands,
       {P(0, 2, 0)}},
  };
  checkCases(cases);
}

TEST(IntersectTest, ArcsWithArcs) {
  const double s3 = std::sqrt(3.0);
  const double s2 = std::sqrt(2.0);
  const std::vector<Case> cases = {
      {"two crossings",
       arc(P(0, 0, 0), 2.0, 0.0, 0.0),
       arc(P(2, 0, 0), 2.0, 90.0, 270.0),
       OdDb::kOnBothOperands,
       {P(1, s3, 0), P(1, -s3, 0)}},
      {"one crossing in both sweeps",
       arc(P(0, 0, 0), 2.0, 0.0, 90.0),
       arc(P(2, 0, 0), 2.0, 90.0, 270.0),
       OdDb::kOnBothOperands,
       {P(1, s3, 0)}},
      {"touching from outside",
       arc(P(0, 0, 0), 1.0, -90.0, 90.0),
       arc(P(3, 0, 0), 2.0, 90.0, 270.0),
       OdDb::kOnBothOperands,
       {P(1, 0, 0)}},
      {"one circle: the overlap's ends",
       arc(P(0, 0, 0), 2.0, 0.0, 90.0),
       arc(P(0, 0, 0), 2.0, 45.0, 180.0),
       OdDb::kOnBothOperands,
       {P(0, 2, 0), P(s2, s2, 0)}},
      {"concentric, different radii",
       arc(P(0, 0, 0), 2.0, 0.0, 0.0),
       arc(P(0, 0, 0), 1.0, 0.0, 0.0),
       OdDb::kOnBothOperands,
       {}},
      {"planes crossing where both circles pass",
       arc(P(0, 0, 0), 1.0, 0.0, 0.0),
       arc(P(2, 0, 0), 1.0, 0.0, 0.0, OdGeVector3d::kYAxis),
       OdDb::kOnBothOperands,
       {P(1, 0, 0)}},
      {"planes crossing where one circle passes",
       arc(P(0, 0, 0), 1.0, 0.0, 0.0),
       arc(P(1, 0, 0), 1.0, 0.0, 0.0, OdGeVector3d::kYAxis),
       OdDb::kOnBothOperands,
       {}},
  };
  checkCases(cases);
}

TEST(IntersectTest, PolylinesBySegments) {
  const OdDbEntityPtr rectangle = polyline({{0, 0, 0}, {4, 0, 0}, {4, 2, 0}, {0, 2, 0}}, true);
  const std::vector<Case> cases = {
      {"across a closed rectangle",
       rectangle,
       line(P(2, -1, 0), P(2, 3, 0)),
       OdDb::kOnBothOperands,
       {P(2, 0, 0), P(2, 2, 0)}},
      {"through a vertex, counted once",
       rectangle,
       line(P(-1, -1, 0), P(5, 5, 0)),
       OdDb::kOnBothOperands,
       {P(0, 0, 0), P(2, 2, 0)}},
      {"along an edge",
       rectangle,
       line(P(1, 0, 0), P(3, 0, 0)),
       OdDb::kOnBothOperands,
       {P(1, 0, 0), P(3, 0, 0)}},
      {"open: no closing segment",
       polyline({{0, 0, 0}, {4, 0, 0}, {4, 2, 0}}, false),
       line(P(-1, 1, 0), P(5, 1, 0)),
       OdDb::kOnBothOperands,
       {P(4, 1, 0)}},
      {"closed: with the closing segment",
       polyline({{0, 0, 0}, {4, 0, 0}, {4, 2, 0}}, true),
       line(P(-1, 1, 0), P(5, 1, 0)),
       OdDb::kOnBothOperands,
       {P(4, 1, 0), P(2, 1, 0)}},
      {"a bulged segment is its arc",
       polyline({{0, 0, 1.0}, {4, 0, 0}}, false),
       line(P(2, -3, 0), P(2, 3, 0)),
       OdDb::kOnBothOperands,
       {P(2, -2, 0)}},
      {"a clockwise bulge",
       polyline({{0, 0, -1.0}, {4, 0, 0}}, false),
       line(P(2, -3, 0), P(2, 3, 0)),
       OdDb::kOnBothOperands,
       {P(2, 2, 0)}},
      {"two rectangles",
       rectangle,
       polyline({{1, -1, 0}, {3, -1, 0}, {3, 3, 0}, {1, 3, 0}}, true),
       OdDb::kOnBothOperands,
       {P(1, 0, 0), P(3, 0, 0), P(3, 2, 0), P(1, 2, 0)}},
      {"polyline and arc",
       rectangle,
       arc(P(2, 1, 0), 1.5, 0.0, 180.0),
       OdDb::kOnBothOperands,
       {P(2 + std::sqrt(1.25), 2, 0), P(2 - std::sqrt(1.25), 2, 0)}},
  };
  checkCases(cases);
}

class IntersectExplodedTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { IntersectCross::rxInit(); }
  static void TearDownTestSuite() { IntersectCross::rxUninit(); }
};

} // namespace
} // namespace intersect_test
