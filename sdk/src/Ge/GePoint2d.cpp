#include "Ge/GePoint2d.h"

const OdGePoint2d OdGePoint2d::kOrigin(0.0, 0.0);

OdGePoint2d& OdGePoint2d::rotateBy(double angle, const OdGePoint2d& wrtPoint) {
  *this = wrtPoint + (*this - wrtPoint).rotateBy(angle);
  return *this;
}

OdGePoint2d& OdGePoint2d::scaleBy(double factor, const OdGePoint2d& wrtPoint) {
  *this = wrtPoint + (*this - wrtPoint) * factor;
  return *this;
}
