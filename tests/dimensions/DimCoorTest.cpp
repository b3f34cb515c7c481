// The layout both coordinate dimensions share, what they do alike (typed, for both classes), and
// the older dimension's own rules. What every class must do is checked once by the class contract
// suite (tests/contract).

#include "dimensions/OdDbDimCoor.h"
#include "dimensions/OdDbNewDimCoor.h"

#include "BrevantApp.h"
#include "DbTextStyleTable.h"
#include "dimensions/CoorDimExtensions.h"

#include "common/EntityTestSupport.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <unistd.h>
#include <vector>

namespace {

using enttest::samePoint;
using enttest::trueColor;

/// Points the host's profile at a file of its own holding `precision` (or no setting at all)
/// for the life of the object.
class ScopedPrecision {
public:
  explicit ScopedPrecision(const int* precision)
      : m_previous(TheApp()->profilePath()),
        m_path("/tmp/custents-dimtest-" + std::to_string(getpid()) + ".ini") {
    std::remove(m_path.c_str());
    TheApp()->setProfilePath(OdString(m_path.c_str()));
    if (precision) {
      EXPECT_TRUE(TheApp()->WriteProfileInt(u"options", u"dimAccurity", *precision));
    }
  }
  explicit ScopedPrecision(int precision) : ScopedPrecision(&precision) {}
  ~ScopedPrecision() {
    TheApp()->setProfilePath(m_previous);
    std::remove(m_path.c_str());
  }

private:
  OdString m_previous;
  std::string m_path;
};

/// The fields of a record, for writing streams as drawings carry them.
struct Record {
  double version = 3.0;
  OdGePoint3d startPt{1, 2, 0}, dimPt{5, 6, 0}, endPt{9, 6, 0};
  double txtHeight = 3.0, txtOffsetX = 1.5, txtOffsetY = 0.25, txtGap = 0.75;
  bool xUp = false;
  OdString xText = u"X=north", yText = u"Y=east";
  bool colours = true;
  OdCmColor dimColor = trueColor(10, 20, 30), txtColor = trueColor(40, 50, 60);
};

void writeFields(const Record& r, OdDbDwgFiler* filer) {
  filer->wrDouble(r.version);
  for (const OdGePoint3d& p : {r.startPt, r.dimPt, r.endPt})
    filer->wrPoint3d(p);
  for (double d : {r.txtHeight, r.txtOffsetX, r.txtOffsetY, r.txtGap})
    filer->wrDouble(d);
  filer->wrBool(r.xUp);
  filer->wrString(r.xText);
  filer->wrString(r.yText);
  if (r.colours) {
    r.dimColor.dwgOut(filer);
    r.txtColor.dwgOut(filer);
  }
}

/// Entity data (colour 4), then the record.
void write(const Record& r, enttest::Filer& filer) {
  filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  OdDbDimCoorPtr base = OdDbDimCoor::createObject();
  base->setColorIndex(4);
  base->OdDbEntity::dwgOutFields(&filer);
  writeFields(r, &filer);
  filer.rewind();
}

OdDbDimCoorPtr read(const Record& r) {
  enttest::Filer filer;
  write(r, filer);
  OdDbDimCoorPtr dim = OdDbDimCoor::createObject();
  EXPECT_EQ(dim->dwgInFields(&filer), eOk);
  return dim;
}

/// The record's data and strings in hex, as enttest::ownRecord gives them.
std::string fieldsOf(const Record& r) {
  enttest::Filer filer;
  filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  writeFields(r, &filer);
  return enttest::toHex(filer.dataBuffer()) + "|" + enttest::toHex(filer.stringBuffer());
}

template <class Dim> OdSmartPtr<Dim> dimAt(const OdGePoint3d& startPt, const OdGePoint3d& dimPt) {
  OdSmartPtr<Dim> dim = Dim::createObject();
  dim->setStartPt(startPt);
  dim->setDimPt(dimPt);
  return dim;
}

TEST(CoordinateLayout, FormatsTakeTheDecimalsClampedToWhatADoubleCarries) {
  struct Case {
    int precision;
    const char16_t* format;
    const char16_t* shown;
  } cases[] = {{2, u"X=%.2f", u"X=1234.57"},
               {0, u"X=%.0f", u"X=1235"},
               {-4, u"X=%.0f", u"X=1235"},
               {40, u"X=%.15f", u"X=1234.567800000000034"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.precision);
    const OdString format = custents::coordinateFormat(u"X=", c.precision);
    EXPECT_EQ(format, OdString(c.format));
    EXPECT_EQ(custents::formatCoordinate(format, 1234.5678), OdString(c.shown));
  }
}

TEST(CoordinateLayout, PrecisionComesFromTheHostProfile) {
  const auto precisionWith = [](const int* setting) {
    ScopedPrecision profile(setting);
    return custents::profileCoordinatePrecision();
  };
  const int three = 3, negative = -2, huge = 1000;
  EXPECT_EQ(precisionWith(&three), 3);
  EXPECT_EQ(precisionWith(&negative), 0);
  EXPECT_EQ(precisionWith(&huge), 15);
  EXPECT_EQ(precisionWith(nullptr), 0);
}

TEST(CoordinateLayout, ShoulderReachesRightFromABendAtOrRightOfThePointElseLeft) {
  struct Case {
    OdGePoint3d start, dim;
    int longest;
    double height;
    OdGePoint3d end;
  } cases[] = {
      {{0, 0, 0}, {10, 5, 1}, 7, 2.0, {22, 5, 1}},  // (7 + 1) * 2 * 0.75 = 12
      {{10, 0, 0}, {10, 5, 0}, 7, 2.0, {22, 5, 0}}, // a bend straight above reaches right
      {{0, 0, 0}, {-10, 5, 0}, 7, 2.0, {-22, 5, 0}},
      {{0, 0, 0}, {3, 3, 0}, 0, 4.0, {6, 3, 0}},
  };
  for (const Case& c : cases)
    EXPECT_TRUE(samePoint(custents::shoulderEnd(c.start, c.dim, c.longest, c.height), c.end));
}

TEST(CoordinateLayout, LeaderSnapsAreEndsMiddleFootAndNearestOnTheSegment) {
  const OdGePoint3d a(0, 0, 0), b(10, 0, 0);
  struct Case {
    OdDb::OsnapMode mode;
    OdGePoint3d from, to, pick, last;
    std::vector<OdGePoint3d> expected;
  } cases[] = {
      {OdDb::kOsModeEnd, a, b, {}, {}, {a, b}},
      {OdDb::kOsModeMid, a, b, {}, {}, {{5, 0, 0}}},
      {OdDb::kOsModePerp, a, b, {}, {14, 3, 0}, {{14, 0, 0}}}, // the infinite line
      {OdDb::kOsModeNear, a, b, {4, 7, 0}, {}, {{4, 0, 0}}},
      {OdDb::kOsModeNear, a, b, {12, 7, 0}, {}, {b}},
      {OdDb::kOsModeNear, a, b, {-3, 1, 0}, {}, {a}},
      {OdDb::kOsModeNear, a, a, {5, 5, 0}, {}, {a}},
      {OdDb::kOsModePerp, a, a, {}, {5, 5, 0}, {}},
      {OdDb::kOsModeCen, a, b, {}, {}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.mode);
    OdGePoint3dArray points;
    points.append(OdGePoint3d(7, 7, 7)); // points already there stay
    custents::appendLeaderSnaps(c.mode, c.from, c.to, c.pick, c.last, points);
    ASSERT_EQ(points.size(), c.expected.size() + 1);
    for (unsigned int i = 0; i < c.expected.size(); ++i)
      EXPECT_TRUE(samePoint(points[i + 1], c.expected[i])) << i;
  }
}

// ---------------------------------------------------------------------------------------------
// Both coordinate dimensions: the older keeps its texts as strings, the newer as texts of its own.

template <class Dim> struct Texts;
template <> struct Texts<OdDbDimCoor> {
  static OdString x(const OdDbDimCoor* dim) { return dim->getXText(); }
  static OdString y(const OdDbDimCoor* dim) { return dim->getYText(); }
  static void setX(OdDbDimCoor* dim, const OdString& text) { dim->setXText(text); }
  static void setY(OdDbDimCoor* dim, const OdString& text) { dim->setYText(text); }
};
template <> struct Texts<OdDbNewDimCoor> {
  static OdString x(const OdDbNewDimCoor* dim) { return dim->getXTextObj()->contents(); }
  static OdString y(const OdDbNewDimCoor* dim) { return dim->getYTextObj()->contents(); }
  static void setX(OdDbNewDimCoor* dim, const OdString& text) { dim->setXtext(text); }
  static void setY(OdDbNewDimCoor* dim, const OdString& text) { dim->setYtext(text); }
};

template <class Dim> class CoorDim : public testing::Test {};
using CoorDims = testing::Types<OdDbDimCoor, OdDbNewDimCoor>;
TYPED_TEST_SUITE(CoorDim, CoorDims);

TYPED_TEST(CoorDim, SetTxtAccLabelsNorthingAsXUnderTheSurveyConventionAndTheFillInDoesNot) {
  using T = Texts<TypeParam>;
  struct Case {
    int precision;
    bool xUp;
    const char16_t *x, *y;
  } cases[] = {{2, false, u"X=100.00", u"Y=200.00"}, {0, true, u"X=200", u"Y=100"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.precision);
    ScopedPrecision precision(c.precision);
    OdSmartPtr<TypeParam> dim = dimAt<TypeParam>({100, 200, 0}, {110, 210, 0});
    dim->setXUp(c.xUp);
    dim->setTxtAcc();
    EXPECT_EQ(T::x(dim), OdString(c.x));
    EXPECT_EQ(T::y(dim), OdString(c.y));
    // The names never swap: x and y with the formats just made.
    EXPECT_EQ(dim->GetXName(), custents::formatCoordinate(dim->getXFormat(), 100.0));
    EXPECT_EQ(dim->GetYName(), custents::formatCoordinate(dim->getYFormat(), 200.0));
    // The shoulder follows the longer text: (length + 1) * 2.5 * 0.75.
    const double reach = (OdString(c.x).getLength() + 1) * 2.5 * 0.75;
    EXPECT_TRUE(samePoint(enttest::drawn(dim)[1].points[1], OdGePoint3d(110 + reach, 210, 0)));
  }
  // Required behaviour: empty texts are filled in with x for the X text, unlike setTxtAcc.
  OdSmartPtr<TypeParam> dim = dimAt<TypeParam>({100, 200, 0}, {});
  T::setX(dim, OdString());
  T::setY(dim, OdString());
  EXPECT_EQ(dim->GetTextMaxLength(), 8);
  EXPECT_EQ(T::x(dim), OdString(u"X=100.00"));
  EXPECT_EQ(T::y(dim), OdString(u"Y=200.00"));
  T::setY(dim, u"Y=a longer text");
  EXPECT_EQ(dim->GetTextMaxLength(), 15);
}

TYPED_TEST(CoorDim, TheOneGripMovesThePointAndRelabelsItAndSnapsComeFromTheLeader) {
  using T = Texts<TypeParam>;
  ScopedPrecision precision(1);
  OdSmartPtr<TypeParam> dim = dimAt<TypeParam>({100, 200, 0}, {110, 210, 0});
  const OdDbGripDataPtrArray grips = enttest::gripsOf(dim);
  ASSERT_EQ(grips.size(), 1u);
  EXPECT_TRUE(samePoint(grips[0]->gripPoint(), OdGePoint3d(100, 200, 0)));
  EXPECT_EQ(enttest::gripIndex(grips[0]), 0);

  T::setY(dim, u"Y=kept");
  ASSERT_EQ(enttest::moveGrips(dim, {1, -1}, OdGeVector3d(5, 5, 0)), eOk);
  EXPECT_TRUE(samePoint(dim->getStartPt(), OdGePoint3d(100, 200, 0)));
  EXPECT_EQ(T::y(dim), OdString(u"Y=kept"));

  ASSERT_EQ(enttest::moveGrips(dim, {0}, OdGeVector3d(0.3, -0.5, 0)), eOk);
  EXPECT_TRUE(samePoint(dim->getStartPt(), OdGePoint3d(100.3, 199.5, 0)));
  EXPECT_EQ(T::x(dim), OdString(u"X=199.5"));
  EXPECT_EQ(T::y(dim), OdString(u"Y=100.3"));
  EXPECT_TRUE(samePoint(dim->getDimPt(), OdGePoint3d(110, 210, 0)));

  // The shoulder's end is no snap.
  enttest::expectPoints(enttest::snapsOf(dim, OdDb::kOsModeEnd),
                        {{100.3, 199.5, 0}, {110, 210, 0}});
  EXPECT_TRUE(enttest::snapsOf(dim, OdDb::kOsModeQuad).isEmpty());
}

// ---------------------------------------------------------------------------------------------
// The older coordinate dimension

TEST(DimCoor, SetColorColoursTheLinesAndTheArrowIsTheShoulderStoringItsEnd) {
  OdDbDimCoorPtr dim = dimAt<OdDbDimCoor>({0, 0, 0}, {-10, 10, 0});
  dim->setXText(u"X=1");
  dim->setYText(u"Y=12345"); // 7 characters: (7 + 1) * 2.5 * 0.75 = 15 to the left
  const OdCmColor textColour = dim->getTxtColor();
  dim->setColorIndex(3); // the lines' colour, not the texts'
  EXPECT_EQ(dim->getDimColor().colorIndex(), 3);
  EXPECT_EQ(dim->getTxtColor(), textColour);
  OdRxObjectPtrArray arrow;
  arrow.append(dim->getArrow());
  enttest::expectLines(arrow, {{{-10, 10, 0}, {-25, 10, 0}}});
  EXPECT_TRUE(samePoint(dim->getEndPt(), OdGePoint3d(-25, 10, 0)));
  EXPECT_EQ(OdDbLine::cast(arrow[0].get())->colorIndex(), 3);
}

TEST(DimCoor, TextsStandOnAndUnderTheShoulderWithTheirOffsetsInTheHztxtStyleOfTheirDrawing) {
  struct Case {
    OdGePoint3d dimPt;
    OdDb::TextHorzMode mode;
    OdGePoint3d base; // the bend right of the point, the far end left of it
  } cases[] = {{{5, 6, 0}, OdDb::kTextLeft, {5, 6, 0}},
               // Left: (7 + 1) * 3 * 0.75 = 18 to the left of the bend, text centred there.
               {{-5, 6, 0}, OdDb::kTextCenter, {-23, 6, 0}}};
  for (const Case& c : cases) {
    Record r;
    r.dimPt = c.dimPt;
    OdDbDimCoorPtr dim = read(r);
    // x offset 1.5; the X text 0.75 above, the Y text 0.75 + 3 below.
    const struct {
      OdDbTextPtr text;
      const char16_t* contents;
      OdDb::TextVertMode vertical;
      OdGeVector3d offset;
    } texts[] = {{dim->getXTextObj(), u"X=north", OdDb::kTextBottom, {1.5, 0.75, 0}},
                 {dim->getYTextObj(), u"Y=east", OdDb::kTextTop, {1.5, -3.75, 0}}};
    for (const auto& t : texts) {
      ASSERT_FALSE(t.text.isNull());
      EXPECT_EQ(t.text->textString(), OdString(t.contents));
      EXPECT_EQ(t.text->horizontalMode(), c.mode);
      EXPECT_EQ(t.text->verticalMode(), t.vertical);
      EXPECT_EQ(t.text->height(), 3.0);
      EXPECT_TRUE(samePoint(t.text->alignmentPoint(), c.base + t.offset));
      EXPECT_EQ(t.text->color(), trueColor(40, 50, 60));
      EXPECT_TRUE(t.text->textStyle().isNull()) << "no drawing, no style";
    }
  }
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbDimCoorPtr dim = read(Record());
  dim->setDatabaseDefaults(db);
  const OdDbObjectId style = dim->getCurTextStyle(db, 0.2, u"hztxt", u"hztxt.shx", 0, 0, 12.0);
  EXPECT_EQ(dim->getXTextObj()->textStyle(), style);
  EXPECT_EQ(dim->getYTextObj()->textStyle(), style);
}

TEST(DimCoor, DrawsAndExplodesLeaderShoulderAndBothTextsInTheirColoursOrTheLinesAlone) {
  OdDbDimCoorPtr dim = read(Record());
  const std::vector<OdGiRecord> records = enttest::drawn(dim);
  ASSERT_EQ(records.size(), 4u);
  const OdGePoint3d ends[][2] = {{{1, 2, 0}, {5, 6, 0}}, {{5, 6, 0}, {23, 6, 0}}};
  const char16_t* texts[] = {u"X=north", u"Y=east"};
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(records[i].kind, OdGiRecord::kPolyline);
    enttest::expectPoints(records[i].points, {ends[i][0], ends[i][1]});
    EXPECT_EQ(records[i].traits.trueColor(), trueColor(10, 20, 30).entityColor());
    ASSERT_EQ(records[i + 2].kind, OdGiRecord::kText);
    EXPECT_EQ(records[i + 2].text, OdString(texts[i]));
    EXPECT_EQ(records[i + 2].height, 3.0);
    EXPECT_EQ(records[i + 2].traits.trueColor(), trueColor(40, 50, 60).entityColor());
  }
  OdRxObjectPtrArray pieces;
  ASSERT_EQ(dim->explode(pieces), eOk);
  ASSERT_EQ(pieces.size(), 4u);
  enttest::expectLines(pieces, {{ends[0][0], ends[0][1]}, {ends[1][0], ends[1][1]}});
  EXPECT_EQ(OdDbLine::cast(pieces[0].get())->color(), trueColor(10, 20, 30));
  for (int i = 2; i < 4; ++i)
    EXPECT_EQ(OdDbText::cast(pieces[i].get())->color(), trueColor(40, 50, 60));

