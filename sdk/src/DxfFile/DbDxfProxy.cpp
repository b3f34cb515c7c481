// Module objects in drawing files: ACAD_PROXY_ENTITY records carrying an object's DWG streams
// and the graphics its class draws, and the way back to a live object or a kept proxy.

#include "DbDxfProxy.h"
#include "DbHexDigits.h"

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

#include <charconv>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

OdDbDxfProxyReadError::OdDbDxfProxyReadError(std::size_t item, const OdString& message)
    : OdError(eInvalidDxfCode, message), m_item(item) {}

namespace {

/// What tells the two kinds of proxy apart in a file.
struct ProxyKind {
  const OdChar* type;   ///< group 0
  const OdChar* marker; ///< the subclass marker of the proxy data
  OdInt32 id;           ///< group 90
  bool entity;
};
const ProxyKind kEntityProxy = {OD_T("ACAD_PROXY_ENTITY"), OD_T("AcDbProxyEntity"), 498, true};
const ProxyKind kObjectProxy = {OD_T("ACAD_PROXY_OBJECT"), OD_T("AcDbProxyObject"), 499, false};
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

/// The parts a proxy is written with, seen where they lie: in a kept proxy's data, or in the
/// filers that have just written a live object.
struct PartsView {
  int dwgVersion = kDataDwgVersion;
  int maintVersion = 0;
  const OdUInt8Array* data = nullptr;
  OdUInt64 dataBits = 0;
  const OdUInt8Array* strings = nullptr;
  OdUInt64 stringBits = 0;
  const OdDbProxyReferenceArray* references = nullptr;
  const OdUInt8Array* graphics = nullptr; ///< null for objects
};

PartsView viewOf(const OdDbProxyData& data) {
  PartsView view;
  view.dwgVersion = data.dwgVersion();
  view.maintVersion = data.maintenanceVersion();
  view.data = &data.data();
  view.dataBits = data.dataBitSize();
  view.strings = &data.strings();
  view.stringBits = data.stringBitSize();
  view.references = &data.references();
  view.graphics = &data.graphicsMetafile();
  return view;
}

/// What writing live objects reuses from one object to the next on a thread: the stream
/// filer's and the graphics' buffers keep their room, and the graphics writer keeps the table
/// orders of the file being written instead of walking the tables for every entity.
struct LiveScratch {
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  OdDbProxyReferenceArray references;
  OdUInt8Array graphics;
  OdGiProxyGraphicsWriter writer;
  /// The serial of the orders the writer was given; 0 while it takes the database's.
  OdUInt64 ordersSerial = 0;
  bool busy = false;
};

/// Holds a scratch for one object: the thread's own, or a fresh one when that is in use (an
/// object that writes another drawing while it is written).
class ScratchLease {
public:
  ScratchLease() {
    static thread_local LiveScratch shared;
    if (shared.busy) {
      m_own.reset(new LiveScratch);
      m_scratch = m_own.get();
    } else {
      m_scratch = &shared;
    }
    m_scratch->busy = true;
  }
  ~ScratchLease() { m_scratch->busy = false; }
  ScratchLease(const ScratchLease&) = delete;
  ScratchLease& operator=(const ScratchLease&) = delete;

