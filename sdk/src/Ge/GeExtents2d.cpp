#include "Ge/GeExtents2d.h"

#include <algorithm>

const OdGeExtents2d OdGeExtents2d::kInvalid;

OdGeExtents2d& OdGeExtents2d::addPoint(const OdGePoint2d& point) {
  if (!isValidExtents())
    return set(point, point);
  m_min.set(std::min(m_min.x, point.x), std::min(m_min.y, point.y));
  m_max.set(std::max(m_max.x, point.x), std::max(m_max.y, point.y));
  return *this;
}

OdGeExtents2d& OdGeExtents2d::addPoints(const OdGePoint2dArray& points) {
  for (const OdGePoint2d& point : points)
    addPoint(point);
  return *this;
}

OdGeExtents2d& OdGeExtents2d::addExt(const OdGeExtents2d& extents) {
  if (!extents.isValidExtents())
    return *this;
  addPoint(extents.m_min);
  return addPoint(extents.m_max);
}

OdGePoint2d OdGeExtents2d::center() const {
  if (!isValidExtents())
    return OdGePoint2d::kOrigin;
  return OdGePoint2d((m_min.x + m_max.x) / 2.0, (m_min.y + m_max.y) / 2.0);
}

bool OdGeExtents2d::contains(const OdGePoint2d& point, const OdGeTol& tol) const {
  if (!isValidExtents())
    return false;
  const double t = tol.equalPoint();
  return point.x >= m_min.x - t && point.x <= m_max.x + t && point.y >= m_min.y - t &&
         point.y <= m_max.y + t;
}

bool OdGeExtents2d::contains(const OdGeExtents2d& extents, const OdGeTol& tol) const {
  if (!extents.isValidExtents())
    return false;
  return contains(extents.m_min, tol) && contains(extents.m_max, tol);
}

bool OdGeExtents2d::isEqualTo(const OdGeExtents2d& extents, const OdGeTol& tol) const {
  const bool valid = isValidExtents();
  if (valid != extents.isValidExtents())
    return false;
  if (!valid)
    return true;
  return m_min.isEqualTo(extents.m_min, tol) && m_max.isEqualTo(extents.m_max, tol);
}
