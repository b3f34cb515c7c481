#ifndef OD_DB_ENTITY_H
#define OD_DB_ENTITY_H

/// The base of drawing entities: the common properties (colour, layer, linetype, linetype
/// scale, lineweight, visibility) and the virtual operations every entity may override.
/// The public operations call the protected `sub...` ones; the defaults here are the
/// platform's behaviour for an entity that does not override them.

#include "CmColor.h"
#include "DbGripData.h"
#include "DbLineWeight.h"
#include "DbObject.h"
#include "Ge/GeExtents3d.h"
#include "Ge/GeMatrix3d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeVector3d.h"

class OdGiWorldDraw;
class OdGiViewportDraw;
class OdDbEntity;
typedef OdSmartPtr<OdDbEntity> OdDbEntityPtr;

namespace OdDb {
enum OsnapMode {
  kOsModeEnd = 1,
  kOsModeMid = 2,
  kOsModeCen = 3,
  kOsModeNode = 4,
  kOsModeQuad = 5,
  kOsModeIntersec = 6,
  kOsModeIns = 7,
  kOsModePerp = 8,
  kOsModeTan = 9,
  kOsModeNear = 10,
  kOsModeApint = 11,
  kOsModePar = 12,
  kOsModeStart = 13
};
enum Intersect { kOnBothOperands = 0, kExtendThis = 1, kExtendArg = 2, kExtendBoth = 3 };
} // namespace OdDb

class OdDbEntity : public OdDbObject {
  ODRX_DECLARE_MEMBERS(OdDbEntity);

  /// The block table record that owns the entity.
  OdDbObjectId blockId() const { return ownerId(); }

  // Common properties. Setters assert write access, getters read access.
  OdCmColor color() const;
  virtual void setColor(const OdCmColor& color, bool doSubents = true);
  OdUInt16 colorIndex() const;
  /// Throws OdError(eInvalidInput) for an index above 256, leaving the colour as it was.
  void setColorIndex(OdUInt16 colorIndex, bool doSubents = true);
  OdCmEntityColor entityColor() const;

  /// The layer's name ("0" for an entity outside a database with no layer set).
  OdString layer() const;
  OdDbObjectId layerId() const;
  /// Throws OdError(eKeyNotFound) when the entity's database has no layer of that name, and
  /// OdError(eNotInDatabase) when the entity is in no database.
  void setLayer(const OdString& layerName, bool doSubents = true);
  void setLayer(OdDbObjectId layerId, bool doSubents = true);

  /// The linetype's name ("ByLayer" by default).
  OdString linetype() const;
  OdDbObjectId linetypeId() const;
  void setLinetype(const OdString& linetypeName, bool doSubents = true);
  void setLinetype(OdDbObjectId linetypeId, bool doSubents = true);

  double linetypeScale() const;
  /// Throws OdError(eInvalidInput) for a scale that is not a positive finite number.
  void setLinetypeScale(double scale, bool doSubents = true);

  OdDb::LineWeight lineWeight() const;
  /// Throws OdError(eInvalidInput) for a value that is not a lineweight.
  void setLineWeight(OdDb::LineWeight lineWeight, bool doSubents = true);

  OdDb::Visibility visibility() const;
  void setVisibility(OdDb::Visibility visibility, bool doSubents = true);

  /// Takes colour, layer, linetype, linetype scale, lineweight and visibility from `source`.
  void setPropertiesFrom(const OdDbEntity* source, bool doSubents = true);
  /// Takes the current properties of `database` (or the entity's own database): CECOLOR,
  /// CLAYER, CELTYPE, CELTSCALE, CELWEIGHT.
  void setDatabaseDefaults(OdDbDatabase* database = nullptr, bool doSubents = false);

  // Graphics.
  /// Draws the entity; false asks the caller for the viewport-dependent part as well.
  bool worldDraw(OdGiWorldDraw* worldDraw) const { return subWorldDraw(worldDraw); }
  void viewportDraw(OdGiViewportDraw* viewportDraw) const { subViewportDraw(viewportDraw); }

