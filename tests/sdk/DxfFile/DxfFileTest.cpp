// Drawing files: saving to and loading from ASCII DXF, byte-stable round trips, refusal of
// malformed files with the line of the fault, safe saves, and the outside check by ezdxf.

#include "DbDxfFile.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDictionary.h"
#include "DbDxfItemFiler.h"
#include "DbGroup.h"
#include "DbLinetypeTable.h"
#include "DbTextStyleTable.h"
#include "DbLine.h"
#include "DbPolyline.h"
#include "DbText.h"

#include "sdk/SdkTestSupport.h"

#include <dirent.h>
#include <unistd.h>
#include <vector>

namespace {

/// A fresh directory per test, removed with its files afterwards.
class DxfFileTest : public ::testing::Test {
protected:
  void SetUp() override {
    char pattern[] = "/tmp/dxffile-XXXXXX";
    ASSERT_NE(::mkdtemp(pattern), nullptr);
    dir = pattern;
  }
  void TearDown() override {
    for (const std::string& name : files())
      std::remove((dir + "/" + name).c_str());
    ::rmdir(dir.c_str());
  }
  std::vector<std::string> files() const {
    std::vector<std::string> names;
    if (DIR* d = ::opendir(dir.c_str())) {
      while (dirent* e = ::readdir(d))
        if (std::string(e->d_name) != "." && std::string(e->d_name) != "..")
          names.push_back(e->d_name);
      ::closedir(d);
    }
    return names;
  }
  std::string path(const char* name) const { return dir + "/" + name; }

  std::string dir;
};

typedef std::vector<std::string> Lines;

// A small valid file; the malformed cases change one part of it. Line numbers are 1-based.
std::vector<std::string> validLines() {
  return {"  0", "SECTION", "  2", "HEADER",     "  9", "$ACADVER", "  1", "AC1032",
          "  0", "ENDSEC",  "  0", "SECTION",    "  2", "ENTITIES", "  0", "LINE",
          "  5", "100",     "100", "AcDbEntity", "  8", "0",        "100", "AcDbLine",
          " 10", "1.0",     " 20", "2.0",        " 30", "0.0",      " 11", "3.0",
          " 21", "4.0",     " 31", "0.0",        "  0", "ENDSEC",   "  0", "EOF"};
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines)
    text += line + "\n";
  return text;
}

// Extended data before any subclass marker leaves the class no groups to read: an entity is
// refused with its line, an object of a class that needs none reads as it is.
TEST_F(DxfFileTest, ExtendedDataBeforeTheFirstSubclassMarker) {
  Lines entity = validLines();
  const Lines point = {"  0", "POINT", "  5", "A0", "1001", "ACAD", "100", "AcDbEntity"};
  entity.insert(entity.begin() + 36, point.begin(), point.end());
  Lines object = validLines();
  const Lines dictionary = {"  0", "SECTION", "  2", "OBJECTS", "  0",  "DICTIONARY", "  5",
                            "A0",  "330",     "0",   "1001",    "ACAD", "  0",        "ENDSEC"};
  object.insert(object.begin() + 38, dictionary.begin(), dictionary.end());

  writeAll(path("entity.dxf"), joined(entity));
  OdDbDatabasePtr db;
  OdString error;
  EXPECT_NE(eOk, odDbReadDxf(path("entity.dxf").c_str(), db, &error));
  EXPECT_NE(std::string::npos, error.toUtf8().find("line 37:")) << error.toUtf8();

  writeAll(path("object.dxf"), joined(object));
  error = OdString();
  EXPECT_EQ(eOk, odDbReadDxf(path("object.dxf").c_str(), db, &error)) << error.toUtf8();
  EXPECT_FALSE(db.isNull());
}

