#include "DbDwgStreamFiler.h"

#include "CmColor.h"
#include "DbDatabase.h"
#include "Ge/GePoint2d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeScale3d.h"
#include "Ge/GeVector2d.h"
#include "Ge/GeVector3d.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

typedef OdStaticRxObject<OdDbDwgStreamFiler> Filer;

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
void reopen(const Filer& written, Filer& reader) {
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
    Filer filer;
    filer.openForWrite();
    c.write(filer);
    EXPECT_EQ(filer.filerStatus(), eOk) << c.name;
    EXPECT_EQ(bitString(filer.dataBuffer(), filer.dataBitSize()), compact(c.dataBits)) << c.name;
    EXPECT_EQ(filer.dataBuffer().size(), (filer.dataBitSize() + 7) / 8) << c.name;
    EXPECT_EQ(filer.stringBitSize(), 0u) << c.name;
    EXPECT_EQ(filer.handleBitSize(), 0u) << c.name;
  }
}

TEST(DwgStreamFilerTest, StringsAndHandlesGoToTheirOwnStreams) {
  Filer filer;
  filer.openForWrite();
  filer.wrString(OD_T("AB"));
  filer.wrDbHandle(OdDbHandle(0x1A2B));
  filer.wrString(OdString());
  filer.wrDbHandle(OdDbHandle());

  EXPECT_EQ(filer.dataBitSize(), 0u);
  // TU: BS count 2, then 'A' and 'B' as UTF-16LE; then BS 0 for the empty string.
  EXPECT_EQ(bitString(filer.stringBuffer(), filer.stringBitSize()),
            compact("01 00000010 01000001 00000000 01000010 00000000 10"));
  // H: code 0 with two bytes, most significant first; the null handle is a bare 0x00.
  const OdUInt8Array expected = {0x02, 0x1A, 0x2B, 0x00};
  EXPECT_EQ(filer.handleBuffer(), expected);
  EXPECT_EQ(filer.handleBitSize(), 32u);
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
    Filer filer;
    filer.openForWrite();
    c.write(filer);
    ASSERT_GE(filer.handleBuffer().size(), 1u);
    EXPECT_EQ(filer.handleBuffer()[0], c.head);
  }
}

// ---------------------------------------------------------------------------------------------
// Round trips. Every value is written twice, once byte-aligned and once one bit off, so raw
// values that straddle bytes are covered.

TEST(DwgStreamFilerTest, IntegersRoundTripAtTheirBoundaries) {
  const std::vector<OdInt16> shorts = {0, 1, 255, 256, 257, -1, 32767, -32768};
  const std::vector<OdInt32> longs = {0,
                                      1,
                                      255,
                                      256,
                                      257,
                                      -1,
                                      65535,
                                      65536,
                                      std::numeric_limits<OdInt32>::min(),
                                      std::numeric_limits<OdInt32>::max()};
  const std::vector<OdInt64> longLongs = {0, 1, 255, 256, 0x123456789ABCll, (OdInt64(1) << 56) - 1};
  Filer filer;
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
  }
  ASSERT_EQ(filer.filerStatus(), eOk);

  Filer reader;
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
  }
  EXPECT_EQ(reader.filerStatus(), eOk);
  EXPECT_EQ(reader.remainingDataBits(), 0u);
}

TEST(DwgStreamFilerTest, DoublesRoundTripBitForBit) {
  const std::vector<double> values = {0.0,
                                      1.0,
                                      -0.0,
                                      1.5,
                                      -1.0,
                                      doubleFromBits(0x7FF8000000000001ull), // quiet NaN, payload
                                      doubleFromBits(0xFFF4000000000000ull), // signalling NaN
                                      std::numeric_limits<double>::infinity(),
                                      -std::numeric_limits<double>::infinity(),
                                      std::numeric_limits<double>::denorm_min(),
                                      DBL_MIN / 4,
                                      DBL_MAX,
                                      -DBL_MAX};
  Filer filer;
  filer.openForWrite();
  for (bool shift : {false, true}) {
    if (shift)
      filer.wrBool(false);
    for (double v : values)
      filer.wrDouble(v);
  }
  filer.rewind();
  for (bool shift : {false, true}) {
    if (shift) {
      EXPECT_FALSE(filer.rdBool());
    }
    for (double v : values)
      EXPECT_EQ(bitsOf(filer.rdDouble()), bitsOf(v)) << v;
  }
  EXPECT_EQ(filer.filerStatus(), eOk);
  EXPECT_EQ(filer.remainingDataBits(), 0u);
}

