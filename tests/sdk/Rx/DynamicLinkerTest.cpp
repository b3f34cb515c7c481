#include "DbEntity.h"
#include "DbLine.h"
#include "DbPoint.h"
#include "OdError.h"
#include "RxDictionary.h"
#include "RxDynamicLinker.h"
#include "RxDynamicModule.h"
#include "RxObjectImpl.h"
#include "sdk/Rx/fixtures/RxFixtureEvents.h"
#include "sdk/SdkTestSupport.h"

#include <cstdlib>
#include <dlfcn.h>
#include <new>

namespace rx_dynamic_linker_test {

const char* const kGood = "RxFixtureGood.tx";
const char* const kFailingInit = "RxFixtureFailingInit.tx";
const char* const kApi2 = "RxFixtureApi2.tx";
const char* const kNoEntry = "RxFixtureNoEntry.tx";

std::string fixturePath(const char* fileName) {
  return std::string(CUSTENTS_BIN_DIR) + "/" + fileName;
}

OdString odPath(const std::string& path) {
  return OdString::fromUtf8(path);
}

/// Whether the loader still has the library mapped (a leaked handle keeps it so).
bool isMapped(const std::string& path) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (!handle)
    return false;
  dlclose(handle);
  return true;
}

bool endsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() &&
         text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

bool contains(const OdString& text, const std::string& part) {
  return text.toUtf8().find(part) != std::string::npos;
}

/// A snapshot of what a module can change in the platform.
struct PlatformState {
  unsigned classCount;
  long databaseLocks;
  OdArray<const OdRxClass*> lineExtensions;
  OdArray<const OdRxClass*> pointExtensions;
  unsigned loadedModules;

  static PlatformState take() {
    return PlatformState{odrxRegisteredClasses().size(), odrxDatabaseModule()->numRefs(),
                         OdDbLine::desc()->extensionClasses(),
                         OdDbPoint::desc()->extensionClasses(),
                         odrxDynamicLinker()->loadedModuleNames().size()};
  }
  void expectUnchangedIn(const PlatformState& now) const {
    EXPECT_EQ(classCount, now.classCount);
    EXPECT_EQ(databaseLocks, now.databaseLocks);
    EXPECT_TRUE(lineExtensions == now.lineExtensions) << "extensions of OdDbLine changed";
    EXPECT_TRUE(pointExtensions == now.pointExtensions) << "extensions of OdDbPoint changed";
    EXPECT_EQ(loadedModules, now.loadedModules);
  }
};

class DynamicLinkerTest : public ::testing::Test {
protected:
  void SetUp() override {
    rxFixtureClearEvents();
    m_before = PlatformState::take();
  }
  void TearDown() override {
    // Whatever a failed test left loaded goes, so the next test starts clean.
    for (const char* name : {kGood, kFailingInit})
      if (!odrxDynamicLinker()->getModule(OdString::fromUtf8(name)).isNull())
        odrxDynamicLinker()->unloadModule(OdString::fromUtf8(name));
    m_before.expectUnchangedIn(PlatformState::take());
    rxFixtureClearEvents();
  }

  static OdRxDynamicLinker* linker() { return odrxDynamicLinker(); }

  PlatformState m_before{};
};

