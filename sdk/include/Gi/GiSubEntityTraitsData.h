#ifndef OD_GI_SUB_ENTITY_TRAITS_DATA_H
#define OD_GI_SUB_ENTITY_TRAITS_DATA_H

/// The traits as a value, and the traits interface implemented over that value. Every sink
/// keeps the same state and answers the getters the same way, so they share this code; the
/// recorder also copies the value into each record.

#include "CmColor.h"
#include "Gi/GiSubEntityTraits.h"

class OdGiSubEntityTraitsData {
public:
  /// By layer colour, lineweight and linetype (null layer and linetype stubs), no fill,
  /// linetype scale 1, selection marker 0 (no marker).
  OdGiSubEntityTraitsData() = default;

  /// The ACI index of the colour: 256 by layer, 0 by block, a true colour's nearest palette
  /// entry.
  OdUInt16 color() const { return m_trueColor.colorIndex(); }
  /// Indices above 256 are not colours and are ignored.
  void setColor(OdUInt16 color) { m_trueColor.setColorIndex(color); }
  const OdCmEntityColor& trueColor() const { return m_trueColor; }
  void setTrueColor(const OdCmEntityColor& color) { m_trueColor = color; }
  OdDbStub* layer() const { return m_layer; }
  void setLayer(OdDbStub* layerId) { m_layer = layerId; }
  OdDbStub* lineType() const { return m_lineType; }
  void setLineType(OdDbStub* lineTypeId) { m_lineType = lineTypeId; }
  OdGiFillType fillType() const { return m_fillType; }
  void setFillType(OdGiFillType fillType) { m_fillType = fillType; }
  OdDb::LineWeight lineWeight() const { return m_lineWeight; }
  void setLineWeight(OdDb::LineWeight lineWeight) { m_lineWeight = lineWeight; }
  double lineTypeScale() const { return m_lineTypeScale; }
  void setLineTypeScale(double lineTypeScale) { m_lineTypeScale = lineTypeScale; }
  OdGsMarker selectionMarker() const { return m_selectionMarker; }
  void setSelectionMarker(OdGsMarker marker) { m_selectionMarker = marker; }

  friend bool operator==(const OdGiSubEntityTraitsData& a, const OdGiSubEntityTraitsData& b) {
    return a.m_trueColor == b.m_trueColor && a.m_layer == b.m_layer &&
           a.m_lineType == b.m_lineType && a.m_fillType == b.m_fillType &&
           a.m_lineWeight == b.m_lineWeight && a.m_lineTypeScale == b.m_lineTypeScale &&
           a.m_selectionMarker == b.m_selectionMarker;
  }
  friend bool operator!=(const OdGiSubEntityTraitsData& a, const OdGiSubEntityTraitsData& b) {
    return !(a == b);
  }

private:
  OdCmEntityColor m_trueColor;
  OdDbStub* m_layer = nullptr;
  OdDbStub* m_lineType = nullptr;
  OdGiFillType m_fillType = kOdGiFillNever;
  OdDb::LineWeight m_lineWeight = OdDb::kLnWtByLayer;
  double m_lineTypeScale = 1.0;
  OdGsMarker m_selectionMarker = 0;
};

/// OdGiSubEntityTraits over an OdGiSubEntityTraitsData; sinks inherit it.
class OdGiSubEntityTraitsState : public OdGiSubEntityTraits {
public:
  void setColor(OdUInt16 color) override { m_traits.setColor(color); }
  void setTrueColor(const OdCmEntityColor& color) override { m_traits.setTrueColor(color); }
  void setLayer(OdDbStub* layerId) override { m_traits.setLayer(layerId); }
  void setLineType(OdDbStub* lineTypeId) override { m_traits.setLineType(lineTypeId); }
  void setSelectionMarker(OdGsMarker marker) override { m_traits.setSelectionMarker(marker); }
  void setFillType(OdGiFillType fillType) override { m_traits.setFillType(fillType); }
  void setLineWeight(OdDb::LineWeight lineWeight) override { m_traits.setLineWeight(lineWeight); }
  void setLineTypeScale(double lineTypeScale = 1.0) override {
    m_traits.setLineTypeScale(lineTypeScale);
  }

  OdUInt16 color() const override { return m_traits.color(); }
  OdCmEntityColor trueColor() const override { return m_traits.trueColor(); }
  OdDbStub* layer() const override { return m_traits.layer(); }
  OdDbStub* lineType() const override { return m_traits.lineType(); }
  OdGiFillType fillType() const override { return m_traits.fillType(); }
  OdDb::LineWeight lineWeight() const override { return m_traits.lineWeight(); }
  double lineTypeScale() const override { return m_traits.lineTypeScale(); }
  OdGsMarker selectionMarker() const override { return m_traits.selectionMarker(); }

  /// All traits at once: what a sink stamps on the primitive it is drawing.
  const OdGiSubEntityTraitsData& traitsData() const { return m_traits; }
  void setTraitsData(const OdGiSubEntityTraitsData& traits) { m_traits = traits; }
  /// Back to the defaults, as before a new entity is drawn.
  void resetTraits() { m_traits = OdGiSubEntityTraitsData(); }

private:
  OdGiSubEntityTraitsData m_traits;
};

#endif
