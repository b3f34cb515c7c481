#include "DbPolyline.h"

#include "DbArc.h"
#include "DbLine.h"

#include "DbDwgStreamFiler.h"
#include "DbDxfItemFiler.h"
#include "Gi/GiRecorder.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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

class PolylineTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { odInitialize(); }
  static void TearDownTestSuite() { odUninitialize(); }

  struct V {
    double x;
    double y;
    double bulge;
  };
  static OdDbPolylinePtr makePolyline(std::initializer_list<V> vertices, bool closed = false) {
    OdDbPolylinePtr pline = OdDbPolyline::createObject();
    for (const V& v : vertices)
      pline->addVertexAt(pline->numVerts(), OdGePoint2d(v.x, v.y), v.bulge);
    pline->setClosed(closed);
    return pline;
  }
  /// Every field away from its default: bulges, varying widths, closed, plinegen, elevation,
  /// thickness and a tilted normal.
  static OdDbPolylinePtr makeFullPolyline() {
    OdDbPolylinePtr pline = makePolyline({{0.0, 0.0, 0.5}, {4.0, 0.0, 0.0}, {4.0, 3.0, -1.0}});
    pline->setWidthsAt(0, 0.25, 0.5);
    pline->setWidthsAt(2, 1.0, 0.0);
    pline->setClosed(true);
    pline->setPlinegen(true);
    pline->setElevation(-2.5);
    pline->setThickness(3.0);
    pline->setNormal(OdGeVector3d(0.0, 0.6, 0.8));
    return pline;
  }
  static void expectSamePolyline(OdDbPolyline* expected, OdDbPolyline* actual) {
    ASSERT_EQ(expected->numVerts(), actual->numVerts());
    for (unsigned int i = 0; i < expected->numVerts(); ++i) {
      SCOPED_TRACE(i);
      OdGePoint2d p1, p2;
      double b1 = 0, b2 = 0, s1 = 0, s2 = 0, e1 = 0, e2 = 0;
      expected->getPointAt(i, p1);
      actual->getPointAt(i, p2);
      expected->getBulgeAt(i, b1);
      actual->getBulgeAt(i, b2);
      expected->getWidthsAt(i, s1, e1);
      actual->getWidthsAt(i, s2, e2);
      EXPECT_EQ(p1, p2);
      EXPECT_EQ(b1, b2);
      EXPECT_EQ(s1, s2);
      EXPECT_EQ(e1, e2);
    }
    EXPECT_EQ(expected->isClosed(), actual->isClosed());
    EXPECT_EQ(expected->hasPlinegen(), actual->hasPlinegen());
    EXPECT_EQ(expected->elevation(), actual->elevation());
    EXPECT_EQ(expected->thickness(), actual->thickness());
    EXPECT_EQ(expected->normal(), actual->normal());
  }
};

void expectPoint(const OdGePoint3d& expected, const OdGePoint3d& actual, double tol = 1e-9) {
  EXPECT_NEAR(expected.x, actual.x, tol);
  EXPECT_NEAR(expected.y, actual.y, tol);
  EXPECT_NEAR(expected.z, actual.z, tol);
}

OdGePoint3d worldPoint(const OdDbPolyline* pline, unsigned int index) {
  OdGePoint3d point;
  EXPECT_EQ(eOk, pline->getPointAt(index, point));
  return point;
}

TEST_F(PolylineTest, RegisteredUnderCurveWithDxfName) {
  OdRxClass* cls = odrxGetClass(OD_T("OdDbPolyline"));
  ASSERT_NE(nullptr, cls);
  EXPECT_EQ(OdDbCurve::desc(), cls->myParent());
  EXPECT_EQ(OdString(OD_T("LWPOLYLINE")), cls->dxfName());
}

TEST_F(PolylineTest, DefaultState) {
  OdDbPolylinePtr pline = OdDbPolyline::createObject();
  EXPECT_EQ(0u, pline->numVerts());
  EXPECT_FALSE(pline->isClosed());
  EXPECT_FALSE(pline->hasPlinegen());
  EXPECT_FALSE(pline->hasWidth());
  EXPECT_FALSE(pline->hasBulges());
  EXPECT_EQ(0.0, pline->elevation());
  EXPECT_EQ(0.0, pline->thickness());
  EXPECT_EQ(OdGeVector3d::kZAxis, pline->normal());
  OdGePoint3d point;
  EXPECT_EQ(eInvalidInput, pline->getStartPoint(point));
  OdGeExtents3d extents;
  EXPECT_EQ(eInvalidExtents, pline->getGeomExtents(extents));
  OdGiRecorder recorder;
  EXPECT_TRUE(pline->worldDraw(&recorder));
  EXPECT_TRUE(recorder.records().empty());
}

