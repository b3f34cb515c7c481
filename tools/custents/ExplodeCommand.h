#ifndef CUSTENTS_EXPLODE_COMMAND_H
#define CUSTENTS_EXPLODE_COMMAND_H

#include "Command.h"
#include "PlainExport.h"

#include <iosfwd>
#include <string>

/// `custents explode IN.dxf -o OUT.dxf [--keep-going] [--json] [--module PATH]`: the plain
/// export. Every custom entity is replaced by standard entities (PlainExport.h) and the result
/// is saved. An entity that cannot be made standard is reported on stderr; without
/// --keep-going nothing is written and the exit code is 1, with it the entity is left out,
/// the rest is written and the exit code is 0.
Command addExplodeCommand(CLI::App& app);

/// What was replaced, added and noted, then "Wrote OUT" (or that nothing was written).
void printExportSummary(const custents::plain::PlainExportResult& result, const std::string& output,
                        std::ostream& out);
/// One JSON object {output, written, customEntities, keptProxies, piecesAdded,
/// entitiesRemoved, failures: [{handle, class, owner, reason}], notes}.
void printExportJson(const custents::plain::PlainExportResult& result, const std::string& output,
                     std::ostream& out);

#endif
