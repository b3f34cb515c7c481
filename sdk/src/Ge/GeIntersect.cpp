#include "Ge/GeIntersect.h"

#include <algorithm>

namespace {

bool extendsFirst(OdGeExtend extend) {
  return extend == OdGeExtend::kFirst || extend == OdGeExtend::kBoth;
}

bool extendsSecond(OdGeExtend extend) {
  return extend == OdGeExtend::kSecond || extend == OdGeExtend::kBoth;
}

/// True when parameter t (0 at the start, 1 at the end of a segment of the given length) lies
/// on the segment, allowing the point tolerance past either end.
bool onSegment(double t, double length, const OdGeTol& tol) {
  const double slack = tol.equalPoint() / length;
  return t >= -slack && t <= 1.0 + slack;
}

bool finite(const OdGePoint3d& p) {
  return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

bool finite(const OdGeVector3d& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// The unit normal, or false for a normal with no direction.
bool unitNormal(const OdGeVector3d& normal, OdGeVector3d& unit, const OdGeTol& tol) {
  if (!finite(normal) || !(normal.length() > tol.equalVector()))
    return false;
  unit = normal.normal(tol);
  return true;
}

} // namespace

int odgeIntersectLines(const OdGePoint3d& start1, const OdGePoint3d& end1,
                       const OdGePoint3d& start2, const OdGePoint3d& end2, OdGeExtend extend,
                       OdGePoint3d& point, const OdGeTol& tol) {
  // Infinite or NaN coordinates come from corrupt data; they meet nothing.
  if (!finite(start1) || !finite(end1) || !finite(start2) || !finite(end2))
    return 0;
  const OdGeVector3d d1 = end1 - start1;
  const OdGeVector3d d2 = end2 - start2;
  const double len1 = d1.length();
  const double len2 = d2.length();
  if (!(len1 > tol.equalPoint()) || !(len2 > tol.equalPoint()))
    return 0;
  // Parallel (or collinear) lines: compare the sine of the angle between them, not the raw
  // cross product, so the test does not depend on the segments' lengths.
  const double crossLen = d1.crossProduct(d2).length();
  if (crossLen <= tol.equalVector() * len1 * len2)
    return 0;

  // Parameters of the mutually closest points of the two lines.
  const OdGeVector3d w = start1 - start2;
  const double a = d1.dotProduct(d1);
  const double b = d1.dotProduct(d2);
  const double c = d2.dotProduct(d2);
  const double d = d1.dotProduct(w);
  const double e = d2.dotProduct(w);
  const double denom = crossLen * crossLen;
  const double t = (b * e - c * d) / denom;
  const double u = (a * e - b * d) / denom;
  const OdGePoint3d onFirst = start1 + d1 * t;
  const OdGePoint3d onSecond = start2 + d2 * u;
  if (onFirst.distanceTo(onSecond) > tol.equalPoint())
    return 0;
  if (!extendsFirst(extend) && !onSegment(t, len1, tol))
    return 0;
  if (!extendsSecond(extend) && !onSegment(u, len2, tol))
    return 0;
  point = onFirst + (onSecond - onFirst) / 2.0;
  return 1;
}

int odgeIntersectLineCircle(const OdGePoint3d& start, const OdGePoint3d& end, bool bounded,
                            const OdGePoint3d& center, const OdGeVector3d& normal, double radius,
                            OdGePoint3d& p1, OdGePoint3d& p2, const OdGeTol& tol) {
  OdGeVector3d n;
  if (!finite(start) || !finite(end) || !finite(center) || !std::isfinite(radius))
    return 0;
  if (!(radius > tol.equalPoint()) || !unitNormal(normal, n, tol))
    return 0;
  const OdGeVector3d d = end - start;
  const double len = d.length();
  if (!(len > tol.equalPoint()))
    return 0;
  const OdGeVector3d dir = d / len;

  if (std::fabs(dir.dotProduct(n)) > tol.equalVector()) {
    // The line crosses the circle's plane once; that point counts if it lies on the circle.
    const double s = (center - start).dotProduct(n) / d.dotProduct(n);
    const OdGePoint3d crossing = start + d * s;
    if (std::fabs(crossing.distanceTo(center) - radius) > tol.equalPoint())
      return 0;
    if (bounded && !onSegment(s, len, tol))
      return 0;
    p1 = crossing;
    return 1;
  }
  if (std::fabs((start - center).dotProduct(n)) > tol.equalPoint())
    return 0; // parallel to the plane, off it

  // The foot of the perpendicular from the center, and the distance along the line from it
  // to each crossing.
  const double footParam = (center - start).dotProduct(dir);
  const OdGePoint3d foot = start + dir * footParam;
  const double h = foot.distanceTo(center);
  if (h > radius + tol.equalPoint())
    return 0;

  OdGePoint3d found[2];
  int count = 0;
  const auto keep = [&](double along) {
    if (bounded && !onSegment(along / len, len, tol))
      return;
    found[count++] = start + dir * along;
  };
  if (std::fabs(h - radius) <= tol.equalPoint()) {
    keep(footParam);
  } else {
    const double half = std::sqrt(radius * radius - h * h);
    keep(footParam - half);
    keep(footParam + half);
  }
  if (count > 0)
    p1 = found[0];
  if (count > 1)
    p2 = found[1];
  return count;
}

int odgeIntersectCircles(const OdGePoint3d& center1, const OdGeVector3d& normal1, double radius1,
                         const OdGePoint3d& center2, const OdGeVector3d& normal2, double radius2,
                         OdGePoint3d& p1, OdGePoint3d& p2, const OdGeTol& tol) {
  OdGeVector3d n1;
  OdGeVector3d n2;
  if (!finite(center1) || !finite(center2) || !std::isfinite(radius1) || !std::isfinite(radius2))
    return 0;
  if (!(radius1 > tol.equalPoint()) || !(radius2 > tol.equalPoint()) ||
      !unitNormal(normal1, n1, tol) || !unitNormal(normal2, n2, tol))
    return 0;
  if (!n1.isParallelTo(n2, tol))
    return 0;
  const OdGeVector3d between = center2 - center1;
  if (std::fabs(between.dotProduct(n1)) > tol.equalPoint())
    return 0; // parallel planes, apart

  const OdGeVector3d inPlane = between.orthoProject(n1);
  const double dist = inPlane.length();
  if (dist <= tol.equalPoint())
    return 0; // concentric: no crossing, or the same circle everywhere
  const OdGeVector3d u = inPlane / dist;
  if (dist > radius1 + radius2 + tol.equalPoint())
    return 0;
  const double radiusGap = std::fabs(radius1 - radius2);
  if (dist < radiusGap - tol.equalPoint())
    return 0; // one inside the other

  if (std::fabs(dist - (radius1 + radius2)) <= tol.equalPoint()) {
    p1 = center1 + u * radius1;
    return 1;
  }
  if (std::fabs(dist - radiusGap) <= tol.equalPoint()) {
    // Touching from inside: on the far side of the smaller circle from the larger's center.
    p1 = center1 + u * (radius1 >= radius2 ? radius1 : -radius1);
    return 1;
  }
  // The chord through both points is perpendicular to the line of centers, at distance
  // along from center1.
  const double along = (dist * dist + radius1 * radius1 - radius2 * radius2) / (2.0 * dist);
  const double half = std::sqrt(std::max(0.0, radius1 * radius1 - along * along));
  const OdGePoint3d base = center1 + u * along;
  const OdGeVector3d side = n1.crossProduct(u);
  p1 = base + side * half;
  p2 = base - side * half;
  return 2;
}

OdGePoint3d odgeClosestPointOnSegment(const OdGePoint3d& point, const OdGePoint3d& start,
                                      const OdGePoint3d& end, double* param) {
  const OdGeVector3d d = end - start;
  const double lenSq = d.lengthSqrd();
  double t = 0.0;
  if (lenSq > 0.0)
    t = std::clamp((point - start).dotProduct(d) / lenSq, 0.0, 1.0);
  if (param)
    *param = t;
  return start + d * t;
}
