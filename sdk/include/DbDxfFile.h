#ifndef OD_DB_DXF_FILE_H
#define OD_DB_DXF_FILE_H

/// Drawing files: a database saved as and loaded from an ASCII DXF file of version AC1032.
///
/// The writer streams the file section by section (HEADER, CLASSES, TABLES, BLOCKS, ENTITIES,
/// OBJECTS). Each entity is written as `0` its class's DXF name, `5` its handle, `330` its
/// owner's handle, then the groups of its own dxfOutFields. Table records, the blocks' begin
/// and end markers and the tables the database does not model (VPORT, VIEW, UCS, APPID,
/// DIMSTYLE) are written by the file layer itself; the ones it makes up get handles from the
/// database's handle seed upward, and $HANDSEED is written past them. OBJECTS holds the tree
/// of dictionaries under the named-objects dictionary (odDbDxfObjectsInFileOrder), each object
/// with its owner as a reactor. A save writes a temporary file beside the target and renames
/// it over the target only when everything was written, so a failed save leaves the old file
/// as it was.
///
/// The reader checks every group as it reads it (a known group code, a value of that code's
/// type) and reports the first fault as "line N: ..." with the line of the offending group;
/// any fault loads nothing. Records are merged by name with those a new database has;
/// entities and objects are made through the class registered for their DXF name and read by
/// their dxfInFields, keeping their handles. The file's named-objects dictionary and its
/// ACAD_GROUP dictionary become the new database's own; every other dictionary's entries are
/// set in file order. Every owner and pointer of an entity or object (groups 330 to 369)
/// must name a handle the file defines. An entity or object type no registered class (and no
/// hook) knows is skipped and noted, and so are dictionary entries that point at it.

#include "DbObjectId.h"
#include "OdResult.h"
#include "OdString.h"
#include "SmartPtr.h"

#include <vector>

class OdDbDatabase;
class OdDbObject;
class OdDbDxfFiler;
typedef OdSmartPtr<OdDbDatabase> OdDbDatabasePtr;
typedef OdSmartPtr<OdDbObject> OdDbObjectPtr;

/// One CLASS record of the CLASSES section, in the order the file holds its groups.
struct OdDbDxfClassRecord {
  OdString dxfName;      ///< 1
  OdString cppClassName; ///< 2
  OdString appName;      ///< 3
  int proxyFlags = 0;    ///< 90
  int instanceCount = 0; ///< 91
  bool wasProxy = false; ///< 280
  bool isEntity = true;  ///< 281
};

/// Lets the objects that cannot be written as standard DXF entities (the classes of loaded
/// modules, kept as proxies) take part in saving and loading without the file layer knowing
/// them. The defaults do nothing, which is the behaviour for a drawing of standard entities.
class OdDbDxfFileHooks {
public:
  virtual ~OdDbDxfFileHooks();
  /// Adds the CLASS records the drawing needs; the file lists them in the order given.
  virtual void collectClasses(OdDbDatabase* db, std::vector<OdDbDxfClassRecord>& records);
  /// Writes an object in place of its own DXF form: sets dxfName (group 0) and writes through
  /// filer the groups that follow the handle and owner. False lets the writer write the object
  /// itself (the class's DXF name and its dxfOutFields).
  virtual bool writeObject(const OdDbObject* object, const std::vector<OdDbDxfClassRecord>& classes,
                           OdString& dxfName, OdDbDxfFiler* filer);
  /// Makes an entity from a DXF type that no registered entity class has; filer holds the
  /// groups after the handle and owner. Null skips it (the reader notes the skip).
  virtual OdDbObjectPtr readUnknownEntity(const OdString& dxfName,
                                          const std::vector<OdDbDxfClassRecord>& classes,
                                          OdDbDxfFiler* filer);
  /// The same for a type of the OBJECTS section that no registered object class has.
  virtual OdDbObjectPtr readUnknownObject(const OdString& dxfName,
                                          const std::vector<OdDbDxfClassRecord>& classes,
                                          OdDbDxfFiler* filer);
};

/// Installs the hooks drawing files use (null restores the defaults). The caller keeps them
/// alive while installed. Returns the hooks installed before.
OdDbDxfFileHooks* odDbSetDxfFileHooks(OdDbDxfFileHooks* hooks);

/// The objects OBJECTS holds, in the order they are written: the named-objects dictionary, then
/// depth first the object of each entry, a dictionary's entries before the next entry of its
/// owner. Erased objects and entities are left out; an object listed twice is written once.
/// The CLASS records of non-entity module objects follow the same order.
OdDbObjectIdArray odDbDxfObjectsInFileOrder(OdDbDatabase* db);

/// Saves db to path. On failure returns the result (eFileAccessErr when the file cannot be
/// created, written or renamed; the failing filer's status when an object cannot be written),
/// puts a message in error when given and leaves an existing file at path untouched.
OdResult odDbWriteDxf(OdDbDatabase* db, const OdString& path, OdString* error = nullptr);

/// Loads the drawing at path into a new database. On failure out stays null and error (when
/// given) says what is wrong and on which line. notes (when given) receives what was read but
/// left out, such as entities of unknown types.
OdResult odDbReadDxf(const OdString& path, OdDbDatabasePtr& out, OdString* error = nullptr,
                     std::vector<OdString>* notes = nullptr);

#endif
