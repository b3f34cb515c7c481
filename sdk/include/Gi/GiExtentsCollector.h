#ifndef OD_GI_EXTENTS_COLLECTOR_H
#define OD_GI_EXTENTS_COLLECTOR_H

/// A sink that measures instead of drawing: the world box of everything drawn into it. An
/// entity's default extents are what its own drawing covers, so entities need no extents code
/// of their own unless they want something else.

#include "Ge/GeExtents3d.h"
#include "Gi/GiBaseSink.h"
#include "OdString.h"

#include <functional>

/// Extents of what is drawn, model transforms applied. Circles and arcs contribute their exact
/// box (under any affine model transform, where they become ellipses), polylines and polygons
/// their vertices, text the parallelogram of its line (baseline to cap height, slanted by the
/// oblique angle, as long as the text-width function says), xlines and rays their two given
/// points (the lines themselves are unbounded and would make any box infinite).
///
/// Refusals (nothing added) follow the recorder's: no vertices, a negative or non-finite
/// radius, a zero normal, a start vector or text direction with no component in the plane,
/// collinear points for a three-point circle. A pop without a push is ignored.
///
/// It takes viewport drawing as well, seen through a fixed plan view, so that entities that
/// draw everything view-dependently still have extents.
class OdGiExtentsCollector : public OdGiBaseSink {
public:
  /// The advance of a whole line of text in drawing units, given its height and width factor.
  typedef std::function<double(const OdString& text, double height, double widthFactor)>
      TextWidthFunction;

  /// The default text width: the platform's text-metrics service (GiTextMetrics.h), so that
  /// extents agree with every other layout and follow an application's replacement rule.
  static double defaultTextWidth(const OdString& text, double height, double widthFactor);

  /// database is what context()->database() reports to the entities drawn; may be null.
  explicit OdGiExtentsCollector(OdDbDatabase* database = nullptr);

  /// Invalid until something is drawn.
  const OdGeExtents3d& extents() const { return m_extents; }
  /// Back to invalid extents; traits and model transforms stay.
  void clear() { m_extents = OdGeExtents3d(); }
  /// An empty function restores the default.
  void setTextWidthFunction(TextWidthFunction function);

  // OdGiCommonDraw, OdGiWorldDraw, OdGiViewportDraw.
  OdGiRegenType regenType() const override { return kOdGiForExtents; }

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
  void addModelPoint(const OdGePoint3d& point);
  void addPoints(OdInt32 numVertices, const OdGePoint3d* vertexList);

  OdGeExtents3d m_extents;
  TextWidthFunction m_textWidth;
};

#endif
