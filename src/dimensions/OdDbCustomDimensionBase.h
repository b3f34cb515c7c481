#ifndef CUSTENTS_OD_DB_CUSTOM_DIMENSION_BASE_H
#define CUSTENTS_OD_DB_CUSTOM_DIMENSION_BASE_H

#include "DbEntity.h"
#include "DbMText.h"

/// The common base of the module's dimension-like entities. It has no data of its own; it adds
/// the text operations through which the property extensions and the host replace, edit,
/// style, colour and size a dimension's text without knowing the entity's class. The virtual
/// operations are declared in the order the host's callers rely on; do not reorder them.
class OdDbCustomDimensionBase : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbCustomDimensionBase);

  OdDbCustomDimensionBase() = default;

  /// The standard entities this entity is made of, taken apart completely. Base: nothing.
  virtual OdResult subSuperExplode(OdArray<OdRxObjectPtr>& entitySet) const;
  /// Replaces the text of textObj. Base: changes nothing, true.
  virtual bool setDimensionText(const OdString& text, OdSmartPtr<OdDbMText>& textObj);
  /// Takes over an edit made in place (contents, height) into textObj. Base: drops the
  /// edited text, true.
  virtual bool editDimensionText(OdSmartPtr<OdDbMText>& textObj, OdSmartPtr<OdDbMText> editedText);
  /// Base: only checks write access.
  virtual void setTxtStyleId(OdDbObjectId styleId);
  /// Colours textObj (when given). Pure white as a true colour becomes ACI 7, so the text stays
  /// visible on a white background; color is updated to what was applied.
  virtual void setColorText(OdSmartPtr<OdDbMText>& textObj, OdCmColor& color);
  /// Base: nothing.
  virtual void setDimColor(OdCmColor color);
  /// Sets textObj's character height; heights below 9.9e-9 (zero, negative, tiny) are ignored.
  virtual void setFontHeight(OdSmartPtr<OdDbMText>& textObj, double height);
  /// Base: nothing.
  virtual void setTextHeight(double height);
  /// Base: leaves height as it was.
  virtual void getTextHeight(double& height);
  /// Base: leaves color as it was.
  virtual void getTextColor(OdCmColor& color);
  /// Base: leaves color as it was.
  virtual void getDimColor(OdCmColor& color);
  /// The height a new text of this entity takes: the current text style's fixed height, else
  /// its prior size, else TEXTSIZE; for the host's annotation style "BREVANT_AISTYLE" the
  /// host's current drawing scale times 16. Never fails: a style that cannot be opened gives
  /// TEXTSIZE, an entity in no drawing a new drawing's TEXTSIZE (2.5).
  virtual double GetTextHeight();
};
typedef OdSmartPtr<OdDbCustomDimensionBase> OdDbCustomDimensionBasePtr;

#endif
