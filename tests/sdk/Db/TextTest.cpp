#include "DbText.h"

#include "Gi/GiRecorder.h"
#include "sdk/SdkTestSupport.h"

namespace {

/// "abcd" at height 2: four narrow characters of 0.6 x 2.
const double kAbcdWidth = 4 * 0.6 * 2.0;

OdDbTextPtr makeText(const OdString& string, OdDb::TextHorzMode horizontal,
                     OdDb::TextVertMode vertical, const OdGePoint3d& position,
                     const OdGePoint3d& alignmentPoint) {
  OdDbTextPtr text = OdDbText::createObject();
  text->setTextString(string);
  text->setHeight(2.0);
  text->setPosition(position);
  text->setHorizontalMode(horizontal);
  text->setVerticalMode(vertical);
  text->setAlignmentPoint(alignmentPoint);
  return text;
}

/// The text as drawn: exactly one text primitive.
OdGiRecord drawn(const OdDbText* text) {
  OdGiRecorder recorder;
  EXPECT_TRUE(text->worldDraw(&recorder));
  EXPECT_EQ(1u, recorder.records().size());
  return recorder.records().empty() ? OdGiRecord() : recorder.records()[0];
}

TEST(Text, EachModePlacesTheBaselineFromItsAnchor) {
  const OdGePoint3d anchor(10, 20, 0);
  const double w = kAbcdWidth;
  const struct {
    const char* what;
    OdDb::TextHorzMode horizontal;
    OdDb::TextVertMode vertical;
    OdGePoint3d position;
  } cases[] = {
      {"left base keeps its own position", OdDb::kTextLeft, OdDb::kTextBase, OdGePoint3d(1, 1, 0)},
      {"center base", OdDb::kTextCenter, OdDb::kTextBase, OdGePoint3d(10 - w / 2, 20, 0)},
      {"right base", OdDb::kTextRight, OdDb::kTextBase, OdGePoint3d(10 - w, 20, 0)},
      {"middle of the full box", OdDb::kTextMid, OdDb::kTextTop,
       OdGePoint3d(10 - w / 2, 20 - 2.0 / 3.0, 0)},
      {"left bottom: descenders above the anchor", OdDb::kTextLeft, OdDb::kTextBottom,
       OdGePoint3d(10, 20 + 2.0 / 3.0, 0)},
      {"left middle", OdDb::kTextLeft, OdDb::kTextVertMid, OdGePoint3d(10, 19, 0)},
      {"left top", OdDb::kTextLeft, OdDb::kTextTop, OdGePoint3d(10, 18, 0)},
      {"center top", OdDb::kTextCenter, OdDb::kTextTop, OdGePoint3d(10 - w / 2, 18, 0)},
      {"right middle", OdDb::kTextRight, OdDb::kTextVertMid, OdGePoint3d(10 - w, 19, 0)},
      {"right bottom", OdDb::kTextRight, OdDb::kTextBottom, OdGePoint3d(10 - w, 20 + 2.0 / 3.0, 0)},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    OdDbTextPtr text =
        makeText(OD_T("abcd"), c.horizontal, c.vertical, OdGePoint3d(1, 1, 0), anchor);
    expectPoint(c.position, text->position());
    const OdGiRecord record = drawn(text);
    ASSERT_EQ(1u, record.points.size());
    expectPoint(c.position, record.points[0]);
    EXPECT_TRUE(record.direction.isEqualTo(OdGeVector3d::kXAxis));
    EXPECT_EQ(2.0, record.height);
  }
}

// A left-aligned text has one grip, its position; an aligned one its alignment point too. The
// position of a text anchored at its alignment point drags the whole text.
TEST(Text, GripsAreThePositionAndTheAlignmentPoint) {
  OdDbTextPtr left = makeText(u"ab", OdDb::kTextLeft, OdDb::kTextBase, {1, 2, 0}, {0, 0, 0});
  OdGePoint3dArray grips;
  ASSERT_EQ(eOk, left->getGripPoints(grips));
  EXPECT_EQ(1u, grips.size());
  EXPECT_EQ(eInvalidIndex, left->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(1, 0, 0)));
  OdDbTextPtr centred = makeText(u"ab", OdDb::kTextCenter, OdDb::kTextBase, {}, {5, 5, 0});
  grips.clear();
  ASSERT_EQ(eOk, centred->getGripPoints(grips));
  ASSERT_EQ(2u, grips.size());
  expectPoint(OdGePoint3d(5, 5, 0), grips[1]);
  const OdGePoint3d before = centred->position();
  ASSERT_EQ(eOk, centred->moveGripPointsAt(OdIntArray{0}, OdGeVector3d(0, 3, 0)));
  expectPoint(OdGePoint3d(5, 8, 0), centred->alignmentPoint());
  expectPoint(before + OdGeVector3d(0, 3, 0), centred->position());
}

