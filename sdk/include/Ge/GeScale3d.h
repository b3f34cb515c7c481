#ifndef OD_GE_SCALE3D_H
#define OD_GE_SCALE3D_H

/// Three scale factors, one per axis: the scale of a block reference.

#include "Ge/GeTol.h"

class OdGeScale3d {
public:
  constexpr OdGeScale3d() : sx(1.0), sy(1.0), sz(1.0) {}
  constexpr explicit OdGeScale3d(double factor) : sx(factor), sy(factor), sz(factor) {}
  constexpr OdGeScale3d(double xFactor, double yFactor, double zFactor)
      : sx(xFactor), sy(yFactor), sz(zFactor) {}

  /// The scale that changes nothing (1, 1, 1).
  static const OdGeScale3d kIdentity;

  OdGeScale3d& set(double xFactor, double yFactor, double zFactor) {
    sx = xFactor;
    sy = yFactor;
    sz = zFactor;
    return *this;
  }
  /// Per-axis product: scaling by the result equals scaling by one and then the other.
  OdGeScale3d operator*(const OdGeScale3d& s) const {
    return OdGeScale3d(sx * s.sx, sy * s.sy, sz * s.sz);
  }
  OdGeScale3d operator*(double factor) const {
    return OdGeScale3d(sx * factor, sy * factor, sz * factor);
  }
  double operator[](unsigned int i) const { return i == 0 ? sx : (i == 1 ? sy : sz); }
  double& operator[](unsigned int i) { return i == 0 ? sx : (i == 1 ? sy : sz); }

  /// True when the three factors agree: such a scale keeps circles circles and angles angles.
  bool isProportional(const OdGeTol& tol = OdGeContext::gTol) const {
    return OdEqual(sx, sy, tol.equalVector()) && OdEqual(sx, sz, tol.equalVector());
  }
  bool isEqualTo(const OdGeScale3d& s, const OdGeTol& tol = OdGeContext::gTol) const {
    return OdEqual(sx, s.sx, tol.equalVector()) && OdEqual(sy, s.sy, tol.equalVector()) &&
           OdEqual(sz, s.sz, tol.equalVector());
  }
  bool operator==(const OdGeScale3d& s) const { return isEqualTo(s); }
  bool operator!=(const OdGeScale3d& s) const { return !isEqualTo(s); }

  double sx;
  double sy;
  double sz;
};

#endif
