#ifndef CUSTENTS_RENDER_VIEW_FIT_H
#define CUSTENTS_RENDER_VIEW_FIT_H

/// The plan view of a picture: how world XY maps to pixels, and how that map is chosen so the
/// drawing fills the picture.

#include "RenderScene.h"

namespace custents {
namespace render {

/// World (x, y) to pixels: px = offsetX + scale x, py = offsetY - scale y (y up in the world,
/// down in the picture). z is dropped.
struct ViewTransform {
  double scale = 1.0;
  double offsetX = 0.0;
  double offsetY = 0.0;

  PixelPoint toPixels(double x, double y) const {
    return {offsetX + scale * x, offsetY - scale * y};
  }
  /// A world vector's image: scaled, y flipped, no offset.
  PixelPoint vectorToPixels(double x, double y) const { return {scale * x, -scale * y}; }
};

/// A box in world XY.
struct PlanBox {
  double minX = 0.0;
  double minY = 0.0;
  double maxX = 0.0;
  double maxY = 0.0;
};

/// The largest scale that shows the box inside the picture less the margin on every side,
/// centred. A box with no width uses its height alone and the other way round; a single point
/// is shown at one pixel per unit at the centre. A margin that leaves no room is treated as
/// leaving one pixel.
ViewTransform fitView(const PlanBox& box, int width, int height, double margin);

/// The view at a fixed scale with the box's lower left corner margin pixels from the picture's
/// lower left corner.
ViewTransform viewAtScale(const PlanBox& box, int height, double scale, double margin);

} // namespace render
} // namespace custents

#endif
