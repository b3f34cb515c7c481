#include "DbPolyline.h"

#include "DbArc.h"
#include "DbLine.h"

#include "Gi/GiRecorder.h"
#include "sdk/SdkTestSupport.h"

#include <algorithm>
#include <vector>

namespace {

struct V {
  double x;
  double y;
  double bulge;
};

OdDbPolylinePtr makePolyline(std::initializer_list<V> vertices, bool closed = false) {
  OdDbPolylinePtr pline = OdDbPolyline::createObject();
  for (const V& v : vertices)
    pline->addVertexAt(pline->numVerts(), OdGePoint2d(v.x, v.y), v.bulge);
  pline->setClosed(closed);
  return pline;
}

OdGePoint3d worldPoint(const OdDbPolyline* pline, unsigned int index) {
  OdGePoint3d point;
  EXPECT_EQ(eOk, pline->getPointAt(index, point));
  return point;
}

TEST(PolylineTest, AreaCountsBulgedSegments) {
  const double r = 2.0;
  struct Case {
    const char* name;
    OdDbPolylinePtr pline;
    double area;
  };
  const Case cases[] = {
      {"counter-clockwise square", makePolyline({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, true),
       4.0},
      {"clockwise square", makePolyline({{0, 0, 0}, {0, 2, 0}, {2, 2, 0}, {2, 0, 0}}, true), 4.0},
      {"circle of two half turns", makePolyline({{-r, 0, 1.0}, {r, 0, 1.0}}, true), OdaPI * r * r},
      {"circle turning clockwise", makePolyline({{-r, 0, -1.0}, {r, 0, -1.0}}, true),
       OdaPI * r * r},
      {"square with a half circle outwards",
       makePolyline({{0, 0, 1.0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, true), 4.0 + OdaPI / 2.0},
      {"square with a half circle inwards",
       makePolyline({{0, 0, -1.0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, true), 4.0 - OdaPI / 2.0},
      {"open polyline closes straight, last bulge unused",
       makePolyline({{0, 0, 0}, {2, 0, 0}, {2, 2, 1.0}}), 2.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    double area = -1.0;
    ASSERT_EQ(eOk, c.pline->getArea(area));
    EXPECT_NEAR(c.area, area, 1e-9);
  }
}

/// The ends of an exploded piece, whichever class it is.
void pieceEnds(const OdRxObjectPtr& piece, OdGePoint3d& start, OdGePoint3d& end) {
  OdDbCurvePtr curve = OdDbCurve::cast(piece.get());
  ASSERT_FALSE(curve.isNull());
  ASSERT_EQ(eOk, curve->getStartPoint(start));
  ASSERT_EQ(eOk, curve->getEndPoint(end));
}

TEST(PolylineTest, ExplodedBulgesAreArcsThatChainInThePlane) {
  // Straight, counter-clockwise, clockwise, a zero-length segment, straight, and the closing
  // segment, in a tilted plane above the origin.
  OdDbPolylinePtr shape =
      makePolyline({{0, 0, 0}, {4, 0, 0.5}, {4, 4, -1.0}, {0, 4, 0}, {0, 4, 0}, {-1, 2, 0}}, true);
  shape->setElevation(1.5);
  shape->setNormal(OdGeVector3d(0.0, 0.6, 0.8));
  shape->setThickness(0.25);
  OdRxObjectPtrArray pieces;
  ASSERT_EQ(eOk, shape->explode(pieces));
  const std::vector<bool> isArc = {false, true, true, false, false};
  const std::vector<unsigned int> fromVertex = {0, 1, 2, 4, 5};
  ASSERT_EQ(isArc.size(), pieces.size());
  for (unsigned int i = 0; i < pieces.size(); ++i) {
    SCOPED_TRACE(i);
    OdDbEntityPtr entity = OdDbEntity::cast(pieces[i].get());
    ASSERT_FALSE(entity.isNull());
    EXPECT_EQ(isArc[i] ? OdDbArc::desc() : OdDbLine::desc(), entity->isA());

    // The piece joins its segment's two vertices (an arc entity runs counter-clockwise, so a
    // clockwise segment's arc runs from its end to its start).
    const unsigned int from = fromVertex[i];
    const OdGePoint3d segmentStart = worldPoint(shape.get(), from);
    const OdGePoint3d segmentEnd = worldPoint(shape.get(), (from + 1) % shape->numVerts());
    OdGePoint3d start;
    OdGePoint3d end;
    pieceEnds(pieces[i], start, end);
    const bool reversed = start.isEqualTo(segmentEnd, OdGeTol(1e-9));
    expectPoint(reversed ? segmentEnd : segmentStart, start);
    expectPoint(reversed ? segmentStart : segmentEnd, end);
    EXPECT_EQ(reversed, i == 2) << "only the clockwise arc runs backwards";

    // And passes where the segment does halfway.
    OdGePoint3d middle;
    ASSERT_EQ(eOk, shape->getPointAtParam(from + 0.5, middle));
    OdDbCurvePtr curve = OdDbCurve::cast(pieces[i].get());
    OdGePoint3d closest;
    ASSERT_EQ(eOk, curve->getClosestPointTo(middle, closest));
    expectPoint(middle, closest);

    // In the polyline's plane, as thick as it.
    const auto expectPlaneAndThickness = [&](const auto* piece) {
      EXPECT_TRUE(shape->normal().isEqualTo(piece->normal()));
      EXPECT_EQ(0.25, piece->thickness());
    };
    if (isArc[i])
      expectPlaneAndThickness(OdDbArc::cast(pieces[i].get()).get());
    else
      expectPlaneAndThickness(OdDbLine::cast(pieces[i].get()).get());
  }
}

TEST(PolylineTest, WidthsAreDrawnAsFilledPolygons) {
  OdGiRecorder recorder;
  recorder.subEntityTraits().setFillType(kOdGiFillNever);

  // Constant width: one quadrilateral per segment, half the width either side.
  OdDbPolylinePtr bent = makePolyline({{0, 0, 0}, {4, 0, 0}, {4, 3, 0}});
  bent->setConstantWidth(1.0);
  double width = 0.0;
  ASSERT_EQ(eOk, bent->getConstantWidth(width));
  EXPECT_EQ(1.0, width);
  EXPECT_TRUE(bent->worldDraw(&recorder));
  ASSERT_EQ(2u, recorder.records().size());
  EXPECT_EQ(2u, recorder.count(OdGiRecord::kPolygon));
  const std::vector<OdGePoint3d> first = {OdGePoint3d(0, 0.5, 0), OdGePoint3d(4, 0.5, 0),
                                          OdGePoint3d(4, -0.5, 0), OdGePoint3d(0, -0.5, 0)};
  ASSERT_EQ(first.size(), recorder.records()[0].points.size());
  for (unsigned int i = 0; i < first.size(); ++i)
    expectPoint(first[i], recorder.records()[0].points[i]);
  for (const OdGiRecord& record : recorder.records())
    EXPECT_EQ(kOdGiFillAlways, record.traits.fillType());
  EXPECT_EQ(kOdGiFillNever, recorder.subEntityTraits().fillType()) << "restored";

  // Tapering from nothing to 2, and a segment of no width drawn as its centreline.
  recorder.clear();
  ASSERT_EQ(eOk, bent->setWidthsAt(0, 0.0, 2.0));
  ASSERT_EQ(eOk, bent->setWidthsAt(1, 0.0, 0.0));
  bent->worldDraw(&recorder);
  ASSERT_EQ(2u, recorder.records().size());
  const OdGiRecord& taper = recorder.records()[0];
  ASSERT_EQ(OdGiRecord::kPolygon, taper.kind);
  const std::vector<OdGePoint3d> tapered = {OdGePoint3d(0, 0, 0), OdGePoint3d(4, 1, 0),
                                            OdGePoint3d(4, -1, 0), OdGePoint3d(0, 0, 0)};
  for (unsigned int i = 0; i < tapered.size(); ++i)
    expectPoint(tapered[i], taper.points[i]);
  EXPECT_EQ(OdGiRecord::kPolyline, recorder.records()[1].kind);
  EXPECT_EQ(2u, recorder.records()[1].points.size());
  EXPECT_EQ(kOdGiFillNever, recorder.subEntityTraits().fillType());
}

TEST(PolylineTest, WideArcIsTheBandBetweenOffsetArcs) {
  // A half circle of radius 2 about (2, 0), counter-clockwise: its centre is to the left.
  OdDbPolylinePtr half = makePolyline({{0, 0, 1.0}, {4, 0, 0}});
  half->setConstantWidth(1.0);
  half->setElevation(0.5);
  OdGiRecorder recorder;
  half->worldDraw(&recorder);
  ASSERT_EQ(1u, recorder.records().size());
  const OdGiRecord& band = recorder.records()[0];
  ASSERT_EQ(OdGiRecord::kPolygon, band.kind);
  // 32 pieces per half turn, as the centreline: 33 points along each side.
  ASSERT_EQ(66u, band.points.size());
  const OdGePoint3d center(2.0, 0.0, 0.5);
  for (unsigned int i = 0; i < band.points.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_NEAR(i < 33 ? 1.5 : 2.5, center.distanceTo(band.points[i]), 1e-9);
    EXPECT_NEAR(0.5, band.points[i].z, 1e-12);
  }
  expectPoint(OdGePoint3d(2.0, -1.5, 0.5), band.points[16]);
  expectPoint(OdGePoint3d(2.0, -2.5, 0.5), band.points[49]);
  expectPoint(OdGePoint3d(4.5, 0.0, 0.5), band.points[33]);
}

TEST(PolylineTest, GripsAndStretchMoveVertices) {
  OdDbPolylinePtr pline = makePolyline({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}});
  pline->setElevation(1.0);
  // The offset's part along the normal is dropped, and a vertex named twice moves once.
  ASSERT_EQ(eOk, pline->moveGripPointsAt(OdIntArray{1, 1}, OdGeVector3d(1.0, 1.0, 5.0)));
  expectPoint(OdGePoint3d(3.0, 1.0, 1.0), worldPoint(pline, 1));
  EXPECT_EQ(eInvalidIndex, pline->moveGripPointsAt(OdIntArray{0, 3}, OdGeVector3d(1, 0, 0)));
  EXPECT_EQ(eInvalidIndex, pline->setBulgeAt(3, 0.5));
  expectPoint(OdGePoint3d(0.0, 0.0, 1.0), worldPoint(pline, 0));
  ASSERT_EQ(eOk, pline->moveStretchPointsAt(OdIntArray{0, 2}, OdGeVector3d(-1.0, 0.0, 0.0)));
  expectPoint(OdGePoint3d(-1.0, 0.0, 1.0), worldPoint(pline, 0));
  expectPoint(OdGePoint3d(3.0, 1.0, 1.0), worldPoint(pline, 1));
  expectPoint(OdGePoint3d(1.0, 2.0, 1.0), worldPoint(pline, 2));
}

// The nearest point of the nearest segment, a vertex where that is nearest.
TEST(PolylineTest, ClosestPointIsOnTheNearestSegment) {
  OdDbPolylinePtr pline = makePolyline({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}});
  const struct {
    OdGePoint3d given, closest;
  } cases[] = {{{5, 1, 0}, {5, 0, 0}},   {{11, 5, 3}, {10, 5, 0}},   {{9, 0.5, 0}, {9, 0, 0}},
               {{-3, -4, 0}, {0, 0, 0}}, {{12, 14, 0}, {10, 10, 0}}, {{10.5, -0.5, 0}, {10, 0, 0}}};
  for (const auto& c : cases) {
    OdGePoint3d closest;
    ASSERT_EQ(eOk, pline->getClosestPointTo(c.given, closest));
    expectPoint(c.closest, closest);
  }
  double param = 0.0;
  ASSERT_EQ(eOk, pline->getParamAtPoint(OdGePoint3d(10, 7.5, 0), param));
  EXPECT_NEAR(1.75, param, 1e-12);
  // One midpoint per segment, the closing one included when closed.
  for (bool closed : {false, true}) {
    pline->setClosed(closed);
    OdGePoint3dArray mids;
    ASSERT_EQ(eOk, pline->getOsnapPoints(OdDb::kOsModeMid, 0, {}, {}, {}, mids));
    ASSERT_EQ(closed ? 3u : 2u, mids.size());
    expectPoint(OdGePoint3d(10, 5, 0), mids[1]);
    if (closed)
      expectPoint(OdGePoint3d(5, 5, 0), mids[2]);
  }
}

TEST(PolylineTest, ExtentsIncludeArcBulgesOfEverySegment) {
  const struct {
    const char* name;
    OdDbPolylinePtr pline;
    OdGePoint3d min, max;
  } cases[] = {
      {"half circle below", makePolyline({{0, 0, 1.0}, {2, 0, 0}}), {0, -1, 0}, {2, 0, 0}},
      {"closing segment below", makePolyline({{2, 0, 0}, {0, 0, 1}}, true), {0, -1, 0}, {2, 0, 0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    OdGeExtents3d extents;
    ASSERT_EQ(eOk, c.pline->getGeomExtents(extents));
    expectPoint(c.min, extents.minPoint());
    expectPoint(c.max, extents.maxPoint());
  }
}

TEST(PolylineTest, DxfFlagsMarkAClosedPolyline) {
  DxfFiler filer;
  filer.openForWrite();
  makePolyline({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, true)->dxfOutFields(&filer);
  const auto& items = filer.items();
  const auto flags =
      std::find_if(items.begin(), items.end(), [](const auto& i) { return i.code == 70; });
  ASSERT_NE(flags, items.end());
  EXPECT_EQ(flags->value, OdString(OD_T("1")));
  filer.rewind();
  OdDbPolylinePtr copy = OdDbPolyline::createObject();
  ASSERT_EQ(eOk, copy->dxfInFields(&filer));
  EXPECT_TRUE(copy->isClosed());
}

} // namespace
