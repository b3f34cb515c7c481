#include "DbText.h"
#include "DxfFile/DbDxfGroups.h"
#include "Ge/GeFinite.h"

#include "DbDatabase.h"
#include "DbFiler.h"
#include "DbTextStyleTable.h"
#include "Gi/GiWorldDraw.h"
#include "GiTextMetrics.h"

#include <cmath>
#include <utility>

ODRX_CONS_DEFINE_MEMBERS(OdDbText, OdDbEntity, OD_T("TEXT"))

namespace {

constexpr double kDegreesPerRadian = 180.0 / OdaPI;
/// Steeper slants make glyphs degenerate; the drawing formats stop at 85 degrees too.
constexpr double kMaxOblique = 85.0 / kDegreesPerRadian;

bool isPositive(double value) {
  return std::isfinite(value) && value > 0.0;
}

bool isHorizontalMode(int mode) {
  return mode >= OdDb::kTextLeft && mode <= OdDb::kTextFit;
}

bool isVerticalMode(int mode) {
  return mode >= OdDb::kTextBase && mode <= OdDb::kTextTop;
}

bool isObliqueAngle(double angle) {
  return std::isfinite(angle) && std::fabs(angle) <= kMaxOblique;
}

bool usesBothPoints(OdDb::TextHorzMode mode) {
  return mode == OdDb::kTextAlign || mode == OdDb::kTextFit;
}

/// The baseline direction a rotation gives in the plane of normal.
OdGeVector3d baselineDirection(const OdGeVector3d& normal, double rotation) {
  OdGeVector3d xAxis = normal.perpVector();
  return xAxis.rotateBy(rotation, normal);
}

/// Height of the anchor named by the modes above the baseline, as a fraction of the height.
double anchorRise(OdDb::TextHorzMode horizontalMode, OdDb::TextVertMode verticalMode) {
  if (horizontalMode == OdDb::kTextMid)
    return (OdGiTextMetrics::kCapHeight - OdGiTextMetrics::kDescent) / 2.0;
  switch (verticalMode) {
  case OdDb::kTextBottom:
    return -OdGiTextMetrics::kDescent;
  case OdDb::kTextVertMid:
    return OdGiTextMetrics::kCapHeight / 2.0;
  case OdDb::kTextTop:
    return OdGiTextMetrics::kCapHeight;
  case OdDb::kTextBase:
    break;
  }
  return 0.0;
}

/// Distance of the anchor named by the mode along the baseline, as a fraction of the advance.
double anchorRun(OdDb::TextHorzMode horizontalMode) {
  switch (horizontalMode) {
  case OdDb::kTextCenter:
  case OdDb::kTextMid:
    return 0.5;
  case OdDb::kTextRight:
    return 1.0;
  default:
    return 0.0;
  }
}

} // namespace

OdDbTextLayout oddbTextLayout(OdDb::TextHorzMode horizontalMode, OdDb::TextVertMode verticalMode,
                              const OdGePoint3d& position, const OdGePoint3d& alignmentPoint,
                              const OdGeVector3d& direction, const OdGeVector3d& up, double height,
                              double widthFactor, const OdString& text) {
  OdDbTextLayout layout;
  layout.position = position;
  layout.direction = direction;
  layout.height = height;
  layout.widthFactor = widthFactor;
  if (usesBothPoints(horizontalMode)) {
    const OdGeVector3d baseline = alignmentPoint - position;
    const double length = baseline.length();
    const double natural = odgiTextLineWidth(text, height, widthFactor);
    if (!(length > 1e-10) || !(natural > 0.0) || !std::isfinite(length))
      return layout; // nothing to fit: laid out from the position as left/base
    layout.direction = baseline / length;
    // The advance grows in proportion to the height and to the width factor.
    if (horizontalMode == OdDb::kTextAlign)
      layout.height = height * length / natural;
    else
      layout.widthFactor = widthFactor * length / natural;
    return layout;
  }
  if (horizontalMode == OdDb::kTextLeft && verticalMode == OdDb::kTextBase)
    return layout;
  const double advance = odgiTextLineWidth(text, height, widthFactor);
  layout.position = alignmentPoint - direction * (advance * anchorRun(horizontalMode)) -
                    up * (height * anchorRise(horizontalMode, verticalMode));
  return layout;
}

