#include "DbPolyline.h"
#include "DxfFile/DbDxfGroups.h"
#include "Ge/GeFinite.h"

#include "DbArc.h"
#include "DbDwgStreamFiler.h"
#include "DbFiler.h"
#include "DbLine.h"
#include "Ge/GeBulge.h"
#include "Gi/GiWorldDraw.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

ODRX_CONS_DEFINE_MEMBERS(OdDbPolyline, OdDbCurve, OD_T("LWPOLYLINE"))

namespace {

// Bits of the DWG flag word.
constexpr OdUInt16 kHasNormal = 1;
constexpr OdUInt16 kHasThickness = 2;
constexpr OdUInt16 kHasConstantWidth = 4;
constexpr OdUInt16 kHasElevation = 8;
constexpr OdUInt16 kHasBulges = 16;
constexpr OdUInt16 kHasWidths = 32;
constexpr OdUInt16 kPlinegen = 256;
constexpr OdUInt16 kClosed = 512;
constexpr OdUInt16 kHasVertexIds = 1024;

// Bits of the DXF flag group 70.
constexpr OdInt16 kDxfClosed = 1;
constexpr OdInt16 kDxfPlinegen = 128;

// The fewest bits each listed element can take in the data stream: a BD is at least two bits
// (1.0 and 0.0 are coded by the prefix alone), a BL likewise.
constexpr OdUInt64 kMinBitsPerVertex = 4;
constexpr OdUInt64 kMinBitsPerBulge = 2;
constexpr OdUInt64 kMinBitsPerVertexId = 2;
constexpr OdUInt64 kMinBitsPerWidthPair = 4;

constexpr OdUInt64 kUnknownBits = std::numeric_limits<OdUInt64>::max();

/// The bits a DWG filer can still deliver from its data stream, so that counts read from the
/// stream are checked before anything is allocated for them. The platform's stream filer knows
/// its remaining bits; for any other filer this returns kUnknownBits, and the readers then
/// allocate nothing ahead and stop at the first read that fails.
OdUInt64 remainingDataBits(OdDbDwgFiler* filer) {
  const OdDbDwgStreamFiler* stream = dynamic_cast<const OdDbDwgStreamFiler*>(filer);
  if (!stream || !stream->isReading())
    return kUnknownBits;
  return stream->remainingDataBits();
}

bool isValidWidth(double width) {
  return std::isfinite(width) && width >= 0.0;
}

/// Whether what a filer read makes a polyline: finite numbers, no negative width, a normal
/// with a direction. The DWG and DXF readers share it so that they refuse alike. A template
/// because the vertex type is the polyline's own.
template <class VertexArray>
bool isValidReadContent(double elevation, double thickness, double constantWidth,
                        const OdGeVector3d& normal, const VertexArray& vertices) {
  if (!std::isfinite(elevation) || !std::isfinite(thickness) || !isValidWidth(constantWidth) ||
      !odgeIsFinite(normal) || normal.isZeroLength())
    return false;
  return std::all_of(vertices.begin(), vertices.end(), [](const auto& vertex) {
    return odgeIsFinite(vertex.point) && std::isfinite(vertex.bulge) &&
           isValidWidth(vertex.startWidth) && isValidWidth(vertex.endWidth);
  });
}

/// The fraction (0..1) of segment p1 -> p2 whose point is nearest to point.
double closestFractionOnChord(const OdGePoint2d& point, const OdGePoint2d& p1,
                              const OdGePoint2d& p2) {
  const OdGeVector2d dir = p2 - p1;
  const double lengthSqrd = dir.lengthSqrd();
  if (lengthSqrd <= 0.0)
    return 0.0;
  return std::clamp((point - p1).dotProduct(dir) / lengthSqrd, 0.0, 1.0);
}

} // namespace

OdDbPolyline::OdDbPolyline() = default;

// Vertices -----------------------------------------------------------------------------------

unsigned int OdDbPolyline::numVerts() const {
  assertReadEnabled();
  return m_vertices.size();
}

void OdDbPolyline::addVertexAt(unsigned int index, const OdGePoint2d& point, double bulge,
                               double startWidth, double endWidth) {
  assertWriteEnabled();
  double constantWidth = 0.0;
  if (getConstantWidth(constantWidth) != eOk)
    constantWidth = 0.0;
  Vertex vertex;
  vertex.point = point;
  vertex.bulge = bulge;
  vertex.startWidth = startWidth < 0.0 ? constantWidth : startWidth;
  vertex.endWidth = endWidth < 0.0 ? constantWidth : endWidth;
  m_vertices.insertAt(std::min(index, m_vertices.size()), vertex);
}

OdResult OdDbPolyline::removeVertexAt(unsigned int index) {
  if (index >= m_vertices.size())
    return eInvalidIndex;
  assertWriteEnabled();
  m_vertices.removeAt(index);
  return eOk;
}

void OdDbPolyline::reset(bool reuse, unsigned int numVerts) {
  assertWriteEnabled();
  if (!reuse) {
    m_vertices.clear();
    return;
  }
  if (numVerts < m_vertices.size())
    m_vertices.resize(numVerts);
}

OdResult OdDbPolyline::getPointAt(unsigned int index, OdGePoint3d& point) const {
  assertReadEnabled();
  if (index >= m_vertices.size())
    return eInvalidIndex;
  point = toWorld(planeToWorld(), m_vertices[index].point);
  return eOk;
}

