#include "RenderSink.h"

#include "DbEntity.h"
#include "GiTextMetrics.h"
#include "Ge/GePoint2d.h"
#include "OdString.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace custents {
namespace render {

namespace {

constexpr double kPi = 3.14159265358979323846;
/// How far a traced curve may stray from the true one, in pixels.
constexpr double kCurveTolerancePixels = 0.25;
/// More segments than this per arc would not show and only make files large.
constexpr int kMaxArcSegments = 4096;
/// The steepest slant drawn, as CAD programs limit it (85 degrees).
constexpr double kMaxOblique = 85.0 * kPi / 180.0;

bool isFinite(const PixelPoint& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

bool isDrawable(const ScenePrimitive& primitive) {
  if (primitive.points.empty() || !std::isfinite(primitive.radius))
    return false;
  if (!std::all_of(primitive.points.begin(), primitive.points.end(), isFinite))
    return false;
  return isFinite(primitive.textAlong) && isFinite(primitive.textUp);
}

int arcSegments(double radiusPixels, double sweep) {
  if (!(radiusPixels > kCurveTolerancePixels))
    return 1;
  const double step = 2.0 * std::acos(1.0 - kCurveTolerancePixels / radiusPixels);
  const double segments = std::ceil(std::fabs(sweep) / step);
  return static_cast<int>(std::min<double>(std::max(segments, 1.0), kMaxArcSegments));
}

bool isHighSurrogate(OdChar c) {
  return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(OdChar c) {
  return c >= 0xDC00 && c <= 0xDFFF;
}

/// The characters of a line with the cells the text metrics give them, in heights times the
/// width factor; advance is the whole line's. Each character is measured on its own through the
/// installed line-width rule and the cells are scaled to add up to the line's advance, so an
/// application's own rule places the glyphs as it places the box.
std::vector<SceneGlyph> textCells(const OdString& text, double height, double width,
                                  double& advance) {
  std::vector<SceneGlyph> glyphs;
  const double unit = height * width;
  advance = odgiTextLineWidth(text, height, width) / unit;
  double sum = 0.0;
  const int length = text.getLength();
  for (int i = 0; i < length; ++i) {
    OdUInt32 codePoint = text.getAt(i);
    int units = 1;
    if (isHighSurrogate(text.getAt(i)) && i + 1 < length && isLowSurrogate(text.getAt(i + 1))) {
      codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (text.getAt(i + 1) - 0xDC00u);
      units = 2;
    }
    const OdString piece(text.c_str() + i, units);
    i += units - 1;
    SceneGlyph glyph;
    glyph.utf8 = piece.toUtf8();
    glyph.cellStart = sum;
    glyph.cellWidth = odgiTextLineWidth(piece, height, width) / unit;
    glyph.fullWidth = odgiIsFullWidth(codePoint);
    sum += glyph.cellWidth;
    glyphs.push_back(std::move(glyph));
  }
  if (!std::isfinite(advance) || !std::isfinite(sum) || !(sum > 0.0)) {
    advance = 0.0;
    glyphs.clear();
    return glyphs;
  }
  const double scale = advance / sum;
  for (SceneGlyph& glyph : glyphs) {
    glyph.cellStart *= scale;
    glyph.cellWidth *= scale;
  }
  return glyphs;
}

} // namespace

RenderSink::RenderSink(RenderScene& scene, const ViewTransform& view, StyleResolver& styles)
    : m_scene(scene), m_view(view), m_styles(styles) {
  // The same plan view the picture shows, so view-dependent graphics match it.
  const double centerX = (0.5 * scene.width - view.offsetX) / view.scale;
  const double centerY = (view.offsetY - 0.5 * scene.height) / view.scale;
  fixedViewport().setView(OdGePoint3d(centerX, centerY, 0.0), OdGeVector3d::kZAxis,
                          OdGeVector3d::kYAxis);
  fixedViewport().setPixelsPerUnit(view.scale);
  fixedViewport().setViewportDcCorners(OdGePoint2d(0.0, 0.0),
                                       OdGePoint2d(scene.width, scene.height));
}

void RenderSink::drawEntity(const OdDbEntity* entity) {
  resetTraits();
  clearModelTransforms();
  m_entityLayer = entity->layerId();
  setDatabase(entity->database());
  setTrueColor(entity->entityColor());
  setLayer(m_entityLayer);
  setLineType(entity->linetypeId());
  setLineWeight(entity->lineWeight());
  setLineTypeScale(entity->linetypeScale());
  try {
    if (!entity->worldDraw(this))
      entity->viewportDraw(this);
  } catch (...) {
    clearModelTransforms();
    throw;
  }
  clearModelTransforms();
}

double RenderSink::deviation(const OdGiDeviationType, const OdGePoint3d&) const {
  return kCurveTolerancePixels / m_view.scale;
}

void RenderSink::commit(ScenePrimitive&& primitive) {
  OdDbStub* layerInForce = layer() ? layer() : m_entityLayer;
  if (!isDrawable(primitive) || !m_styles.layerShows(layerInForce))
    return;
  primitive.color = m_styles.color(trueColor(), layerInForce);
  primitive.lineWidth = m_styles.lineWidth(lineWeight(), layerInForce);
  m_scene.primitives.push_back(std::move(primitive));
}

PixelPoint RenderSink::toPixels(const OdGePoint3d& modelPoint) const {
  const OdGePoint3d world = toWorld(modelPoint);
  return m_view.toPixels(world.x, world.y);
}

PixelPoint RenderSink::vectorToPixels(const OdGeVector3d& modelVector) const {
  const OdGeVector3d world = toWorld(modelVector);
  return m_view.vectorToPixels(world.x, world.y);
}

void RenderSink::addEllipseArc(const PixelPoint& center, const PixelPoint& u, const PixelPoint& v,
                               double sweep, OdGiArcType arcType, bool fullCircle) {
  const double lengthU = std::hypot(u.x, u.y);
  const double lengthV = std::hypot(v.x, v.y);
  const double tolerance = 1e-9 * std::max(lengthU, lengthV);
  ScenePrimitive primitive;
  if (fullCircle && std::fabs(lengthU - lengthV) <= tolerance &&
      std::fabs(u.x * v.x + u.y * v.y) <= tolerance * std::max(lengthU, lengthV)) {
    primitive.kind = ScenePrimitive::kCircle;
    primitive.points.push_back(center);
    primitive.radius = lengthU;
    primitive.filled = fillsClosedShapes();
    commit(std::move(primitive));
    return;
  }
  // Anything else is traced: arcs, and circles that the view or a model transform turns into
  // ellipses.
  primitive.kind = ScenePrimitive::kPath;
  sweep = std::max(-2.0 * kPi, std::min(2.0 * kPi, sweep));
  const int segments = arcSegments(std::max(lengthU, lengthV), sweep);
  if (arcType == kOdGiArcSector && !fullCircle)
    primitive.points.push_back(center);
  for (int i = 0; i <= segments; ++i) {
    const double t = sweep * i / segments;
    const double c = std::cos(t);
    const double s = std::sin(t);
    primitive.points.push_back({center.x + u.x * c + v.x * s, center.y + u.y * c + v.y * s});
  }
  primitive.closed = fullCircle || arcType != kOdGiArcSimple;
  primitive.filled = primitive.closed && fillsClosedShapes();
  commit(std::move(primitive));
}

void RenderSink::circle(const OdGePoint3d& center, double radius, const OdGeVector3d& normal) {
  OdGeVector3d u;
  OdGeVector3d v;
  if (!circleAxes(radius, normal, nullptr, u, v))
    return;
  addEllipseArc(toPixels(center), vectorToPixels(u * radius), vectorToPixels(v * radius), 2.0 * kPi,
                kOdGiArcSimple, true);
}

void RenderSink::circularArc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                             const OdGeVector3d& startVector, double sweepAngle,
                             OdGiArcType arcType) {
  OdGeVector3d u;
  OdGeVector3d v;
  if (!std::isfinite(sweepAngle) || !circleAxes(radius, normal, &startVector, u, v))
    return;
  addEllipseArc(toPixels(center), vectorToPixels(u * radius), vectorToPixels(v * radius),
                sweepAngle, arcType, false);
}

void RenderSink::polyline(OdInt32 numVertices, const OdGePoint3d* vertexList,
                          const OdGeVector3d* /*pNormal*/, OdGsMarker /*baseSubEntMarker*/) {
  if (numVertices < 1 || vertexList == nullptr)
    return;
  ScenePrimitive primitive;
  primitive.kind = ScenePrimitive::kPath;
  for (OdInt32 i = 0; i < numVertices; ++i)
    primitive.points.push_back(toPixels(vertexList[i]));
  // A single vertex is a dot: a zero-length segment, which round caps draw as one.
  if (numVertices == 1)
    primitive.points.push_back(primitive.points.front());
  commit(std::move(primitive));
}

void RenderSink::polygon(OdInt32 numVertices, const OdGePoint3d* vertexList) {
  if (numVertices < 1 || vertexList == nullptr)
    return;
  ScenePrimitive primitive;
  primitive.kind = ScenePrimitive::kPolygon;
  for (OdInt32 i = 0; i < numVertices; ++i)
    primitive.points.push_back(toPixels(vertexList[i]));
  primitive.closed = true;
  primitive.filled = fillsClosedShapes();
  commit(std::move(primitive));
}

void RenderSink::text(const OdGePoint3d& position, const OdGeVector3d& normal,
                      const OdGeVector3d& direction, double height, double width, double oblique,
                      const OdString& msg) {
  OdGeVector3d along;
  OdGeVector3d up;
  if (!(height > 0.0) || !std::isfinite(height) || !std::isfinite(oblique) || msg.isEmpty() ||
      !planeAxes(normal, &direction, along, up))
    return;
  // A width factor that is not a positive number is read as the font's natural width.
  if (!(width > 0.0) || !std::isfinite(width))
    width = 1.0;
  oblique = std::max(-kMaxOblique, std::min(kMaxOblique, oblique));
  ScenePrimitive primitive;
  primitive.kind = ScenePrimitive::kText;
  primitive.textAlong = vectorToPixels(along * (height * width));
  primitive.textUp = vectorToPixels((up + along * std::tan(oblique)) * height);
  // Text seen edge-on has no area to draw into.
  const double area =
      primitive.textAlong.x * primitive.textUp.y - primitive.textAlong.y * primitive.textUp.x;
  if (!(std::fabs(area) >= 1e-12))
    return;
  primitive.glyphs = textCells(msg, height, width, primitive.textAdvance);
  // Only control characters, or a line-width rule that gives the line no width: no box.
  if (primitive.glyphs.empty())
    return;
  primitive.points.push_back(toPixels(position));
  primitive.text = msg.toUtf8();
  primitive.filled = true;
  commit(std::move(primitive));
}

void RenderSink::addLineThroughPicture(const OdGePoint3d& base, const OdGePoint3d& through,
                                       bool bothWays) {
  const PixelPoint from = toPixels(base);
  const PixelPoint to = toPixels(through);
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double length = std::hypot(dx, dy);
  // Coincident points, or a line along the view direction, show no line.
  if (!(length > 1e-9) || !std::isfinite(length))
    return;
  // Far enough from the base point to be outside the picture whatever the direction.
  const double reach = std::hypot(from.x - 0.5 * m_scene.width, from.y - 0.5 * m_scene.height) +
                       m_scene.width + m_scene.height;
  const double ux = dx / length;
  const double uy = dy / length;
  ScenePrimitive primitive;
  primitive.kind = ScenePrimitive::kPath;
  primitive.points.push_back(bothWays ? PixelPoint{from.x - ux * reach, from.y - uy * reach}
                                      : from);
  primitive.points.push_back({from.x + ux * reach, from.y + uy * reach});
  commit(std::move(primitive));
}

void RenderSink::xline(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) {
  addLineThroughPicture(firstPoint, secondPoint, true);
}

void RenderSink::ray(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) {
  addLineThroughPicture(basePoint, throughPoint, false);
}

} // namespace render
} // namespace custents
