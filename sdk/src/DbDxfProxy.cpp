// Module objects in drawing files: ACAD_PROXY_ENTITY records carrying an object's DWG streams
// and the graphics its class draws, and the way back to a live object or a kept proxy.

#include "DbDxfProxy.h"

#include "DbBitStream.h"
#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbDxfItemFiler.h"
#include "DbProxyEntity.h"
#include "Gi/GiProxyGraphicsWriter.h"
#include "RxDictionary.h"
#include "RxModule.h"
#include "RxObjectImpl.h"

#include <cctype>
#include <string>

OdDbDxfProxyReadError::OdDbDxfProxyReadError(std::size_t item, const OdString& message)
    : OdError(eInvalidDxfCode, message), m_item(item) {}

namespace {

const OdChar* const kProxyEntityType = OD_T("ACAD_PROXY_ENTITY");
const OdChar* const kProxyEntityMarker = OD_T("AcDbProxyEntity");
constexpr OdInt32 kProxyEntityId = 498;
constexpr int kFirstClassNumber = 500;
constexpr int kDataDwgVersion = 33; // AC1032

/// Group codes of the handle list by DWG reference code (2 soft owner .. 5 hard pointer).
int groupOfReference(int code) {
  switch (code) {
  case OdDbDwgStreamFiler::kSoftOwnerRef:
    return 350;
  case OdDbDwgStreamFiler::kHardOwnerRef:
    return 360;
  case OdDbDwgStreamFiler::kSoftPointerRef:
    return 330;
  case OdDbDwgStreamFiler::kHardPointerRef:
    return 340;
  default:
    return 0;
  }
}

int referenceOfGroup(int group) {
  switch (group) {
  case 350:
    return OdDbDwgStreamFiler::kSoftOwnerRef;
  case 360:
    return OdDbDwgStreamFiler::kHardOwnerRef;
  case 330:
    return OdDbDwgStreamFiler::kSoftPointerRef;
  default:
    return OdDbDwgStreamFiler::kHardPointerRef;
  }
}

/// The H values of a handle stream as (code, handle) pairs; false when the stream does not
/// consist of whole H values.
bool decodeHandles(const OdUInt8Array& bytes, OdUInt64 bits, OdDbProxyReferenceArray& out) {
  OdDbBitStream stream;
  stream.assign(bytes, bits);
  while (stream.remainingBits() > 0) {
    OdUInt32 code = 0, count = 0;
    if (!stream.readBits(4, code) || !stream.readBits(4, count) || count > 8)
      return false;
    OdUInt64 value = 0;
    for (OdUInt32 i = 0; i < count; ++i) {
      OdUInt8 byte = 0;
      if (!stream.readByte(byte))
        return false;
      value = (value << 8) | byte;
    }
    OdDbProxyReference reference;
    reference.code = static_cast<OdUInt8>(code);
    reference.handle = OdDbHandle(value);
    out.append(reference);
  }
  return true;
}

/// The handle stream of a reference list: each H in the fewest bytes that hold the handle.
void encodeHandles(const OdDbProxyReferenceArray& references, OdDbBitStream& stream) {
  stream.clear();
  for (const OdDbProxyReference& reference : references) {
    const OdUInt64 value = static_cast<OdUInt64>(reference.handle);
    unsigned count = 0;
    while (count < 8 && (value >> (8 * count)) != 0)
      ++count;
    stream.writeBits(reference.code, 4);
    stream.writeBits(count, 4);
    for (unsigned i = count; i > 0; --i)
      stream.writeByte(static_cast<OdUInt8>(value >> (8 * (i - 1))));
  }
}

/// The parts of a proxy for a live object of a module class: its file stream and, for an
/// entity, the graphics of drawing it.
OdDbProxyData proxyDataOf(const OdDbObject* object) {
  const OdRxClass* cls = object->isA();
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  filer.openForWrite(object->database(), OdDbFiler::kFileFiler);
  int maintVersion = 0;
  cls->getClassVersion(&maintVersion);
  filer.setDwgVersion(kDataDwgVersion, maintVersion);
  object->dwgOutFields(&filer);
  if (filer.filerStatus() != eOk)
    throw OdError(filer.filerStatus(), OD_T("Cannot write the data of a ") + cls->name());

  OdDbProxyReferenceArray references;
  if (!decodeHandles(filer.handleBuffer(), filer.handleBitSize(), references))
    throw OdError(eInvalidInput,
                  OD_T("The handle stream of a ") + cls->name() + OD_T(" cannot be read back"));
  for (const OdDbProxyReference& reference : references)
    if (groupOfReference(reference.code) == 0)
      throw OdError(eNotImplemented, OD_T("A ") + cls->name() +
                                         OD_T(" writes a plain handle, which a proxy cannot hold"));

  OdDbProxyData data;
  data.setOriginalClassName(cls->name());
  data.setOriginalDxfName(cls->dxfName());
  data.setApplicationDescription(cls->appName());
  data.setVersion(kDataDwgVersion, maintVersion);
  data.setData(filer.dataBuffer(), filer.dataBitSize());
  data.setStrings(filer.stringBuffer(), filer.stringBitSize());
  data.setReferences(references);
  if (const OdDbEntity* entity = OdDbEntity::cast(object).get()) {
    OdGiProxyGraphicsWriter graphics(object->database());
    graphics.draw(entity);
    data.setGraphicsMetafile(graphics.data());
  }
  return data;
}

/// The parts an object is saved with: kept ones for a proxy, made ones for a module object.
OdDbProxyData partsOf(const OdDbObject* object) {
  if (const OdDbProxyEntity* proxy = OdDbProxyEntity::cast(object).get())
    return proxy->proxyData();
  if (const OdDbProxyObject* proxy = OdDbProxyObject::cast(object).get())
    return proxy->proxyData();
  return proxyDataOf(object);
}

OdDbDxfClassRecord recordOf(const OdDbObject* object) {
  OdDbDxfClassRecord record;
  const bool entity = object->isKindOf(OdDbEntity::desc());
  if (const OdDbProxyEntity* proxy = OdDbProxyEntity::cast(object).get()) {
    record.dxfName = proxy->originalDxfName();
    record.cppClassName = proxy->originalClassName();
    record.appName = proxy->applicationDescription();
    record.proxyFlags = static_cast<int>(proxy->proxyFlags());
    record.wasProxy = true;
  } else if (const OdDbProxyObject* proxyObject = OdDbProxyObject::cast(object).get()) {
    record.dxfName = proxyObject->originalDxfName();
    record.cppClassName = proxyObject->originalClassName();
    record.appName = proxyObject->applicationDescription();
    record.proxyFlags = static_cast<int>(proxyObject->proxyFlags());
    record.wasProxy = true;
  } else {
    const OdRxClass* cls = object->isA();
    record.dxfName = cls->dxfName();
    record.cppClassName = cls->name();
    record.appName = cls->appName();
    record.proxyFlags = static_cast<int>(cls->proxyFlags());
  }
  record.isEntity = entity;
  return record;
}

OdString className(const OdDbObject* object) {
  if (const OdDbProxyEntity* proxy = OdDbProxyEntity::cast(object).get())
    return proxy->originalClassName();
  if (const OdDbProxyObject* proxy = OdDbProxyObject::cast(object).get())
    return proxy->originalClassName();
  return object->isA()->name();
}

void writeBinary(OdDbDxfFiler* filer, int code, const OdUInt8Array& bytes) {
  if (!bytes.isEmpty())
    filer->wrBinaryChunk(code, bytes.getPtr(), static_cast<OdUInt32>(bytes.size()));
}

OdString number(long long value) {
  return OdString::fromUtf8(std::to_string(value));
}

/// The groups of one proxy as read from the filer's items.
struct ProxyGroups {
  const OdDbDxfItemFiler::ItemArray& items;
  std::size_t pos = 0;

