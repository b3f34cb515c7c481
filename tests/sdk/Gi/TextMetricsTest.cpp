#include "GiTextMetrics.h"

#include <gtest/gtest.h>

namespace {

TEST(TextMetrics, FullWidthRangesAndTheirEdges) {
  const struct {
    OdUInt32 codePoint;
    bool fullWidth;
  } cases[] = {
      {'A', false},    {0x00E9, false}, {0x10FF, false}, {0x1100, true},   {0x115F, true},
      {0x1160, false}, {0x2E7F, false}, {0x2E80, true},  {0x3000, true},   {0x303E, true},
      {0x303F, false}, {0x3041, true},  {0x30A2, true},  {0x4E00, true},   {0x5750, true},
      {0x9FFF, true},  {0xA4CF, true},  {0xA4D0, false}, {0xAC00, true},   {0xD7A3, true},
      {0xD7A4, false}, {0xFF01, true},  {0xFF60, true},  {0xFF61, false},  {0xFFE6, true},
      {0xFFE7, false}, {0x20000, true}, {0x3FFFD, true}, {0x3FFFE, false}, {0x1F600, false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.fullWidth, odgiIsFullWidth(c.codePoint)) << std::hex << c.codePoint;
}

TEST(TextMetrics, LineWidthPerCharacterClass) {
  const struct {
    const char16_t* text;
    double height;
    double widthFactor;
    double expected;
  } cases[] = {
      {u"", 2.0, 1.0, 0.0},
      {u"abcd", 2.0, 1.0, 4 * 0.6 * 2.0},
      {u"abcd", 2.0, 0.5, 4 * 0.6 * 2.0 * 0.5},
      {u"坐标", 2.5, 1.0, 2 * 2.5},
      {u"北", 3.0, 0.8, 3.0 * 0.8},
      {u"X=坐标12", 1.0, 1.0, 4 * 0.6 + 2 * 1.0},
      {u"ｶﾅ", 1.0, 1.0, 2 * 0.6},            // half-width katakana is narrow
      {u"ＡＢ", 1.0, 1.0, 2.0},              // full-width Latin forms
      {u"\U00020001x", 1.0, 1.0, 1.0 + 0.6}, // a surrogate pair is one ideograph
      {u"\xD840", 1.0, 1.0, 0.6},            // a lone surrogate counts as one narrow character
      {u"a\tb\x7F", 1.0, 1.0, 2 * 0.6},      // control characters advance nothing
  };
  for (const auto& c : cases)
    EXPECT_NEAR(c.expected, odgiTextLineWidth(OdString(c.text), c.height, c.widthFactor), 1e-12)
        << OdString(c.text).toUtf8();
}

TEST(TextMetrics, BlockSizeTakesTheWidestLineAndTheLineSpacing) {
  const struct {
    const char16_t* text;
    double width;
    int lines;
  } cases[] = {
      {u"abc", 3 * 0.6, 1},
      {u"ab\\P北坐标", 3.0, 2},
      {u"北\nabcdefgh\\Px", 8 * 0.6, 3},
  };
  const double height = 2.0;
  for (const auto& c : cases) {
    const OdGiTextBlockSize size = odgiTextBlockSize(OdString(c.text), height, 1.0);
    EXPECT_NEAR(c.width * height, size.width, 1e-12) << OdString(c.text).toUtf8();
    EXPECT_EQ(c.lines, size.lineCount);
    EXPECT_NEAR(height * (1.0 + (c.lines - 1) * 5.0 / 3.0 + 1.0 / 3.0), size.height, 1e-12);
  }
}

TEST(TextMetrics, BoxFollowsDirectionHeightAndSlant) {
  OdGePoint3d corners[4];
  ASSERT_TRUE(odgiTextBox(OdGePoint3d(1, 2, 0), OdGeVector3d::kZAxis, OdGeVector3d(0, 5, 0), 2.0,
                          1.0, OdaPI / 4, OdString("坐标"), corners));
  // Baseline along +Y, 4 long; up is -X; the slant moves the top 2 along the baseline.
  const OdGePoint3d expected[4] = {OdGePoint3d(1, 2, 0), OdGePoint3d(1, 6, 0),
                                   OdGePoint3d(-1, 8, 0), OdGePoint3d(-1, 4, 0)};
  for (int i = 0; i < 4; ++i)
    EXPECT_TRUE(expected[i].isEqualTo(corners[i], OdGeTol(1e-9))) << "corner " << i;

  const OdGePoint3d untouched(7, 7, 7);
  for (OdGePoint3d& corner : corners)
    corner = untouched;
  EXPECT_FALSE(odgiTextBox(OdGePoint3d(), OdGeVector3d::kZAxis, OdGeVector3d::kZAxis, 1.0, 1.0, 0.0,
                           OdString("a"), corners));
  EXPECT_FALSE(odgiTextBox(OdGePoint3d(), OdGeVector3d(), OdGeVector3d::kXAxis, 1.0, 1.0, 0.0,
                           OdString("a"), corners));
  EXPECT_EQ(untouched, corners[0]);
}

TEST(TextMetrics, SplitsLinesAtParagraphCodesAndNewlines) {
  const struct {
    const char16_t* text;
    std::vector<std::u16string> lines;
  } cases[] = {
      {u"", {u""}},
      {u"one", {u"one"}},
      {u"a\\Pb", {u"a", u"b"}},
      {u"a\nb\r\nc", {u"a", u"b", u"c"}},
      {u"a\r\n", {u"a", u""}},
      {u"\\P", {u"", u""}},
      {u"a\\\\Pb", {u"a\\\\Pb"}}, // an escaped backslash does not start a break
      {u"a\\pb\\", {u"a\\pb\\"}}, // lower-case p and a trailing backslash are text
      {u"坐\\P标\n", {u"坐", u"标", u""}},
  };
  for (const auto& c : cases) {
    const std::vector<OdString> lines = odgiSplitTextLines(OdString(c.text));
    ASSERT_EQ(c.lines.size(), lines.size()) << OdString(c.text).toUtf8();
    for (std::size_t i = 0; i < lines.size(); ++i)
      EXPECT_EQ(OdString(c.lines[i]), lines[i]) << OdString(c.text).toUtf8() << " line " << i;
  }
}

} // namespace
