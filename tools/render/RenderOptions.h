#ifndef CUSTENTS_RENDER_RENDER_OPTIONS_H
#define CUSTENTS_RENDER_RENDER_OPTIONS_H

/// How a picture is made: its size, background, margin and line widths.

#include <string>

namespace custents {
namespace render {

/// The two backgrounds a CAD user knows; the foreground colour (ACI 7) is its opposite.
enum class Background { kWhite, kDark };

struct RenderOptions {
  /// The picture size in pixels, used when pixelsPerUnit is 0.
  int width = 800;
  int height = 600;
  /// When positive, the scale is fixed instead and the picture is as large as the drawing's
  /// extents at this scale plus the margins (the size above is then used only for an empty
  /// drawing).
  double pixelsPerUnit = 0.0;
  Background background = Background::kWhite;
  /// Free pixels kept between the drawing's extents and each edge of the picture.
  double margin = 10.0;
  /// The width of lines with no lineweight of their own (by default, 0 and the thin weights);
  /// also the least width any line is drawn with.
  double lineWidth = 1.0;
  /// How lineweights (hundredths of a millimetre) become pixels: 96 dpi, a screen's nominal
  /// density, so 0.25 mm is about one pixel and 2.11 mm eight.
  double pixelsPerMillimetre = 96.0 / 25.4;
  /// The font text is drawn with; any font fontconfig can find. Characters it has no glyph for
  /// come from the CJK fallback font (GlyphFitter.h), which is also the default: it covers
  /// Latin and Chinese, Japanese and Korean (Debian's fonts-wqy-microhei).
  std::string fontFamily = "WenQuanYi Micro Hei";

  /// Empty when the options can make a picture, otherwise what is wrong with them.
  std::string validate() const;
};

/// The largest picture side and area rendered; larger requests are refused rather than
/// attempted, since the pixel buffer alone would take gigabytes.
constexpr int kMaxPictureSide = 16384;
constexpr double kMaxPicturePixels = 64.0 * 1024.0 * 1024.0;

} // namespace render
} // namespace custents

#endif
