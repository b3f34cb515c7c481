#include "CmColor.h"
#include "OdError.h"

#include <gtest/gtest.h>

namespace {
OdUInt32 rgbOf(const OdCmEntityColor& c) {
  return (OdUInt32(c.red()) << 16) | (OdUInt32(c.green()) << 8) | c.blue();
}
} // namespace

TEST(CmColorPacking, EachMethodHasItsPackedForm) {
  OdCmEntityColor c;
  EXPECT_EQ(c.color(), 0xC0000100u); // new colours are by layer
  EXPECT_TRUE(c.isByLayer());
  EXPECT_EQ(c.colorIndex(), 256);

  c.setRGB(0x12, 0x34, 0x56);
  EXPECT_EQ(c.color(), 0xC2123456u);
  EXPECT_TRUE(c.isByColor());
  EXPECT_EQ(c.colorMethod(), OdCmEntityColor::kByColor);

  ASSERT_EQ(c.setColorIndex(5), eOk);
  EXPECT_EQ(c.color(), 0xC3000005u);
  EXPECT_TRUE(c.isByACI());

  ASSERT_EQ(c.setColorMethod(OdCmEntityColor::kByBlock), eOk);
  EXPECT_EQ(c.color(), 0xC1000000u);
  EXPECT_TRUE(c.isByBlock());

  ASSERT_EQ(c.setColorMethod(OdCmEntityColor::kForeground), eOk);
  EXPECT_EQ(c.color(), 0xC5000007u);
  EXPECT_TRUE(c.isForeground());
  EXPECT_EQ(c.colorIndex(), 7);

  ASSERT_EQ(c.setColorMethod(OdCmEntityColor::kNone), eOk);
  EXPECT_EQ(c.color(), 0xC8000000u);
  EXPECT_TRUE(c.isNone());
  EXPECT_EQ(c.colorIndex(), OdCmEntityColor::kACInone);
}

TEST(CmColorPacking, ColorIndexBoundaries) {
  struct Case {
    OdUInt16 index;
    OdResult result;
    OdUInt32 packed;
    OdUInt16 readBack;
  };
  const Case cases[] = {
      {0, eOk, 0xC1000000u, 0},
      {1, eOk, 0xC3000001u, 1},
      {7, eOk, 0xC3000007u, 7},
      {255, eOk, 0xC30000FFu, 255},
      {256, eOk, 0xC0000100u, 256},
      {257, eInvalidInput, 0xC2010203u, 0}, // refused: the previous colour stays
      {1000, eInvalidInput, 0xC2010203u, 0},
      {0xFFFF, eInvalidInput, 0xC2010203u, 0},
  };
  for (const Case& c : cases) {
    OdCmColor color;
    color.setRGB(1, 2, 3);
    EXPECT_EQ(color.setColorIndex(c.index), c.result) << c.index;
    EXPECT_EQ(color.color(), c.packed) << c.index;
    if (c.result == eOk) {
      EXPECT_EQ(color.colorIndex(), c.readBack) << c.index;
    }
  }
}

TEST(CmColorPacking, SetColorStoresTheCanonicalForm) {
  struct Case {
    OdUInt32 in;
    OdResult result;
    OdUInt32 out;
  };
  const Case cases[] = {
      {0xC0000100u, eOk, 0xC0000100u},
      {0xC0000000u, eOk, 0xC0000100u}, // by layer as DXF writes it
      {0xC0FFFFFFu, eOk, 0xC0000100u},
      {0xC1000123u, eOk, 0xC1000000u},
      {0xC2ABCDEFu, eOk, 0xC2ABCDEFu},
      {0xC2000000u, eOk, 0xC2000000u}, // true black is a colour, not by block
      {0xC3AB0005u, eOk, 0xC3000005u},
      {0xC3000000u, eOk, 0xC1000000u}, // ACI 0 is by block
      {0xC4000003u, eOk, 0xC4000003u},
      {0xC5000000u, eOk, 0xC5000007u},
      {0xC6123456u, eOk, 0xC6000000u},
      {0xC7000001u, eOk, 0xC7000000u},
      {0xC8123456u, eOk, 0xC8000000u},
      {0x00000001u, eInvalidInput, 0xC3000009u},
      {0xBF000000u, eInvalidInput, 0xC3000009u},
      {0xC9000000u, eInvalidInput, 0xC3000009u},
      {0xFFFFFFFFu, eInvalidInput, 0xC3000009u},
  };
  for (const Case& c : cases) {
    OdCmColor color;
    color.setColorIndex(9);
    EXPECT_EQ(color.setColor(c.in), c.result) << std::hex << c.in;
    EXPECT_EQ(color.color(), c.out) << std::hex << c.in;
  }
}

