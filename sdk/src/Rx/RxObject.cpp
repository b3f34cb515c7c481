#include "RxObject.h"

#include "RxDictionary.h"
#include "RxModule.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

// ---------------------------------------------------------------------------------------------
// The class dictionary: classes in registration order, an index by name and one by DXF name.

namespace {
struct ClassRegistry {
  std::vector<OdRxClassPtr> ordered;
  std::unordered_map<OdString, OdRxClass*> byName;
  std::unordered_map<OdString, std::vector<OdRxClass*>> byDxfName;
};

ClassRegistry& registry() {
  static ClassRegistry instance;
  return instance;
}
} // namespace

OdRxClass* odrxGetClass(const OdString& className) {
  const auto& byName = registry().byName;
  auto it = byName.find(className);
  return it == byName.end() ? nullptr : it->second;
}

OdArray<OdRxClass*> odrxRegisteredClasses() {
  OdArray<OdRxClass*> result;
  result.reserve(static_cast<unsigned>(registry().ordered.size()));
  for (const OdRxClassPtr& cls : registry().ordered)
    result.append(cls.get());
  return result;
}

OdRxClass* odrxClassByDxfName(const OdString& dxfName) {
  const auto& byDxf = registry().byDxfName;
  auto it = byDxf.find(dxfName);
  return it == byDxf.end() || it->second.empty() ? nullptr : it->second.front();
}

OdArray<OdRxClass*> odrxClassesByDxfName(const OdString& dxfName) {
  OdArray<OdRxClass*> result;
  auto it = registry().byDxfName.find(dxfName);
  if (it != registry().byDxfName.end())
    for (OdRxClass* cls : it->second)
      result.append(cls);
  return result;
}

OdRxClass* newOdRxClass(const OdString& className, OdRxClass* parentClass,
                        OdPseudoConstructorType constructor, int dwgVersion, int maintVersion,
                        int proxyFlags, const OdString& dxfName, const OdString& appName,
                        AppNameChangeFuncPtr appNameChange, int customFlags,
                        OdRxMemberCollectionConstructorPtr /*memberConstructor*/,
                        void* userData) {
  ClassRegistry& reg = registry();
  if (className.isEmpty())
    throw OdError(eInvalidInput, OD_T("A class needs a name"));
  if (reg.byName.count(className))
    throw OdError(eDuplicateKey, OD_T("Class ") + className + OD_T(" is registered already"));

  OdRxClassPtr cls(new OdRxClass);
  cls->m_name = className;
  cls->m_parent = parentClass;
  cls->m_constructor = constructor;
  cls->m_dwgVersion = dwgVersion;
  cls->m_maintVersion = maintVersion;
  cls->m_proxyFlags = static_cast<OdUInt32>(proxyFlags);
  cls->m_customFlags = customFlags;
  cls->m_dxfName = dxfName;
  cls->m_appName = appName;
  cls->m_appNameChange = appNameChange;
  // The module being initialised owns the class; a class registered outside that (a module
  // re-initialised by its host, or a class a host registers from a module's exported members)
  // belongs to the loaded module whose code holds its pseudo-constructor.
  cls->m_module = odrxCurrentInitModule();
  if (!cls->m_module && constructor)
    cls->m_module = odrxModuleContaining(reinterpret_cast<const void*>(constructor));
  cls->m_userData = userData;

  reg.ordered.push_back(cls);
  reg.byName.emplace(className, cls.get());
  if (!dxfName.isEmpty())
    reg.byDxfName[dxfName].push_back(cls.get());
  return cls.get();
}

void deleteOdRxClass(OdRxClass* cls) {
  if (!cls)
    return;
  ClassRegistry& reg = registry();
  auto named = reg.byName.find(cls->name());
  if (named == reg.byName.end() || named->second != cls)
    throw OdError(eKeyNotFound, OD_T("Class ") + cls->name() + OD_T(" is not registered"));
  reg.byName.erase(named);

  auto dxf = reg.byDxfName.find(cls->dxfName());
  if (dxf != reg.byDxfName.end()) {
    auto& list = dxf->second;
    list.erase(std::remove(list.begin(), list.end(), cls), list.end());
    if (list.empty())
      reg.byDxfName.erase(dxf);
  }
  // Extensions usually live in the code of the module that goes away with the class.
  for (const OdRxClass* protocol : cls->extensionClasses())
    cls->delX(protocol);

  // Dropping the dictionary's reference last: children that still hold the descriptor as
  // their parent keep it alive.
  auto it = std::find_if(reg.ordered.begin(), reg.ordered.end(),
                         [cls](const OdRxClassPtr& p) { return p.get() == cls; });
  if (it != reg.ordered.end())
    reg.ordered.erase(it);
}

// ---------------------------------------------------------------------------------------------
// OdRxObject

OdRxClass* OdRxObject::g_pDesc = nullptr;

OdRxObject::~OdRxObject() = default;

OdRxClass* OdRxObject::desc() { return g_pDesc; }

OdRxClass* OdRxObject::isA() const { return g_pDesc; }

OdRxObject* OdRxObject::queryX(const OdRxClass* protocolClass) const {
  if (!protocolClass)
    return nullptr;
  if (protocolClass == OdRxObject::desc()) {
    OdRxObject* me = const_cast<OdRxObject*>(this);
    me->addRef();
    return me;
  }
  const OdRxClass* cls = isA();
  if (!cls)
    return nullptr;
  return cls->getX(protocolClass).detach();
}

