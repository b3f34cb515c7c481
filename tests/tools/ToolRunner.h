#ifndef CUSTENTS_TESTS_TOOL_RUNNER_H
#define CUSTENTS_TESTS_TOOL_RUNNER_H

#include <string>
#include <vector>

/// What a run of the built application produced.
struct ToolRun {
  /// The exit code, or 128 + the signal number when a signal ended it.
  int exitCode = -1;
  std::string out;
  std::string err;
};

/// Runs the built `custents` from the build's bin folder with these arguments (each passed as
/// one word, whatever it contains) and captures both output streams.
ToolRun runCustents(const std::vector<std::string>& args);

/// The lines of a text, without their line ends; a final line end adds no empty line.
std::vector<std::string> splitLines(const std::string& text);

/// A fresh empty folder for one test's files.
std::string makeTempDir();

#endif