OdDbText::OdDbText() = default;

// Properties ---------------------------------------------------------------------------------

OdGePoint3d OdDbText::position() const {
  assertReadEnabled();
  return m_position;
}

void OdDbText::setPosition(const OdGePoint3d& position) {
  if (!odgeIsFinite(position))
    throw OdError(eInvalidInput, OD_T("A text's position must be a point"));
  assertWriteEnabled();
  m_position = position;
  adjust();
}

OdGePoint3d OdDbText::alignmentPoint() const {
  assertReadEnabled();
  return m_alignmentPoint;
}

void OdDbText::setAlignmentPoint(const OdGePoint3d& alignmentPoint) {
  if (!odgeIsFinite(alignmentPoint))
    throw OdError(eInvalidInput, OD_T("A text's alignment point must be a point"));
  assertWriteEnabled();
  m_alignmentPoint = alignmentPoint;
  adjust();
}

bool OdDbText::isDefaultAlignment() const {
  assertReadEnabled();
  return m_horizontalMode == OdDb::kTextLeft && m_verticalMode == OdDb::kTextBase;
}

OdDb::TextHorzMode OdDbText::horizontalMode() const {
  assertReadEnabled();
  return m_horizontalMode;
}

void OdDbText::setHorizontalMode(OdDb::TextHorzMode mode) {
  if (!isHorizontalMode(mode))
    throw OdError(eInvalidInput, OD_T("Unknown horizontal text mode"));
  assertWriteEnabled();
  m_horizontalMode = mode;
  adjust();
}

OdDb::TextVertMode OdDbText::verticalMode() const {
  assertReadEnabled();
  return m_verticalMode;
}

void OdDbText::setVerticalMode(OdDb::TextVertMode mode) {
  if (!isVerticalMode(mode))
    throw OdError(eInvalidInput, OD_T("Unknown vertical text mode"));
  assertWriteEnabled();
  m_verticalMode = mode;
  adjust();
}

double OdDbText::height() const {
  assertReadEnabled();
  return m_height;
}

void OdDbText::setHeight(double height) {
  if (!isPositive(height))
    throw OdError(eInvalidInput, OD_T("A text height must be a positive number"));
  assertWriteEnabled();
  m_height = height;
  adjust();
}

double OdDbText::rotation() const {
  assertReadEnabled();
  return m_rotation;
}

void OdDbText::setRotation(double rotation) {
  if (!std::isfinite(rotation))
    throw OdError(eInvalidInput, OD_T("A text rotation must be a number"));
  assertWriteEnabled();
  m_rotation = rotation;
  adjust();
}

double OdDbText::widthFactor() const {
  assertReadEnabled();
  return m_widthFactor;
}

void OdDbText::setWidthFactor(double widthFactor) {
  if (!isPositive(widthFactor))
    throw OdError(eInvalidInput, OD_T("A width factor must be a positive number"));
  assertWriteEnabled();
  m_widthFactor = widthFactor;
  adjust();
}

double OdDbText::oblique() const {
  assertReadEnabled();
  return m_oblique;
}

void OdDbText::setOblique(double oblique) {
  if (!isObliqueAngle(oblique))
    throw OdError(eInvalidInput, OD_T("An oblique angle lies within 85 degrees of upright"));
  assertWriteEnabled();
  m_oblique = oblique;
}

OdString OdDbText::textString() const {
  assertReadEnabled();
  return m_text;
}

void OdDbText::setTextString(const OdString& text) {
  assertWriteEnabled();
  m_text = text;
  adjust();
}

OdDbObjectId OdDbText::textStyle() const {
  assertReadEnabled();
  return m_textStyleId;
}

