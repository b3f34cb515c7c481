#include "DbMText.h"

#include "DbDatabase.h"
#include "DbText.h"
#include "sdk/SdkTestSupport.h"

namespace {

/// Height 3: "ab" is 3.6 long, "abcd" 7.2, baselines 5 apart, the block 9 high.
OdDbMTextPtr makeMText(const char* contents, OdDbMText::AttachmentPoint attachment,
                       const OdGePoint3d& location) {
  OdDbMTextPtr mtext = OdDbMText::createObject();
  mtext->setContents(OdString(contents));
  mtext->setTextHeight(3.0);
  mtext->setAttachment(attachment);
  mtext->setLocation(location);
  return mtext;
}

TEST(MText, RotatedBlockPlacesLinesBoxAndExtentsAroundTheLocation) {
  // Rotated a quarter turn: lines run up +Y, "up" is -X.
  OdDbMTextPtr mtext = makeMText("ab\\Pabcd", OdDbMText::kMiddleCenter, OdGePoint3d(10, 20, 0));
  mtext->setRotation(OdaPI2);
  EXPECT_NEAR(7.2, mtext->actualWidth(), 1e-12);
  EXPECT_NEAR(9.0, mtext->actualHeight(), 1e-12);
  EXPECT_EQ("ab\r\nabcd", mtext->text().toUtf8());

  const std::vector<OdDbMTextLine> lines = mtext->lines();
  ASSERT_EQ(2u, lines.size());
  EXPECT_EQ("ab", lines[0].text.toUtf8());
  expectPoint(OdGePoint3d(10 - 1.5, 20 - 1.8, 0), lines[0].position);
  expectPoint(OdGePoint3d(10 + 3.5, 20 - 3.6, 0), lines[1].position);
  EXPECT_NEAR(7.2, lines[1].width, 1e-12);
  EXPECT_EQ(3.0, lines[1].height);

  OdGePoint3dArray corners;
  corners.append(OdGePoint3d(1, 1, 1)); // replaced, not appended to
  mtext->getBoundingPoints(corners);
  ASSERT_EQ(4u, corners.size());
  expectPoint(OdGePoint3d(10 - 4.5, 20 - 3.6, 0), corners[0]); // top left
  expectPoint(OdGePoint3d(10 - 4.5, 20 + 3.6, 0), corners[1]); // top right
  expectPoint(OdGePoint3d(10 + 4.5, 20 + 3.6, 0), corners[2]); // bottom right
  expectPoint(OdGePoint3d(10 + 4.5, 20 - 3.6, 0), corners[3]); // bottom left

  OdGeExtents3d extents;
  ASSERT_EQ(eOk, mtext->getGeomExtents(extents));
  expectPoint(OdGePoint3d(5.5, 16.4, 0), extents.minPoint());
  expectPoint(OdGePoint3d(14.5, 23.6, 0), extents.maxPoint());

  // A new attachment keeps the location and moves the block: now it hangs below it.
  mtext->setAttachment(OdDbMText::kTopLeft);
  ASSERT_EQ(eOk, mtext->getGeomExtents(extents));
  expectPoint(OdGePoint3d(10, 20, 0), mtext->location());
  expectPoint(OdGePoint3d(10, 20, 0), extents.minPoint());
  expectPoint(OdGePoint3d(19, 27.2, 0), extents.maxPoint());

  // Wrapping comes from the same layout.
  mtext->setContents(OdString("aa bb cc"));
  mtext->setWidth(9.0); // "aa bb" is exactly 9 at height 3
  ASSERT_EQ(2u, mtext->lines().size());
  EXPECT_NEAR(9.0, mtext->actualWidth(), 1e-12);
}

TEST(MText, TransformScalesRotatesAndKeepsMirroredTextReadable) {
  const struct {
    const char* what;
    OdGeMatrix3d xform;
    OdDbMText::AttachmentPoint attachment;
    OdGeVector3d direction;
    double textHeight;
    const char* contents;
  } cases[] = {
      {"rotation", OdGeMatrix3d::rotation(OdaPI2, OdGeVector3d::kZAxis), OdDbMText::kTopLeft,
       OdGeVector3d::kYAxis, 3.0, "ab\\P{\\H4.0;abcd}"},
      {"uniform scale", OdGeMatrix3d::scaling(2.0), OdDbMText::kTopLeft, OdGeVector3d::kXAxis, 6.0,
       "ab\\P{\\H8;abcd}"},
      {"mirror across the y axis: block mirrored, reads left to right",
       OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kXAxis), OdDbMText::kTopRight,
       OdGeVector3d::kXAxis, 3.0, "ab\\P{\\H4.0;abcd}"},
      {"mirror across the x axis: turned half round",
       OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kYAxis), OdDbMText::kTopRight,
       -OdGeVector3d::kXAxis, 3.0, "ab\\P{\\H4.0;abcd}"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    OdDbMTextPtr mtext = makeMText("ab\\P{\\H4.0;abcd}", OdDbMText::kTopLeft, OdGePoint3d(1, 2, 0));
    mtext->setWidth(10.0);
    OdGeExtents3d before;
    ASSERT_EQ(eOk, mtext->getGeomExtents(before));
    ASSERT_EQ(eOk, mtext->transformBy(c.xform));
    EXPECT_EQ(c.attachment, mtext->attachment());
    EXPECT_TRUE(c.direction.isEqualTo(mtext->direction(), OdGeTol(1e-9)));
    EXPECT_TRUE(OdGeVector3d::kZAxis.isEqualTo(mtext->normal(), OdGeTol(1e-9)));
    EXPECT_NEAR(c.textHeight, mtext->textHeight(), 1e-12);
    // Heights are rewritten only when the size changes; otherwise the contents stay as typed.
    EXPECT_EQ(c.contents, mtext->contents().toUtf8());
    expectPoint(c.xform * OdGePoint3d(1, 2, 0), mtext->location());
    // The box lands where the matrix puts the old box.
    OdGeExtents3d after;
    ASSERT_EQ(eOk, mtext->getGeomExtents(after));
    OdGeExtents3d expected;
    expected.addPoint(c.xform * before.minPoint());
    expected.addPoint(c.xform * before.maxPoint());
    expectPoint(expected.minPoint(), after.minPoint());
    expectPoint(expected.maxPoint(), after.maxPoint());
  }

