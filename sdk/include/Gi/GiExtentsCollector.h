#ifndef OD_GI_EXTENTS_COLLECTOR_H
#define OD_GI_EXTENTS_COLLECTOR_H

/// A sink that measures instead of drawing: the world box of everything drawn into it. An
/// entity's default extents are what its own drawing covers, so entities need no extents code
/// of their own unless they want something else.

#include "Ge/GeExtents3d.h"
#include "Ge/GeMatrix3d.h"
#include "Gi/GiFixedViewport.h"
#include "Gi/GiSubEntityTraitsData.h"
#include "Gi/GiWorldDraw.h"
#include "OdString.h"

#include <functional>
#include <vector>

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
class OdGiExtentsCollector : public OdGiWorldDraw,
                             public OdGiViewportDraw,
                             public OdGiWorldGeometry,
                             public OdGiViewportGeometry,
                             public OdGiSubEntityTraitsState,
                             public OdGiContext {
public:
  /// The advance of a whole line of text in drawing units, given its height and width factor.
  typedef std::function<double(const OdString& text, double height, double widthFactor)>
      TextWidthFunction;

  /// The default text width: the platform's text-metrics service (GiTextMetrics.h), so that
  /// extents agree with every other layout and follow an application's replacement rule.
  static double defaultTextWidth(const OdString& text, double height, double widthFactor);

  /// database is what context()->database() reports to the entities drawn; may be null.
  explicit OdGiExtentsCollector(OdDbDatabase* database = nullptr);
  OdGiExtentsCollector(const OdGiExtentsCollector&) = delete;
  OdGiExtentsCollector& operator=(const OdGiExtentsCollector&) = delete;

  /// Invalid until something is drawn.
  const OdGeExtents3d& extents() const { return m_extents; }
  /// Back to invalid extents; traits and model transforms stay.
  void clear() { m_extents = OdGeExtents3d(); }
  /// An empty function restores the default.
  void setTextWidthFunction(TextWidthFunction function);
  void setDatabase(OdDbDatabase* database) { m_database = database; }

  /// The view viewport drawing sees; its model transforms are this collector's.
  OdGiFixedViewport& fixedViewport() { return m_viewport; }

  // OdGiCommonDraw, OdGiWorldDraw, OdGiViewportDraw. The regen type is kOdGiForExtents.
  OdGiGeometry& rawGeometry() const override;
  /// Covariant with both the world and the viewport geometry.
  OdGiExtentsCollector& geometry() const override;
  OdGiViewport& viewport() const override;
  OdGiSubEntityTraits& subEntityTraits() const override;
  OdGiContext* context() const override;
  OdGiRegenType regenType() const override { return kOdGiForExtents; }
  bool regenAbort() const override { return false; }
  double deviation(const OdGiDeviationType, const OdGePoint3d&) const override { return 0.0; }
  bool isDragging() const override { return false; }
  OdUInt32 numberOfIsolines() const override { return 4; }

  // OdGiContext.
  OdDbDatabase* database() const override { return m_database; }

  // OdGiGeometry.
  void circle(const OdGePoint3d& center, double radius, const OdGeVector3d& normal) override;
  void circle(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
              const OdGePoint3d& thirdPoint) override;
  void circularArc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                   const OdGeVector3d& startVector, double sweepAngle,
                   OdGiArcType arcType = kOdGiArcSimple) override;
  void circularArc(const OdGePoint3d& start, const OdGePoint3d& point, const OdGePoint3d& end,
                   OdGiArcType arcType = kOdGiArcSimple) override;
  void polyline(OdInt32 numVertices, const OdGePoint3d* vertexList,
                const OdGeVector3d* pNormal = nullptr, OdGsMarker baseSubEntMarker = -1) override;
  void polygon(OdInt32 numVertices, const OdGePoint3d* vertexList) override;
  void text(const OdGePoint3d& position, const OdGeVector3d& normal, const OdGeVector3d& direction,
            double height, double width, double oblique, const OdString& msg) override;
  void xline(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) override;
  void ray(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) override;
  void pushModelTransform(const OdGeMatrix3d& xfm) override;
  void popModelTransform() override;
  OdGeMatrix3d getModelToWorldTransform() const override;

private:
  void addModelPoint(const OdGePoint3d& point);
  void addPoints(OdInt32 numVertices, const OdGePoint3d* vertexList);

  OdGeExtents3d m_extents;
  std::vector<OdGeMatrix3d> m_transforms;
  TextWidthFunction m_textWidth;
  OdGiFixedViewport m_viewport;
  OdDbDatabase* m_database;
};

#endif