OdResult OdDbPolyline::getPointAt(unsigned int index, OdGePoint2d& point) const {
  assertReadEnabled();
  if (index >= m_vertices.size())
    return eInvalidIndex;
  point = m_vertices[index].point;
  return eOk;
}

OdResult OdDbPolyline::setPointAt(unsigned int index, const OdGePoint2d& point) {
  if (index >= m_vertices.size())
    return eInvalidIndex;
  if (!odgeIsFinite(point))
    return eInvalidInput;
  assertWriteEnabled();
  m_vertices[index].point = point;
  return eOk;
}

OdResult OdDbPolyline::getBulgeAt(unsigned int index, double& bulge) const {
  assertReadEnabled();
  if (index >= m_vertices.size())
    return eInvalidIndex;
  bulge = m_vertices[index].bulge;
  return eOk;
}

OdResult OdDbPolyline::setBulgeAt(unsigned int index, double bulge) {
  if (index >= m_vertices.size())
    return eInvalidIndex;
  if (!std::isfinite(bulge))
    return eInvalidInput;
  assertWriteEnabled();
  m_vertices[index].bulge = bulge;
  return eOk;
}

OdResult OdDbPolyline::getWidthsAt(unsigned int index, double& startWidth, double& endWidth) const {
  assertReadEnabled();
  if (index >= m_vertices.size())
    return eInvalidIndex;
  startWidth = m_vertices[index].startWidth;
  endWidth = m_vertices[index].endWidth;
  return eOk;
}

OdResult OdDbPolyline::setWidthsAt(unsigned int index, double startWidth, double endWidth) {
  if (index >= m_vertices.size())
    return eInvalidIndex;
  if (!isValidWidth(startWidth) || !isValidWidth(endWidth))
    return eInvalidInput;
  assertWriteEnabled();
  m_vertices[index].startWidth = startWidth;
  m_vertices[index].endWidth = endWidth;
  return eOk;
}

OdDbPolyline::SegType OdDbPolyline::segType(unsigned int index) const {
  assertReadEnabled();
  if (m_vertices.isEmpty())
    return kEmpty;
  if (m_vertices.size() == 1)
    return index == 0 ? kPoint : kEmpty;
  if (index >= numSegments())
    return kEmpty;
  const Vertex& from = m_vertices[index];
  const Vertex& to = m_vertices[(index + 1) % m_vertices.size()];
  if (from.point.isEqualTo(to.point))
    return kCoincident;
  return from.bulge != 0.0 ? kArc : kLine;
}

// Polyline-wide properties -------------------------------------------------------------------

void OdDbPolyline::setConstantWidth(double width) {
  if (!isValidWidth(width))
    throw OdError(eInvalidInput, OD_T("A polyline width must be a non-negative number"));
  assertWriteEnabled();
  m_constantWidth = width;
  for (Vertex& vertex : m_vertices) {
    vertex.startWidth = width;
    vertex.endWidth = width;
  }
}

OdResult OdDbPolyline::getConstantWidth(double& width) const {
  assertReadEnabled();
  if (m_vertices.isEmpty()) {
    width = m_constantWidth;
    return eOk;
  }
  const double first = m_vertices[0].startWidth;
  for (const Vertex& vertex : m_vertices) {
    if (vertex.startWidth != first || vertex.endWidth != first)
      return eNotApplicable;
  }
  width = first;
  return eOk;
}

bool OdDbPolyline::hasWidth() const {
  assertReadEnabled();
  return std::any_of(m_vertices.begin(), m_vertices.end(), [](const Vertex& vertex) {
    return vertex.startWidth != 0.0 || vertex.endWidth != 0.0;
  });
}

bool OdDbPolyline::hasBulges() const {
  assertReadEnabled();
  return std::any_of(m_vertices.begin(), m_vertices.end(),
                     [](const Vertex& vertex) { return vertex.bulge != 0.0; });
}

bool OdDbPolyline::isOnlyLines() const {
  assertReadEnabled();
  for (unsigned int i = 0; i < numSegments(); ++i) {
    if (m_vertices[i].bulge != 0.0)
      return false;
  }
  return true;
}

void OdDbPolyline::setClosed(bool closed) {
  assertWriteEnabled();
  m_closed = closed;
}

bool OdDbPolyline::hasPlinegen() const {
  assertReadEnabled();
  return m_plinegen;
}

void OdDbPolyline::setPlinegen(bool plinegen) {
  assertWriteEnabled();
  m_plinegen = plinegen;
}

double OdDbPolyline::elevation() const {
  assertReadEnabled();
  return m_elevation;
}

void OdDbPolyline::setElevation(double elevation) {
  assertWriteEnabled();
  m_elevation = elevation;
}

double OdDbPolyline::thickness() const {
  assertReadEnabled();
  return m_thickness;
}

void OdDbPolyline::setThickness(double thickness) {
  assertWriteEnabled();
  m_thickness = thickness;
}

OdGeVector3d OdDbPolyline::normal() const {
  assertReadEnabled();
  return m_normal;
}

void OdDbPolyline::setNormal(const OdGeVector3d& normal) {
  if (normal.isZeroLength() || !odgeIsFinite(normal))
    throw OdError(eInvalidInput, OD_T("A polyline's normal must be a non-zero vector"));
  assertWriteEnabled();
  m_normal = normal.normal();
}

// Plane geometry -----------------------------------------------------------------------------

