#include "OdDbDimCoor.h"

#include "BrevantApp.h"
#include "DbFiler.h"
#include "Ge/GeFinite.h"
#include "Gi/GiWorldDraw.h"
#include "OdError.h"
#include "common/CustFiling.h"
#include "common/NotLoaded.h"
#include "common/TextStyles.h"

#include <algorithm>
#include <cmath>

// ---------------------------------------------------------------------------------------------
// Shared layout

namespace custents {

OdString coordinateFormat(const OdString& prefix, int precision) {
  const int decimals = std::min(std::max(precision, 0), kMaxCoordinatePrecision);
  OdString number;
  number.format(OD_T(".%df"), decimals);
  return prefix + OdString(OD_T("%")) + number;
}

OdString formatCoordinate(const OdString& format, double value) {
  OdString text;
  text.format(format.c_str(), value);
  return text;
}

int profileCoordinatePrecision() {
  const int precision = TheApp()->GetProfileInt(OD_T("options"), OD_T("dimAccurity"), 0);
  return std::min(std::max(precision, 0), kMaxCoordinatePrecision);
}

OdGePoint3d shoulderEnd(const OdGePoint3d& startPt, const OdGePoint3d& dimPt, int longestText,
                        double textHeight) {
  const double reach = (longestText + 1) * textHeight * 3.0 * 0.25;
  OdGePoint3d end = dimPt;
  end.x = dimPt.x >= startPt.x ? dimPt.x + reach : dimPt.x - reach;
  return end;
}

void appendLeaderSnaps(OdDb::OsnapMode mode, const OdGePoint3d& startPt, const OdGePoint3d& dimPt,
                       const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                       OdGePoint3dArray& snapPoints) {
  const OdGeVector3d leader = dimPt - startPt;
  const double lengthSqrd = leader.lengthSqrd();
  // The parameter of the foot of the perpendicular from `point` (0 at startPt, 1 at dimPt).
  const auto footParameter = [&](const OdGePoint3d& point) {
    return (point - startPt).dotProduct(leader) / lengthSqrd;
  };
  switch (mode) {
  case OdDb::kOsModeEnd:
    snapPoints.append(startPt);
    snapPoints.append(dimPt);
    break;
  case OdDb::kOsModeMid:
    snapPoints.append(startPt + leader * 0.5);
    break;
  case OdDb::kOsModePerp:
    if (lengthSqrd > 0.0)
      snapPoints.append(startPt + leader * footParameter(lastPoint));
    break;
  case OdDb::kOsModeNear:
    if (!(lengthSqrd > 0.0)) {
      snapPoints.append(startPt);
      break;
    }
    {
      const double t = footParameter(pickPoint);
      if (t > 1.0)
        snapPoints.append(dimPt);
      else if (t < 0.0)
        snapPoints.append(startPt);
      else
        snapPoints.append(startPt + leader * t);
    }
    break;
  default:
    break;
  }
}

const OdString kCoordinateXPrefix(OD_T("X="));
const OdString kCoordinateYPrefix(OD_T("Y="));

OdCmColor defaultCoordinateColor() {
  OdCmColor green;
  green.setRGB(0, 255, 0);
  return green;
}

OdDbLinePtr newDimensionLine(const OdDbEntity* dimension, const OdCmColor& color,
                             const OdGePoint3d& from, const OdGePoint3d& to) {
  OdDbLinePtr line = createStandardEntity<OdDbLine>(OD_T("Line"));
  line->setPropertiesFrom(dimension);
  line->setColor(color);
  line->setStartPoint(from);
  line->setEndPoint(to);
  return line;
}

} // namespace custents

// ---------------------------------------------------------------------------------------------
// Data

OdDbDimCoor::OdDbDimCoor()
    : m_xFormat(custents::coordinateFormat(custents::kCoordinateXPrefix,
                                           custents::kDefaultCoordinatePrecision)),
      m_yFormat(custents::coordinateFormat(custents::kCoordinateYPrefix,
                                           custents::kDefaultCoordinatePrecision)),
      m_txtColor(custents::defaultCoordinateColor()),
      m_dimColor(custents::defaultCoordinateColor()) {}

OdGePoint3d OdDbDimCoor::getStartPt() const {
  assertReadEnabled();
  return m_startPt;
}