  [[noreturn]] void fail(std::size_t item, const OdString& message) const {
    throw OdDbDxfProxyReadError(item, message);
  }

  long long integer(std::size_t item) const {
    const std::string text = items[item].value.toUtf8();
    try {
      std::size_t used = 0;
      const long long value = std::stoll(text, &used);
      while (used < text.size() && std::isspace(static_cast<unsigned char>(text[used])))
        ++used;
      if (used == text.size())
        return value;
    } catch (const std::exception&) {
    }
    fail(item, OD_T("not an integer: ") + items[item].value);
  }

  /// The bytes of the binary groups of code that follow pos.
  OdUInt8Array binary(int code) {
    OdUInt8Array bytes;
    while (pos < items.size() && items[pos].code == code) {
      const std::string text = items[pos].value.toUtf8();
      std::string hex;
      for (char c : text)
        if (!std::isspace(static_cast<unsigned char>(c)))
          hex.push_back(c);
      if (hex.size() % 2 != 0)
        fail(pos, OD_T("binary data needs an even number of hex digits"));
      for (std::size_t i = 0; i < hex.size(); i += 2) {
        const std::string pair = hex.substr(i, 2);
        if (!std::isxdigit(static_cast<unsigned char>(pair[0])) ||
            !std::isxdigit(static_cast<unsigned char>(pair[1])))
          fail(pos, OD_T("not hex digits: ") + items[pos].value);
        bytes.append(static_cast<OdUInt8>(std::stoul(pair, nullptr, 16)));
      }
      ++pos;
    }
    return bytes;
  }
};

/// A live object of cls from the parts, or null when the data does not read as that class.
OdDbEntityPtr liveEntity(OdRxClass* cls, const OdDbProxyData& data, OdDbDatabase* db) {
  OdDbEntityPtr entity = OdDbEntity::cast(cls->create());
  if (entity.isNull())
    return entity;
  OdDbBitStream handles;
  encodeHandles(data.references(), handles);
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  filer.openForRead(data.data(), data.dataBitSize(), data.strings(), data.stringBitSize(),
                    handles.bytes(), handles.bitSize(), db, OdDbFiler::kFileFiler);
  filer.setDwgVersion(data.dwgVersion(), data.maintenanceVersion());
  OdResult result = eOk;
  try {
    result = entity->dwgInFields(&filer);
  } catch (const OdError&) {
    result = eDwgObjectImproperlyRead;
  }
  if (result != eOk || filer.filerStatus() != eOk)
    return OdDbEntityPtr();
  return entity;
}

/// The class a proxy's CLASS record names, when it is loaded: by class name first (two classes
/// may share a DXF name), then by DXF name.
OdRxClass* loadedClassOf(const OdDbDxfClassRecord& record) {
  OdRxClass* cls = odrxGetClass(record.cppClassName);
  if (!cls)
    cls = odrxClassByDxfName(record.dxfName);
  if (!cls || !cls->isDerivedFrom(OdDbEntity::desc()) || !odDbDxfIsProxyClass(cls) ||
      cls->isDerivedFrom(OdDbProxyEntity::desc()))
    return nullptr;
  return cls;
}

} // namespace