unsigned int OdDbPolyline::numSegments() const {
  const unsigned int count = m_vertices.size();
  if (count < 2)
    return 0;
  return m_closed ? count : count - 1;
}

OdGeMatrix3d OdDbPolyline::planeToWorld() const {
  return OdGeMatrix3d::planeToWorld(m_normal);
}

OdGePoint3d OdDbPolyline::toWorld(const OdGeMatrix3d& planeToWorld,
                                  const OdGePoint2d& point) const {
  return planeToWorld * OdGePoint3d(point.x, point.y, m_elevation);
}

double OdDbPolyline::segmentLength(unsigned int index) const {
  const Vertex& from = m_vertices[index];
  const OdGePoint2d& to = m_vertices[(index + 1) % m_vertices.size()].point;
  OdGeBulgeArc arc;
  if (arc.set(from.point, to, from.bulge))
    return arc.length();
  return from.point.distanceTo(to);
}

OdGePoint2d OdDbPolyline::planePointAtParam(double param) const {
  const unsigned int segments = numSegments();
  if (segments == 0)
    return m_vertices[0].point;
  const unsigned int index =
      std::min(static_cast<unsigned int>(std::max(param, 0.0)), segments - 1);
  const double fraction = param - index;
  const Vertex& from = m_vertices[index];
  const OdGePoint2d& to = m_vertices[(index + 1) % m_vertices.size()].point;
  if (fraction <= 0.0)
    return from.point;
  if (fraction >= 1.0)
    return to;
  OdGeBulgeArc arc;
  if (arc.set(from.point, to, from.bulge))
    return arc.pointAt(fraction);
  return from.point + (to - from.point) * fraction;
}

bool OdDbPolyline::closestParam(const OdGePoint2d& point, double& param) const {
  if (m_vertices.isEmpty())
    return false;
  param = 0.0;
  double best = point.distanceTo(m_vertices[0].point);
  for (unsigned int i = 0; i < numSegments(); ++i) {
    const Vertex& from = m_vertices[i];
    const OdGePoint2d& to = m_vertices[(i + 1) % m_vertices.size()].point;
    OdGeBulgeArc arc;
    const double fraction = arc.set(from.point, to, from.bulge)
                                ? arc.closestFraction(point)
                                : closestFractionOnChord(point, from.point, to);
    const double distance = point.distanceTo(planePointAtParam(i + fraction));
    if (distance < best) {
      best = distance;
      param = i + fraction;
    }
  }
  return true;
}

// Curve queries ------------------------------------------------------------------------------

bool OdDbPolyline::isClosed() const {
  assertReadEnabled();
  return m_closed;
}

OdResult OdDbPolyline::getStartParam(double& startParam) const {
  assertReadEnabled();
  if (m_vertices.isEmpty())
    return eInvalidInput;
  startParam = 0.0;
  return eOk;
}

OdResult OdDbPolyline::getEndParam(double& endParam) const {
  assertReadEnabled();
  if (m_vertices.isEmpty())
    return eInvalidInput;
  endParam = numSegments();
  return eOk;
}

OdResult OdDbPolyline::getStartPoint(OdGePoint3d& startPoint) const {
  assertReadEnabled();
  if (m_vertices.isEmpty())
    return eInvalidInput;
  startPoint = toWorld(planeToWorld(), m_vertices[0].point);
  return eOk;
}

OdResult OdDbPolyline::getEndPoint(OdGePoint3d& endPoint) const {
  assertReadEnabled();
  if (m_vertices.isEmpty())
    return eInvalidInput;
  const Vertex& last = m_closed ? m_vertices[0] : m_vertices.last();
  endPoint = toWorld(planeToWorld(), last.point);
  return eOk;
}

OdResult OdDbPolyline::getPointAtParam(double param, OdGePoint3d& pointOnCurve) const {
  assertReadEnabled();
  if (m_vertices.isEmpty())
    return eInvalidInput;
  const double tol = 1.e-10;
  if (!std::isfinite(param) || param < -tol || param > numSegments() + tol)
    return eInvalidInput;
  pointOnCurve = toWorld(planeToWorld(), planePointAtParam(param));
  return eOk;
}

OdResult OdDbPolyline::getParamAtPoint(const OdGePoint3d& pointOnCurve, double& param) const {
  assertReadEnabled();
  const OdGePoint3d inPlane = OdGeMatrix3d::worldToPlane(m_normal) * pointOnCurve;
  const double tol = OdGeContext::gTol.equalPoint();
  if (std::fabs(inPlane.z - m_elevation) > tol)
    return eInvalidInput;
  double found = 0.0;
  if (!closestParam(inPlane.convert2d(), found))
    return eInvalidInput;
  if (planePointAtParam(found).distanceTo(inPlane.convert2d()) > tol)
    return eInvalidInput;
  param = found;
  return eOk;
}

OdResult OdDbPolyline::getDistAtParam(double param, double& dist) const {
  assertReadEnabled();
  if (m_vertices.isEmpty())
    return eInvalidInput;
  const unsigned int segments = numSegments();
  const double tol = 1.e-10;
  if (!std::isfinite(param) || param < -tol || param > segments + tol)
    return eInvalidInput;
  param = std::clamp(param, 0.0, static_cast<double>(segments));
  double total = 0.0;
  for (unsigned int i = 0; i < segments && i < param; ++i)
    total += segmentLength(i) * std::min(1.0, param - i);
  dist = total;
  return eOk;
}

