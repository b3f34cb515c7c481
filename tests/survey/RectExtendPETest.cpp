// Filling the rectangles: a solid or a pattern hatch over the corners, free-standing, with the
// rectangle's database defaults.

#include "survey/RectExtensions.h"

#include "CmColor.h"
#include "DbDatabase.h"
#include "DbHatch.h"
#include "OdError.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

template <class Extension, class Rect, class OtherRect> struct FillOf {
  using ExtensionClass = Extension;
  using RectClass = Rect;
  using OtherRectClass = OtherRect;
};

template <class Fill> class RectFill : public testing::Test {
protected:
  using Rect = typename Fill::RectClass;

  void SetUp() override { db = OdDbDatabase::createObject(); }

  /// 10 long, 4 wide, turned a little so that the vertices are not just the diagonal's.
  OdSmartPtr<OdDbEntity> rectangle() {
    OdSmartPtr<Rect> rect = Rect::createObject();
    rect->setPts(OdGePoint3d(1, 2, 0), OdGePoint3d(11, 6, 0));
    rect->transformBy(OdGeMatrix3d::rotation(0.3, OdGeVector3d::kZAxis));
    rect->setDatabaseDefaults(db);
    return OdSmartPtr<OdDbEntity>(rect.get());
  }

  static void expectOutline(const OdDbHatch* hatch, const OdDbEntity* shape) {
    ASSERT_EQ(hatch->numLoops(), 1);
    OdInt32 type = 0;
    OdGePoint2dArray vertices;
    OdGeDoubleArray bulges;
    hatch->getLoopAt(0, type, vertices, bulges);
    EXPECT_EQ(type, OdDbHatch::kExternal | OdDbHatch::kPolyline);
    const OdGePoint3dArray corners = Rect::cast(shape)->getPts();
    ASSERT_EQ(vertices.size(), 4u);
    ASSERT_EQ(bulges.size(), 4u);
    for (unsigned i = 0; i < 4; ++i) {
      EXPECT_NEAR(vertices[i].x, corners[i].x, 1e-12);
      EXPECT_NEAR(vertices[i].y, corners[i].y, 1e-12);
      EXPECT_EQ(bulges[i], 0.0);
    }
  }

  OdDbDatabasePtr db;
  OdStaticRxObject<typename Fill::ExtensionClass> fill;
};

using Fills = testing::Types<FillOf<OdDbRectExtendPE, OdDbGeoRect, OdDbGeo3dRect>,
                             FillOf<OdDb3dRectExtendPE, OdDbGeo3dRect, OdDbGeoRect>>;
TYPED_TEST_SUITE(RectFill, Fills);

TEST(RectFillAttachment, OnlyTheFlatRectangleHasItsFillAttached) {
  OdRxObjectPtr flat = OdDbGeoRect::desc()->getX(ExtendPE::desc());
  ASSERT_FALSE(flat.isNull());
  EXPECT_NE(dynamic_cast<OdDbRectExtendPE*>(flat.get()), nullptr);
  EXPECT_TRUE(OdDbGeo3dRect::desc()->getX(ExtendPE::desc()).isNull());
}

TYPED_TEST(RectFill, SolidFillCoversTheCornersInTheGivenColour) {
  OdSmartPtr<OdDbEntity> shape = this->rectangle();
  OdCmColor colour;
  colour.setRGB(200, 30, 10);
  OdDbHatchPtr hatch = this->fill.FillColor(shape, colour);
  ASSERT_FALSE(hatch.isNull());
  this->expectOutline(hatch, shape);
  EXPECT_TRUE(hatch->isSolidFill());
  EXPECT_EQ(hatch->patternType(), OdDbHatch::kPreDefined);
  EXPECT_TRUE(hatch->patternName() == OdString(u"SOLID"));
  EXPECT_TRUE(hatch->associative());
  EXPECT_EQ(hatch->hatchStyle(), OdDbHatch::kNormal);
  EXPECT_EQ(hatch->hatchObjectType(), OdDbHatch::kHatchObject);
  EXPECT_EQ(hatch->color().color(), colour.color());
  // Free-standing, with the drawing's current layer.
  EXPECT_TRUE(hatch->objectId().isNull());
  EXPECT_EQ(hatch->database(), this->db.get());
  EXPECT_EQ(hatch->layerId(), this->db->getLayerZeroId());
}

