#ifndef OD_DB_SYMBOL_TABLE_H
#define OD_DB_SYMBOL_TABLE_H

/// Symbol tables (layers, linetypes, blocks, ...): named records, looked up by name without
/// regard to letter case, kept in the order they were added.

#include "DbObject.h"

#include <memory>
#include <vector>

class OdDbSymbolTableRecord : public OdDbObject {
  ODRX_DECLARE_MEMBERS(OdDbSymbolTableRecord);

  OdString getName() const;
  /// Throws OdError(eInvalidSymbolTableName) for an empty name or one with a character a
  /// drawing does not allow in names (< > / \ " : ; ? * | , = `), and OdError(eDuplicateKey)
  /// when the owning table has another record of that name.
  void setName(const OdString& name);

  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;

  /// True for a name a drawing accepts as a symbol name.
  static bool isValidName(const OdString& name);

protected:
  OdDbSymbolTableRecord() = default;

private:
  OdString m_name;
};
typedef OdSmartPtr<OdDbSymbolTableRecord> OdDbSymbolTableRecordPtr;

class OdDbSymbolTable;

/// Walks a table's records in order.
class OdDbSymbolTableIterator {
public:
  explicit OdDbSymbolTableIterator(std::vector<OdDbObjectId> ids) : m_ids(std::move(ids)) {}
  void start() { m_pos = 0; }
  bool done() const { return m_pos >= m_ids.size(); }
  void step() { ++m_pos; }
  OdDbObjectId getRecordId() const { return done() ? OdDbObjectId() : m_ids[m_pos]; }
  OdDbSymbolTableRecordPtr getRecord(OdDb::OpenMode mode = OdDb::kForRead) const;

private:
  std::vector<OdDbObjectId> m_ids;
  std::size_t m_pos = 0;
};
typedef std::unique_ptr<OdDbSymbolTableIterator> OdDbSymbolTableIteratorPtr;

class OdDbSymbolTable : public OdDbObject {
  ODRX_DECLARE_MEMBERS(OdDbSymbolTable);

  /// The id of the record of that name (letter case ignored), or null.
  OdDbObjectId getAt(const OdString& name, bool getErasedRecord = false) const;
  OdDbSymbolTableRecordPtr getAt(const OdString& name, OdDb::OpenMode mode,
                                 bool getErasedRecord = false) const;
  bool has(const OdString& name) const { return !getAt(name).isNull(); }
  bool has(const OdDbObjectId& recordId) const;
  /// Adds a named record of this table's record class to the table and to the table's
  /// database; a record already resident in that database with this table as owner (added
  /// under a handle of its own) just joins the table. Throws OdError(eWrongObjectType) for a record of another table,
  /// OdError(eInvalidSymbolTableName) for a missing name, OdError(eDuplicateKey) for a name the
  /// table has, OdError(eNotInDatabase) when the table itself is not resident.
  OdDbObjectId add(OdDbSymbolTableRecord* record);
  OdDbSymbolTableIteratorPtr newIterator() const;
  unsigned numRecords() const { return static_cast<unsigned>(m_records.size()); }

  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;

protected:
  OdDbSymbolTable() = default;
  /// The record class this table accepts.
  virtual OdRxClass* recordClass() const = 0;

private:
  std::vector<OdDbObjectId> m_records;
};
typedef OdSmartPtr<OdDbSymbolTable> OdDbSymbolTablePtr;

/// Declares a table class and its record class in two lines.
#define ODDB_DECLARE_SYMBOL_TABLE(TableClass)                                                      \
  class TableClass : public OdDbSymbolTable {                                                      \
    ODRX_DECLARE_MEMBERS(TableClass);                                                              \
                                                                                                   \
  protected:                                                                                       \
    OdRxClass* recordClass() const override;                                                       \
  };                                                                                               \
  typedef OdSmartPtr<TableClass> TableClass##Ptr;

#endif
