#ifndef CUSTENTS_EDIT_TEXT_CALLBACKS_H
#define CUSTENTS_EDIT_TEXT_CALLBACKS_H

// The in-place text-editing callbacks the module hands to the host. They edit the texts of
// annotations and dimension-like entities; until those entities carry texts the callbacks
// decline every entity: pick finds no text, commit handles nothing, show leaves entities alone.

#include "DbEntity.h"

namespace custents {

bool pickEditText(OdSmartPtr<OdDbEntity> entity, const OdGePoint3d& clickPoint,
                  OdSmartPtr<OdDbEntity>& textToEdit, int& kind);
bool commitEditText(OdSmartPtr<OdDbEntity> entity, OdSmartPtr<OdDbEntity> editedText,
                    OdString newText, OdSmartPtr<OdDbEntity> dimensionText);
void showEditText(OdSmartPtr<OdDbEntity> entity, OdSmartPtr<OdDbEntity> other, bool editing);

} // namespace custents

#endif
