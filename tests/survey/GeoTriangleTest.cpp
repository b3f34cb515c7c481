// The survey triangle: identity, construction, filing, drawing, editing and explode.

#include "survey/OdDbGeoTriangle.h"

#include "DbLine.h"
#include "ExtendPE.h"
#include "Gi/GiRecorder.h"
#include "PropertyPE.h"
#include "survey/TriangleExtensions.h"

#include "GeoPolygonTestSupport.h"

#include <cmath>

namespace {

using polygontest::samePoint;

const OdGePoint3d kA(0, 0, 0), kB(6, 0, 0), kC(0, 3, 0);

OdDbGeoTrianglePtr newTriangle(const OdGePoint3d& a = kA, const OdGePoint3d& b = kB,
                               const OdGePoint3d& c = kC) {
  return OdDbGeoTrianglePtr(new OdDbGeoTriangle(a, b, c));
}

void expectVertices(const OdDbGeoTriangle* t, const OdGePoint3d& a, const OdGePoint3d& b,
                    const OdGePoint3d& c) {
  polygontest::expectPoints(t->getPts(), {a, b, c});
}

TEST(GeoTriangle, IsRegisteredWithItsExtensions) {
  OdRxClass* cls = OdDbGeoTriangle::desc();
  EXPECT_EQ(cls->dxfName(), OdString(u"ODDBGEOTRIANGLE"));
  EXPECT_EQ(cls->myParent(), OdDbEntity::desc());
  EXPECT_NE(dynamic_cast<OdDbTrianglePropertyPE*>(cls->getX(PropertyPE::desc()).get()), nullptr);
  EXPECT_NE(dynamic_cast<OdDbTriangleExtendPE*>(cls->getX(ExtendPE::desc()).get()), nullptr);
}

TEST(GeoTriangle, ThreePointsGiveCentroidAndRotationHandleAboveIt) {
  OdDbGeoTrianglePtr empty = OdDbGeoTriangle::createObject();
  expectVertices(empty, OdGePoint3d::kOrigin, OdGePoint3d::kOrigin, OdGePoint3d::kOrigin);
  EXPECT_TRUE(samePoint(empty->getRotatePt(), OdGePoint3d::kOrigin));

  OdDbGeoTrianglePtr t = newTriangle({0, 0, 0}, {6, 0, 3}, {0, 9, 6});
  expectVertices(t, {0, 0, 0}, {6, 0, 3}, {0, 9, 6});
  EXPECT_TRUE(samePoint(t->getCenterPt(), OdGePoint3d(2, 3, 3)));
  EXPECT_TRUE(samePoint(t->getRotatePt(), OdGePoint3d(2, 53, 3)));
}

TEST(GeoTriangle, SetPtsBuildsAnEquilateralTriangleAndLeavesTheHandle) {
  OdDbGeoTrianglePtr t = newTriangle();
  const OdGePoint3d handle = t->getRotatePt();
  const OdGePoint3d center(10, 10, 0), through(10, 14, 0);
  t->setPts(center, through);
  const OdGePoint3dArray pts = t->getPts();
  EXPECT_TRUE(samePoint(pts[2], through));
  // 120° counter-clockwise from (0, 4) is (-4 sin 120°, 4 cos 120°).
  const double s = 4 * std::sin(2 * OdaPI / 3), c = 4 * std::cos(2 * OdaPI / 3);
  EXPECT_TRUE(samePoint(pts[1], OdGePoint3d(10 - s, 10 + c, 0)));
  EXPECT_TRUE(samePoint(pts[0], OdGePoint3d(10 + s, 10 + c, 0)));
  EXPECT_TRUE(samePoint(t->getCenterPt(), center));
  EXPECT_TRUE(samePoint(t->getRotatePt(), handle));
  EXPECT_NEAR(t->girth(), 3 * 4 * std::sqrt(3.0), 1e-9);
  EXPECT_NEAR(t->area(), 3 * std::sqrt(3.0) / 4 * 16, 1e-9);

  t->calcRotatePt();
  EXPECT_TRUE(samePoint(t->getRotatePt(), OdGePoint3d(10, 60, 0)));
}

// ---------------------------------------------------------------------------------------------
// Filing

TEST(GeoTriangle, DwgRoundTripKeepsEveryField) {
  OdDbGeoTrianglePtr source = newTriangle({1, 2, 3}, {-4, 5.5, 0}, {7, -8, 0.25});
  source->setColorIndex(3);
  source->transformBy(OdGeMatrix3d::translation(OdGeVector3d(1, 1, 0))); // handle stays behind
  OdDbGeoTrianglePtr copy = OdDbGeoTriangle::createObject();
  ASSERT_EQ(polygontest::copyThroughDwg(source, copy), eOk);
  expectVertices(copy, {2, 3, 3}, {-3, 6.5, 0}, {8, -7, 0.25});
  EXPECT_TRUE(samePoint(copy->getCenterPt(), source->getCenterPt()));
  EXPECT_TRUE(samePoint(copy->getRotatePt(), source->getRotatePt()));
  EXPECT_EQ(copy->colorIndex(), 3);
}

TEST(GeoTriangle, DwgRecordMatchesTheStoredReference) {
  // 56 bits of entity data, then BS 1 and, as 3BD, V0 (0,0,0), V1 (3,0,0), V2 (0,3,0), the
  // centroid (1,1,0) and the handle (1,51,0).
  OdDbGeoTrianglePtr t = newTriangle({0, 0, 0}, {3, 0, 0}, {0, 3, 0});
  EXPECT_EQ(polygontest::dwgHex(t), "8000100c00061d40"
                                    "6a00000000000002102a000000000000021025900000000002012502/288");
}

TEST(GeoTriangle, ReadsOlderAndCurrentVersionsAndRefusesNewerOnes) {
  struct Case {
    OdInt16 version;
    int expected;
  } cases[] = {{-1, eOk}, {1, eOk}, {2, 1}, {32767, 1}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.version);
    OdDbGeoTrianglePtr source = newTriangle({1, 1, 0}, {4, 1, 0}, {1, 5, 0});
    source->setColorIndex(6);
    polygontest::Filer filer;
    filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
    source->OdDbEntity::dwgOutFields(&filer);
    filer.wrInt16(c.version);
    for (const OdGePoint3d& p : source->getPts())
      filer.wrPoint3d(p);
    filer.wrPoint3d(source->getCenterPt());
    filer.wrPoint3d(source->getRotatePt());
    filer.rewind();
    OdDbGeoTrianglePtr target = newTriangle();
    EXPECT_EQ(static_cast<int>(target->dwgInFields(&filer)), c.expected);
    EXPECT_EQ(target->colorIndex(), 6); // the entity's data is read before the version
    if (c.expected == eOk)
      expectVertices(target, {1, 1, 0}, {4, 1, 0}, {1, 5, 0});
    else
      expectVertices(target, kA, kB, kC);
  }
}