bool odDbDxfIsProxyClass(const OdRxClass* cls) {
  if (!cls)
    return false;
  if (cls->isDerivedFrom(OdDbProxyEntity::desc()) || cls->isDerivedFrom(OdDbProxyObject::desc()))
    return true;
  return cls->module() != nullptr && cls->module() != odrxDatabaseModule();
}

OdDbDxfProxyHooks* odDbDxfProxyHooks() {
  static OdDbDxfProxyHooks hooks;
  return &hooks;
}

void OdDbDxfProxyHooks::collectClasses(OdDbDatabase* db, std::vector<OdDbDxfClassRecord>& records) {
  if (!db)
    return;
  std::vector<OdDbBlockTableRecordPtr> blocks;
  OdDbSymbolTablePtr table = db->getBlockTableId().safeOpenObject();
  for (OdDbSymbolTableIteratorPtr it = table->newIterator(); !it->done(); it->step())
    blocks.push_back(OdDbBlockTableRecordPtr(it->getRecord()));
  // The file's order: entities of ordinary blocks, then model space, then paper space.
  std::vector<OdDbBlockTableRecordPtr> ordered;
  for (const OdDbBlockTableRecordPtr& block : blocks)
    if (block->objectId() != db->getModelSpaceId() && block->objectId() != db->getPaperSpaceId())
      ordered.push_back(block);
  for (const OdDbBlockTableRecordPtr& block : blocks)
    if (block->objectId() == db->getModelSpaceId())
      ordered.push_back(block);
  for (const OdDbBlockTableRecordPtr& block : blocks)
    if (block->objectId() == db->getPaperSpaceId())
      ordered.push_back(block);

  for (const OdDbBlockTableRecordPtr& block : ordered) {
    for (const OdDbObjectId& id : block->entityIds()) {
      OdDbObjectPtr object = id.openObject();
      if (object.isNull() || !odDbDxfIsProxyClass(object->isA()))
        continue;
      const OdString name = className(object);
      bool found = false;
      for (OdDbDxfClassRecord& record : records)
        if (record.cppClassName == name) {
          ++record.instanceCount;
          found = true;
          break;
        }
      if (!found) {
        records.push_back(recordOf(object));
        records.back().instanceCount = 1;
      }
    }
  }
}

