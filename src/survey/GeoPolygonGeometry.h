#ifndef CUSTENTS_GEO_POLYGON_GEOMETRY_H
#define CUSTENTS_GEO_POLYGON_GEOMETRY_H

// The construction of the survey polygon's vertices and its central angle, kept apart from
// the entity so that they are tested without a database.

#include "Ge/GePoint3dArray.h"
#include "Ge/GeVector3d.h"
#include "OdaCommon.h"

namespace custents {

/// The central angle between neighbouring vertices of a regular polygon, in radians:
/// (1 / sideCount) * 2π. A side count of 0 gives an infinite angle, as the polygon has always
/// reported it.
double polygonStepAngle(OdInt32 sideCount);

/// The step angle in degrees, without its sign.
double polygonStepDegrees(double stepAngle);

/// Appends `count` vertices centre + radius, turning `radius` by `stepAngle` about +Z after
/// each one, so the vertices run counter-clockwise seen from +Z. `radius` is left as it stands
/// after the last turn (a full turn for a step of 2π / count), which is where the next
/// construction starts from. A count below 1 appends nothing.
void appendRegularVertices(const OdGePoint3d& center, OdGeVector3d& radius, OdInt32 count,
                           double stepAngle, OdGePoint3dArray& vertices);

} // namespace custents

#endif
