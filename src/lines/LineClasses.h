#ifndef CUSTENTS_LINE_CLASSES_H
#define CUSTENTS_LINE_CLASSES_H

// Service lines: typed polylines and lines. They draw, snap, grip and explode as the standard
// entity they derive from; their own fields come with their behaviour.

#include "DbLine.h"
#include "DbPolyline.h"
#include "dimensions/DimensionClasses.h"

CUSTENTS_PLAIN_CLASS(DecorationPipe, OdDbPolyline)
CUSTENTS_PLAIN_CLASS(DecorationPipeHot, DecorationPipe)
CUSTENTS_PLAIN_CLASS(OdDbDoubleLineCableTray, DecorationPipe)
CUSTENTS_PLAIN_CLASS(OdDbNewCableTray, DecorationPipe)
CUSTENTS_PLAIN_CLASS(DbPipeWireway, OdDbPolyline)
CUSTENTS_PLAIN_CLASS(DbCoverPolyLine, OdDbPolyline)
CUSTENTS_PLAIN_CLASS(OdDbFreePen, OdDbPolyline)
CUSTENTS_PLAIN_CLASS(OdDbPipeLine, OdDbLine)

// Further pipe kinds: complete run-time members that the module's start-up does not register;
// they stay exported so that a host can register the kinds it offers. One line each.
#define CUSTENTS_PIPE_KINDS(X)                                                                     \
  X(DecorationDuct, "DECORATIONDUCT")                                                              \
  X(DecorationDuctSmoke, "DECORATIONSMOKE")                                                        \
  X(DecorationPipeAirConditionWater, "DECORATIONWIRECONDITIONWATER")                               \
  X(DecorationPipeDirty, "DECORATIONPIPEDIRTY")                                                    \
  X(DecorationPipeGas, "DECORATIONPIPEGAS")                                                        \
  X(DecorationWireAirConditionPower, "DECORATIONWIRECONDITIONPOWER")                               \
  X(DecorationWireLight, "DECORATIONWIRELIGHT")                                                    \
  X(DecorationWireNET, "DECORATIONWIRENET")                                                        \
  X(DecorationWireTEL, "DECORATIONWIRETEL")                                                        \
  X(DecorationWireTV, "DECORATIONWIRETV")

#define CUSTENTS_DECLARE_PIPE_KIND(ClassName, DxfName) CUSTENTS_PLAIN_CLASS(ClassName, DecorationPipe)
CUSTENTS_PIPE_KINDS(CUSTENTS_DECLARE_PIPE_KIND)
#undef CUSTENTS_DECLARE_PIPE_KIND

#endif
