// intersectWith of lines, arcs and polylines with each other.

#include "DbArc.h"
#include "DbLine.h"
#include "DbPolyline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace intersect_test {

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

OdGePoint3d P(double x, double y, double z = 0.0) {
  return OdGePoint3d(x, y, z);
}
constexpr OdDb::Intersect kOn = OdDb::kOnBothOperands, kExtThis = OdDb::kExtendThis;

TEST(IntersectTest, LinesWithLines) {
  const OdDbEntityPtr base = line(P(0, 0), P(4, 0));
  const OdDbEntityPtr beyond = line(P(6, 0), P(9, 0));
  const std::vector<Case> cases = {
      {"crossing", line(P(0, 4), P(4, -4)), base, kOn, {P(2, 0)}},
      {"collinear, overlapping: its ends", base, line(P(6, 0), P(2, 0)), kOn, {P(2, 0), P(4, 0)}},
      {"collinear, end to end", base, line(P(4, 0), P(7, 0)), kOn, {P(4, 0)}},
      {"collinear, apart", base, beyond, kOn, {}},
      {"collinear, apart, extended to the other", base, beyond, kExtThis, {P(6, 0), P(9, 0)}},
      {"parallel", base, line(P(0, 1), P(4, 1)), kOn, {}},
  };
  checkCases(cases);
}

TEST(IntersectTest, LinesWithArcs) {
  const double s3 = std::sqrt(3.0);
  const OdDbEntityPtr half = arc(P(0, 0), 2.0, 0, 180);
  const OdDbEntityPtr across = line(P(-3, 1), P(3, 1));
  const OdDbEntityPtr shortLine = line(P(-3, 1), P(-2.5, 1));
  const std::vector<Case> cases = {
      {"through a half circle twice", across, half, kOn, {P(-s3, 1), P(s3, 1)}},
      {"outside the sweep once", across, arc(P(0, 0), 2.0, 0, 90), kOn, {P(s3, 1)}},
      {"tangent", line(P(-3, 2), P(3, 2)), half, kOn, {P(0, 2)}},
      {"tangent outside the sweep", line(P(-3, -2), P(3, -2)), half, kOn, {}},
      {"line short of the arc", shortLine, half, kOn, {}},
      {"line extended to the arc", shortLine, half, kExtThis, {P(-s3, 1), P(s3, 1)}},
      {"line through the arc's plane", line(P(0, 2, -1), P(0, 2, 1)), half, kOn, {P(0, 2)}},
  };
  checkCases(cases);
}

TEST(IntersectTest, ArcsWithArcs) {
  const double s3 = std::sqrt(3.0);
  const double s2 = std::sqrt(2.0);
  const OdDbEntityPtr circle2 = arc(P(0, 0), 2.0, 0, 0);
  const OdDbEntityPtr circle1 = arc(P(0, 0), 1.0, 0, 0);
  const OdDbEntityPtr quarter = arc(P(0, 0), 2.0, 0, 90);
  const OdDbEntityPtr leftHalf = arc(P(2, 0), 2.0, 90, 270);
  const OdGeVector3d y = OdGeVector3d::kYAxis;
  const std::vector<Case> cases = {
      {"two crossings", circle2, leftHalf, kOn, {P(1, s3), P(1, -s3)}},
      {"one crossing in both sweeps", quarter, leftHalf, kOn, {P(1, s3)}},
      {"touching from outside", arc(P(0, 0), 1, -90, 90), arc(P(3, 0), 2, 90, 270), kOn, {P(1, 0)}},
      {"one circle: the overlap's ends",
       quarter,
       arc(P(0, 0), 2, 45, 180),
       kOn,
       {P(0, 2), P(s2, s2)}},
      {"concentric, different radii", circle2, circle1, kOn, {}},
      {"planes crossing where both circles pass",
       circle1,
       arc(P(2, 0), 1, 0, 0, y),
       kOn,
       {P(1, 0)}},
      {"planes crossing where one circle passes", circle1, arc(P(1, 0), 1, 0, 0, y), kOn, {}},
  };
  checkCases(cases);
}

TEST(IntersectTest, PolylinesBySegments) {
  const OdDbEntityPtr rectangle = polyline({{0, 0, 0}, {4, 0, 0}, {4, 2, 0}, {0, 2, 0}}, true);
  const std::vector<Vertex> bend = {{0, 0, 0}, {4, 0, 0}, {4, 2, 0}};
  const OdDbEntityPtr vertical = line(P(2, -3), P(2, 3));
  const OdDbEntityPtr horizontal = line(P(-1, 1), P(5, 1));
  const OdDbEntityPtr square = polyline({{1, -1, 0}, {3, -1, 0}, {3, 3, 0}, {1, 3, 0}}, true);
  const double r = std::sqrt(1.25);
  const std::vector<Case> cases = {
      {"across a rectangle", rectangle, line(P(2, -1), P(2, 3)), kOn, {P(2, 0), P(2, 2)}},
      {"through a vertex, once", rectangle, line(P(-1, -1), P(5, 5)), kOn, {P(0, 0), P(2, 2)}},
      {"along an edge", rectangle, line(P(1, 0), P(3, 0)), kOn, {P(1, 0), P(3, 0)}},
      {"open: no closing segment", polyline(bend, false), horizontal, kOn, {P(4, 1)}},
      {"closed: the closing segment", polyline(bend, true), horizontal, kOn, {P(4, 1), P(2, 1)}},
      {"a bulge is its arc", polyline({{0, 0, 1.0}, {4, 0, 0}}, false), vertical, kOn, {P(2, -2)}},
      {"a clockwise bulge", polyline({{0, 0, -1.0}, {4, 0, 0}}, false), vertical, kOn, {P(2, 2)}},
      {"two rectangles", rectangle, square, kOn, {P(1, 0), P(3, 0), P(3, 2), P(1, 2)}},
      {"polyline and arc", rectangle, arc(P(2, 1), 1.5, 0, 180), kOn, {P(2 + r, 2), P(2 - r, 2)}},
  };
  checkCases(cases);
}

} // namespace
} // namespace intersect_test
