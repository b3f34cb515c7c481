#include "Gi/GiProxyGraphicsWriter.h"
#include "Ge/GeFinite.h"

#include "DbDatabase.h"
#include "DbEntity.h"
#include "DbSymbolTable.h"
#include "GiPlaneAxes.h"

#include <cmath>
#include <cstring>

namespace {

const std::size_t kHeadSize = 8;
// Six doubles: the two corners.
const OdUInt32 kExtentsCommandSize = kHeadSize + 6 * 8;

// True when the plane spanned by U and V is mapped without distortion: the two images of
// orthonormal axes stay perpendicular and equally long, so a circle stays a circle.
bool isConformal(const OdGeVector3d& U, const OdGeVector3d& V) {
  const double lu = U.length();
  const double lv = V.length();
  const double tol = 1e-9 * (lu > lv ? lu : lv);
  return std::fabs(lu - lv) <= tol && std::fabs(U.dotProduct(V)) <= tol * (lu > lv ? lu : lv);
}

/// Writes value little-endian at out (4 bytes).
void storeUInt32(OdUInt8* out, OdUInt32 value) {
  for (int i = 0; i < 4; ++i)
    out[i] = static_cast<OdUInt8>(value >> (8 * i));
}

OdDbObjectIdArray tableOrder(const OdDbObjectId& tableId) {
  OdDbObjectIdArray ids;
  OdDbSymbolTablePtr table = OdDbSymbolTable::cast(tableId.openObject().get());
  if (table.isNull())
    return ids;
  ids.reserve(static_cast<OdDbObjectIdArray::size_type>(table->numRecords()));
  OdDbSymbolTableIteratorPtr it = table->newIterator();
  for (it->start(); !it->done(); it->step()) {
    // Erased records are not written to files, so they take no place in the numbering.
    if (!it->getRecordId().isErased())
      ids.append(it->getRecordId());
  }
  return ids;
}

} // namespace

OdGiProxyGraphicsWriter::OdGiProxyGraphicsWriter(OdDbDatabase* database) : OdGiBaseSink(database) {
  // Room for the metafile of a typical entity, so that it is not grown a few bytes at a time.
  m_body.reserve(512);
}

void OdGiProxyGraphicsWriter::setDatabase(OdDbDatabase* database) {
  OdGiBaseSink::setDatabase(database);
  m_extents.setDatabase(database);
  m_tableOrdersRead = false;
}

void OdGiProxyGraphicsWriter::setLayerOrder(const OdDbObjectIdArray& layerIds) {
  m_layerOrder = layerIds;
  m_layerOrderGiven = !layerIds.empty();
  m_tableOrdersRead = false;
}

void OdGiProxyGraphicsWriter::setLinetypeOrder(const OdDbObjectIdArray& linetypeIds) {
  m_linetypeOrder = linetypeIds;
  m_linetypeOrderGiven = !linetypeIds.empty();
  m_tableOrdersRead = false;
}

void OdGiProxyGraphicsWriter::setTextWidthFunction(
    OdGiExtentsCollector::TextWidthFunction function) {
  m_extents.setTextWidthFunction(std::move(function));
}

void OdGiProxyGraphicsWriter::draw(const OdDbEntity* entity) {
  reset();
  if (entity == nullptr)
    return;
  OdGiSubEntityTraitsData traits;
  traits.setTrueColor(entity->entityColor());
  traits.setLayer(entity->layerId());
  traits.setLineType(entity->linetypeId());
  traits.setLineTypeScale(entity->linetypeScale());
  traits.setLineWeight(entity->lineWeight());
  setTraitsData(traits);
  if (!entity->worldDraw(this))
    entity->viewportDraw(this);
}

void OdGiProxyGraphicsWriter::reset() {
  m_body.clear();
  m_commands = 0;
  m_sent = SentTraits();
  m_extents.clear();
  clearModelTransforms();
  resetTraits();
  m_skipped = 0;
  // Tables may have changed since the last metafile.
  m_tableOrdersRead = false;
}

OdUInt8Array OdGiProxyGraphicsWriter::data() const {
  OdUInt8Array bytes;
  data(bytes);
  return bytes;
}

