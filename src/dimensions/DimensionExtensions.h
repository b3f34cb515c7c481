#ifndef CUSTENTS_DIMENSION_EXTENSIONS_H
#define CUSTENTS_DIMENSION_EXTENSIONS_H

// Property extensions of the dimension-like entities. Until an entity's own rows are built its
// extension offers the common group under the entity's display name.

#include "CoorDimExtensions.h"
#include "DimensionClasses.h"
#include "properties/PropertyContract.h"

CUSTENTS_COMMON_PROPERTY_PE(OdDbArcLineDimPropertyPE, OdDbArcLine, u"弧线标注")
CUSTENTS_COMMON_PROPERTY_PE(OdDbArrowExtractionPropertyPE, OdDbArrowExtraction, u"箭头引注")
CUSTENTS_COMMON_PROPERTY_PE(OdDbBendLinePropertyPE, OdDbBendLine, u"折线")
CUSTENTS_COMMON_PROPERTY_PE(OdDbBrokenLineDimPropertyPE, OdDbBrokenLine, u"折断线")
CUSTENTS_COMMON_PROPERTY_PE(OdDbBuildHeightPropertyPE, OdDbBuildHeight, u"标高标注")
CUSTENTS_COMMON_PROPERTY_PE(OdDbSymmetryAxisPropertyPE, OdDbSymmetryAxis, u"对称轴")
CUSTENTS_COMMON_PROPERTY_PE(OdDbDimCableTrayPropertyPE, OdDbDimCableTray, u"桥架标注")
CUSTENTS_COMMON_PROPERTY_PE(OdDbDimExtractionPropertyPE, OdDbDimExtraction, u"引出标注")
CUSTENTS_COMMON_PROPERTY_PE(OdDbSeekMapPropertyPE, OdDbSeekMap, u"索引图号")
CUSTENTS_COMMON_PROPERTY_PE(OdDbPracticeLabelPropertyPE, OdDbPracticeLabel, u"做法标注")
CUSTENTS_COMMON_PROPERTY_PE(OdDbLinePatternPropertyPE, OdDbLinePattern, u"线图案")
CUSTENTS_COMMON_PROPERTY_PE(OdDbIndexicalSignsPropertyPE, OdDbIndexicalSigns, u"索引符号")
CUSTENTS_COMMON_PROPERTY_PE(OdDbNameDimPropertyPE, OdDbDimName, u"图名标注")
CUSTENTS_COMMON_PROPERTY_PE(OdDbCuttingDimPropertyPE, OdDbDimCutting, u"剖切符号")
CUSTENTS_COMMON_PROPERTY_PE(OdDbCoverAreaPropertyPE, OdDbCoverArea, u"地被面积")
CUSTENTS_COMMON_PROPERTY_PE(OdDbCompassPropertyPE, OdDbCompass, u"指北针")
CUSTENTS_COMMON_PROPERTY_PE(OdDbCabinetPropertyPE, OdDbCabinet, u"柜体")
CUSTENTS_COMMON_PROPERTY_PE(OdDbDimAreaPropertyPE, OdDbDimArea, u"面积标注")
CUSTENTS_COMMON_PROPERTY_PE(OdDbDimContinuePropertyPE, OdDbDimContinue, u"连续标注")
CUSTENTS_COMMON_PROPERTY_PE(OdDbDimContinueNewPropertyPE, OdDbDimContinueNew, u"连续标注")
CUSTENTS_COMMON_PROPERTY_PE(OdDb3dArrowPropertyPE, OdDb3dArrow, u"箭头")

#endif
