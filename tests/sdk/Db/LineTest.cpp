#include "DbLine.h"

#include "DbDwgStreamFiler.h"
#include "Gi/GiRecorder.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

typedef OdStaticRxObject<OdDbDwgStreamFiler> Filer;

class LineTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { odInitialize(); }
  static void TearDownTestSuite() { odUninitialize(); }

  static OdDbLinePtr makeLine(const OdGePoint3d& start, const OdGePoint3d& end) {
    OdDbLinePtr line = OdDbLine::createObject();
    line->setStartPoint(start);
    line->setEndPoint(end);
    return line;
  }
};

void expectPoint(const OdGePoint3d& expected, const OdGePoint3d& actual, double tol = 1e-9) {
  EXPECT_NEAR(expected.x, actual.x, tol);
  EXPECT_NEAR(expected.y, actual.y, tol);
  EXPECT_NEAR(expected.z, actual.z, tol);
}

TEST_F(LineTest, RegisteredUnderCurveWithDxfName) {
  OdRxClass* cls = odrxGetClass(OD_T("OdDbLine"));
  ASSERT_NE(nullptr, cls);
  EXPECT_EQ(OdDbCurve::desc(), cls->myParent());
  EXPECT_EQ(OdString(OD_T("LINE")), cls->dxfName());
  OdDbLinePtr line = OdDbLine::createObject();
  EXPECT_TRUE(line->isKindOf(OdDbCurve::desc()));
  EXPECT_TRUE(line->isKindOf(OdDbEntity::desc()));
}

TEST_F(LineTest, DefaultState) {
  OdDbLinePtr line = OdDbLine::createObject();
  EXPECT_EQ(OdGePoint3d::kOrigin, line->startPoint());
  EXPECT_EQ(OdGePoint3d::kOrigin, line->endPoint());
  EXPECT_EQ(0.0, line->thickness());
  EXPECT_EQ(OdGeVector3d::kZAxis, line->normal());
  EXPECT_FALSE(line->isClosed());
}

TEST_F(LineTest, NormalIsStoredAsUnitAndZeroRefused) {
  OdDbLinePtr line = OdDbLine::createObject();
  line->setNormal(OdGeVector3d(0.0, 3.0, 0.0));
  EXPECT_EQ(OdGeVector3d::kYAxis, line->normal());
  EXPECT_THROW(line->setNormal(OdGeVector3d(0.0, 0.0, 0.0)), OdError);
  EXPECT_EQ(OdGeVector3d::kYAxis, line->normal());
}

TEST_F(LineTest, DwgRoundTripKeepsEveryField) {
  OdDbLinePtr line = makeLine(OdGePoint3d(1.5, -2.25, 3.0), OdGePoint3d(-7.0, 8.125, 0.5));
  line->setThickness(2.5);
  line->setNormal(OdGeVector3d(0.0, 0.6, 0.8));
  Filer filer;
  filer.openForWrite();
  line->dwgOutFields(&filer);
  ASSERT_EQ(eOk, filer.filerStatus());
  filer.rewind();
  OdDbLinePtr copy = OdDbLine::createObject();
  ASSERT_EQ(eOk, copy->dwgInFields(&filer));
  EXPECT_EQ(line->startPoint(), copy->startPoint());
  EXPECT_EQ(line->endPoint(), copy->endPoint());
  EXPECT_EQ(2.5, copy->thickness());
  EXPECT_EQ(OdGeVector3d(0.0, 0.6, 0.8), copy->normal());
  EXPECT_EQ(0u, filer.remainingDataBits());
}