void OdGiProxyGraphicsWriter::data(OdUInt8Array& bytes) const {
  bytes.clear();
  if (m_commands == 0)
    return;
  bytes.resize(
      static_cast<OdUInt8Array::size_type>(kHeadSize + kExtentsCommandSize + m_body.size()));
  OdUInt8* out = bytes.asArrayPtr();
  storeUInt32(out, static_cast<OdUInt32>(kHeadSize + kExtentsCommandSize + m_body.size()));
  storeUInt32(out + 4, m_commands + 1);
  storeUInt32(out + 8, kExtentsCommandSize);
  storeUInt32(out + 12, kExtents);
  out += 16;
  // Everything written contributes to the box, so it is valid whenever there are commands.
  const OdGeExtents3d& box = m_extents.extents();
  for (const OdGePoint3d& corner : {box.minPoint(), box.maxPoint()}) {
    for (double value : {corner.x, corner.y, corner.z}) {
      OdUInt64 bits = 0;
      std::memcpy(&bits, &value, sizeof bits);
      storeUInt32(out, static_cast<OdUInt32>(bits));
      storeUInt32(out + 4, static_cast<OdUInt32>(bits >> 32));
      out += 8;
    }
  }
  if (!m_body.empty())
    std::memcpy(out, m_body.data(), m_body.size());
}

OdUInt32 OdGiProxyGraphicsWriter::numCommands() const {
  return m_commands == 0 ? 0 : m_commands + 1;
}

// ---------------------------------------------------------------------------------------------
// Command encoding.

void OdGiProxyGraphicsWriter::beginCommand(OdUInt32 opcode) {
  m_commandStart = m_body.size();
  putUInt32(0); // size, filled in by endCommand
  putUInt32(opcode);
}

void OdGiProxyGraphicsWriter::endCommand() {
  while ((m_body.size() - m_commandStart) % 4 != 0)
    m_body.push_back(0);
  const OdUInt32 size = static_cast<OdUInt32>(m_body.size() - m_commandStart);
  for (int i = 0; i < 4; ++i)
    m_body[m_commandStart + i] = static_cast<OdUInt8>(size >> (8 * i));
  ++m_commands;
}

void OdGiProxyGraphicsWriter::putUInt32(OdUInt32 value) {
  const std::size_t at = m_body.size();
  m_body.resize(at + 4);
  storeUInt32(m_body.data() + at, value);
}

void OdGiProxyGraphicsWriter::putInt32(OdInt32 value) {
  putUInt32(static_cast<OdUInt32>(value));
}

void OdGiProxyGraphicsWriter::putDouble(double value) {
  // One zero: cross products give -0 for axis-aligned normals, and equal drawings should give
  // equal bytes.
  if (value == 0.0)
    value = 0.0;
  OdUInt64 bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  const std::size_t at = m_body.size();
  m_body.resize(at + 8);
  storeUInt32(m_body.data() + at, static_cast<OdUInt32>(bits));
  storeUInt32(m_body.data() + at + 4, static_cast<OdUInt32>(bits >> 32));
}

void OdGiProxyGraphicsWriter::putPoint(const OdGePoint3d& point) {
  putDouble(point.x);
  putDouble(point.y);
  putDouble(point.z);
}

void OdGiProxyGraphicsWriter::putVector(const OdGeVector3d& vector) {
  putDouble(vector.x);
  putDouble(vector.y);
  putDouble(vector.z);
}

// ---------------------------------------------------------------------------------------------
// Traits.

void OdGiProxyGraphicsWriter::readTableOrders() {
  if (m_tableOrdersRead)
    return;
  m_tableOrdersRead = true;
  if (!m_layerOrderGiven)
    m_layerOrder = database() ? tableOrder(database()->getLayerTableId()) : OdDbObjectIdArray();
  if (!m_linetypeOrderGiven)
    m_linetypeOrder =
        database() ? tableOrder(database()->getLinetypeTableId()) : OdDbObjectIdArray();
}

OdInt32 OdGiProxyGraphicsWriter::layerIndex(OdDbStub* layer) {
  if (layer == nullptr)
    return -1;
  readTableOrders();
  OdDbObjectIdArray::size_type at = 0;
  return m_layerOrder.find(OdDbObjectId(layer), at) ? static_cast<OdInt32>(at) : -1;
}

OdInt32 OdGiProxyGraphicsWriter::linetypeIndex(OdDbStub* linetype) {
  const OdDbObjectId id(linetype);
  if (id.isNull())
    return kByLayerIndex;
  const OdDbDatabase* owner = id.database();
  if (owner != nullptr && id == owner->getLinetypeByLayerId())
    return kByLayerIndex;
  readTableOrders();
  OdDbObjectIdArray::size_type at = 0;
  return m_linetypeOrder.find(id, at) ? static_cast<OdInt32>(at) : kByLayerIndex;
}