TEST_F(PolylineTest, AddingAndRemovingVertices) {
  OdDbPolylinePtr pline = OdDbPolyline::createObject();
  pline->addVertexAt(0, OdGePoint2d(1.0, 0.0));
  pline->addVertexAt(99, OdGePoint2d(3.0, 0.0)); // past the end appends
  pline->addVertexAt(1, OdGePoint2d(2.0, 0.0), 0.5);
  ASSERT_EQ(3u, pline->numVerts());
  OdGePoint2d point;
  double bulge = 0.0;
  ASSERT_EQ(eOk, pline->getPointAt(1, point));
  EXPECT_EQ(OdGePoint2d(2.0, 0.0), point);
  ASSERT_EQ(eOk, pline->getBulgeAt(1, bulge));
  EXPECT_EQ(0.5, bulge);
  ASSERT_EQ(eOk, pline->getPointAt(2, point));
  EXPECT_EQ(OdGePoint2d(3.0, 0.0), point);
  ASSERT_EQ(eOk, pline->removeVertexAt(0));
  ASSERT_EQ(eOk, pline->getPointAt(0, point));
  EXPECT_EQ(OdGePoint2d(2.0, 0.0), point);
  EXPECT_EQ(OdDbPolyline::kArc, pline->segType(0));
  pline->reset(true, 1);
  EXPECT_EQ(1u, pline->numVerts());
  EXPECT_EQ(OdDbPolyline::kPoint, pline->segType(0));
  pline->reset(false, 5);
  EXPECT_EQ(0u, pline->numVerts());
}

TEST_F(PolylineTest, InvalidIndicesAndValuesAreRefused) {
  OdDbPolylinePtr pline = makePolyline({{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}});
  OdGePoint2d p2;
  OdGePoint3d p3;
  double a = 0.0, b = 0.0;
  EXPECT_EQ(eInvalidIndex, pline->getPointAt(2, p2));
  EXPECT_EQ(eInvalidIndex, pline->getPointAt(2, p3));
  EXPECT_EQ(eInvalidIndex, pline->setPointAt(2, OdGePoint2d()));
  EXPECT_EQ(eInvalidIndex, pline->getBulgeAt(2, a));
  EXPECT_EQ(eInvalidIndex, pline->setBulgeAt(2, 1.0));
  EXPECT_EQ(eInvalidIndex, pline->getWidthsAt(2, a, b));
  EXPECT_EQ(eInvalidIndex, pline->setWidthsAt(2, 1.0, 1.0));
  EXPECT_EQ(eInvalidIndex, pline->removeVertexAt(2));
  EXPECT_EQ(eInvalidInput, pline->setBulgeAt(0, std::nan("")));
  EXPECT_EQ(eInvalidInput, pline->setWidthsAt(0, -1.0, 0.0));
  EXPECT_EQ(eInvalidInput, pline->setPointAt(0, OdGePoint2d(INFINITY, 0.0)));
  EXPECT_THROW(pline->setConstantWidth(-2.0), OdError);
  EXPECT_EQ(2u, pline->numVerts());
  ASSERT_EQ(eOk, pline->getBulgeAt(0, a));
  EXPECT_EQ(0.0, a);
  EXPECT_EQ(OdDbPolyline::kEmpty, pline->segType(1)); // open: one segment only
}

TEST_F(PolylineTest, ConstantWidthAndDefaultWidths) {
  OdDbPolylinePtr pline = OdDbPolyline::createObject();
  pline->setConstantWidth(0.5);
  pline->addVertexAt(0, OdGePoint2d(0.0, 0.0));
  pline->addVertexAt(1, OdGePoint2d(1.0, 0.0));
  double width = 0.0;
  ASSERT_EQ(eOk, pline->getConstantWidth(width));
  EXPECT_EQ(0.5, width);
  EXPECT_TRUE(pline->hasWidth());
  pline->addVertexAt(2, OdGePoint2d(2.0, 0.0), 0.0, 0.5, 1.0);
  EXPECT_EQ(eNotApplicable, pline->getConstantWidth(width));
  // With differing widths, a new vertex without widths gets none.
  pline->addVertexAt(3, OdGePoint2d(3.0, 0.0));
  double start = -1.0, end = -1.0;
  ASSERT_EQ(eOk, pline->getWidthsAt(3, start, end));
  EXPECT_EQ(0.0, start);
  EXPECT_EQ(0.0, end);
  pline->setConstantWidth(0.0);
  EXPECT_FALSE(pline->hasWidth());
}

