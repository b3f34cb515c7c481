#include "DbDxfItemFiler.h"

#include "DbDatabase.h"
#include "Ge/GePoint2d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeVector2d.h"
#include "Ge/GeVector3d.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

typedef OdStaticRxObject<OdDbDxfItemFiler> Filer;
typedef OdDbDxfItemFiler::Item Item;
typedef OdDbDxfItemFiler::ItemArray Items;

std::string utf8(const OdString& text) {
  return text.toUtf8();
}

std::vector<int> codesOf(const Items& items) {
  std::vector<int> codes;
  for (const Item& item : items)
    codes.push_back(item.code);
  return codes;
}

std::vector<std::string> valuesOf(const Items& items) {
  std::vector<std::string> values;
  for (const Item& item : items)
    values.push_back(utf8(item.value));
  return values;
}

TEST(DxfItemFilerTest, EveryValueKindRoundTripsThroughItsText) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const OdDbObjectId layerZero = db->getLayerZeroId();
  const OdString chinese(OD_T("坐标 标注"));

  Filer filer;
  filer.openForWrite(db.get());
  filer.wrString(1, chinese);
  filer.wrBool(290, true);
  filer.wrInt8(280, -128);
  filer.wrInt16(70, -32768);
  filer.wrInt16(71, 32767);
  filer.wrInt32(90, std::numeric_limits<OdInt32>::min());
  filer.wrInt64(160, std::numeric_limits<OdInt64>::max());
  filer.wrDouble(40, 1.0);
  filer.wrDouble(41, 0.1 + 0.2);
  filer.wrDouble(42, -1e300);
  filer.wrDouble(43, std::numeric_limits<double>::denorm_min());
  filer.wrPoint3d(10, OdGePoint3d(1.5, -2.0, 1.0 / 3.0));
  filer.wrPoint2d(11, OdGePoint2d(4.0, 5.25));
  filer.wrVector3d(210, OdGeVector3d(0.0, 0.0, -1.0));
  filer.wrVector2d(12, OdGeVector2d(-7.0, 8.0));
  filer.wrHandle(5, OdDbHandle(0x1A2Bu));
  filer.wrObjectId(330, layerZero);
  filer.wrObjectId(340, OdDbObjectId());
  filer.wrSubclassMarker(OD_T("AcDbEntity"));
  ASSERT_EQ(eOk, filer.filerStatus());

  const std::vector<int> expectedCodes = {1,   290, 280, 70, 71,  90,  160, 40,  41,
                                          42,  43,  10,  20, 30,  11,  21,  210, 220,
                                          230, 12,  22,  5,  330, 340, 100};
  EXPECT_EQ(expectedCodes, codesOf(filer.items()));
  const std::vector<std::string> values = valuesOf(filer.items());
  EXPECT_EQ("1", values[1]);
  EXPECT_EQ("-128", values[2]);
  EXPECT_EQ("-32768", values[3]);
  EXPECT_EQ("-2147483648", values[5]);
  EXPECT_EQ("9223372036854775807", values[6]);
  EXPECT_EQ("1.0", values[7]);                 // whole numbers keep the decimal point
  EXPECT_EQ("0.30000000000000004", values[8]); // 17 digits where 16 would not read back
  EXPECT_EQ("-1e+300", values[9]);
  EXPECT_EQ("1A2B", values[21]);
  EXPECT_EQ(utf8(layerZero.getHandle().ascii()), values[22]);
  EXPECT_EQ("0", values[23]);
  EXPECT_EQ(chinese, filer.items()[0].value);

  filer.rewind();
  ASSERT_EQ(1, filer.nextItem());
  EXPECT_EQ(chinese, filer.rdString());
  ASSERT_EQ(290, filer.nextItem());
  EXPECT_TRUE(filer.rdBool());
  ASSERT_EQ(280, filer.nextItem());
  EXPECT_EQ(-128, filer.rdInt8());
  ASSERT_EQ(70, filer.nextItem());
  EXPECT_EQ(-32768, filer.rdInt16());
  ASSERT_EQ(71, filer.nextItem());
  EXPECT_EQ(32767, filer.rdInt16());
  ASSERT_EQ(90, filer.nextItem());
  EXPECT_EQ(std::numeric_limits<OdInt32>::min(), filer.rdInt32());
  ASSERT_EQ(160, filer.nextItem());
  EXPECT_EQ(std::numeric_limits<OdInt64>::max(), filer.rdInt64());
  ASSERT_EQ(40, filer.nextItem());
  EXPECT_EQ(1.0, filer.rdDouble());
  ASSERT_EQ(41, filer.nextItem());
  EXPECT_EQ(0.1 + 0.2, filer.rdDouble());
  ASSERT_EQ(42, filer.nextItem());
  EXPECT_EQ(-1e300, filer.rdDouble());
  ASSERT_EQ(43, filer.nextItem());
  EXPECT_EQ(std::numeric_limits<double>::denorm_min(), filer.rdDouble());
  ASSERT_EQ(10, filer.nextItem());
  OdGePoint3d point;
  filer.rdPoint3d(point);
  EXPECT_EQ(1.5, point.x);
  EXPECT_EQ(-2.0, point.y);
  EXPECT_EQ(1.0 / 3.0, point.z); // exactly: the tolerant operator== would hide a lost digit
  ASSERT_EQ(11, filer.nextItem());
  OdGePoint2d point2d;
  filer.rdPoint2d(point2d);
  EXPECT_EQ(OdGePoint2d(4.0, 5.25), point2d);
  ASSERT_EQ(210, filer.nextItem());
  OdGeVector3d normal;
  filer.rdVector3d(normal);
  EXPECT_EQ(OdGeVector3d(0.0, 0.0, -1.0), normal);
  ASSERT_EQ(12, filer.nextItem());
  OdGeVector2d vector2d;
  filer.rdVector2d(vector2d);
  EXPECT_EQ(OdGeVector2d(-7.0, 8.0), vector2d);
  ASSERT_EQ(5, filer.nextItem());
  EXPECT_EQ(OdUInt64(0x1A2B), OdUInt64(filer.rdHandle()));
  ASSERT_EQ(330, filer.nextItem());
  EXPECT_EQ(layerZero, filer.rdObjectId());
  ASSERT_EQ(340, filer.nextItem());
  EXPECT_TRUE(filer.rdObjectId().isNull());
  EXPECT_TRUE(filer.atSubclassData(OD_T("AcDbEntity")));
  EXPECT_TRUE(filer.atEOF());
  EXPECT_EQ(eOk, filer.filerStatus());
}

