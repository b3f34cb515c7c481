#include "RxDynamicLinker.h"

#include "RxDictionary.h"

#include <dlfcn.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <vector>

namespace {

struct LoadedModule {
  OdString name;
  std::string path;
  void* handle;
  OdRxModule* module;
};

std::vector<LoadedModule>& loadedModules() {
  static std::vector<LoadedModule> modules;
  return modules;
}

OdString baseName(const std::string& path) {
  std::string::size_type slash = path.find_last_of('/');
  return OdString::fromUtf8(slash == std::string::npos ? path : path.substr(slash + 1));
}

template <class Fn> Fn entryPoint(void* handle, const char* name) {
  // The loader hands out entry points as object pointers; POSIX guarantees the conversion.
  return reinterpret_cast<Fn>(dlsym(handle, name));
}

const void* imageBase(const void* address) {
  Dl_info info{};
  return address && dladdr(address, &info) ? info.dli_fbase : nullptr;
}

/// Removes what a module leaves behind in the class tree: extensions of its protocol classes or
/// whose objects live in its image (static objects; a heap object of a class of its own is
/// caught through its protocol class), then classes that belong to it. Run before its code is
/// unmapped, so that nothing in the tree points into it afterwards.
void purgeModule(OdRxModule* module, const void* moduleBase) {
  OdArray<OdRxClass*> classes = odrxRegisteredClasses();
  for (OdRxClass* cls : classes) {
    for (const OdRxClass* protocol : cls->extensionClasses()) {
      OdRxObjectPtr ext = cls->getX(protocol);
      const bool ownProtocol = protocol->module() == module;
      const bool ownObject = moduleBase && imageBase(ext.get()) == moduleBase;
      if (ownProtocol || ownObject)
        cls->delX(protocol);
    }
  }
  for (unsigned i = classes.size(); i-- > 0;)
    if (classes[i]->module() == module)
      deleteOdRxClass(classes[i]);
}

OdString describeLoaderError(const char* fallback) {
  const char* err = dlerror();
  return OdString::fromUtf8(err ? err : fallback);
}

} // namespace

OdRxModulePtr OdRxDynamicLinker::loadModule(const OdString& path) {
  const std::string requested = path.toUtf8();
  struct stat st {};
  if (requested.empty() || stat(requested.c_str(), &st) != 0)
    throw OdError(eDLLNotFound, OD_T("Module file not found: ") + path);
  if (!S_ISREG(st.st_mode))
    throw OdError(eInvalidModule, OD_T("Not a loadable module (not a regular file): ") + path);

  char resolved[PATH_MAX];
  const std::string canonical = realpath(requested.c_str(), resolved) ? resolved : requested;
  for (const LoadedModule& loaded : loadedModules())
    if (loaded.path == canonical)
      return OdRxModulePtr(loaded.module);

  dlerror();
  void* handle = dlopen(canonical.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle)
    throw OdError(eInvalidModule, OD_T("Not a loadable module: ") + path + OD_T(" (") +
                                      describeLoaderError("unknown loader error") + OD_T(")"));

  auto getVersion = entryPoint<OdrxGetAPIVersionFn>(handle, "odrxGetAPIVersion");
  auto createModule = entryPoint<OdrxCreateModuleObjectFn>(handle, "odrxCreateModuleObject");
  if (!getVersion || !createModule) {
    dlclose(handle);
    throw OdError(eInvalidModule, OD_T("Not a module: ") + path + OD_T(" has no entry point ") +
                                      (getVersion ? OD_T("odrxCreateModuleObject")
                                                  : OD_T("odrxGetAPIVersion")));
  }

  unsigned major = 0, minor = 0, build = 0, patch = 0;
  const int versionResult = getVersion(major, minor, build, patch);
  if (versionResult != 0 || major != ODRX_API_MAJOR) {
    dlclose(handle);
    OdString message;
    message.format(OD_T("Module %ls asks for API version %u.%u.%u.%u (result %d); this platform ")
                       OD_T("accepts %d.x"),
                   path.c_str(), major, minor, build, patch, versionResult, int(ODRX_API_MAJOR));
    throw OdError(eIncompatibleModule, message);
  }

  void* handleArg = handle;
  OdRxModule* module = nullptr;
  try {
    module = createModule(&handleArg);
  } catch (...) {
    // Out of memory for the module object (std::bad_alloc) or a module that throws while
    // creating it: the library must not stay open behind the caller's back.
    dlclose(handle);
    throw;
  }
  if (!module) {
    dlclose(handle);
    throw OdError(eInvalidModule, OD_T("Module ") + path + OD_T(" created no module object"));
  }
  const OdString name = baseName(canonical);
  module->setModuleName(name);

  OdRxModule* previous = odrxSetCurrentInitModule(module);
  try {
    module->initApp();
  } catch (const OdError& err) {
    odrxSetCurrentInitModule(previous);
    purgeModule(module, imageBase(reinterpret_cast<const void*>(createModule)));
    module->deleteModuleObject();
    dlclose(handle);
    throw OdError(err.code(), OD_T("Module ") + name + OD_T(" failed to initialise: ") +
                                  err.description());
  } catch (...) {
    odrxSetCurrentInitModule(previous);
    purgeModule(module, imageBase(reinterpret_cast<const void*>(createModule)));
    module->deleteModuleObject();
    dlclose(handle);
    throw;
  }
  odrxSetCurrentInitModule(previous);
  loadedModules().push_back(LoadedModule{name, canonical, handle, module});
  return OdRxModulePtr(module);
}

bool OdRxDynamicLinker::unloadModule(const OdString& moduleName) {
  auto& modules = loadedModules();
  for (auto it = modules.begin(); it != modules.end(); ++it) {
    if (it->name != moduleName)
      continue;
    OdRxModule* module = it->module;
    if (module->numRefs() > 0)
      throw OdError(eModuleInUse, OD_T("Module ") + moduleName + OD_T(" is still referenced"));
    const LoadedModule entry = *it;
    modules.erase(it);
    const void* base =
        imageBase(reinterpret_cast<const void*>(dlsym(entry.handle, "odrxCreateModuleObject")));
    try {
      module->uninitApp();
    } catch (...) {
      // Whatever the module failed to undo must not keep pointing into code about to go.
      purgeModule(module, base);
      module->deleteModuleObject();
      dlclose(entry.handle);
      throw;
    }
    purgeModule(module, base);
    module->deleteModuleObject();
    dlclose(entry.handle);
    return true;
  }
  return false;
}

OdRxModulePtr OdRxDynamicLinker::getModule(const OdString& moduleName) const {
  for (const LoadedModule& loaded : loadedModules())
    if (loaded.name == moduleName)
      return OdRxModulePtr(loaded.module);
  return OdRxModulePtr();
}

OdStringArray OdRxDynamicLinker::loadedModuleNames() const {
  OdStringArray names;
  for (const LoadedModule& loaded : loadedModules())
    names.append(loaded.name);
  return names;
}

OdRxModule* odrxModuleContaining(const void* address) {
  const void* base = imageBase(address);
  if (!base)
    return nullptr;
  for (const LoadedModule& loaded : loadedModules()) {
    const void* entry = dlsym(loaded.handle, "odrxCreateModuleObject");
    if (imageBase(entry) == base)
      return loaded.module;
  }
  return nullptr;
}

OdRxDynamicLinker* odrxDynamicLinker() {
  static OdRxDynamicLinker linker;
  return &linker;
}
