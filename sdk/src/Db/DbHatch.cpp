#include "DbHatch.h"
#include "DxfFile/DbDxfGroups.h"
#include "Ge/GeFinite.h"

#include "DbDwgStreamFiler.h"
#include "DbFiler.h"
#include "DbPolyline.h"
#include "Ge/GeBulge.h"
#include "Gi/GiWorldDraw.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

ODRX_CONS_DEFINE_MEMBERS(OdDbHatch, OdDbEntity, OD_T("HATCH"))

namespace {

// The fewest bits each listed element can take in the data stream: BL and BD values are at
// least their two-bit prefix, a B one bit.
constexpr OdUInt64 kMinBitsPerLoop = 8;   // BL type, B, B, BL count, BL object count
constexpr OdUInt64 kMinBitsPerVertex = 4; // a BD pair
constexpr OdUInt64 kMinBitsPerBulge = 2;
constexpr OdUInt64 kMinBitsPerSeed = 4;

constexpr OdUInt64 kUnknownBits = std::numeric_limits<OdUInt64>::max();

/// The spacing of the ISO pattern families, in pattern units (millimetres).
constexpr double kIsoSpacing = 3.175;
/// A family needing more lines than this across the loops is too dense to be worth drawing.
constexpr double kMaxLinesPerFamily = 10000.0;

/// One family of continuous parallel lines through the plane's origin.
struct PatternFamily {
  double angleDegrees;
  double spacing;
};

struct PatternDefinition {
  const OdChar* name;
  std::vector<PatternFamily> families;
};

const std::vector<PatternDefinition>& patternTable() {
  static const std::vector<PatternDefinition> table = {
      {OD_T("ANSI31"), {{45.0, kIsoSpacing}}},
      {OD_T("ANSI37"), {{45.0, kIsoSpacing}, {135.0, kIsoSpacing}}},
      {OD_T("LINE"), {{0.0, kIsoSpacing}}},
      {OD_T("NET"), {{0.0, kIsoSpacing}, {90.0, kIsoSpacing}}},
  };
  return table;
}

/// The families a hatch draws: see the class comment.
std::vector<PatternFamily> patternFamilies(OdDbHatch::HatchPatternType type, const OdString& name,
                                           bool isDouble) {
  if (type == OdDbHatch::kUserDefined) {
    std::vector<PatternFamily> families = {{0.0, kIsoSpacing}};
    if (isDouble)
      families.push_back({90.0, kIsoSpacing});
    return families;
  }
  for (const PatternDefinition& definition : patternTable()) {
    if (name.iCompare(definition.name) == 0)
      return definition.families;
  }
  return patternTable().front().families;
}

/// The bits a DWG filer can still deliver from its data stream, so that counts read from the
/// stream are checked before anything is allocated for them; kUnknownBits for a filer that
/// cannot tell, whose readers then allocate nothing ahead and stop at the first failed read.
OdUInt64 remainingDataBits(OdDbDwgFiler* filer) {
  const OdDbDwgStreamFiler* stream = dynamic_cast<const OdDbDwgStreamFiler*>(filer);
  if (!stream || !stream->isReading())
    return kUnknownBits;
  return stream->remainingDataBits();
}

bool fits(OdUInt64 leastBits, OdUInt64 available) {
  return available == kUnknownBits || leastBits <= available;
}

bool isValidNormal(const OdGeVector3d& normal) {
  return odgeIsFinite(normal) && !normal.isZeroLength();
}

bool isValidScale(double scale) {
  return std::isfinite(scale) && scale > 0.0;
}

bool isValidLoop(OdInt32 loopType, const OdGePoint2dArray& vertices,
                 const OdGeDoubleArray& bulges) {
  if (!(loopType & OdDbHatch::kPolyline) || vertices.size() < 2)
    return false;
  if (!bulges.isEmpty() && bulges.size() != vertices.size())
    return false;
  return std::all_of(vertices.begin(), vertices.end(),
                     [](const OdGePoint2d& p) { return odgeIsFinite(p); }) &&
         std::all_of(bulges.begin(), bulges.end(), [](double b) { return std::isfinite(b); });
}

bool hasBulges(const OdGeDoubleArray& bulges) {
  return std::any_of(bulges.begin(), bulges.end(), [](double b) { return b != 0.0; });
}

/// The angle in [0, 2π).
double normalizedAngle(double angle) {
  double result = std::fmod(angle, Oda2PI);
  if (result < 0.0)
    result += Oda2PI;
  return result < Oda2PI ? result : 0.0;
}

/// The vertices and bulges of one loop as a sequence of segments.
struct LoopView {
  const OdGePoint2dArray& vertices;
  const OdGeDoubleArray& bulges;

  unsigned int size() const { return vertices.size(); }
  const OdGePoint2d& from(unsigned int i) const { return vertices[i]; }
  const OdGePoint2d& to(unsigned int i) const { return vertices[(i + 1) % vertices.size()]; }
  bool arc(unsigned int i, OdGeBulgeArc& result) const {
    return result.set(from(i), to(i), bulges[i]);
  }

  /// Positive for a counter-clockwise loop: the vertices' polygon plus each bulged segment's
  /// circular segment (a positive bulge lies to the right of its chord, outside a
  /// counter-clockwise loop).
  double signedArea() const {
    double twiceArea = 0.0;
    double arcAreas = 0.0;
    for (unsigned int i = 0; i < size(); ++i) {
      twiceArea += from(i).x * to(i).y - to(i).x * from(i).y;
      OdGeBulgeArc a;
      if (arc(i, a))
        arcAreas += a.signedSegmentArea();
    }
    return 0.5 * twiceArea + arcAreas;
  }

