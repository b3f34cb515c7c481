// The newer coordinate dimension: texts as multi-line texts of its own, laid out in the UCS. What
// every class must do is checked once by the class contract suite (tests/contract).

#include "dimensions/OdDbNewDimCoor.h"

#include "DbDatabase.h"
#include "DbLayerTable.h"
#include "DbText.h"

#include "common/EntityTestSupport.h"

#include <cmath>
#include <limits>
#include <string>

namespace {

using enttest::samePoint;
using enttest::trueColor;

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

OdDbNewDimCoorPtr dimAt(const OdGePoint3d& startPt, const OdGePoint3d& dimPt) {
  OdDbNewDimCoorPtr dim = OdDbNewDimCoor::createObject();
  dim->setStartPt(startPt);
  dim->setDimPt(dimPt);
  return dim;
}

std::vector<OdDbMTextPtr> textsOf(const OdDbNewDimCoor* dim) {
  return {dim->getXTextObj(), dim->getYTextObj(), dim->getThirdTextObj()};
}

/// A dimension with texts of its own: X "X=1" (3 characters), Y "Y=12345" (7), note "P1",
/// height 2: the shoulder reaches (7 + 1) * 2 * 0.75 = 12.
OdDbNewDimCoorPtr labelled(const OdGePoint3d& startPt, const OdGePoint3d& dimPt) {
  OdDbNewDimCoorPtr dim = dimAt(startPt, dimPt);
  dim->setXtext(u"X=1");
  dim->setYtext(u"Y=12345");
  OdDbMTextPtr third = dim->getThirdTextObj();
  dim->setDimensionText(u"P1", third);
  dim->setTextHeight(2.0);
  return dim;
}

/// Where the three texts stand, relative to the start of the texts on the shoulder, for text
/// height h: X bottom-left half a height above, Y top-left half a height under, the note a line
/// further down.
void expectTextsAt(const OdDbNewDimCoor* dim, const OdGePoint3d& base, const OdGeVector3d& along,
                   const OdGeVector3d& up, double h) {
  const struct {
    OdDbMTextPtr text;
    double rise;
    OdDbMText::AttachmentPoint attachment;
  } expected[] = {{dim->getXTextObj(), 0.5 * h, OdDbMText::kBottomLeft},
                  {dim->getYTextObj(), -0.5 * h, OdDbMText::kTopLeft},
                  {dim->getThirdTextObj(), -2.0 * h, OdDbMText::kTopLeft}};
  for (const auto& e : expected) {
    EXPECT_TRUE(samePoint(e.text->location(), base + along * (h * 2.0 / 3.0) + up * e.rise));
    EXPECT_EQ(e.text->attachment(), e.attachment);
    EXPECT_TRUE(e.text->direction().isEqualTo(along));
    EXPECT_TRUE(e.text->normal().isEqualTo(OdGeVector3d::kZAxis));
  }
}

TEST(NewDimCoor, ShoulderTextsAndDrawingFollowTheSideOfTheBendEachTextInItsColourTheLinesInTheirs) {
  struct Case {
    OdGePoint3d dimPt, endPt, base;
  } cases[] = {{{10, 5, 0}, {22, 5, 0}, {10, 5, 0}}, {{-10, 5, 0}, {-22, 5, 0}, {-22, 5, 0}}};
  const OdCmColor green = trueColor(0, 255, 0), blue = trueColor(0, 0, 255);
  for (const Case& c : cases) {
    OdDbNewDimCoorPtr dim = labelled(OdGePoint3d::kOrigin, c.dimPt);
    EXPECT_TRUE(samePoint(dim->getEndPt(), c.endPt));
    expectTextsAt(dim, c.base, OdGeVector3d::kXAxis, OdGeVector3d::kYAxis, 2.0);
    OdDbMTextPtr y = dim->getYTextObj();
    OdCmColor yColour = blue;
    dim->setColorText(y, yColour);
    const std::vector<OdGiRecord> records = enttest::drawn(dim);
    ASSERT_EQ(records.size(), 5u);
    const OdGePoint3d ends[][2] = {{OdGePoint3d::kOrigin, c.dimPt}, {c.dimPt, c.endPt}};
    for (int i = 0; i < 2; ++i) {
      ASSERT_EQ(records[i].kind, OdGiRecord::kPolyline);
      enttest::expectPoints(records[i].points, {ends[i][0], ends[i][1]});
      EXPECT_EQ(records[i].traits.trueColor(), green.entityColor());
    }
    const char16_t* texts[] = {u"X=1", u"Y=12345", u"P1"};
    const OdCmColor colours[] = {green, blue, green};
    for (int i = 0; i < 3; ++i) {
      ASSERT_EQ(records[i + 2].kind, OdGiRecord::kText);
      EXPECT_EQ(records[i + 2].text, OdString(texts[i]));
      EXPECT_EQ(records[i + 2].traits.trueColor(), colours[i].entityColor());
    }
  }
  // The entity's colour is the lines' colour; the texts keep theirs.
  OdDbNewDimCoorPtr dim = labelled(OdGePoint3d::kOrigin, {10, 5, 0});
  dim->setColorIndex(5);
  EXPECT_EQ(dim->dimColor().colorIndex(), 5);
  EXPECT_EQ(dim->getXTextObj()->color(), green);
}

TEST(NewDimCoor, LayoutIsHorizontalInTheUcsOfItsDrawing) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  // UCS turned a quarter turn: its x axis is the world's y axis.
  db->setUcs(OdGePoint3d(5, 0, 0), OdGeVector3d::kYAxis, -OdGeVector3d::kXAxis);
  OdDbNewDimCoorPtr dim = OdDbNewDimCoor::createObject();
  dim->setDatabaseDefaults(db);
  dim->setStartPt(OdGePoint3d(5, 0, 0));
  dim->setDimPt(OdGePoint3d(0, 10, 0)); // UCS (10, 5): right of the point there
  dim->setXtext(u"X=1");
  dim->setYtext(u"Y=12345");
  dim->setTextHeight(2.0);
  EXPECT_TRUE(samePoint(dim->getEndPt(), OdGePoint3d(0, 22, 0)));
  expectTextsAt(dim, OdGePoint3d(0, 10, 0), OdGeVector3d::kYAxis, -OdGeVector3d::kXAxis, 2.0);
  dim->updateTxtPosition(); // places the texts again on the shoulder as it stands
  expectTextsAt(dim, OdGePoint3d(0, 10, 0), OdGeVector3d::kYAxis, -OdGeVector3d::kXAxis, 2.0);
  // Back in the world system the same dimension lays out along world x again.
  db->setUcs(OdGePoint3d::kOrigin, OdGeVector3d::kXAxis, OdGeVector3d::kYAxis);
  dim->setArrow();
  EXPECT_TRUE(samePoint(dim->getEndPt(), OdGePoint3d(-12, 10, 0)));
  expectTextsAt(dim, OdGePoint3d(-12, 10, 0), OdGeVector3d::kXAxis, OdGeVector3d::kYAxis, 2.0);
}

