// Reading a drawing from an ASCII DXF file. The file is read one group (code line and value
// line) at a time; each group is checked when it is read, so a fault is reported with the line
// it is on. Objects are collected group by group and handed to the objects' own dxfInFields
// through an item filer. Any fault throws a ReadFailure that ends the load with nothing kept.

#include "DbDxfFile.h"
#include "DbDxfProxy.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbDxfItemFiler.h"
#include "DbEntity.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
#include "DbTextStyleTable.h"
#include "OdError.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <unordered_map>
#include <unordered_set>

OdDbDxfFileHooks* odDbDxfFileHooksInUse(); // DbDxfFile.cpp

namespace {

const double kPi = 3.14159265358979323846;

struct ReadFailure {
  std::size_t line;
  std::string message;
};

[[noreturn]] void fail(std::size_t line, const std::string& message) {
  throw ReadFailure{line, message};
}

std::string quoted(const std::string& text) {
  return "'" + (text.size() > 40 ? text.substr(0, 40) + "..." : text) + "'";
}

// Value parsing. Blanks around a value are allowed, as DXF writers pad numbers.

std::string trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string::npos)
    return std::string();
  const std::size_t end = text.find_last_not_of(" \t");
  return text.substr(begin, end - begin + 1);
}

bool parseInteger(const std::string& text, long long& value) {
  const std::string t = trimmed(text);
  const char* begin = t.data();
  const char* end = t.data() + t.size();
  if (begin != end && *begin == '+')
    ++begin;
  if (begin == end)
    return false;
  const std::from_chars_result r = std::from_chars(begin, end, value);
  return r.ec == std::errc() && r.ptr == end;
}

bool parseDouble(const std::string& text, double& value) {
  const std::string t = trimmed(text);
  const char* begin = t.data();
  const char* end = t.data() + t.size();
  if (begin != end && *begin == '+')
    ++begin;
  if (begin == end)
    return false;
  const std::from_chars_result r = std::from_chars(begin, end, value, std::chars_format::general);
  return r.ec == std::errc() && r.ptr == end && std::isfinite(value);
}

bool isHex(const std::string& text) {
  for (char c : text)
    if (!std::isxdigit(static_cast<unsigned char>(c)))
      return false;
  return true;
}

/// One group: its code, the raw value line and the line number of the code.
struct Group {
  int code = 0;
  std::string value;
  std::size_t line = 0;
};

/// Reads groups from a file in large blocks and checks each value against its code's type.
class GroupReader {
public:
  explicit GroupReader(std::FILE* file) : m_file(file), m_buffer(1 << 16) {}

  /// The next group, or false when the file has no more lines.
  bool next(Group& group) {
    if (m_pushedBack) {
      m_pushedBack = false;
      group = m_last;
      return true;
    }
    std::string codeLine;
    if (!readLine(codeLine))
      return false;
    m_last.line = m_lineNumber;
    long long parsed = 0;
    if (!parseInteger(codeLine, parsed) || parsed < -32768 || parsed > 32767)
      fail(m_lineNumber, "expected a group code, found " + quoted(codeLine));
    m_last.code = static_cast<int>(parsed);
    if (!readLine(m_last.value))
      fail(m_lineNumber + 1,
           "the file ends after group code " + std::to_string(parsed) + " without its value");
    check(m_last);
    group = m_last;
    return true;
  }

  /// Makes the group next() returned last the next one again (one level).
  void pushBack() { m_pushedBack = true; }
  /// The number of the line after the last one read.
  std::size_t nextLine() const { return m_lineNumber + 1; }

private:
  bool readLine(std::string& line) {
    line.clear();
    bool any = false;
    for (;;) {
      if (m_pos == m_end) {
        m_pos = 0;
        m_end = std::fread(m_buffer.data(), 1, m_buffer.size(), m_file);
        if (m_end == 0) {
          if (std::ferror(m_file))
            fail(m_lineNumber + 1, "the file cannot be read");
          if (!any)
            return false;
          break;
        }
      }
      any = true;
      const char* start = m_buffer.data() + m_pos;
      const void* nl = std::memchr(start, '\n', m_end - m_pos);
      if (nl) {
        const std::size_t n = static_cast<const char*>(nl) - start;
        line.append(start, n);
        m_pos += n + 1;
        break;
      }
      line.append(start, m_end - m_pos);
      m_pos = m_end;
    }
    ++m_lineNumber;
    if (!line.empty() && line.back() == '\r')
      line.pop_back();
    if (m_lineNumber == 1 && line.compare(0, 3, "\xEF\xBB\xBF") == 0)
      line.erase(0, 3);
    return true;
  }

