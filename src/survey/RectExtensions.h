#ifndef CUSTENTS_RECT_EXTENSIONS_H
#define CUSTENTS_RECT_EXTENSIONS_H

// Property and shape extensions of the flat and the 3D rectangle.

#include "ExtendPE.h"
#include "OdDbGeo3dRect.h"
#include "OdDbGeoRect.h"
#include "properties/PropertyContract.h"

CUSTENTS_COMMON_PROPERTY_PE(OdDbRectPropertyPE, OdDbGeoRect, u"矩形")
CUSTENTS_COMMON_PROPERTY_PE(OdDb3dRectPropertyPE, OdDbGeo3dRect, u"矩形")

class OdDbRectExtendPE : public ExtendPE {};
/// Exists for hosts that attach it themselves; the module's start-up does not.
class OdDb3dRectExtendPE : public ExtendPE {};

#endif
