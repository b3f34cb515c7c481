#include "DbEntity.h"

#include "DbDatabase.h"
#include "DbFiler.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
#include "Gi/GiExtentsCollector.h"

#include <cmath>

ODRX_NO_CONS_DEFINE_MEMBERS(OdDbEntity, OdDbObject)

namespace {
/// The record of `name` in the table `tableId` of `database`; throws eKeyNotFound.
OdDbObjectId recordIdByName(OdDbDatabase* database, OdDbObjectId tableId, const OdString& name,
                            const char16_t* what) {
  if (!database)
    throw OdError(eNotInDatabase, OdString(what) + OD_T(" names need a database"));
  OdDbSymbolTablePtr table = tableId.safeOpenObject();
  OdDbObjectId id = table->getAt(name);
  if (id.isNull())
    throw OdError(eKeyNotFound, OdString(what) + OD_T(" not found: ") + name);
  return id;
}

OdString recordName(OdDbObjectId id) {
  OdDbObjectPtr object = id.openObject();
  OdDbSymbolTableRecord* record = object.isNull() ? nullptr
                                                  : static_cast<OdDbSymbolTableRecord*>(
                                                        object->queryX(OdDbSymbolTableRecord::desc()));
  if (!record)
    return OdString();
  OdString name = record->getName();
  record->release();
  return name;
}
} // namespace

OdDbEntity::OdDbEntity() = default;

OdCmColor OdDbEntity::color() const {
  assertReadEnabled();
  return m_color;
}

void OdDbEntity::setColor(const OdCmColor& color, bool /*doSubents*/) {
  assertWriteEnabled();
  m_color = color;
}

OdUInt16 OdDbEntity::colorIndex() const {
  assertReadEnabled();
  return m_color.colorIndex();
}

void OdDbEntity::setColorIndex(OdUInt16 colorIndex, bool doSubents) {
  OdCmColor color;
  // A refused index would otherwise leave the default colour (ByLayer) in `color`.
  if (color.setColorIndex(colorIndex) != eOk)
    throw OdError(eInvalidInput, OD_T("Not a colour index (0 to 256)"));
  setColor(color, doSubents);
}

OdCmEntityColor OdDbEntity::entityColor() const {
  assertReadEnabled();
  return m_color.entityColor();
}

OdString OdDbEntity::layer() const {
  assertReadEnabled();
  if (m_layerId.isNull())
    return OD_T("0");
  return recordName(m_layerId);
}

OdDbObjectId OdDbEntity::layerId() const {
  assertReadEnabled();
  return m_layerId;
}

void OdDbEntity::setLayer(const OdString& layerName, bool doSubents) {
  OdDbDatabase* db = database();
  setLayer(recordIdByName(db, db ? db->getLayerTableId() : OdDbObjectId(), layerName, OD_T("Layer")),
           doSubents);
}

void OdDbEntity::setLayer(OdDbObjectId layerId, bool /*doSubents*/) {
  assertWriteEnabled();
  if (!layerId.isNull() && layerId.objectClass() &&
      !layerId.objectClass()->isDerivedFrom(OdDbLayerTableRecord::desc()))
    throw OdError(eWrongObjectType, OD_T("Not a layer"));
  m_layerId = layerId;
}

OdString OdDbEntity::linetype() const {
  assertReadEnabled();
  if (m_linetypeId.isNull())
    return OD_T("ByLayer");
  return recordName(m_linetypeId);
}

OdDbObjectId OdDbEntity::linetypeId() const {
  assertReadEnabled();
  return m_linetypeId;
}

void OdDbEntity::setLinetype(const OdString& linetypeName, bool doSubents) {
  OdDbDatabase* db = database();
  setLinetype(recordIdByName(db, db ? db->getLinetypeTableId() : OdDbObjectId(), linetypeName,
                             OD_T("Linetype")),
              doSubents);
}

void OdDbEntity::setLinetype(OdDbObjectId linetypeId, bool /*doSubents*/) {
  assertWriteEnabled();
  if (!linetypeId.isNull() && linetypeId.objectClass() &&
      !linetypeId.objectClass()->isDerivedFrom(OdDbLinetypeTableRecord::desc()))
    throw OdError(eWrongObjectType, OD_T("Not a linetype"));
  m_linetypeId = linetypeId;
}

