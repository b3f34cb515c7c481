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
#include "sdk/SdkTestSupport.h"

namespace {

TEST(PlatformInitTest, DwgClassMapKnowsTheStandardTypeNumbers) {
  struct Case {
    OdUInt16 type;
    OdRxClass* expected;
  } cases[] = {
      {19, OdDbLine::desc()}, {27, OdDbPoint::desc()}, {77, OdDbPolyline::desc()},
      {17, OdDbArc::desc()},  {78, OdDbHatch::desc()}, {0, nullptr},
      {18, nullptr},          {20, nullptr},           {500, nullptr},
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
  const Outcome refused =
      outcomeOf([&] { odrxDynamicLinker()->loadModule(OdString::fromUtf8(good)); });
  const std::string message = refused.message.toUtf8();
  EXPECT_EQ(255, static_cast<int>(refused.code));
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
