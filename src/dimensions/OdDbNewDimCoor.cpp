#include "OdDbNewDimCoor.h"

#include "DbDatabase.h"
#include "DbFiler.h"
#include "Ge/GeFinite.h"
#include "Gi/GiWorldDraw.h"
#include "OdError.h"
#include "OdDbDimCoor.h"
#include "common/CustFiling.h"
#include "common/NotLoaded.h"

#include <algorithm>
#include <cmath>

namespace {

/// Texts with a height below this are ignored, as the dimension base ignores them.
const double kMinTextHeight = 9.9e-9;

OdDbMTextPtr newText() {
  OdDbMTextPtr text = custents::createStandardEntity<OdDbMText>(OD_T("MText"));
  text->setColor(custents::defaultCoordinateColor());
  return text;
}

OdDbMTextPtr copyOf(const OdDbMText* text) {
  return OdDbMText::cast(text->clone().get());
}

/// Equal up to the rounding that laying out through a UCS and back brings in.
bool nearlyEqual(const OdGePoint3d& a, const OdGePoint3d& b) {
  const double scale = 1.0 + std::max({std::fabs(a.x), std::fabs(a.y), std::fabs(a.z)});
  return a.distanceTo(b) <= 1e-9 * scale;
}

bool nearlyEqual(const OdGeVector3d& a, const OdGeVector3d& b) {
  return (a - b).length() <= 1e-9;
}

/// Text heights too: carried through a frame whose axes are unit length only up to rounding, a
/// height is scaled by a factor an ulp or so away from 1.
bool nearlyEqual(double a, double b) {
  return std::fabs(a - b) <= 1e-9 * std::max(std::fabs(a), std::fabs(b));
}

bool sameLayout(const OdDbMText& a, const OdDbMText& b) {
  return a.contents() == b.contents() && a.attachment() == b.attachment() &&
         nearlyEqual(a.textHeight(), b.textHeight()) && nearlyEqual(a.location(), b.location()) &&
         nearlyEqual(a.direction(), b.direction()) && nearlyEqual(a.normal(), b.normal());
}

/// Gives a text read from a stream the drawing it now belongs to, for style and layer look-ups,
/// while keeping the properties it was read with (attaching alone would reset them to the
/// drawing's current ones, and a text's colour and height would not survive a reload).
void attachToDatabase(OdDbMText* text, OdDbDatabase* database) {
  if (!database)
    return;
  const OdCmColor color = text->color();
  const OdDbObjectId layerId = text->layerId();
  const OdDbObjectId linetypeId = text->linetypeId();
  const double linetypeScale = text->linetypeScale();
  const OdDb::LineWeight lineWeight = text->lineWeight();
  const double textHeight = text->textHeight();
  const OdDbObjectId styleId = text->textStyle();
  text->setDatabaseDefaults(database, false);
  text->setColor(color);
  if (!layerId.isNull())
    text->setLayer(layerId);
  if (!linetypeId.isNull())
    text->setLinetype(linetypeId);
  text->setLinetypeScale(linetypeScale);
  text->setLineWeight(lineWeight);
  text->setTextHeight(textHeight);
  if (!styleId.isNull())
    text->setTextStyle(styleId);
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Data

OdDbNewDimCoor::OdDbNewDimCoor()
    : m_xFormat(custents::coordinateFormat(custents::kCoordinateXPrefix,
                                           custents::kDefaultCoordinatePrecision)),
      m_yFormat(custents::coordinateFormat(custents::kCoordinateYPrefix,
                                           custents::kDefaultCoordinatePrecision)),
      m_dimColor(custents::defaultCoordinateColor()), m_xTextObj(newText()), m_yTextObj(newText()),
      m_thirdTextObj(newText()) {
  buildShoulder();
}

OdGePoint3d OdDbNewDimCoor::getStartPt() const {
  assertReadEnabled();
  return m_startPt;
}

void OdDbNewDimCoor::setStartPt(const OdGePoint3d& point) {
  assertWriteEnabled();
  m_startPt = point;
  buildShoulder();
}

OdGePoint3d OdDbNewDimCoor::getDimPt() const {
  assertReadEnabled();
  return m_dimPt;
}

void OdDbNewDimCoor::setDimPt(const OdGePoint3d& point) {
  assertWriteEnabled();
  m_dimPt = point;
  buildShoulder();
}

OdGePoint3d OdDbNewDimCoor::getEndPt() const {
  assertReadEnabled();
  return m_endPt;
}

bool OdDbNewDimCoor::getXUp() const {
  assertReadEnabled();
  return m_xUp;
}

void OdDbNewDimCoor::setXUp(bool xUp) {
  assertWriteEnabled();
  m_xUp = xUp;
}

OdString OdDbNewDimCoor::getXFormat() const {
  assertReadEnabled();
  return m_xFormat;
}

OdString OdDbNewDimCoor::getYFormat() const {
  assertReadEnabled();
  return m_yFormat;
}

OdCmColor OdDbNewDimCoor::dimColor() const {
  assertReadEnabled();
  return m_dimColor;
}

void OdDbNewDimCoor::setColor(const OdCmColor& color, bool doSubents) {
  assertWriteEnabled();
  m_dimColor = color;
  OdDbEntity::setColor(color, doSubents);
}

OdDbMTextPtr OdDbNewDimCoor::getXTextObj() const {
  assertReadEnabled();
  return m_xTextObj;
}

OdDbMTextPtr OdDbNewDimCoor::getYTextObj() const {
  assertReadEnabled();
  return m_yTextObj;
}

OdDbMTextPtr OdDbNewDimCoor::getThirdTextObj() const {
  assertReadEnabled();
  return m_thirdTextObj;
}

void OdDbNewDimCoor::setXtext(const OdString& text) {
  assertWriteEnabled();
  m_xTextObj->setContents(text);
  buildShoulder();
}

void OdDbNewDimCoor::setYtext(const OdString& text) {
  assertWriteEnabled();
  m_yTextObj->setContents(text);
  buildShoulder();
}

// ---------------------------------------------------------------------------------------------
// Texts and layout

OdString OdDbNewDimCoor::GetXName() const {
  assertReadEnabled();
  return custents::formatCoordinate(m_xFormat, m_startPt.x);
}

OdString OdDbNewDimCoor::GetYName() const {
  assertReadEnabled();
  return custents::formatCoordinate(m_yFormat, m_startPt.y);
}

int OdDbNewDimCoor::GetTextMaxLength() {
  assertWriteEnabled();
  if (m_xTextObj->contents().isEmpty())
    m_xTextObj->setContents(custents::formatCoordinate(m_xFormat, m_startPt.x));
  if (m_yTextObj->contents().isEmpty())
    m_yTextObj->setContents(custents::formatCoordinate(m_yFormat, m_startPt.y));
  return std::max(m_xTextObj->contents().getLength(), m_yTextObj->contents().getLength());
}

void OdDbNewDimCoor::setTxtAcc() {
  assertWriteEnabled();
  const int precision = custents::profileCoordinatePrecision();
  m_xFormat = custents::coordinateFormat(custents::kCoordinateXPrefix, precision);
  m_yFormat = custents::coordinateFormat(custents::kCoordinateYPrefix, precision);
  m_xTextObj->setContents(custents::formatCoordinate(m_xFormat, m_xUp ? m_startPt.y : m_startPt.x));
  m_yTextObj->setContents(custents::formatCoordinate(m_yFormat, m_xUp ? m_startPt.x : m_startPt.y));
  buildShoulder();
}

OdGeMatrix3d OdDbNewDimCoor::ucsToWorld() const {
  const OdDbDatabase* db = database();
  return db ? db->getUcsToWorldMatrix() : OdGeMatrix3d::kIdentity;
}

void OdDbNewDimCoor::setArrow() {
  assertWriteEnabled();
  buildShoulder();
}

OdGeMatrix3d OdDbNewDimCoor::frameOfTexts() const {
  const OdGeVector3d xAxis = m_xTextObj->direction();
  const OdGeVector3d zAxis = m_xTextObj->normal();
  return OdGeMatrix3d::alignCoordSys(OdGePoint3d::kOrigin, OdGeVector3d::kXAxis,
                                     OdGeVector3d::kYAxis, OdGeVector3d::kZAxis,
                                     OdGePoint3d::kOrigin, xAxis, zAxis.crossProduct(xAxis), zAxis);
}

void OdDbNewDimCoor::buildShoulder() {
  buildShoulder(ucsToWorld());
}

void OdDbNewDimCoor::buildShoulder(const OdGeMatrix3d& frame) {
  const int longest = GetTextMaxLength();
  OdGeMatrix3d toWorld = frame;
  OdGeMatrix3d toUcs;
  if (!toWorld.inverse(toUcs, 1e-12))
    toWorld = toUcs = OdGeMatrix3d::kIdentity;
  OdGePoint3d startPt = m_startPt;
  OdGePoint3d dimPt = m_dimPt;
  startPt.transformBy(toUcs);
  dimPt.transformBy(toUcs);
  OdGePoint3d endPt = custents::shoulderEnd(startPt, dimPt, longest, m_xTextObj->textHeight());
  placeTexts(startPt, dimPt, endPt, toWorld);
  m_endPt = endPt.transformBy(toWorld);
}

void OdDbNewDimCoor::updateTxtPosition() {
  assertWriteEnabled();
  OdGeMatrix3d toWorld = ucsToWorld();
  OdGeMatrix3d toUcs;
  if (!toWorld.inverse(toUcs, 1e-12))
    toWorld = toUcs = OdGeMatrix3d::kIdentity;
  OdGePoint3d startPt = m_startPt;
  OdGePoint3d dimPt = m_dimPt;
  OdGePoint3d endPt = m_endPt;
  placeTexts(startPt.transformBy(toUcs), dimPt.transformBy(toUcs), endPt.transformBy(toUcs),
             toWorld);
}

void OdDbNewDimCoor::placeTexts(const OdGePoint3d& startPt, const OdGePoint3d& dimPt,
                                const OdGePoint3d& endPt, const OdGeMatrix3d& toWorld) {
  // Points from a damaged drawing may not be numbers; the texts then stay where they were.
  if (!odgeIsFinite(startPt) || !odgeIsFinite(dimPt) || !odgeIsFinite(endPt))
    return;
  const double h = m_xTextObj->textHeight();
  const OdGePoint3d base = endPt.x > startPt.x ? dimPt : endPt;
  struct Placement {
    OdDbMText* text;
    double rise;
    OdDbMText::AttachmentPoint attachment;
  } placements[] = {
      {m_xTextObj.get(), h * 0.5, OdDbMText::kBottomLeft},
      // The Y text mirrors the X text about the shoulder.
      {m_yTextObj.get(), -h * 0.5, OdDbMText::kTopLeft},
      // The note line follows the Y text after half a line's gap.
      {m_thirdTextObj.get(), -h * 2.0, OdDbMText::kTopLeft},
  };
  for (const Placement& p : placements) {
    // Laid out flat in the UCS, then carried into the world with the UCS.
    p.text->setNormal(OdGeVector3d::kZAxis);
    p.text->setDirection(OdGeVector3d::kXAxis);
    p.text->setAttachment(p.attachment);
    p.text->setLocation(OdGePoint3d(base.x + h * 2.0 / 3.0, base.y + p.rise, base.z));
    p.text->transformBy(toWorld);
  }
}

OdDbLinePtr OdDbNewDimCoor::newLine(const OdGePoint3d& from, const OdGePoint3d& to) const {
  return custents::newDimensionLine(this, m_dimColor, from, to);
}

OdDbLinePtr OdDbNewDimCoor::getline() const {
  assertReadEnabled();
  return newLine(m_startPt, m_dimPt);
}

// ---------------------------------------------------------------------------------------------
// Text operations of the dimension base

OdResult OdDbNewDimCoor::subSuperExplode(OdArray<OdRxObjectPtr>& entitySet) const {
  assertReadEnabled();
  OdRxObjectPtrArray pieces;
  const OdResult result = subExplode(pieces);
  if (result != eOk)
    return result;
  for (const OdRxObjectPtr& piece : pieces) {
    OdDbMTextPtr text = OdDbMText::cast(piece.get());
    if (text.isNull()) {
      entitySet.append(piece);
      continue;
    }
    OdRxObjectPtrArray lines;
    const OdResult exploded = text->explode(lines);
    if (exploded != eOk)
      return exploded;
    for (const OdRxObjectPtr& line : lines)
      entitySet.append(line);
  }
  return eOk;
}

bool OdDbNewDimCoor::setDimensionText(const OdString& text, OdSmartPtr<OdDbMText>& textObj) {
  assertWriteEnabled();
  if (textObj.isNull())
    return false;
  textObj->setContents(text);
  buildShoulder();
  return true;
}

bool OdDbNewDimCoor::editDimensionText(OdSmartPtr<OdDbMText>& textObj,
                                       OdSmartPtr<OdDbMText> editedText) {
  assertWriteEnabled();
  if (textObj.isNull() || editedText.isNull())
    return false;
  textObj->setContents(editedText->contents());
  const double height = editedText->textHeight();
  setFontHeight(textObj, height);
  setTextHeight(height);
  buildShoulder();
  return true;
}

void OdDbNewDimCoor::setTxtStyleId(OdDbObjectId styleId) {
  assertWriteEnabled();
  for (OdDbMText* text : {m_xTextObj.get(), m_yTextObj.get(), m_thirdTextObj.get()})
    text->setTextStyle(styleId);
}

void OdDbNewDimCoor::setColorText(OdSmartPtr<OdDbMText>& textObj, OdCmColor& color) {
  assertWriteEnabled();
  if (!textObj.isNull()) {
    OdDbCustomDimensionBase::setColorText(textObj, color);
    return;
  }
  for (OdDbMTextPtr* own : {&m_xTextObj, &m_yTextObj, &m_thirdTextObj})
    OdDbCustomDimensionBase::setColorText(*own, color);
}

void OdDbNewDimCoor::setFontHeight(OdSmartPtr<OdDbMText>& textObj, double height) {
  assertWriteEnabled();
  if (textObj.isNull() || !std::isfinite(height) || height < kMinTextHeight)
    return;
  textObj->setTextHeight(height);
  buildShoulder();
}

void OdDbNewDimCoor::setTextHeight(double height) {
  assertWriteEnabled();
  for (OdDbMTextPtr* own : {&m_xTextObj, &m_yTextObj, &m_thirdTextObj})
    setFontHeight(*own, height);
}

// ---------------------------------------------------------------------------------------------
// Filing

void OdDbNewDimCoor::dwgOutFields(OdDbDwgFiler* filer) const {
  assertReadEnabled();
  OdDbEntity::dwgOutFields(filer);
  filer->wrDouble(s_kCurrentVersion);
  filer->wrPoint3d(m_startPt);
  filer->wrPoint3d(m_dimPt);
  filer->wrPoint3d(m_endPt);
  filer->wrBool(m_xUp);
  m_dimColor.dwgOut(filer);
  m_xTextObj->dwgOutFields(filer);
  m_yTextObj->dwgOutFields(filer);
  m_thirdTextObj->dwgOutFields(filer);
}

OdResult OdDbNewDimCoor::dwgInFields(OdDbDwgFiler* filer) {
  assertWriteEnabled();
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  const double version = filer->rdDouble();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (version != s_kCurrentVersion)
    return custents::kRefusedVersion;
  const OdGePoint3d startPt = filer->rdPoint3d();
  const OdGePoint3d dimPt = filer->rdPoint3d();
  const OdGePoint3d endPt = filer->rdPoint3d();
  const bool xUp = filer->rdBool();
  OdCmColor dimColor;
  dimColor.dwgIn(filer);
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!custents::allFinite(startPt, dimPt, endPt))
    return custents::kDamagedStream;
  // The texts are read into new objects, so that a stream that fails half-way changes nothing.
  OdDbMTextPtr texts[3];
  for (OdDbMTextPtr& text : texts) {
    text = custents::createStandardEntity<OdDbMText>(OD_T("MText"));
    const OdResult read = text->dwgInFields(filer);
    if (read != eOk)
      return read;
    if (filer->filerStatus() != eOk)
      return filer->filerStatus();
  }
  OdDbDatabase* db = database() ? database() : filer->database();
  try {
    for (OdDbMTextPtr& text : texts)
      attachToDatabase(text.get(), db);
  } catch (const OdError& error) {
    // A text whose stored properties the drawing cannot take back.
    return error.code();
  }
  m_startPt = startPt;
  m_dimPt = dimPt;
  m_endPt = endPt;
  m_xUp = xUp;
  m_dimColor = dimColor;
  // Laid out again, on copies, in the plane it was laid out in when written (not in the
  // reader's UCS). A layout that agrees with the one read up to rounding keeps what was read,
  // so that reading a drawing and writing it again gives the same record.
  m_xTextObj = copyOf(texts[0]);
  m_yTextObj = copyOf(texts[1]);
  m_thirdTextObj = copyOf(texts[2]);
  buildShoulder(frameOfTexts());
  const OdDbMText* laidOut[] = {m_xTextObj.get(), m_yTextObj.get(), m_thirdTextObj.get()};
  bool same = nearlyEqual(m_endPt, endPt);
  for (int i = 0; i < 3 && same; ++i)
    same = sameLayout(*laidOut[i], *texts[i]);
  if (same) {
    m_endPt = endPt;
    m_xTextObj = texts[0];
    m_yTextObj = texts[1];
    m_thirdTextObj = texts[2];
  }
  return eOk;
}

OdResult OdDbNewDimCoor::dxfInFields(OdDbDxfFiler* filer) {
  return custents::refuseDxfIn(this, filer);
}

// ---------------------------------------------------------------------------------------------
// Drawing and editing

bool OdDbNewDimCoor::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  worldDraw->subEntityTraits().setTrueColor(m_dimColor.entityColor());
  const OdGePoint3d leader[2] = {m_startPt, m_dimPt};
  worldDraw->geometry().polyline(2, leader);
  const OdGePoint3d shoulder[2] = {m_dimPt, m_endPt};
  worldDraw->geometry().polyline(2, shoulder);
  for (const OdDbMText* text : {m_xTextObj.get(), m_yTextObj.get(), m_thirdTextObj.get()}) {
    worldDraw->subEntityTraits().setTrueColor(text->color().entityColor());
    text->worldDraw(worldDraw);
  }
  return true;
}

