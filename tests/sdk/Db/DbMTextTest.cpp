#include "DbMText.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbDxfFile.h"
#include "DbDxfItemFiler.h"
#include "DbText.h"
#include "DbTextStyleTable.h"
#include "Gi/GiRecorder.h"
#include "OdError.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include "TextDxfFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <string>
#include <unistd.h>

namespace {

typedef OdStaticRxObject<OdDbDwgStreamFiler> DwgFiler;
typedef OdStaticRxObject<OdDbDxfItemFiler> DxfFiler;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

OdResult codeOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const OdError& err) {
    return err.code();
  }
  return eOk;
}

void expectPoint(const OdGePoint3d& expected, const OdGePoint3d& actual, double tol = 1e-9) {
  EXPECT_NEAR(expected.x, actual.x, tol);
  EXPECT_NEAR(expected.y, actual.y, tol);
  EXPECT_NEAR(expected.z, actual.z, tol);
}

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

void expectSameMText(const OdDbMText* expected, const OdDbMText* actual) {
  expectPoint(expected->location(), actual->location(), 1e-12);
  EXPECT_TRUE(expected->normal().isEqualTo(actual->normal(), OdGeTol(1e-12)));
  EXPECT_TRUE(expected->direction().isEqualTo(actual->direction(), OdGeTol(1e-12)));
  EXPECT_EQ(expected->width(), actual->width());
  EXPECT_EQ(expected->height(), actual->height());
  EXPECT_EQ(expected->textHeight(), actual->textHeight());
  EXPECT_EQ(expected->attachment(), actual->attachment());
  EXPECT_EQ(expected->flowDirection(), actual->flowDirection());
  EXPECT_EQ(expected->lineSpacingFactor(), actual->lineSpacingFactor());
  EXPECT_EQ(expected->contents(), actual->contents());
}

TEST(MText, RegisteredAsMTextWithDefaults) {
  OdRxClass* cls = odrxGetClass(OD_T("OdDbMText"));
  ASSERT_NE(nullptr, cls);
  EXPECT_EQ(OdDbEntity::desc(), cls->myParent());
  EXPECT_EQ(OdString(OD_T("MTEXT")), cls->dxfName());
  EXPECT_EQ(cls, odrxClassByDxfName(OD_T("MTEXT")));
  EXPECT_EQ(cls, oddbDwgClassMapDesc(44));

  OdDbMTextPtr mtext = OdDbMText::createObject();
  EXPECT_EQ(2.5, mtext->textHeight());
  EXPECT_EQ(OdDbMText::kTopLeft, mtext->attachment());
  EXPECT_EQ(0.0, mtext->width());
  EXPECT_EQ(1.0, mtext->lineSpacingFactor());
  EXPECT_EQ(OdGeVector3d::kXAxis, mtext->direction());
  EXPECT_EQ(OdGeVector3d::kZAxis, mtext->normal());
  EXPECT_TRUE(mtext->contents().isEmpty());
  EXPECT_TRUE(mtext->textStyle().isNull());
}

