#ifndef OD_RX_OBJECT_H
#define OD_RX_OBJECT_H

/// The run-time class tree: OdRxObject (the root of every platform object), OdRxClass (a
/// class descriptor registered in the process-wide class dictionary) and the macros that give
/// each class its run-time type members.

#include "OdArray.h"
#include "OdString.h"
#include "SmartPtr.h"

#include <map>

class OdRxClass;
class OdRxModule;
class OdRxObject;

typedef OdSmartPtr<OdRxObject> OdRxObjectPtr;
typedef OdSmartPtr<OdRxClass> OdRxClassPtr;
typedef OdArray<OdRxObjectPtr> OdRxObjectPtrArray;

/// Creates a new, reference-counted default instance of a class.
typedef OdRxObjectPtr (*OdPseudoConstructorType)();
/// Lets a class change the application name written for it when a drawing is saved.
typedef void (*AppNameChangeFuncPtr)(const OdRxClass* classObj, OdString& newAppName, int saveVer);
/// Reserved by the SDK's class constructor; this platform keeps no member collections.
typedef void (*OdRxMemberCollectionConstructorPtr)(void* collectionBuilder, void* userData);

namespace OdRx {
enum Ordering { kLessThan = -1, kEqual = 0, kGreaterThan = 1, kNotOrderable = 2 };
}

class OdRxObject {
public:
  OdRxObject() = default;
  OdRxObject(const OdRxObject&) = delete;
  OdRxObject& operator=(const OdRxObject&) = delete;

  // The virtual operations stand in the SDK's slot order; host-side classes that derive from
  // OdRxObject add their own slots after these.
  virtual ~OdRxObject();
  /// Returns this object (with a reference added) when it is of protocolClass, else the
  /// protocol extension of that class attached to this object's class, else null.
  virtual OdRxObject* queryX(const OdRxClass* protocolClass) const;
  /// As queryX, but throws OdError_NotThatKindOfClass instead of returning null.
  virtual OdRxObject* x(const OdRxClass* protocolClass) const;
  virtual OdRxClass* isA() const;
  virtual void addRef() = 0;
  virtual void release() = 0;
  virtual long numRefs() const;
  /// A new object of the same class with this one's contents (copyFrom).
  virtual OdRxObjectPtr clone() const;
  /// Default: throws OdError(eNotApplicable); classes that can be copied override it.
  virtual void copyFrom(const OdRxObject* source);
  virtual OdRx::Ordering comparedTo(const OdRxObject* other) const;
  virtual bool isEqualTo(const OdRxObject* other) const;

  static OdRxClass* desc();
  static OdRxObjectPtr cast(const OdRxObject* object);
  /// True when this object's registered class is `cls` or derives from it.
  bool isKindOf(const OdRxClass* cls) const;

  static void rxInit();
  static void rxUninit();

private:
  static OdRxClass* g_pDesc;
};

/// A class descriptor. Created by newOdRxClass, owned by the class dictionary; a derived class
/// keeps its parent descriptor alive, so a parent may be unregistered before its children.
class OdRxClass : public OdRxObject {
public:
  static OdRxClass* desc();
  OdRxClass* isA() const override;
  OdRxObject* queryX(const OdRxClass* protocolClass) const override;
  static void rxInit();
  static void rxUninit();

  void addRef() override;
  void release() override;
  long numRefs() const override;

  const OdString& name() const { return m_name; }
  OdRxClass* myParent() const { return m_parent.get(); }
  bool isDerivedFrom(const OdRxClass* other) const;

  /// A new instance through the pseudo-constructor; throws OdError(eNotApplicable) for a class
  /// without one.
  OdRxObjectPtr create() const;
  OdPseudoConstructorType constructor() const { return m_constructor; }

  const OdString& dxfName() const { return m_dxfName; }
  const OdString& appName() const { return m_appName; }
  /// DWG version of the class; maintenance release through the optional pointer.
  int getClassVersion(int* maintReleaseVer = nullptr) const;
  OdUInt32 proxyFlags() const { return m_proxyFlags; }
  int customFlags() const { return m_customFlags; }
  AppNameChangeFuncPtr appNameCallbackPtr() const { return m_appNameChange; }
  /// The module that was being initialised when the class was created (null for none).
  OdRxModule* module() const { return m_module; }

