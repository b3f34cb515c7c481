#include "Ge/GeMatrix3d.h"

#include "OdError.h"

#include <algorithm>
#include <utility>

const OdGeMatrix3d OdGeMatrix3d::kIdentity;

namespace {

/// Gauss-Jordan elimination with partial pivoting on a copy of m. Returns false when a pivot
/// is no larger than tol (the matrix is singular at that tolerance). On success fills inverse
/// when it is given and the determinant when det is given.
bool eliminate(const double (&m)[4][4], double tol, double (*inverse)[4], double* det) {
  double a[4][4];
  double inv[4][4];
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) {
      a[r][c] = m[r][c];
      inv[r][c] = r == c ? 1.0 : 0.0;
    }
  }
  double determinant = 1.0;
  for (int col = 0; col < 4; ++col) {
    int pivotRow = col;
    for (int r = col + 1; r < 4; ++r) {
      if (std::fabs(a[r][col]) > std::fabs(a[pivotRow][col]))
        pivotRow = r;
    }
    const double pivot = a[pivotRow][col];
    if (!(std::fabs(pivot) > tol))
      return false;
    if (pivotRow != col) {
      std::swap(a[pivotRow], a[col]);
      std::swap(inv[pivotRow], inv[col]);
      determinant = -determinant;
    }
    determinant *= pivot;
    for (int c = 0; c < 4; ++c) {
      a[col][c] /= pivot;
      inv[col][c] /= pivot;
    }
    for (int r = 0; r < 4; ++r) {
      if (r == col)
        continue;
      const double factor = a[r][col];
      if (factor == 0.0)
        continue;
      for (int c = 0; c < 4; ++c) {
        a[r][c] -= factor * a[col][c];
        inv[r][c] -= factor * inv[col][c];
      }
    }
  }
  if (inverse) {
    for (int r = 0; r < 4; ++r)
      std::copy(inv[r], inv[r] + 4, inverse[r]);
  }
  if (det)
    *det = determinant;
  return true;
}

OdGeVector3d unitOrThrow(const OdGeVector3d& v) {
  const double len = v.length();
  if (len == 0.0 || !std::isfinite(len))
    throw OdError(eInvalidInput);
  return v / len;
}

} // namespace

OdGeMatrix3d OdGeMatrix3d::operator*(const OdGeMatrix3d& m) const {
  OdGeMatrix3d result;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) {
      double sum = 0.0;
      for (int k = 0; k < 4; ++k)
        sum += entry[r][k] * m.entry[k][c];
      result.entry[r][c] = sum;
    }
  }
  return result;
}

bool OdGeMatrix3d::isSingular(const OdGeTol& tol) const {
  return !eliminate(entry, tol.equalPoint(), nullptr, nullptr);
}

bool OdGeMatrix3d::inverse(OdGeMatrix3d& inverseMatrix, double tol) const {
  OdGeMatrix3d result;
  if (!eliminate(entry, tol, result.entry, nullptr))
    return false;
  inverseMatrix = result;
  return true;
}

OdGeMatrix3d OdGeMatrix3d::inverse(const OdGeTol& tol) const {
  OdGeMatrix3d result;
  if (!inverse(result, tol.equalPoint()))
    throw OdError(eInvalidInput);
  return result;
}

OdGeMatrix3d& OdGeMatrix3d::invert() {
  return *this = inverse();
}

OdGeMatrix3d OdGeMatrix3d::transpose() const {
  OdGeMatrix3d result;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c)
      result.entry[r][c] = entry[c][r];
  }
  return result;
}

double OdGeMatrix3d::det() const {
  double determinant = 0.0;
  // A zero pivot means a zero determinant; elimination reports it as singular.
  if (!eliminate(entry, 0.0, nullptr, &determinant))
    return 0.0;
  return determinant;
}

bool OdGeMatrix3d::isEqualTo(const OdGeMatrix3d& m, const OdGeTol& tol) const {
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) {
      const double t = (c == 3 && r < 3) ? tol.equalPoint() : tol.equalVector();
      if (!OdEqual(entry[r][c], m.entry[r][c], t))
        return false;
    }
  }
  return true;
}

bool OdGeMatrix3d::isScaledOrtho(const OdGeTol& tol) const {
  if (isPerspective(tol))
    return false;
  const OdGeVector3d x = getCsXAxis();
  const OdGeVector3d y = getCsYAxis();
  const OdGeVector3d z = getCsZAxis();
  return x.isPerpendicularTo(y, tol) && y.isPerpendicularTo(z, tol) && z.isPerpendicularTo(x, tol);
}

