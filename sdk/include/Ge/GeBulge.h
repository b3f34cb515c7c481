#ifndef OD_GE_BULGE_H
#define OD_GE_BULGE_H

/// The circular arc of a bulged segment, as lightweight polylines and hatch loops store it: a
/// chord from p1 to p2 and a bulge, the tangent of a quarter of the arc's signed sweep
/// (positive counter-clockwise). Bulge 1 is a semicircle; a bulge of 0 is a straight segment.
/// Polylines, hatches and their drawing share this one reading of the bulge, so that an
/// outline, its area, its extents and its exploded arcs all agree.

#include "Ge/GePoint2d.h"
#include "Ge/GeTol.h"
#include "Ge/GeVector3d.h"

struct OdGeBulgeArc {
  OdGePoint2d center;
  double radius = 0.0;
  /// The direction of p1 from the centre.
  double startAngle = 0.0;
  /// Signed: positive counter-clockwise; its sign is the bulge's.
  double sweep = 0.0;

  /// Makes this the arc from p1 to p2 with the given bulge. Returns false, leaving the arc as
  /// it was, for a straight segment: bulge 0 or not finite, or ends closer than
  /// tol.equalPoint(), which span no arc.
  bool set(const OdGePoint2d& p1, const OdGePoint2d& p2, double bulge,
           const OdGeTol& tol = OdGeContext::gTol);

  OdGePoint2d pointAtAngle(double angle) const;
  /// The point a fraction (0 at p1, 1 at p2) along the sweep.
  OdGePoint2d pointAt(double fraction) const { return pointAtAngle(startAngle + sweep * fraction); }
  /// The fraction of the sweep at which the arc passes the direction angle (from its centre),
  /// ends included with a small angular slack; a negative number when it does not pass it.
  double fractionAtAngle(double angle) const;
  /// The fraction (0..1) of the arc's point nearest to point: where the ray from the centre
  /// through point meets the arc, else the nearer end. 0 for the centre itself.
  double closestFraction(const OdGePoint2d& point) const;
  double length() const;
  /// The area between chord and arc, positive for a counter-clockwise arc: it lies to the
  /// right of the chord, so it adds to a counter-clockwise outline and takes from a clockwise.
  double signedSegmentArea() const;
  /// How many equal-angle pieces the arc is drawn with: 64 to the full circle, finer when the
  /// allowed deviation from the true arc (0 or less for none) needs it, between 1 and 1024.
  int numPieces(double deviation) const;
};

/// The directions (angles in the plane whose world axes are xAxis and yAxis) at which a circle
/// of that plane reaches its least and greatest coordinate along each world axis: for axis k,
/// atan2(yAxis[k], xAxis[k]) and half a turn further. An axis the plane is perpendicular to
/// has none. Writes up to 6 angles, in axis order, and returns how many; a curve's extents are
/// its ends plus the circle points at those of the angles it passes.
unsigned int odgeCircleExtremeAngles(const OdGeVector3d& xAxis, const OdGeVector3d& yAxis,
                                     double angles[6]);

#endif
