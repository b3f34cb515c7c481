#include "RxModule.h"

#include <cstdlib>
#include <dlfcn.h>

ODRX_NO_CONS_DEFINE_MEMBERS(OdRxModule, OdRxObject)

namespace {
OdAllocFn g_alloc = &std::malloc;
OdFreeFn g_free = &std::free;
OdRxModule* g_currentInitModule = nullptr;
} // namespace

void* odrxAlloc(std::size_t size) { return g_alloc(size); }

void odrxFree(void* block) { g_free(block); }

void odrxSetAllocator(OdAllocFn allocFn, OdFreeFn freeFn, OdAllocFn* previousAlloc,
                      OdFreeFn* previousFree) {
  if (previousAlloc)
    *previousAlloc = g_alloc;
  if (previousFree)
    *previousFree = g_free;
  g_alloc = allocFn ? allocFn : &std::malloc;
  g_free = freeFn ? freeFn : &std::free;
}

OdRxModule* odrxCurrentInitModule() { return g_currentInitModule; }

OdRxModule* odrxSetCurrentInitModule(OdRxModule* module) {
  OdRxModule* previous = g_currentInitModule;
  g_currentInitModule = module;
  return previous;
}

OdString odrxFileNameOfAddress(const void* address) {
  Dl_info info{};
  if (!address || !dladdr(address, &info) || !info.dli_fname)
    return OdString();
  return OdString::fromUtf8(info.dli_fname);
}
