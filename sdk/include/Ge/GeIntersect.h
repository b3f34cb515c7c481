#ifndef OD_GE_INTERSECT_H
#define OD_GE_INTERSECT_H

/// Intersections of lines and circles, shared by the entities' intersectWith, snapping and
/// trimming. Each function returns how many points it found and writes them to the output
/// parameters in order; outputs beyond the count are left untouched. Degenerate input (a
/// zero-length segment, a zero or negative radius, a zero normal, coincident or concentric
/// circles, overlapping collinear lines) yields 0 points: such figures meet in no point or in
/// infinitely many, and neither has a finite answer. So does input with infinite or NaN
/// coordinates.

#include "Ge/GePoint3d.h"
#include "Ge/GeTol.h"
#include "Ge/GeVector3d.h"

/// Which operands are extended beyond their end points. The values follow OdDb::Intersect
/// (kOnBothOperands, kExtendThis, kExtendArg, kExtendBoth), so an entity's intersectWith can
/// cast its mode straight through.
enum class OdGeExtend { kNone = 0, kFirst = 1, kSecond = 2, kBoth = 3 };

/// The point where line start1-end1 meets line start2-end2. Lines that are parallel, skew
/// (further apart than tol.equalPoint() at their closest) or degenerate give 0. A bounded
/// operand only counts a point within tol.equalPoint() of its segment, end points included.
int odgeIntersectLines(const OdGePoint3d& start1, const OdGePoint3d& end1,
                       const OdGePoint3d& start2, const OdGePoint3d& end2, OdGeExtend extend,
                       OdGePoint3d& point, const OdGeTol& tol = OdGeContext::gTol);

/// The points where the line through start and end (only the segment when bounded) meets the
/// circle. A line in the circle's plane gives 0, 1 (tangent, the touching point) or 2 points,
/// in order from start towards end; a line crossing the plane gives the crossing point if it
/// lies on the circle.
int odgeIntersectLineCircle(const OdGePoint3d& start, const OdGePoint3d& end, bool bounded,
                            const OdGePoint3d& center, const OdGeVector3d& normal, double radius,
                            OdGePoint3d& p1, OdGePoint3d& p2,
                            const OdGeTol& tol = OdGeContext::gTol);

/// The points where two circles of one plane meet: 0, 1 (tangent, inside or outside) or 2.
/// Circles in different planes give 0. Of two points, p1 lies to the left of the line from
/// center1 to center2 (counter-clockwise of it about normal1).
int odgeIntersectCircles(const OdGePoint3d& center1, const OdGeVector3d& normal1, double radius1,
                         const OdGePoint3d& center2, const OdGeVector3d& normal2, double radius2,
                         OdGePoint3d& p1, OdGePoint3d& p2, const OdGeTol& tol = OdGeContext::gTol);

/// The point of segment start-end nearest to point; start itself for a zero-length segment.
/// When param is given it receives the position along the segment, 0 at start and 1 at end.
OdGePoint3d odgeClosestPointOnSegment(const OdGePoint3d& point, const OdGePoint3d& start,
                                      const OdGePoint3d& end, double* param = nullptr);

#endif
