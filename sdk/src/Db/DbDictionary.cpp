#include "DbDictionary.h"
#include "DxfFile/DbDxfGroups.h"

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbFiler.h"

#include <string>
#include <unordered_set>

ODRX_CONS_DEFINE_MEMBERS(OdDbDictionary, OdDbObject, OD_T("DICTIONARY"))

OdDbObjectPtr OdDbDictionaryIterator::getObject(OdDb::OpenMode mode) const {
  return objectId().openObject(mode);
}

OdDbDictionary::OdDbDictionary() = default;

// Lookups --------------------------------------------------------------------------------------

const OdDbDictionary::Entry* OdDbDictionary::find(const OdString& name) const {
  for (const Entry& entry : m_entries)
    if (entry.name.iCompare(name) == 0)
      return &entry;
  return nullptr;
}

OdDbDictionary::Entry* OdDbDictionary::find(const OdString& name) {
  return const_cast<Entry*>(static_cast<const OdDbDictionary*>(this)->find(name));
}

OdDbObjectId OdDbDictionary::getAt(const OdString& name, OdResult* pStatus) const {
  assertReadEnabled();
  const Entry* entry = find(name);
  const bool found = entry && !entry->id.isErased();
  if (pStatus)
    *pStatus = found ? eOk : eKeyNotFound;
  return found ? entry->id : OdDbObjectId();
}

OdDbObjectPtr OdDbDictionary::getAt(const OdString& name, OdDb::OpenMode mode) const {
  return getAt(name).openObject(mode);
}

bool OdDbDictionary::has(const OdString& name) const {
  OdResult status = eOk;
  getAt(name, &status);
  return status == eOk;
}

bool OdDbDictionary::has(const OdDbObjectId& id) const {
  return !id.isNull() && !nameAt(id).isEmpty();
}

OdString OdDbDictionary::nameAt(const OdDbObjectId& id) const {
  assertReadEnabled();
  if (id.isNull() || id.isErased())
    return OdString();
  for (const Entry& entry : m_entries)
    if (entry.id == id)
      return entry.name;
  return OdString();
}

OdUInt32 OdDbDictionary::numEntries() const {
  assertReadEnabled();
  OdUInt32 count = 0;
  for (const Entry& entry : m_entries)
    if (!entry.id.isErased())
      ++count;
  return count;
}

OdDbDictionaryIteratorPtr OdDbDictionary::newIterator() const {
  assertReadEnabled();
  std::vector<OdDbDictionaryIterator::Entry> live;
  for (const Entry& entry : m_entries)
    if (!entry.id.isErased())
      live.push_back({entry.name, entry.id});
  return OdDbDictionaryIteratorPtr(new OdDbDictionaryIterator(std::move(live)));
}

// Changes --------------------------------------------------------------------------------------

OdDbObjectId OdDbDictionary::setAt(const OdString& name, OdDbObject* object) {
  if (!object)
    throw OdError(eNullObjectPointer);
  if (name.isEmpty())
    throw OdError(eInvalidInput, OD_T("A dictionary entry needs a name"));
  OdDbDatabase* db = database();
  if (!isDBRO() || !db)
    throw OdError(eNotInDatabase, OD_T("The dictionary is not in a database"));
  if (object->isDBRO() && object->database() != db)
    throw OdError(eWrongDatabase, OD_T("The object belongs to another database"));
  assertWriteEnabled();

  Entry* existing = find(name);
  OdDbObjectId id;
  if (object->isDBRO()) {
    id = object->objectId();
    for (const Entry& entry : m_entries)
      if (entry.id == id && &entry != existing)
        throw OdError(eInvalidInput, OD_T("The object is in the dictionary as ") + entry.name);
    if (existing && existing->id == id)
      return id;
    object->setOwnerId(objectId());
  } else {
    id = db->addOdDbObject(object, objectId());
  }

  if (!existing) {
    m_entries.push_back({name, id});
    return id;
  }
  const OdDbObjectId replaced = existing->id;
  existing->id = id;
  // The entry owned what it pointed at; an object nobody lists any more is erased.
  OdDbObjectPtr old = replaced.openObject(OdDb::kForWrite);
  if (!old.isNull() && old->ownerId() == objectId())
    old->erase();
  return id;
}

void OdDbDictionary::disown(const OdDbObjectId& id) const {
  OdDbObjectPtr object = id.openObject(OdDb::kForWrite, true);
  if (!object.isNull() && object->ownerId() == objectId())
    object->setOwnerId(OdDbObjectId());
}

OdDbObjectId OdDbDictionary::remove(const OdString& name) {
  assertReadEnabled();
  const Entry* entry = find(name);
  if (!entry || entry->id.isErased())
    return OdDbObjectId();
  assertWriteEnabled();
  const OdDbObjectId id = entry->id;
  m_entries.erase(m_entries.begin() + (entry - m_entries.data()));
  disown(id);
  return id;
}

bool OdDbDictionary::remove(const OdDbObjectId& id) {
  const OdString name = nameAt(id);
  return !name.isEmpty() && !remove(name).isNull();
}

OdDb::DuplicateRecordCloning OdDbDictionary::mergeStyle() const {
  assertReadEnabled();
  return m_mergeStyle;
}

