#ifndef OD_DB_LINETYPE_TABLE_H
#define OD_DB_LINETYPE_TABLE_H

#include "DbSymbolTable.h"

/// A linetype: a repeating pattern of dashes (positive lengths), gaps (negative) and dots (0).
class OdDbLinetypeTableRecord : public OdDbSymbolTableRecord {
  ODRX_DECLARE_MEMBERS(OdDbLinetypeTableRecord);
  OdDbLinetypeTableRecord() = default;

  OdString comments() const;
  void setComments(const OdString& comments);
  /// The sum of the absolute dash lengths.
  double patternLength() const;
  int numDashes() const;
  /// Throws OdError(eInvalidInput) for a negative count; new dashes have length 0.
  void setNumDashes(int count);
  /// Throws OdError_InvalidIndex outside [0, numDashes()).
  double dashLengthAt(int index) const;
  void setDashLengthAt(int index, double length);
  bool isScaledToFit() const;
  void setIsScaledToFit(bool scaledToFit);

  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;

private:
  OdString m_comments;
  OdGeDoubleArray m_dashes;
  bool m_scaledToFit = false;
};
typedef OdSmartPtr<OdDbLinetypeTableRecord> OdDbLinetypeTableRecordPtr;

ODDB_DECLARE_SYMBOL_TABLE(OdDbLinetypeTable)

#endif
