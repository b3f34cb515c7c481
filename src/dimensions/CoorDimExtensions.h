#ifndef CUSTENTS_COOR_DIM_EXTENSIONS_H
#define CUSTENTS_COOR_DIM_EXTENSIONS_H

// Property pages of the two coordinate dimensions.

#include "OdDbDimCoor.h"
#include "OdDbNewDimCoor.h"
#include "properties/PropertyContract.h"

/// The older coordinate dimension's page: its two texts, as shown, editable.
class OdDbCoorDimPropertyPE : public custents::EntityPropertyPE<OdDbDimCoor> {
public:
  OdString getEntityName(const OdDbEntity* entity) override;
  /// The host's menu for dimensions.
  bool GetRMenus(std::vector<EntMenuData>& menus) override;
  /// "坐标标注:", the host's own list text, then the type and the defining and measured points
  /// with four decimals. Empty for a null entity; OdError_NotThatKindOfClass for another class.
  OdString GetListInfo(OdDbEntity* entity) override;

protected:
  const std::vector<custents::PropertyGroup<OdDbDimCoor>>& groups() const override;
};

/// The newer coordinate dimension's page: text colour (applied to all its texts), the X and Y
/// texts, and the text height (applied to all its texts; heights that are not positive finite
/// numbers of at least 9.9e-9 are refused).
class OdDbNewCoorDimPropertyPE : public custents::EntityPropertyPE<OdDbNewDimCoor> {
public:
  OdString getEntityName(const OdDbEntity* entity) override;
  /// The host's menu for dimensions.
  bool GetRMenus(std::vector<EntMenuData>& menus) override;

protected:
  const std::vector<custents::PropertyGroup<OdDbNewDimCoor>>& groups() const override;
};

#endif