void OdDbDimCoor::setStartPt(const OdGePoint3d& point) {
  assertWriteEnabled();
  m_startPt = point;
}

OdGePoint3d OdDbDimCoor::getDimPt() const {
  assertReadEnabled();
  return m_dimPt;
}

void OdDbDimCoor::setDimPt(const OdGePoint3d& point) {
  assertWriteEnabled();
  m_dimPt = point;
}

OdGePoint3d OdDbDimCoor::getEndPt() const {
  assertReadEnabled();
  return m_endPt;
}

double OdDbDimCoor::getTxtHeight() const {
  assertReadEnabled();
  return m_txtHeight;
}

double OdDbDimCoor::getTxtOffsetX() const {
  assertReadEnabled();
  return m_txtOffsetX;
}

double OdDbDimCoor::getTxtOffsetY() const {
  assertReadEnabled();
  return m_txtOffsetY;
}

double OdDbDimCoor::getTxtGap() const {
  assertReadEnabled();
  return m_txtGap;
}

OdString OdDbDimCoor::getXText() const {
  assertReadEnabled();
  return m_xText;
}

void OdDbDimCoor::setXText(const OdString& text) {
  assertWriteEnabled();
  m_xText = text;
}

OdString OdDbDimCoor::getYText() const {
  assertReadEnabled();
  return m_yText;
}

void OdDbDimCoor::setYText(const OdString& text) {
  assertWriteEnabled();
  m_yText = text;
}

OdString OdDbDimCoor::getXFormat() const {
  assertReadEnabled();
  return m_xFormat;
}

OdString OdDbDimCoor::getYFormat() const {
  assertReadEnabled();
  return m_yFormat;
}

bool OdDbDimCoor::getXUp() const {
  assertReadEnabled();
  return m_xUp;
}

void OdDbDimCoor::setXUp(bool xUp) {
  assertWriteEnabled();
  m_xUp = xUp;
}

OdCmColor OdDbDimCoor::getTxtColor() const {
  assertReadEnabled();
  return m_txtColor;
}

void OdDbDimCoor::setTxtColor(const OdCmColor& color) {
  assertWriteEnabled();
  m_txtColor = color;
}

OdCmColor OdDbDimCoor::getDimColor() const {
  assertReadEnabled();
  return m_dimColor;
}

void OdDbDimCoor::setColor(const OdCmColor& color, bool doSubents) {
  assertWriteEnabled();
  m_dimColor = color;
  OdDbEntity::setColor(color, doSubents);
}

// ---------------------------------------------------------------------------------------------
// Texts and shoulder

OdString OdDbDimCoor::GetXName() const {
  assertReadEnabled();
  return custents::formatCoordinate(m_xFormat, m_startPt.x);
}

OdString OdDbDimCoor::GetYName() const {
  assertReadEnabled();
  return custents::formatCoordinate(m_yFormat, m_startPt.y);
}

OdString OdDbDimCoor::shownXText() const {
  return m_xText.isEmpty() ? GetXName() : m_xText;
}

OdString OdDbDimCoor::shownYText() const {
  return m_yText.isEmpty() ? GetYName() : m_yText;
}

int OdDbDimCoor::longestShownText() const {
  return std::max(shownXText().getLength(), shownYText().getLength());
}

int OdDbDimCoor::GetTextMaxLength() {
  assertWriteEnabled();
  m_xText = shownXText();
  m_yText = shownYText();
  return std::max(m_xText.getLength(), m_yText.getLength());
}

OdGePoint3d OdDbDimCoor::currentShoulderEnd() const {
  return custents::shoulderEnd(m_startPt, m_dimPt, longestShownText(), m_txtHeight);
}

void OdDbDimCoor::setTxtAcc() {
  assertWriteEnabled();
  const int precision = custents::profileCoordinatePrecision();
  m_xFormat = custents::coordinateFormat(custents::kCoordinateXPrefix, precision);
  m_yFormat = custents::coordinateFormat(custents::kCoordinateYPrefix, precision);
  m_xText = custents::formatCoordinate(m_xFormat, m_xUp ? m_startPt.y : m_startPt.x);
  m_yText = custents::formatCoordinate(m_yFormat, m_xUp ? m_startPt.x : m_startPt.y);
}

