#include "DbMTextFormat.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string plain(const char* contents, double height = 2.5) {
  return oddbMTextPlainText(oddbParseMText(OdString(contents), height)).toUtf8();
}

std::vector<std::string> laidOut(const char* contents, double wrapWidth, double height = 1.0) {
  std::vector<std::string> result;
  for (const OdDbMTextLayoutLine& line :
       oddbLayoutMText(oddbParseMText(OdString(contents), height), wrapWidth, 1.0, 1).lines)
    result.push_back(line.text.toUtf8());
  return result;
}

TEST(MTextFormat, CodesResolveToPlainText) {
  const struct {
    const char* contents;
    const char* expected;
  } cases[] = {
      {"plain", "plain"},
      {"a\\Pb", "a\r\nb"},
      {"a\nb\r\nc\rd", "a\r\nb\r\nc\r\nd"},
      {"a\\\\Pb", "a\\Pb"}, // an escaped backslash never starts a break
      {"\\{x\\}", "{x}"},
      {"{\\H2;big}{\\H0.5x;small}", "bigsmall"},
      {"\\fSimSun|b0|i0|c134|p2;x\\Farial.shx;y", "xy"},
      {"\\Lunder\\l\\Oover\\o\\Kstrike\\k", "underoverstrike"},
      {"\\A1;\\W0.8;\\Q15;\\T1.2;\\pxqc;x", "x"},
      {"\\C1;red\\c16711680;blue", "redblue"},
      {"\\S1^2;+\\S3/4;+\\S5#6;", "1/2+3/4+5/6"},
      {"\\S+0.1^-0.2; \\S1\\^2^3; \\Sx;", "+0.1/-0.2 1^2/3 x"},
      {"a\\~b", "a\u00A0b"},
      {"%%c10 %%d %%p1 %%% %%C %%D %%P", "\u230010 \u00B0 \u00B11 % \u2300 \u00B0 \u00B1"},
      {"%%x 5%", "%%x 5%"},
      {"\\U+4E2D\\U+6587", "中文"},
      {"坐标{\\C3;X}=1", "坐标X=1"},
      // Malformed input keeps its characters.
      {"abc\\", "abc\\"},
      {"{abc", "abc"},
      {"abc}", "abc}"},
      {"\\H2.5x", "\\H2.5x"},
      {"\\H;x", "\\H;x"},
      {"\\H-1;x", "\\H-1;x"},
      {"\\Habc;x", "\\Habc;x"},
      {"\\C300;x", "\\C300;x"},
      {"\\C1x;x", "\\C1x;x"},
      {"\\H2\u0135;x", "\\H2\u0135;x"}, // U+0135 is no digit, whatever its low byte
      {"\\fArial", "\\fArial"},
      {"\\H2\nb;", "\\H2\r\nb;"},          // a value cannot run over a break
      {"\\fArial\\Pb;", "\\fArial\r\nb;"}, // nor over another code
      {"\\S1/2", "\\S1/2"},
      {"\\S1\\P2;", "\\S1\r\n2;"}, // a stack cannot hold a paragraph break
      {"\\Zq", "\\Zq"},
      {"\\U+12G4", "\\U+12G4"},
      {"", ""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.expected, plain(c.contents)) << "contents: " << c.contents;
}

TEST(MTextFormat, FormatsApplyToTheirFragmentsAndGroupsScopeThem) {
  const std::vector<OdDbMTextParagraph> paragraphs =
      oddbParseMText(OdString("a{\\H2x;b}c\\H3;d\\W2;e{\\C1;f}\\c16711680;g\\Ph"), 2.5);
  ASSERT_EQ(2u, paragraphs.size());
  const std::vector<OdDbMTextFragment>& f = paragraphs[0].fragments;
  ASSERT_EQ(7u, f.size());
  const struct {
    const char* text;
    double height;
    double widthFactor;
    bool hasColor;
  } expected[] = {
      {"a", 2.5, 1.0, false}, {"b", 5.0, 1.0, false}, {"c", 2.5, 1.0, false},
      {"d", 3.0, 1.0, false}, {"e", 3.0, 2.0, false}, {"f", 3.0, 2.0, true},
      {"g", 3.0, 2.0, true},
  };
  for (std::size_t i = 0; i < 7; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(expected[i].text, f[i].text.toUtf8());
    EXPECT_EQ(expected[i].height, f[i].height);
    EXPECT_EQ(expected[i].widthFactor, f[i].widthFactor);
    EXPECT_EQ(expected[i].hasColor, f[i].hasColor);
  }
  EXPECT_EQ(1, f[5].color.colorIndex());
  // "\c" carries blue in the high byte: 0xFF0000 is pure blue. It lasts past the paragraph.
  EXPECT_EQ(OdCmEntityColor(0, 0, 255), f[6].color);
  const std::vector<OdDbMTextFragment>& g = paragraphs[1].fragments;
  ASSERT_EQ(1u, g.size());
  EXPECT_EQ("h", g[0].text.toUtf8());
  EXPECT_TRUE(g[0].hasColor);
  EXPECT_EQ(OdCmEntityColor(0, 0, 255), g[0].color);
  EXPECT_EQ(3.0, paragraphs[1].height);
  EXPECT_EQ(2.0, g[0].widthFactor);

  // Runs of one format are one fragment, group or not; \C0 and \C256 are by block, by layer.
  const auto merged = oddbParseMText(OdString("{ab}cd{\\C256;e}"), 1.0);
  ASSERT_EQ(2u, merged[0].fragments.size());
  EXPECT_EQ("abcd", merged[0].fragments[0].text.toUtf8());
  EXPECT_TRUE(merged[0].fragments[1].color.isByLayer());
  // A height closed by its group does not reach the next paragraph.
  EXPECT_EQ(1.0, oddbParseMText(OdString("{\\H5;a}\\P"), 1.0)[1].height);
}

TEST(MTextFormat, RewritingKeepsTheMeaning) {
  EXPECT_EQ("\\H4;a\\H1.5x;b\\\\H3;\\H0.5;",
            oddbScaleMTextHeights(OdString("\\H2;a\\H1.5x;b\\\\H3;\\H0.25;"), 2.0).toUtf8());
  EXPECT_EQ("\\H2", oddbScaleMTextHeights(OdString("\\H2"), 2.0).toUtf8());

  const struct {
    const char* contents;
    const char* written;
  } cases[] = {
      {"a\r\nb\nc\rd", "a\\Pb\\Pc\\Pd"},
      {"x\\\ny", "x\\\\\\Py"}, // a backslash before a break stays a backslash
      {"tail\\", "tail\\\\"},
      {"\\\\P\\{", "\\\\P\\{"},
  };
  for (const auto& c : cases) {
    const OdString rewritten = oddbMTextContentsWithoutLineBreaks(OdString(c.contents));
    EXPECT_EQ(c.written, rewritten.toUtf8()) << c.contents;
    EXPECT_EQ(plain(c.contents), oddbMTextPlainText(oddbParseMText(rewritten, 1.0)).toUtf8())
        << c.contents;
  }
}

TEST(MTextLayout, EachAttachmentPutsItsPointOfTheBlockOnTheOrigin) {
  // Height 3: "ab" is 3.6 long, "abcd" 7.2; baselines 5 apart; block 3 + 5 + 1 = 9 high.
  const auto paragraphs = oddbParseMText(OdString("ab\\Pabcd"), 3.0);
  const struct {
    int attachment;
    double firstX, secondX, top;
  } cases[] = {
      {1, 0.0, 0.0, 0.0},   {2, -1.8, -3.6, 0.0}, {3, -3.6, -7.2, 0.0}, {4, 0.0, 0.0, 4.5},
      {5, -1.8, -3.6, 4.5}, {6, -3.6, -7.2, 4.5}, {7, 0.0, 0.0, 9.0},   {8, -1.8, -3.6, 9.0},
      {9, -3.6, -7.2, 9.0}, {0, 0.0, 0.0, 0.0}, // out of range: top left
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.attachment);
    const OdDbMTextLayout layout = oddbLayoutMText(paragraphs, 0.0, 1.0, c.attachment);
    ASSERT_EQ(2u, layout.lines.size());
    EXPECT_NEAR(c.firstX, layout.lines[0].x, 1e-12);
    EXPECT_NEAR(c.secondX, layout.lines[1].x, 1e-12);
    EXPECT_NEAR(c.top - 3.0, layout.lines[0].y, 1e-12);
    EXPECT_NEAR(c.top - 8.0, layout.lines[1].y, 1e-12);
    EXPECT_NEAR(7.2, layout.width, 1e-12);
    EXPECT_NEAR(9.0, layout.height, 1e-12);
    EXPECT_NEAR(c.top, layout.top, 1e-12);
    EXPECT_NEAR(c.top - 9.0, layout.bottom, 1e-12);
    EXPECT_NEAR(c.secondX, layout.left, 1e-12);
    EXPECT_NEAR(c.secondX + 7.2, layout.right, 1e-12);
  }
}

