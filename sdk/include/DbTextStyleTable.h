#ifndef OD_DB_TEXT_STYLE_TABLE_H
#define OD_DB_TEXT_STYLE_TABLE_H

#include "DbSymbolTable.h"

/// A text style: the font a text is drawn in and the defaults it takes (fixed height, width
/// factor, slant). Either a font file (TrueType or SHX) or a face described by setFont; an SHX
/// style may add a big-font file for the characters its main font lacks (CJK).
class OdDbTextStyleTableRecord : public OdDbSymbolTableRecord {
  ODRX_DECLARE_MEMBERS(OdDbTextStyleTableRecord);
  OdDbTextStyleTableRecord() = default;

  OdString fileName() const;
  void setFileName(const OdString& fileName);
  OdString bigFontFileName() const;
  void setBigFontFileName(const OdString& fileName);

  /// A shape file style holds symbols (drawn by SHAPE), not a font for text.
  bool isShapeFile() const;
  void setIsShapeFile(bool isShapeFile);
  bool isVertical() const;
  void setIsVertical(bool isVertical);

  /// The fixed height texts of this style take; 0 lets each text choose its own.
  double textSize() const;
  /// Throws OdError(eInvalidInput) for a negative or non-finite size.
  void setTextSize(double size);
  /// The height last used with this style, offered as the default for the next text.
  double priorSize() const;
  /// Throws OdError(eInvalidInput) for a negative or non-finite size.
  void setPriorSize(double size);
  /// The width factor.
  double xScale() const;
  /// Throws OdError(eInvalidInput) for a factor that is not a positive finite number.
  void setXScale(double xScale);
  /// In radians.
  double obliquingAngle() const;
  /// Throws OdError(eInvalidInput) for a non-finite angle.
  void setObliquingAngle(double angle);

  /// Describes the font by face (a TrueType family name such as "宋体") rather than by file.
  void setFont(const OdString& typeface, bool bold, bool italic, int charset, int pitchAndFamily);
  void font(OdString& typeface, bool& bold, bool& italic, int& charset, int& pitchAndFamily) const;

  /// After the record's name: B shape file, B vertical, BD fixed size, BD width factor,
  /// BD oblique, BD prior size, TV font file, TV big-font file, TV face, B bold, B italic,
  /// BL charset, BL pitch and family.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;

private:
  OdString m_fileName;
  OdString m_bigFontFileName;
  bool m_isShapeFile = false;
  bool m_isVertical = false;
  double m_textSize = 0.0;
  double m_priorSize = 2.5;
  double m_xScale = 1.0;
  double m_obliquingAngle = 0.0;
  OdString m_typeface;
  bool m_bold = false;
  bool m_italic = false;
  int m_charset = 0;
  int m_pitchAndFamily = 0;
};
typedef OdSmartPtr<OdDbTextStyleTableRecord> OdDbTextStyleTableRecordPtr;

ODDB_DECLARE_SYMBOL_TABLE(OdDbTextStyleTable)

#endif
