#include "DbTextStyleTable.h"

#include "DbFiler.h"

#include <cmath>

ODRX_CONS_DEFINE_MEMBERS(OdDbTextStyleTableRecord, OdDbSymbolTableRecord, OD_T("STYLE"))
ODRX_CONS_DEFINE_MEMBERS(OdDbTextStyleTable, OdDbSymbolTable, OD_T("TABLE"))

OdRxClass* OdDbTextStyleTable::recordClass() const {
  return OdDbTextStyleTableRecord::desc();
}

namespace {
bool isSize(double value) {
  return std::isfinite(value) && value >= 0.0;
}
} // namespace

OdString OdDbTextStyleTableRecord::fileName() const {
  assertReadEnabled();
  return m_fileName;
}
void OdDbTextStyleTableRecord::setFileName(const OdString& fileName) {
  assertWriteEnabled();
  m_fileName = fileName;
}
OdString OdDbTextStyleTableRecord::bigFontFileName() const {
  assertReadEnabled();
  return m_bigFontFileName;
}
void OdDbTextStyleTableRecord::setBigFontFileName(const OdString& fileName) {
  assertWriteEnabled();
  m_bigFontFileName = fileName;
}
bool OdDbTextStyleTableRecord::isShapeFile() const {
  assertReadEnabled();
  return m_isShapeFile;
}
void OdDbTextStyleTableRecord::setIsShapeFile(bool isShapeFile) {
  assertWriteEnabled();
  m_isShapeFile = isShapeFile;
}
bool OdDbTextStyleTableRecord::isVertical() const {
  assertReadEnabled();
  return m_isVertical;
}
void OdDbTextStyleTableRecord::setIsVertical(bool isVertical) {
  assertWriteEnabled();
  m_isVertical = isVertical;
}
double OdDbTextStyleTableRecord::textSize() const {
  assertReadEnabled();
  return m_textSize;
}
void OdDbTextStyleTableRecord::setTextSize(double size) {
  if (!isSize(size))
    throw OdError(eInvalidInput, OD_T("A style's text size must be 0 or a positive number"));
  assertWriteEnabled();
  m_textSize = size;
}
double OdDbTextStyleTableRecord::priorSize() const {
  assertReadEnabled();
  return m_priorSize;
}
void OdDbTextStyleTableRecord::setPriorSize(double size) {
  if (!isSize(size))
    throw OdError(eInvalidInput, OD_T("A style's prior size must be 0 or a positive number"));
  assertWriteEnabled();
  m_priorSize = size;
}
double OdDbTextStyleTableRecord::xScale() const {
  assertReadEnabled();
  return m_xScale;
}
void OdDbTextStyleTableRecord::setXScale(double xScale) {
  if (!std::isfinite(xScale) || xScale <= 0.0)
    throw OdError(eInvalidInput, OD_T("A width factor must be a positive number"));
  assertWriteEnabled();
  m_xScale = xScale;
}
double OdDbTextStyleTableRecord::obliquingAngle() const {
  assertReadEnabled();
  return m_obliquingAngle;
}
void OdDbTextStyleTableRecord::setObliquingAngle(double angle) {
  if (!std::isfinite(angle))
    throw OdError(eInvalidInput, OD_T("An obliquing angle must be a number"));
  assertWriteEnabled();
  m_obliquingAngle = angle;
}

void OdDbTextStyleTableRecord::setFont(const OdString& typeface, bool bold, bool italic,
                                       int charset, int pitchAndFamily) {
  assertWriteEnabled();
  m_typeface = typeface;
  m_bold = bold;
  m_italic = italic;
  m_charset = charset;
  m_pitchAndFamily = pitchAndFamily;
}

void OdDbTextStyleTableRecord::font(OdString& typeface, bool& bold, bool& italic, int& charset,
                                    int& pitchAndFamily) const {
  assertReadEnabled();
  typeface = m_typeface;
  bold = m_bold;
  italic = m_italic;
  charset = m_charset;
  pitchAndFamily = m_pitchAndFamily;
}

OdResult OdDbTextStyleTableRecord::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbSymbolTableRecord::dwgInFields(filer);
  if (base != eOk)
    return base;
  const bool isShapeFile = filer->rdBool();
  const bool isVertical = filer->rdBool();
  const double textSize = filer->rdDouble();
  const double xScale = filer->rdDouble();
  const double obliquingAngle = filer->rdDouble();
  const double priorSize = filer->rdDouble();
  const OdString fileName = filer->rdString();
  const OdString bigFontFileName = filer->rdString();
  const OdString typeface = filer->rdString();
  const bool bold = filer->rdBool();
  const bool italic = filer->rdBool();
  const OdInt32 charset = filer->rdInt32();
  const OdInt32 pitchAndFamily = filer->rdInt32();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!isSize(textSize) || !isSize(priorSize) || !std::isfinite(xScale) || xScale <= 0.0 ||
      !std::isfinite(obliquingAngle))
    return eDwgObjectImproperlyRead;
  m_isShapeFile = isShapeFile;
  m_isVertical = isVertical;
  m_textSize = textSize;
  m_xScale = xScale;
  m_obliquingAngle = obliquingAngle;
  m_priorSize = priorSize;
  m_fileName = fileName;
  m_bigFontFileName = bigFontFileName;
  m_typeface = typeface;
  m_bold = bold;
  m_italic = italic;
  m_charset = charset;
  m_pitchAndFamily = pitchAndFamily;
  return eOk;
}

void OdDbTextStyleTableRecord::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbSymbolTableRecord::dwgOutFields(filer);
  filer->wrBool(m_isShapeFile);
  filer->wrBool(m_isVertical);
  filer->wrDouble(m_textSize);
  filer->wrDouble(m_xScale);
  filer->wrDouble(m_obliquingAngle);
  filer->wrDouble(m_priorSize);
  filer->wrString(m_fileName);
  filer->wrString(m_bigFontFileName);
  filer->wrString(m_typeface);
  filer->wrBool(m_bold);
  filer->wrBool(m_italic);
  filer->wrInt32(m_charset);
  filer->wrInt32(m_pitchAndFamily);
}
