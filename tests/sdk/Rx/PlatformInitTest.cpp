#include "DbEntity.h"
#include "DbArc.h"
#include "DbHatch.h"
#include "DbLine.h"
#include "DbPoint.h"
#include "DbPolyline.h"
#include "OdError.h"
#include "RxDictionary.h"
#include "RxDynamicLinker.h"
#include "sdk/Rx/fixtures/RxFixtureEvents.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(PlatformInitTest, NestedInitializeKeepsTheSameClasses) {
  OdRxClass* line = OdDbLine::desc();
  OdRxModule* database = odrxDatabaseModule();
  const unsigned count = odrxRegisteredClasses().size();
  odInitialize();
  EXPECT_EQ(line, OdDbLine::desc());
  EXPECT_EQ(count, odrxRegisteredClasses().size());
  odUninitialize();
  EXPECT_EQ(line, OdDbLine::desc()) << "an inner odUninitialize removed the classes";
  EXPECT_EQ(line, odrxGetClass(OD_T("OdDbLine")));
  EXPECT_EQ(database, odrxDatabaseModule());
}

TEST(PlatformInitTest, DatabaseModuleOwnsTheDatabaseClassesAndCountsLocks) {
  OdRxModule* database = odrxDatabaseModule();
  ASSERT_NE(nullptr, database);
  for (OdRxClass* cls : {OdDbObject::desc(), OdDbEntity::desc(), OdDbLine::desc(),
                         OdDbPoint::desc(), OdDbPolyline::desc()}) {
    ASSERT_NE(nullptr, cls);
    EXPECT_EQ(database, cls->module()) << cls->name().toUtf8();
  }
  EXPECT_EQ(OdString(OD_T("TD_Db")), database->moduleName());
  EXPECT_EQ(nullptr, database->sysData()) << "built in, not loaded";
  EXPECT_FALSE(database->fileName().isEmpty());

  const long locks = database->numRefs();
  database->addRef();
  database->addRef();
  EXPECT_EQ(locks + 2, database->numRefs());
  {
    OdRxModulePtr held(database);
    EXPECT_EQ(locks + 3, database->numRefs());
  }
  database->release();
  database->release();
  EXPECT_EQ(locks, database->numRefs());
}

TEST(PlatformInitTest, DwgClassMapKnowsTheStandardTypeNumbers) {
  struct Case {
    OdUInt16 type;
    OdRxClass* expected;
  } cases[] = {
      {19, OdDbLine::desc()},  {27, OdDbPoint::desc()}, {77, OdDbPolyline::desc()},
      {17, OdDbArc::desc()},   {78, OdDbHatch::desc()}, {0, nullptr},
      {18, nullptr},           {20, nullptr},           {500, nullptr},
      {65535, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.type);
    EXPECT_EQ(c.expected, oddbDwgClassMapDesc(c.type));
  }
}

TEST(PlatformInitTest, LastUninitializeUnloadsModulesAndRemovesEveryClass) {
  const std::string good = std::string(CUSTENTS_BIN_DIR) + "/RxFixtureGood.tx";
  const unsigned count = odrxRegisteredClasses().size();
  const long locks = odrxDatabaseModule()->numRefs();
  rxFixtureClearEvents();
  odrxDynamicLinker()->loadModule(OdString::fromUtf8(good));

  int depth = 0;
  while (odrxDatabaseModule()) {
    odUninitialize();
    ++depth;
  }
  ASSERT_GT(depth, 0);
  EXPECT_EQ("create;init;uninit;destroy;", rxFixtureEvents()) << "the module was not unloaded";
  EXPECT_EQ(0u, odrxDynamicLinker()->loadedModuleNames().size());
  EXPECT_EQ(nullptr, OdRxObject::desc());
  EXPECT_EQ(nullptr, OdDbEntity::desc());
  EXPECT_EQ(nullptr, oddbDwgClassMapDesc(19));
  EXPECT_EQ(nullptr, odrxGetClass(OD_T("OdDbLine")));
  EXPECT_EQ(0u, odrxRegisteredClasses().size());
  odUninitialize(); // one too many does nothing
  EXPECT_EQ(nullptr, odrxDatabaseModule());

  // A module that needs the database classes refuses to start without them.
  rxFixtureClearEvents();
  OdResult code = eOk;
  std::string message;
  try {
    odrxDynamicLinker()->loadModule(OdString::fromUtf8(good));
  } catch (const OdError& err) {
    code = err.code();
    message = err.description().toUtf8();
  }
  EXPECT_EQ(255, static_cast<int>(code));
  EXPECT_NE(std::string::npos, message.find("RxFixtureGood.tx")) << message;
  EXPECT_EQ("create;init;destroy;", rxFixtureEvents());

  for (int i = 0; i < depth; ++i)
    odInitialize();
  ASSERT_NE(nullptr, odrxDatabaseModule());
  EXPECT_EQ(count, odrxRegisteredClasses().size());
  EXPECT_EQ(locks, odrxDatabaseModule()->numRefs());
  EXPECT_EQ(OdDbLine::desc(), oddbDwgClassMapDesc(19));
  EXPECT_TRUE(OdDbLine::desc()->isDerivedFrom(OdDbEntity::desc()));
  rxFixtureClearEvents();
}

} // namespace
