#include "CairoPainter.h"

#include "GlyphFitter.h"

#include <cairo.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace custents {
namespace render {

namespace {

constexpr double kPi = 3.14159265358979323846;

struct SurfaceDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDeleter {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

void setColor(cairo_t* cr, const Rgb& color) {
  cairo_set_source_rgb(cr, color.red / 255.0, color.green / 255.0, color.blue / 255.0);
}

/// Fills (even-odd) or strokes the current path as the primitive asks.
void finish(cairo_t* cr, const ScenePrimitive& primitive) {
  setColor(cr, primitive.color);
  if (primitive.filled) {
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_fill(cr);
    return;
  }
  cairo_set_line_width(cr, primitive.lineWidth);
  cairo_stroke(cr);
}

void paintPrimitive(cairo_t* cr, const ScenePrimitive& primitive, const GlyphFitter& glyphs) {
  cairo_new_path(cr);
  switch (primitive.kind) {
  case ScenePrimitive::kPath:
  case ScenePrimitive::kPolygon:
    cairo_move_to(cr, primitive.points[0].x, primitive.points[0].y);
    for (std::size_t i = 1; i < primitive.points.size(); ++i)
      cairo_line_to(cr, primitive.points[i].x, primitive.points[i].y);
    if (primitive.closed)
      cairo_close_path(cr);
    finish(cr, primitive);
    break;
  case ScenePrimitive::kCircle:
    cairo_arc(cr, primitive.points[0].x, primitive.points[0].y, primitive.radius, 0.0, 2.0 * kPi);
    cairo_close_path(cr);
    finish(cr, primitive);
    break;
  case ScenePrimitive::kText:
    setColor(cr, primitive.color);
    for (const FittedGlyph& fitted : glyphs.fit(primitive)) {
      cairo_set_font_face(cr, fitted.face);
      cairo_matrix_t fontMatrix;
      cairo_matrix_init(&fontMatrix, fitted.matrix[0], fitted.matrix[1], fitted.matrix[2],
                        fitted.matrix[3], 0.0, 0.0);
      cairo_set_font_matrix(cr, &fontMatrix);
      cairo_glyph_t glyph{fitted.index, fitted.origin.x, fitted.origin.y};
      cairo_show_glyphs(cr, &glyph, 1);
    }
    break;
  }
}

cairo_status_t writeToFile(void* closure, const unsigned char* data, unsigned int length) {
  std::FILE* file = static_cast<std::FILE*>(closure);
  return std::fwrite(data, 1, length, file) == length ? CAIRO_STATUS_SUCCESS
                                                      : CAIRO_STATUS_WRITE_ERROR;
}

} // namespace

std::string writePng(const RenderScene& scene, const std::string& path) {
  std::unique_ptr<cairo_surface_t, SurfaceDeleter> surface(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, scene.width, scene.height));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
    return "cannot make a " + std::to_string(scene.width) + " x " + std::to_string(scene.height) +
           " picture: " + cairo_status_to_string(cairo_surface_status(surface.get()));
  {
    std::unique_ptr<cairo_t, ContextDeleter> cr(cairo_create(surface.get()));
    setColor(cr.get(), scene.background);
    cairo_paint(cr.get());
    cairo_set_line_cap(cr.get(), CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cr.get(), CAIRO_LINE_JOIN_ROUND);
    // Glyphs are placed by their fitted matrices; hinting would move them off their cells.
    cairo_font_options_t* fontOptions = cairo_font_options_create();
    cairo_font_options_set_hint_style(fontOptions, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(fontOptions, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cr.get(), fontOptions);
    cairo_font_options_destroy(fontOptions);
    const GlyphFitter glyphs(scene.fontFamily);
    for (const ScenePrimitive& primitive : scene.primitives)
      paintPrimitive(cr.get(), primitive, glyphs);
    if (cairo_status(cr.get()) != CAIRO_STATUS_SUCCESS)
      return std::string("cannot paint the picture: ") +
             cairo_status_to_string(cairo_status(cr.get()));
  }
  cairo_surface_flush(surface.get());

  // The file is opened here rather than by cairo so that the reason for a failure (no such
  // folder, no permission, disk full) reaches the user.
  errno = 0;
  std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "wb"));
  if (!file)
    return "cannot write '" + path + "': " + std::strerror(errno);
  const cairo_status_t status =
      cairo_surface_write_to_png_stream(surface.get(), writeToFile, file.get());
  const int writeErrno = errno;
  const bool closed = std::fclose(file.release()) == 0;
  if (status != CAIRO_STATUS_SUCCESS || !closed)
    return "cannot write '" + path + "': " +
           (status != CAIRO_STATUS_SUCCESS && status != CAIRO_STATUS_WRITE_ERROR
                ? cairo_status_to_string(status)
                : std::strerror(writeErrno ? writeErrno : errno));
  return std::string();
}

} // namespace render
} // namespace custents