TEST_F(PolylineTest, WorldPointsUseElevationAndArbitraryAxes) {
  OdDbPolylinePtr pline = makePolyline({{2.0, 3.0, 0.0}, {-1.0, 4.0, 0.0}});
  pline->setElevation(5.0);
  pline->setNormal(OdGeVector3d::kXAxis);
  // For a normal along X the plane's axes are world Y and world Z.
  expectPoint(OdGePoint3d(5.0, 2.0, 3.0), worldPoint(pline, 0));
  expectPoint(OdGePoint3d(5.0, -1.0, 4.0), worldPoint(pline, 1));
  OdGePoint3d end;
  ASSERT_EQ(eOk, pline->getEndPoint(end));
  expectPoint(OdGePoint3d(5.0, -1.0, 4.0), end);
  pline->setClosed(true);
  ASSERT_EQ(eOk, pline->getEndPoint(end));
  expectPoint(OdGePoint3d(5.0, 2.0, 3.0), end);
}

TEST_F(PolylineTest, DwgRoundTripKeepsEveryField) {
  OdDbPolylinePtr constant = makePolyline({{0.0, 0.0, 0.0}, {1.0, 1.0, 0.0}, {2.0, 0.0, 0.0}});
  constant->setConstantWidth(0.75);
  for (const OdDbPolylinePtr& pline : {makeFullPolyline(), constant}) {
    Filer filer;
    filer.openForWrite();
    pline->dwgOutFields(&filer);
    ASSERT_EQ(eOk, filer.filerStatus());
    filer.rewind();
    OdDbPolylinePtr copy = OdDbPolyline::createObject();
    ASSERT_EQ(eOk, copy->dwgInFields(&filer));
    EXPECT_EQ(0u, filer.remainingDataBits());
    expectSamePolyline(pline, copy);
  }
}

TEST_F(PolylineTest, ShortStreamFailsCleanlyAtEveryBit) {
  OdDbPolylinePtr pline = makeFullPolyline();
  Filer written;
  written.openForWrite();
  pline->dwgOutFields(&written);
  for (OdUInt64 bits = 0; bits < written.dataBitSize(); ++bits) {
    Filer reader;
    reader.openForRead(written.dataBuffer(), bits, written.stringBuffer(), written.stringBitSize(),
                       written.handleBuffer(), written.handleBitSize());
    OdDbPolylinePtr fresh = OdDbPolyline::createObject();
    EXPECT_NE(eOk, fresh->dwgInFields(&reader)) << "cut at bit " << bits;
    EXPECT_EQ(0u, fresh->numVerts()) << "cut at bit " << bits;
  }
}

TEST_F(PolylineTest, ForgedCountsAreRefusedBeforeAllocating) {
  struct Case {
    const char* name;
    OdUInt16 flags;
    OdInt32 vertices;
    OdInt32 bulges;
    OdResult expected;
  };
  const Case cases[] = {
      {"vertex count beyond the data", 0, 0x7fffffff, 0, eEndOfFile},
      {"negative count read as huge", 0, -1, 0, eEndOfFile},
      {"bulge count beyond the data", 16, 2, 0x40000000, eDwgObjectImproperlyRead},
      {"bulge count unlike the vertex count", 16, 2, 1, eDwgObjectImproperlyRead},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbPolylinePtr pline = OdDbPolyline::createObject();
    Filer filer;
    filer.openForWrite();
    pline->OdDbEntity::dwgOutFields(&filer);
    filer.wrInt16(static_cast<OdInt16>(c.flags));
    filer.wrInt32(c.vertices);
    if (c.flags & 16)
      filer.wrInt32(c.bulges);
    const OdUInt64 afterCounts = filer.tell();
    for (int i = 0; i < 4; ++i)
      filer.wrPoint2d(OdGePoint2d(i, i));
    filer.rewind();
    EXPECT_EQ(c.expected, pline->dwgInFields(&filer));
    EXPECT_EQ(0u, pline->numVerts());
    // Refused on the counts alone: no vertex was read (nor allocated for).
    EXPECT_EQ(afterCounts, filer.tell());
  }
}

