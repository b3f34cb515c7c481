#include "Ge/GeVector2d.h"

const OdGeVector2d OdGeVector2d::kIdentity(0.0, 0.0);
const OdGeVector2d OdGeVector2d::kXAxis(1.0, 0.0);
const OdGeVector2d OdGeVector2d::kYAxis(0.0, 1.0);

OdGeVector2d OdGeVector2d::normal(const OdGeTol& tol) const {
  const double len = length();
  if (len <= tol.equalVector())
    return *this;
  return OdGeVector2d(x / len, y / len);
}

double OdGeVector2d::angle() const {
  if (x == 0.0 && y == 0.0)
    return 0.0;
  double a = std::atan2(y, x);
  if (a < 0.0)
    a += Oda2PI;
  // A tiny negative angle wraps to exactly 2π in floating point; keep the range half-open.
  return a >= Oda2PI ? 0.0 : a;
}

double OdGeVector2d::angleTo(const OdGeVector2d& v) const {
  // atan2 of |cross| and dot stays accurate for nearly parallel vectors, where acos does not.
  return std::atan2(std::fabs(crossProduct(v)), dotProduct(v));
}

OdGeVector2d& OdGeVector2d::rotateBy(double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return set(x * c - y * s, x * s + y * c);
}

bool OdGeVector2d::isParallelTo(const OdGeVector2d& v, const OdGeTol& tol) const {
  if (isZeroLength(tol) || v.isZeroLength(tol))
    return false;
  return std::fabs(normal(tol).crossProduct(v.normal(tol))) <= tol.equalVector();
}

bool OdGeVector2d::isCodirectionalTo(const OdGeVector2d& v, const OdGeTol& tol) const {
  return isParallelTo(v, tol) && dotProduct(v) > 0.0;
}

bool OdGeVector2d::isPerpendicularTo(const OdGeVector2d& v, const OdGeTol& tol) const {
  if (isZeroLength(tol) || v.isZeroLength(tol))
    return false;
  return std::fabs(normal(tol).dotProduct(v.normal(tol))) <= tol.equalVector();
}