OdResult OdDbPolyline::getParamAtDist(double dist, double& param) const {
  assertReadEnabled();
  if (m_vertices.isEmpty() || !std::isfinite(dist) || dist < 0.0)
    return eInvalidInput;
  const unsigned int segments = numSegments();
  double walked = 0.0;
  for (unsigned int i = 0; i < segments; ++i) {
    const double length = segmentLength(i);
    if (dist <= walked + length) {
      param = length > 0.0 ? i + (dist - walked) / length : i;
      return eOk;
    }
    walked += length;
  }
  if (dist <= walked + OdGeContext::gTol.equalPoint()) {
    param = segments;
    return eOk;
  }
  return eInvalidInput;
}

OdResult OdDbPolyline::getClosestPointTo(const OdGePoint3d& givenPoint, OdGePoint3d& pointOnCurve,
                                         bool /*extend*/) const {
  assertReadEnabled();
  // The polyline lies in its plane, so the nearest point to givenPoint is the nearest point
  // to givenPoint's projection onto that plane.
  const OdGePoint3d inPlane = OdGeMatrix3d::worldToPlane(m_normal) * givenPoint;
  double param = 0.0;
  if (!closestParam(inPlane.convert2d(), param))
    return eInvalidInput;
  pointOnCurve = toWorld(planeToWorld(), planePointAtParam(param));
  return eOk;
}

OdResult OdDbPolyline::getArea(double& area) const {
  assertReadEnabled();
  const unsigned int count = m_vertices.size();
  double twiceArea = 0.0;
  double arcAreas = 0.0;
  for (unsigned int i = 0; i < count; ++i) {
    const Vertex& from = m_vertices[i];
    const OdGePoint2d& to = m_vertices[(i + 1) % count].point;
    twiceArea += from.point.x * to.y - to.x * from.point.y;
    // An open polyline closes with a straight segment: the last vertex's bulge is not used.
    OdGeBulgeArc arc;
    if (i < numSegments() && arc.set(from.point, to, from.bulge))
      arcAreas += arc.signedSegmentArea();
  }
  area = std::fabs(0.5 * twiceArea + arcAreas);
  return eOk;
}

// Filing -------------------------------------------------------------------------------------

void OdDbPolyline::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbCurve::dwgOutFields(filer);
  double constantWidth = 0.0;
  const bool isConstant = getConstantWidth(constantWidth) == eOk;
  const bool bulges = hasBulges();
  OdUInt16 flags = 0;
  if (m_normal != OdGeVector3d::kZAxis)
    flags |= kHasNormal;
  if (m_thickness != 0.0)
    flags |= kHasThickness;
  if (isConstant && constantWidth != 0.0)
    flags |= kHasConstantWidth;
  if (m_elevation != 0.0)
    flags |= kHasElevation;
  if (bulges)
    flags |= kHasBulges;
  if (!isConstant)
    flags |= kHasWidths;
  if (m_plinegen)
    flags |= kPlinegen;
  if (m_closed)
    flags |= kClosed;

  filer->wrInt16(static_cast<OdInt16>(flags));
  if (flags & kHasConstantWidth)
    filer->wrDouble(constantWidth);
  if (flags & kHasElevation)
    filer->wrDouble(m_elevation);
  if (flags & kHasThickness)
    filer->wrDouble(m_thickness);
  if (flags & kHasNormal)
    filer->wrVector3d(m_normal);
  const OdInt32 count = static_cast<OdInt32>(m_vertices.size());
  filer->wrInt32(count);
  if (flags & kHasBulges)
    filer->wrInt32(count);
  if (flags & kHasWidths)
    filer->wrInt32(count);
  for (const Vertex& vertex : m_vertices)
    filer->wrPoint2d(vertex.point);
  if (flags & kHasBulges) {
    for (const Vertex& vertex : m_vertices)
      filer->wrDouble(vertex.bulge);
  }
  if (flags & kHasWidths) {
    for (const Vertex& vertex : m_vertices) {
      filer->wrDouble(vertex.startWidth);
      filer->wrDouble(vertex.endWidth);
    }
  }
}

