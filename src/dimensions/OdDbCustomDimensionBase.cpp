// The text operations of the dimension base. The run-time type members come from the module's
// class table (module/CustEntsClasses.def), like those of every other class of the module.

#include "OdDbCustomDimensionBase.h"

#include "BrevantApp.h"
#include "DbDatabase.h"
#include "DbTextStyleTable.h"
#include "OdError.h"

namespace {

/// Heights below this are treated as no height at all and ignored.
const double kSmallestFontHeight = 9.9e-9;
/// The host's annotation style: its texts are sized from the drawing scale, not from the style.
const OdChar* const kAnnotationStyleName = OD_T("BREVANT_AISTYLE");
/// Height of an annotation text per unit of drawing scale.
const double kAnnotationHeightPerScale = 16.0;
/// TEXTSIZE of a new drawing: the height of an entity that is in no drawing.
const double kNewDrawingTextSize = 2.5;

} // namespace

OdResult OdDbCustomDimensionBase::subSuperExplode(OdArray<OdRxObjectPtr>& entitySet) const {
  (void)entitySet;
  assertReadEnabled();
  return eOk;
}

bool OdDbCustomDimensionBase::setDimensionText(const OdString& text,
                                               OdSmartPtr<OdDbMText>& textObj) {
  (void)text;
  (void)textObj;
  assertWriteEnabled();
  return true;
}

bool OdDbCustomDimensionBase::editDimensionText(OdSmartPtr<OdDbMText>& textObj,
                                                OdSmartPtr<OdDbMText> editedText) {
  (void)textObj;
  assertWriteEnabled();
  editedText.release();
  return true;
}

void OdDbCustomDimensionBase::setTxtStyleId(OdDbObjectId styleId) {
  (void)styleId;
  assertWriteEnabled();
}

void OdDbCustomDimensionBase::setColorText(OdSmartPtr<OdDbMText>& textObj, OdCmColor& color) {
  assertWriteEnabled();
  // Pure white would vanish on a white background; ACI 7 shows white or black as needed.
  if (color.red() > 254 && color.green() > 254 && color.blue() > 254)
    color.setColorIndex(7);
  if (!textObj.isNull())
    textObj->setColor(color, true);
}

void OdDbCustomDimensionBase::setDimColor(OdCmColor color) {
  (void)color;
}

void OdDbCustomDimensionBase::setFontHeight(OdSmartPtr<OdDbMText>& textObj, double height) {
  assertWriteEnabled();
  // Comparing this way also drops NaN, which the text would refuse.
  if (!(height >= kSmallestFontHeight) || textObj.isNull())
    return;
  textObj->setTextHeight(height);
}

void OdDbCustomDimensionBase::setTextHeight(double height) {
  (void)height;
}

void OdDbCustomDimensionBase::getTextHeight(double& height) {
  (void)height;
}

void OdDbCustomDimensionBase::getTextColor(OdCmColor& color) {
  (void)color;
}

void OdDbCustomDimensionBase::getDimColor(OdCmColor& color) {
  (void)color;
}

double OdDbCustomDimensionBase::GetTextHeight() {
  OdDbDatabase* db = database();
  if (!db)
    return kNewDrawingTextSize;
  const double textSize = db->getTEXTSIZE();

  OdDbTextStyleTableRecordPtr style;
  try {
    OdDbObjectPtr object = db->getTEXTSTYLE().openObject(OdDb::kForRead);
    style = OdDbTextStyleTableRecord::cast(object.get());
  } catch (const OdError&) {
    // Already open for write elsewhere, say: fall back to the drawing's text size.
  }
  if (style.isNull())
    return textSize;

  if (style->getName() == kAnnotationStyleName) {
    CDrawingSettings* settings = TheApp()->GetDrawingSettings(db);
    return settings ? settings->GetCurrentScale() * kAnnotationHeightPerScale : textSize;
  }
  if (style->textSize() != 0.0)
    return style->textSize();
  if (style->priorSize() != 0.0)
    return style->priorSize();
  return textSize;
}
