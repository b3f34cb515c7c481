#include "Ge/GeVector3d.h"

#include "Ge/GeMatrix3d.h"
#include "OdError.h"

#include <algorithm>
#include <cmath>
#include <limits>

const OdGeVector3d OdGeVector3d::kIdentity(0.0, 0.0, 0.0);
const OdGeVector3d OdGeVector3d::kXAxis(1.0, 0.0, 0.0);
const OdGeVector3d OdGeVector3d::kYAxis(0.0, 1.0, 0.0);
const OdGeVector3d OdGeVector3d::kZAxis(0.0, 0.0, 1.0);

double OdGeVector3d::length() const {
  const double largest = std::max(std::fabs(x), std::max(std::fabs(y), std::fabs(z)));
  if (largest == 0.0 || !std::isfinite(largest))
    return largest;
  const double sx = x / largest, sy = y / largest, sz = z / largest;
  return largest * std::sqrt(sx * sx + sy * sy + sz * sz);
}

OdGeVector3d OdGeVector3d::normal(const OdGeTol& tol) const {
  const double len = length();
  if (len <= tol.equalVector())
    return *this;
  // A vector that is unit length to a few ulps stays as it is, so that normalising is
  // idempotent: a normal read from a drawing and written back keeps its exact bits.
  if (std::fabs(len - 1.0) <= 4 * std::numeric_limits<double>::epsilon())
    return *this;
  return OdGeVector3d(x / len, y / len, z / len);
}

double OdGeVector3d::angleTo(const OdGeVector3d& v) const {
  // atan2 of |cross| and dot stays accurate for nearly parallel vectors, where acos does not.
  return std::atan2(crossProduct(v).length(), dotProduct(v));
}

double OdGeVector3d::angleTo(const OdGeVector3d& v, const OdGeVector3d& referenceVector) const {
  const double unsignedAngle = angleTo(v);
  if (crossProduct(v).dotProduct(referenceVector) >= 0.0)
    return unsignedAngle;
  const double angle = Oda2PI - unsignedAngle;
  // A tiny clockwise angle rounds to exactly 2π; keep the range half-open.
  return angle >= Oda2PI ? 0.0 : angle;
}

OdGeVector3d OdGeVector3d::perpVector() const {
  const double len = length();
  if (len == 0.0)
    return kIdentity;
  // The DXF arbitrary-axis rule: a normal close to the world Z axis takes its X axis from
  // world Y, any other from world Z. The 1/64 threshold is the format's, so that an entity's
  // plane axes agree with every other reader of the drawing.
  const OdGeVector3d unit = *this / len;
  const double threshold = 1.0 / 64.0;
  const OdGeVector3d& world =
      (std::fabs(unit.x) < threshold && std::fabs(unit.y) < threshold) ? kYAxis : kZAxis;
  const OdGeVector3d ax = world.crossProduct(unit);
  return ax / ax.length();
}

OdGeVector3d OdGeVector3d::orthoProject(const OdGeVector3d& planeNormal) const {
  const double lenSq = planeNormal.lengthSqrd();
  if (lenSq == 0.0)
    return *this;
  return *this - planeNormal * (dotProduct(planeNormal) / lenSq);
}

OdGeVector3d& OdGeVector3d::transformBy(const OdGeMatrix3d& xfm) {
  return setToProduct(xfm, *this);
}

OdGeVector3d& OdGeVector3d::setToProduct(const OdGeMatrix3d& m, const OdGeVector3d& v) {
  const double(&e)[4][4] = m.entry;
  return set(e[0][0] * v.x + e[0][1] * v.y + e[0][2] * v.z,
             e[1][0] * v.x + e[1][1] * v.y + e[1][2] * v.z,
             e[2][0] * v.x + e[2][1] * v.y + e[2][2] * v.z);
}

OdGeVector3d& OdGeVector3d::rotateBy(double angle, const OdGeVector3d& axis) {
  return transformBy(OdGeMatrix3d::rotation(angle, axis));
}

OdGeVector3d& OdGeVector3d::mirror(const OdGeVector3d& normalToPlane) {
  return transformBy(OdGeMatrix3d::mirroring(OdGePoint3d::kOrigin, normalToPlane));
}

bool OdGeVector3d::isParallelTo(const OdGeVector3d& v, const OdGeTol& tol) const {
  if (isZeroLength(tol) || v.isZeroLength(tol))
    return false;
  return normal(tol).crossProduct(v.normal(tol)).length() <= tol.equalVector();
}

bool OdGeVector3d::isCodirectionalTo(const OdGeVector3d& v, const OdGeTol& tol) const {
  return isParallelTo(v, tol) && dotProduct(v) > 0.0;
}

bool OdGeVector3d::isPerpendicularTo(const OdGeVector3d& v, const OdGeTol& tol) const {
  if (isZeroLength(tol) || v.isZeroLength(tol))
    return false;
  return std::fabs(normal(tol).dotProduct(v.normal(tol))) <= tol.equalVector();
}

OdGeVector3d operator*(const OdGeMatrix3d& matrix, const OdGeVector3d& vect) {
  return OdGeVector3d().setToProduct(matrix, vect);
}
