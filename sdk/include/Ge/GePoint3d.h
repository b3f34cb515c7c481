#ifndef OD_GE_POINT3D_H
#define OD_GE_POINT3D_H

/// A location in space, in world or entity coordinates.

#include "Ge/GePoint2d.h"
#include "Ge/GeVector3d.h"
#include "OdArray.h"

class OdGeMatrix3d;

class OdGePoint3d {
public:
  constexpr OdGePoint3d() : x(0.0), y(0.0), z(0.0) {}
  constexpr OdGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

  static const OdGePoint3d kOrigin;

  OdGePoint3d& set(double xx, double yy, double zz) {
    x = xx;
    y = yy;
    z = zz;
    return *this;
  }

  OdGePoint3d operator+(const OdGeVector3d& v) const {
    return OdGePoint3d(x + v.x, y + v.y, z + v.z);
  }
  OdGePoint3d operator-(const OdGeVector3d& v) const {
    return OdGePoint3d(x - v.x, y - v.y, z - v.z);
  }
  OdGeVector3d operator-(const OdGePoint3d& p) const {
    return OdGeVector3d(x - p.x, y - p.y, z - p.z);
  }
  OdGePoint3d& operator+=(const OdGeVector3d& v) { return set(x + v.x, y + v.y, z + v.z); }
  OdGePoint3d& operator-=(const OdGeVector3d& v) { return set(x - v.x, y - v.y, z - v.z); }
  /// Scales the coordinates about the origin (used for midpoints: (a + b.asVector()) / 2).
  OdGePoint3d operator*(double s) const { return OdGePoint3d(x * s, y * s, z * s); }
  OdGePoint3d operator/(double s) const { return OdGePoint3d(x / s, y / s, z / s); }
  OdGePoint3d& operator*=(double s) { return set(x * s, y * s, z * s); }
  OdGePoint3d& operator/=(double s) { return set(x / s, y / s, z / s); }
  OdGePoint3d& setToSum(const OdGePoint3d& p, const OdGeVector3d& v) { return *this = p + v; }

  double operator[](unsigned int i) const { return i == 0 ? x : (i == 1 ? y : z); }
  double& operator[](unsigned int i) { return i == 0 ? x : (i == 1 ? y : z); }

  OdGeVector3d asVector() const { return OdGeVector3d(x, y, z); }
  /// The x and y coordinates, dropping z.
  OdGePoint2d convert2d() const { return OdGePoint2d(x, y); }
  double distanceTo(const OdGePoint3d& p) const { return (*this - p).length(); }

  /// Applies the full matrix, translation included.
  OdGePoint3d& transformBy(const OdGeMatrix3d& xfm);
  OdGePoint3d& setToProduct(const OdGeMatrix3d& matrix, const OdGePoint3d& point);
  /// Turns the point counter-clockwise about the axis through wrtPoint (right-hand rule).
  /// Throws OdError(eInvalidInput) for a zero-length axis.
  OdGePoint3d& rotateBy(double angle, const OdGeVector3d& axis,
                        const OdGePoint3d& wrtPoint = kOrigin);
  OdGePoint3d& scaleBy(double factor, const OdGePoint3d& wrtPoint = kOrigin);

  bool isEqualTo(const OdGePoint3d& p, const OdGeTol& tol = OdGeContext::gTol) const {
    return distanceTo(p) <= tol.equalPoint();
  }
  bool operator==(const OdGePoint3d& p) const { return isEqualTo(p); }
  bool operator!=(const OdGePoint3d& p) const { return !isEqualTo(p); }

  double x;
  double y;
  double z;
};

inline OdGePoint3d operator*(double s, const OdGePoint3d& p) {
  return p * s;
}
/// The point transformed by the full matrix.
OdGePoint3d operator*(const OdGeMatrix3d& matrix, const OdGePoint3d& point);

typedef OdArray<OdGePoint3d> OdGePoint3dArray;

#endif
