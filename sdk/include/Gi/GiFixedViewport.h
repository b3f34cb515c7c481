#ifndef OD_GI_FIXED_VIEWPORT_H
#define OD_GI_FIXED_VIEWPORT_H

/// A viewport with a view set by hand rather than by an interactive display: what a sink that
/// offers viewport drawing (the recorder, an image renderer) gives entities, so that their
/// view-dependent graphics are reproducible. Parallel projection only.

#include "Ge/GeMatrix3d.h"
#include "Ge/GePoint2d.h"
#include "Gi/GiWorldDraw.h"

class OdGiFixedViewport : public OdGiViewport {
public:
  /// A plan view: looking down -Z at the origin, Y up, one pixel per drawing unit, 800 x 600
  /// pixels. modelSource, when given, supplies the model transforms in force (it must outlive
  /// the viewport); without it drawn coordinates are world coordinates.
  explicit OdGiFixedViewport(const OdGiGeometry* modelSource = nullptr);

  /// Sets the view. viewDirection runs from the target towards the camera; upVector is made
  /// perpendicular to it. A zero direction is refused (false, view unchanged); an up vector
  /// that is zero or parallel to the direction is replaced by the direction's arbitrary axis
  /// rule Y axis.
  bool setView(const OdGePoint3d& target, const OdGeVector3d& viewDirection,
               const OdGeVector3d& upVector);
  /// Pixels per drawing unit. Values that are not positive and finite are refused (false).
  bool setPixelsPerUnit(double pixelsPerUnit);
  void setViewportDcCorners(const OdGePoint2d& lowerLeft, const OdGePoint2d& upperRight);

  OdGeMatrix3d getModelToEyeTransform() const override;
  OdGeMatrix3d getEyeToModelTransform() const override;
  OdGeMatrix3d getWorldToEyeTransform() const override;
  OdGeMatrix3d getEyeToWorldTransform() const override;
  bool isPerspective() const override { return false; }
  /// The target moved one unit back along the view direction.
  OdGePoint3d getCameraLocation() const override;
  OdGePoint3d getCameraTarget() const override { return m_target; }
  OdGeVector3d getCameraUpVector() const override { return m_up; }
  OdGeVector3d viewDir() const override { return m_viewDir; }
  /// The same density everywhere, since the projection is parallel.
  void getNumPixelsInUnitSquare(const OdGePoint3d& givenWorldPoint, OdGePoint2d& pixelArea,
                                bool includePerspective = true) const override;
  void getViewportDcCorners(OdGePoint2d& lowerLeft, OdGePoint2d& upperRight) const override;

private:
  OdGeMatrix3d modelToWorld() const;

  const OdGiGeometry* m_modelSource;
  OdGePoint3d m_target;
  OdGeVector3d m_viewDir;
  OdGeVector3d m_up;
  double m_pixelsPerUnit = 1.0;
  OdGePoint2d m_dcLowerLeft;
  OdGePoint2d m_dcUpperRight;
};

#endif
