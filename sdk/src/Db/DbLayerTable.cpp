#include "DbLayerTable.h"

#include "DbFiler.h"

ODRX_CONS_DEFINE_MEMBERS(OdDbLayerTableRecord, OdDbSymbolTableRecord, OD_T("LAYER"))
ODRX_CONS_DEFINE_MEMBERS(OdDbLayerTable, OdDbSymbolTable, OD_T("TABLE"))

OdRxClass* OdDbLayerTable::recordClass() const { return OdDbLayerTableRecord::desc(); }

namespace {
enum LayerFlags { kFrozen = 1, kOff = 2, kLocked = 4, kNotPlottable = 8 };
}

OdDbLayerTableRecord::OdDbLayerTableRecord() { m_color.setColorIndex(7); }

OdCmColor OdDbLayerTableRecord::color() const {
  assertReadEnabled();
  return m_color;
}
void OdDbLayerTableRecord::setColor(const OdCmColor& color) {
  assertWriteEnabled();
  m_color = color;
}
OdDbObjectId OdDbLayerTableRecord::linetypeObjectId() const {
  assertReadEnabled();
  return m_linetypeId;
}
void OdDbLayerTableRecord::setLinetypeObjectId(OdDbObjectId linetypeId) {
  assertWriteEnabled();
  m_linetypeId = linetypeId;
}
OdDb::LineWeight OdDbLayerTableRecord::lineWeight() const {
  assertReadEnabled();
  return m_lineWeight;
}
void OdDbLayerTableRecord::setLineWeight(OdDb::LineWeight lineWeight) {
  if (!odIsValidLineWeight(lineWeight))
    throw OdError(eInvalidInput, OD_T("Not a lineweight"));
  assertWriteEnabled();
  m_lineWeight = lineWeight;
}
bool OdDbLayerTableRecord::isOff() const {
  assertReadEnabled();
  return m_off;
}
void OdDbLayerTableRecord::setIsOff(bool off) {
  assertWriteEnabled();
  m_off = off;
}
bool OdDbLayerTableRecord::isFrozen() const {
  assertReadEnabled();
  return m_frozen;
}
void OdDbLayerTableRecord::setIsFrozen(bool frozen) {
  assertWriteEnabled();
  m_frozen = frozen;
}
bool OdDbLayerTableRecord::isLocked() const {
  assertReadEnabled();
  return m_locked;
}
void OdDbLayerTableRecord::setIsLocked(bool locked) {
  assertWriteEnabled();
  m_locked = locked;
}
bool OdDbLayerTableRecord::isPlottable() const {
  assertReadEnabled();
  return m_plottable;
}
void OdDbLayerTableRecord::setIsPlottable(bool plottable) {
  assertWriteEnabled();
  m_plottable = plottable;
}

OdResult OdDbLayerTableRecord::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbSymbolTableRecord::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdInt16 flags = filer->rdInt16();
  OdCmColor color;
  filer->rdCmColor(color);
  const int lineWeightIndex = filer->rdUInt8();
  const OdDbObjectId linetypeId = filer->rdHardPointerId();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  OdDb::LineWeight lineWeight;
  if ((flags & ~0xF) != 0 || !odLineWeightFromDwgIndex(lineWeightIndex, lineWeight))
    return eDwgObjectImproperlyRead;
  m_frozen = flags & kFrozen;
  m_off = flags & kOff;
  m_locked = flags & kLocked;
  m_plottable = !(flags & kNotPlottable);
  m_color = color;
  m_lineWeight = lineWeight;
  m_linetypeId = linetypeId;
  return eOk;
}

void OdDbLayerTableRecord::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbSymbolTableRecord::dwgOutFields(filer);
  filer->wrInt16(static_cast<OdInt16>((m_frozen ? kFrozen : 0) | (m_off ? kOff : 0) |
                                      (m_locked ? kLocked : 0) |
                                      (m_plottable ? 0 : kNotPlottable)));
  filer->wrCmColor(m_color);
  filer->wrUInt8(static_cast<OdUInt8>(odLineWeightToDwgIndex(m_lineWeight)));
  filer->wrHardPointerId(m_linetypeId);
}
