#ifndef OD_DB_DWG_STREAM_FILER_H
#define OD_DB_DWG_STREAM_FILER_H

/// The platform's DWG filer: it writes each value in the bit code the DWG format (R2007 and
/// later) uses for it and keeps the three streams of an object apart, as a drawing file or a
/// DXF proxy holds them:
///
///   data     B (wrBool), RC (wrInt8, wrUInt8, wrBytes), BS (wrInt16), BL (wrInt32),
///            BLL (wrInt64), BD (wrDouble), 2BD (points and vectors in 2D), 3BD (in 3D and
///            scales), CMC (wrCmColor: BS index 0, BL packed colour, RC name flags)
///   strings  TU: BS count of UTF-16 units, then the units little-endian (wrString and the
///            names of a CMC)
///   handles  H: one byte with the reference code in the high nibble and the byte count in the
///            low nibble, then the handle bytes most significant first
///
/// A filer is either writing (after construction and openForWrite) or reading (after
/// openForRead and rewind). Reading never runs past the end of a stream: a short or malformed
/// stream sets filerStatus() and every read from then on returns zero, empty or null without
/// consuming anything, so a reader may check the status once after its last field.
///
/// A value a wr call cannot encode (a string of more than 65535 units, an Int64 outside
/// 0 .. 2^56 - 1) is refused: the status becomes eInvalidInput and the field's zero value is
/// written instead, which keeps the stream in step with its reader.

#include "DbBitStream.h"
#include "DbFiler.h"

class OdDbDwgStreamFiler : public OdDbDwgFiler {
public:
  /// Reference codes of H values; a DXF proxy turns 2..5 into group codes 350, 360, 330, 340.
  enum ReferenceCode {
    kHandleRef = 0, ///< wrDbHandle: a plain handle, such as an object's own
    kSoftOwnerRef = 2,
    kHardOwnerRef = 3,
    kSoftPointerRef = 4,
    kHardPointerRef = 5
  };

  OdDbDwgStreamFiler();
  ~OdDbDwgStreamFiler() override;

  /// Empties the three streams and starts writing. db resolves nothing while writing (ids are
  /// written by their handles) but is what database() reports.
  void openForWrite(OdDbDatabase* db = nullptr, FilerType type = kFileFiler);
  /// Starts reading copies of the three streams. Each bit size is exact (a stream need not end
  /// on a byte); one larger than its buffer holds is cut to the buffer. With a database, ids
  /// read are resolved through it (creating ids for handles it does not know yet); without
  /// one they come back null and the handle is left in lastReadHandle().
  void openForRead(const OdUInt8Array& data, OdUInt64 dataBits, const OdUInt8Array& strings,
                   OdUInt64 stringBits, const OdUInt8Array& handles, OdUInt64 handleBits,
                   OdDbDatabase* db = nullptr, FilerType type = kFileFiler);
  /// Switches to reading from the start of all three streams and clears the status, so what
  /// was just written can be read back (copies, clones, undo).
  void rewind();
  bool isReading() const { return m_reading; }

  /// The version dwgVersion() reports; the data itself is the same for every version.
  void setDwgVersion(int version, int maintVersion = 0);

  const OdUInt8Array& dataBuffer() const { return m_data.bytes(); }
  OdUInt64 dataBitSize() const { return m_data.bitSize(); }
  const OdUInt8Array& stringBuffer() const { return m_strings.bytes(); }
  OdUInt64 stringBitSize() const { return m_strings.bitSize(); }
  const OdUInt8Array& handleBuffer() const { return m_handles.bytes(); }
  OdUInt64 handleBitSize() const { return m_handles.bitSize(); }

  /// Unread bits of each stream. A reader that reads a count (of vertices, say) compares it
  /// with these before allocating for it.
  OdUInt64 remainingDataBits() const { return m_data.remainingBits(); }
  OdUInt64 remainingStringBits() const { return m_strings.remainingBits(); }
  OdUInt64 remainingHandleBits() const { return m_handles.remainingBits(); }

  /// The handle and reference code of the last H read, also when no id could be made of it
  /// (no database). rdDbHandle accepts any code, so a proxy can walk its handle stream as
  /// (code, handle) pairs.
  OdDbHandle lastReadHandle() const { return m_lastHandle; }
  int lastReadHandleCode() const { return m_lastHandleCode; }

  // OdDbFiler
  OdDbDatabase* database() const override { return m_database; }
  FilerType filerType() const override { return m_filerType; }
  OdResult filerStatus() const override { return m_status; }
  void resetFilerStatus() override { m_status = eOk; }
  int dwgVersion(int* maintVer = nullptr) const override;

