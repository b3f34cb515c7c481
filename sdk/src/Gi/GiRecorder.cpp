#include "Gi/GiRecorder.h"

#include "GiPlaneAxes.h"

#include <algorithm>
#include <cmath>

OdGiRecorder::OdGiRecorder() = default;

std::size_t OdGiRecorder::count(OdGiRecord::Kind kind) const {
  return static_cast<std::size_t>(
      std::count_if(m_records.begin(), m_records.end(),
                    [kind](const OdGiRecord& record) { return record.kind == kind; }));
}

void OdGiRecorder::reset() {
  m_records.clear();
  clearModelTransforms();
  resetTraits();
}

OdGiRecord& OdGiRecorder::add(OdGiRecord::Kind kind) {
  m_records.emplace_back();
  OdGiRecord& record = m_records.back();
  record.kind = kind;
  record.traits = traitsData();
  return record;
}

void OdGiRecorder::circle(const OdGePoint3d& center, double radius, const OdGeVector3d& normal) {
  OdGeVector3d u;
  OdGeVector3d v;
  if (!circleAxes(radius, normal, nullptr, u, v))
    return;
  const OdGeMatrix3d xfm = getModelToWorldTransform();
  const OdGeVector3d worldU = xfm * u;
  OdGiRecord& record = add(OdGiRecord::kCircle);
  record.points.push_back(xfm * center);
  record.normal = odgi::transformNormal(xfm, normal);
  record.radius = radius * worldU.length();
}

void OdGiRecorder::circularArc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                               const OdGeVector3d& startVector, double sweepAngle,
                               OdGiArcType arcType) {
  OdGeVector3d u;
  OdGeVector3d v;
  if (!odgi::isFinite(sweepAngle) || !circleAxes(radius, normal, &startVector, u, v))
    return;
  const OdGeMatrix3d xfm = getModelToWorldTransform();
  // The arc is center + radius (u cos t + v sin t) for t from 0 to the sweep; transforming the
  // centre and both axes keeps every point of it exact under any affine transform.
  const OdGeVector3d worldU = xfm * (u * radius);
  const OdGeVector3d worldV = xfm * (v * radius);
  const OdGePoint3d worldCenter = xfm * center;
  OdGiRecord& record = add(OdGiRecord::kArc);
  record.points.push_back(worldCenter);
  record.points.push_back(worldCenter + worldU);
  record.points.push_back(worldCenter + worldU * std::cos(sweepAngle) +
                          worldV * std::sin(sweepAngle));
  const OdGeVector3d worldNormal = worldU.crossProduct(worldV);
  record.normal = worldNormal.isZeroLength() ? OdGeVector3d() : worldNormal.normal();
  record.radius = worldU.length();
  record.startVector = worldU.isZeroLength() ? OdGeVector3d() : worldU.normal();
  record.sweepAngle = sweepAngle;
  record.arcType = arcType;
}

void OdGiRecorder::addPoints(OdGiRecord::Kind kind, OdInt32 numVertices,
                             const OdGePoint3d* vertexList) {
  OdGiRecord& record = add(kind);
  record.points.reserve(static_cast<std::size_t>(numVertices));
  for (OdInt32 i = 0; i < numVertices; ++i)
    record.points.push_back(toWorld(vertexList[i]));
}

void OdGiRecorder::polyline(OdInt32 numVertices, const OdGePoint3d* vertexList,
                            const OdGeVector3d* pNormal, OdGsMarker baseSubEntMarker) {
  if (numVertices < 1 || vertexList == nullptr)
    return;
  addPoints(OdGiRecord::kPolyline, numVertices, vertexList);
  OdGiRecord& record = m_records.back();
  record.subEntMarker = baseSubEntMarker;
  if (pNormal)
    record.normal = odgi::transformNormal(getModelToWorldTransform(), *pNormal);
}

void OdGiRecorder::polygon(OdInt32 numVertices, const OdGePoint3d* vertexList) {
  if (numVertices < 1 || vertexList == nullptr)
    return;
  addPoints(OdGiRecord::kPolygon, numVertices, vertexList);
}

void OdGiRecorder::text(const OdGePoint3d& position, const OdGeVector3d& normal,
                        const OdGeVector3d& direction, double height, double width, double oblique,
                        const OdString& msg) {
  OdGeVector3d along;
  OdGeVector3d up;
  if (!odgi::planeAxes(normal, &direction, along, up))
    return;
  const OdGeMatrix3d xfm = getModelToWorldTransform();
  const OdGeVector3d worldAlong = xfm * along;
  const OdGeVector3d worldUp = xfm * up;
  const double alongScale = worldAlong.length();
  const double upScale = worldUp.length();
  const OdGeVector3d worldNormal = worldAlong.crossProduct(worldUp);
  OdGiRecord& record = add(OdGiRecord::kText);
  record.points.push_back(xfm * position);
  record.normal = worldNormal.isZeroLength() ? OdGeVector3d() : worldNormal.normal();
  record.direction = worldAlong.isZeroLength() ? OdGeVector3d() : worldAlong.normal();
  record.height = height * upScale;
  // The width factor is the ratio of the two stretches: scaling the baseline alone widens the
  // letters without making them taller.
  record.width = upScale > 0.0 ? width * alongScale / upScale : width;
  record.oblique = oblique;
  record.text = msg;
}

void OdGiRecorder::xline(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) {
  OdGiRecord& record = add(OdGiRecord::kXline);
  record.points.push_back(toWorld(firstPoint));
  record.points.push_back(toWorld(secondPoint));
}

void OdGiRecorder::ray(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) {
  OdGiRecord& record = add(OdGiRecord::kRay);
  record.points.push_back(toWorld(basePoint));
  record.points.push_back(toWorld(throughPoint));
}
