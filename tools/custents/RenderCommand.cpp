#include "RenderCommand.h"

#include "DrawingFile.h"
#include "DrawingRenderer.h"
#include "ModuleSession.h"
#include "ToolPaths.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>

namespace {

struct RenderCommandOptions {
  std::string modulePath;
  std::string input;
  std::string output;
  int width = 1200;
  int height = 800;
  custents::render::Background background = custents::render::Background::kWhite;
};

int runRender(const RenderCommandOptions& options) {
  custents::render::RenderOptions render;
  render.width = options.width;
  render.height = options.height;
  render.background = options.background;
  const std::string problem = render.validate();
  if (!problem.empty())
    throw std::invalid_argument("cannot make a " + std::to_string(options.width) + " x " +
                                std::to_string(options.height) + " picture: " + problem);
  const bool png = lowerCaseExtension(options.output) == "png";

  const std::string path = options.modulePath.empty() ? defaultModulePath() : options.modulePath;
  ModuleSession session(path);
  custents::render::RenderResult result;
  std::vector<std::string> notes;
  {
    // The drawing's entities run the module's code, so they go before the module does.
    LoadedDrawing drawing = loadDrawing(options.input);
    notes = std::move(drawing.notes);
    const custents::render::DrawingRenderer renderer(render);
    result = png ? renderer.renderPng(drawing.database.get(), options.output)
                 : renderer.renderSvg(drawing.database.get(), options.output);
  }
  session.close();
  if (!result)
    throw std::runtime_error("cannot write " + options.output + ": " + result.error);

  std::cout << "Wrote " << options.output << " (" << result.width << " x " << result.height
            << " px, " << result.entitiesDrawn << " entities drawn, " << result.primitives
            << " primitives)\n";
  for (const std::string& note : notes)
    std::cout << "Note: " << note << '\n';
  for (const std::string& note : result.notes)
    std::cout << "Note: " << note << '\n';
  return 0;
}

} // namespace

Command addRenderCommand(CLI::App& app) {
  auto options = std::make_shared<RenderCommandOptions>();
  CLI::App* sub =
      app.add_subcommand("render", "Draw the model space of a DXF drawing into an SVG or PNG file");
  sub->add_option("input", options->input, "The DXF drawing to read")->required();
  sub->add_option("-o,--output", options->output, "The picture to write: FILE.svg or FILE.png")
      ->required()
      ->check(
          CLI::Validator([](std::string& path) { return checkOutputExtension(path, "svg|png"); },
                         "FILE.svg|FILE.png"));
  sub->add_option("--width", options->width, "Picture width in pixels")
      ->check(CLI::Range(1, custents::render::kMaxPictureSide))
      ->capture_default_str();
  sub->add_option("--height", options->height, "Picture height in pixels")
      ->check(CLI::Range(1, custents::render::kMaxPictureSide))
      ->capture_default_str();
  const std::map<std::string, custents::render::Background> backgrounds = {
      {"white", custents::render::Background::kWhite},
      {"dark", custents::render::Background::kDark}};
  sub->add_option("--background", options->background, "white (default) or dark")
      ->transform(CLI::CheckedTransformer(backgrounds, CLI::ignore_case));
  sub->add_option("--module", options->modulePath,
                  "Module file to load (default: CustEnts.tx beside this program)");
  return Command{sub, [options] { return runRender(*options); }};
}