TEST(DwgStreamFilerTest, GeometryRoundTrips) {
  const OdGePoint3d p3(1.25, -0.0, 1e300);
  const OdGeVector3d v3(0.0, 1.0, -7.5);
  const OdGePoint2d p2(-3.0, 4.5);
  const OdGeVector2d v2(1.0, 0.0);
  const OdGeScale3d scale(2.0, -1.0, 0.5);
  Filer filer;
  filer.openForWrite();
  filer.wrBool(true);
  filer.wrPoint3d(p3);
  filer.wrVector3d(v3);
  filer.wrPoint2d(p2);
  filer.wrVector2d(v2);
  filer.wrScale3d(scale);
  filer.rewind();
  EXPECT_TRUE(filer.rdBool());
  const OdGePoint3d q3 = filer.rdPoint3d();
  EXPECT_EQ(q3.x, p3.x);
  EXPECT_EQ(bitsOf(q3.y), bitsOf(-0.0));
  EXPECT_EQ(q3.z, p3.z);
  const OdGeVector3d w3 = filer.rdVector3d();
  EXPECT_EQ(w3.x, v3.x);
  EXPECT_EQ(w3.y, v3.y);
  EXPECT_EQ(w3.z, v3.z);
  const OdGePoint2d q2 = filer.rdPoint2d();
  EXPECT_EQ(q2.x, p2.x);
  EXPECT_EQ(q2.y, p2.y);
  const OdGeVector2d w2 = filer.rdVector2d();
  EXPECT_EQ(w2.x, v2.x);
  EXPECT_EQ(w2.y, v2.y);
  const OdGeScale3d s = filer.rdScale3d();
  EXPECT_EQ(s.sx, scale.sx);
  EXPECT_EQ(s.sy, scale.sy);
  EXPECT_EQ(s.sz, scale.sz);
  EXPECT_EQ(filer.filerStatus(), eOk);
  EXPECT_EQ(filer.remainingDataBits(), 0u);
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
  Filer filer;
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

TEST(DwgStreamFilerTest, BytesRoundTripAtAnyOffset) {
  const OdUInt8 raw[] = {0x00, 0xFF, 0x80, 0x01, 0x7E};
  Filer filer;
  filer.openForWrite();
  filer.wrBool(true);
  filer.wrBytes(raw, sizeof raw);
  filer.wrBytes(raw, 0);
  filer.rewind();
  EXPECT_TRUE(filer.rdBool());
  OdUInt8 back[sizeof raw] = {};
  filer.rdBytes(back, sizeof back);
  EXPECT_EQ(std::memcmp(back, raw, sizeof raw), 0);
  EXPECT_EQ(filer.filerStatus(), eOk);
  EXPECT_EQ(filer.remainingDataBits(), 0u);
}

TEST(DwgStreamFilerTest, HandlesRoundTripWithTheirCodes) {
  const std::vector<OdUInt64> handles = {0, 1, 0xFF, 0x100, 0x123456, 0xFFFFFFFFFFFFFFFFull};
  Filer filer;
  filer.openForWrite();
  for (OdUInt64 h : handles)
    filer.wrDbHandle(OdDbHandle(h));
  filer.rewind();
  for (OdUInt64 h : handles) {
    EXPECT_EQ(static_cast<OdUInt64>(filer.rdDbHandle()), h);
    EXPECT_EQ(filer.lastReadHandleCode(), OdDbDwgStreamFiler::kHandleRef);
  }
  EXPECT_EQ(filer.filerStatus(), eOk);
  EXPECT_EQ(filer.remainingHandleBits(), 0u);
}

TEST(DwgStreamFilerTest, IdsWithoutADatabaseReadAsNullButKeepTheirHandle) {
  struct Case {
    int code;
    std::function<OdDbObjectId(OdDbDwgFiler&)> read;
  };
  const std::vector<Case> cases = {
      {OdDbDwgStreamFiler::kSoftOwnerRef, [](OdDbDwgFiler& f) { return f.rdSoftOwnershipId(); }},
      {OdDbDwgStreamFiler::kHardOwnerRef, [](OdDbDwgFiler& f) { return f.rdHardOwnershipId(); }},
      {OdDbDwgStreamFiler::kSoftPointerRef, [](OdDbDwgFiler& f) { return f.rdSoftPointerId(); }},
      {OdDbDwgStreamFiler::kHardPointerRef, [](OdDbDwgFiler& f) { return f.rdHardPointerId(); }},
  };
  for (const Case& c : cases) {
    for (OdUInt64 h : {OdUInt64(0x2F), OdUInt64(0xFFFFFFFFFFFFFFFFull)}) {
      // Hand-made H: code nibble, byte count nibble, bytes most significant first.
      OdUInt8Array handles = {static_cast<OdUInt8>(c.code << 4)};
      OdUInt64 rest = h;
      std::vector<OdUInt8> bytes;
      for (; rest != 0; rest >>= 8)
        bytes.insert(bytes.begin(), static_cast<OdUInt8>(rest));
      handles[0] = static_cast<OdUInt8>(handles[0] | bytes.size());
      for (OdUInt8 b : bytes)
        handles.append(b);
      Filer filer;
      filer.openForRead(OdUInt8Array(), 0, OdUInt8Array(), 0, handles, handles.size() * 8);
      EXPECT_TRUE(c.read(filer).isNull());
      EXPECT_EQ(filer.filerStatus(), eOk);
      EXPECT_EQ(static_cast<OdUInt64>(filer.lastReadHandle()), h);
      EXPECT_EQ(filer.lastReadHandleCode(), c.code);
      EXPECT_EQ(filer.remainingHandleBits(), 0u);
    }
  }
}

class DwgStreamFilerDatabaseTest : public ::testing::Test {
protected:
  void SetUp() override { odInitialize(); }
  void TearDown() override { odUninitialize(); }
};

TEST_F(DwgStreamFilerDatabaseTest, IdsResolveThroughTheDatabase) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const OdDbObjectId layer = db->getLayerZeroId();
  const OdDbObjectId table = db->getLayerTableId();
  ASSERT_FALSE(layer.isNull());
  // An id of another drawing whose handle this one has not given out: read into db it is a
  // forward reference, which gets an id of db for an object still to come.
  const OdDbHandle unseen(static_cast<OdUInt64>(db->handseed()) + 100);
  OdDbDatabasePtr other = OdDbDatabase::createObject();
  const OdDbObjectId foreign = other->getOdDbObjectId(unseen, true);
  ASSERT_EQ(foreign.getHandle(), unseen);

  Filer filer;
  filer.openForWrite(db.get());
  filer.wrHardPointerId(layer);
  filer.wrSoftOwnershipId(table);
  filer.wrSoftPointerId(OdDbObjectId());
  filer.wrHardOwnershipId(foreign);

  Filer reader;
  reader.openForRead(filer.dataBuffer(), filer.dataBitSize(), filer.stringBuffer(),
                     filer.stringBitSize(), filer.handleBuffer(), filer.handleBitSize(), db.get());
  EXPECT_EQ(reader.database(), db.get());
  EXPECT_EQ(reader.rdHardPointerId(), layer);
  EXPECT_EQ(reader.rdSoftOwnershipId(), table);
  EXPECT_TRUE(reader.rdSoftPointerId().isNull());
  const OdDbObjectId forward = reader.rdHardOwnershipId();
  EXPECT_EQ(reader.filerStatus(), eOk);
  ASSERT_FALSE(forward.isNull());
  EXPECT_EQ(forward.getHandle(), unseen);
  EXPECT_EQ(forward.database(), db.get());
  EXPECT_EQ(db->getOdDbObjectId(unseen), forward);
}

