// The module session in-process: what a subcommand sees while the module is loaded, and that
// the platform is left as it was found, whether loading succeeds or fails.

#include "ModuleSession.h"

#include "OdError.h"
#include "RxDictionary.h"
#include "RxDynamicLinker.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::string kModulePath = std::string(CUSTENTS_BIN_DIR) + "/CustEnts.tx";

/// Keeps the platform initialised around a test, so that what a session leaves behind in the
/// class dictionary can still be seen after the session has gone.
class ModuleSessionTest : public ::testing::Test {
protected:
  void SetUp() override { odInitialize(); }
  void TearDown() override { odUninitialize(); }
};

TEST_F(ModuleSessionTest, ModuleClassesLiveExactlyAsLongAsTheSession) {
  {
    ModuleSession session(kModulePath);
    ASSERT_NE(session.module(), nullptr);
    EXPECT_EQ(session.moduleName(), OdString(OD_T("CustEnts.tx")));
    EXPECT_NE(odrxGetClass(OD_T("OdDbGeoRect")), nullptr);
    EXPECT_NE(odrxGetClass(OD_T("PropertyPE")), nullptr);

    session.close();
    EXPECT_EQ(session.module(), nullptr);
    EXPECT_EQ(odrxGetClass(OD_T("OdDbGeoRect")), nullptr);
    EXPECT_EQ(odrxDynamicLinker()->loadedModuleNames().size(), 0u);
    session.close(); // a second close is harmless
  }
  {
    // The destructor unloads a module that was not closed, so it can be loaded again.
    ModuleSession session(kModulePath);
    EXPECT_NE(odrxGetClass(OD_T("OdDbCompass")), nullptr);
  }
  EXPECT_EQ(odrxGetClass(OD_T("OdDbCompass")), nullptr);
  EXPECT_EQ(odrxGetClass(OD_T("PropertyPE")), nullptr);
  EXPECT_NE(odrxGetClass(OD_T("OdDbEntity")), nullptr);
}

// What the linker leaves behind after a failed load is the platform tests' to check; the
// session must undo the host's registration around it.
TEST_F(ModuleSessionTest, FailedLoadLeavesNothingRegistered) {
  try {
    ModuleSession session(std::string(CUSTENTS_FIXTURE_DIR) + "/RxFixtureFailingInit.tx");
    FAIL() << "a module whose initApp throws was loaded";
  } catch (const OdError& error) {
    EXPECT_EQ(error.code(), eExtendedError);
    EXPECT_NE(error.description().toUtf8().find("fixture refuses to start"), std::string::npos);
  }
  EXPECT_EQ(odrxGetClass(OD_T("PropertyPE")), nullptr);
}

TEST_F(ModuleSessionTest, CloseRefusesWhileTheModuleIsReferenced) {
  ModuleSession session(kModulePath);
  OdRxModulePtr extra(session.module());
  try {
    session.close();
    FAIL() << "a referenced module was unloaded";
  } catch (const OdError& error) {
    EXPECT_EQ(error.code(), eModuleInUse);
  }
  EXPECT_NE(odrxGetClass(OD_T("OdDbGeoRect")), nullptr);
  // Dropping the last reference lets the linker unload it.
  extra.release();
  EXPECT_TRUE(odrxDynamicLinker()->unloadModule(OD_T("CustEnts.tx")));
  EXPECT_EQ(odrxGetClass(OD_T("OdDbGeoRect")), nullptr);
}

} // namespace