TEST(MTextLayout, LineAdvanceFollowsHeightsAndSpacingFactor) {
  const struct {
    const char* what;
    const char* contents;
    double factor;
    std::vector<double> baselines;
    double height;
  } cases[] = {
      {"one line", "abc", 1.0, {-3.0}, 4.0},
      {"empty contents", "", 1.0, {-3.0}, 4.0},
      {"double spacing", "a\\Pb", 2.0, {-3.0, -13.0}, 14.0},
      {"tight spacing", "a\\Pb\\Pc", 0.5, {-3.0, -5.5, -8.0}, 9.0},
      {"a taller line pushes both neighbours", "a\\P{\\H6;b}\\Pc", 1.0, {-3.0, -13.0, -23.0}, 24.0},
      {"a tall first line raises the top", "{\\H2x;a}\\Pb", 1.0, {-6.0, -16.0}, 17.0},
      {"an empty paragraph keeps its height", "\\H6;a\\P\\Pb", 1.0, {-6.0, -16.0, -26.0}, 28.0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const OdDbMTextLayout layout =
        oddbLayoutMText(oddbParseMText(OdString(c.contents), 3.0), 0.0, c.factor, 1);
    ASSERT_EQ(c.baselines.size(), layout.lines.size());
    for (std::size_t i = 0; i < c.baselines.size(); ++i)
      EXPECT_NEAR(c.baselines[i], layout.lines[i].y, 1e-12) << "line " << i;
    EXPECT_NEAR(c.height, layout.height, 1e-12);
  }
}

TEST(MTextLayout, FragmentsOfALineFollowEachOther) {
  // Height 1: "a" 0.6, "b" at twice the height 1.2, "坐" at width factor 2 is 2.0.
  const OdDbMTextLayout layout =
      oddbLayoutMText(oddbParseMText(OdString("a{\\H2x;b}{\\W2;坐}"), 1.0), 0.0, 1.0, 3);
  ASSERT_EQ(1u, layout.lines.size());
  const OdDbMTextLayoutLine& line = layout.lines[0];
  ASSERT_EQ(3u, line.fragments.size());
  EXPECT_NEAR(0.0, line.fragments[0].offset, 1e-12);
  EXPECT_NEAR(0.6, line.fragments[1].offset, 1e-12);
  EXPECT_NEAR(1.8, line.fragments[2].offset, 1e-12);
  EXPECT_NEAR(2.0, line.fragments[2].width, 1e-12);
  EXPECT_NEAR(3.8, line.width, 1e-12);
  EXPECT_NEAR(-3.8, line.x, 1e-12); // right attachment: the line ends at the origin
  EXPECT_EQ(2.0, line.height);
  EXPECT_EQ("ab坐", line.text.toUtf8());
}

TEST(MTextLayout, WrapsAtSpacesAndAroundFullWidthCharacters) {
  // Height 1: a Latin character advances 0.6, a CJK one 1.0.
  const struct {
    const char* what;
    const char* contents;
    double width;
    std::vector<std::string> lines;
  } cases[] = {
      {"no width: no wrapping", "aa bb cc", 0.0, {"aa bb cc"}},
      {"exactly fits", "aa bb cc", 3.0, {"aa bb", "cc"}},
      {"just too narrow", "aa bb cc", 2.9, {"aa", "bb", "cc"}},
      {"a long word gets its own line", "a verylongword b", 2.0, {"a", "verylongword", "b"}},
      {"spaces at a wrap are dropped", "aa   bb", 2.0, {"aa", "bb"}},
      {"leading spaces stay with the first word", "  aaaa", 1.0, {"  aaaa"}},
      {"CJK breaks anywhere", "中文字符", 2.5, {"中文", "字符"}},
      {"mixed Latin and CJK", "ab中文", 2.5, {"ab中", "文"}},
      {"a non-breaking space joins", "a\\~b c", 1.5, {"a\u00A0b", "c"}},
      {"paragraphs wrap on their own", "aa bb\\Pcc", 1.5, {"aa", "bb", "cc"}},
      {"surrogate pairs stay whole", "\U00020000\U00020000", 1.5, {"\U00020000", "\U00020000"}},
      {"formats do not stop wrapping", "aa {\\H0.5x;bb cc}", 2.5, {"aa bb", "cc"}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.lines, laidOut(c.contents, c.width)) << c.what;
}

} // namespace
