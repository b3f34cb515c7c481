// The flat rectangle, and the behaviour it shares with the 3D rectangle: every shared test is
// typed and runs for both classes.

#include "survey/OdDbGeo3dRect.h"
#include "survey/OdDbGeoRect.h"

#include "DbBitStream.h"
#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbLine.h"
#include "DbPolyline.h"
#include "Gi/GiRecorder.h"
#include "OdError.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void expectPoint(const OdGePoint3d& actual, const OdGePoint3d& expected) {
  EXPECT_NEAR(actual.x, expected.x, 1e-9);
  EXPECT_NEAR(actual.y, expected.y, 1e-9);
  EXPECT_NEAR(actual.z, expected.z, 1e-9);
}

void expectCorners(const OdGePoint3dArray& actual, const OdGePoint3d (&expected)[4]) {
  ASSERT_EQ(actual.size(), 4u);
  for (int i = 0; i < 4; ++i) {
    SCOPED_TRACE(testing::Message() << "corner " << i);
    expectPoint(actual[i], expected[i]);
  }
}

/// The bits from `startBit` to the end of a stream, packed again from the first byte, in hex.
std::string hexOfBits(const OdUInt8Array& bytes, OdUInt64 bitSize, OdUInt64 startBit) {
  OdDbBitStream in;
  in.assign(bytes, bitSize);
  in.setPosition(startBit);
  OdDbBitStream out;
  bool bit = false;
  while (in.readBit(bit))
    out.writeBit(bit);
  std::string hex;
  char digits[3];
  for (OdUInt8 byte : out.bytes()) {
    std::snprintf(digits, sizeof digits, "%02x", byte);
    hex += digits;
  }
  return hex;
}

template <class Rect> class RectBody : public testing::Test {
protected:
  using Ptr = OdSmartPtr<Rect>;

  /// 10 long along X, 4 wide along Y, P0 at (1, 2).
  static Ptr axisAligned() {
    Ptr rect = Rect::createObject();
    rect->setPts(OdGePoint3d(1, 2, 0), OdGePoint3d(11, 6, 0));
    return rect;
  }

  /// Writes `rect` with a copy filer and returns the filer rewound for reading.
  static void writeTo(const Rect* rect, OdDbDwgStreamFiler& filer) {
    filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
    rect->dwgOutFields(&filer);
    filer.rewind();
  }

  static OdDbVoidPtrArray gripData(std::initializer_list<std::intptr_t> keys) {
    OdDbVoidPtrArray grips;
    for (std::intptr_t key : keys)
      grips.append(reinterpret_cast<void*>(key));
    return grips;
  }
};

using RectClasses = testing::Types<OdDbGeoRect, OdDbGeo3dRect>;
TYPED_TEST_SUITE(RectBody, RectClasses);

// ---------------------------------------------------------------------------------------------
// Identity and state

TEST(GeoRect, IsRegisteredUnderTheEntityClass) {
  ASSERT_NE(OdDbGeoRect::desc(), nullptr);
  EXPECT_EQ(OdDbGeoRect::desc()->myParent(), OdDbEntity::desc());
  EXPECT_TRUE(OdDbGeoRect::desc()->dxfName() == OdString(u"ODDBGEORECT"));
  OdDbGeoRectPtr rect = OdDbGeoRect::createObject();
  EXPECT_EQ(rect->isA(), OdDbGeoRect::desc());
  EXPECT_TRUE(rect->isKindOf(OdDbEntity::desc()));
  // The two rectangles share code but not identity.
  EXPECT_TRUE(OdDbGeo3dRect::cast(rect.get()).isNull());
  EXPECT_EQ(OdDbGeoRect::s_kCurrentVersionNumber, 1);
}

