#ifndef CUSTENTS_TESTS_TOOL_RUNNER_H
#define CUSTENTS_TESTS_TOOL_RUNNER_H

#include <rapidjson/document.h>

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

/// A file's bytes; empty when it cannot be read.
std::string readFile(const std::string& path);
/// A JSON document, with a test failure naming the text when it does not parse.
rapidjson::Document parseJson(const std::string& text);
/// A JSON string's text, or "<not a string>".
std::string str(const rapidjson::Value& value);
inline bool startsWith(const std::string& text, const std::string& prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

#endif
