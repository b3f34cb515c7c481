#include "TriangleExtensions.h"

#include "DbHatch.h"
#include "OdError.h"

namespace {

using custents::PropertyGroup;
using custents::PropertyRow;

// ---------------------------------------------------------------------------------------------
// Menus

/// The host's entry for `id`, or a default entry (id 0, no text, enabled) when the host has
/// none. The host's table itself is left as it is.
EntMenuData hostMenuEntry(int id) {
  const auto it = g_mapAllRMenu.find(id);
  return it != g_mapAllRMenu.end() ? it->second : EntMenuData();
}

EntMenuData addedMenuEntry(int id, const OdString& text) {
  EntMenuData entry;
  entry.id = id;
  entry.text = text;
  entry.flag1 = true;
  entry.flag2 = false;
  return entry;
}

/// The closed-shape menu with the properties entry greyed out; `afterProperties` adds entries
/// right behind it.
void appendShapeMenus(std::vector<EntMenuData>& menus,
                      void (*afterProperties)(std::vector<EntMenuData>&)) {
  for (int id : votherBaseDrawing) {
    EntMenuData entry = hostMenuEntry(id);
    if (id != kMenuProperties) {
      menus.push_back(entry);
      continue;
    }
    entry.flag1 = false;
    menus.push_back(entry);
    if (afterProperties)
      afterProperties(menus);
  }
}

void appendStatisticsEntries(std::vector<EntMenuData>& menus) {
  menus.push_back(addedMenuEntry(kMenuSeparator, OdString()));
  menus.push_back(addedMenuEntry(kMenuDrawingStatistics, OdString(u"图形统计")));
  menus.push_back(addedMenuEntry(kMenuSeparator, OdString()));
}

// ---------------------------------------------------------------------------------------------
// Fills

/// Loop type of every fill: an external polyline loop.
constexpr OdInt32 kOutlineLoop = OdDbHatch::kExternal | OdDbHatch::kPolyline;

/// The shape as `Shape`; null for a null shape; OdError_NotThatKindOfClass for another class.
template <class Shape> OdSmartPtr<Shape> castShape(const OdSmartPtr<OdDbEntity>& shape) {
  if (shape.isNull())
    return OdSmartPtr<Shape>();
  OdSmartPtr<Shape> own = Shape::cast(shape.get());
  if (own.isNull())
    throw OdError_NotThatKindOfClass(shape->isA(), Shape::desc());
  return own;
}

double shapeArea(const OdDbGeoTriangle& triangle) {
  return triangle.area();
}
double shapeArea(const OdDbGeoPolygon& polygon) {
  double area = 0.0;
  polygon.getArea(area);
  return area;
}

struct Outline {
  OdGePoint2dArray vertices;
  OdGeDoubleArray bulges;
};

template <class Shape> Outline outlineOf(const Shape& shape) {
  Outline outline;
  for (const OdGePoint3d& point : shape.getPts()) {
    outline.vertices.append(OdGePoint2d(point.x, point.y));
    outline.bulges.append(0.0);
  }
  return outline;
}

OdDbHatchPtr newFill(const OdDbEntity& shape) {
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  if (OdDbDatabase* database = shape.database())
    hatch->setDatabaseDefaults(database);
  return hatch;
}

template <class Shape>
OdDbHatchPtr fillColor(const OdSmartPtr<OdDbEntity>& entity, const OdCmColor& color) {
  OdSmartPtr<Shape> shape = castShape<Shape>(entity);
  if (shape.isNull())
    return OdDbHatchPtr();
  const Outline outline = outlineOf(*shape);
  OdDbHatchPtr hatch = newFill(*shape);
  hatch->appendLoop(kOutlineLoop, outline.vertices, outline.bulges);
  hatch->setAssociative(true);
  hatch->setColor(color);
  hatch->setPattern(OdDbHatch::kPreDefined, OdString(u"SOLID"));
  hatch->setHatchStyle(OdDbHatch::kNormal);
  hatch->setHatchObjectType(OdDbHatch::kHatchObject);
  return hatch;
}

template <class Shape>
OdDbHatchPtr fillPattern(const OdSmartPtr<OdDbEntity>& entity, const OdString& patternName,
                         double patternScale, double patternAngle, double& result) {
  OdSmartPtr<Shape> shape = castShape<Shape>(entity);
  if (shape.isNull())
    return OdDbHatchPtr();
  const Outline outline = outlineOf(*shape);
  // `result` arrives as the pattern's unit size and leaves as the number of cells covered.
  result = shapeArea(*shape) / (patternScale * patternScale * result * result);
  OdDbHatchPtr hatch = newFill(*shape);
  hatch->setAssociative(true);
  hatch->setPattern(OdDbHatch::kCustomDefined, patternName);
  hatch->setPatternScale(patternScale);
  hatch->setPatternAngle(patternAngle);
  hatch->setHatchStyle(OdDbHatch::kNormal);
  hatch->setHatchObjectType(OdDbHatch::kHatchObject);
  hatch->appendLoop(kOutlineLoop, outline.vertices, outline.bulges);
  return hatch;
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Triangle

OdString OdDbTrianglePropertyPE::getEntityName(const OdDbEntity*) {
  return OdString(u"三角形");
}

const std::vector<PropertyGroup<OdDbGeoTriangle>>& OdDbTrianglePropertyPE::groups() const {
  static const std::vector<PropertyGroup<OdDbGeoTriangle>> groups = {
      {PropertyGridName::_propertygraphyname,
       {
           {OdString(u"周长"), OdString(u"查看三角形的周长"), OdVariant::kDouble, 0,
            [](const OdDbGeoTriangle& t) { return OdVariant(t.girth()); }, nullptr},
           {OdString(u"面积"), OdString(u"查看三角形的面积"), OdVariant::kDouble, 0,
            [](const OdDbGeoTriangle& t) { return OdVariant(t.area()); }, nullptr},
       }}};
  return groups;
}

bool OdDbTrianglePropertyPE::setPropAttributeByeId(OdDbEntity* entity, const OdVariant& value,
                                                   int group, int row) {
  if (castEntity(entity).isNull())
    return false;
  // Only the common rows can be set; everything else, even a row that does not exist, is
  // refused.
  if (group == 0 && row >= 0 && row < 5)
    return setComPropAtt(entity, value, row);
  return false;
}

bool OdDbTrianglePropertyPE::GetRMenus(std::vector<EntMenuData>& menus) {
  appendShapeMenus(menus, &appendStatisticsEntries);
  return true;
}

// ---------------------------------------------------------------------------------------------
// Polygon

OdString OdDbPolygonPropertyPE::getEntityName(const OdDbEntity*) {
  return OdString(u"多边形");
}

const std::vector<PropertyGroup<OdDbGeoPolygon>>& OdDbPolygonPropertyPE::groups() const {
  static const std::vector<PropertyGroup<OdDbGeoPolygon>> groups = {
      {PropertyGridName::_propertygraphyname,
       {
           {OdString(u"角度"), OdString(u"查看角度"), OdVariant::kDouble, 0,
            [](const OdDbGeoPolygon& p) { return OdVariant(p.GetAngel()); }, nullptr},
           // Shown as editable; the grid's value is refused (see setPropAttributeByeId).
           {OdString(u"边数"), OdString(u"修改边数"), OdVariant::kString, 0,
            [](const OdDbGeoPolygon& p) { return OdVariant(p.GetVertexNub()); },
            [](OdDbGeoPolygon&, const OdVariant&) { return false; }},
       }}};
  return groups;
}

bool OdDbPolygonPropertyPE::setPropAttributeByeId(OdDbEntity* entity, const OdVariant& value,
                                                  int group, int row) {
  if (group != 1)
    return EntityPropertyPE<OdDbGeoPolygon>::setPropAttributeByeId(entity, value, group, row);
  castEntity(entity); // throws for an entity of another class
  // Every value for the geometry group is refused, a well-formed side count included: the
  // grid has never changed a polygon's sides.
  return false;
}

bool OdDbPolygonPropertyPE::GetRMenus(std::vector<EntMenuData>& menus) {
  appendShapeMenus(menus, nullptr);
  return true;
}

// ---------------------------------------------------------------------------------------------
// Fills

OdSmartPtr<OdDbHatch> OdDbTriangleExtendPE::FillColor(const OdSmartPtr<OdDbEntity>& shape,
                                                      const OdCmColor& color) {
  return fillColor<OdDbGeoTriangle>(shape, color);
}

OdSmartPtr<OdDbHatch> OdDbTriangleExtendPE::FillPattern(const OdSmartPtr<OdDbEntity>& shape,
                                                        const OdString& patternName,
                                                        double patternScale, double patternAngle,
                                                        double& result) {
  return fillPattern<OdDbGeoTriangle>(shape, patternName, patternScale, patternAngle, result);
}

OdSmartPtr<OdDbHatch> OdDbPolygonExtendPE::FillColor(const OdSmartPtr<OdDbEntity>& shape,
                                                     const OdCmColor& color) {
  return fillColor<OdDbGeoPolygon>(shape, color);
}

OdSmartPtr<OdDbHatch> OdDbPolygonExtendPE::FillPattern(const OdSmartPtr<OdDbEntity>& shape,
                                                       const OdString& patternName,
                                                       double patternScale, double patternAngle,
                                                       double& result) {
  return fillPattern<OdDbGeoPolygon>(shape, patternName, patternScale, patternAngle, result);
}
