#include "PropsCommand.h"

#include "ClassReport.h"
#include "DrawingFile.h"
#include "ModuleSession.h"
#include "OdError.h"
#include "OdVariant.h"
#include "PropertyPE.h"
#include "RxObjectImpl.h"
#include "SampleDrawing.h"
#include "TextTable.h"
#include "ToolPaths.h"

#include <CLI/CLI.hpp>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>

namespace {

struct PropsOptions {
  std::string modulePath;
  /// Empty: the built-in sample drawing.
  std::string input;
  bool json = false;
};

using JsonWriter = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

/// More rows than any grid shows: a count beyond it is a broken extension, not a page.
const int kMaxRowsPerGroup = 1000;

std::string hex32(OdUInt32 value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(value));
  return text;
}

std::string colorMeaning(OdUInt32 packed) {
  OdCmEntityColor color;
  if (color.setColor(packed) != eOk)
    return "not a colour";
  switch (color.colorMethod()) {
  case OdCmEntityColor::kByLayer:
    return "ByLayer";
  case OdCmEntityColor::kByBlock:
    return "ByBlock";
  case OdCmEntityColor::kByACI:
    return "ACI " + std::to_string(color.colorIndex());
  case OdCmEntityColor::kByColor:
    return "RGB(" + std::to_string(color.red()) + "," + std::to_string(color.green()) + "," +
           std::to_string(color.blue()) + ")";
  case OdCmEntityColor::kByPen:
    return "pen " + std::to_string(color.colorIndex());
  case OdCmEntityColor::kForeground:
    return "Foreground";
  case OdCmEntityColor::kLayerOff:
    return "layer off";
  case OdCmEntityColor::kLayerFrozen:
    return "layer frozen";
  case OdCmEntityColor::kNone:
    return "None";
  }
  return "not a colour";
}

template <class Array, class Format> std::string joinArray(const Array& values, Format format) {
  std::string text = "[";
  for (typename Array::size_type i = 0; i < values.size(); ++i) {
    if (i > 0)
      text += ", ";
    text += format(values[i]);
  }
  return text + "]";
}

PropertyValue describeArray(const OdVariant& value, PropertyValue described) {
  described.kind = PropertyValue::Kind::kOther;
  switch (value.type()) {
  case OdVariant::kString:
    described.text =
        joinArray(value.getStringArray(), [](const OdString& s) { return s.toUtf8(); });
    break;
  case OdVariant::kInt32:
    described.text = joinArray(value.getInt32Array(), [](int v) { return std::to_string(v); });
    break;
  case OdVariant::kDouble:
    described.text = joinArray(value.getDoubleArray(), [](double v) { return formatDouble(v); });
    break;
  default:
    described.text = "<" + described.typeName + ">";
    break;
  }
  return described;
}

const char* editorName(int editorKind) {
  switch (editorKind) {
  case 0:
    return "default";
  case 1:
    return "colour";
  case 3:
    return "yes/no";
  default:
    return nullptr;
  }
}

std::string editorText(int editorKind) {
  const char* name = editorName(editorKind);
  return name ? std::string(name) : "kind " + std::to_string(editorKind);
}

/// Reads the groups and rows in the order the host's grid asks for them.
void readPage(PropertyPE& extension, OdDbEntity* entity, EntityPage& page) {
  page.name = extension.getEntityName(entity).toUtf8();
  const int groupCount = extension.getPropertyCount();
  for (int g = 0; g < groupCount; ++g) {
    const entityProperty header = extension.getPropertyByeId(entity, g);
    if (header.count > kMaxRowsPerGroup) {
      page.error =
          "group " + std::to_string(g) + " claims " + std::to_string(header.count) + " rows";
      return;
    }
    PropertyGroup group;
    group.flag = header.flag;
    group.caption = header.name.toUtf8();
    group.count = header.count;
    for (int r = 0; r < header.count; ++r) {
      const propAttribute attribute = extension.getPropAttributeByeId(entity, g, r);
      PropertyRow row;
      row.index = attribute.index;
      row.label = attribute.name.toUtf8();
      row.tip = attribute.tip.toUtf8();
      row.editable = attribute.editable;
      row.editorKind = attribute.editorKind;
      row.value = describePropertyValue(attribute.value, attribute.editorKind);
      group.rows.push_back(std::move(row));
    }
    page.groups.push_back(std::move(group));
  }
}

void writeString(JsonWriter& writer, const std::string& s) {
  writer.String(s.c_str(), static_cast<rapidjson::SizeType>(s.size()));
}

