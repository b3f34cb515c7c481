#ifndef CUSTENTS_LINE_EXTENSIONS_H
#define CUSTENTS_LINE_EXTENSIONS_H

// Property extensions of the service lines.

#include "LineClasses.h"
#include "properties/PropertyContract.h"

CUSTENTS_COMMON_PROPERTY_PE(DecorationPipePropertyPE, DecorationPipe, u"水管")
/// The hot-water pipe's page is the pipe's under another name.
class DecorationPipeHotPropertyPE : public DecorationPipePropertyPE {
public:
  OdString getEntityName(const OdDbEntity*) override { return OdString(u"热水管"); }
};
CUSTENTS_COMMON_PROPERTY_PE(OdDbDoubleLineCableTrayPropertyPE, OdDbDoubleLineCableTray, u"槽式桥架")
CUSTENTS_COMMON_PROPERTY_PE(OdDbCableTrayPropertyPE, OdDbNewCableTray, u"槽式桥架")
CUSTENTS_COMMON_PROPERTY_PE(DbPipeWirewayPropertyPE, DbPipeWireway, u"管线")
CUSTENTS_COMMON_PROPERTY_PE(DbCoverPolyLinePropertyPE, DbCoverPolyLine, u"多段线")
CUSTENTS_COMMON_PROPERTY_PE(OdDbPipeLinePropertyPE, OdDbPipeLine, u"防护管线")
CUSTENTS_COMMON_PROPERTY_PE(OdDbFreePenPE, OdDbFreePen, u"手绘线")

#endif