  /// Even-odd containment against the true outline: the parity of the chord polygon, flipped
  /// for each circular segment (between chord and arc) that holds the point.
  bool contains(const OdGePoint2d& point) const {
    bool inside = false;
    for (unsigned int i = 0; i < size(); ++i) {
      const OdGePoint2d& a = from(i);
      const OdGePoint2d& b = to(i);
      if ((a.y > point.y) != (b.y > point.y)) {
        const double x = a.x + (point.y - a.y) * (b.x - a.x) / (b.y - a.y);
        if (point.x < x)
          inside = !inside;
      }
      OdGeBulgeArc arcOf;
      if (arc(i, arcOf) && point.distanceTo(arcOf.center) < arcOf.radius) {
        const double side = (b - a).crossProduct(point - a);
        if (bulges[i] > 0.0 ? side < 0.0 : side > 0.0)
          inside = !inside;
      }
    }
    return inside;
  }

  /// Appends the parameters t at which origin + t * dir (dir of unit length) crosses the loop.
  void crossings(const OdGePoint2d& origin, const OdGeVector2d& dir,
                 std::vector<double>& params) const {
    for (unsigned int i = 0; i < size(); ++i) {
      OdGeBulgeArc a;
      if (arc(i, a)) {
        const OdGeVector2d w = origin - a.center;
        const double half = w.dotProduct(dir);
        const double disc = half * half - (w.lengthSqrd() - a.radius * a.radius);
        if (disc < 0.0)
          continue;
        const double root = std::sqrt(disc);
        for (double t : {-half - root, -half + root}) {
          if (a.fractionAtAngle((origin + dir * t - a.center).angle()) >= 0.0)
            params.push_back(t);
        }
        continue;
      }
      const OdGeVector2d edge = to(i) - from(i);
      const double denominator = edge.crossProduct(dir);
      if (std::fabs(denominator) <= 1.e-12 * edge.length())
        continue; // parallel: the neighbouring edges bound the run along it
      const OdGeVector2d toOrigin = origin - from(i);
      const double s = toOrigin.crossProduct(dir) / denominator;
      if (s >= -1.e-12 && s <= 1.0 + 1.e-12)
        params.push_back(toOrigin.crossProduct(edge) / denominator);
    }
  }

  /// The outline as points, one per vertex and the inner points of each arc cut into
  /// equal-angle pieces; the first point is not repeated.
  template <class ToWorld>
  void tessellate(const OdGiWorldDraw* worldDraw, ToWorld toWorld, OdGePoint3dArray& points) const {
    for (unsigned int i = 0; i < size(); ++i) {
      points.append(toWorld(from(i)));
      OdGeBulgeArc a;
      if (!arc(i, a))
        continue;
      const int pieces = a.numPieces(worldDraw->deviation(kOdGiMaxDevForCurve, toWorld(a.center)));
      for (int k = 1; k < pieces; ++k)
        points.append(toWorld(a.pointAt(static_cast<double>(k) / pieces)));
    }
  }
};

} // namespace

OdDbHatch::OdDbHatch() = default;

// Plane ---------------------------------------------------------------------------------------

double OdDbHatch::elevation() const {
  assertReadEnabled();
  return m_elevation;
}

void OdDbHatch::setElevation(double elevation) {
  if (!std::isfinite(elevation))
    throw OdError(eInvalidInput, OD_T("A hatch's elevation must be a finite number"));
  assertWriteEnabled();
  m_elevation = elevation;
}

OdGeVector3d OdDbHatch::normal() const {
  assertReadEnabled();
  return m_normal;
}

void OdDbHatch::setNormal(const OdGeVector3d& normal) {
  if (!isValidNormal(normal))
    throw OdError(eInvalidInput, OD_T("A hatch's normal must be a non-zero vector"));
  assertWriteEnabled();
  m_normal = normal.normal();
}

OdGeMatrix3d OdDbHatch::planeToWorld() const {
  return OdGeMatrix3d::planeToWorld(m_normal);
}

OdGePoint3d OdDbHatch::toWorld(const OdGeMatrix3d& planeToWorld, const OdGePoint2d& point) const {
  return planeToWorld * OdGePoint3d(point.x, point.y, m_elevation);
}

// Loops ---------------------------------------------------------------------------------------

OdDbHatch::Loop OdDbHatch::checkedLoop(OdInt32 loopType, const OdGePoint2dArray& vertices,
                                       const OdGeDoubleArray& bulges) {
  if (!isValidLoop(loopType, vertices, bulges))
    throw OdError(eInvalidInput, OD_T("A hatch loop needs the polyline type, at least two finite "
                                      "vertices and no bulges or one finite bulge per vertex"));
  Loop loop;
  loop.type = loopType;
  loop.vertices = vertices;
  loop.bulges = bulges;
  if (bulges.isEmpty())
    loop.bulges.resize(vertices.size(), 0.0);
  return loop;
}

const OdDbHatch::Loop& OdDbHatch::loopAt(int loopIndex) const {
  if (loopIndex < 0 || static_cast<unsigned int>(loopIndex) >= m_loops.size())
    throw OdError_InvalidIndex();
  return m_loops[loopIndex];
}

int OdDbHatch::numLoops() const {
  assertReadEnabled();
  return static_cast<int>(m_loops.size());
}

