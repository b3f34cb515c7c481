#include "ViewFit.h"

#include <algorithm>

namespace custents {
namespace render {

ViewTransform fitView(const PlanBox& box, int width, int height, double margin) {
  const double roomX = std::max(1.0, width - 2.0 * margin);
  const double roomY = std::max(1.0, height - 2.0 * margin);
  const double extentX = box.maxX - box.minX;
  const double extentY = box.maxY - box.minY;
  // A horizontal or vertical line has an exactly flat box; the other direction sets the scale.
  double scale = 1.0;
  if (extentX > 0.0 && extentY > 0.0)
    scale = std::min(roomX / extentX, roomY / extentY);
  else if (extentX > 0.0)
    scale = roomX / extentX;
  else if (extentY > 0.0)
    scale = roomY / extentY;

  ViewTransform view;
  view.scale = scale;
  const double centerX = 0.5 * (box.minX + box.maxX);
  const double centerY = 0.5 * (box.minY + box.maxY);
  view.offsetX = 0.5 * width - scale * centerX;
  view.offsetY = 0.5 * height + scale * centerY;
  return view;
}

ViewTransform viewAtScale(const PlanBox& box, int height, double scale, double margin) {
  ViewTransform view;
  view.scale = scale;
  view.offsetX = margin - scale * box.minX;
  view.offsetY = height - margin + scale * box.minY;
  return view;
}

} // namespace render
} // namespace custents
