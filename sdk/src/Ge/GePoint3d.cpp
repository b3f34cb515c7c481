#include "Ge/GePoint3d.h"

#include "Ge/GeMatrix3d.h"

const OdGePoint3d OdGePoint3d::kOrigin(0.0, 0.0, 0.0);

OdGePoint3d& OdGePoint3d::transformBy(const OdGeMatrix3d& xfm) {
  return setToProduct(xfm, *this);
}

OdGePoint3d& OdGePoint3d::setToProduct(const OdGeMatrix3d& m, const OdGePoint3d& p) {
  const double(&e)[4][4] = m.entry;
  const double px = p.x;
  const double py = p.y;
  const double pz = p.z;
  set(e[0][0] * px + e[0][1] * py + e[0][2] * pz + e[0][3],
      e[1][0] * px + e[1][1] * py + e[1][2] * pz + e[1][3],
      e[2][0] * px + e[2][1] * py + e[2][2] * pz + e[2][3]);
  // Only a perspective matrix has a last row other than (0, 0, 0, 1). A point it sends to
  // w = 0 lies at infinity and has no finite image; it is left undivided.
  const double w = e[3][0] * px + e[3][1] * py + e[3][2] * pz + e[3][3];
  if (w != 1.0 && w != 0.0)
    *this /= w;
  return *this;
}

OdGePoint3d& OdGePoint3d::rotateBy(double angle, const OdGeVector3d& axis,
                                   const OdGePoint3d& wrtPoint) {
  return transformBy(OdGeMatrix3d::rotation(angle, axis, wrtPoint));
}

OdGePoint3d& OdGePoint3d::scaleBy(double factor, const OdGePoint3d& wrtPoint) {
  return *this = wrtPoint + (*this - wrtPoint) * factor;
}

OdGePoint3d operator*(const OdGeMatrix3d& matrix, const OdGePoint3d& point) {
  return OdGePoint3d().setToProduct(matrix, point);
}