bool OdDbDxfProxyHooks::writeObject(const OdDbObject* object,
                                    const std::vector<OdDbDxfClassRecord>& classes,
                                    OdString& dxfName, OdDbDxfFiler* filer) {
  if (!object || !filer || !odDbDxfIsProxyClass(object->isA()) ||
      !object->isKindOf(OdDbEntity::desc()))
    return false;
  const OdString name = className(object);
  std::size_t index = 0;
  while (index < classes.size() && classes[index].cppClassName != name)
    ++index;
  if (index == classes.size())
    throw OdError(eKeyNotFound, OD_T("No CLASS record for ") + name);
  const OdDbProxyData data = partsOf(object);

  dxfName = kProxyEntityType;
  static_cast<const OdDbEntity*>(object)->OdDbEntity::dxfOutFields(filer);
  filer->wrSubclassMarker(kProxyEntityMarker);
  filer->wrInt32(90, kProxyEntityId);
  filer->wrInt32(91, kFirstClassNumber + static_cast<OdInt32>(index));
  filer->wrInt16(71, static_cast<OdInt16>(data.dwgVersion()));
  filer->wrInt32(97, data.maintenanceVersion());
  filer->wrInt16(70, 0);
  if (!data.graphicsMetafile().isEmpty()) {
    filer->wrInt64(160, static_cast<OdInt64>(data.graphicsMetafile().size()));
    writeBinary(filer, 310, data.graphicsMetafile());
  }
  if (data.stringBitSize() > 0) {
    filer->wrInt64(162, static_cast<OdInt64>(data.stringBitSize()));
    writeBinary(filer, 311, data.strings());
  }
  filer->wrInt64(161, static_cast<OdInt64>(data.dataBitSize()));
  writeBinary(filer, 310, data.data());
  for (const OdDbProxyReference& reference : data.references())
    filer->wrHandle(groupOfReference(reference.code), reference.handle);
  filer->wrInt32(94, 0);
  return true;
}

