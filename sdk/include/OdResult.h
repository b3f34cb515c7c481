#ifndef OD_RESULT_H
#define OD_RESULT_H

/// Result codes of the platform. The numbers are part of the contract: drawings, callers and
/// the module compare against them (0 success, 1 the refusal of a stream version that a class
/// does not read, 255 "not initialised", 313 a class registered twice), so every code is
/// listed once here with its number and its text.

#define ODRESULT_TABLE(X)                                                                          \
  X(eOk, 0, "No error")                                                                            \
  X(eNotImplementedYet, 1, "Not implemented yet")                                                  \
  X(eNotApplicable, 2, "Not applicable")                                                           \
  X(eInvalidInput, 3, "Invalid input")                                                             \
  X(eOutOfMemory, 6, "Out of memory")                                                              \
  X(eInvalidOpenState, 8, "Invalid open state")                                                    \
  X(eNullHandle, 11, "Null handle")                                                                \
  X(eHandleInUse, 14, "Handle already in use")                                                     \
  X(eNullObjectPointer, 15, "Null object pointer")                                                 \
  X(eNullObjectId, 16, "Null object id")                                                           \
  X(eNullEntityPointer, 20, "Null entity pointer")                                                 \
  X(eKeyNotFound, 22, "Key not found")                                                             \
  X(eDuplicateKey, 23, "Duplicate key")                                                            \
  X(eInvalidIndex, 24, "Invalid index")                                                            \
  X(eAlreadyInDb, 26, "Object is already in a database")                                           \
  X(eInvalidExtents, 30, "Invalid extents")                                                        \
  X(eInvalidSymbolTableName, 32, "Invalid symbol table name")                                      \
  X(eWrongObjectType, 34, "Wrong object type")                                                     \
  X(eWrongDatabase, 35, "Wrong database")                                                          \
  X(eNotInDatabase, 36, "Object is not in a database")                                             \
  X(eNotOpenForRead, 64, "Object is not open for read")                                            \
  X(eNotOpenForWrite, 65, "Object is not open for write")                                          \
  X(eWasErased, 70, "Object was erased")                                                           \
  X(eNotThatKindOfClass, 105, "Object is not of the requested class")                              \
  X(eNotImplemented, 110, "Not implemented")                                                       \
  X(eEndOfFile, 120, "Unexpected end of data")                                                     \
  X(eDwgObjectImproperlyRead, 121, "Object data improperly read")                                  \
  X(eInvalidDxfCode, 130, "Invalid DXF group code")                                                \
  X(eFileNotFound, 140, "File not found")                                                          \
  X(eCantOpenFile, 141, "Cannot open file")                                                        \
  X(eFileAccessErr, 142, "File access error")                                                      \
  X(eDLLNotFound, 150, "Module not found")                                                         \
  X(eInvalidModule, 151, "File is not a loadable module")                                          \
  X(eIncompatibleModule, 152, "Module API version is not supported")                               \
  X(eModuleInUse, 153, "Module is in use")                                                         \
  X(eNotInitializedYet, 255, "Not initialized yet")                                                \
  X(eExtendedError, 313, "Extended error")

enum OdResult {
#define OD_RESULT_ENUM(name, value, text) name = value,
  ODRESULT_TABLE(OD_RESULT_ENUM)
#undef OD_RESULT_ENUM
};

/// The fixed description of a result code, or "Unknown error" for a number not in the table.
const char* odResultText(OdResult res);
/// The enumerator's name ("eOk"), or an empty string for a number not in the table.
const char* odResultName(OdResult res);

#endif
