#ifndef OD_RX_DYNAMIC_MODULE_H
#define OD_RX_DYNAMIC_MODULE_H

/// The wrapper that turns a module class into the object a loadable module hands out: an
/// atomic reference count (the module's lock count, starting at 0), the module's handle, and
/// allocation through odrxAlloc.

#include "RxModule.h"

#include <atomic>
#include <new>

template <class T> class OdRxUnixModule : public T {
public:
  /// Takes the handle that the loader gave the module.
  explicit OdRxUnixModule(void* handle) : m_handle(handle) {}

  void addRef() override { ++m_lockCount; }
  /// Unlocks; the linker, not the count, decides when the module object goes.
  void release() override { --m_lockCount; }
  long numRefs() const override { return m_lockCount; }

  void* sysData() override { return m_handle; }
  /// The file name from the loader, found through an object defined inside the module, so it
  /// is right however the module was opened.
  OdString fileName() const override { return odrxFileNameOfAddress(&s_anchor); }
  void deleteModuleObject() override { delete this; }

  /// Allocation through odrxAlloc with the standard new-handler loop: with no handler
  /// installed a failure throws std::bad_alloc.
  static void* operator new(std::size_t size) {
    for (;;) {
      if (void* block = odrxAlloc(size))
        return block;
      std::new_handler handler = std::get_new_handler();
      if (!handler)
        throw std::bad_alloc();
      handler();
    }
  }
  static void operator delete(void* block) { odrxFree(block); }

private:
  std::atomic<long> m_lockCount{0};
  void* m_handle = nullptr;
  static inline const char s_anchor = 0;
};

#endif
