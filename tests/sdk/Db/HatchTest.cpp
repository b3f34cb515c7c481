#include "DbHatch.h"

#include "Gi/GiRecorder.h"
#include "sdk/SdkTestSupport.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

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

TEST(HatchTest, AreaCountsOuterLoopsLessIslands) {
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

TEST(HatchTest, PatternLinesStayInsideTheHatchedArea) {
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

TEST(HatchTest, PatternFamiliesFollowNameAngleAndScale) {
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
  const auto kPre = OdDbHatch::kPreDefined, kUser = OdDbHatch::kUserDefined,
             kCustom = OdDbHatch::kCustomDefined;
  const Case cases[] = {
      {"ANSI31", kPre, OD_T("ANSI31"), false, 1.0, 0.0, {45}, 3.175},
      {"unknown as ANSI31", kCustom, OD_T("MYPAT"), false, 1.0, 0.0, {45}, 3.175},
      {"scaled and turned", kPre, OD_T("ANSI31"), false, 2.0, OdaPI / 6, {75}, 6.35},
      {"LINE", kPre, OD_T("line"), false, 1.0, 0.0, {0}, 3.175},
      {"NET", kPre, OD_T("NET"), false, 1.0, 0.0, {0, 90}, 3.175},
      {"ANSI37", kPre, OD_T("ANSI37"), false, 1.0, 0.0, {45, 135}, 3.175},
      {"user single", kUser, OD_T("_USER"), false, 1.0, 0.5, {0.5 * 180.0 / OdaPI}, 3.175},
      {"user double", kUser, OD_T("_USER"), true, 1.0, 0.0, {0, 90}, 3.175},
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

// A DWG stream keeps each hatch style, the last one included.
TEST(HatchTest, EveryStyleReadsBack) {
  for (OdDbHatch::HatchStyle style : {OdDbHatch::kNormal, OdDbHatch::kOuter, OdDbHatch::kIgnore}) {
    OdDbHatchPtr hatch = OdDbHatch::createObject();
    appendLoop(hatch, kOuter, {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}});
    hatch->setHatchStyle(style);
    DwgFiler filer;
    filer.openForWrite();
    hatch->dwgOutFields(&filer);
    filer.rewind();
    OdDbHatchPtr copy = OdDbHatch::createObject();
    ASSERT_EQ(eOk, copy->dwgInFields(&filer)) << style;
    EXPECT_EQ(style, copy->hatchStyle());
  }
}

} // namespace
