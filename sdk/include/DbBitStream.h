#ifndef OD_DB_BIT_STREAM_H
#define OD_DB_BIT_STREAM_H

/// A growable buffer of bits in DWG order: bits fill each byte from the most significant bit
/// down, and multi-byte raw values are stored least significant byte first at whatever bit
/// offset they start. Writing appends at the end; reading consumes from a separate cursor and
/// never passes the end: a read that the remaining bits cannot satisfy fails and moves nothing.

#include "OdArray.h"
#include "OdaCommon.h"

class OdDbBitStream {
public:
  /// Empties the stream and puts the read cursor at its start.
  void clear();
  /// Takes bytes to read from. A bitSize beyond what the bytes hold is cut to their length, so
  /// the stream never claims bits it does not have; bytes past bitSize are dropped.
  void assign(const OdUInt8Array& bytes, OdUInt64 bitSize);

  /// The bytes that hold bitSize() bits; the unused low bits of the last byte are zero.
  const OdUInt8Array& bytes() const { return m_bytes; }
  OdUInt64 bitSize() const { return m_bitSize; }
  OdUInt64 position() const { return m_position; }
  /// Moves the read cursor; false (and no move) for a position past the end.
  bool setPosition(OdUInt64 bitPosition);
  OdUInt64 remainingBits() const { return m_bitSize - m_position; }

  void writeBit(bool bit);
  /// The low `count` bits of value, most significant first; count is at most 32.
  void writeBits(OdUInt32 value, unsigned count);
  void writeByte(OdUInt8 value);
  /// The low byteCount bytes of value, least significant first; byteCount is at most 8.
  void writeRawLE(OdUInt64 value, unsigned byteCount);
  void writeBytes(const OdUInt8* bytes, std::size_t count);

  bool readBit(bool& bit);
  bool readBits(unsigned count, OdUInt32& value);
  bool readByte(OdUInt8& value);
  bool readRawLE(unsigned byteCount, OdUInt64& value);
  bool readBytes(OdUInt8* bytes, std::size_t count);

private:
  bool has(OdUInt64 bits) const { return bits <= remainingBits(); }
  bool takeBit();
  OdUInt8 takeByte();

  OdUInt8Array m_bytes;
  OdUInt64 m_bitSize = 0;
  OdUInt64 m_position = 0;
};

#endif