TEST(DwgStreamFilerTest, IdReadWithAnotherCodeIsImproperlyRead) {
  Filer filer;
  filer.openForWrite();
  filer.wrSoftPointerId(OdDbObjectId());
  filer.wrUInt8(7);
  filer.rewind();
  EXPECT_TRUE(filer.rdHardPointerId().isNull());
  EXPECT_EQ(filer.filerStatus(), eDwgObjectImproperlyRead);
  EXPECT_EQ(filer.rdUInt8(), 0); // sticky: nothing more is read
}

struct ColorCase {
  const char* name;
  OdUInt32 packed;
  const char16_t* colorName;
  const char16_t* bookName;
};

TEST(DwgStreamFilerTest, ColoursRoundTripWithTheirNames) {
  const std::vector<ColorCase> cases = {
      {"by layer", 0xC0000100u, u"", u""},
      {"by block", 0xC1000000u, u"", u""},
      {"ACI 1", 0xC3000001u, u"", u""},
      {"ACI 255", 0xC30000FFu, u"", u""},
      {"true colour", 0xC2FF8000u, u"", u""},
      {"named", 0xC2102030u, u"Sunset", u""},
      {"named in book", 0xC2102030u, u"红色", u"Book 1"},
  };
  for (const ColorCase& c : cases) {
    OdCmColor color;
    color.setColor(c.packed);
    color.setNames(c.colorName, c.bookName);
    Filer filer;
    filer.openForWrite();
    filer.wrCmColor(color);
    filer.wrInt16(42);

    // BS 0, BL packed (32 bits after prefix 00), RC flags.
    const OdUInt8 flags = static_cast<OdUInt8>((*c.colorName ? 1 : 0) | (*c.bookName ? 2 : 0));
    std::string expected = "10 00";
    for (int byte = 0; byte < 4; ++byte)
      for (int bit = 7; bit >= 0; --bit)
        expected += ((c.packed >> (8 * byte + bit)) & 1) ? '1' : '0';
    for (int bit = 7; bit >= 0; --bit)
      expected += ((flags >> bit) & 1) ? '1' : '0';
    EXPECT_EQ(bitString(filer.dataBuffer(), filer.dataBitSize()).substr(0, 2 + 2 + 32 + 8),
              compact(expected))
        << c.name;
    EXPECT_EQ(filer.stringBitSize() == 0, flags == 0) << c.name;

    OdCmColor back;
    back.setColor(0xC3000007u);
    back.setNames(u"stale", u"stale");
    filer.rewind();
    filer.rdCmColor(back);
    EXPECT_EQ(filer.rdInt16(), 42) << c.name;
    EXPECT_EQ(filer.filerStatus(), eOk) << c.name;
    EXPECT_EQ(back.color(), c.packed) << c.name;
    EXPECT_EQ(OdString(back.colorName()), OdString(c.colorName)) << c.name;
    EXPECT_EQ(OdString(back.bookName()), OdString(c.bookName)) << c.name;
    EXPECT_EQ(filer.remainingStringBits(), 0u) << c.name;
  }
}