TEST_F(LineTest, ShortStreamFailsCleanlyAtEveryBit) {
  OdDbLinePtr line = makeLine(OdGePoint3d(1.0, 2.0, 3.0), OdGePoint3d(4.0, 5.0, 6.0));
  line->setThickness(1.0);
  Filer written;
  written.openForWrite();
  line->dwgOutFields(&written);
  for (OdUInt64 bits = 0; bits < written.dataBitSize(); ++bits) {
    Filer reader;
    reader.openForRead(written.dataBuffer(), bits, written.stringBuffer(), written.stringBitSize(),
                       written.handleBuffer(), written.handleBitSize());
    OdDbLinePtr fresh = OdDbLine::createObject();
    EXPECT_NE(eOk, fresh->dwgInFields(&reader)) << "cut at bit " << bits;
    EXPECT_EQ(OdGePoint3d::kOrigin, fresh->endPoint()) << "cut at bit " << bits;
  }
}

TEST_F(LineTest, ZeroNormalInStreamIsRefused) {
  OdDbLinePtr line = OdDbLine::createObject();
  Filer filer;
  filer.openForWrite();
  line->OdDbEntity::dwgOutFields(&filer);
  filer.wrPoint3d(OdGePoint3d(1.0, 1.0, 1.0));
  filer.wrPoint3d(OdGePoint3d(2.0, 2.0, 2.0));
  filer.wrDouble(0.0);
  filer.wrVector3d(OdGeVector3d(0.0, 0.0, 0.0));
  filer.rewind();
  EXPECT_EQ(eInvalidInput, line->dwgInFields(&filer));
  EXPECT_EQ(OdGePoint3d::kOrigin, line->startPoint());
}

TEST_F(LineTest, CurveQueriesUseDistanceAsParameter) {
  OdDbLinePtr line = makeLine(OdGePoint3d(1.0, 1.0, 0.0), OdGePoint3d(4.0, 5.0, 0.0));
  double param = -1.0;
  ASSERT_EQ(eOk, line->getEndParam(param));
  EXPECT_DOUBLE_EQ(5.0, param);
  OdGePoint3d point;
  ASSERT_EQ(eOk, line->getPointAtParam(2.5, point));
  expectPoint(OdGePoint3d(2.5, 3.0, 0.0), point);
  EXPECT_EQ(eInvalidInput, line->getPointAtParam(5.5, point));
  ASSERT_EQ(eOk, line->getParamAtPoint(OdGePoint3d(3.4, 4.2, 0.0), param));
  EXPECT_NEAR(4.0, param, 1e-12);
  double dist = 0.0;
  EXPECT_EQ(eInvalidInput, line->getDistAtPoint(OdGePoint3d(3.0, 1.0, 0.0), dist));
  ASSERT_EQ(eOk, line->getDistAtPoint(OdGePoint3d(1.6, 1.8, 0.0), dist));
  EXPECT_NEAR(1.0, dist, 1e-12);
  ASSERT_EQ(eOk, line->getParamAtDist(3.0, param));
  EXPECT_DOUBLE_EQ(3.0, param);
}

TEST_F(LineTest, ClosestPointClampsUnlessExtended) {
  OdDbLinePtr line = makeLine(OdGePoint3d(0.0, 0.0, 0.0), OdGePoint3d(2.0, 0.0, 0.0));
  OdGePoint3d closest;
  ASSERT_EQ(eOk, line->getClosestPointTo(OdGePoint3d(5.0, 3.0, 0.0), closest));
  expectPoint(OdGePoint3d(2.0, 0.0, 0.0), closest);
  ASSERT_EQ(eOk, line->getClosestPointTo(OdGePoint3d(5.0, 3.0, 0.0), closest, true));
  expectPoint(OdGePoint3d(5.0, 0.0, 0.0), closest);
  ASSERT_EQ(eOk, line->getClosestPointTo(OdGePoint3d(1.0, -2.0, 7.0), closest));
  expectPoint(OdGePoint3d(1.0, 0.0, 0.0), closest);
}

