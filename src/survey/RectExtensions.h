#ifndef CUSTENTS_RECT_EXTENSIONS_H
#define CUSTENTS_RECT_EXTENSIONS_H

// Property and shape extensions of the flat and the 3D rectangle. Both rectangles answer the
// same page and build the same hatches; each extension accepts only its own class.

#include "ExtendPE.h"
#include "OdDbGeo3dRect.h"
#include "OdDbGeoRect.h"
#include "properties/PropertyContract.h"

namespace custents {

/// Converts the text typed into the length or width cell as the C runtime's wcstod does (the
/// longest numeric prefix, 0 for none). False for a result within 1e-10 of zero, which would
/// collapse the rectangle, and for one that is not finite ("nan", "inf", "1e999").
bool parseEdgeLength(const OdString& text, double& length);

/// The rectangle's page: the common group, then "长" and "宽" (editable, as text) and "周长"
/// and "面积" (computed). Unlike the shared contract, every set in the geometry group must
/// carry a string that converts to a usable length, the computed rows included; only then does
/// a computed row answer true without change.
template <class Rect> class RectPropertyPE : public EntityPropertyPE<Rect> {
public:
  OdString getEntityName(const OdDbEntity* entity) override;
  bool setPropAttributeByeId(OdDbEntity* entity, const OdVariant& value, int group,
                             int row) override;
  /// The host's menu for closed survey shapes, with a separator and "图形统计" after "特性".
  bool GetRMenus(std::vector<EntMenuData>& menus) override;

protected:
  const std::vector<PropertyGroup<Rect>>& groups() const override;
};

/// Fills a rectangle with a hatch over its corners' x and y. The hatch is free-standing and
/// takes the rectangle's database defaults, so the rectangle must be in a database.
template <class Rect> class RectExtendPE : public ExtendPE {
public:
  /// A solid fill in `color`. Null for a null shape; OdError_NotThatKindOfClass for a shape of
  /// another class.
  OdSmartPtr<OdDbHatch> FillColor(const OdSmartPtr<OdDbEntity>& shape,
                                  const OdCmColor& color) override;
  /// A custom pattern. On entry `result` holds the pattern's unit size; on return the number of
  /// pattern units the area holds: area / (scale² × unit²) (infinite for a zero scale or unit,
  /// which setPatternScale then refuses with OdError).
  OdSmartPtr<OdDbHatch> FillPattern(const OdSmartPtr<OdDbEntity>& shape,
                                    const OdString& patternName, double patternScale,
                                    double patternAngle, double& result) override;
};

} // namespace custents

class OdDbRectPropertyPE : public custents::RectPropertyPE<OdDbGeoRect> {};
class OdDb3dRectPropertyPE : public custents::RectPropertyPE<OdDbGeo3dRect> {};

class OdDbRectExtendPE : public custents::RectExtendPE<OdDbGeoRect> {};
/// Exists for hosts that attach it themselves; the module's start-up does not.
class OdDb3dRectExtendPE : public custents::RectExtendPE<OdDbGeo3dRect> {};

extern template class custents::RectPropertyPE<OdDbGeoRect>;
extern template class custents::RectPropertyPE<OdDbGeo3dRect>;
extern template class custents::RectExtendPE<OdDbGeoRect>;
extern template class custents::RectExtendPE<OdDbGeo3dRect>;

#endif