TEST(GeoTriangle, StreamCutShortAtAnyByteIsAnErrorAndLeavesTheTriangleUsable) {
  OdDbGeoTrianglePtr source = newTriangle({1.5, 2, 0}, {4, 1, 0}, {1, 5.25, 0});
  polygontest::Filer writer;
  writer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  source->dwgOutFields(&writer);
  for (unsigned int bytes = 0; bytes < writer.dataBuffer().size(); ++bytes) {
    SCOPED_TRACE(bytes);
    polygontest::Filer reader;
    polygontest::openCut(writer, bytes, reader);
    OdDbGeoTrianglePtr target = newTriangle();
    EXPECT_NE(target->dwgInFields(&reader), eOk);
    expectVertices(target, kA, kB, kC);
    EXPECT_TRUE(samePoint(target->getCenterPt(), OdGePoint3d(2, 1, 0)));
    EXPECT_NEAR(target->area(), 9.0, 1e-12);
  }
}

TEST(GeoTriangle, DxfInputIsRefusedWithoutReading) {
  OdDbGeoTrianglePtr t = newTriangle();
  EXPECT_EQ(static_cast<int>(t->dxfInFields(nullptr)), 1);
  expectVertices(t, kA, kB, kC);
}

// ---------------------------------------------------------------------------------------------
// Drawing and editing

