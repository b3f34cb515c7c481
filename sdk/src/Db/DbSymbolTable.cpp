#include "DbSymbolTable.h"

#include "DbDatabase.h"
#include "DbFiler.h"

ODRX_NO_CONS_DEFINE_MEMBERS(OdDbSymbolTableRecord, OdDbObject)
ODRX_NO_CONS_DEFINE_MEMBERS(OdDbSymbolTable, OdDbObject)

// ---------------------------------------------------------------------------------------------
// Records

bool OdDbSymbolTableRecord::isValidName(const OdString& name) {
  if (name.isEmpty() || name.getLength() > 255)
    return false;
  static const char16_t forbidden[] = u"<>/\\\":;?|,=`";
  for (int i = 0; i < name.getLength(); ++i) {
    const OdChar c = name.getAt(i);
    if (c < 0x20)
      return false;
    // Names of special blocks ("*Model_Space") start with a star; nowhere else.
    if (c == '*' && i != 0)
      return false;
    for (const char16_t* f = forbidden; *f; ++f)
      if (c == *f)
        return false;
  }
  return true;
}

OdString OdDbSymbolTableRecord::getName() const {
  assertReadEnabled();
  return m_name;
}

void OdDbSymbolTableRecord::setName(const OdString& name) {
  if (!isValidName(name))
    throw OdError(eInvalidSymbolTableName, OD_T("Invalid symbol name: ") + name);
  assertWriteEnabled();
  if (!ownerId().isNull()) {
    OdDbObjectPtr owner = ownerId().openObject();
    OdDbSymbolTable* table = owner.isNull() ? nullptr
                                            : static_cast<OdDbSymbolTable*>(
                                                  owner->queryX(OdDbSymbolTable::desc()));
    if (table) {
      const OdDbObjectId existing = table->getAt(name);
      table->release();
      if (!existing.isNull() && existing != objectId())
        throw OdError(eDuplicateKey, OD_T("Name in use: ") + name);
    }
  }
  m_name = name;
}

OdResult OdDbSymbolTableRecord::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbObject::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdString name = filer->rdString();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!isValidName(name))
    return eDwgObjectImproperlyRead;
  m_name = name;
  return eOk;
}

void OdDbSymbolTableRecord::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbObject::dwgOutFields(filer);
  filer->wrString(m_name);
}

OdDbSymbolTableRecordPtr OdDbSymbolTableIterator::getRecord(OdDb::OpenMode mode) const {
  OdDbObjectPtr object = getRecordId().openObject(mode);
  return OdDbSymbolTableRecord::cast(object);
}

// ---------------------------------------------------------------------------------------------
// Tables

OdDbObjectId OdDbSymbolTable::getAt(const OdString& name, bool getErasedRecord) const {
  assertReadEnabled();
  for (const OdDbObjectId& id : m_records) {
    if (id.isErased() && !getErasedRecord)
      continue;
    OdDbSymbolTableRecordPtr record = OdDbSymbolTableRecord::cast(id.openObject(OdDb::kForRead, true));
    if (!record.isNull() && record->getName().iCompare(name) == 0)
      return id;
  }
  return OdDbObjectId();
}

OdDbSymbolTableRecordPtr OdDbSymbolTable::getAt(const OdString& name, OdDb::OpenMode mode,
                                                bool getErasedRecord) const {
  return OdDbSymbolTableRecord::cast(getAt(name, getErasedRecord).openObject(mode, getErasedRecord));
}

bool OdDbSymbolTable::has(const OdDbObjectId& recordId) const {
  assertReadEnabled();
  for (const OdDbObjectId& id : m_records)
    if (id == recordId)
      return !id.isErased();
  return false;
}

OdDbObjectId OdDbSymbolTable::add(OdDbSymbolTableRecord* record) {
  if (!record)
    throw OdError(eNullObjectPointer);
  if (!record->isKindOf(recordClass()))
    throw OdError(eWrongObjectType, record->isA()->name() + OD_T(" does not belong in ") +
                                        isA()->name());
  OdDbDatabase* db = database();
  if (!isDBRO() || !db)
    throw OdError(eNotInDatabase, OD_T("The table is not in a database"));
  // A reader that keeps a file's handles adds the record to the database under this table
  // first; such a record joins the table here.
  const bool resident = record->isDBRO();
  if (resident && (record->database() != db || record->ownerId() != objectId() ||
                   has(record->objectId())))
    throw OdError(eAlreadyInDb, OD_T("The record belongs elsewhere or is in the table"));
  const OdString name = record->getName();
  if (name.isEmpty())
    throw OdError(eInvalidSymbolTableName, OD_T("A record needs a name"));
  if (!getAt(name).isNull())
    throw OdError(eDuplicateKey, OD_T("Name in use: ") + name);
  assertWriteEnabled();
  const OdDbObjectId id = resident ? record->objectId() : db->addOdDbObject(record, objectId());
  m_records.push_back(id);
  return id;
}

OdDbSymbolTableIteratorPtr OdDbSymbolTable::newIterator() const {
  assertReadEnabled();
  std::vector<OdDbObjectId> live;
  for (const OdDbObjectId& id : m_records)
    if (!id.isErased())
      live.push_back(id);
  return OdDbSymbolTableIteratorPtr(new OdDbSymbolTableIterator(std::move(live)));
}

OdResult OdDbSymbolTable::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbObject::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdInt32 count = filer->rdInt32();
  std::vector<OdDbObjectId> records;
  // The count is not trusted: reading stops at the first failure instead of reserving.
  for (OdInt32 i = 0; i < count && filer->filerStatus() == eOk; ++i)
    records.push_back(filer->rdSoftOwnershipId());
  if (count < 0)
    return eDwgObjectImproperlyRead;
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  m_records = std::move(records);
  return eOk;
}

void OdDbSymbolTable::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbObject::dwgOutFields(filer);
  filer->wrInt32(static_cast<OdInt32>(m_records.size()));
  for (const OdDbObjectId& id : m_records)
    filer->wrSoftOwnershipId(id);
}