void OdDbDictionary::setMergeStyle(OdDb::DuplicateRecordCloning style) {
  if (style < OdDb::kDrcNotApplicable || style > OdDb::kDrcUnmangleName)
    throw OdError(eInvalidInput, OD_T("Not a cloning style"));
  assertWriteEnabled();
  m_mergeStyle = style;
}

bool OdDbDictionary::isTreatElementsAsHard() const {
  assertReadEnabled();
  return m_hardOwner;
}

void OdDbDictionary::setTreatElementsAsHard(bool hard) {
  assertWriteEnabled();
  m_hardOwner = hard;
}

// Filing ---------------------------------------------------------------------------------------

bool OdDbDictionary::hasDuplicates(const std::vector<Entry>& entries) {
  // Names folded to lower case the way iCompare folds them (ASCII only).
  std::unordered_set<std::u16string> seen;
  for (const Entry& entry : entries) {
    std::u16string folded = entry.name.str();
    for (char16_t& c : folded)
      if (c >= u'A' && c <= u'Z')
        c = static_cast<char16_t>(c - u'A' + u'a');
    if (!seen.insert(std::move(folded)).second)
      return true;
  }
  return false;
}

void OdDbDictionary::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbObject::dwgOutFields(filer);
  filer->wrInt32(static_cast<OdInt32>(m_entries.size()));
  filer->wrInt16(static_cast<OdInt16>(m_mergeStyle));
  filer->wrUInt8(m_hardOwner ? 1 : 0);
  for (const Entry& entry : m_entries) {
    filer->wrString(entry.name);
    filer->wrSoftOwnershipId(entry.id);
  }
}

OdResult OdDbDictionary::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbObject::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdInt32 count = filer->rdInt32();
  const OdInt16 style = filer->rdInt16();
  const OdUInt8 hard = filer->rdUInt8();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (count < 0 || style < OdDb::kDrcNotApplicable || style > OdDb::kDrcUnmangleName || hard > 1)
    return eDwgObjectImproperlyRead;
  // Every entry takes at least one byte of the handle stream: a count beyond that is a lie.
  const OdDbDwgStreamFiler* stream = dynamic_cast<const OdDbDwgStreamFiler*>(filer);
  if (stream && static_cast<OdUInt64>(count) > stream->remainingHandleBits() / 8)
    return eDwgObjectImproperlyRead;
  std::vector<Entry> entries;
  for (OdInt32 i = 0; i < count && filer->filerStatus() == eOk; ++i) {
    Entry entry;
    entry.name = filer->rdString();
    entry.id = filer->rdSoftOwnershipId();
    if (filer->filerStatus() == eOk && entry.name.isEmpty())
      return eDwgObjectImproperlyRead;
    entries.push_back(entry);
  }
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (hasDuplicates(entries))
    return eDuplicateKey;
  m_entries = std::move(entries);
  m_mergeStyle = static_cast<OdDb::DuplicateRecordCloning>(style);
  m_hardOwner = hard != 0;
  return eOk;
}

void OdDbDictionary::dxfOutFields(OdDbDxfFiler* filer) const {
  OdDbObject::dxfOutFields(filer);
  filer->wrSubclassMarker(OD_T("AcDbDictionary"));
  if (m_hardOwner || filer->includesDefaultValues())
    filer->wrInt16(280, m_hardOwner ? 1 : 0);
  filer->wrInt16(281, static_cast<OdInt16>(m_mergeStyle));
  for (const Entry& entry : m_entries) {
    filer->wrString(3, entry.name);
    filer->wrObjectId(m_hardOwner ? 360 : 350, entry.id);
  }
}

OdResult OdDbDictionary::dxfInFields(OdDbDxfFiler* filer) {
  const OdResult base = OdDbObject::dxfInFields(filer);
  if (base != eOk)
    return base;
  if (!filer->atSubclassData(OD_T("AcDbDictionary")))
    return eInvalidDxfCode;
  std::vector<Entry> entries;
  OdInt16 style = OdDb::kDrcIgnore;
  bool hard = false;
  bool pendingName = false;
  const OdResult groups = odDbReadDxfSubclassGroups(filer, [&](int code) -> OdResult {
    switch (code) {
    case 280:
      hard = filer->rdInt16() != 0;
      break;
    case 281:
      style = filer->rdInt16();
      break;
    case 3: {
      if (pendingName)
        return eInvalidDxfCode;
      const OdString name = filer->rdString();
      if (name.isEmpty())
        return eInvalidDxfCode;
      entries.push_back({name, OdDbObjectId()});
      pendingName = true;
      break;
    }
    case 350:
    case 360:
      if (!pendingName)
        return eInvalidDxfCode;
      entries.back().id = filer->rdObjectId();
      pendingName = false;
      break;
    default:
      break;
    }
    return eOk;
  });
  if (groups != eOk)
    return groups;
  if (pendingName || style < OdDb::kDrcNotApplicable || style > OdDb::kDrcUnmangleName)
    return eInvalidDxfCode;
  if (hasDuplicates(entries))
    return eDuplicateKey;
  m_entries = std::move(entries);
  m_mergeStyle = static_cast<OdDb::DuplicateRecordCloning>(style);
  m_hardOwner = hard;
  return eOk;
}
