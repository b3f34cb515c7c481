#include "DbCurve.h"

#include "Ge/GeIntersect.h"

#include <algorithm>
#include <cmath>
#include <limits>

ODRX_NO_CONS_DEFINE_MEMBERS(OdDbCurve, OdDbEntity)

OdDbCurve::OdDbCurve() = default;

bool OdDbCurve::isClosed() const {
  OdGePoint3d start;
  OdGePoint3d end;
  if (getStartPoint(start) != eOk || getEndPoint(end) != eOk)
    return false;
  return start.isEqualTo(end);
}

bool OdDbCurve::isPeriodic() const {
  return false;
}

OdResult OdDbCurve::getStartParam(double& /*startParam*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getEndParam(double& /*endParam*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getStartPoint(OdGePoint3d& startPoint) const {
  double param = 0.0;
  const OdResult res = getStartParam(param);
  if (res != eOk)
    return res;
  return getPointAtParam(param, startPoint);
}

OdResult OdDbCurve::getEndPoint(OdGePoint3d& endPoint) const {
  double param = 0.0;
  const OdResult res = getEndParam(param);
  if (res != eOk)
    return res;
  return getPointAtParam(param, endPoint);
}

OdResult OdDbCurve::getPointAtParam(double /*param*/, OdGePoint3d& /*pointOnCurve*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getParamAtPoint(const OdGePoint3d& /*pointOnCurve*/, double& /*param*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getDistAtParam(double /*param*/, double& /*dist*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getParamAtDist(double /*dist*/, double& /*param*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getDistAtPoint(const OdGePoint3d& pointOnCurve, double& dist) const {
  double param = 0.0;
  const OdResult res = getParamAtPoint(pointOnCurve, param);
  if (res != eOk)
    return res;
  return getDistAtParam(param, dist);
}

OdResult OdDbCurve::getClosestPointTo(const OdGePoint3d& /*givenPoint*/,
                                      OdGePoint3d& /*pointOnCurve*/, bool /*extend*/) const {
  return eNotImplemented;
}

OdResult OdDbCurve::getArea(double& /*area*/) const {
  return eNotImplemented;
}

// Intersections --------------------------------------------------------------------------------

namespace {

/// How deep intersectWith follows explode() output that explodes further (a block of custom
/// entities, say); deeper content is left out rather than risking a cycle.
constexpr int kMaxExplodeDepth = 8;

bool isLineDegenerate(const OdDbCurvePiece& line, double tol) {
  return line.start.distanceTo(line.end) <= tol;
}

/// True when point, already known to lie on the arc's circle, lies within its sweep.
bool isWithinSweep(const OdDbCurvePiece& arc, const OdGePoint3d& point, double tol) {
  if (arc.sweep >= Oda2PI)
    return true;
  const OdGeVector3d radial = (point - arc.center).orthoProject(arc.normal);
  if (radial.isZeroLength())
    return false;
  const double angle = arc.startVector.angleTo(radial, arc.normal);
  const double slack = tol / arc.radius;
  return angle <= arc.sweep + slack || angle >= Oda2PI - slack;
}

/// Collinear segments (or infinite lines, where extended) overlapping along a stretch: the ends
/// of the stretch, one point when it is a single point, nothing when both are infinite.
void collinearOverlap(const OdDbCurvePiece& a, bool extendA, const OdDbCurvePiece& b, bool extendB,
                      double tol, OdGePoint3dArray& found) {
  const OdGeVector3d direction = a.end - a.start;
  const double lengthA = direction.length();
  const OdGeVector3d unit = direction / lengthA;
  const auto offLine = [&](const OdGePoint3d& point) {
    const OdGeVector3d offset = point - a.start;
    return (offset - unit * offset.dotProduct(unit)).length() > tol;
  };
  if (offLine(b.start) || offLine(b.end))
    return; // not on one line
  if (extendA && extendB)
    return;
  const double inf = std::numeric_limits<double>::infinity();
  const double b0 = (b.start - a.start).dotProduct(unit);
  const double b1 = (b.end - a.start).dotProduct(unit);
  const double low = std::max(extendA ? -inf : 0.0, extendB ? -inf : std::min(b0, b1));
  const double high = std::min(extendA ? inf : lengthA, extendB ? inf : std::max(b0, b1));
  if (low > high + tol)
    return;
  found.append(a.start + unit * low);
  if (high - low > tol)
    found.append(a.start + unit * high);
}

void intersectLines(const OdDbCurvePiece& a, bool extendA, const OdDbCurvePiece& b, bool extendB,
                    double tol, OdGePoint3dArray& found) {
  if (isLineDegenerate(a, tol) || isLineDegenerate(b, tol))
    return;
  const OdGeExtend extend = extendA ? (extendB ? OdGeExtend::kBoth : OdGeExtend::kFirst)
                                    : (extendB ? OdGeExtend::kSecond : OdGeExtend::kNone);
  OdGePoint3d point;
  if (odgeIntersectLines(a.start, a.end, b.start, b.end, extend, point) == 1) {
    found.append(point);
    return;
  }
  collinearOverlap(a, extendA, b, extendB, tol, found);
}

void intersectLineArc(const OdDbCurvePiece& line, bool extendLine, const OdDbCurvePiece& arc,
                      double tol, OdGePoint3dArray& found) {
  if (isLineDegenerate(line, tol))
    return;
  OdGePoint3d points[2];
  const int count = odgeIntersectLineCircle(line.start, line.end, !extendLine, arc.center,
                                            arc.normal, arc.radius, points[0], points[1]);
  for (int i = 0; i < count; ++i) {
    if (isWithinSweep(arc, points[i], tol))
      found.append(points[i]);
  }
}

void intersectArcs(const OdDbCurvePiece& a, const OdDbCurvePiece& b, double tol,
                   OdGePoint3dArray& found) {
  OdGePoint3d points[2];
  int count = 0;
  if (a.normal.isParallelTo(b.normal)) {
    if (std::fabs((b.center - a.center).dotProduct(a.normal)) > tol)
      return; // parallel planes, apart
    if (a.center.distanceTo(b.center) <= tol && std::fabs(a.radius - b.radius) <= tol) {
      // One circle: the arcs overlap between those of their ends that lie on the other.
      for (const OdGePoint3d& end : {a.start, a.end}) {
        if (isWithinSweep(b, end, tol))
          found.append(end);
      }
      for (const OdGePoint3d& end : {b.start, b.end}) {
        if (isWithinSweep(a, end, tol))
          found.append(end);
      }
      return;
    }
    count = odgeIntersectCircles(a.center, a.normal, a.radius, b.center, b.normal, b.radius,
                                 points[0], points[1]);
  } else {
    // The circles can only meet on the line where their planes cross; a point of it that
    // lies on both planes solves n_a.p = n_a.c_a and n_b.p = n_b.c_b.
    const OdGeVector3d direction = a.normal.crossProduct(b.normal);
    const double da = a.normal.dotProduct(a.center.asVector());
    const double db = b.normal.dotProduct(b.center.asVector());
    const double cosine = a.normal.dotProduct(b.normal);
    const double denominator = 1.0 - cosine * cosine;
    const OdGePoint3d onBoth = OdGePoint3d::kOrigin +
                               a.normal * ((da - db * cosine) / denominator) +
                               b.normal * ((db - da * cosine) / denominator);
    OdGePoint3d candidates[2];
    const int onA = odgeIntersectLineCircle(onBoth, onBoth + direction, false, a.center, a.normal,
                                            a.radius, candidates[0], candidates[1]);
    for (int i = 0; i < onA; ++i) {
      if (std::fabs(candidates[i].distanceTo(b.center) - b.radius) <= tol)
        points[count++] = candidates[i];
    }
  }
  for (int i = 0; i < count; ++i) {
    if (isWithinSweep(a, points[i], tol) && isWithinSweep(b, points[i], tol))
      found.append(points[i]);
  }
}

void intersectPieces(const OdDbCurvePiece& a, bool extendA, const OdDbCurvePiece& b, bool extendB,
                     double tol, OdGePoint3dArray& found) {
  if (a.kind == OdDbCurvePiece::kLine && b.kind == OdDbCurvePiece::kLine)
    intersectLines(a, extendA, b, extendB, tol, found);
  else if (a.kind == OdDbCurvePiece::kLine)
    intersectLineArc(a, extendA, b, tol, found);
  else if (b.kind == OdDbCurvePiece::kLine)
    intersectLineArc(b, extendB, a, tol, found);
  else
    intersectArcs(a, b, tol, found);
}

} // namespace

