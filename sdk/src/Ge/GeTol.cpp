#include "Ge/GeTol.h"

// Constant-initialised, so geometry used by other static initialisers already sees it.
OdGeTol OdGeContext::gTol(1.e-10, 1.e-10);
