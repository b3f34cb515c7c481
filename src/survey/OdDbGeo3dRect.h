#ifndef CUSTENTS_ODDBGEO3DRECT_H
#define CUSTENTS_ODDBGEO3DRECT_H

#include "DbEntity.h"
#include "common/CustFiling.h"

CUSTENTS_PLAIN_CLASS(OdDbGeo3dRect, OdDbEntity)

#endif
