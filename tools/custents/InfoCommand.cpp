#include "InfoCommand.h"

#include "DrawingFile.h"
#include "ModuleSession.h"
#include "TextTable.h"
#include "ToolPaths.h"

#include "DbBlockTable.h"
#include "DbDxfProxy.h"
#include "DbProxyEntity.h"
#include "RxDictionary.h"

#include <CLI/CLI.hpp>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <iostream>
#include <memory>
#include <sstream>

namespace {

struct InfoOptions {
  std::string modulePath;
  std::string input;
  bool json = false;
};

using JsonWriter = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

void writeString(JsonWriter& writer, const std::string& s) {
  writer.String(s.c_str(), static_cast<rapidjson::SizeType>(s.size()));
}

std::string entityType(const OdDbEntity* entity) {
  if (const OdDbProxyEntity* proxy = OdDbProxyEntity::cast(entity).get())
    return proxy->originalClassName().toUtf8() + " (proxy)";
  return entity->isA()->name().toUtf8();
}

void count(EntityCounts& counts, const std::string& type) {
  ++counts.total;
  for (auto& entry : counts.byType)
    if (entry.first == type) {
      ++entry.second;
      return;
    }
  counts.byType.emplace_back(type, 1);
}

void printCounts(const char* title, const EntityCounts& counts, std::ostream& out) {
  out << title << ": " << counts.total << (counts.total == 1 ? " entity\n" : " entities\n");
  if (counts.byType.empty())
    return;
  TextTable table({"  Type", "Entities"});
  table.setAlign(1, TextTable::Align::Right);
  for (const auto& entry : counts.byType)
    table.addRow({"  " + entry.first, std::to_string(entry.second)});
  table.print(out);
}

void writeCounts(JsonWriter& writer, const char* key, const EntityCounts& counts) {
  writer.Key(key);
  writer.StartObject();
  writer.Key("total");
  writer.Uint64(counts.total);
  writer.Key("byType");
  writer.StartArray();
  for (const auto& entry : counts.byType) {
    writer.StartObject();
    writer.Key("type");
    writeString(writer, entry.first);
    writer.Key("count");
    writer.Uint64(entry.second);
    writer.EndObject();
  }
  writer.EndArray();
  writer.EndObject();
}

int runInfo(const InfoOptions& options) {
  const std::string path = options.modulePath.empty() ? defaultModulePath() : options.modulePath;
  ModuleSession session(path);
  DrawingInfo info;
  {
    // The drawing's entities run the module's code, so they go before the module does.
    LoadedDrawing drawing = loadDrawing(options.input);
    info = describeDrawing(drawing.database.get(), &std::cerr);
    info.path = options.input;
    info.fileSize = drawing.fileSize;
    info.notes = std::move(drawing.notes);
  }
  session.close();

  if (options.json)
    printDrawingInfoJson(info, std::cout);
  else
    printDrawingInfo(info, std::cout);
  return 0;
}

} // namespace

DrawingInfo describeDrawing(OdDbDatabase* database, std::ostream* progressOut) {
  DrawingInfo info;
  info.objects = database->numObjects();

  std::vector<OdDbDxfClassRecord> records;
  odDbDxfProxyHooks()->collectClasses(database, records);
  for (const OdDbDxfClassRecord& record : records) {
    DrawingClassInfo cls;
    cls.dxfName = record.dxfName.toUtf8();
    cls.cppClassName = record.cppClassName.toUtf8();
    cls.appName = record.appName.toUtf8();
    cls.proxyFlags = static_cast<unsigned>(record.proxyFlags);
    cls.instances = static_cast<std::size_t>(record.instanceCount);
    const OdRxClass* registered = odrxGetClass(record.cppClassName);
    cls.live = registered && !registered->isDerivedFrom(OdDbProxyEntity::desc()) &&
               !registered->isDerivedFrom(OdDbProxyObject::desc());
    info.classes.push_back(cls);
  }

  std::vector<OdDbBlockTableRecordPtr> blocks;
  std::size_t total = 0;
  OdDbSymbolTablePtr table = database->getBlockTableId().safeOpenObject();
  for (OdDbSymbolTableIteratorPtr it = table->newIterator(); !it->done(); it->step()) {
    OdDbBlockTableRecordPtr block = OdDbBlockTableRecord::cast(it->getRecord());
    if (block.isNull())
      continue;
    total += block->entityIds().size();
    blocks.push_back(block);
  }

  std::ostringstream discard;
  ProgressReporter progress("Counting entities", total, progressOut ? *progressOut : discard);
  std::size_t counted = 0;
  for (const OdDbBlockTableRecordPtr& block : blocks) {
    EntityCounts* counts = &info.blocks;
    if (block->objectId() == database->getModelSpaceId())
      counts = &info.modelSpace;
    else if (block->objectId() == database->getPaperSpaceId())
      counts = &info.paperSpace;
    else
      ++info.blockDefinitions;
    for (const OdDbObjectId& id : block->entityIds()) {
      OdDbObjectPtr object = id.openObject();
      if (const OdDbEntity* entity = OdDbEntity::cast(object.get()).get())
        count(*counts, entityType(entity));
      progress.update(++counted);
    }
  }
  return info;
}

