#include "HostTestSupport.h"

#include "DbBlockTable.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
#include "HostExtend.h"
#include "OdError.h"
#include "RxDictionary.h"

#include <gtest/gtest.h>

ODRX_CONS_DEFINE_MEMBERS(HostTestEntity, OdDbEntity, OD_T("HOSTTESTENTITY"))

namespace {

// The platform and the host's classes are registered once for the whole test program, as the
// host application does at start-up.
class HostEnvironment : public ::testing::Environment {
public:
  void SetUp() override {
    odInitialize();
    odHostExtendInitialize();
    HostTestEntity::rxInit();
  }
  void TearDown() override {
    HostTestEntity::rxUninit();
    odHostExtendUninitialize();
    odUninitialize();
  }
};

::testing::Environment* const g_environment =
    ::testing::AddGlobalTestEnvironment(new HostEnvironment);

} // namespace

OdDbDatabasePtr newTestDatabase() {
  OdDbDatabasePtr database = OdDbDatabase::createObject();

  OdDbLayerTablePtr layers = database->getLayerTableId().safeOpenObject(OdDb::kForWrite);
  OdDbLayerTableRecordPtr wall = OdDbLayerTableRecord::createObject();
  wall->setName(OD_T("Wall"));
  layers->add(wall);

  OdDbLinetypeTablePtr linetypes = database->getLinetypeTableId().safeOpenObject(OdDb::kForWrite);
  OdDbLinetypeTableRecordPtr dashed = OdDbLinetypeTableRecord::createObject();
  dashed->setName(OD_T("DASHED"));
  linetypes->add(dashed);
  return database;
}

HostTestEntityPtr addTestEntity(OdDbDatabase* database) {
  OdDbBlockTableRecordPtr modelSpace = database->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
  HostTestEntityPtr entity = HostTestEntity::createObject();
  modelSpace->appendOdDbEntity(entity);
  return entity;
}
