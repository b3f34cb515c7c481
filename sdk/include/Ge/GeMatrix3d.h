#ifndef OD_GE_MATRIX3D_H
#define OD_GE_MATRIX3D_H

/// A 4x4 transformation acting on column vectors (p' = M p): the 3x3 upper-left block is the
/// linear part, entry[0..2][3] the translation and the last row is (0, 0, 0, 1) unless the
/// matrix is a perspective one. M1 * M2 applied to p is M1 applied to (M2 applied to p).

#include "Ge/GePoint3d.h"
#include "Ge/GeScale3d.h"
#include "Ge/GeTol.h"
#include "Ge/GeVector3d.h"

class OdGeMatrix3d {
public:
  /// The identity.
  constexpr OdGeMatrix3d()
      : entry{{1.0, 0.0, 0.0, 0.0},
              {0.0, 1.0, 0.0, 0.0},
              {0.0, 0.0, 1.0, 0.0},
              {0.0, 0.0, 0.0, 1.0}} {}

  static const OdGeMatrix3d kIdentity;

  OdGeMatrix3d& setToIdentity() { return *this = OdGeMatrix3d(); }

  double* operator[](unsigned int row) { return entry[row]; }
  const double* operator[](unsigned int row) const { return entry[row]; }
  double operator()(unsigned int row, unsigned int column) const { return entry[row][column]; }
  double& operator()(unsigned int row, unsigned int column) { return entry[row][column]; }

  // Products. Order matters: (A * B) p == A (B p).
  OdGeMatrix3d operator*(const OdGeMatrix3d& m) const;
  OdGeMatrix3d& operator*=(const OdGeMatrix3d& m) { return *this = *this * m; }
  /// this = left * this: left is applied after this.
  OdGeMatrix3d& preMultBy(const OdGeMatrix3d& left) { return *this = left * *this; }
  /// this = this * right: right is applied before this.
  OdGeMatrix3d& postMultBy(const OdGeMatrix3d& right) { return *this = *this * right; }
  OdGeMatrix3d& setToProduct(const OdGeMatrix3d& m1, const OdGeMatrix3d& m2) {
    return *this = m1 * m2;
  }

  // Inversion. A matrix is singular when Gaussian elimination with partial pivoting meets a
  // pivot no larger than tol.equalPoint(); uniform scales as small as 1e-6 still invert.
  bool isSingular(const OdGeTol& tol = OdGeContext::gTol) const;
  /// Writes the inverse to inverseMatrix and returns true, or returns false and leaves
  /// inverseMatrix untouched when the matrix is singular. The non-throwing form, for code that
  /// handles flattened (zero-scale) transforms itself.
  bool inverse(OdGeMatrix3d& inverseMatrix, double tol) const;
  /// The inverse; throws OdError(eInvalidInput) for a singular matrix.
  OdGeMatrix3d inverse(const OdGeTol& tol = OdGeContext::gTol) const;
  /// Replaces the matrix by its inverse; throws OdError(eInvalidInput) and leaves the matrix
  /// unchanged when it is singular.
  OdGeMatrix3d& invert();
  OdGeMatrix3d transpose() const;
  OdGeMatrix3d& transposeIt() { return *this = transpose(); }
  /// The determinant of the whole 4x4 matrix (of the linear part for an affine matrix).
  double det() const;

  // Properties.
  /// Entries compared one by one: the translation column against tol.equalPoint(), the rest
  /// against tol.equalVector().
  bool isEqualTo(const OdGeMatrix3d& m, const OdGeTol& tol = OdGeContext::gTol) const;
  bool operator==(const OdGeMatrix3d& m) const { return isEqualTo(m); }
  bool operator!=(const OdGeMatrix3d& m) const { return !isEqualTo(m); }
  /// True when the axes are mutually perpendicular, of one length, and not zero: the matrix
  /// keeps circles circles (possibly mirrored), so entities can transform by their parameters.
  bool isUniScaledOrtho(const OdGeTol& tol = OdGeContext::gTol) const;
  /// True when the axes are mutually perpendicular and not zero.
  bool isScaledOrtho(const OdGeTol& tol = OdGeContext::gTol) const;
  /// True when the last row is not (0, 0, 0, 1).
  bool isPerspective(const OdGeTol& tol = OdGeContext::gTol) const;
  /// The largest length of the three transformed axes: the factor by which distances grow at
  /// most, used to scale widths and text heights.
  double scale() const;
  /// The largest absolute value of the entries.
  double norm() const;

