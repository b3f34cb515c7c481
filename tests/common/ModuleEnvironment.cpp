// The module's classes registered once for the unit tests of its code, as the module's start-up
// registers them: inside the initialisation of a module object, here a built-in one, so the
// classes belong to a module as they do in a host and drawing files keep them as proxies.

#include "HostExtend.h"
#include "RxDictionary.h"
#include "RxModule.h"
#include "RxObjectImpl.h"
#include "module/Registration.h"

#include <gtest/gtest.h>

namespace {

/// The module's code linked into the test program instead of loaded from CustEnts.tx.
class LinkedModule : public OdRxModule {
public:
  void* sysData() override { return nullptr; }
  void initApp() override { custents::registerClasses(); }
  void uninitApp() override { custents::unregisterClasses(); }
  OdString fileName() const override { return OdString(); }
  void deleteModuleObject() override {}
};

class ModuleEnvironment : public ::testing::Environment {
public:
  void SetUp() override {
    odInitialize();
    odHostExtendInitialize();
    m_module.setModuleName(OD_T("CustEnts"));
    OdRxModule* previous = odrxSetCurrentInitModule(&m_module);
    m_module.initApp();
    odrxSetCurrentInitModule(previous);
  }
  void TearDown() override {
    m_module.uninitApp();
    odHostExtendUninitialize();
    odUninitialize();
  }

private:
  OdStaticRxObject<LinkedModule> m_module;
};

} // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::AddGlobalTestEnvironment(new ModuleEnvironment);
  return RUN_ALL_TESTS();
}
