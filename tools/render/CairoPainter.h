#ifndef CUSTENTS_RENDER_CAIRO_PAINTER_H
#define CUSTENTS_RENDER_CAIRO_PAINTER_H

/// The scene painted with cairo onto an image and saved as PNG.

#include "RenderScene.h"

#include <string>

namespace custents {
namespace render {

/// Writes the scene to path as a PNG of the scene's size (32-bit RGBA, opaque background).
/// Returns an empty string on success, otherwise why it failed (the file could not be
/// opened or written, or cairo could not make the picture).
std::string writePng(const RenderScene& scene, const std::string& path);

} // namespace render
} // namespace custents

#endif
