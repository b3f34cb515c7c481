#include "Ge/GeScale3d.h"

const OdGeScale3d OdGeScale3d::kIdentity(1.0, 1.0, 1.0);