TEST_F(PolylineTest, DxfRoundTripAndGroupOrder) {
  OdDbPolylinePtr constant = makePolyline({{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}});
  constant->setConstantWidth(2.0);
  // Points and vectors take one group per coordinate: x at 10, y at 20, z at 30. A constant
  // width is one group 43 instead of 40/41 per vertex.
  const struct {
    OdDbPolylinePtr pline;
    std::vector<int> tail;
  } cases[] = {
      {makeFullPolyline(), {100, 90, 70, 38, 39, 10, 20, 40, 41,  42,  10,
                            20,  40, 41, 10, 20, 40, 41, 42, 210, 220, 230}},
      {constant, {100, 90, 70, 43, 10, 20, 10, 20}},
  };
  for (const auto& c : cases) {
    DxfFiler filer;
    filer.openForWrite();
    c.pline->dxfOutFields(&filer);
    ASSERT_EQ(eOk, filer.filerStatus());
    const std::vector<int> codes = codesOf(filer.items());
    ASSERT_GE(codes.size(), c.tail.size());
    // The entity's own groups come first; the polyline's are the tail.
    EXPECT_EQ(c.tail, std::vector<int>(codes.end() - c.tail.size(), codes.end()));
    filer.rewind();
    OdDbPolylinePtr copy = OdDbPolyline::createObject();
    ASSERT_EQ(eOk, copy->dxfInFields(&filer));
    expectSamePolyline(c.pline, copy);
  }
}

TEST_F(PolylineTest, AreaCountsBulgedSegments) {
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

TEST_F(PolylineTest, ParametersFollowSegmentsAndArcs) {
  const double r = 2.0;
  OdDbPolylinePtr circle = makePolyline({{-r, 0, 1.0}, {r, 0, 1.0}}, true);
  double param = 0.0;
  ASSERT_EQ(eOk, circle->getEndParam(param));
  EXPECT_EQ(2.0, param);
  double length = 0.0;
  ASSERT_EQ(eOk, circle->getDistAtParam(2.0, length));
  EXPECT_NEAR(2.0 * OdaPI * r, length, 1e-9);
  // A positive bulge runs counter-clockwise: from (-r, 0) through the bottom.
  OdGePoint3d point;
  ASSERT_EQ(eOk, circle->getPointAtParam(0.5, point));
  expectPoint(OdGePoint3d(0.0, -r, 0.0), point);
  ASSERT_EQ(eOk, circle->getParamAtPoint(OdGePoint3d(0.0, r, 0.0), param));
  EXPECT_NEAR(1.5, param, 1e-9);
  ASSERT_EQ(eOk, circle->getParamAtDist(OdaPI * r * 0.25, param));
  EXPECT_NEAR(0.25, param, 1e-9);
  EXPECT_EQ(eInvalidInput, circle->getParamAtPoint(OdGePoint3d(0.0, 0.0, 0.0), param));
  EXPECT_EQ(eInvalidInput, circle->getPointAtParam(2.5, point));
}

TEST_F(PolylineTest, DrawsTessellatedCentreline) {
  const double r = 2.0;
  OdDbPolylinePtr circle = makePolyline({{-r, 0, 1.0}, {r, 0, 1.0}}, true);
  circle->setElevation(1.0);
  OdGiRecorder recorder;
  EXPECT_TRUE(circle->worldDraw(&recorder));
  ASSERT_EQ(1u, recorder.records().size());
  const std::vector<OdGePoint3d>& points = recorder.records()[0].points;
  // 32 pieces per half turn, and the outline returns to its first vertex.
  ASSERT_EQ(65u, points.size());
  expectPoint(points.front(), points.back());
  for (const OdGePoint3d& p : points) {
    EXPECT_NEAR(r, OdGePoint3d(0.0, 0.0, 1.0).distanceTo(p), 1e-9);
    EXPECT_NEAR(1.0, p.z, 1e-12);
  }
  expectPoint(OdGePoint3d(0.0, -r, 1.0), points[16]);

  // A fine deviation asks for more pieces.
  recorder.clear();
  recorder.setDeviation(1e-4);
  circle->worldDraw(&recorder);
  ASSERT_EQ(1u, recorder.records().size());
  EXPECT_GT(recorder.records()[0].points.size(), 65u);
  EXPECT_LE(recorder.records()[0].points.size(), 2u * 1024u + 1u);

  OdDbPolylinePtr straight = makePolyline({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}});
  recorder.clear();
  straight->worldDraw(&recorder);
  ASSERT_EQ(1u, recorder.records().size());
  EXPECT_EQ(3u, recorder.records()[0].points.size());
}