TYPED_TEST(RectBody, StartsAsAPointAtTheOrigin) {
  typename TestFixture::Ptr rect = TypeParam::createObject();
  expectCorners(rect->getPts(), {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  expectPoint(rect->getCenterPt(), OdGePoint3d::kOrigin);
  expectPoint(rect->getRotatePt(), OdGePoint3d::kOrigin);
  EXPECT_TRUE(rect->accumulatedTransform() == OdGeMatrix3d::kIdentity);
  EXPECT_EQ(rect->width(), 0.0);
  EXPECT_EQ(rect->height(), 0.0);
  EXPECT_EQ(rect->area(), 0.0);
}

TYPED_TEST(RectBody, TwoPointsGiveTheSameRectangleAsSetPts) {
  typename TestFixture::Ptr built(new TypeParam(OdGePoint3d(1, 2, 4), OdGePoint3d(5, 8, 10)));
  expectCorners(built->getPts(), {{1, 2, 4}, {5, 2, 0}, {5, 8, 10}, {1, 8, 0}});
  expectPoint(built->getCenterPt(), OdGePoint3d(3, 5, 7));
  expectPoint(built->getRotatePt(), OdGePoint3d(3, 55, 7));

  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  EXPECT_DOUBLE_EQ(rect->width(), 10);
  EXPECT_DOUBLE_EQ(rect->height(), 4);
  EXPECT_DOUBLE_EQ(rect->area(), 40);
  rect->setWidth(5);
  rect->setHeight(-2);
  expectCorners(rect->getPts(), {{1, 2, 0}, {6, 2, 0}, {6, 0, 0}, {1, 0, 0}});
  expectPoint(rect->getCenterPt(), OdGePoint3d(3.5, 1, 0));
}

TYPED_TEST(RectBody, FlatteningKeepsARectangleWhoseCentreIsAtZero) {
  typename TestFixture::Ptr rect = TypeParam::createObject();
  rect->setPts(OdGePoint3d(0, 0, 3), OdGePoint3d(4, 4, -3));
  rect->setZCoor2Zero();
  EXPECT_EQ(rect->getPts()[0].z, 3.0);
  rect->setPts(OdGePoint3d(0, 0, 3), OdGePoint3d(4, 4, 5));
  rect->setZCoor2Zero();
  for (const OdGePoint3d& corner : rect->getPts())
    EXPECT_EQ(corner.z, 0.0);
  EXPECT_EQ(rect->getRotatePt().z, 0.0);
}

// ---------------------------------------------------------------------------------------------
// Filing

TYPED_TEST(RectBody, FilingRoundTripKeepsCornersCentreAndRotationHandle) {
  typename TestFixture::Ptr rect = TypeParam::createObject();
  rect->setPts(OdGePoint3d(-1.5, 2.25, 3), OdGePoint3d(7, 9.5, 1));
  rect->moveGripPointsAt(TestFixture::gripData({2}), OdGeVector3d(0.5, 0.25, 0), 0);
  rect->setColorIndex(5);
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  TestFixture::writeTo(rect, filer);

  typename TestFixture::Ptr copy = TypeParam::createObject();
  ASSERT_EQ(copy->dwgInFields(&filer), eOk);
  ASSERT_EQ(copy->getPts().size(), 4u);
  for (unsigned i = 0; i < 4; ++i)
    EXPECT_TRUE(copy->getPts()[i] == rect->getPts()[i]) << "corner " << i;
  EXPECT_TRUE(copy->getCenterPt() == rect->getCenterPt());
  EXPECT_TRUE(copy->getRotatePt() == rect->getRotatePt());
  EXPECT_EQ(copy->colorIndex(), 5);
}

// P0 (0,0,0), P1 (2,0,0), P2 (2,2,0), P3 (0,2,0), centre (1,1,0), rotation handle (1,51,0),
// after the entity's data: BS 1 as "01 00000001"; each coordinate a BD, "10" for 0, "01" for
// 1, "00" and the raw little-endian double for 2 (0x4000000000000000) and 51
// (0x4049800000000000). Checked bit by bit against that description.
const char* const kReferenceRecord =
    "406a0000000000000010280000000000000040000000000000001028000000000000004096400000000008049408";

TYPED_TEST(RectBody, WritesTheReferenceRecordAfterTheEntityData) {
  typename TestFixture::Ptr rect = TypeParam::createObject();
  rect->setPts(OdGePoint3d(0, 0, 0), OdGePoint3d(2, 2, 0));
  OdStaticRxObject<OdDbDwgStreamFiler> base, full;
  base.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  rect->OdDbEntity::dwgOutFields(&base);
  full.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  rect->dwgOutFields(&full);
  EXPECT_EQ(full.dataBitSize() - base.dataBitSize(), 366u);
  EXPECT_EQ(hexOfBits(full.dataBuffer(), full.dataBitSize(), base.dataBitSize()), kReferenceRecord);
  // The strings and handles are the entity's alone.
  EXPECT_EQ(full.stringBitSize(), base.stringBitSize());
  EXPECT_EQ(full.handleBitSize(), base.handleBitSize());
}

TYPED_TEST(RectBody, OnlyNewerVersionsAreRefused) {
  struct Case {
    OdInt16 version;
    int expected;
  };
  // Old and even negative versions are read as the current one.
  const Case cases[] = {{1, eOk}, {0, eOk}, {-1, eOk}, {2, 1}, {32767, 1}};
  typename TestFixture::Ptr source = TestFixture::axisAligned();
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "version " << c.version);
    OdStaticRxObject<OdDbDwgStreamFiler> filer;
    filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
    source->OdDbEntity::dwgOutFields(&filer);
    filer.wrInt16(c.version);
    for (const OdGePoint3d& corner : source->getPts())
      filer.wrPoint3d(corner);
    filer.wrPoint3d(source->getCenterPt());
    filer.wrPoint3d(source->getRotatePt());
    filer.rewind();

    typename TestFixture::Ptr target = TypeParam::createObject();
    target->setPts(OdGePoint3d(5, 5, 0), OdGePoint3d(6, 6, 0));
    EXPECT_EQ(static_cast<int>(target->dwgInFields(&filer)), c.expected);
    if (c.expected == eOk) {
      EXPECT_TRUE(target->getPts()[2] == OdGePoint3d(11, 6, 0));
    } else {
      // Refused after the version: the rectangle's own fields are not touched.
      EXPECT_TRUE(target->getPts()[2] == OdGePoint3d(6, 6, 0));
    }
  }
}