TEST_F(DxfFileTest, MalformedFilesAreRefusedWithTheLineOfTheFault) {
  struct Case {
    const char* name;
    std::function<void(Lines&)> spoil;
    int line;
  };
  auto set = [](int line, const char* text) {
    return [line, text](Lines& l) { l[line - 1] = text; };
  };
  auto insert = [](int before, Lines extra) {
    return [before, extra](Lines& l) {
      l.insert(l.begin() + (before - 1), extra.begin(), extra.end());
    };
  };
  auto objects = [&insert](Lines body) {
    Lines section = {"  0", "SECTION", "  2", "OBJECTS"};
    section.insert(section.end(), body.begin(), body.end());
    section.push_back("  0");
    section.push_back("ENDSEC");
    return insert(39, section);
  };
  Lines proxyObject = {"  0", "ACAD_PROXY_OBJECT", "  5", "A0", "330", "0",
                       "100", "AcDbProxyObject"};
  proxyObject.insert(proxyObject.end(), {" 90", "499", " 91", "500", " 71", "33", " 97", "0", " 70",
                                         "0", "161", "0", " 94", "0"});
  const Case cases[] = {
      {"text where a coordinate must be", set(26, "abc"), 26},
      {"coordinate with trailing junk", set(28, "2.0x"), 28},
      {"group code that is no number", set(25, "x10"), 25},
      {"group code no range defines", set(25, "1234"), 25},
      {"handle with a non-hex digit", set(18, "10G"), 18},
      {"binary data with an odd digit count", insert(25, {"310", "ABC"}), 26},
      {"integer group holding text", insert(23, {" 62", "red"}), 24},
      {"owner handle that points nowhere", insert(19, {"330", "7F"}), 20},
      {"layer that does not exist", set(22, "NoSuchLayer"), 15},
      {"unknown section", set(14, "GADGETS"), 14},
      {"file that does not start with a section", set(1, "  1"), 1},
      {"drawing version too old", set(8, "AC1009"), 8},
      {"truncated inside an entity", [](Lines& l) { l.resize(30); }, 31},
      {"truncated between code and value", [](Lines& l) { l.resize(29); }, 30},
      {"no EOF marker", [](Lines& l) { l.resize(38); }, 39},
      {"two objects with one handle",
       insert(37, {"  0", "POINT", "  5", "100", "100", "AcDbEntity", "  8", "0", "100",
                   "AcDbPoint", " 10", "0.0", " 20", "0.0", " 30", "0.0"}),
       40},
      // The OBJECTS section goes in before EOF (line 39); its first group is line 39.
      {"object whose handle an entity has", objects({"  0", "GROUP", "  5", "100"}), 46},
      {"group pointing at a missing entity",
       objects({"  0", "GROUP", "  5", "A0", "330", "0", "100", "AcDbGroup", "340", "100", "340",
                "5AB"}),
       54},
      {"object owned by a missing handle",
       objects({"  0", "DICTIONARY", "  5", "A0", "330", "77", "100", "AcDbDictionary"}), 48},
      {"dictionary entry pointing nowhere",
       objects({"  0", "DICTIONARY", "  5", "A0", "330", "0", "100", "AcDbDictionary", "  3",
                "Lost", "350", "A1"}),
       54},
      {"dictionary entry without a handle",
       objects(
           {"  0", "DICTIONARY", "  5", "A0", "330", "0", "100", "AcDbDictionary", "  3", "Lost"}),
       51},
      {"proxy object of a class with no CLASS record", objects(proxyObject), 54},
  };
  for (const Case& c : cases) {
    Lines lines = validLines();
    c.spoil(lines);
    writeAll(path("bad.dxf"), joined(lines));
    OdDbDatabasePtr db = OdDbDatabase::createObject(); // must be replaced by null
    OdString error;
    EXPECT_NE(odDbReadDxf(path("bad.dxf").c_str(), db, &error), eOk) << c.name;
    EXPECT_TRUE(db.isNull()) << c.name;
    const std::string expected = "line " + std::to_string(c.line) + ":";
    EXPECT_NE(error.toUtf8().find(expected), std::string::npos)
        << c.name << ": expected '" << expected << "' in '" << error.toUtf8() << "'";
  }
}

TEST_F(DxfFileTest, AMissingFileIsReportedAsSuch) {
  OdDbDatabasePtr db;
  OdString error;
  EXPECT_EQ(odDbReadDxf(path("none.dxf").c_str(), db, &error), eFileNotFound);
  EXPECT_TRUE(db.isNull());
  EXPECT_NE(error.toUtf8().find("none.dxf"), std::string::npos);
}

// Files written on Windows end their lines in CR LF; the CR is not part of the value.
TEST_F(DxfFileTest, LinesEndingInCarriageReturnsLoad) {
  std::string text;
  for (const std::string& line : validLines())
    text += line + "\r\n";
  writeAll(path("crlf.dxf"), text);
  OdDbDatabasePtr db;
  OdString error;
  ASSERT_EQ(odDbReadDxf(path("crlf.dxf").c_str(), db, &error), eOk) << error.toUtf8();
  OdDbBlockTableRecordPtr model = db->getModelSpaceId().safeOpenObject();
  EXPECT_EQ(model->entityIds().size(), 1u);
}

