#ifndef CUSTENTS_OD_DB_CUSTOM_DIMENSION_BASE_H
#define CUSTENTS_OD_DB_CUSTOM_DIMENSION_BASE_H

#include "DbEntity.h"

/// The common base of the module's dimension-like entities. It has no data of its own; the
/// text operations its children share are added with the dimension framework.
class OdDbCustomDimensionBase : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbCustomDimensionBase);

  OdDbCustomDimensionBase() = default;
};
typedef OdSmartPtr<OdDbCustomDimensionBase> OdDbCustomDimensionBasePtr;

#endif
