#ifndef OD_DB_FILER_H
#define OD_DB_FILER_H

/// The filer interfaces through which database objects save and restore their fields: one
/// DWG-shaped (typed binary values in a fixed order) and one DXF-shaped (group code / value
/// pairs). Objects are written against these interfaces only, so the same dwgOutFields serves
/// copies, clones, undo and drawing files.

#include "DbObjectId.h"
#include "OdResult.h"
#include "RxObject.h"

class OdDbDatabase;
class OdCmColor;
class OdGePoint2d;
class OdGePoint3d;
class OdGeVector2d;
class OdGeVector3d;
class OdGeScale3d;

namespace OdDb {
/// Origin of OdDbDwgFiler::seek offsets.
enum FilerSeekType { kSeekFromStart = 0, kSeekFromCurrent = 1, kSeekFromEnd = 2 };
} // namespace OdDb

/// The base of every filer: what it files for, for which database, and whether it has failed.
class OdDbFiler : public OdRxObject {
  ODRX_DECLARE_MEMBERS(OdDbFiler);

  /// Why an object is being filed; objects may file less (or more) for some purposes.
  enum FilerType {
    kFileFiler = 0,
    kCopyFiler = 1,
    kUndoFiler = 2,
    kBagFiler = 3,
    kIdXlateFiler = 4,
    kPageFiler = 5,
    kDeepCloneFiler = 6,
    kIdFiler = 7,
    kPurgeFiler = 8,
    kWblockCloneFiler = 9
  };

  /// The DWG format version written by this platform: 33 is AC1032.
  static constexpr int kCurrentDwgVersion = 33;

  /// The database whose ids are filed; null when ids cannot be resolved.
  virtual OdDbDatabase* database() const = 0;
  virtual FilerType filerType() const = 0;
  /// eOk until a read or write fails; the first failure sticks until resetFilerStatus, so a
  /// reader may check once after reading all of its fields.
  virtual OdResult filerStatus() const;
  virtual void resetFilerStatus();
  /// The format version of the filed data (kCurrentDwgVersion unless a filer says otherwise),
  /// so objects can refuse data of a version they do not read. The maintenance release goes
  /// through maintVer when given.
  virtual int dwgVersion(int* maintVer = nullptr) const;
};

/// Typed binary filing in DWG order. Every wr call has a matching rd call, and an object
/// reads its fields in the order it wrote them.
class OdDbDwgFiler : public OdDbFiler {
  ODRX_DECLARE_MEMBERS(OdDbDwgFiler);

  /// Moves the read position of the main (data) stream, in bits; seekType is one of
  /// OdDb::FilerSeekType. A filer that cannot seek sets an error status.
  virtual void seek(OdInt64 offset, int seekType) = 0;
  /// Current position in the main (data) stream, in bits.
  virtual OdUInt64 tell() const = 0;

  virtual bool rdBool() = 0;
  virtual OdString rdString() = 0;
  /// Fills buffer with numBytes raw bytes (zeros when the stream cannot supply them).
  virtual void rdBytes(void* buffer, OdUInt32 numBytes) = 0;
  virtual OdInt8 rdInt8() = 0;
  virtual OdUInt8 rdUInt8() = 0;
  virtual OdInt16 rdInt16() = 0;
  virtual OdInt32 rdInt32() = 0;
  virtual OdInt64 rdInt64() = 0;
  virtual double rdDouble() = 0;
  virtual OdDbHandle rdDbHandle() = 0;
  virtual OdDbObjectId rdSoftOwnershipId() = 0;
  virtual OdDbObjectId rdHardOwnershipId() = 0;
  virtual OdDbObjectId rdHardPointerId() = 0;
  virtual OdDbObjectId rdSoftPointerId() = 0;
  virtual OdGePoint2d rdPoint2d() = 0;
  virtual OdGePoint3d rdPoint3d() = 0;
  virtual OdGeVector2d rdVector2d() = 0;
  virtual OdGeVector3d rdVector3d() = 0;
  virtual OdGeScale3d rdScale3d() = 0;
  /// Replaces color's value and names with the ones read.
  virtual void rdCmColor(OdCmColor& color) = 0;

  virtual void wrBool(bool value) = 0;
  virtual void wrString(const OdString& value) = 0;
  virtual void wrBytes(const void* buffer, OdUInt32 numBytes) = 0;
  virtual void wrInt8(OdInt8 value) = 0;
  virtual void wrUInt8(OdUInt8 value) = 0;
  virtual void wrInt16(OdInt16 value) = 0;
  virtual void wrInt32(OdInt32 value) = 0;
  virtual void wrInt64(OdInt64 value) = 0;
  virtual void wrDouble(double value) = 0;
  virtual void wrDbHandle(const OdDbHandle& value) = 0;
  /// Ownership ids name objects this one owns (copied and erased with it); pointer ids only
  /// refer. Hard references keep the target alive through purge and wblock.
  virtual void wrSoftOwnershipId(const OdDbObjectId& id) = 0;
  virtual void wrHardOwnershipId(const OdDbObjectId& id) = 0;
  virtual void wrSoftPointerId(const OdDbObjectId& id) = 0;
  virtual void wrHardPointerId(const OdDbObjectId& id) = 0;
  virtual void wrPoint2d(const OdGePoint2d& value) = 0;
  virtual void wrPoint3d(const OdGePoint3d& value) = 0;
  virtual void wrVector2d(const OdGeVector2d& value) = 0;
  virtual void wrVector3d(const OdGeVector3d& value) = 0;
  virtual void wrScale3d(const OdGeScale3d& value) = 0;
  virtual void wrCmColor(const OdCmColor& color) = 0;
};