TEST_F(LineTest, DrawsOneTwoPointPolyline) {
  OdDbLinePtr line = makeLine(OdGePoint3d(1.0, 2.0, 3.0), OdGePoint3d(4.0, 5.0, 6.0));
  OdGiRecorder recorder;
  EXPECT_TRUE(line->worldDraw(&recorder));
  ASSERT_EQ(1u, recorder.records().size());
  const OdGiRecord& record = recorder.records()[0];
  EXPECT_EQ(OdGiRecord::kPolyline, record.kind);
  ASSERT_EQ(2u, record.points.size());
  expectPoint(OdGePoint3d(1.0, 2.0, 3.0), record.points[0]);
  expectPoint(OdGePoint3d(4.0, 5.0, 6.0), record.points[1]);
}

TEST_F(LineTest, TransformMovesPointsNormalAndThickness) {
  struct Case {
    const char* name;
    OdGeMatrix3d xform;
    OdGePoint3d start;
    OdGePoint3d end;
    OdGeVector3d normal;
    double thickness;
  };
  const Case cases[] = {
      {"rotation about z", OdGeMatrix3d::rotation(OdaPI2, OdGeVector3d::kZAxis),
       OdGePoint3d(0.0, 1.0, 0.0), OdGePoint3d(-1.0, 3.0, 0.0), OdGeVector3d::kZAxis, 2.0},
      {"rotation about x", OdGeMatrix3d::rotation(OdaPI2, OdGeVector3d::kXAxis),
       OdGePoint3d(1.0, 0.0, 0.0), OdGePoint3d(3.0, 0.0, 1.0), OdGeVector3d(0.0, -1.0, 0.0), 2.0},
      {"translation", OdGeMatrix3d::translation(OdGeVector3d(1.0, -1.0, 2.0)),
       OdGePoint3d(2.0, -1.0, 2.0), OdGePoint3d(4.0, 0.0, 2.0), OdGeVector3d::kZAxis, 2.0},
      {"uniform scale", OdGeMatrix3d::scaling(3.0), OdGePoint3d(3.0, 0.0, 0.0),
       OdGePoint3d(9.0, 3.0, 0.0), OdGeVector3d::kZAxis, 6.0},
      {"mirror in the yz plane",
       OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kXAxis),
       OdGePoint3d(-1.0, 0.0, 0.0), OdGePoint3d(-3.0, 1.0, 0.0), OdGeVector3d::kZAxis, 2.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbLinePtr line = makeLine(OdGePoint3d(1.0, 0.0, 0.0), OdGePoint3d(3.0, 1.0, 0.0));
    line->setThickness(2.0);
    ASSERT_EQ(eOk, line->transformBy(c.xform));
    expectPoint(c.start, line->startPoint());
    expectPoint(c.end, line->endPoint());
    EXPECT_TRUE(c.normal.isEqualTo(line->normal(), OdGeTol(1e-9)))
        << line->normal().x << "," << line->normal().y << "," << line->normal().z;
    EXPECT_NEAR(c.thickness, line->thickness(), 1e-12);
  }
}

TEST_F(LineTest, GripsAreEndsAndMidpoint) {
  OdDbLinePtr line = makeLine(OdGePoint3d(0.0, 0.0, 0.0), OdGePoint3d(4.0, 2.0, 0.0));
  OdGePoint3dArray grips;
  ASSERT_EQ(eOk, line->getGripPoints(grips));
  ASSERT_EQ(3u, grips.size());
  expectPoint(OdGePoint3d(2.0, 1.0, 0.0), grips[1]);

  const OdGeVector3d offset(1.0, 1.0, 0.0);
  ASSERT_EQ(eOk, line->moveGripPointsAt(OdIntArray{2}, offset));
  expectPoint(OdGePoint3d(0.0, 0.0, 0.0), line->startPoint());
  expectPoint(OdGePoint3d(5.0, 3.0, 0.0), line->endPoint());

  // The midpoint moves the whole line, once, whatever else is selected with it.
  ASSERT_EQ(eOk, line->moveGripPointsAt(OdIntArray{0, 1}, offset));
  expectPoint(OdGePoint3d(1.0, 1.0, 0.0), line->startPoint());
  expectPoint(OdGePoint3d(6.0, 4.0, 0.0), line->endPoint());

  EXPECT_EQ(eInvalidIndex, line->moveGripPointsAt(OdIntArray{0, 3}, offset));
  expectPoint(OdGePoint3d(1.0, 1.0, 0.0), line->startPoint());
}