TEST_F(PolylineTest, TransformMovesThePlane) {
  struct Case {
    const char* name;
    OdGeMatrix3d xform;
    double bulgeSign;
    double areaFactor;
  };
  const Case cases[] = {
      {"rotation about z", OdGeMatrix3d::rotation(0.7, OdGeVector3d::kZAxis), 1.0, 1.0},
      {"rotation about x", OdGeMatrix3d::rotation(OdaPI2, OdGeVector3d::kXAxis), 1.0, 1.0},
      {"tilt about a skew axis",
       OdGeMatrix3d::rotation(1.1, OdGeVector3d(1.0, 2.0, 3.0), OdGePoint3d(1.0, 1.0, 1.0)), 1.0,
       1.0},
      {"translation", OdGeMatrix3d::translation(OdGeVector3d(1.0, 2.0, 3.0)), 1.0, 1.0},
      {"uniform scale", OdGeMatrix3d::scaling(2.0, OdGePoint3d(1.0, 0.0, 0.0)), 1.0, 4.0},
      {"mirror in the yz plane",
       OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kXAxis), -1.0, 1.0},
      {"mirror in the xy plane",
       OdGeMatrix3d::mirroring(OdGePoint3d(0.0, 0.0, 1.0), OdGeVector3d::kZAxis), -1.0, 1.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbPolylinePtr pline = makePolyline({{0, 0, 0.5}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, true);
    pline->setElevation(0.5);
    pline->setWidthsAt(1, 1.0, 1.0);
    double areaBefore = 0.0;
    pline->getArea(areaBefore);
    OdGePoint3d midBefore;
    pline->getPointAtParam(0.5, midBefore);
    OdGePoint3dArray before;
    pline->getGripPoints(before);

    ASSERT_EQ(eOk, pline->transformBy(c.xform));
    for (unsigned int i = 0; i < 4; ++i)
      expectPoint(c.xform * before[i], worldPoint(pline, i));
    // The arc still bulges to the same side in space.
    OdGePoint3d midAfter;
    pline->getPointAtParam(0.5, midAfter);
    expectPoint(c.xform * midBefore, midAfter);
    double bulge = 0.0;
    pline->getBulgeAt(0, bulge);
    EXPECT_DOUBLE_EQ(0.5 * c.bulgeSign, bulge);
    double area = 0.0;
    pline->getArea(area);
    EXPECT_NEAR(areaBefore * c.areaFactor, area, 1e-9);
    double start = 0.0, end = 0.0;
    pline->getWidthsAt(1, start, end);
    EXPECT_NEAR(std::sqrt(c.areaFactor), start, 1e-12);
  }
}

TEST_F(PolylineTest, FlatteningTransformIsRefused) {
  OdDbPolylinePtr pline = makePolyline({{0, 0, 0}, {2, 0, 0}});
  OdGeMatrix3d flatten = OdGeMatrix3d::scaling(OdGeScale3d(1.0, 0.0, 1.0));
  EXPECT_EQ(eInvalidInput, pline->transformBy(flatten));
  expectPoint(OdGePoint3d(2.0, 0.0, 0.0), worldPoint(pline, 1));
}

TEST_F(PolylineTest, GripsAndStretchMoveVertices) {
  OdDbPolylinePtr pline = makePolyline({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}});
  pline->setElevation(1.0);
  OdGePoint3dArray grips;
  ASSERT_EQ(eOk, pline->getGripPoints(grips));
  ASSERT_EQ(3u, grips.size());
  expectPoint(OdGePoint3d(2.0, 2.0, 1.0), grips[2]);
  // The offset's part along the normal is dropped: the vertex stays in the plane.
  ASSERT_EQ(eOk, pline->moveGripPointsAt(OdIntArray{1, 1}, OdGeVector3d(1.0, 1.0, 5.0)));
  expectPoint(OdGePoint3d(3.0, 1.0, 1.0), worldPoint(pline, 1));
  EXPECT_EQ(eInvalidIndex, pline->moveGripPointsAt(OdIntArray{0, 3}, OdGeVector3d(1, 0, 0)));
  expectPoint(OdGePoint3d(0.0, 0.0, 1.0), worldPoint(pline, 0));

  OdGePoint3dArray stretch;
  ASSERT_EQ(eOk, pline->getStretchPoints(stretch));
  EXPECT_EQ(3u, stretch.size());
  ASSERT_EQ(eOk, pline->moveStretchPointsAt(OdIntArray{0, 2}, OdGeVector3d(-1.0, 0.0, 0.0)));
  expectPoint(OdGePoint3d(-1.0, 0.0, 1.0), worldPoint(pline, 0));
  expectPoint(OdGePoint3d(3.0, 1.0, 1.0), worldPoint(pline, 1));
  expectPoint(OdGePoint3d(1.0, 2.0, 1.0), worldPoint(pline, 2));
}

