#ifndef CUSTENTS_TOOL_PATHS_H
#define CUSTENTS_TOOL_PATHS_H

#include <string>

/// The folder that holds the running executable, from /proc/self/exe, so that the tools find
/// the module that the build puts beside them whatever the current directory is. Throws
/// std::runtime_error when the link cannot be read.
std::string executableDirectory();

/// The module that the application loads when no --module is given: CustEnts.tx beside the
/// executable.
std::string defaultModulePath();

#endif
