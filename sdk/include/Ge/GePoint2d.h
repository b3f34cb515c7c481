#ifndef OD_GE_POINT2D_H
#define OD_GE_POINT2D_H

/// A location in a plane: the coordinates of lightweight polyline vertices and of 2D layouts.

#include "Ge/GeVector2d.h"
#include "OdArray.h"

class OdGePoint2d {
public:
  constexpr OdGePoint2d() : x(0.0), y(0.0) {}
  constexpr OdGePoint2d(double xx, double yy) : x(xx), y(yy) {}

  static const OdGePoint2d kOrigin;

  OdGePoint2d& set(double xx, double yy) {
    x = xx;
    y = yy;
    return *this;
  }

  OdGePoint2d operator+(const OdGeVector2d& v) const { return OdGePoint2d(x + v.x, y + v.y); }
  OdGePoint2d operator-(const OdGeVector2d& v) const { return OdGePoint2d(x - v.x, y - v.y); }
  OdGeVector2d operator-(const OdGePoint2d& p) const { return OdGeVector2d(x - p.x, y - p.y); }
  OdGePoint2d& operator+=(const OdGeVector2d& v) { return set(x + v.x, y + v.y); }
  OdGePoint2d& operator-=(const OdGeVector2d& v) { return set(x - v.x, y - v.y); }
  OdGePoint2d operator*(double s) const { return OdGePoint2d(x * s, y * s); }
  OdGePoint2d operator/(double s) const { return OdGePoint2d(x / s, y / s); }
  OdGePoint2d& operator*=(double s) { return set(x * s, y * s); }
  OdGePoint2d& operator/=(double s) { return set(x / s, y / s); }

  double operator[](unsigned int i) const { return i == 0 ? x : y; }
  double& operator[](unsigned int i) { return i == 0 ? x : y; }

  OdGeVector2d asVector() const { return OdGeVector2d(x, y); }
  double distanceTo(const OdGePoint2d& p) const { return (*this - p).length(); }

  /// Turns the point counter-clockwise by angle radians about wrtPoint.
  OdGePoint2d& rotateBy(double angle, const OdGePoint2d& wrtPoint = kOrigin);
  OdGePoint2d& scaleBy(double factor, const OdGePoint2d& wrtPoint = kOrigin);

  bool isEqualTo(const OdGePoint2d& p, const OdGeTol& tol = OdGeContext::gTol) const {
    return distanceTo(p) <= tol.equalPoint();
  }
  bool operator==(const OdGePoint2d& p) const { return isEqualTo(p); }
  bool operator!=(const OdGePoint2d& p) const { return !isEqualTo(p); }

  double x;
  double y;
};

inline OdGePoint2d operator*(double s, const OdGePoint2d& p) {
  return p * s;
}

typedef OdArray<OdGePoint2d> OdGePoint2dArray;
typedef OdArray<OdGeVector2d> OdGeVector2dArray;

#endif