  static void check(const Group& g) {
    const std::size_t valueLine = g.line + 1;
    switch (OdDbDxfItemFiler::valueType(g.code)) {
    case OdDbDxfItemFiler::kInvalidCode:
      fail(g.line, "group code " + std::to_string(g.code) + " does not exist");
    case OdDbDxfItemFiler::kString:
      return;
    case OdDbDxfItemFiler::kDouble: {
      double d = 0.0;
      if (!parseDouble(g.value, d))
        fail(valueLine,
             "group " + std::to_string(g.code) + " needs a number, found " + quoted(g.value));
      return;
    }
    case OdDbDxfItemFiler::kInt16:
    case OdDbDxfItemFiler::kInt32:
    case OdDbDxfItemFiler::kInt64:
    case OdDbDxfItemFiler::kBool: {
      long long i = 0;
      if (!parseInteger(g.value, i))
        fail(valueLine,
             "group " + std::to_string(g.code) + " needs an integer, found " + quoted(g.value));
      return;
    }
    case OdDbDxfItemFiler::kHandle: {
      const std::string t = trimmed(g.value);
      if (t.empty() || t.size() > 16 || !isHex(t))
        fail(valueLine,
             "group " + std::to_string(g.code) + " needs a hex handle, found " + quoted(g.value));
      return;
    }
    case OdDbDxfItemFiler::kBinary: {
      const std::string t = trimmed(g.value);
      if (!isHex(t) || t.size() % 2 != 0)
        fail(valueLine, "group " + std::to_string(g.code) +
                            " needs binary data as an even number of hex digits, found " +
                            quoted(g.value));
      return;
    }
    }
  }

  std::FILE* m_file;
  std::vector<char> m_buffer;
  std::size_t m_pos = 0;
  std::size_t m_end = 0;
  std::size_t m_lineNumber = 0;
  Group m_last;
  bool m_pushedBack = false;
};

/// One object of the file: `0 type` and the groups up to the next group 0.
struct FileObject {
  std::string type;
  std::size_t line = 0;
  std::vector<Group> groups;

  const Group* find(int code) const {
    for (const Group& g : groups)
      if (g.code == code)
        return &g;
    return nullptr;
  }
};

long long integerOf(const Group& g) {
  long long value = 0;
  parseInteger(g.value, value); // checked when read
  return value;
}

double doubleOf(const Group& g) {
  double value = 0.0;
  parseDouble(g.value, value); // checked when read
  return value;
}

OdDbHandle handleOf(const Group& g) {
  return OdDbHandle(OdString::fromUtf8(trimmed(g.value)));
}

class DxfFileReader {
public:
  DxfFileReader(std::FILE* file, std::vector<OdString>* notes)
      : m_in(file), m_notes(notes), m_db(OdDbDatabase::createObject()) {}

  OdDbDatabasePtr read() {
    for (;;) {
      Group g;
      if (!m_in.next(g))
        fail(m_in.nextLine(), "the file ends without 0 EOF");
      if (g.code == 999)
        continue;
      if (g.code != 0)
        fail(g.line, "expected group 0 (SECTION or EOF), found group " + std::to_string(g.code));
      if (g.value == "EOF")
        break;
      if (g.value != "SECTION")
        fail(g.line, "expected 0 SECTION, found " + quoted(g.value));
      Group name;
      if (!m_in.next(name))
        fail(m_in.nextLine(), "the file ends inside a section");
      if (name.code != 2)
        fail(name.line,
             "expected group 2 (section name), found group " + std::to_string(name.code));
      readSection(name);
    }
    finish();
    return m_db;
  }

private:
  // Sections -----------------------------------------------------------------------------------

  void readSection(const Group& name) {
    if (name.value == "HEADER")
      readHeader();
    else if (name.value == "CLASSES")
      readObjects([this](FileObject& o) { readClass(o); });
    else if (name.value == "TABLES")
      readTables();
    else if (name.value == "BLOCKS")
      readBlocks();
    else if (name.value == "ENTITIES")
      readObjects([this](FileObject& o) { readEntity(o, OdDbObjectId()); });
    else if (name.value == "OBJECTS" || name.value == "THUMBNAILIMAGE" || name.value == "ACDSDATA")
      readObjects([this](FileObject& o) { keepOut(o); });
    else
      fail(name.line + 1, "unknown section " + quoted(name.value));
  }