TEST(DxfItemFilerTest, PrecisionRoundsDoublesToSignificantDigits) {
  Filer filer;
  filer.openForWrite();
  EXPECT_EQ(OdDbDxfFiler::kMaxPrec, filer.precision());
  filer.wrDouble(40, 3.14159265358979, 3);
  filer.setPrecision(6);
  filer.wrDouble(41, 1.0 / 3.0);
  filer.wrDouble(42, 2.0);
  filer.wrAngle(50, 3.14159265358979323846); // written in degrees
  filer.setPrecision(99);
  EXPECT_EQ(OdDbDxfFiler::kMaxPrec, filer.precision());
  filer.setPrecision(0);
  EXPECT_EQ(1, filer.precision());
  const std::vector<std::string> expected = {"3.14", "0.333333", "2.0", "180.0"};
  EXPECT_EQ(expected, valuesOf(filer.items()));
}

TEST(DxfItemFilerTest, MalformedOrOutOfRangeTextIsRefused) {
  enum Reader { kBool, kInt8, kInt16, kInt32, kInt64, kDouble, kHandle };
  const struct {
    int code;
    const char* text;
    Reader reader;
    bool accepted;
    double value; // what an accepted text reads as (a handle's number for kHandle)
  } cases[] = {
      {70, "12", kInt16, true, 12},
      {70, "  12 ", kInt16, true, 12}, // right-aligned numbers of some writers
      {70, "+5", kInt16, true, 5},
      {70, "12x", kInt16, false, 0},
      {70, "", kInt16, false, 0},
      {70, "   ", kInt16, false, 0},
      {70, "1e999", kInt16, false, 0},
      {70, "1.5", kInt16, false, 0},
      {70, "0x10", kInt16, false, 0},
      {70, "70000", kInt16, false, 0},
      {70, "-32769", kInt16, false, 0},
      {70, "1 2", kInt16, false, 0},
      {70, "--1", kInt16, false, 0},
      {280, "127", kInt8, true, 127},
      {280, "128", kInt8, false, 0},
      {90, "2147483647", kInt32, true, 2147483647.0},
      {90, "2147483648", kInt32, false, 0},
      {160, "9223372036854775808", kInt64, false, 0},
      {290, "0", kBool, true, 0},
      {290, "2", kBool, false, 0},
      {40, "1e-3", kDouble, true, 1e-3},
      {40, ".5", kDouble, true, 0.5},
      {40, "1e999", kDouble, false, 0},
      {40, "nan", kDouble, false, 0},
      {40, "inf", kDouble, false, 0},
      {40, "1,5", kDouble, false, 0},
      {40, "", kDouble, false, 0},
      {5, "ff", kHandle, true, 255},
      {5, "G1", kHandle, false, 0},
      {5, "", kHandle, false, 0},
      {5, "10000000000000000", kHandle, false, 0}, // 17 digits
      // A reader asking for another type than the code's.
      {10, "1", kInt16, false, 0},
      {70, "1.0", kDouble, false, 0},
      {8, "1A", kHandle, false, 0},
      {40, "1", kInt32, false, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.text) + " at " + std::to_string(c.code));
    Filer filer;
    filer.openForRead({{c.code, OdString(c.text)}});
    ASSERT_EQ(c.code, filer.nextItem());
    double value = -1.0;
    switch (c.reader) {
    case kBool:
      value = filer.rdBool() ? 1.0 : 0.0;
      break;
    case kInt8:
      value = filer.rdInt8();
      break;
    case kInt16:
      value = filer.rdInt16();
      break;
    case kInt32:
      value = filer.rdInt32();
      break;
    case kInt64:
      value = static_cast<double>(filer.rdInt64());
      break;
    case kDouble:
      value = filer.rdDouble();
      break;
    case kHandle:
      value = static_cast<double>(OdUInt64(filer.rdHandle()));
      break;
    }
    EXPECT_EQ(c.accepted ? eOk : eInvalidDxfCode, filer.filerStatus());
    EXPECT_EQ(c.value, value);
  }
}

