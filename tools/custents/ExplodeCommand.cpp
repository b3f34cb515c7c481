#include "ExplodeCommand.h"

#include "DrawingFile.h"
#include "ModuleSession.h"
#include "ToolPaths.h"

#include <CLI/CLI.hpp>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <iostream>
#include <memory>

namespace {

using custents::plain::PlainExportResult;

struct ExplodeOptions {
  std::string modulePath;
  std::string input;
  std::string output;
  bool keepGoing = false;
  bool json = false;
};

using JsonWriter = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

void writeString(JsonWriter& writer, const std::string& s) {
  writer.String(s.c_str(), static_cast<rapidjson::SizeType>(s.size()));
}

int runExplode(const ExplodeOptions& options) {
  const std::string path = options.modulePath.empty() ? defaultModulePath() : options.modulePath;
  ModuleSession session(path);
  PlainExportResult result;
  {
    // The drawing's entities run the module's code, so they go before the module does.
    LoadedDrawing drawing = loadDrawing(options.input);
    custents::plain::PlainExportOptions exportOptions;
    exportOptions.keepGoing = options.keepGoing;
    // The total is known once the export has found the custom entities.
    std::unique_ptr<ProgressReporter> progress;
    exportOptions.progress = [&progress](std::size_t done, std::size_t total) {
      if (!progress)
        progress =
            std::make_unique<ProgressReporter>("Exploding custom entities", total, std::cerr);
      progress->update(done);
    };
    result = custents::plain::exportPlain(drawing.database.get(), exportOptions);
    result.notes.insert(result.notes.begin(), drawing.notes.begin(), drawing.notes.end());
    if (result.applied)
      saveDrawing(drawing.database.get(), options.output);
  }
  session.close();

  for (const custents::plain::ExportFailure& failure : result.failures)
    std::cerr << "custents: cannot explode " << failure.className << " " << failure.handle << " in "
              << failure.owner << ": " << failure.reason << '\n';
  if (options.json)
    printExportJson(result, options.output, std::cout);
  else
    printExportSummary(result, options.output, std::cout);
  if (!result.applied)
    std::cerr << "custents: nothing written; --keep-going leaves such entities out\n";
  return result.applied ? 0 : 1;
}

} // namespace

void printExportSummary(const PlainExportResult& result, const std::string& output,
                        std::ostream& out) {
  out << "Custom entities: " << result.customEntities << " (" << result.keptProxies
      << " kept proxies)\n";
  out << "Standard entities added: " << result.piecesAdded << '\n';
  if (result.entitiesRemoved > 0)
    out << "Removed with nothing to show: " << result.entitiesRemoved << '\n';
  if (!result.failures.empty())
    out << (result.applied ? "Left out after failing: " : "Failed: ") << result.failures.size()
        << '\n';
  for (const std::string& note : result.notes)
    out << "Note: " << note << '\n';
  if (result.applied)
    out << "Wrote " << output << '\n';
}

void printExportJson(const PlainExportResult& result, const std::string& output,
                     std::ostream& out) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.SetIndent(' ', 2);
  writer.StartObject();
  writer.Key("output");
  writeString(writer, output);
  writer.Key("written");
  writer.Bool(result.applied);
  writer.Key("customEntities");
  writer.Uint64(result.customEntities);
  writer.Key("keptProxies");
  writer.Uint64(result.keptProxies);
  writer.Key("piecesAdded");
  writer.Uint64(result.piecesAdded);
  writer.Key("entitiesRemoved");
  writer.Uint64(result.entitiesRemoved);
  writer.Key("failures");
  writer.StartArray();
  for (const custents::plain::ExportFailure& failure : result.failures) {
    writer.StartObject();
    writer.Key("handle");
    writeString(writer, failure.handle);
    writer.Key("class");
    writeString(writer, failure.className);
    writer.Key("owner");
    writeString(writer, failure.owner);
    writer.Key("reason");
    writeString(writer, failure.reason);
    writer.EndObject();
  }
  writer.EndArray();
  writer.Key("notes");
  writer.StartArray();
  for (const std::string& note : result.notes)
    writeString(writer, note);
  writer.EndArray();
  writer.EndObject();
  out << buffer.GetString() << '\n';
}

Command addExplodeCommand(CLI::App& app) {
  auto options = std::make_shared<ExplodeOptions>();
  CLI::App* sub = app.add_subcommand(
      "explode", "Plain export: replace every custom entity by standard entities and save as DXF");
  sub->add_option("input", options->input, "The DXF drawing to read")->required();
  sub->add_option("-o,--output", options->output, "The plain DXF file to write")
      ->required()
      ->check(CLI::Validator([](std::string& path) { return checkOutputExtension(path, "dxf"); },
                             "FILE.dxf"));
  sub->add_flag("--keep-going", options->keepGoing,
                "Leave out entities that cannot be exploded instead of writing nothing");
  sub->add_flag("--json", options->json, "Write a JSON summary instead of text");
  sub->add_option("--module", options->modulePath,
                  "Module file to load (default: CustEnts.tx beside this program)");
  return Command{sub, [options] { return runExplode(*options); }};
}