OdResult OdDbPolyline::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbCurve::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdUInt16 flags = static_cast<OdUInt16>(filer->rdInt16());
  const double constantWidth = (flags & kHasConstantWidth) ? filer->rdDouble() : 0.0;
  const double elevation = (flags & kHasElevation) ? filer->rdDouble() : 0.0;
  const double thickness = (flags & kHasThickness) ? filer->rdDouble() : 0.0;
  const OdGeVector3d normal =
      (flags & kHasNormal) ? filer->rdVector3d() : OdGeVector3d(0.0, 0.0, 1.0);
  const OdUInt32 numVerts = static_cast<OdUInt32>(filer->rdInt32());
  const OdUInt32 numBulges = (flags & kHasBulges) ? static_cast<OdUInt32>(filer->rdInt32()) : 0;
  const OdUInt32 numIds = (flags & kHasVertexIds) ? static_cast<OdUInt32>(filer->rdInt32()) : 0;
  const OdUInt32 numWidths = (flags & kHasWidths) ? static_cast<OdUInt32>(filer->rdInt32()) : 0;
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if ((numBulges != 0 && numBulges != numVerts) || (numIds != 0 && numIds != numVerts) ||
      (numWidths != 0 && numWidths != numVerts))
    return eDwgObjectImproperlyRead;
  const OdUInt64 leastBits = numVerts * kMinBitsPerVertex + numBulges * kMinBitsPerBulge +
                             numIds * kMinBitsPerVertexId + numWidths * kMinBitsPerWidthPair;
  const OdUInt64 available = remainingDataBits(filer);
  if (available != kUnknownBits && leastBits > available)
    return eEndOfFile;

  OdArray<Vertex> vertices;
  if (available != kUnknownBits)
    vertices.reserve(numVerts);
  // With a filer that cannot tell its size, each loop stops at the first failed read, so
  // nothing grows beyond what the stream really holds.
  for (OdUInt32 i = 0; i < numVerts && filer->filerStatus() == eOk; ++i) {
    Vertex vertex;
    vertex.point = filer->rdPoint2d();
    vertex.startWidth = constantWidth;
    vertex.endWidth = constantWidth;
    vertices.append(vertex);
  }
  for (OdUInt32 i = 0; i < numBulges && filer->filerStatus() == eOk; ++i)
    vertices[i].bulge = filer->rdDouble();
  for (OdUInt32 i = 0; i < numIds && filer->filerStatus() == eOk; ++i)
    filer->rdInt32();
  for (OdUInt32 i = 0; i < numWidths && filer->filerStatus() == eOk; ++i) {
    vertices[i].startWidth = filer->rdDouble();
    vertices[i].endWidth = filer->rdDouble();
  }
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();

  if (!isValidReadContent(elevation, thickness, constantWidth, normal, vertices))
    return eInvalidInput;
  m_vertices = vertices;
  m_closed = (flags & kClosed) != 0;
  m_plinegen = (flags & kPlinegen) != 0;
  m_constantWidth = constantWidth;
  m_elevation = elevation;
  m_thickness = thickness;
  m_normal = normal.normal();
  return eOk;
}

void OdDbPolyline::dxfOutFields(OdDbDxfFiler* filer) const {
  OdDbCurve::dxfOutFields(filer);
  filer->wrSubclassMarker(OD_T("AcDbPolyline"));
  const bool all = filer->includesDefaultValues();
  double constantWidth = 0.0;
  const bool isConstant = getConstantWidth(constantWidth) == eOk;
  OdInt16 flags = 0;
  if (m_closed)
    flags |= kDxfClosed;
  if (m_plinegen)
    flags |= kDxfPlinegen;
  filer->wrInt32(90, static_cast<OdInt32>(m_vertices.size()));
  filer->wrInt16(70, flags);
  if (isConstant)
    filer->wrDouble(43, constantWidth);
  if (m_elevation != 0.0 || all)
    filer->wrDouble(38, m_elevation);
  if (m_thickness != 0.0 || all)
    filer->wrDouble(39, m_thickness);
  for (const Vertex& vertex : m_vertices) {
    filer->wrPoint2d(10, vertex.point);
    if (!isConstant) {
      filer->wrDouble(40, vertex.startWidth);
      filer->wrDouble(41, vertex.endWidth);
    }
    if (vertex.bulge != 0.0 || all)
      filer->wrDouble(42, vertex.bulge);
  }
  if (m_normal != OdGeVector3d::kZAxis || all)
    filer->wrVector3d(210, m_normal);
}

OdResult OdDbPolyline::dxfInFields(OdDbDxfFiler* filer) {
  const OdResult base = OdDbCurve::dxfInFields(filer);
  if (base != eOk)
    return base;
  if (!filer->atSubclassData(OD_T("AcDbPolyline")))
    return eInvalidDxfCode;
  OdArray<Vertex> vertices;
  OdInt16 flags = 0;
  double constantWidth = 0.0;
  double elevation = 0.0;
  double thickness = 0.0;
  OdGeVector3d normal(0.0, 0.0, 1.0);
  const OdResult groups = odDbReadDxfSubclassGroups(filer, [&](int groupCode) -> OdResult {
    // Per-vertex groups before the first vertex belong to nothing and are refused.
    if ((groupCode == 40 || groupCode == 41 || groupCode == 42) && vertices.isEmpty())
      return eInvalidDxfCode;
    switch (groupCode) {
    case 90:
      filer->rdInt32(); // only a hint: the vertices are counted as they come
      break;
    case 70:
      flags = filer->rdInt16();
      break;
    case 43:
      constantWidth = filer->rdDouble();
      break;
    case 38:
      elevation = filer->rdDouble();
      break;
    case 39:
      thickness = filer->rdDouble();
      break;
    case 10: {
      Vertex vertex;
      filer->rdPoint2d(vertex.point);
      vertex.startWidth = constantWidth;
      vertex.endWidth = constantWidth;
      vertices.append(vertex);
      break;
    }
    case 40:
      vertices.last().startWidth = filer->rdDouble();
      break;
    case 41:
      vertices.last().endWidth = filer->rdDouble();
      break;
    case 42:
      vertices.last().bulge = filer->rdDouble();
      break;
    case 210:
      filer->rdVector3d(normal);
      break;
    default:
      break;
    }
    return eOk;
  });
  if (groups != eOk)
    return groups;
  if (!isValidReadContent(elevation, thickness, constantWidth, normal, vertices))
    return eInvalidInput;
  m_vertices = vertices;
  m_closed = (flags & kDxfClosed) != 0;
  m_plinegen = (flags & kDxfPlinegen) != 0;
  m_constantWidth = constantWidth;
  m_elevation = elevation;
  m_thickness = thickness;
  m_normal = normal.normal();
  return eOk;
}

