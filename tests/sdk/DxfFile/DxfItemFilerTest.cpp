#include "DbDxfItemFiler.h"

#include "Ge/GePoint2d.h"
#include "Ge/GePoint3d.h"
#include "sdk/SdkTestSupport.h"

#include <vector>

namespace {

typedef OdDbDxfItemFiler::ItemArray Items;

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
  // The readers in the order of Reader, each giving what it read as a double.
  const std::function<double(OdDbDxfItemFiler&)> readers[] = {
      [](OdDbDxfItemFiler& f) { return f.rdBool() ? 1.0 : 0.0; },
      [](OdDbDxfItemFiler& f) { return double(f.rdInt8()); },
      [](OdDbDxfItemFiler& f) { return double(f.rdInt16()); },
      [](OdDbDxfItemFiler& f) { return double(f.rdInt32()); },
      [](OdDbDxfItemFiler& f) { return double(f.rdInt64()); },
      [](OdDbDxfItemFiler& f) { return f.rdDouble(); },
      [](OdDbDxfItemFiler& f) { return double(OdUInt64(f.rdHandle())); }};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.text) + " at " + std::to_string(c.code));
    DxfFiler filer;
    filer.openForRead({{c.code, OdString(c.text)}});
    ASSERT_EQ(c.code, filer.nextItem());
    const double value = readers[c.reader](filer);
    EXPECT_EQ(c.accepted ? eOk : eInvalidDxfCode, filer.filerStatus());
    EXPECT_EQ(c.value, value);
  }
}

TEST(DxfItemFilerTest, BinaryDataIsSplitIntoLinesOf127Bytes) {
  for (OdUInt32 size : {0u, 1u, 126u, 127u, 128u, 254u, 300u}) {
    SCOPED_TRACE(size);
    std::vector<OdUInt8> data(size);
    for (OdUInt32 i = 0; i < size; ++i)
      data[i] = static_cast<OdUInt8>(i * 37 + 11);
    DxfFiler filer;
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

  DxfFiler filer;
  const OdUInt8 bytes[] = {0xAB, 0x0F, 0x00, 0xFF};
  filer.openForWrite();
  filer.wrBinaryChunk(1004, bytes, 4);
  ASSERT_EQ(1u, filer.items().size());
  EXPECT_EQ("AB0F00FF", filer.items()[0].value.toUtf8());
}

TEST(DxfItemFilerTest, MalformedHexAppendsNothing) {
  const struct {
    const char* text;
    bool accepted;
  } cases[] = {{"ab0f", true}, {"", true}, {"ABC", false}, {"ABZZ", false}, {"AB 0F", false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    DxfFiler filer;
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
  DxfFiler filer;
  filer.openForRead({{300, OdString("AB")}});
  filer.nextItem();
  OdUInt8Array data;
  filer.rdBinaryChunk(data);
  EXPECT_EQ(eInvalidDxfCode, filer.filerStatus());
  EXPECT_EQ(0u, data.size());
}

TEST(DxfItemFilerTest, PointsNeedTheirYAndMayLackZ) {
  {
    DxfFiler filer;
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
    DxfFiler filer;
    filer.openForRead({{10, "1"}, {20, "2"}, {30, "3"}, {40, "5"}});
    filer.nextItem();
    OdGePoint2d point;
    filer.rdPoint2d(point);
    EXPECT_EQ(OdGePoint2d(1, 2), point);
    EXPECT_EQ(40, filer.nextItem());
  }
  {
    // And need no z.
    DxfFiler filer;
    filer.openForRead({{11, "1"}, {21, "2"}, {40, "5"}});
    filer.nextItem();
    OdGeVector2d vector;
    filer.rdVector2d(vector);
    EXPECT_EQ(OdGeVector2d(1, 2), vector);
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
    DxfFiler filer;
    filer.openForRead(c.items);
    filer.nextItem();
    OdGePoint3d point(9, 9, 9);
    filer.rdPoint3d(point);
    EXPECT_EQ(eInvalidDxfCode, filer.filerStatus());
    EXPECT_EQ(OdGePoint3d(9, 9, 9), point);
  }
}

} // namespace
