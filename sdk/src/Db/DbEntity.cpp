#include "DbEntity.h"
#include "DxfFile/DbDxfGroups.h"

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
  OdDbSymbolTableRecord* record =
      object.isNull()
          ? nullptr
          : static_cast<OdDbSymbolTableRecord*>(object->queryX(OdDbSymbolTableRecord::desc()));
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
  setLayer(
      recordIdByName(db, db ? db->getLayerTableId() : OdDbObjectId(), layerName, OD_T("Layer")),
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

// DXF: subclass "AcDbEntity", then 8 layer, 6 linetype (when not ByLayer), 62 colour number
// (when not by layer; a true colour's nearest palette entry), 420 RGB of a true colour,
// 370 lineweight (always, as AC1015 and later files have it), 48 linetype scale (when not 1),
// 60 1 when invisible. With includesDefaultValues() the defaults are written too (6 ByLayer,
// 62 256, 48 1.0, 60 0). A colour without a number (none, layer off or frozen) writes no 62
// and reads back by layer.
//
// Reading takes the groups in any order up to the next subclass marker, gives a group that is
// absent its DXF default (layer "0", linetype ByLayer, colour by layer, lineweight by layer,
// scale 1, visible) and changes the entity only when the whole block is valid. Names are looked
// up in the entity's database, or, for an entity not yet in one, the filer's; without either
// only the default names "0" and "ByLayer" are accepted (they leave the ids null, which the
// entity reports as those names). An unknown name gives eKeyNotFound, a value out of range
// eInvalidDxfCode.

OdResult OdDbEntity::dxfInFields(OdDbDxfFiler* filer) {
  const OdResult base = OdDbObject::dxfInFields(filer);
  if (base != eOk)
    return base;
  if (!filer->atSubclassData(OD_T("AcDbEntity")))
    return eInvalidDxfCode;

  OdString layerName = OD_T("0");
  OdString linetypeName = OD_T("ByLayer");
  OdInt16 colorIndex = OdCmEntityColor::kACIbyLayer;
  bool hasTrueColor = false;
  OdInt32 rgb = 0;
  OdInt16 lineWeight = OdDb::kLnWtByLayer;
  double scale = 1.0;
  OdInt16 visibility = OdDb::kVisible;
  const OdResult groups = odDbReadDxfSubclassGroups(filer, [&](int code) {
    switch (code) {
    case 8:
      layerName = filer->rdString();
      break;
    case 6:
      linetypeName = filer->rdString();
      break;
    case 62:
      colorIndex = filer->rdInt16();
      break;
    case 420:
      rgb = filer->rdInt32();
      hasTrueColor = true;
      break;
    case 370:
      lineWeight = filer->rdInt16();
      break;
    case 48:
      scale = filer->rdDouble();
      break;
    case 60:
      visibility = filer->rdInt16();
      break;
    default:
      break;
    }
  });
  if (groups != eOk)
    return groups;

  // 62 is checked even when 420 overrides it: a bad number means a bad block.
  OdCmColor color;
  if (colorIndex < 0 || color.setColorIndex(static_cast<OdUInt16>(colorIndex)) != eOk ||
      (hasTrueColor && (rgb < 0 || rgb > 0xFFFFFF)))
    return eInvalidDxfCode;
  if (hasTrueColor)
    color.setRGB(static_cast<OdUInt8>(rgb >> 16), static_cast<OdUInt8>(rgb >> 8),
                 static_cast<OdUInt8>(rgb));
  if (!odIsValidLineWeight(lineWeight) || !std::isfinite(scale) || scale <= 0.0 ||
      (visibility != OdDb::kVisible && visibility != OdDb::kInvisible))
    return eInvalidDxfCode;

  OdDbDatabase* db = database() ? database() : filer->database();
  // The record of a name in one of db's tables; false when there is none.
  auto lookUp = [db](OdDbObjectId tableId, const OdString& name, const OdChar* defaultName,
                     OdDbObjectId& id) {
    if (!db) {
      id = OdDbObjectId();
      return name.iCompare(defaultName) == 0;
    }
    OdDbSymbolTablePtr table = OdDbSymbolTable::cast(tableId.openObject());
    if (table.isNull())
      return false;
    id = table->getAt(name);
    return !id.isNull();
  };
  OdDbObjectId layerId;
  OdDbObjectId linetypeId;
  if (!lookUp(db ? db->getLayerTableId() : OdDbObjectId(), layerName, OD_T("0"), layerId) ||
      !lookUp(db ? db->getLinetypeTableId() : OdDbObjectId(), linetypeName, OD_T("ByLayer"),
              linetypeId))
    return eKeyNotFound;

  m_layerId = layerId;
  m_linetypeId = linetypeId;
  m_color = color;
  m_lineWeight = static_cast<OdDb::LineWeight>(lineWeight);
  m_linetypeScale = scale;
  m_visibility = visibility == OdDb::kInvisible ? OdDb::kInvisible : OdDb::kVisible;
  return eOk;
}

void OdDbEntity::dxfOutFields(OdDbDxfFiler* filer) const {
  OdDbObject::dxfOutFields(filer);
  const bool defaults = filer->includesDefaultValues();
  filer->wrSubclassMarker(OD_T("AcDbEntity"));
  // An id whose record cannot be opened has no name to write; the default stands in for it.
  const OdString layerName = layer();
  filer->wrString(8, layerName.isEmpty() ? OdString(OD_T("0")) : layerName);
  const OdString linetypeName = linetype();
  if (!linetypeName.isEmpty() && linetypeName.iCompare(OD_T("ByLayer")) != 0)
    filer->wrString(6, linetypeName);
  else if (defaults)
    filer->wrString(6, OD_T("ByLayer"));
  const OdUInt16 colorIndex = m_color.colorIndex();
  if (m_color.isByLayer()) {
    if (defaults)
      filer->wrInt16(62, OdCmEntityColor::kACIbyLayer);
  } else if (colorIndex <= OdCmEntityColor::kACImaxStandard) {
    filer->wrInt16(62, static_cast<OdInt16>(colorIndex));
  }
  if (m_color.isByColor())
    filer->wrInt32(420, static_cast<OdInt32>((OdUInt32(m_color.red()) << 16) |
                                             (OdUInt32(m_color.green()) << 8) | m_color.blue()));
  filer->wrInt16(370, static_cast<OdInt16>(m_lineWeight));
  if (m_linetypeScale != 1.0 || defaults)
    filer->wrDouble(48, m_linetypeScale);
  if (m_visibility == OdDb::kInvisible || defaults)
    filer->wrInt16(60, m_visibility == OdDb::kInvisible ? 1 : 0);
}

// ---------------------------------------------------------------------------------------------
// Platform defaults of the overridable operations.

bool OdDbEntity::subWorldDraw(OdGiWorldDraw* /*worldDraw*/) const {
  return false;
}

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

OdResult OdDbEntity::subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  return subMoveGripPointsAt(indices, offset);
}

OdResult OdDbEntity::subGetOsnapPoints(OdDb::OsnapMode /*osnapMode*/,
                                       OdGsMarker /*gsSelectionMark*/,
                                       const OdGePoint3d& /*pickPoint*/,
                                       const OdGePoint3d& /*lastPoint*/,
                                       const OdGeMatrix3d& /*xWorldToEye*/,
                                       OdGePoint3dArray& /*snapPoints*/) const {
  return eNotApplicable;
}

OdResult OdDbEntity::subTransformBy(const OdGeMatrix3d& /*xform*/) {
  return eNotApplicable;
}

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

OdResult OdDbEntity::subExplode(OdRxObjectPtrArray& /*entitySet*/) const {
  return eNotApplicable;
}

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