TYPED_TEST(RectBody, StreamCutShortAtAnyByteFailsAndLeavesTheRectangleUsable) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  rect->setDatabaseDefaults(db);
  OdStaticRxObject<OdDbDwgStreamFiler> writer;
  writer.openForWrite(db, OdDbFiler::kFileFiler);
  rect->dwgOutFields(&writer);
  for (OdUInt64 cut = 0; cut < writer.dataBitSize(); cut += 8) {
    OdStaticRxObject<OdDbDwgStreamFiler> reader;
    reader.openForRead(writer.dataBuffer(), cut, writer.stringBuffer(), writer.stringBitSize(),
                       writer.handleBuffer(), writer.handleBitSize(), db);
    typename TestFixture::Ptr target = TypeParam::createObject();
    target->setPts(OdGePoint3d(5, 5, 0), OdGePoint3d(6, 7, 0));
    EXPECT_NE(target->dwgInFields(&reader), eOk) << "cut at bit " << cut;
    // The geometry is the old one, whole, and the rectangle still works.
    EXPECT_TRUE(target->getPts()[2] == OdGePoint3d(6, 7, 0)) << "cut at bit " << cut;
    EXPECT_DOUBLE_EQ(target->area(), 2.0);
    OdStaticRxObject<OdDbDwgStreamFiler> again;
    again.openForWrite(db);
    target->dwgOutFields(&again);
    EXPECT_GT(again.dataBitSize(), 0u);
  }
}

TYPED_TEST(RectBody, DxfInputIsRefusedWithoutReading) {
  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  // A null filer proves that nothing is read, not even the entity's data.
  EXPECT_EQ(static_cast<int>(rect->dxfInFields(nullptr)), 1);
  EXPECT_DOUBLE_EQ(rect->area(), 40);
}

// ---------------------------------------------------------------------------------------------
// Editing

TYPED_TEST(RectBody, TransformMovesTheCornersButNotTheRotationHandle) {
  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  const OdGeMatrix3d first = OdGeMatrix3d::rotation(OdaPI2, OdGeVector3d::kZAxis);
  const OdGeMatrix3d second = OdGeMatrix3d::translation(OdGeVector3d(0, 0, 2));
  EXPECT_EQ(rect->transformBy(first), eOk);
  EXPECT_EQ(rect->transformBy(second), eOk);
  expectCorners(rect->getPts(), {{-2, 1, 2}, {-2, 11, 2}, {-6, 11, 2}, {-6, 1, 2}});
  expectPoint(rect->getCenterPt(), OdGePoint3d(-4, 6, 2));
  EXPECT_TRUE(rect->accumulatedTransform() == first * second);
  expectPoint(rect->getRotatePt(), OdGePoint3d(6, 54, 0));

  // The old rotation handle is what the file gets.
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  TestFixture::writeTo(rect, filer);
  typename TestFixture::Ptr copy = TypeParam::createObject();
  ASSERT_EQ(copy->dwgInFields(&filer), eOk);
  expectPoint(copy->getRotatePt(), OdGePoint3d(6, 54, 0));
  EXPECT_TRUE(copy->accumulatedTransform() == OdGeMatrix3d::kIdentity);
}

