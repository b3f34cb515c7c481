#include "DemoCommand.h"

#include "DrawingFile.h"
#include "DrawingRenderer.h"
#include "ModuleSession.h"
#include "SampleDrawing.h"
#include "TextTable.h"
#include "ToolPaths.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <system_error>

namespace {

struct DemoOptions {
  std::string modulePath;
  std::string outDir = ".";
  int width = 1200;
  int height = 800;
};

/// What was written, for the summary printed after the module is unloaded again.
struct DemoReport {
  std::vector<std::pair<std::string, std::size_t>> counts;
  std::size_t entityCount = 0;
  std::string svgPath;
  std::string pngPath;
  std::string dxfPath;
  custents::render::RenderResult svg;
  custents::render::RenderResult png;
};

void requireRendered(const custents::render::RenderResult& result, const std::string& path) {
  if (!result)
    throw std::runtime_error("cannot write " + path + ": " + result.error);
}

DemoReport writeDemo(const DemoOptions& options, const custents::render::RenderOptions& render) {
  const std::filesystem::path dir(options.outDir);
  std::error_code error;
  std::filesystem::create_directories(dir, error);
  if (error || !std::filesystem::is_directory(dir))
    throw std::runtime_error("cannot create the output folder " + options.outDir +
                             (error ? ": " + error.message() : std::string()));

  DemoReport report;
  report.svgPath = (dir / "demo.svg").string();
  report.pngPath = (dir / "demo.png").string();
  report.dxfPath = (dir / "demo.dxf").string();

  const std::string path = options.modulePath.empty() ? defaultModulePath() : options.modulePath;
  ModuleSession session(path);
  {
    // The drawing's entities run the module's code, so they go before the module does.
    const OdDbDatabasePtr database = custents::sample::buildSampleDrawing();
    const std::vector<OdDbEntityPtr> entities =
        custents::sample::modelSpaceEntities(database.get());
    report.counts = countEntitiesByClass(entities);
    report.entityCount = entities.size();

    const custents::render::DrawingRenderer renderer(render);
    report.svg = renderer.renderSvg(database.get(), report.svgPath);
    requireRendered(report.svg, report.svgPath);
    report.png = renderer.renderPng(database.get(), report.pngPath);
    requireRendered(report.png, report.pngPath);
    saveDrawing(database.get(), report.dxfPath);
  }
  session.close();
  return report;
}

int runDemo(const DemoOptions& options) {
  custents::render::RenderOptions render;
  render.width = options.width;
  render.height = options.height;
  // Lines a little heavier than a hairline read better in a picture looked at as a whole.
  render.lineWidth = 2.0;
  const std::string problem = render.validate();
  if (!problem.empty())
    throw std::invalid_argument("cannot make a " + std::to_string(options.width) + " x " +
                                std::to_string(options.height) + " picture: " + problem);

  const DemoReport report = writeDemo(options, render);

  std::cout << "Sample drawing: " << report.entityCount << " entities in model space\n";
  TextTable table({"Class", "Entities"});
  table.setAlign(1, TextTable::Align::Right);
  for (const auto& count : report.counts)
    table.addRow({count.first, std::to_string(count.second)});
  table.print(std::cout);
  std::cout << "Wrote " << report.svgPath << " (" << report.svg.width << " x " << report.svg.height
            << " px, " << report.svg.entitiesDrawn << " entities drawn, " << report.svg.primitives
            << " primitives)\n";
  std::cout << "Wrote " << report.pngPath << " (" << report.png.width << " x " << report.png.height
            << " px)\n";
  std::cout << "Wrote " << report.dxfPath << '\n';
  for (const std::string& note : report.svg.notes)
    std::cout << "Note: " << note << '\n';
  return 0;
}

} // namespace

std::vector<std::pair<std::string, std::size_t>>
countEntitiesByClass(const std::vector<OdDbEntityPtr>& entities) {
  std::vector<std::pair<std::string, std::size_t>> counts;
  for (const OdDbEntityPtr& entity : entities) {
    const std::string name = entity->isA()->name().toUtf8();
    auto it = counts.begin();
    while (it != counts.end() && it->first != name)
      ++it;
    if (it == counts.end())
      counts.emplace_back(name, 1);
    else
      ++it->second;
  }
  return counts;
}

Command addDemoCommand(CLI::App& app) {
  auto options = std::make_shared<DemoOptions>();
  CLI::App* sub = app.add_subcommand(
      "demo",
      "Build the sample drawing of survey shapes and write demo.svg, demo.png and demo.dxf");
  sub->add_option(
      "--out", options->outDir,
      "Folder for demo.svg, demo.png and demo.dxf, created if missing (default: the current "
      "folder)");
  sub->add_option("--module", options->modulePath,
                  "Module file to load (default: CustEnts.tx beside this program)");
  sub->add_option("--width", options->width, "Picture width in pixels")
      ->check(CLI::Range(1, custents::render::kMaxPictureSide))
      ->capture_default_str();
  sub->add_option("--height", options->height, "Picture height in pixels")
      ->check(CLI::Range(1, custents::render::kMaxPictureSide))
      ->capture_default_str();
  return Command{sub, [options] { return runDemo(*options); }};
}
