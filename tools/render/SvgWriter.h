#ifndef CUSTENTS_RENDER_SVG_WRITER_H
#define CUSTENTS_RENDER_SVG_WRITER_H

/// The scene as a plain SVG document, written by hand rather than through a graphics library
/// so that its structure is simple and stable: one element per primitive (path, polygon,
/// circle, text) with its colour as #rrggbb, which is what scripts and tests read.

#include "RenderScene.h"

#include <string>

namespace custents {
namespace render {

/// Coordinates are pixels with at most three decimals, written the same in every locale.
/// Text is escaped for XML; characters XML cannot carry (control characters) are left out.
std::string writeSvg(const RenderScene& scene);

} // namespace render
} // namespace custents

#endif