  /// Attaches a protocol extension; returns the one it replaces (null if none).
  OdRxObjectPtr addX(const OdRxClass* protocolClass, OdRxObject* protocolObject);
  /// The extension of protocolClass attached to this class or, failing that, to the nearest
  /// ancestor that has one.
  OdRxObjectPtr getX(const OdRxClass* protocolClass) const;
  /// Detaches this class's own extension of protocolClass and returns it (null if none).
  OdRxObjectPtr delX(const OdRxClass* protocolClass);
  /// The protocol classes of the extensions attached to this class itself, in attach order.
  OdArray<const OdRxClass*> extensionClasses() const;

private:
  friend OdRxClass* newOdRxClass(const OdString&, OdRxClass*, OdPseudoConstructorType, int, int,
                                 int, const OdString&, const OdString&, AppNameChangeFuncPtr,
                                 int, OdRxMemberCollectionConstructorPtr, void*);
  OdRxClass() = default;
  ~OdRxClass() override;

  long m_refs = 0;
  OdString m_name;
  OdRxClassPtr m_parent;
  OdPseudoConstructorType m_constructor = nullptr;
  int m_dwgVersion = 0;
  int m_maintVersion = 0;
  OdUInt32 m_proxyFlags = 0;
  int m_customFlags = 0;
  OdString m_dxfName;
  OdString m_appName;
  AppNameChangeFuncPtr m_appNameChange = nullptr;
  OdRxModule* m_module = nullptr;
  void* m_userData = nullptr;
  /// Each extension keeps its protocol class alive while it is attached, so a protocol class
  /// unregistered before its extensions are detached is still a valid key.
  OdArray<std::pair<OdRxClassPtr, OdRxObjectPtr>> m_extensions;
};

/// Creates a class descriptor and registers it in the class dictionary under className (and
/// in the DXF-name index under dxfName). Throws OdError(eDuplicateKey) when a class of that
/// name is registered already.
OdRxClass* newOdRxClass(const OdString& className, OdRxClass* parentClass,
                        OdPseudoConstructorType constructor = nullptr, int dwgVersion = 0,
                        int maintVersion = 0, int proxyFlags = 0,
                        const OdString& dxfName = OdString::kEmpty,
                        const OdString& appName = OdString::kEmpty,
                        AppNameChangeFuncPtr appNameChange = nullptr, int customFlags = 0,
                        OdRxMemberCollectionConstructorPtr memberConstructor = nullptr,
                        void* userData = nullptr);
/// Removes a class from the dictionary and the DXF-name index and drops the dictionary's
/// reference. Its protocol extensions are detached.
void deleteOdRxClass(OdRxClass* cls);

/// Queries the C++ chain of a class: `Derived` answers for its own descriptor, everything
/// else goes to `Parent`.
template <class Derived, class Parent>
inline OdRxObject* odQueryXImpl(const Derived* self, const OdRxClass* protocolClass) {
  if (protocolClass && protocolClass == Derived::desc()) {
    Derived* me = const_cast<Derived*>(self);
    me->addRef();
    return me;
  }
  return self->Parent::queryX(protocolClass);
}

/// Declares the run-time type members of a class. Use it with a semicolon.
#define ODRX_DECLARE_MEMBERS(ClassName)                                                            \
public:                                                                                            \
  static OdSmartPtr<ClassName> cast(const OdRxObject* object) {                                    \
    if (!object)                                                                                   \
      return OdSmartPtr<ClassName>();                                                              \
    return OdSmartPtr<ClassName>(static_cast<ClassName*>(object->queryX(ClassName::desc())),       \
                                 kOdRxObjAttach);                                                  \
  }                                                                                                \
  static OdRxClass* desc();                                                                        \
  OdRxClass* isA() const override;                                                                 \
  OdRxObject* queryX(const OdRxClass* protocolClass) const override;                               \
  static OdRxObjectPtr pseudoConstructor();                                                        \
  static OdSmartPtr<ClassName> createObject();                                                     \
  static void rxInit();                                                                            \
  static void rxInit(AppNameChangeFuncPtr appNameChangeCallback);                                  \
  static void rxUninit();                                                                          \
                                                                                                   \
private:                                                                                           \
  static OdRxClass* g_pDesc;                                                                       \
                                                                                                   \
public:                                                                                            \
  typedef ClassName RxSelf

