// Drawing files: saving to and loading from ASCII DXF, byte-stable round trips, refusal of
// malformed files with the line of the fault, safe saves, and the outside check by ezdxf.

#include "DbDxfFile.h"

#include "DbArc.h"
#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDictionary.h"
#include "DbDxfItemFiler.h"
#include "DbGroup.h"
#include "DbHatch.h"
#include "DbLayerTable.h"
#include "DbLine.h"
#include "DbLinetypeTable.h"
#include "DbPoint.h"
#include "DbPolyline.h"
#include "DbText.h"
#include "DbTextStyleTable.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

void writeAll(const std::string& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary);
  out << text;
}

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

OdDbObjectId addLayer(OdDbDatabase* db, const char* name, int colorIndex) {
  OdDbLayerTablePtr layers = db->getLayerTableId().safeOpenObject(OdDb::kForWrite);
  OdDbLayerTableRecordPtr layer = OdDbLayerTableRecord::createObject();
  layer->setName(name);
  OdCmColor color;
  color.setColorIndex(static_cast<OdUInt16>(colorIndex));
  layer->setColor(color);
  layer->setLinetypeObjectId(db->getLinetypeContinuousId());
  return layers->add(layer);
}

/// A drawing of every standard entity kind on layers with colours and a dashed linetype, with
/// one entity in paper space.
OdDbDatabasePtr sampleDrawing() {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const OdDbObjectId walls = addLayer(db, "Walls", 1);
  const OdDbObjectId notes = addLayer(db, "注释", 5);
  {
    OdDbLayerTableRecordPtr layer = notes.safeOpenObject(OdDb::kForWrite);
    OdCmColor rgb;
    rgb.setRGB(10, 200, 30);
    layer->setColor(rgb);
    layer->setIsOff(true);
    layer->setIsLocked(true);
    layer->setIsPlottable(false);
    layer->setLineWeight(OdDb::kLnWt035);
  }
  OdDbObjectId dashed;
  {
    OdDbLinetypeTablePtr linetypes = db->getLinetypeTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLinetypeTableRecordPtr lt = OdDbLinetypeTableRecord::createObject();
    lt->setName("DASHDOT");
    lt->setComments("Dash dot __ . __ .");
    lt->setNumDashes(4);
    lt->setDashLengthAt(0, 12.7);
    lt->setDashLengthAt(1, -6.35);
    lt->setDashLengthAt(2, 0.0);
    lt->setDashLengthAt(3, -6.35);
    dashed = linetypes->add(lt);
  }
  OdDbObjectId face;
  {
    OdDbTextStyleTablePtr styles = db->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
    OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
    style->setName("Song");
    style->setFont("宋体", false, true, 134, 2);
    style->setXScale(0.8);
    style->setObliquingAngle(0.25);
    face = styles->add(style);
  }
  db->setTEXTSIZE(3.5);
  db->setTEXTSTYLE(face);
  db->setCLAYER(walls);

  OdDbBlockTableRecordPtr model = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
  OdDbLinePtr line = OdDbLine::createObject();
  line->setStartPoint(OdGePoint3d(0.1, 0.2, 0.3));
  line->setEndPoint(OdGePoint3d(1e6 / 3.0, -7.0, 0.0));
  model->appendOdDbEntity(line);
  line->setLinetype(dashed);
  line->setColorIndex(3);

  OdDbPolylinePtr pline = OdDbPolyline::createObject();
  pline->addVertexAt(0, OdGePoint2d(0.0, 0.0), 0.5, 0.1, 0.2);
  pline->addVertexAt(1, OdGePoint2d(10.0, 0.0), -1.0, 0.2, 0.0);
  pline->addVertexAt(2, OdGePoint2d(10.0, 10.0), 0.0, 0.0, 0.0);
  pline->setClosed(true);
  pline->setElevation(2.0);
  model->appendOdDbEntity(pline);
  pline->setLayer(notes);

  OdDbArcPtr arc = OdDbArc::createObject();
  arc->setCenter(OdGePoint3d(5.0, 5.0, 0.0));
  arc->setRadius(2.5);
  arc->setStartAngle(0.3);
  arc->setEndAngle(2.9);
  model->appendOdDbEntity(arc);

  OdDbPointPtr point = OdDbPoint::createObject();
  point->setPosition(OdGePoint3d(-1.0, -2.0, -3.0));
  model->appendOdDbEntity(point);

  OdDbHatchPtr solid = OdDbHatch::createObject();
  solid->setPattern(OdDbHatch::kPreDefined, "SOLID");
  OdGePoint2dArray square;
  square.append(OdGePoint2d(0.0, 0.0));
  square.append(OdGePoint2d(4.0, 0.0));
  square.append(OdGePoint2d(4.0, 4.0));
  square.append(OdGePoint2d(0.0, 4.0));
  solid->appendLoop(OdDbHatch::kExternal | OdDbHatch::kPolyline, square, OdGeDoubleArray());
  model->appendOdDbEntity(solid);

  OdDbHatchPtr pattern = OdDbHatch::createObject();
  pattern->setPattern(OdDbHatch::kPreDefined, "ANSI31");
  pattern->setPatternScale(2.0);
  pattern->setPatternAngle(0.5);
  OdGeDoubleArray bulges;
  bulges.append(0.4);
  bulges.append(0.0);
  bulges.append(0.0);
  bulges.append(0.0);
  pattern->appendLoop(OdDbHatch::kExternal | OdDbHatch::kPolyline, square, bulges);
  model->appendOdDbEntity(pattern);

  OdDbTextPtr text = OdDbText::createObject();
  text->setPosition(OdGePoint3d(1.0, 1.0, 0.0));
  text->setTextString("标高 12.50");
  text->setHeight(3.5);
  text->setTextStyle(face);
  model->appendOdDbEntity(text);

  OdDbBlockTableRecordPtr paper = db->getPaperSpaceId().safeOpenObject(OdDb::kForWrite);
  OdDbLinePtr border = OdDbLine::createObject();
  border->setEndPoint(OdGePoint3d(420.0, 0.0, 0.0));
  paper->appendOdDbEntity(border);

  // OBJECTS: a group of two entities and an application's dictionary with one nested in it.
  db->setDIMSCALE(100.0);
  OdDbDictionaryPtr groups = db->getGroupDictionaryId().safeOpenObject(OdDb::kForWrite);
  OdDbGroupPtr pair = OdDbGroup::createObject();
  groups->setAt("Pair", pair);
  pair->setDescription("line and arc");
  pair->setSelectable(false);
  pair->append(line->objectId());
  pair->append(arc->objectId());
  OdDbDictionaryPtr root = db->getNamedObjectsDictionaryId().safeOpenObject(OdDb::kForWrite);
  OdDbDictionaryPtr app = OdDbDictionary::createObject();
  root->setAt("MY_APP", app);
  app->setMergeStyle(OdDb::kDrcReplace);
  app->setAt("Settings", OdDbDictionary::createObject());
  return db;
}

