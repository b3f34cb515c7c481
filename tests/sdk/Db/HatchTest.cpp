#include "DbHatch.h"

#include "DbDwgStreamFiler.h"
#include "DbDxfItemFiler.h"
#include "DbLine.h"
#include "DbPolyline.h"
#include "Gi/GiRecorder.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace {

typedef OdStaticRxObject<OdDbDwgStreamFiler> Filer;
typedef OdStaticRxObject<OdDbDxfItemFiler> DxfFiler;

/// The group codes of DXF items, in order.
std::vector<int> codesOf(const OdDbDxfItemFiler::ItemArray& items) {
  std::vector<int> codes(items.size());
  std::transform(items.begin(), items.end(), codes.begin(),
                 [](const OdDbDxfItemFiler::Item& item) { return item.code; });
  return codes;
}

struct V {
  double x;
  double y;
  double bulge;
};

OdGePoint2dArray pointsOf(const std::vector<V>& vertices) {
  OdGePoint2dArray points;
  for (const V& v : vertices)
    points.append(OdGePoint2d(v.x, v.y));
  return points;
}

OdGeDoubleArray bulgesOf(const std::vector<V>& vertices) {
  OdGeDoubleArray bulges;
  for (const V& v : vertices)
    bulges.append(v.bulge);
  return bulges;
}

void appendLoop(OdDbHatch* hatch, OdInt32 type, const std::vector<V>& vertices) {
  hatch->appendLoop(type, pointsOf(vertices), bulgesOf(vertices));
}

constexpr OdInt32 kOuter = OdDbHatch::kExternal | OdDbHatch::kPolyline;
constexpr OdInt32 kIsland = OdDbHatch::kPolyline;

/// Loops, pattern, style and plane all away from their defaults.
OdDbHatchPtr makeFullHatch() {
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  appendLoop(hatch, kOuter, {{0, 0, 0}, {10, 0, 0.5}, {10, 8, 0}, {0, 8, -0.25}});
  appendLoop(hatch, kIsland, {{2, 2, 0}, {4, 2, 0}, {4, 4, 0}});
  hatch->setPattern(OdDbHatch::kCustomDefined, OD_T("Brick"));
  hatch->setPatternAngle(0.75);
  hatch->setPatternScale(2.5);
  hatch->setPatternDouble(true);
  hatch->setHatchStyle(OdDbHatch::kOuter);
  hatch->setHatchObjectType(OdDbHatch::kGradientObject);
  hatch->setAssociative(true);
  hatch->setElevation(-3.5);
  hatch->setNormal(OdGeVector3d(0.0, 0.6, 0.8));
  hatch->setColorIndex(5);
  return hatch;
}

void expectSameHatch(OdDbHatch* expected, OdDbHatch* actual) {
  ASSERT_EQ(expected->numLoops(), actual->numLoops());
  for (int i = 0; i < expected->numLoops(); ++i) {
    SCOPED_TRACE(i);
    OdInt32 t1 = 0, t2 = 0;
    OdGePoint2dArray p1, p2;
    OdGeDoubleArray b1, b2;
    expected->getLoopAt(i, t1, p1, b1);
    actual->getLoopAt(i, t2, p2, b2);
    EXPECT_EQ(t1, t2);
    ASSERT_EQ(p1.size(), p2.size());
    for (unsigned int k = 0; k < p1.size(); ++k) {
      EXPECT_EQ(p1[k].x, p2[k].x);
      EXPECT_EQ(p1[k].y, p2[k].y);
      EXPECT_EQ(b1[k], b2[k]);
    }
  }
  EXPECT_EQ(expected->patternType(), actual->patternType());
  EXPECT_EQ(expected->patternName(), actual->patternName());
  EXPECT_EQ(expected->patternAngle(), actual->patternAngle());
  EXPECT_EQ(expected->patternScale(), actual->patternScale());
  EXPECT_EQ(expected->patternDouble(), actual->patternDouble());
  EXPECT_EQ(expected->isSolidFill(), actual->isSolidFill());
  EXPECT_EQ(expected->hatchStyle(), actual->hatchStyle());
  EXPECT_EQ(expected->hatchObjectType(), actual->hatchObjectType());
  EXPECT_EQ(expected->associative(), actual->associative());
  EXPECT_EQ(expected->elevation(), actual->elevation());
  EXPECT_EQ(expected->normal(), actual->normal());
}

void expectPoint(const OdGePoint3d& expected, const OdGePoint3d& actual, double tol = 1e-9) {
  EXPECT_NEAR(expected.x, actual.x, tol);
  EXPECT_NEAR(expected.y, actual.y, tol);
  EXPECT_NEAR(expected.z, actual.z, tol);
}

/// A finely cut outline of a loop, to judge the hatch's clipping independently of it.
std::vector<OdGePoint2d> fineOutline(const std::vector<V>& vertices) {
  const std::vector<V>& v = vertices;
  std::vector<OdGePoint2d> result;
  for (std::size_t i = 0; i < v.size(); ++i) {
    const OdGePoint2d a(v[i].x, v[i].y);
    const OdGePoint2d b(v[(i + 1) % v.size()].x, v[(i + 1) % v.size()].y);
    result.push_back(a);
    if (v[i].bulge == 0.0)
      continue;
    const double sweep = 4.0 * std::atan(v[i].bulge);
    const OdGeVector2d chord = b - a;
    const OdGePoint2d center =
        a + chord * 0.5 + chord.perpVector() * (0.25 * (1.0 / v[i].bulge - v[i].bulge));
    const double radius = center.distanceTo(a);
    const double start = (a - center).angle();
    for (int k = 1; k < 4096; ++k) {
      const double angle = start + sweep * k / 4096.0;
      result.push_back(center + OdGeVector2d(std::cos(angle), std::sin(angle)) * radius);
    }
  }
  return result;
}