TEST(DxfItemFilerTest, WritesThatDoNotFitTheCodeAreRefused) {
  const OdUInt8 bytes[2] = {1, 2};
  const struct {
    const char* what;
    std::function<void(OdDbDxfItemFiler&)> write;
    OdResult expected;
  } cases[] = {
      {"int at a double code", [](OdDbDxfItemFiler& f) { f.wrInt16(10, 1); }, eInvalidDxfCode},
      {"double at an int code", [](OdDbDxfItemFiler& f) { f.wrDouble(70, 1.0); }, eInvalidDxfCode},
      {"string at a double code", [](OdDbDxfItemFiler& f) { f.wrString(10, OD_T("x")); },
       eInvalidDxfCode},
      {"handle at a string code", [](OdDbDxfItemFiler& f) { f.wrHandle(8, OdDbHandle(1)); },
       eInvalidDxfCode},
      {"id at an int code", [](OdDbDxfItemFiler& f) { f.wrObjectId(70, OdDbObjectId()); },
       eInvalidDxfCode},
      {"binary at a string code", [&bytes](OdDbDxfItemFiler& f) { f.wrBinaryChunk(300, bytes, 2); },
       eInvalidDxfCode},
      {"int32 beyond an int16 code", [](OdDbDxfItemFiler& f) { f.wrInt32(70, 70000); },
       eInvalidDxfCode},
      {"int64 beyond an int32 code", [](OdDbDxfItemFiler& f) { f.wrInt64(90, OdInt64(1) << 31); },
       eInvalidDxfCode},
      {"2 at a bool code", [](OdDbDxfItemFiler& f) { f.wrInt16(290, 2); }, eInvalidDxfCode},
      {"undefined code", [](OdDbDxfItemFiler& f) { f.wrInt16(80, 1); }, eInvalidDxfCode},
      {"negative code", [](OdDbDxfItemFiler& f) { f.wrString(-1, OD_T("x")); }, eInvalidDxfCode},
      {"point whose z code is a string",
       [](OdDbDxfItemFiler& f) { f.wrPoint3d(460, OdGePoint3d(1, 2, 3)); }, eInvalidDxfCode},
      {"not a number", [](OdDbDxfItemFiler& f) { f.wrDouble(40, std::nan("")); }, eInvalidInput},
      {"infinite coordinate",
       [](OdDbDxfItemFiler& f) {
         f.wrPoint3d(10, OdGePoint3d(1, std::numeric_limits<double>::infinity(), 3));
       },
       eInvalidInput},
      {"binary without a buffer", [](OdDbDxfItemFiler& f) { f.wrBinaryChunk(310, nullptr, 4); },
       eInvalidInput},
      {"line break in a string", [](OdDbDxfItemFiler& f) { f.wrString(1, OD_T("a\nb")); },
       eInvalidInput},
      {"carriage return in a marker",
       [](OdDbDxfItemFiler& f) { f.wrSubclassMarker(OD_T("AcDb\rLine")); }, eInvalidInput},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Filer filer;
    filer.openForWrite();
    c.write(filer);
    EXPECT_EQ(c.expected, filer.filerStatus());
    EXPECT_TRUE(filer.items().empty());
    // The first failure sticks; later writes still go out.
    filer.wrInt16(70, 1);
    EXPECT_EQ(c.expected, filer.filerStatus());
    EXPECT_EQ(1u, filer.items().size());
  }
  // Integers of any width fit any integer code whose range holds them.
  Filer filer;
  filer.openForWrite();
  filer.wrInt32(70, 5);
  filer.wrInt16(90, -5);
  filer.wrBool(70, true);
  filer.wrInt8(160, 7);
  EXPECT_EQ(eOk, filer.filerStatus());
  EXPECT_EQ((std::vector<std::string>{"5", "-5", "1", "7"}), valuesOf(filer.items()));
}

