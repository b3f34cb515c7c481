#include "DbMText.h"
#include "DxfFile/DbDxfGroups.h"

#include "DbDatabase.h"
#include "DbFiler.h"
#include "DbMTextFormat.h"
#include "DbText.h"
#include "DbTextStyleTable.h"
#include "Ge/GeFinite.h"
#include "Gi/GiWorldDraw.h"
#include "GiTextMetrics.h"

#include <cmath>

ODRX_CONS_DEFINE_MEMBERS(OdDbMText, OdDbEntity, OD_T("MTEXT"))

namespace {

constexpr double kDegreesPerRadian = 180.0 / OdaPI;
/// The range of line spacing factors the drawing formats allow.
constexpr double kMinLineSpacing = 0.25;
constexpr double kMaxLineSpacing = 4.0;
/// Contents longer than this go into the file in chunks of this many characters.
constexpr int kDxfChunk = 250;

bool isPositive(double value) {
  return std::isfinite(value) && value > 0.0;
}

bool isLength(double value) {
  return std::isfinite(value) && value >= 0.0;
}

bool isAttachment(int value) {
  return value >= OdDbMText::kTopLeft && value <= OdDbMText::kBottomRight;
}

bool isFlowDirection(int value) {
  return value >= OdDbMText::kLtoR && value <= OdDbMText::kByStyle;
}

bool isLineSpacing(double value) {
  return std::isfinite(value) && value >= kMinLineSpacing && value <= kMaxLineSpacing;
}

bool isNormal(const OdGeVector3d& normal) {
  return odgeIsFinite(normal) && !normal.isZeroLength();
}

/// The direction projected into the plane of the unit normal and made a unit vector; false
/// when it has no component in the plane.
bool inPlaneDirection(const OdGeVector3d& direction, const OdGeVector3d& unitNormal,
                      OdGeVector3d& result) {
  if (!odgeIsFinite(direction))
    return false;
  // A direction in the plane up to rounding is only made unit length: projecting it again
  // would move its last bits, back and forth on every read, so that reading what was written
  // would never settle.
  const double along = direction.dotProduct(unitNormal);
  const OdGeVector3d projected =
      std::fabs(along) <= 1e-12 * direction.length() ? direction : direction - unitNormal * along;
  if (projected.isZeroLength() || !odgeIsFinite(projected))
    return false;
  result = projected.normal();
  return true;
}

/// The baseline direction a rotation gives in the plane of the unit normal.
OdGeVector3d rotatedDirection(const OdGeVector3d& unitNormal, double rotation) {
  OdGeVector3d xAxis = unitNormal.perpVector();
  return xAxis.rotateBy(rotation, unitNormal);
}

/// Left and right swap, top and bottom stay.
OdDbMText::AttachmentPoint mirroredAttachment(OdDbMText::AttachmentPoint attachment) {
  const int column = (attachment - 1) % 3;
  return static_cast<OdDbMText::AttachmentPoint>(attachment + (2 - column) - column);
}

OdString styleNameOf(OdDbObjectId styleId) {
  if (!styleId.isNull()) {
    OdDbObjectPtr style = styleId.openObject();
    OdDbTextStyleTableRecordPtr record = OdDbTextStyleTableRecord::cast(style);
    if (!record.isNull())
      return record->getName();
  }
  return OdString(OD_T("Standard"));
}

} // namespace

OdDbMText::OdDbMText() = default;

// Properties ---------------------------------------------------------------------------------

OdGePoint3d OdDbMText::location() const {
  assertReadEnabled();
  return m_location;
}

void OdDbMText::setLocation(const OdGePoint3d& location) {
  if (!odgeIsFinite(location))
    throw OdError(eInvalidInput, OD_T("A text's location must be a point"));
  assertWriteEnabled();
  m_location = location;
}

OdGeVector3d OdDbMText::normal() const {
  assertReadEnabled();
  return m_normal;
}

void OdDbMText::setNormal(const OdGeVector3d& normal) {
  if (!isNormal(normal))
    throw OdError(eInvalidInput, OD_T("A text's normal must be a non-zero vector"));
  assertWriteEnabled();
  const double angle = m_normal.perpVector().angleTo(m_direction, m_normal);
  m_normal = normal.normal();
  m_direction = rotatedDirection(m_normal, angle);
}

OdGeVector3d OdDbMText::direction() const {
  assertReadEnabled();
  return m_direction;
}