  /// The object that starts with group g (a group 0) and its groups up to the next group 0.
  void collect(const Group& start, FileObject& object) {
    object.type = start.value;
    object.line = start.line;
    object.groups.clear();
    Group g;
    for (;;) {
      if (!m_in.next(g))
        fail(m_in.nextLine(),
             "the file ends inside " + object.type + " of line " + std::to_string(object.line));
      if (g.code == 0) {
        m_in.pushBack();
        return;
      }
      if (g.code != 999)
        object.groups.push_back(g);
    }
  }

  /// The next group 0 of a section; false at ENDSEC.
  bool nextObject(FileObject& object, const char* endMarker = "ENDSEC") {
    Group g;
    if (!m_in.next(g))
      fail(m_in.nextLine(), std::string("the file ends before 0 ") + endMarker);
    if (g.code != 0)
      fail(g.line, "expected group 0, found group " + std::to_string(g.code));
    if (g.value == endMarker)
      return false;
    if (g.value == "EOF" || g.value == "SECTION")
      fail(g.line, std::string("expected 0 ") + endMarker + ", found " + quoted(g.value));
    collect(g, object);
    return true;
  }

  template <class Reader> void readObjects(Reader reader) {
    FileObject object;
    while (nextObject(object))
      reader(object);
  }

  // HEADER -------------------------------------------------------------------------------------

  void readHeader() {
    Group g;
    for (;;) {
      if (!m_in.next(g))
        fail(m_in.nextLine(), "the file ends before 0 ENDSEC");
      if (g.code == 0) {
        if (g.value != "ENDSEC")
          fail(g.line, "expected 0 ENDSEC, found " + quoted(g.value));
        return;
      }
      if (g.code == 999)
        continue;
      if (g.code == 9) {
        m_header.push_back(FileObject{g.value, g.line, {}});
        continue;
      }
      if (m_header.empty())
        fail(g.line, "a header value (group " + std::to_string(g.code) +
                         ") before the first variable name");
      m_header.back().groups.push_back(g);
      if (m_header.back().type == "$ACADVER" && g.code == 1)
        readVersion(g);
    }
  }

  void readVersion(const Group& g) {
    long long number = 0;
    if (g.value.size() != 6 || g.value.compare(0, 2, "AC") != 0 ||
        !parseInteger(g.value.substr(2), number))
      fail(g.line + 1, "not a drawing version: " + quoted(g.value));
    if (number < 1015)
      fail(g.line + 1, "drawings of version " + g.value + " are not read (AC1015 or later)");
    m_version = static_cast<int>(number);
  }

  // Strings of AC1021 and later are UTF-8; older files are read as their one-byte code page,
  // taken as Latin-1.
  OdString text(const std::string& value) const {
    if (m_version >= 1021)
      return OdString::fromUtf8(value);
    OdString result;
    for (unsigned char c : value)
      result += static_cast<OdChar>(c);
    return result;
  }

  OdDbObjectId recordIn(OdDbObjectId tableId, const Group& nameGroup, const char* what) {
    OdDbSymbolTablePtr table = tableId.safeOpenObject();
    const OdDbObjectId id = table->getAt(text(trimmed(nameGroup.value)));
    if (id.isNull())
      fail(nameGroup.line + 1, std::string("no ") + what + " named " + quoted(nameGroup.value));
    return id;
  }