TEST_F(DynamicLinkerTest, LoadRunsInitAppAndUnloadUndoesIt) {
  const std::string path = fixturePath(kGood);
  OdRxModulePtr module = linker()->loadModule(odPath(path));
  ASSERT_FALSE(module.isNull());
  EXPECT_EQ("create;init;", rxFixtureEvents());
  EXPECT_EQ(OdString(OD_T("RxFixtureGood.tx")), module->moduleName());
  EXPECT_TRUE(endsWith(module->fileName().toUtf8(), "/RxFixtureGood.tx"))
      << module->fileName().toUtf8();
  EXPECT_EQ(module.get(), linker()->getModule(OD_T("RxFixtureGood.tx")).get());

  OdRxClass* base = odrxGetClass(OD_T("RxFixtureBase"));
  OdRxClass* derived = odrxGetClass(OD_T("RxFixtureDerived"));
  OdRxClass* protocol = odrxGetClass(OD_T("RxFixtureProtocol"));
  ASSERT_NE(nullptr, base);
  ASSERT_NE(nullptr, derived);
  ASSERT_NE(nullptr, protocol);
  for (OdRxClass* cls : {base, derived, protocol})
    EXPECT_EQ(module.get(), cls->module()) << cls->name().toUtf8();
  EXPECT_EQ(OdDbEntity::desc(), base->myParent());
  EXPECT_EQ(base, derived->myParent());
  EXPECT_EQ(derived, odrxClassByDxfName(OD_T("RXFIXTUREDERIVED")));
  EXPECT_EQ(m_before.classCount + 3, odrxRegisteredClasses().size());
  EXPECT_EQ(m_before.databaseLocks + 1, odrxDatabaseModule()->numRefs())
      << "the module locks the database module while it lives";
  {
    OdRxObjectPtr object = derived->create();
    EXPECT_EQ(derived, object->isA());
    EXPECT_TRUE(object->isKindOf(OdDbEntity::desc()));
    EXPECT_FALSE(OdDbEntity::cast(object).isNull());
  }

  // Loading again, under the same or another spelling of the path, finds the loaded module.
  for (const std::string& again : {path, std::string(CUSTENTS_BIN_DIR) + "/./" + kGood}) {
    OdRxModulePtr second = linker()->loadModule(odPath(again));
    EXPECT_EQ(module.get(), second.get()) << again;
  }
  EXPECT_EQ("create;init;", rxFixtureEvents()) << "initApp ran once";

  module.release();
  rxFixtureClearEvents();
  EXPECT_TRUE(linker()->unloadModule(OD_T("RxFixtureGood.tx")));
  EXPECT_EQ("uninit;destroy;", rxFixtureEvents());
  EXPECT_EQ(nullptr, odrxGetClass(OD_T("RxFixtureBase")));
  EXPECT_EQ(nullptr, odrxGetClass(OD_T("RxFixtureDerived")));
  EXPECT_EQ(nullptr, odrxClassByDxfName(OD_T("RXFIXTUREDERIVED")));
  EXPECT_TRUE(linker()->getModule(OD_T("RxFixtureGood.tx")).isNull());
  EXPECT_FALSE(isMapped(path)) << "the library stayed loaded";
  EXPECT_FALSE(linker()->unloadModule(OD_T("RxFixtureGood.tx")));
}

/// The test's own protocol, attached to OdDbLine beside the module's.
class RxLinkerProbe : public OdRxObject {
  ODRX_DECLARE_MEMBERS(RxLinkerProbe);
};
ODRX_NO_CONS_DEFINE_MEMBERS(RxLinkerProbe, OdRxObject)
OdStaticRxObject<RxLinkerProbe> g_lineProbe;

TEST_F(DynamicLinkerTest, UnloadPurgesAForgottenExtensionAndKeepsOthers) {
  RxLinkerProbe::rxInit();
  OdDbLine::desc()->addX(RxLinkerProbe::desc(), &g_lineProbe);
  const OdArray<const OdRxClass*> withProbe = OdDbLine::desc()->extensionClasses();

  linker()->loadModule(odPath(fixturePath(kGood)));
  OdRxClass* protocol = odrxGetClass(OD_T("RxFixtureProtocol"));
  ASSERT_NE(nullptr, protocol);
  {
    OdRxObjectPtr forgotten = OdDbLine::desc()->getX(protocol);
    ASSERT_FALSE(forgotten.isNull());
    EXPECT_TRUE(endsWith(odrxFileNameOfAddress(forgotten.get()).toUtf8(), "/RxFixtureGood.tx"))
        << "the extension object lives in the module";
  }
  EXPECT_EQ(withProbe.size() + 1, OdDbLine::desc()->extensionClasses().size());

  EXPECT_TRUE(linker()->unloadModule(OD_T("RxFixtureGood.tx")));
  EXPECT_TRUE(withProbe == OdDbLine::desc()->extensionClasses())
      << "the module's extension stayed attached, or the test's went";
  EXPECT_EQ(&g_lineProbe, OdDbLine::desc()->getX(RxLinkerProbe::desc()).get());
  {
    OdDbLinePtr line = OdDbLine::createObject();
    OdRxObjectPtr probe(line->queryX(RxLinkerProbe::desc()), kOdRxObjAttach);
    EXPECT_EQ(&g_lineProbe, probe.get());
  }

  OdDbLine::desc()->delX(RxLinkerProbe::desc());
  RxLinkerProbe::rxUninit();
}

