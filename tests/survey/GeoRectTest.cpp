// The flat and the 3D rectangle: what they share is typed and runs for both classes, where they
// differ (drawing) is tested side by side. The corner maths itself is tested in
// GeoRectGeometryTest.cpp, and what every class must do once by the class contract suite
// (tests/contract).

#include "survey/OdDbGeo3dRect.h"
#include "survey/OdDbGeoRect.h"

#include "DbPoint.h"
#include "DbPolyline.h"
#include "OdError.h"

#include "common/EntityTestSupport.h"

#include <cstdint>
#include <cstdlib>

namespace {

using enttest::expectPoints;
using enttest::samePoint;

template <class Rect> class RectBody : public testing::Test {
protected:
  using Ptr = OdSmartPtr<Rect>;

  /// 10 long along X, 4 wide along Y, P0 at (1, 2).
  static Ptr axisAligned() {
    Ptr rect = Rect::createObject();
    rect->setPts(OdGePoint3d(1, 2, 0), OdGePoint3d(11, 6, 0));
    return rect;
  }
};

using RectClasses = testing::Types<OdDbGeoRect, OdDbGeo3dRect>;
TYPED_TEST_SUITE(RectBody, RectClasses);

// P0 (0,0,0), P1 (2,0,0), P2 (2,2,0), P3 (0,2,0), centre (1,1,0), rotation handle (1,51,0),
// after the entity's data: BS 1 as "01 00000001"; each coordinate a BD, "10" for 0, "01" for
// 1, "00" and the raw little-endian double for 2 (0x4000000000000000) and 51
// (0x4049800000000000). Checked bit by bit against that description.
const char* const kReferenceRecord =
    "406a0000000000000010280000000000000040000000000000001028000000000000004096400000000008049408";

TYPED_TEST(RectBody, WritesTheReferenceRecordAfterTheEntityDataAndReadsOlderVersionsAsIt) {
  typename TestFixture::Ptr rect = TypeParam::createObject();
  rect->setPts(OdGePoint3d(0, 0, 0), OdGePoint3d(2, 2, 0));
  // No strings of its own.
  EXPECT_EQ(enttest::ownRecord(rect), std::string(kReferenceRecord) + "|");

  // Older and negative versions are read as the current one.
  typename TestFixture::Ptr source = TestFixture::axisAligned();
  for (OdInt16 version : {-1, 0, 1}) {
    SCOPED_TRACE(version);
    enttest::Filer filer;
    filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
    source->OdDbEntity::dwgOutFields(&filer);
    filer.wrInt16(version);
    for (const OdGePoint3d& corner : source->getPts())
      filer.wrPoint3d(corner);
    filer.wrPoint3d(source->getCenterPt());
    filer.wrPoint3d(source->getRotatePt());
    filer.rewind();
    typename TestFixture::Ptr target = TypeParam::createObject();
    target->setPts(OdGePoint3d(5, 5, 0), OdGePoint3d(6, 6, 0));
    ASSERT_EQ(target->dwgInFields(&filer), eOk);
    EXPECT_TRUE(target->getPts()[2] == OdGePoint3d(11, 6, 0));
    EXPECT_TRUE(target->getRotatePt() == source->getRotatePt());
  }
}

TYPED_TEST(RectBody, TransformMovesTheCornersButNotTheRotationHandle) {
  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  const OdGeMatrix3d first = OdGeMatrix3d::rotation(OdaPI2, OdGeVector3d::kZAxis);
  const OdGeMatrix3d second = OdGeMatrix3d::translation(OdGeVector3d(0, 0, 2));
  EXPECT_EQ(rect->transformBy(first), eOk);
  EXPECT_EQ(rect->transformBy(second), eOk);
  expectPoints(rect->getPts(), {{-2, 1, 2}, {-2, 11, 2}, {-6, 11, 2}, {-6, 1, 2}});
  EXPECT_TRUE(samePoint(rect->getCenterPt(), OdGePoint3d(-4, 6, 2)));
  EXPECT_TRUE(rect->accumulatedTransform() == first * second);

  // The old rotation handle is what the file gets; the transform is not filed.
  typename TestFixture::Ptr copy = TypeParam::createObject();
  ASSERT_EQ(enttest::copyThroughDwg(rect, copy), eOk);
  EXPECT_TRUE(samePoint(copy->getRotatePt(), OdGePoint3d(6, 54, 0)));
  EXPECT_TRUE(copy->accumulatedTransform() == OdGeMatrix3d::kIdentity);
}

TYPED_TEST(RectBody, GripsAreTheCornersThenTheCentreAndStretchPointsTheCorners) {
  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  const OdDbGripDataPtrArray grips = enttest::gripsOf(rect);
  ASSERT_EQ(grips.size(), 5u);
  const OdGePoint3d expected[5] = {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}, {6, 4, 0}};
  for (unsigned i = 0; i < 5; ++i) {
    EXPECT_TRUE(samePoint(grips[i]->gripPoint(), expected[i])) << i;
    EXPECT_EQ(enttest::gripIndex(grips[i]), static_cast<OdIntPtr>(i));
  }
  OdGePoint3dArray points;
  ASSERT_EQ(rect->getStretchPoints(points), eOk);
  expectPoints(points, {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}});

  // Grips move by tag in turn, each by the full offset: the centre, then corner P2 again.
  EXPECT_EQ(enttest::moveGrips(rect, {4, 2}, OdGeVector3d(1, -1, 0)), eOk);
  expectPoints(rect->getPts(), {{2, 1, 0}, {13, 1, 0}, {13, 4, 0}, {2, 4, 0}});
  // Stretching both ends of an edge slides it across itself (the rules are GeoRectGeometry's).
  EXPECT_EQ(rect->moveStretchPointsAt(OdIntArray{3, 2}, OdGeVector3d(5, 1, 0)), eOk);
  expectPoints(rect->getPts(), {{2, 1, 0}, {13, 1, 0}, {13, 5, 0}, {2, 5, 0}});
  EXPECT_TRUE(samePoint(rect->getCenterPt(), OdGePoint3d(7.5, 3, 0)));
}