TEST(NewDimCoor, DimensionTextOperationsWorkOnTheGivenTextAndIgnoreUnusableHeights) {
  OdDbNewDimCoorPtr dim = labelled({0, 0, 0}, {10, 0, 0});
  OdDbMTextPtr none;
  EXPECT_FALSE(dim->setDimensionText(u"lost", none));
  OdDbMTextPtr y = dim->getYTextObj();
  EXPECT_TRUE(dim->setDimensionText(u"Y=123456789", y));
  EXPECT_EQ(dim->getYTextObj()->contents(), OdString(u"Y=123456789"));
  EXPECT_TRUE(samePoint(dim->getEndPt(), OdGePoint3d(10 + 12 * 2 * 0.75, 0, 0)));

  OdDbMTextPtr edited = OdDbMText::createObject();
  edited->setContents(u"X=edited");
  edited->setTextHeight(4.0);
  OdDbMTextPtr x = dim->getXTextObj();
  EXPECT_FALSE(dim->editDimensionText(x, OdDbMTextPtr()));
  EXPECT_FALSE(dim->editDimensionText(none, edited));
  EXPECT_TRUE(dim->editDimensionText(x, edited));
  EXPECT_EQ(dim->getXTextObj()->contents(), OdString(u"X=edited"));
  for (const OdDbMTextPtr& text : textsOf(dim))
    EXPECT_EQ(text->textHeight(), 4.0);
  EXPECT_TRUE(samePoint(dim->getEndPt(), OdGePoint3d(10 + 12 * 4 * 0.75, 0, 0)));

  // Heights too small or not finite are ignored, down to 1e-8.
  for (double height : {5e-9, -2.0, kNaN, kInf}) {
    SCOPED_TRACE(height);
    dim->setFontHeight(x, height);
    dim->setTextHeight(height);
    for (const OdDbMTextPtr& text : textsOf(dim))
      EXPECT_EQ(text->textHeight(), 4.0);
    EXPECT_TRUE(samePoint(dim->getEndPt(), OdGePoint3d(10 + 12 * 4 * 0.75, 0, 0)));
  }
  dim->setFontHeight(x, 1e-8);
  EXPECT_EQ(dim->getXTextObj()->textHeight(), 1e-8);
  EXPECT_EQ(dim->getYTextObj()->textHeight(), 4.0);

  OdDbDatabasePtr db = OdDbDatabase::createObject();
  dim->setTxtStyleId(db->getTextStyleStandardId());
  for (const OdDbMTextPtr& text : textsOf(dim))
    EXPECT_EQ(text->textStyle(), db->getTextStyleStandardId());
}

