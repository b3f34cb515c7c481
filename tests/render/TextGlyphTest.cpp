// Real glyphs in pictures: Chinese and Latin texts show as glyphs of a CJK-capable font, placed
// in the box the platform's text metrics give the text, so a picture agrees with the extents
// it was fitted to.

#include "DrawingRenderer.h"

#include "GiTextMetrics.h"
#include "GlyphFitter.h"
#include "OdString.h"
#include "RenderTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace render_test {
namespace {

using custents::render::DrawingRenderer;
using custents::render::RenderOptions;
using custents::render::RenderResult;

constexpr double kHeight = 4.0;
constexpr double kPixelsPerUnit = 10.0;
constexpr int kMargin = 20;

/// A pixel darker than the faint edge of anti-aliasing.
bool isInk(std::uint32_t rgb) {
  return ((rgb >> 16) & 0xFF) < 160 || ((rgb >> 8) & 0xFF) < 160 || (rgb & 0xFF) < 160;
}

ScriptedEntityPtr textEntity(const std::string& utf8, double widthFactor) {
  ScriptedEntityPtr entity = ScriptedEntity::createObject();
  entity->worldScript = [utf8, widthFactor](OdGiWorldDraw* draw) {
    draw->geometry().text(OdGePoint3d(5, 7, 0), OdGeVector3d::kZAxis, OdGeVector3d::kXAxis, kHeight,
                          widthFactor, 0.0, OdString::fromUtf8(utf8));
  };
  return entity;
}

/// The text alone in a picture fitted to its extents: the text's box is the picture less the
/// margin on every side.
DrawingRenderer textRenderer(const std::string& family) {
  RenderOptions options;
  options.pixelsPerUnit = kPixelsPerUnit;
  options.margin = kMargin;
  options.fontFamily = family;
  return DrawingRenderer(options);
}

PngPixels renderText(const std::string& utf8, double widthFactor, const std::string& family) {
  ScriptedEntityPtr entity = textEntity(utf8, widthFactor);
  const std::string path = temporaryPath("text.png");
  const RenderResult result = textRenderer(family).renderPng({entity.get()}, path);
  EXPECT_TRUE(result.ok) << result.error;
  PngPixels pixels;
  EXPECT_TRUE(readPngPixels(path, pixels)) << path;
  return pixels;
}

struct InkCount {
  int inBox = 0;
  int farOutside = 0;
  /// Ink in the first and last fifth of the box's length: the glyphs spread over the box.
  int firstFifth = 0;
  int lastFifth = 0;
};

InkCount countInk(const PngPixels& pixels, int slack) {
  InkCount count;
  const int left = kMargin;
  const int right = pixels.width - kMargin;
  const int top = kMargin;
  const int bottom = pixels.height - kMargin;
  for (int y = 0; y < pixels.height; ++y)
    for (int x = 0; x < pixels.width; ++x) {
      if (!isInk(pixels.at(x, y)))
        continue;
      if (x >= left && x < right && y >= top && y < bottom) {
        ++count.inBox;
        count.firstFifth += x < left + (right - left) / 5;
        count.lastFifth += x >= right - (right - left) / 5;
      } else if (x < left - slack || x >= right + slack || y < top - slack || y >= bottom + slack) {
        ++count.farOutside;
      }
    }
  return count;
}

TEST(TextGlyphs, InkFillsTheMetricBoxAndStaysInIt) {
  struct Case {
    const char* text;
    double widthFactor;
    const char* family;
  };
  // The chosen font lacking ideographs (DejaVu Sans) takes them from the CJK fallback.
  const Case cases[] = {
      {"\xE5\x9D\x90\xE6\xA0\x87", 1.0, "WenQuanYi Micro Hei"},   // 坐标
      {"X=\xE5\x9D\x90\xE6\xA0\x87", 1.5, "WenQuanYi Micro Hei"}, // X=坐标, stretched
      {"\xE5\x9D\x90\xE6\xA0\x87", 1.0, "DejaVu Sans"},
      {"WiW", 0.5, "DejaVu Sans"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.text) + " in " + c.family);
    const PngPixels pixels = renderText(c.text, c.widthFactor, c.family);
    // The picture is the metric box plus the margins.
    const double advance =
        odgiTextLineWidth(OdString::fromUtf8(c.text), kHeight, c.widthFactor) * kPixelsPerUnit;
    EXPECT_NEAR(advance + 2 * kMargin, pixels.width, 1.0);
    EXPECT_NEAR(kHeight * kPixelsPerUnit + 2 * kMargin, pixels.height, 1.0);

    // A few percent of the height of slack: ideographs overshoot their reference a little,
    // and anti-aliasing reaches a pixel further.
    const InkCount ink = countInk(pixels, 3);
    const int boxArea = (pixels.width - 2 * kMargin) * (pixels.height - 2 * kMargin);
    EXPECT_GT(ink.inBox, boxArea / 12);
    EXPECT_EQ(0, ink.farOutside);
    EXPECT_GT(ink.firstFifth, 0);
    EXPECT_GT(ink.lastFifth, 0);
    if (c.widthFactor != 1.0)
      continue;

    // The SVG carries the text, the chosen family before the CJK fallback, and the box length
    // in an unscaled frame; the capitals are the text's 40 pixels tall in the chosen font.
    ScriptedEntityPtr entity = textEntity(c.text, 1.0);
    std::string svg;
    ASSERT_TRUE(textRenderer(c.family).svgDocument({entity.get()}, svg).ok);
    const std::string families = svgElement(svg, "g").attribute("font-family");
    EXPECT_EQ(0u, families.find("'" + std::string(c.family) + "'")) << families;
    EXPECT_NE(std::string::npos, families.find("'WenQuanYi Micro Hei'")) << families;
    const SvgElement element = svgElement(svg, "text");
    EXPECT_EQ(c.text, element.text);
    EXPECT_NEAR(advance, std::stod(element.attribute("textLength")), 1e-3);
    EXPECT_EQ("spacingAndGlyphs", element.attribute("lengthAdjust"));
    const double em = custents::render::GlyphFitter(c.family).emPerCapHeight();
    EXPECT_GT(em, 1.0);
    EXPECT_NEAR(40.0 * em, std::stod(element.attribute("font-size")), 1e-2);
  }
}

TEST(TextGlyphs, DifferentIdeographsDrawDifferentGlyphsNotMissingGlyphBoxes) {
  // A font without the characters would draw the same box for each; real glyphs differ.
  for (const char* family : {"WenQuanYi Micro Hei", "DejaVu Sans"}) {
    SCOPED_TRACE(family);
    const PngPixels north = renderText("\xE5\x8C\x97", 1.0, family); // 北
    const PngPixels sit = renderText("\xE5\x9D\x90", 1.0, family);   // 坐
    ASSERT_EQ(north.width, sit.width);
    ASSERT_EQ(north.height, sit.height);
    int differing = 0;
    int inked = 0;
    for (std::size_t i = 0; i < north.rgb.size(); ++i) {
      inked += isInk(north.rgb[i]);
      differing += isInk(north.rgb[i]) != isInk(sit.rgb[i]);
    }
    EXPECT_GT(inked, 100);
    EXPECT_GT(differing, inked / 3);
  }
}

} // namespace
} // namespace render_test
