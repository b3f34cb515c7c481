#ifndef OD_DB_OBJECT_ID_H
#define OD_DB_OBJECT_ID_H

/// Object ids: a small value that names one object of one database for the database's life.

#include "DbHandle.h"
#include "OdArray.h"

class OdDbDatabase;
class OdDbObject;
class OdRxClass;
class OdDbStub;
template <class T> class OdSmartPtr;
typedef OdSmartPtr<OdDbObject> OdDbObjectPtr;

namespace OdDb {
enum OpenMode { kNotOpen = -1, kForRead = 0, kForWrite = 1, kForNotify = 2 };
}

class OdDbObjectId {
public:
  static const OdDbObjectId kNull;

  OdDbObjectId() = default;
  OdDbObjectId(OdDbStub* stub) : m_stub(stub) {}

  bool isNull() const { return m_stub == nullptr; }
  void setNull() { m_stub = nullptr; }
  /// Not null and its database still knows it.
  bool isValid() const;
  /// The object was erased (ids stay valid after erasing; the object can be un-erased).
  bool isErased() const;

  OdDbHandle getHandle() const;
  OdDbDatabase* database() const;
  /// The class of the object, or null for a null id or an id without an object.
  OdRxClass* objectClass() const;

  /// The object opened in `mode`, or null (null id, no object, erased and not openErased).
  OdDbObjectPtr openObject(OdDb::OpenMode mode = OdDb::kForRead, bool openErased = false) const;
  /// As openObject, but throws OdError (eNullObjectId, eKeyNotFound, eWasErased) instead of
  /// returning null.
  OdDbObjectPtr safeOpenObject(OdDb::OpenMode mode = OdDb::kForRead, bool openErased = false) const;

  operator OdDbStub*() const { return m_stub; }
  bool operator==(const OdDbObjectId& other) const { return m_stub == other.m_stub; }
  bool operator!=(const OdDbObjectId& other) const { return m_stub != other.m_stub; }
  bool operator<(const OdDbObjectId& other) const { return getHandle() < other.getHandle(); }

private:
  OdDbStub* m_stub = nullptr;
};

typedef OdArray<OdDbObjectId> OdDbObjectIdArray;

#endif
