#include "RectExtensions.h"

#include "CmColor.h"
#include "DbHatch.h"
#include "Ge/GeTol.h"
#include "MenuTables.h"

#include <cmath>

namespace custents {

namespace {

template <class Rect> OdVariant lengthValue(const Rect& rect) {
  return OdVariant(rect.width());
}
template <class Rect> OdVariant widthValue(const Rect& rect) {
  return OdVariant(rect.height());
}
template <class Rect> OdVariant perimeterValue(const Rect& rect) {
  return OdVariant(2.0 * (rect.width() + rect.height()));
}
template <class Rect> OdVariant areaValue(const Rect& rect) {
  return OdVariant(rect.area());
}

template <class Rect> bool setLength(Rect& rect, const OdVariant& value) {
  double length = 0.0;
  if (!parseEdgeLength(value.getString(), length))
    return false;
  rect.setWidth(length);
  return true;
}
template <class Rect> bool setWidth(Rect& rect, const OdVariant& value) {
  double width = 0.0;
  if (!parseEdgeLength(value.getString(), width))
    return false;
  rect.setHeight(width);
  return true;
}

/// The rectangle's corners as the vertices of a straight hatch loop.
void outlineOf(const OdGePoint3dArray& corners, OdGePoint2dArray& vertices,
               OdGeDoubleArray& bulges) {
  for (const OdGePoint3d& corner : corners) {
    vertices.append(corner.convert2d());
    bulges.append(0.0);
  }
}

template <class Rect> OdSmartPtr<Rect> castShape(const OdSmartPtr<OdDbEntity>& shape) {
  if (shape.isNull())
    return OdSmartPtr<Rect>();
  OdSmartPtr<Rect> rect = Rect::cast(shape.get());
  if (rect.isNull())
    throw OdError_NotThatKindOfClass(shape->isA(), Rect::desc());
  return rect;
}

const OdInt32 kOuterPolylineLoop = OdDbHatch::kExternal | OdDbHatch::kPolyline;

EntMenuData menuEntry(OdInt32 id, const OdString& text) {
  EntMenuData entry;
  entry.id = id;
  entry.text = text;
  entry.flag1 = true;
  entry.flag2 = false;
  return entry;
}

} // namespace

bool parseEdgeLength(const OdString& text, double& length) {
  const double value = odStrToD(text);
  if (!std::isfinite(value) || OdZero(value, 1e-10))
    return false;
  length = value;
  return true;
}

// ---------------------------------------------------------------------------------------------
// Property page

template <class Rect> OdString RectPropertyPE<Rect>::getEntityName(const OdDbEntity*) {
  return OdString(u"矩形");
}

template <class Rect> const std::vector<PropertyGroup<Rect>>& RectPropertyPE<Rect>::groups() const {
  static const std::vector<PropertyGroup<Rect>> all = {
      {PropertyGridName::_propertygraphyname,
       {
           {u"长", u"修改矩形的长", OdVariant::kString, 0, &lengthValue<Rect>, &setLength<Rect>},
           {u"宽", u"修改矩形的宽", OdVariant::kString, 0, &widthValue<Rect>, &setWidth<Rect>},
           {u"周长", u"查看矩形的周长", OdVariant::kString, 0, &perimeterValue<Rect>, nullptr},
           {u"面积", u"查看矩形的面积", OdVariant::kString, 0, &areaValue<Rect>, nullptr},
       }},
  };
  return all;
}

template <class Rect>
bool RectPropertyPE<Rect>::setPropAttributeByeId(OdDbEntity* entity, const OdVariant& value,
                                                 int group, int row) {
  if (group != 0 && group != 1)
    return EntityPropertyPE<Rect>::setPropAttributeByeId(entity, value, group, row);
  if (this->castEntity(entity).isNull())
    return false;
  // Every common row below 5 goes to the host, which refuses the negative ones itself.
  if (group == 0)
    return row < 5 ? this->setComPropAtt(entity, value, row) : true;
  // The whole group is checked before the row is looked at: a non-string or a length of zero is
  // refused even for the computed rows, which accept anything else without change.
  double length = 0.0;
  if (value.type() != OdVariant::kString || !parseEdgeLength(value.getString(), length))
    return false;
  return EntityPropertyPE<Rect>::setPropAttributeByeId(entity, value, group, row);
}

template <class Rect> bool RectPropertyPE<Rect>::GetRMenus(std::vector<EntMenuData>& menus) {
  for (int id : votherBaseDrawing) {
    // Looked up with the map's operator[]: an id the host lacks gains a default entry in the
    // host's map and a default entry in the menu, as the host's menu builder expects.
    menus.push_back(g_mapAllRMenu[id]);
    if (id == kMenuProperties) {
      menus.push_back(menuEntry(kMenuSeparator, OdString()));
      menus.push_back(menuEntry(kMenuDrawingStatistics, OdString(u"图形统计")));
    }
  }
  return true;
}

// ---------------------------------------------------------------------------------------------
// Fills

template <class Rect>
OdSmartPtr<OdDbHatch> RectExtendPE<Rect>::FillColor(const OdSmartPtr<OdDbEntity>& shape,
                                                    const OdCmColor& color) {
  OdSmartPtr<Rect> rect = castShape<Rect>(shape);
  if (rect.isNull())
    return OdSmartPtr<OdDbHatch>();
  OdGePoint2dArray vertices;
  OdGeDoubleArray bulges;
  outlineOf(rect->getPts(), vertices, bulges);
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  hatch->setDatabaseDefaults(rect->database());
  hatch->appendLoop(kOuterPolylineLoop, vertices, bulges);
  hatch->setAssociative(true);
  hatch->setColor(color);
  hatch->setPattern(OdDbHatch::kPreDefined, OdString(u"SOLID"));
  hatch->setHatchStyle(OdDbHatch::kNormal);
  hatch->setHatchObjectType(OdDbHatch::kHatchObject);
  return hatch;
}

template <class Rect>
OdSmartPtr<OdDbHatch>
RectExtendPE<Rect>::FillPattern(const OdSmartPtr<OdDbEntity>& shape, const OdString& patternName,
                                double patternScale, double patternAngle, double& result) {
  OdSmartPtr<Rect> rect = castShape<Rect>(shape);
  if (rect.isNull())
    return OdSmartPtr<OdDbHatch>();
  // The ratio comes first, before the hatch is made, so a scale the hatch then refuses still
  // leaves the caller's ratio updated; IEEE division gives infinity for a zero scale or unit.
  const double unit = result;
  result = rect->height() * rect->width() / (patternScale * patternScale * unit * unit);
  OdGePoint2dArray vertices;
  OdGeDoubleArray bulges;
  outlineOf(rect->getPts(), vertices, bulges);
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  hatch->setDatabaseDefaults(rect->database());
  hatch->setAssociative(true);
  hatch->setPattern(OdDbHatch::kCustomDefined, patternName);
  hatch->setPatternScale(patternScale);
  hatch->setPatternAngle(patternAngle);
  hatch->setHatchStyle(OdDbHatch::kNormal);
  hatch->setHatchObjectType(OdDbHatch::kHatchObject);
  hatch->appendLoop(kOuterPolylineLoop, vertices, bulges);
  return hatch;
}

template class RectPropertyPE<OdDbGeoRect>;
template class RectPropertyPE<OdDbGeo3dRect>;
template class RectExtendPE<OdDbGeoRect>;
template class RectExtendPE<OdDbGeo3dRect>;

} // namespace custents