/// The dictionary tree under the named-objects dictionary as text: each entry's path, the
/// class of its object, its handle and its owner's handle; groups with their entities.
std::string describeObjects(OdDbDatabase* db, OdDbObjectId dictionaryId = OdDbObjectId(),
                            const std::string& path = "") {
  if (dictionaryId.isNull())
    dictionaryId = db->getNamedObjectsDictionaryId();
  OdDbDictionaryPtr dictionary = dictionaryId.safeOpenObject();
  std::string text = path + " merge " + std::to_string(dictionary->mergeStyle()) + "\n";
  for (OdDbDictionaryIteratorPtr it = dictionary->newIterator(); !it->done(); it->next()) {
    OdDbObjectPtr object = it->getObject();
    const std::string entry = path + "/" + it->name().toUtf8();
    text += entry + " " + object->isA()->name().toUtf8() + " " +
            object->getDbHandle().ascii().toUtf8() + " owner " +
            object->ownerId().getHandle().ascii().toUtf8() + "\n";
    if (OdDbGroupPtr group = OdDbGroup::cast(object)) {
      OdDbObjectIdArray ids;
      group->allEntityIds(ids);
      text += "  " + group->description().toUtf8() + (group->isSelectable() ? " selectable" : "");
      for (const OdDbObjectId& id : ids)
        text += " " + id.getHandle().ascii().toUtf8();
      text += "\n";
    }
    if (OdDbDictionary::cast(object).get())
      text += describeObjects(db, object->objectId(), entry);
  }
  return text;
}

