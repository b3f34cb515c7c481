#ifndef OD_GE_FINITE_H
#define OD_GE_FINITE_H

/// Whether every coordinate of a point or vector is a finite number. Readers and setters use
/// these to refuse NaN and infinity before a value enters an entity.

#include "Ge/GePoint2d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeVector3d.h"

#include <cmath>

inline bool odgeIsFinite(const OdGePoint2d& p) { return std::isfinite(p.x) && std::isfinite(p.y); }
inline bool odgeIsFinite(const OdGePoint3d& p) {
  return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}
inline bool odgeIsFinite(const OdGeVector3d& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

#endif
