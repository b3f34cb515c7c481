#include "ViewFit.h"

#include <gtest/gtest.h>

#include <vector>

namespace render_test {
namespace {

using custents::render::fitView;
using custents::render::PixelPoint;
using custents::render::PlanBox;
using custents::render::ViewTransform;

void expectPixel(double x, double y, const PixelPoint& actual) {
  EXPECT_NEAR(x, actual.x, 1e-9);
  EXPECT_NEAR(y, actual.y, 1e-9);
}

TEST(ViewFit, FitsTheBoxCentredWithTheMarginAndSquarePixels) {
  struct Case {
    const char* name;
    PlanBox box;
    int width, height;
    double margin;
    double scale;
    // Where the box's lower left and upper right corners land.
    PixelPoint lowerLeft, upperRight;
  };
  const std::vector<Case> cases = {
      {"width decides", {0, 0, 100, 50}, 220, 320, 10, 2.0, {10, 210}, {210, 110}},
      {"height decides", {0, 0, 100, 50}, 420, 120, 10, 2.0, {110, 110}, {310, 10}},
      {"negative coordinates", {-30, -20, -10, 0}, 40, 40, 0, 2.0, {0, 40}, {40, 0}},
      {"horizontal line", {0, 5, 10, 5}, 120, 50, 10, 10.0, {10, 25}, {110, 25}},
      {"vertical line", {5, 0, 5, 10}, 50, 120, 10, 10.0, {25, 110}, {25, 10}},
      {"single point", {7, 3, 7, 3}, 50, 40, 5, 1.0, {25, 20}, {25, 20}},
      {"margin larger than the picture", {0, 0, 1, 1}, 10, 10, 20, 1.0, {4.5, 5.5}, {5.5, 4.5}},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.name);
    const ViewTransform view = fitView(item.box, item.width, item.height, item.margin);
    EXPECT_NEAR(item.scale, view.scale, 1e-12);
    expectPixel(item.lowerLeft.x, item.lowerLeft.y, view.toPixels(item.box.minX, item.box.minY));
    expectPixel(item.upperRight.x, item.upperRight.y, view.toPixels(item.box.maxX, item.box.maxY));
  }
}

} // namespace
} // namespace render_test
