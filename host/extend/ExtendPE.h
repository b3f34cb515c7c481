#ifndef HOST_EXTEND_PE_H
#define HOST_EXTEND_PE_H

/// The shape protocol extension: lets the host fill a closed shape of a module's class with a
/// hatch without knowing how the shape's outline is made. The base class fills nothing; each
/// shape class's extension builds the hatch over its own outline.
///
/// The virtual operations follow OdRxObject's in a fixed order that modules built for the
/// host depend on.

#include "RxObject.h"

class OdCmColor;
class OdDbEntity;
class OdDbHatch;

class ExtendPE : public OdRxObject {
  ODRX_DECLARE_MEMBERS(ExtendPE);

  ExtendPE() = default;

  /// A solid-fill hatch over the shape's outline in `color`; null when the shape cannot be
  /// filled (the base: always null).
  virtual OdSmartPtr<OdDbHatch> FillColor(const OdSmartPtr<OdDbEntity>& shape,
                                          const OdCmColor& color);
  /// A pattern hatch over the shape's outline; `result` receives a measure of the fill chosen
  /// by the shape (for survey shapes the filled area). Null when the shape cannot be filled
  /// (the base: always null, `result` untouched).
  virtual OdSmartPtr<OdDbHatch> FillPattern(const OdSmartPtr<OdDbEntity>& shape,
                                            const OdString& patternName, double patternScale,
                                            double patternAngle, double& result);
};

typedef OdSmartPtr<ExtendPE> ExtendPEPtr;

#endif