/// An entity as the file sees it: class, handle, owner and the groups of its dxfOutFields.
std::string describe(const OdDbObjectId& id) {
  OdDbEntityPtr entity = id.safeOpenObject();
  OdStaticRxObject<OdDbDxfItemFiler> filer;
  filer.openForWrite(entity->database());
  entity->dxfOutFields(&filer);
  std::string text = entity->isA()->name().toUtf8() + " " + entity->getDbHandle().ascii().toUtf8() +
                     " owner " + entity->ownerId().getHandle().ascii().toUtf8();
  for (const OdDbDxfItemFiler::Item& item : filer.items())
    text += " " + std::to_string(item.code) + "=" + item.value.toUtf8();
  return text;
}

std::vector<std::string> describeBlock(OdDbObjectId blockId) {
  OdDbBlockTableRecordPtr block = blockId.safeOpenObject();
  std::vector<std::string> result;
  for (const OdDbObjectId& id : block->entityIds())
    result.push_back(describe(id));
  return result;
}

OdDbDatabasePtr load(const std::string& file) {
  OdDbDatabasePtr db;
  OdString error;
  EXPECT_EQ(odDbReadDxf(file.c_str(), db, &error), eOk) << error.toUtf8();
  return db;
}

TEST_F(DxfFileTest, EveryStandardEntityComesBackWithItsFieldsHandleAndOwner) {
  OdDbDatabasePtr db = sampleDrawing();
  ASSERT_EQ(odDbWriteDxf(db, path("a.dxf").c_str()), eOk);
  OdDbDatabasePtr back = load(path("a.dxf"));
  ASSERT_FALSE(back.isNull());

  const std::vector<std::string> model = describeBlock(db->getModelSpaceId());
  ASSERT_EQ(model.size(), 7u);
  EXPECT_EQ(describeBlock(back->getModelSpaceId()), model);
  EXPECT_EQ(describeBlock(back->getPaperSpaceId()), describeBlock(db->getPaperSpaceId()));
  EXPECT_EQ(back->getModelSpaceId().getHandle(), db->getModelSpaceId().getHandle());
}

TEST_F(DxfFileTest, TablesAndHeaderVariablesComeBack) {
  OdDbDatabasePtr db = sampleDrawing();
  ASSERT_EQ(odDbWriteDxf(db, path("a.dxf").c_str()), eOk);
  OdDbDatabasePtr back = load(path("a.dxf"));
  ASSERT_FALSE(back.isNull());

  OdDbLayerTablePtr layers = back->getLayerTableId().safeOpenObject();
  OdDbLayerTableRecordPtr notes = layers->getAt("注释", OdDb::kForRead);
  ASSERT_FALSE(notes.isNull());
  EXPECT_TRUE(notes->color().isByColor());
  EXPECT_EQ(notes->color().green(), 200);
  EXPECT_TRUE(notes->isOff());
  EXPECT_TRUE(notes->isLocked());
  EXPECT_FALSE(notes->isFrozen());
  EXPECT_FALSE(notes->isPlottable());
  EXPECT_EQ(notes->lineWeight(), OdDb::kLnWt035);
  EXPECT_EQ(notes->linetypeObjectId(), back->getLinetypeContinuousId());
  OdDbLayerTableRecordPtr walls = layers->getAt("Walls", OdDb::kForRead);
  ASSERT_FALSE(walls.isNull());
  EXPECT_EQ(walls->color().colorIndex(), 1);
  EXPECT_EQ(layers->numRecords(), 3u); // "0" merged with the new drawing's, not doubled

  OdDbLinetypeTablePtr linetypes = back->getLinetypeTableId().safeOpenObject();
  OdDbLinetypeTableRecordPtr dashed = linetypes->getAt("DASHDOT", OdDb::kForRead);
  ASSERT_FALSE(dashed.isNull());
  ASSERT_EQ(dashed->numDashes(), 4);
  EXPECT_EQ(dashed->dashLengthAt(0), 12.7);
  EXPECT_EQ(dashed->dashLengthAt(3), -6.35);
  EXPECT_EQ(dashed->comments(), OdString("Dash dot __ . __ ."));

  OdDbTextStyleTableRecordPtr song =
      OdDbTextStyleTableRecord::cast(back->getTEXTSTYLE().openObject());
  ASSERT_FALSE(song.isNull());
  EXPECT_EQ(song->getName(), OdString("Song"));
  OdString face;
  bool bold = true, italic = false;
  int charset = 0, pitch = 0;
  song->font(face, bold, italic, charset, pitch);
  EXPECT_EQ(face, OdString("宋体"));
  EXPECT_FALSE(bold);
  EXPECT_TRUE(italic);
  EXPECT_EQ(charset, 134);
  EXPECT_EQ(pitch, 2);
  EXPECT_DOUBLE_EQ(song->obliquingAngle(), 0.25);
  EXPECT_EQ(back->getTEXTSIZE(), 3.5);
  EXPECT_EQ(back->getDIMSCALE(), 100.0);
  EXPECT_EQ(OdDbLayerTableRecordPtr(back->getCLAYER().safeOpenObject())->getName(),
            OdString("Walls"));
}

