#ifndef CUSTENTS_INFO_COMMAND_H
#define CUSTENTS_INFO_COMMAND_H

#include "Command.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

class OdDbDatabase;

/// `custents info IN.dxf [--json] [--module PATH]`: what a drawing holds, for a person deciding
/// whether it needs the module (custom classes, kept proxies) and for scripts that check files.
Command addInfoCommand(CLI::App& app);

/// A custom class the drawing uses, as its CLASSES section lists it.
struct DrawingClassInfo {
  std::string dxfName;
  std::string cppClassName;
  std::string appName;
  unsigned proxyFlags = 0;
  std::size_t instances = 0;
  /// True when a loaded module knows the class, so its objects are live; false when they are
  /// kept as proxies.
  bool live = false;
};

/// The entities of one kind of owner, counted by type in the order types first appear. Kept
/// proxies count under "<original class> (proxy)".
struct EntityCounts {
  std::size_t total = 0;
  std::vector<std::pair<std::string, std::size_t>> byType;
};

struct DrawingInfo {
  std::string path;
  std::uintmax_t fileSize = 0;
  unsigned objects = 0;
  std::vector<DrawingClassInfo> classes;
  EntityCounts modelSpace;
  EntityCounts paperSpace;
  /// Entities of the block definitions, all blocks together.
  EntityCounts blocks;
  std::size_t blockDefinitions = 0;
  std::vector<std::string> notes;
};

/// Reads the classes and counts of a loaded drawing (path, size and notes are the caller's),
/// reporting progress on progress (when given) for drawings of many entities.
DrawingInfo describeDrawing(OdDbDatabase* database, std::ostream* progress = nullptr);

void printDrawingInfo(const DrawingInfo& info, std::ostream& out);
/// One JSON object {file, fileSize, objects, classes: [{dxfName, cppClassName, appName,
/// proxyFlags, instances, live}], modelSpace|paperSpace|blocks: {total, byType: [{type,
/// count}]}, blockDefinitions, notes}.
void printDrawingInfoJson(const DrawingInfo& info, std::ostream& out);

#endif
