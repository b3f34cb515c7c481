#ifndef OD_RX_DYNAMIC_LINKER_H
#define OD_RX_DYNAMIC_LINKER_H

/// Loads modules by path and unloads them. Loading opens the file, checks odrxGetAPIVersion,
/// calls odrxCreateModuleObject and initApp; unloading calls uninitApp, destroys the module
/// object and closes the file. A module that fails to load leaves nothing behind: no class it
/// registered and no extension object from its code stays attached.

#include "RxModule.h"

class OdRxDynamicLinker {
public:
  /// Loads the module at `path` (or returns it if it is loaded already). Throws OdError with
  /// eDLLNotFound (no such file), eInvalidModule (not a loadable module, or an entry point
  /// missing), eIncompatibleModule (an API version this platform does not accept), or the
  /// error that the module's initApp raised; the message names the cause.
  OdRxModulePtr loadModule(const OdString& path);
  /// Unloads a module by the name loadModule gave it. Returns false when no such module is
  /// loaded; throws OdError(eModuleInUse) while references to it are held.
  bool unloadModule(const OdString& moduleName);
  /// The loaded module of that name, or null.
  OdRxModulePtr getModule(const OdString& moduleName) const;
  OdStringArray loadedModuleNames() const;
};

OdRxDynamicLinker* odrxDynamicLinker();

#endif