TEST_F(DxfFileTest, DictionariesAndGroupsComeBackWithTheirEntriesAndOwners) {
  OdDbDatabasePtr db = sampleDrawing();
  ASSERT_EQ(odDbWriteDxf(db, path("a.dxf").c_str()), eOk);
  OdDbDatabasePtr back = load(path("a.dxf"));
  ASSERT_FALSE(back.isNull());
  const std::string expected = describeObjects(db);
  ASSERT_NE(expected.find("/ACAD_GROUP/Pair OdDbGroup"), std::string::npos) << expected;
  ASSERT_NE(expected.find("/MY_APP/Settings OdDbDictionary"), std::string::npos) << expected;
  EXPECT_EQ(describeObjects(back), expected);
  // The file's dictionaries of these names are the new database's own, not second copies.
  OdDbDictionaryPtr root = back->getNamedObjectsDictionaryId().safeOpenObject();
  EXPECT_EQ(root->getAt("ACAD_GROUP"), back->getGroupDictionaryId());
}

TEST_F(DxfFileTest, SaveLoadSaveGivesTheSameBytes) {
  OdDbDatabasePtr db = sampleDrawing();
  ASSERT_EQ(odDbWriteDxf(db, path("first.dxf").c_str()), eOk);
  OdDbDatabasePtr back = load(path("first.dxf"));
  ASSERT_FALSE(back.isNull());
  ASSERT_EQ(odDbWriteDxf(back, path("second.dxf").c_str()), eOk);
  const std::string first = readAll(path("first.dxf"));
  EXPECT_GT(first.size(), 1000u);
  // The one paper-space entity of ENTITIES carries `67 1` right after its AcDbEntity marker.
  const std::string paperFlag = "\n100\nAcDbEntity\n 67\n1\n";
  const std::size_t flagged = first.find(paperFlag, first.find("\n  2\nENTITIES\n"));
  EXPECT_NE(std::string::npos, flagged);
  EXPECT_EQ(std::string::npos, first.find(paperFlag, flagged + 1));
  EXPECT_EQ(readAll(path("second.dxf")), first);
  // Handles given out after a load do not collide with what the file used.
  EXPECT_GE(static_cast<OdUInt64>(back->handseed()), static_cast<OdUInt64>(db->handseed()));
}

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

TEST_F(DxfFileTest, TheSmallValidFileLoads) {
  writeAll(path("ok.dxf"), joined(validLines()));
  OdDbDatabasePtr db = load(path("ok.dxf"));
  ASSERT_FALSE(db.isNull());
  OdDbBlockTableRecordPtr model = db->getModelSpaceId().safeOpenObject();
  ASSERT_EQ(model->entityIds().size(), 1u);
  EXPECT_EQ(model->entityIds()[0].getHandle(), OdDbHandle(0x100));
  OdDbLinePtr line = model->entityIds()[0].safeOpenObject();
  EXPECT_EQ(line->endPoint(), OdGePoint3d(3.0, 4.0, 0.0));
}