double OdDbEntity::linetypeScale() const {
  assertReadEnabled();
  return m_linetypeScale;
}

void OdDbEntity::setLinetypeScale(double scale, bool /*doSubents*/) {
  if (!std::isfinite(scale) || scale <= 0.0)
    throw OdError(eInvalidInput, OD_T("A linetype scale must be a positive number"));
  assertWriteEnabled();
  m_linetypeScale = scale;
}

OdDb::LineWeight OdDbEntity::lineWeight() const {
  assertReadEnabled();
  return m_lineWeight;
}

void OdDbEntity::setLineWeight(OdDb::LineWeight lineWeight, bool /*doSubents*/) {
  if (!odIsValidLineWeight(lineWeight))
    throw OdError(eInvalidInput, OD_T("Not a lineweight"));
  assertWriteEnabled();
  m_lineWeight = lineWeight;
}

OdDb::Visibility OdDbEntity::visibility() const {
  assertReadEnabled();
  return m_visibility;
}

void OdDbEntity::setVisibility(OdDb::Visibility visibility, bool /*doSubents*/) {
  assertWriteEnabled();
  m_visibility = visibility == OdDb::kInvisible ? OdDb::kInvisible : OdDb::kVisible;
}

void OdDbEntity::setPropertiesFrom(const OdDbEntity* source, bool doSubents) {
  if (!source)
    throw OdError(eNullEntityPointer);
  source->assertReadEnabled();
  if (!isDBRO() && !database())
    setDatabase(source->database());
  setColor(source->m_color, doSubents);
  setLayer(source->m_layerId, doSubents);
  setLinetype(source->m_linetypeId, doSubents);
  setLinetypeScale(source->m_linetypeScale, doSubents);
  setLineWeight(source->m_lineWeight, doSubents);
  setVisibility(source->m_visibility, doSubents);
}

void OdDbEntity::setDatabaseDefaults(OdDbDatabase* db, bool doSubents) {
  if (!db)
    db = database();
  if (!db)
    throw OdError(eNotInDatabase, OD_T("setDatabaseDefaults needs a database"));
  assertWriteEnabled();
  if (!isDBRO())
    setDatabase(db);
  m_color = db->getCECOLOR();
  m_layerId = db->getCLAYER();
  m_linetypeId = db->getCELTYPE();
  m_linetypeScale = db->getCELTSCALE();
  m_lineWeight = db->getCELWEIGHT();
  subSetDatabaseDefaults(db, doSubents);
}

void OdDbEntity::subSetDatabaseDefaults(OdDbDatabase* /*database*/, bool /*doSubents*/) {}

// ---------------------------------------------------------------------------------------------
// Filing: after the object's data, colour (CMC), linetype scale (BD), layer and linetype (hard
// pointers), visibility (BS) and lineweight (RC, its DWG index).

OdResult OdDbEntity::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbObject::dwgInFields(filer);
  if (base != eOk)
    return base;
  OdCmColor color;
  filer->rdCmColor(color);
  const double scale = filer->rdDouble();
  const OdDbObjectId layerId = filer->rdHardPointerId();
  const OdDbObjectId linetypeId = filer->rdHardPointerId();
  const OdInt16 visibility = filer->rdInt16();
  const int lineWeightIndex = filer->rdUInt8();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  OdDb::LineWeight lineWeight;
  if (!std::isfinite(scale) || scale <= 0.0 || (visibility != 0 && visibility != 1) ||
      !odLineWeightFromDwgIndex(lineWeightIndex, lineWeight))
    return eDwgObjectImproperlyRead;
  m_color = color;
  m_linetypeScale = scale;
  m_layerId = layerId;
  m_linetypeId = linetypeId;
  m_visibility = visibility ? OdDb::kInvisible : OdDb::kVisible;
  m_lineWeight = lineWeight;
  return eOk;
}

