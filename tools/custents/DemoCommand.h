#ifndef CUSTENTS_DEMO_COMMAND_H
#define CUSTENTS_DEMO_COMMAND_H

#include "Command.h"
#include "DbEntity.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

/// `custents demo [--out DIR] [--module PATH] [--width W] [--height H]`: loads the module,
/// builds the sample drawing and writes DIR/demo.svg and DIR/demo.png, so that a person can
/// see at a glance that the module's shapes draw what they should, and DIR/demo.dxf, the
/// drawing itself for the drawing-file commands and other DXF readers.
Command addDemoCommand(CLI::App& app);

/// How many entities of each class a drawing holds, classes in the order in which their first
/// entity appears, so the summary reads in drawing order.
std::vector<std::pair<std::string, std::size_t>>
countEntitiesByClass(const std::vector<OdDbEntityPtr>& entities);

#endif