void writeValue(JsonWriter& writer, const PropertyValue& value) {
  switch (value.kind) {
  case PropertyValue::Kind::kEmpty:
    writer.Null();
    break;
  case PropertyValue::Kind::kDouble:
    // JSON has no NaN or infinity.
    if (std::isfinite(value.number))
      writer.Double(value.number);
    else
      writer.Null();
    break;
  case PropertyValue::Kind::kInteger:
  case PropertyValue::Kind::kColor:
    writer.Int64(value.integer);
    break;
  case PropertyValue::Kind::kBool:
    writer.Bool(value.flag);
    break;
  case PropertyValue::Kind::kString:
  case PropertyValue::Kind::kOther:
    writeString(writer, value.text);
    break;
  }
}

std::string indented(const std::string& text, const std::string& indent) {
  std::string out;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    out += indent + line + '\n';
  return out;
}

int runProps(const PropsOptions& options, const DrawingSource& source) {
  const std::string path = options.modulePath.empty() ? defaultModulePath() : options.modulePath;
  ModuleSession session(path);
  std::vector<EntityPage> pages;
  {
    // The drawing's entities run the module's code, so they go before the module does.
    const OdDbDatabasePtr database = source();
    pages = describePropertyPages(database.get());
  }
  session.close();

  if (options.json)
    printPropertyPagesJson(pages, std::cout);
  else
    printPropertyPages(pages, std::cout);
  return 0;
}

} // namespace