void OdDbText::setTextStyle(OdDbObjectId textStyleId) {
  assertWriteEnabled();
  m_textStyleId = textStyleId;
}

double OdDbText::thickness() const {
  assertReadEnabled();
  return m_thickness;
}

void OdDbText::setThickness(double thickness) {
  if (!std::isfinite(thickness))
    throw OdError(eInvalidInput, OD_T("A thickness must be a number"));
  assertWriteEnabled();
  m_thickness = thickness;
}

OdGeVector3d OdDbText::normal() const {
  assertReadEnabled();
  return m_normal;
}

void OdDbText::setNormal(const OdGeVector3d& normal) {
  if (!odgeIsFinite(normal) || normal.isZeroLength())
    throw OdError(eInvalidInput, OD_T("A text's normal must be a non-zero vector"));
  assertWriteEnabled();
  m_normal = normal.normal();
  adjust();
}

void OdDbText::adjustAlignment(OdDbDatabase* /*database*/) {
  assertWriteEnabled();
  adjust();
}

OdDbTextLayout OdDbText::layout() const {
  const OdGeVector3d direction = baselineDirection(m_normal, m_rotation);
  const OdGeVector3d up = m_normal.crossProduct(direction);
  return oddbTextLayout(m_horizontalMode, m_verticalMode, m_position, m_alignmentPoint, direction,
                        up, m_height, m_widthFactor, m_text);
}

void OdDbText::adjust() {
  if (isDefaultAlignment())
    return;
  const OdDbTextLayout laid = layout();
  m_position = laid.position;
  if (!usesBothPoints(m_horizontalMode))
    return;
  // Align and fit store what they derive, as drawing files hold it.
  m_height = laid.height;
  m_widthFactor = laid.widthFactor;
  const OdGeVector3d inPlane = laid.direction.orthoProject(m_normal);
  if (!inPlane.isZeroLength())
    m_rotation = m_normal.perpVector().angleTo(inPlane, m_normal);
}

void OdDbText::subSetDatabaseDefaults(OdDbDatabase* database, bool /*doSubents*/) {
  m_textStyleId = database->getTEXTSTYLE();
}

// Filing -------------------------------------------------------------------------------------

void OdDbText::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbEntity::dwgOutFields(filer);
  filer->wrPoint3d(m_position);
  filer->wrPoint3d(m_alignmentPoint);
  filer->wrVector3d(m_normal);
  filer->wrDouble(m_thickness);
  filer->wrDouble(m_oblique);
  filer->wrDouble(m_rotation);
  filer->wrDouble(m_height);
  filer->wrDouble(m_widthFactor);
  filer->wrString(m_text);
  filer->wrInt16(static_cast<OdInt16>(m_horizontalMode));
  filer->wrInt16(static_cast<OdInt16>(m_verticalMode));
  filer->wrHardPointerId(m_textStyleId);
}

OdResult OdDbText::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdGePoint3d position = filer->rdPoint3d();
  const OdGePoint3d alignmentPoint = filer->rdPoint3d();
  const OdGeVector3d normal = filer->rdVector3d();
  const double thickness = filer->rdDouble();
  const double oblique = filer->rdDouble();
  const double rotation = filer->rdDouble();
  const double height = filer->rdDouble();
  const double widthFactor = filer->rdDouble();
  const OdString text = filer->rdString();
  const OdInt16 horizontalMode = filer->rdInt16();
  const OdInt16 verticalMode = filer->rdInt16();
  const OdDbObjectId textStyleId = filer->rdHardPointerId();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!odgeIsFinite(position) || !odgeIsFinite(alignmentPoint) || !odgeIsFinite(normal) ||
      normal.isZeroLength() || !std::isfinite(thickness) || !isObliqueAngle(oblique) ||
      !std::isfinite(rotation) || !isPositive(height) || !isPositive(widthFactor) ||
      !isHorizontalMode(horizontalMode) || !isVerticalMode(verticalMode))
    return eDwgObjectImproperlyRead;
  assertWriteEnabled();
  m_position = position;
  m_alignmentPoint = alignmentPoint;
  m_normal = normal.normal();
  m_thickness = thickness;
  m_oblique = oblique;
  m_rotation = rotation;
  m_height = height;
  m_widthFactor = widthFactor;
  m_text = text;
  m_horizontalMode = static_cast<OdDb::TextHorzMode>(horizontalMode);
  m_verticalMode = static_cast<OdDb::TextVertMode>(verticalMode);
  m_textStyleId = textStyleId;
  return eOk;
}