  void applyHeader() {
    OdGePoint3d ucsOrigin = m_db->getUCSORG();
    OdGeVector3d ucsX = m_db->getUCSXDIR();
    OdGeVector3d ucsY = m_db->getUCSYDIR();
    std::size_t ucsLine = 0;
    for (const FileObject& var : m_header) {
      if (var.groups.empty())
        continue;
      const Group& first = var.groups.front();
      try {
        if (var.type == "$CLAYER" && first.code == 8)
          m_db->setCLAYER(recordIn(m_db->getLayerTableId(), first, "layer"));
        else if (var.type == "$CELTYPE" && first.code == 6)
          m_db->setCELTYPE(recordIn(m_db->getLinetypeTableId(), first, "linetype"));
        else if (var.type == "$TEXTSTYLE" && first.code == 7)
          m_db->setTEXTSTYLE(recordIn(m_db->getTextStyleTableId(), first, "text style"));
        else if (var.type == "$CECOLOR" && first.code == 62) {
          OdCmColor color;
          const long long index = integerOf(first);
          if (index < 0 || index > 256 || color.setColorIndex(static_cast<OdUInt16>(index)) != eOk)
            fail(first.line + 1, "not a colour number: " + quoted(first.value));
          m_db->setCECOLOR(color);
        } else if (var.type == "$CELTSCALE" && first.code == 40)
          m_db->setCELTSCALE(doubleOf(first));
        else if (var.type == "$LTSCALE" && first.code == 40)
          m_db->setLTSCALE(doubleOf(first));
        else if (var.type == "$TEXTSIZE" && first.code == 40)
          m_db->setTEXTSIZE(doubleOf(first));
        else if (var.type == "$CELWEIGHT" && first.code == 370)
          m_db->setCELWEIGHT(static_cast<OdDb::LineWeight>(integerOf(first)));
        else if (var.type == "$UCSORG" || var.type == "$UCSXDIR" || var.type == "$UCSYDIR") {
          double xyz[3] = {0.0, 0.0, 0.0};
          for (const Group& g : var.groups)
            if (g.code == 10 || g.code == 20 || g.code == 30)
              xyz[g.code / 10 - 1] = doubleOf(g);
          if (var.type == "$UCSORG")
            ucsOrigin.set(xyz[0], xyz[1], xyz[2]);
          else if (var.type == "$UCSXDIR")
            ucsX.set(xyz[0], xyz[1], xyz[2]);
          else
            ucsY.set(xyz[0], xyz[1], xyz[2]);
          ucsLine = first.line;
        }
      } catch (const OdError& e) {
        fail(first.line, var.type + ": " + e.description().toUtf8());
      }
    }
    if (ucsLine == 0)
      return;
    try {
      m_db->setUcs(ucsOrigin, ucsX, ucsY);
    } catch (const OdError& e) {
      fail(ucsLine, "the UCS: " + e.description().toUtf8());
    }
  }

  // CLASSES and kept-out objects ---------------------------------------------------------------

  void readClass(const FileObject& o) {
    if (o.type != "CLASS")
      fail(o.line, "expected 0 CLASS, found " + quoted(o.type));
    OdDbDxfClassRecord record;
    for (const Group& g : o.groups) {
      switch (g.code) {
      case 1:
        record.dxfName = text(g.value);
        break;
      case 2:
        record.cppClassName = text(g.value);
        break;
      case 3:
        record.appName = text(g.value);
        break;
      case 90:
        record.proxyFlags = static_cast<int>(integerOf(g));
        break;
      case 91:
        record.instanceCount = static_cast<int>(integerOf(g));
        break;
      case 280:
        record.wasProxy = integerOf(g) != 0;
        break;
      case 281:
        record.isEntity = integerOf(g) != 0;
        break;
      default:
        break;
      }
    }
    m_classes.push_back(record);
  }

  /// The handle of an object the database does not model; it is checked and remembered.
  void keepOut(const FileObject& o, int handleCode = 5) {
    const Group* h = o.find(handleCode);
    if (!h)
      return;
    const OdDbHandle handle = claim(*h);
    m_keptOut.push_back(handle);
  }

  /// Records a handle of the file; a second object with it is a fault.
  OdDbHandle claim(const Group& g) {
    const OdDbHandle handle = handleOf(g);
    if (handle.isNull())
      fail(g.line + 1, "an object with the null handle 0");
    if (!m_seen.insert(static_cast<OdUInt64>(handle)).second)
      fail(g.line + 1, "handle " + trimmed(g.value) + " is used by two objects");
    return handle;
  }

  // TABLES -------------------------------------------------------------------------------------

  void readTables() {
    FileObject table;
    while (nextObject(table)) {
      if (table.type != "TABLE")
        fail(table.line, "expected 0 TABLE, found " + quoted(table.type));
      const Group* name = table.find(2);
      if (!name)
        fail(table.line, "a table without a name (group 2)");
      readTable(table, name->value);
    }
    resolveLayerLinetypes();
  }

  void readTable(const FileObject& table, const std::string& name) {
    OdDbObjectId tableId;
    if (name == "LAYER")
      tableId = m_db->getLayerTableId();
    else if (name == "LTYPE")
      tableId = m_db->getLinetypeTableId();
    else if (name == "STYLE")
      tableId = m_db->getTextStyleTableId();
    else if (name == "BLOCK_RECORD")
      tableId = m_db->getBlockTableId();
    if (const Group* h = table.find(5)) {
      const OdDbHandle handle = claim(*h);
      if (tableId.isNull())
        m_keptOut.push_back(handle);
      else
        m_ids[static_cast<OdUInt64>(handle)] = tableId;
    }

    FileObject record;
    while (nextObject(record, "ENDTAB")) {
      if (tableId.isNull()) {
        keepOut(record, record.type == "DIMSTYLE" ? 105 : 5);
        continue;
      }
      if (record.type != name)
        fail(record.line, "a " + record.type + " record in the " + name + " table");
      try {
        if (name == "LAYER")
          readLayer(record);
        else if (name == "LTYPE")
          readLinetype(record);
        else if (name == "STYLE")
          readStyle(record);
        else
          readBlockRecord(record);
      } catch (const OdError& e) {
        fail(record.line, name + " record: " + e.description().toUtf8());
      }
    }
  }