TEST(DwgStreamFilerTest, ColourFieldsAreValidatedOnRead) {
  struct Case {
    const char* name;
    OdUInt16 index;
    OdUInt32 packed;
    OdUInt8 flags;
    std::vector<std::u16string> names;
    OdResult status;
    OdUInt32 result;
  };
  const std::vector<Case> cases = {
      {"index only", 5, 0, 0, {}, eOk, 0xC3000005u},
      {"index only, by layer", 256, 0, 0, {}, eOk, 0xC0000100u},
      {"index out of range", 300, 0, 0, {}, eDwgObjectImproperlyRead, 0xC3000007u},
      {"unknown method", 0, 0x12000001u, 0, {}, eDwgObjectImproperlyRead, 0xC3000007u},
      {"book without name", 0, 0xC2010203u, 2, {u"Book"}, eDwgObjectImproperlyRead, 0xC3000007u},
  };
  for (const Case& c : cases) {
    // Built bit by bit: the writer only produces valid colours.
    OdDbBitStream data;
    data.writeBits(1, 2); // BS index as an unsigned byte, or the full form when >= 256
    if (c.index < 256) {
      data.writeByte(static_cast<OdUInt8>(c.index));
    } else {
      data.clear();
      data.writeBits(0, 2);
      data.writeRawLE(c.index, 2);
    }
    if (c.packed == 0) {
      data.writeBits(2, 2);
    } else {
      data.writeBits(0, 2);
      data.writeRawLE(c.packed, 4);
    }
    data.writeByte(c.flags);
    OdDbBitStream strings;
    for (const std::u16string& name : c.names) {
      strings.writeBits(1, 2);
      strings.writeByte(static_cast<OdUInt8>(name.size()));
      for (char16_t unit : name)
        strings.writeRawLE(unit, 2);
    }
    Filer filer;
    filer.openForRead(data.bytes(), data.bitSize(), strings.bytes(), strings.bitSize(),
                      OdUInt8Array(), 0);
    OdCmColor color;
    color.setColor(0xC3000007u);
    filer.rdCmColor(color);
    EXPECT_EQ(filer.filerStatus(), c.status) << c.name;
    EXPECT_EQ(color.color(), c.result) << c.name;
    EXPECT_TRUE(color.bookName().isEmpty()) << c.name;
  }
}

