// Loading, initialising, unloading: the module's life as the platform drives it.

#include "ModuleFixture.h"

#include "DbLine.h"
#include "EntEditTextOper.h"
#include "PropertyPE.h"
#include "RxObjectImpl.h"

#include <dlfcn.h>

#include <functional>

namespace {

using ModuleLifecycle = LoadedModule;

OdResult codeOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const OdError& err) {
    return err.code();
  }
  return eOk;
}

TEST_F(ModuleLifecycle, EntryPointsGiveVersionOneAndOneModuleObjectThatLocksTheDatabaseModule) {
  void* handle = module->sysData();
  ASSERT_NE(handle, nullptr);
  auto getVersion = reinterpret_cast<OdrxGetAPIVersionFn>(dlsym(handle, "odrxGetAPIVersion"));
  auto create = reinterpret_cast<OdrxCreateModuleObjectFn>(dlsym(handle, "odrxCreateModuleObject"));
  ASSERT_NE(getVersion, nullptr);
  ASSERT_NE(create, nullptr);

  unsigned version[4] = {9, 9, 9, 9};
  EXPECT_EQ(getVersion(version[0], version[1], version[2], version[3]), 0);
  EXPECT_EQ(version[0], 1u);
  EXPECT_EQ(version[1] + version[2] + version[3], 0u);

  // A second creation returns the same object and leaves the handle argument alone.
  int marker = 0;
  void* handleArgument = &marker;
  EXPECT_EQ(create(&handleArgument), module.get());
  EXPECT_EQ(handleArgument, &marker);

  // The file name comes from the loader; the database module is locked once.
  const std::string fileName = utf8(module->fileName());
  ASSERT_GE(fileName.size(), 11u);
  EXPECT_EQ(fileName.substr(fileName.size() - 11), "CustEnts.tx");
  EXPECT_EQ(module->moduleName(), OD_T("CustEnts.tx"));
  OdRxModule* database = odrxDatabaseModule();
  ASSERT_NE(database, nullptr);
  EXPECT_EQ(database->numRefs(), 1);
  module->uninitApp();
  EXPECT_EQ(database->numRefs(), 0);
  module->initApp();
  EXPECT_EQ(database->numRefs(), 1);
}

TEST_F(ModuleLifecycle, SecondInitialisationRaises313AndSecondUninitialisation255) {
  const int editors = EntEditTextOper::count();
  EXPECT_EQ(codeOf([&] { module->initApp(); }), 313);
  EXPECT_EQ(moduleClasses().size(), 57u);
  EXPECT_EQ(odrxDatabaseModule()->numRefs(), 1);
  EXPECT_EQ(EntEditTextOper::count(), editors);
  module->uninitApp();
  EXPECT_EQ(moduleClasses().size(), 0u);
  EXPECT_EQ(codeOf([&] { module->uninitApp(); }), 255);
  module->initApp(); // back to a loaded state for the fixture's unload
  EXPECT_EQ(moduleClasses().size(), 57u);
}

/// A host-side property extension on a platform class, which unloading must leave alone.
class HostLinePropertyPE : public PropertyPE {};

TEST(ModuleUnload, RemovesItsClassesAndCallbacksAndNothingElseAThousandTimesOver) {
  odInitialize();
  odHostExtendInitialize();
  static OdStaticRxObject<HostLinePropertyPE> hostLineExtension;
  OdDbLine::desc()->addX(PropertyPE::desc(), &hostLineExtension);
  const unsigned platformClasses = odrxRegisteredClasses().size();
  const int editors = EntEditTextOper::count();
  for (int cycle = 0; cycle < 1000; ++cycle) {
    OdRxModulePtr module = odrxDynamicLinker()->loadModule(moduleFilePath());
    if (cycle == 0) {
      EXPECT_EQ(odrxRegisteredClasses().size(), platformClasses + 57);
      EXPECT_EQ(EntEditTextOper::count(), editors + 1);
    }
    const OdString name = module->moduleName();
    module = nullptr;
    ASSERT_TRUE(odrxDynamicLinker()->unloadModule(name)) << "cycle " << cycle;
  }
  EXPECT_EQ(odrxRegisteredClasses().size(), platformClasses);
  for (const char* name : {"OdDbGeoRect", "OdDbDimCoor", "OdDb3dArrow"})
    EXPECT_EQ(odrxGetClass(OdString(name)), nullptr) << name;
  EXPECT_EQ(EntEditTextOper::count(), editors);
  EXPECT_EQ(odrxDatabaseModule()->numRefs(), 0);
  EXPECT_TRUE(odrxDynamicLinker()->loadedModuleNames().isEmpty());
  EXPECT_EQ(OdDbLine::desc()->getX(PropertyPE::desc()).get(), &hostLineExtension);
  OdDbLine::desc()->delX(PropertyPE::desc());
  odHostExtendUninitialize();
  odUninitialize();
}

TEST(ModuleWithoutPlatform, RefusesToInitialiseWith255AndRegistersNothing) {
  const int editors = EntEditTextOper::count();
  // Without the platform's database classes.
  EXPECT_EQ(codeOf([] { odrxDynamicLinker()->loadModule(moduleFilePath()); }), 255);
  EXPECT_EQ(odrxRegisteredClasses().size(), 0u);
  EXPECT_EQ(EntEditTextOper::count(), editors);
  EXPECT_TRUE(odrxDynamicLinker()->loadedModuleNames().isEmpty());
}

} // namespace
