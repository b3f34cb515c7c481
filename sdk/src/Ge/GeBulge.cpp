#include "Ge/GeBulge.h"

#include <algorithm>
#include <cmath>

namespace {

/// The angle brought into [0, 2π] by whole turns. Unlike the entities' angle normalizing, a
/// tiny negative angle may come out as exactly 2π: fractionAtAngle counts that as the arc's
/// start, and an arc of (numerically) a whole turn as its end.
double turnedAngle(double angle) {
  double result = std::fmod(angle, Oda2PI);
  if (result < 0.0)
    result += Oda2PI;
  return result;
}

} // namespace

bool OdGeBulgeArc::set(const OdGePoint2d& p1, const OdGePoint2d& p2, double bulge,
                       const OdGeTol& tol) {
  if (bulge == 0.0 || !std::isfinite(bulge))
    return false;
  const OdGeVector2d chord = p2 - p1;
  const double chordLength = chord.length();
  if (chordLength <= tol.equalPoint())
    return false;
  const double absBulge = std::fabs(bulge);
  sweep = 4.0 * std::atan(bulge);
  radius = chordLength * 0.25 * (1.0 / absBulge + absBulge);
  // The centre lies off the chord's midpoint, to the left of p1 -> p2 for a counter-clockwise
  // arc of less than half a turn; written without bulge squared so that huge bulges stay finite.
  center = p1 + chord * 0.5 + chord.perpVector() * (0.25 * (1.0 / bulge - bulge));
  startAngle = (p1 - center).angle();
  return true;
}

OdGePoint2d OdGeBulgeArc::pointAtAngle(double angle) const {
  return center + OdGeVector2d(std::cos(angle), std::sin(angle)) * radius;
}

double OdGeBulgeArc::fractionAtAngle(double angle) const {
  const double turned = turnedAngle(sweep >= 0.0 ? angle - startAngle : startAngle - angle);
  const double span = std::fabs(sweep);
  const double tol = 1.e-12;
  if (turned <= span + tol)
    return std::min(turned / span, 1.0);
  if (turned >= Oda2PI - tol)
    return 0.0;
  return -1.0;
}

double OdGeBulgeArc::closestFraction(const OdGePoint2d& point) const {
  const OdGeVector2d fromCenter = point - center;
  if (fromCenter.isZeroLength())
    return 0.0;
  const double fraction = fractionAtAngle(fromCenter.angle());
  if (fraction >= 0.0)
    return fraction;
  return point.distanceTo(pointAt(0.0)) <= point.distanceTo(pointAt(1.0)) ? 0.0 : 1.0;
}

double OdGeBulgeArc::length() const {
  return radius * std::fabs(sweep);
}

double OdGeBulgeArc::signedSegmentArea() const {
  const double span = std::fabs(sweep);
  const double area = 0.5 * radius * radius * (span - std::sin(span));
  return sweep > 0.0 ? area : -area;
}

int OdGeBulgeArc::numPieces(double deviation) const {
  constexpr double kMaxStep = OdaPI / 32.0;
  constexpr double kMaxPieces = 1024.0;
  double step = kMaxStep;
  if (deviation > 0.0 && deviation < radius)
    step = std::min(step, 2.0 * std::acos(1.0 - deviation / radius));
  const double pieces = std::ceil(std::fabs(sweep) / step);
  if (!(pieces >= 1.0))
    return 1;
  return static_cast<int>(std::min(pieces, kMaxPieces));
}

unsigned int odgeCircleExtremeAngles(const OdGeVector3d& xAxis, const OdGeVector3d& yAxis,
                                     double angles[6]) {
  unsigned int count = 0;
  // Along world axis k the circle's coordinate is c + r (x_k cos a + y_k sin a), largest at
  // a = atan2(y_k, x_k) and smallest half a turn further.
  for (unsigned int k = 0; k < 3; ++k) {
    if (xAxis[k] == 0.0 && yAxis[k] == 0.0)
      continue;
    const double extreme = std::atan2(yAxis[k], xAxis[k]);
    angles[count++] = extreme;
    angles[count++] = extreme + OdaPI;
  }
  return count;
}
