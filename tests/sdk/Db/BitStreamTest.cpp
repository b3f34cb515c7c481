#include "DbBitStream.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Runs of bytes written after 0..7 leading bits must read back unchanged, whatever their
// length (single values and long runs take different paths), and leave exactly the bytes
// that hold the bits, with the unused low bits of the last byte zero.
TEST(BitStream, WriteBytesAtEveryBitOffset) {
  for (unsigned lead = 0; lead < 8; ++lead) {
    for (std::size_t count : {std::size_t(0), std::size_t(1), std::size_t(2), std::size_t(8),
                              std::size_t(16), std::size_t(17), std::size_t(300)}) {
      SCOPED_TRACE(testing::Message() << "lead " << lead << ", count " << count);
      std::vector<OdUInt8> bytes(count);
      for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<OdUInt8>(i * 37 + 0x5A + lead);
      OdDbBitStream stream;
      // A leading pattern of ones, so a byte written over it instead of after it shows.
      stream.writeBits((1u << lead) - 1u, lead);
      stream.writeBytes(bytes.data(), count);
      // Another value after the run, which must start right after its last bit.
      stream.writeBits(0x5, 3);

      const OdUInt64 bits = lead + 8 * static_cast<OdUInt64>(count) + 3;
      ASSERT_EQ(stream.bitSize(), bits);
      ASSERT_EQ(static_cast<OdUInt64>(stream.bytes().size()), (bits + 7) / 8);
      const unsigned tail = static_cast<unsigned>(bits & 7);
      if (tail != 0) {
        EXPECT_EQ(stream.bytes()[stream.bytes().size() - 1] & (0xFFu >> tail), 0u);
      }

      OdUInt32 head = 0;
      ASSERT_TRUE(stream.readBits(lead, head));
      EXPECT_EQ(head, (1u << lead) - 1u);
      std::vector<OdUInt8> back(count);
      ASSERT_TRUE(stream.readBytes(back.data(), count));
      EXPECT_EQ(back, bytes);
      OdUInt32 after = 0;
      ASSERT_TRUE(stream.readBits(3, after));
      EXPECT_EQ(after, 0x5u);
      EXPECT_EQ(stream.remainingBits(), 0u);
    }
  }
}

// Little-endian raw values at an odd offset: the bytes come back in order and as a value.
TEST(BitStream, RawLittleEndianAfterOddBits) {
  OdDbBitStream stream;
  stream.writeBits(0x2, 2);
  stream.writeRawLE(0x0123456789ABCDEFull, 8);
  stream.writeRawLE(0xBEEF, 2);
  OdUInt32 lead = 0;
  OdUInt64 first = 0;
  OdUInt64 second = 0;
  ASSERT_TRUE(stream.readBits(2, lead));
  ASSERT_TRUE(stream.readRawLE(8, first));
  ASSERT_TRUE(stream.readRawLE(2, second));
  EXPECT_EQ(lead, 0x2u);
  EXPECT_EQ(first, 0x0123456789ABCDEFull);
  EXPECT_EQ(second, 0xBEEFu);
  EXPECT_EQ(stream.bitSize(), 2u + 80u);
}

} // namespace
