#include "CustFiling.h"

namespace custents {

OdResult refuseDxfIn(OdDbObject* object, OdDbDxfFiler* /*filer*/) {
  object->assertWriteEnabled();
  return kRefusedVersion;
}

} // namespace custents