  LiveScratch& operator*() const { return *m_scratch; }

private:
  std::unique_ptr<LiveScratch> m_own;
  LiveScratch* m_scratch = nullptr;
};

/// Gives the graphics writer the table orders the file's filer carries, or, when it carries
/// none, sends it back to the database's orders.
void useTableOrders(LiveScratch& scratch, const OdDbDxfFiler* filer) {
  const OdDbDxfItemFiler* itemFiler = dynamic_cast<const OdDbDxfItemFiler*>(filer);
  const OdUInt64 serial = itemFiler ? itemFiler->tableOrdersSerial() : 0;
  if (serial == scratch.ordersSerial)
    return;
  if (serial == 0) {
    scratch.writer.setLayerOrder(OdDbObjectIdArray());
    scratch.writer.setLinetypeOrder(OdDbObjectIdArray());
  } else {
    scratch.writer.setLayerOrder(itemFiler->layerOrder());
    scratch.writer.setLinetypeOrder(itemFiler->linetypeOrder());
  }
  scratch.ordersSerial = serial;
}

/// The parts of a proxy for a live object of a module class: its file stream and, for an
/// entity, the graphics of drawing it. The buffers stay in the scratch.
PartsView livePartsOf(const OdDbObject* object, LiveScratch& scratch, const OdDbDxfFiler* out) {
  const OdRxClass* cls = object->isA();
  OdDbDwgStreamFiler& filer = scratch.filer;
  OdDbProxyReferenceArray& references = scratch.references;
  references.clear();
  filer.openForWrite(object->database(), OdDbFiler::kFileFiler);
  int maintVersion = 0;
  cls->getClassVersion(&maintVersion);
  filer.setDwgVersion(kDataDwgVersion, maintVersion);
  object->dwgOutFields(&filer);
  if (filer.filerStatus() != eOk)
    throw OdError(filer.filerStatus(), OD_T("Cannot write the data of a ") + cls->name());

  if (!decodeHandles(filer.handleBuffer(), filer.handleBitSize(), references))
    throw OdError(eInvalidInput,
                  OD_T("The handle stream of a ") + cls->name() + OD_T(" cannot be read back"));
  for (const OdDbProxyReference& reference : references)
    if (groupOfReference(reference.code) == 0)
      throw OdError(eNotImplemented, OD_T("A ") + cls->name() +
                                         OD_T(" writes a plain handle, which a proxy cannot hold"));
  if (maintVersion < 0)
    throw OdError(eInvalidInput, OD_T("A DWG version is not negative"));

  PartsView view;
  view.maintVersion = maintVersion;
  view.data = &filer.dataBuffer();
  view.dataBits = filer.dataBitSize();
  view.strings = &filer.stringBuffer();
  view.stringBits = filer.stringBitSize();
  view.references = &references;
  if (const OdDbEntity* entity = OdDbEntity::cast(object).get()) {
    OdGiProxyGraphicsWriter& writer = scratch.writer;
    writer.setDatabase(object->database());
    useTableOrders(scratch, out);
    writer.draw(entity);
    writer.data(scratch.graphics);
    view.graphics = &scratch.graphics;
  }
  return view;
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

  /// The whole value as a decimal integer: blanks before and after it are allowed, and a sign.
  long long integer(std::size_t item) const {
    // A reader that parsed the number already (the drawing-file reader) takes the same texts.
    if (items[item].form == OdDbDxfItemFiler::Item::kInteger)
      return items[item].integer;
    const std::u16string& units = items[item].value.str();
    std::size_t i = 0;
    while (i < units.size() && isBlank(units[i]))
      ++i;
    char digits[24];
    std::size_t n = 0;
    if (i < units.size() && (units[i] == u'+' || units[i] == u'-')) {
      if (units[i] == u'-')
        digits[n++] = '-';
      ++i;
    }
    // Leading zeros do not count against the digits a long long has.
    while (i + 1 < units.size() && units[i] == u'0' && units[i + 1] >= u'0' && units[i + 1] <= u'9')
      ++i;
    while (i < units.size() && units[i] >= u'0' && units[i] <= u'9' && n < sizeof digits)
      digits[n++] = static_cast<char>(units[i++]);
    while (i < units.size() && isBlank(units[i]))
      ++i;
    long long value = 0;
    if (i == units.size()) {
      const std::from_chars_result r = std::from_chars(digits, digits + n, value);
      if (r.ec == std::errc() && r.ptr == digits + n)
        return value;
    }
    fail(item, OD_T("not an integer: ") + items[item].value);
  }

  /// The bytes of the binary groups of code that follow pos (blanks inside are skipped). Items
  /// holding their bytes decoded already are copied as they are.
  OdUInt8Array binary(int code) {
    std::size_t total = 0;
    for (std::size_t at = pos; at < items.size() && items[at].code == code; ++at)
      total += items[at].form == OdDbDxfItemFiler::Item::kBytes
                   ? static_cast<std::size_t>(items[at].bytes.size())
                   : items[at].value.str().size() / 2;
    OdUInt8Array bytes;
    bytes.resize(static_cast<OdUInt8Array::size_type>(total));
    OdUInt8* out = bytes.asArrayPtr();
    std::size_t used = 0;
    while (pos < items.size() && items[pos].code == code) {
      if (items[pos].form == OdDbDxfItemFiler::Item::kBytes) {
        const OdUInt8Array& chunk = items[pos].bytes;
        if (!chunk.isEmpty())
          std::memcpy(out + used, chunk.asArrayPtr(), chunk.size());
        used += chunk.size();
        ++pos;
        continue;
      }
      const std::u16string& units = items[pos].value.str();
      if (!decodePlain(units, out + used))
        decodeSpaced(units, out, used);
      else
        used += units.size() / 2;
      ++pos;
    }
    bytes.resize(static_cast<OdUInt8Array::size_type>(used));
    return bytes;
  }

  /// Decodes hex digits without blanks (what every writer writes), two to a byte; false, with
  /// out left to be overwritten, for any other text.
  static bool decodePlain(const std::u16string& units, OdUInt8* out) {
    if (units.size() % 2 != 0)
      return false;
    const char16_t* in = units.data();
    for (std::size_t i = 0; i < units.size(); i += 2) {
      const int high = hexValue(in[i]);
      const int low = hexValue(in[i + 1]);
      if ((high | low) < 0)
        return false;
      *out++ = static_cast<OdUInt8>((high << 4) | low);
    }
    return true;
  }

  /// The general case of the group at pos: blanks are skipped, and a fault is reported.
  void decodeSpaced(const std::u16string& units, OdUInt8* out, std::size_t& used) const {
    std::size_t digits = 0;
    for (char16_t unit : units)
      if (!isBlank(unit))
        ++digits;
    if (digits % 2 != 0)
      fail(pos, OD_T("binary data needs an even number of hex digits"));
    int high = -1;
    for (char16_t unit : units) {
      if (isBlank(unit))
        continue;
      const int digit = hexValue(unit);
      if (digit < 0)
        fail(pos, OD_T("not hex digits: ") + items[pos].value);
      if (high < 0) {
        high = digit;
      } else {
        out[used++] = static_cast<OdUInt8>((high << 4) | digit);
        high = -1;
      }
    }
  }

  /// The blanks isspace() knows in the C locale.
  static bool isBlank(char16_t unit) { return unit == u' ' || (unit >= u'\t' && unit <= u'\r'); }

  /// The value of a hex digit in either letter case, -1 for anything else.
  static int hexValue(char16_t unit) { return odDbHexDigit(unit); }
};

/// A live object of cls from the parts, or null when the data does not read as that class.
OdDbObjectPtr liveObject(OdRxClass* cls, const OdDbProxyData& data, OdDbDatabase* db) {
  OdDbObjectPtr object = OdDbObject::cast(cls->create());
  if (object.isNull())
    return object;
  OdDbBitStream handles;
  encodeHandles(data.references(), handles);
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  filer.openForRead(data.data(), data.dataBitSize(), data.strings(), data.stringBitSize(),
                    handles.bytes(), handles.bitSize(), db, OdDbFiler::kFileFiler);
  filer.setDwgVersion(data.dwgVersion(), data.maintenanceVersion());
  OdResult result = eOk;
  try {
    result = object->dwgInFields(&filer);
  } catch (const OdError&) {
    result = eDwgObjectImproperlyRead;
  }
  if (result != eOk || filer.filerStatus() != eOk)
    return OdDbObjectPtr();
  return object;
}

/// The class a proxy's CLASS record names, when it is loaded and of the proxy's kind: by class
/// name first (two classes may share a DXF name), then by DXF name.
OdRxClass* loadedClassOf(const OdDbDxfClassRecord& record, bool entity) {
  OdRxClass* cls = odrxGetClass(record.cppClassName);
  if (!cls)
    cls = odrxClassByDxfName(record.dxfName);
  if (!cls || !odDbDxfIsProxyClass(cls) || cls->isDerivedFrom(OdDbProxyEntity::desc()) ||
      cls->isDerivedFrom(OdDbProxyObject::desc()) || !cls->isDerivedFrom(OdDbObject::desc()) ||
      cls->isDerivedFrom(OdDbEntity::desc()) != entity)
    return nullptr;
  return cls;
}

/// Reads the groups of a proxy of kind from the filer's items: a live object when its class
/// is loaded, else a proxy that keeps every part.
OdDbObjectPtr readProxy(const ProxyKind& kind, const std::vector<OdDbDxfClassRecord>& classes,
                        OdDbDxfFiler* filer);

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