TYPED_TEST(RectBody, GripsAreTheCornersThenTheCentreTaggedByIndex) {
  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  OdDbGripDataPtrArray grips;
  grips.append(std::make_shared<OdDbGripData>());
  ASSERT_EQ(rect->getGripPoints(grips, 1.0, 3, OdGeVector3d::kZAxis, 0), eOk);
  ASSERT_EQ(grips.size(), 6u);
  const OdGePoint3d expected[5] = {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}, {6, 4, 0}};
  for (unsigned i = 0; i < 5; ++i) {
    SCOPED_TRACE(testing::Message() << "grip " << i);
    const OdDbGripDataPtr& grip = grips[i + 1];
    expectPoint(grip->gripPoint(), expected[i]);
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(grip->appData()), static_cast<std::intptr_t>(i));
    EXPECT_EQ(grip->worldDraw(), nullptr);
    EXPECT_EQ(grip->hotGripFunc(), nullptr);
  }
}

TYPED_TEST(RectBody, MovingGripsFollowsTheirTagsInOrder) {
  struct Case {
    const char* name;
    std::initializer_list<std::intptr_t> grips;
    OdGePoint3d expected[4];
  };
  const Case cases[] = {
      // Corner P0 by (1,-1): P2 stays, P1 follows in y, P3 in x.
      {"corner 0", {0}, {{2, 1, 0}, {11, 1, 0}, {11, 6, 0}, {2, 6, 0}}},
      {"centre", {4}, {{2, 1, 0}, {12, 1, 0}, {12, 5, 0}, {2, 5, 0}}},
      {"unknown", {9}, {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}}},
      // Each grip moves by the full offset in turn: the centre, then corner P2 again.
      {"centre then corner 2", {4, 2}, {{2, 1, 0}, {13, 1, 0}, {13, 4, 0}, {2, 4, 0}}},
      {"none", {}, {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    typename TestFixture::Ptr rect = TestFixture::axisAligned();
    EXPECT_EQ(rect->moveGripPointsAt(TestFixture::gripData(c.grips), OdGeVector3d(1, -1, 0), 0),
              eOk);
    expectCorners(rect->getPts(), c.expected);
  }
}

TYPED_TEST(RectBody, StretchPointsAreTheCornersAndAnEdgeSlidesAcrossItself) {
  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  OdGePoint3dArray points;
  points.append(OdGePoint3d(9, 9, 9));
  ASSERT_EQ(rect->getStretchPoints(points), eOk);
  ASSERT_EQ(points.size(), 5u);
  expectPoint(points[1], OdGePoint3d(1, 2, 0));
  expectPoint(points[4], OdGePoint3d(1, 6, 0));

  EXPECT_EQ(rect->moveStretchPointsAt(OdIntArray{3, 2}, OdGeVector3d(5, 1, 0)), eOk);
  expectCorners(rect->getPts(), {{1, 2, 0}, {11, 2, 0}, {11, 7, 0}, {1, 7, 0}});
  expectPoint(rect->getCenterPt(), OdGePoint3d(6, 4.5, 0));
  EXPECT_EQ(rect->moveStretchPointsAt(OdIntArray{0, 1, 2}, OdGeVector3d(1, 1, 0)), eOk);
  expectCorners(rect->getPts(), {{2, 3, 0}, {12, 3, 0}, {12, 8, 0}, {2, 8, 0}});
}

TYPED_TEST(RectBody, ExplodesIntoFourLinesWithItsProperties) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  typename TestFixture::Ptr rect = TypeParam::createObject();
  rect->setPts(OdGePoint3d(1, 2, 3), OdGePoint3d(11, 6, 3));
  rect->setDatabaseDefaults(db);
  rect->setColorIndex(4);
  rect->setLinetypeScale(2.5);
  rect->setLineWeight(OdDb::kLnWt050);
  OdRxObjectPtrArray pieces;
  ASSERT_EQ(rect->explode(pieces), eOk);
  ASSERT_EQ(pieces.size(), 4u);
  const OdGePoint3dArray corners = rect->getPts();
  for (unsigned i = 0; i < 4; ++i) {
    SCOPED_TRACE(testing::Message() << "line " << i);
    OdDbLinePtr line = OdDbLine::cast(pieces[i].get());
    ASSERT_FALSE(line.isNull());
    EXPECT_TRUE(line->startPoint() == corners[i]);
    EXPECT_TRUE(line->endPoint() == corners[(i + 1) % 4]);
    EXPECT_EQ(line->colorIndex(), 4);
    EXPECT_EQ(line->linetypeScale(), 2.5);
    EXPECT_EQ(line->lineWeight(), OdDb::kLnWt050);
    EXPECT_EQ(line->layerId(), db->getLayerZeroId());
  }
}

