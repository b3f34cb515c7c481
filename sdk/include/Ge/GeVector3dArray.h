#ifndef OD_GE_VECTOR3D_ARRAY_H
#define OD_GE_VECTOR3D_ARRAY_H

/// Kept under the SDK's header name; the typedef lives beside the element type.

#include "Ge/GeVector3d.h"

#endif
