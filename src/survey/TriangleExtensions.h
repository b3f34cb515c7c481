#ifndef CUSTENTS_TRIANGLE_EXTENSIONS_H
#define CUSTENTS_TRIANGLE_EXTENSIONS_H

// Property and shape extensions of the triangle and the polygon.

#include "ExtendPE.h"
#include "OdDbGeoPolygon.h"
#include "OdDbGeoTriangle.h"
#include "properties/PropertyContract.h"

CUSTENTS_COMMON_PROPERTY_PE(OdDbTrianglePropertyPE, OdDbGeoTriangle, u"三角形")
CUSTENTS_COMMON_PROPERTY_PE(OdDbPolygonPropertyPE, OdDbGeoPolygon, u"多边形")

class OdDbTriangleExtendPE : public ExtendPE {};
class OdDbPolygonExtendPE : public ExtendPE {};

#endif
