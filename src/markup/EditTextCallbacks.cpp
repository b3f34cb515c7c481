#include "EditTextCallbacks.h"

namespace custents {

bool pickEditText(OdSmartPtr<OdDbEntity> /*entity*/, const OdGePoint3d& /*clickPoint*/,
                  OdSmartPtr<OdDbEntity>& /*textToEdit*/, int& /*kind*/) {
  return false;
}

bool commitEditText(OdSmartPtr<OdDbEntity> /*entity*/, OdSmartPtr<OdDbEntity> /*editedText*/,
                    OdString /*newText*/, OdSmartPtr<OdDbEntity> /*dimensionText*/) {
  return false;
}

void showEditText(OdSmartPtr<OdDbEntity> /*entity*/, OdSmartPtr<OdDbEntity> /*other*/,
                  bool /*editing*/) {}

} // namespace custents
