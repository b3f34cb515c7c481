#include "common/TextStyles.h"

#include "DbDxfFile.h"
#include "DbTextStyleTable.h"
#include "GlobalShared.h"
#include "OdError.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
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
      {u"", "hztxt.shx"},            // agrees with every entry, so the last one
      {u"宋体", "SIMSUN.TTC"},
      {u"华", "STZHONGS.TTF"},     // the last of the 华文 faces
      {u"华文细黑", "simsun.ttc"}, // the table spells this face 花纹细黑
      {u"花纹细黑", "STXIHEI.TTF"},
      {u"hztxt", "hztxt.shx"},
      {u"HZTXT", "simsun.ttc"}, // case-sensitive; an unknown face gets the fallback too
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(OdString(c.face).toUtf8());
    EXPECT_EQ(std::string(c.file), custents::getFontFileName(c.face).toUtf8());
  }
}

OdDbTextStyleTableRecordPtr styleOf(OdDbObjectId id) {
  return id.safeOpenObject();
}

/// Name, file, big-font file, face, bold, italic, shape file, size, x scale, oblique angle and
/// prior size of a style record, in one line.
std::string factsOf(OdDbObjectId id) {
  OdDbTextStyleTableRecordPtr style = styleOf(id);
  OdString face;
  bool bold = false, italic = false;
  int charset = 0, pitch = 0;
  style->font(face, bold, italic, charset, pitch);
  std::ostringstream facts;
  facts << style->getName().toUtf8() << "|" << style->fileName().toUtf8() << "|"
        << style->bigFontFileName().toUtf8() << "|" << face.toUtf8() << "|" << bold << italic
        << style->isShapeFile() << "|" << style->textSize() << "|" << style->xScale() << "|"
        << style->obliquingAngle() << "|" << style->priorSize();
  return facts.str();
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

TEST_F(TextStylesTest, StyleIsTrueTypeWithTheFaceOrBigFontForShxFilesInAnyCaseNamedWithItsSize) {
  EXPECT_EQ(factsOf(custents::getCurTextStyle(database, 3.0, u"Courier New", u"COUR.TTF", 1, 0)),
            "Courier New_txtstyle_1_0|COUR.TTF||Courier New|100|0|1|0|3");
  // SHX files are told by their extension in any letter case.
  OdDbTextStyleTableRecordPtr style =
      styleOf(custents::getCurTextStyle(database, 5.0, u"hztxt", u"HzTxt.ShX", 0, 1));
  EXPECT_EQ(OdString(u"hztxt_txtstyle_0_1"), style->getName());
  EXPECT_EQ(OdString(u"HzTxt.ShX"), style->bigFontFileName());
  EXPECT_EQ(OdString(u"tssdeng.shx"), style->fileName());
  EXPECT_FALSE(style->isShapeFile());
  EXPECT_EQ(5.0, style->priorSize()); // the caller's size, not the SHX default
  OdString face;
  bool bold, italic;
  int charset, pitch;
  style->font(face, bold, italic, charset, pitch);
  EXPECT_TRUE(face.isEmpty());
  // "shx" must be the last three characters: a TrueType file that merely contains it is not.
  EXPECT_EQ(factsOf(custents::getCurTextStyle(database, 5.0, u"x", u"shx.ttf", 0, 0)).substr(0, 28),
            "x_txtstyle_0_0|shx.ttf||x|00");
  // A size for the name goes in with two decimals.
  for (const auto& sized : {std::make_pair(12.0, u"hztxt_txtstyle_12.00_0_0"),
                            std::make_pair(3.456, u"hztxt_txtstyle_3.46_0_0")}) {
    const OdDbObjectId id =
        custents::getCurTextStyle(database, 2.5, u"hztxt", u"hztxt.shx", 0, 0, sized.first);
    EXPECT_EQ(OdString(sized.second), styleOf(id)->getName());
  }
}

TEST_F(TextStylesTest, AskingAgainCreatesNothing) {
  const OdDbObjectId first = custents::getCurTextStyle(database, 2.5, u"宋体", u"SIMSUN.TTC", 0, 0);
  const unsigned count = styleCount(database);
  const OdDbObjectId second = custents::getCurTextStyle(database, 9.0, u"宋体", u"OTHER.TTF", 0, 0);
  EXPECT_EQ(first, second);
  EXPECT_EQ(count, styleCount(database));
  EXPECT_EQ(2.5, styleOf(second)->priorSize()); // the existing record is not changed
  // Bold or italic is another style.
  EXPECT_NE(first, custents::getCurTextStyle(database, 2.5, u"宋体", u"SIMSUN.TTC", 1, 0));
  EXPECT_EQ(count + 1, styleCount(database));
}

TEST_F(TextStylesTest, TemplateStyleOfTheFaceIsPreferred) {
  writeTemplate(u"HOUSE_SONG", u"宋体");
  const unsigned count = styleCount(database);
  const OdDbObjectId id = custents::getCurTextStyle(database, 2.5, u"宋体", u"SIMSUN.TTC", 0, 0);
  EXPECT_EQ(OdString(u"HOUSE_SONG"), styleOf(id)->getName());
  EXPECT_EQ(OdString(u"TEMPLATE.TTF"), styleOf(id)->fileName());
  EXPECT_EQ(id, custents::getCurTextStyle(database, 2.5, u"宋体", u"SIMSUN.TTC", 1, 1));
  EXPECT_EQ(count + 1, styleCount(database));

  // A face the template lacks gets the module's own style.
  const OdDbObjectId own = custents::getCurTextStyle(database, 2.5, u"黑体", u"SIMHEI.TTF", 0, 0);
  EXPECT_EQ(OdString(u"黑体_txtstyle_0_0"), styleOf(own)->getName());
}

TEST_F(TextStylesTest, RefusedInputCreatesNothing) {
  OdDbDatabasePtr none;
  EXPECT_THROW(custents::getCurTextStyle(none, 2.5, u"宋体", u"SIMSUN.TTC", 0, 0), OdError);
  const unsigned count = styleCount(database);
  EXPECT_THROW(custents::getCurTextStyle(database, -1.0, u"宋体", u"SIMSUN.TTC", 0, 0), OdError);
  EXPECT_EQ(count, styleCount(database));
}

} // namespace