TEST_F(PolylineTest, OsnapPoints) {
  // (0,0) -> (2,0) a half circle below the x axis, then straight up to (2,2).
  OdDbPolylinePtr pline = makePolyline({{0, 0, 1.0}, {2, 0, 0}, {2, 2, 0}});
  struct Case {
    const char* name;
    OdDb::OsnapMode mode;
    OdGePoint3d pick;
    OdGePoint3d last;
    std::vector<OdGePoint3d> expected;
  };
  const OdGePoint3d anywhere(9.0, 9.0, 0.0);
  const Case cases[] = {
      {"end",
       OdDb::kOsModeEnd,
       anywhere,
       anywhere,
       {OdGePoint3d(0, 0, 0), OdGePoint3d(2, 0, 0), OdGePoint3d(2, 2, 0)}},
      {"mid, on the arc",
       OdDb::kOsModeMid,
       anywhere,
       anywhere,
       {OdGePoint3d(1, -1, 0), OdGePoint3d(2, 1, 0)}},
      {"centre of the arc", OdDb::kOsModeCen, anywhere, anywhere, {OdGePoint3d(1, 0, 0)}},
      {"near the line",
       OdDb::kOsModeNear,
       OdGePoint3d(3.0, 1.5, 0.0),
       anywhere,
       {OdGePoint3d(2, 1.5, 0)}},
      {"near clamped to the end",
       OdDb::kOsModeNear,
       OdGePoint3d(2.5, 5.0, 0.0),
       anywhere,
       {OdGePoint3d(2, 2, 0)}},
      {"near the arc",
       OdDb::kOsModeNear,
       OdGePoint3d(1.0, -3.0, 0.0),
       anywhere,
       {OdGePoint3d(1, -1, 0)}},
      // Perpendiculars to the arc run through its centre (1, 0); the half circle below the
      // axis always holds one of the two.
      {"perp onto the arc and the line",
       OdDb::kOsModePerp,
       anywhere,
       OdGePoint3d(5.0, 0.5, 0.0),
       {OdGePoint3d(1.0 - 4.0 / std::sqrt(16.25), -0.5 / std::sqrt(16.25), 0),
        OdGePoint3d(2, 0.5, 0)}},
      {"perp off the line",
       OdDb::kOsModePerp,
       anywhere,
       OdGePoint3d(5.0, 4.0, 0.0),
       {OdGePoint3d(1.0 - std::sqrt(0.5), -std::sqrt(0.5), 0)}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdGePoint3dArray snaps;
    ASSERT_EQ(eOk,
              pline->getOsnapPoints(c.mode, 0, c.pick, c.last, OdGeMatrix3d::kIdentity, snaps));
    ASSERT_EQ(c.expected.size(), snaps.size());
    for (unsigned int i = 0; i < snaps.size(); ++i)
      expectPoint(c.expected[i], snaps[i]);
  }
}

TEST_F(PolylineTest, ExtentsIncludeArcBulges) {
  struct Case {
    const char* name;
    double bulge;
    OdGePoint3d min;
    OdGePoint3d max;
  };
  const Case cases[] = {
      {"half circle below", 1.0, OdGePoint3d(0, -1, 0), OdGePoint3d(2, 0, 0)},
      {"half circle above", -1.0, OdGePoint3d(0, 0, 0), OdGePoint3d(2, 1, 0)},
      {"three quarter circle", std::tan(3.0 * OdaPI / 8.0),
       OdGePoint3d(1.0 - std::sqrt(2.0), -1.0 - std::sqrt(2.0), 0),
       OdGePoint3d(1.0 + std::sqrt(2.0), 0, 0)},
      {"straight", 0.0, OdGePoint3d(0, 0, 0), OdGePoint3d(2, 0, 0)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbPolylinePtr pline = makePolyline({{0, 0, c.bulge}, {2, 0, 0}});
    OdGeExtents3d extents;
    ASSERT_EQ(eOk, pline->getGeomExtents(extents));
    expectPoint(c.min, extents.minPoint());
    expectPoint(c.max, extents.maxPoint());
  }
  // In a tilted plane the arc's top lies along the plane's own axes.
  OdDbPolylinePtr tilted = makePolyline({{0, 0, 1.0}, {2, 0, 0}});
  tilted->setNormal(OdGeVector3d::kXAxis);
  OdGeExtents3d extents;
  ASSERT_EQ(eOk, tilted->getGeomExtents(extents));
  expectPoint(OdGePoint3d(0, 0, -1), extents.minPoint());
  expectPoint(OdGePoint3d(0, 2, 0), extents.maxPoint());
}

/// The ends of an exploded piece, whichever class it is.
void pieceEnds(const OdRxObjectPtr& piece, OdGePoint3d& start, OdGePoint3d& end) {
  OdDbCurvePtr curve = OdDbCurve::cast(piece.get());
  ASSERT_FALSE(curve.isNull());
  ASSERT_EQ(eOk, curve->getStartPoint(start));
  ASSERT_EQ(eOk, curve->getEndPoint(end));
}

TEST_F(PolylineTest, ExplodedBulgesAreArcsThatChainInThePlane) {
  // Straight, counter-clockwise, clockwise, a zero-length segment, straight, and the closing
  // segment, in a tilted plane above the origin.
  OdDbPolylinePtr shape =
      makePolyline({{0, 0, 0}, {4, 0, 0.5}, {4, 4, -1.0}, {0, 4, 0}, {0, 4, 0}, {-1, 2, 0}}, true);
  shape->setElevation(1.5);
  shape->setNormal(OdGeVector3d(0.0, 0.6, 0.8));
  shape->setThickness(0.25);
  shape->setColorIndex(3);
  shape->setLinetypeScale(2.5);
  shape->setLineWeight(OdDb::kLnWt050);
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
    EXPECT_EQ(3, entity->colorIndex());
    EXPECT_EQ(2.5, entity->linetypeScale());
    EXPECT_EQ(OdDb::kLnWt050, entity->lineWeight());

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

    if (isArc[i]) {
      OdDbArcPtr piece = OdDbArc::cast(pieces[i].get());
      EXPECT_TRUE(shape->normal().isEqualTo(piece->normal()));
      EXPECT_EQ(0.25, piece->thickness());
    } else {
      OdDbLinePtr piece = OdDbLine::cast(pieces[i].get());
      EXPECT_TRUE(shape->normal().isEqualTo(piece->normal()));
      EXPECT_EQ(0.25, piece->thickness());
    }
  }
}

TEST_F(PolylineTest, ExplodeWithoutSegmentsGivesNothing) {
  const OdDbPolylinePtr cases[] = {OdDbPolyline::createObject(), makePolyline({{1, 1, 0}}),
                                   makePolyline({{1, 1, 0.5}, {1, 1, 0}}, true)};
  for (const OdDbPolylinePtr& pline : cases) {
    OdRxObjectPtrArray pieces;
    EXPECT_EQ(eOk, pline->explode(pieces));
    EXPECT_TRUE(pieces.isEmpty());
  }
}

TEST_F(PolylineTest, WidthsAreDrawnAsFilledPolygons) {
  OdGiRecorder recorder;
  recorder.subEntityTraits().setFillType(kOdGiFillNever);

  // Constant width: one quadrilateral per segment, half the width either side.
  OdDbPolylinePtr bent = makePolyline({{0, 0, 0}, {4, 0, 0}, {4, 3, 0}});
  bent->setConstantWidth(1.0);
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

TEST_F(PolylineTest, WideArcIsTheBandBetweenOffsetArcs) {
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

} // namespace
