#ifndef OD_RX_MODULE_H
#define OD_RX_MODULE_H

/// Modules: units of code that register classes and protocol extensions. A loadable module
/// exports odrxGetAPIVersion and odrxCreateModuleObject; the dynamic linker opens it, creates
/// its module object and calls initApp, and on unload calls uninitApp and closes it.

#include "RxObject.h"

#include <cstddef>

class OdRxModule : public OdRxObject {
  ODRX_DECLARE_MEMBERS(OdRxModule);

  /// The module's system handle (what the loader returned), or null for a built-in module.
  virtual void* sysData() = 0;
  /// Registers the module's classes and extensions.
  virtual void initApp() = 0;
  /// Undoes initApp.
  virtual void uninitApp() = 0;
  /// The name under which the linker knows the module.
  virtual OdString moduleName() const { return m_moduleName; }
  /// The file the module was loaded from, as the loader reports it; empty for a built-in one.
  virtual OdString fileName() const = 0;
  /// Destroys the module object. Called by the linker after uninitApp, before it closes the file.
  virtual void deleteModuleObject() = 0;

  void setModuleName(const OdString& name) { m_moduleName = name; }

private:
  OdString m_moduleName;
};
typedef OdSmartPtr<OdRxModule> OdRxModulePtr;

/// Memory for module objects and other platform allocations: null on failure.
void* odrxAlloc(std::size_t size);
void odrxFree(void* block);

typedef void* (*OdAllocFn)(std::size_t size);
typedef void (*OdFreeFn)(void* block);
/// Lets an application put its own memory manager under odrxAlloc/odrxFree (null restores the C
/// runtime's). Blocks must be freed by the free function that matches their allocator.
void odrxSetAllocator(OdAllocFn allocFn, OdFreeFn freeFn, OdAllocFn* previousAlloc = nullptr,
                      OdFreeFn* previousFree = nullptr);

/// The version of the module interface that this platform's linker accepts.
enum { ODRX_API_MAJOR = 1, ODRX_API_MINOR = 0 };

/// Entry points of a loadable module, looked up by these C names.
typedef int (*OdrxGetAPIVersionFn)(unsigned& major, unsigned& minor, unsigned& build,
                                   unsigned& patch);
typedef OdRxModule* (*OdrxCreateModuleObjectFn)(void** moduleHandle);

/// The module whose initApp is running; classes created meanwhile belong to it.
OdRxModule* odrxCurrentInitModule();
/// Sets the module whose initApp is about to run (null when it has returned); returns the
/// previous one so calls can nest.
OdRxModule* odrxSetCurrentInitModule(OdRxModule* module);

/// The loaded module whose image contains `address` (a function or static object of its code),
/// or null.
OdRxModule* odrxModuleContaining(const void* address);

/// The file name of the shared object that contains `address`, from the loader; empty if none.
OdString odrxFileNameOfAddress(const void* address);

#endif
