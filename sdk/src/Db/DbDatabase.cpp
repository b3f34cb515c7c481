#include "DbDatabase.h"

#include "DbBlockTable.h"
#include "DbDictionary.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
#include "DbStub.h"
#include "DbTextStyleTable.h"
#include "RxObjectImpl.h"

#include <cmath>
#include <deque>

struct OdDbDatabase::Stubs {
  std::deque<OdDbStub> storage; // stable addresses: ids point into it
  std::unordered_map<OdUInt64, OdDbStub*> byHandle;
};

ODRX_DEFINE_RTTI_MEMBERS(OdDbDatabase, OdRxObject)
ODRX_DEFINE_INIT_MEMBERS(OdDbDatabase, OdRxObject::desc(), &OdDbDatabase::pseudoConstructor, 0, 0,
                         0, OdString::kEmpty, OD_T("ObjectDBX Classes"))
OdRxObjectPtr OdDbDatabase::pseudoConstructor() {
  return OdRxObjectPtr(OdRxObjectImpl<OdDbDatabase>::createObject());
}

namespace {
template <class Table> OdDbObjectId addTable(OdDbDatabase* db) {
  OdSmartPtr<Table> table = Table::createObject();
  return db->addOdDbObject(table, OdDbObjectId::kNull);
}

template <class Record> OdSmartPtr<Record> newRecord(const OdString& name) {
  OdSmartPtr<Record> record = Record::createObject();
  record->setName(name);
  return record;
}

OdDbObjectId addRecord(OdDbObjectId tableId, OdDbSymbolTableRecord* record) {
  OdDbSymbolTablePtr table = tableId.safeOpenObject(OdDb::kForWrite);
  return table->add(record);
}
} // namespace

OdDbDatabase::OdDbDatabase() : m_stubs(new Stubs) {
  m_layerTableId = addTable<OdDbLayerTable>(this);
  m_linetypeTableId = addTable<OdDbLinetypeTable>(this);
  m_blockTableId = addTable<OdDbBlockTable>(this);
  m_textStyleTableId = addTable<OdDbTextStyleTable>(this);

  m_linetypeByBlockId =
      addRecord(m_linetypeTableId, newRecord<OdDbLinetypeTableRecord>(OD_T("ByBlock")));
  m_linetypeByLayerId =
      addRecord(m_linetypeTableId, newRecord<OdDbLinetypeTableRecord>(OD_T("ByLayer")));
  OdDbLinetypeTableRecordPtr continuous = newRecord<OdDbLinetypeTableRecord>(OD_T("Continuous"));
  continuous->setComments(OD_T("Solid line"));
  m_linetypeContinuousId = addRecord(m_linetypeTableId, continuous);

  OdDbLayerTableRecordPtr layerZero = newRecord<OdDbLayerTableRecord>(OD_T("0"));
  OdCmColor white;
  white.setColorIndex(7);
  layerZero->setColor(white);
  layerZero->setLinetypeObjectId(m_linetypeContinuousId);
  m_layerZeroId = addRecord(m_layerTableId, layerZero);

  m_modelSpaceId =
      addRecord(m_blockTableId, newRecord<OdDbBlockTableRecord>(OD_T("*Model_Space")));
  m_paperSpaceId =
      addRecord(m_blockTableId, newRecord<OdDbBlockTableRecord>(OD_T("*Paper_Space")));

  OdDbTextStyleTableRecordPtr standard = newRecord<OdDbTextStyleTableRecord>(OD_T("Standard"));
  standard->setFileName(OD_T("txt"));
  m_textStyleStandardId = addRecord(m_textStyleTableId, standard);
  m_textstyle = m_textStyleStandardId;

  m_clayer = m_layerZeroId;
  m_celtype = m_linetypeByLayerId;

  OdDbDictionaryPtr namedObjects = OdDbDictionary::createObject();
  m_namedObjectsDictionaryId = addOdDbObject(namedObjects);
  m_groupDictionaryId = namedObjects->setAt(OD_T("ACAD_GROUP"), OdDbDictionary::createObject());
}

OdDbDatabase::~OdDbDatabase() {
  // Objects that outlive their database through someone's pointer become free-standing.
  bool outlived = false;
  for (OdDbStub& stub : m_stubs->storage) {
    if (stub.object) {
      outlived = outlived || stub.object->m_refs > 1;
      stub.object->m_stub = nullptr;
      stub.object->m_database = nullptr;
      stub.object->m_openMode = OdDb::kForWrite;
    }
  }
  for (OdDbStub& stub : m_stubs->storage)
    stub.object = nullptr;
  if (outlived) {
    // The survivors still hold ids of this database (owner, layer, linetype). Their stubs are
    // kept, emptied and detached, so those ids read as invalid instead of pointing into freed
    // memory. Kept until the process ends; only drawings whose objects outlive them cost this.
    static std::vector<std::unique_ptr<Stubs>> orphaned;
    for (OdDbStub& stub : m_stubs->storage)
      stub.database = nullptr;
    orphaned.push_back(std::move(m_stubs));
  }
}

OdDbStub* OdDbDatabase::newStub(const OdDbHandle& handle) {
  m_stubs->storage.emplace_back();
  OdDbStub* stub = &m_stubs->storage.back();
  stub->database = this;
  stub->handle = handle;
  m_stubs->byHandle.emplace(static_cast<OdUInt64>(handle), stub);
  if (static_cast<OdUInt64>(handle) >= static_cast<OdUInt64>(m_handseed))
    m_handseed = static_cast<OdUInt64>(handle) + 1;
  return stub;
}

