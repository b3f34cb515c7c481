#ifndef OD_GI_PLANE_AXES_H
#define OD_GI_PLANE_AXES_H

// Helpers the platform sinks share for placing circles, arcs and text through a model
// transform. Private to the platform library.

#include "Ge/GeMatrix3d.h"

#include <cmath>

namespace odgi {

/// Orthonormal axes (u, v) of the plane with this normal, u along xHint projected into the
/// plane (or the arbitrary-axis X when xHint is null), so that u x v is the unit normal.
/// False for a zero normal or a hint with no component in the plane.
inline bool planeAxes(const OdGeVector3d& normal, const OdGeVector3d* xHint, OdGeVector3d& u,
                      OdGeVector3d& v) {
  if (normal.isZeroLength())
    return false;
  const OdGeVector3d n = normal.normal();
  const OdGeVector3d x = xHint ? xHint->orthoProject(n) : n.perpVector();
  if (x.isZeroLength())
    return false;
  u = x.normal();
  v = n.crossProduct(u);
  return true;
}

/// The normal of the plane with this normal after the transform: the cross product of two
/// transformed in-plane axes, so mirroring flips it and non-uniform scaling tilts it correctly.
/// Zero for a zero normal or a transform that flattens the plane.
inline OdGeVector3d transformNormal(const OdGeMatrix3d& xfm, const OdGeVector3d& normal) {
  OdGeVector3d u;
  OdGeVector3d v;
  if (!planeAxes(normal, nullptr, u, v))
    return OdGeVector3d();
  const OdGeVector3d n = (xfm * u).crossProduct(xfm * v);
  return n.isZeroLength() ? OdGeVector3d() : n.normal();
}

inline bool isFinite(double value) {
  return std::isfinite(value);
}

} // namespace odgi

#endif
