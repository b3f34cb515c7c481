// custents: the reference host application. It loads the CustEnts module through the
// platform's dynamic linker and drives it from the command line.
//
// Exit codes: 0 success, 1 the command failed (the cause is printed on stderr), 2 the command
// line was not understood (CLI11's usage message on stderr).

#include "ClassesCommand.h"
#include "Command.h"
#include "ConvertCommand.h"
#include "DemoCommand.h"
#include "ExplodeCommand.h"
#include "InfoCommand.h"
#include "PropsCommand.h"
#include "RenderCommand.h"

#include "OdError.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <string>
#include <vector>

#ifndef CUSTENTS_VERSION
#error "CUSTENTS_VERSION must be defined by the build"
#endif

int main(int argc, char** argv) {
  CLI::App app{"custents - reference host application for the CustEnts module"};
  app.set_version_flag("--version", std::string("custents ") + CUSTENTS_VERSION);
  // Not app.require_subcommand(): CLI11 would then answer an unknown subcommand with "a
  // subcommand is required" instead of naming the word it did not expect.

  std::vector<Command> commands;
  commands.push_back(addClassesCommand(app));
  commands.push_back(addDemoCommand(app));
  commands.push_back(addPropsCommand(app));
  commands.push_back(addConvertCommand(app));
  commands.push_back(addRenderCommand(app));
  commands.push_back(addInfoCommand(app));
  commands.push_back(addExplodeCommand(app));

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    // --help and --version arrive here too, with exit code 0.
    const int code = app.exit(error);
    return code == 0 ? 0 : 2;
  }

  const Command* chosen = nullptr;
  for (const Command& command : commands)
    if (command.parser->parsed())
      chosen = &command;
  if (!chosen) {
    std::cerr << "custents: a subcommand is required\n" << app.help();
    return 2;
  }

  try {
    const int code = chosen->run();
    std::cout.flush();
    if (!std::cout) {
      std::cerr << "custents: cannot write the output\n";
      return 1;
    }
    return code;
  } catch (const OdError& error) {
    std::cerr << "custents: " << error.description().toUtf8() << '\n';
  } catch (const std::exception& error) {
    std::cerr << "custents: " << error.what() << '\n';
  }
  return 1;
}