TEST(MText, SettersRefuseBadValuesAndKeepTheOldOnes) {
  OdDbMTextPtr mtext = OdDbMText::createObject();
  const struct {
    const char* what;
    std::function<void()> call;
  } cases[] = {
      {"text height 0", [&] { mtext->setTextHeight(0.0); }},
      {"text height NaN", [&] { mtext->setTextHeight(kNaN); }},
      {"negative width", [&] { mtext->setWidth(-1.0); }},
      {"infinite width", [&] { mtext->setWidth(std::numeric_limits<double>::infinity()); }},
      {"negative box height", [&] { mtext->setHeight(-1.0); }},
      {"attachment 0", [&] { mtext->setAttachment(static_cast<OdDbMText::AttachmentPoint>(0)); }},
      {"attachment 10", [&] { mtext->setAttachment(static_cast<OdDbMText::AttachmentPoint>(10)); }},
      {"flow 6", [&] { mtext->setFlowDirection(static_cast<OdDbMText::FlowDirection>(6)); }},
      {"spacing 0.2", [&] { mtext->setLineSpacingFactor(0.2); }},
      {"spacing 4.5", [&] { mtext->setLineSpacingFactor(4.5); }},
      {"zero normal", [&] { mtext->setNormal(OdGeVector3d()); }},
      {"direction along the normal", [&] { mtext->setDirection(OdGeVector3d(0, 0, 2)); }},
      {"NaN location", [&] { mtext->setLocation(OdGePoint3d(kNaN, 0, 0)); }},
      {"NaN rotation", [&] { mtext->setRotation(kNaN); }},
  };
  for (const auto& c : cases)
    EXPECT_EQ(eInvalidInput, codeOf(c.call)) << c.what;
  EXPECT_EQ(2.5, mtext->textHeight());
  EXPECT_EQ(0.0, mtext->width());
  EXPECT_EQ(OdDbMText::kTopLeft, mtext->attachment());
  EXPECT_EQ(OdDbMText::kLtoR, mtext->flowDirection());
  EXPECT_EQ(1.0, mtext->lineSpacingFactor());
  EXPECT_EQ(OdGeVector3d::kXAxis, mtext->direction());
  expectPoint(OdGePoint3d(), mtext->location(), 0.0);

  // A direction out of the plane is projected into it; a new normal keeps the rotation.
  mtext->setDirection(OdGeVector3d(0, 2, 5));
  EXPECT_TRUE(OdGeVector3d::kYAxis.isEqualTo(mtext->direction()));
  EXPECT_NEAR(OdaPI2, mtext->rotation(), 1e-12);
  mtext->setNormal(OdGeVector3d(0, 0, -3));
  EXPECT_TRUE(OdGeVector3d(0, 0, -1).isEqualTo(mtext->normal()));
  EXPECT_NEAR(OdaPI2, mtext->rotation(), 1e-12);
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

TEST(MText, DrawsEachFragmentInItsColourAndRestoresTheEntityColour) {
  OdDbMTextPtr mtext = makeMText("a{\\C1;b}c\\P\\C5;d", OdDbMText::kTopLeft, OdGePoint3d(1, 2, 0));
  OdGiRecorder recorder;
  recorder.subEntityTraits().setColor(3);
  ASSERT_TRUE(mtext->worldDraw(&recorder));
  ASSERT_EQ(4u, recorder.count(OdGiRecord::kText));
  const struct {
    const char* text;
    OdGePoint3d position;
    OdUInt16 color;
  } expected[] = {
      {"a", OdGePoint3d(1.0, -1.0, 0), 3},
      {"b", OdGePoint3d(2.8, -1.0, 0), 1},
      {"c", OdGePoint3d(4.6, -1.0, 0), 3},
      {"d", OdGePoint3d(1.0, -6.0, 0), 5},
  };
  for (std::size_t i = 0; i < 4; ++i) {
    SCOPED_TRACE(i);
    const OdGiRecord& record = recorder.records()[i];
    EXPECT_EQ(expected[i].text, record.text.toUtf8());
    ASSERT_EQ(1u, record.points.size());
    expectPoint(expected[i].position, record.points[0]);
    EXPECT_EQ(expected[i].color, record.traits.color());
    EXPECT_EQ(3.0, record.height);
    EXPECT_TRUE(OdGeVector3d::kXAxis.isEqualTo(record.direction));
  }
  EXPECT_EQ(3, recorder.subEntityTraits().color());
}

TEST(MText, DwgRoundTripKeepsEveryField) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbMTextPtr mtext =
      makeMText("{\\H2x;坐标}\\PX=3.50", OdDbMText::kBottomRight, OdGePoint3d(3, -4, 5));
  mtext->setNormal(OdGeVector3d(0, 1, 1));
  mtext->setRotation(0.3);
  mtext->setWidth(12.5);
  mtext->setHeight(7.0);
  mtext->setFlowDirection(OdDbMText::kByStyle);
  mtext->setLineSpacingFactor(1.5);
  mtext->setTextStyle(db->getTextStyleStandardId());
  DwgFiler filer;
  filer.openForWrite(db);
  mtext->dwgOutFields(&filer);
  filer.rewind();
  OdDbMTextPtr copy = OdDbMText::createObject();
  ASSERT_EQ(eOk, copy->dwgInFields(&filer));
  EXPECT_EQ(0u, filer.remainingDataBits());
  expectSameMText(mtext, copy);
  EXPECT_EQ(db->getTextStyleStandardId(), copy->textStyle());
}