// What a drawing's tables and groups hold comes back from its file field by field: a
// linetype's dashes, a text style's face (with bold, italic, charset, pitch and family), a
// group's description and whether it is selectable.
TEST_F(DxfFileTest, TablesAndGroupsComeBackFieldByField) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbLinetypeTablePtr linetypes = db->getLinetypeTableId().safeOpenObject(OdDb::kForWrite);
  OdDbLinetypeTableRecordPtr dashed = OdDbLinetypeTableRecord::createObject();
  dashed->setName(OD_T("Fence"));
  dashed->setNumDashes(3);
  for (int i = 0; i < 3; ++i)
    dashed->setDashLengthAt(i, i == 1 ? -0.25 : 0.5 + i);
  linetypes->add(dashed);
  OdDbTextStyleTablePtr styles = db->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
  for (bool bold : {false, true}) {
    OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
    style->setName(bold ? OD_T("Bold") : OD_T("Italic"));
    style->setFont(OD_T("SimSun"), bold, !bold, 134, bold ? 2 : 49);
    style->setIsVertical(bold);
    styles->add(style);
  }
  OdDbDictionaryPtr groups = db->getGroupDictionaryId().safeOpenObject(OdDb::kForWrite);
  for (bool selectable : {false, true}) {
    OdDbGroupPtr group = OdDbGroup::createObject();
    group->setDescription(selectable ? OD_T("picked") : OD_T("passed over"));
    group->setSelectable(selectable);
    groups->setAt(selectable ? OD_T("Picked") : OD_T("Passed"), group);
  }
  ASSERT_EQ(odDbWriteDxf(db, path("tables.dxf").c_str()), eOk);
  OdDbDatabasePtr read;
  OdString error;
  ASSERT_EQ(odDbReadDxf(path("tables.dxf").c_str(), read, &error), eOk) << error.toUtf8();

  OdDbLinetypeTablePtr readLinetypes = read->getLinetypeTableId().safeOpenObject();
  OdDbLinetypeTableRecordPtr fence = readLinetypes->getAt(OD_T("Fence"), OdDb::kForRead);
  ASSERT_EQ(fence->numDashes(), 3);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(fence->dashLengthAt(i), dashed->dashLengthAt(i)) << i;
  OdDbTextStyleTablePtr readStyles = read->getTextStyleTableId().safeOpenObject();
  for (bool bold : {false, true}) {
    OdDbTextStyleTableRecordPtr style =
        readStyles->getAt(bold ? OD_T("Bold") : OD_T("Italic"), OdDb::kForRead);
    OdString face;
    bool isBold = !bold, isItalic = bold;
    int charset = 0, pitchAndFamily = 0;
    style->font(face, isBold, isItalic, charset, pitchAndFamily);
    EXPECT_EQ(face, OdString(OD_T("SimSun")));
    EXPECT_EQ(isBold, bold);
    EXPECT_EQ(isItalic, !bold);
    EXPECT_EQ(charset, 134);
    EXPECT_EQ(pitchAndFamily, bold ? 2 : 49);
    EXPECT_EQ(style->isVertical(), bold);
  }
  OdDbDictionaryPtr readGroups = read->getGroupDictionaryId().safeOpenObject();
  for (bool selectable : {false, true}) {
    OdDbGroupPtr group =
        readGroups->getAt(selectable ? OD_T("Picked") : OD_T("Passed"), OdDb::kForRead);
    ASSERT_FALSE(group.isNull());
    EXPECT_EQ(group->isSelectable(), selectable);
    EXPECT_EQ(group->description(), OdString(selectable ? OD_T("picked") : OD_T("passed over")));
  }
}

// Strings of AC1021 and later are UTF-8; older files hold one byte per character.
TEST_F(DxfFileTest, StringsAreReadInTheEncodingOfTheirVersion) {
  const struct {
    const char* version;
    const char* bytes;
    const char16_t* expected;
  } cases[] = {{"AC1018", "\x80\xE9t\xE9", u"\u0080\u00e9t\u00e9"},
               {"AC1021", "\xC3\xA9t\xE4\xB8\xAD", u"\u00e9t\u4e2d"},
               {"AC1032", "\xC3\xA9t\xE4\xB8\xAD", u"\u00e9t\u4e2d"}};
  for (const auto& c : cases) {
    Lines lines = validLines();
    lines[7] = c.version;
    const Lines text = {"  0", "TEXT", "  5",      "A0",  "100", "AcDbEntity", "  8",
                        "0",   "100",  "AcDbText", " 10", "0",   " 20",        "0",
                        " 30", "0",    " 40",      "1",   "  1", c.bytes};
    lines.insert(lines.begin() + 36, text.begin(), text.end());
    writeAll(path("text.dxf"), joined(lines));
    OdDbDatabasePtr db;
    OdString error;
    ASSERT_EQ(odDbReadDxf(path("text.dxf").c_str(), db, &error), eOk) << error.toUtf8();
    OdDbTextPtr read = db->getOdDbObjectId(OdDbHandle(0xA0)).safeOpenObject();
    EXPECT_EQ(read->textString(), OdString(c.expected)) << c.version;
  }
}

