#include "OdDbMesuarData.h"

#include "DbFiler.h"
#include "common/CustFiling.h"

OdResult OdDbMesuarData::dwgInFields(OdDbDwgFiler* filer) {
  assertWriteEnabled();
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdInt16 version = filer->rdInt16();
  const OdString text = filer->rdString();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  // Unlike the module's other classes, another version is not refused: the record is read
  // through and only its text is dropped, so such drawings still open.
  data = version == kCurrentVersion ? text : OdString();
  return eOk;
}

void OdDbMesuarData::dwgOutFields(OdDbDwgFiler* filer) const {
  assertReadEnabled();
  OdDbEntity::dwgOutFields(filer);
  filer->wrInt16(kCurrentVersion);
  filer->wrString(data);
}

OdResult OdDbMesuarData::dxfInFields(OdDbDxfFiler* filer) {
  return custents::refuseDxfIn(this, filer);
}

bool OdDbMesuarData::subWorldDraw(OdGiWorldDraw* /*worldDraw*/) const {
  assertReadEnabled();
  return true;
}

OdResult OdDbMesuarData::subTransformBy(const OdGeMatrix3d& /*xform*/) {
  assertWriteEnabled();
  return eOk;
}

OdResult OdDbMesuarData::subMoveGripPointsAt(const OdIntArray& /*indices*/,
                                             const OdGeVector3d& /*offset*/) {
  assertWriteEnabled();
  return eOk;
}

OdResult OdDbMesuarData::subMoveGripPointsAt(const OdDbVoidPtrArray& /*grips*/,
                                             const OdGeVector3d& /*offset*/, int /*bitFlags*/) {
  assertWriteEnabled();
  return eOk;
}

OdResult OdDbMesuarData::subMoveStretchPointsAt(const OdIntArray& /*indices*/,
                                                const OdGeVector3d& /*offset*/) {
  assertWriteEnabled();
  return eOk;
}

OdResult OdDbMesuarData::subExplode(OdRxObjectPtrArray& /*entitySet*/) const {
  return eOk;
}

OdResult OdDbMesuarData::subGetOsnapPoints(OdDb::OsnapMode /*osnapMode*/,
                                           OdGsMarker /*gsSelectionMark*/,
                                           const OdGePoint3d& /*pickPoint*/,
                                           const OdGePoint3d& /*lastPoint*/,
                                           const OdGeMatrix3d& /*xWorldToEye*/,
                                           OdGePoint3dArray& /*snapPoints*/) const {
  return eOk;
}

OdResult OdDbMesuarData::subGetGripPoints(OdGePoint3dArray& /*gripPoints*/) const {
  return eOk;
}

OdResult OdDbMesuarData::subGetGripPoints(OdDbGripDataPtrArray& /*grips*/,
                                          double /*curViewUnitSize*/, int /*gripSize*/,
                                          const OdGeVector3d& /*curViewDir*/,
                                          int /*bitFlags*/) const {
  return eOk;
}

OdResult OdDbMesuarData::subGetStretchPoints(OdGePoint3dArray& /*stretchPoints*/) const {
  return eOk;
}

OdResult OdDbMesuarData::subIntersectWith(const OdDbEntity* /*other*/, OdDb::Intersect /*intType*/,
                                          OdGePoint3dArray& /*points*/, OdGsMarker /*thisGsMarker*/,
                                          OdGsMarker /*otherGsMarker*/) const {
  return eOk;
}
