#include "DbObject.h"

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbFiler.h"
#include "DbStub.h"
#include "RxObjectImpl.h"

ODRX_NO_CONS_DEFINE_MEMBERS(OdDbObject, OdRxObject)

OdDbObject::OdDbObject() = default;

OdDbObject::~OdDbObject() = default;

void OdDbObject::addRef() { ++m_refs; }

void OdDbObject::release() {
  if (--m_refs == 0) {
    delete this;
    return;
  }
  // The database keeps one reference to each resident object; when only that one is left,
  // the last opener has let go and the object is closed.
  if (m_refs == 1 && m_stub)
    m_openMode = OdDb::kNotOpen;
}

long OdDbObject::numRefs() const { return m_refs; }

OdDbObjectId OdDbObject::objectId() const { return OdDbObjectId(m_stub); }

OdDbObjectId OdDbObject::ownerId() const { return m_ownerId; }

void OdDbObject::setOwnerId(OdDbObjectId ownerId) {
  assertWriteEnabled();
  m_ownerId = ownerId;
}

OdDbDatabase* OdDbObject::database() const { return m_stub ? m_stub->database : m_database; }

OdDbHandle OdDbObject::getDbHandle() const { return m_stub ? m_stub->handle : OdDbHandle(); }

bool OdDbObject::isErased() const { return m_stub && m_stub->erased; }

OdResult OdDbObject::erase(bool erasing) {
  if (!m_stub)
    return eNotInDatabase;
  assertWriteEnabled();
  m_stub->erased = erasing;
  return eOk;
}

bool OdDbObject::isReadEnabled() const { return !m_stub || m_openMode != OdDb::kNotOpen; }

bool OdDbObject::isWriteEnabled() const { return !m_stub || m_openMode == OdDb::kForWrite; }

void OdDbObject::assertReadEnabled() const {
  if (!isReadEnabled())
    throw OdError(eNotOpenForRead);
}

void OdDbObject::assertWriteEnabled(bool /*autoUndo*/, bool /*recordModified*/) {
  if (!isWriteEnabled())
    throw OdError(eNotOpenForWrite);
}

void OdDbObject::upgradeOpen() {
  if (m_stub && m_openMode == OdDb::kNotOpen)
    throw OdError(eNotOpenForRead);
  if (m_stub)
    m_openMode = OdDb::kForWrite;
}

void OdDbObject::downgradeOpen() {
  if (m_stub && m_openMode == OdDb::kForWrite)
    m_openMode = OdDb::kForRead;
}

OdResult OdDbObject::dwgInFields(OdDbDwgFiler* filer) {
  assertWriteEnabled();
  if (filer->filerType() == OdDbFiler::kFileFiler)
    m_ownerId = filer->rdSoftPointerId();
  return filer->filerStatus();
}

void OdDbObject::dwgOutFields(OdDbDwgFiler* filer) const {
  assertReadEnabled();
  // A copy is free-standing, so only a file keeps the owner.
  if (filer->filerType() == OdDbFiler::kFileFiler)
    filer->wrSoftPointerId(m_ownerId);
}

OdResult OdDbObject::dxfInFields(OdDbDxfFiler* /*filer*/) {
  assertWriteEnabled();
  return eOk;
}

void OdDbObject::dxfOutFields(OdDbDxfFiler* /*filer*/) const { assertReadEnabled(); }

void OdDbObject::copyFrom(const OdRxObject* source) {
  assertWriteEnabled();
  if (!source || source->isA() != isA())
    throw OdError_NotThatKindOfClass(source ? source->isA() : nullptr, isA());
  const OdDbObject* other = static_cast<const OdDbObject*>(source);
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  filer.openForWrite(other->database(), OdDbFiler::kCopyFiler);
  other->dwgOutFields(&filer);
  filer.rewind();
  if (!m_stub && !m_database)
    m_database = other->database();
  const OdResult result = dwgInFields(&filer);
  if (result != eOk)
    throw OdError(result, OD_T("Copying a ") + isA()->name() + OD_T(" failed"));
}
