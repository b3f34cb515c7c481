#ifndef OD_GI_GEOMETRY_H
#define OD_GI_GEOMETRY_H

/// The primitives an entity draws with. Entities describe themselves once, through these
/// calls, and every consumer (screen, proxy graphics, extents, tests) is a sink behind them, so
/// the primitive set is the one the proxy-graphics metafile can carry.

#include "OdaCommon.h"

class OdGeMatrix3d;
class OdGePoint3d;
class OdGeVector3d;
class OdString;

/// How an arc is closed: not at all, by two radii to the centre, or by the chord.
enum OdGiArcType { kOdGiArcSimple = 0, kOdGiArcSector, kOdGiArcChord };

class OdGiGeometry {
public:
  virtual ~OdGiGeometry() = default;

  /// A full circle in the plane through center with the given normal.
  virtual void circle(const OdGePoint3d& center, double radius, const OdGeVector3d& normal) = 0;
  /// The circle through three points. Sinks draw nothing for collinear or coincident points,
  /// which have no circle.
  virtual void circle(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                      const OdGePoint3d& thirdPoint) = 0;
  /// An arc from center + startVector (scaled to radius), turning sweepAngle radians
  /// counter-clockwise about normal (clockwise for a negative sweep).
  virtual void circularArc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                           const OdGeVector3d& startVector, double sweepAngle,
                           OdGiArcType arcType = kOdGiArcSimple) = 0;
  /// The arc from start through point to end. Sinks draw the two straight segments for
  /// collinear points, which is what the arc tends to as it flattens.
  virtual void circularArc(const OdGePoint3d& start, const OdGePoint3d& point,
                           const OdGePoint3d& end, OdGiArcType arcType = kOdGiArcSimple) = 0;
  /// Connected segments. pNormal, when given, is the plane the polyline lies in (for linetype
  /// and width display); baseSubEntMarker numbers the segments for selection when not -1.
  virtual void polyline(OdInt32 numVertices, const OdGePoint3d* vertexList,
                        const OdGeVector3d* pNormal = nullptr,
                        OdGsMarker baseSubEntMarker = -1) = 0;
  /// A closed outline, filled when the fill type in force is kOdGiFillAlways.
  virtual void polygon(OdInt32 numVertices, const OdGePoint3d* vertexList) = 0;
  /// A line of text with its baseline start at position. width is the width factor (1 is the
  /// font's natural width) and oblique the slant in radians from the vertical.
  virtual void text(const OdGePoint3d& position, const OdGeVector3d& normal,
                    const OdGeVector3d& direction, double height, double width, double oblique,
                    const OdString& msg) = 0;
  /// The infinite line through both points.
  virtual void xline(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) = 0;
  /// The half-line from basePoint through throughPoint.
  virtual void ray(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) = 0;

  /// Makes everything drawn until the matching pop go through xfm first, after the transforms
  /// already pushed (the new model-to-world transform is current * xfm). Block-like entities
  /// draw their content in their own coordinates this way.
  virtual void pushModelTransform(const OdGeMatrix3d& xfm) = 0;
  /// Undoes the latest push. A pop without a push is ignored by every platform sink.
  virtual void popModelTransform() = 0;
  /// The product of all pushed transforms: what maps drawn coordinates to world coordinates.
  virtual OdGeMatrix3d getModelToWorldTransform() const = 0;
};

/// The geometry an entity can draw without knowing the view.
class OdGiWorldGeometry : public OdGiGeometry {};

/// The geometry an entity draws for one viewport (sizes fixed on screen and the like).
class OdGiViewportGeometry : public OdGiGeometry {};

/// The circle through three points: its centre, radius and the normal that makes p1, p2, p3
/// run counter-clockwise. False, outputs untouched, for collinear or coincident points.
bool odgiCircleThrough3Points(const OdGePoint3d& p1, const OdGePoint3d& p2, const OdGePoint3d& p3,
                              OdGePoint3d& center, double& radius, OdGeVector3d& normal);

/// The arc from start through point to end as centre, radius, normal, start vector (from the
/// centre to start) and a positive sweep below 2π. False, outputs untouched, when the points
/// are collinear or coincide.
bool odgiArcThrough3Points(const OdGePoint3d& start, const OdGePoint3d& point,
                           const OdGePoint3d& end, OdGePoint3d& center, double& radius,
                           OdGeVector3d& normal, OdGeVector3d& startVector, double& sweepAngle);

#endif