TYPED_TEST(RectFill, PatternFillReportsHowManyPatternUnitsTheAreaHolds) {
  OdSmartPtr<OdDbEntity> shape = this->rectangle();
  struct Case {
    double scale;
    double unit;
    double expected;
  };
  const Case cases[] = {{1, 1, 40}, {2, 0.5, 40}, {2, 1, 10}, {0.5, 2, 40}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "scale " << c.scale << ", unit " << c.unit);
    double ratio = c.unit;
    OdDbHatchPtr hatch = this->fill.FillPattern(shape, OdString(u"AR-B816"), c.scale, 0.25, ratio);
    ASSERT_FALSE(hatch.isNull());
    EXPECT_NEAR(ratio, c.expected, 1e-9);
    this->expectOutline(hatch, shape);
    EXPECT_FALSE(hatch->isSolidFill());
    EXPECT_EQ(hatch->patternType(), OdDbHatch::kCustomDefined);
    EXPECT_TRUE(hatch->patternName() == OdString(u"AR-B816"));
    EXPECT_EQ(hatch->patternScale(), c.scale);
    EXPECT_EQ(hatch->patternAngle(), 0.25);
    EXPECT_TRUE(hatch->associative());
    EXPECT_EQ(hatch->hatchStyle(), OdDbHatch::kNormal);
    EXPECT_EQ(hatch->hatchObjectType(), OdDbHatch::kHatchObject);
  }
}

TYPED_TEST(RectFill, AZeroScaleSetsAnInfiniteRatioAndIsRefusedByTheHatch) {
  OdSmartPtr<OdDbEntity> shape = this->rectangle();
  double ratio = 1.0;
  try {
    this->fill.FillPattern(shape, OdString(u"ANSI31"), 0.0, 0.0, ratio);
    ADD_FAILURE() << "a zero scale was accepted";
  } catch (const OdError& error) {
    EXPECT_EQ(error.code(), eInvalidInput);
  }
  EXPECT_TRUE(std::isinf(ratio));
}

TYPED_TEST(RectFill, OnlyItsOwnClassIsFilled) {
  using Other = typename TypeParam::OtherRectClass;
  OdSmartPtr<Other> other = Other::createObject();
  other->setPts(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 1, 0));
  other->setDatabaseDefaults(this->db);
  const OdSmartPtr<OdDbEntity> shape(other.get());
  try {
    this->fill.FillColor(shape, OdCmColor());
    ADD_FAILURE() << "another class was filled";
  } catch (const OdError_NotThatKindOfClass& error) {
    EXPECT_EQ(error.objectClass(), Other::desc());
    EXPECT_EQ(error.wantedClass(), TestFixture::Rect::desc());
  }
  double ratio = 1.0;
  EXPECT_THROW(this->fill.FillPattern(shape, OdString(u"ANSI31"), 1.0, 0.0, ratio),
               OdError_NotThatKindOfClass);
  EXPECT_EQ(ratio, 1.0);
  EXPECT_TRUE(this->fill.FillColor(OdSmartPtr<OdDbEntity>(), OdCmColor()).isNull());
}

TYPED_TEST(RectFill, ARectangleOutsideADrawingHasNoDefaultsToGive) {
  OdSmartPtr<typename TestFixture::Rect> loose = TestFixture::Rect::createObject();
  loose->setPts(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 1, 0));
  try {
    this->fill.FillColor(OdSmartPtr<OdDbEntity>(loose.get()), OdCmColor());
    ADD_FAILURE() << "filled without a database";
  } catch (const OdError& error) {
    EXPECT_EQ(error.code(), eNotInDatabase);
  }
}

} // namespace
