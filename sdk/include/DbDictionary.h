#ifndef OD_DB_DICTIONARY_H
#define OD_DB_DICTIONARY_H

/// A dictionary: named entries pointing at objects it owns. Drawings keep their non-graphical
/// objects in a tree of dictionaries under the named-objects dictionary (groups under
/// "ACAD_GROUP", application data under the application's own key). Names are compared without
/// regard to ASCII letter case, as drawings compare them, and entries keep the order they were
/// added in, so a drawing written back lists them as it read them.
///
/// An entry whose object is erased is treated as absent by lookups and iteration and is
/// replaced by setAt under the same name; it stays in the entry list (an erased object can be
/// un-erased and is then found again).

#include "DbObject.h"

#include <memory>
#include <vector>

namespace OdDb {
/// What a copy does with a dictionary entry whose name the destination has already; filed as
/// the dictionary's cloning flag (DXF group 281).
enum DuplicateRecordCloning {
  kDrcNotApplicable = 0,
  kDrcIgnore = 1,
  kDrcReplace = 2,
  kDrcXrefMangleName = 3,
  kDrcMangleName = 4,
  kDrcUnmangleName = 5
};
} // namespace OdDb

/// Walks a dictionary's entries in order, as they were when the iterator was made.
class OdDbDictionaryIterator {
public:
  struct Entry {
    OdString name;
    OdDbObjectId id;
  };
  explicit OdDbDictionaryIterator(std::vector<Entry> entries) : m_entries(std::move(entries)) {}

  void start() { m_pos = 0; }
  bool done() const { return m_pos >= m_entries.size(); }
  /// Moves to the next entry; false when that is past the last one.
  bool next() {
    if (!done())
      ++m_pos;
    return !done();
  }
  /// Empty after the last entry.
  OdString name() const { return done() ? OdString() : m_entries[m_pos].name; }
  /// Null after the last entry.
  OdDbObjectId objectId() const { return done() ? OdDbObjectId() : m_entries[m_pos].id; }
  OdDbObjectPtr getObject(OdDb::OpenMode mode = OdDb::kForRead) const;

private:
  std::vector<Entry> m_entries;
  std::size_t m_pos = 0;
};
typedef std::unique_ptr<OdDbDictionaryIterator> OdDbDictionaryIteratorPtr;

class OdDbDictionary : public OdDbObject {
  ODRX_DECLARE_MEMBERS(OdDbDictionary);

  OdDbDictionary();

  /// The id of the entry of that name, or null. pStatus, when given, receives eOk or
  /// eKeyNotFound.
  OdDbObjectId getAt(const OdString& name, OdResult* pStatus = nullptr) const;
  /// The entry's object opened in mode, or null when there is no such entry.
  OdDbObjectPtr getAt(const OdString& name, OdDb::OpenMode mode) const;
  bool has(const OdString& name) const;
  bool has(const OdDbObjectId& id) const;
  /// The name of the entry pointing at id; empty when none does.
  OdString nameAt(const OdDbObjectId& id) const;
  /// Entries whose objects are not erased.
  OdUInt32 numEntries() const;
  OdDbDictionaryIteratorPtr newIterator() const;

  /// Puts object in the dictionary under name and returns its id. A free-standing object is
  /// added to the dictionary's database with the dictionary as owner; an object already in
  /// that database is owned by the dictionary from now on (the caller must hold it open for
  /// write). An existing entry of that name is re-pointed to the object, keeping its place,
  /// and the object it pointed at is erased when the dictionary owned it.
  ///
  /// Throws OdError: eNullObjectPointer for no object, eInvalidInput for an empty name or an
  /// object listed under another name already, eNotInDatabase when the dictionary is
  /// free-standing, eWrongDatabase for an object of another database.
  OdDbObjectId setAt(const OdString& name, OdDbObject* object);
  /// Takes the entry out and returns the id it held (null when there was none). The object is
  /// neither erased nor deleted; it loses the dictionary as owner.
  OdDbObjectId remove(const OdString& name);
  /// As remove(name) for the entry pointing at id; false when none does.
  bool remove(const OdDbObjectId& id);

  OdDb::DuplicateRecordCloning mergeStyle() const;
  void setMergeStyle(OdDb::DuplicateRecordCloning style);
  /// Hard ownership keeps the entries through purge and wblock (DXF 280, ids written as 360).
  bool isTreatElementsAsHard() const;
  void setTreatElementsAsHard(bool hard);

  /// After the object's data: BL entry count, BS cloning flag, RC hard-owner flag, then per
  /// entry TU name and soft-owner id. Refused (eDwgObjectImproperlyRead, nothing changed): a
  /// negative count or one the remaining stream cannot hold, an empty name, a cloning flag
  /// out of range; a repeated name (letter case ignored) gives eDuplicateKey.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Subclass "AcDbDictionary": 280 hard-owner flag (when set), 281 cloning flag, then a 3
  /// name and a 350 id (360 when hard) per entry. Refused (eInvalidDxfCode, nothing changed):
  /// an empty name, a name without an id after it, an id without a name; a repeated name
  /// gives eDuplicateKey.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;
  void dxfOutFields(OdDbDxfFiler* filer) const override;

private:
  struct Entry {
    OdString name;
    OdDbObjectId id;
  };
  /// The entry of that name, erased ones included; null when none.
  const Entry* find(const OdString& name) const;
  Entry* find(const OdString& name);
  static bool hasDuplicates(const std::vector<Entry>& entries);
  void disown(const OdDbObjectId& id) const;

  std::vector<Entry> m_entries;
  OdDb::DuplicateRecordCloning m_mergeStyle = OdDb::kDrcIgnore;
  bool m_hardOwner = false;
};

typedef OdSmartPtr<OdDbDictionary> OdDbDictionaryPtr;

#endif
