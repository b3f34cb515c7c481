// Reading a drawing from an ASCII DXF file. The file is mapped into memory (or read in one go)
// and its lines are taken where they lie; the file is walked one group (code line and value line)
// at a time, and each group is checked when it is read, so a fault is reported with the line it is
// on. Objects are collected group by group and handed to the objects' own dxfInFields
// through an item filer. Any fault throws a ReadFailure that ends the load with nothing kept.

#include "DbDxfFile.h"
#include "DbDxfProxy.h"
#include "DbHexDigits.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDictionary.h"
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
#include <cstdint>
#include <memory>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

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

std::string quoted(std::string_view text) {
  return "'" + (text.size() > 40 ? std::string(text.substr(0, 40)) + "..." : std::string(text)) +
         "'";
}

// Value parsing. Blanks around a value are allowed, as DXF writers pad numbers.

std::string_view trimmed(std::string_view text) {
  // The usual value has no blanks at either end.
  if (text.empty() ||
      (text.front() != ' ' && text.front() != '\t' && text.back() != ' ' && text.back() != '\t'))
    return text;
  std::size_t begin = 0;
  std::size_t end = text.size();
  while (begin < end && (text[begin] == ' ' || text[begin] == '\t'))
    ++begin;
  while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t'))
    --end;
  return text.substr(begin, end - begin);
}

bool parseInteger(std::string_view text, long long& value) {
  const std::string_view t = trimmed(text);
  const char* begin = t.data();
  const char* end = t.data() + t.size();
  if (begin != end && *begin == '+')
    ++begin;
  if (begin == end)
    return false;
  // The usual value (a group code, a flag, a count) is a few plain digits: summed here, as
  // from_chars would, without its general machinery. 18 digits cannot overflow.
  const bool negative = *begin == '-';
  const char* digits = negative ? begin + 1 : begin;
  if (digits != end && end - digits <= 18) {
    long long sum = 0;
    const char* p = digits;
    while (p != end && *p >= '0' && *p <= '9')
      sum = sum * 10 + (*p++ - '0');
    if (p == end) {
      value = negative ? -sum : sum;
      return true;
    }
  }
  const std::from_chars_result r = std::from_chars(begin, end, value);
  return r.ec == std::errc() && r.ptr == end;
}

bool parseDouble(std::string_view text, double& value) {
  const std::string_view t = trimmed(text);
  const char* begin = t.data();
  const char* end = t.data() + t.size();
  if (begin != end && *begin == '+')
    ++begin;
  if (begin == end)
    return false;
  const std::from_chars_result r = std::from_chars(begin, end, value, std::chars_format::general);
  return r.ec == std::errc() && r.ptr == end && std::isfinite(value);
}

bool isHex(std::string_view text) {
  // No branch per character: a single non-digit makes the OR of the values negative.
  int all = 0;
  for (char c : text)
    all |= odDbHexDigit(static_cast<unsigned char>(c));
  return all >= 0;
}

/// The byte of every pair of hex digits, by the two characters as they lie in memory, and -1
/// for every pair that is not two hex digits: binary data is checked and decoded a pair at a
/// time.
struct HexPairTable {
  std::int16_t value[65536];
  HexPairTable() {
    for (int first = 0; first < 256; ++first)
      for (int second = 0; second < 256; ++second) {
        const char pair[2] = {static_cast<char>(first), static_cast<char>(second)};
        std::uint16_t key = 0;
        std::memcpy(&key, pair, 2);
        const int high = odDbHexDigit(static_cast<unsigned char>(pair[0]));
        const int low = odDbHexDigit(static_cast<unsigned char>(pair[1]));
        value[key] = static_cast<std::int16_t>(high < 0 || low < 0 ? -1 : (high << 4) | low);
      }
  }
  int operator()(const char* pair) const {
    std::uint16_t key = 0;
    std::memcpy(&key, pair, 2);
    return value[key];
  }
};
const HexPairTable kHexPairs;

