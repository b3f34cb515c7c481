#ifndef CUSTENTS_SURVEY_CLASSES_H
#define CUSTENTS_SURVEY_CLASSES_H

// The survey classes.

#include "OdDbGeo3dRect.h"
#include "OdDbGeoPolygon.h"
#include "OdDbGeoRect.h"
#include "OdDbGeoTriangle.h"
#include "OdDbMesuarData.h"
#include "common/CustFiling.h"

/// The geo tag has no behaviour of its own.
CUSTENTS_PLAIN_CLASS(OdDbGeoTag, OdDbEntity)

#endif
