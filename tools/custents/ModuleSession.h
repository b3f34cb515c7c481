#ifndef CUSTENTS_MODULE_SESSION_H
#define CUSTENTS_MODULE_SESSION_H

#include "RxModule.h"

#include <string>

/// The platform and the host's extension classes, initialised for as long as the object lives.
/// Modules attach their extensions under the host's classes, so both come before any module.
class PlatformScope {
public:
  PlatformScope();
  ~PlatformScope();
  PlatformScope(const PlatformScope&) = delete;
  PlatformScope& operator=(const PlatformScope&) = delete;
};

/// One loaded module on an initialised platform: what every subcommand of the application
/// works inside. Construction initialises the platform and the host and loads the module
/// (which runs its initApp); destruction unloads it (uninitApp) and takes the host and the
/// platform down again, so a session leaves nothing registered behind.
class ModuleSession {
public:
  /// Throws the OdError of the dynamic linker when the module cannot be loaded; the platform
  /// is uninitialised again before the exception leaves.
  explicit ModuleSession(const std::string& modulePath);
  /// Unloads the module if close() has not; errors are swallowed, since a destructor cannot
  /// report them. Call close() to see them.
  ~ModuleSession();
  ModuleSession(const ModuleSession&) = delete;
  ModuleSession& operator=(const ModuleSession&) = delete;

  /// The loaded module; null after close().
  OdRxModule* module() const { return m_module.get(); }
  /// The name under which the dynamic linker knows the module.
  const OdString& moduleName() const { return m_moduleName; }

  /// Unloads the module now. Throws OdError(eModuleInUse) while someone else still holds a
  /// reference to the module object. Does nothing when the module is unloaded already.
  void close();

private:
  PlatformScope m_platform;
  OdRxModulePtr m_module;
  OdString m_moduleName;
};

#endif
