#ifndef CUSTENTS_TESTS_CLASS_CONTRACT_H
#define CUSTENTS_TESTS_CLASS_CONTRACT_H

// What every class must do, written once: each row of the table names a class and how to build
// a typical instance of it, and flags say which of the common checks apply. A new class joins
// the suite by adding one row to ClassContractRows.cpp.

#include "DbDatabase.h"
#include "DbFiler.h"
#include "DbObject.h"
#include "OdResult.h"

#include <ostream>
#include <string>
#include <vector>

namespace contract {

/// How a class files its format version, right after its base class's data.
enum class Version {
  None,   ///< no version of its own (the platform's classes, the dimension base)
  Int16,  ///< BS
  Double, ///< BD
};

/// What a transform that is not a similarity does to an entity.
enum class Transform {
  Exact,    ///< accepted, and the geometric extents are those of the transformed box
  Accepted, ///< accepted; the class keeps its own rule (texts stay readable, heads keep size)
  Refused,  ///< refused with a result other than eOk, and the entity is unchanged
};

enum Flags : unsigned {
  /// The class draws geometry: translations, explode and extents are checked.
  kGeometry = 1u << 0,
  /// explode gives pieces; without it explode must fail and give none.
  kExplodes = 1u << 1,
  /// dxfInFields refuses with 1 without reading anything (the module's shared routine).
  kDxfRefused = 1u << 2,
  /// Versions are the class's own business (read through, or cleared): its own tests cover them.
  kOwnVersionRule = 1u << 3,
  /// Kept in the drawing plane: a translation out of it moves the entity only within it.
  kFlat = 1u << 4,
  /// Its pieces carry colours of their own (texts in the text colour), not the entity's.
  kOwnPieceColours = 1u << 5,
  /// Its extents are a box around what it draws (a text's frame), not just the ink.
  kExtentsBeyondDrawing = 1u << 6,
};

struct Row {
  const char* className;
  /// A typical, non-resident instance; db holds the layer, linetype and text styles it may use.
  OdDbObjectPtr (*build)(OdDbDatabase* db);
  /// Writes what the class's base files before the class's own version (null: Version::None).
  void (*writeBase)(const OdDbObject* object, OdDbDwgFiler* filer);
  Version version;
  /// A version the class does not know yet.
  double newerVersion;
  unsigned flags;
  Transform mirror;
  Transform nonUniformScale;
};

/// Every row: the module's registered classes, then the platform's standard entities.
const std::vector<Row>& rows();

/// The classes the module registers, by name, from its registration table.
const std::vector<std::string>& moduleClassNames();

/// Gives a row's name to gtest's parameter names.
std::string rowName(const Row& row);

/// Prints a row as its class name in gtest's messages.
void PrintTo(const Row& row, std::ostream* out);

} // namespace contract

#endif