void OdDbEntity::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbObject::dwgOutFields(filer);
  filer->wrCmColor(m_color);
  filer->wrDouble(m_linetypeScale);
  filer->wrHardPointerId(m_layerId);
  filer->wrHardPointerId(m_linetypeId);
  filer->wrInt16(m_visibility == OdDb::kInvisible ? 1 : 0);
  filer->wrUInt8(static_cast<OdUInt8>(odLineWeightToDwgIndex(m_lineWeight)));
}

OdResult OdDbEntity::dxfInFields(OdDbDxfFiler* filer) {
  return OdDbObject::dxfInFields(filer);
}

void OdDbEntity::dxfOutFields(OdDbDxfFiler* filer) const { OdDbObject::dxfOutFields(filer); }

// ---------------------------------------------------------------------------------------------
// Platform defaults of the overridable operations.

bool OdDbEntity::subWorldDraw(OdGiWorldDraw* /*worldDraw*/) const { return false; }

void OdDbEntity::subViewportDraw(OdGiViewportDraw* /*viewportDraw*/) const {}

OdResult OdDbEntity::subGetGripPoints(OdGePoint3dArray& /*gripPoints*/) const {
  return eNotApplicable;
}

OdResult OdDbEntity::subGetGripPoints(OdDbGripDataPtrArray& /*grips*/, double /*curViewUnitSize*/,
                                      int /*gripSize*/, const OdGeVector3d& /*curViewDir*/,
                                      int /*bitFlags*/) const {
  return eNotImplemented;
}

OdResult OdDbEntity::subMoveGripPointsAt(const OdIntArray& /*indices*/,
                                         const OdGeVector3d& /*offset*/) {
  return eNotApplicable;
}

OdResult OdDbEntity::subMoveGripPointsAt(const OdDbVoidPtrArray& /*grips*/,
                                         const OdGeVector3d& /*offset*/, int /*bitFlags*/) {
  return eNotImplemented;
}

OdResult OdDbEntity::subGetStretchPoints(OdGePoint3dArray& stretchPoints) const {
  return subGetGripPoints(stretchPoints);
}

OdResult OdDbEntity::subMoveStretchPointsAt(const OdIntArray& indices,
                                            const OdGeVector3d& offset) {
  return subMoveGripPointsAt(indices, offset);
}

OdResult OdDbEntity::subGetOsnapPoints(OdDb::OsnapMode /*osnapMode*/, OdGsMarker /*gsSelectionMark*/,
                                       const OdGePoint3d& /*pickPoint*/,
                                       const OdGePoint3d& /*lastPoint*/,
                                       const OdGeMatrix3d& /*xWorldToEye*/,
                                       OdGePoint3dArray& /*snapPoints*/) const {
  return eNotApplicable;
}

OdResult OdDbEntity::subTransformBy(const OdGeMatrix3d& /*xform*/) { return eNotApplicable; }

OdResult OdDbEntity::subGetTransformedCopy(const OdGeMatrix3d& xform, OdDbEntityPtr& copy) const {
  OdDbEntityPtr clone = OdDbEntity::cast(this->clone());
  if (clone.isNull())
    return eNotApplicable;
  const OdResult result = clone->transformBy(xform);
  if (result != eOk)
    return result;
  copy = clone;
  return eOk;
}

OdResult OdDbEntity::subExplode(OdRxObjectPtrArray& /*entitySet*/) const { return eNotApplicable; }

OdResult OdDbEntity::subIntersectWith(const OdDbEntity* /*other*/, OdDb::Intersect /*intType*/,
                                      OdGePoint3dArray& /*points*/, OdGsMarker /*thisGsMarker*/,
                                      OdGsMarker /*otherGsMarker*/) const {
  return eNotImplemented;
}

OdResult OdDbEntity::subGetGeomExtents(OdGeExtents3d& extents) const {
  assertReadEnabled();
  OdGiExtentsCollector collector(database());
  if (!subWorldDraw(&collector))
    subViewportDraw(&collector);
  if (!collector.extents().isValidExtents())
    return eInvalidExtents;
  extents = collector.extents();
  return eOk;
}
