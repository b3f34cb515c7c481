#ifndef CUSTENTS_RENDER_COMMAND_H
#define CUSTENTS_RENDER_COMMAND_H

#include "Command.h"

/// `custents render IN.dxf -o OUT.svg|OUT.png [--width W] [--height H] [--background
/// white|dark] [--module PATH]`: a picture of a drawing's model space, the format chosen by the
/// output's extension.
Command addRenderCommand(CLI::App& app);

#endif
