#include "Gi/GiGeometry.h"

#include "Ge/GePoint3d.h"
#include "Ge/GeVector3d.h"

namespace {

// Below this sine of the angle at the shared vertex three points count as collinear: the
// circle through them would be larger than any drawing could hold.
constexpr double kCollinearSine = 1.e-10;

} // namespace

bool odgiCircleThrough3Points(const OdGePoint3d& p1, const OdGePoint3d& p2, const OdGePoint3d& p3,
                              OdGePoint3d& center, double& radius, OdGeVector3d& normal) {
  const OdGeVector3d a = p1 - p3;
  const OdGeVector3d b = p2 - p3;
  const OdGeVector3d n = a.crossProduct(b);
  const double lengths = a.length() * b.length();
  const double nn = n.lengthSqrd();
  if (!(lengths > 0.0) || !(std::sqrt(nn) > kCollinearSine * lengths))
    return false;
  // Circumcentre relative to p3: ((|a|^2 b - |b|^2 a) x n) / (2 |n|^2).
  const OdGeVector3d offset =
      (b * a.lengthSqrd() - a * b.lengthSqrd()).crossProduct(n) / (2.0 * nn);
  center = p3 + offset;
  radius = offset.length();
  // a x b points along the normal for which p1, p2, p3 run counter-clockwise.
  normal = n / std::sqrt(nn);
  return true;
}

bool odgiArcThrough3Points(const OdGePoint3d& start, const OdGePoint3d& point,
                           const OdGePoint3d& end, OdGePoint3d& center, double& radius,
                           OdGeVector3d& normal, OdGeVector3d& startVector, double& sweepAngle) {
  OdGePoint3d c;
  double r = 0.0;
  OdGeVector3d n;
  if (!odgiCircleThrough3Points(start, point, end, c, r, n))
    return false;
  // Three points of a circle taken in order along a counter-clockwise arc form a
  // counter-clockwise triangle, so n is the arc's normal and the sweep runs from start to end
  // counter-clockwise about it.
  const OdGeVector3d toStart = start - c;
  const OdGeVector3d toEnd = end - c;
  center = c;
  radius = r;
  normal = n;
  startVector = toStart;
  sweepAngle = toStart.angleTo(toEnd, n);
  return true;
}