/// True for an even number of hex digits.
bool isBinary(std::string_view text) {
  if (text.size() % 2 != 0)
    return false;
  int all = 0;
  for (std::size_t i = 0; i < text.size(); i += 2)
    all |= kHexPairs(text.data() + i);
  return all >= 0;
}

/// Two hex digits a byte, from text isBinary() took.
void decodeHex(std::string_view text, OdUInt8* out) {
  for (std::size_t i = 0; i + 1 < text.size(); i += 2)
    *out++ = static_cast<OdUInt8>(kHexPairs(text.data() + i));
}

/// A signed number the group check and the item filer read alike: all but a '+' right before
/// a '-', which the check takes and the filer refuses.
bool filerReadsAlike(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
    ++i;
  return !(i + 1 < text.size() && text[i] == '+' && text[i + 1] == '-');
}

/// One group: its code, the value line (a view into the file's text), the line number of
/// the code, and for numbers the value the check parsed (parsed is false for other groups, and
/// for the rare text the item filer would read differently, which it then parses itself).
struct Group {
  int code = 0;
  std::string_view value;
  std::size_t line = 0;
  bool parsed = false;
  double real = 0.0;
  long long integer = 0;
};

/// Reads the whole file, then hands out its groups and checks each value against its code's
/// type. Values are views into the file's text, which lives as long as the reader.
class GroupReader {
public:
  explicit GroupReader(std::FILE* file) {
    // A regular file is mapped as it is; anything else (a pipe) is read to its end.
    struct stat info;
    if (::fstat(::fileno(file), &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0) {
      const std::size_t size = static_cast<std::size_t>(info.st_size);
      void* mapped = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, ::fileno(file), 0);
      if (mapped != MAP_FAILED) {
        ::madvise(mapped, size, MADV_SEQUENTIAL);
        m_mapped = mapped;
        m_mappedSize = size;
        m_data = static_cast<const char*>(mapped);
        m_size = size;
        return;
      }
    }
    std::size_t capacity = 1 << 20;
    m_text.reset(new char[capacity]);
    for (;;) {
      if (m_size == capacity) {
        std::unique_ptr<char[]> larger(new char[2 * capacity]);
        std::memcpy(larger.get(), m_text.get(), m_size);
        m_text = std::move(larger);
        capacity *= 2;
      }
      const std::size_t n = std::fread(m_text.get() + m_size, 1, capacity - m_size, file);
      m_size += n;
      if (n == 0)
        break;
    }
    if (std::ferror(file))
      fail(1, "the file cannot be read");
    m_data = m_text.get();
  }

  ~GroupReader() {
    if (m_mapped)
      ::munmap(m_mapped, m_mappedSize);
  }

  GroupReader(const GroupReader&) = delete;
  GroupReader& operator=(const GroupReader&) = delete;

  /// The size of the file's text, in bytes.
  std::size_t size() const { return m_size; }

