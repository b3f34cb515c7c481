// The survey triangle's own rules: its rotation handle, stored record, the versions it reads,
// drawing, grips, stretch, snaps and explode geometry. Its measures and its equilateral
// construction are tested in GeoTriangleGeometryTest.cpp, what every class must do once by the
// class contract suite (tests/contract).

#include "survey/OdDbGeoTriangle.h"

#include "common/EntityTestSupport.h"

namespace {

using enttest::expectPoints;
using enttest::samePoint;

const OdGePoint3d kA(0, 0, 0), kB(6, 0, 0), kC(0, 3, 0);

OdDbGeoTrianglePtr newTriangle(const OdGePoint3d& a = kA, const OdGePoint3d& b = kB,
                               const OdGePoint3d& c = kC) {
  return OdDbGeoTrianglePtr(new OdDbGeoTriangle(a, b, c));
}

OdGePoint3d centroid(const OdGePoint3d& a, const OdGePoint3d& b, const OdGePoint3d& c) {
  return (a + b.asVector() + c.asVector()) / 3.0;
}

TEST(GeoTriangle, HandleStandsFiftyAboveTheCentroidAndStaysWhenTheShapeIsRebuiltOrMoved) {
  OdDbGeoTrianglePtr t = newTriangle({0, 0, 0}, {6, 0, 3}, {0, 9, 6});
  EXPECT_TRUE(samePoint(t->getCenterPt(), OdGePoint3d(2, 3, 3)));
  EXPECT_TRUE(samePoint(t->getRotatePt(), OdGePoint3d(2, 53, 3)));
  // setPts builds an equilateral triangle about the centre through the given point.
  t->setPts(OdGePoint3d(10, 10, 0), OdGePoint3d(10, 14, 0));
  EXPECT_TRUE(samePoint(t->getPts()[2], OdGePoint3d(10, 14, 0)));
  EXPECT_TRUE(samePoint(t->getCenterPt(), OdGePoint3d(10, 10, 0)));
  EXPECT_TRUE(samePoint(t->getRotatePt(), OdGePoint3d(2, 53, 3)));
  t->calcRotatePt();
  EXPECT_TRUE(samePoint(t->getRotatePt(), OdGePoint3d(10, 60, 0)));
  // A transform moves the vertices and the centre, not the handle.
  t = newTriangle();
  ASSERT_EQ(t->transformBy(OdGeMatrix3d::rotation(OdaPI / 2, OdGeVector3d::kZAxis)), eOk);
  expectPoints(t->getPts(), {{0, 0, 0}, {0, 6, 0}, {-3, 0, 0}});
  EXPECT_TRUE(samePoint(t->getCenterPt(), OdGePoint3d(-1, 2, 0)));
  EXPECT_TRUE(samePoint(t->getRotatePt(), OdGePoint3d(2, 51, 0)));
}

TEST(GeoTriangle, DwgRecordMatchesTheStoredReferenceAndOlderVersionsReadAsIt) {
  // After the entity's data: BS 1 and, as 3BD, V0 (0,0,0), V1 (3,0,0), V2 (0,3,0), the
  // centroid (1,1,0) and the handle (1,51,0); no strings.
  EXPECT_EQ(enttest::ownRecord(newTriangle({0, 0, 0}, {3, 0, 0}, {0, 3, 0})),
            "406a00000000000002102a000000000000021025900000000002012502|");
  for (OdInt16 version : {-1, 0, 1}) {
    SCOPED_TRACE(version);
    enttest::Filer filer;
    filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
    newTriangle()->OdDbEntity::dwgOutFields(&filer);
    filer.wrInt16(version);
    for (const OdGePoint3d& p : {OdGePoint3d(1, 1, 0), OdGePoint3d(4, 1, 0), OdGePoint3d(1, 5, 0),
                                 OdGePoint3d(2, 2, 0), OdGePoint3d(2, 52, 0)})
      filer.wrPoint3d(p);
    filer.rewind();
    OdDbGeoTrianglePtr target = newTriangle();
    ASSERT_EQ(target->dwgInFields(&filer), eOk);
    expectPoints(target->getPts(), {{1, 1, 0}, {4, 1, 0}, {1, 5, 0}});
    EXPECT_TRUE(samePoint(target->getRotatePt(), OdGePoint3d(2, 52, 0)));
  }
}

TEST(GeoTriangle, GripsAreTheVerticesThenTheCentroidAndStretchPointsTheVertices) {
  OdDbGeoTrianglePtr t = newTriangle();
  const OdDbGripDataPtrArray grips = enttest::gripsOf(t);
  ASSERT_EQ(grips.size(), 4u);
  const OdGePoint3d expected[] = {kA, kB, kC, {2, 1, 0}};
  for (unsigned int i = 0; i < 4; ++i) {
    EXPECT_TRUE(samePoint(grips[i]->gripPoint(), expected[i]));
    EXPECT_EQ(enttest::gripIndex(grips[i]), static_cast<OdIntPtr>(i));
  }
  OdGePoint3dArray points;
  ASSERT_EQ(t->getStretchPoints(points), eOk);
  expectPoints(points, {kA, kB, kC});

  // Grips move by tag, the centroid grip everything; stretch points one by one.
  const OdGeVector3d v(3, 3, 0);
  struct Case {
    bool grip;
    std::initializer_list<OdIntPtr> tags;
    OdGePoint3d a, b, c;
  } cases[] = {
      {true, {1}, kA, kB + v, kC},
      {true, {3}, kA + v, kB + v, kC + v},
      {true, {0, 2}, kA + v, kB, kC + v},
      {true, {4}, kA, kB, kC},
      {true, {-1}, kA, kB, kC},
      {false, {}, kA, kB, kC},
      {false, {0, 2}, kA + v, kB, kC + v},
      {false, {0, 1, 2}, kA + v, kB + v, kC + v},
      {false, {3, -1, 2}, kA, kB, kC + v},
  };
  for (const Case& c : cases) {
    OdDbGeoTrianglePtr moved = newTriangle();
    const OdGePoint3d handle = moved->getRotatePt();
    OdIntArray indices;
    for (OdIntPtr tag : c.tags)
      indices.append(static_cast<int>(tag));
    ASSERT_EQ(c.grip ? enttest::moveGrips(moved, c.tags, v)
                     : moved->moveStretchPointsAt(indices, v),
              eOk);
    expectPoints(moved->getPts(), {c.a, c.b, c.c});
    EXPECT_TRUE(samePoint(moved->getCenterPt(), centroid(c.a, c.b, c.c)));
    EXPECT_TRUE(samePoint(moved->getRotatePt(), handle));
  }
}

TEST(GeoTriangle, DrawnAtZ0ExplodedSnappedAndIntersectedAlongItsSides) {
  const std::vector<OdGiRecord> records =
      enttest::drawn(newTriangle({0, 0, 5}, {6, 0, 5}, {0, 3, 5}));
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].kind, OdGiRecord::kPolyline);
  expectPoints(records[0].points, {{0, 0, 0}, {6, 0, 0}, {0, 3, 0}, {0, 0, 0}});

  OdRxObjectPtrArray pieces;
  ASSERT_EQ(newTriangle()->explode(pieces), eOk);
  EXPECT_EQ(pieces.size(), 3u);
  enttest::expectLines(pieces, {{kA, kB}, {kB, kC}, {kC, kA}});

  OdDbGeoTrianglePtr t = newTriangle();
  expectPoints(enttest::snapsOf(t, OdDb::kOsModeEnd), {kA, kB, kB, kC, kC, kA});
  expectPoints(enttest::snapsOf(t, OdDb::kOsModeMid), {{3, 0, 0}, {3, 1.5, 0}, {0, 1.5, 0}});
  expectPoints(enttest::snapsOf(t, OdDb::kOsModeCen), {{2, 1, 0}});

  OdDbLinePtr line = OdDbLine::createObject();
  line->setStartPoint(OdGePoint3d(1, -1, 0));
  line->setEndPoint(OdGePoint3d(1, 5, 0));
  OdGePoint3dArray points;
  ASSERT_EQ(t->intersectWith(line, OdDb::kOnBothOperands, points), eOk);
  expectPoints(points, {{1, 0, 0}, {1, 2.5, 0}});
}

} // namespace