  // Editing.
  OdResult getGripPoints(OdGePoint3dArray& gripPoints) const { return subGetGripPoints(gripPoints); }
  OdResult getGripPoints(OdDbGripDataPtrArray& grips, double curViewUnitSize, int gripSize,
                         const OdGeVector3d& curViewDir, int bitFlags) const {
    return subGetGripPoints(grips, curViewUnitSize, gripSize, curViewDir, bitFlags);
  }
  OdResult moveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
    return subMoveGripPointsAt(indices, offset);
  }
  OdResult moveGripPointsAt(const OdDbVoidPtrArray& grips, const OdGeVector3d& offset,
                            int bitFlags) {
    return subMoveGripPointsAt(grips, offset, bitFlags);
  }
  OdResult getStretchPoints(OdGePoint3dArray& stretchPoints) const {
    return subGetStretchPoints(stretchPoints);
  }
  OdResult moveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
    return subMoveStretchPointsAt(indices, offset);
  }
  OdResult getOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                          const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                          const OdGeMatrix3d& xWorldToEye, OdGePoint3dArray& snapPoints) const {
    return subGetOsnapPoints(osnapMode, gsSelectionMark, pickPoint, lastPoint, xWorldToEye,
                             snapPoints);
  }
  OdResult transformBy(const OdGeMatrix3d& xform) { return subTransformBy(xform); }
  OdResult getTransformedCopy(const OdGeMatrix3d& xform, OdDbEntityPtr& copy) const {
    return subGetTransformedCopy(xform, copy);
  }
  OdResult explode(OdRxObjectPtrArray& entitySet) const { return subExplode(entitySet); }
  OdResult intersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                         OdGePoint3dArray& points, OdGsMarker thisGsMarker = 0,
                         OdGsMarker otherGsMarker = 0) const {
    return subIntersectWith(other, intType, points, thisGsMarker, otherGsMarker);
  }
  OdResult getGeomExtents(OdGeExtents3d& extents) const { return subGetGeomExtents(extents); }

  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  OdResult dxfInFields(OdDbDxfFiler* filer) override;
  void dxfOutFields(OdDbDxfFiler* filer) const override;

protected:
  OdDbEntity();

  /// Default: draws nothing and returns false.
  virtual bool subWorldDraw(OdGiWorldDraw* worldDraw) const;
  /// Default: draws nothing.
  virtual void subViewportDraw(OdGiViewportDraw* viewportDraw) const;
  /// Default: eNotApplicable, no points.
  virtual OdResult subGetGripPoints(OdGePoint3dArray& gripPoints) const;
  /// Default: eNotImplemented, so that callers fall back to the point form.
  virtual OdResult subGetGripPoints(OdDbGripDataPtrArray& grips, double curViewUnitSize,
                                    int gripSize, const OdGeVector3d& curViewDir,
                                    int bitFlags) const;
  /// Default: eNotApplicable.
  virtual OdResult subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset);
  /// Default: eNotImplemented.
  virtual OdResult subMoveGripPointsAt(const OdDbVoidPtrArray& grips, const OdGeVector3d& offset,
                                       int bitFlags);
  /// Default: the grip points.
  virtual OdResult subGetStretchPoints(OdGePoint3dArray& stretchPoints) const;
  /// Default: moves the grip points of the same indices.
  virtual OdResult subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset);
  /// Default: eNotApplicable, no points.
  virtual OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                                     const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                                     const OdGeMatrix3d& xWorldToEye,
                                     OdGePoint3dArray& snapPoints) const;
  /// Default: eNotApplicable, unchanged.
  virtual OdResult subTransformBy(const OdGeMatrix3d& xform);
  /// Default: a clone transformed by subTransformBy; a refused transform gives its result and
  /// no copy.
  virtual OdResult subGetTransformedCopy(const OdGeMatrix3d& xform, OdDbEntityPtr& copy) const;
  /// Default: eNotApplicable, nothing added.
  virtual OdResult subExplode(OdRxObjectPtrArray& entitySet) const;
  /// Default: eNotImplemented, no points.
  virtual OdResult subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                                    OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                                    OdGsMarker otherGsMarker) const;
  /// Default: the extents of what subWorldDraw draws; eInvalidExtents when it draws nothing.
  virtual OdResult subGetGeomExtents(OdGeExtents3d& extents) const;
  /// Lets a composite entity pass property changes on to the entities it owns.
  virtual void subSetDatabaseDefaults(OdDbDatabase* database, bool doSubents);

private:
  OdCmColor m_color;
  OdDbObjectId m_layerId;
  OdDbObjectId m_linetypeId;
  double m_linetypeScale = 1.0;
  OdDb::LineWeight m_lineWeight = OdDb::kLnWtByLayer;
  OdDb::Visibility m_visibility = OdDb::kVisible;
};

#endif
