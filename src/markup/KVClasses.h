#ifndef CUSTENTS_KV_CLASSES_H
#define CUSTENTS_KV_CLASSES_H

// The bar-code and signature entities. Unlike the module's other classes they read and write
// DXF data of their own: a subclass marker with the class name and the format version (70).

#include "DbEntity.h"
#include "common/CustFiling.h"

namespace custents {

template <class Base> class KVFiled : public PlainFiled<Base> {
public:
  void dxfOutFields(OdDbDxfFiler* filer) const override {
    Base::dxfOutFields(filer);
    filer->wrSubclassMarker(this->isA()->name());
    filer->wrInt16(70, PlainFiled<Base>::kCurrentVersion);
  }
  OdResult dxfInFields(OdDbDxfFiler* filer) override {
    this->assertWriteEnabled();
    const OdResult base = Base::dxfInFields(filer);
    if (base != eOk)
      return base;
    if (!filer->atSubclassData(this->isA()->name()))
      return eInvalidDxfCode;
    if (filer->nextItem() != 70)
      return eInvalidDxfCode;
    if (filer->rdInt16() > PlainFiled<Base>::kCurrentVersion)
      return kRefusedVersion;
    return eOk;
  }
};

} // namespace custents

class KVDb2DBarEntity : public custents::KVFiled<OdDbEntity> {
  ODRX_DECLARE_MEMBERS(KVDb2DBarEntity);
};

class KVDbSignEntity : public custents::KVFiled<OdDbEntity> {
  ODRX_DECLARE_MEMBERS(KVDbSignEntity);
};

#endif