void writeHead(enttest::Filer& filer, double version, const OdGePoint3d& endPt) {
  OdDbNewDimCoorPtr base = OdDbNewDimCoor::createObject();
  base->setColorIndex(4);
  base->OdDbEntity::dwgOutFields(&filer);
  filer.wrDouble(version);
  filer.wrPoint3d(OdGePoint3d(1, 2, 0));
  filer.wrPoint3d(OdGePoint3d(11, 12, 0));
  filer.wrPoint3d(endPt);
  filer.wrBool(false);
  trueColor(9, 8, 7).dwgOut(&filer);
}

OdDbMTextPtr textWith(const OdString& contents, double height, OdUInt16 colorIndex) {
  OdDbMTextPtr text = OdDbMText::createObject();
  text->setContents(contents);
  text->setTextHeight(height);
  text->setColorIndex(colorIndex);
  return text;
}

/// A record as drawings carry it, with a stale shoulder end that reading must rebuild.
void writeRecord(enttest::Filer& filer, double version) {
  filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  writeHead(filer, version, OdGePoint3d(99, 99, 99));
  textWith(u"X=north", 2.0, 1)->dwgOutFields(&filer);
  textWith(u"Y=east", 2.0, 2)->dwgOutFields(&filer);
  textWith(u"P7", 2.0, 3)->dwgOutFields(&filer);
  filer.rewind();
}

TEST(NewDimCoor, ReadsItsRecordAndLaysItselfOutAgain) {
  // Read into a drawing, the texts keep their own properties rather than its defaults.
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  db->setCECOLOR(trueColor(1, 1, 1));
  db->setTEXTSIZE(7.0);
  enttest::Filer filer;
  writeRecord(filer, 1.0);
  OdDbNewDimCoorPtr dim = OdDbNewDimCoor::createObject();
  dim->setDatabaseDefaults(db);
  ASSERT_EQ(dim->dwgInFields(&filer), eOk);
  EXPECT_EQ(dim->colorIndex(), 4);
  const char16_t* contents[] = {u"X=north", u"Y=east", u"P7"};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(textsOf(dim)[i]->contents(), OdString(contents[i]));
    EXPECT_EQ(textsOf(dim)[i]->colorIndex(), i + 1);
    EXPECT_EQ(textsOf(dim)[i]->textHeight(), 2.0);
    EXPECT_EQ(textsOf(dim)[i]->database(), db.get());
  }
  expectTextsAt(dim, OdGePoint3d(11, 12, 0), OdGeVector3d::kXAxis, OdGeVector3d::kYAxis, 2.0);

  // Written again, it is the same record with the shoulder end rebuilt: (7 + 1) * 2 * 0.75
  // right of the bend.
  enttest::Filer own, expected;
  own.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  dim->dwgOutFields(&own);
  expected.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  writeHead(expected, 1.0, OdGePoint3d(23, 12, 0));
  for (const OdDbMTextPtr& text : textsOf(dim))
    text->dwgOutFields(&expected);
  EXPECT_EQ(own.dataBitSize(), expected.dataBitSize());
  EXPECT_TRUE(own.dataBuffer() == expected.dataBuffer());

  // Attached to the drawing again, a text keeps a layer of its own.
  OdDbLayerTablePtr layers = db->getLayerTableId().safeOpenObject(OdDb::kForWrite);
  OdDbLayerTableRecordPtr wall = OdDbLayerTableRecord::createObject();
  wall->setName(u"Wall");
  const OdDbObjectId wallId = layers->add(wall);
  dim->getXTextObj()->setLayer(wallId);
  dim->setDatabaseDefaults(db);
  EXPECT_EQ(dim->getXTextObj()->layerId(), wallId);
}