OdInt32 OdDbHatch::loopTypeAt(int loopIndex) const {
  assertReadEnabled();
  return loopAt(loopIndex).type;
}

void OdDbHatch::getLoopAt(int loopIndex, OdInt32& loopType, OdGePoint2dArray& vertices,
                          OdGeDoubleArray& bulges) const {
  assertReadEnabled();
  const Loop& loop = loopAt(loopIndex);
  loopType = loop.type;
  vertices = loop.vertices;
  bulges = loop.bulges;
}

void OdDbHatch::appendLoop(OdInt32 loopType, const OdGePoint2dArray& vertices,
                           const OdGeDoubleArray& bulges) {
  Loop loop = checkedLoop(loopType, vertices, bulges);
  assertWriteEnabled();
  m_loops.append(loop);
}

void OdDbHatch::insertLoopAt(int loopIndex, OdInt32 loopType, const OdGePoint2dArray& vertices,
                             const OdGeDoubleArray& bulges) {
  if (loopIndex < 0 || static_cast<unsigned int>(loopIndex) > m_loops.size())
    throw OdError_InvalidIndex();
  Loop loop = checkedLoop(loopType, vertices, bulges);
  assertWriteEnabled();
  m_loops.insertAt(static_cast<unsigned int>(loopIndex), loop);
}

void OdDbHatch::removeLoopAt(int loopIndex) {
  loopAt(loopIndex);
  assertWriteEnabled();
  m_loops.removeAt(static_cast<unsigned int>(loopIndex));
}

// Pattern and style ---------------------------------------------------------------------------

bool OdDbHatch::associative() const {
  assertReadEnabled();
  return m_associative;
}

void OdDbHatch::setAssociative(bool isAssociative) {
  assertWriteEnabled();
  m_associative = isAssociative;
}

OdDbHatch::HatchPatternType OdDbHatch::patternType() const {
  assertReadEnabled();
  return m_patternType;
}

OdString OdDbHatch::patternName() const {
  assertReadEnabled();
  return m_patternName;
}

void OdDbHatch::setPattern(HatchPatternType patType, const OdString& patName) {
  if (patType != kUserDefined && patType != kPreDefined && patType != kCustomDefined)
    throw OdError(eInvalidInput, OD_T("Unknown hatch pattern type"));
  assertWriteEnabled();
  m_patternType = patType;
  m_patternName = patName;
  m_solidFill = patType == kPreDefined && patName.iCompare(OD_T("SOLID")) == 0;
}

double OdDbHatch::patternAngle() const {
  assertReadEnabled();
  return m_patternAngle;
}

void OdDbHatch::setPatternAngle(double angle) {
  if (!std::isfinite(angle))
    throw OdError(eInvalidInput, OD_T("A hatch pattern angle must be a finite number"));
  assertWriteEnabled();
  m_patternAngle = angle;
}

double OdDbHatch::patternScale() const {
  assertReadEnabled();
  return m_patternScale;
}

void OdDbHatch::setPatternScale(double scale) {
  if (!isValidScale(scale))
    throw OdError(eInvalidInput, OD_T("A hatch pattern scale must be a positive number"));
  assertWriteEnabled();
  m_patternScale = scale;
}

bool OdDbHatch::patternDouble() const {
  assertReadEnabled();
  return m_patternDouble;
}

void OdDbHatch::setPatternDouble(bool isDouble) {
  assertWriteEnabled();
  m_patternDouble = isDouble;
}

bool OdDbHatch::isSolidFill() const {
  assertReadEnabled();
  return m_solidFill;
}

OdDbHatch::HatchStyle OdDbHatch::hatchStyle() const {
  assertReadEnabled();
  return m_hatchStyle;
}

void OdDbHatch::setHatchStyle(HatchStyle hatchStyle) {
  if (hatchStyle != kNormal && hatchStyle != kOuter && hatchStyle != kIgnore)
    throw OdError(eInvalidInput, OD_T("Unknown hatch style"));
  assertWriteEnabled();
  m_hatchStyle = hatchStyle;
}

OdDbHatch::HatchObjectType OdDbHatch::hatchObjectType() const {
  assertReadEnabled();
  return m_hatchObjectType;
}

void OdDbHatch::setHatchObjectType(HatchObjectType hatchObjectType) {
  if (hatchObjectType != kHatchObject && hatchObjectType != kGradientObject)
    throw OdError(eInvalidInput, OD_T("Unknown hatch object type"));
  assertWriteEnabled();
  m_hatchObjectType = hatchObjectType;
}

OdResult OdDbHatch::getArea(double& area) const {
  assertReadEnabled();
  double total = 0.0;
  for (const Loop& loop : m_loops) {
    const double loopArea = std::fabs(LoopView{loop.vertices, loop.bulges}.signedArea());
    total += (loop.type & (kExternal | kOutermost)) ? loopArea : -loopArea;
  }
  area = total;
  return eOk;
}

// Filing --------------------------------------------------------------------------------------

