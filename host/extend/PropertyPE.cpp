#include "PropertyPE.h"

#include "CmColor.h"
#include "DbDatabase.h"
#include "DbEntity.h"
#include "DbLineWeight.h"
#include "DbSymbolTable.h"
#include "OdError.h"
#include "OdVariant.h"
#include "PropertyGridName.h"

#include <cmath>

ODRX_NO_CONS_DEFINE_MEMBERS(PropertyPE, OdRxObject)

namespace {

enum CommonRow {
  kColorRow = 0,
  kLayerRow = 1,
  kLinetypeRow = 2,
  kLinetypeScaleRow = 3,
  kLineWeightRow = 4,
  kCommonRowCount = 5
};

struct CommonRowText {
  const OdChar* name;
  const OdChar* tip;
  OdInt32 editorKind;
};

// Labels and tips of the common group, in row order.
const CommonRowText kCommonRows[kCommonRowCount] = {
    {OD_T("颜色"), OD_T("修改颜色"), 1}, {OD_T("图层"), OD_T("修改图层"), 0},
    {OD_T("线型"), OD_T("修改线型"), 0}, {OD_T("线型比例"), OD_T("修改线型比例"), 0},
    {OD_T("线宽"), OD_T("修改线宽"), 0},
};

/// The record of a symbol table of the entity's database, looked up by name (letter case
/// ignored); null when the entity is in no database or the table has no such record.
OdDbObjectId findSymbol(const OdDbEntity* entity, OdDbObjectId (OdDbDatabase::*tableOf)() const,
                        const OdString& name) {
  OdDbDatabase* database = entity->database();
  if (!database || name.isEmpty())
    return OdDbObjectId();
  OdDbObjectPtr object = (database->*tableOf)().openObject(OdDb::kForRead);
  OdSmartPtr<OdDbSymbolTable> table = OdDbSymbolTable::cast(object.get());
  if (table.isNull())
    return OdDbObjectId();
  return table->getAt(name);
}

/// A positive finite linetype scale from a double or from a text that converts as a whole
/// (white space around the number is allowed); false for anything else.
bool toLinetypeScale(const OdVariant& value, double& scale) {
  if (value.type() == OdVariant::kDouble) {
    scale = value.getDouble();
  } else if (value.type() == OdVariant::kString) {
    OdString text = value.getString();
    text.trimLeft();
    text.trimRight();
    if (text.isEmpty())
      return false;
    int consumed = 0;
    scale = odStrToD(text, &consumed);
    if (consumed != text.getLength())
      return false;
  } else {
    return false;
  }
  return std::isfinite(scale) && scale > 0.0;
}

OdString colorText(const OdCmColor& color) {
  OdString text;
  switch (color.colorMethod()) {
  case OdCmEntityColor::kByLayer:
    return OD_T("ByLayer");
  case OdCmEntityColor::kByBlock:
    return OD_T("ByBlock");
  case OdCmEntityColor::kByColor:
    return text.format(OD_T("RGB(%d,%d,%d)"), color.red(), color.green(), color.blue());
  case OdCmEntityColor::kForeground:
    return OD_T("Foreground");
  case OdCmEntityColor::kNone:
    return OD_T("None");
  default:
    return text.format(OD_T("索引%d"), static_cast<int>(color.colorIndex()));
  }
}

OdString lineWeightText(OdDb::LineWeight lineWeight) {
  switch (lineWeight) {
  case OdDb::kLnWtByLayer:
    return OD_T("ByLayer");
  case OdDb::kLnWtByBlock:
    return OD_T("ByBlock");
  case OdDb::kLnWtByLwDefault:
    return OD_T("Default");
  default: {
    OdString text;
    return text.format(OD_T("%.2fmm"), static_cast<int>(lineWeight) / 100.0);
  }
  }
}

} // namespace

int PropertyPE::getPropertyCount() {
  return 1;
}

int PropertyPE::getAttributeCount(const OdDbEntity* /*entity*/, int /*group*/) {
  return 0;
}

entityProperty PropertyPE::getPropertyByeId(const OdDbEntity* /*entity*/, int group) {
  entityProperty property;
  if (group == 0) {
    property.flag = 1;
    property.name = PropertyGridName::_propertycommonyname;
    property.count = kCommonRowCount;
  }
  return property;
}

propAttribute PropertyPE::getPropAttributeByeId(const OdDbEntity* entity, int group, int row) {
  if (group == 0 && row < kCommonRowCount)
    return getComPropAtt(entity, row);
  return propAttribute();
}

OdString PropertyPE::getEntityName(const OdDbEntity* entity) {
  if (!entity || !entity->isA())
    return OdString();
  return entity->isA()->name();
}

