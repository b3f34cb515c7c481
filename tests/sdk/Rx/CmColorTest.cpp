#include "CmColor.h"

#include <gtest/gtest.h>

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
