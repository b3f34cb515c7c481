#ifndef CUSTENTS_ODDBMESUARDATA_H
#define CUSTENTS_ODDBMESUARDATA_H

#include "DbEntity.h"
#include "common/CustFiling.h"

CUSTENTS_PLAIN_CLASS(OdDbMesuarData, OdDbEntity)

#endif
