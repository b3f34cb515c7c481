// Drawings holding the module's entities saved as DXF with the module loaded through the
// dynamic linker: every entity comes back as its own class with its fields, the classes that
// share a DXF name come back as the class they were saved as, a class no module knows stays a
// proxy, and ezdxf reads the file and draws the proxies.

#include "ModuleFixture.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDictionary.h"
#include "DbDwgStreamFiler.h"
#include "DbDxfFile.h"
#include "DbProxyEntity.h"
#include "RxObjectImpl.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>
#include <unistd.h>

namespace {

std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

OdGePoint3d pt(double x, double y, double z = 0.0) {
  return OdGePoint3d(x, y, z);
}

/// A module entity made from its published DWG record: the platform writes the common entity
/// data, fields writes the class's own part.
OdDbEntityPtr fromRecord(OdDbDatabase* db, const char* className,
                         const std::function<void(OdDbDwgFiler&)>& fields) {
  OdRxClass* cls = odrxGetClass(OdString(className));
  if (!cls)
    throw OdError(eKeyNotFound, OdString(className) + OD_T(" is not registered"));
  OdDbEntityPtr entity = OdDbEntity::cast(cls->create());
  entity->setDatabaseDefaults(db);
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  filer.openForWrite(db, OdDbFiler::kCopyFiler);
  entity->OdDbEntity::dwgOutFields(&filer);
  fields(filer);
  filer.rewind();
  if (entity->dwgInFields(&filer) != eOk || filer.remainingDataBits() != 0)
    throw OdError(eInvalidInput, OdString(className) + OD_T(" refused its record"));
  return entity;
}

/// Everything an entity files, as bytes: equal streams mean equal fields.
std::string streamOf(const OdDbObject* object) {
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  filer.openForWrite(object->database(), OdDbFiler::kCopyFiler);
  object->dwgOutFields(&filer);
  const OdUInt8Array& d = filer.dataBuffer();
  const OdUInt8Array& s = filer.stringBuffer();
  return std::string(d.begin(), d.end()) + "|" + std::to_string(filer.dataBitSize()) + "|" +
         std::string(s.begin(), s.end());
}

class ModuleDxfTest : public LoadedModule {
protected:
  void SetUp() override {
    LoadedModule::SetUp();
    ASSERT_FALSE(module.isNull());
    base = "/tmp/moduledxf-" + std::to_string(::getpid()) + "-" +
           ::testing::UnitTest::GetInstance()->current_test_info()->name();
  }
  void TearDown() override {
    for (const char* suffix : {"a.dxf", "b.dxf", "c.dxf"})
      std::remove((base + suffix).c_str());
    LoadedModule::TearDown();
  }
  std::string file(const char* suffix) const { return base + suffix; }
  OdString path(const char* suffix) const { return OdString::fromUtf8(file(suffix)); }

  void add(OdDbDatabase* db, OdDbEntity* entity, OdUInt16 color) {
    entity->setColorIndex(color);
    OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
    space->appendOdDbEntity(entity);
  }

  /// One entity of every survey class, each from its record.
  OdDbDatabasePtr surveyDrawing() {
    OdDbDatabasePtr db = OdDbDatabase::createObject();
    const auto rect = [](OdDbDwgFiler& f) {
      f.wrInt16(1);
      for (const OdGePoint3d& p : {pt(0, 0), pt(10, 0), pt(10, 5), pt(0, 5)})
        f.wrPoint3d(p);
      f.wrPoint3d(pt(5, 2.5));
      f.wrPoint3d(pt(5, 52.5));
    };
    add(db, fromRecord(db, "OdDbGeoRect", rect), 1);
    add(db,
        fromRecord(
            db, "OdDbGeo3dRect",
            [](OdDbDwgFiler& f) {
              f.wrInt16(1);
              for (const OdGePoint3d& p : {pt(20, 0, 1), pt(30, 0, 1), pt(30, 8, 1), pt(20, 8, 1)})
                f.wrPoint3d(p);
              f.wrPoint3d(pt(25, 4, 1));
              f.wrPoint3d(pt(25, 54, 1));
            }),
        3);
    add(db,
        fromRecord(db, "OdDbGeoTriangle",
                   [](OdDbDwgFiler& f) {
                     f.wrInt16(1);
                     for (const OdGePoint3d& p : {pt(40, 0), pt(50, 0), pt(45, 8)})
                       f.wrPoint3d(p);
                     f.wrPoint3d(pt(45, 8.0 / 3));
                     f.wrPoint3d(pt(45, 8.0 / 3 + 50));
                   }),
        5);
    add(db,
        fromRecord(db, "OdDbGeoPolygon",
                   [](OdDbDwgFiler& f) {
                     f.wrInt16(1);
                     f.wrInt16(4);
                     f.wrPoint3d(pt(65, 5));
                     f.wrPoint3d(pt(70, 5));
                     for (const OdGePoint3d& p : {pt(70, 5), pt(65, 10), pt(60, 5), pt(65, 0)})
                       f.wrPoint3d(p);
                   }),
        30);
    add(db,
        fromRecord(db, "OdDbMesuarData",
                   [](OdDbDwgFiler& f) {
                     f.wrInt16(5);
                     f.wrString(OD_T("面积 12.5"));
                   }),
        2);
    return db;
  }

