#include "ConvertCommand.h"

#include "DrawingFile.h"
#include "ModuleSession.h"
#include "ToolPaths.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>

namespace {

struct ConvertOptions {
  std::string modulePath;
  std::string input;
  std::string output;
};

int runConvert(const ConvertOptions& options) {
  const std::string path = options.modulePath.empty() ? defaultModulePath() : options.modulePath;
  ModuleSession session(path);
  std::vector<std::string> notes;
  {
    // The drawing's entities run the module's code, so they go before the module does.
    LoadedDrawing drawing = loadDrawing(options.input);
    notes = std::move(drawing.notes);
    saveDrawing(drawing.database.get(), options.output);
  }
  session.close();
  std::cout << "Wrote " << options.output << '\n';
  for (const std::string& note : notes)
    std::cout << "Note: " << note << '\n';
  return 0;
}

} // namespace

Command addConvertCommand(CLI::App& app) {
  auto options = std::make_shared<ConvertOptions>();
  CLI::App* sub =
      app.add_subcommand("convert", "Load a DXF drawing with the module and save it again as DXF");
  sub->add_option("input", options->input, "The DXF drawing to read")->required();
  sub->add_option("-o,--output", options->output, "The DXF file to write")
      ->required()
      ->check(CLI::Validator([](std::string& path) { return checkOutputExtension(path, "dxf"); },
                             "FILE.dxf"));
  sub->add_option("--module", options->modulePath,
                  "Module file to load (default: CustEnts.tx beside this program)");
  return Command{sub, [options] { return runConvert(*options); }};
}
