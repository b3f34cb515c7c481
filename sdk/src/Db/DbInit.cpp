// Registration of the platform's own classes. The run-time root classes come first; the
// database classes belong to the built-in database module, which loadable modules lock while
// they depend on it.

#include "DbArc.h"
#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDictionary.h"
#include "DbEntity.h"
#include "DbFiler.h"
#include "DbGroup.h"
#include "DbHatch.h"
#include "DbLayerTable.h"
#include "DbLine.h"
#include "DbLinetypeTable.h"
#include "DbMText.h"
#include "DbPoint.h"
#include "DbPolyline.h"
#include "DbProxyEntity.h"
#include "DbText.h"
#include "DbTextStyleTable.h"
#include "RxDictionary.h"
#include "RxDynamicLinker.h"
#include "RxObjectImpl.h"

#include <atomic>

// The database classes in registration order; each after its parent. Unregistration runs the
// list backwards.
#define ODDB_PLATFORM_CLASSES(X)                                                                   \
  X(OdDbDatabase)                                                                                  \
  X(OdDbFiler)                                                                                     \
  X(OdDbDwgFiler)                                                                                  \
  X(OdDbDxfFiler)                                                                                  \
  X(OdDbObject)                                                                                    \
  X(OdDbEntity)                                                                                    \
  X(OdDbCurve)                                                                                     \
  X(OdDbLine)                                                                                      \
  X(OdDbPoint)                                                                                     \
  X(OdDbPolyline)                                                                                  \
  X(OdDbHatch)                                                                                     \
  X(OdDbArc)                                                                                       \
  X(OdDbText)                                                                                      \
  X(OdDbMText)                                                                                     \
  X(OdDbProxyEntity)                                                                               \
  X(OdDbSymbolTable)                                                                               \
  X(OdDbSymbolTableRecord)                                                                         \
  X(OdDbLayerTable)                                                                                \
  X(OdDbLayerTableRecord)                                                                          \
  X(OdDbLinetypeTable)                                                                             \
  X(OdDbLinetypeTableRecord)                                                                       \
  X(OdDbTextStyleTable)                                                                            \
  X(OdDbTextStyleTableRecord)                                                                      \
  X(OdDbBlockTable)                                                                                \
  X(OdDbBlockTableRecord)                                                                          \
  X(OdDbDictionary)                                                                                \
  X(OdDbGroup)                                                                                     \
  X(OdDbProxyObject)

namespace {

/// The built-in module that owns the database classes. Its reference count is the number of
/// locks that loaded modules hold on it.
class OdDbCoreModule : public OdRxModule {
public:
  void addRef() override { ++m_locks; }
  void release() override { --m_locks; }
  long numRefs() const override { return m_locks; }
  void* sysData() override { return nullptr; }
  OdString fileName() const override { return odrxFileNameOfAddress(&g_anchor); }
  void deleteModuleObject() override {}

  void initApp() override {
#define OD_REGISTER(ClassName) ClassName::rxInit();
    ODDB_PLATFORM_CLASSES(OD_REGISTER)
#undef OD_REGISTER
  }
  void uninitApp() override {
    const struct {
      void (*uninit)();
    } classes[] = {
#define OD_UNREGISTER(ClassName) {&ClassName::rxUninit},
        ODDB_PLATFORM_CLASSES(OD_UNREGISTER)
#undef OD_UNREGISTER
    };
    for (std::size_t i = sizeof classes / sizeof classes[0]; i-- > 0;)
      classes[i].uninit();
  }

private:
  std::atomic<long> m_locks{0};
  static const char g_anchor;
};
const char OdDbCoreModule::g_anchor = 0;

OdDbCoreModule g_databaseModule;
int g_initCount = 0;

} // namespace

OdRxModule* odrxDatabaseModule() {
  return g_initCount > 0 ? &g_databaseModule : nullptr;
}

void odInitialize() {
  if (g_initCount++ > 0)
    return;
  OdRxObject::rxInit();
  OdRxClass::rxInit();
  OdRxModule::rxInit();
  g_databaseModule.setModuleName(OD_T("TD_Db"));
  OdRxModule* previous = odrxSetCurrentInitModule(&g_databaseModule);
  g_databaseModule.initApp();
  odrxSetCurrentInitModule(previous);
}

void odUninitialize() {
  if (g_initCount == 0 || --g_initCount > 0)
    return;
  // Loaded modules go first, newest first: their classes derive from the platform's. A module
  // still referenced stops the shutdown with the platform left initialised, so a later call
  // can finish it.
  OdRxDynamicLinker* linker = odrxDynamicLinker();
  OdStringArray names = linker->loadedModuleNames();
  try {
    for (unsigned i = names.size(); i-- > 0;)
      linker->unloadModule(names[i]);
  } catch (...) {
    g_initCount = 1;
    throw;
  }
  g_databaseModule.uninitApp();
  OdRxModule::rxUninit();
  OdRxClass::rxUninit();
  OdRxObject::rxUninit();
}

OdRxClass* oddbDwgClassMapDesc(OdUInt16 dwgType) {
  switch (dwgType) {
  case 1:
    return OdDbText::desc();
  case 17:
    return OdDbArc::desc();
  case 19:
    return OdDbLine::desc();
  case 27:
    return OdDbPoint::desc();
  case 44:
    return OdDbMText::desc();
  case 77:
    return OdDbPolyline::desc();
  case 78:
    return OdDbHatch::desc();
  default:
    return nullptr;
  }
}
