// The host's shared services: string helpers and text styles from its template drawings.

#include "GlobalShared.h"

#include "DbDatabase.h"
#include "DbDxfFile.h"
#include "DbTextStyleTable.h"
#include "OdError.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>
#include <vector>

namespace fs = std::filesystem;

namespace {

TEST(GlobalSharedTest, RemoveZeroTrimsFixedDecimals) {
  const char* const texts[] = {"1.500000", "100",     "-0.250", "0.000", ".500", "3.",
                               "",         "1.50e+3", "1.5.0",  " 1.50", "."};
  const char* const trimmed[] = {"1.5", "100",     "-0.25", "0",     ".5", "3",
                                 "",    "1.50e+3", "1.5.0", " 1.50", "."};
  for (std::size_t i = 0; i < sizeof texts / sizeof texts[0]; ++i)
    EXPECT_EQ(std::string(trimmed[i]), GlobalShared::CStringRemoveZero(OdString(texts[i])).toUtf8())
        << texts[i];
}

std::vector<std::string> separate(const char* text, const char* separator) {
  OdArray<OdString> parts;
  parts.append(OdString("left over"));
  GlobalShared::StrSeparate(OdString(text), OdString(separator), parts);
  std::vector<std::string> result;
  for (const OdString& part : parts)
    result.push_back(part.toUtf8());
  return result;
}

TEST(GlobalSharedTest, SeparateKeepsEmptyParts) {
  typedef std::vector<std::string> Parts;
  const std::tuple<const char*, const char*, Parts> cases[] = {
      {"a,b,c", ",", {"a", "b", "c"}},
      {",a,", ",", {"", "a", ""}},
      {",", ",", {"", ""}},
      {"", ",", {}},
      {"a,b", "", {"a,b"}},
      {"钢管||DN50||12.5", "||", {"钢管", "DN50", "12.5"}},
      {"|||", "||", {"", "|"}}};
  for (const auto& [text, separator, parts] : cases)
    EXPECT_EQ(parts, separate(text, separator)) << text << " by " << separator;
}

// --- Text styles from the host's templates ----------------------------------------------------

const OdChar* const kTemplate = OD_T("BrevantArchEx.dwt");

struct StyleFacts {
  OdString name, fileName, bigFontFileName, typeface;
};

StyleFacts factsOf(OdDbObjectId id) {
  OdDbTextStyleTableRecordPtr style = id.safeOpenObject();
  StyleFacts facts;
  facts.name = style->getName();
  facts.fileName = style->fileName();
  facts.bigFontFileName = style->bigFontFileName();
  bool bold = false, italic = false;
  int charset = 0, pitch = 0;
  style->font(facts.typeface, bold, italic, charset, pitch);
  return facts;
}

unsigned styleCount(OdDbDatabase* database) {
  OdDbTextStyleTablePtr table = database->getTextStyleTableId().safeOpenObject();
  return table->numRecords();
}

/// Each test starts from the default template folder and may point it elsewhere.
class TemplateStylesTest : public ::testing::Test {
protected:
  void SetUp() override {
    GlobalShared::setTemplateFolder(OdString());
    char pattern[] = "/tmp/custents-templates-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(pattern));
    folder = pattern;
  }
  void TearDown() override {
    GlobalShared::setTemplateFolder(OdString());
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }

  /// Writes a template holding one TrueType style named name of face typeface.
  void writeTemplate(const char* fileName, const OdString& name, const OdString& typeface) {
    OdDbDatabasePtr source = OdDbDatabase::createObject();
    OdDbTextStyleTablePtr table = source->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
    OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
    style->setName(name);
    style->setFileName(OD_T("ANY.TTF"));
    style->setFont(typeface, true, false, 134, 0);
    table->add(style);
    table.release();
    ASSERT_EQ(eOk, odDbWriteDxf(source.get(), OdString((folder / fileName).string().c_str())));
  }