  /// The next group, or false when the file has no more lines.
  bool next(Group& group) {
    if (m_pushedBack) {
      m_pushedBack = false;
      group = m_last;
      return true;
    }
    std::string_view codeLine;
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
  bool readLine(std::string_view& line) {
    if (m_pos >= m_size)
      return false;
    const char* start = m_data + m_pos;
    const std::size_t left = m_size - m_pos;
    const void* nl = std::memchr(start, '\n', left);
    const std::size_t n =
        nl ? static_cast<std::size_t>(static_cast<const char*>(nl) - start) : left;
    line = std::string_view(start, n);
    m_pos += nl ? n + 1 : n;
    if (m_mapped && m_pos - m_released >= kReleaseStep)
      release();
    ++m_lineNumber;
    if (!line.empty() && line.back() == '\r')
      line.remove_suffix(1);
    if (m_lineNumber == 1 && line.substr(0, 3) == "\xEF\xBB\xBF")
      line.remove_prefix(3);
    return true;
  }

  /// Gives back the pages of the mapped text that have been read, so a large file does not
  /// stay resident as a whole. The mapping is of the unchanged file, so a view into a page
  /// given back (a header value kept for later, say) reads the same text again when used.
  void release() {
    const std::size_t page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t end = m_pos / page * page;
    if (end > m_released) {
      ::madvise(static_cast<char*>(m_mapped) + m_released, end - m_released, MADV_DONTNEED);
      m_released = end;
    }
  }

  static constexpr std::size_t kReleaseStep = std::size_t(8) << 20;

  static void check(Group& g) {
    const std::size_t valueLine = g.line + 1;
    g.parsed = false;
    switch (OdDbDxfItemFiler::valueType(g.code)) {
    case OdDbDxfItemFiler::kInvalidCode:
      fail(g.line, "group code " + std::to_string(g.code) + " does not exist");
    case OdDbDxfItemFiler::kString:
      return;
    case OdDbDxfItemFiler::kDouble: {
      if (!parseDouble(g.value, g.real))
        fail(valueLine,
             "group " + std::to_string(g.code) + " needs a number, found " + quoted(g.value));
      g.parsed = filerReadsAlike(g.value);
      return;
    }
    case OdDbDxfItemFiler::kInt16:
    case OdDbDxfItemFiler::kInt32:
    case OdDbDxfItemFiler::kInt64:
    case OdDbDxfItemFiler::kBool: {
      if (!parseInteger(g.value, g.integer))
        fail(valueLine,
             "group " + std::to_string(g.code) + " needs an integer, found " + quoted(g.value));
      g.parsed = filerReadsAlike(g.value);
      return;
    }
    case OdDbDxfItemFiler::kHandle: {
      const std::string_view t = trimmed(g.value);
      if (t.empty() || t.size() > 16 || !isHex(t))
        fail(valueLine,
             "group " + std::to_string(g.code) + " needs a hex handle, found " + quoted(g.value));
      return;
    }
    case OdDbDxfItemFiler::kBinary: {
      const std::string_view t = trimmed(g.value);
      if (!isBinary(t))
        fail(valueLine, "group " + std::to_string(g.code) +
                            " needs binary data as an even number of hex digits, found " +
                            quoted(g.value));
      return;
    }
    }
  }

  void* m_mapped = nullptr; ///< the file's pages when it is mapped
  std::size_t m_mappedSize = 0;
  std::size_t m_released = 0;     ///< mapped bytes before this were given back
  std::unique_ptr<char[]> m_text; ///< the text read when the file cannot be mapped
  const char* m_data = nullptr;   ///< the text, mapped or read
  std::size_t m_size = 0;
  std::size_t m_pos = 0;
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
  if (g.parsed)
    return g.integer;
  long long value = 0;
  parseInteger(g.value, value); // checked when read
  return value;
}

double doubleOf(const Group& g) {
  if (g.parsed)
    return g.real;
  double value = 0.0;
  parseDouble(g.value, value); // checked when read
  return value;
}

/// The handle of a group (the null handle for a text that is no handle of up to 16 digits).
OdDbHandle handleOf(const Group& g) {
  const std::string_view t = trimmed(g.value);
  if (t.empty() || t.size() > 16 || !isHex(t))
    return OdDbHandle();
  OdUInt64 value = 0;
  for (char c : t)
    value = (value << 4) | static_cast<OdUInt64>(c <= '9'   ? c - '0'
                                                 : c <= 'F' ? c - 'A' + 10
                                                            : c - 'a' + 10);
  return OdDbHandle(value);
}

class DxfFileReader {
public:
  DxfFileReader(std::FILE* file, std::vector<OdString>* notes)
      : m_in(file), m_notes(notes), m_db(OdDbDatabase::createObject()) {
    // Room for the handles of a file of small entities (a few hundred bytes each), so the
    // tables do not grow step by step while a large drawing is read.
    const std::size_t objects = m_in.size() / 512;
    m_seen.reserve(objects);
    m_ids.reserve(objects);
  }

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
    else if (name.value == "OBJECTS")
      readObjectsSection();
    else if (name.value == "THUMBNAILIMAGE" || name.value == "ACDSDATA")
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
        m_header.push_back(FileObject{std::string(g.value), g.line, {}});
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
      fail(g.line + 1,
           "drawings of version " + std::string(g.value) + " are not read (AC1015 or later)");
    m_version = static_cast<int>(number);
  }