void OdDbHatch::dwgOutFields(OdDbDwgFiler* filer) const {
  OdDbEntity::dwgOutFields(filer);
  // The gradient block; no gradient is kept, so only its flag carries anything.
  filer->wrInt32(static_cast<OdInt32>(m_hatchObjectType));
  filer->wrInt32(0);           // reserved
  filer->wrDouble(0.0);        // gradient angle
  filer->wrDouble(0.0);        // gradient shift
  filer->wrInt32(0);           // single colour gradient
  filer->wrDouble(0.0);        // gradient tint
  filer->wrInt32(0);           // gradient colour count
  filer->wrString(OdString()); // gradient name

  filer->wrDouble(m_elevation);
  filer->wrVector3d(m_normal);
  filer->wrString(m_patternName);
  filer->wrBool(m_solidFill);
  filer->wrBool(m_associative);
  filer->wrInt32(static_cast<OdInt32>(m_loops.size()));
  for (const Loop& loop : m_loops) {
    const bool bulged = hasBulges(loop.bulges);
    filer->wrInt32(loop.type);
    filer->wrBool(bulged);
    filer->wrBool(true); // closed
    filer->wrInt32(static_cast<OdInt32>(loop.vertices.size()));
    for (unsigned int i = 0; i < loop.vertices.size(); ++i) {
      filer->wrPoint2d(loop.vertices[i]);
      if (bulged)
        filer->wrDouble(loop.bulges[i]);
    }
    filer->wrInt32(0); // boundary objects
  }
  filer->wrInt16(static_cast<OdInt16>(m_hatchStyle));
  filer->wrInt16(static_cast<OdInt16>(m_patternType));
  filer->wrDouble(m_patternAngle);
  filer->wrDouble(m_patternScale);
  filer->wrBool(m_patternDouble);
  filer->wrInt16(0); // pattern definition lines
  filer->wrInt32(0); // seed points
}

OdResult OdDbHatch::dwgInFields(OdDbDwgFiler* filer) {
  const OdResult base = OdDbEntity::dwgInFields(filer);
  if (base != eOk)
    return base;
  const OdUInt32 gradient = static_cast<OdUInt32>(filer->rdInt32());
  filer->rdInt32(); // reserved
  const double gradientAngle = filer->rdDouble();
  const double gradientShift = filer->rdDouble();
  filer->rdInt32(); // single colour gradient
  const double gradientTint = filer->rdDouble();
  const OdUInt32 gradientColors = static_cast<OdUInt32>(filer->rdInt32());
  filer->rdString(); // gradient name
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (gradient > 1 || gradientColors != 0 || !std::isfinite(gradientAngle) ||
      !std::isfinite(gradientShift) || !std::isfinite(gradientTint))
    return eDwgObjectImproperlyRead;

  const double elevation = filer->rdDouble();
  const OdGeVector3d normal = filer->rdVector3d();
  const OdString patternName = filer->rdString();
  const bool solidFill = filer->rdBool();
  const bool associative = filer->rdBool();
  const OdUInt32 numLoops = static_cast<OdUInt32>(filer->rdInt32());
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (!fits(numLoops * kMinBitsPerLoop, remainingDataBits(filer)))
    return eEndOfFile;

  OdArray<Loop> loops;
  for (OdUInt32 i = 0; i < numLoops && filer->filerStatus() == eOk; ++i) {
    Loop loop;
    loop.type = filer->rdInt32();
    const bool bulged = filer->rdBool();
    filer->rdBool(); // closed: every loop is
    const OdUInt32 numVertices = static_cast<OdUInt32>(filer->rdInt32());
    if (filer->filerStatus() != eOk)
      break;
    if (!(loop.type & kPolyline))
      return eDwgObjectImproperlyRead; // edge loops are not kept
    const OdUInt64 perVertex = kMinBitsPerVertex + (bulged ? kMinBitsPerBulge : 0);
    if (!fits(numVertices * perVertex, remainingDataBits(filer)))
      return eEndOfFile;
    for (OdUInt32 k = 0; k < numVertices && filer->filerStatus() == eOk; ++k) {
      loop.vertices.append(filer->rdPoint2d());
      loop.bulges.append(bulged ? filer->rdDouble() : 0.0);
    }
    const OdUInt32 numObjects = static_cast<OdUInt32>(filer->rdInt32());
    if (filer->filerStatus() != eOk)
      break;
    if (numObjects != 0)
      return eDwgObjectImproperlyRead; // boundary objects are not kept
    if (!isValidLoop(loop.type, loop.vertices, loop.bulges))
      return eInvalidInput;
    loops.append(loop);
  }
  const OdInt16 style = filer->rdInt16();
  const OdInt16 patternType = filer->rdInt16();
  const double patternAngle = filer->rdDouble();
  const double patternScale = filer->rdDouble();
  const bool patternDouble = filer->rdBool();
  const OdInt16 definitionLines = filer->rdInt16();
  const OdUInt32 numSeeds = static_cast<OdUInt32>(filer->rdInt32());
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();
  if (definitionLines != 0)
    return eDwgObjectImproperlyRead; // pattern definitions are not kept
  if (!fits(numSeeds * kMinBitsPerSeed, remainingDataBits(filer)))
    return eEndOfFile;
  for (OdUInt32 i = 0; i < numSeeds && filer->filerStatus() == eOk; ++i)
    filer->rdPoint2d(); // seed points are dropped
  if (filer->filerStatus() != eOk)
    return filer->filerStatus();

  if (!std::isfinite(elevation) || !isValidNormal(normal) || style < kNormal || style > kIgnore ||
      patternType < kUserDefined || patternType > kCustomDefined || !std::isfinite(patternAngle) ||
      !isValidScale(patternScale))
    return eInvalidInput;
  m_hatchObjectType = static_cast<HatchObjectType>(gradient);
  m_elevation = elevation;
  m_normal = normal.normal();
  m_patternName = patternName;
  m_solidFill = solidFill;
  m_associative = associative;
  m_loops = loops;
  m_hatchStyle = static_cast<HatchStyle>(style);
  m_patternType = static_cast<HatchPatternType>(patternType);
  m_patternAngle = patternAngle;
  m_patternScale = patternScale;
  m_patternDouble = patternDouble;
  return eOk;
}

