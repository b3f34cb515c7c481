#include "DbText.h"

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbDxfItemFiler.h"
#include "DbTextStyleTable.h"
#include "Gi/GiRecorder.h"
#include "OdError.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include "TextDxfFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

OdRxClass* oddbDwgClassMapDesc(OdUInt16 dwgType);

namespace {

typedef OdStaticRxObject<OdDbDwgStreamFiler> DwgFiler;
typedef OdStaticRxObject<OdDbDxfItemFiler> DxfFiler;

constexpr double kDegree = OdaPI / 180.0;
const double kNaN = std::numeric_limits<double>::quiet_NaN();
/// "abcd" at height 2: four narrow characters of 0.6 x 2.
const double kAbcdWidth = 4 * 0.6 * 2.0;

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

TEST(Text, RegisteredAsDwgTypeOneWithDefaults) {
  OdRxClass* cls = odrxGetClass(OD_T("OdDbText"));
  ASSERT_NE(nullptr, cls);
  EXPECT_EQ(OdDbEntity::desc(), cls->myParent());
  EXPECT_EQ(OdString(OD_T("TEXT")), cls->dxfName());
  EXPECT_EQ(OdDbText::desc(), oddbDwgClassMapDesc(1));

  OdDbTextPtr text = OdDbText::createObject();
  EXPECT_EQ(2.5, text->height());
  EXPECT_EQ(1.0, text->widthFactor());
  EXPECT_EQ(OdDb::kTextLeft, text->horizontalMode());
  EXPECT_EQ(OdDb::kTextBase, text->verticalMode());
  EXPECT_TRUE(text->isDefaultAlignment());
  EXPECT_TRUE(text->textString().isEmpty());
  EXPECT_TRUE(text->textStyle().isNull());
  EXPECT_EQ(OdGeVector3d::kZAxis, text->normal());
}

TEST(Text, SettersRefuseBadValuesAndKeepTheOldOnes) {
  OdDbTextPtr text = OdDbText::createObject();
  const struct {
    const char* what;
    std::function<void()> call;
  } cases[] = {
      {"height 0", [&] { text->setHeight(0.0); }},
      {"height negative", [&] { text->setHeight(-1.0); }},
      {"height NaN", [&] { text->setHeight(kNaN); }},
      {"width factor 0", [&] { text->setWidthFactor(0.0); }},
      {"oblique 90 degrees", [&] { text->setOblique(OdaPI2); }},
      {"zero normal", [&] { text->setNormal(OdGeVector3d()); }},
      {"horizontal mode 6", [&] { text->setHorizontalMode(static_cast<OdDb::TextHorzMode>(6)); }},
      {"vertical mode -1", [&] { text->setVerticalMode(static_cast<OdDb::TextVertMode>(-1)); }},
      {"NaN position", [&] { text->setPosition(OdGePoint3d(kNaN, 0, 0)); }},
  };
  for (const auto& c : cases)
    EXPECT_EQ(eInvalidInput, codeOf(c.call)) << c.what;
  EXPECT_EQ(2.5, text->height());
  EXPECT_EQ(1.0, text->widthFactor());
  EXPECT_EQ(0.0, text->oblique());
  EXPECT_EQ(OdDb::kTextLeft, text->horizontalMode());
  EXPECT_EQ(OdDb::kTextBase, text->verticalMode());
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

TEST(Text, RotatedAndChineseTextsMeasureWithTheMetrics) {
  // "坐标" at height 2 is two square cells, 4 long; rotated 90 degrees it runs up +Y.
  OdDbTextPtr text = makeText(OD_T("坐标"), OdDb::kTextRight, OdDb::kTextBase, OdGePoint3d(),
                              OdGePoint3d(5, 5, 0));
  text->setRotation(OdaPI2);
  expectPoint(OdGePoint3d(5, 1, 0), text->position());
  OdGeExtents3d extents;
  ASSERT_EQ(eOk, text->getGeomExtents(extents));
  expectPoint(OdGePoint3d(3, 1, 0), extents.minPoint());
  expectPoint(OdGePoint3d(5, 5, 0), extents.maxPoint());
  // A changed string moves the derived position at once.
  text->setTextString(OD_T("北"));
  expectPoint(OdGePoint3d(5, 3, 0), text->position());
}

TEST(Text, AlignAndFitSpanTheTwoPoints) {
  const OdGePoint3d start(0, 0, 0);
  const OdGePoint3d end(2 * kAbcdWidth * std::cos(30 * kDegree),
                        2 * kAbcdWidth * std::sin(30 * kDegree), 0);
  OdDbTextPtr aligned = makeText(OD_T("abcd"), OdDb::kTextAlign, OdDb::kTextBase, start, end);
  EXPECT_NEAR(4.0, aligned->height(), 1e-12); // twice as long, so twice as high
  EXPECT_NEAR(1.0, aligned->widthFactor(), 1e-12);
  EXPECT_NEAR(30 * kDegree, aligned->rotation(), 1e-12);
  expectPoint(start, aligned->position());

  OdDbTextPtr fitted = makeText(OD_T("abcd"), OdDb::kTextFit, OdDb::kTextBase, start, end);
  EXPECT_NEAR(2.0, fitted->height(), 1e-12);
  EXPECT_NEAR(2.0, fitted->widthFactor(), 1e-12); // twice as long, twice as wide
  const OdGiRecord record = drawn(fitted);
  EXPECT_NEAR(2.0, record.width, 1e-12);
  EXPECT_TRUE(
      record.direction.isEqualTo(OdGeVector3d(std::cos(30 * kDegree), std::sin(30 * kDegree), 0)));

  // Coinciding points leave nothing to fit: the text stays as it was.
  OdDbTextPtr degenerate = makeText(OD_T("abcd"), OdDb::kTextFit, OdDb::kTextBase, start, start);
  EXPECT_EQ(1.0, degenerate->widthFactor());
  EXPECT_EQ(2.0, degenerate->height());
}

TEST(Text, DwgRoundTripKeepsEveryField) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbTextPtr text = makeText(OD_T("X=3.50 坐标"), OdDb::kTextCenter, OdDb::kTextTop, OdGePoint3d(),
                              OdGePoint3d(3, -4, 5));
  text->setRotation(0.3);
  text->setWidthFactor(0.7);
  text->setOblique(15 * kDegree);
  text->setThickness(1.5);
  text->setNormal(OdGeVector3d(0, 1, 1));
  text->setTextStyle(db->getTextStyleStandardId());
  DwgFiler filer;
  filer.openForWrite(db);
  text->dwgOutFields(&filer);
  filer.rewind();
  OdDbTextPtr copy = OdDbText::createObject();
  ASSERT_EQ(eOk, copy->dwgInFields(&filer));
  EXPECT_EQ(0u, filer.remainingDataBits());
  EXPECT_EQ(text->textString(), copy->textString());
  expectPoint(text->position(), copy->position(), 0.0);
  expectPoint(text->alignmentPoint(), copy->alignmentPoint(), 0.0);
  EXPECT_EQ(text->normal(), copy->normal());
  EXPECT_EQ(0.3, copy->rotation());
  EXPECT_EQ(0.7, copy->widthFactor());
  EXPECT_EQ(15 * kDegree, copy->oblique());
  EXPECT_EQ(1.5, copy->thickness());
  EXPECT_EQ(2.0, copy->height());
  EXPECT_EQ(OdDb::kTextCenter, copy->horizontalMode());
  EXPECT_EQ(OdDb::kTextTop, copy->verticalMode());
  EXPECT_EQ(db->getTextStyleStandardId(), copy->textStyle());
}

TEST(Text, ShortOrCorruptDwgStreamIsRefusedWithoutChange) {
  OdDbTextPtr text =
      makeText(OD_T("北"), OdDb::kTextRight, OdDb::kTextBase, OdGePoint3d(), OdGePoint3d(1, 2, 3));
  DwgFiler written;
  written.openForWrite();
  text->dwgOutFields(&written);
  for (OdUInt64 bits = 0; bits < written.dataBitSize(); bits += 2) {
    DwgFiler reader;
    reader.openForRead(written.dataBuffer(), bits, written.stringBuffer(), written.stringBitSize(),
                       written.handleBuffer(), written.handleBitSize());
    OdDbTextPtr fresh = OdDbText::createObject();
    EXPECT_NE(eOk, fresh->dwgInFields(&reader)) << "cut at bit " << bits;
    EXPECT_EQ(2.5, fresh->height()) << "cut at bit " << bits;
  }
  // A zero height in the stream is refused like a short one.
  OdDbTextPtr source = OdDbText::createObject();
  DwgFiler zero;
  zero.openForWrite();
  OdDbEntity* asEntity = source.get();
  asEntity->OdDbEntity::dwgOutFields(&zero);
  zero.wrPoint3d(OdGePoint3d());
  zero.wrPoint3d(OdGePoint3d());
  zero.wrVector3d(OdGeVector3d::kZAxis);
  for (double value : {0.0, 0.0, 0.0, 0.0 /* height */, 1.0})
    zero.wrDouble(value);
  zero.wrString(OD_T("a"));
  zero.wrInt16(0);
  zero.wrInt16(0);
  zero.wrHardPointerId(OdDbObjectId());
  zero.rewind();
  OdDbTextPtr fresh = OdDbText::createObject();
  EXPECT_EQ(eDwgObjectImproperlyRead, fresh->dwgInFields(&zero));
  EXPECT_EQ(2.5, fresh->height());
}

class TextDxf : public TextDxfFixture {
protected:
  static std::vector<std::pair<int, std::string>>
  textItems(const OdDbDxfItemFiler::ItemArray& items) {
    return itemsFrom(items, OD_T("AcDbText"));
  }
};

TEST_F(TextDxf, WritesTheGroupCodesInFormatOrder) {
  OdDbTextPtr text = makeText(OD_T("坐标"), OdDb::kTextRight, OdDb::kTextTop, OdGePoint3d(),
                              OdGePoint3d(10, 20, 0));
  text->setRotation(OdaPI2);
  text->setTextStyle(hzStyle);
  const std::vector<std::pair<int, std::string>> expected = {
      {100, "AcDbText"}, {10, "12.0"}, {20, "16.0"}, {30, "0.0"},
      {40, "2.0"},       {1, "坐标"},  {50, "90.0"}, {7, "hztxt_txtstyle_0_0"},
      {72, "2"},         {11, "10.0"}, {21, "20.0"}, {31, "0.0"},
      {100, "AcDbText"}, {73, "3"},
  };
  EXPECT_EQ(expected, textItems(write(text)));
}

TEST_F(TextDxf, RoundTripKeepsFieldsAndResolvesTheStyle) {
  OdDbTextPtr text = makeText(OD_T("Y=12.00"), OdDb::kTextFit, OdDb::kTextBase,
                              OdGePoint3d(1, 2, 0), OdGePoint3d(11, 2, 0));
  text->setOblique(-10 * kDegree);
  text->setThickness(0.5);
  text->setTextStyle(hzStyle);
  const auto items = write(text);
  DxfFiler filer;
  filer.openForRead(items, db.get());
  OdDbTextPtr copy = OdDbText::createObject();
  ASSERT_EQ(eOk, copy->dxfInFields(&filer));
  EXPECT_EQ(text->textString(), copy->textString());
  expectPoint(text->position(), copy->position());
  expectPoint(text->alignmentPoint(), copy->alignmentPoint());
  EXPECT_NEAR(text->widthFactor(), copy->widthFactor(), 1e-12);
  EXPECT_NEAR(-10 * kDegree, copy->oblique(), 1e-12);
  EXPECT_EQ(0.5, copy->thickness());
  EXPECT_EQ(OdDb::kTextFit, copy->horizontalMode());
  EXPECT_EQ(hzStyle, copy->textStyle());

  // A tilted text files its points in its own plane and reads them back in the world.
  OdDbTextPtr tilted = makeText(OD_T("a"), OdDb::kTextCenter, OdDb::kTextVertMid, OdGePoint3d(),
                                OdGePoint3d(1, 2, 3));
  tilted->setNormal(OdGeVector3d(1, 0, 0));
  DxfFiler tiltedFiler;
  tiltedFiler.openForRead(write(tilted), db.get());
  OdDbTextPtr tiltedCopy = OdDbText::createObject();
  ASSERT_EQ(eOk, tiltedCopy->dxfInFields(&tiltedFiler));
  expectPoint(OdGePoint3d(1, 2, 3), tiltedCopy->alignmentPoint());
  expectPoint(tilted->position(), tiltedCopy->position());
  EXPECT_TRUE(OdGeVector3d::kXAxis.isEqualTo(tiltedCopy->normal()));
}

TEST_F(TextDxf, WritingWhatWasReadGivesTheSameNumbers) {
  // A tilted text's anchors pass to world coordinates and back; what was read must be
  // written back exactly, or every save and load of a drawing would change its last bits.
  unsigned seed = 777;
  const auto next = [&seed]() {
    seed = seed * 1103515245u + 12345u;
    return static_cast<double>((seed >> 8) % 20000) / 97.0 - 100.0;
  };
  for (int i = 0; i < 200; ++i) {
    SCOPED_TRACE(i);
    const OdGeVector3d normal(next(), next(), next());
    if (normal.isZeroLength())
      continue;
    OdDbTextPtr text = makeText(OD_T("a"), OdDb::kTextRight, OdDb::kTextTop, OdGePoint3d(),
                                OdGePoint3d(next(), next(), next()));
    text->setNormal(normal);
    DxfFiler filer;
    filer.openForRead(write(text), db.get());
    OdDbTextPtr read = OdDbText::createObject();
    ASSERT_EQ(eOk, read->dxfInFields(&filer));
    const auto first = write(read);
    filer.openForRead(first, db.get());
    OdDbTextPtr again = OdDbText::createObject();
    ASSERT_EQ(eOk, again->dxfInFields(&filer));
    const auto second = write(again);
    ASSERT_EQ(first.size(), second.size());
    for (unsigned k = 0; k < first.size(); ++k)
      EXPECT_TRUE(first[k].value == second[k].value) << first[k].code;
  }
}

TEST_F(TextDxf, RefusesBadValuesAndIgnoresUnknownStyles) {
  OdDbTextPtr text =
      makeText(OD_T("abc"), OdDb::kTextLeft, OdDb::kTextBase, OdGePoint3d(1, 1, 0), OdGePoint3d());
  const auto items = write(text);
  const struct {
    const char* what;
    int code;
    const char* value;
    OdResult result;
  } cases[] = {
      {"zero height", 40, "0.0", eInvalidInput},
      {"horizontal mode 9", 72, "9", eInvalidInput},
      {"not a number", 40, "two", eInvalidDxfCode},
      {"unknown style", 7, "NoSuchStyle", eOk},
  };
  for (const auto& c : cases) {
    auto changed = items;
    bool replaced = false;
    for (auto& item : changed)
      if (item.code == c.code) {
        item.value = OdString(c.value);
        replaced = true;
      }
    if (!replaced) {
      OdDbDxfItemFiler::Item item;
      item.code = c.code;
      item.value = OdString(c.value);
      changed.push_back(item);
    }
    DxfFiler filer;
    filer.openForRead(changed, db.get());
    OdDbTextPtr copy = OdDbText::createObject();
    copy->setTextStyle(hzStyle);
    EXPECT_EQ(c.result, copy->dxfInFields(&filer)) << c.what;
    EXPECT_EQ(hzStyle, copy->textStyle()) << c.what;
    if (c.result != eOk) {
      EXPECT_EQ(2.5, copy->height()) << c.what;
    }
  }
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
}

TEST(Text, TransformEdgeCases) {
  // Mirrored align text swaps its two points so that it still reads forwards.
  OdDbTextPtr aligned = makeText(OD_T("abcd"), OdDb::kTextAlign, OdDb::kTextBase,
                                 OdGePoint3d(1, 0, 0), OdGePoint3d(5, 0, 0));
  ASSERT_EQ(eOk, aligned->transformBy(
                     OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, OdGeVector3d::kXAxis)));
  expectPoint(OdGePoint3d(-5, 0, 0), aligned->position());
  expectPoint(OdGePoint3d(-1, 0, 0), aligned->alignmentPoint());
  EXPECT_NEAR(0.0, aligned->rotation(), 1e-12);

