#ifndef OD_DB_BLOCK_TABLE_H
#define OD_DB_BLOCK_TABLE_H

#include "DbSymbolTable.h"
#include "Ge/GePoint3d.h"

#include <unordered_set>

class OdDbEntity;

/// A block: the container of entities. Model space and paper space are block records.
class OdDbBlockTableRecord : public OdDbSymbolTableRecord {
  ODRX_DECLARE_MEMBERS(OdDbBlockTableRecord);
  OdDbBlockTableRecord() = default;

  /// Adds a free-standing entity to the block's database and to the block; an entity already
  /// resident in that database with this block as owner just joins the block. Throws
  /// OdError(eNotInDatabase) when the block is not resident, OdError(eAlreadyInDb) for an
  /// entity of another owner or one the block has.
  OdDbObjectId appendOdDbEntity(OdDbEntity* entity);
  /// The block's entities, erased ones left out, in the order they were added.
  OdDbObjectIdArray entityIds() const;
  OdGePoint3d origin() const;
  void setOrigin(const OdGePoint3d& origin);

  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;

private:
  OdDbObjectIdArray m_entities;
  /// The same ids as a set, so that joining a block stays constant time in large drawings.
  std::unordered_set<const OdDbStub*> m_members;
  OdGePoint3d m_origin;
};
typedef OdSmartPtr<OdDbBlockTableRecord> OdDbBlockTableRecordPtr;

ODDB_DECLARE_SYMBOL_TABLE(OdDbBlockTable)

#endif