void OdGiProxyGraphicsWriter::sendTraits() {
  const OdGiSubEntityTraitsData& traits = traitsData();
  const OdCmEntityColor& color = traits.trueColor();
  if (!m_sent.colorSent || m_sent.color != color.color()) {
    if (color.isByColor()) {
      beginCommand(kTrueColor);
      putUInt32(color.color());
    } else {
      // By layer (256), by block (0), ACI; pen and foreground by their index, and the colours
      // that show nothing as 257, which readers take for by layer.
      beginCommand(kColor);
      putInt32(color.colorIndex());
    }
    endCommand();
    m_sent.colorSent = true;
    m_sent.color = color.color();
  }
  const OdInt32 layer = layerIndex(traits.layer());
  if (layer >= 0 && layer != m_sent.layer) {
    beginCommand(kLayerIndex);
    putInt32(layer);
    endCommand();
    m_sent.layer = layer;
  }
  const OdInt32 linetype = linetypeIndex(traits.lineType());
  if (linetype != m_sent.linetype) {
    beginCommand(kLinetypeIndex);
    putInt32(linetype);
    endCommand();
    m_sent.linetype = linetype;
  }
  const OdInt32 lineWeight = static_cast<OdInt32>(traits.lineWeight());
  if (lineWeight != m_sent.lineWeight) {
    beginCommand(kLineWeight);
    putInt32(lineWeight);
    endCommand();
    m_sent.lineWeight = lineWeight;
  }
  // A scale that is not a positive finite number is no scale; the last one sent stays.
  const double scale = traits.lineTypeScale();
  if (std::isfinite(scale) && scale > 0.0 && scale != m_sent.linetypeScale) {
    beginCommand(kLinetypeScale);
    putDouble(scale);
    endCommand();
    m_sent.linetypeScale = scale;
  }
}

// ---------------------------------------------------------------------------------------------
// Primitives.

bool OdGiProxyGraphicsWriter::worldPoints(OdInt32 numVertices, const OdGePoint3d* vertexList,
                                          std::vector<OdGePoint3d>& points) {
  if (numVertices < 1 || vertexList == nullptr)
    return false;
  const OdGeMatrix3d xfm = getModelToWorldTransform();
  points.clear();
  points.reserve(static_cast<std::size_t>(numVertices));
  for (OdInt32 i = 0; i < numVertices; ++i) {
    const OdGePoint3d world = xfm * vertexList[i];
    if (!odgeIsFinite(vertexList[i]) || !odgeIsFinite(world))
      return false;
    points.push_back(world);
  }
  return true;
}

void OdGiProxyGraphicsWriter::writePoints(OdUInt32 opcode, const std::vector<OdGePoint3d>& points,
                                          const OdGeVector3d* normal) {
  sendTraits();
  beginCommand(opcode);
  putInt32(static_cast<OdInt32>(points.size()));
  for (const OdGePoint3d& point : points)
    putPoint(point);
  if (normal != nullptr)
    putVector(*normal);
  endCommand();
  m_extents.polyline(static_cast<OdInt32>(points.size()), points.data());
}

void OdGiProxyGraphicsWriter::writeLine(OdUInt32 opcode, const OdGePoint3d& first,
                                        const OdGePoint3d& second) {
  const OdGeMatrix3d xfm = getModelToWorldTransform();
  const OdGePoint3d a = xfm * first;
  const OdGePoint3d b = xfm * second;
  // Readers take the direction from the two points; coincident points have none.
  if (!odgeIsFinite(first) || !odgeIsFinite(second) || !odgeIsFinite(a) || !odgeIsFinite(b) ||
      (b - a).isZeroLength()) {
    skip();
    return;
  }
  sendTraits();
  beginCommand(opcode);
  putPoint(a);
  putPoint(b);
  endCommand();
  m_extents.polyline(2, std::vector<OdGePoint3d>{a, b}.data());
}

