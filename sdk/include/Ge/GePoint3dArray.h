#ifndef OD_GE_POINT3D_ARRAY_H
#define OD_GE_POINT3D_ARRAY_H

/// Kept under the SDK's header name; the typedef lives beside the element type.

#include "Ge/GePoint3d.h"

#endif
