#ifndef CUSTENTS_RENDER_RENDER_SINK_H
#define CUSTENTS_RENDER_RENDER_SINK_H

/// The graphics sink of the renderer: entities draw into it as into any other sink, and it
/// turns each primitive into pixels of the scene with the colour and width the traits in force
/// resolve to.

#include "Gi/GiBaseSink.h"
#include "RenderScene.h"
#include "StyleResolver.h"
#include "ViewFit.h"

class OdDbEntity;

namespace custents {
namespace render {

/// Primitives are projected onto the world XY plane through the model transforms in force.
/// Circles that stay circles on screen become scene circles; arcs, and circles seen at an
/// angle, become paths traced within a quarter pixel. Polygons, circles and closed arcs
/// (sector, chord) are filled while the fill type is kOdGiFillAlways. Text keeps the box the
/// platform's text metrics give it: each character gets its metric cell, and the painters fit
/// the glyphs into the cells (GlyphFitter.h). Xlines and rays are cut where they leave the picture.
///
/// Refusals (nothing drawn) follow the platform's other sinks: no vertices, a negative or
/// non-finite radius, a zero normal, a start vector or text direction with no component in
/// the plane, collinear points for a three-point circle; and text with no height, no string or no
/// advance (control characters only).
/// A pop without a push is ignored.
class RenderSink : public OdGiBaseSink {
public:
  /// The sink adds to scene (whose size must be set) through view; both must outlive it.
  RenderSink(RenderScene& scene, const ViewTransform& view, StyleResolver& styles);

  /// Draws one entity with its own properties as the starting traits: worldDraw, and
  /// viewportDraw when worldDraw returns false. Exceptions from the entity pass through, with
  /// the sink reset for the next entity.
  void drawEntity(const OdDbEntity* entity);

  // OdGiCommonDraw, OdGiWorldDraw, OdGiViewportDraw.
  OdGiRegenType regenType() const override { return kOdGiStandardDisplay; }
  /// A quarter pixel in drawing units, so that tessellated curves look smooth.
  double deviation(const OdGiDeviationType, const OdGePoint3d&) const override;

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
  /// Gives the primitive the colour and width the traits in force resolve to and adds it to
  /// the scene; drops it when the layer in force is off or frozen or a coordinate is not a
  /// number.
  void commit(ScenePrimitive&& primitive);
  bool fillsClosedShapes() const { return fillType() == kOdGiFillAlways; }
  PixelPoint toPixels(const OdGePoint3d& modelPoint) const;
  PixelPoint vectorToPixels(const OdGeVector3d& modelVector) const;
  /// The ellipse arc c + U cos t + V sin t, t from 0 to sweep, already in pixels.
  void addEllipseArc(const PixelPoint& center, const PixelPoint& u, const PixelPoint& v,
                     double sweep, OdGiArcType arcType, bool fullCircle);
  void addLineThroughPicture(const OdGePoint3d& base, const OdGePoint3d& through, bool bothWays);

  RenderScene& m_scene;
  ViewTransform m_view;
  StyleResolver& m_styles;
  /// The layer of the entity being drawn; primitives drawn with a null layer take it.
  OdDbStub* m_entityLayer = nullptr;
};

} // namespace render
} // namespace custents

#endif