// ---------------------------------------------------------------------------------------------
// Short and malformed streams

namespace {
// A record that uses every stream and every code.
void writeMixedRecord(OdDbDwgFiler& f) {
  OdCmColor color;
  color.setColor(0xC2102030u);
  color.setNames(u"Sunset", u"Book");
  f.wrBool(true);
  f.wrInt16(300);
  f.wrString(OD_T("坐标 A"));
  f.wrInt32(-5);
  f.wrDouble(2.5);
  f.wrHardPointerId(OdDbObjectId());
  f.wrDbHandle(OdDbHandle(0x1234567));
  f.wrPoint3d(OdGePoint3d(1.0, 2.0, 0.0));
  f.wrCmColor(color);
  f.wrInt64(0xABCDEF);
  const OdUInt8 raw[] = {1, 2, 3};
  f.wrBytes(raw, 3);
  f.wrUInt8(9);
  f.wrString(OD_T("end"));
  f.wrSoftOwnershipId(OdDbObjectId());
  f.wrInt16(7);
}

// Reads the record back; returns false on the first value that differs from what was written.
bool readMixedRecord(OdDbDwgFiler& f) {
  OdCmColor color;
  bool same = f.rdBool();
  same = f.rdInt16() == 300 && same;
  same = f.rdString() == OD_T("坐标 A") && same;
  same = f.rdInt32() == -5 && same;
  same = f.rdDouble() == 2.5 && same;
  same = f.rdHardPointerId().isNull() && same;
  same = f.rdDbHandle() == OdDbHandle(0x1234567) && same;
  const OdGePoint3d p = f.rdPoint3d();
  same = p.x == 1.0 && p.y == 2.0 && p.z == 0.0 && same;
  f.rdCmColor(color);
  same = color.color() == 0xC2102030u && OdString(color.colorName()) == OD_T("Sunset") &&
         OdString(color.bookName()) == OD_T("Book") && same;
  same = f.rdInt64() == 0xABCDEF && same;
  OdUInt8 raw[3] = {};
  f.rdBytes(raw, 3);
  same = raw[0] == 1 && raw[1] == 2 && raw[2] == 3 && same;
  same = f.rdUInt8() == 9 && same;
  same = f.rdString() == OD_T("end") && same;
  same = f.rdSoftOwnershipId().isNull() && same;
  same = f.rdInt16() == 7 && same;
  return same;
}

bool isReadError(OdResult status) {
  return status == eEndOfFile || status == eDwgObjectImproperlyRead;
}

OdUInt8Array firstBytes(const OdUInt8Array& bytes, OdUInt64 count) {
  OdUInt8Array cut;
  for (OdUInt64 i = 0; i < count; ++i)
    cut.append(bytes[static_cast<unsigned>(i)]);
  return cut;
}
} // namespace

