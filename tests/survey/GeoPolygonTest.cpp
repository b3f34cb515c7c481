// The survey polygon's own rules: construction, its side count, the record and versions it
// reads, drawing, grips, stretch, snaps and explode geometry; its vertex construction and central
// angle (GeoPolygonGeometry) are checked through it. What every class must do is checked once by
// the class contract suite (tests/contract).

#include "survey/OdDbGeoPolygon.h"

#include "OdError.h"

#include "common/EntityTestSupport.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using enttest::expectPoints;
using enttest::samePoint;

const OdGePoint3d kCenter(10, 20, 0);

/// A regular polygon of `sides` sides about kCenter with vertex 0 at distance 5 along (3, 4).
OdDbGeoPolygonPtr newPolygon(OdInt32 sides) {
  OdDbGeoPolygonPtr polygon = OdDbGeoPolygon::createObject();
  polygon->init(kCenter, sides);
  polygon->setValue(kCenter + OdGeVector3d(3, 4, 0));
  return polygon;
}

/// Vertex i of newPolygon(sides), computed independently.
OdGePoint3d regularVertex(OdInt32 sides, int i) {
  const double angle = std::atan2(4.0, 3.0) + 2 * OdaPI * i / sides;
  return kCenter + OdGeVector3d(5 * std::cos(angle), 5 * std::sin(angle), 0);
}

std::vector<OdGePoint3d> regularVertices(OdInt32 sides) {
  std::vector<OdGePoint3d> vertices;
  for (int i = 0; i < sides; ++i)
    vertices.push_back(regularVertex(sides, i));
  return vertices;
}

TEST(GeoPolygon, ConstructionBuildsRegularPolygonsCounterClockwiseFromTheStartVertex) {
  OdDbGeoPolygonPtr p = newPolygon(6);
  expectPoints(p->getPts(), regularVertices(6));
  EXPECT_NEAR(p->GetAngel(), 60.0, 1e-9);
  double area = -1;
  ASSERT_EQ(p->getArea(area), eOk);
  EXPECT_NEAR(area, 6 * 25.0 / 2 * std::sin(2 * OdaPI / 6), 1e-9);

  // init sets centre and start but keeps the vertices; a side count out of range is refused.
  const OdGePoint3dArray before = p->getVertexList();
  p->init(OdGePoint3d(1, 1, 0), 6);
  EXPECT_TRUE(samePoint(p->getCenterPt(), OdGePoint3d(1, 1, 0)));
  EXPECT_TRUE(samePoint(p->getStartPt(), OdGePoint3d(1, 1, 0)));
  EXPECT_TRUE(p->getVertexList() == before);
  EXPECT_THROW(p->init(OdGePoint3d::kOrigin, 40000), OdError);
  EXPECT_EQ(p->GetVertexNub(), 6.0);
}

TEST(GeoPolygon, SetVertexNubRebuildsFromTheRadiusAsItStandsOrRefusesUnusableCounts) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  struct Case {
    double requested;
    OdInt32 sides; // 99: refused, the six sides stay
  } cases[] = {{4.9, 4},       {1.0, 1},  {0.0, 0},  {0.7, 0},   {-2.5, -2},    {-32768.0, -32768},
               {-32769.0, 99}, {nan, 99}, {inf, 99}, {-inf, 99}, {32768.0, 99}, {-40000.0, 99}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.requested);
    OdDbGeoPolygonPtr p = newPolygon(6);
    if (c.sides == 99) {
      EXPECT_THROW(p->SetVertexNub(c.requested), OdError);
      EXPECT_EQ(p->GetVertexNub(), 6.0);
      EXPECT_EQ(p->getPts().size(), 6u);
      continue;
    }
    p->SetVertexNub(c.requested);
    EXPECT_EQ(p->GetVertexNub(), c.sides);
    expectPoints(p->getVertexList(), regularVertices(c.sides));
    if (c.sides != 0) { // the central angle, shown without its sign
      EXPECT_NEAR(p->GetAngel(), 360.0 / std::abs(c.sides), 1e-9);
    }
  }
}