TEST(Text, TransformScalesRotatesAndKeepsMirroredTextReadable) {
  const double w = kAbcdWidth;
  const struct {
    const char* what;
    OdDb::TextHorzMode horizontal;
    OdGeMatrix3d xform;
    OdDb::TextHorzMode newHorizontal;
    OdGePoint3d drawnAt; // start of the drawn baseline
    OdGeVector3d direction;
    double height;
  } cases[] = {
      {"rotation", OdDb::kTextLeft, OdGeMatrix3d::rotation(OdaPI2, OdGeVector3d::kZAxis),
       OdDb::kTextLeft, OdGePoint3d(0, 1, 0), OdGeVector3d::kYAxis, 2.0},
      {"uniform scale", OdDb::kTextLeft, OdGeMatrix3d::scaling(2.0), OdDb::kTextLeft,
       OdGePoint3d(2, 0, 0), OdGeVector3d::kXAxis, 4.0},
      {"mirror across the y axis: box mirrored, reads left to right", OdDb::kTextLeft,
       OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kXAxis), OdDb::kTextRight,
       OdGePoint3d(-1 - w, 0, 0), OdGeVector3d::kXAxis, 2.0},
      {"mirror of right-aligned text", OdDb::kTextRight,
       OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kXAxis), OdDb::kTextLeft,
       OdGePoint3d(-1, 0, 0), OdGeVector3d::kXAxis, 2.0},
      {"mirror across the x axis: turned half round", OdDb::kTextLeft,
       OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kYAxis), OdDb::kTextRight,
       OdGePoint3d(1 + w, 0, 0), -OdGeVector3d::kXAxis, 2.0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    // Left texts start at (1,0); right texts end at (1,0).
    OdDbTextPtr text = makeText(OD_T("abcd"), c.horizontal, OdDb::kTextBase, OdGePoint3d(1, 0, 0),
                                OdGePoint3d(1, 0, 0));
    OdGeExtents3d before;
    ASSERT_EQ(eOk, text->getGeomExtents(before));
    ASSERT_EQ(eOk, text->transformBy(c.xform));
    EXPECT_EQ(c.newHorizontal, text->horizontalMode());
    const OdGiRecord record = drawn(text);
    expectPoint(c.drawnAt, record.points[0]);
    EXPECT_TRUE(c.direction.isEqualTo(record.direction, OdGeTol(1e-9)));
    EXPECT_NEAR(c.height, text->height(), 1e-12);
    EXPECT_TRUE(OdGeVector3d::kZAxis.isEqualTo(text->normal(), OdGeTol(1e-9)));
    // The box lands where the matrix puts the old box.
    OdGeExtents3d after;
    ASSERT_EQ(eOk, text->getGeomExtents(after));
    OdGeExtents3d expected;
    expected.addPoint(c.xform * before.minPoint());
    expected.addPoint(c.xform * before.maxPoint());
    expectPoint(expected.minPoint(), after.minPoint());
    expectPoint(expected.maxPoint(), after.maxPoint());
  }
  // Stretched unevenly, the height follows the axis across the baseline and the thickness the
  // axis along the normal.
  OdDbTextPtr text = makeText(OD_T("ab"), OdDb::kTextLeft, OdDb::kTextBase, {}, {});
  text->setThickness(1.0);
  ASSERT_EQ(eOk, text->transformBy(OdGeMatrix3d::scaling(OdGeScale3d(2, 3, 4))));
  EXPECT_NEAR(6.0, text->height(), 1e-12);
  EXPECT_NEAR(4.0, text->thickness(), 1e-12);
}

} // namespace