TEST_F(DxfFileTest, AnEntityOfUnknownTypeIsSkippedWithANote) {
  Lines lines = validLines();
  const Lines gadget = {"  0", "GADGET", "  5", "101", "100", "AcDbEntity", "  8", "0"};
  lines.insert(lines.begin() + 36, gadget.begin(), gadget.end());
  writeAll(path("gadget.dxf"), joined(lines));
  OdDbDatabasePtr db;
  OdString error;
  std::vector<OdString> notes;
  ASSERT_EQ(odDbReadDxf(path("gadget.dxf").c_str(), db, &error, &notes), eOk) << error.toUtf8();
  OdDbBlockTableRecordPtr model = db->getModelSpaceId().safeOpenObject();
  EXPECT_EQ(model->entityIds().size(), 1u);
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_NE(notes[0].toUtf8().find("line 37: skipped an entity of unknown type GADGET"),
            std::string::npos)
      << notes[0].toUtf8();
}

/// Makes every entity's save fail half-way through the file, after the tables are written.
class FailingHooks : public OdDbDxfFileHooks {
public:
  bool writeObject(const OdDbObject* /*object*/, const std::vector<OdDbDxfClassRecord>&,
                   OdString& dxfName, OdDbDxfFiler* filer) override {
    dxfName = OD_T("LINE");
    filer->wrString(1, OD_T("two\nlines")); // a line break is refused by the filer
    return true;
  }
};

TEST_F(DxfFileTest, AFailedSaveLeavesTheOldFileAsItWas) {
  writeAll(path("keep.dxf"), "old content\n");
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  {
    OdDbBlockTableRecordPtr model = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
    model->appendOdDbEntity(OdDbLine::createObject());
  }
  FailingHooks failing;
  odDbSetDxfFileHooks(&failing);
  OdString error;
  const OdResult result = odDbWriteDxf(db, path("keep.dxf").c_str(), &error);
  odDbSetDxfFileHooks(nullptr);
  EXPECT_NE(result, eOk);
  EXPECT_FALSE(error.isEmpty());
  EXPECT_EQ(readAll(path("keep.dxf")), "old content\n");
  EXPECT_EQ(files(), std::vector<std::string>{"keep.dxf"}); // no temporary file left behind

  // A target in a directory that does not exist fails before anything is written.
  EXPECT_EQ(odDbWriteDxf(db, path("no/such/dir.dxf").c_str(), &error), eFileAccessErr);
  // And without the failing hooks the same save succeeds and replaces the file.
  ASSERT_EQ(odDbWriteDxf(db, path("keep.dxf").c_str()), eOk);
  EXPECT_EQ(readAll(path("keep.dxf")).compare(0, 12, "  0\nSECTION\n"), 0);
}

// The outside check ----------------------------------------------------------------------------

std::string scriptPath() {
  const std::string here = __FILE__;
  return here.substr(0, here.rfind("/sdk/")) + "/ezdxf/audit_dxf.py";
}

std::string runChecker(const std::string& args) {
  std::string output;
  runCommand("/usr/bin/python3 '" + scriptPath() + "' " + args + " 2>&1", output);
  return output;
}

TEST_F(DxfFileTest, ADrawingWrittenByEzdxfLoads) {
  if (!haveEzdxf())
    GTEST_SKIP() << "python3-ezdxf is not installed";
  const std::string made = runChecker("--write-sample '" + path("theirs.dxf") + "'");
  ASSERT_TRUE(made.empty()) << made;
  OdDbDatabasePtr db;
  OdString error;
  std::vector<OdString> notes;
  ASSERT_EQ(odDbReadDxf(path("theirs.dxf").c_str(), db, &error, &notes), eOk) << error.toUtf8();
  OdDbBlockTableRecordPtr model = db->getModelSpaceId().safeOpenObject();
  const OdDbObjectIdArray ids = model->entityIds();
  ASSERT_EQ(ids.size(), 4u);
  OdDbLinePtr line = OdDbLine::cast(ids[0].openObject());
  ASSERT_FALSE(line.isNull());
  EXPECT_EQ(line->layer(), OdString("Walls"));
  EXPECT_EQ(line->linetype(), OdString("DASHED2"));
  OdDbPolylinePtr pline = OdDbPolyline::cast(ids[1].openObject());
  ASSERT_FALSE(pline.isNull());
  ASSERT_EQ(pline->numVerts(), 3u);
  double bulge = 0.0;
  pline->getBulgeAt(0, bulge);
  EXPECT_EQ(bulge, 0.5);
  // What we load from their file, we save in a form they read back without complaint.
  ASSERT_EQ(odDbWriteDxf(db, path("ours.dxf").c_str()), eOk);
  const std::string report =
      runChecker("'" + path("ours.dxf") + "' --count LINE=1 --count LWPOLYLINE=1 --count ARC=1");
  EXPECT_EQ(report.substr(report.size() - 3), "OK\n") << report;
}

} // namespace
