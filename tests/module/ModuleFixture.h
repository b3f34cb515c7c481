#ifndef CUSTENTS_TESTS_MODULE_FIXTURE_H
#define CUSTENTS_TESTS_MODULE_FIXTURE_H

// The module as a host sees it: the platform and the host's extension classes initialised,
// CustEnts.tx loaded through the platform's dynamic linker, nothing of the module linked in.

#include "HostExtend.h"
#include "RxDictionary.h"
#include "RxDynamicLinker.h"

#include <gtest/gtest.h>

#include <string>

inline OdString moduleFilePath() { return OdString(CUSTENTS_BIN_DIR "/CustEnts.tx"); }

class LoadedModule : public ::testing::Test {
protected:
  void SetUp() override {
    odInitialize();
    odHostExtendInitialize();
    module = odrxDynamicLinker()->loadModule(moduleFilePath());
  }
  void TearDown() override {
    const OdString name = module.isNull() ? OdString() : module->moduleName();
    module = nullptr;
    if (!name.isEmpty())
      odrxDynamicLinker()->unloadModule(name);
    odHostExtendUninitialize();
    odUninitialize();
  }

  /// The classes the module registered, in registration order.
  OdArray<OdRxClass*> moduleClasses() const {
    OdArray<OdRxClass*> result;
    for (OdRxClass* cls : odrxRegisteredClasses())
      if (cls->module() == module.get())
        result.append(cls);
    return result;
  }

  OdRxModulePtr module;
};

inline std::string utf8(const OdString& text) { return text.toUtf8(); }

#endif
