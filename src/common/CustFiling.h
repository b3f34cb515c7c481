#ifndef CUSTENTS_CUST_FILING_H
#define CUSTENTS_CUST_FILING_H

// Filing rules shared by the module's classes.

#include "DbFiler.h"
#include "DbObject.h"
#include "Ge/GeFinite.h"

#include <cmath>

namespace custents {

/// The result every class of the module returns for a stream it refuses to read (a version it
/// does not know): the platform's eNotImplementedYet, value 1. Callers compare against 1.
const OdResult kRefusedVersion = eNotImplementedYet;

/// The result for a stream that holds a value no object of the class can have: a coordinate or
/// size that is not a finite number. Such a stream is damaged (or forged, as a proxy in a foreign
/// file may be), and an object read from it would carry the damage into everything drawn,
/// measured or transformed from it.
const OdResult kDamagedStream = eDwgObjectImproperlyRead;

inline bool isFiniteValue(double value) {
  return std::isfinite(value);
}
inline bool isFiniteValue(const OdGePoint3d& point) {
  return odgeIsFinite(point);
}

/// Whether every value read is finite; readers refuse the stream with kDamagedStream if not.
template <class... Values> bool allFinite(const Values&... values) {
  return (isFiniteValue(values) && ...);
}

/// The shared DXF reading routine of the module's classes: asserts write access and returns
/// the refusal without reading anything, not even the base class's data. DXF therefore carries
/// only the base data of these classes; their full data travels in DWG form.
OdResult refuseDxfIn(OdDbObject* object, OdDbDxfFiler* filer);

/// Filing of a class that has no fields of its own yet: the base class's data, then a 16-bit
/// format version. Reading refuses a version newer than the one the class writes.
template <class Base> class PlainFiled : public Base {
public:
  static constexpr OdInt16 kCurrentVersion = 1;

  OdResult dwgInFields(OdDbDwgFiler* filer) override {
    this->assertWriteEnabled();
    const OdResult base = Base::dwgInFields(filer);
    if (base != eOk)
      return base;
    const OdInt16 version = filer->rdInt16();
    if (filer->filerStatus() != eOk)
      return filer->filerStatus();
    if (version > kCurrentVersion)
      return kRefusedVersion;
    return eOk;
  }
  void dwgOutFields(OdDbDwgFiler* filer) const override {
    this->assertReadEnabled();
    Base::dwgOutFields(filer);
    filer->wrInt16(kCurrentVersion);
  }
  OdResult dxfInFields(OdDbDxfFiler* filer) override { return refuseDxfIn(this, filer); }
};

} // namespace custents

/// A class whose behaviour is not built yet: registered, constructible, filed with its base
/// data and a version, drawing nothing. It grows into a class of its own when its behaviour is
/// built.
#define CUSTENTS_PLAIN_CLASS(ClassName, BaseClass)                                                 \
  class ClassName : public custents::PlainFiled<BaseClass> {                                       \
    ODRX_DECLARE_MEMBERS(ClassName);                                                               \
  };

#endif