  /// The record of the file's name in a table: the one the database has (the file's handle
  /// is then only an alias of it) or a new one added under the file's handle.
  template <class Record>
  OdSmartPtr<Record> mergeRecord(const FileObject& o, OdDbObjectId tableId, bool& isNew) {
    const Group* h = o.find(5);
    const Group* nameGroup = o.find(2);
    if (!h)
      fail(o.line, o.type + " record without a handle (group 5)");
    if (!nameGroup)
      fail(o.line, o.type + " record without a name (group 2)");
    const OdDbHandle handle = claim(*h);
    const OdString name = text(nameGroup->value);
    if (!OdDbSymbolTableRecord::isValidName(name))
      fail(nameGroup->line + 1, "not a valid name: " + quoted(nameGroup->value));
    if (!m_recordNames.insert(o.type + "\n" + upper(name)).second)
      fail(nameGroup->line + 1, "a second " + o.type + " record named " + quoted(name.toUtf8()));
    OdDbObjectId id;
    {
      OdDbSymbolTablePtr table = tableId.safeOpenObject();
      id = table->getAt(name);
    }
    OdSmartPtr<Record> record;
    isNew = id.isNull();
    if (isNew) {
      record = Record::createObject();
      record->setName(name);
      id = addWithHandle(record, tableId, handle, o.line);
      appendOwned(tableId, {id});
    } else {
      record = OdSmartPtr<Record>(id.safeOpenObject(OdDb::kForWrite));
    }
    m_ids[static_cast<OdUInt64>(handle)] = id;
    return record;
  }

  static std::string upper(const OdString& name) {
    std::string s = name.toUtf8();
    for (char& c : s)
      if (c >= 'a' && c <= 'z')
        c = static_cast<char>(c - 'a' + 'A');
    return s;
  }

  void readLayer(const FileObject& o) {
    bool isNew = false;
    OdDbLayerTableRecordPtr layer =
        mergeRecord<OdDbLayerTableRecord>(o, m_db->getLayerTableId(), isNew);
    long long flags = 0;
    long long index = 7;
    long long rgb = -1;
    bool plottable = true;
    long long lineWeight = OdDb::kLnWtByLwDefault;
    const Group* linetype = nullptr;
    const Group* indexGroup = nullptr;
    for (const Group& g : o.groups) {
      switch (g.code) {
      case 70:
        flags = integerOf(g);
        break;
      case 62:
        index = integerOf(g);
        indexGroup = &g;
        break;
      case 420:
        rgb = integerOf(g);
        if (rgb < 0 || rgb > 0xFFFFFF)
          fail(g.line + 1, "not a colour: " + quoted(g.value));
        break;
      case 6:
        linetype = &g;
        break;
      case 290:
        plottable = integerOf(g) != 0;
        break;
      case 370:
        lineWeight = integerOf(g);
        if (!odIsValidLineWeight(static_cast<int>(lineWeight)))
          fail(g.line + 1, "not a lineweight: " + quoted(g.value));
        break;
      default:
        break;
      }
    }
    const long long magnitude = index < 0 ? -index : index;
    if (magnitude < 1 || magnitude > 255)
      fail(indexGroup ? indexGroup->line + 1 : o.line,
           "not a layer colour: " + std::to_string(index));
    OdCmColor color;
    color.setColorIndex(static_cast<OdUInt16>(magnitude));
    if (rgb >= 0)
      color.setRGB(static_cast<OdUInt8>(rgb >> 16), static_cast<OdUInt8>(rgb >> 8),
                   static_cast<OdUInt8>(rgb));
    layer->setColor(color);
    layer->setIsOff(index < 0);
    layer->setIsFrozen((flags & 1) != 0);
    layer->setIsLocked((flags & 4) != 0);
    layer->setIsPlottable(plottable);
    layer->setLineWeight(static_cast<OdDb::LineWeight>(lineWeight));
    if (linetype)
      m_layerLinetypes.push_back({layer->objectId(), *linetype});
  }

  /// Layers name their linetype, and the LTYPE table may come after the LAYER table.
  void resolveLayerLinetypes() {
    for (const auto& pending : m_layerLinetypes) {
      const OdDbObjectId linetypeId =
          recordIn(m_db->getLinetypeTableId(), pending.second, "linetype");
      OdDbLayerTableRecordPtr layer = pending.first.safeOpenObject(OdDb::kForWrite);
      layer->setLinetypeObjectId(linetypeId);
    }
    m_layerLinetypes.clear();
  }

