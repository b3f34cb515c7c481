#include "DbGroup.h"
#include "DxfFile/DbDxfGroups.h"

#include "DbDwgStreamFiler.h"
#include "DbEntity.h"
#include "DbFiler.h"

#include <set>

ODRX_CONS_DEFINE_MEMBERS(OdDbGroup, OdDbObject, OD_T("GROUP"))

namespace {

/// True when a non-null id appears twice. Ids read without a database are all null and
/// carry no identity to compare.
bool hasRepeatedIds(const OdDbObjectIdArray& ids) {
  std::set<OdDbStub*> seen;
  for (const OdDbObjectId& id : ids)
    if (!id.isNull() && !seen.insert(id).second)
      return true;
  return false;
}

} // namespace

OdDbGroup::OdDbGroup() = default;

OdString OdDbGroup::description() const {
  assertReadEnabled();
  return m_description;
}

void OdDbGroup::setDescription(const OdString& description) {
  if (description.find(u'\n') >= 0 || description.find(u'\r') >= 0)
    throw OdError(eInvalidInput, OD_T("A group description is one line"));
  assertWriteEnabled();
  m_description = description;
}

bool OdDbGroup::isSelectable() const {
  assertReadEnabled();
  return m_selectable;
}

void OdDbGroup::setSelectable(bool selectable) {
  assertWriteEnabled();
  m_selectable = selectable;
}

bool OdDbGroup::isAnonymous() const {
  assertReadEnabled();
  return m_anonymous;
}

void OdDbGroup::setAnonymous() {
  assertWriteEnabled();
  m_anonymous = true;
}

// Entities -------------------------------------------------------------------------------------

void OdDbGroup::checkNewId(OdDbObjectId id) const {
  if (id.isNull())
    throw OdError(eNullObjectId);
  if (m_ids.contains(id))
    throw OdError(eInvalidInput, OD_T("The entity is in the group already"));
  OdRxClass* cls = id.objectClass();
  if (cls && !cls->isDerivedFrom(OdDbEntity::desc()))
    throw OdError(eWrongObjectType, OD_T("Only entities can be grouped"));
  if (database() && id.database() != database())
    throw OdError(eWrongDatabase, OD_T("The entity belongs to another database"));
}

void OdDbGroup::append(OdDbObjectId id) {
  insertAt(numEntities(), id);
}

void OdDbGroup::append(const OdDbObjectIdArray& ids) {
  // All or nothing: check the whole list (repeats within it too) before changing anything.
  assertWriteEnabled();
  for (OdDbObjectIdArray::size_type i = 0; i < ids.size(); ++i) {
    checkNewId(ids[i]);
    if (ids.contains(ids[i], i + 1))
      throw OdError(eInvalidInput, OD_T("The entity is listed twice"));
  }
  m_ids.append(ids);
}

void OdDbGroup::prepend(OdDbObjectId id) {
  insertAt(0, id);
}

void OdDbGroup::insertAt(OdUInt32 index, OdDbObjectId id) {
  assertWriteEnabled();
  if (index > m_ids.size())
    throw OdError(eInvalidIndex);
  checkNewId(id);
  m_ids.insertAt(index, id);
}

bool OdDbGroup::remove(OdDbObjectId id) {
  const int at = indexOf(id);
  if (at < 0)
    return false;
  removeAt(static_cast<OdUInt32>(at));
  return true;
}

void OdDbGroup::removeAt(OdUInt32 index) {
  assertWriteEnabled();
  if (index >= m_ids.size())
    throw OdError(eInvalidIndex);
  m_ids.removeAt(index);
}

bool OdDbGroup::has(OdDbObjectId id) const {
  return indexOf(id) >= 0;
}

bool OdDbGroup::has(const OdDbEntity* entity) const {
  return entity && entity->isDBRO() && has(entity->objectId());
}

OdUInt32 OdDbGroup::numEntities() const {
  assertReadEnabled();
  return m_ids.size();
}

void OdDbGroup::allEntityIds(OdDbObjectIdArray& ids) const {
  assertReadEnabled();
  ids = m_ids;
}

int OdDbGroup::indexOf(OdDbObjectId id) const {
  assertReadEnabled();
  OdDbObjectIdArray::size_type at = 0;
  if (id.isNull() || !m_ids.find(id, at))
    return -1;
  return static_cast<int>(at);
}

void OdDbGroup::clear() {
  assertWriteEnabled();
  m_ids.clear();
}

// Filing ---------------------------------------------------------------------------------------

void OdDbGroup::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbObject::dwgOutFields(filer);
  filer->wrString(m_description);
  filer->wrInt16(m_anonymous ? 1 : 0);
  filer->wrInt16(m_selectable ? 1 : 0);
  filer->wrInt32(static_cast<OdInt32>(m_ids.size()));
  for (const OdDbObjectId& id : m_ids)
    filer->wrHardPointerId(id);
}

OdResult OdDbGroup::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbObject::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdString description = filer->rdString();
  const OdInt16 anonymous = filer->rdInt16();
  const OdInt16 selectable = filer->rdInt16();
  const OdInt32 count = filer->rdInt32();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (anonymous < 0 || anonymous > 1 || selectable < 0 || selectable > 1 || count < 0)
    return eDwgObjectImproperlyRead;
  // Each id takes at least one byte of the handle stream.
  const OdDbDwgStreamFiler* stream = dynamic_cast<const OdDbDwgStreamFiler*>(filer);
  if (stream && static_cast<OdUInt64>(count) > stream->remainingHandleBits() / 8)
    return eDwgObjectImproperlyRead;
  OdDbObjectIdArray ids;
  for (OdInt32 i = 0; i < count && filer->filerStatus() == eOk; ++i)
    ids.append(filer->rdHardPointerId());
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (hasRepeatedIds(ids))
    return eDwgObjectImproperlyRead;
  m_description = description;
  m_anonymous = anonymous != 0;
  m_selectable = selectable != 0;
  m_ids = ids;
  return eOk;
}

void OdDbGroup::dxfOutFields(OdDbDxfFiler* filer) const {
  OdDbObject::dxfOutFields(filer);
  filer->wrSubclassMarker(OD_T("AcDbGroup"));
  filer->wrString(300, m_description);
  filer->wrInt16(70, m_anonymous ? 1 : 0);
  filer->wrInt16(71, m_selectable ? 1 : 0);
  for (const OdDbObjectId& id : m_ids)
    filer->wrObjectId(340, id);
}

OdResult OdDbGroup::dxfInFields(OdDbDxfFiler* filer) {
  const OdResult base = OdDbObject::dxfInFields(filer);
  if (base != eOk)
    return base;
  if (!filer->atSubclassData(OD_T("AcDbGroup")))
    return eInvalidDxfCode;
  OdString description;
  OdInt16 anonymous = 0;
  OdInt16 selectable = 1;
  OdDbObjectIdArray ids;
  const OdResult groups = odDbReadDxfSubclassGroups(filer, [&](int code) {
    switch (code) {
    case 300:
      description = filer->rdString();
      break;
    case 70:
      anonymous = filer->rdInt16();
      break;
    case 71:
      selectable = filer->rdInt16();
      break;
    case 340:
      ids.append(filer->rdObjectId());
      break;
    default:
      break;
    }
  });
  if (groups != eOk)
    return groups;
  if (anonymous < 0 || anonymous > 1 || selectable < 0 || selectable > 1 || hasRepeatedIds(ids))
    return eInvalidDxfCode;
  m_description = description;
  m_anonymous = anonymous != 0;
  m_selectable = selectable != 0;
  m_ids = ids;
  return eOk;
}
