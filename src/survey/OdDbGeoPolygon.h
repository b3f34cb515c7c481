#ifndef CUSTENTS_ODDBGEOPOLYGON_H
#define CUSTENTS_ODDBGEOPOLYGON_H

#include "DbEntity.h"
#include "common/CustFiling.h"

CUSTENTS_PLAIN_CLASS(OdDbGeoPolygon, OdDbEntity)

#endif