// Drawing ------------------------------------------------------------------------------------

bool OdDbPolyline::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  const unsigned int count = m_vertices.size();
  if (count == 0)
    return true;
  if (count > 1 && hasWidth()) {
    drawWithWidths(worldDraw);
    return true;
  }
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  OdGePoint3dArray points;
  points.append(toWorld(toWorldMatrix, m_vertices[0].point));
  if (count == 1)
    points.append(points[0]);
  for (unsigned int i = 0; i < numSegments(); ++i) {
    const Vertex& from = m_vertices[i];
    const OdGePoint2d& to = m_vertices[(i + 1) % count].point;
    OdGeBulgeArc arc;
    if (arc.set(from.point, to, from.bulge)) {
      const double deviation =
          worldDraw->deviation(kOdGiMaxDevForCurve, toWorld(toWorldMatrix, arc.center));
      const int pieces = arc.numPieces(deviation);
      for (int k = 1; k < pieces; ++k)
        points.append(toWorld(toWorldMatrix, arc.pointAt(static_cast<double>(k) / pieces)));
    }
    points.append(toWorld(toWorldMatrix, to));
  }
  worldDraw->geometry().polyline(static_cast<OdInt32>(points.size()), points.asArrayPtr(),
                                 &m_normal);
  return true;
}

void OdDbPolyline::drawWithWidths(OdGiWorldDraw* worldDraw) const {
  const unsigned int count = m_vertices.size();
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  OdGiSubEntityTraits& traits = worldDraw->subEntityTraits();
  const OdGiFillType previousFill = traits.fillType();
  traits.setFillType(kOdGiFillAlways);
  for (unsigned int i = 0; i < numSegments(); ++i) {
    const Vertex& from = m_vertices[i];
    const OdGePoint2d& to = m_vertices[(i + 1) % count].point;
    if (from.point.distanceTo(to) <= OdGeContext::gTol.equalPoint())
      continue;
    OdGeBulgeArc arc;
    const bool isArc = arc.set(from.point, to, from.bulge);
    int pieces = 1;
    if (isArc) {
      const double deviation =
          worldDraw->deviation(kOdGiMaxDevForCurve, toWorld(toWorldMatrix, arc.center));
      pieces = arc.numPieces(deviation);
    }
    // The centreline point at fraction f of the segment, and the unit vector to its left.
    const auto sample = [&](double f, OdGePoint2d& point, OdGeVector2d& left) {
      if (!isArc) {
        point = from.point + (to - from.point) * f;
        left = (to - from.point).perpVector().normal();
        return;
      }
      point = arc.pointAt(f);
      const OdGeVector2d outward = (point - arc.center) / arc.radius;
      // Travelling counter-clockwise the centre lies to the left; clockwise, to the right.
      left = arc.sweep > 0.0 ? -outward : outward;
    };
    OdGePoint3dArray leftSide;
    OdGePoint3dArray rightSide;
    OdGePoint3dArray centreline;
    for (int k = 0; k <= pieces; ++k) {
      const double f = static_cast<double>(k) / pieces;
      OdGePoint2d point;
      OdGeVector2d left;
      sample(f, point, left);
      const double half = 0.5 * (from.startWidth + (from.endWidth - from.startWidth) * f);
      leftSide.append(toWorld(toWorldMatrix, point + left * half));
      rightSide.append(toWorld(toWorldMatrix, point - left * half));
      centreline.append(toWorld(toWorldMatrix, point));
    }
    if (from.startWidth == 0.0 && from.endWidth == 0.0) {
      worldDraw->geometry().polyline(static_cast<OdInt32>(centreline.size()),
                                     centreline.asArrayPtr(), &m_normal);
      continue;
    }
    // The outline runs out along the left side and back along the right.
    OdGePoint3dArray outline = leftSide;
    for (unsigned int k = rightSide.size(); k-- > 0;)
      outline.append(rightSide[k]);
    worldDraw->geometry().polygon(static_cast<OdInt32>(outline.size()), outline.asArrayPtr());
  }
  traits.setFillType(previousFill);
}

OdResult OdDbPolyline::subExplode(OdRxObjectPtrArray& entitySet) const {
  assertReadEnabled();
  const unsigned int count = m_vertices.size();
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  for (unsigned int i = 0; i < numSegments(); ++i) {
    const Vertex& from = m_vertices[i];
    const OdGePoint2d& to = m_vertices[(i + 1) % count].point;
    if (from.point.distanceTo(to) <= OdGeContext::gTol.equalPoint())
      continue;
    OdGeBulgeArc arc;
    if (arc.set(from.point, to, from.bulge)) {
      // An arc entity turns counter-clockwise about the same normal, so a clockwise segment
      // becomes the arc from its end to its start. Its plane axes are the polyline's.
      const double endAngle = arc.startAngle + arc.sweep;
      OdDbArcPtr piece = OdDbArc::createObject();
      piece->setPropertiesFrom(this);
      piece->setNormal(m_normal);
      piece->setCenter(toWorld(toWorldMatrix, arc.center));
      piece->setRadius(arc.radius);
      piece->setStartAngle(arc.sweep > 0.0 ? arc.startAngle : endAngle);
      piece->setEndAngle(arc.sweep > 0.0 ? endAngle : arc.startAngle);
      piece->setThickness(m_thickness);
      entitySet.append(piece);
      continue;
    }
    OdDbLinePtr piece = OdDbLine::createObject();
    piece->setPropertiesFrom(this);
    piece->setNormal(m_normal);
    piece->setStartPoint(toWorld(toWorldMatrix, from.point));
    piece->setEndPoint(toWorld(toWorldMatrix, to));
    piece->setThickness(m_thickness);
    entitySet.append(piece);
  }
  return eOk;
}