TEST(MText, ShortOrCorruptDwgStreamIsRefusedWithoutChange) {
  OdDbMTextPtr mtext = makeMText("北\\Pab", OdDbMText::kMiddleLeft, OdGePoint3d(1, 2, 3));
  DwgFiler written;
  written.openForWrite();
  mtext->dwgOutFields(&written);
  const auto expectRefused = [](DwgFiler& reader, const std::string& what) {
    OdDbMTextPtr fresh = OdDbMText::createObject();
    EXPECT_NE(eOk, fresh->dwgInFields(&reader)) << what;
    EXPECT_EQ(2.5, fresh->textHeight()) << what;
    EXPECT_TRUE(fresh->contents().isEmpty()) << what;
  };
  for (OdUInt64 bits = 0; bits < written.dataBitSize(); bits += 8) {
    DwgFiler reader;
    reader.openForRead(written.dataBuffer(), bits, written.stringBuffer(), written.stringBitSize(),
                       written.handleBuffer(), written.handleBitSize());
    expectRefused(reader, "data cut at bit " + std::to_string(bits));
  }
  for (OdUInt64 bits = 0; bits < written.stringBitSize(); bits += 8) {
    DwgFiler reader;
    reader.openForRead(written.dataBuffer(), written.dataBitSize(), written.stringBuffer(), bits,
                       written.handleBuffer(), written.handleBitSize());
    expectRefused(reader, "strings cut at bit " + std::to_string(bits));
  }

  // Values out of range are refused like a short stream.
  const struct {
    const char* what;
    double textHeight;
    OdInt16 attachment;
    double spacing;
    OdGeVector3d direction;
  } cases[] = {
      {"zero text height", 0.0, 1, 1.0, OdGeVector3d::kXAxis},
      {"attachment 10", 2.0, 10, 1.0, OdGeVector3d::kXAxis},
      {"spacing 5", 2.0, 1, 5.0, OdGeVector3d::kXAxis},
      {"direction along the normal", 2.0, 1, 1.0, OdGeVector3d::kZAxis},
      {"NaN text height", kNaN, 1, 1.0, OdGeVector3d::kXAxis},
  };
  for (const auto& c : cases) {
    OdDbMTextPtr source = OdDbMText::createObject();
    DwgFiler bad;
    bad.openForWrite();
    OdDbEntity* asEntity = source.get();
    asEntity->OdDbEntity::dwgOutFields(&bad);
    bad.wrPoint3d(OdGePoint3d());
    bad.wrVector3d(OdGeVector3d::kZAxis);
    bad.wrVector3d(c.direction);
    bad.wrDouble(0.0);
    bad.wrDouble(0.0);
    bad.wrDouble(c.textHeight);
    bad.wrInt16(c.attachment);
    bad.wrInt16(1);
    bad.wrDouble(c.spacing);
    bad.wrString(OD_T("a"));
    bad.wrHardPointerId(OdDbObjectId());
    bad.rewind();
    OdDbMTextPtr fresh = OdDbMText::createObject();
    EXPECT_EQ(eDwgObjectImproperlyRead, fresh->dwgInFields(&bad)) << c.what;
    EXPECT_TRUE(fresh->contents().isEmpty()) << c.what;
  }
}

class MTextDxf : public TextDxfFixture {
protected:
  static std::vector<std::pair<int, std::string>>
  mtextItems(const OdDbDxfItemFiler::ItemArray& items) {
    return itemsFrom(items, OD_T("AcDbMText"));
  }
};

TEST_F(MTextDxf, WritesTheGroupCodesInFormatOrder) {
  OdDbMTextPtr mtext = makeMText("坐标\\Pab\nc", OdDbMText::kTopCenter, OdGePoint3d(10, 20, 0));
  mtext->setDirection(OdGeVector3d::kYAxis);
  mtext->setWidth(30.0);
  mtext->setTextStyle(hzStyle);
  const std::vector<std::pair<int, std::string>> expected = {
      {100, "AcDbMText"},
      {10, "10.0"},
      {20, "20.0"},
      {30, "0.0"},
      {40, "3.0"},
      {41, "30.0"},
      {71, "2"},
      {72, "1"},
      {1, "坐标\\Pab\\Pc"}, // a line break is written as the paragraph code
      {7, "hztxt_txtstyle_0_0"},
      {11, "0.0"},
      {21, "1.0"},
      {31, "0.0"},
      {42, "6.0"},  // "坐标" at height 3
      {43, "14.0"}, // three lines: 3 + 2 x 5 + 1
      {44, "1.0"},
  };
  EXPECT_EQ(expected, mtextItems(write(mtext)));
}