void OdDbNewDimCoor::subSetDatabaseDefaults(OdDbDatabase* database, bool /*doSubents*/) {
  for (OdDbMText* text : {m_xTextObj.get(), m_yTextObj.get(), m_thirdTextObj.get()})
    attachToDatabase(text, database);
}

OdResult OdDbNewDimCoor::subTransformBy(const OdGeMatrix3d& xform) {
  assertWriteEnabled();
  // Each text is tried on a copy first, so that a matrix one of them refuses changes nothing.
  for (const OdDbMText* text : {m_xTextObj.get(), m_yTextObj.get(), m_thirdTextObj.get()}) {
    const OdResult trial = copyOf(text)->transformBy(xform);
    if (trial != eOk)
      return trial;
  }
  for (OdDbMText* text : {m_xTextObj.get(), m_yTextObj.get(), m_thirdTextObj.get()})
    text->transformBy(xform);
  m_startPt.transformBy(xform);
  m_dimPt.transformBy(xform);
  m_endPt.transformBy(xform);
  return eOk;
}

OdResult OdDbNewDimCoor::subExplode(OdRxObjectPtrArray& entitySet) const {
  assertReadEnabled();
  entitySet.append(newLine(m_startPt, m_dimPt));
  entitySet.append(newLine(m_dimPt, m_endPt));
  for (const OdDbMText* text : {m_xTextObj.get(), m_yTextObj.get(), m_thirdTextObj.get()}) {
    if (text->contents().isEmpty())
      continue;
    OdDbMTextPtr piece = copyOf(text);
    piece->setPropertiesFrom(this);
    piece->setColor(text->color());
    entitySet.append(piece);
  }
  return eOk;
}

