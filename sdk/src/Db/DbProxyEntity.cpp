#include "DbProxyEntity.h"

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbFiler.h"
#include "DbSymbolTable.h"
#include "Gi/GiWorldDraw.h"

#include <cmath>
#include <cstring>
#include <vector>

ODRX_CONS_DEFINE_MEMBERS(OdDbProxyEntity, OdDbEntity, OD_T("ACAD_PROXY_ENTITY"))
ODRX_CONS_DEFINE_MEMBERS(OdDbProxyObject, OdDbObject, OD_T("ACAD_PROXY_OBJECT"))

namespace {

const OdUInt32 kKnownFlags =
    OdDbProxyEntity::kAllAllowedBits | OdDbProxyEntity::kDisableProxyWarning;

bool bitSizeFits(const OdUInt8Array& bytes, OdUInt64 bitSize) {
  return bitSize <= static_cast<OdUInt64>(bytes.size()) * 8;
}

bool isReferenceCode(OdUInt8 code) {
  return code >= 2 && code <= 5;
}

bool validReferences(const OdDbProxyReferenceArray& references) {
  for (const OdDbProxyReference& reference : references)
    if (!isReferenceCode(reference.code))
      return false;
  return true;
}

// ---------------------------------------------------------------------------------------------
// Filing of byte arrays for copies.

void writeByteArray(OdDbDwgFiler* filer, const OdUInt8Array& bytes) {
  filer->wrInt32(static_cast<OdInt32>(bytes.size()));
  if (!bytes.isEmpty())
    filer->wrBytes(bytes.getPtr(), bytes.size());
}

/// Reads what writeByteArray wrote. The count is not trusted: the bytes come in chunks and
/// reading stops at the first chunk the stream cannot supply, so a lying count costs at most
/// one chunk of memory.
bool readByteArray(OdDbDwgFiler* filer, OdUInt8Array& bytes) {
  const OdInt32 count = filer->rdInt32();
  if (filer->filerStatus() != eOk || count < 0)
    return false;
  const OdDbDwgStreamFiler* stream = dynamic_cast<const OdDbDwgStreamFiler*>(filer);
  if (stream && static_cast<OdUInt64>(count) > stream->remainingDataBits() / 8)
    return false;
  const OdUInt32 kChunk = 1u << 16;
  std::vector<OdUInt8> buffer;
  OdUInt32 left = static_cast<OdUInt32>(count);
  while (left > 0) {
    const OdUInt32 take = left < kChunk ? left : kChunk;
    const std::size_t at = buffer.size();
    buffer.resize(at + take);
    filer->rdBytes(buffer.data() + at, take);
    if (filer->filerStatus() != eOk)
      return false;
    left -= take;
  }
  bytes.clear();
  bytes.reserve(static_cast<OdUInt8Array::size_type>(buffer.size()));
  for (OdUInt8 byte : buffer)
    bytes.push_back(byte);
  return true;
}

// ---------------------------------------------------------------------------------------------
// Graphics metafile decoding.

/// Bounds-checked little-endian reads from one command's payload. A read past the end sets
/// ok to false and returns zero; the caller checks ok once after the reads of a command.
class Payload {
public:
  Payload(const OdUInt8* bytes, std::size_t size) : m_bytes(bytes), m_size(size) {}

  bool ok() const { return m_ok; }
  std::size_t remaining() const { return m_size - m_pos; }

