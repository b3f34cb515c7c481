#ifndef CUSTENTS_TABLE_EXTENSIONS_H
#define CUSTENTS_TABLE_EXTENSIONS_H

// Property extensions of the table entities.

#include "TableClasses.h"
#include "properties/PropertyContract.h"

CUSTENTS_COMMON_PROPERTY_PE(OdDbBlkStatisticsTablePropertyPE, OdDbBlkStatisticsTable,
                            u"图块统计表")

#endif