void OdDbMText::setDirection(const OdGeVector3d& direction) {
  OdGeVector3d unit;
  if (!inPlaneDirection(direction, m_normal, unit))
    throw OdError(eInvalidInput, OD_T("A text's direction must lie partly in its plane"));
  assertWriteEnabled();
  m_direction = unit;
}

double OdDbMText::rotation() const {
  assertReadEnabled();
  return m_normal.perpVector().angleTo(m_direction, m_normal);
}

void OdDbMText::setRotation(double rotation) {
  if (!std::isfinite(rotation))
    throw OdError(eInvalidInput, OD_T("A text rotation must be a number"));
  assertWriteEnabled();
  m_direction = rotatedDirection(m_normal, rotation);
}

double OdDbMText::width() const {
  assertReadEnabled();
  return m_width;
}

void OdDbMText::setWidth(double width) {
  if (!isLength(width))
    throw OdError(eInvalidInput, OD_T("A text width must be a number of 0 or more"));
  assertWriteEnabled();
  m_width = width;
}

double OdDbMText::height() const {
  assertReadEnabled();
  return m_height;
}

void OdDbMText::setHeight(double height) {
  if (!isLength(height))
    throw OdError(eInvalidInput, OD_T("A text box height must be a number of 0 or more"));
  assertWriteEnabled();
  m_height = height;
}

double OdDbMText::textHeight() const {
  assertReadEnabled();
  return m_textHeight;
}

void OdDbMText::setTextHeight(double height) {
  if (!isPositive(height))
    throw OdError(eInvalidInput, OD_T("A text height must be a positive number"));
  assertWriteEnabled();
  m_textHeight = height;
}

OdDbMText::AttachmentPoint OdDbMText::attachment() const {
  assertReadEnabled();
  return m_attachment;
}

void OdDbMText::setAttachment(AttachmentPoint attachment) {
  if (!isAttachment(attachment))
    throw OdError(eInvalidInput, OD_T("An attachment point is 1 to 9"));
  assertWriteEnabled();
  m_attachment = attachment;
}

OdDbMText::FlowDirection OdDbMText::flowDirection() const {
  assertReadEnabled();
  return m_flowDirection;
}

void OdDbMText::setFlowDirection(FlowDirection direction) {
  if (!isFlowDirection(direction))
    throw OdError(eInvalidInput, OD_T("Unknown flow direction"));
  assertWriteEnabled();
  m_flowDirection = direction;
}

double OdDbMText::lineSpacingFactor() const {
  assertReadEnabled();
  return m_lineSpacingFactor;
}

void OdDbMText::setLineSpacingFactor(double factor) {
  if (!isLineSpacing(factor))
    throw OdError(eInvalidInput, OD_T("A line spacing factor lies between 0.25 and 4"));
  assertWriteEnabled();
  m_lineSpacingFactor = factor;
}

OdString OdDbMText::contents() const {
  assertReadEnabled();
  return m_contents;
}

void OdDbMText::setContents(const OdString& contents) {
  assertWriteEnabled();
  m_contents = contents;
}

OdString OdDbMText::text() const {
  assertReadEnabled();
  return oddbMTextPlainText(oddbParseMText(m_contents, m_textHeight));
}

OdDbObjectId OdDbMText::textStyle() const {
  assertReadEnabled();
  return m_textStyleId;
}

void OdDbMText::setTextStyle(OdDbObjectId textStyleId) {
  assertWriteEnabled();
  m_textStyleId = textStyleId;
}

void OdDbMText::subSetDatabaseDefaults(OdDbDatabase* database, bool /*doSubents*/) {
  m_textStyleId = database->getTEXTSTYLE();
  if (isPositive(database->getTEXTSIZE()))
    m_textHeight = database->getTEXTSIZE();
}

// Layout -------------------------------------------------------------------------------------

OdDbMTextLayout OdDbMText::layout() const {
  return oddbLayoutMText(oddbParseMText(m_contents, m_textHeight), m_width, m_lineSpacingFactor,
                         m_attachment);
}

OdGePoint3d OdDbMText::planePoint(double x, double y) const {
  return m_location + m_direction * x + m_normal.crossProduct(m_direction) * y;
}

double OdDbMText::actualWidth() const {
  assertReadEnabled();
  return layout().width;
}

double OdDbMText::actualHeight() const {
  assertReadEnabled();
  return layout().height;
}

std::vector<OdDbMTextLine> OdDbMText::lines() const {
  assertReadEnabled();
  const OdDbMTextLayout laid = layout();
  std::vector<OdDbMTextLine> result;
  result.reserve(laid.lines.size());
  for (const OdDbMTextLayoutLine& line : laid.lines) {
    OdDbMTextLine out;
    out.text = line.text;
    out.position = planePoint(line.x, line.y);
    out.height = line.height;
    out.width = line.width;
    result.push_back(out);
  }
  return result;
}