bool insidePolygon(const std::vector<OdGePoint2d>& polygon, const OdGePoint2d& p) {
  bool inside = false;
  for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
    const OdGePoint2d& a = polygon[i];
    const OdGePoint2d& b = polygon[j];
    if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) * (b.x - a.x) / (b.y - a.y))
      inside = !inside;
  }
  return inside;
}

double distanceToOutline(const std::vector<OdGePoint2d>& polygon, const OdGePoint2d& p) {
  double best = std::numeric_limits<double>::max();
  for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
    const OdGeVector2d edge = polygon[i] - polygon[j];
    const double t = std::clamp((p - polygon[j]).dotProduct(edge) / edge.lengthSqrd(), 0.0, 1.0);
    best = std::min(best, p.distanceTo(polygon[j] + edge * t));
  }
  return best;
}

/// The two-point polylines a pattern hatch draws after its outlines, in plane terms (the hatch
/// lies in the XY plane in these tests).
std::vector<std::pair<OdGePoint2d, OdGePoint2d>> patternLines(const OdGiRecorder& recorder,
                                                              int numLoops) {
  std::vector<std::pair<OdGePoint2d, OdGePoint2d>> lines;
  for (std::size_t i = static_cast<std::size_t>(numLoops); i < recorder.records().size(); ++i) {
    const OdGiRecord& record = recorder.records()[i];
    EXPECT_EQ(OdGiRecord::kPolyline, record.kind);
    EXPECT_EQ(2u, record.points.size());
    if (record.points.size() == 2)
      lines.emplace_back(record.points[0].convert2d(), record.points[1].convert2d());
  }
  return lines;
}

class HatchTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { odInitialize(); }
  static void TearDownTestSuite() { odUninitialize(); }
};

TEST_F(HatchTest, RegisteredUnderEntityWithDxfNameAndDwgType) {
  OdRxClass* cls = odrxGetClass(OD_T("OdDbHatch"));
  ASSERT_NE(nullptr, cls);
  EXPECT_EQ(OdDbEntity::desc(), cls->myParent());
  EXPECT_EQ(OdString(OD_T("HATCH")), cls->dxfName());
  EXPECT_EQ(cls, oddbDwgClassMapDesc(78));
}

TEST_F(HatchTest, DefaultState) {
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  EXPECT_EQ(0, hatch->numLoops());
  EXPECT_EQ(OdDbHatch::kPreDefined, hatch->patternType());
  EXPECT_TRUE(hatch->patternName().isEmpty());
  EXPECT_EQ(1.0, hatch->patternScale());
  EXPECT_EQ(0.0, hatch->patternAngle());
  EXPECT_FALSE(hatch->patternDouble());
  EXPECT_FALSE(hatch->isSolidFill());
  EXPECT_FALSE(hatch->associative());
  EXPECT_EQ(OdDbHatch::kNormal, hatch->hatchStyle());
  EXPECT_EQ(OdDbHatch::kHatchObject, hatch->hatchObjectType());
  EXPECT_EQ(0.0, hatch->elevation());
  EXPECT_EQ(OdGeVector3d::kZAxis, hatch->normal());
  double area = -1.0;
  ASSERT_EQ(eOk, hatch->getArea(area));
  EXPECT_EQ(0.0, area);
  OdGeExtents3d extents;
  EXPECT_EQ(eInvalidExtents, hatch->getGeomExtents(extents));
  OdGiRecorder recorder;
  EXPECT_TRUE(hatch->worldDraw(&recorder));
  EXPECT_TRUE(recorder.records().empty());
}

TEST_F(HatchTest, LoopsAreAddedInsertedAndRemoved) {
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  hatch->appendLoop(kOuter, pointsOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}), OdGeDoubleArray());
  appendLoop(hatch, kIsland, {{5, 5, 0.5}, {6, 5, 0}});
  appendLoop(hatch, kIsland | OdDbHatch::kDerived, {{0, 0, 0}, {0, 2, 0}});
  ASSERT_EQ(3, hatch->numLoops());

  hatch->insertLoopAt(0, kIsland, pointsOf({{9, 9, 0}, {8, 8, 0}}), OdGeDoubleArray());
  hatch->removeLoopAt(2);
  ASSERT_EQ(3, hatch->numLoops());
  EXPECT_EQ(kIsland, hatch->loopTypeAt(0));
  EXPECT_EQ(kOuter, hatch->loopTypeAt(1));
  EXPECT_EQ(kIsland | OdDbHatch::kDerived, hatch->loopTypeAt(2));

  // A loop given no bulges reports one zero bulge per vertex.
  OdInt32 type = 0;
  OdGePoint2dArray vertices;
  OdGeDoubleArray bulges;
  hatch->getLoopAt(1, type, vertices, bulges);
  ASSERT_EQ(3u, vertices.size());
  EXPECT_EQ(OdGePoint2d(1, 1), vertices[2]);
  EXPECT_EQ(OdGeDoubleArray({0.0, 0.0, 0.0}), bulges);
}