void OdGiProxyGraphicsWriter::writeWorldArc(const OdGePoint3d& center, double radius,
                                            const OdGeVector3d& normal,
                                            const OdGeVector3d& startVector, double sweepAngle,
                                            OdGiArcType arcType, bool full) {
  sendTraits();
  if (full) {
    beginCommand(kCircle);
    putPoint(center);
    putDouble(radius);
    putVector(normal);
    endCommand();
    m_extents.circle(center, radius, normal);
    return;
  }
  // Readers draw arcs counter-clockwise from start to end: a clockwise arc is the same curve
  // run the other way, from its end.
  OdGeVector3d start = startVector;
  double sweep = sweepAngle;
  if (sweep < 0.0) {
    start.rotateBy(sweep, normal);
    sweep = -sweep;
  }
  beginCommand(kCircularArc);
  putPoint(center);
  putDouble(radius);
  putVector(normal);
  putVector(start);
  putDouble(sweep);
  putInt32(static_cast<OdInt32>(arcType));
  endCommand();
  m_extents.circularArc(center, radius, normal, start, sweep, arcType);
}

void OdGiProxyGraphicsWriter::writeOutline(const OdGePoint3d& center, const OdGeVector3d& U,
                                           const OdGeVector3d& V, double sweepAngle,
                                           OdGiArcType arcType, bool full) {
  const double sweep = full ? Oda2PI : sweepAngle;
  int segments = static_cast<int>(std::ceil(std::fabs(sweep) / Oda2PI * kSegmentsPerTurn));
  if (segments < 1)
    segments = 1;
  std::vector<OdGePoint3d> points;
  points.reserve(static_cast<std::size_t>(segments) + 3);
  for (int i = 0; i <= segments; ++i) {
    const double t = sweep * i / segments;
    points.push_back(center + U * std::cos(t) + V * std::sin(t));
  }
  if (full) {
    points.back() = points.front();
  } else if (arcType == kOdGiArcSector) {
    points.push_back(center);
    points.push_back(points.front());
  } else if (arcType == kOdGiArcChord) {
    points.push_back(points.front());
  }
  const OdGeVector3d normal = U.crossProduct(V).normal();
  writePoints(kPolylineWithNormal, points, &normal);
}

void OdGiProxyGraphicsWriter::circle(const OdGePoint3d& center, double radius,
                                     const OdGeVector3d& normal) {
  OdGeVector3d u;
  OdGeVector3d v;
  if (!odgeIsFinite(center) || !odgeIsFinite(normal) || !(radius >= 0.0) ||
      !std::isfinite(radius) || !odgi::planeAxes(normal, nullptr, u, v)) {
    skip();
    return;
  }
  const OdGeMatrix3d xfm = getModelToWorldTransform();
  const OdGePoint3d worldCenter = xfm * center;
  const OdGeVector3d U = xfm * u;
  const OdGeVector3d V = xfm * v;
  const OdGeVector3d N = U.crossProduct(V);
  if (!odgeIsFinite(worldCenter) || !odgeIsFinite(N) || N.isZeroLength()) {
    skip();
    return;
  }
  if (isConformal(U, V))
    writeWorldArc(worldCenter, radius * U.length(), N.normal(), U.normal(), Oda2PI, kOdGiArcSimple,
                  true);
  else
    writeOutline(worldCenter, U * radius, V * radius, Oda2PI, kOdGiArcSimple, true);
}

void OdGiProxyGraphicsWriter::circularArc(const OdGePoint3d& center, double radius,
                                          const OdGeVector3d& normal,
                                          const OdGeVector3d& startVector, double sweepAngle,
                                          OdGiArcType arcType) {
  OdGeVector3d u;
  OdGeVector3d v;
  if (!odgeIsFinite(center) || !odgeIsFinite(normal) || !odgeIsFinite(startVector) ||
      !(radius >= 0.0) || !std::isfinite(radius) || !std::isfinite(sweepAngle) ||
      !odgi::planeAxes(normal, &startVector, u, v)) {
    skip();
    return;
  }
  const OdGeMatrix3d xfm = getModelToWorldTransform();
  const OdGePoint3d worldCenter = xfm * center;
  const OdGeVector3d U = xfm * u;
  const OdGeVector3d V = xfm * v;
  const OdGeVector3d N = U.crossProduct(V);
  if (!odgeIsFinite(worldCenter) || !odgeIsFinite(N) || N.isZeroLength()) {
    skip();
    return;
  }
  // More than a turn draws the same as one turn.
  const bool full = std::fabs(sweepAngle) >= Oda2PI;
  const double sweep = full ? (sweepAngle < 0.0 ? -Oda2PI : Oda2PI) : sweepAngle;
  // A full simple arc is a circle; a full sector or chord keeps its arc type.
  if (isConformal(U, V))
    writeWorldArc(worldCenter, radius * U.length(), N.normal(), U.normal(), sweep, arcType,
                  full && arcType == kOdGiArcSimple);
  else
    writeOutline(worldCenter, U * radius, V * radius, sweep, arcType, false);
}