void OdDbMText::getBoundingPoints(OdGePoint3dArray& points) const {
  assertReadEnabled();
  const OdDbMTextLayout laid = layout();
  points.clear();
  points.append(planePoint(laid.left, laid.top));
  points.append(planePoint(laid.right, laid.top));
  points.append(planePoint(laid.right, laid.bottom));
  points.append(planePoint(laid.left, laid.bottom));
}

// Filing -------------------------------------------------------------------------------------

void OdDbMText::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbEntity::dwgOutFields(filer);
  filer->wrPoint3d(m_location);
  filer->wrVector3d(m_normal);
  filer->wrVector3d(m_direction);
  filer->wrDouble(m_width);
  filer->wrDouble(m_height);
  filer->wrDouble(m_textHeight);
  filer->wrInt16(static_cast<OdInt16>(m_attachment));
  filer->wrInt16(static_cast<OdInt16>(m_flowDirection));
  filer->wrDouble(m_lineSpacingFactor);
  filer->wrString(m_contents);
  filer->wrHardPointerId(m_textStyleId);
}

OdResult OdDbMText::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdGePoint3d location = filer->rdPoint3d();
  const OdGeVector3d normal = filer->rdVector3d();
  const OdGeVector3d direction = filer->rdVector3d();
  const double width = filer->rdDouble();
  const double height = filer->rdDouble();
  const double textHeight = filer->rdDouble();
  const OdInt16 attachment = filer->rdInt16();
  const OdInt16 flowDirection = filer->rdInt16();
  const double lineSpacingFactor = filer->rdDouble();
  const OdString contents = filer->rdString();
  const OdDbObjectId textStyleId = filer->rdHardPointerId();
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  OdGeVector3d unitDirection;
  if (!odgeIsFinite(location) || !isNormal(normal) ||
      !inPlaneDirection(direction, normal.normal(), unitDirection) || !isLength(width) ||
      !isLength(height) || !isPositive(textHeight) || !isAttachment(attachment) ||
      !isFlowDirection(flowDirection) || !isLineSpacing(lineSpacingFactor))
    return eDwgObjectImproperlyRead;
  assertWriteEnabled();
  m_location = location;
  m_normal = normal.normal();
  m_direction = unitDirection;
  m_width = width;
  m_height = height;
  m_textHeight = textHeight;
  m_attachment = static_cast<AttachmentPoint>(attachment);
  m_flowDirection = static_cast<FlowDirection>(flowDirection);
  m_lineSpacingFactor = lineSpacingFactor;
  m_contents = contents;
  m_textStyleId = textStyleId;
  return eOk;
}

void OdDbMText::dxfOutFields(OdDbDxfFiler* filer) const {
  OdDbEntity::dxfOutFields(filer);
  const bool all = filer->includesDefaultValues();
  const OdDbMTextLayout laid = layout();
  filer->wrSubclassMarker(OD_T("AcDbMText"));
  filer->wrPoint3d(10, m_location);
  filer->wrDouble(40, m_textHeight);
  filer->wrDouble(41, m_width);
  if (m_height != 0.0 || all)
    filer->wrDouble(46, m_height);
  filer->wrInt16(71, static_cast<OdInt16>(m_attachment));
  filer->wrInt16(72, static_cast<OdInt16>(m_flowDirection));
  const OdString contents = oddbMTextContentsWithoutLineBreaks(m_contents);
  int at = 0;
  while (contents.getLength() - at > kDxfChunk) {
    int length = kDxfChunk;
    // A chunk never ends between the two halves of a surrogate pair.
    const OdChar last = contents.getAt(at + length - 1);
    if (last >= 0xD800 && last <= 0xDBFF)
      --length;
    filer->wrString(3, contents.mid(at, length));
    at += length;
  }
  filer->wrString(1, contents.mid(at));
  filer->wrString(7, styleNameOf(m_textStyleId));
  if (m_normal != OdGeVector3d::kZAxis || all)
    filer->wrVector3d(210, m_normal);
  filer->wrVector3d(11, m_direction);
  filer->wrDouble(42, laid.width);
  filer->wrDouble(43, laid.height);
  filer->wrDouble(44, m_lineSpacingFactor);
}

