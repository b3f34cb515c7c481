#ifndef OD_DB_OBJECT_H
#define OD_DB_OBJECT_H

/// The base of everything a drawing holds. An object is either free-standing (created and not
/// yet added to a database: always readable and writable) or database-resident, in which case
/// it is closed until opened through its id and closed again when the last pointer from an
/// opener is released.

#include "DbObjectId.h"
#include "RxObject.h"

class OdDbDwgFiler;
class OdDbDxfFiler;
class OdDbDatabase;

class OdDbObject : public OdRxObject {
  ODRX_DECLARE_MEMBERS(OdDbObject);

  ~OdDbObject() override;

  void addRef() override;
  /// Deletes the object at zero references; a resident object whose only remaining reference
  /// is its database's is closed.
  void release() override;
  long numRefs() const override;

  OdDbObjectId objectId() const;
  OdDbObjectId ownerId() const;
  void setOwnerId(OdDbObjectId ownerId);
  /// The database the object is resident in, or the one a free-standing object was associated
  /// with (setDatabaseDefaults), or null.
  OdDbDatabase* database() const;
  OdDbHandle getDbHandle() const;
  /// Database-resident.
  bool isDBRO() const { return m_stub != nullptr; }
  bool isErased() const;
  /// Erases (or with false un-erases) a resident object; free-standing objects cannot be erased.
  OdResult erase(bool erasing = true);

  bool isReadEnabled() const;
  bool isWriteEnabled() const;
  /// Throws OdError(eNotOpenForRead) unless the object may be read.
  void assertReadEnabled() const;
  /// Throws OdError(eNotOpenForWrite) unless the object may be changed.
  void assertWriteEnabled(bool autoUndo = true, bool recordModified = true);
  void upgradeOpen();
  void downgradeOpen();
  OdDb::OpenMode openMode() const { return m_openMode; }

  /// DWG filing of this class's own data; each class first calls its parent's.
  virtual OdResult dwgInFields(OdDbDwgFiler* filer);
  virtual void dwgOutFields(OdDbDwgFiler* filer) const;
  /// DXF filing of this class's own data; each class first calls its parent's.
  virtual OdResult dxfInFields(OdDbDxfFiler* filer);
  virtual void dxfOutFields(OdDbDxfFiler* filer) const;

  /// Copies another object of the same class by filing it out and in through a DWG copy filer.
  /// The copy is free-standing.
  void copyFrom(const OdRxObject* source) override;

protected:
  OdDbObject();
  /// Associates a free-standing object with a database without adding it there.
  void setDatabase(OdDbDatabase* database) { m_database = database; }

private:
  friend class OdDbDatabase;
  friend class OdDbObjectId;

  OdDbStub* m_stub = nullptr;
  OdDbDatabase* m_database = nullptr;
  OdDbObjectId m_ownerId;
  long m_refs = 0;
  OdDb::OpenMode m_openMode = OdDb::kForWrite;
};

typedef OdSmartPtr<OdDbObject> OdDbObjectPtr;

/// The platform class registered for a DWG object type number (19 line, 27 point,
/// 77 lightweight polyline, ...), or null for a number it has no class for.
OdRxClass* oddbDwgClassMapDesc(OdUInt16 dwgType);

#endif
