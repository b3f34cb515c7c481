#ifndef CUSTENTS_RENDER_RENDER_SCENE_H
#define CUSTENTS_RENDER_RENDER_SCENE_H

/// The picture as a list of primitives in pixel coordinates (origin top left, y down), with
/// their colours and widths resolved. The graphics sink produces it once; the SVG writer and
/// the cairo painter each turn it into a file, so both formats show the same thing.

#include <cstdint>
#include <string>
#include <vector>

namespace custents {
namespace render {

struct Rgb {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  friend bool operator==(const Rgb& a, const Rgb& b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
  }
  friend bool operator!=(const Rgb& a, const Rgb& b) { return !(a == b); }
};

struct PixelPoint {
  double x = 0.0;
  double y = 0.0;
};

/// One character of a text: the cell the platform's text metrics give it along the baseline.
/// Cells are in text heights times the width factor, so they line up with the text's box.
struct SceneGlyph {
  /// The character as UTF-8 (one code point).
  std::string utf8;
  double cellStart = 0.0;
  double cellWidth = 0.0;
  /// Drawn in a square cell (CJK, kana, hangul, full-width forms): the ideograph is fitted to
  /// the cell's height rather than the capitals.
  bool fullWidth = false;
};

struct ScenePrimitive {
  /// Path: an open or closed run of segments (polylines, arcs, lines). Polygon: a closed
  /// outline drawn with polygon(). Circle: a true circle on screen. Text: one line of text.
  enum Kind { kPath, kPolygon, kCircle, kText };

  Kind kind = kPath;
  /// Path and polygon: the vertices. Circle: the centre. Text: the baseline start.
  std::vector<PixelPoint> points;
  /// Path: the last vertex joins the first.
  bool closed = false;
  /// Polygons and closed paths are filled (even-odd) instead of stroked.
  bool filled = false;
  double radius = 0.0;
  Rgb color;
  /// Stroke width in pixels.
  double lineWidth = 1.0;
  /// Text: the UTF-8 string, its characters' cells, and the text's frame in pixels: textAlong
  /// is one height times the width factor along the baseline, textUp the cap height up
  /// (slanted by the oblique angle). The box of the text is points[0] + u textAlong + v textUp
  /// for u in [0, textAdvance] and v in [0, 1].
  std::string text;
  std::vector<SceneGlyph> glyphs;
  double textAdvance = 0.0;
  PixelPoint textAlong;
  PixelPoint textUp;
};

struct RenderScene {
  int width = 0;
  int height = 0;
  Rgb background;
  std::string fontFamily;
  std::vector<ScenePrimitive> primitives;
};

} // namespace render
} // namespace custents

#endif
