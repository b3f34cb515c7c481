#include "GeoTriangleGeometry.h"

#include "Ge/GeVector3d.h"

#include <cmath>

namespace custents {

namespace {

/// A third of a full turn, as the triangle's construction has always used it.
constexpr double kThirdTurn = 2.0943951023931953;

} // namespace

TriangleCorners equilateralTriangle(const OdGePoint3d& center, const OdGePoint3d& through) {
  TriangleCorners corners{through, through, through};
  const double radius = through.distanceTo(center);
  OdGeVector3d radial = through - center;
  radial.rotateBy(kThirdTurn, OdGeVector3d::kZAxis);
  corners.v1 = center + radial.normal() * radius;
  radial.rotateBy(kThirdTurn, OdGeVector3d::kZAxis);
  corners.v0 = center + radial.normal() * radius;
  return corners;
}

OdGePoint3d triangleCentroid(const TriangleCorners& corners) {
  return OdGePoint3d((corners.v0.x + corners.v1.x + corners.v2.x) / 3.0,
                     (corners.v0.y + corners.v1.y + corners.v2.y) / 3.0,
                     (corners.v0.z + corners.v1.z + corners.v2.z) / 3.0);
}

double triangleGirth(const TriangleCorners& corners) {
  return corners.v1.distanceTo(corners.v2) + corners.v0.distanceTo(corners.v1) +
         corners.v0.distanceTo(corners.v2);
}

double triangleArea(const TriangleCorners& corners) {
  const double a = corners.v0.distanceTo(corners.v1);
  const double b = corners.v1.distanceTo(corners.v2);
  const double c = corners.v0.distanceTo(corners.v2);
  const double s = (a + b + c) / 2.0;
  const double product = (s - a) * s * (s - b) * (s - c);
  return product < 0.0 ? 0.0 : std::sqrt(product);
}

} // namespace custents