TEST_F(MTextDxf, LongContentsGoInChunksAndReadBackWhole) {
  std::string contents;
  for (int i = 0; i < 80; ++i)
    contents += "word\\P" + std::to_string(i); // 630 characters
  OdDbMTextPtr mtext = makeMText(contents.c_str(), OdDbMText::kTopLeft, OdGePoint3d());
  const auto items = write(mtext);
  std::vector<std::size_t> threes;
  std::size_t ones = 0;
  std::size_t oneLength = 0;
  for (const auto& item : items) {
    if (item.code == 3)
      threes.push_back(static_cast<std::size_t>(item.value.getLength()));
    if (item.code == 1) {
      ++ones;
      oneLength = static_cast<std::size_t>(item.value.getLength());
    }
  }
  EXPECT_EQ(std::vector<std::size_t>(contents.size() / 250, 250u), threes);
  EXPECT_EQ(1u, ones);
  EXPECT_EQ(contents.size() % 250, oneLength);
  OdDbMTextPtr copy = OdDbMText::createObject();
  ASSERT_EQ(eOk, read(items, copy));
  EXPECT_EQ(contents, copy->contents().toUtf8());
}

TEST_F(MTextDxf, RoundTripKeepsFieldsAndResolvesTheStyle) {
  OdDbMTextPtr mtext =
      makeMText("{\\C1;X}=3\\P%%c20", OdDbMText::kBottomCenter, OdGePoint3d(1.5, -2.25, 4));
  mtext->setNormal(OdGeVector3d(1, 0, 0));
  mtext->setRotation(0.7);
  mtext->setWidth(20.0);
  mtext->setHeight(6.0);
  mtext->setLineSpacingFactor(0.75);
  mtext->setFlowDirection(OdDbMText::kTtoB);
  mtext->setTextStyle(hzStyle);
  OdDbMTextPtr copy = OdDbMText::createObject();
  ASSERT_EQ(eOk, read(write(mtext), copy));
  expectSameMText(mtext, copy);
  EXPECT_EQ(hzStyle, copy->textStyle());
}

TEST_F(MTextDxf, RotationIsReadOnlyWhenThereIsNoDirection) {
  OdDbMTextPtr mtext = makeMText("a", OdDbMText::kTopLeft, OdGePoint3d());
  auto items = write(mtext);
  OdDbDxfItemFiler::Item rotation;
  rotation.code = 50;
  rotation.value = OdString("90.0");
  items.push_back(rotation);
  OdDbMTextPtr withDirection = OdDbMText::createObject();
  ASSERT_EQ(eOk, read(items, withDirection));
  EXPECT_TRUE(OdGeVector3d::kXAxis.isEqualTo(withDirection->direction()));

  OdDbDxfItemFiler::ItemArray withoutDirection;
  for (const auto& item : items)
    if (item.code != 11 && item.code != 21 && item.code != 31)
      withoutDirection.push_back(item);
  OdDbMTextPtr rotated = OdDbMText::createObject();
  ASSERT_EQ(eOk, read(withoutDirection, rotated));
  EXPECT_TRUE(OdGeVector3d::kYAxis.isEqualTo(rotated->direction()));
}