  OdDbObjectIdArray ids;
  for (const OdDbBlockTableRecordPtr& block : ordered)
    ids.append(block->entityIds());
  ids.append(odDbDxfObjectsInFileOrder(db));
  // Records of live module classes by class, so only the first object of a class is opened;
  // kept proxies name their class themselves and are opened each.
  std::unordered_map<const OdRxClass*, std::size_t> liveRecords;
  for (const OdDbObjectId& id : ids) {
    if (id.isErased())
      continue;
    const OdRxClass* cls = id.objectClass();
    if (!cls || !odDbDxfIsProxyClass(cls))
      continue;
    const bool kept =
        cls->isDerivedFrom(OdDbProxyEntity::desc()) || cls->isDerivedFrom(OdDbProxyObject::desc());
    if (!kept) {
      const auto known = liveRecords.find(cls);
      if (known != liveRecords.end()) {
        ++records[known->second].instanceCount;
        continue;
      }
    }
    OdDbObjectPtr object = id.openObject();
    if (object.isNull())
      continue;
    const OdString name = className(object);
    if (!kept) {
      std::size_t index = 0;
      while (index < records.size() && records[index].cppClassName != name)
        ++index;
      liveRecords[cls] = index; // the record made below when there is none yet
    }
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

bool OdDbDxfProxyHooks::writeObject(const OdDbObject* object,
                                    const std::vector<OdDbDxfClassRecord>& classes,
                                    OdString& dxfName, OdDbDxfFiler* filer) {
  if (!object || !filer || !odDbDxfIsProxyClass(object->isA()))
    return false;
  const bool entity = object->isKindOf(OdDbEntity::desc());
  const ProxyKind& kind = entity ? kEntityProxy : kObjectProxy;
  const OdString name = className(object);
  std::size_t index = 0;
  while (index < classes.size() && classes[index].cppClassName != name)
    ++index;
  if (index == classes.size())
    throw OdError(eKeyNotFound, OD_T("No CLASS record for ") + name);
  std::optional<ScratchLease> lease;
  PartsView parts;
  if (const OdDbProxyEntity* proxy = OdDbProxyEntity::cast(object).get()) {
    parts = viewOf(proxy->proxyData());
  } else if (const OdDbProxyObject* proxyObject = OdDbProxyObject::cast(object).get()) {
    parts = viewOf(proxyObject->proxyData());
  } else {
    lease.emplace();
    parts = livePartsOf(object, **lease, filer);
  }

  dxfName = kind.type;
  if (entity)
    static_cast<const OdDbEntity*>(object)->OdDbEntity::dxfOutFields(filer);
  filer->wrSubclassMarker(kind.marker);
  filer->wrInt32(90, kind.id);
  filer->wrInt32(91, kFirstClassNumber + static_cast<OdInt32>(index));
  filer->wrInt16(71, static_cast<OdInt16>(parts.dwgVersion));
  filer->wrInt32(97, parts.maintVersion);
  filer->wrInt16(70, 0);
  if (entity && parts.graphics && !parts.graphics->isEmpty()) {
    filer->wrInt64(160, static_cast<OdInt64>(parts.graphics->size()));
    writeBinary(filer, 310, *parts.graphics);
  }
  if (parts.stringBits > 0) {
    filer->wrInt64(162, static_cast<OdInt64>(parts.stringBits));
    writeBinary(filer, 311, *parts.strings);
  }
  filer->wrInt64(161, static_cast<OdInt64>(parts.dataBits));
  writeBinary(filer, 310, *parts.data);
  for (const OdDbProxyReference& reference : *parts.references)
    filer->wrHandle(groupOfReference(reference.code), reference.handle);
  filer->wrInt32(94, 0);
  return true;
}

OdDbObjectPtr OdDbDxfProxyHooks::readUnknownEntity(const OdString& dxfName,
                                                   const std::vector<OdDbDxfClassRecord>& classes,
                                                   OdDbDxfFiler* filer) {
  if (dxfName != kEntityProxy.type || !filer)
    return OdDbObjectPtr();
  return readProxy(kEntityProxy, classes, filer);
}

OdDbObjectPtr OdDbDxfProxyHooks::readUnknownObject(const OdString& dxfName,
                                                   const std::vector<OdDbDxfClassRecord>& classes,
                                                   OdDbDxfFiler* filer) {
  if (dxfName != kObjectProxy.type || !filer)
    return OdDbObjectPtr();
  return readProxy(kObjectProxy, classes, filer);
}

namespace {

OdDbObjectPtr readProxy(const ProxyKind& kind, const std::vector<OdDbDxfClassRecord>& classes,
                        OdDbDxfFiler* filer) {
  const OdString type = kind.type;
  OdDbDxfItemFiler* itemFiler = dynamic_cast<OdDbDxfItemFiler*>(filer);
  if (!itemFiler)
    throw OdError(eNotApplicable, OD_T("Proxies are read from a drawing file's groups only"));
  // The filer's own list; only the last step below reopens the filer, from this same list.
  const OdDbDxfItemFiler::ItemArray& items = itemFiler->items();
  OdDbDatabase* db = filer->database();

  ProxyGroups groups{items};
  while (groups.pos < items.size() &&
         !(items[groups.pos].code == 100 && items[groups.pos].value == kind.marker))
    ++groups.pos;
  if (groups.pos == items.size())
    groups.fail(0, OD_T("an ") + type + OD_T(" without its ") + kind.marker + OD_T(" data"));
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
      if (groups.integer(item) != kind.id)
        groups.fail(item, OD_T("an ") + type + OD_T(" needs 90 ") + number(kind.id) +
                              OD_T(", found ") + items[item].value);
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
      if (!kind.entity)
        groups.fail(item, OD_T("an ") + type + OD_T(" carries no graphics"));
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
    groups.fail(last, OD_T("an ") + type + OD_T(" without 90 ") + number(kind.id));
  if (!haveClass)
    groups.fail(last, OD_T("an ") + type + OD_T(" without its class number (91)"));
  if (!haveData)
    groups.fail(last, OD_T("an ") + type + OD_T(" without its data (161)"));
  if (!ended)
    groups.fail(last, OD_T("an ") + type + OD_T(" without the 94 0 that ends it"));
  const long long classNumber = groups.integer(classItem);
  if (classNumber < kFirstClassNumber ||
      classNumber - kFirstClassNumber >= static_cast<long long>(classes.size()))
    groups.fail(classItem,
                OD_T("class number ") + items[classItem].value + OD_T(" has no CLASS record"));
  const OdDbDxfClassRecord& record =
      classes[static_cast<std::size_t>(classNumber - kFirstClassNumber)];
  if (record.isEntity != kind.entity)
    groups.fail(classItem,
                OD_T("class ") + record.cppClassName + OD_T(" of an ") + type +
                    (kind.entity ? OD_T(" is not an entity class") : OD_T(" is an entity class")));

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

  if (OdRxClass* cls = loadedClassOf(record, kind.entity)) {
    OdDbObjectPtr object = liveObject(cls, data, db);
    if (!object.isNull())
      return object;
  }
  // No loaded class reads it: keep it as it is, with the common entity data of its groups.
  if (!kind.entity) {
    OdDbProxyObjectPtr proxy = OdDbProxyObject::createObject();
    proxy->setProxyData(data);
    return proxy;
  }
  OdDbProxyEntityPtr proxy = OdDbProxyEntity::createObject();
  itemFiler->openForRead(items, db);
  const OdResult result = proxy->OdDbEntity::dxfInFields(itemFiler);
  if (result != eOk)
    groups.fail(0, OD_T("the entity data of a proxy cannot be read"));
  proxy->setProxyData(data);
  return proxy;
}

} // namespace
