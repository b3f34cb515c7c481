#ifndef CUSTENTS_ODDBMESUARDATA_H
#define CUSTENTS_ODDBMESUARDATA_H

#include "DbEntity.h"

/// An invisible carrier of one text of measurement data. It is an entity so that it lives in a
/// drawing's spaces and travels with the drawing; it draws nothing, offers nothing to edit and
/// ignores transformations. Only its text is filed; the host sets and reads it.
class OdDbMesuarData : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbMesuarData);

  /// The only format version whose text is kept on reading.
  static constexpr OdInt16 kCurrentVersion = 5;

  OdDbMesuarData() = default;

  /// The carried text.
  OdString data;

  /// After the entity's data: BS version, TU text. A stream of any other version is read
  /// through and accepted, but its text is dropped. A short stream gives the filer's error and
  /// leaves the text as it was.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Reads nothing and refuses, like the module's other classes.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;

protected:
  /// Draws nothing; true, so no viewport drawing is asked for.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// Nothing to move: eOk, unchanged.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  OdResult subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  OdResult subMoveGripPointsAt(const OdDbVoidPtrArray& grips, const OdGeVector3d& offset,
                               int bitFlags) override;
  OdResult subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// Nothing to offer: eOk, nothing added.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  OdResult subGetGripPoints(OdGePoint3dArray& gripPoints) const override;
  OdResult subGetGripPoints(OdDbGripDataPtrArray& grips, double curViewUnitSize, int gripSize,
                            const OdGeVector3d& curViewDir, int bitFlags) const override;
  OdResult subGetStretchPoints(OdGePoint3dArray& stretchPoints) const override;
  OdResult subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                            OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                            OdGsMarker otherGsMarker) const override;
};

typedef OdSmartPtr<OdDbMesuarData> OdDbMesuarDataPtr;

#endif
