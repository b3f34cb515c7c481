#ifndef OD_GE_TOL_H
#define OD_GE_TOL_H

/// Tolerances and angle constants shared by every geometry type. Comparisons of points and
/// vectors never use exact equality: values that went through a transform or a file round trip
/// differ in the last bits, so every comparison takes a tolerance, defaulting to the global one.

#include <cmath>

constexpr double OdaPI = 3.14159265358979323846;
constexpr double Oda2PI = 2.0 * OdaPI;
constexpr double OdaPI2 = OdaPI / 2.0;

/// True when value lies within tol of zero (both ends included).
inline bool OdZero(double value, double tol = 1.e-10) {
  return std::fabs(value) <= tol;
}
/// True when the two values differ by no more than tol.
inline bool OdEqual(double a, double b, double tol = 1.e-10) {
  return OdZero(a - b, tol);
}

/// A pair of tolerances: equalPoint bounds the distance at which two points are the same,
/// equalVector bounds the difference (or cross product of unit vectors) at which two directions
/// are the same. Kept apart because a drawing in large units wants a coarser point tolerance
/// while directions stay dimensionless.
class OdGeTol {
public:
  constexpr OdGeTol(double tol = 1.e-10) : m_equalPoint(tol), m_equalVector(tol) {}
  constexpr OdGeTol(double tolPoint, double tolVector)
      : m_equalPoint(tolPoint), m_equalVector(tolVector) {}

  double equalPoint() const { return m_equalPoint; }
  double equalVector() const { return m_equalVector; }
  void setEqualPoint(double tol) { m_equalPoint = tol; }
  void setEqualVector(double tol) { m_equalVector = tol; }

private:
  double m_equalPoint;
  double m_equalVector;
};

/// Process-wide geometry settings.
struct OdGeContext {
  /// The tolerance every comparison uses when the caller gives none. Changing it changes the
  /// default for the whole process, so tests that need another tolerance pass it explicitly.
  static OdGeTol gTol;
};

#endif
