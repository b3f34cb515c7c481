#ifndef OD_GE_VECTOR2D_H
#define OD_GE_VECTOR2D_H

/// A direction and length in a plane: the offsets of 2D layouts (text boxes, tick pairs,
/// bulge arcs) before they are placed in a plane of the drawing.

#include "Ge/GeTol.h"

class OdGeVector2d {
public:
  constexpr OdGeVector2d() : x(0.0), y(0.0) {}
  constexpr OdGeVector2d(double xx, double yy) : x(xx), y(yy) {}

  /// The additive identity (0, 0).
  static const OdGeVector2d kIdentity;
  static const OdGeVector2d kXAxis;
  static const OdGeVector2d kYAxis;

  OdGeVector2d& set(double xx, double yy) {
    x = xx;
    y = yy;
    return *this;
  }

  OdGeVector2d operator+(const OdGeVector2d& v) const { return OdGeVector2d(x + v.x, y + v.y); }
  OdGeVector2d operator-(const OdGeVector2d& v) const { return OdGeVector2d(x - v.x, y - v.y); }
  OdGeVector2d operator-() const { return OdGeVector2d(-x, -y); }
  OdGeVector2d operator*(double s) const { return OdGeVector2d(x * s, y * s); }
  OdGeVector2d operator/(double s) const { return OdGeVector2d(x / s, y / s); }
  OdGeVector2d& operator+=(const OdGeVector2d& v) { return set(x + v.x, y + v.y); }
  OdGeVector2d& operator-=(const OdGeVector2d& v) { return set(x - v.x, y - v.y); }
  OdGeVector2d& operator*=(double s) { return set(x * s, y * s); }
  OdGeVector2d& operator/=(double s) { return set(x / s, y / s); }
  OdGeVector2d& negate() { return set(-x, -y); }

  double operator[](unsigned int i) const { return i == 0 ? x : y; }
  double& operator[](unsigned int i) { return i == 0 ? x : y; }

  double length() const { return std::sqrt(x * x + y * y); }
  double lengthSqrd() const { return x * x + y * y; }
  double dotProduct(const OdGeVector2d& v) const { return x * v.x + y * v.y; }
  /// The z component of the 3D cross product: positive when v lies counter-clockwise of this.
  double crossProduct(const OdGeVector2d& v) const { return x * v.y - y * v.x; }

  /// The unit vector in this direction; a vector no longer than tol is returned unchanged,
  /// since it has no direction to keep.
  OdGeVector2d normal(const OdGeTol& tol = OdGeContext::gTol) const;
  OdGeVector2d& normalize(const OdGeTol& tol = OdGeContext::gTol) { return *this = normal(tol); }

  /// The angle from the X axis, counter-clockwise, in [0, 2π); 0 for a zero vector.
  double angle() const;
  /// The unsigned angle between the two directions, in [0, π]; 0 when either is zero.
  double angleTo(const OdGeVector2d& v) const;
  /// This vector turned a quarter turn counter-clockwise.
  OdGeVector2d perpVector() const { return OdGeVector2d(-y, x); }
  /// Turns the vector counter-clockwise by angle radians.
  OdGeVector2d& rotateBy(double angle);

  bool isZeroLength(const OdGeTol& tol = OdGeContext::gTol) const {
    return length() <= tol.equalVector();
  }
  bool isUnitLength(const OdGeTol& tol = OdGeContext::gTol) const {
    return OdEqual(length(), 1.0, tol.equalVector());
  }
  /// Zero-length vectors have no direction and are parallel or perpendicular to nothing.
  bool isParallelTo(const OdGeVector2d& v, const OdGeTol& tol = OdGeContext::gTol) const;
  bool isCodirectionalTo(const OdGeVector2d& v, const OdGeTol& tol = OdGeContext::gTol) const;
  bool isPerpendicularTo(const OdGeVector2d& v, const OdGeTol& tol = OdGeContext::gTol) const;
  bool isEqualTo(const OdGeVector2d& v, const OdGeTol& tol = OdGeContext::gTol) const {
    return (*this - v).length() <= tol.equalVector();
  }
  bool operator==(const OdGeVector2d& v) const { return isEqualTo(v); }
  bool operator!=(const OdGeVector2d& v) const { return !isEqualTo(v); }

  double x;
  double y;
};

inline OdGeVector2d operator*(double s, const OdGeVector2d& v) {
  return v * s;
}

#endif