TEST(NewDimCoor, ReadingKeepsTheUcsTheDimensionWasLaidOutIn) {
  OdDbDatabasePtr turned = OdDbDatabase::createObject();
  turned->setUcs(OdGePoint3d::kOrigin, OdGeVector3d::kYAxis, -OdGeVector3d::kXAxis);
  OdDbNewDimCoorPtr source = OdDbNewDimCoor::createObject();
  source->setDatabaseDefaults(turned);
  source->setDimPt(OdGePoint3d(0, 10, 0));
  const OdGePoint3d endPt = source->getEndPt();
  ASSERT_TRUE(samePoint(endPt, OdGePoint3d(0, 23.125, 0)));

  // Read into a drawing whose UCS is the world's, it stays as it was laid out.
  OdDbDatabasePtr world = OdDbDatabase::createObject();
  OdDbNewDimCoorPtr copy = OdDbNewDimCoor::createObject();
  copy->setDatabaseDefaults(world);
  ASSERT_EQ(enttest::copyThroughDwg(source, copy), eOk);
  EXPECT_TRUE(samePoint(copy->getEndPt(), endPt));
  EXPECT_TRUE(copy->getXTextObj()->direction().isEqualTo(OdGeVector3d::kYAxis));
  EXPECT_EQ(enttest::wholeRecord(copy), enttest::wholeRecord(source));
  // The next edit lays it out in its own drawing's UCS.
  copy->setArrow();
  EXPECT_TRUE(samePoint(copy->getEndPt(), OdGePoint3d(13.125, 10, 0)));
}

TEST(NewDimCoor, OnlyVersionOneIsRead) {
  for (double version : {0.0, 2.0, 1.0 + 1e-12, kNaN}) {
    SCOPED_TRACE(version);
    enttest::Filer filer;
    writeRecord(filer, version);
    OdDbNewDimCoorPtr dim = OdDbNewDimCoor::createObject();
    EXPECT_EQ(static_cast<int>(dim->dwgInFields(&filer)), 1);
    EXPECT_EQ(dim->colorIndex(), 4);
    EXPECT_EQ(enttest::ownRecord(dim), enttest::ownRecord(OdDbNewDimCoor::createObject()));
  }
}

TEST(NewDimCoor, TransformMovesPointsAndTextsOrNothing) {
  OdDbNewDimCoorPtr dim = labelled({0, 0, 0}, {10, 0, 0});
  ASSERT_EQ(dim->transformBy(OdGeMatrix3d::rotation(OdaPI / 2, OdGeVector3d::kZAxis)), eOk);
  EXPECT_TRUE(samePoint(dim->getDimPt(), OdGePoint3d(0, 10, 0)));
  EXPECT_TRUE(samePoint(dim->getEndPt(), OdGePoint3d(0, 22, 0)));
  EXPECT_TRUE(dim->getXTextObj()->direction().isEqualTo(OdGeVector3d::kYAxis));
  EXPECT_TRUE(samePoint(dim->getXTextObj()->location(), OdGePoint3d(-1, 10 + 4.0 / 3.0, 0)));

  // A matrix that flattens the texts is refused by them, and so by the dimension.
  OdGeMatrix3d flatten = OdGeMatrix3d::scaling(OdGeScale3d(1.0, 0.0, 1.0));
  const OdGePoint3d location = dim->getXTextObj()->location();
  EXPECT_NE(dim->transformBy(flatten), eOk);
  EXPECT_TRUE(samePoint(dim->getDimPt(), OdGePoint3d(0, 10, 0)));
  EXPECT_TRUE(samePoint(dim->getXTextObj()->location(), location));
}

TEST(NewDimCoor, ExplodesIntoLinesAndTextsAndSuperExplodesTheTextsToo) {
  OdDbNewDimCoorPtr dim = labelled({0, 0, 0}, {10, 0, 0});
  OdRxObjectPtrArray pieces;
  ASSERT_EQ(dim->explode(pieces), eOk);
  ASSERT_EQ(pieces.size(), 5u);
  enttest::expectLines(pieces, {{{0, 0, 0}, {10, 0, 0}}, {{10, 0, 0}, {22, 0, 0}}});
  for (int i = 2; i < 5; ++i) // copies, not the dimension's own
    EXPECT_NE(pieces[i].get(), textsOf(dim)[i - 2].get());
  OdArray<OdRxObjectPtr> all;
  ASSERT_EQ(dim->subSuperExplode(all), eOk);
  ASSERT_EQ(all.size(), 5u);
  const char16_t* texts[] = {u"X=1", u"Y=12345", u"P1"};
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(OdDbText::cast(all[i + 2].get())->textString(), OdString(texts[i]));

  // An empty note line is left out.
  OdDbMTextPtr third = dim->getThirdTextObj();
  dim->setDimensionText(OdString(), third);
  pieces.clear();
  ASSERT_EQ(dim->explode(pieces), eOk);
  EXPECT_EQ(pieces.size(), 4u);
}

} // namespace
