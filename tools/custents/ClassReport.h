#ifndef CUSTENTS_CLASS_REPORT_H
#define CUSTENTS_CLASS_REPORT_H

#include <string>
#include <vector>

class OdRxClass;
class OdRxModule;
class OdRxObject;

/// A registered class as the class dictionary holds it, in UTF-8, ready to print. This is
/// read back from the live registration, never from the module's own tables, so it shows what
/// the module really registered.
struct ClassRecord {
  std::string name;
  /// Empty for a class without a parent.
  std::string parent;
  std::string dxfName;
  std::string appName;
  unsigned proxyFlags = 0;
  int dwgVersion = 0;
  int maintVersion = 0;
  /// The C++ classes of the extension objects attached to the class itself, in attach order.
  std::vector<std::string> extensions;
};

/// Reads one class descriptor and its own attached extensions.
ClassRecord describeClass(const OdRxClass& cls);

/// The classes whose descriptor belongs to `module`, in registration order.
std::vector<ClassRecord> describeModuleClasses(const OdRxModule* module);

/// The C++ class of an object, demangled. A module's extension objects are static wrappers
/// around classes that are not registered run-time classes, so their isA() says nothing; the
/// C++ type is the only name they have. The OdStaticRxObject<...> wrapper is stripped.
std::string dynamicClassName(const OdRxObject& object);

/// Demangles a type name as std::type_info::name() gives it and strips one wrapping
/// "OdStaticRxObject<...>". A name that does not demangle comes back unchanged.
std::string readableTypeName(const char* mangledName);

#endif