  // A matrix that flattens the text is refused with nothing changed.
  OdDbMTextPtr flat = makeMText("ab", OdDbMText::kTopLeft, OdGePoint3d(1, 1, 0));
  EXPECT_EQ(eInvalidInput, flat->transformBy(OdGeMatrix3d::scaling(OdGeScale3d(1, 0, 1))));
  expectPoint(OdGePoint3d(1, 1, 0), flat->location());
  EXPECT_EQ(3.0, flat->textHeight());
}

// The one grip is the location.
TEST(MText, TheLocationIsTheOnlyGrip) {
  OdDbMTextPtr text = makeMText("ab", OdDbMText::kTopLeft, OdGePoint3d(1, 2, 3));
  OdGePoint3dArray grips;
  ASSERT_EQ(eOk, text->getGripPoints(grips));
  ASSERT_EQ(1u, grips.size());
  EXPECT_EQ(eInvalidIndex, text->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(1, 0, 0)));
  ASSERT_EQ(eOk, text->moveGripPointsAt(OdIntArray{0}, OdGeVector3d(1, 0, 0)));
  expectPoint(OdGePoint3d(2, 2, 3), text->location());
}

TEST(MText, ExplodesIntoOneTextPerLine) {
  OdDbMTextPtr mtext =
      makeMText("ab\\P\\P{\\C1;\\W0.5;abcd}", OdDbMText::kBottomRight, OdGePoint3d(10, 0, 0));
  mtext->setColorIndex(5);
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  mtext->setTextStyle(db->getTextStyleStandardId());
  OdRxObjectPtrArray pieces;
  ASSERT_EQ(eOk, mtext->explode(pieces));
  ASSERT_EQ(2u, pieces.size()); // the empty paragraph makes no text
  const std::vector<OdDbMTextLine> lines = mtext->lines();
  ASSERT_EQ(3u, lines.size());
  const struct {
    const char* text;
    std::size_t line;
    double widthFactor;
    OdUInt16 color;
  } expected[] = {{"ab", 0, 1.0, 5}, {"abcd", 2, 0.5, 1}};
  for (std::size_t i = 0; i < 2; ++i) {
    SCOPED_TRACE(i);
    OdDbTextPtr text = OdDbText::cast(pieces[i]);
    ASSERT_FALSE(text.isNull());
    EXPECT_EQ(expected[i].text, text->textString().toUtf8());
    EXPECT_TRUE(text->isDefaultAlignment());
    expectPoint(lines[expected[i].line].position, text->position());
    EXPECT_EQ(3.0, text->height());
    EXPECT_EQ(expected[i].widthFactor, text->widthFactor());
    EXPECT_EQ(expected[i].color, text->colorIndex());
    EXPECT_EQ(db->getTextStyleStandardId(), text->textStyle());
  }
  // Right attachment: the last line ends at the location.
  OdDbTextPtr last = OdDbText::cast(pieces[1]);
  expectPoint(OdGePoint3d(10 - 4 * 0.6 * 3 * 0.5, 1.0, 0), last->position());
}

// The direction is filed as group 11; the rotation comes back from it.
TEST(MText, DxfKeepsTheDirection) {
  OdDbMTextPtr mtext = OdDbMText::createObject();
  mtext->setContents(OD_T("a"));
  mtext->setRotation(0.5);
  DxfFiler filer;
  filer.openForWrite();
  mtext->dxfOutFields(&filer);
  filer.rewind();
  OdDbMTextPtr copy = OdDbMText::createObject();
  ASSERT_EQ(eOk, copy->dxfInFields(&filer));
  EXPECT_NEAR(0.5, copy->rotation(), 1e-12);
}

} // namespace
