#ifndef CUSTENTS_COMMAND_H
#define CUSTENTS_COMMAND_H

#include <functional>

namespace CLI {
class App;
}

/// A subcommand of the application as main() sees it: the parser node that the subcommand
/// added to the command line, and what to run when the user chose it. Keeping every
/// subcommand behind this one shape lets a new one slot in with one line in main().
struct Command {
  CLI::App* parser = nullptr;
  /// Returns the process exit code; failures are thrown (OdError or std::exception) and
  /// reported by main().
  std::function<int()> run;
};

#endif
