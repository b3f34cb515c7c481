#ifndef CUSTENTS_TABLE_CLASSES_H
#define CUSTENTS_TABLE_CLASSES_H

// Table classes without behaviour of their own yet (see dimensions/DimensionClasses.h). The
// symbol, tree and land-area tables are database objects; the quantity table and the block
// statistics table are entities.

#include "DbEntity.h"
#include "dimensions/DimensionClasses.h"

CUSTENTS_PLAIN_CLASS(GeosymHouseObjectTable, OdDbObject)
CUSTENTS_PLAIN_CLASS(GeosymTable, OdDbObject)
CUSTENTS_PLAIN_CLASS(GeoTreeTable, OdDbObject)
CUSTENTS_PLAIN_CLASS(GeoTreeSimpleTable, OdDbObject)
CUSTENTS_PLAIN_CLASS(GeoLandAreaTable, OdDbObject)
CUSTENTS_PLAIN_CLASS(GeoQuantityTable, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbBlkStatisticsTable, OdDbEntity)

#endif
