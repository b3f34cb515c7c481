#include "DbBitStream.h"

#include <cstring>

void OdDbBitStream::clear() {
  m_bytes.clear();
  m_bitSize = 0;
  m_position = 0;
}

void OdDbBitStream::assign(const OdUInt8Array& bytes, OdUInt64 bitSize) {
  const OdUInt64 available = static_cast<OdUInt64>(bytes.size()) * 8;
  m_bitSize = bitSize < available ? bitSize : available;
  m_position = 0;
  // Keep the invariant the writer relies on: exactly the bytes that hold bitSize bits, with the
  // unused low bits of the last byte zero, so appending continues right after the last bit.
  m_bytes = bytes;
  m_bytes.resize(static_cast<OdUInt8Array::size_type>((m_bitSize + 7) / 8));
  const unsigned tail = static_cast<unsigned>(m_bitSize & 7);
  if (tail != 0)
    m_bytes.asArrayPtr()[m_bitSize >> 3] &= static_cast<OdUInt8>(0xFFu << (8 - tail));
}

bool OdDbBitStream::setPosition(OdUInt64 bitPosition) {
  if (bitPosition > m_bitSize)
    return false;
  m_position = bitPosition;
  return true;
}

void OdDbBitStream::writeBit(bool bit) {
  const unsigned offset = static_cast<unsigned>(m_bitSize & 7);
  if (offset == 0)
    m_bytes.push_back(0);
  if (bit)
    m_bytes.asArrayPtr()[m_bitSize >> 3] |= static_cast<OdUInt8>(0x80u >> offset);
  ++m_bitSize;
}

void OdDbBitStream::writeBits(OdUInt32 value, unsigned count) {
  // Bits above the 32 a value has are zeros.
  for (; count > 32; --count)
    writeBit(false);
  // As many bits at a time as the current byte has room for, most significant first.
  while (count > 0) {
    const unsigned offset = static_cast<unsigned>(m_bitSize & 7);
    if (offset == 0)
      m_bytes.push_back(0);
    const unsigned room = 8 - offset;
    const unsigned take = count < room ? count : room;
    const OdUInt32 chunk = (value >> (count - take)) & ((1u << take) - 1u);
    m_bytes.asArrayPtr()[m_bitSize >> 3] |= static_cast<OdUInt8>(chunk << (room - take));
    m_bitSize += take;
    count -= take;
  }
}

void OdDbBitStream::writeByte(OdUInt8 value) {
  const unsigned offset = static_cast<unsigned>(m_bitSize & 7);
  if (offset == 0) {
    m_bytes.push_back(value);
  } else {
    // The byte straddles two bytes: its high bits end the current one, its low bits start the
    // next.
    m_bytes.asArrayPtr()[m_bitSize >> 3] |= static_cast<OdUInt8>(value >> offset);
    m_bytes.push_back(static_cast<OdUInt8>(value << (8 - offset)));
  }
  m_bitSize += 8;
}

void OdDbBitStream::writeRawLE(OdUInt64 value, unsigned byteCount) {
  OdUInt8 bytes[8];
  const unsigned count = byteCount < 8 ? byteCount : 8;
  for (unsigned i = 0; i < count; ++i)
    bytes[i] = static_cast<OdUInt8>(value >> (8 * i));
  writeBytes(bytes, count);
}

void OdDbBitStream::writeBytes(const OdUInt8* bytes, std::size_t count) {
  if (count == 0)
    return;
  const unsigned offset = static_cast<unsigned>(m_bitSize & 7);
  m_bitSize += 8 * static_cast<OdUInt64>(count);
  if (offset == 0) {
    // On a byte boundary the bytes go over as they are; the few of one value one by one,
    // which is cheaper than growing and then filling.
    if (count <= 16) {
      for (std::size_t i = 0; i < count; ++i)
        m_bytes.push_back(bytes[i]);
      return;
    }
    const OdUInt8Array::size_type at = m_bytes.size();
    m_bytes.resize(static_cast<OdUInt8Array::size_type>(at + count));
    std::memcpy(m_bytes.asArrayPtr() + at, bytes, count);
    return;
  }
  // Each byte straddles two: its high bits end the current byte, its low bits start the next,
  // so each new byte holds the low bits of one and the high bits of the one after it.
  m_bytes.asArrayPtr()[m_bytes.size() - 1] |= static_cast<OdUInt8>(bytes[0] >> offset);
  const unsigned back = 8 - offset;
  for (std::size_t i = 0; i + 1 < count; ++i)
    m_bytes.push_back(static_cast<OdUInt8>((bytes[i] << back) | (bytes[i + 1] >> offset)));
  m_bytes.push_back(static_cast<OdUInt8>(bytes[count - 1] << back));
}

bool OdDbBitStream::takeBit() {
  const OdUInt8 byte = m_bytes.asArrayPtr()[m_position >> 3];
  const bool bit = ((byte >> (7 - (m_position & 7))) & 1u) != 0;
  ++m_position;
  return bit;
}

OdUInt8 OdDbBitStream::takeByte() {
  const OdUInt8* data = m_bytes.asArrayPtr();
  const unsigned offset = static_cast<unsigned>(m_position & 7);
  const OdUInt64 index = m_position >> 3;
  OdUInt8 value = data[index];
  if (offset != 0) {
    // has(8) guarantees the next byte exists whenever the value straddles into it.
    value = static_cast<OdUInt8>((value << offset) | (data[index + 1] >> (8 - offset)));
  }
  m_position += 8;
  return value;
}

bool OdDbBitStream::readBit(bool& bit) {
  if (!has(1))
    return false;
  bit = takeBit();
  return true;
}

bool OdDbBitStream::readBits(unsigned count, OdUInt32& value) {
  if (count > 32 || !has(count))
    return false;
  OdUInt32 result = 0;
  for (unsigned i = 0; i < count; ++i)
    result = (result << 1) | (takeBit() ? 1u : 0u);
  value = result;
  return true;
}

bool OdDbBitStream::readByte(OdUInt8& value) {
  if (!has(8))
    return false;
  value = takeByte();
  return true;
}

bool OdDbBitStream::readRawLE(unsigned byteCount, OdUInt64& value) {
  if (byteCount > 8 || !has(8ull * byteCount))
    return false;
  OdUInt64 result = 0;
  for (unsigned i = 0; i < byteCount; ++i)
    result |= static_cast<OdUInt64>(takeByte()) << (8 * i);
  value = result;
  return true;
}

bool OdDbBitStream::readBytes(OdUInt8* bytes, std::size_t count) {
  if (count > remainingBits() / 8)
    return false;
  for (std::size_t i = 0; i < count; ++i)
    bytes[i] = takeByte();
  return true;
}