  OdUInt32 u32() {
    if (!take(4))
      return 0;
    const OdUInt8* p = m_bytes + m_pos - 4;
    return static_cast<OdUInt32>(p[0]) | static_cast<OdUInt32>(p[1]) << 8 |
           static_cast<OdUInt32>(p[2]) << 16 | static_cast<OdUInt32>(p[3]) << 24;
  }
  OdInt32 i32() { return static_cast<OdInt32>(u32()); }
  /// A non-finite value makes the command malformed.
  double real() {
    const OdUInt64 low = u32();
    const OdUInt64 high = u32();
    const OdUInt64 bits = low | high << 32;
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) {
      m_ok = false;
      return 0.0;
    }
    return value;
  }
  OdGePoint3d point() {
    const double x = real();
    const double y = real();
    const double z = real();
    return OdGePoint3d(x, y, z);
  }
  OdGeVector3d vector() {
    const double x = real();
    const double y = real();
    const double z = real();
    return OdGeVector3d(x, y, z);
  }
  /// n points after an int32 count; a negative count or more points than the payload holds
  /// makes the command malformed before anything is allocated.
  std::vector<OdGePoint3d> points() {
    const OdInt32 count = i32();
    std::vector<OdGePoint3d> result;
    if (!m_ok || count < 0 || static_cast<OdUInt64>(count) * 24 > remaining()) {
      m_ok = false;
      return result;
    }
    result.reserve(static_cast<std::size_t>(count));
    for (OdInt32 i = 0; i < count; ++i)
      result.push_back(point());
    return result;
  }
  /// UTF-16LE units up to a NUL unit, which must lie inside the payload.
  OdString utf16() {
    std::u16string text;
    for (;;) {
      if (!take(2))
        return OdString();
      const OdUInt8* p = m_bytes + m_pos - 2;
      const char16_t unit = static_cast<char16_t>(p[0] | p[1] << 8);
      if (unit == 0)
        return OdString(text.c_str(), static_cast<int>(text.size()));
      text.push_back(unit);
    }
  }

private:
  bool take(std::size_t count) {
    if (!m_ok || remaining() < count) {
      m_ok = false;
      return false;
    }
    m_pos += count;
    return true;
  }

  const OdUInt8* m_bytes;
  std::size_t m_size;
  std::size_t m_pos = 0;
  bool m_ok = true;
};

/// Calls onCommand(opcode, payload) for each command of the metafile in order; onCommand
/// returns false to end the walk (a malformed payload, or nothing more wanted). eOk when every
/// command announced by the header was walked.
template <class OnCommand>
OdResult walkMetafile(const OdUInt8Array& metafile, OnCommand onCommand) {
  const std::size_t size = metafile.size();
  if (size == 0)
    return eOk;
  Payload header(metafile.getPtr(), size);
  const OdUInt32 total = header.u32();
  const OdUInt32 count = header.u32();
  if (!header.ok() || total < 8)
    return eInvalidInput;
  // A metafile cut short still shows the commands it holds whole.
  const std::size_t limit = total < size ? total : size;
  std::size_t pos = 8;
  for (OdUInt32 i = 0; i < count; ++i) {
    if (limit - pos < 8)
      return eInvalidInput;
    Payload head(metafile.getPtr() + pos, 8);
    const OdUInt32 commandSize = head.u32();
    const OdUInt32 opcode = head.u32();
    if (commandSize < 8 || commandSize > limit - pos)
      return eInvalidInput;
    Payload payload(metafile.getPtr() + pos + 8, commandSize - 8);
    if (!onCommand(opcode, payload))
      return eInvalidInput;
    pos += commandSize;
  }
  return total > size ? eInvalidInput : eOk;
}

enum Opcode : OdUInt32 {
  kExtents = 1,
  kCircle = 2,
  kCircle3Points = 3,
  kCircularArc = 4,
  kCircularArc3Points = 5,
  kPolyline = 6,
  kPolygon = 7,
  kXline = 12,
  kRay = 13,
  kColor = 14,
  kLayerIndex = 16,
  kLinetypeIndex = 18,
  kFill = 20,
  kTrueColor = 22,
  kLineWeight = 23,
  kLinetypeScale = 24,
  kPushMatrix = 29,
  kPopMatrix = 31,
  kPolylineWithNormal = 32,
  kUnicodeText = 36
};

const OdInt32 kByLayerIndex = 32767;

bool isAttributeOpcode(OdUInt32 opcode) {
  switch (opcode) {
  case kExtents:
  case kColor:
  case kLayerIndex:
  case kLinetypeIndex:
  case kFill:
  case kTrueColor:
  case kLineWeight:
  case kLinetypeScale:
  case kPushMatrix:
  case kPopMatrix:
  case 19: // selection marker
  case 25: // thickness
  case 26: // plot style
  case 27: // push clip
  case 28: // pop clip
  case 30: // second push matrix
  case 34: // material
  case 35: // mapper
    return true;
  default:
    return false;
  }
}

