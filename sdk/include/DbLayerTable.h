#ifndef OD_DB_LAYER_TABLE_H
#define OD_DB_LAYER_TABLE_H

#include "CmColor.h"
#include "DbLineWeight.h"
#include "DbSymbolTable.h"

class OdDbLayerTableRecord : public OdDbSymbolTableRecord {
  ODRX_DECLARE_MEMBERS(OdDbLayerTableRecord);
  OdDbLayerTableRecord();

  OdCmColor color() const;
  void setColor(const OdCmColor& color);
  OdDbObjectId linetypeObjectId() const;
  void setLinetypeObjectId(OdDbObjectId linetypeId);
  OdDb::LineWeight lineWeight() const;
  void setLineWeight(OdDb::LineWeight lineWeight);
  bool isOff() const;
  void setIsOff(bool off);
  bool isFrozen() const;
  void setIsFrozen(bool frozen);
  bool isLocked() const;
  void setIsLocked(bool locked);
  bool isPlottable() const;
  void setIsPlottable(bool plottable);

  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;

private:
  OdCmColor m_color;
  OdDbObjectId m_linetypeId;
  OdDb::LineWeight m_lineWeight = OdDb::kLnWtByLwDefault;
  bool m_off = false, m_frozen = false, m_locked = false, m_plottable = true;
};
typedef OdSmartPtr<OdDbLayerTableRecord> OdDbLayerTableRecordPtr;

ODDB_DECLARE_SYMBOL_TABLE(OdDbLayerTable)

#endif
