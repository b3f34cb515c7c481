#include "GeoPolygonGeometry.h"

#include <cmath>

namespace custents {

double polygonStepAngle(OdInt32 sideCount) {
  return (1.0 / static_cast<double>(sideCount)) * Oda2PI;
}

double polygonStepDegrees(double stepAngle) {
  return std::fabs(stepAngle * 180.0 / OdaPI);
}

void appendRegularVertices(const OdGePoint3d& center, OdGeVector3d& radius, OdInt32 count,
                           double stepAngle, OdGePoint3dArray& vertices) {
  for (OdInt32 i = 0; i < count; ++i) {
    vertices.append(center + radius);
    radius.rotateBy(stepAngle, OdGeVector3d::kZAxis);
  }
}

} // namespace custents