TEST(CmColorPacking, ChangingMethodKeepsWhatTheNewMethodCanShow) {
  OdCmEntityColor c;
  c.setColorIndex(5);
  ASSERT_EQ(c.setColorMethod(OdCmEntityColor::kByColor), eOk);
  EXPECT_EQ(c.color(), 0xC20000FFu); // blue's palette value

  c.setRGB(250, 5, 5);
  ASSERT_EQ(c.setColorMethod(OdCmEntityColor::kByACI), eOk);
  EXPECT_EQ(c.color(), 0xC3000001u); // nearest entry

  c.setColorIndex(256);
  ASSERT_EQ(c.setColorMethod(OdCmEntityColor::kByACI), eOk);
  EXPECT_EQ(c.color(), 0xC3000007u); // by layer has no index of its own

  ASSERT_EQ(c.setColorMethod(OdCmEntityColor::kByLayer), eOk);
  EXPECT_EQ(c.color(), 0xC0000100u);
  ASSERT_EQ(c.setColorMethod(OdCmEntityColor::kByColor), eOk);
  EXPECT_EQ(c.color(), 0xC2000000u);

  c.setColorIndex(3);
  EXPECT_EQ(c.setColorMethod(static_cast<OdCmEntityColor::ColorMethod>(0x10)), eInvalidInput);
  EXPECT_EQ(c.color(), 0xC3000003u);
}

TEST(CmColorPalette, MatchesThePublishedTable) {
  struct Case {
    OdUInt8 index;
    OdUInt32 rgb;
  };
  const Case cases[] = {
      {1, 0xFF0000},   {2, 0xFFFF00},   {3, 0x00FF00},   {4, 0x00FFFF},   {5, 0x0000FF},
      {6, 0xFF00FF},   {7, 0xFFFFFF},   {8, 0x808080},   {9, 0xC0C0C0},   {10, 0xFF0000},
      {11, 0xFF7F7F},  {12, 0xCC0000},  {13, 0xCC6666},  {14, 0x990000},  {15, 0x994C4C},
      {16, 0x7F0000},  {17, 0x7F3F3F},  {18, 0x4C0000},  {19, 0x4C2626},  {20, 0xFF3F00},
      {21, 0xFF9F7F},  {22, 0xCC3300},  {23, 0xCC7F66},  {24, 0x992600},  {25, 0x995F4C},
      {26, 0x7F1F00},  {27, 0x7F4F3F},  {28, 0x4C1300},  {29, 0x4C2F26},  {30, 0xFF7F00},
      {31, 0xFFBF7F},  {32, 0xCC6600},  {33, 0xCC9966},  {34, 0x994C00},  {35, 0x99724C},
      {36, 0x7F3F00},  {37, 0x7F5F3F},  {38, 0x4C2600},  {39, 0x4C3926},  {40, 0xFFBF00},
      {41, 0xFFDF7F},  {42, 0xCC9900},  {43, 0xCCB266},  {44, 0x997200},  {45, 0x99854C},
      {46, 0x7F5F00},  {47, 0x7F6F3F},  {48, 0x4C3900},  {49, 0x4C4226},  {50, 0xFFFF00},
      {51, 0xFFFF7F},  {52, 0xCCCC00},  {53, 0xCCCC66},  {54, 0x999900},  {55, 0x99994C},
      {56, 0x7F7F00},  {57, 0x7F7F3F},  {58, 0x4C4C00},  {59, 0x4C4C26},  {60, 0xBFFF00},
      {61, 0xDFFF7F},  {62, 0x99CC00},  {63, 0xB2CC66},  {64, 0x729900},  {65, 0x85994C},
      {66, 0x5F7F00},  {67, 0x6F7F3F},  {90, 0x00FF00},  {130, 0x00FFFF}, {170, 0x0000FF},
      {210, 0xFF00FF}, {250, 0x333333}, {251, 0x5B5B5B}, {252, 0x848484}, {253, 0xADADAD},
      {254, 0xD6D6D6}, {255, 0xFFFFFF},
  };
  for (const Case& c : cases)
    EXPECT_EQ(OdCmEntityColor::lookUpRGB(c.index), c.rgb) << int(c.index);
  EXPECT_EQ(OdCmEntityColor::lookUpRGB(0), 0u); // by block has no colour: black
}