bool OdGeMatrix3d::isUniScaledOrtho(const OdGeTol& tol) const {
  if (!isScaledOrtho(tol))
    return false;
  const double lx = getCsXAxis().length();
  const double ly = getCsYAxis().length();
  const double lz = getCsZAxis().length();
  // Relative comparison: a uniform scale of 1000 is as uniform as a scale of 1.
  const double t = tol.equalVector() * std::max(lx, std::max(ly, lz));
  return OdEqual(lx, ly, t) && OdEqual(lx, lz, t);
}

bool OdGeMatrix3d::isPerspective(const OdGeTol& tol) const {
  return !OdZero(entry[3][0], tol.equalVector()) || !OdZero(entry[3][1], tol.equalVector()) ||
         !OdZero(entry[3][2], tol.equalVector()) || !OdEqual(entry[3][3], 1.0, tol.equalVector());
}

double OdGeMatrix3d::scale() const {
  return std::max(getCsXAxis().length(), std::max(getCsYAxis().length(), getCsZAxis().length()));
}

double OdGeMatrix3d::norm() const {
  double result = 0.0;
  for (const auto& row : entry) {
    for (double value : row)
      result = std::max(result, std::fabs(value));
  }
  return result;
}

OdGeMatrix3d& OdGeMatrix3d::setTranslation(const OdGeVector3d& vect) {
  entry[0][3] = vect.x;
  entry[1][3] = vect.y;
  entry[2][3] = vect.z;
  return *this;
}

OdGeMatrix3d& OdGeMatrix3d::setCoordSystem(const OdGePoint3d& origin, const OdGeVector3d& xAxis,
                                           const OdGeVector3d& yAxis, const OdGeVector3d& zAxis) {
  setToIdentity();
  for (unsigned int r = 0; r < 3; ++r) {
    entry[r][0] = xAxis[r];
    entry[r][1] = yAxis[r];
    entry[r][2] = zAxis[r];
    entry[r][3] = origin[r];
  }
  return *this;
}

void OdGeMatrix3d::getCoordSystem(OdGePoint3d& origin, OdGeVector3d& xAxis, OdGeVector3d& yAxis,
                                  OdGeVector3d& zAxis) const {
  origin = getCsOrigin();
  xAxis = getCsXAxis();
  yAxis = getCsYAxis();
  zAxis = getCsZAxis();
}

OdGeMatrix3d& OdGeMatrix3d::setToTranslation(const OdGeVector3d& vect) {
  setToIdentity();
  return setTranslation(vect);
}

OdGeMatrix3d& OdGeMatrix3d::setToRotation(double angle, const OdGeVector3d& axis,
                                          const OdGePoint3d& center) {
  const OdGeVector3d u = unitOrThrow(axis);
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  const double t = 1.0 - c;
  setToIdentity();
  // Rodrigues' rotation formula: R = c I + s [u]x + t u uT.
  entry[0][0] = t * u.x * u.x + c;
  entry[0][1] = t * u.x * u.y - s * u.z;
  entry[0][2] = t * u.x * u.z + s * u.y;
  entry[1][0] = t * u.x * u.y + s * u.z;
  entry[1][1] = t * u.y * u.y + c;
  entry[1][2] = t * u.y * u.z - s * u.x;
  entry[2][0] = t * u.x * u.z - s * u.y;
  entry[2][1] = t * u.y * u.z + s * u.x;
  entry[2][2] = t * u.z * u.z + c;
  // Keep center fixed: p' = R (p - center) + center.
  return setTranslation(center.asVector() - OdGeVector3d().setToProduct(*this, center.asVector()));
}

OdGeMatrix3d& OdGeMatrix3d::setToScaling(double scale, const OdGePoint3d& center) {
  return setToScaling(OdGeScale3d(scale), center);
}

OdGeMatrix3d& OdGeMatrix3d::setToScaling(const OdGeScale3d& scale, const OdGePoint3d& center) {
  setToIdentity();
  for (unsigned int i = 0; i < 3; ++i) {
    entry[i][i] = scale[i];
    entry[i][3] = center[i] * (1.0 - scale[i]);
  }
  return *this;
}

OdGeMatrix3d& OdGeMatrix3d::setToMirroring(const OdGePoint3d& mirrorPoint) {
  return setToScaling(-1.0, mirrorPoint);
}

