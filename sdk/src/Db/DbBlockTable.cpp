#include "DbBlockTable.h"

#include "DbDatabase.h"
#include "DbEntity.h"
#include "DbFiler.h"

ODRX_CONS_DEFINE_MEMBERS(OdDbBlockTableRecord, OdDbSymbolTableRecord, OD_T("BLOCK_RECORD"))
ODRX_CONS_DEFINE_MEMBERS(OdDbBlockTable, OdDbSymbolTable, OD_T("TABLE"))

OdRxClass* OdDbBlockTable::recordClass() const { return OdDbBlockTableRecord::desc(); }

OdDbObjectId OdDbBlockTableRecord::appendOdDbEntity(OdDbEntity* entity) {
  if (!entity)
    throw OdError(eNullEntityPointer);
  OdDbDatabase* db = database();
  if (!isDBRO() || !db)
    throw OdError(eNotInDatabase, OD_T("The block is not in a database"));
  assertWriteEnabled();
  // A reader that keeps a file's handles adds the entity to the database under this block
  // first; such an entity joins the block here.
  if (entity->isDBRO()) {
    if (entity->database() != db || entity->ownerId() != objectId() ||
        m_members.count(entity->objectId()) != 0)
      throw OdError(eAlreadyInDb, OD_T("The entity belongs elsewhere or is in the block"));
    m_entities.append(entity->objectId());
    m_members.insert(entity->objectId());
    return entity->objectId();
  }
  // An entity that never had its properties set gets the drawing's current layer and
  // linetype, so that it names records that exist.
  if (entity->layerId().isNull())
    entity->setLayer(db->getCLAYER());
  if (entity->linetypeId().isNull())
    entity->setLinetype(db->getCELTYPE());
  const OdDbObjectId id = db->addOdDbObject(entity, objectId());
  m_entities.append(id);
  m_members.insert(id);
  return id;
}

OdDbObjectIdArray OdDbBlockTableRecord::entityIds() const {
  assertReadEnabled();
  OdDbObjectIdArray live;
  for (const OdDbObjectId& id : m_entities)
    if (!id.isErased())
      live.append(id);
  return live;
}

OdGePoint3d OdDbBlockTableRecord::origin() const {
  assertReadEnabled();
  return m_origin;
}

void OdDbBlockTableRecord::setOrigin(const OdGePoint3d& origin) {
  assertWriteEnabled();
  m_origin = origin;
}

OdResult OdDbBlockTableRecord::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbSymbolTableRecord::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdGePoint3d origin = filer->rdPoint3d();
  const OdInt32 count = filer->rdInt32();
  OdDbObjectIdArray entities;
  for (OdInt32 i = 0; i < count && filer->filerStatus() == eOk; ++i)
    entities.append(filer->rdHardOwnershipId());
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (count < 0)
    return eDwgObjectImproperlyRead;
  m_origin = origin;
  m_entities = entities;
  m_members.clear();
  for (const OdDbObjectId& id : m_entities)
    m_members.insert(id);
  return eOk;
}

void OdDbBlockTableRecord::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbSymbolTableRecord::dwgOutFields(filer);
  filer->wrPoint3d(m_origin);
  filer->wrInt32(static_cast<OdInt32>(m_entities.size()));
  for (const OdDbObjectId& id : m_entities)
    filer->wrHardOwnershipId(id);
}