void OdDbHatch::dxfOutFields(OdDbDxfFiler* filer) const {
  OdDbEntity::dxfOutFields(filer);
  filer->wrSubclassMarker(OD_T("AcDbHatch"));
  filer->wrPoint3d(10, OdGePoint3d(0.0, 0.0, m_elevation));
  filer->wrVector3d(210, m_normal);
  filer->wrString(2, m_patternName);
  filer->wrInt16(70, m_solidFill ? 1 : 0);
  filer->wrInt16(71, m_associative ? 1 : 0);
  filer->wrInt32(91, static_cast<OdInt32>(m_loops.size()));
  for (const Loop& loop : m_loops) {
    const bool bulged = hasBulges(loop.bulges);
    filer->wrInt32(92, loop.type);
    filer->wrInt16(72, bulged ? 1 : 0);
    filer->wrInt16(73, 1);
    filer->wrInt32(93, static_cast<OdInt32>(loop.vertices.size()));
    for (unsigned int i = 0; i < loop.vertices.size(); ++i) {
      filer->wrPoint2d(10, loop.vertices[i]);
      if (bulged)
        filer->wrDouble(42, loop.bulges[i]);
    }
    filer->wrInt32(97, 0);
  }
  filer->wrInt16(75, static_cast<OdInt16>(m_hatchStyle));
  filer->wrInt16(76, static_cast<OdInt16>(m_patternType));
  filer->wrAngle(52, m_patternAngle);
  filer->wrDouble(41, m_patternScale);
  filer->wrInt16(77, m_patternDouble ? 1 : 0);
  // The definition lines of the pattern as drawn, so that readers that do not know the
  // pattern by name draw it alike: each family through the origin, turned by the pattern
  // angle, with the offset between neighbouring lines scaled by the pattern scale.
  const std::vector<PatternFamily> families =
      m_solidFill ? std::vector<PatternFamily>()
                  : patternFamilies(m_patternType, m_patternName, m_patternDouble);
  filer->wrInt16(78, static_cast<OdInt16>(families.size()));
  for (const PatternFamily& family : families) {
    const double angle = family.angleDegrees * OdaPI / 180.0 + m_patternAngle;
    const double spacing = family.spacing * m_patternScale;
    filer->wrAngle(53, angle);
    filer->wrDouble(43, 0.0);
    filer->wrDouble(44, 0.0);
    filer->wrDouble(45, -spacing * std::sin(angle));
    filer->wrDouble(46, spacing * std::cos(angle));
    filer->wrInt16(79, 0);
  }
  filer->wrInt32(98, 0);
  if (m_hatchObjectType == kGradientObject)
    filer->wrInt32(450, 1);
}

namespace {

/// Reads the next item when it has the given group code; false (item left unread) otherwise.
bool nextIs(OdDbDxfFiler* filer, int groupCode) {
  if (filer->atEOF() || filer->atEndOfObject())
    return false;
  if (filer->nextItem() == groupCode)
    return true;
  filer->pushBackItem();
  return false;
}

/// One polyline loop from its 92 group on; a loop of another kind gives eInvalidDxfCode.
OdResult readDxfLoop(OdDbDxfFiler* filer, OdInt32& loopType, OdGePoint2dArray& vertices,
                     OdGeDoubleArray& bulges) {
  if (!nextIs(filer, 92))
    return eInvalidDxfCode;
  loopType = filer->rdInt32();
  if (!(loopType & OdDbHatch::kPolyline))
    return eInvalidDxfCode; // edge loops are not kept
  if (!nextIs(filer, 72))
    return eInvalidDxfCode;
  filer->rdInt16(); // has bulges: each vertex is followed by its 42 or not
  if (!nextIs(filer, 73))
    return eInvalidDxfCode;
  filer->rdInt16(); // closed: every loop is
  if (!nextIs(filer, 93))
    return eInvalidDxfCode;
  const OdInt32 numVertices = filer->rdInt32();
  // The count only steers the reading; nothing is allocated ahead of the items themselves.
  for (OdInt32 i = 0; i < numVertices && filer->filerStatus() == eOk; ++i) {
    if (!nextIs(filer, 10))
      return eInvalidDxfCode;
    OdGePoint2d point;
    filer->rdPoint2d(point);
    vertices.append(point);
    bulges.append(nextIs(filer, 42) ? filer->rdDouble() : 0.0);
  }
  if (!nextIs(filer, 97))
    return eInvalidDxfCode;
  const OdInt32 numObjects = filer->rdInt32();
  for (OdInt32 i = 0; i < numObjects && filer->filerStatus() == eOk; ++i) {
    if (!nextIs(filer, 330))
      return eInvalidDxfCode;
    filer->rdObjectId(); // boundary objects are not kept
  }
  return filer->filerStatus();
}

} // namespace

