#include "DbObjectId.h"

#include "DbDatabase.h"
#include "DbStub.h"

const OdDbObjectId OdDbObjectId::kNull;

bool OdDbObjectId::isValid() const { return m_stub && m_stub->database; }

bool OdDbObjectId::isErased() const { return m_stub && m_stub->erased; }

OdDbHandle OdDbObjectId::getHandle() const { return m_stub ? m_stub->handle : OdDbHandle(); }

OdDbDatabase* OdDbObjectId::database() const { return m_stub ? m_stub->database : nullptr; }

OdRxClass* OdDbObjectId::objectClass() const {
  return m_stub && m_stub->object ? m_stub->object->isA() : nullptr;
}

OdDbObjectPtr OdDbObjectId::openObject(OdDb::OpenMode mode, bool openErased) const {
  if (!m_stub || !m_stub->object || (m_stub->erased && !openErased))
    return OdDbObjectPtr();
  OdDbObject* object = m_stub->object.get();
  // One thread, no transactions: opening for write while readers hold the object promotes it.
  if (object->m_openMode == OdDb::kNotOpen || mode == OdDb::kForWrite)
    object->m_openMode = mode;
  return OdDbObjectPtr(object);
}

OdDbObjectPtr OdDbObjectId::safeOpenObject(OdDb::OpenMode mode, bool openErased) const {
  if (!m_stub)
    throw OdError(eNullObjectId);
  if (!m_stub->object)
    throw OdError(eKeyNotFound, OD_T("No object for handle ") + m_stub->handle.ascii());
  if (m_stub->erased && !openErased)
    throw OdError(eWasErased);
  return openObject(mode, openErased);
}