OdGeMatrix3d& OdGeMatrix3d::setToMirroring(const OdGePoint3d& planeOrigin,
                                           const OdGeVector3d& planeNormal) {
  const OdGeVector3d n = unitOrThrow(planeNormal);
  setToIdentity();
  // Householder reflection I - 2 n nT, moved so that the plane through planeOrigin stays put.
  for (unsigned int r = 0; r < 3; ++r) {
    for (unsigned int c = 0; c < 3; ++c)
      entry[r][c] -= 2.0 * n[r] * n[c];
  }
  return setTranslation(n * (2.0 * planeOrigin.asVector().dotProduct(n)));
}

OdGeMatrix3d&
OdGeMatrix3d::setToAlignCoordSys(const OdGePoint3d& fromOrigin, const OdGeVector3d& fromXAxis,
                                 const OdGeVector3d& fromYAxis, const OdGeVector3d& fromZAxis,
                                 const OdGePoint3d& toOrigin, const OdGeVector3d& toXAxis,
                                 const OdGeVector3d& toYAxis, const OdGeVector3d& toZAxis) {
  const OdGeMatrix3d from =
      OdGeMatrix3d().setCoordSystem(fromOrigin, fromXAxis, fromYAxis, fromZAxis);
  const OdGeMatrix3d to = OdGeMatrix3d().setCoordSystem(toOrigin, toXAxis, toYAxis, toZAxis);
  return *this = to * from.inverse();
}

OdGeMatrix3d& OdGeMatrix3d::setToPlaneToWorld(const OdGeVector3d& normal) {
  const OdGeVector3d n = unitOrThrow(normal);
  const OdGeVector3d ax = n.perpVector();
  const OdGeVector3d ay = n.crossProduct(ax).normal();
  return setCoordSystem(OdGePoint3d::kOrigin, ax, ay, n);
}

OdGeMatrix3d& OdGeMatrix3d::setToWorldToPlane(const OdGeVector3d& normal) {
  // The plane axes are orthonormal and the origin is fixed, so the inverse is the transpose.
  return *this = planeToWorld(normal).transpose();
}

OdGeMatrix3d OdGeMatrix3d::translation(const OdGeVector3d& vect) {
  return OdGeMatrix3d().setToTranslation(vect);
}

OdGeMatrix3d OdGeMatrix3d::rotation(double angle, const OdGeVector3d& axis,
                                    const OdGePoint3d& center) {
  return OdGeMatrix3d().setToRotation(angle, axis, center);
}

OdGeMatrix3d OdGeMatrix3d::scaling(double scale, const OdGePoint3d& center) {
  return OdGeMatrix3d().setToScaling(scale, center);
}

OdGeMatrix3d OdGeMatrix3d::scaling(const OdGeScale3d& scale, const OdGePoint3d& center) {
  return OdGeMatrix3d().setToScaling(scale, center);
}

OdGeMatrix3d OdGeMatrix3d::mirroring(const OdGePoint3d& mirrorPoint) {
  return OdGeMatrix3d().setToMirroring(mirrorPoint);
}

OdGeMatrix3d OdGeMatrix3d::mirroring(const OdGePoint3d& planeOrigin,
                                     const OdGeVector3d& planeNormal) {
  return OdGeMatrix3d().setToMirroring(planeOrigin, planeNormal);
}

OdGeMatrix3d OdGeMatrix3d::alignCoordSys(const OdGePoint3d& fromOrigin,
                                         const OdGeVector3d& fromXAxis,
                                         const OdGeVector3d& fromYAxis,
                                         const OdGeVector3d& fromZAxis, const OdGePoint3d& toOrigin,
                                         const OdGeVector3d& toXAxis, const OdGeVector3d& toYAxis,
                                         const OdGeVector3d& toZAxis) {
  return OdGeMatrix3d().setToAlignCoordSys(fromOrigin, fromXAxis, fromYAxis, fromZAxis, toOrigin,
                                           toXAxis, toYAxis, toZAxis);
}

OdGeMatrix3d OdGeMatrix3d::planeToWorld(const OdGeVector3d& normal) {
  return OdGeMatrix3d().setToPlaneToWorld(normal);
}

OdGeMatrix3d OdGeMatrix3d::worldToPlane(const OdGeVector3d& normal) {
  return OdGeMatrix3d().setToWorldToPlane(normal);
}
