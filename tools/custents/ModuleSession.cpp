#include "ModuleSession.h"

#include "HostExtend.h"
#include "RxDictionary.h"
#include "RxDynamicLinker.h"

PlatformScope::PlatformScope() {
  odInitialize();
  try {
    odHostExtendInitialize();
  } catch (...) {
    odUninitialize();
    throw;
  }
}

PlatformScope::~PlatformScope() {
  odHostExtendUninitialize();
  odUninitialize();
}

ModuleSession::ModuleSession(const std::string& modulePath) {
  // If loading throws, m_platform is already constructed and its destructor undoes it.
  m_module = odrxDynamicLinker()->loadModule(OdString::fromUtf8(modulePath));
  m_moduleName = m_module->moduleName();
}

ModuleSession::~ModuleSession() {
  try {
    close();
  } catch (...) {
    // Nothing to report to from a destructor; close() is the checked way out.
  }
}

void ModuleSession::close() {
  if (m_module.isNull())
    return;
  // The linker refuses to unload a module while references to it are held, ours included.
  m_module.release();
  odrxDynamicLinker()->unloadModule(m_moduleName);
}