OdResult OdDbHatch::dxfInFields(OdDbDxfFiler* filer) {
  const OdResult base = OdDbEntity::dxfInFields(filer);
  if (base != eOk)
    return base;
  if (!filer->atSubclassData(OD_T("AcDbHatch")))
    return eInvalidDxfCode;
  OdArray<Loop> loops;
  double elevation = 0.0;
  OdGeVector3d normal(0.0, 0.0, 1.0);
  OdString patternName;
  bool solidFill = false;
  bool associative = false;
  OdInt16 style = kNormal;
  OdInt16 patternType = kPreDefined;
  double patternAngleDegrees = 0.0;
  double patternScale = 1.0;
  bool patternDouble = false;
  OdInt32 gradient = 0;
  bool seedsBegun = false;
  const OdResult groups = odDbReadDxfSubclassGroups(filer, [&](int code) -> OdResult {
    switch (code) {
    case 10: {
      OdGePoint3d point;
      filer->rdPoint3d(point);
      if (!seedsBegun) // after 98 the points are seed points, which are not kept
        elevation = point.z;
      break;
    }
    case 210:
      filer->rdVector3d(normal);
      break;
    case 2:
      patternName = filer->rdString();
      break;
    case 70:
      solidFill = filer->rdInt16() != 0;
      break;
    case 71:
      associative = filer->rdInt16() != 0;
      break;
    case 91: {
      const OdInt32 numLoops = filer->rdInt32();
      for (OdInt32 i = 0; i < numLoops && filer->filerStatus() == eOk; ++i) {
        Loop loop;
        const OdResult read = readDxfLoop(filer, loop.type, loop.vertices, loop.bulges);
        if (read != eOk)
          return read;
        if (!isValidLoop(loop.type, loop.vertices, loop.bulges))
          return eInvalidInput;
        loops.append(loop);
      }
      break;
    }
    case 75:
      style = filer->rdInt16();
      break;
    case 76:
      patternType = filer->rdInt16();
      break;
    case 52:
      patternAngleDegrees = filer->rdDouble();
      break;
    case 41:
      patternScale = filer->rdDouble();
      break;
    case 77:
      patternDouble = filer->rdInt16() != 0;
      break;
    case 98:
      filer->rdInt32();
      seedsBegun = true;
      break;
    case 450:
      gradient = filer->rdInt32();
      break;
    default:
      break; // pattern definition lines, gradient details and the like are skipped
    }
    return eOk;
  });
  if (groups != eOk)
    return groups;
  if (!std::isfinite(elevation) || !isValidNormal(normal) || style < kNormal || style > kIgnore ||
      patternType < kUserDefined || patternType > kCustomDefined ||
      !std::isfinite(patternAngleDegrees) || !isValidScale(patternScale) || gradient < 0 ||
      gradient > 1)
    return eInvalidInput;
  m_loops = loops;
  m_elevation = elevation;
  m_normal = normal.normal();
  m_patternName = patternName;
  m_solidFill = solidFill;
  m_associative = associative;
  m_hatchStyle = static_cast<HatchStyle>(style);
  m_patternType = static_cast<HatchPatternType>(patternType);
  m_patternAngle = patternAngleDegrees * OdaPI / 180.0;
  m_patternScale = patternScale;
  m_patternDouble = patternDouble;
  m_hatchObjectType = static_cast<HatchObjectType>(gradient);
  return eOk;
}

// Drawing -------------------------------------------------------------------------------------

bool OdDbHatch::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  assertReadEnabled();
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  auto toWorldPoint = [&](const OdGePoint2d& p) { return toWorld(toWorldMatrix, p); };
  OdGiWorldGeometry& geometry = worldDraw->geometry();
  if (m_solidFill) {
    OdGiSubEntityTraits& traits = worldDraw->subEntityTraits();
    const OdGiFillType previous = traits.fillType();
    traits.setFillType(kOdGiFillAlways);
    for (const Loop& loop : m_loops) {
      OdGePoint3dArray points;
      LoopView{loop.vertices, loop.bulges}.tessellate(worldDraw, toWorldPoint, points);
      geometry.polygon(static_cast<OdInt32>(points.size()), points.asArrayPtr());
    }
    traits.setFillType(previous);
    return true;
  }
  for (const Loop& loop : m_loops) {
    OdGePoint3dArray points;
    LoopView{loop.vertices, loop.bulges}.tessellate(worldDraw, toWorldPoint, points);
    points.append(points[0]);
    geometry.polyline(static_cast<OdInt32>(points.size()), points.asArrayPtr(), &m_normal);
  }
  drawPattern(worldDraw, toWorldMatrix);
  return true;
}