TEST(DxfItemFilerTest, BinaryDataIsSplitIntoLinesOf127Bytes) {
  for (OdUInt32 size : {0u, 1u, 126u, 127u, 128u, 254u, 300u}) {
    SCOPED_TRACE(size);
    std::vector<OdUInt8> data(size);
    for (OdUInt32 i = 0; i < size; ++i)
      data[i] = static_cast<OdUInt8>(i * 37 + 11);
    Filer filer;
    filer.openForWrite();
    filer.wrBinaryChunk(310, data.data(), size);
    ASSERT_EQ(eOk, filer.filerStatus());
    const Items& items = filer.items();
    ASSERT_EQ((size + 126) / 127, items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
      EXPECT_EQ(310, items[i].code);
      const OdUInt32 expectedBytes = i + 1 < items.size() ? 127 : size - 127 * i;
      EXPECT_EQ(static_cast<int>(2 * expectedBytes), items[i].value.getLength());
    }
    filer.rewind();
    OdUInt8Array read;
    while (!filer.atEOF()) {
      ASSERT_EQ(310, filer.nextItem());
      filer.rdBinaryChunk(read);
    }
    EXPECT_EQ(eOk, filer.filerStatus());
    EXPECT_EQ(data, std::vector<OdUInt8>(read.begin(), read.end()));
  }

  Filer filer;
  const OdUInt8 bytes[] = {0xAB, 0x0F, 0x00, 0xFF};
  filer.openForWrite();
  filer.wrBinaryChunk(1004, bytes, 4);
  ASSERT_EQ(1u, filer.items().size());
  EXPECT_EQ("AB0F00FF", utf8(filer.items()[0].value));
}

