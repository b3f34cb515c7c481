#include "RenderOptions.h"

#include <cmath>

namespace custents {
namespace render {

std::string RenderOptions::validate() const {
  if (width < 1 || height < 1 || width > kMaxPictureSide || height > kMaxPictureSide)
    return "the picture size " + std::to_string(width) + " x " + std::to_string(height) +
           " is not between 1 and " + std::to_string(kMaxPictureSide) + " pixels a side";
  if (static_cast<double>(width) * height > kMaxPicturePixels)
    return "the picture size " + std::to_string(width) + " x " + std::to_string(height) +
           " exceeds the limit of " + std::to_string(static_cast<long long>(kMaxPicturePixels)) +
           " pixels";
  if (!(pixelsPerUnit >= 0.0) || !std::isfinite(pixelsPerUnit))
    return "the pixels per unit must be 0 (fit the picture) or a positive number";
  if (!(margin >= 0.0) || !std::isfinite(margin))
    return "the margin must be a number of pixels, 0 or more";
  if (pixelsPerUnit == 0.0 && (2.0 * margin >= width || 2.0 * margin >= height))
    return "the margin leaves no room for the drawing in a " + std::to_string(width) + " x " +
           std::to_string(height) + " picture";
  if (!(lineWidth > 0.0) || !std::isfinite(lineWidth))
    return "the line width must be a positive number of pixels";
  if (!(pixelsPerMillimetre > 0.0) || !std::isfinite(pixelsPerMillimetre))
    return "the pixels per millimetre must be a positive number";
  return std::string();
}

} // namespace render
} // namespace custents
