#ifndef CUSTENTS_DIMENSION_CLASSES_H
#define CUSTENTS_DIMENSION_CLASSES_H

// Dimension-like classes that have no behaviour of their own yet: registered, constructible,
// filed with their base data and a version, drawing nothing. Each grows into a class of its
// own when its behaviour is built.

#include "OdDbCustomDimensionBase.h"
#include "OdDbDimCoor.h"
#include "OdDbNewDimCoor.h"
#include "common/CustFiling.h"

CUSTENTS_PLAIN_CLASS(OdDbNewAnnotate, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbDimCircle, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbArcLine, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbArrowExtraction, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbBendLine, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbBrokenLine, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbBuildHeight, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbNewDimText, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbSymmetryAxis, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbDimCableTray, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbDimExtraction, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbSeekMap, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbPracticeLabel, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbLinePattern, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbIndexicalSigns, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbDimCutting, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbCoverArea, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbCompass, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbCabinet, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbDimArea, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbDimContinue, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbDimContinueNew, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDb3dArrow, OdDbCustomDimensionBase)
CUSTENTS_PLAIN_CLASS(OdDbDimName, OdDbEntity)

#endif
