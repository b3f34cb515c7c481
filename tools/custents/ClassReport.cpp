#include "ClassReport.h"

#include "RxDictionary.h"
#include "RxModule.h"
#include "RxObject.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <typeinfo>

namespace {

std::string stripStaticWrapper(const std::string& name) {
  static const std::string wrapper = "OdStaticRxObject<";
  if (name.compare(0, wrapper.size(), wrapper) != 0 || name.back() != '>')
    return name;
  std::string inner = name.substr(wrapper.size(), name.size() - wrapper.size() - 1);
  // Older demanglers write "T<U<V> >"; the inner name must not keep that blank.
  while (!inner.empty() && inner.back() == ' ')
    inner.pop_back();
  return inner;
}

} // namespace

std::string readableTypeName(const char* mangledName) {
  if (!mangledName)
    return std::string();
  int status = 0;
  std::unique_ptr<char, void (*)(void*)> demangled(
      abi::__cxa_demangle(mangledName, nullptr, nullptr, &status), &std::free);
  const std::string name = status == 0 && demangled ? demangled.get() : mangledName;
  return stripStaticWrapper(name);
}

std::string dynamicClassName(const OdRxObject& object) {
  return readableTypeName(typeid(object).name());
}

ClassRecord describeClass(const OdRxClass& cls) {
  ClassRecord record;
  record.name = cls.name().toUtf8();
  if (const OdRxClass* parent = cls.myParent())
    record.parent = parent->name().toUtf8();
  record.dxfName = cls.dxfName().toUtf8();
  record.appName = cls.appName().toUtf8();
  record.proxyFlags = cls.proxyFlags();
  record.dwgVersion = cls.getClassVersion(&record.maintVersion);
  for (const OdRxClass* protocol : cls.extensionClasses()) {
    const OdRxObjectPtr extension = cls.getX(protocol);
    record.extensions.push_back(extension.isNull() ? std::string("(none)")
                                                   : dynamicClassName(*extension));
  }
  return record;
}

std::vector<ClassRecord> describeModuleClasses(const OdRxModule* module) {
  std::vector<ClassRecord> records;
  if (!module)
    return records;
  for (const OdRxClass* cls : odrxRegisteredClasses())
    if (cls->module() == module)
      records.push_back(describeClass(*cls));
  return records;
}
