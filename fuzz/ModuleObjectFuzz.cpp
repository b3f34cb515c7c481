// Feeds arbitrary bytes to the dwgInFields of every class the module CustEnts.tx registers, as
// the three DWG streams of one object, and files each object that reads successfully out
// again. Proxies in any drawing hand these readers bytes from elsewhere. The module is loaded as
// a host loads it: the platform and the host initialised, CustEnts.tx opened by path through
// the platform's dynamic linker from the folder of this program. Input layout and rules:
// ObjectStreamFuzzing.h.
//
// With CUSTENTS_FUZZ_WRITE_SEEDS=FOLDER the program writes one input per module class and
// exits; with CUSTENTS_FUZZ_SEED_DRAWING=FILE.dxf as well, the objects of that drawing (the
// sample drawing of `custents demo`, say) stand for their classes.

#include "ObjectStreamFuzzing.h"

#include "DbDatabase.h"
#include "DbDxfFile.h"
#include "HostExtend.h"
#include "OdError.h"
#include "RxDictionary.h"
#include "RxDynamicLinker.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

std::string modulePath() {
  char exe[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", exe, sizeof exe - 1);
  if (length <= 0)
    std::abort();
  const std::string self(exe, static_cast<std::size_t>(length));
  return self.substr(0, self.rfind('/') + 1) + "CustEnts.tx";
}

// Every object of the drawing named by CUSTENTS_FUZZ_SEED_DRAWING, read with the module loaded.
std::vector<OdDbObjectPtr> sampleObjects() {
  const char* path = std::getenv("CUSTENTS_FUZZ_SEED_DRAWING");
  if (!path || !*path)
    return {};
  static OdDbDatabasePtr db; // outlives the objects, which refer to it
  OdString error;
  if (odDbReadDxf(OdString::fromUtf8(path), db, &error) != eOk) {
    std::fprintf(stderr, "%s: %s\n", path, error.toUtf8().c_str());
    std::exit(1);
  }
  std::vector<OdDbObjectPtr> objects;
  for (OdUInt64 handle = 1; handle < static_cast<OdUInt64>(db->handseed()); ++handle) {
    const OdDbObjectId id = db->getOdDbObjectId(OdDbHandle(handle));
    OdDbObjectPtr object = id.isNull() ? OdDbObjectPtr() : id.openObject();
    if (!object.isNull())
      objects.push_back(object);
  }
  return objects;
}

OdString& loadedModuleName() {
  static OdString name;
  return name;
}

// At exit the module is unloaded and the host and the platform are taken down, as a host does
// before it ends: left to the end of the process, the platform's class dictionary would outlive
// the extension objects the host and the module attached to it.
void unloadAtExit() {
  try {
    odrxDynamicLinker()->unloadModule(loadedModuleName());
  } catch (const OdError& error) {
    std::fprintf(stderr, "unloading the module: %s\n", error.what());
    std::_Exit(1);
  }
  odHostExtendUninitialize();
  odUninitialize();
}

// The module's classes, with the module loaded for the life of the process as a host keeps
// its modules.
const std::vector<OdRxClass*>& moduleClasses() {
  static const std::vector<OdRxClass*> classes = [] {
    odInitialize();
    odHostExtendInitialize();
    OdRxModulePtr module = odrxDynamicLinker()->loadModule(OdString::fromUtf8(modulePath()));
    loadedModuleName() = module->moduleName();
    std::atexit(unloadAtExit);
    return objectfuzz::readableClasses(module.get());
  }();
  return classes;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  const std::vector<OdRxClass*>& classes = moduleClasses(); // loads the module the drawing needs
  if (objectfuzz::writeSeedsIfAsked(classes, sampleObjects()))
    std::exit(0);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  objectfuzz::checkInput(moduleClasses(), bytes, size);
  return 0;
}