OdGiArcType arcTypeOf(OdInt32 value) {
  return value == kOdGiArcSector  ? kOdGiArcSector
         : value == kOdGiArcChord ? kOdGiArcChord
                                  : kOdGiArcSimple;
}

/// The records of a symbol table in order, erased ones left out (files do not carry them).
OdDbObjectIdArray tableOrder(const OdDbObjectId& tableId) {
  OdDbObjectIdArray ids;
  OdDbSymbolTablePtr table = OdDbSymbolTable::cast(tableId.openObject().get());
  if (table.isNull())
    return ids;
  OdDbSymbolTableIteratorPtr it = table->newIterator();
  for (it->start(); !it->done(); it->step())
    ids.append(it->getRecordId());
  return ids;
}

/// Replays commands onto one drawing session.
class Replayer {
public:
  Replayer(OdGiWorldDraw* draw, OdDbDatabase* database)
      : m_geometry(draw->geometry()), m_traits(draw->subEntityTraits()), m_database(database) {}
  ~Replayer() {
    // Leave the session's transforms as the metafile found them.
    for (; m_pushed > 0; --m_pushed)
      m_geometry.popModelTransform();
  }
  Replayer(const Replayer&) = delete;
  Replayer& operator=(const Replayer&) = delete;

  bool command(OdUInt32 opcode, Payload& in) {
    switch (opcode) {
    case kCircle: {
      const OdGePoint3d center = in.point();
      const double radius = in.real();
      const OdGeVector3d normal = in.vector();
      if (in.ok())
        m_geometry.circle(center, radius, normal);
      break;
    }
    case kCircle3Points: {
      const OdGePoint3d p1 = in.point();
      const OdGePoint3d p2 = in.point();
      const OdGePoint3d p3 = in.point();
      if (in.ok())
        m_geometry.circle(p1, p2, p3);
      break;
    }
    case kCircularArc: {
      const OdGePoint3d center = in.point();
      const double radius = in.real();
      const OdGeVector3d normal = in.vector();
      const OdGeVector3d start = in.vector();
      const double sweep = in.real();
      const OdInt32 type = in.i32();
      if (in.ok())
        m_geometry.circularArc(center, radius, normal, start, sweep, arcTypeOf(type));
      break;
    }
    case kCircularArc3Points: {
      const OdGePoint3d p1 = in.point();
      const OdGePoint3d p2 = in.point();
      const OdGePoint3d p3 = in.point();
      const OdInt32 type = in.i32();
      if (in.ok())
        m_geometry.circularArc(p1, p2, p3, arcTypeOf(type));
      break;
    }
    case kPolyline:
    case kPolygon:
    case kPolylineWithNormal: {
      const std::vector<OdGePoint3d> points = in.points();
      OdGeVector3d normal;
      if (opcode == kPolylineWithNormal)
        normal = in.vector();
      if (!in.ok() || points.empty())
        break;
      const OdInt32 n = static_cast<OdInt32>(points.size());
      if (opcode == kPolygon)
        m_geometry.polygon(n, points.data());
      else
        m_geometry.polyline(n, points.data(), opcode == kPolylineWithNormal ? &normal : nullptr);
      break;
    }
    case kXline:
    case kRay: {
      const OdGePoint3d first = in.point();
      const OdGePoint3d second = in.point();
      if (in.ok()) {
        if (opcode == kXline)
          m_geometry.xline(first, second);
        else
          m_geometry.ray(first, second);
      }
      break;
    }
    case kUnicodeText: {
      const OdGePoint3d position = in.point();
      const OdGeVector3d normal = in.vector();
      const OdGeVector3d direction = in.vector();
      const double height = in.real();
      const double width = in.real();
      const double oblique = in.real();
      const OdString text = in.utf16();
      if (in.ok())
        m_geometry.text(position, normal, direction, height, width, oblique, text);
      break;
    }
    case kColor: {
      const OdInt32 index = in.i32();
      if (in.ok())
        m_traits.setColor(index >= 0 && index <= 256 ? static_cast<OdUInt16>(index) : 256);
      break;
    }
    case kTrueColor: {
      const OdUInt32 raw = in.u32();
      OdCmEntityColor color;
      if (in.ok() && color.setColor(raw) == eOk)
        m_traits.setTrueColor(color);
      break;
    }
    case kLayerIndex: {
      const OdInt32 index = in.i32();
      if (in.ok() && m_database) {
        if (!m_layersRead)
          m_layers = tableOrder(m_database->getLayerTableId());
        m_layersRead = true;
        if (index >= 0 && static_cast<OdUInt32>(index) < m_layers.size())
          m_traits.setLayer(m_layers[static_cast<OdUInt32>(index)]);
      }
      break;
    }
    case kLinetypeIndex: {
      const OdInt32 index = in.i32();
      if (in.ok() && index == kByLayerIndex) {
        m_traits.setLineType(m_database ? static_cast<OdDbStub*>(m_database->getLinetypeByLayerId())
                                        : nullptr);
      } else if (in.ok() && m_database) {
        if (!m_linetypesRead)
          m_linetypes = tableOrder(m_database->getLinetypeTableId());
        m_linetypesRead = true;
        if (index >= 0 && static_cast<OdUInt32>(index) < m_linetypes.size())
          m_traits.setLineType(m_linetypes[static_cast<OdUInt32>(index)]);
      }
      break;
    }
    case kFill: {
      const OdUInt32 on = in.u32();
      if (in.ok())
        m_traits.setFillType(on == 1 ? kOdGiFillAlways : kOdGiFillNever);
      break;
    }
    case kLineWeight: {
      const OdInt32 weight = in.i32();
      if (in.ok() && odIsValidLineWeight(weight))
        m_traits.setLineWeight(static_cast<OdDb::LineWeight>(weight));
      break;
    }
    case kLinetypeScale: {
      const double scale = in.real();
      if (in.ok() && scale > 0.0)
        m_traits.setLineTypeScale(scale);
      break;
    }
    case kPushMatrix: {
      OdGeMatrix3d matrix;
      for (unsigned row = 0; row < 4; ++row)
        for (unsigned column = 0; column < 4; ++column)
          matrix(row, column) = in.real();
      if (in.ok()) {
        m_geometry.pushModelTransform(matrix);
        ++m_pushed;
      }
      break;
    }
    case kPopMatrix:
      // Only what this metafile pushed; the session's own transforms are not its to undo.
      if (m_pushed > 0) {
        m_geometry.popModelTransform();
        --m_pushed;
      }
      break;
    default:
      // Extents and commands this platform does not draw: skipped by their size.
      break;
    }
    return in.ok();
  }

private:
  OdGiWorldGeometry& m_geometry;
  OdGiSubEntityTraits& m_traits;
  OdDbDatabase* m_database;
  OdDbObjectIdArray m_layers;
  OdDbObjectIdArray m_linetypes;
  bool m_layersRead = false;
  bool m_linetypesRead = false;
  unsigned m_pushed = 0;
};

} // namespace

