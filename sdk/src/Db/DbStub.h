#ifndef OD_DB_STUB_H
#define OD_DB_STUB_H

// Private to the platform: what an object id points at. A stub lives as long as its database;
// it holds the database's reference to the object.

#include "DbObject.h"

class OdDbStub {
public:
  OdDbDatabase* database = nullptr;
  OdDbHandle handle;
  OdDbObjectPtr object;
  bool erased = false;
};

#endif
