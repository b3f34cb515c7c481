#ifndef CUSTENTS_GEO_TRIANGLE_GEOMETRY_H
#define CUSTENTS_GEO_TRIANGLE_GEOMETRY_H

// The measures and the equilateral construction of the survey triangle, kept apart from the
// entity so that they are tested without a database.

#include "Ge/GePoint3d.h"

namespace custents {

/// The three corners of a triangle, in the order the survey triangle keeps them.
struct TriangleCorners {
  OdGePoint3d v0;
  OdGePoint3d v1;
  OdGePoint3d v2;
};

/// The equilateral triangle with centre `center` through `through`: v2 is `through`, and v1 and
/// v0 follow at a third and two thirds of a turn counter-clockwise about +Z, each at the
/// distance of `through` from the centre. With the centre on `through` all corners coincide.
TriangleCorners equilateralTriangle(const OdGePoint3d& center, const OdGePoint3d& through);

/// The mean of the three corners.
OdGePoint3d triangleCentroid(const TriangleCorners& corners);

/// The sum of the three side lengths.
double triangleGirth(const TriangleCorners& corners);

/// The area by Heron's formula from the three side lengths. Rounding can push the product
/// under the root slightly below zero for collinear corners; such a triangle has area 0.
double triangleArea(const TriangleCorners& corners);

} // namespace custents

#endif