OdResult oddbReplayProxyGraphics(const OdUInt8Array& metafile, OdGiWorldDraw* worldDraw,
                                 OdDbDatabase* database) {
  if (!worldDraw)
    return eNullObjectPointer;
  Replayer replayer(worldDraw, database);
  bool aborted = false;
  const OdResult result = walkMetafile(metafile, [&](OdUInt32 opcode, Payload& payload) {
    aborted = worldDraw->regenAbort();
    return !aborted && replayer.command(opcode, payload);
  });
  return aborted ? eOk : result;
}

bool oddbProxyGraphicsExtents(const OdUInt8Array& metafile, OdGeExtents3d& extents) {
  bool found = false;
  OdGeExtents3d box;
  walkMetafile(metafile, [&](OdUInt32 opcode, Payload& payload) {
    if (opcode != kExtents)
      return true;
    const OdGePoint3d min = payload.point();
    const OdGePoint3d max = payload.point();
    if (!payload.ok())
      return false;
    box = OdGeExtents3d(min, max);
    found = box.isValidExtents();
    return false; // the first extents command is the one
  });
  if (found)
    extents = box;
  return found;
}

// ---------------------------------------------------------------------------------------------
// The parts

void OdDbProxyData::setProxyFlags(OdUInt32 flags) {
  if ((flags & ~kKnownFlags) != 0)
    throw OdError(eInvalidInput, OD_T("Unknown proxy flags"));
  m_proxyFlags = flags;
}