  // OdDbDwgFiler
  /// Reading only: moves the data-stream read position to offset bits from the start
  /// (kSeekFromStart), from the current position (kSeekFromCurrent) or from the end
  /// (kSeekFromEnd, offset <= 0). A target outside the stream sets eInvalidInput; seeking
  /// while writing, or another seekType, sets eNotApplicable. The string and handle streams
  /// keep their positions.
  void seek(OdInt64 offset, int seekType) override;
  /// The data-stream read position while reading, its bit size while writing.
  OdUInt64 tell() const override;

  bool rdBool() override;
  OdString rdString() override;
  void rdBytes(void* buffer, OdUInt32 numBytes) override;
  OdInt8 rdInt8() override;
  OdUInt8 rdUInt8() override;
  OdInt16 rdInt16() override;
  OdInt32 rdInt32() override;
  OdInt64 rdInt64() override;
  double rdDouble() override;
  /// An H of any reference code (see lastReadHandleCode()).
  OdDbHandle rdDbHandle() override;
  /// The typed id readers expect the code their writer used; another code means the reader's
  /// fields are out of step with the writer's and sets eDwgObjectImproperlyRead.
  OdDbObjectId rdSoftOwnershipId() override;
  OdDbObjectId rdHardOwnershipId() override;
  OdDbObjectId rdHardPointerId() override;
  OdDbObjectId rdSoftPointerId() override;
  OdGePoint2d rdPoint2d() override;
  OdGePoint3d rdPoint3d() override;
  OdGeVector2d rdVector2d() override;
  OdGeVector3d rdVector3d() override;
  OdGeScale3d rdScale3d() override;
  /// The packed value carries the colour; the BS index is used only when the packed value has
  /// no method byte (data from a writer that kept the colour in the index). A packed value or
  /// index OdCmColor refuses, or a book name without a colour name, sets
  /// eDwgObjectImproperlyRead; color is left as it was when the read fails.
  void rdCmColor(OdCmColor& color) override;

  void wrBool(bool value) override;
  void wrString(const OdString& value) override;
  void wrBytes(const void* buffer, OdUInt32 numBytes) override;
  void wrInt8(OdInt8 value) override;
  void wrUInt8(OdUInt8 value) override;
  void wrInt16(OdInt16 value) override;
  void wrInt32(OdInt32 value) override;
  /// BLL: a 3-bit byte count, then that many bytes little-endian. Seven bytes at most, so
  /// negative values and values from 2^56 on are refused (see above).
  void wrInt64(OdInt64 value) override;
  void wrDouble(double value) override;
  /// Writes code 0 (kHandleRef).
  void wrDbHandle(const OdDbHandle& value) override;
  void wrSoftOwnershipId(const OdDbObjectId& id) override;
  void wrHardOwnershipId(const OdDbObjectId& id) override;
  void wrSoftPointerId(const OdDbObjectId& id) override;
  void wrHardPointerId(const OdDbObjectId& id) override;
  void wrPoint2d(const OdGePoint2d& value) override;
  void wrPoint3d(const OdGePoint3d& value) override;
  void wrVector2d(const OdGeVector2d& value) override;
  void wrVector3d(const OdGeVector3d& value) override;
  void wrScale3d(const OdGeScale3d& value) override;
  void wrCmColor(const OdCmColor& color) override;

private:
  bool canRead();
  bool canWrite();
  void fail(OdResult status);

  bool readBS(OdDbBitStream& stream, OdUInt16& value);
  bool readBL(OdUInt32& value);
  bool readBD(double& value);
  bool readTU(OdString& value);
  bool readH(int& code, OdDbHandle& handle);
  OdDbObjectId readId(int expectedCode);
  OdDbObjectId idFromHandle(const OdDbHandle& handle) const;

  void writeBS(OdDbBitStream& stream, OdUInt16 value);
  void writeBL(OdUInt32 value);
  void writeBD(double value);
  void writeTU(const OdString& value);
  void writeH(int code, const OdDbHandle& handle);

  OdDbBitStream m_data;
  OdDbBitStream m_strings;
  OdDbBitStream m_handles;
  OdDbDatabase* m_database = nullptr;
  FilerType m_filerType = kFileFiler;
  OdResult m_status = eOk;
  bool m_reading = false;
  int m_version = kCurrentDwgVersion;
  int m_maintVersion = 0;
  OdDbHandle m_lastHandle;
  int m_lastHandleCode = 0;
};

#endif