void OdDbHatch::drawPattern(OdGiWorldDraw* worldDraw, const OdGeMatrix3d& toWorldMatrix) const {
  if (m_loops.isEmpty())
    return;
  std::vector<LoopView> views;
  // A box around every loop, arcs taken as their full circles: enough to bound the lines.
  double minX = std::numeric_limits<double>::max(), minY = minX;
  double maxX = -minX, maxY = -minX;
  auto grow = [&](const OdGePoint2d& p, double margin) {
    minX = std::min(minX, p.x - margin);
    minY = std::min(minY, p.y - margin);
    maxX = std::max(maxX, p.x + margin);
    maxY = std::max(maxY, p.y + margin);
  };
  for (const Loop& loop : m_loops) {
    views.push_back(LoopView{loop.vertices, loop.bulges});
    for (unsigned int i = 0; i < loop.vertices.size(); ++i) {
      grow(loop.vertices[i], 0.0);
      OdGeBulgeArc arc;
      if (views.back().arc(i, arc))
        grow(arc.center, arc.radius);
    }
  }
  const OdGePoint2d corners[] = {{minX, minY}, {maxX, minY}, {minX, maxY}, {maxX, maxY}};

  auto isHatched = [&](const OdGePoint2d& point) {
    int depth = 0;
    for (const LoopView& view : views)
      depth += view.contains(point) ? 1 : 0;
    switch (m_hatchStyle) {
    case kOuter:
      return depth == 1;
    case kIgnore:
      return depth >= 1;
    default:
      return depth % 2 == 1;
    }
  };

  OdGiWorldGeometry& geometry = worldDraw->geometry();
  for (const PatternFamily& family :
       patternFamilies(m_patternType, m_patternName, m_patternDouble)) {
    const double angle = family.angleDegrees * OdaPI / 180.0 + m_patternAngle;
    const double spacing = family.spacing * m_patternScale;
    const OdGeVector2d dir(std::cos(angle), std::sin(angle));
    const OdGeVector2d across = dir.perpVector();
    double lowAcross = std::numeric_limits<double>::max(), highAcross = -lowAcross;
    double lowAlong = lowAcross, highAlong = highAcross;
    for (const OdGePoint2d& corner : corners) {
      lowAcross = std::min(lowAcross, corner.asVector().dotProduct(across));
      highAcross = std::max(highAcross, corner.asVector().dotProduct(across));
      lowAlong = std::min(lowAlong, corner.asVector().dotProduct(dir));
      highAlong = std::max(highAlong, corner.asVector().dotProduct(dir));
    }
    const double first = std::ceil(lowAcross / spacing);
    const double last = std::floor(highAcross / spacing);
    if (!(last - first < kMaxLinesPerFamily))
      continue; // too dense (or not a number): the family is left out
    for (double k = first; k <= last; k += 1.0) {
      if (worldDraw->regenAbort())
        return;
      const OdGePoint2d origin = OdGePoint2d::kOrigin + across * (k * spacing);
      std::vector<double> params = {lowAlong - 1.0, highAlong + 1.0};
      for (const LoopView& view : views)
        view.crossings(origin, dir, params);
      std::sort(params.begin(), params.end());
      // Runs of hatched intervals between consecutive crossings become one line each.
      bool inRun = false;
      double runStart = 0.0;
      auto endRun = [&](double runEnd) {
        if (runEnd - runStart > OdGeContext::gTol.equalPoint()) {
          const OdGePoint3d ends[2] = {toWorld(toWorldMatrix, origin + dir * runStart),
                                       toWorld(toWorldMatrix, origin + dir * runEnd)};
          geometry.polyline(2, ends, &m_normal);
        }
        inRun = false;
      };
      for (std::size_t i = 0; i + 1 < params.size(); ++i) {
        const double t0 = params[i];
        const double t1 = params[i + 1];
        if (t1 - t0 <= 1.e-12)
          continue;
        const bool hatched = isHatched(origin + dir * (0.5 * (t0 + t1)));
        if (hatched && !inRun) {
          inRun = true;
          runStart = t0;
        } else if (!hatched && inRun) {
          endRun(t0);
        }
      }
      if (inRun)
        endRun(params.back());
    }
  }
}

// Editing -------------------------------------------------------------------------------------

OdResult OdDbHatch::subGetGripPoints(OdGePoint3dArray& gripPoints) const {
  assertReadEnabled();
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  for (const Loop& loop : m_loops) {
    for (const OdGePoint2d& vertex : loop.vertices)
      gripPoints.append(toWorld(toWorldMatrix, vertex));
  }
  return eOk;
}

OdResult OdDbHatch::moveVertices(const OdIntArray& indices, const OdGeVector3d& offset) {
  // Grip numbers run over the loops' vertices in order: (loop, vertex) for each index.
  std::vector<std::pair<unsigned int, unsigned int>> targets;
  for (int index : indices) {
    if (index < 0)
      return eInvalidIndex;
    unsigned int rest = static_cast<unsigned int>(index);
    unsigned int loop = 0;
    while (loop < m_loops.size() && rest >= m_loops[loop].vertices.size())
      rest -= m_loops[loop++].vertices.size();
    if (loop == m_loops.size())
      return eInvalidIndex;
    targets.emplace_back(loop, rest);
  }
  std::sort(targets.begin(), targets.end());
  targets.erase(std::unique(targets.begin(), targets.end()), targets.end());
  const OdGeVector2d inPlane = (OdGeMatrix3d::worldToPlane(m_normal) * offset).convert2d();
  assertWriteEnabled();
  for (const auto& target : targets)
    m_loops[target.first].vertices[target.second] += inPlane;
  return eOk;
}

OdResult OdDbHatch::subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  return moveVertices(indices, offset);
}

OdResult OdDbHatch::subGetStretchPoints(OdGePoint3dArray& stretchPoints) const {
  return subGetGripPoints(stretchPoints);
}

OdResult OdDbHatch::subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) {
  return moveVertices(indices, offset);
}

OdResult OdDbHatch::subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker /*gsSelectionMark*/,
                                      const OdGePoint3d& /*pickPoint*/,
                                      const OdGePoint3d& /*lastPoint*/,
                                      const OdGeMatrix3d& /*xWorldToEye*/,
                                      OdGePoint3dArray& snapPoints) const {
  assertReadEnabled();
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  for (const Loop& loop : m_loops) {
    const LoopView view{loop.vertices, loop.bulges};
    for (unsigned int i = 0; i < view.size(); ++i) {
      if (osnapMode == OdDb::kOsModeEnd) {
        snapPoints.append(toWorld(toWorldMatrix, view.from(i)));
      } else if (osnapMode == OdDb::kOsModeMid) {
        OdGeBulgeArc arc;
        const OdGePoint2d middle =
            view.arc(i, arc) ? arc.pointAt(0.5) : view.from(i) + (view.to(i) - view.from(i)) * 0.5;
        snapPoints.append(toWorld(toWorldMatrix, middle));
      }
    }
  }
  return eOk;
}

