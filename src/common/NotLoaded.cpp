#include "NotLoaded.h"

namespace custents {

OdError notLoadedError(const OdString& nameWithoutPrefix) {
  return OdError(OD_T("OdDbOdDb") + nameWithoutPrefix + OD_T("is not loaded"));
}

} // namespace custents