  // A text height that is no usable height leaves the texts out (one that is no number does
  // not get this far: the stream is refused).
  for (double height : {0.0, -1.0}) {
    SCOPED_TRACE(height);
    Record r;
    r.txtHeight = height;
    dim = read(r);
    EXPECT_TRUE(dim->getXTextObj().isNull());
    EXPECT_EQ(enttest::drawn(dim).size(), 2u);
    pieces.clear();
    EXPECT_EQ(dim->explode(pieces), eOk);
    EXPECT_EQ(pieces.size(), 2u);
  }
}

TEST(DimCoor, RecordIsItsFieldTableReadUpToVersionThreeWithColoursOnlyFromThree) {
  struct Case {
    double version;
    bool colours;
    int expected;
  } cases[] = {{3.0, true, eOk},          {2.0, false, eOk},
               {3.0 + 5e-11, false, eOk}, // rounding tolerated, but it is not 3.0
               {3.0 + 1e-9, true, 1},     {4.0, true, 1},
               {std::nan(""), true, 1}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.version);
    Record r;
    r.version = c.version;
    r.colours = c.colours;
    enttest::Filer filer;
    write(r, filer);
    OdDbDimCoorPtr dim = OdDbDimCoor::createObject();
    EXPECT_EQ(static_cast<int>(dim->dwgInFields(&filer)), c.expected);
    EXPECT_EQ(dim->colorIndex(), 4); // the entity's data comes before the version
    if (c.expected != eOk) {
      EXPECT_EQ(enttest::ownRecord(dim), enttest::ownRecord(OdDbDimCoor::createObject()));
      continue;
    }
    // Written again: the current version, with the default colours where none were read.
    Record written = r;
    written.version = 3.0;
    written.colours = true;
    if (!c.colours)
      written.dimColor = written.txtColor = trueColor(0, 255, 0);
    EXPECT_EQ(enttest::ownRecord(dim), fieldsOf(written));
  }
}

TEST(DimCoor, TransformMovesThePointsButNotTheTextHeight) {
  OdDbDimCoorPtr dim = read(Record());
  ASSERT_EQ(dim->transformBy(OdGeMatrix3d::scaling(2.0)), eOk);
  EXPECT_TRUE(samePoint(dim->getStartPt(), OdGePoint3d(2, 4, 0)));
  EXPECT_TRUE(samePoint(dim->getDimPt(), OdGePoint3d(10, 12, 0)));
  EXPECT_TRUE(samePoint(dim->getEndPt(), OdGePoint3d(18, 12, 0)));
  EXPECT_EQ(dim->getTxtHeight(), 3.0);
  EXPECT_EQ(dim->getXText(), OdString(u"X=north"));
}

} // namespace
