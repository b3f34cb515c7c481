#ifndef HOST_PROPERTY_GRID_NAME_H
#define HOST_PROPERTY_GRID_NAME_H

#include "OdString.h"

/// Captions of the property-grid groups that every extension shares, so that the grid shows
/// one "常规" group for all entities and can merge it across a mixed selection.
class PropertyGridName {
public:
  /// "常规": the common group (group 0: colour, layer, linetype, linetype scale, lineweight).
  static const OdString _propertycommonyname;
  /// "几何图形": the usual caption of an entity's geometry group.
  static const OdString _propertygraphyname;
};

#endif
