#ifndef OD_GI_RECORDER_H
#define OD_GI_RECORDER_H

/// A sink that keeps every primitive drawn into it as a plain record in world coordinates,
/// with the traits in force when it was drawn. Tests assert on what an entity draws through
/// it, and tools that need the primitives themselves (exploding, writing) read them from it.

#include "Gi/GiBaseSink.h"
#include "OdString.h"

#include <cstddef>
#include <vector>

/// One primitive as drawn, in world coordinates.
struct OdGiRecord {
  enum Kind { kCircle, kArc, kPolyline, kPolygon, kText, kXline, kRay };

  Kind kind = kPolyline;
  /// Circle: the centre. Arc: centre, start point, end point. Polyline, polygon: the
  /// vertices. Text: the position. Xline, ray: the two points as given.
  std::vector<OdGePoint3d> points;
  /// Unit normal of a circle, arc or text, and of a polyline drawn with one; zero otherwise.
  OdGeVector3d normal;
  double radius = 0.0;
  /// Arc: unit vector from the centre to the start point.
  OdGeVector3d startVector;
  /// Arc: as drawn, sign included (positive is counter-clockwise about normal).
  double sweepAngle = 0.0;
  OdGiArcType arcType = kOdGiArcSimple;
  /// Text: unit baseline direction, height, width factor, oblique angle and the string.
  OdGeVector3d direction;
  double height = 0.0;
  double width = 0.0;
  double oblique = 0.0;
  OdString text;
  /// Polyline: the base sub-entity marker passed with it (-1 when none).
  OdGsMarker subEntMarker = -1;
  OdGiSubEntityTraitsData traits;
};

/// Records world and viewport drawing alike; viewport drawing sees a fixed, configurable view.
///
/// Model transforms: points are recorded through the product of the pushed transforms. Circles,
/// arcs and text keep their parameters exactly under transforms that keep circles circular
/// (rotation, translation, uniform scaling, mirroring; a mirror flips the recorded normal, so
/// arcs still run counter-clockwise about it). Under other transforms a circle's radius is the
/// transformed length of its plane's first axis. A pop without a matching push is ignored.
///
/// Refusals (nothing recorded): a vertex count below 1 or a null vertex list, a negative or
/// non-finite radius, a zero normal, an arc start vector or text direction with no component
/// in the plane, a three-point circle through collinear points. A three-point arc through
/// collinear points is recorded as the polyline start, point, end.
class OdGiRecorder : public OdGiBaseSink {
public:
  OdGiRecorder();

  const std::vector<OdGiRecord>& records() const { return m_records; }
  /// How many records of this kind were drawn.
  std::size_t count(OdGiRecord::Kind kind) const;
  /// Forgets the records; traits and model transforms stay as they are.
  void clear() { m_records.clear(); }
  /// Forgets records, traits and model transforms.
  void reset();

  // Session settings an entity may ask about.
  void setRegenType(OdGiRegenType regenType) { m_regenType = regenType; }
  void setRegenAbort(bool abort) { m_regenAbort = abort; }
  /// Returned for every deviation type; 0 (the default) leaves tessellation to the entity.
  void setDeviation(double deviation) { m_deviation = deviation; }
  void setDragging(bool dragging) { m_dragging = dragging; }
  void setNumberOfIsolines(OdUInt32 isolines) { m_isolines = isolines; }

  // OdGiCommonDraw, OdGiWorldDraw, OdGiViewportDraw.
  OdGiRegenType regenType() const override { return m_regenType; }
  bool regenAbort() const override { return m_regenAbort; }
  double deviation(const OdGiDeviationType, const OdGePoint3d&) const override {
    return m_deviation;
  }
  bool isDragging() const override { return m_dragging; }
  OdUInt32 numberOfIsolines() const override { return m_isolines; }

  // OdGiGeometry.
  using OdGiBaseSink::circle;
  using OdGiBaseSink::circularArc;
  void circle(const OdGePoint3d& center, double radius, const OdGeVector3d& normal) override;
  void circularArc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                   const OdGeVector3d& startVector, double sweepAngle,
                   OdGiArcType arcType = kOdGiArcSimple) override;
  void polyline(OdInt32 numVertices, const OdGePoint3d* vertexList,
                const OdGeVector3d* pNormal = nullptr, OdGsMarker baseSubEntMarker = -1) override;
  void polygon(OdInt32 numVertices, const OdGePoint3d* vertexList) override;
  void text(const OdGePoint3d& position, const OdGeVector3d& normal, const OdGeVector3d& direction,
            double height, double width, double oblique, const OdString& msg) override;
  void xline(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) override;
  void ray(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) override;

private:
  OdGiRecord& add(OdGiRecord::Kind kind);
  void addPoints(OdGiRecord::Kind kind, OdInt32 numVertices, const OdGePoint3d* vertexList);

  std::vector<OdGiRecord> m_records;
  OdGiRegenType m_regenType = kOdGiStandardDisplay;
  bool m_regenAbort = false;
  double m_deviation = 0.0;
  bool m_dragging = false;
  OdUInt32 m_isolines = 4;
};

#endif