TEST(DxfItemFilerTest, MalformedHexAppendsNothing) {
  const struct {
    const char* text;
    bool accepted;
  } cases[] = {{"ab0f", true}, {"", true}, {"ABC", false}, {"ABZZ", false}, {"AB 0F", false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    Filer filer;
    filer.openForRead({{310, OdString(c.text)}});
    ASSERT_EQ(310, filer.nextItem());
    OdUInt8Array data;
    data.push_back(0x55);
    filer.rdBinaryChunk(data);
    EXPECT_EQ(c.accepted ? eOk : eInvalidDxfCode, filer.filerStatus());
    const std::size_t expectedSize = c.accepted ? 1 + std::string(c.text).size() / 2 : 1;
    EXPECT_EQ(expectedSize, data.size());
    if (c.accepted && expectedSize == 3) {
      EXPECT_EQ(0xAB, data[1]);
      EXPECT_EQ(0x0F, data[2]);
    }
  }
  // Binary must be read at a binary code.
  Filer filer;
  filer.openForRead({{300, OdString("AB")}});
  filer.nextItem();
  OdUInt8Array data;
  filer.rdBinaryChunk(data);
  EXPECT_EQ(eInvalidDxfCode, filer.filerStatus());
  EXPECT_EQ(0u, data.size());
}

TEST(DxfItemFilerTest, PushBackMakesTheLastItemNextAgainOnce) {
  Filer filer;
  filer.openForRead({{0, "LINE"}, {8, "Walls"}, {10, "1"}, {20, "2"}, {30, "3"}, {40, "4"}});
  ASSERT_EQ(0, filer.nextItem());
  ASSERT_EQ(8, filer.nextItem());
  filer.pushBackItem();
  // No current item until the next nextItem().
  EXPECT_EQ(OdString(), filer.rdString());
  EXPECT_EQ(eNotApplicable, filer.filerStatus());
  filer.resetFilerStatus();
  filer.pushBackItem(); // a second push-back is a no-op: it does not reach group 0
  ASSERT_EQ(8, filer.nextItem());
  EXPECT_EQ(OdString(OD_T("Walls")), filer.rdString());

  // A point is one item for push-back: pushing back after reading it returns to its x.
  ASSERT_EQ(10, filer.nextItem());
  OdGePoint3d point;
  filer.rdPoint3d(point);
  filer.pushBackItem();
  ASSERT_EQ(10, filer.nextItem());
  filer.rdPoint3d(point);
  EXPECT_EQ(OdGePoint3d(1, 2, 3), point);
  ASSERT_EQ(40, filer.nextItem());
  EXPECT_EQ(eOk, filer.filerStatus());
}

TEST(DxfItemFilerTest, SubclassMarkersAndObjectEnds) {
  Filer filer;
  filer.openForRead({{100, "AcDbEntity"}, {8, "0"}, {100, "AcDbLine"}, {0, "LINE"}});
  EXPECT_FALSE(filer.atSubclassData(OD_T("AcDbLine")));   // not the next item
  EXPECT_FALSE(filer.atSubclassData(OD_T("acdbentity"))); // names are case-sensitive
  EXPECT_TRUE(filer.atSubclassData(OD_T("AcDbEntity")));
  EXPECT_FALSE(filer.atSubclassData(OD_T("AcDbEntity"))); // consumed
  EXPECT_FALSE(filer.atEndOfObject());
  ASSERT_EQ(8, filer.nextItem());
  EXPECT_FALSE(filer.atSubclassData(OD_T("0"))); // only group 100 is a marker
  EXPECT_TRUE(filer.atSubclassData(OD_T("AcDbLine")));
  EXPECT_TRUE(filer.atEndOfObject()); // group 0 opens the next object
  EXPECT_FALSE(filer.atEOF());
  ASSERT_EQ(0, filer.nextItem());
  EXPECT_TRUE(filer.atEndOfObject());
  EXPECT_TRUE(filer.atEOF());
  EXPECT_FALSE(filer.atSubclassData(OD_T("AcDbLine")));
  EXPECT_EQ(eOk, filer.filerStatus());
  EXPECT_EQ(-1, filer.nextItem());
  EXPECT_EQ(eEndOfFile, filer.filerStatus());
}

TEST(DxfItemFilerTest, PointsNeedTheirYAndMayLackZ) {
  {
    Filer filer;
    filer.openForRead({{10, "1"}, {20, "2"}, {40, "5"}});
    filer.nextItem();
    OdGePoint3d point(9, 9, 9);
    filer.rdPoint3d(point);
    EXPECT_EQ(OdGePoint3d(1, 2, 0), point);
    EXPECT_EQ(40, filer.nextItem());
    EXPECT_EQ(eOk, filer.filerStatus());
  }
  {
    // The 2D forms skip a z, so the next item is the one after the point.
    Filer filer;
    filer.openForRead({{10, "1"}, {20, "2"}, {30, "3"}, {40, "5"}});
    filer.nextItem();
    OdGePoint2d point;
    filer.rdPoint2d(point);
    EXPECT_EQ(OdGePoint2d(1, 2), point);
    EXPECT_EQ(40, filer.nextItem());
  }
  const struct {
    const char* what;
    Items items;
  } refused[] = {
      {"no y", {{10, "1"}, {30, "3"}}},    {"y of another point", {{10, "1"}, {21, "2"}}},
      {"bad y", {{10, "1"}, {20, "two"}}}, {"bad z", {{10, "1"}, {20, "2"}, {30, "1e999"}}},
      {"at the end", {{10, "1"}}},
  };
  for (const auto& c : refused) {
    SCOPED_TRACE(c.what);
    Filer filer;
    filer.openForRead(c.items);
    filer.nextItem();
    OdGePoint3d point(9, 9, 9);
    filer.rdPoint3d(point);
    EXPECT_EQ(eInvalidDxfCode, filer.filerStatus());
    EXPECT_EQ(OdGePoint3d(9, 9, 9), point);
  }
}

TEST(DxfItemFilerTest, IdsResolveThroughTheDatabaseOnly) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const OdDbObjectId modelSpace = db->getModelSpaceId();
  const OdDbHandle unknown(OdUInt64(db->handseed()) + 100);
  const Items items = {{330, modelSpace.getHandle().ascii()}, {340, unknown.ascii()}, {360, "0"}};

  Filer filer;
  filer.openForRead(items, db.get());
  filer.nextItem();
  EXPECT_EQ(modelSpace, filer.rdObjectId());
  filer.nextItem();
  // A forward reference: an id is made for a handle the database does not know yet.
  const OdDbObjectId forward = filer.rdObjectId();
  EXPECT_FALSE(forward.isNull());
  EXPECT_EQ(OdUInt64(unknown), OdUInt64(forward.getHandle()));
  filer.nextItem();
  EXPECT_TRUE(filer.rdObjectId().isNull());
  EXPECT_EQ(eOk, filer.filerStatus());

  Filer noDatabase;
  noDatabase.openForRead(items);
  noDatabase.nextItem();
  EXPECT_TRUE(noDatabase.rdObjectId().isNull());
  EXPECT_EQ(OdUInt64(modelSpace.getHandle()), OdUInt64(noDatabase.rdHandle()));
  EXPECT_EQ(eOk, noDatabase.filerStatus());
}

