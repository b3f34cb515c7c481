#include "DbPoint.h"

#include "DbDwgStreamFiler.h"
#include "Gi/GiRecorder.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

typedef OdStaticRxObject<OdDbDwgStreamFiler> Filer;

constexpr double kDegree = OdaPI / 180.0;

class PointTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { odInitialize(); }
  static void TearDownTestSuite() { odUninitialize(); }

  static OdDbPointPtr makePoint(const OdGePoint3d& position) {
    OdDbPointPtr point = OdDbPoint::createObject();
    point->setPosition(position);
    return point;
  }
};

void expectPoint(const OdGePoint3d& expected, const OdGePoint3d& actual, double tol = 1e-9) {
  EXPECT_NEAR(expected.x, actual.x, tol);
  EXPECT_NEAR(expected.y, actual.y, tol);
  EXPECT_NEAR(expected.z, actual.z, tol);
}

TEST_F(PointTest, RegisteredUnderEntityWithDxfName) {
  OdRxClass* cls = odrxGetClass(OD_T("OdDbPoint"));
  ASSERT_NE(nullptr, cls);
  EXPECT_EQ(OdDbEntity::desc(), cls->myParent());
  EXPECT_EQ(OdString(OD_T("POINT")), cls->dxfName());
}

TEST_F(PointTest, DefaultState) {
  OdDbPointPtr point = OdDbPoint::createObject();
  EXPECT_EQ(OdGePoint3d::kOrigin, point->position());
  EXPECT_EQ(0.0, point->thickness());
  EXPECT_EQ(OdGeVector3d::kZAxis, point->normal());
  EXPECT_EQ(0.0, point->ecsRotation());
  EXPECT_THROW(point->setNormal(OdGeVector3d()), OdError);
}

TEST_F(PointTest, DwgRoundTripKeepsEveryField) {
  OdDbPointPtr point = makePoint(OdGePoint3d(-3.5, 2.0, 11.0));
  point->setThickness(-1.25);
  point->setNormal(OdGeVector3d(1.0, 0.0, 0.0));
  point->setEcsRotation(0.75);
  Filer filer;
  filer.openForWrite();
  point->dwgOutFields(&filer);
  filer.rewind();
  OdDbPointPtr copy = OdDbPoint::createObject();
  ASSERT_EQ(eOk, copy->dwgInFields(&filer));
  EXPECT_EQ(point->position(), copy->position());
  EXPECT_EQ(-1.25, copy->thickness());
  EXPECT_EQ(OdGeVector3d::kXAxis, copy->normal());
  EXPECT_EQ(0.75, copy->ecsRotation());
  EXPECT_EQ(0u, filer.remainingDataBits());
}

TEST_F(PointTest, ShortStreamFailsCleanlyAtEveryBit) {
  OdDbPointPtr point = makePoint(OdGePoint3d(1.0, 2.0, 3.0));
  point->setEcsRotation(0.5);
  Filer written;
  written.openForWrite();
  point->dwgOutFields(&written);
  for (OdUInt64 bits = 0; bits < written.dataBitSize(); ++bits) {
    Filer reader;
    reader.openForRead(written.dataBuffer(), bits, written.stringBuffer(), written.stringBitSize(),
                       written.handleBuffer(), written.handleBitSize());
    OdDbPointPtr fresh = OdDbPoint::createObject();
    EXPECT_NE(eOk, fresh->dwgInFields(&reader)) << "cut at bit " << bits;
    EXPECT_EQ(OdGePoint3d::kOrigin, fresh->position()) << "cut at bit " << bits;
  }
}

TEST_F(PointTest, TransformCarriesTheOwnXAxis) {
  struct Case {
    const char* name;
    OdGeMatrix3d xform;
    double rotation;
    OdGePoint3d position;
    OdGeVector3d normal;
    double ecsRotation;
  };
  const Case cases[] = {
      {"rotation about z", OdGeMatrix3d::rotation(30.0 * kDegree, OdGeVector3d::kZAxis),
       10.0 * kDegree, OdGePoint3d(std::cos(30.0 * kDegree), std::sin(30.0 * kDegree), 0.0),
       OdGeVector3d::kZAxis, 40.0 * kDegree},
      {"mirror in the yz plane",
       OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kXAxis), 10.0 * kDegree,
       OdGePoint3d(-1.0, 0.0, 0.0), OdGeVector3d::kZAxis, 170.0 * kDegree},
      {"rotation about x", OdGeMatrix3d::rotation(OdaPI2, OdGeVector3d::kXAxis), OdaPI2,
       OdGePoint3d(1.0, 0.0, 0.0), OdGeVector3d(0.0, -1.0, 0.0), OdaPI2},
      {"translation", OdGeMatrix3d::translation(OdGeVector3d(0.0, 2.0, 5.0)), 1.0,
       OdGePoint3d(1.0, 2.0, 5.0), OdGeVector3d::kZAxis, 1.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbPointPtr point = makePoint(OdGePoint3d(1.0, 0.0, 0.0));
    point->setEcsRotation(c.rotation);
    ASSERT_EQ(eOk, point->transformBy(c.xform));
    expectPoint(c.position, point->position());
    EXPECT_TRUE(c.normal.isEqualTo(point->normal(), OdGeTol(1e-9)));
    EXPECT_NEAR(c.ecsRotation, point->ecsRotation(), 1e-9);
  }
}