bool PropertyPE::GetEntityMenuItemMap(std::vector<MenuMap>& /*items*/) {
  return false;
}

OdString PropertyPE::getZCMXName(const OdDbEntity* /*entity*/) {
  return OdString();
}

void PropertyPE::GetOperationItem(OdArray<OdString>& /*items*/) {}

OdString PropertyPE::GetListInfo(OdDbEntity* entity) {
  if (!entity)
    return OdString();
  OdString scale;
  scale.format(OD_T("%.4f"), entity->linetypeScale());
  OdString text;
  text += OdString(OD_T("类名:")) + getEntityName(entity);
  text += OdString(OD_T("\n句柄:")) + entity->getDbHandle().ascii();
  text += OdString(OD_T("\n颜色:")) + colorText(entity->color());
  text += OdString(OD_T("\n图层:")) + entity->layer();
  text += OdString(OD_T("\n线型:")) + entity->linetype();
  text += OdString(OD_T("\n线型比例:")) + scale;
  text += OdString(OD_T("\n线宽:")) + lineWeightText(entity->lineWeight());
  return text;
}

bool PropertyPE::setPropAttributeByeId(OdDbObjectId /*entityId*/, const OdVariant& /*value*/,
                                       int /*group*/, int /*row*/) {
  return false;
}

bool PropertyPE::setPropAttributeByeId(OdDbEntity* entity, const OdVariant& value, int group,
                                       int row) {
  if (group == 0 && row < kCommonRowCount)
    return setComPropAtt(entity, value, row);
  return true;
}

bool PropertyPE::GetRMenus(std::vector<EntMenuData>& /*menus*/) {
  return true;
}

int PropertyPE::Reset(const OdVariant& /*value*/) {
  return 0;
}

propAttribute PropertyPE::getComPropAtt(const OdDbEntity* entity, int row) {
  propAttribute attribute;
  if (!entity || row < 0 || row >= kCommonRowCount)
    return attribute;

  const CommonRowText& text = kCommonRows[row];
  attribute.index = row;
  attribute.name = text.name;
  attribute.tip = text.tip;
  attribute.editable = true;
  attribute.reserved = false;
  attribute.editorKind = text.editorKind;
  switch (row) {
  case kColorRow:
    attribute.value.setUInt32(entity->color().color());
    break;
  case kLayerRow:
    attribute.value.setString(entity->layer());
    break;
  case kLinetypeRow:
    attribute.value.setString(entity->linetype());
    break;
  case kLinetypeScaleRow:
    attribute.value.setDouble(entity->linetypeScale());
    break;
  case kLineWeightRow:
    attribute.value.setInt32(static_cast<OdInt32>(entity->lineWeight()));
    break;
  }
  return attribute;
}

bool PropertyPE::setComPropAtt(OdDbEntity* entity, const OdVariant& value, int row) {
  if (!entity || row < 0 || row >= kCommonRowCount || !entity->isWriteEnabled())
    return false;
  // type() hides the array bit, and an array is never a common property's value.
  if (value.isArray())
    return false;

  switch (row) {
  case kColorRow: {
    // The grid hands a picked colour back as a signed 32-bit integer holding the packed value.
    if (value.type() != OdVariant::kInt32)
      return false;
    OdCmColor color;
    if (color.setColor(static_cast<OdUInt32>(value.getInt32())) != eOk)
      return false;
    entity->setColor(color);
    return true;
  }
  case kLayerRow: {
    if (value.type() != OdVariant::kString)
      return false;
    OdDbObjectId layerId = findSymbol(entity, &OdDbDatabase::getLayerTableId, value.getString());
    if (layerId.isNull())
      return false;
    entity->setLayer(layerId);
    return true;
  }
  case kLinetypeRow: {
    if (value.type() != OdVariant::kString)
      return false;
    OdDbObjectId linetypeId =
        findSymbol(entity, &OdDbDatabase::getLinetypeTableId, value.getString());
    if (linetypeId.isNull())
      return false;
    entity->setLinetype(linetypeId);
    return true;
  }
  case kLinetypeScaleRow: {
    double scale = 0.0;
    if (!toLinetypeScale(value, scale))
      return false;
    entity->setLinetypeScale(scale);
    return true;
  }
  case kLineWeightRow: {
    if (value.type() != OdVariant::kInt32)
      return false;
    const int lineWeight = value.getInt32();
    if (!odIsValidLineWeight(lineWeight))
      return false;
    entity->setLineWeight(static_cast<OdDb::LineWeight>(lineWeight));
    return true;
  }
  }
  return false;
}
