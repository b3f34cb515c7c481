#include "DbDwgStreamFiler.h"

#include "CmColor.h"
#include "DbDatabase.h"
#include "Ge/GePoint2d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeScale3d.h"
#include "Ge/GeVector2d.h"
#include "Ge/GeVector3d.h"

#include <cstring>
#include <string>

namespace {
// Two-bit prefixes of BS, BL and BD.
constexpr OdUInt32 kPrefixFull = 0; // the full-width value follows
constexpr OdUInt32 kPrefixByte = 1; // BS, BL: an unsigned byte follows; BD: 1.0
constexpr OdUInt32 kPrefixZero = 2; // the value is zero
constexpr OdUInt32 kPrefix256 = 3;  // BS: 256; BL, BD: not used

// CMC flag bits: which names follow in the string stream.
constexpr OdUInt8 kColorNameFollows = 1;
constexpr OdUInt8 kBookNameFollows = 2;

constexpr OdUInt64 kMaxBllValue = (OdUInt64(1) << 56) - 1;
constexpr int kMaxHandleBytes = 8;

OdUInt64 doubleBits(double value) {
  OdUInt64 bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

double bitsToDouble(OdUInt64 bits) {
  double value = 0.0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

// Number of significant bytes of value: 0 for 0.
unsigned significantBytes(OdUInt64 value) {
  unsigned count = 0;
  while (value != 0) {
    ++count;
    value >>= 8;
  }
  return count;
}
} // namespace

OdDbDwgStreamFiler::OdDbDwgStreamFiler() = default;

OdDbDwgStreamFiler::~OdDbDwgStreamFiler() = default;

void OdDbDwgStreamFiler::openForWrite(OdDbDatabase* db, FilerType type) {
  m_data.clear();
  m_strings.clear();
  m_handles.clear();
  m_database = db;
  m_filerType = type;
  m_status = eOk;
  m_reading = false;
  m_lastHandle = OdDbHandle();
  m_lastHandleCode = 0;
}

void OdDbDwgStreamFiler::openForRead(const OdUInt8Array& data, OdUInt64 dataBits,
                                     const OdUInt8Array& strings, OdUInt64 stringBits,
                                     const OdUInt8Array& handles, OdUInt64 handleBits,
                                     OdDbDatabase* db, FilerType type) {
  m_data.assign(data, dataBits);
  m_strings.assign(strings, stringBits);
  m_handles.assign(handles, handleBits);
  m_database = db;
  m_filerType = type;
  rewind();
}

void OdDbDwgStreamFiler::rewind() {
  m_data.setPosition(0);
  m_strings.setPosition(0);
  m_handles.setPosition(0);
  m_status = eOk;
  m_reading = true;
  m_lastHandle = OdDbHandle();
  m_lastHandleCode = 0;
}

void OdDbDwgStreamFiler::setDwgVersion(int version, int maintVersion) {
  m_version = version;
  m_maintVersion = maintVersion;
}

int OdDbDwgStreamFiler::dwgVersion(int* maintVer) const {
  if (maintVer)
    *maintVer = m_maintVersion;
  return m_version;
}

void OdDbDwgStreamFiler::fail(OdResult status) {
  if (m_status == eOk)
    m_status = status;
}

bool OdDbDwgStreamFiler::canRead() {
  if (!m_reading)
    fail(eNotApplicable);
  return m_status == eOk;
}

bool OdDbDwgStreamFiler::canWrite() {
  if (m_reading) {
    fail(eNotApplicable);
    return false;
  }
  return true;
}

void OdDbDwgStreamFiler::seek(OdInt64 offset, int seekType) {
  if (!m_reading) {
    fail(eNotApplicable);
    return;
  }
  OdUInt64 base = 0;
  switch (seekType) {
  case OdDb::kSeekFromStart:
    base = 0;
    break;
  case OdDb::kSeekFromCurrent:
    base = m_data.position();
    break;
  case OdDb::kSeekFromEnd:
    base = m_data.bitSize();
    break;
  default:
    fail(eNotApplicable);
    return;
  }
  // Computed in unsigned arithmetic so no offset can overflow; a target below zero wraps to a
  // huge value that setPosition refuses like any other target past the end.
  const OdUInt64 target = base + static_cast<OdUInt64>(offset);
  if (!m_data.setPosition(target))
    fail(eInvalidInput);
}

OdUInt64 OdDbDwgStreamFiler::tell() const {
  return m_reading ? m_data.position() : m_data.bitSize();
}

// ---------------------------------------------------------------------------------------------
// Bit codes

bool OdDbDwgStreamFiler::readBS(OdDbBitStream& stream, OdUInt16& value) {
  OdUInt32 prefix = 0;
  if (!stream.readBits(2, prefix)) {
    fail(eEndOfFile);
    return false;
  }
  OdUInt64 raw = 0;
  switch (prefix) {
  case kPrefixFull:
    if (!stream.readRawLE(2, raw)) {
      fail(eEndOfFile);
      return false;
    }
    value = static_cast<OdUInt16>(raw);
    return true;
  case kPrefixByte:
    if (!stream.readRawLE(1, raw)) {
      fail(eEndOfFile);
      return false;
    }
    value = static_cast<OdUInt16>(raw);
    return true;
  case kPrefixZero:
    value = 0;
    return true;
  default:
    value = 256;
    return true;
  }
}

void OdDbDwgStreamFiler::writeBS(OdDbBitStream& stream, OdUInt16 value) {
  if (value == 0) {
    stream.writeBits(kPrefixZero, 2);
  } else if (value == 256) {
    stream.writeBits(kPrefix256, 2);
  } else if (value < 256) {
    stream.writeBits(kPrefixByte, 2);
    stream.writeByte(static_cast<OdUInt8>(value));
  } else {
    stream.writeBits(kPrefixFull, 2);
    stream.writeRawLE(value, 2);
  }
}

bool OdDbDwgStreamFiler::readBL(OdUInt32& value) {
  OdUInt32 prefix = 0;
  if (!m_data.readBits(2, prefix)) {
    fail(eEndOfFile);
    return false;
  }
  OdUInt64 raw = 0;
  switch (prefix) {
  case kPrefixFull:
  case kPrefixByte:
    if (!m_data.readRawLE(prefix == kPrefixFull ? 4 : 1, raw)) {
      fail(eEndOfFile);
      return false;
    }
    value = static_cast<OdUInt32>(raw);
    return true;
  case kPrefixZero:
    value = 0;
    return true;
  default:
    fail(eDwgObjectImproperlyRead);
    return false;
  }
}

void OdDbDwgStreamFiler::writeBL(OdUInt32 value) {
  if (value == 0) {
    m_data.writeBits(kPrefixZero, 2);
  } else if (value < 256) {
    m_data.writeBits(kPrefixByte, 2);
    m_data.writeByte(static_cast<OdUInt8>(value));
  } else {
    m_data.writeBits(kPrefixFull, 2);
    m_data.writeRawLE(value, 4);
  }
}

bool OdDbDwgStreamFiler::readBD(double& value) {
  OdUInt32 prefix = 0;
  if (!m_data.readBits(2, prefix)) {
    fail(eEndOfFile);
    return false;
  }
  OdUInt64 raw = 0;
  switch (prefix) {
  case kPrefixFull:
    if (!m_data.readRawLE(8, raw)) {
      fail(eEndOfFile);
      return false;
    }
    value = bitsToDouble(raw);
    return true;
  case kPrefixByte:
    value = 1.0;
    return true;
  case kPrefixZero:
    value = 0.0;
    return true;
  default:
    fail(eDwgObjectImproperlyRead);
    return false;
  }
}

void OdDbDwgStreamFiler::writeBD(double value) {
  // Compared by bits: -0.0 and NaN payloads must survive, so only +0.0 and exactly 1.0 take
  // the short forms.
  const OdUInt64 bits = doubleBits(value);
  if (bits == doubleBits(1.0)) {
    m_data.writeBits(kPrefixByte, 2);
  } else if (bits == 0) {
    m_data.writeBits(kPrefixZero, 2);
  } else {
    m_data.writeBits(kPrefixFull, 2);
    m_data.writeRawLE(bits, 8);
  }
}

bool OdDbDwgStreamFiler::readTU(OdString& value) {
  OdUInt16 count = 0;
  if (!readBS(m_strings, count))
    return false;
  // The count is checked against the bits left before anything is sized by it.
  if (static_cast<OdUInt64>(count) * 16 > m_strings.remainingBits()) {
    fail(eDwgObjectImproperlyRead);
    return false;
  }
  std::u16string units;
  units.reserve(count);
  for (OdUInt16 i = 0; i < count; ++i) {
    OdUInt64 unit = 0;
    m_strings.readRawLE(2, unit);
    units.push_back(static_cast<char16_t>(unit));
  }
  value = OdString(std::move(units));
  return true;
}

void OdDbDwgStreamFiler::writeTU(const OdString& value) {
  const std::u16string& units = value.str();
  if (units.size() > 0xFFFF) {
    fail(eInvalidInput);
    writeBS(m_strings, 0);
    return;
  }
  writeBS(m_strings, static_cast<OdUInt16>(units.size()));
  for (char16_t unit : units)
    m_strings.writeRawLE(static_cast<OdUInt16>(unit), 2);
}

bool OdDbDwgStreamFiler::readH(int& code, OdDbHandle& handle) {
  OdUInt8 head = 0;
  if (!m_handles.readByte(head)) {
    fail(eEndOfFile);
    return false;
  }
  const int byteCount = head & 0x0F;
  if (byteCount > kMaxHandleBytes) {
    fail(eDwgObjectImproperlyRead);
    return false;
  }
  if (static_cast<OdUInt64>(byteCount) * 8 > m_handles.remainingBits()) {
    fail(eEndOfFile);
    return false;
  }
  OdUInt64 value = 0;
  for (int i = 0; i < byteCount; ++i) {
    OdUInt8 byte = 0;
    m_handles.readByte(byte);
    value = (value << 8) | byte;
  }
  code = head >> 4;
  handle = OdDbHandle(value);
  m_lastHandle = handle;
  m_lastHandleCode = code;
  return true;
}

void OdDbDwgStreamFiler::writeH(int code, const OdDbHandle& handle) {
  const OdUInt64 value = handle;
  const unsigned byteCount = significantBytes(value);
  m_handles.writeByte(static_cast<OdUInt8>((code << 4) | static_cast<int>(byteCount)));
  for (unsigned i = byteCount; i > 0; --i)
    m_handles.writeByte(static_cast<OdUInt8>(value >> (8 * (i - 1))));
}

OdDbObjectId OdDbDwgStreamFiler::readId(int expectedCode) {
  if (!canRead())
    return OdDbObjectId();
  int code = 0;
  OdDbHandle handle;
  if (!readH(code, handle))
    return OdDbObjectId();
  if (code != expectedCode) {
    fail(eDwgObjectImproperlyRead);
    return OdDbObjectId();
  }
  return idFromHandle(handle);
}

OdDbObjectId OdDbDwgStreamFiler::idFromHandle(const OdDbHandle& handle) const {
  // Handle 0 is the null reference; asking the database for it would create an id for it.
  if (handle.isNull() || !m_database)
    return OdDbObjectId();
  return m_database->getOdDbObjectId(handle, true);
}

// ---------------------------------------------------------------------------------------------
// Reading

bool OdDbDwgStreamFiler::rdBool() {
  bool value = false;
  if (canRead() && !m_data.readBit(value))
    fail(eEndOfFile);
  return m_status == eOk && value;
}

OdString OdDbDwgStreamFiler::rdString() {
  OdString value;
  if (canRead() && readTU(value))
    return value;
  return OdString();
}

void OdDbDwgStreamFiler::rdBytes(void* buffer, OdUInt32 numBytes) {
  if (numBytes == 0)
    return;
  OdUInt8* bytes = static_cast<OdUInt8*>(buffer);
  if (canRead() && m_data.readBytes(bytes, numBytes))
    return;
  fail(eEndOfFile);
  std::memset(bytes, 0, numBytes);
}

OdInt8 OdDbDwgStreamFiler::rdInt8() {
  return static_cast<OdInt8>(rdUInt8());
}

OdUInt8 OdDbDwgStreamFiler::rdUInt8() {
  OdUInt8 value = 0;
  if (canRead() && !m_data.readByte(value)) {
    fail(eEndOfFile);
    return 0;
  }
  return m_status == eOk ? value : 0;
}

OdInt16 OdDbDwgStreamFiler::rdInt16() {
  OdUInt16 value = 0;
  if (canRead() && readBS(m_data, value))
    return static_cast<OdInt16>(value);
  return 0;
}

OdInt32 OdDbDwgStreamFiler::rdInt32() {
  OdUInt32 value = 0;
  if (canRead() && readBL(value))
    return static_cast<OdInt32>(value);
  return 0;
}

OdInt64 OdDbDwgStreamFiler::rdInt64() {
  if (!canRead())
    return 0;
  OdUInt32 byteCount = 0;
  OdUInt64 value = 0;
  if (!m_data.readBits(3, byteCount) || !m_data.readRawLE(byteCount, value)) {
    fail(eEndOfFile);
    return 0;
  }
  return static_cast<OdInt64>(value);
}

double OdDbDwgStreamFiler::rdDouble() {
  double value = 0.0;
  if (canRead() && readBD(value))
    return value;
  return 0.0;
}

OdDbHandle OdDbDwgStreamFiler::rdDbHandle() {
  int code = 0;
  OdDbHandle handle;
  if (canRead() && readH(code, handle))
    return handle;
  return OdDbHandle();
}

OdDbObjectId OdDbDwgStreamFiler::rdSoftOwnershipId() {
  return readId(kSoftOwnerRef);
}

OdDbObjectId OdDbDwgStreamFiler::rdHardOwnershipId() {
  return readId(kHardOwnerRef);
}

OdDbObjectId OdDbDwgStreamFiler::rdHardPointerId() {
  return readId(kHardPointerRef);
}

OdDbObjectId OdDbDwgStreamFiler::rdSoftPointerId() {
  return readId(kSoftPointerRef);
}

// Each coordinate is read even after a failure; the later ones then come back as zero.
OdGePoint2d OdDbDwgStreamFiler::rdPoint2d() {
  const double x = rdDouble();
  const double y = rdDouble();
  return m_status == eOk ? OdGePoint2d(x, y) : OdGePoint2d();
}

OdGePoint3d OdDbDwgStreamFiler::rdPoint3d() {
  const double x = rdDouble();
  const double y = rdDouble();
  const double z = rdDouble();
  return m_status == eOk ? OdGePoint3d(x, y, z) : OdGePoint3d();
}

OdGeVector2d OdDbDwgStreamFiler::rdVector2d() {
  const double x = rdDouble();
  const double y = rdDouble();
  return m_status == eOk ? OdGeVector2d(x, y) : OdGeVector2d();
}

OdGeVector3d OdDbDwgStreamFiler::rdVector3d() {
  const double x = rdDouble();
  const double y = rdDouble();
  const double z = rdDouble();
  return m_status == eOk ? OdGeVector3d(x, y, z) : OdGeVector3d();
}

OdGeScale3d OdDbDwgStreamFiler::rdScale3d() {
  const double sx = rdDouble();
  const double sy = rdDouble();
  const double sz = rdDouble();
  // A failed read gives zero factors, like every other failed read, not the unit scale.
  return m_status == eOk ? OdGeScale3d(sx, sy, sz) : OdGeScale3d(0.0, 0.0, 0.0);
}

void OdDbDwgStreamFiler::rdCmColor(OdCmColor& color) {
  OdUInt16 index = 0;
  OdUInt32 packed = 0;
  OdUInt8 flags = 0;
  OdString colorName;
  OdString bookName;
  if (!canRead() || !readBS(m_data, index) || !readBL(packed))
    return;
  if (!m_data.readByte(flags)) {
    fail(eEndOfFile);
    return;
  }
  if ((flags & kColorNameFollows) && !readTU(colorName))
    return;
  if ((flags & kBookNameFollows) && !readTU(bookName))
    return;
  // Built aside so that a refused value leaves the caller's colour as it was. A packed value
  // without a method byte comes from a writer that kept the colour in the index alone.
  OdCmColor value;
  const OdResult valueSet =
      (packed >> 24) == 0 ? value.setColorIndex(index) : value.setColor(packed);
  if (valueSet != eOk || !value.setNames(colorName, bookName)) {
    fail(eDwgObjectImproperlyRead);
    return;
  }
  color = value;
}

// ---------------------------------------------------------------------------------------------
// Writing

void OdDbDwgStreamFiler::wrBool(bool value) {
  if (canWrite())
    m_data.writeBit(value);
}

void OdDbDwgStreamFiler::wrString(const OdString& value) {
  if (canWrite())
    writeTU(value);
}

void OdDbDwgStreamFiler::wrBytes(const void* buffer, OdUInt32 numBytes) {
  if (canWrite() && numBytes > 0)
    m_data.writeBytes(static_cast<const OdUInt8*>(buffer), numBytes);
}

void OdDbDwgStreamFiler::wrInt8(OdInt8 value) {
  wrUInt8(static_cast<OdUInt8>(value));
}

void OdDbDwgStreamFiler::wrUInt8(OdUInt8 value) {
  if (canWrite())
    m_data.writeByte(value);
}

void OdDbDwgStreamFiler::wrInt16(OdInt16 value) {
  if (canWrite())
    writeBS(m_data, static_cast<OdUInt16>(value));
}

void OdDbDwgStreamFiler::wrInt32(OdInt32 value) {
  if (canWrite())
    writeBL(static_cast<OdUInt32>(value));
}

void OdDbDwgStreamFiler::wrInt64(OdInt64 value) {
  if (!canWrite())
    return;
  OdUInt64 bits = static_cast<OdUInt64>(value);
  if (value < 0 || bits > kMaxBllValue) {
    fail(eInvalidInput);
    bits = 0;
  }
  const unsigned byteCount = significantBytes(bits);
  m_data.writeBits(byteCount, 3);
  m_data.writeRawLE(bits, byteCount);
}

void OdDbDwgStreamFiler::wrDouble(double value) {
  if (canWrite())
    writeBD(value);
}

void OdDbDwgStreamFiler::wrDbHandle(const OdDbHandle& value) {
  if (canWrite())
    writeH(kHandleRef, value);
}

void OdDbDwgStreamFiler::wrSoftOwnershipId(const OdDbObjectId& id) {
  if (canWrite())
    writeH(kSoftOwnerRef, id.getHandle());
}

void OdDbDwgStreamFiler::wrHardOwnershipId(const OdDbObjectId& id) {
  if (canWrite())
    writeH(kHardOwnerRef, id.getHandle());
}

void OdDbDwgStreamFiler::wrSoftPointerId(const OdDbObjectId& id) {
  if (canWrite())
    writeH(kSoftPointerRef, id.getHandle());
}

void OdDbDwgStreamFiler::wrHardPointerId(const OdDbObjectId& id) {
  if (canWrite())
    writeH(kHardPointerRef, id.getHandle());
}

void OdDbDwgStreamFiler::wrPoint2d(const OdGePoint2d& value) {
  wrDouble(value.x);
  wrDouble(value.y);
}

void OdDbDwgStreamFiler::wrPoint3d(const OdGePoint3d& value) {
  wrDouble(value.x);
  wrDouble(value.y);
  wrDouble(value.z);
}

void OdDbDwgStreamFiler::wrVector2d(const OdGeVector2d& value) {
  wrDouble(value.x);
  wrDouble(value.y);
}

void OdDbDwgStreamFiler::wrVector3d(const OdGeVector3d& value) {
  wrDouble(value.x);
  wrDouble(value.y);
  wrDouble(value.z);
}

void OdDbDwgStreamFiler::wrScale3d(const OdGeScale3d& value) {
  wrDouble(value.sx);
  wrDouble(value.sy);
  wrDouble(value.sz);
}

void OdDbDwgStreamFiler::wrCmColor(const OdCmColor& color) {
  if (!canWrite())
    return;
  const OdString colorName = color.colorName();
  const OdString bookName = color.bookName();
  OdUInt8 flags = 0;
  if (!colorName.isEmpty())
    flags |= kColorNameFollows;
  if (!bookName.isEmpty())
    flags |= kBookNameFollows;
  // The index is written 0: from R2004 on the packed value alone says what the colour is.
  writeBS(m_data, 0);
  writeBL(color.color());
  m_data.writeByte(flags);
  if (flags & kColorNameFollows)
    writeTU(colorName);
  if (flags & kBookNameFollows)
    writeTU(bookName);
}
