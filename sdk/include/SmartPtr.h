#ifndef OD_SMART_PTR_H
#define OD_SMART_PTR_H

/// Intrusive reference-counting pointer to run-time objects. Converting between unrelated
/// classes goes through the object's queryX and throws OdError_NotThatKindOfClass when the
/// object is not of the wanted class, as the SDK's smart pointer does.

#include <type_traits>
#include <utility>

class OdRxObject;
class OdRxClass;

/// Passed to a smart pointer constructor to take over a reference without adding one.
enum OdRxObjMod { kOdRxObjAttach };

/// Throws OdError_NotThatKindOfClass(object->isA(), wanted). Out of line to keep this header
/// free of the error classes.
[[noreturn]] void odThrowNotThatKindOfClass(const OdRxObject* object, const OdRxClass* wanted);

template <class T> class OdSmartPtr {
public:
  OdSmartPtr() = default;
  OdSmartPtr(std::nullptr_t) {}
  OdSmartPtr(const T* object) : m_object(const_cast<T*>(object)) { internalAddRef(); }
  OdSmartPtr(const T* object, OdRxObjMod) : m_object(const_cast<T*>(object)) {}
  OdSmartPtr(const OdSmartPtr& other) : m_object(other.m_object) { internalAddRef(); }
  OdSmartPtr(OdSmartPtr&& other) noexcept : m_object(other.m_object) { other.m_object = nullptr; }

  /// From a pointer to a base or unrelated class: a checked cast through queryX.
  template <class U, typename std::enable_if<!std::is_convertible<U*, T*>::value, int>::type = 0>
  OdSmartPtr(const U* object) {
    internalQueryX(object);
  }
  template <class U, typename std::enable_if<!std::is_convertible<U*, T*>::value, int>::type = 0>
  OdSmartPtr(const OdSmartPtr<U>& other) {
    internalQueryX(other.get());
  }
  /// From a pointer to a derived class: a plain conversion.
  template <class U, typename std::enable_if<std::is_convertible<U*, T*>::value &&
                                                 !std::is_same<U, T>::value,
                                             int>::type = 0>
  OdSmartPtr(const OdSmartPtr<U>& other) : m_object(other.get()) {
    internalAddRef();
  }
  template <class U, typename std::enable_if<std::is_convertible<U*, T*>::value &&
                                                 !std::is_same<U, T>::value,
                                             int>::type = 0>
  OdSmartPtr(const U* object) : m_object(const_cast<U*>(object)) {
    internalAddRef();
  }

  ~OdSmartPtr() { release(); }

  OdSmartPtr& operator=(const OdSmartPtr& other) {
    if (m_object != other.m_object) {
      OdSmartPtr copy(other);
      std::swap(m_object, copy.m_object);
    }
    return *this;
  }
  OdSmartPtr& operator=(OdSmartPtr&& other) noexcept {
    if (this != &other) {
      release();
      m_object = other.m_object;
      other.m_object = nullptr;
    }
    return *this;
  }
  OdSmartPtr& operator=(const T* object) { return *this = OdSmartPtr(object); }
  OdSmartPtr& operator=(std::nullptr_t) {
    release();
    return *this;
  }

  /// Takes over the object's reference without adding one.
  void attach(const T* object) {
    release();
    m_object = const_cast<T*>(object);
  }
  /// Gives up the reference without releasing it.
  T* detach() {
    T* object = m_object;
    m_object = nullptr;
    return object;
  }
  void release() {
    if (m_object) {
      T* object = m_object;
      m_object = nullptr;
      object->release();
    }
  }

  T* get() const { return m_object; }
  T* operator->() const { return m_object; }
  T& operator*() const { return *m_object; }
  operator T*() const { return m_object; }
  bool isNull() const { return m_object == nullptr; }
  explicit operator bool() const { return m_object != nullptr; }

private:
  void internalAddRef() {
    if (m_object)
      m_object->addRef();
  }
  template <class U> void internalQueryX(const U* object) {
    if (!object)
      return;
    m_object = static_cast<T*>(object->queryX(T::desc()));
    if (!m_object)
      odThrowNotThatKindOfClass(object, T::desc());
  }

  T* m_object = nullptr;
};

#endif