  void readLinetype(const FileObject& o) {
    bool isNew = false;
    OdDbLinetypeTableRecordPtr linetype =
        mergeRecord<OdDbLinetypeTableRecord>(o, m_db->getLinetypeTableId(), isNew);
    OdString comments;
    std::vector<double> dashes;
    for (const Group& g : o.groups) {
      if (g.code == 3)
        comments = text(g.value);
      else if (g.code == 49)
        dashes.push_back(doubleOf(g));
    }
    linetype->setComments(comments);
    linetype->setNumDashes(static_cast<int>(dashes.size()));
    for (std::size_t i = 0; i < dashes.size(); ++i)
      linetype->setDashLengthAt(static_cast<int>(i), dashes[i]);
  }

  void readStyle(const FileObject& o) {
    bool isNew = false;
    OdDbTextStyleTableRecordPtr style =
        mergeRecord<OdDbTextStyleTableRecord>(o, m_db->getTextStyleTableId(), isNew);
    long long flags = 0;
    OdString typeface;
    long long fontFlags = 0;
    bool inAcadData = false;
    for (const Group& g : o.groups) {
      if (g.code == 1001) {
        inAcadData = g.value == "ACAD";
        continue;
      }
      if (g.code >= 1000) {
        if (inAcadData && g.code == 1000)
          typeface = text(g.value);
        else if (inAcadData && g.code == 1071)
          fontFlags = integerOf(g);
        continue;
      }
      switch (g.code) {
      case 70:
        flags = integerOf(g);
        break;
      case 40:
        style->setTextSize(doubleOf(g));
        break;
      case 41:
        style->setXScale(doubleOf(g));
        break;
      case 50:
        style->setObliquingAngle(doubleOf(g) * kPi / 180.0);
        break;
      case 42:
        style->setPriorSize(doubleOf(g));
        break;
      case 3:
        style->setFileName(text(g.value));
        break;
      case 4:
        style->setBigFontFileName(text(g.value));
        break;
      default:
        break;
      }
    }
    style->setIsShapeFile((flags & 1) != 0);
    style->setIsVertical((flags & 4) != 0);
    if (!typeface.isEmpty())
      style->setFont(typeface, (fontFlags & 0x02000000) != 0, (fontFlags & 0x01000000) != 0,
                     static_cast<int>((fontFlags >> 8) & 0xFF), static_cast<int>(fontFlags & 0xFF));
  }

  void readBlockRecord(const FileObject& o) {
    bool isNew = false;
    mergeRecord<OdDbBlockTableRecord>(o, m_db->getBlockTableId(), isNew);
  }

  // BLOCKS and ENTITIES ------------------------------------------------------------------------

  void readBlocks() {
    FileObject object;
    while (nextObject(object)) {
      if (object.type != "BLOCK")
        fail(object.line, "expected 0 BLOCK, found " + quoted(object.type));
      keepOut(object);
      const Group* name = object.find(2);
      if (!name)
        fail(object.line, "a block without a name (group 2)");
      const OdDbObjectId blockId = recordIn(m_db->getBlockTableId(), *name, "block record");
      double origin[3] = {0.0, 0.0, 0.0};
      bool seenName = false;
      for (const Group& g : object.groups) {
        seenName = seenName || g.code == 2;
        if (seenName && (g.code == 10 || g.code == 20 || g.code == 30))
          origin[g.code / 10 - 1] = doubleOf(g);
      }
      {
        OdDbBlockTableRecordPtr block = blockId.safeOpenObject(OdDb::kForWrite);
        block->setOrigin(OdGePoint3d(origin[0], origin[1], origin[2]));
      }
      FileObject entity;
      while (nextObject(entity, "ENDBLK"))
        readEntity(entity, blockId);
      // The ENDBLK marker itself: collect it so its handle is checked.
      Group g;
      m_in.pushBack();
      m_in.next(g);
      FileObject end;
      collect(g, end);
      keepOut(end);
    }
  }