TEST(DwgStreamFilerTest, MixedRecordRoundTripsExactly) {
  Filer filer;
  filer.openForWrite();
  writeMixedRecord(filer);
  Filer reader;
  reopen(filer, reader);
  EXPECT_TRUE(readMixedRecord(reader));
  EXPECT_EQ(reader.filerStatus(), eOk);
  EXPECT_EQ(reader.remainingDataBits(), 0u);
  EXPECT_EQ(reader.remainingStringBits(), 0u);
  EXPECT_EQ(reader.remainingHandleBits(), 0u);
}

TEST(DwgStreamFilerTest, StreamCutShortAtEveryBitFailsCleanly) {
  Filer full;
  full.openForWrite();
  writeMixedRecord(full);
  const OdUInt64 sizes[3] = {full.dataBitSize(), full.stringBitSize(), full.handleBitSize()};
  for (int stream = 0; stream < 3; ++stream) {
    for (OdUInt64 cut = 0; cut < sizes[stream]; ++cut) {
      OdUInt64 bits[3] = {sizes[0], sizes[1], sizes[2]};
      bits[stream] = cut;
      Filer reader;
      reader.openForRead(full.dataBuffer(), bits[0], full.stringBuffer(), bits[1],
                         full.handleBuffer(), bits[2]);
      readMixedRecord(reader);
      EXPECT_TRUE(isReadError(reader.filerStatus())) << "stream " << stream << " cut " << cut;
      // Once failed, reads give zero values.
      EXPECT_EQ(reader.rdInt32(), 0);
      EXPECT_EQ(reader.rdString(), OdString());
      EXPECT_EQ(static_cast<OdUInt64>(reader.rdDbHandle()), 0u);
    }
  }
}

TEST(DwgStreamFilerTest, BufferCutShortAtEveryByteFailsCleanly) {
  // The bit sizes claim the whole record but the buffers end early: the sizes are cut to the
  // bytes actually given.
  Filer full;
  full.openForWrite();
  writeMixedRecord(full);
  const OdUInt8Array* buffers[3] = {&full.dataBuffer(), &full.stringBuffer(), &full.handleBuffer()};
  for (int stream = 0; stream < 3; ++stream) {
    for (OdUInt64 cut = 0; cut < buffers[stream]->size(); ++cut) {
      OdUInt8Array parts[3] = {*buffers[0], *buffers[1], *buffers[2]};
      parts[stream] = firstBytes(*buffers[stream], cut);
      Filer reader;
      reader.openForRead(parts[0], full.dataBitSize(), parts[1], full.stringBitSize(), parts[2],
                         full.handleBitSize());
      EXPECT_LE(reader.dataBitSize(), parts[0].size() * 8u);
      readMixedRecord(reader);
      EXPECT_TRUE(isReadError(reader.filerStatus())) << "stream " << stream << " cut " << cut;
    }
  }
}