  fs::path folder;
};

TEST_F(TemplateStylesTest, FolderIsSetOrFromTheEnvironmentOrBesideTheHostLibrary) {
  const fs::path beside = fs::path(CUSTENTS_BIN_DIR) / "templates";
  EXPECT_EQ(fs::canonical(beside), fs::canonical(GlobalShared::templateFolder().toUtf8()));

  setenv("CUSTENTS_TEMPLATES", "/srv/templates", 1);
  EXPECT_EQ("/srv/templates", GlobalShared::templateFolder().toUtf8());
  GlobalShared::setTemplateFolder(OD_T("/opt/brevant/templates"));
  EXPECT_EQ("/opt/brevant/templates", GlobalShared::templateFolder().toUtf8());
  GlobalShared::setTemplateFolder(OdString());
  setenv("CUSTENTS_TEMPLATES", "", 1);
  EXPECT_EQ(fs::canonical(beside), fs::canonical(GlobalShared::templateFolder().toUtf8()));
  unsetenv("CUSTENTS_TEMPLATES");
}

TEST_F(TemplateStylesTest, ShippedTemplateHasTheHostFacesAndTheDrawingsOwnRecordWins) {
  struct Case {
    const char16_t* face;
    const char16_t* styleName;
    const char16_t* bigFont; // SHX styles
    const char16_t* typeface;
  } const cases[] = {
      {u"HZTXT", u"HZTXT", u"hztxt.shx", u""},
      {u"tssdeng", u"HZTXT", u"hztxt.shx", u""},
      {u"宋体", u"SONGTI", u"", u"宋体"},
      {u"arial", u"ARIAL", u"", u"Arial"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(OdString(c.face).toUtf8());
    OdDbDatabasePtr database = OdDbDatabase::createObject();
    const unsigned before = styleCount(database.get());
    const OdDbObjectId id = GlobalShared::GetTextStyleIdFromTemplate(database, c.face, kTemplate);
    ASSERT_FALSE(id.isNull());
    EXPECT_EQ(database.get(), id.database());
    // Brought in once: asked again, the drawing's record is found.
    EXPECT_EQ(id, GlobalShared::GetTextStyleIdFromTemplate(database, c.face, kTemplate));
    EXPECT_EQ(before + 1, styleCount(database.get()));
    const StyleFacts facts = factsOf(id);
    EXPECT_EQ(OdString(c.styleName), facts.name);
    EXPECT_EQ(OdString(c.bigFont), facts.bigFontFileName);
    EXPECT_EQ(OdString(c.typeface), facts.typeface);
  }

  // The annotation style is there too, on the SHX fonts.
  OdDbDatabasePtr loaded;
  ASSERT_EQ(eOk, odDbReadDxf(GlobalShared::templateFolder() + OD_T("/") + kTemplate, loaded));
  const OdDbObjectId annotation =
      OdDbTextStyleTable::cast(loaded->getTextStyleTableId().safeOpenObject())
          ->getAt(OD_T("BREVANT_AISTYLE"));
  ASSERT_FALSE(annotation.isNull());
  EXPECT_EQ(OdString(OD_T("hztxt.shx")), factsOf(annotation).bigFontFileName);

  // A drawing that has a style of the template's name keeps it as it is.
  OdDbDatabasePtr own = OdDbDatabase::createObject();
  OdDbTextStyleTablePtr table = own->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
  OdDbTextStyleTableRecordPtr song = OdDbTextStyleTableRecord::createObject();
  song->setName(OD_T("songti")); // names are matched without regard to letter case
  song->setFileName(OD_T("mine.ttf"));
  const OdDbObjectId ownId = table->add(song);
  song.release();
  table.release();
  EXPECT_EQ(ownId, GlobalShared::GetTextStyleIdFromTemplate(own, u"宋体", kTemplate));
  EXPECT_EQ(OdString(OD_T("mine.ttf")), factsOf(ownId).fileName);
  EXPECT_EQ(OdString(), factsOf(ownId).typeface);
}

TEST_F(TemplateStylesTest, NoStyleGivesANullId) {
  {
    std::ofstream garbage(folder / "garbage.dwt");
    garbage << "0\nSECTION\n2\nHEADER\nthis is not a drawing\n";
  }
  writeTemplate("kai.dwt", OD_T("KAI"), OD_T("楷体"));
  GlobalShared::setTemplateFolder(OdString(folder.string().c_str()));

  struct Case {
    const char* what;
    bool nullDatabase;
    const char16_t* face;
    const char16_t* templateName;
  } const cases[] = {
      {"null database", true, u"楷体", u"kai.dwt"},
      {"empty face", false, u"", u"kai.dwt"},
      {"missing template", false, u"楷体", u"missing.dwt"},
      {"unreadable template", false, u"楷体", u"garbage.dwt"},
      {"face not in the template", false, u"宋体", u"kai.dwt"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    OdDbDatabasePtr database;
    if (!c.nullDatabase)
      database = OdDbDatabase::createObject();
    EXPECT_TRUE(
        GlobalShared::GetTextStyleIdFromTemplate(database, c.face, c.templateName).isNull());
    if (!database.isNull()) {
      EXPECT_EQ(1u, styleCount(database.get())); // only "Standard"
    }
  }
}

TEST_F(TemplateStylesTest, ChangedTemplateIsReadAgain) {
  GlobalShared::setTemplateFolder(OdString(folder.string().c_str()));
  writeTemplate("t.dwt", OD_T("KAI_OLD"), OD_T("楷体"));
  OdDbDatabasePtr first = OdDbDatabase::createObject();
  EXPECT_EQ(OdString(OD_T("KAI_OLD")),
            factsOf(GlobalShared::GetTextStyleIdFromTemplate(first, u"楷体", u"t.dwt")).name);

  writeTemplate("t.dwt", OD_T("KAI_NEW"), OD_T("楷体"));
  // File systems with coarse time stamps: make the change visible for certain.
  fs::last_write_time(folder / "t.dwt",
                      fs::last_write_time(folder / "t.dwt") + std::chrono::seconds(2));
  OdDbDatabasePtr second = OdDbDatabase::createObject();
  EXPECT_EQ(OdString(OD_T("KAI_NEW")),
            factsOf(GlobalShared::GetTextStyleIdFromTemplate(second, u"楷体", u"t.dwt")).name);

  fs::remove(folder / "t.dwt");
  OdDbDatabasePtr third = OdDbDatabase::createObject();
  EXPECT_TRUE(GlobalShared::GetTextStyleIdFromTemplate(third, u"楷体", u"t.dwt").isNull());
}

} // namespace
