#ifndef TESTS_HOST_TEST_SUPPORT_H
#define TESTS_HOST_TEST_SUPPORT_H

// What the host tests share: an entity class of their own (the host works on entities of
// classes it does not know) and a drawing to put it in.

#include "DbDatabase.h"
#include "DbEntity.h"

/// A plain entity with nothing but the common properties.
class HostTestEntity : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(HostTestEntity);
  HostTestEntity() = default;
};
typedef OdSmartPtr<HostTestEntity> HostTestEntityPtr;

/// A new drawing with an extra layer "Wall" and an extra linetype "DASHED".
OdDbDatabasePtr newTestDatabase();
/// A new entity appended to the drawing's model space, held open for write.
HostTestEntityPtr addTestEntity(OdDbDatabase* database);

#endif