TEST(GeoTriangle, DrawsOneClosedPolylineInThePlaneZ0) {
  OdDbGeoTrianglePtr t = newTriangle({0, 0, 5}, {6, 0, 5}, {0, 3, 5});
  OdGiRecorder recorder;
  EXPECT_TRUE(t->worldDraw(&recorder));
  ASSERT_EQ(recorder.records().size(), 1u);
  const OdGiRecord& outline = recorder.records()[0];
  EXPECT_EQ(outline.kind, OdGiRecord::kPolyline);
  OdGePoint3dArray drawn;
  for (const OdGePoint3d& point : outline.points)
    drawn.append(point);
  polygontest::expectPoints(drawn, {{0, 0, 0}, {6, 0, 0}, {0, 3, 0}, {0, 0, 0}});
}

TEST(GeoTriangle, TransformMovesVerticesAndCentreButNotTheHandle) {
  OdDbGeoTrianglePtr t = newTriangle();
  const OdGePoint3d handle = t->getRotatePt();
  ASSERT_EQ(t->transformBy(OdGeMatrix3d::rotation(OdaPI / 2, OdGeVector3d::kZAxis)), eOk);
  expectVertices(t, {0, 0, 0}, {0, 6, 0}, {-3, 0, 0});
  EXPECT_TRUE(samePoint(t->getCenterPt(), OdGePoint3d(-1, 2, 0)));
  EXPECT_TRUE(samePoint(t->getRotatePt(), handle));
}

TEST(GeoTriangle, GripsAreTheVerticesThenTheCentroid) {
  OdDbGeoTrianglePtr t = newTriangle();
  OdDbGripDataPtrArray grips;
  grips.append(OdDbGripDataPtr(new OdDbGripData())); // grips already there stay first
  ASSERT_EQ(t->getGripPoints(grips, 1.0, 5, OdGeVector3d::kZAxis, 0), eOk);
  ASSERT_EQ(grips.size(), 5u);
  const OdGePoint3d expected[] = {kA, kB, kC, {2, 1, 0}};
  for (unsigned int i = 0; i < 4; ++i) {
    EXPECT_TRUE(samePoint(grips[i + 1]->gripPoint(), expected[i]));
    EXPECT_EQ(polygontest::gripIndex(grips[i + 1]), static_cast<OdIntPtr>(i));
    EXPECT_EQ(grips[i + 1]->worldDraw(), nullptr);
  }
}

TEST(GeoTriangle, MovingGripsMovesVerticesAndTheCentroidFollows) {
  const OdGeVector3d v(3, 3, 0);
  struct Case {
    std::initializer_list<OdIntPtr> grips;
    OdGePoint3d a, b, c;
  } cases[] = {
      {{1}, kA, kB + v, kC},        {{3}, kA + v, kB + v, kC + v},
      {{0, 2}, kA + v, kB, kC + v}, {{4}, kA, kB, kC},
      {{-1}, kA, kB, kC},
  };
  for (const Case& c : cases) {
    OdDbGeoTrianglePtr t = newTriangle();
    const OdGePoint3d handle = t->getRotatePt();
    ASSERT_EQ(polygontest::moveGrips(t, c.grips, v), eOk);
    expectVertices(t, c.a, c.b, c.c);
    EXPECT_TRUE(samePoint(t->getCenterPt(), (c.a + c.b.asVector() + c.c.asVector()) / 3.0));
    EXPECT_TRUE(samePoint(t->getRotatePt(), handle));
  }
}