TEST(DxfItemFilerTest, ReadingAndWritingAreSeparateModes) {
  Filer filer;
  filer.openForWrite();
  filer.wrInt16(70, 3);
  EXPECT_TRUE(filer.atEOF());
  EXPECT_EQ(-1, filer.nextItem());
  EXPECT_EQ(eNotApplicable, filer.filerStatus());

  filer.rewind();
  EXPECT_EQ(eOk, filer.filerStatus());
  filer.wrInt16(71, 4);
  EXPECT_EQ(eNotApplicable, filer.filerStatus());
  EXPECT_EQ(1u, filer.items().size());
  filer.resetFilerStatus();
  EXPECT_EQ(0, filer.rdInt16()); // before the first nextItem()
  EXPECT_EQ(eNotApplicable, filer.filerStatus());
  filer.rewind();
  ASSERT_EQ(70, filer.nextItem());
  EXPECT_EQ(3, filer.rdInt16());
  EXPECT_EQ(eOk, filer.filerStatus());
}

TEST(DxfItemFilerTest, TextModePrintsWhatTheItemsHold) {
  // Each case writes through both modes; the text must be the items printed as a file holds
  // them (the code right-aligned in three columns, the value in UTF-8), refusals included.
  std::vector<OdUInt8> bytes(300);
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<OdUInt8>(i * 7);
  const std::vector<std::function<void(OdDbDxfItemFiler&)>> cases = {
      [](OdDbDxfItemFiler& f) { f.wrString(0, OD_T("LINE")); },
      [](OdDbDxfItemFiler& f) { f.wrString(1, OD_T("坐标 Ü")); },
      [](OdDbDxfItemFiler& f) { f.wrSubclassMarker(OD_T("AcDbEntity")); },
      [](OdDbDxfItemFiler& f) { f.wrInt16(70, -32768); },
      [](OdDbDxfItemFiler& f) { f.wrInt32(1071, 0x02000000); },
      [](OdDbDxfItemFiler& f) { f.wrInt64(160, std::numeric_limits<OdInt64>::min()); },
      [](OdDbDxfItemFiler& f) { f.wrBool(290, true); },
      [](OdDbDxfItemFiler& f) { f.wrDouble(40, 2.0); },
      [](OdDbDxfItemFiler& f) { f.wrDouble(41, -0.0); },
      [](OdDbDxfItemFiler& f) { f.wrDouble(42, 1.0 / 3.0, 4); },
      [](OdDbDxfItemFiler& f) { f.wrPoint3d(10, OdGePoint3d(500000.137, 3000000.291, -1e-300)); },
      [](OdDbDxfItemFiler& f) { f.wrHandle(5, OdDbHandle(0xFEDCBA9876543210ull)); },
      [](OdDbDxfItemFiler& f) { f.wrHandle(330, OdDbHandle()); },
      [&bytes](OdDbDxfItemFiler& f) {
        f.wrBinaryChunk(310, bytes.data(), static_cast<OdUInt32>(bytes.size()));
      },
      [](OdDbDxfItemFiler& f) { f.wrInt16(90, 1); },            // refused: wrong code
      [](OdDbDxfItemFiler& f) { f.wrString(1, OD_T("a\nb")); }, // refused: line break
  };
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(i);
    Filer items;
    items.openForWrite();
    cases[i](items);
    std::string expected = "kept\n";
    for (const Item& item : items.items()) {
      std::string code = std::to_string(item.code);
      expected += std::string(code.size() < 3 ? 3 - code.size() : 0, ' ') + code + "\n" +
                  utf8(item.value) + "\n";
    }

    Filer text;
    std::string out = "kept\n"; // what is there already stays
    text.openForText(&out);
    cases[i](text);
    EXPECT_EQ(expected, out);
    EXPECT_EQ(items.filerStatus(), text.filerStatus());
    EXPECT_TRUE(text.items().empty());
  }
}