void OdDbText::dxfOutFields(OdDbDxfFiler* filer) const {
  OdDbEntity::dxfOutFields(filer);
  const bool all = filer->includesDefaultValues();
  OdString styleName(OD_T("Standard"));
  if (!m_textStyleId.isNull()) {
    OdDbObjectPtr style = m_textStyleId.openObject();
    OdDbTextStyleTableRecordPtr record = OdDbTextStyleTableRecord::cast(style);
    if (!record.isNull())
      styleName = record->getName();
  }
  filer->wrSubclassMarker(OD_T("AcDbText"));
  filer->wrPoint3d(10, m_filedPosition.toFile(m_position, m_normal));
  if (m_thickness != 0.0 || all)
    filer->wrDouble(39, m_thickness);
  filer->wrDouble(40, m_height);
  filer->wrString(1, m_text);
  if (m_rotation != 0.0 || all)
    filer->wrAngle(50, m_rotation);
  if (m_widthFactor != 1.0 || all)
    filer->wrDouble(41, m_widthFactor);
  if (m_oblique != 0.0 || all)
    filer->wrAngle(51, m_oblique);
  filer->wrString(7, styleName);
  if (m_horizontalMode != OdDb::kTextLeft || all)
    filer->wrInt16(72, static_cast<OdInt16>(m_horizontalMode));
  if (!(m_horizontalMode == OdDb::kTextLeft && m_verticalMode == OdDb::kTextBase) || all)
    filer->wrPoint3d(11, m_filedAlignmentPoint.toFile(m_alignmentPoint, m_normal));
  if (m_normal != OdGeVector3d::kZAxis || all)
    filer->wrVector3d(210, m_normal);
  // The format repeats the subclass marker before the vertical mode.
  filer->wrSubclassMarker(OD_T("AcDbText"));
  if (m_verticalMode != OdDb::kTextBase || all)
    filer->wrInt16(73, static_cast<OdInt16>(m_verticalMode));
}

