#ifndef CUSTENTS_SURVEY_EXTENSIONS_H
#define CUSTENTS_SURVEY_EXTENSIONS_H

// Property and shape extensions of the survey shapes. The shape extensions fill nothing until
// the shapes have outlines to fill.

#include "ExtendPE.h"
#include "SurveyClasses.h"
#include "properties/PropertyContract.h"

CUSTENTS_COMMON_PROPERTY_PE(OdDbRectPropertyPE, OdDbGeoRect, u"矩形")
CUSTENTS_COMMON_PROPERTY_PE(OdDbTrianglePropertyPE, OdDbGeoTriangle, u"三角形")
CUSTENTS_COMMON_PROPERTY_PE(OdDbPolygonPropertyPE, OdDbGeoPolygon, u"多边形")
CUSTENTS_COMMON_PROPERTY_PE(OdDb3dRectPropertyPE, OdDbGeo3dRect, u"矩形")
CUSTENTS_COMMON_PROPERTY_PE(OdDbGeoTagPropertyPE, OdDbGeoTag, u"地理标签")

class OdDbRectExtendPE : public ExtendPE {};
class OdDbTriangleExtendPE : public ExtendPE {};
class OdDbPolygonExtendPE : public ExtendPE {};
/// Exists for hosts that attach it themselves; the module's start-up does not.
class OdDb3dRectExtendPE : public ExtendPE {};

#endif