OdResult OdDbHatch::subTransformBy(const OdGeMatrix3d& xform) {
  if (xform.isPerspective())
    return eInvalidInput;
  const OdGeMatrix3d toWorldMatrix = planeToWorld();
  const OdGeVector3d xAxis = xform * toWorldMatrix.getCsXAxis();
  const OdGeVector3d yAxis = xform * toWorldMatrix.getCsYAxis();
  const double scale = xAxis.length();
  const double tol = 1.e-9;
  if (!odgeIsFinite(xAxis) || !odgeIsFinite(yAxis) || !(scale > OdGeContext::gTol.equalVector()) ||
      std::fabs(yAxis.length() - scale) > tol * scale ||
      std::fabs(xAxis.dotProduct(yAxis)) > tol * scale * scale)
    return eInvalidInput;
  // The normal follows the matrix as a normal does (the inverse transpose): for a mirroring
  // matrix it points against the image of the plane's axes, so the plane's sense of turning
  // reverses and every bulge changes sign.
  const OdGeVector3d areaNormal = xAxis.crossProduct(yAxis);
  const bool mirrors = xform.det() < 0.0;
  const OdGeVector3d newNormal = (mirrors ? -areaNormal : areaNormal).normal();
  const OdGeMatrix3d newToPlane = OdGeMatrix3d::worldToPlane(newNormal);

  OdArray<Loop> loops = m_loops;
  for (Loop& loop : loops) {
    for (unsigned int i = 0; i < loop.vertices.size(); ++i) {
      loop.vertices[i] =
          (newToPlane * (xform * toWorld(toWorldMatrix, loop.vertices[i]))).convert2d();
      if (mirrors)
        loop.bulges[i] = -loop.bulges[i];
    }
  }
  const double elevation = (newToPlane * (xform * toWorld(toWorldMatrix, OdGePoint2d::kOrigin))).z;
  const OdGeVector3d patternDir =
      toWorldMatrix * OdGeVector3d(std::cos(m_patternAngle), std::sin(m_patternAngle), 0.0);
  const OdGeVector2d newPatternDir = (newToPlane * (xform * patternDir)).convert2d();
  const double patternScale = m_patternScale * scale;
  if (!std::isfinite(elevation) || !isValidScale(patternScale))
    return eInvalidInput;
  for (const Loop& loop : loops) {
    if (!isValidLoop(loop.type, loop.vertices, loop.bulges))
      return eInvalidInput;
  }
  assertWriteEnabled();
  m_loops = loops;
  m_elevation = elevation;
  m_normal = newNormal;
  m_patternScale = patternScale;
  m_patternAngle = normalizedAngle(std::atan2(newPatternDir.y, newPatternDir.x));
  return eOk;
}

OdRxObjectPtrArray OdDbHatch::outlines() const {
  OdRxObjectPtrArray result;
  for (const Loop& loop : m_loops) {
    OdDbPolylinePtr outline = OdDbPolyline::createObject();
    for (unsigned int i = 0; i < loop.vertices.size(); ++i)
      outline->addVertexAt(i, loop.vertices[i], loop.bulges[i]);
    outline->setClosed(true);
    outline->setElevation(m_elevation);
    outline->setNormal(m_normal);
    outline->setPropertiesFrom(this);
    result.append(outline);
  }
  return result;
}

OdResult OdDbHatch::subExplode(OdRxObjectPtrArray& entitySet) const {
  assertReadEnabled();
  for (const OdRxObjectPtr& outline : outlines())
    entitySet.append(outline);
  return eOk;
}

OdResult OdDbHatch::subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                                     OdGePoint3dArray& points, OdGsMarker /*thisGsMarker*/,
                                     OdGsMarker otherGsMarker) const {
  assertReadEnabled();
  OdGePoint3dArray found;
  for (const OdRxObjectPtr& outline : outlines()) {
    OdGePoint3dArray loopPoints;
    const OdResult result =
        OdDbPolyline::cast(outline)->intersectWith(other, intType, loopPoints, 0, otherGsMarker);
    if (result != eOk)
      return result;
    // A point where two loops touch counts once, as a vertex shared by two segments does.
    for (const OdGePoint3d& point : loopPoints) {
      if (std::none_of(found.begin(), found.end(),
                       [&](const OdGePoint3d& known) { return known.isEqualTo(point); }))
        found.append(point);
    }
  }
  for (const OdGePoint3d& point : found)
    points.append(point);
  return eOk;
}

OdResult OdDbHatch::subGetGeomExtents(OdGeExtents3d& extents) const {
  assertReadEnabled();
  extents = OdGeExtents3d();
  if (m_loops.isEmpty())
    return eInvalidExtents;
  for (const OdRxObjectPtr& outline : outlines()) {
    OdGeExtents3d loopExtents;
    if (OdDbPolyline::cast(outline)->getGeomExtents(loopExtents) == eOk)
      extents.addExt(loopExtents);
  }
  return eOk;
}