OdDbLinePtr OdDbDimCoor::newLine(const OdGePoint3d& from, const OdGePoint3d& to) const {
  return custents::newDimensionLine(this, m_dimColor, from, to);
}

OdDbLinePtr OdDbDimCoor::getline() const {
  assertReadEnabled();
  return newLine(m_startPt, m_dimPt);
}

OdDbLinePtr OdDbDimCoor::getArrow() {
  assertWriteEnabled();
  GetTextMaxLength();
  m_endPt = currentShoulderEnd();
  return newLine(m_dimPt, m_endPt);
}

OdDbObjectId OdDbDimCoor::getCurTextStyle(OdDbDatabasePtr database, double priorSize,
                                          const OdString& faceName, const OdString& fontFile,
                                          int bold, int italic, double nameSize) const {
  return custents::getCurTextStyle(database, priorSize, faceName, fontFile, bold, italic, nameSize);
}

OdDbTextPtr OdDbDimCoor::newText(const OdString& contents, bool above) const {
  const OdGePoint3d endPt = currentShoulderEnd();
  if (!(std::isfinite(m_txtHeight) && m_txtHeight > 0.0) || !odgeIsFinite(m_startPt) ||
      !odgeIsFinite(m_dimPt) || !odgeIsFinite(endPt) || !std::isfinite(m_txtOffsetX) ||
      !std::isfinite(m_txtGap))
    return OdDbTextPtr();
  OdDbTextPtr text = custents::createStandardEntity<OdDbText>(OD_T("Text"));
  text->setPropertiesFrom(this);
  text->setColor(m_txtColor);
  text->setHeight(m_txtHeight);
  text->setTextString(contents);
  // Right of the measured point the texts start at the bend; left of it they are centred on
  // the shoulder's far end.
  const bool right = endPt.x > m_startPt.x;
  OdGePoint3d base = right ? m_dimPt : endPt;
  base.x += m_txtOffsetX;
  base.y += above ? m_txtGap : -(m_txtGap + m_txtHeight);
  text->setHorizontalMode(right ? OdDb::kTextLeft : OdDb::kTextCenter);
  text->setVerticalMode(above ? OdDb::kTextBottom : OdDb::kTextTop);
  if (OdDbDatabase* db = database()) {
    try {
      text->setTextStyle(
          getCurTextStyle(OdDbDatabasePtr(db), 0.2, OD_T("hztxt"), OD_T("hztxt.shx"), 0, 0, 12.0));
    } catch (const OdError&) {
      // A drawing whose style table cannot take the style shows the text in the default style.
    }
  }
  text->setPosition(base);
  text->setAlignmentPoint(base);
  return text;
}

OdDbTextPtr OdDbDimCoor::getXTextObj() const {
  assertReadEnabled();
  return newText(shownXText(), true);
}

OdDbTextPtr OdDbDimCoor::getYTextObj() const {
  assertReadEnabled();
  return newText(shownYText(), false);
}

// ---------------------------------------------------------------------------------------------
// Filing

void OdDbDimCoor::dwgOutFields(OdDbDwgFiler* filer) const {
  assertReadEnabled();
  OdDbEntity::dwgOutFields(filer);
  filer->wrDouble(s_kCurrentVersion);
  filer->wrPoint3d(m_startPt);
  filer->wrPoint3d(m_dimPt);
  filer->wrPoint3d(m_endPt);
  filer->wrDouble(m_txtHeight);
  filer->wrDouble(m_txtOffsetX);
  filer->wrDouble(m_txtOffsetY);
  filer->wrDouble(m_txtGap);
  filer->wrBool(m_xUp);
  filer->wrString(m_xText);
  filer->wrString(m_yText);
  m_dimColor.dwgOut(filer);
  m_txtColor.dwgOut(filer);
}

