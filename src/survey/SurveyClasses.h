#ifndef CUSTENTS_SURVEY_CLASSES_H
#define CUSTENTS_SURVEY_CLASSES_H

// Survey classes without behaviour of their own yet (see dimensions/DimensionClasses.h).

#include "DbEntity.h"
#include "dimensions/DimensionClasses.h"

CUSTENTS_PLAIN_CLASS(OdDbGeoRect, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbGeoTriangle, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbGeoPolygon, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbGeo3dRect, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbMesuarData, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbGeoTag, OdDbEntity)

#endif
