#include "HostExtend.h"

#include "ExtendPE.h"
#include "OdError.h"
#include "PropertyPE.h"

namespace {
// Nesting depth of odHostExtendInitialize; the host runs on one thread.
int g_initCount = 0;
} // namespace

void odHostExtendInitialize() {
  if (g_initCount > 0) {
    ++g_initCount;
    return;
  }
  if (!OdRxObject::desc())
    throw OdError(eNotInitializedYet,
                  OdString(OD_T("odInitialize() must run before odHostExtendInitialize()")));
  PropertyPE::rxInit();
  try {
    ExtendPE::rxInit();
  } catch (...) {
    PropertyPE::rxUninit();
    throw;
  }
  g_initCount = 1;
}

void odHostExtendUninitialize() {
  if (g_initCount == 0)
    return;
  if (--g_initCount > 0)
    return;
  // Reverse order of registration.
  ExtendPE::rxUninit();
  PropertyPE::rxUninit();
}
