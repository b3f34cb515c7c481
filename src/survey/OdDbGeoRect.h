#ifndef CUSTENTS_ODDBGEORECT_H
#define CUSTENTS_ODDBGEORECT_H

#include "DbEntity.h"
#include "common/CustFiling.h"

CUSTENTS_PLAIN_CLASS(OdDbGeoRect, OdDbEntity)

#endif
