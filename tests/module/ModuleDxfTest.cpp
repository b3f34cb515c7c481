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

using ModuleDxfTest = LoadedModule;

std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

TEST_F(ModuleDxfTest, AClassNoModuleKnowsStaysAProxyWrittenBackUnchanged) {
  ASSERT_FALSE(module.isNull());
  // A flat and a 3D rectangle, made through the class dictionary as a host makes them.
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
  const std::string base = "/tmp/moduledxf-" + std::to_string(::getpid());
  const std::string saved = base + "a.dxf", renamed = base + "b.dxf", again = base + "c.dxf";
  OdString error;
  ASSERT_EQ(odDbWriteDxf(db, OdString::fromUtf8(saved), &error), eOk) << utf8(error);
  // Rename the rectangle's class in its CLASS record to one nobody registers.
  std::string text = readAll(saved);
  const std::size_t at = text.find("\n  2\nOdDbGeoRect\n");
  ASSERT_NE(at, std::string::npos);
  text.replace(at, 17, "\n  2\nOdDbGeoRectGone\n");
  const std::size_t dxf = text.rfind("\n  1\n", at);
  const std::size_t dxfEnd = text.find('\n', dxf + 5);
  text.replace(dxf + 5, dxfEnd - dxf - 5, "GEORECTGONE");
  std::ofstream(renamed, std::ios::binary) << text;

  OdDbDatabasePtr loaded;
  ASSERT_EQ(odDbReadDxf(OdString::fromUtf8(renamed), loaded, &error), eOk) << utf8(error);
  OdDbBlockTableRecordPtr space = loaded->getModelSpaceId().safeOpenObject();
  const OdDbObjectIdArray ids = space->entityIds();
  ASSERT_EQ(ids.size(), 2u);
  OdDbProxyEntityPtr proxy = OdDbProxyEntity::cast(ids[0].safeOpenObject());
  ASSERT_FALSE(proxy.isNull());
  EXPECT_EQ(proxy->originalClassName(), OdString(OD_T("OdDbGeoRectGone")));
  EXPECT_EQ(proxy->graphicsMetafileType(), OdDbProxyEntity::kFullGraphics);
  EXPECT_EQ(utf8(ids[1].safeOpenObject()->isA()->name()), "OdDbGeo3dRect");
  ASSERT_EQ(odDbWriteDxf(loaded, OdString::fromUtf8(again), &error), eOk) << utf8(error);
  // The proxy's record is now marked as written without its class; all else is unchanged.
  std::string expected = text;
  const std::size_t flag = expected.find("280\n0\n", expected.find("OdDbGeoRectGone"));
  ASSERT_NE(flag, std::string::npos);
  expected.replace(flag, 6, "280\n1\n");
  EXPECT_EQ(readAll(again), expected);
  for (const std::string& path : {saved, renamed, again})
    std::remove(path.c_str());
}

} // namespace