  // Translation and coordinate systems.
  OdGeVector3d getTranslation() const {
    return OdGeVector3d(entry[0][3], entry[1][3], entry[2][3]);
  }
  OdGeMatrix3d& setTranslation(const OdGeVector3d& vect);
  /// The matrix that maps the world origin and axes onto origin and the three axes given
  /// (which need not be unit or perpendicular).
  OdGeMatrix3d& setCoordSystem(const OdGePoint3d& origin, const OdGeVector3d& xAxis,
                               const OdGeVector3d& yAxis, const OdGeVector3d& zAxis);
  void getCoordSystem(OdGePoint3d& origin, OdGeVector3d& xAxis, OdGeVector3d& yAxis,
                      OdGeVector3d& zAxis) const;
  OdGePoint3d getCsOrigin() const { return OdGePoint3d(entry[0][3], entry[1][3], entry[2][3]); }
  OdGeVector3d getCsXAxis() const { return OdGeVector3d(entry[0][0], entry[1][0], entry[2][0]); }
  OdGeVector3d getCsYAxis() const { return OdGeVector3d(entry[0][1], entry[1][1], entry[2][1]); }
  OdGeVector3d getCsZAxis() const { return OdGeVector3d(entry[0][2], entry[1][2], entry[2][2]); }

  // Builders. Each set* replaces the whole matrix; the static forms return a new one.
  OdGeMatrix3d& setToTranslation(const OdGeVector3d& vect);
  /// Counter-clockwise about axis through center, looking down the axis towards its origin
  /// (right-hand rule). Throws OdError(eInvalidInput) for a zero-length axis.
  OdGeMatrix3d& setToRotation(double angle, const OdGeVector3d& axis,
                              const OdGePoint3d& center = OdGePoint3d::kOrigin);
  OdGeMatrix3d& setToScaling(double scale, const OdGePoint3d& center = OdGePoint3d::kOrigin);
  OdGeMatrix3d& setToScaling(const OdGeScale3d& scale,
                             const OdGePoint3d& center = OdGePoint3d::kOrigin);
  /// Reflection through a point (a half turn about it in every plane).
  OdGeMatrix3d& setToMirroring(const OdGePoint3d& mirrorPoint);
  /// Reflection in the plane through planeOrigin with normal planeNormal. Throws
  /// OdError(eInvalidInput) for a zero-length normal.
  OdGeMatrix3d& setToMirroring(const OdGePoint3d& planeOrigin, const OdGeVector3d& planeNormal);
  /// Maps the from-system onto the to-system: from-origin to to-origin, each from-axis to the
  /// matching to-axis. Throws OdError(eInvalidInput) when the from-axes are linearly dependent.
  OdGeMatrix3d& setToAlignCoordSys(const OdGePoint3d& fromOrigin, const OdGeVector3d& fromXAxis,
                                   const OdGeVector3d& fromYAxis, const OdGeVector3d& fromZAxis,
                                   const OdGePoint3d& toOrigin, const OdGeVector3d& toXAxis,
                                   const OdGeVector3d& toYAxis, const OdGeVector3d& toZAxis);
  /// Maps the plane coordinates of an entity with this normal (its OCS, axes from the DXF
  /// arbitrary-axis rule, origin at the world origin) to world coordinates. Throws
  /// OdError(eInvalidInput) for a zero-length normal.
  OdGeMatrix3d& setToPlaneToWorld(const OdGeVector3d& normal);
  /// The inverse of setToPlaneToWorld: world coordinates to the entity's plane coordinates.
  OdGeMatrix3d& setToWorldToPlane(const OdGeVector3d& normal);

  static OdGeMatrix3d translation(const OdGeVector3d& vect);
  static OdGeMatrix3d rotation(double angle, const OdGeVector3d& axis,
                               const OdGePoint3d& center = OdGePoint3d::kOrigin);
  static OdGeMatrix3d scaling(double scale, const OdGePoint3d& center = OdGePoint3d::kOrigin);
  static OdGeMatrix3d scaling(const OdGeScale3d& scale,
                              const OdGePoint3d& center = OdGePoint3d::kOrigin);
  static OdGeMatrix3d mirroring(const OdGePoint3d& mirrorPoint);
  static OdGeMatrix3d mirroring(const OdGePoint3d& planeOrigin, const OdGeVector3d& planeNormal);
  static OdGeMatrix3d alignCoordSys(const OdGePoint3d& fromOrigin, const OdGeVector3d& fromXAxis,
                                    const OdGeVector3d& fromYAxis, const OdGeVector3d& fromZAxis,
                                    const OdGePoint3d& toOrigin, const OdGeVector3d& toXAxis,
                                    const OdGeVector3d& toYAxis, const OdGeVector3d& toZAxis);
  static OdGeMatrix3d planeToWorld(const OdGeVector3d& normal);
  static OdGeMatrix3d worldToPlane(const OdGeVector3d& normal);

  /// Row-major; entry[row][column].
  double entry[4][4];
};

#endif
