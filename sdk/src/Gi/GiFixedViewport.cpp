#include "Gi/GiFixedViewport.h"

#include <cmath>

OdGiFixedViewport::OdGiFixedViewport(const OdGiGeometry* modelSource)
    : m_modelSource(modelSource), m_target(0.0, 0.0, 0.0), m_viewDir(0.0, 0.0, 1.0),
      m_up(0.0, 1.0, 0.0), m_dcLowerLeft(0.0, 0.0), m_dcUpperRight(800.0, 600.0) {}

bool OdGiFixedViewport::setView(const OdGePoint3d& target, const OdGeVector3d& viewDirection,
                                const OdGeVector3d& upVector) {
  if (viewDirection.isZeroLength())
    return false;
  const OdGeVector3d dir = viewDirection.normal();
  OdGeVector3d up = upVector - dir * upVector.dotProduct(dir);
  if (up.isZeroLength())
    up = dir.crossProduct(dir.perpVector());
  m_target = target;
  m_viewDir = dir;
  m_up = up.normal();
  return true;
}

bool OdGiFixedViewport::setPixelsPerUnit(double pixelsPerUnit) {
  if (!(pixelsPerUnit > 0.0) || !std::isfinite(pixelsPerUnit))
    return false;
  m_pixelsPerUnit = pixelsPerUnit;
  return true;
}

void OdGiFixedViewport::setViewportDcCorners(const OdGePoint2d& lowerLeft,
                                             const OdGePoint2d& upperRight) {
  m_dcLowerLeft = lowerLeft;
  m_dcUpperRight = upperRight;
}

OdGeMatrix3d OdGiFixedViewport::modelToWorld() const {
  return m_modelSource ? m_modelSource->getModelToWorldTransform() : OdGeMatrix3d();
}

OdGeMatrix3d OdGiFixedViewport::getWorldToEyeTransform() const {
  // The eye axes are orthonormal, so the rotation's inverse is its transpose: its rows are the
  // eye axes in world coordinates.
  const OdGeVector3d xAxis = m_up.crossProduct(m_viewDir);
  const OdGeVector3d axes[3] = {xAxis, m_up, m_viewDir};
  OdGeMatrix3d m;
  for (unsigned int row = 0; row < 3; ++row) {
    m.entry[row][0] = axes[row].x;
    m.entry[row][1] = axes[row].y;
    m.entry[row][2] = axes[row].z;
    m.entry[row][3] = -axes[row].dotProduct(m_target.asVector());
  }
  return m;
}

OdGeMatrix3d OdGiFixedViewport::getEyeToWorldTransform() const {
  const OdGeVector3d xAxis = m_up.crossProduct(m_viewDir);
  const OdGeVector3d axes[3] = {xAxis, m_up, m_viewDir};
  OdGeMatrix3d m;
  for (unsigned int column = 0; column < 3; ++column) {
    m.entry[0][column] = axes[column].x;
    m.entry[1][column] = axes[column].y;
    m.entry[2][column] = axes[column].z;
  }
  m.entry[0][3] = m_target.x;
  m.entry[1][3] = m_target.y;
  m.entry[2][3] = m_target.z;
  return m;
}

OdGeMatrix3d OdGiFixedViewport::getModelToEyeTransform() const {
  return getWorldToEyeTransform() * modelToWorld();
}

OdGeMatrix3d OdGiFixedViewport::getEyeToModelTransform() const {
  // A flattening model transform has no inverse; eye coordinates then map to nowhere in
  // particular, and the identity is the least surprising answer.
  OdGeMatrix3d worldToModel;
  if (!modelToWorld().inverse(worldToModel, 1.e-12))
    worldToModel.setToIdentity();
  return worldToModel * getEyeToWorldTransform();
}

OdGePoint3d OdGiFixedViewport::getCameraLocation() const {
  return m_target + m_viewDir;
}

void OdGiFixedViewport::getNumPixelsInUnitSquare(const OdGePoint3d&, OdGePoint2d& pixelArea,
                                                 bool) const {
  pixelArea.set(m_pixelsPerUnit, m_pixelsPerUnit);
}

void OdGiFixedViewport::getViewportDcCorners(OdGePoint2d& lowerLeft,
                                             OdGePoint2d& upperRight) const {
  lowerLeft = m_dcLowerLeft;
  upperRight = m_dcUpperRight;
}