  /// Two of the module's non-graphical table objects in an application dictionary.
  void addTables(OdDbDatabase* db) {
    OdDbDictionaryPtr root = db->getNamedObjectsDictionaryId().safeOpenObject(OdDb::kForWrite);
    OdDbDictionaryPtr tables = OdDbDictionary::createObject();
    root->setAt("CUSTENTS_TABLES", tables);
    for (const char* name : {"GeosymTable", "GeoTreeTable"}) {
      OdRxClass* cls = odrxGetClass(OdString(name));
      ASSERT_NE(cls, nullptr) << name;
      tables->setAt(name, OdDbObject::cast(cls->create()));
    }
  }

  std::vector<OdDbObjectPtr> entitiesOf(OdDbDatabase* db) {
    std::vector<OdDbObjectPtr> result;
    OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject();
    for (const OdDbObjectId& id : space->entityIds())
      result.push_back(id.safeOpenObject());
    return result;
  }

  std::string base;
};

TEST_F(ModuleDxfTest, SurveyEntitiesComeBackWithTheirFieldsAndSaveTheSame) {
  OdDbDatabasePtr db = surveyDrawing();
  OdString error;
  ASSERT_EQ(odDbWriteDxf(db, path("a.dxf"), &error), eOk) << utf8(error);
  OdDbDatabasePtr loaded;
  ASSERT_EQ(odDbReadDxf(path("a.dxf"), loaded, &error), eOk) << utf8(error);
  const std::vector<OdDbObjectPtr> before = entitiesOf(db), after = entitiesOf(loaded);
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t i = 0; i < before.size(); ++i) {
    SCOPED_TRACE(utf8(before[i]->isA()->name()));
    EXPECT_EQ(after[i]->isA(), before[i]->isA());
    EXPECT_EQ(streamOf(after[i]), streamOf(before[i]));
    EXPECT_EQ(after[i]->getDbHandle(), before[i]->getDbHandle());
  }
  ASSERT_EQ(odDbWriteDxf(loaded, path("b.dxf"), &error), eOk) << utf8(error);
  EXPECT_EQ(readAll(file("b.dxf")), readAll(file("a.dxf")));
}

TEST_F(ModuleDxfTest, SharedDxfNamesComeBackAsTheClassSaved) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const char* names[] = {"OdDbDimCableTray", "OdDbPracticeLabel", "OdDbDivPoint",
                         "OdDbDivPointNew"};
  for (const char* name : names) {
    OdRxClass* cls = odrxGetClass(OdString(name));
    ASSERT_NE(cls, nullptr) << name;
    OdDbEntityPtr entity = OdDbEntity::cast(cls->create());
    entity->setDatabaseDefaults(db);
    add(db, entity, 7);
  }
  OdString error;
  ASSERT_EQ(odDbWriteDxf(db, path("a.dxf"), &error), eOk) << utf8(error);
  const std::string text = readAll(file("a.dxf"));
  EXPECT_NE(text.find("ODDBPRACTICELABEL\n  2\nOdDbDimCableTray\n"), std::string::npos);
  EXPECT_NE(text.find("ODDBPRACTICELABEL\n  2\nOdDbPracticeLabel\n"), std::string::npos);
  OdDbDatabasePtr loaded;
  ASSERT_EQ(odDbReadDxf(path("a.dxf"), loaded, &error), eOk) << utf8(error);
  const std::vector<OdDbObjectPtr> after = entitiesOf(loaded);
  ASSERT_EQ(after.size(), 4u);
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_EQ(utf8(after[i]->isA()->name()), names[i]);
}