TEST_F(PointTest, ThicknessScalesWithTheMatrix) {
  OdDbPointPtr point = makePoint(OdGePoint3d(1.0, 1.0, 0.0));
  point->setThickness(2.0);
  ASSERT_EQ(eOk, point->transformBy(OdGeMatrix3d::scaling(1.5)));
  EXPECT_DOUBLE_EQ(3.0, point->thickness());
  expectPoint(OdGePoint3d(1.5, 1.5, 0.0), point->position());
}

TEST_F(PointTest, OneGripAtThePosition) {
  OdDbPointPtr point = makePoint(OdGePoint3d(2.0, 3.0, 4.0));
  OdGePoint3dArray grips;
  ASSERT_EQ(eOk, point->getGripPoints(grips));
  ASSERT_EQ(1u, grips.size());
  expectPoint(OdGePoint3d(2.0, 3.0, 4.0), grips[0]);
  ASSERT_EQ(eOk, point->moveGripPointsAt(OdIntArray{0}, OdGeVector3d(1.0, -1.0, 0.0)));
  expectPoint(OdGePoint3d(3.0, 2.0, 4.0), point->position());
  EXPECT_EQ(eInvalidIndex, point->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(1.0, 0, 0)));
  expectPoint(OdGePoint3d(3.0, 2.0, 4.0), point->position());
  // Stretching goes through the grips by default.
  ASSERT_EQ(eOk, point->moveStretchPointsAt(OdIntArray{0}, OdGeVector3d(0.0, 0.0, 1.0)));
  expectPoint(OdGePoint3d(3.0, 2.0, 5.0), point->position());
}

TEST_F(PointTest, SnapsToNodeOnly) {
  OdDbPointPtr point = makePoint(OdGePoint3d(2.0, 3.0, 0.0));
  const OdDb::OsnapMode modes[] = {OdDb::kOsModeNode, OdDb::kOsModeEnd, OdDb::kOsModeNear};
  for (OdDb::OsnapMode mode : modes) {
    OdGePoint3dArray snaps;
    ASSERT_EQ(eOk, point->getOsnapPoints(mode, 0, OdGePoint3d(2.1, 3.0, 0.0), OdGePoint3d(),
                                         OdGeMatrix3d::kIdentity, snaps));
    if (mode == OdDb::kOsModeNode) {
      ASSERT_EQ(1u, snaps.size());
      expectPoint(OdGePoint3d(2.0, 3.0, 0.0), snaps[0]);
    } else {
      EXPECT_TRUE(snaps.isEmpty()) << "mode " << mode;
    }
  }
}

TEST_F(PointTest, DrawsADotOrItsExtrusion) {
  OdDbPointPtr point = makePoint(OdGePoint3d(2.0, 3.0, 4.0));
  OdGiRecorder recorder;
  EXPECT_TRUE(point->worldDraw(&recorder));
  ASSERT_EQ(1u, recorder.records().size());
  ASSERT_EQ(2u, recorder.records()[0].points.size());
  expectPoint(OdGePoint3d(2.0, 3.0, 4.0), recorder.records()[0].points[0]);
  expectPoint(OdGePoint3d(2.0, 3.0, 4.0), recorder.records()[0].points[1]);

  point->setThickness(2.0);
  point->setNormal(OdGeVector3d::kXAxis);
  recorder.clear();
  point->worldDraw(&recorder);
  ASSERT_EQ(1u, recorder.records().size());
  expectPoint(OdGePoint3d(4.0, 3.0, 4.0), recorder.records()[0].points[1]);
  OdGeExtents3d extents;
  ASSERT_EQ(eOk, point->getGeomExtents(extents));
  expectPoint(OdGePoint3d(2.0, 3.0, 4.0), extents.minPoint());
  expectPoint(OdGePoint3d(4.0, 3.0, 4.0), extents.maxPoint());
}

} // namespace