TEST(GeoPolygon, SidesAndVerticesOutOfStepDrawNothingAndFileTheFewer) {
  OdDbGeoPolygonPtr p = newPolygon(6);
  p->SetVertexNub(0);
  EXPECT_TRUE(enttest::drawn(p).empty());
  EXPECT_TRUE(std::isinf(p->GetAngel()));

  p = newPolygon(4);
  p->init(kCenter, 6); // six sides, four vertices kept
  EXPECT_TRUE(enttest::drawn(p).empty());
  double area = 123.0;
  EXPECT_EQ(p->getArea(area), eOk);
  EXPECT_EQ(area, 123.0);
  EXPECT_THROW(p->getPts(), OdError_InvalidIndex);
  EXPECT_THROW(enttest::gripsOf(p), OdError_InvalidIndex);
  EXPECT_THROW(enttest::moveGrips(p, {5}, OdGeVector3d(1, 0, 0)), OdError_InvalidIndex);
  // Stretching a side past the vertices there are moves nothing.
  const OdGePoint3dArray kept = p->getVertexList();
  EXPECT_EQ(p->moveStretchPointsAt(OdIntArray{4, 5}, OdGeVector3d(1, 0, 0)), eOk);
  EXPECT_TRUE(p->getVertexList() == kept);
  // Filed: no more vertices than both the list and the side count hold.
  for (OdInt32 sides : {6, 3}) {
    p->init(kCenter, sides);
    OdDbGeoPolygonPtr copy = OdDbGeoPolygon::createObject();
    ASSERT_EQ(enttest::copyThroughDwg(p, copy), eOk);
    EXPECT_EQ(copy->GetVertexNub(), std::min(sides, 4));
    EXPECT_EQ(copy->getVertexList().size(), static_cast<unsigned>(std::min(sides, 4)));
  }
  // Fewer sides than vertices: the first ones count, but the outline is not drawn.
  EXPECT_EQ(p->getPts().size(), 3u);
  EXPECT_TRUE(enttest::drawn(p).empty());
}

/// Entity data (colour 6), then the polygon's fields as given.
void writeRecord(enttest::Filer& filer, OdInt16 version, OdInt16 count, int pointsAfter) {
  OdDbGeoPolygonPtr base = OdDbGeoPolygon::createObject();
  base->setColorIndex(6);
  filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  base->OdDbEntity::dwgOutFields(&filer);
  filer.wrInt16(version);
  filer.wrInt16(count);
  filer.wrPoint3d(OdGePoint3d(1, 1, 0));
  filer.wrPoint3d(OdGePoint3d(2, 1, 0));
  for (int i = 0; i < pointsAfter; ++i)
    filer.wrPoint3d(OdGePoint3d(i, 0, 0));
  filer.rewind();
}

TEST(GeoPolygon, ReadsOnlyVersionOneAndOnlyCountsTheStreamCanHold) {
  struct Case {
    OdInt16 version;
    OdInt16 count;
    int pointsAfter;
    bool accepted;
  } cases[] = {{1, 3, 3, true},   {1, 0, 0, true},  {1, -7, 0, true}, {0, 3, 3, false},
               {-1, 3, 3, false}, {2, 3, 3, false}, {1, 4, 3, false}, {1, 32767, 2, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "version " << c.version << " count " << c.count);
    enttest::Filer filer;
    writeRecord(filer, c.version, c.count, c.pointsAfter);
    OdDbGeoPolygonPtr target = newPolygon(5);
    const OdResult result = target->dwgInFields(&filer);
    EXPECT_EQ(target->colorIndex(), 6); // the entity's data is read before the version
    if (!c.accepted) {
      EXPECT_NE(result, eOk);
      EXPECT_EQ(target->GetVertexNub(), 5.0);
      EXPECT_EQ(target->getPts().size(), 5u);
      continue;
    }
    EXPECT_EQ(result, eOk);
    EXPECT_EQ(target->GetVertexNub(), c.count);
    EXPECT_EQ(target->getVertexList().size(), static_cast<unsigned int>(std::max<int>(c.count, 0)));
    EXPECT_TRUE(samePoint(target->getCenterPt(), OdGePoint3d(1, 1, 0)));
    EXPECT_TRUE(samePoint(target->getStartPt(), OdGePoint3d(2, 1, 0)));
  }
  // Written again, the first record is the stored reference: BS version 1, BS count 3, then as
  // 3BD the centre (1,1,0), the start (2,1,0) and the vertices (0,0,0), (1,0,0), (2,0,0).
  enttest::Filer filer;
  writeRecord(filer, 1, 3, 3);
  OdDbGeoPolygonPtr read = OdDbGeoPolygon::createObject();
  ASSERT_EQ(read->dwgInFields(&filer), eOk);
  EXPECT_EQ(enttest::ownRecord(read), "405035800000000000000406a9a0000000000000010280|");
}

TEST(GeoPolygon, DrawsOneClosedPolylineAndExplodesIntoOneLinePerSide) {
  OdDbGeoPolygonPtr p = newPolygon(5);
  p->transformBy(OdGeMatrix3d::translation(OdGeVector3d(0, 0, 4))); // drawn at z 0 all the same
  const std::vector<OdGiRecord> records = enttest::drawn(p);
  ASSERT_EQ(records.size(), 1u);
  std::vector<OdGePoint3d> outline = regularVertices(5);
  enttest::Segments sides;
  for (int i = 0; i < 5; ++i)
    sides.push_back({outline[i], outline[(i + 1) % 5]});
  outline.push_back(outline[0]);
  enttest::expectPoints(records[0].points, outline);

  OdRxObjectPtrArray pieces;
  ASSERT_EQ(newPolygon(5)->explode(pieces), eOk);
  EXPECT_EQ(pieces.size(), 5u);
  enttest::expectLines(pieces, sides);
  pieces.clear();
  EXPECT_EQ(newPolygon(2)->explode(pieces), eOk);
  EXPECT_TRUE(pieces.isEmpty());
}

