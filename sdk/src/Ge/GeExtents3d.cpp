#include "Ge/GeExtents3d.h"

#include "Ge/GeMatrix3d.h"

#include <algorithm>

const OdGeExtents3d OdGeExtents3d::kInvalid;

OdGeExtents3d& OdGeExtents3d::set(const OdGePoint3d& min, const OdGePoint3d& max) {
  m_min = min;
  m_max = max;
  return *this;
}

OdGeExtents3d& OdGeExtents3d::comparingSet(const OdGePoint3d& pt1, const OdGePoint3d& pt2) {
  m_min.set(std::min(pt1.x, pt2.x), std::min(pt1.y, pt2.y), std::min(pt1.z, pt2.z));
  m_max.set(std::max(pt1.x, pt2.x), std::max(pt1.y, pt2.y), std::max(pt1.z, pt2.z));
  return *this;
}

OdGeExtents3d& OdGeExtents3d::addPoint(const OdGePoint3d& point) {
  if (!isValidExtents())
    return set(point, point);
  m_min.set(std::min(m_min.x, point.x), std::min(m_min.y, point.y), std::min(m_min.z, point.z));
  m_max.set(std::max(m_max.x, point.x), std::max(m_max.y, point.y), std::max(m_max.z, point.z));
  return *this;
}

OdGeExtents3d& OdGeExtents3d::addPoints(const OdGePoint3dArray& points) {
  for (const OdGePoint3d& point : points)
    addPoint(point);
  return *this;
}

OdGeExtents3d& OdGeExtents3d::addExt(const OdGeExtents3d& extents) {
  if (!extents.isValidExtents())
    return *this;
  addPoint(extents.m_min);
  return addPoint(extents.m_max);
}

OdGeExtents3d& OdGeExtents3d::expandBy(const OdGeVector3d& vect) {
  if (!isValidExtents())
    return *this;
  const OdGePoint3d movedMin = m_min + vect;
  const OdGePoint3d movedMax = m_max + vect;
  addPoint(movedMin);
  return addPoint(movedMax);
}

OdGeExtents3d& OdGeExtents3d::transformBy(const OdGeMatrix3d& xfm) {
  if (!isValidExtents())
    return *this;
  const OdGePoint3d lo = m_min;
  const OdGePoint3d hi = m_max;
  *this = OdGeExtents3d();
  for (int corner = 0; corner < 8; ++corner) {
    const OdGePoint3d p((corner & 1) ? hi.x : lo.x, (corner & 2) ? hi.y : lo.y,
                        (corner & 4) ? hi.z : lo.z);
    addPoint(xfm * p);
  }
  return *this;
}

OdGePoint3d OdGeExtents3d::center() const {
  if (!isValidExtents())
    return OdGePoint3d::kOrigin;
  return OdGePoint3d((m_min.x + m_max.x) / 2.0, (m_min.y + m_max.y) / 2.0,
                     (m_min.z + m_max.z) / 2.0);
}

OdGeVector3d OdGeExtents3d::diagonal() const {
  if (!isValidExtents())
    return OdGeVector3d::kIdentity;
  return m_max - m_min;
}

bool OdGeExtents3d::contains(const OdGePoint3d& point, const OdGeTol& tol) const {
  if (!isValidExtents())
    return false;
  const double t = tol.equalPoint();
  for (unsigned int i = 0; i < 3; ++i) {
    if (point[i] < m_min[i] - t || point[i] > m_max[i] + t)
      return false;
  }
  return true;
}

bool OdGeExtents3d::contains(const OdGeExtents3d& extents, const OdGeTol& tol) const {
  if (!extents.isValidExtents())
    return false;
  return contains(extents.m_min, tol) && contains(extents.m_max, tol);
}

bool OdGeExtents3d::isEqualTo(const OdGeExtents3d& extents, const OdGeTol& tol) const {
  const bool valid = isValidExtents();
  if (valid != extents.isValidExtents())
    return false;
  if (!valid)
    return true;
  return m_min.isEqualTo(extents.m_min, tol) && m_max.isEqualTo(extents.m_max, tol);
}
