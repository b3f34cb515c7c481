#include "Gi/GiExtentsCollector.h"

#include "GiPlaneAxes.h"
#include "GiTextMetrics.h"

#include <cmath>

double OdGiExtentsCollector::defaultTextWidth(const OdString& text, double height,
                                              double widthFactor) {
  return odgiTextLineWidth(text, height, widthFactor);
}

OdGiExtentsCollector::OdGiExtentsCollector(OdDbDatabase* database)
    : OdGiBaseSink(database), m_textWidth(&defaultTextWidth) {}

void OdGiExtentsCollector::setTextWidthFunction(TextWidthFunction function) {
  m_textWidth = function ? std::move(function) : TextWidthFunction(&defaultTextWidth);
}

void OdGiExtentsCollector::addModelPoint(const OdGePoint3d& point) {
  m_extents.addPoint(toWorld(point));
}

void OdGiExtentsCollector::addPoints(OdInt32 numVertices, const OdGePoint3d* vertexList) {
  if (numVertices < 1 || vertexList == nullptr)
    return;
  for (OdInt32 i = 0; i < numVertices; ++i)
    addModelPoint(vertexList[i]);
}

namespace {

// The world box of center + U cos t + V sin t for t between the two sweep ends (the full
// ellipse when full is set). Coordinate i is c_i + U_i cos t + V_i sin t, which is extreme
// where t = atan2(V_i, U_i) and half a turn from there; those that fall inside the sweep join
// the end points.
void addEllipticArc(OdGeExtents3d& extents, const OdGePoint3d& center, const OdGeVector3d& U,
                    const OdGeVector3d& V, double sweepAngle, bool full) {
  auto pointAt = [&](double t) { return center + U * std::cos(t) + V * std::sin(t); };
  if (full) {
    // Half-extent along axis i is sqrt(U_i^2 + V_i^2); for a circle of radius r with unit
    // normal n that is r sqrt(1 - n_i^2).
    const OdGeVector3d half(std::sqrt(U.x * U.x + V.x * V.x), std::sqrt(U.y * U.y + V.y * V.y),
                            std::sqrt(U.z * U.z + V.z * V.z));
    extents.addPoint(center - half);
    extents.addPoint(center + half);
    return;
  }
  const double low = sweepAngle < 0.0 ? sweepAngle : 0.0;
  const double high = sweepAngle < 0.0 ? 0.0 : sweepAngle;
  extents.addPoint(pointAt(low));
  extents.addPoint(pointAt(high));
  for (unsigned int axis = 0; axis < 3; ++axis) {
    if (U[axis] == 0.0 && V[axis] == 0.0)
      continue;
    const double extreme = std::atan2(V[axis], U[axis]);
    for (double t : {extreme, extreme + OdaPI}) {
      // Bring t into [low, low + 2π) and keep it when the sweep reaches it.
      double turned = std::fmod(t - low, Oda2PI);
      if (turned < 0.0)
        turned += Oda2PI;
      if (low + turned <= high)
        extents.addPoint(pointAt(low + turned));
    }
  }
}

} // namespace

void OdGiExtentsCollector::circle(const OdGePoint3d& center, double radius,
                                  const OdGeVector3d& normal) {
  OdGeVector3d u;
  OdGeVector3d v;
  if (!circleAxes(radius, normal, nullptr, u, v))
    return;
  const OdGeMatrix3d xfm = getModelToWorldTransform();
  addEllipticArc(m_extents, xfm * center, xfm * (u * radius), xfm * (v * radius), 0.0, true);
}

void OdGiExtentsCollector::circularArc(const OdGePoint3d& center, double radius,
                                       const OdGeVector3d& normal, const OdGeVector3d& startVector,
                                       double sweepAngle, OdGiArcType arcType) {
  OdGeVector3d u;
  OdGeVector3d v;
  if (!odgi::isFinite(sweepAngle) || !circleAxes(radius, normal, &startVector, u, v))
    return;
  const OdGeMatrix3d xfm = getModelToWorldTransform();
  const OdGePoint3d worldCenter = xfm * center;
  addEllipticArc(m_extents, worldCenter, xfm * (u * radius), xfm * (v * radius), sweepAngle,
                 std::fabs(sweepAngle) >= Oda2PI);
  // A sector is closed through the centre; a chord only joins the ends already counted.
  if (arcType == kOdGiArcSector)
    m_extents.addPoint(worldCenter);
}

void OdGiExtentsCollector::polyline(OdInt32 numVertices, const OdGePoint3d* vertexList,
                                    const OdGeVector3d*, OdGsMarker) {
  addPoints(numVertices, vertexList);
}

void OdGiExtentsCollector::polygon(OdInt32 numVertices, const OdGePoint3d* vertexList) {
  addPoints(numVertices, vertexList);
}

void OdGiExtentsCollector::text(const OdGePoint3d& position, const OdGeVector3d& normal,
                                const OdGeVector3d& direction, double height, double width,
                                double oblique, const OdString& msg) {
  OdGeVector3d along;
  OdGeVector3d up;
  if (!odgi::planeAxes(normal, &direction, along, up))
    return;
  const double advance = m_textWidth(msg, height, width);
  const double slant = std::tan(oblique);
  if (!odgi::isFinite(advance) || !odgi::isFinite(height) || !odgi::isFinite(slant))
    return;
  const OdGeVector3d baseline = along * advance;
  const OdGeVector3d rise = up * height + along * (height * slant);
  addModelPoint(position);
  addModelPoint(position + baseline);
  addModelPoint(position + rise);
  addModelPoint(position + baseline + rise);
}

void OdGiExtentsCollector::xline(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) {
  addModelPoint(firstPoint);
  addModelPoint(secondPoint);
}

void OdGiExtentsCollector::ray(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) {
  addModelPoint(basePoint);
  addModelPoint(throughPoint);
}