bool OdDbCurve::subGetPieces(OdDbCurvePieceArray& /*pieces*/) const {
  return false;
}

OdResult OdDbCurve::collectPieces(const OdDbEntity* entity, OdDbCurvePieceArray& pieces,
                                  int depth) {
  if (entity->isKindOf(OdDbCurve::desc()) &&
      static_cast<const OdDbCurve*>(entity)->subGetPieces(pieces))
    return eOk;
  if (depth >= kMaxExplodeDepth)
    return eOk;
  OdRxObjectPtrArray parts;
  const OdResult exploded = entity->explode(parts);
  if (exploded != eOk)
    return exploded;
  for (const OdRxObjectPtr& part : parts) {
    if (part.isNull() || !part->isKindOf(OdDbEntity::desc()))
      continue;
    OdDbCurvePieceArray partPieces;
    // A part that neither has pieces nor explodes (a point, a text) meets nothing.
    if (collectPieces(static_cast<const OdDbEntity*>(part.get()), partPieces, depth + 1) != eOk)
      continue;
    for (OdDbCurvePiece& piece : partPieces) {
      piece.extendable = false;
      pieces.append(piece);
    }
  }
  return eOk;
}

OdResult OdDbCurve::subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                                     OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                                     OdGsMarker otherGsMarker) const {
  assertReadEnabled();
  if (!other)
    return eNullEntityPointer;
  OdDbCurvePieceArray mine;
  if (!subGetPieces(mine))
    return OdDbEntity::subIntersectWith(other, intType, points, thisGsMarker, otherGsMarker);
  OdDbCurvePieceArray theirs;
  const OdResult collected = collectPieces(other, theirs, 0);
  if (collected != eOk)
    return collected;
  const bool extendThis = intType == OdDb::kExtendThis || intType == OdDb::kExtendBoth;
  const bool extendArg = intType == OdDb::kExtendArg || intType == OdDb::kExtendBoth;
  const double tol = OdGeContext::gTol.equalPoint();
  OdGePoint3dArray found;
  for (const OdDbCurvePiece& a : mine) {
    for (const OdDbCurvePiece& b : theirs)
      intersectPieces(a, extendThis && a.extendable, b, extendArg && b.extendable, tol, found);
  }
  // Points the caller passed in stay as they are; only the new ones are kept apart.
  const unsigned int firstNew = points.size();
  for (const OdGePoint3d& point : found) {
    bool known = false;
    for (unsigned int i = firstNew; i < points.size() && !known; ++i)
      known = points[i].isEqualTo(point);
    if (!known)
      points.append(point);
  }
  return eOk;
}
