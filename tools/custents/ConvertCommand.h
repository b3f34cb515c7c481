#ifndef CUSTENTS_CONVERT_COMMAND_H
#define CUSTENTS_CONVERT_COMMAND_H

#include "Command.h"

/// `custents convert IN.dxf -o OUT.dxf [--module PATH]`: loads a drawing with the module loaded
/// (its classes' proxies come back live, unknown ones stay proxies) and saves it again, which
/// is how a drawing is brought up to what the current module writes.
Command addConvertCommand(CLI::App& app);

#endif