OdResult OdDbText::dxfInFields(OdDbDxfFiler* filer) {
  const OdResult base = OdDbEntity::dxfInFields(filer);
  if (base != eOk)
    return base;
  if (!filer->atSubclassData(OD_T("AcDbText")))
    return eInvalidDxfCode;
  OdGePoint3d position;
  OdGePoint3d alignmentPoint;
  bool hasAlignmentPoint = false;
  OdGeVector3d normal(0.0, 0.0, 1.0);
  double thickness = 0.0;
  double height = 0.0;
  double rotation = 0.0;
  double widthFactor = 1.0;
  double oblique = 0.0;
  OdString text;
  OdString styleName;
  bool hasStyle = false;
  int horizontalMode = OdDb::kTextLeft;
  int verticalMode = OdDb::kTextBase;
  const OdResult groups = odDbReadDxfSubclassGroups(
      filer,
      [&](int code) {
        switch (code) {
        case 10:
          filer->rdPoint3d(position);
          break;
        case 11:
          filer->rdPoint3d(alignmentPoint);
          hasAlignmentPoint = true;
          break;
        case 39:
          thickness = filer->rdDouble();
          break;
        case 40:
          height = filer->rdDouble();
          break;
        case 1:
          text = filer->rdString();
          break;
        case 50:
          rotation = filer->rdDouble() / kDegreesPerRadian;
          break;
        case 41:
          widthFactor = filer->rdDouble();
          break;
        case 51:
          oblique = filer->rdDouble() / kDegreesPerRadian;
          break;
        case 7:
          styleName = filer->rdString();
          hasStyle = true;
          break;
        case 72:
          horizontalMode = filer->rdInt16();
          break;
        case 73:
          verticalMode = filer->rdInt16();
          break;
        case 210:
          filer->rdVector3d(normal);
          break;
        default:
          break;
        }
      },
      OD_T("AcDbText"));
  if (groups != eOk)
    return groups;
  if (!odgeIsFinite(position) || !odgeIsFinite(alignmentPoint) || !odgeIsFinite(normal) ||
      normal.isZeroLength() || !std::isfinite(thickness) || !isPositive(height) ||
      !std::isfinite(rotation) || !isPositive(widthFactor) || !isObliqueAngle(oblique) ||
      !isHorizontalMode(horizontalMode) || !isVerticalMode(verticalMode))
    return eInvalidInput;
  const OdGeVector3d unitNormal = normal.normal();
  OdDbObjectId textStyleId = m_textStyleId;
  OdDbDatabase* db = filer->database() ? filer->database() : database();
  if (hasStyle && db) {
    OdDbObjectPtr table = db->getTextStyleTableId().openObject();
    OdDbSymbolTablePtr styles = OdDbSymbolTable::cast(table);
    if (!styles.isNull()) {
      const OdDbObjectId found = styles->getAt(styleName);
      if (!found.isNull())
        textStyleId = found;
    }
  }
  m_position = m_filedPosition.read(position, unitNormal);
  m_alignmentPoint =
      hasAlignmentPoint ? m_filedAlignmentPoint.read(alignmentPoint, unitNormal) : m_position;
  m_normal = unitNormal;
  m_thickness = thickness;
  m_height = height;
  m_rotation = rotation;
  m_widthFactor = widthFactor;
  m_oblique = oblique;
  m_text = text;
  m_horizontalMode = static_cast<OdDb::TextHorzMode>(horizontalMode);
  m_verticalMode = static_cast<OdDb::TextVertMode>(verticalMode);
  m_textStyleId = textStyleId;
  return eOk;
}

// Drawing and editing ------------------------------------------------------------------------

bool OdDbText::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  const OdDbTextLayout laid = layout();
  worldDraw->geometry().text(laid.position, m_normal, laid.direction, laid.height, laid.widthFactor,
                             m_oblique, m_text);
  return true;
}

OdResult OdDbText::subGetGripPoints(OdGePoint3dArray& gripPoints) const {
  assertReadEnabled();
  gripPoints.append(m_position);
  if (!isDefaultAlignment())
    gripPoints.append(m_alignmentPoint);
  return eOk;
}

OdResult OdDbText::subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  const int gripCount = isDefaultAlignment() ? 1 : 2;
  for (int index : indices)
    if (index < 0 || index >= gripCount)
      return eInvalidIndex;
  if (indices.isEmpty())
    return eOk;
  assertWriteEnabled();
  bool movePosition = false;
  bool moveAlignment = false;
  for (int index : indices)
    (index == 0 ? movePosition : moveAlignment) = true;
  // The position of a text anchored at its alignment point is derived: dragging it drags the
  // whole text.
  if (movePosition && !isDefaultAlignment() && !usesBothPoints(m_horizontalMode))
    moveAlignment = true;
  if (movePosition)
    m_position += offset;
  if (moveAlignment)
    m_alignmentPoint += offset;
  adjust();
  return eOk;
}

OdResult OdDbText::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker /*gsSelectionMark*/,
                                     const OdGePoint3d& /*pickPoint*/,
                                     const OdGePoint3d& /*lastPoint*/,
                                     const OdGeMatrix3d& /*xWorldToEye*/,
                                     OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  if (osnapMode != OdDb::kOsModeIns)
    return eOk;
  snapPoints.append(m_position);
  if (!isDefaultAlignment())
    snapPoints.append(m_alignmentPoint);
  return eOk;
}