  // A stretch along the baseline widens the glyphs instead of distorting the height.
  OdDbTextPtr stretched =
      makeText(OD_T("abcd"), OdDb::kTextLeft, OdDb::kTextBase, OdGePoint3d(1, 1, 0), OdGePoint3d());
  ASSERT_EQ(eOk, stretched->transformBy(OdGeMatrix3d::scaling(OdGeScale3d(3, 1, 1))));
  EXPECT_NEAR(3.0, stretched->widthFactor(), 1e-12);
  EXPECT_NEAR(2.0, stretched->height(), 1e-12);
  expectPoint(OdGePoint3d(3, 1, 0), stretched->position());

  // A matrix that flattens the text is refused with nothing changed.
  OdDbTextPtr flat =
      makeText(OD_T("abcd"), OdDb::kTextLeft, OdDb::kTextBase, OdGePoint3d(1, 1, 0), OdGePoint3d());
  EXPECT_EQ(eInvalidInput, flat->transformBy(OdGeMatrix3d::scaling(OdGeScale3d(1, 0, 1))));
  expectPoint(OdGePoint3d(1, 1, 0), flat->position());
  EXPECT_EQ(2.0, flat->height());
}

TEST(Text, GripsAreThePositionAndTheUsedAlignmentPoint) {
  OdDbTextPtr left =
      makeText(OD_T("abcd"), OdDb::kTextLeft, OdDb::kTextBase, OdGePoint3d(1, 1, 0), OdGePoint3d());
  OdGePoint3dArray grips;
  ASSERT_EQ(eOk, left->getGripPoints(grips));
  ASSERT_EQ(1u, grips.size());
  EXPECT_EQ(eInvalidIndex, left->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(1, 0, 0)));
  ASSERT_EQ(eOk, left->moveGripPointsAt(OdIntArray{0}, OdGeVector3d(1, 0, 0)));
  expectPoint(OdGePoint3d(2, 1, 0), left->position());

  OdDbTextPtr centered = makeText(OD_T("abcd"), OdDb::kTextCenter, OdDb::kTextBase, OdGePoint3d(),
                                  OdGePoint3d(10, 0, 0));
  grips.clear();
  ASSERT_EQ(eOk, centered->getGripPoints(grips));
  ASSERT_EQ(2u, grips.size());
  expectPoint(OdGePoint3d(10 - kAbcdWidth / 2, 0, 0), grips[0]);
  expectPoint(OdGePoint3d(10, 0, 0), grips[1]);
  // Dragging the derived position drags the whole text.
  ASSERT_EQ(eOk, centered->moveGripPointsAt(OdIntArray{0}, OdGeVector3d(0, 3, 0)));
  expectPoint(OdGePoint3d(10, 3, 0), centered->alignmentPoint());
  expectPoint(OdGePoint3d(10 - kAbcdWidth / 2, 3, 0), centered->position());
  ASSERT_EQ(eOk, centered->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(1, 0, 0)));
  expectPoint(OdGePoint3d(11 - kAbcdWidth / 2, 3, 0), centered->position());

  // Explode refuses: a text is a standard entity already.
  OdRxObjectPtrArray pieces;
  EXPECT_EQ(eNotApplicable, centered->explode(pieces));
  EXPECT_TRUE(pieces.isEmpty());
}

TEST(Text, DatabaseDefaultsBringTheCurrentTextStyle) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbTextStyleTablePtr styles = db->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
  OdDbTextStyleTableRecordPtr record = OdDbTextStyleTableRecord::createObject();
  record->setName(OD_T("宋体_txtstyle_0_0"));
  const OdDbObjectId song = styles->add(record);
  db->setTEXTSTYLE(song);
  OdDbTextPtr text = OdDbText::createObject();
  text->setHeight(7.0);
  text->setDatabaseDefaults(db);
  EXPECT_EQ(song, text->textStyle());
  EXPECT_EQ(7.0, text->height()); // the height is the text's own
}

} // namespace
