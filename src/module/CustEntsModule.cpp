#include "CustEntsModule.h"

#include "DbEntity.h"
#include "Registration.h"

namespace {
/// The one module object of the process; null before the first creation and after it is
/// destroyed.
OdRxModule* g_moduleObject = nullptr;
} // namespace

extern "C" int odrxGetAPIVersion(unsigned& major, unsigned& minor, unsigned& build,
                                 unsigned& patch) {
  major = 1;
  minor = 0;
  build = 0;
  patch = 0;
  return 0;
}

extern "C" OdRxModule* odrxCreateModuleObject(void** moduleHandle) {
  if (g_moduleObject)
    return g_moduleObject;
  CustEntsModuleObject* module = new CustEntsModuleObject(moduleHandle ? *moduleHandle : nullptr);
  if (moduleHandle)
    *moduleHandle = nullptr;
  g_moduleObject = module;
  return module;
}

CustEntsModule::~CustEntsModule() { g_moduleObject = nullptr; }

void CustEntsModule::initApp() {
  OdRxClass* entityClass = OdDbEntity::desc();
  if (!entityClass)
    throw OdError(eNotInitializedYet, OD_T("The platform's database classes are not registered"));
  // Keep the platform's database module loaded while classes derived from it exist.
  OdRxModule* databaseModule = entityClass->module();
  if (databaseModule)
    databaseModule->addRef();
  try {
    custents::registerClasses();
  } catch (...) {
    if (databaseModule)
      databaseModule->release();
    throw;
  }
}

void CustEntsModule::uninitApp() {
  custents::unregisterClasses();
  if (OdRxModule* databaseModule = OdDbEntity::desc() ? OdDbEntity::desc()->module() : nullptr)
    databaseModule->release();
}