TEST(GeoPolygon, TransformLeavesStartAndRadiusForTheNextRebuild) {
  OdDbGeoPolygonPtr p = newPolygon(4);
  const OdGePoint3d start = p->getStartPt();
  const OdGeVector3d radius = p->getRadiusVector();
  const OdGeMatrix3d quarter = OdGeMatrix3d::rotation(OdaPI / 2, OdGeVector3d::kZAxis, kCenter);
  const OdGeMatrix3d shift = OdGeMatrix3d::translation(OdGeVector3d(100, 0, 0));
  ASSERT_EQ(p->transformBy(quarter), eOk);
  ASSERT_EQ(p->transformBy(shift), eOk);
  EXPECT_EQ(p->getTransform(), quarter * shift);
  const OdGePoint3d movedCenter = kCenter + OdGeVector3d(100, 0, 0);
  EXPECT_TRUE(samePoint(p->getCenterPt(), movedCenter));
  // The vertices turned a quarter: vertex 0 now stands where vertex 1 stood, moved along.
  EXPECT_TRUE(samePoint(p->getPts()[0], regularVertex(4, 1) + OdGeVector3d(100, 0, 0)));
  EXPECT_TRUE(samePoint(p->getStartPt(), start));
  EXPECT_TRUE(
      samePoint(OdGePoint3d::kOrigin + p->getRadiusVector(), OdGePoint3d::kOrigin + radius));
  // Required: a rebuild starts from the untransformed radius, so the quarter turn is lost.
  p->SetVertexNub(4);
  EXPECT_TRUE(samePoint(p->getPts()[0], movedCenter + OdGeVector3d(3, 4, 0)));
}

TEST(GeoPolygon, GripsAreTheVerticesThenTheCentreWhichMovesEverythingStretchVerticesOnly) {
  OdDbGeoPolygonPtr p = newPolygon(6);
  std::vector<OdGePoint3d> expected = regularVertices(6);
  const OdDbGripDataPtrArray grips = enttest::gripsOf(p);
  ASSERT_EQ(grips.size(), 7u);
  for (unsigned int i = 0; i < 7; ++i) {
    EXPECT_TRUE(samePoint(grips[i]->gripPoint(), i < 6 ? expected[i] : kCenter));
    EXPECT_EQ(enttest::gripIndex(grips[i]), static_cast<OdIntPtr>(i));
  }
  OdGePoint3dArray points;
  ASSERT_EQ(p->getStretchPoints(points), eOk);
  expectPoints(points, expected);

  const OdGeVector3d v(2, -1, 0);
  const OdGePoint3d start = p->getStartPt();
  ASSERT_EQ(enttest::moveGrips(p, {1}, v), eOk);
  ASSERT_EQ(p->moveStretchPointsAt(OdIntArray{0, 4, 6, -1}, v), eOk);
  expected[0] += v;
  expected[1] += v;
  expected[4] += v;
  expectPoints(p->getPts(), expected);
  EXPECT_TRUE(samePoint(p->getCenterPt(), kCenter));
  EXPECT_TRUE(samePoint(p->getStartPt(), start));

  ASSERT_EQ(enttest::moveGrips(p, {6}, v), eOk);
  for (OdGePoint3d& point : expected)
    point += v;
  expectPoints(p->getPts(), expected);
  EXPECT_TRUE(samePoint(p->getCenterPt(), kCenter + v));
  EXPECT_TRUE(samePoint(p->getStartPt(), start + v));
}

TEST(GeoPolygon, SnapsOfASideRunFromItsSecondVertexToTheOrigin) {
  OdDbGeoPolygonPtr p = newPolygon(6);
  for (OdGsMarker k = 1; k <= 6; ++k) {
    SCOPED_TRACE(k);
    // Required: the side's line runs from V(k mod n) to the origin, not from V(k-1).
    const OdGePoint3d second = regularVertex(6, k % 6);
    expectPoints(enttest::snapsOf(p, OdDb::kOsModeEnd, k), {second, OdGePoint3d::kOrigin});
    expectPoints(enttest::snapsOf(p, OdDb::kOsModeMid, k),
                 {OdGePoint3d(second.x / 2, second.y / 2, second.z / 2)});
    EXPECT_TRUE(enttest::snapsOf(p, OdDb::kOsModeCen, k).isEmpty());
  }
  // Without a side: those of all sides, with the centre.
  OdDbGeoPolygonPtr t = newPolygon(3);
  for (OdGsMarker marker : {OdGsMarker(0), OdGsMarker(4)}) {
    SCOPED_TRACE(marker);
    expectPoints(enttest::snapsOf(t, OdDb::kOsModeEnd, marker),
                 {regularVertex(3, 0), regularVertex(3, 1), regularVertex(3, 1),
                  regularVertex(3, 2), regularVertex(3, 2), regularVertex(3, 0)});
    expectPoints(enttest::snapsOf(t, OdDb::kOsModeCen, marker), {kCenter});
  }
}

} // namespace
