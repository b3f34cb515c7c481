#include "PropertyGridName.h"

const OdString PropertyGridName::_propertycommonyname(OD_T("常规"));
const OdString PropertyGridName::_propertygraphyname(OD_T("几何图形"));
