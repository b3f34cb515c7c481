#ifndef CUSTENTS_GEO_POLYGON_OUTLINE_H
#define CUSTENTS_GEO_POLYGON_OUTLINE_H

// The closed straight outline that the triangle and the polygon are made of: both draw it as a
// temporary polyline, explode it into lines and find snaps and intersections on those lines.

#include "DbEntity.h"
#include "DbLine.h"
#include "DbPolyline.h"
#include "Ge/GePoint3dArray.h"

class OdGiWorldDraw;

namespace custents {

/// A new free-standing line. When the line class is not registered this throws OdError with
/// the fixed text "OdDbOdDbLineis not loaded", which the host has always shown for it.
OdDbLinePtr newOutlineLine();

/// A closed polyline through the points' x and y (bulge 0, widths -1) at elevation 0 with the
/// default normal, as the shapes draw and measure themselves; null when the polyline class is
/// not registered.
OdDbPolylinePtr closedOutline(const OdGePoint3d* points, unsigned int count);

/// Draws closedOutline with the polyline's own drawing; draws nothing when it cannot be made.
void drawClosedOutline(const OdGePoint3d* points, unsigned int count, OdGiWorldDraw* worldDraw);

/// Appends a line from `from` to `to` that takes its properties from `source`.
void appendEdge(const OdGePoint3d& from, const OdGePoint3d& to, const OdDbEntity* source,
                OdRxObjectPtrArray& entitySet);

/// The snap points of every line in `edges`, appended in order with the same arguments.
void appendEdgeSnaps(const OdRxObjectPtrArray& edges, OdDb::OsnapMode osnapMode,
                     OdGsMarker gsSelectionMark, const OdGePoint3d& pickPoint,
                     const OdGePoint3d& lastPoint, const OdGeMatrix3d& xWorldToEye,
                     OdGePoint3dArray& snapPoints);

/// The intersections of every line in `edges` with `other`, appended in order; eOk, or the
/// result of the first line whose intersection fails.
OdResult intersectEdges(const OdRxObjectPtrArray& edges, const OdDbEntity* other,
                        OdDb::Intersect intType, OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                        OdGsMarker otherGsMarker);

} // namespace custents

#endif
