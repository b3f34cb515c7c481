#include "tools/ToolRunner.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>

namespace {

std::string shellQuoted(const std::string& word) {
  std::string quoted = "'";
  for (char c : word) {
    if (c == '\'')
      quoted += "'\\''";
    else
      quoted += c;
  }
  return quoted + "'";
}

} // namespace

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

rapidjson::Document parseJson(const std::string& text) {
  rapidjson::Document document;
  document.Parse(text.c_str(), text.size());
  EXPECT_FALSE(document.HasParseError()) << "offset " << document.GetErrorOffset() << " in:\n"
                                         << text;
  return document;
}

std::string str(const rapidjson::Value& value) {
  return value.IsString() ? std::string(value.GetString(), value.GetStringLength())
                          : std::string("<not a string>");
}

std::string makeTempDir() {
  const char* base = std::getenv("TMPDIR");
  std::string pattern = std::string(base && *base ? base : "/tmp") + "/custents-tools-XXXXXX";
  if (!mkdtemp(pattern.data()))
    throw std::runtime_error("cannot create a temporary folder from " + pattern);
  return pattern;
}

ToolRun runCustents(const std::vector<std::string>& args) {
  const std::string dir = makeTempDir();
  std::string command = shellQuoted(std::string(CUSTENTS_BIN_DIR) + "/custents");
  for (const std::string& arg : args)
    command += " " + shellQuoted(arg);
  command += " >" + shellQuoted(dir + "/out") + " 2>" + shellQuoted(dir + "/err") + " </dev/null";

  const int status = std::system(command.c_str());
  ToolRun run;
  if (status != -1 && WIFEXITED(status))
    run.exitCode = WEXITSTATUS(status);
  else if (status != -1 && WIFSIGNALED(status))
    run.exitCode = 128 + WTERMSIG(status);
  run.out = readFile(dir + "/out");
  run.err = readFile(dir + "/err");
  std::remove((dir + "/out").c_str());
  std::remove((dir + "/err").c_str());
  std::remove(dir.c_str());
  return run;
}

std::vector<std::string> splitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  return lines;
}