OdDbObjectPtr OdDbDxfProxyHooks::readUnknownEntity(const OdString& dxfName,
                                                   const std::vector<OdDbDxfClassRecord>& classes,
                                                   OdDbDxfFiler* filer) {
  if (dxfName != kProxyEntityType || !filer)
    return OdDbObjectPtr();
  OdDbDxfItemFiler* itemFiler = dynamic_cast<OdDbDxfItemFiler*>(filer);
  if (!itemFiler)
    throw OdError(eNotApplicable, OD_T("Proxies are read from a drawing file's groups only"));
  const OdDbDxfItemFiler::ItemArray items = itemFiler->items();
  OdDbDatabase* db = filer->database();

  ProxyGroups groups{items};
  while (groups.pos < items.size() &&
         !(items[groups.pos].code == 100 && items[groups.pos].value == kProxyEntityMarker))
    ++groups.pos;
  if (groups.pos == items.size())
    groups.fail(0, OD_T("an ACAD_PROXY_ENTITY without its AcDbProxyEntity data"));
  ++groups.pos;

  bool haveId = false, haveClass = false, haveData = false, ended = false;
  std::size_t classItem = 0, dataItem = 0;
  int dwgVersion = kDataDwgVersion, maintVersion = 0;
  OdUInt8Array graphics, strings, bytes;
  OdUInt64 stringBits = 0, dataBits = 0;
  OdDbProxyReferenceArray references;
  while (groups.pos < items.size() && !ended) {
    const std::size_t item = groups.pos++;
    const int code = items[item].code;
    switch (code) {
    case 90:
      if (groups.integer(item) != kProxyEntityId)
        groups.fail(item, OD_T("an ACAD_PROXY_ENTITY needs 90 498, found ") + items[item].value);
      haveId = true;
      break;
    case 91:
      classItem = item;
      haveClass = true;
      break;
    case 71:
      dwgVersion = static_cast<int>(groups.integer(item));
      break;
    case 97:
      maintVersion = static_cast<int>(groups.integer(item));
      break;
    case 70:
      if (groups.integer(item) != 0)
        groups.fail(item, OD_T("only proxy data in DWG format (70 0) is read"));
      break;
    case 92:
    case 160: {
      const long long size = groups.integer(item);
      graphics = groups.binary(310);
      if (size < 0 || static_cast<unsigned long long>(size) != graphics.size())
        groups.fail(item, OD_T("the graphics size ") + items[item].value +
                              OD_T(" does not match the ") + number(graphics.size()) +
                              OD_T(" bytes that follow"));
      break;
    }
    case 162:
    case 161: {
      const long long bits = groups.integer(item);
      OdUInt8Array& target = code == 162 ? strings : bytes;
      target = groups.binary(code == 162 ? 311 : 310);
      if (bits < 0 || static_cast<unsigned long long>(bits + 7) / 8 != target.size())
        groups.fail(item, OD_T("the size of ") + items[item].value +
                              OD_T(" bits does not match the ") + number(target.size()) +
                              OD_T(" bytes that follow"));
      (code == 162 ? stringBits : dataBits) = static_cast<OdUInt64>(bits);
      if (code == 161) {
        haveData = true;
        dataItem = item;
      }
      break;
    }
    case 330:
    case 340:
    case 350:
    case 360: {
      OdDbProxyReference reference;
      reference.code = static_cast<OdUInt8>(referenceOfGroup(code));
      reference.handle = OdDbHandle(items[item].value);
      references.append(reference);
      break;
    }
    case 94:
      ended = true;
      break;
    default:
      groups.fail(item, OD_T("group ") + number(code) + OD_T(" has no place in proxy data"));
    }
  }
  const std::size_t last = items.empty() ? 0 : items.size() - 1;
  if (!haveId)
    groups.fail(last, OD_T("an ACAD_PROXY_ENTITY without 90 498"));
  if (!haveClass)
    groups.fail(last, OD_T("an ACAD_PROXY_ENTITY without its class number (91)"));
  if (!haveData)
    groups.fail(last, OD_T("an ACAD_PROXY_ENTITY without its data (161)"));
  if (!ended)
    groups.fail(last, OD_T("an ACAD_PROXY_ENTITY without the 94 0 that ends it"));
  const long long classNumber = groups.integer(classItem);
  if (classNumber < kFirstClassNumber ||
      classNumber - kFirstClassNumber >= static_cast<long long>(classes.size()))
    groups.fail(classItem,
                OD_T("class number ") + items[classItem].value + OD_T(" has no CLASS record"));
  const OdDbDxfClassRecord& record =
      classes[static_cast<std::size_t>(classNumber - kFirstClassNumber)];
  if (!record.isEntity)
    groups.fail(classItem, OD_T("class ") + record.cppClassName +
                               OD_T(" of an ACAD_PROXY_ENTITY is not an entity class"));

  OdDbProxyData data;
  try {
    data.setOriginalClassName(record.cppClassName);
    data.setOriginalDxfName(record.dxfName);
    data.setApplicationDescription(record.appName);
    data.setProxyFlags(static_cast<OdUInt32>(record.proxyFlags) &
                       (OdDbProxyEntity::kAllAllowedBits | OdDbProxyEntity::kDisableProxyWarning));
    data.setVersion(dwgVersion, maintVersion);
    data.setData(bytes, dataBits);
    data.setStrings(strings, stringBits);
    data.setReferences(references);
    data.setGraphicsMetafile(graphics);
  } catch (const OdError& e) {
    groups.fail(dataItem, e.description());
  }

  if (OdRxClass* cls = loadedClassOf(record)) {
    OdDbEntityPtr entity = liveEntity(cls, data, db);
    if (!entity.isNull())
      return entity;
  }
  // No loaded class reads it: keep it as it is, with the common entity data of its groups.
  OdDbProxyEntityPtr proxy = OdDbProxyEntity::createObject();
  itemFiler->openForRead(items, db);
  const OdResult result = proxy->OdDbEntity::dxfInFields(itemFiler);
  if (result != eOk)
    groups.fail(0, OD_T("the entity data of a proxy cannot be read"));
  proxy->setProxyData(data);
  return proxy;
}
