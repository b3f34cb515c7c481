#ifndef CUSTENTS_MARKUP_EXTENSIONS_H
#define CUSTENTS_MARKUP_EXTENSIONS_H

// Property extensions of the markup entities.

#include "MarkupClasses.h"
#include "properties/PropertyContract.h"

CUSTENTS_COMMON_PROPERTY_PE(OdDbCloudPropertyPE, OdDbCloud, u"云线")
CUSTENTS_COMMON_PROPERTY_PE(OdDbRevCloudPropertyPE, OdDbRevCloud, u"修订云线")
CUSTENTS_COMMON_PROPERTY_PE(OdDbNewCloudPropertyPE, OdDbNewCloud, u"云线")
CUSTENTS_COMMON_PROPERTY_PE(OdDbDivPointPropertyPE, OdDbDivPoint, u"点")

#endif