OdRxObject* OdRxObject::x(const OdRxClass* protocolClass) const {
  OdRxObject* result = queryX(protocolClass);
  if (!result)
    throw OdError_NotThatKindOfClass(isA(), protocolClass);
  return result;
}

OdRxObjectPtr OdRxObject::cast(const OdRxObject* object) { return OdRxObjectPtr(object); }

long OdRxObject::numRefs() const { return 1; }

OdRxObjectPtr OdRxObject::clone() const {
  const OdRxClass* cls = isA();
  if (!cls)
    throw OdError(eNotInitializedYet, OD_T("Cannot clone an object of an unregistered class"));
  OdRxObjectPtr copy = cls->create();
  copy->copyFrom(this);
  return copy;
}

void OdRxObject::copyFrom(const OdRxObject*) { throw OdError(eNotApplicable); }

OdRx::Ordering OdRxObject::comparedTo(const OdRxObject*) const { return OdRx::kNotOrderable; }

bool OdRxObject::isEqualTo(const OdRxObject* other) const { return other == this; }

bool OdRxObject::isKindOf(const OdRxClass* cls) const {
  const OdRxClass* mine = isA();
  return mine && cls && mine->isDerivedFrom(cls);
}

void OdRxObject::rxInit() {
  if (g_pDesc)
    throw OdError(eExtendedError);
  g_pDesc = newOdRxClass(OD_T("OdRxObject"), nullptr);
}

void OdRxObject::rxUninit() {
  if (!g_pDesc)
    throw OdError(eNotInitializedYet);
  deleteOdRxClass(g_pDesc);
  g_pDesc = nullptr;
}

// ---------------------------------------------------------------------------------------------
// OdRxClass

namespace {
OdRxClass* g_rxClassDesc = nullptr;
}

OdRxClass* OdRxClass::desc() { return g_rxClassDesc; }
OdRxClass* OdRxClass::isA() const { return g_rxClassDesc; }
OdRxObject* OdRxClass::queryX(const OdRxClass* protocolClass) const {
  return odQueryXImpl<OdRxClass, OdRxObject>(this, protocolClass);
}
void OdRxClass::rxInit() {
  if (g_rxClassDesc)
    throw OdError(eExtendedError);
  g_rxClassDesc = newOdRxClass(OD_T("OdRxClass"), OdRxObject::desc());
}
void OdRxClass::rxUninit() {
  if (!g_rxClassDesc)
    throw OdError(eNotInitializedYet);
  deleteOdRxClass(g_rxClassDesc);
  g_rxClassDesc = nullptr;
}

OdRxClass::~OdRxClass() = default;

void OdRxClass::addRef() { ++m_refs; }

void OdRxClass::release() {
  if (--m_refs == 0)
    delete this;
}

long OdRxClass::numRefs() const { return m_refs; }

bool OdRxClass::isDerivedFrom(const OdRxClass* other) const {
  for (const OdRxClass* cls = this; cls; cls = cls->m_parent.get())
    if (cls == other)
      return true;
  return false;
}

OdRxObjectPtr OdRxClass::create() const {
  if (!m_constructor)
    throw OdError(eNotApplicable, OD_T("Class ") + m_name + OD_T(" has no pseudo-constructor"));
  return m_constructor();
}

int OdRxClass::getClassVersion(int* maintReleaseVer) const {
  if (maintReleaseVer)
    *maintReleaseVer = m_maintVersion;
  return m_dwgVersion;
}

OdRxObjectPtr OdRxClass::addX(const OdRxClass* protocolClass, OdRxObject* protocolObject) {
  if (!protocolClass)
    throw OdError(eInvalidInput, OD_T("addX needs a protocol class"));
  for (auto& entry : m_extensions) {
    if (entry.first.get() == protocolClass) {
      OdRxObjectPtr previous = entry.second;
      if (protocolObject)
        entry.second = protocolObject;
      else
        delX(protocolClass);
      return previous;
    }
  }
  if (protocolObject)
    m_extensions.append(std::make_pair(OdRxClassPtr(protocolClass), OdRxObjectPtr(protocolObject)));
  return OdRxObjectPtr();
}

OdRxObjectPtr OdRxClass::getX(const OdRxClass* protocolClass) const {
  for (const OdRxClass* cls = this; cls; cls = cls->m_parent.get())
    for (const auto& entry : cls->m_extensions)
      if (entry.first.get() == protocolClass)
        return entry.second;
  return OdRxObjectPtr();
}

OdRxObjectPtr OdRxClass::delX(const OdRxClass* protocolClass) {
  for (unsigned i = 0; i < m_extensions.size(); ++i) {
    if (m_extensions[i].first.get() == protocolClass) {
      OdRxObjectPtr removed = m_extensions[i].second;
      m_extensions.removeAt(i);
      return removed;
    }
  }
  return OdRxObjectPtr();
}

OdArray<const OdRxClass*> OdRxClass::extensionClasses() const {
  OdArray<const OdRxClass*> result;
  for (const auto& entry : m_extensions)
    result.append(entry.first.get());
  return result;
}