std::string formatDouble(double value) {
  if (std::isnan(value))
    return "nan";
  if (std::isinf(value))
    return value > 0 ? "inf" : "-inf";
  char text[400];
  int precision = 1;
  for (; precision < 17; ++precision) {
    std::snprintf(text, sizeof text, "%.*g", precision, value);
    if (std::strtod(text, nullptr) == value)
      break;
  }
  // %g turns 120 into 1.2e+02 at two digits; lengths and areas read better written out, so
  // plain notation is used wherever it stays short.
  const double magnitude = std::fabs(value);
  if (value == 0.0 || magnitude < 1e-5 || magnitude >= 1e15) {
    std::snprintf(text, sizeof text, "%.*g", precision, value);
    return text;
  }
  const int exponent = static_cast<int>(std::floor(std::log10(magnitude)));
  const int decimals = std::max(0, precision - 1 - exponent);
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  if (std::strtod(text, nullptr) != value)
    std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

std::string describeColor(OdUInt32 packed) {
  return hex32(packed) + " " + colorMeaning(packed);
}

PropertyValue describePropertyValue(const OdVariant& value, int editorKind) {
  PropertyValue described;
  described.typeName = OdVariant::typeName(value.varType()).toUtf8();
  if (value.isArray())
    return describeArray(value, described);
  switch (value.type()) {
  case OdVariant::kVoid:
    described.kind = PropertyValue::Kind::kEmpty;
    break;
  case OdVariant::kString:
    described.kind = PropertyValue::Kind::kString;
    described.text = value.getString().toUtf8();
    break;
  case OdVariant::kBool:
    described.kind = PropertyValue::Kind::kBool;
    described.flag = value.getBool();
    described.text = described.flag ? "yes" : "no";
    break;
  case OdVariant::kDouble:
    described.kind = PropertyValue::Kind::kDouble;
    described.number = value.getDouble();
    described.text = formatDouble(described.number);
    break;
  case OdVariant::kInt32:
    // The colour picker's rows carry a packed colour; other 32-bit rows (the lineweight) are
    // signed numbers.
    if (editorKind == 1) {
      described.kind = PropertyValue::Kind::kColor;
      described.integer = value.getUInt32();
      described.text = describeColor(value.getUInt32());
    } else {
      described.kind = PropertyValue::Kind::kInteger;
      described.integer = value.getInt32();
      described.text = std::to_string(described.integer);
    }
    break;
  case OdVariant::kInt8:
    described.kind = PropertyValue::Kind::kInteger;
    described.integer = value.getInt8();
    described.text = std::to_string(described.integer);
    break;
  case OdVariant::kInt16:
    described.kind = PropertyValue::Kind::kInteger;
    described.integer = value.getInt16();
    described.text = std::to_string(described.integer);
    break;
  case OdVariant::kInt64:
    described.kind = PropertyValue::Kind::kInteger;
    described.integer = value.getInt64();
    described.text = std::to_string(described.integer);
    break;
  case OdVariant::kAnsiString:
    described.kind = PropertyValue::Kind::kOther;
    described.text = value.getAnsiString();
    break;
  default:
    described.kind = PropertyValue::Kind::kOther;
    described.text = "<" + described.typeName + ">";
    break;
  }
  return described;
}

EntityPage describePropertyPage(OdDbEntity* entity) {
  EntityPage page;
  page.className = entity->isA()->name().toUtf8();
  page.handle = entity->getDbHandle().ascii().toUtf8();

  // The host's own base answers the common group for any entity; the grid falls back on it
  // for classes that bring no extension.
  static OdStaticRxObject<PropertyPE> commonPage;
  PropertyPEPtr extension = PropertyPE::cast(entity->isA()->getX(PropertyPE::desc()).get());
  PropertyPE* answering = extension.isNull() ? &commonPage : extension.get();
  page.extension = extension.isNull() ? std::string("PropertyPE") : dynamicClassName(*extension);
  try {
    readPage(*answering, entity, page);
  } catch (const OdError& error) {
    page.error = error.description().toUtf8();
  }
  return page;
}

std::vector<EntityPage> describePropertyPages(OdDbDatabase* database) {
  std::vector<EntityPage> pages;
  for (const OdDbEntityPtr& entity : custents::sample::modelSpaceEntities(database))
    pages.push_back(describePropertyPage(entity.get()));
  return pages;
}

void printPropertyPages(const std::vector<EntityPage>& pages, std::ostream& out) {
  bool first = true;
  for (const EntityPage& page : pages) {
    if (!first)
      out << '\n';
    first = false;
    out << page.className << "  handle " << page.handle << "  " << page.name << "  ("
        << page.extension << ")\n";
    for (std::size_t g = 0; g < page.groups.size(); ++g) {
      const PropertyGroup& group = page.groups[g];
      out << "  Group " << g << ": " << group.caption << "  (flag " << group.flag << ", "
          << group.count << (group.count == 1 ? " row" : " rows") << ")\n";
      if (group.rows.empty())
        continue;
      TextTable table({"#", "Label", "Value", "Type", "Editable", "Editor", "Tip"});
      table.setAlign(0, TextTable::Align::Right);
      for (const PropertyRow& row : group.rows)
        table.addRow({std::to_string(row.index), row.label, row.value.text, row.value.typeName,
                      row.editable ? "yes" : "no", editorText(row.editorKind), row.tip});
      std::ostringstream text;
      table.print(text);
      out << indented(text.str(), "    ");
    }
    if (!page.error.empty())
      out << "  Error: " << page.error << '\n';
  }
}

void printPropertyPagesJson(const std::vector<EntityPage>& pages, std::ostream& out) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.SetIndent(' ', 2);
  writer.StartArray();
  for (const EntityPage& page : pages) {
    writer.StartObject();
    writer.Key("class");
    writeString(writer, page.className);
    writer.Key("handle");
    writeString(writer, page.handle);
    writer.Key("name");
    writeString(writer, page.name);
    writer.Key("extension");
    writeString(writer, page.extension);
    writer.Key("groups");
    writer.StartArray();
    for (const PropertyGroup& group : page.groups) {
      writer.StartObject();
      writer.Key("flag");
      writer.Int(group.flag);
      writer.Key("caption");
      writeString(writer, group.caption);
      writer.Key("count");
      writer.Int(group.count);
      writer.Key("rows");
      writer.StartArray();
      for (const PropertyRow& row : group.rows) {
        writer.StartObject();
        writer.Key("index");
        writer.Int(row.index);
        writer.Key("label");
        writeString(writer, row.label);
        writer.Key("tip");
        writeString(writer, row.tip);
        writer.Key("value");
        writeValue(writer, row.value);
        writer.Key("valueText");
        writeString(writer, row.value.text);
        writer.Key("valueType");
        writeString(writer, row.value.typeName);
        writer.Key("editable");
        writer.Bool(row.editable);
        writer.Key("editorKind");
        writer.Int(row.editorKind);
        writer.EndObject();
      }
      writer.EndArray();
      writer.EndObject();
    }
    writer.EndArray();
    if (!page.error.empty()) {
      writer.Key("error");
      writeString(writer, page.error);
    }
    writer.EndObject();
  }
  writer.EndArray();
  out << buffer.GetString() << '\n';
}

Command addPropsCommand(CLI::App& app) {
  auto options = std::make_shared<PropsOptions>();
  CLI::App* sub =
      app.add_subcommand("props", "Print the property page of every entity of a drawing's model "
                                  "space (the sample drawing unless a DXF file is given)");
  sub->add_option("--module", options->modulePath,
                  "Module file to load (default: CustEnts.tx beside this program)");
  sub->add_option("drawing", options->input,
                  "A DXF drawing whose model space to describe (default: the sample drawing)");
  sub->add_flag("--json", options->json, "Write a JSON array instead of tables");
  return Command{sub, [options] {
                   if (options->input.empty())
                     return runProps(*options,
                                     [] { return custents::sample::buildSampleDrawing(); });
                   return runProps(*options, [options] {
                     LoadedDrawing drawing = loadDrawing(options->input);
                     // The pages go to stdout; what the reader left out is worth a line aside.
                     for (const std::string& note : drawing.notes)
                       std::cerr << "custents: note: " << note << '\n';
                     return drawing.database;
                   });
                 }};
}
