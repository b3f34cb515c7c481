#ifndef CUSTENTS_SURVEY_EXTENSIONS_H
#define CUSTENTS_SURVEY_EXTENSIONS_H

// Property and shape extensions of the survey shapes.

#include "RectExtensions.h"
#include "SurveyClasses.h"
#include "TriangleExtensions.h"
#include "properties/PropertyContract.h"

CUSTENTS_COMMON_PROPERTY_PE(OdDbGeoTagPropertyPE, OdDbGeoTag, u"地理标签")

#endif