bool OdDbPolyline::subGetPieces(OdDbCurvePieceArray& pieces) const {
  assertReadEnabled();
  const unsigned int count = m_vertices.size();
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  for (unsigned int i = 0; i < numSegments(); ++i) {
    const Vertex& from = m_vertices[i];
    const OdGePoint2d& to = m_vertices[(i + 1) % count].point;
    if (from.point.distanceTo(to) <= OdGeContext::gTol.equalPoint())
      continue;
    OdDbCurvePiece piece;
    OdGeBulgeArc arc;
    if (arc.set(from.point, to, from.bulge)) {
      // Pieces turn counter-clockwise: a clockwise segment starts at its end.
      const double startAngle = arc.sweep > 0.0 ? arc.startAngle : arc.startAngle + arc.sweep;
      piece.kind = OdDbCurvePiece::kArc;
      piece.center = toWorld(toWorldMatrix, arc.center);
      piece.radius = arc.radius;
      piece.normal = m_normal;
      piece.startVector =
          toWorldMatrix * OdGeVector3d(std::cos(startAngle), std::sin(startAngle), 0.0);
      piece.sweep = std::fabs(arc.sweep);
      piece.start = toWorld(toWorldMatrix, arc.pointAtAngle(startAngle));
      piece.end = toWorld(toWorldMatrix, arc.pointAtAngle(startAngle + piece.sweep));
    } else {
      piece.start = toWorld(toWorldMatrix, from.point);
      piece.end = toWorld(toWorldMatrix, to);
    }
    pieces.append(piece);
  }
  return true;
}

OdResult OdDbPolyline::subGetGeomExtents(OdGeExtents3d& extents) const {
  assertReadEnabled();
  extents = OdGeExtents3d();
  const unsigned int count = m_vertices.size();
  if (count == 0)
    return eInvalidExtents;
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  double extremes[6];
  const unsigned int numExtremes =
      odgeCircleExtremeAngles(toWorldMatrix.getCsXAxis(), toWorldMatrix.getCsYAxis(), extremes);
  for (const Vertex& vertex : m_vertices)
    extents.addPoint(toWorld(toWorldMatrix, vertex.point));
  // A segment with width is drawn as a band: its extents are the band's sides, offset by half
  // the width (which runs from the start width to the end width) to either side.
  const bool wide = count > 1 && hasWidth();
  for (unsigned int i = 0; i < numSegments(); ++i) {
    const Vertex& from = m_vertices[i];
    const OdGePoint2d& to = m_vertices[(i + 1) % count].point;
    const double startHalf = wide ? 0.5 * from.startWidth : 0.0;
    const double endHalf = wide ? 0.5 * from.endWidth : 0.0;
    OdGeBulgeArc arc;
    if (!arc.set(from.point, to, from.bulge)) {
      if (wide && from.point.distanceTo(to) > OdGeContext::gTol.equalPoint()) {
        const OdGeVector2d left = (to - from.point).perpVector().normal();
        for (double side : {-1.0, 1.0}) {
          extents.addPoint(toWorld(toWorldMatrix, from.point + left * (side * startHalf)));
          extents.addPoint(toWorld(toWorldMatrix, to + left * (side * endHalf)));
        }
      }
      continue;
    }
    for (double side : {-1.0, 1.0}) {
      const auto offsetAt = [&](double angle, double fraction) {
        const double half = startHalf + (endHalf - startHalf) * fraction;
        const OdGePoint2d onArc = arc.pointAtAngle(angle);
        return onArc + (onArc - arc.center) * (side * half / arc.radius);
      };
      if (wide) {
        extents.addPoint(toWorld(toWorldMatrix, offsetAt(arc.startAngle, 0.0)));
        extents.addPoint(toWorld(toWorldMatrix, offsetAt(arc.startAngle + arc.sweep, 1.0)));
      }
      for (unsigned int k = 0; k < numExtremes; ++k) {
        const double fraction = arc.fractionAtAngle(extremes[k]);
        if (fraction >= 0.0)
          extents.addPoint(toWorld(toWorldMatrix, offsetAt(extremes[k], fraction)));
      }
      if (!wide)
        break;
    }
  }
  return eOk;
}

// Editing ------------------------------------------------------------------------------------

OdResult OdDbPolyline::subGetGripPoints(OdGePoint3dArray& gripPoints) const {
  assertReadEnabled();
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  for (const Vertex& vertex : m_vertices)
    gripPoints.append(toWorld(toWorldMatrix, vertex.point));
  return eOk;
}

OdResult OdDbPolyline::moveVertices(const OdIntArray& indices, const OdGeVector3d& offset) {
  for (int index : indices) {
    if (index < 0 || static_cast<unsigned int>(index) >= m_vertices.size())
      return eInvalidIndex;
  }
  assertWriteEnabled();
  // Only the offset's part in the plane moves a vertex; the plane itself stays.
  const OdGeVector2d inPlane = (OdGeMatrix3d::worldToPlane(m_normal) * offset).convert2d();
  std::vector<bool> moved(m_vertices.size(), false);
  for (int index : indices) {
    if (moved[index])
      continue;
    moved[index] = true;
    m_vertices[index].point += inPlane;
  }
  return eOk;
}