void OdDbProxyData::setVersion(int dwgVersion, int maintenanceVersion) {
  if (dwgVersion < 0 || maintenanceVersion < 0)
    throw OdError(eInvalidInput, OD_T("A DWG version is not negative"));
  m_dwgVersion = dwgVersion;
  m_maintVersion = maintenanceVersion;
}

void OdDbProxyData::setData(const OdUInt8Array& bytes, OdUInt64 bitSize) {
  if (!bitSizeFits(bytes, bitSize))
    throw OdError(eInvalidInput, OD_T("More data bits than bytes"));
  m_data = bytes;
  m_dataBits = bitSize;
}

void OdDbProxyData::setStrings(const OdUInt8Array& bytes, OdUInt64 bitSize) {
  if (!bitSizeFits(bytes, bitSize))
    throw OdError(eInvalidInput, OD_T("More string bits than bytes"));
  m_strings = bytes;
  m_stringBits = bitSize;
}

void OdDbProxyData::setReferences(const OdDbProxyReferenceArray& references) {
  if (!validReferences(references))
    throw OdError(eInvalidInput, OD_T("A proxy reference code is 2, 3, 4 or 5"));
  m_references = references;
}

bool operator==(const OdDbProxyData& a, const OdDbProxyData& b) {
  return a.m_className == b.m_className && a.m_dxfName == b.m_dxfName &&
         a.m_appName == b.m_appName && a.m_proxyFlags == b.m_proxyFlags &&
         a.m_dwgVersion == b.m_dwgVersion && a.m_maintVersion == b.m_maintVersion &&
         a.m_data == b.m_data && a.m_dataBits == b.m_dataBits && a.m_strings == b.m_strings &&
         a.m_stringBits == b.m_stringBits && a.m_references == b.m_references &&
         a.m_graphics == b.m_graphics;
}

void OdDbProxyData::writeOut(OdDbDwgFiler* filer) const {
  filer->wrString(m_className);
  filer->wrString(m_dxfName);
  filer->wrString(m_appName);
  filer->wrInt32(static_cast<OdInt32>(m_proxyFlags));
  filer->wrInt32(m_dwgVersion);
  filer->wrInt32(m_maintVersion);
  writeByteArray(filer, m_data);
  filer->wrInt64(static_cast<OdInt64>(m_dataBits));
  writeByteArray(filer, m_strings);
  filer->wrInt64(static_cast<OdInt64>(m_stringBits));
  filer->wrInt32(static_cast<OdInt32>(m_references.size()));
  for (const OdDbProxyReference& reference : m_references) {
    filer->wrUInt8(reference.code);
    filer->wrDbHandle(reference.handle);
  }
  writeByteArray(filer, m_graphics);
}

OdResult OdDbProxyData::readIn(OdDbDwgFiler* filer) {
  OdDbProxyData in;
  in.m_className = filer->rdString();
  in.m_dxfName = filer->rdString();
  in.m_appName = filer->rdString();
  in.m_proxyFlags = static_cast<OdUInt32>(filer->rdInt32());
  in.m_dwgVersion = filer->rdInt32();
  in.m_maintVersion = filer->rdInt32();
  if (!readByteArray(filer, in.m_data))
    return filer->filerStatus() != eOk ? filer->filerStatus() : eDwgObjectImproperlyRead;
  const OdInt64 dataBits = filer->rdInt64();
  if (!readByteArray(filer, in.m_strings))
    return filer->filerStatus() != eOk ? filer->filerStatus() : eDwgObjectImproperlyRead;
  const OdInt64 stringBits = filer->rdInt64();
  const OdInt32 count = filer->rdInt32();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (count < 0)
    return eDwgObjectImproperlyRead;
  for (OdInt32 i = 0; i < count && filer->filerStatus() == eOk; ++i) {
    OdDbProxyReference reference;
    reference.code = filer->rdUInt8();
    reference.handle = filer->rdDbHandle();
    in.m_references.append(reference);
  }
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!readByteArray(filer, in.m_graphics))
    return filer->filerStatus() != eOk ? filer->filerStatus() : eDwgObjectImproperlyRead;
  if (dataBits < 0 || stringBits < 0)
    return eDwgObjectImproperlyRead;
  in.m_dataBits = static_cast<OdUInt64>(dataBits);
  in.m_stringBits = static_cast<OdUInt64>(stringBits);
  if ((in.m_proxyFlags & ~kKnownFlags) != 0 || in.m_dwgVersion < 0 || in.m_maintVersion < 0 ||
      !bitSizeFits(in.m_data, in.m_dataBits) || !bitSizeFits(in.m_strings, in.m_stringBits) ||
      !validReferences(in.m_references))
    return eDwgObjectImproperlyRead;
  *this = in;
  return eOk;
}