TEST(DwgStreamFilerTest, MalformedValuesAreImproperlyRead) {
  struct Case {
    const char* name;
    OdUInt8Array data, strings, handles;
    OdUInt64 dataBits, stringBits, handleBits;
    std::function<void(OdDbDwgFiler&)> read;
  };
  const std::vector<Case> cases = {
      {"BL prefix 11", {0xC0}, {}, {}, 2, 0, 0, [](OdDbDwgFiler& f) { f.rdInt32(); }},
      {"BD prefix 11", {0xC0}, {}, {}, 2, 0, 0, [](OdDbDwgFiler& f) { f.rdDouble(); }},
      // BS 255 units but only 2 units' worth of bits follow.
      {"TU count too large",
       {},
       {0x7F, 0xC0, 0, 0, 0, 0},
       {},
       0,
       42,
       0,
       [](OdDbDwgFiler& f) { f.rdString(); }},
      // BS 0xFFFF via the full form: 65535 units from 2 bytes.
      {"TU count 65535",
       {},
       {0x3F, 0xFF, 0xC0, 0, 0},
       {},
       0,
       40,
       0,
       [](OdDbDwgFiler& f) { f.rdString(); }},
      {"H count 9",
       {},
       {},
       {0x59, 1, 2, 3, 4, 5, 6, 7, 8, 9},
       0,
       0,
       80,
       [](OdDbDwgFiler& f) { f.rdDbHandle(); }},
      {"H count 15", {}, {}, {0x2F}, 0, 0, 8, [](OdDbDwgFiler& f) { f.rdSoftOwnershipId(); }},
  };
  for (const Case& c : cases) {
    Filer filer;
    filer.openForRead(c.data, c.dataBits, c.strings, c.stringBits, c.handles, c.handleBits);
    c.read(filer);
    EXPECT_EQ(filer.filerStatus(), eDwgObjectImproperlyRead) << c.name;
  }
}

TEST(DwgStreamFilerTest, FailedReadsReturnZeroWithoutConsuming) {
  Filer filer;
  filer.openForWrite();
  filer.wrInt32(1000);
  filer.wrDouble(3.25);
  filer.wrString(OD_T("x"));
  const OdUInt8Array data = filer.dataBuffer();
  filer.openForRead(data, 20, filer.stringBuffer(), filer.stringBitSize(), OdUInt8Array(), 0);
  EXPECT_EQ(filer.rdInt32(), 0); // 34 bits needed, 20 given
  EXPECT_EQ(filer.filerStatus(), eEndOfFile);
  const OdUInt64 at = filer.tell();
  EXPECT_EQ(filer.rdDouble(), 0.0);
  EXPECT_FALSE(filer.rdBool());
  EXPECT_EQ(filer.rdString(), OdString());
  EXPECT_TRUE(filer.rdPoint3d().isEqualTo(OdGePoint3d()));
  OdUInt8 buffer[4] = {1, 1, 1, 1};
  filer.rdBytes(buffer, 4);
  EXPECT_EQ(buffer[0] | buffer[1] | buffer[2] | buffer[3], 0);
  EXPECT_EQ(filer.tell(), at);
  EXPECT_EQ(filer.remainingStringBits(), filer.stringBitSize());

  // A count read from the stream can be checked against what is left before allocating.
  filer.resetFilerStatus();
  filer.seek(0, OdDb::kSeekFromStart);
  EXPECT_EQ(filer.remainingDataBits(), 20u);
}

TEST(DwgStreamFilerTest, ValuesTheFormatCannotHoldAreRefusedInStep) {
  Filer filer;
  filer.openForWrite();
  filer.wrInt64(-1);
  EXPECT_EQ(filer.filerStatus(), eInvalidInput);
  filer.wrInt64(OdInt64(1) << 56);
  filer.wrString(OdString(std::u16string(70000, u'z')));
  filer.wrInt16(5);
  filer.wrString(OD_T("after"));
  filer.rewind();
  EXPECT_EQ(filer.rdInt64(), 0);
  EXPECT_EQ(filer.rdInt64(), 0);
  EXPECT_EQ(filer.rdString(), OdString());
  EXPECT_EQ(filer.rdInt16(), 5);
  EXPECT_EQ(filer.rdString(), OD_T("after"));
  EXPECT_EQ(filer.filerStatus(), eOk);
}

// ---------------------------------------------------------------------------------------------
// Modes and positions

TEST(DwgStreamFilerTest, ReadingWhileWritingAndWritingWhileReadingAreRefused) {
  Filer filer;
  filer.openForWrite();
  filer.wrInt16(3);
  EXPECT_FALSE(filer.isReading());
  EXPECT_EQ(filer.rdInt16(), 0);
  EXPECT_EQ(filer.filerStatus(), eNotApplicable);
  filer.resetFilerStatus();
  filer.seek(0, OdDb::kSeekFromStart);
  EXPECT_EQ(filer.filerStatus(), eNotApplicable);

  filer.rewind();
  EXPECT_TRUE(filer.isReading());
  EXPECT_EQ(filer.filerStatus(), eOk);
  const OdUInt64 size = filer.dataBitSize();
  filer.wrInt16(4);
  EXPECT_EQ(filer.filerStatus(), eNotApplicable);
  EXPECT_EQ(filer.dataBitSize(), size);
}