TYPED_TEST(RectBody, ExplodeSnapsAndIntersectionsComeFromTheEdgesWithTheCentreFirst) {
  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  OdRxObjectPtrArray pieces;
  ASSERT_EQ(rect->explode(pieces), eOk);
  EXPECT_EQ(pieces.size(), 4u);
  const OdGePoint3dArray c = rect->getPts();
  enttest::expectLines(pieces, {{c[0], c[1]}, {c[1], c[2]}, {c[2], c[3]}, {c[3], c[0]}});
  expectPoints(enttest::snapsOf(rect, OdDb::kOsModeCen), {{6, 4, 0}});
  expectPoints(enttest::snapsOf(rect, OdDb::kOsModeMid),
               {{6, 2, 0}, {11, 4, 0}, {6, 6, 0}, {1, 4, 0}});
  EXPECT_EQ(enttest::snapsOf(rect, OdDb::kOsModeEnd).size(), 8u);

  OdDbLinePtr line = OdDbLine::createObject();
  line->setStartPoint(OdGePoint3d(0, 3, 0));
  line->setEndPoint(OdGePoint3d(20, 3, 0));
  OdGePoint3dArray points;
  ASSERT_EQ(rect->intersectWith(line, OdDb::kOnBothOperands, points), eOk);
  expectPoints(points, {{11, 3, 0}, {1, 3, 0}});
  EXPECT_EQ(rect->intersectWith(nullptr, OdDb::kOnBothOperands, points), eInvalidInput);
  // What its edges cannot meet, the rectangle answers as they do.
  EXPECT_EQ(rect->intersectWith(OdDbPoint::createObject(), OdDb::kOnBothOperands, points),
            eNotApplicable);
}

TEST(GeoRect, FlatOneDrawsAClosedPolylineAtZeroThe3dOneFourEdgesAtTheCornersHeights) {
  OdDbGeoRectPtr flat = OdDbGeoRect::createObject();
  flat->setPts(OdGePoint3d(1, 2, 5), OdGePoint3d(11, 6, 7));
  std::vector<OdGiRecord> records = enttest::drawn(flat);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].kind, OdGiRecord::kPolyline);
  expectPoints(records[0].points, {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}, {1, 2, 0}});

  // Registered beside the flat rectangle, not under it: drawings carry that parent.
  OdDbGeo3dRectPtr tilted = OdDbGeo3dRect::createObject();
  EXPECT_FALSE(tilted->isKindOf(OdDbGeoRect::desc()));
  tilted->setPts(OdGePoint3d(0, 0, 1), OdGePoint3d(4, 2, 3));
  enttest::moveGrips(tilted, {4}, OdGeVector3d(0, 0, 2)); // P1 and P3 raised to z 2
  const OdGePoint3dArray corners = tilted->getPts();
  ASSERT_EQ(corners[1].z, 2.0);
  records = enttest::drawn(tilted);
  ASSERT_EQ(records.size(), 4u);
  for (unsigned i = 0; i < 4; ++i) {
    EXPECT_EQ(records[i].kind, OdGiRecord::kPolyline);
    expectPoints(records[i].points, {corners[i], corners[(i + 1) % 4]});
  }
}

TEST(GeoRect, WithoutTheStandardClassesNothingIsDrawnAndExplodeThrowsTheFixedText) {
  // Unregistering platform classes would disturb every later test, so it happens in a child
  // process: exit code 0 when everything is as expected.
  GTEST_FLAG_SET(death_test_style, "fast");
  EXPECT_EXIT(
      {
        OdDbGeoRectPtr flat = OdDbGeoRect::createObject();
        OdDbGeo3dRectPtr tilted = OdDbGeo3dRect::createObject();
        OdDbPolyline::rxUninit();
        OdGiRecorder recorder;
        bool ok = flat->worldDraw(&recorder) && recorder.records().empty();
        OdDbLine::rxUninit();
        ok = ok && tilted->worldDraw(&recorder) && recorder.records().empty();
        for (OdDbEntity* rect :
             {static_cast<OdDbEntity*>(flat), static_cast<OdDbEntity*>(tilted)}) {
          try {
            OdRxObjectPtrArray pieces;
            rect->explode(pieces);
            ok = false;
          } catch (const OdError& error) {
            ok = ok && error.code() == eExtendedError &&
                 error.description() == OdString(u"OdDbOdDbLineis not loaded");
          }
        }
        std::_Exit(ok ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

} // namespace
