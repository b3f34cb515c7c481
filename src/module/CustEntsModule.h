#ifndef CUSTENTS_MODULE_H
#define CUSTENTS_MODULE_H

// The module object of CustEnts.tx and its two exported entry points.

#include "RxDynamicModule.h"

/// Loading registers the module's classes and attaches their extensions; unloading removes
/// them. While loaded, the module keeps the platform's database module locked.
class CustEntsModule : public OdRxModule {
public:
  /// Throws OdError(eNotInitializedYet, 255) when the platform's database classes are not
  /// registered; then nothing is registered.
  void initApp() override;
  void uninitApp() override;

protected:
  ~CustEntsModule() override;
};

/// The object the module hands out: the module with its lock count and loader handle.
typedef OdRxUnixModule<CustEntsModule> CustEntsModuleObject;

extern "C" {
/// Writes the module interface version 1.0.0.0; returns 0.
int odrxGetAPIVersion(unsigned& major, unsigned& minor, unsigned& build, unsigned& patch);
/// The module object, created on the first call (taking over the handle that `moduleHandle`
/// points at and clearing it) and returned unchanged on later calls.
OdRxModule* odrxCreateModuleObject(void** moduleHandle);
}

#endif