TEST_F(MTextDxf, RefusesBadValuesAndIgnoresUnknownStyles) {
  OdDbMTextPtr mtext = makeMText("abc", OdDbMText::kTopLeft, OdGePoint3d(1, 1, 0));
  mtext->setTextStyle(hzStyle);
  const auto items = write(mtext);
  const struct {
    const char* what;
    int code;
    const char* value;
    OdResult result;
  } cases[] = {
      {"zero text height", 40, "0.0", eInvalidInput},
      {"negative width", 41, "-1.0", eInvalidInput},
      {"attachment 0", 71, "0", eInvalidInput},
      {"attachment 10", 71, "10", eInvalidInput},
      {"flow direction 9", 72, "9", eInvalidInput},
      {"spacing 5", 44, "5.0", eInvalidInput},
      {"direction along the normal", 31, "1.0", eOk}, // (1,0,1) still has an in-plane part
      {"not a number", 40, "two", eInvalidDxfCode},
      {"unknown style", 7, "NoSuchStyle", eOk},
      {"actual width is only derived", 42, "999.0", eOk},
  };
  for (const auto& c : cases) {
    auto changed = items;
    bool replaced = false;
    for (auto& item : changed)
      if (item.code == c.code) {
        item.value = OdString(c.value);
        replaced = true;
      }
    ASSERT_TRUE(replaced) << c.what;
    OdDbMTextPtr copy = OdDbMText::createObject();
    copy->setTextStyle(hzStyle);
    EXPECT_EQ(c.result, read(changed, copy)) << c.what;
    EXPECT_EQ(hzStyle, copy->textStyle()) << c.what;
    if (c.result != eOk) {
      EXPECT_TRUE(copy->contents().isEmpty()) << c.what;
    } else {
      EXPECT_EQ("abc", copy->contents().toUtf8()) << c.what;
    }
  }
  // A direction with nothing in the text's plane is refused.
  auto vertical = items;
  for (auto& item : vertical)
    if (item.code == 11)
      item.value = OdString("0.0");
    else if (item.code == 31)
      item.value = OdString("1.0");
  OdDbMTextPtr copy = OdDbMText::createObject();
  EXPECT_EQ(eInvalidInput, read(vertical, copy));
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
       OdGeVector3d::kYAxis, 3.0, "ab\\P{\\H4;abcd}"},
      {"uniform scale", OdGeMatrix3d::scaling(2.0), OdDbMText::kTopLeft, OdGeVector3d::kXAxis, 6.0,
       "ab\\P{\\H8;abcd}"},
      {"mirror across the y axis: block mirrored, reads left to right",
       OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kXAxis), OdDbMText::kTopRight,
       OdGeVector3d::kXAxis, 3.0, "ab\\P{\\H4;abcd}"},
      {"mirror across the x axis: turned half round",
       OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kYAxis), OdDbMText::kTopRight,
       -OdGeVector3d::kXAxis, 3.0, "ab\\P{\\H4;abcd}"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    OdDbMTextPtr mtext = makeMText("ab\\P{\\H4;abcd}", OdDbMText::kTopLeft, OdGePoint3d(1, 2, 0));
    mtext->setWidth(10.0);
    OdGeExtents3d before;
    ASSERT_EQ(eOk, mtext->getGeomExtents(before));
    ASSERT_EQ(eOk, mtext->transformBy(c.xform));
    EXPECT_EQ(c.attachment, mtext->attachment());
    EXPECT_TRUE(c.direction.isEqualTo(mtext->direction(), OdGeTol(1e-9)));
    EXPECT_TRUE(OdGeVector3d::kZAxis.isEqualTo(mtext->normal(), OdGeTol(1e-9)));
    EXPECT_NEAR(c.textHeight, mtext->textHeight(), 1e-12);
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

TEST(MText, ExplodesIntoOneTextPerLine) {
  OdDbMTextPtr mtext =
      makeMText("ab\\P\\P{\\C1;\\W0.5;abcd}", OdDbMText::kBottomRight, OdGePoint3d(10, 0, 0));
  mtext->setColorIndex(5);
  mtext->setLinetypeScale(2.0);
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
    EXPECT_EQ(2.0, text->linetypeScale());
    EXPECT_EQ(db->getTextStyleStandardId(), text->textStyle());
  }
  // Right attachment: the last line ends at the location.
  OdDbTextPtr last = OdDbText::cast(pieces[1]);
  expectPoint(OdGePoint3d(10 - 4 * 0.6 * 3 * 0.5, 1.0, 0), last->position());
}