TEST_F(DynamicLinkerTest, UnloadWhileReferencedIsRefused) {
  OdRxModulePtr held = linker()->loadModule(odPath(fixturePath(kGood)));
  rxFixtureClearEvents();
  const Outcome busy = outcomeOf([] { linker()->unloadModule(OD_T("RxFixtureGood.tx")); });
  EXPECT_EQ(eModuleInUse, busy.code);
  EXPECT_TRUE(contains(busy.message, "RxFixtureGood.tx")) << busy.message.toUtf8();
  EXPECT_EQ("", rxFixtureEvents()) << "uninitApp ran on a module in use";
  EXPECT_EQ(held.get(), linker()->getModule(OD_T("RxFixtureGood.tx")).get());
  EXPECT_NE(nullptr, odrxGetClass(OD_T("RxFixtureDerived")));

  held.release();
  EXPECT_TRUE(linker()->unloadModule(OD_T("RxFixtureGood.tx")));
  EXPECT_EQ("uninit;destroy;", rxFixtureEvents());
}

TEST_F(DynamicLinkerTest, FilesThatAreNoUsableModuleAreRefused) {
  const std::string textFile = ::testing::TempDir() + "/RxLinkerNotAModule.tx";
  {
    std::ofstream out(textFile);
    out << "This is a text file, not a module.\n";
  }
  struct Case {
    std::string path;
    OdResult expected;
    const char* alsoInMessage;
  } cases[] = {
      {fixturePath("RxFixtureMissing.tx"), eDLLNotFound, nullptr},
      {"", eDLLNotFound, nullptr},
      {CUSTENTS_BIN_DIR, eInvalidModule, nullptr},
      {textFile, eInvalidModule, nullptr},
      {fixturePath(kNoEntry), eInvalidModule, "odrxGetAPIVersion"},
      {fixturePath(kApi2), eIncompatibleModule, "2.0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    const Outcome outcome = outcomeOf([&] { linker()->loadModule(odPath(c.path)); });
    EXPECT_EQ(c.expected, outcome.code) << outcome.message.toUtf8();
    EXPECT_TRUE(contains(outcome.message, c.path)) << outcome.message.toUtf8();
    if (c.alsoInMessage) {
      EXPECT_TRUE(contains(outcome.message, c.alsoInMessage)) << outcome.message.toUtf8();
    }
    if (!c.path.empty()) {
      EXPECT_FALSE(isMapped(c.path)) << "a refused library stayed loaded";
    }
  }
  EXPECT_EQ("", rxFixtureEvents()) << "a module object was asked for";
  std::remove(textFile.c_str());
}

TEST_F(DynamicLinkerTest, FailingInitAppLeavesNothingBehind) {
  const std::string path = fixturePath(kFailingInit);
  // Twice: a second attempt must fail for the same reason, not trip over the first's remains.
  for (int attempt = 0; attempt < 2; ++attempt) {
    SCOPED_TRACE(attempt);
    rxFixtureClearEvents();
    const Outcome outcome = outcomeOf([&] { linker()->loadModule(odPath(path)); });
    EXPECT_EQ(313, static_cast<int>(outcome.code));
    EXPECT_TRUE(contains(outcome.message, kFailingInit)) << outcome.message.toUtf8();
    EXPECT_TRUE(contains(outcome.message, "fixture refuses to start")) << outcome.message.toUtf8();
    EXPECT_EQ("create;init;destroy;", rxFixtureEvents())
        << "the module object is destroyed without uninitApp";
    EXPECT_EQ(nullptr, odrxGetClass(OD_T("RxFixtureFailingProbe")));
    EXPECT_EQ(nullptr, odrxClassByDxfName(OD_T("RXFIXTUREFAILINGPROBE")));
    EXPECT_TRUE(linker()->getModule(OD_T("RxFixtureFailingInit.tx")).isNull());
    m_before.expectUnchangedIn(PlatformState::take());
    EXPECT_FALSE(isMapped(path));
  }
}

TEST_F(DynamicLinkerTest, ManyLoadUnloadCyclesLeaveNoTrace) {
  for (int cycle = 0; cycle < 200; ++cycle) {
    rxFixtureClearEvents();
    linker()->loadModule(odPath(fixturePath(kGood)));
    ASSERT_TRUE(linker()->unloadModule(OD_T("RxFixtureGood.tx"))) << cycle;
    ASSERT_EQ("create;init;uninit;destroy;", rxFixtureEvents()) << cycle;
  }
  m_before.expectUnchangedIn(PlatformState::take());
}

// ---------------------------------------------------------------------------------------------
// Module objects are allocated through odrxAlloc, with the standard new-handler loop.

class RxAllocModule : public OdRxModule {
public:
  void initApp() override {}
  void uninitApp() override {}
};

int g_failingCalls = 0;
int g_workingCalls = 0;
int g_freeCalls = 0;
int g_handlerCalls = 0;

void* failingAlloc(std::size_t) {
  ++g_failingCalls;
  return nullptr;
}
void* workingAlloc(std::size_t size) {
  ++g_workingCalls;
  return std::malloc(size);
}
void countingFree(void* block) {
  ++g_freeCalls;
  std::free(block);
}
void installWorkingAllocator() {
  ++g_handlerCalls;
  odrxSetAllocator(&workingAlloc, &countingFree);
}

class ModuleAllocationTest : public ::testing::Test {
protected:
  void SetUp() override {
    g_failingCalls = g_workingCalls = g_freeCalls = g_handlerCalls = 0;
    odrxSetAllocator(&failingAlloc, &countingFree, &m_previousAlloc, &m_previousFree);
    m_previousHandler = std::set_new_handler(nullptr);
    rxFixtureClearEvents();
  }
  void TearDown() override {
    odrxSetAllocator(m_previousAlloc, m_previousFree);
    std::set_new_handler(m_previousHandler);
    rxFixtureClearEvents();
  }

  OdAllocFn m_previousAlloc = nullptr;
  OdFreeFn m_previousFree = nullptr;
  std::new_handler m_previousHandler = nullptr;
};

TEST_F(ModuleAllocationTest, FailureWithoutNewHandlerThrowsBadAlloc) {
  EXPECT_THROW(new OdRxUnixModule<RxAllocModule>(nullptr), std::bad_alloc);
  EXPECT_EQ(1, g_failingCalls);
  EXPECT_EQ(nullptr, odrxAlloc(16)) << "odrxAlloc itself reports failure as null";
}

TEST_F(ModuleAllocationTest, NewHandlerThatFreesMemoryLetsTheRetrySucceed) {
  std::set_new_handler(&installWorkingAllocator);
  int handleValue = 0;
  OdRxModule* module = new OdRxUnixModule<RxAllocModule>(&handleValue);
  EXPECT_EQ(1, g_failingCalls);
  EXPECT_EQ(1, g_handlerCalls);
  EXPECT_EQ(1, g_workingCalls);
  EXPECT_EQ(&handleValue, module->sysData());
  EXPECT_EQ(0, module->numRefs()) << "a module starts unlocked";
  module->addRef();
  module->addRef();
  module->release();
  EXPECT_EQ(1, module->numRefs());
  module->deleteModuleObject();
  EXPECT_EQ(1, g_freeCalls) << "freed through odrxFree";
}

TEST_F(ModuleAllocationTest, LinkerPassesBadAllocOnAndLeavesNothingLoaded) {
  const PlatformState before = PlatformState::take();
  const std::string path = fixturePath(kGood);
  EXPECT_THROW(odrxDynamicLinker()->loadModule(odPath(path)), std::bad_alloc);
  EXPECT_EQ("", rxFixtureEvents());
  before.expectUnchangedIn(PlatformState::take());
  EXPECT_FALSE(isMapped(path)) << "the failed load kept the library open";

  odrxSetAllocator(nullptr, nullptr);
  odrxDynamicLinker()->loadModule(odPath(path));
  EXPECT_TRUE(odrxDynamicLinker()->unloadModule(OD_T("RxFixtureGood.tx")));
  EXPECT_EQ("create;init;uninit;destroy;", rxFixtureEvents());
  before.expectUnchangedIn(PlatformState::take());
}

} // namespace rx_dynamic_linker_test