TEST(GeoTriangle, StretchPointsAreTheVerticesAndMoveOneByOne) {
  OdDbGeoTrianglePtr t = newTriangle();
  OdGePoint3dArray points;
  ASSERT_EQ(t->getStretchPoints(points), eOk);
  ASSERT_EQ(points.size(), 3u);
  EXPECT_TRUE(samePoint(points[1], kB));

  const OdGeVector3d v(0, -2, 1);
  struct Case {
    OdIntArray indices;
    OdGePoint3d a, b, c;
  } cases[] = {
      {{}, kA, kB, kC},
      {{0, 2}, kA + v, kB, kC + v},
      {{0, 1, 2}, kA + v, kB + v, kC + v},
      {{3, -1, 2}, kA, kB, kC + v},
  };
  for (const Case& c : cases) {
    OdDbGeoTrianglePtr s = newTriangle();
    ASSERT_EQ(s->moveStretchPointsAt(c.indices, v), eOk);
    expectVertices(s, c.a, c.b, c.c);
    EXPECT_TRUE(samePoint(s->getCenterPt(), (c.a + c.b.asVector() + c.c.asVector()) / 3.0));
  }
}

TEST(GeoTriangle, ExplodesIntoThreeLinesWithItsProperties) {
  OdDbGeoTrianglePtr t = newTriangle();
  t->setColorIndex(4);
  t->setLinetypeScale(2.5);
  OdRxObjectPtrArray pieces;
  ASSERT_EQ(t->explode(pieces), eOk);
  ASSERT_EQ(pieces.size(), 3u);
  const OdGePoint3d ends[][2] = {{kA, kB}, {kB, kC}, {kC, kA}};
  for (unsigned int i = 0; i < 3; ++i) {
    OdDbLinePtr line = OdDbLine::cast(pieces[i].get());
    ASSERT_FALSE(line.isNull());
    EXPECT_TRUE(samePoint(line->startPoint(), ends[i][0]));
    EXPECT_TRUE(samePoint(line->endPoint(), ends[i][1]));
    EXPECT_EQ(line->colorIndex(), 4);
    EXPECT_EQ(line->linetypeScale(), 2.5);
  }
}

TEST(GeoTriangle, SnapsAreThoseOfItsLinesAndTheCentroidComesLast) {
  OdDbGeoTrianglePtr t = newTriangle();
  polygontest::expectPoints(polygontest::snapsOf(t, OdDb::kOsModeEnd), {kA, kB, kB, kC, kC, kA});

  const OdGePoint3dArray mids = polygontest::snapsOf(t, OdDb::kOsModeMid);
  ASSERT_EQ(mids.size(), 3u);
  EXPECT_TRUE(samePoint(mids[1], OdGePoint3d(3, 1.5, 0)));

  OdGePoint3dArray centre;
  centre.append(OdGePoint3d(7, 7, 7));
  ASSERT_EQ(t->getOsnapPoints(OdDb::kOsModeCen, 0, OdGePoint3d::kOrigin, OdGePoint3d::kOrigin,
                              OdGeMatrix3d::kIdentity, centre),
            eOk);
  polygontest::expectPoints(centre, {{7, 7, 7}, {2, 1, 0}});
}

TEST(GeoTriangle, IntersectsOtherEntitiesAlongItsSides) {
  OdDbGeoTrianglePtr t = newTriangle();
  OdDbLinePtr line = OdDbLine::createObject();
  line->setStartPoint(OdGePoint3d(1, -1, 0));
  line->setEndPoint(OdGePoint3d(1, 5, 0));
  OdGePoint3dArray points;
  ASSERT_EQ(t->intersectWith(line, OdDb::kOnBothOperands, points), eOk);
  polygontest::expectPoints(points, {{1, 0, 0}, {1, 2.5, 0}});
}

} // namespace