OdResult OdDbDimCoor::dwgInFields(OdDbDwgFiler* filer) {
  assertWriteEnabled();
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  const double version = filer->rdDouble();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  // Small rounding in a stored version is tolerated; NaN and infinities are refused with the
  // newer versions.
  if (!(version <= s_kCurrentVersion + 1e-10) || !std::isfinite(version))
    return custents::kRefusedVersion;
  const OdGePoint3d startPt = filer->rdPoint3d();
  const OdGePoint3d dimPt = filer->rdPoint3d();
  const OdGePoint3d endPt = filer->rdPoint3d();
  const double txtHeight = filer->rdDouble();
  const double txtOffsetX = filer->rdDouble();
  const double txtOffsetY = filer->rdDouble();
  const double txtGap = filer->rdDouble();
  const bool xUp = filer->rdBool();
  const OdString xText = filer->rdString();
  const OdString yText = filer->rdString();
  OdCmColor dimColor = m_dimColor;
  OdCmColor txtColor = m_txtColor;
  // Colours came with version 3.0; older drawings keep the defaults.
  if (version == s_kCurrentVersion) {
    dimColor.dwgIn(filer);
    txtColor.dwgIn(filer);
  }
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!custents::allFinite(startPt, dimPt, endPt, txtHeight, txtOffsetX, txtOffsetY, txtGap))
    return custents::kDamagedStream;
  m_startPt = startPt;
  m_dimPt = dimPt;
  m_endPt = endPt;
  m_txtHeight = txtHeight;
  m_txtOffsetX = txtOffsetX;
  m_txtOffsetY = txtOffsetY;
  m_txtGap = txtGap;
  m_xUp = xUp;
  m_xText = xText;
  m_yText = yText;
  m_dimColor = dimColor;
  m_txtColor = txtColor;
  return eOk;
}

OdResult OdDbDimCoor::dxfInFields(OdDbDxfFiler* filer) {
  return custents::refuseDxfIn(this, filer);
}

// ---------------------------------------------------------------------------------------------
// Drawing and editing

bool OdDbDimCoor::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  const OdGePoint3d endPt = currentShoulderEnd();
  worldDraw->subEntityTraits().setTrueColor(m_dimColor.entityColor());
  const OdGePoint3d leader[2] = {m_startPt, m_dimPt};
  worldDraw->geometry().polyline(2, leader);
  const OdGePoint3d shoulder[2] = {m_dimPt, endPt};
  worldDraw->geometry().polyline(2, shoulder);
  worldDraw->subEntityTraits().setTrueColor(m_txtColor.entityColor());
  for (const OdDbTextPtr& text : {getXTextObj(), getYTextObj()})
    if (!text.isNull())
      text->worldDraw(worldDraw);
  return true;
}

OdResult OdDbDimCoor::subTransformBy(const OdGeMatrix3d& xform) {
  assertWriteEnabled();
  m_startPt.transformBy(xform);
  m_dimPt.transformBy(xform);
  m_endPt.transformBy(xform);
  return eOk;
}

OdResult OdDbDimCoor::subExplode(OdRxObjectPtrArray& entitySet) const {
  assertReadEnabled();
  entitySet.append(getline());
  entitySet.append(newLine(m_dimPt, currentShoulderEnd()));
  for (const OdDbTextPtr& text : {getXTextObj(), getYTextObj()})
    if (!text.isNull())
      entitySet.append(text);
  return eOk;
}

OdResult OdDbDimCoor::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker /*gsSelectionMark*/,
                                        const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                                        const OdGeMatrix3d& /*xWorldToEye*/,
                                        OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  custents::appendLeaderSnaps(osnapMode, m_startPt, m_dimPt, pickPoint, lastPoint, snapPoints);
  return eOk;
}

OdResult OdDbDimCoor::subGetGripPoints(OdDbGripDataPtrArray& grips, double /*curViewUnitSize*/,
                                       int /*gripSize*/, const OdGeVector3d& /*curViewDir*/,
                                       int /*bitFlags*/) const {
  assertReadEnabled();
  OdDbGripDataPtr grip(new OdDbGripData());
  grip->setGripPoint(m_startPt);
  grip->setAppData(reinterpret_cast<void*>(OdIntPtr(0)));
  grips.append(grip);
  return eOk;
}

OdResult OdDbDimCoor::subMoveGripPointsAt(const OdDbVoidPtrArray& grips, const OdGeVector3d& offset,
                                          int /*bitFlags*/) {
  assertWriteEnabled();
  for (unsigned int i = 0; i < grips.size(); ++i) {
    if (reinterpret_cast<OdIntPtr>(grips.at(i)) != 0)
      continue;
    m_startPt += offset;
    setTxtAcc();
  }
  return eOk;
}
