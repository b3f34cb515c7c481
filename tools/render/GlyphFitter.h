#ifndef CUSTENTS_RENDER_GLYPH_FITTER_H
#define CUSTENTS_RENDER_GLYPH_FITTER_H

/// Real glyphs fitted into the boxes the platform's text metrics give texts, so a picture and
/// the drawing's extents agree whatever font draws the text. Each character is drawn in its
/// metric cell: capitals reach the top of the box, an ideograph fills the box's height, and a
/// glyph wider than its cell is narrowed to fit it and centred (never widened: a narrow letter
/// keeps its shape in the middle of its cell). The width factor and the oblique angle then
/// stretch and slant the glyphs as they do the box.
///
/// Glyphs the chosen font lacks come from a CJK-capable fallback font, so Chinese, Japanese and
/// Korean show as glyphs rather than boxes whatever font is chosen for Latin text.

#include "RenderScene.h"

#include <string>
#include <vector>

struct _cairo_font_face;
struct _cairo_scaled_font;

namespace custents {
namespace render {

/// The font used for characters the chosen font has no glyph for; Debian's fonts-wqy-microhei.
extern const char* const kCjkFallbackFamily;

/// One glyph ready to paint: the face and glyph number, the linear map from the glyph space of
/// a one-unit font (x right, y down) to pixels as cairo's font matrix {xx, yx, xy, yy}, and the
/// glyph's origin in pixels.
struct FittedGlyph {
  _cairo_font_face* face = nullptr;
  unsigned long index = 0;
  double matrix[4] = {1.0, 0.0, 0.0, 1.0};
  PixelPoint origin;
};

/// Holds the fonts it measured; the faces in the glyphs it returns live as long as it does.
/// Not copyable.
class GlyphFitter {
public:
  explicit GlyphFitter(const std::string& family);
  ~GlyphFitter();
  GlyphFitter(const GlyphFitter&) = delete;
  GlyphFitter& operator=(const GlyphFitter&) = delete;

  /// The glyphs of a text primitive. Control characters and characters that are not valid
  /// UTF-8 give none; a character no font has shows as the chosen font's missing-glyph box.
  std::vector<FittedGlyph> fit(const ScenePrimitive& text) const;

  /// The chosen font's em in cap heights, for writers that leave the glyphs to their viewer
  /// (SVG): its font size is the text's height times this.
  double emPerCapHeight() const;

private:
  struct Font {
    _cairo_font_face* face = nullptr;
    _cairo_scaled_font* measured = nullptr;
    /// Measures in ems: the capitals' height, and the ink of a reference ideograph above and
    /// below the baseline.
    double capHeight = 0.0;
    double ideographTop = 0.0;
    double ideographBelow = 0.0;
  };
  struct Found {
    const Font* font = nullptr;
    unsigned long index = 0;
    double advance = 0.0;
  };

  Font openFont(const std::string& family) const;
  /// The glyph for one UTF-8 character from the first font that has it; false for text cairo
  /// cannot read.
  bool findGlyph(const std::string& utf8, Found& found) const;

  std::vector<Font> m_fonts;
};

} // namespace render
} // namespace custents

#endif