TEST(CmColorPalette, NearestIndexOfATrueColour) {
  // Every palette colour finds itself, or the lowest entry that shows the same colour.
  for (int index = 1; index < 256; ++index) {
    const OdUInt32 rgb = OdCmEntityColor::lookUpRGB(static_cast<OdUInt8>(index));
    const OdUInt8 found =
        OdCmEntityColor::lookUpACI(OdUInt8(rgb >> 16), OdUInt8(rgb >> 8), OdUInt8(rgb));
    EXPECT_EQ(OdCmEntityColor::lookUpRGB(found), rgb) << index;
    EXPECT_LE(found, index);
  }
  EXPECT_EQ(OdCmEntityColor::lookUpACI(255, 0, 0), 1);     // not its twin 10
  EXPECT_EQ(OdCmEntityColor::lookUpACI(255, 255, 255), 7); // not its twin 255
  EXPECT_EQ(OdCmEntityColor::lookUpACI(250, 5, 5), 1);
  EXPECT_EQ(OdCmEntityColor::lookUpACI(130, 130, 130), 8);  // tie with 252: lowest wins
  EXPECT_EQ(OdCmEntityColor::lookUpACI(200, 100, 100), 13); // 0xCC6666
  EXPECT_EQ(OdCmEntityColor::lookUpACI(52, 50, 50), 250);

  OdCmEntityColor c(200, 100, 100);
  EXPECT_EQ(c.colorIndex(), 13);
  EXPECT_EQ(c.color(), 0xC2C86464u); // reading the index does not change the colour
}

TEST(CmColorComponents, RedGreenBluePerMethod) {
  OdCmEntityColor c;
  EXPECT_EQ(rgbOf(c), 0u); // by layer
  c.setColorIndex(0);
  EXPECT_EQ(rgbOf(c), 0u); // by block
  c.setColorIndex(3);
  EXPECT_EQ(rgbOf(c), 0x00FF00u);
  c.setColorIndex(251);
  EXPECT_EQ(rgbOf(c), 0x5B5B5Bu);
  c.setRGB(1, 2, 3);
  EXPECT_EQ(c.red(), 1);
  EXPECT_EQ(c.green(), 2);
  EXPECT_EQ(c.blue(), 3);
  c.setColor(0xC5000000u);
  EXPECT_EQ(rgbOf(c), 0xFFFFFFu); // foreground shows as entry 7
}

TEST(CmColorRecord, NamesAndEquality) {
  OdCmColor a;
  EXPECT_TRUE(a.isByLayer());
  EXPECT_EQ(a.color(), 0xC0000100u);
  EXPECT_TRUE(a.colorName().isEmpty());

  a.setRGB(10, 20, 30);
  EXPECT_TRUE(a.setNames(OdString(u"深灰"), OdString(u"色卡")));
  EXPECT_EQ(a.colorName(), OdString(u"深灰"));
  EXPECT_EQ(a.bookName(), OdString(u"色卡"));
  EXPECT_FALSE(a.setNames(OdString(), OdString(u"other book")));
  EXPECT_EQ(a.bookName(), OdString(u"色卡"));

  OdCmColor b;
  b.setColor(0xC20A141Eu);
  EXPECT_NE(a, b); // same colour, different names
  EXPECT_EQ(a.entityColor(), b.entityColor());
  b.setNames(OdString(u"深灰"), OdString(u"色卡"));
  EXPECT_EQ(a, b);
  b.setColorIndex(1);
  EXPECT_NE(a, b);
  EXPECT_EQ(b.colorName(), OdString(u"深灰")); // names are kept across colour changes

  EXPECT_EQ(OdCmColor(OdCmEntityColor(1, 2, 3)).color(), 0xC2010203u);
}

TEST(CmColorRecord, FilingWithoutAFilerIsRefused) {
  OdCmColor c;
  c.setColorIndex(4);
  try {
    c.dwgIn(nullptr);
    FAIL() << "no exception";
  } catch (const OdError& e) {
    EXPECT_EQ(e.code(), eNullObjectPointer);
  }
  EXPECT_THROW(c.dwgOut(nullptr), OdError);
  EXPECT_EQ(c.color(), 0xC3000004u);
}