TEST_F(ModuleDxfTest, AClassNoModuleKnowsStaysAProxyWrittenBackUnchanged) {
  OdDbDatabasePtr db = surveyDrawing();
  OdString error;
  ASSERT_EQ(odDbWriteDxf(db, path("a.dxf"), &error), eOk) << utf8(error);
  // Rename the rectangle's class in its CLASS record to one nobody registers.
  std::string text = readAll(file("a.dxf"));
  const std::size_t at = text.find("\n  2\nOdDbGeoRect\n");
  ASSERT_NE(at, std::string::npos);
  text.replace(at, 17, "\n  2\nOdDbGeoRectGone\n");
  const std::size_t dxf = text.rfind("\n  1\n", at);
  const std::size_t dxfEnd = text.find('\n', dxf + 5);
  text.replace(dxf + 5, dxfEnd - dxf - 5, "GEORECTGONE");
  std::ofstream(file("b.dxf"), std::ios::binary) << text;

  OdDbDatabasePtr loaded;
  ASSERT_EQ(odDbReadDxf(path("b.dxf"), loaded, &error), eOk) << utf8(error);
  const std::vector<OdDbObjectPtr> after = entitiesOf(loaded);
  OdDbProxyEntityPtr proxy = OdDbProxyEntity::cast(after[0]);
  ASSERT_FALSE(proxy.isNull()) << utf8(after[0]->isA()->name());
  EXPECT_EQ(proxy->originalClassName(), OdString(OD_T("OdDbGeoRectGone")));
  EXPECT_EQ(proxy->graphicsMetafileType(), OdDbProxyEntity::kFullGraphics);
  EXPECT_EQ(utf8(after[1]->isA()->name()), "OdDbGeo3dRect");
  ASSERT_EQ(odDbWriteDxf(loaded, path("c.dxf"), &error), eOk) << utf8(error);
  // The proxy's record is now marked as written without its class; all else is unchanged.
  std::string expected = text;
  const std::size_t flag = expected.find("280\n0\n", expected.find("OdDbGeoRectGone"));
  ASSERT_NE(flag, std::string::npos);
  expected.replace(flag, 6, "280\n1\n");
  EXPECT_EQ(readAll(file("c.dxf")), expected);
}

TEST_F(ModuleDxfTest, ModuleObjectsInDictionariesComeBackAsTheirClass) {
  OdDbDatabasePtr db = surveyDrawing();
  addTables(db);
  OdString error;
  ASSERT_EQ(odDbWriteDxf(db, path("a.dxf"), &error), eOk) << utf8(error);
  const std::string text = readAll(file("a.dxf"));
  EXPECT_NE(text.find("  1\nGEOSYMTABLE\n  2\nGeosymTable\n"), std::string::npos);
  EXPECT_NE(text.find("ACAD_PROXY_OBJECT", text.find("OBJECTS")), std::string::npos);
  OdDbDatabasePtr loaded;
  ASSERT_EQ(odDbReadDxf(path("a.dxf"), loaded, &error), eOk) << utf8(error);
  OdDbDictionaryPtr root = loaded->getNamedObjectsDictionaryId().safeOpenObject();
  OdDbDictionaryPtr tables = root->getAt("CUSTENTS_TABLES", OdDb::kForRead);
  ASSERT_FALSE(tables.isNull());
  for (const char* name : {"GeosymTable", "GeoTreeTable"}) {
    OdDbObjectPtr object = tables->getAt(name, OdDb::kForRead);
    ASSERT_FALSE(object.isNull()) << name;
    EXPECT_EQ(utf8(object->isA()->name()), name);
    EXPECT_EQ(object->ownerId(), tables->objectId());
  }
  ASSERT_EQ(odDbWriteDxf(loaded, path("b.dxf"), &error), eOk) << utf8(error);
  EXPECT_EQ(readAll(file("b.dxf")), text);
}

TEST_F(ModuleDxfTest, EzdxfAuditsTheFileAndDrawsTheProxies) {
  if (::access("/usr/bin/python3", X_OK) != 0)
    GTEST_SKIP() << "no /usr/bin/python3";
  if (std::system("/usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1") != 0)
    GTEST_SKIP() << "no ezdxf";
  OdDbDatabasePtr db = surveyDrawing();
  addTables(db);
  OdString error;
  ASSERT_EQ(odDbWriteDxf(db, path("a.dxf"), &error), eOk) << utf8(error);
  const std::string script = "import sys, ezdxf\n"
                             "doc = ezdxf.readfile(sys.argv[1])\n"
                             "auditor = doc.audit()\n"
                             "proxies = doc.modelspace().query('ACAD_PROXY_ENTITY')\n"
                             "counts = [len(list(p.virtual_entities())) for p in proxies]\n"
                             "print(len(auditor.errors), *counts)\n";
  const std::string command =
      "/usr/bin/python3 -c \"" + script + "\" " + file("a.dxf") + " > " + file("c.dxf") + " 2>&1";
  ASSERT_EQ(std::system(command.c_str()), 0) << readAll(file("c.dxf"));
  const std::string report = readAll(file("c.dxf"));
  std::istringstream out(report);
  int errors = -1;
  out >> errors;
  std::vector<int> drawn;
  for (int n = 0; out >> n;)
    drawn.push_back(n);
  EXPECT_EQ(errors, 0) << report;
  ASSERT_EQ(drawn.size(), 5u) << report;
  // The four shapes draw their outlines; the measurement data draws nothing of its own, so
  // its proxy carries no graphics.
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_GT(drawn[i], 0) << "shape " << i << ": " << report;
  EXPECT_EQ(drawn[4], 0) << report;
}

} // namespace