OdResult OdDbNewDimCoor::subGetOsnapPoints(OdDb::OsnapMode osnapMode,
                                           OdGsMarker /*gsSelectionMark*/,
                                           const OdGePoint3d& pickPoint,
                                           const OdGePoint3d& lastPoint,
                                           const OdGeMatrix3d& /*xWorldToEye*/,
                                           OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  custents::appendLeaderSnaps(osnapMode, m_startPt, m_dimPt, pickPoint, lastPoint, snapPoints);
  return eOk;
}

OdResult OdDbNewDimCoor::subGetGripPoints(OdDbGripDataPtrArray& grips, double /*curViewUnitSize*/,
                                          int /*gripSize*/, const OdGeVector3d& /*curViewDir*/,
                                          int /*bitFlags*/) const {
  assertReadEnabled();
  OdDbGripDataPtr grip(new OdDbGripData());
  grip->setGripPoint(m_startPt);
  grip->setAppData(reinterpret_cast<void*>(OdIntPtr(0)));
  grips.append(grip);
  return eOk;
}

OdResult OdDbNewDimCoor::subMoveGripPointsAt(const OdDbVoidPtrArray& grips,
                                             const OdGeVector3d& offset, int /*bitFlags*/) {
  assertWriteEnabled();
  for (unsigned int i = 0; i < grips.size(); ++i) {
    if (reinterpret_cast<OdIntPtr>(grips.at(i)) != 0)
      continue;
    m_startPt += offset;
    setTxtAcc();
    setArrow();
  }
  return eOk;
}