TEST(DwgStreamFilerTest, SeekMovesTheDataReadPosition) {
  Filer filer;
  filer.openForWrite();
  filer.wrInt16(1000); // 18 bits
  filer.wrBool(true);  // bit 18
  filer.wrString(OD_T("s"));
  EXPECT_EQ(filer.tell(), 19u);
  filer.rewind();
  EXPECT_EQ(filer.tell(), 0u);

  filer.seek(18, OdDb::kSeekFromStart);
  EXPECT_TRUE(filer.rdBool());
  filer.seek(-19, OdDb::kSeekFromCurrent);
  EXPECT_EQ(filer.rdInt16(), 1000);
  filer.seek(-1, OdDb::kSeekFromEnd);
  EXPECT_EQ(filer.tell(), 18u);
  EXPECT_EQ(filer.rdString(), OD_T("s")); // the string stream keeps its own position
  EXPECT_EQ(filer.filerStatus(), eOk);

  struct Case {
    OdInt64 offset;
    int type;
    OdResult status;
  };
  const std::vector<Case> bad = {
      {20, OdDb::kSeekFromStart, eInvalidInput},
      {-1, OdDb::kSeekFromStart, eInvalidInput},
      {1, OdDb::kSeekFromEnd, eInvalidInput},
      {-20, OdDb::kSeekFromEnd, eInvalidInput},
      {std::numeric_limits<OdInt64>::min(), OdDb::kSeekFromCurrent, eInvalidInput},
      {0, 3, eNotApplicable},
      {0, -1, eNotApplicable}};
  for (const Case& c : bad) {
    filer.resetFilerStatus();
    filer.seek(5, OdDb::kSeekFromStart);
    filer.seek(c.offset, c.type);
    EXPECT_EQ(filer.filerStatus(), c.status) << c.offset << " " << c.type;
    EXPECT_EQ(filer.tell(), 5u);
  }
}

TEST(DwgStreamFilerTest, OpeningSetsDatabaseTypeAndClearsState) {
  Filer filer;
  EXPECT_EQ(filer.filerType(), OdDb::kFileFiler);
  EXPECT_EQ(filer.database(), nullptr);
  filer.openForWrite(nullptr, OdDb::kCopyFiler);
  EXPECT_EQ(filer.filerType(), OdDb::kCopyFiler);
  filer.wrInt64(-1);
  filer.wrString(OD_T("x"));
  filer.openForWrite(nullptr, OdDb::kUndoFiler);
  EXPECT_EQ(filer.filerType(), OdDb::kUndoFiler);
  EXPECT_EQ(filer.filerStatus(), eOk);
  EXPECT_EQ(filer.dataBitSize(), 0u);
  EXPECT_EQ(filer.stringBitSize(), 0u);

  int maint = -1;
  EXPECT_EQ(filer.dwgVersion(&maint), OdDbFiler::kCurrentDwgVersion);
  EXPECT_EQ(maint, 0);
  filer.setDwgVersion(31, 4);
  EXPECT_EQ(filer.dwgVersion(&maint), 31);
  EXPECT_EQ(maint, 4);
}

TEST(DwgStreamFilerTest, HeapFilerWorksThroughTheInterface) {
  OdSmartPtr<OdDbDwgStreamFiler> filer = OdRxObjectImpl<OdDbDwgStreamFiler>::createObject();
  OdDbDwgFiler* base = filer.get();
  base->wrDouble(0.125);
  filer->rewind();
  EXPECT_EQ(base->rdDouble(), 0.125);
  EXPECT_EQ(base->filerStatus(), eOk);
}
