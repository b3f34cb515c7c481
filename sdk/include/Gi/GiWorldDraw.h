#ifndef OD_GI_WORLD_DRAW_H
#define OD_GI_WORLD_DRAW_H

/// What an entity is given to draw itself: the geometry to draw with, the traits to set, and
/// facts about the drawing session (what the drawing is for, which database, which view).

#include "Gi/GiGeometry.h"
#include "Gi/GiSubEntityTraits.h"

class OdDbDatabase;
class OdGePoint2d;

/// Why the entity is being drawn; entities may simplify or enrich their graphics accordingly
/// (proxy graphics and explode want everything drawn in world geometry).
enum OdGiRegenType {
  eOdGiRegenTypeInvalid = 0,
  kOdGiStandardDisplay = 2,
  kOdGiHideOrShadeCommand = 3,
  kOdGiRenderCommand = 4,
  kOdGiForExplode = 5,
  kOdGiSaveWorldDrawForProxy = 6,
  kOdGiForExtents = 7
};

/// Which tessellation tolerance deviation() is asked for.
enum OdGiDeviationType {
  kOdGiMaxDevForCircle = 0,
  kOdGiMaxDevForCurve,
  kOdGiMaxDevForBoundary,
  kOdGiMaxDevForIsoline,
  kOdGiMaxDevForFacet
};

/// The session an entity is drawn in.
class OdGiContext {
public:
  virtual ~OdGiContext() = default;
  /// The database whose objects are being drawn; null when drawing objects of none.
  virtual OdDbDatabase* database() const = 0;
};

class OdGiCommonDraw {
public:
  virtual ~OdGiCommonDraw() = default;

  /// The geometry as its common base; world and viewport drawing refine it as geometry().
  virtual OdGiGeometry& rawGeometry() const = 0;
  virtual OdGiSubEntityTraits& subEntityTraits() const = 0;
  virtual OdGiContext* context() const = 0;
  virtual OdGiRegenType regenType() const = 0;
  /// True when the consumer no longer wants the graphics; long drawings check it and stop.
  virtual bool regenAbort() const = 0;
  /// The largest distance a tessellated curve may stray from the true curve near
  /// pointOnCurve; 0 leaves the choice to the entity.
  virtual double deviation(const OdGiDeviationType deviationType,
                           const OdGePoint3d& pointOnCurve) const = 0;
  /// True while the entity is drawn as a drag image, when cheap graphics are welcome.
  virtual bool isDragging() const = 0;
  /// How many lines to draw across curved surfaces.
  virtual OdUInt32 numberOfIsolines() const = 0;
};

class OdGiWorldDraw : public OdGiCommonDraw {
public:
  virtual OdGiWorldGeometry& geometry() const = 0;
};

/// The view an entity is drawn into. Eye coordinates have the view target at the origin, the
/// view direction along +Z (towards the viewer) and the up vector along +Y.
class OdGiViewport {
public:
  virtual ~OdGiViewport() = default;

  /// Drawn coordinates (with the model transforms in force) to eye coordinates.
  virtual OdGeMatrix3d getModelToEyeTransform() const = 0;
  virtual OdGeMatrix3d getEyeToModelTransform() const = 0;
  virtual OdGeMatrix3d getWorldToEyeTransform() const = 0;
  virtual OdGeMatrix3d getEyeToWorldTransform() const = 0;
  virtual bool isPerspective() const = 0;
  virtual OdGePoint3d getCameraLocation() const = 0;
  virtual OdGePoint3d getCameraTarget() const = 0;
  virtual OdGeVector3d getCameraUpVector() const = 0;
  /// From the target towards the camera, as the VIEWDIR variable.
  virtual OdGeVector3d viewDir() const = 0;
  /// Pixels per drawing unit along x and y at a world point: what turns a size on screen into
  /// a size in the drawing.
  virtual void getNumPixelsInUnitSquare(const OdGePoint3d& givenWorldPoint, OdGePoint2d& pixelArea,
                                        bool includePerspective = true) const = 0;
  /// The viewport's corners in device (pixel) coordinates.
  virtual void getViewportDcCorners(OdGePoint2d& lowerLeft, OdGePoint2d& upperRight) const = 0;
};

class OdGiViewportDraw : public OdGiCommonDraw {
public:
  virtual OdGiViewport& viewport() const = 0;
  virtual OdGiViewportGeometry& geometry() const = 0;
};

#endif
