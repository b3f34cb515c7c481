#include "DbDwgStreamFiler.h"

#include "DbDatabase.h"

#include "Ge/GePoint3d.h"
#include "Ge/GeScale3d.h"
#include "Ge/GeVector2d.h"
#include "sdk/SdkTestSupport.h"

#include <cfloat>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

// The first bitCount bits of bytes as '0'/'1' characters, most significant bit of each byte
// first, which is the order the format defines.
std::string bitString(const OdUInt8Array& bytes, OdUInt64 bitCount) {
  std::string bits;
  for (OdUInt64 i = 0; i < bitCount; ++i)
    bits += ((bytes[static_cast<unsigned>(i / 8)] >> (7 - i % 8)) & 1) ? '1' : '0';
  return bits;
}

// Removes the spaces that group the expected bits for reading.
std::string compact(const std::string& spaced) {
  std::string bits;
  for (char c : spaced)
    if (c != ' ')
      bits += c;
  return bits;
}

OdUInt64 bitsOf(double value) {
  OdUInt64 bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

double doubleFromBits(OdUInt64 bits) {
  double value = 0.0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

// Reads back what filer holds, through a second filer opened on copies of its streams, so the
// buffers and bit sizes are what is tested rather than the writer's internal cursors.
void reopen(const DwgFiler& written, DwgFiler& reader) {
  reader.openForRead(written.dataBuffer(), written.dataBitSize(), written.stringBuffer(),
                     written.stringBitSize(), written.handleBuffer(), written.handleBitSize());
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Exact encodings

struct EncodingCase {
  const char* name;
  std::function<void(OdDbDwgFiler&)> write;
  const char* dataBits;
};

TEST(DwgStreamFilerTest, DataBitCodesMatchTheFormat) {
  const std::vector<EncodingCase> cases = {
      {"B 1", [](OdDbDwgFiler& f) { f.wrBool(true); }, "1"},
      {"B 0", [](OdDbDwgFiler& f) { f.wrBool(false); }, "0"},
      {"RC A5", [](OdDbDwgFiler& f) { f.wrUInt8(0xA5); }, "10100101"},
      {"RC -1", [](OdDbDwgFiler& f) { f.wrInt8(-1); }, "11111111"},
      {"BS 0", [](OdDbDwgFiler& f) { f.wrInt16(0); }, "10"},
      {"BS 256", [](OdDbDwgFiler& f) { f.wrInt16(256); }, "11"},
      {"BS 1", [](OdDbDwgFiler& f) { f.wrInt16(1); }, "01 00000001"},
      {"BS 255", [](OdDbDwgFiler& f) { f.wrInt16(255); }, "01 11111111"},
      {"BS 257", [](OdDbDwgFiler& f) { f.wrInt16(257); }, "00 00000001 00000001"},
      {"BS 0x1234", [](OdDbDwgFiler& f) { f.wrInt16(0x1234); }, "00 00110100 00010010"},
      {"BS -1", [](OdDbDwgFiler& f) { f.wrInt16(-1); }, "00 11111111 11111111"},
      {"BS -32768", [](OdDbDwgFiler& f) { f.wrInt16(-32768); }, "00 00000000 10000000"},
      {"BL 0", [](OdDbDwgFiler& f) { f.wrInt32(0); }, "10"},
      {"BL 255", [](OdDbDwgFiler& f) { f.wrInt32(255); }, "01 11111111"},
      {"BL 256", [](OdDbDwgFiler& f) { f.wrInt32(256); }, "00 00000000 00000001 00000000 00000000"},
      {"BL -2", [](OdDbDwgFiler& f) { f.wrInt32(-2); }, "00 11111110 11111111 11111111 11111111"},
      {"BD 1.0", [](OdDbDwgFiler& f) { f.wrDouble(1.0); }, "01"},
      {"BD 0.0", [](OdDbDwgFiler& f) { f.wrDouble(0.0); }, "10"},
      {"BD -0.0", [](OdDbDwgFiler& f) { f.wrDouble(-0.0); },
       "00 00000000 00000000 00000000 00000000 00000000 00000000 00000000 10000000"},
      {"BD 1.5", [](OdDbDwgFiler& f) { f.wrDouble(1.5); },
       "00 00000000 00000000 00000000 00000000 00000000 00000000 11111000 00111111"},
      {"3BD", [](OdDbDwgFiler& f) { f.wrPoint3d(OdGePoint3d(1.0, 0.0, 1.0)); }, "01 10 01"},
      {"2BD", [](OdDbDwgFiler& f) { f.wrVector2d(OdGeVector2d(0.0, 1.0)); }, "10 01"},
      {"scale", [](OdDbDwgFiler& f) { f.wrScale3d(OdGeScale3d(1.0, 1.0, 0.0)); }, "01 01 10"},
      {"BLL 0", [](OdDbDwgFiler& f) { f.wrInt64(0); }, "000"},
      {"BLL 0x0102", [](OdDbDwgFiler& f) { f.wrInt64(0x0102); }, "010 00000010 00000001"},
      // A raw value after one bit straddles bytes but keeps its byte order.
      {"B then RC",
       [](OdDbDwgFiler& f) {
         f.wrBool(true);
         f.wrUInt8(0x81);
       },
       "1 10000001"},
      {"bytes",
       [](OdDbDwgFiler& f) {
         const OdUInt8 raw[] = {0x01, 0xFE};
         f.wrBytes(raw, 2);
       },
       "00000001 11111110"},
  };
  for (const EncodingCase& c : cases) {
    DwgFiler filer;
    filer.openForWrite();
    c.write(filer);
    EXPECT_EQ(filer.filerStatus(), eOk) << c.name;
    EXPECT_EQ(bitString(filer.dataBuffer(), filer.dataBitSize()), compact(c.dataBits)) << c.name;
    EXPECT_EQ(filer.dataBuffer().size(), (filer.dataBitSize() + 7) / 8) << c.name;
    EXPECT_EQ(filer.stringBitSize(), 0u) << c.name;
    EXPECT_EQ(filer.handleBitSize(), 0u) << c.name;
  }
}

TEST(DwgStreamFilerTest, EachReferenceKindWritesItsCode) {
  struct Case {
    std::function<void(OdDbDwgFiler&)> write;
    OdUInt8 head;
  };
  // Ids without a database have the null handle, so the head byte carries the code alone.
  const std::vector<Case> cases = {
      {[](OdDbDwgFiler& f) { f.wrSoftOwnershipId(OdDbObjectId()); }, 0x20},
      {[](OdDbDwgFiler& f) { f.wrHardOwnershipId(OdDbObjectId()); }, 0x30},
      {[](OdDbDwgFiler& f) { f.wrSoftPointerId(OdDbObjectId()); }, 0x40},
      {[](OdDbDwgFiler& f) { f.wrHardPointerId(OdDbObjectId()); }, 0x50},
      {[](OdDbDwgFiler& f) { f.wrDbHandle(OdDbHandle(0x100)); }, 0x02},
  };
  for (const Case& c : cases) {
    DwgFiler filer;
    filer.openForWrite();
    c.write(filer);
    ASSERT_GE(filer.handleBuffer().size(), 1u);
    EXPECT_EQ(filer.handleBuffer()[0], c.head);
  }
}

// A reference to an object the drawing has not read yet gets an id for its handle, which the
// object takes when it arrives.
TEST(DwgStreamFilerTest, ReferencesAheadOfTheirObjectsGetIds) {
  OdDbDatabasePtr written = OdDbDatabase::createObject();
  DwgFiler out;
  out.openForWrite();
  out.wrHardPointerId(written->getOdDbObjectId(OdDbHandle(0x7A31), true));
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  DwgFiler in;
  in.openForRead(out.dataBuffer(), out.dataBitSize(), out.stringBuffer(), out.stringBitSize(),
                 out.handleBuffer(), out.handleBitSize(), db);
  const OdDbObjectId id = in.rdHardPointerId();
  ASSERT_FALSE(id.isNull());
  EXPECT_EQ(id.getHandle(), OdDbHandle(0x7A31));
  EXPECT_EQ(db->getOdDbObjectId(OdDbHandle(0x7A31)), id);
}

// ---------------------------------------------------------------------------------------------
// Round trips. Every value is written twice, once byte-aligned and once one bit off, so raw
// values that straddle bytes are covered.

TEST(DwgStreamFilerTest, NumbersRoundTripAtTheirBoundariesBitForBit) {
  const std::vector<OdInt16> shorts = {0, 1, 255, 256, 257, -1, 32767, -32768};
  const std::vector<OdInt32> longs = {0, 1, 255, 256, 257, -1, 65535, 65536, INT32_MIN, INT32_MAX};
  const std::vector<OdInt64> longLongs = {0, 1, 255, 256, 0x123456789ABCll, (OdInt64(1) << 56) - 1};
  const double inf = std::numeric_limits<double>::infinity();
  // NaNs keep their payload and their quiet or signalling kind.
  const double quiet = doubleFromBits(0x7FF8000000000001ull);
  const double signalling = doubleFromBits(0xFFF4000000000000ull);
  const std::vector<double> doubles = {
      0.0,         1.0,        -0.0,    1.5,  -1.0,
      quiet,       signalling, inf,     -inf, std::numeric_limits<double>::denorm_min(),
      DBL_MIN / 4, DBL_MAX,    -DBL_MAX};
  DwgFiler filer;
  filer.openForWrite();
  for (bool shift : {false, true}) {
    if (shift)
      filer.wrBool(true);
    for (int c = 0; c < 256; ++c)
      filer.wrUInt8(static_cast<OdUInt8>(c));
    filer.wrInt8(-128);
    for (OdInt16 v : shorts)
      filer.wrInt16(v);
    for (OdInt32 v : longs)
      filer.wrInt32(v);
    for (OdInt64 v : longLongs)
      filer.wrInt64(v);
    for (double v : doubles)
      filer.wrDouble(v);
  }
  ASSERT_EQ(filer.filerStatus(), eOk);

  DwgFiler reader;
  reopen(filer, reader);
  for (bool shift : {false, true}) {
    if (shift) {
      EXPECT_TRUE(reader.rdBool());
    }
    for (int c = 0; c < 256; ++c)
      EXPECT_EQ(reader.rdUInt8(), c);
    EXPECT_EQ(reader.rdInt8(), -128);
    for (OdInt16 v : shorts)
      EXPECT_EQ(reader.rdInt16(), v);
    for (OdInt32 v : longs)
      EXPECT_EQ(reader.rdInt32(), v);
    for (OdInt64 v : longLongs)
      EXPECT_EQ(reader.rdInt64(), v);
    for (double v : doubles)
      EXPECT_EQ(bitsOf(reader.rdDouble()), bitsOf(v)) << v;
  }
  EXPECT_EQ(reader.filerStatus(), eOk);
  EXPECT_EQ(reader.remainingDataBits(), 0u);
}

TEST(DwgStreamFilerTest, StringsRoundTripAsUtf16Units) {
  const std::vector<std::u16string> values = {
      u"",
      u"A",
      u"Line 1, \"quoted\" \t",
      u"坐标标注",
      u"\U0001F600 surrogate pair",
      std::u16string(1, u'\xD800'), // a lone high surrogate is kept as a code unit
      std::u16string(300, u'x'),    // a count that needs the full 16-bit BS
      std::u16string(u"a\0b", 3),   // embedded NUL
  };
  DwgFiler filer;
  filer.openForWrite();
  for (const std::u16string& s : values) {
    filer.wrString(OdString(s));
    filer.wrBool(true); // data in between must not disturb the string stream
  }
  filer.rewind();
  for (const std::u16string& s : values) {
    EXPECT_EQ(filer.rdString().str(), s);
    EXPECT_TRUE(filer.rdBool());
  }
  EXPECT_EQ(filer.filerStatus(), eOk);
  EXPECT_EQ(filer.remainingStringBits(), 0u);
}

// ---------------------------------------------------------------------------------------------
// Short and malformed streams

TEST(DwgStreamFilerTest, MalformedValuesAreImproperlyRead) {
  struct Case {
    const char* name;
    OdUInt8Array data, strings, handles;
    OdUInt64 dataBits, stringBits, handleBits;
    std::function<void(OdDbDwgFiler&)> read;
  };
  auto rdString = [](OdDbDwgFiler& f) { f.rdString(); };
  auto rdHandle = [](OdDbDwgFiler& f) { f.rdDbHandle(); };
  const std::vector<Case> cases = {
      {"BL prefix 11", {0xC0}, {}, {}, 2, 0, 0, [](OdDbDwgFiler& f) { f.rdInt32(); }},
      {"BD prefix 11", {0xC0}, {}, {}, 2, 0, 0, [](OdDbDwgFiler& f) { f.rdDouble(); }},
      // BS 255 units but only 2 units' worth of bits follow.
      {"TU count too large", {}, {0x7F, 0xC0, 0, 0, 0, 0}, {}, 0, 42, 0, rdString},
      // BS 0xFFFF via the full form: 65535 units from 2 bytes.
      {"TU count 65535", {}, {0x3F, 0xFF, 0xC0, 0, 0}, {}, 0, 40, 0, rdString},
      {"H count 9", {}, {}, {0x59, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 0, 0, 80, rdHandle},
      {"H count 15", {}, {}, {0x2F}, 0, 0, 8, [](OdDbDwgFiler& f) { f.rdSoftOwnershipId(); }},
  };
  for (const Case& c : cases) {
    DwgFiler filer;
    filer.openForRead(c.data, c.dataBits, c.strings, c.stringBits, c.handles, c.handleBits);
    c.read(filer);
    EXPECT_EQ(filer.filerStatus(), eDwgObjectImproperlyRead) << c.name;
  }
}