TEST_F(LineTest, StretchPointsAreTheEnds) {
  OdDbLinePtr line = makeLine(OdGePoint3d(0.0, 0.0, 0.0), OdGePoint3d(4.0, 2.0, 0.0));
  OdGePoint3dArray points;
  ASSERT_EQ(eOk, line->getStretchPoints(points));
  ASSERT_EQ(2u, points.size());
  ASSERT_EQ(eOk, line->moveStretchPointsAt(OdIntArray{1}, OdGeVector3d(0.0, 0.0, 1.0)));
  expectPoint(OdGePoint3d(0.0, 0.0, 0.0), line->startPoint());
  expectPoint(OdGePoint3d(4.0, 2.0, 1.0), line->endPoint());
  EXPECT_EQ(eInvalidIndex, line->moveStretchPointsAt(OdIntArray{2}, OdGeVector3d(1.0, 0, 0)));
  expectPoint(OdGePoint3d(4.0, 2.0, 1.0), line->endPoint());
}

TEST_F(LineTest, OsnapPoints) {
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
       {OdGePoint3d(0.0, 0.0, 0.0), OdGePoint3d(4.0, 0.0, 0.0)}},
      {"mid", OdDb::kOsModeMid, anywhere, anywhere, {OdGePoint3d(2.0, 0.0, 0.0)}},
      {"near inside",
       OdDb::kOsModeNear,
       OdGePoint3d(1.5, 2.0, 0.0),
       anywhere,
       {OdGePoint3d(1.5, 0.0, 0.0)}},
      {"near clamped to the end",
       OdDb::kOsModeNear,
       OdGePoint3d(7.0, 2.0, 0.0),
       anywhere,
       {OdGePoint3d(4.0, 0.0, 0.0)}},
      {"perp on the segment",
       OdDb::kOsModePerp,
       anywhere,
       OdGePoint3d(3.0, -5.0, 0.0),
       {OdGePoint3d(3.0, 0.0, 0.0)}},
      {"perp off the segment", OdDb::kOsModePerp, anywhere, OdGePoint3d(6.0, -5.0, 0.0), {}},
      {"centre has none", OdDb::kOsModeCen, anywhere, anywhere, {}},
  };
  OdDbLinePtr line = makeLine(OdGePoint3d(0.0, 0.0, 0.0), OdGePoint3d(4.0, 0.0, 0.0));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdGePoint3dArray snaps;
    ASSERT_EQ(eOk, line->getOsnapPoints(c.mode, 0, c.pick, c.last, OdGeMatrix3d::kIdentity, snaps));
    ASSERT_EQ(c.expected.size(), snaps.size());
    for (unsigned int i = 0; i < snaps.size(); ++i)
      expectPoint(c.expected[i], snaps[i]);
  }
}

TEST_F(LineTest, ExtentsAndExplode) {
  OdDbLinePtr line = makeLine(OdGePoint3d(3.0, -1.0, 2.0), OdGePoint3d(-1.0, 4.0, 0.0));
  OdGeExtents3d extents;
  ASSERT_EQ(eOk, line->getGeomExtents(extents));
  expectPoint(OdGePoint3d(-1.0, -1.0, 0.0), extents.minPoint());
  expectPoint(OdGePoint3d(3.0, 4.0, 2.0), extents.maxPoint());
  OdRxObjectPtrArray parts;
  EXPECT_EQ(eNotApplicable, line->explode(parts));
  EXPECT_TRUE(parts.isEmpty());
}

} // namespace
