#ifndef CUSTENTS_CLASSES_COMMAND_H
#define CUSTENTS_CLASSES_COMMAND_H

#include "ClassReport.h"
#include "Command.h"

#include <iosfwd>
#include <vector>

/// `custents classes [--module PATH] [--json]`: loads the module and lists the classes it
/// registered, read back from the class dictionary.
Command addClassesCommand(CLI::App& app);

/// One aligned row per class, under a header.
void printClassTable(const std::vector<ClassRecord>& classes, std::ostream& out);
/// A JSON array with one object per class (keys name, parent, dxfName, appName, proxyFlags,
/// dwgVersion, maintVersion, extensions), for scripts.
void printClassJson(const std::vector<ClassRecord>& classes, std::ostream& out);

#endif