  // Strings of AC1021 and later are UTF-8; older files are read as their one-byte code page,
  // taken as Latin-1.
  OdString text(std::string_view value) const {
    // Plain ASCII (numbers, handles, hex, most names) reads the same either way.
    if (isAscii(value))
      return OdString(std::u16string(value.begin(), value.end()));
    if (m_version < 1021) {
      std::u16string units(value.size(), u'\0');
      for (std::size_t i = 0; i < value.size(); ++i)
        units[i] = static_cast<char16_t>(static_cast<unsigned char>(value[i]));
      return OdString(std::move(units));
    }
    return OdString::fromUtf8(std::string(value));
  }

  static bool isAscii(std::string_view value) {
    const char* p = value.data();
    std::size_t n = value.size();
    // Eight characters at a time: none has its top bit set.
    for (; n >= 8; p += 8, n -= 8) {
      std::uint64_t word = 0;
      std::memcpy(&word, p, 8);
      if ((word & 0x8080808080808080ull) != 0)
        return false;
    }
    for (; n > 0; ++p, --n)
      if (static_cast<unsigned char>(*p) >= 0x80)
        return false;
    return true;
  }

  /// A group as the item filer holds it, with the numbers the check parsed and binary data
  /// decoded straight from the file's text. Values of every type but strings were checked as
  /// numbers, handles or hex when read, so they are plain ASCII.
  OdDbDxfItemFiler::Item item(const Group& g) const {
    typedef OdDbDxfItemFiler::Item Item;
    Item result;
    result.code = g.code;
    switch (OdDbDxfItemFiler::valueType(g.code)) {
    case OdDbDxfItemFiler::kString:
      result.value = text(g.value);
      return result;
    case OdDbDxfItemFiler::kBinary: {
      const std::string_view t = trimmed(g.value);
      result.form = Item::kBytes;
      result.bytes.resize(static_cast<OdUInt8Array::size_type>(t.size() / 2));
      decodeHex(t, result.bytes.asArrayPtr());
      return result;
    }
    case OdDbDxfItemFiler::kDouble:
      if (g.parsed) {
        result.form = Item::kReal;
        result.real = g.real;
      }
      break;
    case OdDbDxfItemFiler::kInt16:
    case OdDbDxfItemFiler::kInt32:
    case OdDbDxfItemFiler::kInt64:
    case OdDbDxfItemFiler::kBool:
      if (g.parsed) {
        result.form = Item::kInteger;
        result.integer = g.integer;
      }
      break;
    default:
      break;
    }
    result.value = OdString(std::u16string(g.value.begin(), g.value.end()));
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
        else if (var.type == "$DIMSCALE" && first.code == 40)
          m_db->setDIMSCALE(doubleOf(first));
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
      fail(g.line + 1, "handle " + std::string(trimmed(g.value)) + " is used by two objects");
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
      readTable(table, std::string(name->value));
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
    noteReferences(o, last, ownerGroup);

    OdDbObjectId ownerId = blockId;
    if (ownerGroup && !handleOf(*ownerGroup).isNull()) {
      auto it = m_ids.find(static_cast<OdUInt64>(handleOf(*ownerGroup)));
      if (it == m_ids.end() || !it->second.objectClass() ||
          !it->second.objectClass()->isDerivedFrom(OdDbBlockTableRecord::desc()))
        fail(ownerGroup->line + 1, "owner handle " + std::string(trimmed(ownerGroup->value)) +
                                       " points to no block record");
      if (!blockId.isNull() && it->second != blockId)
        fail(ownerGroup->line + 1, "owner handle " + std::string(trimmed(ownerGroup->value)) +
                                       " is not the block the entity is in");
      ownerId = it->second;
    }
    if (ownerId.isNull())
      ownerId = paperSpace ? m_db->getPaperSpaceId() : m_db->getModelSpaceId();

    m_items.clear();
    // Extended data before any subclass marker leaves the class nothing to read.
    m_items.reserve(first < last ? last - first : 0);
    for (std::size_t i = first; i < last; ++i)
      m_items.push_back(item(o.groups[i]));
    m_filer.openForRead(std::move(m_items), m_db);

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
        fail(o.line, o.type + " " + std::string(trimmed(handleGroup->value)) + ": " +
                         e.description().toUtf8());
      }
      if (result != eOk)
        fail(o.line,
             o.type + " " + std::string(trimmed(handleGroup->value)) +
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
        fail(o.line, o.type + " " + std::string(trimmed(handleGroup->value)) + ": " +
                         e.description().toUtf8());
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

  // OBJECTS ------------------------------------------------------------------------------------

  /// A pointer of a group (codes 330 to 369: owners, reactors, soft and hard pointers and
  /// owners), checked once every handle of the file is known.
  struct Reference {
    OdUInt64 handle;
    std::size_t line;
    int code;
  };

  /// skip is a group checked already (an entity's owner, which must be a block record).
  void noteReferences(const FileObject& o, std::size_t last, const Group* skip = nullptr) {
    for (std::size_t i = 0; i < last && i < o.groups.size(); ++i) {
      const Group& g = o.groups[i];
      if (g.code >= 330 && g.code <= 369 && &g != skip) {
        const OdUInt64 value = static_cast<OdUInt64>(handleOf(g));
        if (value != 0)
          m_references.push_back({value, g.line + 1, g.code});
      }
    }
  }

  void checkReferences() const {
    for (const Reference& r : m_references)
      if (m_seen.find(r.handle) == m_seen.end())
        fail(r.line, "group " + std::to_string(r.code) + " points to handle " +
                         OdDbHandle(r.handle).ascii().toUtf8() + ", which no object has");
  }

  /// The groups of an object: its handle and owner (before the first subclass marker, outside
  /// 102 brackets) and the range its class reads (from the first marker to extended data).
  struct ObjectParts {
    const Group* handle = nullptr;
    const Group* owner = nullptr;
    std::size_t first = 0;
    std::size_t last = 0;
  };

  static ObjectParts partsOf(const FileObject& o) {
    ObjectParts parts;
    parts.first = parts.last = o.groups.size();
    int bracket = 0;
    for (std::size_t i = 0; i < o.groups.size(); ++i) {
      const Group& g = o.groups[i];
      if (g.code >= 1000) {
        parts.last = i;
        break;
      }
      if (parts.first != o.groups.size())
        continue;
      if (g.code == 100)
        parts.first = i;
      else if (g.code == 102)
        bracket += !g.value.empty() && g.value[0] == '{' ? 1 : -1;
      else if (g.code == 5 && !parts.handle)
        parts.handle = &g;
      else if (g.code == 330 && bracket == 0 && !parts.owner)
        parts.owner = &g;
    }
    return parts;
  }

  /// A dictionary's entries as the file lists them: name, handle and the line of the name.
  struct DictionaryEntry {
    OdString name;
    OdDbHandle handle;
    std::size_t line;
  };

  std::vector<DictionaryEntry> dictionaryEntries(const FileObject& o, const ObjectParts& parts,
                                                 bool& hard, int& cloning) {
    std::vector<DictionaryEntry> entries;
    std::unordered_set<std::string> names;
    const Group* pendingName = nullptr;
    hard = false;
    cloning = OdDb::kDrcIgnore;
    for (std::size_t i = parts.first; i < parts.last; ++i) {
      const Group& g = o.groups[i];
      if (g.code == 280) {
        hard = integerOf(g) != 0;
      } else if (g.code == 281) {
        const long long value = integerOf(g);
        if (value < OdDb::kDrcNotApplicable || value > OdDb::kDrcUnmangleName)
          fail(g.line + 1, "not a cloning flag: " + quoted(g.value));
        cloning = static_cast<int>(value);
      } else if (g.code == 3) {
        if (pendingName)
          fail(g.line, "dictionary entry " + quoted(pendingName->value) + " has no handle");
        if (g.value.empty())
          fail(g.line + 1, "a dictionary entry without a name");
        if (!names.insert(upper(text(g.value))).second)
          fail(g.line + 1, "a second dictionary entry named " + quoted(g.value));
        pendingName = &g;
      } else if (g.code == 350 || g.code == 360) {
        if (!pendingName)
          fail(g.line, "a dictionary entry without a name (group 3)");
        const OdDbHandle handle = handleOf(g);
        if (handle.isNull())
          fail(g.line + 1,
               "dictionary entry " + quoted(pendingName->value) + " points to the null handle");
        entries.push_back({text(pendingName->value), handle, g.line + 1});
        pendingName = nullptr;
      }
    }
    if (pendingName)
      fail(pendingName->line, "dictionary entry " + quoted(pendingName->value) + " has no handle");
    return entries;
  }

  /// Reads the whole section first, since dictionaries name their entries before the entries
  /// come. The file's named-objects dictionary (the first dictionary without an owner) and its
  /// ACAD_GROUP dictionary stand for the new database's own; every other object is made and
  /// added under its handle, and then each dictionary's entries are set in file order.
  void readObjectsSection() {
    std::vector<FileObject> objects;
    for (FileObject o; nextObject(o);)
      objects.push_back(std::move(o));

    std::vector<ObjectParts> parts(objects.size());
    std::size_t root = objects.size();
    for (std::size_t i = 0; i < objects.size(); ++i) {
      const FileObject& o = objects[i];
      parts[i] = partsOf(o);
      if (!parts[i].handle)
        fail(o.line, o.type + " without a handle (group 5)");
      claim(*parts[i].handle);
      noteReferences(o, parts[i].last);
      if (root == objects.size() && o.type == "DICTIONARY" &&
          (!parts[i].owner || handleOf(*parts[i].owner).isNull()))
        root = i;
    }

    std::vector<std::vector<DictionaryEntry>> entries(objects.size());
    std::vector<OdDbObjectId> ids(objects.size());
    std::size_t groups = objects.size();
    if (root < objects.size()) {
      ids[root] = m_db->getNamedObjectsDictionaryId();
      bool hard = false;
      int cloning = 0;
      entries[root] = dictionaryEntries(objects[root], parts[root], hard, cloning);
      for (const DictionaryEntry& entry : entries[root])
        if (upper(entry.name) == "ACAD_GROUP")
          for (std::size_t i = 0; i < objects.size(); ++i)
            if (i != root && objects[i].type == "DICTIONARY" &&
                handleOf(*parts[i].handle) == entry.handle)
              groups = i;
      if (groups < objects.size())
        ids[groups] = m_db->getGroupDictionaryId();
    }

    for (std::size_t i = 0; i < objects.size(); ++i) {
      const FileObject& o = objects[i];
      const OdDbHandle handle = handleOf(*parts[i].handle);
      if (o.type == "DICTIONARY") {
        bool hard = false;
        int cloning = 0;
        entries[i] = dictionaryEntries(o, parts[i], hard, cloning);
        if (ids[i].isNull()) {
          OdDbDictionaryPtr dictionary = OdDbDictionary::createObject();
          ids[i] = addWithHandle(dictionary, OdDbObjectId(), handle, o.line);
        }
        OdDbDictionaryPtr dictionary = ids[i].safeOpenObject(OdDb::kForWrite);
        dictionary->setTreatElementsAsHard(hard);
        dictionary->setMergeStyle(static_cast<OdDb::DuplicateRecordCloning>(cloning));
      } else {
        OdDbObjectPtr object = readObject(o, parts[i]);
        if (object.isNull()) {
          note(o.line, "skipped an object of unknown type " + o.type);
          m_keptOut.push_back(handle);
          continue;
        }
        ids[i] = addWithHandle(object, OdDbObjectId(), handle, o.line);
      }
      m_ids[static_cast<OdUInt64>(handle)] = ids[i];
    }

    // Owners: a dictionary's entries are owned by it; anything else by what its 330 names.
    for (std::size_t i = 0; i < objects.size(); ++i) {
      if (ids[i].isNull() || i == root || !parts[i].owner)
        continue;
      const auto owner = m_ids.find(static_cast<OdUInt64>(handleOf(*parts[i].owner)));
      if (owner != m_ids.end()) {
        OdDbObjectPtr object = ids[i].safeOpenObject(OdDb::kForWrite);
        object->setOwnerId(owner->second);
      }
    }
    for (std::size_t i = 0; i < objects.size(); ++i) {
      if (objects[i].type != "DICTIONARY")
        continue;
      OdDbDictionaryPtr dictionary = ids[i].safeOpenObject(OdDb::kForWrite);
      for (const DictionaryEntry& entry : entries[i]) {
        const OdUInt64 key = static_cast<OdUInt64>(entry.handle);
        if (m_seen.find(key) == m_seen.end())
          fail(entry.line, "dictionary entry " + quoted(entry.name.toUtf8()) +
                               " points to handle " + entry.handle.ascii().toUtf8() +
                               ", which no object has");
        const auto target = m_ids.find(key);
        if (target == m_ids.end()) {
          note(entry.line, "left out dictionary entry " + quoted(entry.name.toUtf8()) +
                               ", whose object was skipped");
          continue;
        }
        try {
          dictionary->setAt(entry.name, target->second.safeOpenObject(OdDb::kForWrite));
        } catch (const OdError& e) {
          fail(entry.line,
               "dictionary entry " + quoted(entry.name.toUtf8()) + ": " + e.description().toUtf8());
        }
      }
    }
  }

  /// An object of the OBJECTS section through the class registered for its type, or the hooks;
  /// null when neither knows it.
  OdDbObjectPtr readObject(const FileObject& o, const ObjectParts& parts) {
    m_items.clear();
    // Extended data before any subclass marker leaves the class nothing to read.
    m_items.reserve(parts.first < parts.last ? parts.last - parts.first : 0);
    for (std::size_t i = parts.first; i < parts.last; ++i)
      m_items.push_back(item(o.groups[i]));
    m_filer.openForRead(std::move(m_items), m_db);
    const std::string handle(trimmed(parts.handle->value));
    const OdString dxfName = text(o.type);
    // Proxies carry another class's data: the hooks read them, never the proxy class itself.
    OdRxClass* cls = odrxClassByDxfName(dxfName);
    if (cls && (cls->isDerivedFrom(OdDbEntity::desc()) || odDbDxfIsProxyClass(cls) ||
                !cls->isDerivedFrom(OdDbObject::desc())))
      cls = nullptr;
    if (!cls) {
      try {
        return odDbDxfFileHooksInUse()->readUnknownObject(dxfName, m_classes, &m_filer);
      } catch (const OdDbDxfProxyReadError& e) {
        const std::size_t at = parts.first + e.item();
        fail(at < parts.last ? o.groups[at].line + 1 : o.line, e.description().toUtf8());
      } catch (const OdError& e) {
        fail(o.line, o.type + " " + handle + ": " + e.description().toUtf8());
      }
    }
    OdDbObjectPtr object = OdDbObject::cast(cls->create());
    if (object.isNull())
      fail(o.line, "cannot make a " + o.type);
    OdResult result = eOk;
    try {
      result = object->dxfInFields(&m_filer);
    } catch (const OdError& e) {
      fail(o.line, o.type + " " + handle + ": " + e.description().toUtf8());
    }
    if (result != eOk)
      fail(o.line, o.type + " " + handle + " cannot be read: " + odResultText(result));
    return object;
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
    checkReferences();
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
  std::vector<Reference> m_references;
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
