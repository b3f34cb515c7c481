#include "common/TextStyles.h"

#include "DbDxfFile.h"
#include "DbTextStyleTable.h"
#include "GlobalShared.h"
#include "OdError.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

TEST(FontFileName, LastFaceAgreeingOverTheShorterLengthWins) {
  struct Case {
    const char16_t* face;
    const char* file;
  } const cases[] = {
      {u"Arial", "ARIAL.TTF"},
      {u"Arial Black", "ARIAL.TTF"}, // agrees with "Arial" over five characters
      {u"Ar", "ARIAL.TTF"},
      {u"", "hztxt.shx"}, // agrees with every entry, so the last one
      {u"宋体", "SIMSUN.TTC"},
      {u"新宋体", "SIMSUN.TTC"},
      {u"华", "STZHONGS.TTF"},     // the last of the 华文 faces
      {u"华文细黑", "simsun.ttc"}, // the table spells this face 花纹细黑
      {u"花纹细黑", "STXIHEI.TTF"},
      {u"微软雅黑", "msyh.ttf"},
      {u"hztxt", "hztxt.shx"},
      {u"HZTXT", "simsun.ttc"}, // case-sensitive
      {u"arial", "simsun.ttc"},
      {u"Courier New", "simsun.ttc"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(OdString(c.face).toUtf8());
    EXPECT_EQ(std::string(c.file), custents::getFontFileName(c.face).toUtf8());
  }
}

struct StyleFacts {
  OdString name, fileName, bigFontFileName, typeface;
  bool bold = false, italic = false, shapeFile = true;
  double textSize = -1.0, xScale = -1.0, oblique = -1.0, priorSize = -1.0;
};

StyleFacts factsOf(OdDbObjectId id) {
  OdDbTextStyleTableRecordPtr style = id.safeOpenObject();
  StyleFacts facts;
  facts.name = style->getName();
  facts.fileName = style->fileName();
  facts.bigFontFileName = style->bigFontFileName();
  int charset = 0, pitch = 0;
  style->font(facts.typeface, facts.bold, facts.italic, charset, pitch);
  facts.shapeFile = style->isShapeFile();
  facts.textSize = style->textSize();
  facts.xScale = style->xScale();
  facts.oblique = style->obliquingAngle();
  facts.priorSize = style->priorSize();
  return facts;
}

unsigned styleCount(const OdDbDatabasePtr& database) {
  OdDbTextStyleTablePtr table = database->getTextStyleTableId().safeOpenObject();
  return table->numRecords();
}

/// The template folder points at a folder of the test's own, empty unless a test writes a
/// template into it.
class TextStylesTest : public ::testing::Test {
protected:
  void SetUp() override {
    char pattern[] = "/tmp/custents-styles-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(pattern));
    folder = pattern;
    GlobalShared::setTemplateFolder(OdString(folder.string().c_str()));
    database = OdDbDatabase::createObject();
  }
  void TearDown() override {
    GlobalShared::setTemplateFolder(OdString());
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }

  /// A host template with one TrueType style named name for face.
  void writeTemplate(const OdString& name, const OdString& face) {
    OdDbDatabasePtr source = OdDbDatabase::createObject();
    OdDbTextStyleTablePtr table = source->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
    OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
    style->setName(name);
    style->setFileName(OD_T("TEMPLATE.TTF"));
    style->setFont(face, false, false, 134, 0);
    table->add(style);
    table.release();
    const OdString path((folder / "BrevantArchEx.dwt").string().c_str());
    ASSERT_EQ(eOk, odDbWriteDxf(source.get(), path));
  }

  fs::path folder;
  OdDbDatabasePtr database;
};

TEST_F(TextStylesTest, TrueTypeStyleIsCreatedWithTheFace) {
  const OdDbObjectId id =
      custents::getCurTextStyle(database, 3.0, u"Courier New", u"COUR.TTF", 1, 0);
  const StyleFacts facts = factsOf(id);
  EXPECT_EQ(OdString(u"Courier New_txtstyle_1_0"), facts.name);
  EXPECT_EQ(OdString(u"COUR.TTF"), facts.fileName);
  EXPECT_EQ(OdString(), facts.bigFontFileName);
  EXPECT_EQ(OdString(u"Courier New"), facts.typeface);
  EXPECT_TRUE(facts.bold);
  EXPECT_FALSE(facts.italic);
  EXPECT_FALSE(facts.shapeFile);
  EXPECT_EQ(0.0, facts.textSize);
  EXPECT_EQ(1.0, facts.xScale);
  EXPECT_EQ(0.0, facts.oblique);
  EXPECT_EQ(3.0, facts.priorSize);
}

TEST_F(TextStylesTest, ShxFileInAnyCaseMakesABigFontStyleWithoutFace) {
  for (const char16_t* file : {u"hztxt.shx", u"HZTXT.SHX", u"HzTxt.ShX"}) {
    SCOPED_TRACE(OdString(file).toUtf8());
    OdDbDatabasePtr db = OdDbDatabase::createObject();
    const StyleFacts facts = factsOf(custents::getCurTextStyle(db, 5.0, u"hztxt", file, 0, 1));
    EXPECT_EQ(OdString(u"hztxt_txtstyle_0_1"), facts.name);
    EXPECT_EQ(OdString(file), facts.bigFontFileName);
    EXPECT_EQ(OdString(u"tssdeng.shx"), facts.fileName);
    EXPECT_EQ(OdString(), facts.typeface);
    EXPECT_FALSE(facts.shapeFile);
    EXPECT_EQ(5.0, facts.priorSize); // the caller's size, not the SHX default
  }
  // "shx" must be the last three characters: a TrueType file that merely contains it is not.
  const StyleFacts ttf = factsOf(custents::getCurTextStyle(database, 5.0, u"x", u"shx.ttf", 0, 0));
  EXPECT_EQ(OdString(u"shx.ttf"), ttf.fileName);
  EXPECT_EQ(OdString(u"x"), ttf.typeface);
}

TEST_F(TextStylesTest, SizedNameForm) {
  const OdDbObjectId id =
      custents::getCurTextStyle(database, 2.5, u"hztxt", u"hztxt.shx", 0, 0, 12.0);
  EXPECT_EQ(OdString(u"hztxt_txtstyle_12.00_0_0"), factsOf(id).name);
  const OdDbObjectId other =
      custents::getCurTextStyle(database, 2.5, u"hztxt", u"hztxt.shx", 0, 0, 3.456);
  EXPECT_EQ(OdString(u"hztxt_txtstyle_3.46_0_0"), factsOf(other).name);
}

TEST_F(TextStylesTest, AskingAgainCreatesNothing) {
  const OdDbObjectId first = custents::getCurTextStyle(database, 2.5, u"宋体", u"SIMSUN.TTC", 0, 0);
  const unsigned count = styleCount(database);
  const OdDbObjectId second = custents::getCurTextStyle(database, 9.0, u"宋体", u"OTHER.TTF", 0, 0);
  EXPECT_EQ(first, second);
  EXPECT_EQ(count, styleCount(database));
  EXPECT_EQ(2.5, factsOf(second).priorSize); // the existing record is not changed
  // Bold or italic is another style.
  EXPECT_NE(first, custents::getCurTextStyle(database, 2.5, u"宋体", u"SIMSUN.TTC", 1, 0));
  EXPECT_EQ(count + 1, styleCount(database));
}

TEST_F(TextStylesTest, TemplateStyleOfTheFaceIsPreferred) {
  writeTemplate(u"HOUSE_SONG", u"宋体");
  const unsigned count = styleCount(database);
  const OdDbObjectId id = custents::getCurTextStyle(database, 2.5, u"宋体", u"SIMSUN.TTC", 0, 0);
  EXPECT_EQ(OdString(u"HOUSE_SONG"), factsOf(id).name);
  EXPECT_EQ(OdString(u"TEMPLATE.TTF"), factsOf(id).fileName);
  EXPECT_EQ(id, custents::getCurTextStyle(database, 2.5, u"宋体", u"SIMSUN.TTC", 1, 1));
  EXPECT_EQ(count + 1, styleCount(database));

  // A face the template lacks gets the module's own style.
  const OdDbObjectId own = custents::getCurTextStyle(database, 2.5, u"黑体", u"SIMHEI.TTF", 0, 0);
  EXPECT_EQ(OdString(u"黑体_txtstyle_0_0"), factsOf(own).name);
}

TEST_F(TextStylesTest, RefusedInputCreatesNothing) {
  OdDbDatabasePtr none;
  EXPECT_THROW(custents::getCurTextStyle(none, 2.5, u"宋体", u"SIMSUN.TTC", 0, 0), OdError);
  const unsigned count = styleCount(database);
  EXPECT_THROW(custents::getCurTextStyle(database, -1.0, u"宋体", u"SIMSUN.TTC", 0, 0), OdError);
  EXPECT_EQ(count, styleCount(database));
}

} // namespace