OdResult OdDbText::subTransformBy(const OdGeMatrix3d& xform) {
  // The identity keeps the text as it is: the rotation recomputed from the transformed baseline
  // could come back one ulp off.
  if (xform == OdGeMatrix3d::kIdentity) {
    assertWriteEnabled();
    return eOk;
  }
  const OdGeVector3d direction = baselineDirection(m_normal, m_rotation);
  const OdGeVector3d up = m_normal.crossProduct(direction);
  const OdGeVector3d newDirection = xform * direction;
  const OdGeVector3d newUp = xform * up;
  const OdGeVector3d newExtrusion = xform * m_normal;
  const double determinant = newDirection.dotProduct(newUp.crossProduct(newExtrusion));
  const OdGeVector3d planeNormal = newDirection.crossProduct(newUp);
  if (newDirection.isZeroLength() || planeNormal.isZeroLength() || !odgeIsFinite(planeNormal) ||
      !std::isfinite(determinant) || determinant == 0.0)
    return eInvalidInput;
  // A mirror is kept readable: the baseline runs the other way and the normal is the side the
  // matrix turned the old one to, so the glyphs read as before while the box is mirrored.
  const bool mirrored = determinant < 0.0;
  const OdGeVector3d normal = mirrored ? -planeNormal.normal() : planeNormal.normal();
  const OdGeVector3d baseline = mirrored ? -newDirection : newDirection;
  const OdGeVector3d unitBaseline = baseline.normal();
  const double scaleX = newDirection.length();
  const double scaleY = std::fabs(newUp.dotProduct(normal.crossProduct(unitBaseline)));
  const double scaleZ = std::fabs(determinant) / (scaleX * scaleY);
  if (!isPositive(scaleY) || !isPositive(scaleX * m_widthFactor / scaleY) ||
      !isPositive(m_height * scaleY))
    return eInvalidInput;
  assertWriteEnabled();
  OdGePoint3d position = xform * m_position;
  OdGePoint3d alignmentPoint = xform * m_alignmentPoint;
  if (mirrored) {
    // Left and right swap so that the mirrored anchor still marks the same end of the box.
    switch (m_horizontalMode) {
    case OdDb::kTextLeft:
      if (m_verticalMode == OdDb::kTextBase)
        alignmentPoint = position;
      m_horizontalMode = OdDb::kTextRight;
      break;
    case OdDb::kTextRight:
      m_horizontalMode = OdDb::kTextLeft;
      if (m_verticalMode == OdDb::kTextBase)
        position = alignmentPoint;
      break;
    case OdDb::kTextAlign:
    case OdDb::kTextFit:
      std::swap(position, alignmentPoint);
      break;
    default:
      break;
    }
  }
  m_position = position;
  m_alignmentPoint = alignmentPoint;
  m_normal = normal;
  m_rotation = normal.perpVector().angleTo(unitBaseline, normal);
  m_height *= scaleY;
  m_widthFactor *= scaleX / scaleY;
  m_thickness *= scaleZ;
  adjust();
  return eOk;
}

OdResult OdDbText::subExplode(OdRxObjectPtrArray& /*entitySet*/) const {
  assertReadEnabled();
  return eNotApplicable;
}

OdResult OdDbText::subGetGeomExtents(OdGeExtents3d& extents) const {
  assertReadEnabled();
  const OdDbTextLayout laid = layout();
  OdGePoint3d corners[4];
  if (!odgiTextBox(laid.position, m_normal, laid.direction, laid.height, laid.widthFactor,
                   m_oblique, m_text, corners))
    return eInvalidExtents;
  extents = OdGeExtents3d();
  const OdGeVector3d extrusion = m_normal * m_thickness;
  for (const OdGePoint3d& corner : corners) {
    extents.addPoint(corner);
    extents.addPoint(corner + extrusion);
  }
  return eOk;
}
