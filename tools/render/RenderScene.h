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
  /// Text: the UTF-8 string and the linear map from glyph space of a one-unit font (x along
  /// the baseline, y down) to pixels, as cairo's font matrix {xx, yx, xy, yy}.
  std::string text;
  double fontMatrix[4] = {1.0, 0.0, 0.0, 1.0};
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
