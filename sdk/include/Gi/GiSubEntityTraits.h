#ifndef OD_GI_SUB_ENTITY_TRAITS_H
#define OD_GI_SUB_ENTITY_TRAITS_H

/// The properties that apply to the primitives drawn after they are set: an entity draws parts
/// in other colours, layers or weights by changing these between primitives.

#include "DbLineWeight.h"
#include "OdaCommon.h"

class OdCmEntityColor;
class OdDbStub;

enum OdGiFillType { kOdGiFillAlways = 1, kOdGiFillNever = 2 };

class OdGiSubEntityTraits {
public:
  virtual ~OdGiSubEntityTraits() = default;

  /// An ACI colour (0 by block, 256 by layer); replaces any true colour set before.
  virtual void setColor(OdUInt16 color) = 0;
  /// A colour of any method; color() then reports its ACI index when it has one.
  virtual void setTrueColor(const OdCmEntityColor& color) = 0;
  virtual void setLayer(OdDbStub* layerId) = 0;
  virtual void setLineType(OdDbStub* lineTypeId) = 0;
  /// The marker that selection reports for the primitives drawn next.
  virtual void setSelectionMarker(OdGsMarker marker) = 0;
  virtual void setFillType(OdGiFillType fillType) = 0;
  virtual void setLineWeight(OdDb::LineWeight lineWeight) = 0;
  virtual void setLineTypeScale(double lineTypeScale = 1.0) = 0;

  virtual OdUInt16 color() const = 0;
  virtual OdCmEntityColor trueColor() const = 0;
  virtual OdDbStub* layer() const = 0;
  virtual OdDbStub* lineType() const = 0;
  virtual OdGiFillType fillType() const = 0;
  virtual OdDb::LineWeight lineWeight() const = 0;
  virtual double lineTypeScale() const = 0;
  virtual OdGsMarker selectionMarker() const = 0;
};

#endif
