#include "Gi/GiBaseSink.h"

#include "GiPlaneAxes.h"

OdGiBaseSink::OdGiBaseSink(OdDbDatabase* database)
    : m_viewport(static_cast<const OdGiWorldGeometry*>(this)), m_database(database) {}

// The drawing interfaces hand out non-const references from const members, as the SDK's do:
// drawing into a sink changes it even when the sink is reached through a const draw context.
OdGiGeometry& OdGiBaseSink::rawGeometry() const {
  return static_cast<OdGiWorldGeometry&>(const_cast<OdGiBaseSink&>(*this));
}

OdGiBaseSink& OdGiBaseSink::geometry() const {
  return const_cast<OdGiBaseSink&>(*this);
}

OdGiViewport& OdGiBaseSink::viewport() const {
  return const_cast<OdGiFixedViewport&>(m_viewport);
}

OdGiSubEntityTraits& OdGiBaseSink::subEntityTraits() const {
  return const_cast<OdGiBaseSink&>(*this);
}

OdGiContext* OdGiBaseSink::context() const {
  return const_cast<OdGiBaseSink*>(this);
}

void OdGiBaseSink::circle(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                          const OdGePoint3d& thirdPoint) {
  OdGePoint3d center;
  double radius = 0.0;
  OdGeVector3d normal;
  // Points that are not finite never define a circle, so they are refused here as well.
  if (!odgiCircleThrough3Points(firstPoint, secondPoint, thirdPoint, center, radius, normal)) {
    refused();
    return;
  }
  circle(center, radius, normal);
}

void OdGiBaseSink::circularArc(const OdGePoint3d& start, const OdGePoint3d& point,
                               const OdGePoint3d& end, OdGiArcType arcType) {
  OdGePoint3d center;
  double radius = 0.0;
  OdGeVector3d normal;
  OdGeVector3d startVector;
  double sweep = 0.0;
  if (odgiArcThrough3Points(start, point, end, center, radius, normal, startVector, sweep)) {
    circularArc(center, radius, normal, startVector, sweep, arcType);
    return;
  }
  const OdGePoint3d points[3] = {start, point, end};
  polyline(3, points);
}

void OdGiBaseSink::pushModelTransform(const OdGeMatrix3d& xfm) {
  m_transforms.push_back(getModelToWorldTransform() * xfm);
}

void OdGiBaseSink::popModelTransform() {
  if (!m_transforms.empty())
    m_transforms.pop_back();
}

OdGeMatrix3d OdGiBaseSink::getModelToWorldTransform() const {
  return m_transforms.empty() ? OdGeMatrix3d() : m_transforms.back();
}

OdGePoint3d OdGiBaseSink::toWorld(const OdGePoint3d& modelPoint) const {
  return m_transforms.empty() ? modelPoint : m_transforms.back() * modelPoint;
}

OdGeVector3d OdGiBaseSink::toWorld(const OdGeVector3d& modelVector) const {
  return m_transforms.empty() ? modelVector : m_transforms.back() * modelVector;
}

bool OdGiBaseSink::planeAxes(const OdGeVector3d& normal, const OdGeVector3d* xHint, OdGeVector3d& u,
                             OdGeVector3d& v) {
  return odgi::planeAxes(normal, xHint, u, v);
}

bool OdGiBaseSink::circleAxes(double radius, const OdGeVector3d& normal, const OdGeVector3d* xHint,
                              OdGeVector3d& u, OdGeVector3d& v) {
  return radius >= 0.0 && odgi::isFinite(radius) && odgi::planeAxes(normal, xHint, u, v);
}
