#ifndef CUSTENTS_MARKUP_CLASSES_H
#define CUSTENTS_MARKUP_CLASSES_H

// Markup classes without behaviour of their own yet (see dimensions/DimensionClasses.h).

#include "DbPoint.h"
#include "dimensions/DimensionClasses.h"

CUSTENTS_PLAIN_CLASS(OdDbAnnotate, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbCustomFrame, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbCloud, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbRevCloud, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbNewCloud, OdDbEntity)
CUSTENTS_PLAIN_CLASS(OdDbDivPoint, OdDbPoint)
CUSTENTS_PLAIN_CLASS(OdDbDivPointNew, OdDbPoint)

#endif