OdResult OdDbPolyline::subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  return moveVertices(indices, offset);
}

OdResult OdDbPolyline::subGetStretchPoints(OdGePoint3dArray& stretchPoints) const {
  return subGetGripPoints(stretchPoints);
}

OdResult OdDbPolyline::subMoveStretchPointsAt(const OdIntArray& indices,
                                              const OdGeVector3d& offset) {
  return moveVertices(indices, offset);
}

OdResult OdDbPolyline::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker /*gsSelectionMark*/,
                                         const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                                         const OdGeMatrix3d& /*xWorldToEye*/,
                                         OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  const unsigned int count = m_vertices.size();
  if (count == 0)
    return eOk;
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  const OdGeMatrix3d toPlane = OdGeMatrix3d::worldToPlane(m_normal);
  switch (osnapMode) {
  case OdDb::kOsModeEnd:
    for (const Vertex& vertex : m_vertices)
      snapPoints.append(toWorld(toWorldMatrix, vertex.point));
    break;
  case OdDb::kOsModeMid:
    for (unsigned int i = 0; i < numSegments(); ++i)
      snapPoints.append(toWorld(toWorldMatrix, planePointAtParam(i + 0.5)));
    break;
  case OdDb::kOsModeCen:
    for (unsigned int i = 0; i < numSegments(); ++i) {
      OdGeBulgeArc arc;
      if (arc.set(m_vertices[i].point, m_vertices[(i + 1) % count].point, m_vertices[i].bulge))
        snapPoints.append(toWorld(toWorldMatrix, arc.center));
    }
    break;
  case OdDb::kOsModeNear: {
    double param = 0.0;
    if (closestParam((toPlane * pickPoint).convert2d(), param))
      snapPoints.append(toWorld(toWorldMatrix, planePointAtParam(param)));
    break;
  }
  case OdDb::kOsModePerp: {
    const OdGePoint2d from = (toPlane * lastPoint).convert2d();
    const double tol = OdGeContext::gTol.equalPoint();
    for (unsigned int i = 0; i < numSegments(); ++i) {
      const OdGePoint2d& p1 = m_vertices[i].point;
      const OdGePoint2d& p2 = m_vertices[(i + 1) % count].point;
      OdGeBulgeArc arc;
      if (arc.set(p1, p2, m_vertices[i].bulge)) {
        // The perpendiculars to an arc run through its centre: the nearest and the farthest
        // point of the circle, where the arc covers them.
        const OdGeVector2d radial = from - arc.center;
        if (radial.isZeroLength())
          continue;
        for (double angle : {radial.angle(), radial.angle() + OdaPI}) {
          if (arc.fractionAtAngle(angle) >= 0.0)
            snapPoints.append(toWorld(toWorldMatrix, arc.pointAtAngle(angle)));
        }
        continue;
      }
      const OdGeVector2d dir = p2 - p1;
      if (dir.isZeroLength())
        continue;
      const double t = (from - p1).dotProduct(dir) / dir.lengthSqrd();
      const double slack = tol / dir.length();
      if (t >= -slack && t <= 1.0 + slack)
        snapPoints.append(toWorld(toWorldMatrix, p1 + dir * t));
    }
    break;
  }
  default:
    break;
  }
  return eOk;
}

OdResult OdDbPolyline::subTransformBy(const OdGeMatrix3d& xform) {
  // The identity keeps the polyline as it is: its plane coordinates carried out of the plane
  // and back could come back one ulp off.
  if (xform == OdGeMatrix3d::kIdentity) {
    assertWriteEnabled();
    return eOk;
  }
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  const OdGeVector3d xAxis = xform * toWorldMatrix.getCsXAxis();
  const OdGeVector3d yAxis = xform * toWorldMatrix.getCsYAxis();
  const OdGeVector3d areaNormal = xAxis.crossProduct(yAxis);
  if (areaNormal.isZeroLength() || !odgeIsFinite(areaNormal))
    return eInvalidInput;
  // The normal follows the matrix as a normal does (the inverse transpose): for a mirroring
  // matrix it points against the image of the plane's axes, so the plane's sense of turning
  // reverses and every bulge changes sign.
  const bool mirrors = xform.det() < 0.0;
  const OdGeVector3d newNormal = (mirrors ? -areaNormal : areaNormal).normal();
  const OdGeMatrix3d newToPlane = OdGeMatrix3d::worldToPlane(newNormal);
  const double widthScale = std::sqrt(areaNormal.length());
  assertWriteEnabled();
  for (Vertex& vertex : m_vertices) {
    const OdGePoint3d moved = newToPlane * (xform * toWorld(toWorldMatrix, vertex.point));
    vertex.point = moved.convert2d();
    if (mirrors)
      vertex.bulge = -vertex.bulge;
    vertex.startWidth *= widthScale;
    vertex.endWidth *= widthScale;
  }
  m_elevation = (newToPlane * (xform * toWorld(toWorldMatrix, OdGePoint2d::kOrigin))).z;
  // The extrusion vector follows the matrix; measured along the new normal it is the new
  // thickness, which changes sign where the normal turned against it.
  m_thickness *= (xform * m_normal).dotProduct(newNormal);
  m_normal = newNormal;
  m_constantWidth *= widthScale;
  return eOk;
}