TEST(DxfItemFilerTest, ItemsTakenOverReadLikeCopiedOnes) {
  Items items = {{70, OD_T(" 12 ")}, {10, OD_T("1.5")}, {20, OD_T("-2")}, {310, OD_T("0aFf")}};
  Filer copied;
  copied.openForRead(items);
  Filer taken;
  taken.openForRead(std::move(items));
  for (Filer* filer : {&copied, &taken}) {
    ASSERT_EQ(70, filer->nextItem());
    EXPECT_EQ(12, filer->rdInt16());
    ASSERT_EQ(10, filer->nextItem());
    OdGePoint2d point;
    filer->rdPoint2d(point);
    EXPECT_EQ(OdGePoint2d(1.5, -2.0), point);
    ASSERT_EQ(310, filer->nextItem());
    OdUInt8Array data;
    filer->rdBinaryChunk(data);
    ASSERT_EQ(2u, data.size());
    EXPECT_EQ(0x0A, data[0]);
    EXPECT_EQ(0xFF, data[1]);
    EXPECT_EQ(eOk, filer->filerStatus());
  }
}

} // namespace

// A reader that parsed values already hands them over in the items; the filer then takes the
// parsed value (not the text) and still checks the value type of the code and the width.
TEST(DxfItemFilerTest, ParsedValuesAreTakenAsGivenAndStillChecked) {
  Items items(6);
  items[0].code = 40; // the text says otherwise: the parsed value wins
  items[0].value = OD_T("9");
  items[0].form = Item::kReal;
  items[0].real = 0.1;
  items[1].code = 10; // a point from parsed coordinates
  items[1].form = Item::kReal;
  items[1].real = -2.5;
  items[2].code = 20;
  items[2].form = Item::kReal;
  items[2].real = 1e300;
  items[3].code = 90;
  items[3].value = OD_T("70000");
  items[3].form = Item::kInteger;
  items[3].integer = 70000;
  items[4].code = 310;
  items[4].form = Item::kBytes;
  items[4].bytes = OdUInt8Array{0xAB, 0x0F, 0x00, 0xFF};
  items[5].code = 70; // too wide for a 16-bit read
  items[5].form = Item::kInteger;
  items[5].integer = 70000;

  Filer filer;
  filer.openForRead(items);
  ASSERT_EQ(40, filer.nextItem());
  EXPECT_EQ(0.1, filer.rdDouble());
  ASSERT_EQ(10, filer.nextItem());
  OdGePoint3d point;
  filer.rdPoint3d(point);
  EXPECT_EQ(OdGePoint3d(-2.5, 1e300, 0.0), point);
  ASSERT_EQ(90, filer.nextItem());
  EXPECT_EQ(70000, filer.rdInt32());
  ASSERT_EQ(310, filer.nextItem());
  OdUInt8Array data{0x01};
  filer.rdBinaryChunk(data);
  EXPECT_EQ((OdUInt8Array{0x01, 0xAB, 0x0F, 0x00, 0xFF}), data);
  EXPECT_EQ("AB0F00FF", utf8(filer.rdString()));
  EXPECT_EQ(eOk, filer.filerStatus());
  ASSERT_EQ(70, filer.nextItem());
  EXPECT_EQ(0, filer.rdInt16());
  EXPECT_EQ(eInvalidDxfCode, filer.filerStatus());

  // A parsed value at a code of another type is refused like its text would be.
  const struct {
    const char* name;
    Item item;
    std::function<void(Filer&)> read;
  } refused[] = {
      {"real at an integer code",
       [] {
         Item i(70, OD_T("1.5"));
         i.form = Item::kReal;
         i.real = 1.5;
         return i;
       }(),
       [](Filer& f) { f.rdInt16(); }},
      {"integer at a real code",
       [] {
         Item i(40, OD_T("x"));
         i.form = Item::kInteger;
         i.integer = 3;
         return i;
       }(),
       [](Filer& f) { f.rdDouble(); }},
      {"bytes at a string code",
       [] {
         Item i(1, OdString());
         i.form = Item::kBytes;
         i.bytes = OdUInt8Array{0x01};
         return i;
       }(),
       [](Filer& f) {
         OdUInt8Array d;
         f.rdBinaryChunk(d);
       }},
  };
  for (const auto& c : refused) {
    SCOPED_TRACE(c.name);
    Filer one;
    one.openForRead(Items{c.item});
    ASSERT_EQ(c.item.code, one.nextItem());
    c.read(one);
    EXPECT_EQ(eInvalidDxfCode, one.filerStatus());
  }
}