TEST_F(DxfFileTest, AFileLoadsFromAPipeAndWhenLargerThanThePartKeptInMemory) {
  // The line of the fault must still be right after a long stretch of the file, and header
  // values read early must still apply at the end.
  Lines lines = validLines();
  lines.insert(lines.begin() + 8, {"  9", "$LTSCALE", " 40", "2.5"});
  lines.insert(lines.begin() + 12, {"999", std::string(9u << 20, 'c')});
  writeAll(path("large.dxf"), joined(lines));
  OdDbDatabasePtr db = load(path("large.dxf"));
  ASSERT_FALSE(db.isNull());
  EXPECT_EQ(2.5, db->getLTSCALE());
  lines[lines.size() - 9] = "x"; // the end point's x, the value of " 11"
  writeAll(path("large.dxf"), joined(lines));
  OdDbDatabasePtr none;
  OdString error;
  EXPECT_EQ(eInvalidDxfCode, odDbReadDxf(path("large.dxf").c_str(), none, &error));
  EXPECT_NE(std::string::npos, error.toUtf8().find("line " + std::to_string(lines.size() - 8) +
                                                   ": group 11 needs a number"))
      << error.toUtf8();

  // A pipe cannot be mapped; it is read to its end.
  ASSERT_EQ(0, ::mkfifo(path("pipe.dxf").c_str(), 0600));
  std::thread writer([this] { writeAll(path("pipe.dxf"), joined(validLines())); });
  OdDbDatabasePtr piped = load(path("pipe.dxf"));
  writer.join();
  ASSERT_FALSE(piped.isNull());
  OdDbBlockTableRecordPtr model = piped->getModelSpaceId().safeOpenObject();
  EXPECT_EQ(model->entityIds().size(), 1u);
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
      {"proxy object of a class with no CLASS record", objects({"  0", "ACAD_PROXY_OBJECT",
                                                                "  5", "A0",
                                                                "330", "0",
                                                                "100", "AcDbProxyObject",
                                                                " 90", "499",
                                                                " 91", "500",
                                                                " 71", "33",
                                                                " 97", "0",
                                                                " 70", "0",
                                                                "161", "0",
                                                                " 94", "0"}),
       54},
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
  OdDbDatabasePtr db = sampleDrawing();
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
  std::string here = __FILE__;
  return here.substr(0, here.rfind('/')) + "/ezdxf_audit.py";
}

bool haveEzdxf() {
  return std::system("/usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1") == 0;
}

std::string runChecker(const std::string& args) {
  std::string output;
  const std::string command = "/usr/bin/python3 '" + scriptPath() + "' " + args + " 2>&1";
  if (std::FILE* pipe = ::popen(command.c_str(), "r")) {
    char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
      output.append(buffer, n);
    ::pclose(pipe);
  }
  return output;
}

TEST_F(DxfFileTest, EzdxfAuditFindsNoErrorAndCountsEveryEntity) {
  if (!haveEzdxf())
    GTEST_SKIP() << "python3-ezdxf is not installed";
  OdDbDatabasePtr db = sampleDrawing();
  ASSERT_EQ(odDbWriteDxf(db, path("a.dxf").c_str()), eOk);
  const std::string report = runChecker("'" + path("a.dxf") + "'");
  EXPECT_NE(report.find("\"errors\": 0,"), std::string::npos) << report;
  EXPECT_NE(report.find("\"version\": \"AC1032\""), std::string::npos) << report;
  for (const char* count : {"\"LINE\": 2", "\"LWPOLYLINE\": 1", "\"ARC\": 1", "\"POINT\": 1",
                            "\"HATCH\": 2", "\"TEXT\": 1"})
    EXPECT_NE(report.find(count), std::string::npos) << count << " in " << report;
  EXPECT_NE(report.find("\"DASHDOT\""), std::string::npos) << report;
  EXPECT_NE(report.find("\"Walls\""), std::string::npos) << report;
}

TEST_F(DxfFileTest, ADrawingWrittenByEzdxfLoads) {
  if (!haveEzdxf())
    GTEST_SKIP() << "python3-ezdxf is not installed";
  const std::string made = runChecker("--make '" + path("theirs.dxf") + "'");
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
  const std::string report = runChecker("'" + path("ours.dxf") + "'");
  EXPECT_NE(report.find("\"errors\": 0,"), std::string::npos) << report;
  EXPECT_NE(report.find("\"LWPOLYLINE\": 1"), std::string::npos) << report;
}

} // namespace