  void readEntity(const FileObject& o, OdDbObjectId blockId) {
    // The groups before the first subclass marker are the object's: handle, reactors and
    // extension dictionary in 102 brackets, owner. Extended data (1000 and up) ends the groups
    // the class reads.
    const Group* handleGroup = nullptr;
    const Group* ownerGroup = nullptr;
    bool paperSpace = false;
    std::size_t first = o.groups.size();
    std::size_t last = o.groups.size();
    int bracket = 0;
    for (std::size_t i = 0; i < o.groups.size(); ++i) {
      const Group& g = o.groups[i];
      if (g.code >= 1000) {
        last = i;
        break;
      }
      if (first == o.groups.size()) {
        if (g.code == 100) {
          first = i;
        } else if (g.code == 102) {
          bracket += !g.value.empty() && g.value[0] == '{' ? 1 : -1;
        } else if (g.code == 5 && !handleGroup) {
          handleGroup = &g;
        } else if (g.code == 330 && bracket == 0 && !ownerGroup) {
          ownerGroup = &g;
        }
      } else if (g.code == 67) {
        paperSpace = integerOf(g) == 1;
      }
    }
    if (!handleGroup)
      fail(o.line, o.type + " without a handle (group 5)");
    const OdDbHandle handle = claim(*handleGroup);

    OdDbObjectId ownerId = blockId;
    if (ownerGroup && !handleOf(*ownerGroup).isNull()) {
      auto it = m_ids.find(static_cast<OdUInt64>(handleOf(*ownerGroup)));
      if (it == m_ids.end() || !it->second.objectClass() ||
          !it->second.objectClass()->isDerivedFrom(OdDbBlockTableRecord::desc()))
        fail(ownerGroup->line + 1,
             "owner handle " + trimmed(ownerGroup->value) + " points to no block record");
      if (!blockId.isNull() && it->second != blockId)
        fail(ownerGroup->line + 1,
             "owner handle " + trimmed(ownerGroup->value) + " is not the block the entity is in");
      ownerId = it->second;
    }
    if (ownerId.isNull())
      ownerId = paperSpace ? m_db->getPaperSpaceId() : m_db->getModelSpaceId();

    m_items.clear();
    for (std::size_t i = first; i < last; ++i)
      m_items.push_back(OdDbDxfItemFiler::Item{o.groups[i].code, text(o.groups[i].value)});
    m_filer.openForRead(m_items, m_db);

    const OdString dxfName = text(o.type);
    // Proxies carry another class's data: the hooks read them, never the proxy class itself.
    OdRxClass* cls = o.type == "ACAD_PROXY_ENTITY" ? nullptr : odrxClassByDxfName(dxfName);
    OdDbEntityPtr entity;
    if (cls && cls->isDerivedFrom(OdDbEntity::desc())) {
      entity = OdDbEntity::cast(cls->create());
      if (entity.isNull())
        fail(o.line, "cannot make a " + o.type);
      OdResult result = eOk;
      try {
        result = entity->dxfInFields(&m_filer);
      } catch (const OdError& e) {
        fail(o.line, o.type + " " + trimmed(handleGroup->value) + ": " + e.description().toUtf8());
      }
      if (result != eOk)
        fail(o.line,
             o.type + " " + trimmed(handleGroup->value) +
                 " cannot be read: " + odResultText(result) +
                 (result == eKeyNotFound ? " (a layer or linetype the file does not define)" : ""));
    } else {
      try {
        entity = OdDbEntity::cast(
            odDbDxfFileHooksInUse()->readUnknownEntity(dxfName, m_classes, &m_filer));
      } catch (const OdDbDxfProxyReadError& e) {
        const std::size_t at = first + e.item();
        fail(at < last ? o.groups[at].line + 1 : o.line, e.description().toUtf8());
      } catch (const OdError& e) {
        fail(o.line, o.type + " " + trimmed(handleGroup->value) + ": " + e.description().toUtf8());
      }
      if (entity.isNull()) {
        note(o.line, "skipped an entity of unknown type " + o.type);
        m_keptOut.push_back(handle);
        return;
      }
    }
    const OdDbObjectId id = addWithHandle(entity, ownerId, handle, o.line);
    m_blockEntities[static_cast<OdUInt64>(ownerId.getHandle())].push_back(id);
    m_blockOrder.push_back(ownerId);
  }

  // Adding to the database ---------------------------------------------------------------------

  /// Adds an object under the file's handle, or under a new one when the database already
  /// gave that handle to one of its own (a default record under another name in the file).
  OdDbObjectId addWithHandle(OdDbObject* object, OdDbObjectId ownerId, OdDbHandle handle,
                             std::size_t line) {
    const OdDbObjectId existing = m_db->getOdDbObjectId(handle);
    if (!existing.isNull() && existing.objectClass()) {
      note(line, "handle " + handle.ascii().toUtf8() + " was taken; the object got a new one");
      handle = OdDbHandle();
    }
    const OdDbObjectId id = m_db->addOdDbObject(object, ownerId, handle);
    m_ids[static_cast<OdUInt64>(id.getHandle())] = id;
    return id;
  }