TEST_F(HatchTest, InvalidLoopsAndIndicesAreRefused) {
  const double nan = std::nan("");
  struct Case {
    const char* name;
    OdInt32 type;
    OdGePoint2dArray vertices;
    OdGeDoubleArray bulges;
  };
  const Case cases[] = {
      {"no polyline bit", OdDbHatch::kExternal, pointsOf({{0, 0, 0}, {1, 0, 0}}), {}},
      {"one vertex", kOuter, pointsOf({{0, 0, 0}}), {}},
      {"no vertices", kOuter, {}, {}},
      {"fewer bulges", kOuter, pointsOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}), {0.5, 0.0}},
      {"more bulges", kOuter, pointsOf({{0, 0, 0}, {1, 0, 0}}), {0.5, 0.0, 0.0}},
      {"NaN vertex", kOuter, pointsOf({{0, 0, 0}, {nan, 0, 0}}), {}},
      {"infinite bulge", kOuter, pointsOf({{0, 0, 0}, {1, 0, 0}}), {INFINITY, 0.0}},
  };
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  appendLoop(hatch, kOuter, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}});
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    try {
      hatch->appendLoop(c.type, c.vertices, c.bulges);
      ADD_FAILURE() << "appendLoop accepted the loop";
    } catch (const OdError& error) {
      EXPECT_EQ(eInvalidInput, error.code());
    }
    EXPECT_THROW(hatch->insertLoopAt(0, c.type, c.vertices, c.bulges), OdError);
    EXPECT_EQ(1, hatch->numLoops());
  }

  const OdGePoint2dArray good = pointsOf({{0, 0, 0}, {1, 0, 0}});
  OdInt32 type = 0;
  OdGePoint2dArray vertices;
  OdGeDoubleArray bulges;
  for (int index : {-1, 1, 7}) {
    SCOPED_TRACE(index);
    EXPECT_THROW(hatch->removeLoopAt(index), OdError_InvalidIndex);
    EXPECT_THROW(hatch->loopTypeAt(index), OdError_InvalidIndex);
    EXPECT_THROW(hatch->getLoopAt(index, type, vertices, bulges), OdError_InvalidIndex);
  }
  EXPECT_THROW(hatch->insertLoopAt(2, kOuter, good, OdGeDoubleArray()), OdError_InvalidIndex);
  EXPECT_THROW(hatch->insertLoopAt(-1, kOuter, good, OdGeDoubleArray()), OdError_InvalidIndex);
  EXPECT_EQ(1, hatch->numLoops());

  // Refused values leave the hatch as it was.
  EXPECT_THROW(hatch->setPatternScale(0.0), OdError);
  EXPECT_THROW(hatch->setPatternScale(-2.0), OdError);
  EXPECT_THROW(hatch->setPatternScale(nan), OdError);
  EXPECT_THROW(hatch->setPatternAngle(INFINITY), OdError);
  EXPECT_THROW(hatch->setNormal(OdGeVector3d(0, 0, 0)), OdError);
  EXPECT_THROW(hatch->setElevation(nan), OdError);
  EXPECT_THROW(hatch->setHatchStyle(static_cast<OdDbHatch::HatchStyle>(3)), OdError);
  EXPECT_THROW(hatch->setPattern(static_cast<OdDbHatch::HatchPatternType>(5), OD_T("X")), OdError);
  EXPECT_EQ(1.0, hatch->patternScale());
  EXPECT_EQ(0.0, hatch->patternAngle());
  EXPECT_EQ(OdGeVector3d::kZAxis, hatch->normal());
  EXPECT_EQ(OdDbHatch::kNormal, hatch->hatchStyle());
}

TEST_F(HatchTest, OnlyThePredefinedSolidPatternFills) {
  struct Case {
    OdDbHatch::HatchPatternType type;
    const OdChar* name;
    bool solid;
  };
  const Case cases[] = {
      {OdDbHatch::kPreDefined, OD_T("SOLID"), true},
      {OdDbHatch::kPreDefined, OD_T("solid"), true},
      {OdDbHatch::kPreDefined, OD_T("ANSI31"), false},
      {OdDbHatch::kCustomDefined, OD_T("SOLID"), false},
      {OdDbHatch::kUserDefined, OD_T("_USER"), false},
  };
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  for (const Case& c : cases) {
    SCOPED_TRACE(OdString(c.name).toUtf8());
    hatch->setPattern(c.type, c.name);
    EXPECT_EQ(c.solid, hatch->isSolidFill());
    EXPECT_EQ(c.type, hatch->patternType());
    EXPECT_EQ(OdString(c.name), hatch->patternName());
  }
}

TEST_F(HatchTest, AreaCountsOuterLoopsLessIslands) {
  struct LoopSpec {
    OdInt32 type;
    std::vector<V> vertices;
  };
  struct Case {
    const char* name;
    std::vector<LoopSpec> loops;
    double expected;
  };
  const Case cases[] = {
      {"rectangle", {{kOuter, {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, 0}}}}, 12.0},
      {"clockwise rectangle", {{kOuter, {{0, 0, 0}, {0, 3, 0}, {4, 3, 0}, {4, 0, 0}}}}, 12.0},
      {"half disc", {{kOuter, {{-1, 0, 1}, {1, 0, 0}}}}, OdaPI / 2.0},
      {"full disc of two half circles", {{kOuter, {{-2, 0, 1}, {2, 0, 1}}}}, 4.0 * OdaPI},
      {"square with a bulged-out side",
       {{kOuter | OdDbHatch::kOutermost, {{0, 0, 1}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}}},
       4.0 + OdaPI / 2.0},
      {"square with a bitten side",
       {{OdDbHatch::kOutermost | OdDbHatch::kPolyline,
         {{0, 0, -1}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}}},
       4.0 - OdaPI / 2.0},
      {"outer with island",
       {{kOuter, {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}},
        {kIsland, {{2, 2, 0}, {4, 2, 0}, {4, 4, 0}, {2, 4, 0}}}},
       96.0},
      {"outer with round island",
       {{kOuter, {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}},
        {kIsland, {{4, 5, 1}, {6, 5, 1}}}},
       100.0 - OdaPI},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbHatchPtr hatch = OdDbHatch::createObject();
    for (const LoopSpec& loop : c.loops)
      appendLoop(hatch, loop.type, loop.vertices);
    double area = 0.0;
    ASSERT_EQ(eOk, hatch->getArea(area));
    EXPECT_NEAR(c.expected, area, 1e-12);
  }
}