// ---------------------------------------------------------------------------------------------
// Proxy entity

OdDbProxyEntity::OdDbProxyEntity() = default;

OdString OdDbProxyEntity::originalClassName() const {
  return proxyData().originalClassName();
}

OdString OdDbProxyEntity::originalDxfName() const {
  return proxyData().originalDxfName();
}

OdString OdDbProxyEntity::applicationDescription() const {
  return proxyData().applicationDescription();
}

OdUInt32 OdDbProxyEntity::proxyFlags() const {
  return proxyData().proxyFlags();
}

OdDbProxyEntity::GraphicsMetafileType OdDbProxyEntity::graphicsMetafileType() const {
  bool drawing = false;
  bool extents = false;
  const OdResult walked =
      walkMetafile(proxyData().graphicsMetafile(), [&](OdUInt32 opcode, Payload&) {
        drawing = drawing || !isAttributeOpcode(opcode);
        extents = extents || opcode == kExtents;
        return true;
      });
  if (drawing)
    return kFullGraphics;
  return extents && walked == eOk ? kBoundingBox : kNoMetafile;
}

const OdDbProxyData& OdDbProxyEntity::proxyData() const {
  assertReadEnabled();
  return m_data;
}

void OdDbProxyEntity::setProxyData(const OdDbProxyData& data) {
  assertWriteEnabled();
  m_data = data;
}

void OdDbProxyEntity::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbEntity::dwgOutFields(filer);
  m_data.writeOut(filer);
}

OdResult OdDbProxyEntity::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  return m_data.readIn(filer);
}

bool OdDbProxyEntity::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  OdDbDatabase* db = database();
  if (!db && worldDraw->context())
    db = worldDraw->context()->database();
  // A damaged metafile draws what it holds whole; the rest is lost already.
  oddbReplayProxyGraphics(m_data.graphicsMetafile(), worldDraw, db);
  return true;
}

OdResult OdDbProxyEntity::subTransformBy(const OdGeMatrix3d& /*xform*/) {
  return eNotApplicable;
}

OdResult OdDbProxyEntity::subExplode(OdRxObjectPtrArray& /*entitySet*/) const {
  assertReadEnabled();
  return eNotApplicable;
}

OdResult OdDbProxyEntity::subGetGeomExtents(OdGeExtents3d& extents) const {
  assertReadEnabled();
  if (oddbProxyGraphicsExtents(m_data.graphicsMetafile(), extents))
    return eOk;
  return OdDbEntity::subGetGeomExtents(extents);
}

// ---------------------------------------------------------------------------------------------
// Proxy object

OdDbProxyObject::OdDbProxyObject() = default;

OdString OdDbProxyObject::originalClassName() const {
  return proxyData().originalClassName();
}

OdString OdDbProxyObject::originalDxfName() const {
  return proxyData().originalDxfName();
}

OdString OdDbProxyObject::applicationDescription() const {
  return proxyData().applicationDescription();
}

OdUInt32 OdDbProxyObject::proxyFlags() const {
  return proxyData().proxyFlags();
}

const OdDbProxyData& OdDbProxyObject::proxyData() const {
  assertReadEnabled();
  return m_data;
}

void OdDbProxyObject::setProxyData(const OdDbProxyData& data) {
  assertWriteEnabled();
  m_data = data;
}

void OdDbProxyObject::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbObject::dwgOutFields(filer);
  m_data.writeOut(filer);
}

OdResult OdDbProxyObject::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbObject::dwgInFields(filer);
  if (base != eOk)
    return base;
  return m_data.readIn(filer);
}
