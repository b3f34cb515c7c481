#ifndef OD_GE_EXTENTS3D_H
#define OD_GE_EXTENTS3D_H

/// An axis-aligned box: the space an entity occupies, for zoom, selection and drawing extents.
/// Extents start invalid (minimum above maximum) and become valid with the first point added,
/// so an empty entity contributes nothing when extents are merged.

#include "Ge/GePoint3d.h"
#include "Ge/GeTol.h"

class OdGeMatrix3d;

class OdGeExtents3d {
public:
  /// Invalid extents.
  constexpr OdGeExtents3d() : m_min(1.e20, 1.e20, 1.e20), m_max(-1.e20, -1.e20, -1.e20) {}
  /// The box between the two corners as given; invalid when min exceeds max on some axis.
  constexpr OdGeExtents3d(const OdGePoint3d& min, const OdGePoint3d& max)
      : m_min(min), m_max(max) {}

  static const OdGeExtents3d kInvalid;

  const OdGePoint3d& minPoint() const { return m_min; }
  const OdGePoint3d& maxPoint() const { return m_max; }
  /// Stores the corners as given, without reordering.
  OdGeExtents3d& set(const OdGePoint3d& min, const OdGePoint3d& max);
  /// The box spanned by two opposite corners in any order.
  OdGeExtents3d& comparingSet(const OdGePoint3d& pt1, const OdGePoint3d& pt2);

  /// True when min does not exceed max on any axis (a single point is valid extents).
  bool isValidExtents() const {
    return m_min.x <= m_max.x && m_min.y <= m_max.y && m_min.z <= m_max.z;
  }

  /// Grows the box to hold the point; on invalid extents the box becomes that point.
  OdGeExtents3d& addPoint(const OdGePoint3d& point);
  OdGeExtents3d& addPoints(const OdGePoint3dArray& points);
  /// Grows the box to hold the other; invalid extents add nothing.
  OdGeExtents3d& addExt(const OdGeExtents3d& extents);
  /// Adds the corners moved by vect, stretching the box in that direction (and only that one).
  /// Invalid extents stay invalid.
  OdGeExtents3d& expandBy(const OdGeVector3d& vect);
  /// Replaces the box by the extents of its eight transformed corners, which hold the
  /// transformed contents. Invalid extents stay invalid.
  OdGeExtents3d& transformBy(const OdGeMatrix3d& xfm);

  /// The middle of the box; the origin for invalid extents.
  OdGePoint3d center() const;
  /// The vector from minPoint to maxPoint; zero for invalid extents.
  OdGeVector3d diagonal() const;

  // Containment. Invalid extents contain nothing, and nothing contains them.
  bool contains(const OdGePoint3d& point, const OdGeTol& tol = OdGeContext::gTol) const;
  bool contains(const OdGeExtents3d& extents, const OdGeTol& tol = OdGeContext::gTol) const;

  bool isEqualTo(const OdGeExtents3d& extents, const OdGeTol& tol = OdGeContext::gTol) const;
  /// Invalid extents are all equal to each other, whatever corners they hold.
  bool operator==(const OdGeExtents3d& extents) const { return isEqualTo(extents); }
  bool operator!=(const OdGeExtents3d& extents) const { return !isEqualTo(extents); }

private:
  OdGePoint3d m_min;
  OdGePoint3d m_max;
};

#endif
