#ifndef OD_GE_VECTOR3D_H
#define OD_GE_VECTOR3D_H

/// A direction and length in space: entity normals, axis directions, displacements.

#include "Ge/GeTol.h"
#include "Ge/GeVector2d.h"
#include "OdArray.h"

class OdGeMatrix3d;

class OdGeVector3d {
public:
  constexpr OdGeVector3d() : x(0.0), y(0.0), z(0.0) {}
  constexpr OdGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

  /// The additive identity (0, 0, 0).
  static const OdGeVector3d kIdentity;
  static const OdGeVector3d kXAxis;
  static const OdGeVector3d kYAxis;
  static const OdGeVector3d kZAxis;

  OdGeVector3d& set(double xx, double yy, double zz) {
    x = xx;
    y = yy;
    z = zz;
    return *this;
  }

  OdGeVector3d operator+(const OdGeVector3d& v) const {
    return OdGeVector3d(x + v.x, y + v.y, z + v.z);
  }
  OdGeVector3d operator-(const OdGeVector3d& v) const {
    return OdGeVector3d(x - v.x, y - v.y, z - v.z);
  }
  OdGeVector3d operator-() const { return OdGeVector3d(-x, -y, -z); }
  OdGeVector3d operator*(double s) const { return OdGeVector3d(x * s, y * s, z * s); }
  OdGeVector3d operator/(double s) const { return OdGeVector3d(x / s, y / s, z / s); }
  OdGeVector3d& operator+=(const OdGeVector3d& v) { return set(x + v.x, y + v.y, z + v.z); }
  OdGeVector3d& operator-=(const OdGeVector3d& v) { return set(x - v.x, y - v.y, z - v.z); }
  OdGeVector3d& operator*=(double s) { return set(x * s, y * s, z * s); }
  OdGeVector3d& operator/=(double s) { return set(x / s, y / s, z / s); }
  OdGeVector3d& negate() { return set(-x, -y, -z); }
  OdGeVector3d& setToSum(const OdGeVector3d& a, const OdGeVector3d& b) { return *this = a + b; }

  double operator[](unsigned int i) const { return i == 0 ? x : (i == 1 ? y : z); }
  double& operator[](unsigned int i) { return i == 0 ? x : (i == 1 ? y : z); }

  /// Exact for any finite components: scaled so that huge ones do not overflow to infinity
  /// and tiny ones do not vanish.
  double length() const;
  double lengthSqrd() const { return x * x + y * y + z * z; }
  double dotProduct(const OdGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
  OdGeVector3d crossProduct(const OdGeVector3d& v) const {
    return OdGeVector3d(y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x);
  }

  /// The unit vector in this direction; a vector no longer than tol.equalVector() is returned
  /// unchanged, since it has no direction to keep (callers test isZeroLength first).
  OdGeVector3d normal(const OdGeTol& tol = OdGeContext::gTol) const;
  OdGeVector3d& normalize(const OdGeTol& tol = OdGeContext::gTol) { return *this = normal(tol); }

  /// The unsigned angle between the two directions, in [0, π]; 0 when either is zero.
  double angleTo(const OdGeVector3d& v) const;
  /// The angle that turns this direction onto v counter-clockwise when looking down
  /// referenceVector (towards its origin), in [0, 2π). Entities use it to measure angles in
  /// their own plane with the plane normal as reference.
  double angleTo(const OdGeVector3d& v, const OdGeVector3d& referenceVector) const;

  /// A unit vector perpendicular to this one, chosen by the DXF arbitrary-axis rule: the X axis
  /// that a plane with this normal gets in a drawing. Zero for a zero vector.
  OdGeVector3d perpVector() const;
  /// This vector without its component along planeNormal; unchanged when the normal is zero.
  OdGeVector3d orthoProject(const OdGeVector3d& planeNormal) const;
  /// The x and y components, dropping z.
  OdGeVector2d convert2d() const { return OdGeVector2d(x, y); }

  /// Applies the matrix's linear part only: a direction has no position to translate.
  OdGeVector3d& transformBy(const OdGeMatrix3d& xfm);
  OdGeVector3d& setToProduct(const OdGeMatrix3d& matrix, const OdGeVector3d& vect);
  /// Turns the vector counter-clockwise about axis (right-hand rule). Throws
  /// OdError(eInvalidInput) for a zero-length axis, which has no direction to turn about.
  OdGeVector3d& rotateBy(double angle, const OdGeVector3d& axis);
  /// Reflects the vector in the plane through the origin with normal normalToPlane. Throws
  /// OdError(eInvalidInput) for a zero-length normal.
  OdGeVector3d& mirror(const OdGeVector3d& normalToPlane);

  bool isZeroLength(const OdGeTol& tol = OdGeContext::gTol) const {
    return length() <= tol.equalVector();
  }
  bool isUnitLength(const OdGeTol& tol = OdGeContext::gTol) const {
    return OdEqual(length(), 1.0, tol.equalVector());
  }
  /// Zero-length vectors have no direction and are parallel or perpendicular to nothing.
  bool isParallelTo(const OdGeVector3d& v, const OdGeTol& tol = OdGeContext::gTol) const;
  bool isCodirectionalTo(const OdGeVector3d& v, const OdGeTol& tol = OdGeContext::gTol) const;
  bool isPerpendicularTo(const OdGeVector3d& v, const OdGeTol& tol = OdGeContext::gTol) const;
  bool isEqualTo(const OdGeVector3d& v, const OdGeTol& tol = OdGeContext::gTol) const {
    return (*this - v).length() <= tol.equalVector();
  }
  bool operator==(const OdGeVector3d& v) const { return isEqualTo(v); }
  bool operator!=(const OdGeVector3d& v) const { return !isEqualTo(v); }

  double x;
  double y;
  double z;
};

inline OdGeVector3d operator*(double s, const OdGeVector3d& v) {
  return v * s;
}
/// The vector transformed by the matrix's linear part.
OdGeVector3d operator*(const OdGeMatrix3d& matrix, const OdGeVector3d& vect);

typedef OdArray<OdGeVector3d> OdGeVector3dArray;

#endif
