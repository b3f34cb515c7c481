#ifndef CUSTENTS_PROPS_COMMAND_H
#define CUSTENTS_PROPS_COMMAND_H

#include "Command.h"
#include "DbDatabase.h"
#include "DbEntity.h"
#include "OdaCommon.h"

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

class OdVariant;

/// `custents props [FILE.dxf] [--json] [--module PATH]`: loads the module and prints the
/// property page of every entity of a drawing's model space (the DXF file, or the built-in
/// sample drawing without one), exactly as the host's property grid would ask the entities'
/// property extensions for it.
Command addPropsCommand(CLI::App& app);

/// Where the entities come from: called with the module loaded; the database it returns is
/// released before the module is unloaded.
using DrawingSource = std::function<OdDbDatabasePtr()>;

/// One property value, read out of its OdVariant while the module is loaded so that the page
/// outlives it.
struct PropertyValue {
  enum class Kind { kEmpty, kString, kDouble, kInteger, kColor, kBool, kOther };
  Kind kind = Kind::kEmpty;
  /// The value as a person reads it: colours as 0xXXXXXXXX with their meaning, doubles with
  /// the digits that give them back exactly.
  std::string text;
  /// The OdVariant type name ("Double", "Int32", "String reference", ...).
  std::string typeName;
  double number = 0.0;
  /// kInteger: the value; kColor: the packed colour.
  OdInt64 integer = 0;
  bool flag = false;
};

struct PropertyRow {
  int index = 0;
  std::string label;
  std::string tip;
  PropertyValue value;
  bool editable = false;
  int editorKind = 0;
};

struct PropertyGroup {
  int flag = 0;
  std::string caption;
  int count = 0;
  std::vector<PropertyRow> rows;
};

/// The property page of one entity, in UTF-8.
struct EntityPage {
  std::string className;
  /// Upper-case hexadecimal, as drawings show handles.
  std::string handle;
  /// The display name the extension gives (getEntityName).
  std::string name;
  /// The C++ class of the property extension, or "PropertyPE" when the class has none of
  /// its own and the host's common page stands in.
  std::string extension;
  std::vector<PropertyGroup> groups;
  /// Set when the extension threw while the page was read; the groups hold what was read
  /// before.
  std::string error;
};

/// The page the host's grid shows for an entity: every group of the extension and every row
/// below each group's count. Entities whose class carries no property extension get the
/// host's common group, as the grid gives them.
EntityPage describePropertyPage(OdDbEntity* entity);

/// The pages of the entities of model space, in drawing order.
std::vector<EntityPage> describePropertyPages(OdDbDatabase* database);

/// Reads a row value. editorKind tells a colour (colour picker) from another 32-bit integer.
PropertyValue describePropertyValue(const OdVariant& value, int editorKind);

/// A double with as few significant digits as give the same double back.
std::string formatDouble(double value);

/// A packed colour as 0xXXXXXXXX followed by what it means: "ByLayer", "ByBlock", "ACI 1",
/// "RGB(255,200,80)", "Foreground", "None" ...
std::string describeColor(OdUInt32 packed);

/// One block per entity, one aligned table per group.
void printPropertyPages(const std::vector<EntityPage>& pages, std::ostream& out);
/// A JSON array of entities {class, handle, name, extension, groups: [{flag, caption, count,
/// rows: [{index, label, tip, value, valueText, valueType, editable, editorKind}]}]}.
void printPropertyPagesJson(const std::vector<EntityPage>& pages, std::ostream& out);

#endif
