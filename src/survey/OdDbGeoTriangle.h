#ifndef CUSTENTS_ODDBGEOTRIANGLE_H
#define CUSTENTS_ODDBGEOTRIANGLE_H

#include "DbEntity.h"
#include "common/CustFiling.h"

CUSTENTS_PLAIN_CLASS(OdDbGeoTriangle, OdDbEntity)

#endif
