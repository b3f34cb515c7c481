#include "ClassesCommand.h"

#include "ModuleSession.h"
#include "TextTable.h"
#include "ToolPaths.h"

#include <CLI/CLI.hpp>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <iostream>
#include <memory>
#include <string>

namespace {

struct ClassesOptions {
  std::string modulePath;
  bool json = false;
};

std::string joined(const std::vector<std::string>& parts, const char* separator) {
  std::string text;
  for (const std::string& part : parts) {
    if (!text.empty())
      text += separator;
    text += part;
  }
  return text;
}

void writeString(rapidjson::PrettyWriter<rapidjson::StringBuffer>& writer, const std::string& s) {
  writer.String(s.c_str(), static_cast<rapidjson::SizeType>(s.size()));
}

int runClasses(const ClassesOptions& options) {
  const std::string path = options.modulePath.empty() ? defaultModulePath() : options.modulePath;
  ModuleSession session(path);
  const std::vector<ClassRecord> classes = describeModuleClasses(session.module());
  session.close();

  if (options.json)
    printClassJson(classes, std::cout);
  else
    printClassTable(classes, std::cout);
  return 0;
}

} // namespace

void printClassTable(const std::vector<ClassRecord>& classes, std::ostream& out) {
  // The application name goes last: a few are long descriptive texts.
  TextTable table(
      {"#", "Class", "Parent", "DXF name", "Proxy", "Version", "Extensions", "Application name"});
  table.setAlign(0, TextTable::Align::Right);
  table.setAlign(4, TextTable::Align::Right);
  std::size_t index = 0;
  for (const ClassRecord& cls : classes) {
    table.addRow({std::to_string(++index), cls.name, cls.parent, cls.dxfName,
                  std::to_string(cls.proxyFlags),
                  std::to_string(cls.dwgVersion) + "." + std::to_string(cls.maintVersion),
                  joined(cls.extensions, ", "), cls.appName});
  }
  table.print(out);
}

void printClassJson(const std::vector<ClassRecord>& classes, std::ostream& out) {
  rapidjson::StringBuffer buffer;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
  writer.SetIndent(' ', 2);
  writer.StartArray();
  for (const ClassRecord& cls : classes) {
    writer.StartObject();
    writer.Key("name");
    writeString(writer, cls.name);
    writer.Key("parent");
    writeString(writer, cls.parent);
    writer.Key("dxfName");
    writeString(writer, cls.dxfName);
    writer.Key("appName");
    writeString(writer, cls.appName);
    writer.Key("proxyFlags");
    writer.Uint(cls.proxyFlags);
    writer.Key("dwgVersion");
    writer.Int(cls.dwgVersion);
    writer.Key("maintVersion");
    writer.Int(cls.maintVersion);
    writer.Key("extensions");
    writer.StartArray();
    for (const std::string& extension : cls.extensions)
      writeString(writer, extension);
    writer.EndArray();
    writer.EndObject();
  }
  writer.EndArray();
  out << buffer.GetString() << '\n';
}

Command addClassesCommand(CLI::App& app) {
  auto options = std::make_shared<ClassesOptions>();
  CLI::App* sub = app.add_subcommand(
      "classes", "Load the module and list the classes it registered, in registration order");
  sub->add_option("--module", options->modulePath,
                  "Module file to load (default: CustEnts.tx beside this program)");
  sub->add_flag("--json", options->json, "Write a JSON array instead of a table");
  return Command{sub, [options] { return runClasses(*options); }};
}
