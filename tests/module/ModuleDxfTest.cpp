// Drawings holding the module's entities saved as DXF with the module loaded through the
// dynamic linker: a class no module knows stays a proxy. That each class (those sharing a DXF
// name and the dictionary objects included) comes back as itself is the class contract suite's.

#include "ModuleFixture.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
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
      entity->setColorIndex(3);
      OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
      space->appendOdDbEntity(entity);
    }
    return db;
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

} // namespace