OdResult OdDbMText::dxfInFields(OdDbDxfFiler* filer) {
  const OdResult base = OdDbEntity::dxfInFields(filer);
  if (base != eOk)
    return base;
  if (!filer->atSubclassData(OD_T("AcDbMText")))
    return eInvalidDxfCode;
  OdGePoint3d location;
  OdGeVector3d normal(0.0, 0.0, 1.0);
  OdGeVector3d direction;
  bool hasDirection = false;
  double rotation = 0.0;
  double width = 0.0;
  double height = 0.0;
  double textHeight = 0.0;
  int attachment = kTopLeft;
  int flowDirection = kLtoR;
  double lineSpacingFactor = 1.0;
  OdString chunks;
  OdString tail;
  OdString styleName;
  bool hasStyle = false;
  const OdResult groups = odDbReadDxfSubclassGroups(filer, [&](int code) {
    switch (code) {
    case 10:
      filer->rdPoint3d(location);
      break;
    case 40:
      textHeight = filer->rdDouble();
      break;
    case 41:
      width = filer->rdDouble();
      break;
    case 46:
      height = filer->rdDouble();
      break;
    case 71:
      attachment = filer->rdInt16();
      break;
    case 72:
      flowDirection = filer->rdInt16();
      break;
    case 3:
      chunks += filer->rdString();
      break;
    case 1:
      tail = filer->rdString();
      break;
    case 7:
      styleName = filer->rdString();
      hasStyle = true;
      break;
    case 210:
      filer->rdVector3d(normal);
      break;
    case 11:
      filer->rdVector3d(direction);
      hasDirection = true;
      break;
    case 50:
      // The drawing programs write degrees here, as for single-line text.
      rotation = filer->rdDouble() / kDegreesPerRadian;
      break;
    case 44:
      lineSpacingFactor = filer->rdDouble();
      break;
    default:
      break; // 42 and 43 are derived from the layout; other groups are not kept
    }
  });
  if (groups != eOk)
    return groups;
  if (!odgeIsFinite(location) || !isNormal(normal) || !std::isfinite(rotation) ||
      !isLength(width) || !isLength(height) || !isPositive(textHeight) ||
      !isAttachment(attachment) || !isFlowDirection(flowDirection) ||
      !isLineSpacing(lineSpacingFactor))
    return eInvalidInput;
  const OdGeVector3d unitNormal = normal.normal();
  OdGeVector3d unitDirection = rotatedDirection(unitNormal, rotation);
  if (hasDirection && !inPlaneDirection(direction, unitNormal, unitDirection))
    return eInvalidInput;
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
  m_location = location;
  m_normal = unitNormal;
  m_direction = unitDirection;
  m_width = width;
  m_height = height;
  m_textHeight = textHeight;
  m_attachment = static_cast<AttachmentPoint>(attachment);
  m_flowDirection = static_cast<FlowDirection>(flowDirection);
  m_lineSpacingFactor = lineSpacingFactor;
  m_contents = chunks + tail;
  m_textStyleId = textStyleId;
  return eOk;
}

// Drawing and editing ------------------------------------------------------------------------

bool OdDbMText::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  const OdDbMTextLayout laid = layout();
  OdGiSubEntityTraits& traits = worldDraw->subEntityTraits();
  const OdCmEntityColor entityColor = traits.trueColor();
  for (const OdDbMTextLayoutLine& line : laid.lines) {
    for (const OdDbMTextFragment& fragment : line.fragments) {
      if (fragment.hasColor)
        traits.setTrueColor(fragment.color);
      worldDraw->geometry().text(planePoint(line.x + fragment.offset, line.y), m_normal,
                                 m_direction, fragment.height, fragment.widthFactor, 0.0,
                                 fragment.text);
      if (fragment.hasColor)
        traits.setTrueColor(entityColor);
    }
  }
  return true;
}

OdResult OdDbMText::subGetGripPoints(OdGePoint3dArray& gripPoints) const {
  assertReadEnabled();
  gripPoints.append(m_location);
  return eOk;
}

OdResult OdDbMText::subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  for (int index : indices)
    if (index != 0)
      return eInvalidIndex;
  if (indices.isEmpty())
    return eOk;
  if (!odgeIsFinite(m_location + offset))
    return eInvalidInput;
  assertWriteEnabled();
  m_location += offset;
  return eOk;
}

OdResult OdDbMText::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker /*gsSelectionMark*/,
                                      const OdGePoint3d& /*pickPoint*/,
                                      const OdGePoint3d& /*lastPoint*/,
                                      const OdGeMatrix3d& /*xWorldToEye*/,
                                      OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  if (osnapMode == OdDb::kOsModeIns)
    snapPoints.append(m_location);
  return eOk;
}