TEST(MText, GripSnapAndDatabaseDefaults) {
  OdDbMTextPtr mtext = makeMText("ab", OdDbMText::kMiddleCenter, OdGePoint3d(1, 1, 0));
  OdGePoint3dArray grips;
  ASSERT_EQ(eOk, mtext->getGripPoints(grips));
  ASSERT_EQ(1u, grips.size());
  expectPoint(OdGePoint3d(1, 1, 0), grips[0]);
  EXPECT_EQ(eInvalidIndex, mtext->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(1, 0, 0)));
  ASSERT_EQ(eOk, mtext->moveGripPointsAt(OdIntArray{0}, OdGeVector3d(1, 2, 0)));
  expectPoint(OdGePoint3d(2, 3, 0), mtext->location());
  OdGePoint3dArray snaps;
  ASSERT_EQ(eOk, mtext->getOsnapPoints(OdDb::kOsModeIns, 0, OdGePoint3d(), OdGePoint3d(),
                                       OdGeMatrix3d(), snaps));
  ASSERT_EQ(1u, snaps.size());
  expectPoint(OdGePoint3d(2, 3, 0), snaps[0]);

  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbTextStyleTablePtr styles = db->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
  OdDbTextStyleTableRecordPtr record = OdDbTextStyleTableRecord::createObject();
  record->setName(OD_T("宋体_txtstyle_0_0"));
  const OdDbObjectId song = styles->add(record);
  db->setTEXTSTYLE(song);
  db->setTEXTSIZE(7.0);
  mtext->setDatabaseDefaults(db);
  EXPECT_EQ(song, mtext->textStyle());
  EXPECT_EQ(7.0, mtext->textHeight());
}

TEST(MText, DrawingFileRoundTripAndOutsideCheck) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  std::string longContents = "{\\H1.5x;\\C3;标题}\\P";
  for (int i = 0; i < 40; ++i)
    longContents += "item " + std::to_string(i) + " %%d\\~\\S1/2; ";
  OdDbMTextPtr mtext =
      makeMText(longContents.c_str(), OdDbMText::kMiddleCenter, OdGePoint3d(5, 6, 0));
  mtext->setWidth(40.0);
  mtext->setRotation(0.25);
  mtext->setTextStyle(db->getTextStyleStandardId());
  OdDbBlockTableRecordPtr model = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
  model->appendOdDbEntity(mtext);

  char dir[] = "/tmp/mtext-test-XXXXXX";
  ASSERT_NE(nullptr, ::mkdtemp(dir));
  const std::string path = std::string(dir) + "/mtext.dxf";
  OdString error;
  ASSERT_EQ(eOk, odDbWriteDxf(db, OdString::fromUtf8(path), &error)) << error.toUtf8();
  OdDbDatabasePtr loaded;
  ASSERT_EQ(eOk, odDbReadDxf(OdString::fromUtf8(path), loaded, &error)) << error.toUtf8();
  OdDbBlockTableRecordPtr loadedModel = loaded->getModelSpaceId().safeOpenObject();
  const OdDbObjectIdArray ids = loadedModel->entityIds();
  ASSERT_EQ(1u, ids.size());
  OdDbMTextPtr copy = OdDbMText::cast(ids[0].openObject());
  ASSERT_FALSE(copy.isNull());
  expectSameMText(mtext, copy);
  EXPECT_EQ(mtext->text(), copy->text());
  EXPECT_EQ(loaded->getTextStyleStandardId(), copy->textStyle());

  // The outside check: ezdxf reads the file and its audit finds no error.
  if (std::system("/usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1") == 0) {
    const std::string here = __FILE__;
    const std::string script = here.substr(0, here.rfind('/')) + "/../DxfFile/ezdxf_audit.py";
    const std::string command = "/usr/bin/python3 '" + script + "' '" + path + "' 2>&1";
    std::string report;
    if (std::FILE* pipe = ::popen(command.c_str(), "r")) {
      char buffer[4096];
      std::size_t n;
      while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        report.append(buffer, n);
      ::pclose(pipe);
    }
    EXPECT_NE(std::string::npos, report.find("\"errors\": 0,")) << report;
    EXPECT_NE(std::string::npos, report.find("\"MTEXT\": 1")) << report;
  }
  std::remove(path.c_str());
  ::rmdir(dir);
}

} // namespace
