#ifndef OD_GE_POINT2D_ARRAY_H
#define OD_GE_POINT2D_ARRAY_H

/// Kept under the SDK's header name; the typedef lives beside the element type.

#include "Ge/GePoint2d.h"

#endif