void OdGiProxyGraphicsWriter::polyline(OdInt32 numVertices, const OdGePoint3d* vertexList,
                                       const OdGeVector3d* pNormal, OdGsMarker) {
  std::vector<OdGePoint3d> points;
  if (!worldPoints(numVertices, vertexList, points)) {
    skip();
    return;
  }
  OdGeVector3d normal;
  if (pNormal != nullptr && odgeIsFinite(*pNormal))
    normal = odgi::transformNormal(getModelToWorldTransform(), *pNormal);
  if (odgeIsFinite(normal) && !normal.isZeroLength())
    writePoints(kPolylineWithNormal, points, &normal);
  else
    writePoints(kPolyline, points, nullptr);
}

void OdGiProxyGraphicsWriter::polygon(OdInt32 numVertices, const OdGePoint3d* vertexList) {
  std::vector<OdGePoint3d> points;
  if (!worldPoints(numVertices, vertexList, points)) {
    skip();
    return;
  }
  const bool filled = fillType() == kOdGiFillAlways;
  if (!filled) {
    writePoints(kPolygon, points, nullptr);
    return;
  }
  // Traits first, so that the fill command stands right before the polygon it applies to.
  sendTraits();
  beginCommand(kFill);
  putUInt32(1);
  endCommand();
  writePoints(kPolygon, points, nullptr);
  beginCommand(kFill);
  putUInt32(0);
  endCommand();
}

void OdGiProxyGraphicsWriter::text(const OdGePoint3d& position, const OdGeVector3d& normal,
                                   const OdGeVector3d& direction, double height, double width,
                                   double oblique, const OdString& msg) {
  OdGeVector3d along;
  OdGeVector3d up;
  if (!odgeIsFinite(position) || !odgeIsFinite(normal) || !odgeIsFinite(direction) ||
      !std::isfinite(height) || !std::isfinite(width) || !std::isfinite(oblique) ||
      !odgi::planeAxes(normal, &direction, along, up)) {
    skip();
    return;
  }
  // The line of text is the parallelogram of its baseline and its slanted rise; an affine
  // transform maps it to another parallelogram, which gives the new direction, height, width
  // factor and slant exactly.
  const OdGeMatrix3d xfm = getModelToWorldTransform();
  const OdGePoint3d worldPosition = xfm * position;
  const OdGeVector3d baseline = xfm * along;
  const OdGeVector3d rise = xfm * (up + along * std::tan(oblique));
  const OdGeVector3d worldNormal = baseline.crossProduct(xfm * up);
  if (!odgeIsFinite(worldPosition) || !odgeIsFinite(rise) || !odgeIsFinite(worldNormal) ||
      worldNormal.isZeroLength()) {
    skip();
    return;
  }
  const OdGeVector3d n = worldNormal.normal();
  const OdGeVector3d d = baseline.normal();
  const double riseHeight = rise.dotProduct(n.crossProduct(d));
  const double worldHeight = height * riseHeight;
  const double worldWidth = width * baseline.length() / riseHeight;
  const double worldOblique = std::atan2(rise.dotProduct(d), riseHeight);
  if (!std::isfinite(worldHeight) || !std::isfinite(worldWidth) || !std::isfinite(worldOblique)) {
    skip();
    return;
  }

  sendTraits();
  beginCommand(kUnicodeText);
  putPoint(worldPosition);
  putVector(n);
  putVector(d);
  putDouble(worldHeight);
  putDouble(worldWidth);
  putDouble(worldOblique);
  // UTF-16LE up to the first NUL, which ends strings in the metafile, then two NUL bytes;
  // endCommand pads to 4.
  for (OdChar unit : msg.str()) {
    if (unit == 0)
      break;
    m_body.push_back(static_cast<OdUInt8>(unit & 0xFF));
    m_body.push_back(static_cast<OdUInt8>(unit >> 8));
  }
  m_body.push_back(0);
  m_body.push_back(0);
  endCommand();
  const std::size_t end = msg.str().find(OdChar(0));
  m_extents.text(worldPosition, n, d, worldHeight, worldWidth, worldOblique,
                 end == std::u16string::npos ? msg : OdString(msg.str().substr(0, end)));
}

void OdGiProxyGraphicsWriter::xline(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) {
  writeLine(kXline, firstPoint, secondPoint);
}

void OdGiProxyGraphicsWriter::ray(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) {
  writeLine(kRay, basePoint, throughPoint);
}
