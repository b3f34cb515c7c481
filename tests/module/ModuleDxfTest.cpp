// Drawings holding the module's entities saved as DXF with the module loaded through the
// dynamic linker: the classes that share a DXF name come back as the class they were saved as, a
// class no module knows stays a proxy, and module objects in dictionaries come back. That one
// object of each class saves, loads and saves the same, and that ezdxf audits the file, is the
// class contract suite's.

#include "ModuleFixture.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDictionary.h"
#include "DbDxfFile.h"
#include "DbProxyEntity.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace {

std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
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

  /// A flat and a 3D rectangle, made through the class dictionary as a host makes them.
  OdDbDatabasePtr surveyDrawing() {
    OdDbDatabasePtr db = OdDbDatabase::createObject();
    for (const char* name : {"OdDbGeoRect", "OdDbGeo3dRect"}) {
      OdDbEntityPtr entity = OdDbEntity::cast(odrxGetClass(OdString(name))->create());
      entity->setDatabaseDefaults(db);
      // Moving P2 of a point-sized rectangle gives it size, through the grip interface alone.
      OdDbVoidPtrArray grip;
      grip.append(reinterpret_cast<void*>(2));
      entity->moveGripPointsAt(grip, OdGeVector3d(10, 5, 0), 0);
      add(db, entity, 3);
    }
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

} // namespace