TEST_F(HatchTest, SolidFillDrawsFilledPolygonsInThePlane) {
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  appendLoop(hatch, kOuter, {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, 0}});
  appendLoop(hatch, kIsland, {{1, 1, 1}, {3, 1, 1}});
  hatch->setPattern(OdDbHatch::kPreDefined, OD_T("SOLID"));
  hatch->setElevation(2.0);
  hatch->setNormal(OdGeVector3d::kXAxis); // plane axes: world Y and world Z

  OdGiRecorder recorder;
  EXPECT_TRUE(hatch->worldDraw(&recorder));
  ASSERT_EQ(2u, recorder.records().size());
  ASSERT_EQ(2u, recorder.count(OdGiRecord::kPolygon));
  const OdGiRecord& rectangle = recorder.records()[0];
  EXPECT_EQ(kOdGiFillAlways, rectangle.traits.fillType());
  ASSERT_EQ(4u, rectangle.points.size());
  expectPoint(OdGePoint3d(2, 0, 0), rectangle.points[0]);
  expectPoint(OdGePoint3d(2, 4, 3), rectangle.points[2]);

  // The round island: every point on the circle of radius 1 about (2, 1) in the plane.
  const OdGiRecord& disc = recorder.records()[1];
  EXPECT_EQ(kOdGiFillAlways, disc.traits.fillType());
  EXPECT_EQ(64u, disc.points.size());
  for (const OdGePoint3d& p : disc.points) {
    EXPECT_NEAR(2.0, p.x, 1e-12);
    EXPECT_NEAR(1.0, OdGePoint3d(2, 2, 1).distanceTo(p), 1e-12);
  }
  EXPECT_EQ(kOdGiFillNever, recorder.subEntityTraits().fillType()) << "fill not restored";
}

