#ifndef OD_RX_OBJECT_IMPL_H
#define OD_RX_OBJECT_IMPL_H

/// Reference counting for run-time objects that are not database objects.

#include "RxObject.h"

#include <atomic>

/// Adds a reference count to T. The object deletes itself when the count drops to zero.
template <class T, class TInterface = T> class OdRxObjectImpl : public T {
public:
  template <class... Args> explicit OdRxObjectImpl(Args&&... args) : T(std::forward<Args>(args)...) {}
  void addRef() override { ++m_refs; }
  void release() override {
    if (--m_refs == 0)
      delete this;
  }
  long numRefs() const override { return m_refs; }

  static OdSmartPtr<TInterface> createObject() {
    return OdSmartPtr<TInterface>(static_cast<TInterface*>(new OdRxObjectImpl<T, TInterface>));
  }

private:
  std::atomic<long> m_refs{0};
};

/// A run-time object with static storage: never deleted, reference counting disabled. The
/// protocol extensions of a module are instances of this.
template <class T> class OdStaticRxObject : public T {
public:
  template <class... Args> explicit OdStaticRxObject(Args&&... args) : T(std::forward<Args>(args)...) {}
  void addRef() override {}
  void release() override {}
  long numRefs() const override { return 1; }
};

#endif
