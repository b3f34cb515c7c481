#ifndef OD_GE_EXTENTS2D_H
#define OD_GE_EXTENTS2D_H

/// An axis-aligned rectangle: the bounds of 2D layouts such as text boxes. Like OdGeExtents3d
/// it starts invalid and becomes valid with the first point added.

#include "Ge/GePoint2d.h"
#include "Ge/GeTol.h"

class OdGeExtents2d {
public:
  /// Invalid extents.
  constexpr OdGeExtents2d() : m_min(1.e20, 1.e20), m_max(-1.e20, -1.e20) {}
  /// The rectangle between the two corners as given; invalid when min exceeds max.
  constexpr OdGeExtents2d(const OdGePoint2d& min, const OdGePoint2d& max)
      : m_min(min), m_max(max) {}

  static const OdGeExtents2d kInvalid;

  const OdGePoint2d& minPoint() const { return m_min; }
  const OdGePoint2d& maxPoint() const { return m_max; }
  OdGeExtents2d& set(const OdGePoint2d& min, const OdGePoint2d& max) {
    m_min = min;
    m_max = max;
    return *this;
  }
  bool isValidExtents() const { return m_min.x <= m_max.x && m_min.y <= m_max.y; }

  /// Grows the rectangle to hold the point; on invalid extents it becomes that point.
  OdGeExtents2d& addPoint(const OdGePoint2d& point);
  OdGeExtents2d& addPoints(const OdGePoint2dArray& points);
  /// Invalid extents add nothing.
  OdGeExtents2d& addExt(const OdGeExtents2d& extents);

  /// The middle of the rectangle; the origin for invalid extents.
  OdGePoint2d center() const;
  /// Invalid extents contain nothing.
  bool contains(const OdGePoint2d& point, const OdGeTol& tol = OdGeContext::gTol) const;
  bool contains(const OdGeExtents2d& extents, const OdGeTol& tol = OdGeContext::gTol) const;

  /// Invalid extents are all equal to each other, whatever corners they hold.
  bool isEqualTo(const OdGeExtents2d& extents, const OdGeTol& tol = OdGeContext::gTol) const;
  bool operator==(const OdGeExtents2d& extents) const { return isEqualTo(extents); }
  bool operator!=(const OdGeExtents2d& extents) const { return !isEqualTo(extents); }

private:
  OdGePoint2d m_min;
  OdGePoint2d m_max;
};

#endif
