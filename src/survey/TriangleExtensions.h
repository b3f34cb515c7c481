#ifndef CUSTENTS_TRIANGLE_EXTENSIONS_H
#define CUSTENTS_TRIANGLE_EXTENSIONS_H

// Property and shape extensions of the triangle and the polygon.

#include "ExtendPE.h"
#include "OdDbGeoPolygon.h"
#include "OdDbGeoTriangle.h"
#include "properties/PropertyContract.h"

/// The triangle's page: perimeter and area, both read-only. Nothing on the page but the common
/// rows can be set: every other set is refused with false.
class OdDbTrianglePropertyPE : public custents::EntityPropertyPE<OdDbGeoTriangle> {
public:
  OdString getEntityName(const OdDbEntity* entity) override;
  bool setPropAttributeByeId(OdDbEntity* entity, const OdVariant& value, int group,
                             int row) override;
  /// The host's menu for closed shapes, "特性" greyed out and followed by the drawing
  /// statistics between two separators.
  bool GetRMenus(std::vector<EntMenuData>& menus) override;

protected:
  const std::vector<custents::PropertyGroup<OdDbGeoTriangle>>& groups() const override;
};

/// The polygon's page: the central angle and the side count. The side count shows as editable
/// but the grid cannot change it: a polygon is rebuilt by its commands, not from the grid.
class OdDbPolygonPropertyPE : public custents::EntityPropertyPE<OdDbGeoPolygon> {
public:
  OdString getEntityName(const OdDbEntity* entity) override;
  bool setPropAttributeByeId(OdDbEntity* entity, const OdVariant& value, int group,
                             int row) override;
  /// The host's menu for closed shapes with "特性" greyed out.
  bool GetRMenus(std::vector<EntMenuData>& menus) override;

protected:
  const std::vector<custents::PropertyGroup<OdDbGeoPolygon>>& groups() const override;
  /// The polygon's common group record has always led with 0; the host shows it all the same.
  OdInt32 commonGroupFlag() const override { return 0; }
};

/// Fills a triangle: a new hatch, not in any database, with one external polyline loop through
/// the vertices and the shape's database defaults (when the shape is in a database).
class OdDbTriangleExtendPE : public ExtendPE {
public:
  /// A solid, associative fill in `color`.
  OdSmartPtr<OdDbHatch> FillColor(const OdSmartPtr<OdDbEntity>& shape,
                                  const OdCmColor& color) override;
  /// An associative custom pattern. `result` holds the pattern's unit size on entry and
  /// receives area / (scale² × unit²), the number of pattern cells the fill covers.
  OdSmartPtr<OdDbHatch> FillPattern(const OdSmartPtr<OdDbEntity>& shape,
                                    const OdString& patternName, double patternScale,
                                    double patternAngle, double& result) override;
};

/// Fills a polygon as the triangle's extension fills a triangle, over the polygon's sides.
class OdDbPolygonExtendPE : public ExtendPE {
public:
  OdSmartPtr<OdDbHatch> FillColor(const OdSmartPtr<OdDbEntity>& shape,
                                  const OdCmColor& color) override;
  OdSmartPtr<OdDbHatch> FillPattern(const OdSmartPtr<OdDbEntity>& shape,
                                    const OdString& patternName, double patternScale,
                                    double patternAngle, double& result) override;
};

#endif