/// desc, isA, queryX and createObject of a class whose C++ parent is ParentClass.
#define ODRX_DEFINE_RTTI_MEMBERS(ClassName, ParentClass)                                           \
  OdRxClass* ClassName::g_pDesc = nullptr;                                                         \
  OdRxClass* ClassName::desc() { return g_pDesc; }                                                 \
  OdRxClass* ClassName::isA() const { return g_pDesc; }                                            \
  OdRxObject* ClassName::queryX(const OdRxClass* protocolClass) const {                            \
    return ::odQueryXImpl<ClassName, ParentClass>(this, protocolClass);                            \
  }                                                                                                \
  OdSmartPtr<ClassName> ClassName::createObject() {                                                \
    if (!g_pDesc)                                                                                  \
      throw OdError(eNotInitializedYet, OdString(OD_T(#ClassName)) + OD_T(" is not registered")); \
    return OdSmartPtr<ClassName>(g_pDesc->create());                                               \
  }

/// rxInit (twice) and rxUninit: registering a registered class throws OdError(eExtendedError,
/// 313); unregistering an unregistered one throws OdError(eNotInitializedYet, 255).
#define ODRX_DEFINE_INIT_MEMBERS(ClassName, ParentDesc, PseudoConstructor, DwgVersion,             \
                                 MaintVersion, ProxyFlags, DxfName, AppName)                       \
  void ClassName::rxInit() { ClassName::rxInit(nullptr); }                                         \
  void ClassName::rxInit(AppNameChangeFuncPtr appNameChangeCallback) {                             \
    if (g_pDesc)                                                                                   \
      throw OdError(eExtendedError);                                                               \
    g_pDesc = ::newOdRxClass(OD_T(#ClassName), ParentDesc, PseudoConstructor, DwgVersion,          \
                             MaintVersion, ProxyFlags, DxfName, AppName, appNameChangeCallback,    \
                             0, nullptr, nullptr);                                                 \
  }                                                                                                \
  void ClassName::rxUninit() {                                                                     \
    if (!g_pDesc)                                                                                  \
      throw OdError(eNotInitializedYet);                                                           \
    ::deleteOdRxClass(g_pDesc);                                                                    \
    g_pDesc = nullptr;                                                                             \
  }

/// A pseudo-constructor that allocates with new and hands the first reference to the caller.
#define ODRX_DEFINE_PSEUDO_CONSTRUCTOR(ClassName)                                                  \
  OdRxObjectPtr ClassName::pseudoConstructor() { return OdRxObjectPtr(new ClassName); }

/// A class without a pseudo-constructor (abstract or created otherwise).
#define ODRX_NO_CONS_DEFINE_PSEUDO_CONSTRUCTOR(ClassName)                                          \
  OdRxObjectPtr ClassName::pseudoConstructor() { return OdRxObjectPtr(); }

/// All members of a class registered under `ParentClass::desc()`.
#define ODRX_DEFINE_MEMBERS2(ClassName, ParentClass, PseudoCons, DwgVersion, MaintVersion,         \
                             ProxyFlags, DxfName, AppName)                                         \
  ODRX_DEFINE_RTTI_MEMBERS(ClassName, ParentClass)                                                 \
  ODRX_DEFINE_INIT_MEMBERS(ClassName, ParentClass::desc(), PseudoCons, DwgVersion, MaintVersion,   \
                           ProxyFlags, DxfName, AppName)

/// All members of a platform class: DWG version 0, no proxy flags, its own name as DXF name.
#define ODRX_CONS_DEFINE_MEMBERS(ClassName, ParentClass, DxfName)                                  \
  ODRX_DEFINE_PSEUDO_CONSTRUCTOR(ClassName)                                                        \
  ODRX_DEFINE_MEMBERS2(ClassName, ParentClass, &ClassName::pseudoConstructor, 0, 0, 0, DxfName,    \
                       OD_T("ObjectDBX Classes"))
#define ODRX_NO_CONS_DEFINE_MEMBERS(ClassName, ParentClass)                                        \
  ODRX_NO_CONS_DEFINE_PSEUDO_CONSTRUCTOR(ClassName)                                                \
  ODRX_DEFINE_MEMBERS2(ClassName, ParentClass, nullptr, 0, 0, 0, OdString::kEmpty,                 \
                       OD_T("ObjectDBX Classes"))

#endif