  // A table's and a block's lists of what they own are set through their DWG filing, since
  // their add functions give new handles and the file's must be kept: the list is written in
  // the layout their dwgInFields reads (the base data, then a count and the ids).

  void appendOwned(OdDbObjectId tableId, const std::vector<OdDbObjectId>& ids) {
    OdDbSymbolTablePtr table = tableId.safeOpenObject(OdDb::kForWrite);
    for (const OdDbObjectId& id : ids)
      table->add(OdDbSymbolTableRecord::cast(id.safeOpenObject(OdDb::kForWrite)));
  }

  void appendEntities(OdDbObjectId blockId, const std::vector<OdDbObjectId>& ids) {
    OdDbBlockTableRecordPtr block = blockId.safeOpenObject(OdDb::kForWrite);
    for (const OdDbObjectId& id : ids)
      block->appendOdDbEntity(OdDbEntity::cast(id.safeOpenObject(OdDb::kForWrite)));
  }

  void note(std::size_t line, const std::string& message) {
    if (m_notes)
      m_notes->push_back(OdString::fromUtf8("line " + std::to_string(line) + ": " + message));
  }

  void finish() {
    std::unordered_set<OdUInt64> done;
    for (const OdDbObjectId& blockId : m_blockOrder) {
      const OdUInt64 key = static_cast<OdUInt64>(blockId.getHandle());
      if (done.insert(key).second)
        appendEntities(blockId, m_blockEntities[key]);
    }
    applyHeader();
    // Handles the file gave to objects the database does not keep (the tables it does not
    // model, block markers) are handed out again by the next save. A file of ours gives them
    // the handles right after the drawing's own, so the database's seed is set to the first
    // of them above its objects: the next save then gives them the same handles again.
    OdUInt64 firstAbove = 0;
    const OdUInt64 seed = static_cast<OdUInt64>(m_db->handseed());
    for (const OdDbHandle& h : m_keptOut) {
      const OdUInt64 value = static_cast<OdUInt64>(h);
      if (value >= seed && (firstAbove == 0 || value < firstAbove))
        firstAbove = value;
    }
    if (firstAbove > seed)
      m_db->getOdDbObjectId(OdDbHandle(firstAbove - 1), true);
  }

  GroupReader m_in;
  std::vector<OdString>* m_notes;
  OdDbDatabasePtr m_db;
  int m_version = 1032;
  std::vector<FileObject> m_header;
  std::vector<OdDbDxfClassRecord> m_classes;
  std::unordered_set<OdUInt64> m_seen;
  std::vector<OdDbHandle> m_keptOut;
  std::unordered_map<OdUInt64, OdDbObjectId> m_ids;
  std::unordered_set<std::string> m_recordNames;
  std::vector<std::pair<OdDbObjectId, Group>> m_layerLinetypes;
  std::unordered_map<OdUInt64, std::vector<OdDbObjectId>> m_blockEntities;
  std::vector<OdDbObjectId> m_blockOrder;
  OdDbDxfItemFiler::ItemArray m_items;
  OdStaticRxObject<OdDbDxfItemFiler> m_filer;
};

} // namespace

OdResult odDbReadDxf(const OdString& path, OdDbDatabasePtr& out, OdString* error,
                     std::vector<OdString>* notes) {
  out.release();
  std::FILE* file = std::fopen(path.toUtf8().c_str(), "rb");
  if (!file) {
    if (error)
      *error = OD_T("Cannot open ") + path + OD_T(": ") + OdString(std::strerror(errno));
    return errno == ENOENT ? eFileNotFound : eFileAccessErr;
  }
  OdResult result = eOk;
  OdString message;
  std::vector<OdString> collected;
  try {
    DxfFileReader reader(file, &collected);
    out = reader.read();
  } catch (const ReadFailure& failure) {
    result = eInvalidDxfCode;
    message = OdString::fromUtf8("line " + std::to_string(failure.line) + ": " + failure.message);
  } catch (const OdError& e) {
    result = e.code();
    message = OD_T("Cannot load the drawing: ") + e.description();
  } catch (const std::bad_alloc&) {
    result = eOutOfMemory;
    message = OD_T("Out of memory while loading the drawing");
  }
  std::fclose(file);
  if (result != eOk) {
    out.release();
    if (error)
      *error = path + OD_T(": ") + message;
    return result;
  }
  if (notes)
    notes->insert(notes->end(), collected.begin(), collected.end());
  return eOk;
}