OdResult OdDbMText::subTransformBy(const OdGeMatrix3d& xform) {
  // The identity keeps the text as it is: its direction and normal, normalised again after
  // the product, could come back one ulp off.
  if (xform == OdGeMatrix3d::kIdentity) {
    assertWriteEnabled();
    return eOk;
  }
  const OdGeVector3d up = m_normal.crossProduct(m_direction);
  const OdGeVector3d newDirection = xform * m_direction;
  const OdGeVector3d newUp = xform * up;
  const OdGeVector3d newExtrusion = xform * m_normal;
  const double determinant = newDirection.dotProduct(newUp.crossProduct(newExtrusion));
  const OdGeVector3d planeNormal = newDirection.crossProduct(newUp);
  if (newDirection.isZeroLength() || planeNormal.isZeroLength() || !odgeIsFinite(planeNormal) ||
      !std::isfinite(determinant) || determinant == 0.0)
    return eInvalidInput;
  // A mirror is kept readable: the baseline runs the other way and the normal is the side the
  // matrix turned the old one to, so the glyphs read as before while the block is mirrored.
  const bool mirrored = determinant < 0.0;
  const OdGeVector3d normal = mirrored ? -planeNormal.normal() : planeNormal.normal();
  const OdGeVector3d baseline = (mirrored ? -newDirection : newDirection).normal();
  const double scaleAlong = newDirection.length();
  const double scaleAcross = std::fabs(newUp.dotProduct(normal.crossProduct(baseline)));
  const OdGePoint3d location = xform * m_location;
  if (!isPositive(scaleAcross) || !isPositive(scaleAlong) ||
      !isPositive(m_textHeight * scaleAcross) || !isLength(m_width * scaleAlong) ||
      !isLength(m_height * scaleAcross) || !odgeIsFinite(location) || !odgeIsFinite(baseline))
    return eInvalidInput;
  assertWriteEnabled();
  m_location = location;
  m_normal = normal;
  m_direction = baseline;
  m_textHeight *= scaleAcross;
  m_height *= scaleAcross;
  m_width *= scaleAlong;
  // Rotations and mirrors leave the contents as typed.
  if (std::fabs(scaleAcross - 1.0) > 1e-12)
    m_contents = oddbScaleMTextHeights(m_contents, scaleAcross);
  // The location marks the same end of the mirrored block.
  if (mirrored)
    m_attachment = mirroredAttachment(m_attachment);
  return eOk;
}

OdResult OdDbMText::subExplode(OdRxObjectPtrArray& entitySet) const {
  assertReadEnabled();
  const OdDbMTextLayout laid = layout();
  const double rotationAngle = m_normal.perpVector().angleTo(m_direction, m_normal);
  // One text per run of a line that keeps one height, width factor and colour: a line that
  // mixes them would otherwise come out in one size, wider or narrower than it was laid out.
  auto sameFormat = [](const OdDbMTextFragment& a, const OdDbMTextFragment& b) {
    return a.height == b.height && a.widthFactor == b.widthFactor && a.hasColor == b.hasColor &&
           (!a.hasColor || a.color == b.color);
  };
  for (const OdDbMTextLayoutLine& line : laid.lines) {
    for (std::size_t first = 0; first < line.fragments.size();) {
      const OdDbMTextFragment& run = line.fragments[first];
      OdString contents;
      std::size_t next = first;
      for (; next < line.fragments.size() && sameFormat(line.fragments[next], run); ++next)
        contents += line.fragments[next].text;
      first = next;
      if (contents.isEmpty())
        continue;
      OdDbTextPtr text = OdDbText::createObject();
      text->setPropertiesFrom(this);
      text->setNormal(m_normal);
      text->setRotation(rotationAngle);
      text->setPosition(planePoint(line.x + run.offset, line.y));
      text->setHeight(run.height);
      text->setWidthFactor(run.widthFactor);
      text->setTextString(contents);
      text->setTextStyle(m_textStyleId);
      if (run.hasColor)
        text->setColor(OdCmColor(run.color));
      entitySet.append(OdRxObjectPtr(text.get()));
    }
  }
  return eOk;
}

OdResult OdDbMText::subGetGeomExtents(OdGeExtents3d& extents) const {
  assertReadEnabled();
  OdGePoint3dArray corners;
  getBoundingPoints(corners);
  extents = OdGeExtents3d();
  for (const OdGePoint3d& corner : corners)
    extents.addPoint(corner);
  return eOk;
}
