#ifndef OD_DB_FILED_PLANE_POINT_H
#define OD_DB_FILED_PLANE_POINT_H

#include "Ge/GeMatrix3d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeVector3d.h"

/// A point an entity keeps in world coordinates but the formats file in the entity's plane
/// coordinates (arc centres, text anchors). Going to the world and back may move the last bit
/// of a coordinate, so a drawing saved, loaded and saved again would differ. The point read
/// is remembered with the world point and normal it gave, and written back as it was read as
/// long as both are unchanged; after any edit the plane point is computed afresh.
class OdDbFiledPlanePoint {
public:
  /// The world point of planePoint in the plane of normal (a unit vector), remembered.
  OdGePoint3d read(const OdGePoint3d& planePoint, const OdGeVector3d& normal) {
    m_planePoint = planePoint;
    m_world = OdGeMatrix3d::planeToWorld(normal) * planePoint;
    m_normal = normal;
    m_valid = true;
    return m_world;
  }
  /// What to file for world in the plane of normal.
  OdGePoint3d toFile(const OdGePoint3d& world, const OdGeVector3d& normal) const {
    if (m_valid && same(world, m_world) && same(normal, m_normal))
      return m_planePoint;
    return OdGeMatrix3d::worldToPlane(normal) * world;
  }

private:
  template <class T> static bool same(const T& a, const T& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
  }

  OdGePoint3d m_planePoint;
  OdGePoint3d m_world;
  OdGeVector3d m_normal;
  bool m_valid = false;
};

#endif