/// Group-code filing for DXF. Reading walks the items of one object: nextItem() gives the
/// group code of the next item, then the rd call of that code's value type reads its value.
class OdDbDxfFiler : public OdDbFiler {
  ODRX_DECLARE_MEMBERS(OdDbDxfFiler);

  /// Precision argument meaning "the filer's own precision()".
  static constexpr int kDfltPrec = -1;
  static constexpr int kMaxPrec = 16;

  /// Advances to the next item and returns its group code.
  virtual int nextItem() = 0;
  /// Makes the item just read by nextItem() the next one again, so a reader can stop at an
  /// item that belongs to someone else.
  virtual void pushBackItem() = 0;
  virtual bool atEOF() = 0;
  /// True (and the marker consumed) when the next item is `100 subClassName`.
  virtual bool atSubclassData(const OdString& subClassName) = 0;
  /// True when the current object has no more items.
  virtual bool atEndOfObject() = 0;

  virtual OdString rdString() = 0;
  virtual bool rdBool() = 0;
  virtual OdInt8 rdInt8() = 0;
  virtual OdInt16 rdInt16() = 0;
  virtual OdInt32 rdInt32() = 0;
  virtual OdInt64 rdInt64() = 0;
  virtual double rdDouble() = 0;
  virtual void rdPoint2d(OdGePoint2d& value) = 0;
  virtual void rdPoint3d(OdGePoint3d& value) = 0;
  virtual void rdVector2d(OdGeVector2d& value) = 0;
  virtual void rdVector3d(OdGeVector3d& value) = 0;
  virtual OdDbHandle rdHandle() = 0;
  virtual OdDbObjectId rdObjectId() = 0;
  /// Appends the bytes of the current binary item (a 310-style hex line) to data.
  virtual void rdBinaryChunk(OdUInt8Array& data) = 0;

  virtual void wrString(int groupCode, const OdString& value) = 0;
  virtual void wrBool(int groupCode, bool value) = 0;
  virtual void wrInt8(int groupCode, OdInt8 value) = 0;
  virtual void wrInt16(int groupCode, OdInt16 value) = 0;
  virtual void wrInt32(int groupCode, OdInt32 value) = 0;
  virtual void wrInt64(int groupCode, OdInt64 value) = 0;
  virtual void wrDouble(int groupCode, double value, int precision = kDfltPrec) = 0;
  /// An angle given in radians, written in degrees as DXF angles are.
  virtual void wrAngle(int groupCode, double radians, int precision = kDfltPrec);
  /// Writes x, y at groupCode and groupCode + 10.
  virtual void wrPoint2d(int groupCode, const OdGePoint2d& value, int precision = kDfltPrec) = 0;
  /// Writes x, y, z at groupCode, groupCode + 10 and groupCode + 20.
  virtual void wrPoint3d(int groupCode, const OdGePoint3d& value, int precision = kDfltPrec) = 0;
  virtual void wrVector2d(int groupCode, const OdGeVector2d& value, int precision = kDfltPrec) = 0;
  virtual void wrVector3d(int groupCode, const OdGeVector3d& value, int precision = kDfltPrec) = 0;
  virtual void wrHandle(int groupCode, const OdDbHandle& value) = 0;
  /// The handle of id's object; a null id is written as handle 0.
  virtual void wrObjectId(int groupCode, const OdDbObjectId& id) = 0;
  /// Writes `100 subClassName`, which opens the data of one class of the object.
  virtual void wrSubclassMarker(const OdString& subClassName) = 0;
  /// Writes numBytes of binary data as one or more hex items of groupCode.
  virtual void wrBinaryChunk(int groupCode, const OdUInt8* buffer, OdUInt32 numBytes) = 0;

  /// Significant digits for doubles written with kDfltPrec.
  virtual int precision() const = 0;
  /// True when values equal to their defaults must be written too (not only changed ones).
  virtual bool includesDefaultValues() const = 0;
};

// The filer types under the names the SDK also gives them (OdDb::kCopyFiler).
namespace OdDb {
typedef OdDbFiler::FilerType FilerType;
constexpr FilerType kFileFiler = OdDbFiler::kFileFiler;
constexpr FilerType kCopyFiler = OdDbFiler::kCopyFiler;
constexpr FilerType kUndoFiler = OdDbFiler::kUndoFiler;
constexpr FilerType kBagFiler = OdDbFiler::kBagFiler;
constexpr FilerType kIdXlateFiler = OdDbFiler::kIdXlateFiler;
constexpr FilerType kPageFiler = OdDbFiler::kPageFiler;
constexpr FilerType kDeepCloneFiler = OdDbFiler::kDeepCloneFiler;
constexpr FilerType kIdFiler = OdDbFiler::kIdFiler;
constexpr FilerType kPurgeFiler = OdDbFiler::kPurgeFiler;
constexpr FilerType kWblockCloneFiler = OdDbFiler::kWblockCloneFiler;
} // namespace OdDb

typedef OdSmartPtr<OdDbFiler> OdDbFilerPtr;
typedef OdSmartPtr<OdDbDwgFiler> OdDbDwgFilerPtr;
typedef OdSmartPtr<OdDbDxfFiler> OdDbDxfFilerPtr;

#endif
