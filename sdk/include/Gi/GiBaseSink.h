#ifndef OD_GI_BASE_SINK_H
#define OD_GI_BASE_SINK_H

/// What every graphics sink of the platform has in common, so that a sink only says what it
/// does with a primitive: the draw contexts, the traits, the context with its database, the
/// model-transform stack and the fixed view viewport drawing sees.

#include "Ge/GeMatrix3d.h"
#include "Gi/GiFixedViewport.h"
#include "Gi/GiSubEntityTraitsData.h"
#include "Gi/GiWorldDraw.h"

#include <cstddef>
#include <vector>

/// The sink is its own world and viewport draw context, geometry, traits and context. Pushed
/// model transforms combine: each push multiplies onto the transform in force, and a pop
/// without a matching push is ignored. Three-point circles and arcs are turned into their
/// centre form here; a three-point circle through collinear points is refused, a three-point
/// arc through collinear points is drawn as the polyline start, point, end.
///
/// The draw-context answers default to a standard sink (no abort, no deviation, not dragging,
/// four isolines); each sink names its own regen type.
class OdGiBaseSink : public OdGiWorldDraw,
                     public OdGiViewportDraw,
                     public OdGiWorldGeometry,
                     public OdGiViewportGeometry,
                     public OdGiSubEntityTraitsState,
                     public OdGiContext {
public:
  OdGiBaseSink(const OdGiBaseSink&) = delete;
  OdGiBaseSink& operator=(const OdGiBaseSink&) = delete;

  /// What context()->database() reports to the entities drawn; may be null. Virtual because
  /// some sinks derive state from the drawing's tables.
  virtual void setDatabase(OdDbDatabase* database) { m_database = database; }
  /// The view viewport drawing sees; its model transforms are this sink's.
  OdGiFixedViewport& fixedViewport() { return m_viewport; }
  /// How many model transforms are pushed.
  std::size_t modelTransformDepth() const { return m_transforms.size(); }

  // OdGiCommonDraw, OdGiWorldDraw, OdGiViewportDraw.
  OdGiGeometry& rawGeometry() const override;
  /// Covariant with both the world and the viewport geometry.
  OdGiBaseSink& geometry() const override;
  OdGiViewport& viewport() const override;
  OdGiSubEntityTraits& subEntityTraits() const override;
  OdGiContext* context() const override;
  bool regenAbort() const override { return false; }
  double deviation(const OdGiDeviationType, const OdGePoint3d&) const override { return 0.0; }
  bool isDragging() const override { return false; }
  OdUInt32 numberOfIsolines() const override { return 4; }

  // OdGiContext.
  OdDbDatabase* database() const override { return m_database; }

  // OdGiGeometry: the three-point forms and the model transforms.
  void circle(const OdGePoint3d& center, double radius, const OdGeVector3d& normal) override = 0;
  void circle(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
              const OdGePoint3d& thirdPoint) override;
  void circularArc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                   const OdGeVector3d& startVector, double sweepAngle,
                   OdGiArcType arcType = kOdGiArcSimple) override = 0;
  void circularArc(const OdGePoint3d& start, const OdGePoint3d& point, const OdGePoint3d& end,
                   OdGiArcType arcType = kOdGiArcSimple) override;
  /// Declared here so that the base's own calls reach the sink's one overrider.
  void polyline(OdInt32 numVertices, const OdGePoint3d* vertexList,
                const OdGeVector3d* pNormal = nullptr,
                OdGsMarker baseSubEntMarker = -1) override = 0;
  void pushModelTransform(const OdGeMatrix3d& xfm) override;
  void popModelTransform() override;
  OdGeMatrix3d getModelToWorldTransform() const override;

protected:
  explicit OdGiBaseSink(OdDbDatabase* database = nullptr);
  ~OdGiBaseSink() override = default;

  /// Called for a primitive the base refuses (a three-point circle through collinear points),
  /// so that sinks that count refusals see it.
  virtual void refused() {}
  /// Drops every pushed model transform, as before a new entity is drawn.
  void clearModelTransforms() { m_transforms.clear(); }
  OdGePoint3d toWorld(const OdGePoint3d& modelPoint) const;
  OdGeVector3d toWorld(const OdGeVector3d& modelVector) const;

  /// Orthonormal axes (u, v) of the plane with this normal, u along xHint projected into the
  /// plane (or the arbitrary-axis X when xHint is null). False for a zero normal or a hint
  /// with no component in the plane.
  static bool planeAxes(const OdGeVector3d& normal, const OdGeVector3d* xHint, OdGeVector3d& u,
                        OdGeVector3d& v);
  /// planeAxes for a circle or arc, refusing a negative or non-finite radius as well.
  static bool circleAxes(double radius, const OdGeVector3d& normal, const OdGeVector3d* xHint,
                         OdGeVector3d& u, OdGeVector3d& v);

private:
  /// Each entry is the full model-to-world product at its depth.
  std::vector<OdGeMatrix3d> m_transforms;
  OdGiFixedViewport m_viewport;
  OdDbDatabase* m_database;
};

#endif