TEST_F(HatchTest, PatternLinesStayInsideTheHatchedArea) {
  struct Case {
    const char* name;
    std::vector<V> outer;
    std::vector<V> island; // empty: none
    const OdChar* pattern;
    double scale;
    double angle;
  };
  const Case cases[] = {
      {"square", {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, {}, OD_T("ANSI31"), 1.0, 0.0},
      {"concave L",
       {{0, 0, 0}, {10, 0, 0}, {10, 3, 0}, {3, 3, 0}, {3, 10, 0}, {0, 10, 0}},
       {},
       OD_T("ANSI37"),
       0.5,
       0.3},
      {"disc", {{-5, 0, 1}, {5, 0, 1}}, {}, OD_T("NET"), 0.7, 0.0},
      {"bulged in and out",
       {{0, 0, -0.4}, {8, 0, 0.3}, {8, 8, 0}, {0, 8, 0}},
       {},
       OD_T("LINE"),
       0.4,
       1.1},
      {"square with island",
       {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}},
       {{3, 3, 0}, {7, 3, 0}, {7, 7, 0.5}, {3, 7, 0}},
       OD_T("ANSI31"),
       0.5,
       0.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbHatchPtr hatch = OdDbHatch::createObject();
    appendLoop(hatch, kOuter, c.outer);
    if (c.island.size() > 0)
      appendLoop(hatch, kIsland, c.island);
    hatch->setPattern(OdDbHatch::kPreDefined, c.pattern);
    hatch->setPatternScale(c.scale);
    hatch->setPatternAngle(c.angle);
    OdGiRecorder recorder;
    ASSERT_TRUE(hatch->worldDraw(&recorder));
    const auto lines = patternLines(recorder, hatch->numLoops());
    ASSERT_GT(lines.size(), 3u);

    const std::vector<OdGePoint2d> outer = fineOutline(c.outer);
    const std::vector<OdGePoint2d> island = fineOutline(c.island);
    const double tol = 1e-4;
    for (const auto& line : lines) {
      // Both ends on an outline: the line was clipped there, not merely kept inside.
      for (const OdGePoint2d& end : {line.first, line.second}) {
        double onOutline = distanceToOutline(outer, end);
        if (!island.empty())
          onOutline = std::min(onOutline, distanceToOutline(island, end));
        EXPECT_LT(onOutline, tol);
      }
      for (int k = 0; k <= 20; ++k) {
        const OdGePoint2d p = line.first + (line.second - line.first) * (k / 20.0);
        EXPECT_TRUE(insidePolygon(outer, p) || distanceToOutline(outer, p) < tol);
        if (!island.empty()) {
          EXPECT_TRUE(!insidePolygon(island, p) || distanceToOutline(island, p) < tol);
        }
      }
    }
  }
}

TEST_F(HatchTest, PatternFamiliesFollowNameAngleAndScale) {
  struct Case {
    const char* name;
    OdDbHatch::HatchPatternType type;
    const OdChar* pattern;
    bool isDouble;
    double scale;
    double angle;
    std::vector<double> directionsDegrees; // modulo 180
    double spacing;
  };
  const Case cases[] = {
      {"ANSI31", OdDbHatch::kPreDefined, OD_T("ANSI31"), false, 1.0, 0.0, {45}, 3.175},
      {"unknown as ANSI31", OdDbHatch::kCustomDefined, OD_T("MYPAT"), false, 1.0, 0.0, {45}, 3.175},
      {"scaled and turned",
       OdDbHatch::kPreDefined,
       OD_T("ANSI31"),
       false,
       2.0,
       OdaPI / 6,
       {75},
       6.35},
      {"LINE", OdDbHatch::kPreDefined, OD_T("line"), false, 1.0, 0.0, {0}, 3.175},
      {"NET", OdDbHatch::kPreDefined, OD_T("NET"), false, 1.0, 0.0, {0, 90}, 3.175},
      {"ANSI37", OdDbHatch::kPreDefined, OD_T("ANSI37"), false, 1.0, 0.0, {45, 135}, 3.175},
      {"user single",
       OdDbHatch::kUserDefined,
       OD_T("_USER"),
       false,
       1.0,
       0.5,
       {0.5 * 180.0 / OdaPI},
       3.175},
      {"user double", OdDbHatch::kUserDefined, OD_T("_USER"), true, 1.0, 0.0, {0, 90}, 3.175},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbHatchPtr hatch = OdDbHatch::createObject();
    appendLoop(hatch, kOuter, {{0, 0, 0}, {20, 0, 0}, {20, 20, 0}, {0, 20, 0}});
    hatch->setPattern(c.type, c.pattern);
    hatch->setPatternDouble(c.isDouble);
    hatch->setPatternScale(c.scale);
    hatch->setPatternAngle(c.angle);
    OdGiRecorder recorder;
    ASSERT_TRUE(hatch->worldDraw(&recorder));
    const auto lines = patternLines(recorder, 1);
    // Lines grouped by direction; within a direction, neighbours lie `spacing` apart.
    std::vector<std::vector<double>> offsets(c.directionsDegrees.size());
    for (const auto& line : lines) {
      const double degrees =
          std::fmod((line.second - line.first).angle() * 180.0 / OdaPI + 360.0, 180.0);
      bool matched = false;
      for (std::size_t d = 0; d < c.directionsDegrees.size(); ++d) {
        const double diff = std::fabs(degrees - c.directionsDegrees[d]);
        if (std::min(diff, 180.0 - diff) < 1e-6) {
          const double radians = c.directionsDegrees[d] * OdaPI / 180.0;
          offsets[d].push_back(line.first.asVector().dotProduct(
              OdGeVector2d(-std::sin(radians), std::cos(radians))));
          matched = true;
        }
      }
      EXPECT_TRUE(matched) << "line at " << degrees << " degrees";
    }
    for (std::vector<double>& family : offsets) {
      ASSERT_GT(family.size(), 2u);
      std::sort(family.begin(), family.end());
      for (std::size_t i = 1; i < family.size(); ++i)
        EXPECT_NEAR(c.spacing, family[i] - family[i - 1], 1e-9);
    }
  }
}

TEST_F(HatchTest, StylesChooseWhichNestedAreasAreHatched) {
  // Three nested squares; a vertical line family (LINE turned by 90°) crosses all of them.
  struct Case {
    OdDbHatch::HatchStyle style;
    std::vector<bool> hatchedBands; // outer ring, middle ring, core
  };
  const Case cases[] = {
      {OdDbHatch::kNormal, {true, false, true}},
      {OdDbHatch::kOuter, {true, false, false}},
      {OdDbHatch::kIgnore, {true, true, true}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.style);
    OdDbHatchPtr hatch = OdDbHatch::createObject();
    appendLoop(hatch, kOuter, {{0, 0, 0}, {30, 0, 0}, {30, 30, 0}, {0, 30, 0}});
    appendLoop(hatch, kIsland, {{10, 10, 0}, {20, 10, 0}, {20, 20, 0}, {10, 20, 0}});
    appendLoop(hatch, kIsland, {{13, 13, 0}, {17, 13, 0}, {17, 17, 0}, {13, 17, 0}});
    hatch->setPattern(OdDbHatch::kPreDefined, OD_T("LINE"));
    hatch->setPatternAngle(OdaPI / 2.0);
    hatch->setHatchStyle(c.style);
    OdGiRecorder recorder;
    ASSERT_TRUE(hatch->worldDraw(&recorder));
    // Which bands along the line x = 15.875 (k = -5 of the turned family) are covered.
    const OdGePoint2d probes[] = {{15.875, 5.0}, {15.875, 11.5}, {15.875, 15.0}};
    for (std::size_t band = 0; band < 3; ++band) {
      bool covered = false;
      for (const auto& line : patternLines(recorder, 3)) {
        const OdGeVector2d along = line.second - line.first;
        const OdGeVector2d toProbe = probes[band] - line.first;
        const double t = toProbe.dotProduct(along) / along.lengthSqrd();
        if (std::fabs(along.crossProduct(toProbe)) < 1e-9 && t > 0.0 && t < 1.0)
          covered = true;
      }
      EXPECT_EQ(c.hatchedBands[band], covered) << "band " << band;
    }
  }
}

TEST_F(HatchTest, TooDenseAPatternDrawsOutlinesOnly) {
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  appendLoop(hatch, kOuter, {{0, 0, 0}, {100, 0, 0}, {100, 100, 0}});
  hatch->setPattern(OdDbHatch::kPreDefined, OD_T("ANSI31"));
  hatch->setPatternScale(1e-6);
  OdGiRecorder recorder;
  EXPECT_TRUE(hatch->worldDraw(&recorder));
  ASSERT_EQ(1u, recorder.records().size());
  EXPECT_EQ(4u, recorder.records()[0].points.size()); // closed outline
}

TEST_F(HatchTest, DwgRoundTripKeepsEveryField) {
  OdDbHatchPtr hatch = makeFullHatch();
  Filer filer;
  filer.openForWrite();
  hatch->dwgOutFields(&filer);
  ASSERT_EQ(eOk, filer.filerStatus());
  filer.rewind();
  OdDbHatchPtr copy = OdDbHatch::createObject();
  ASSERT_EQ(eOk, copy->dwgInFields(&filer));
  EXPECT_EQ(0u, filer.remainingDataBits());
  expectSameHatch(hatch, copy);
  EXPECT_EQ(5, copy->colorIndex());

  // A solid fill keeps its solid flag.
  hatch->setPattern(OdDbHatch::kPreDefined, OD_T("SOLID"));
  filer.openForWrite();
  hatch->dwgOutFields(&filer);
  filer.rewind();
  ASSERT_EQ(eOk, copy->dwgInFields(&filer));
  EXPECT_TRUE(copy->isSolidFill());
}

TEST_F(HatchTest, ShortStreamFailsCleanlyAndChangesNothing) {
  OdDbHatchPtr hatch = makeFullHatch();
  Filer written;
  written.openForWrite();
  hatch->dwgOutFields(&written);
  auto expectRefused = [&](OdUInt64 dataBits, OdUInt64 stringBits) {
    Filer reader;
    reader.openForRead(written.dataBuffer(), dataBits, written.stringBuffer(), stringBits,
                       written.handleBuffer(), written.handleBitSize());
    OdDbHatchPtr fresh = OdDbHatch::createObject();
    appendLoop(fresh, kOuter, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    EXPECT_NE(eOk, fresh->dwgInFields(&reader)) << dataBits << " / " << stringBits;
    EXPECT_EQ(1, fresh->numLoops());
    EXPECT_TRUE(fresh->patternName().isEmpty());
    EXPECT_EQ(0.0, fresh->elevation());
  };
  for (OdUInt64 bits = 0; bits < written.dataBitSize(); ++bits)
    expectRefused(bits, written.stringBitSize());
  for (OdUInt64 bits = 0; bits < written.stringBitSize(); bits += 8)
    expectRefused(written.dataBitSize(), bits);
}

TEST_F(HatchTest, ForgedStreamsAreRefusedBeforeAllocating) {
  struct Case {
    const char* name;
    OdInt32 loops;
    OdInt32 loopType;
    OdInt32 vertices;
    OdResult expected;
  };
  const Case cases[] = {
      {"loop count beyond the data", 0x7fffffff, kOuter, 2, eEndOfFile},
      {"negative loop count read as huge", -1, kOuter, 2, eEndOfFile},
      {"vertex count beyond the data", 1, kOuter, 0x40000000, eEndOfFile},
      {"edge loop", 1, OdDbHatch::kExternal, 2, eDwgObjectImproperlyRead},
      {"one vertex", 1, kOuter, 1, eInvalidInput},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbHatchPtr hatch = OdDbHatch::createObject();
    Filer filer;
    filer.openForWrite();
    hatch->OdDbEntity::dwgOutFields(&filer);
    for (int i = 0; i < 7; ++i)
      filer.wrInt32(0); // gradient block: BL, BL, BD, BD, BL, BD, BL (zeros all alike)
    filer.wrString(OdString());
    filer.wrDouble(0.0);
    filer.wrVector3d(OdGeVector3d::kZAxis);
    filer.wrString(OD_T("X"));
    filer.wrBool(false);
    filer.wrBool(false);
    filer.wrInt32(c.loops);
    filer.wrInt32(c.loopType);
    filer.wrBool(false);
    filer.wrBool(true);
    filer.wrInt32(c.vertices);
    for (int i = 0; i < 2 && i < c.vertices; ++i)
      filer.wrPoint2d(OdGePoint2d(i, i));
    filer.wrInt32(0);
    for (int i = 0; i < 10; ++i)
      filer.wrInt32(0);
    filer.rewind();
    EXPECT_EQ(c.expected, hatch->dwgInFields(&filer));
    EXPECT_EQ(0, hatch->numLoops());
    EXPECT_TRUE(hatch->patternName().isEmpty());
  }
}

TEST_F(HatchTest, DxfRoundTripAndGroupOrder) {
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  appendLoop(hatch, kOuter, {{0, 0, 0.5}, {4, 0, 0}, {4, 3, 0}});
  appendLoop(hatch, kIsland, {{1, 1, 0}, {2, 1, 0}});
  hatch->setPattern(OdDbHatch::kPreDefined, OD_T("ANSI31"));
  hatch->setPatternAngle(OdaPI / 4.0);
  hatch->setPatternScale(2.0);
  hatch->setAssociative(true);
  hatch->setElevation(1.5);
  hatch->setNormal(OdGeVector3d(0, 0, -1));
  hatch->setHatchStyle(OdDbHatch::kIgnore);
  DxfFiler filer;
  filer.openForWrite();
  hatch->dxfOutFields(&filer);
  ASSERT_EQ(eOk, filer.filerStatus());
  const OdDbDxfItemFiler::ItemArray& items = filer.items();
  const std::vector<int> codes = codesOf(items);
  std::size_t marker = 0;
  while (marker < items.size() && items[marker].value != OdString(OD_T("AcDbHatch")))
    ++marker;
  const std::vector<int> hatchCodes(codes.begin() + marker, codes.end());
  // Points and vectors take one group per coordinate: x at 10, y at 20, z at 30.
  const std::vector<int> expected = {100, 10, 20, 30, 210, 220, 230, 2,  70, 71, 91, 92, 72, 73,
                                     93,  10, 20, 42, 10,  20,  42,  10, 20, 42, 97, 92, 72, 73,
                                     93,  10, 20, 10, 20,  97,  75,  76, 52, 41, 77, 78, 53,
                                     43,  44, 45, 46, 79,  98};
  EXPECT_EQ(expected, hatchCodes);
  // ANSI31's one family at 45° turned by the pattern angle (45°) runs at 90°; its lines are
  // 3.175 x 2 apart, so the next line is that far along -X.
  const std::map<int, double> values = {{52, 45.0}, {53, 90.0}, {43, 0.0},
                                        {44, 0.0},  {45, -6.35}, {46, 0.0}};
  for (const OdDbDxfItemFiler::Item& item : items) {
    const auto value = values.find(item.code);
    if (value != values.end()) {
      EXPECT_NEAR(value->second, std::stod(item.value.toUtf8()), 1e-12) << item.code;
    }
  }

  filer.rewind();
  OdDbHatchPtr copy = OdDbHatch::createObject();
  ASSERT_EQ(eOk, copy->dxfInFields(&filer));
  EXPECT_NEAR(OdaPI / 4.0, copy->patternAngle(), 1e-15);
  copy->setPatternAngle(hatch->patternAngle());
  expectSameHatch(hatch, copy);
}

TEST_F(HatchTest, TransformMovesLoopsPlaneAndPattern) {
  struct Case {
    const char* name;
    OdGeMatrix3d xform;
    double scale;
  };
  const Case cases[] = {
      {"rotation about Z",
       OdGeMatrix3d::rotation(OdaPI / 2.0, OdGeVector3d::kZAxis, OdGePoint3d(1, 1, 0)), 1.0},
      {"uniform scale", OdGeMatrix3d::scaling(2.0, OdGePoint3d(3, 0, 0)), 2.0},
      {"tilt about X", OdGeMatrix3d::rotation(0.7, OdGeVector3d::kXAxis), 1.0},
      {"mirror", OdGeMatrix3d::mirroring(OdGePoint3d(0, 0, 0), OdGeVector3d::kXAxis), 1.0},
      {"moved and scaled",
       OdGeMatrix3d::translation(OdGeVector3d(5, -2, 3)) * OdGeMatrix3d::scaling(0.5), 0.5},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbHatchPtr hatch = makeFullHatch();
    hatch->setPatternAngle(0.25);
    OdGePoint3dArray before, after;
    hatch->getGripPoints(before);
    OdGePoint3dArray midsBefore, midsAfter;
    hatch->getOsnapPoints(OdDb::kOsModeMid, 0, OdGePoint3d(), OdGePoint3d(),
                          OdGeMatrix3d::kIdentity, midsBefore);
    double areaBefore = 0.0, areaAfter = 0.0;
    hatch->getArea(areaBefore);

    ASSERT_EQ(eOk, hatch->transformBy(c.xform));
    hatch->getGripPoints(after);
    ASSERT_EQ(before.size(), after.size());
    for (unsigned int i = 0; i < before.size(); ++i)
      expectPoint(c.xform * before[i], after[i]);
    // Arc midpoints follow too, so the bulges were carried over (and flipped by the mirror).
    hatch->getOsnapPoints(OdDb::kOsModeMid, 0, OdGePoint3d(), OdGePoint3d(),
                          OdGeMatrix3d::kIdentity, midsAfter);
    ASSERT_EQ(midsBefore.size(), midsAfter.size());
    for (unsigned int i = 0; i < midsBefore.size(); ++i)
      expectPoint(c.xform * midsBefore[i], midsAfter[i]);
    hatch->getArea(areaAfter);
    EXPECT_NEAR(areaBefore * c.scale * c.scale, areaAfter, 1e-9);
    EXPECT_NEAR(2.5 * c.scale, hatch->patternScale(), 1e-12);
  }

  // Turning about the normal turns the pattern by the same angle.
  OdDbHatchPtr hatch = makeFullHatch();
  hatch->setNormal(OdGeVector3d::kZAxis);
  hatch->setPatternAngle(0.25);
  ASSERT_EQ(eOk, hatch->transformBy(OdGeMatrix3d::rotation(0.5, OdGeVector3d::kZAxis)));
  EXPECT_NEAR(0.75, hatch->patternAngle(), 1e-12);
  ASSERT_EQ(eOk, hatch->transformBy(OdGeMatrix3d::rotation(-1.0, OdGeVector3d::kZAxis)));
  EXPECT_NEAR(Oda2PI - 0.25, hatch->patternAngle(), 1e-12);
}

TEST_F(HatchTest, DistortingTransformsAreRefused) {
  OdGeMatrix3d perspective;
  perspective[3][2] = 0.1;
  const OdGeMatrix3d refused[] = {
      OdGeMatrix3d::scaling(OdGeScale3d(2.0, 1.0, 1.0)),
      OdGeMatrix3d::scaling(OdGeScale3d(1.0, 1.0, 0.0))
          .postMultBy(OdGeMatrix3d::rotation(0.3, OdGeVector3d::kXAxis)),
      OdGeMatrix3d::scaling(0.0),
      perspective,
  };
  for (const OdGeMatrix3d& xform : refused) {
    OdDbHatchPtr hatch = makeFullHatch();
    OdDbHatchPtr original = makeFullHatch();
    EXPECT_EQ(eInvalidInput, hatch->transformBy(xform));
    expectSameHatch(original, hatch);
  }
}

TEST_F(HatchTest, ExplodesIntoClosedOutlinesWithTheHatchProperties) {
  OdDbHatchPtr hatch = makeFullHatch();
  hatch->setLinetypeScale(3.0);
  hatch->setLineWeight(OdDb::kLnWt050);
  OdRxObjectPtrArray entities;
  ASSERT_EQ(eOk, hatch->explode(entities));
  ASSERT_EQ(2u, entities.size());
  for (int i = 0; i < 2; ++i) {
    SCOPED_TRACE(i);
    OdDbPolylinePtr outline = OdDbPolyline::cast(entities[i]);
    ASSERT_FALSE(outline.isNull());
    OdInt32 type = 0;
    OdGePoint2dArray vertices;
    OdGeDoubleArray bulges;
    hatch->getLoopAt(i, type, vertices, bulges);
    EXPECT_TRUE(outline->isClosed());
    ASSERT_EQ(vertices.size(), outline->numVerts());
    for (unsigned int k = 0; k < vertices.size(); ++k) {
      OdGePoint2d point;
      double bulge = 0.0;
      outline->getPointAt(k, point);
      outline->getBulgeAt(k, bulge);
      EXPECT_EQ(vertices[k], point);
      EXPECT_EQ(bulges[k], bulge);
    }
    EXPECT_EQ(hatch->elevation(), outline->elevation());
    EXPECT_EQ(hatch->normal(), outline->normal());
    EXPECT_EQ(5, outline->colorIndex());
    EXPECT_EQ(3.0, outline->linetypeScale());
    EXPECT_EQ(OdDb::kLnWt050, outline->lineWeight());
  }
  OdRxObjectPtrArray none;
  EXPECT_EQ(eOk, OdDbHatch::createObject()->explode(none));
  EXPECT_TRUE(none.isEmpty());
}

TEST_F(HatchTest, GripsSnapsAndExtents) {
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  appendLoop(hatch, kOuter, {{0, 0, 0}, {4, 0, 1}, {4, 4, 0}});
  appendLoop(hatch, kIsland, {{1, 1, 0}, {2, 1, 0}});
  hatch->setElevation(2.0);

  OdGePoint3dArray ends, mids;
  ASSERT_EQ(eOk, hatch->getOsnapPoints(OdDb::kOsModeEnd, 0, OdGePoint3d(), OdGePoint3d(),
                                       OdGeMatrix3d::kIdentity, ends));
  ASSERT_EQ(5u, ends.size());
  expectPoint(OdGePoint3d(2, 1, 2), ends[4]);
  ASSERT_EQ(eOk, hatch->getOsnapPoints(OdDb::kOsModeMid, 0, OdGePoint3d(), OdGePoint3d(),
                                       OdGeMatrix3d::kIdentity, mids));
  ASSERT_EQ(5u, mids.size());
  expectPoint(OdGePoint3d(2, 0, 2), mids[0]);
  expectPoint(OdGePoint3d(6, 2, 2), mids[1]); // on the half circle bulging to the right
  OdGePoint3dArray centres;
  hatch->getOsnapPoints(OdDb::kOsModeCen, 0, OdGePoint3d(), OdGePoint3d(), OdGeMatrix3d::kIdentity,
                        centres);
  EXPECT_TRUE(centres.isEmpty());

  OdGeExtents3d extents;
  ASSERT_EQ(eOk, hatch->getGeomExtents(extents));
  expectPoint(OdGePoint3d(0, 0, 2), extents.minPoint());
  expectPoint(OdGePoint3d(6, 4, 2), extents.maxPoint());

  OdGePoint3dArray grips;
  ASSERT_EQ(eOk, hatch->getGripPoints(grips));
  ASSERT_EQ(5u, grips.size());
  ASSERT_EQ(eOk, hatch->moveGripPointsAt(OdIntArray({4, 4}), OdGeVector3d(1, 2, 7)));
  OdInt32 type = 0;
  OdGePoint2dArray vertices;
  OdGeDoubleArray bulges;
  hatch->getLoopAt(1, type, vertices, bulges);
  EXPECT_EQ(OdGePoint2d(3, 3), vertices[1]); // moved once, in the plane only
  EXPECT_EQ(2.0, hatch->elevation());
  EXPECT_EQ(eInvalidIndex, hatch->moveStretchPointsAt(OdIntArray({0, 5}), OdGeVector3d(1, 0, 0)));
  EXPECT_EQ(eInvalidIndex, hatch->moveGripPointsAt(OdIntArray({-1}), OdGeVector3d(1, 0, 0)));
  hatch->getLoopAt(0, type, vertices, bulges);
  EXPECT_EQ(OdGePoint2d(0, 0), vertices[0]);
}

TEST_F(HatchTest, IntersectionsAreThoseOfTheOutlines) {
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  appendLoop(hatch, kOuter, {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}});
  // An island touching the outer loop at (4, 2), where the line also crosses.
  appendLoop(hatch, kIsland, {{2, 2, 0}, {4, 2, 0}, {3, 3, 0}});
  hatch->setElevation(1.0);
  OdDbLinePtr line = OdDbLine::createObject();
  line->setStartPoint(OdGePoint3d(-1, 2, 1));
  line->setEndPoint(OdGePoint3d(5, 2, 1));

  OdGePoint3dArray points;
  ASSERT_EQ(eOk, hatch->intersectWith(line, OdDb::kOnBothOperands, points));
  std::sort(points.begin(), points.end(),
            [](const OdGePoint3d& a, const OdGePoint3d& b) { return a.x < b.x; });
  // The island's edge along the line overlaps it from (2, 2) to (4, 2).
  ASSERT_EQ(3u, points.size());
  expectPoint(OdGePoint3d(0, 2, 1), points[0]);
  expectPoint(OdGePoint3d(2, 2, 1), points[1]);
  expectPoint(OdGePoint3d(4, 2, 1), points[2]);

  // Another entity finds the same points through the hatch's outlines.
  OdGePoint3dArray fromLine;
  ASSERT_EQ(eOk, line->intersectWith(hatch, OdDb::kOnBothOperands, fromLine));
  EXPECT_EQ(3u, fromLine.size());
}

} // namespace