void printDrawingInfo(const DrawingInfo& info, std::ostream& out) {
  out << "Drawing " << info.path << ": " << info.fileSize << " bytes, " << info.objects
      << " objects\n";
  if (info.classes.empty()) {
    out << "Classes: none (a plain drawing)\n";
  } else {
    out << "Classes: " << info.classes.size() << '\n';
    TextTable table({"DXF name", "Class", "Objects", "Proxy flags", "State", "Application"});
    table.setAlign(2, TextTable::Align::Right);
    table.setAlign(3, TextTable::Align::Right);
    for (const DrawingClassInfo& cls : info.classes)
      table.addRow({cls.dxfName, cls.cppClassName, std::to_string(cls.instances),
                    std::to_string(cls.proxyFlags), cls.live ? "live" : "kept as proxy",
                    cls.appName});
    table.print(out);
  }
  printCounts("Model space", info.modelSpace, out);
  printCounts("Paper space", info.paperSpace, out);
  out << "Block definitions: " << info.blockDefinitions << '\n';
  if (info.blockDefinitions > 0)
    printCounts("Block entities", info.blocks, out);
  for (const std::string& note : info.notes)
    out << "Note: " << note << '\n';
}

void printDrawingInfoJson(const DrawingInfo& info, std::ostream& out) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.SetIndent(' ', 2);
  writer.StartObject();
  writer.Key("file");
  writeString(writer, info.path);
  writer.Key("fileSize");
  writer.Uint64(info.fileSize);
  writer.Key("objects");
  writer.Uint(info.objects);
  writer.Key("classes");
  writer.StartArray();
  for (const DrawingClassInfo& cls : info.classes) {
    writer.StartObject();
    writer.Key("dxfName");
    writeString(writer, cls.dxfName);
    writer.Key("cppClassName");
    writeString(writer, cls.cppClassName);
    writer.Key("appName");
    writeString(writer, cls.appName);
    writer.Key("proxyFlags");
    writer.Uint(cls.proxyFlags);
    writer.Key("instances");
    writer.Uint64(cls.instances);
    writer.Key("live");
    writer.Bool(cls.live);
    writer.EndObject();
  }
  writer.EndArray();
  writeCounts(writer, "modelSpace", info.modelSpace);
  writeCounts(writer, "paperSpace", info.paperSpace);
  writeCounts(writer, "blocks", info.blocks);
  writer.Key("blockDefinitions");
  writer.Uint64(info.blockDefinitions);
  writer.Key("notes");
  writer.StartArray();
  for (const std::string& note : info.notes)
    writeString(writer, note);
  writer.EndArray();
  writer.EndObject();
  out << buffer.GetString() << '\n';
}

Command addInfoCommand(CLI::App& app) {
  auto options = std::make_shared<InfoOptions>();
  CLI::App* sub = app.add_subcommand(
      "info", "Describe a DXF drawing: its custom classes, entity counts and reader notes");
  sub->add_option("input", options->input, "The DXF drawing")->required();
  sub->add_option("--module", options->modulePath,
                  "Module file to load (default: CustEnts.tx beside this program)");
  sub->add_flag("--json", options->json, "Write a JSON object instead of tables");
  return Command{sub, [options] { return runInfo(*options); }};
}