OdDbObjectId OdDbDatabase::addOdDbObject(OdDbObject* object, OdDbObjectId ownerId,
                                         OdDbHandle handle) {
  if (!object)
    throw OdError(eNullObjectPointer);
  if (object->m_stub)
    throw OdError(eAlreadyInDb);
  if (object->m_database && object->m_database != this)
    throw OdError(eWrongDatabase, OD_T("The object belongs to another database"));

  OdDbStub* stub = nullptr;
  if (handle.isNull()) {
    stub = newStub(m_handseed);
  } else {
    auto it = m_stubs->byHandle.find(static_cast<OdUInt64>(handle));
    if (it == m_stubs->byHandle.end())
      stub = newStub(handle);
    else if (it->second->object)
      throw OdError(eHandleInUse, OD_T("Handle in use: ") + handle.ascii());
    else
      stub = it->second; // a forward reference read earlier gets its object now
  }
  stub->object = object;
  object->m_stub = stub;
  object->m_database = this;
  object->m_ownerId = ownerId;
  object->m_openMode = object->m_refs > 1 ? OdDb::kForWrite : OdDb::kNotOpen;
  return OdDbObjectId(stub);
}

OdDbObjectId OdDbDatabase::getOdDbObjectId(const OdDbHandle& handle, bool createIfNotFound) {
  if (handle.isNull())
    return OdDbObjectId();
  auto it = m_stubs->byHandle.find(static_cast<OdUInt64>(handle));
  if (it != m_stubs->byHandle.end())
    return OdDbObjectId(it->second);
  return createIfNotFound ? OdDbObjectId(newStub(handle)) : OdDbObjectId();
}

unsigned OdDbDatabase::numObjects() const {
  unsigned count = 0;
  for (const OdDbStub& stub : m_stubs->storage)
    if (stub.object)
      ++count;
  return count;
}

void OdDbDatabase::setCLAYER(OdDbObjectId layerId) {
  if (layerId.database() != this || !layerId.objectClass() ||
      !layerId.objectClass()->isDerivedFrom(OdDbLayerTableRecord::desc()))
    throw OdError(eWrongObjectType, OD_T("CLAYER must be a layer of this drawing"));
  m_clayer = layerId;
}

void OdDbDatabase::setCELTYPE(OdDbObjectId linetypeId) {
  if (linetypeId.database() != this || !linetypeId.objectClass() ||
      !linetypeId.objectClass()->isDerivedFrom(OdDbLinetypeTableRecord::desc()))
    throw OdError(eWrongObjectType, OD_T("CELTYPE must be a linetype of this drawing"));
  m_celtype = linetypeId;
}

void OdDbDatabase::setCELTSCALE(double scale) {
  if (!std::isfinite(scale) || scale <= 0.0)
    throw OdError(eInvalidInput, OD_T("CELTSCALE must be a positive number"));
  m_celtscale = scale;
}

void OdDbDatabase::setCELWEIGHT(OdDb::LineWeight lineWeight) {
  if (!odIsValidLineWeight(lineWeight))
    throw OdError(eInvalidInput, OD_T("CELWEIGHT must be a lineweight"));
  m_celweight = lineWeight;
}

void OdDbDatabase::setLTSCALE(double scale) {
  if (!std::isfinite(scale) || scale <= 0.0)
    throw OdError(eInvalidInput, OD_T("LTSCALE must be a positive number"));
  m_ltscale = scale;
}

void OdDbDatabase::setTEXTSIZE(double size) {
  if (!std::isfinite(size) || size <= 0.0)
    throw OdError(eInvalidInput, OD_T("TEXTSIZE must be a positive number"));
  m_textsize = size;
}

void OdDbDatabase::setDIMSCALE(double scale) {
  if (!std::isfinite(scale) || scale <= 0.0)
    throw OdError(eInvalidInput, OD_T("DIMSCALE must be a positive number"));
  m_dimscale = scale;
}

void OdDbDatabase::setTEXTSTYLE(OdDbObjectId textStyleId) {
  if (textStyleId.database() != this || !textStyleId.objectClass() ||
      !textStyleId.objectClass()->isDerivedFrom(OdDbTextStyleTableRecord::desc()))
    throw OdError(eWrongObjectType, OD_T("TEXTSTYLE must be a text style of this drawing"));
  m_textstyle = textStyleId;
}

void OdDbDatabase::setUcs(const OdGePoint3d& origin, const OdGeVector3d& xAxis,
                          const OdGeVector3d& yAxis) {
  const bool finite = std::isfinite(origin.x) && std::isfinite(origin.y) &&
                      std::isfinite(origin.z) && std::isfinite(xAxis.x) && std::isfinite(xAxis.y) &&
                      std::isfinite(xAxis.z) && std::isfinite(yAxis.x) && std::isfinite(yAxis.y) &&
                      std::isfinite(yAxis.z);
  if (!finite || xAxis.isZeroLength() || yAxis.isZeroLength() ||
      !xAxis.normal().isPerpendicularTo(yAxis.normal()))
    throw OdError(eInvalidInput, OD_T("A UCS needs an origin and two perpendicular axes"));
  m_ucsOrigin = origin;
  m_ucsXAxis = xAxis.normal();
  m_ucsYAxis = yAxis.normal();
}

OdGeMatrix3d OdDbDatabase::getUcsToWorldMatrix() const {
  OdGeMatrix3d matrix;
  matrix.setCoordSystem(m_ucsOrigin, m_ucsXAxis, m_ucsYAxis, m_ucsXAxis.crossProduct(m_ucsYAxis));
  return matrix;
}