TYPED_TEST(RectBody, ExplodeWithoutTheLineClassThrowsTheFixedText) {
  // Unregistering a platform class would disturb every later test, so it happens in a child
  // process: exit code 0 when the error and its text are as expected.
  GTEST_FLAG_SET(death_test_style, "fast");
  EXPECT_EXIT(
      {
        typename TestFixture::Ptr rect = TestFixture::axisAligned();
        OdDbLine::rxUninit();
        int code = 3;
        try {
          OdRxObjectPtrArray pieces;
          rect->explode(pieces);
        } catch (const OdError& error) {
          code = error.description() == OdString(u"OdDbOdDbLineis not loaded") ? 0 : 2;
        }
        std::_Exit(code);
      },
      testing::ExitedWithCode(0), "");
}

TYPED_TEST(RectBody, SnapsComeFromTheEdgesWithTheCentreFirst) {
  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  const OdGePoint3d pick(0, 0, 0), last(3, 0, 0);
  OdGePoint3dArray centre;
  centre.append(OdGePoint3d(9, 9, 9));
  ASSERT_EQ(rect->getOsnapPoints(OdDb::kOsModeCen, 0, pick, last, OdGeMatrix3d::kIdentity, centre),
            eOk);
  ASSERT_EQ(centre.size(), 2u);
  expectPoint(centre[1], OdGePoint3d(6, 4, 0));

  OdGePoint3dArray mids;
  ASSERT_EQ(rect->getOsnapPoints(OdDb::kOsModeMid, 0, pick, last, OdGeMatrix3d::kIdentity, mids),
            eOk);
  ASSERT_EQ(mids.size(), 4u);
  expectPoint(mids[0], OdGePoint3d(6, 2, 0));
  expectPoint(mids[1], OdGePoint3d(11, 4, 0));
  expectPoint(mids[2], OdGePoint3d(6, 6, 0));
  expectPoint(mids[3], OdGePoint3d(1, 4, 0));

  OdGePoint3dArray ends;
  ASSERT_EQ(rect->getOsnapPoints(OdDb::kOsModeEnd, 0, pick, last, OdGeMatrix3d::kIdentity, ends),
            eOk);
  EXPECT_EQ(ends.size(), 8u);
}

TYPED_TEST(RectBody, IntersectionsAreThoseOfTheEdges) {
  typename TestFixture::Ptr rect = TestFixture::axisAligned();
  OdDbLinePtr line = OdDbLine::createObject();
  line->setStartPoint(OdGePoint3d(0, 3, 0));
  line->setEndPoint(OdGePoint3d(20, 3, 0));
  OdGePoint3dArray points;
  const OdResult result = rect->intersectWith(line, OdDb::kOnBothOperands, points);
  if (result == eNotImplemented)
    GTEST_SKIP() << "the platform's line does not intersect yet";
  ASSERT_EQ(result, eOk);
  ASSERT_EQ(points.size(), 2u);
  expectPoint(points[0], OdGePoint3d(11, 3, 0));
  expectPoint(points[1], OdGePoint3d(1, 3, 0));
  EXPECT_EQ(rect->intersectWith(nullptr, OdDb::kOnBothOperands, points), eInvalidInput);
}

// ---------------------------------------------------------------------------------------------
// Drawing

TEST(GeoRect, DrawsAClosedPolylineAtElevationZero) {
  OdDbGeoRectPtr rect = OdDbGeoRect::createObject();
  rect->setPts(OdGePoint3d(1, 2, 5), OdGePoint3d(11, 6, 7));
  OdGiRecorder recorder;
  EXPECT_TRUE(rect->worldDraw(&recorder));
  ASSERT_EQ(recorder.records().size(), 1u);
  const OdGiRecord& outline = recorder.records()[0];
  EXPECT_EQ(outline.kind, OdGiRecord::kPolyline);
  const OdGePoint3d expected[5] = {{1, 2, 0}, {11, 2, 0}, {11, 6, 0}, {1, 6, 0}, {1, 2, 0}};
  ASSERT_EQ(outline.points.size(), 5u);
  for (int i = 0; i < 5; ++i)
    expectPoint(outline.points[i], expected[i]);
}

TEST(GeoRect, DrawsNothingWithoutThePolylineClass) {
  GTEST_FLAG_SET(death_test_style, "fast");
  EXPECT_EXIT(
      {
        OdDbGeoRectPtr rect = OdDbGeoRect::createObject();
        rect->setPts(OdGePoint3d(1, 2, 0), OdGePoint3d(11, 6, 0));
        OdDbPolyline::rxUninit();
        OdGiRecorder recorder;
        const bool drawn = rect->worldDraw(&recorder);
        std::_Exit(drawn && recorder.records().empty() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

} // namespace
