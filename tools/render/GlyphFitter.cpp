#include "GlyphFitter.h"

#include <cairo.h>

#include <cmath>

namespace custents {
namespace render {

const char* const kCjkFallbackFamily = "WenQuanYi Micro Hei";

namespace {

/// Fonts are measured at this size so that cairo's rounding does not show in the measures.
constexpr double kMeasureSize = 1000.0;
/// Used when a font has no "H" to measure: a typical sans serif's capitals.
constexpr double kTypicalCapHeight = 0.72;
/// The ideograph whose ink marks the height CJK glyphs are fitted to: it fills the ideographic
/// body in common fonts.
constexpr const char* kReferenceIdeograph = "\xE5\x9B\xBD"; // U+56FD

bool inkOf(cairo_scaled_font_t* font, const char* utf8, cairo_text_extents_t& extents) {
  cairo_glyph_t* glyphs = nullptr;
  int count = 0;
  const cairo_status_t status = cairo_scaled_font_text_to_glyphs(font, 0.0, 0.0, utf8, -1, &glyphs,
                                                                 &count, nullptr, nullptr, nullptr);
  const bool found = status == CAIRO_STATUS_SUCCESS && count == 1 && glyphs[0].index != 0;
  if (found)
    cairo_scaled_font_glyph_extents(font, glyphs, 1, &extents);
  cairo_glyph_free(glyphs);
  return found && extents.height > 0.0;
}

} // namespace

GlyphFitter::GlyphFitter(const std::string& family) {
  m_fonts.push_back(openFont(family));
  if (family != kCjkFallbackFamily)
    m_fonts.push_back(openFont(kCjkFallbackFamily));
}

GlyphFitter::~GlyphFitter() {
  for (Font& font : m_fonts) {
    cairo_scaled_font_destroy(font.measured);
    cairo_font_face_destroy(font.face);
  }
}

GlyphFitter::Font GlyphFitter::openFont(const std::string& family) const {
  Font font;
  font.face =
      cairo_toy_font_face_create(family.c_str(), CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_matrix_t size;
  cairo_matrix_init_scale(&size, kMeasureSize, kMeasureSize);
  cairo_matrix_t identity;
  cairo_matrix_init_identity(&identity);
  // Unhinted outlines and metrics: the glyphs are scaled freely afterwards, so grid fitting at
  // the measuring size would only distort them.
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  font.measured = cairo_scaled_font_create(font.face, &size, &identity, options);
  cairo_font_options_destroy(options);

  font.capHeight = kTypicalCapHeight;
  cairo_text_extents_t ink;
  if (inkOf(font.measured, "H", ink))
    font.capHeight = ink.height / kMeasureSize;
  // A font without ideographs fits its full-width characters (full-width Latin forms, say) as
  // it does its capitals.
  font.ideographTop = font.capHeight;
  font.ideographBelow = 0.0;
  if (inkOf(font.measured, kReferenceIdeograph, ink)) {
    font.ideographTop = -ink.y_bearing / kMeasureSize;
    font.ideographBelow = (ink.y_bearing + ink.height) / kMeasureSize;
  }
  return font;
}

bool GlyphFitter::findGlyph(const std::string& utf8, Found& found) const {
  bool readable = false;
  for (const Font& font : m_fonts) {
    cairo_glyph_t* glyphs = nullptr;
    int count = 0;
    const cairo_status_t status = cairo_scaled_font_text_to_glyphs(
        font.measured, 0.0, 0.0, utf8.c_str(), -1, &glyphs, &count, nullptr, nullptr, nullptr);
    if (status == CAIRO_STATUS_SUCCESS && count == 1) {
      cairo_text_extents_t extents;
      cairo_scaled_font_glyph_extents(font.measured, glyphs, 1, &extents);
      // The first font that can read the text supplies the missing-glyph box if no font has
      // the glyph.
      if (!readable || glyphs[0].index != 0) {
        found.font = &font;
        found.index = glyphs[0].index;
        found.advance = extents.x_advance / kMeasureSize;
      }
      readable = true;
    }
    cairo_glyph_free(glyphs);
    if (readable && found.index != 0)
      return true;
  }
  return readable;
}

std::vector<FittedGlyph> GlyphFitter::fit(const ScenePrimitive& text) const {
  std::vector<FittedGlyph> fitted;
  const PixelPoint& origin = text.points.empty() ? PixelPoint() : text.points.front();
  const PixelPoint& along = text.textAlong;
  const PixelPoint& up = text.textUp;
  for (const SceneGlyph& glyph : text.glyphs) {
    Found found;
    if (!(glyph.cellWidth > 0.0) || !findGlyph(glyph.utf8, found))
      continue;
    const Font& font = *found.font;
    // Ems per text height, and how far the glyph's baseline sits above the text's.
    double em = 1.0 / font.capHeight;
    double lift = 0.0;
    if (glyph.fullWidth && font.ideographTop + font.ideographBelow > 0.0) {
      em = 1.0 / (font.ideographTop + font.ideographBelow);
      lift = font.ideographBelow * em;
    }
    const double advance = found.advance * em;
    const double narrowing = advance > glyph.cellWidth ? glyph.cellWidth / advance : 1.0;
    const double start = glyph.cellStart + 0.5 * (glyph.cellWidth - advance * narrowing);

    FittedGlyph out;
    out.face = font.face;
    out.index = found.index;
    out.matrix[0] = narrowing * em * along.x;
    out.matrix[1] = narrowing * em * along.y;
    out.matrix[2] = -em * up.x;
    out.matrix[3] = -em * up.y;
    out.origin = {origin.x + start * along.x + lift * up.x,
                  origin.y + start * along.y + lift * up.y};
    bool finite = std::isfinite(out.origin.x) && std::isfinite(out.origin.y);
    for (double value : out.matrix)
      finite = finite && std::isfinite(value);
    if (finite)
      fitted.push_back(out);
  }
  return fitted;
}

double GlyphFitter::emPerCapHeight() const {
  return 1.0 / m_fonts.front().capHeight;
}

} // namespace render
} // namespace custents
