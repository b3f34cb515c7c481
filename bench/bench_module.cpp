// The cost of the module's life cycle on the platform:
//   BM_LoadUnloadCycle  - loadModule (open the file, check the API version, create the module
//                         object, initApp) followed by unloadModule (uninitApp, destroy the
//                         module object, close the file);
//   BM_Registration     - initApp alone on a loaded module: registering every class and
//                         attaching every extension (uninitApp runs untimed between rounds).
//
// Usage: bench_module [--module PATH] [Google Benchmark flags]
// The default module is CustEnts.tx beside this program.

#include "ModuleSession.h"
#include "ToolPaths.h"

#include "OdError.h"
#include "RxDynamicLinker.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <iostream>
#include <string>

namespace {

std::string g_modulePath;

void BM_LoadUnloadCycle(benchmark::State& state) {
  const OdString path = OdString::fromUtf8(g_modulePath);
  for (auto _ : state) {
    OdRxModulePtr module = odrxDynamicLinker()->loadModule(path);
    const OdString name = module->moduleName();
    // The linker refuses to unload a module while a reference is held.
    module.release();
    odrxDynamicLinker()->unloadModule(name);
  }
}
BENCHMARK(BM_LoadUnloadCycle)->Unit(benchmark::kMicrosecond);

void BM_Registration(benchmark::State& state) {
  OdRxModulePtr module = odrxDynamicLinker()->loadModule(OdString::fromUtf8(g_modulePath));
  const OdString name = module->moduleName();
  for (auto _ : state) {
    state.PauseTiming();
    module->uninitApp();
    state.ResumeTiming();
    // As the linker does, so the classes belong to the module.
    OdRxModule* previous = odrxSetCurrentInitModule(module.get());
    module->initApp();
    odrxSetCurrentInitModule(previous);
  }
  // Every round ends with initApp, so the module is initialised as unloading expects.
  module.release();
  odrxDynamicLinker()->unloadModule(name);
}
BENCHMARK(BM_Registration)->Unit(benchmark::kMicrosecond);

/// Takes --module PATH (or --module=PATH) out of the arguments, leaving the rest for Google
/// Benchmark.
std::string takeModuleOption(int& argc, char** argv) {
  std::string path;
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--module") == 0 && i + 1 < argc) {
      path = argv[++i];
      continue;
    }
    if (std::strncmp(argv[i], "--module=", 9) == 0) {
      path = argv[i] + 9;
      continue;
    }
    argv[kept++] = argv[i];
  }
  argc = kept;
  return path;
}

} // namespace

int main(int argc, char** argv) {
  try {
    g_modulePath = takeModuleOption(argc, argv);
    if (g_modulePath.empty())
      g_modulePath = defaultModulePath();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
      return 2;

    PlatformScope platform;
    // Fail early, with the linker's reason, rather than inside a timed loop.
    ModuleSession(g_modulePath).close();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
  } catch (const OdError& error) {
    std::cerr << "bench_module: " << error.description().toUtf8() << '\n';
  } catch (const std::exception& error) {
    std::cerr << "bench_module: " << error.what() << '\n';
  }
  return 1;
}
