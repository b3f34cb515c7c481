// Drawing files at scale: saving and loading drawings of many entities through the platform's
// DXF writer and reader, with the CustEnts module loaded so its survey shapes are written as
// proxies and come back live.
//
// Each mode runs in a process of its own so that peak memory figures do not mix, and prints one
// JSON object on stdout:
//   baseline            - the platform and the module loaded, nothing else: the memory floor;
//   save N FILE         - builds the drawing of N entities, saves it to FILE (timed), then times
//                         formatting and parsing exactly the numbers FILE holds with
//                         std::to_chars / std::from_chars: the bound the writer and the reader
//                         are measured against;
//   load FILE           - loads FILE (timed) and checks every survey shape came back as its own
//                         class, not as a proxy;
//   plain N FILE        - saves the same drawing with the survey shapes exploded into standard
//                         entities (what a DXF reader without the module gets to read).
//
// The drawing of N entities (N a multiple of 8) repeats the cycle GeoRect, line, Geo3dRect,
// polyline, GeoTriangle, line, GeoPolygon, polyline: N/8 of each survey shape, N/4 lines and N/4
// lightweight polylines of five vertices. Polygons have 3 to 8 sides. Coordinates are survey
// grid coordinates (six- and seven-digit eastings and northings with fractions).
//
// Usage: bench_files [--module PATH] [--repeat R] MODE ARGS...
// --repeat R runs the timed save or load R times and keeps the fastest.

#include "ModuleSession.h"
#include "SampleDrawing.h"
#include "ToolPaths.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDxfFile.h"
#include "DbLine.h"
#include "DbPolyline.h"
#include "DbProxyEntity.h"
#include "OdError.h"
#include "RxObjectImpl.h"

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// CPU time of the process so far, in seconds: unlike wall time, it does not count waiting
/// for a core on a busy machine (nor waiting for the disk).
double processCpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// The largest resident set the process has had so far, in KiB.
long peakRssKiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in)
    throw std::runtime_error("cannot open " + path);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

/// A JSON object written field by field (numbers and plain ASCII strings only).
class JsonLine {
public:
  JsonLine& add(const char* key, const std::string& value) {
    sep();
    m_out << '"' << key << "\":\"" << value << '"';
    return *this;
  }
  JsonLine& add(const char* key, const char* value) { return add(key, std::string(value)); }
  template <typename Number> JsonLine& add(const char* key, Number value) {
    sep();
    m_out << '"' << key << "\":" << value;
    return *this;
  }
  std::string str() const { return m_out.str() + "}"; }

private:
  void sep() {
    m_out << (m_first ? "{" : ",");
    m_first = false;
  }
  std::ostringstream m_out;
  bool m_first = true;
};

// The drawing.

OdGePoint3d pt(double x, double y, double z = 0.0) {
  return OdGePoint3d(x, y, z);
}

/// The south-west corner of the grid cell of entity k: cells of 25 units, 1000 to a row, in a
/// survey grid whose eastings start at 500000 and northings at 3000000.
OdGePoint3d cellOrigin(std::size_t k) {
  const double column = static_cast<double>(k % 1000);
  const double row = static_cast<double>(k / 1000);
  return pt(500000.0 + column * 25.0 + 0.137, 3000000.0 + row * 25.0 + 0.291);
}

/// Entity k of the drawing made and handed to sink (not yet in the database).
OdDbEntityPtr makeEntity(OdDbDatabase* db, std::size_t k) {
  using namespace custents::sample;
  const OdGePoint3d o = cellOrigin(k);
  const double w = 4.0 + static_cast<double>(k % 7) * 1.731;
  const double h = 3.0 + static_cast<double>(k % 5) * 2.113;
  const OdUInt16 color = static_cast<OdUInt16>(1 + k % 250);
  switch (k % 8) {
  case 0:
    return createFromRecord(db, rectangleRecord(rectangleFromDiagonal(o, pt(o.x + w, o.y + h))),
                            color);
  case 2: {
    // Corner heights as levelled on site.
    const double z = 12.0 + static_cast<double>(k % 11) * 0.173;
    RectangleShape shape;
    shape.corners = {pt(o.x, o.y, z), pt(o.x + w, o.y, z + 0.21), pt(o.x + w, o.y + h, z + 0.47),
                     pt(o.x, o.y + h, z + 0.13)};
    shape.center = pt(o.x + w / 2.0, o.y + h / 2.0, z + 0.2);
    shape.rotatePt = pt(shape.center.x, shape.center.y + 50.0, shape.center.z);
    return createFromRecord(db, rectangleRecord(shape, RectangleKind::kThreeD), color);
  }
  case 4:
    return createFromRecord(
        db, triangleRecord(triangleThrough(o, pt(o.x + w, o.y + 0.5), pt(o.x + w / 3.0, o.y + h))),
        color);
  case 6: {
    const OdGePoint3d c = pt(o.x + 10.0, o.y + 10.0);
    return createFromRecord(
        db, polygonRecord(c, pt(c.x + w, c.y + 0.37), 3 + static_cast<int>(k / 8 % 6)), color);
  }
  case 1:
  case 5: {
    OdDbLinePtr line = OdDbLine::createObject();
    line->setDatabaseDefaults(db);
    line->setColorIndex(color);
    line->setStartPoint(o);
    line->setEndPoint(pt(o.x + w * 2.0, o.y + h * 1.5));
    return line;
  }
  default: {
    OdDbPolylinePtr polyline = OdDbPolyline::createObject();
    polyline->setDatabaseDefaults(db);
    polyline->setColorIndex(color);
    for (unsigned int i = 0; i < 5; ++i)
      polyline->addVertexAt(i, OdGePoint2d(o.x + i * w * 0.5, o.y + (i % 2) * h + i * 0.613));
    polyline->setClosed(k % 3 == 0);
    return polyline;
  }
  }
}

/// A new database with the N entities in model space; with explode, each survey shape is
/// replaced by the standard entities its explode gives.
OdDbDatabasePtr buildDrawing(std::size_t count, bool explode) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbBlockTableRecordPtr space =
      OdDbBlockTableRecord::cast(db->getModelSpaceId().safeOpenObject(OdDb::kForWrite).get());
  for (std::size_t k = 0; k < count; ++k) {
    OdDbEntityPtr entity = makeEntity(db, k);
    if (explode && k % 2 == 0) {
      OdRxObjectPtrArray pieces;
      if (entity->explode(pieces) != eOk || pieces.isEmpty())
        throw std::runtime_error("a " + entity->isA()->name().toUtf8() + " did not explode");
      for (const OdRxObjectPtr& piece : pieces)
        space->appendOdDbEntity(OdDbEntity::cast(piece.get()).get());
    } else {
      space->appendOdDbEntity(entity.get());
    }
  }
  return db;
}

/// Counts model space's entities by class name.
std::map<std::string, std::size_t> classCounts(OdDbDatabase* db) {
  std::map<std::string, std::size_t> counts;
  OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject();
  for (const OdDbObjectId& id : space->entityIds())
    ++counts[id.safeOpenObject()->isA()->name().toUtf8()];
  return counts;
}

// The numbers a file holds, for the to_chars / from_chars bound.

enum class ValueKind { kOther, kReal, kInteger, kHandle, kBinary };

/// What a group code's value is, by the ranges of the DXF format.
ValueKind kindOfCode(int code) {
  const auto in = [code](int low, int high) { return code >= low && code <= high; };
  if (in(10, 59) || in(110, 149) || in(210, 239) || in(460, 469) || in(1010, 1059))
    return ValueKind::kReal;
  if (in(60, 79) || in(90, 99) || in(160, 179) || in(270, 299) || in(370, 389) || in(400, 409) ||
      in(420, 429) || in(440, 459) || in(1060, 1071))
    return ValueKind::kInteger;
  if (code == 5 || code == 105 || in(320, 369) || in(390, 399) || in(480, 481) || code == 1005)
    return ValueKind::kHandle;
  if (in(310, 319) || code == 1004)
    return ValueKind::kBinary;
  return ValueKind::kOther;
}

std::string_view trimmed(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
    s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\r'))
    s.remove_suffix(1);
  return s;
}

struct NumberTexts {
  std::vector<std::string_view> reals, integers, handles, binaries;
  std::size_t groups = 0;
  std::size_t binaryBytes() const {
    std::size_t bytes = 0;
    for (std::string_view b : binaries)
      bytes += b.size() / 2;
    return bytes;
  }
};

NumberTexts numberTextsOf(const std::string& file) {
  NumberTexts texts;
  std::size_t at = 0;
  const auto nextLine = [&](std::string_view& line) {
    if (at >= file.size())
      return false;
    std::size_t end = file.find('\n', at);
    if (end == std::string::npos)
      end = file.size();
    line = std::string_view(file.data() + at, end - at);
    at = end + 1;
    return true;
  };
  std::string_view codeLine, value;
  while (nextLine(codeLine) && nextLine(value)) {
    ++texts.groups;
    const std::string_view codeText = trimmed(codeLine);
    int code = 0;
    std::from_chars(codeText.data(), codeText.data() + codeText.size(), code);
    value = trimmed(value);
    switch (kindOfCode(code)) {
    case ValueKind::kReal:
      texts.reals.push_back(value);
      break;
    case ValueKind::kInteger:
      texts.integers.push_back(value);
      break;
    case ValueKind::kHandle:
      texts.handles.push_back(value);
      break;
    case ValueKind::kBinary:
      texts.binaries.push_back(value);
      break;
    case ValueKind::kOther:
      break;
    }
  }
  return texts;
}

/// The value of each hex digit, -1 for other characters.
struct NibbleTable {
  signed char value[256];
  NibbleTable() {
    std::fill(std::begin(value), std::end(value), static_cast<signed char>(-1));
    for (int i = 0; i < 10; ++i)
      value['0' + i] = static_cast<signed char>(i);
    for (int i = 0; i < 6; ++i) {
      value['A' + i] = static_cast<signed char>(10 + i);
      value['a' + i] = static_cast<signed char>(10 + i);
    }
  }
};
const NibbleTable kNibbles;

int nibble(char c) {
  return kNibbles.value[static_cast<unsigned char>(c)];
}

struct NumberValues {
  std::vector<double> reals;
  std::vector<std::int64_t> integers;
  std::vector<std::uint64_t> handles;
  std::vector<std::vector<unsigned char>> binaries;
};

/// Parses every number text as the reader must; throws on a text that is not a number, since
/// then the classification above is wrong and the bound would be meaningless. Binary chunks
/// are decoded by parseBinaries.
[[noreturn]] void notANumber(std::string_view text) {
  throw std::runtime_error("not a number: '" + std::string(text) + "'");
}

void parseNumbers(const NumberTexts& texts, NumberValues& values) {
  values.reals.resize(texts.reals.size());
  values.integers.resize(texts.integers.size());
  values.handles.resize(texts.handles.size());
  const auto fail = notANumber;
  for (std::size_t i = 0; i < texts.reals.size(); ++i) {
    const std::string_view t = texts.reals[i];
    if (std::from_chars(t.data(), t.data() + t.size(), values.reals[i]).ec != std::errc())
      fail(t);
  }
  for (std::size_t i = 0; i < texts.integers.size(); ++i) {
    const std::string_view t = texts.integers[i];
    if (std::from_chars(t.data(), t.data() + t.size(), values.integers[i]).ec != std::errc())
      fail(t);
  }
  for (std::size_t i = 0; i < texts.handles.size(); ++i) {
    const std::string_view t = texts.handles[i];
    if (std::from_chars(t.data(), t.data() + t.size(), values.handles[i], 16).ec != std::errc())
      fail(t);
  }
}

void parseBinaries(const NumberTexts& texts, NumberValues& values) {
  values.binaries.resize(texts.binaries.size());
  for (std::size_t i = 0; i < texts.binaries.size(); ++i) {
    const std::string_view t = texts.binaries[i];
    std::vector<unsigned char>& bytes = values.binaries[i];
    bytes.resize(t.size() / 2);
    for (std::size_t j = 0; j < bytes.size(); ++j) {
      const int high = nibble(t[2 * j]), low = nibble(t[2 * j + 1]);
      if (high < 0 || low < 0)
        notANumber(t);
      bytes[j] = static_cast<unsigned char>(high << 4 | low);
    }
  }
}

/// Formats every number as the writer must, into one buffer (so the work cannot be skipped);
/// returns the characters written.
std::size_t formatNumbers(const NumberValues& values, std::vector<char>& buffer) {
  char* out = buffer.data();
  char* const end = buffer.data() + buffer.size();
  for (double v : values.reals)
    out = std::to_chars(out, end, v).ptr;
  for (std::int64_t v : values.integers)
    out = std::to_chars(out, end, v).ptr;
  for (std::uint64_t v : values.handles)
    out = std::to_chars(out, end, v, 16).ptr;
  return static_cast<std::size_t>(out - buffer.data());
}

/// Writes every binary chunk as hex digits into the buffer; returns the characters written.
std::size_t formatBinaries(const NumberValues& values, std::vector<char>& buffer) {
  static const char kHex[] = "0123456789ABCDEF";
  char* out = buffer.data();
  for (const std::vector<unsigned char>& bytes : values.binaries)
    for (unsigned char b : bytes) {
      *out++ = kHex[b >> 4];
      *out++ = kHex[b & 15];
    }
  return static_cast<std::size_t>(out - buffer.data());
}

struct Timing {
  double wall = 1e300; ///< seconds
  double cpu = 1e300;  ///< seconds of CPU time of the process
};

/// The fastest of `rounds` runs of f (wall and CPU time each the least of the rounds).
Timing fastest(int rounds, const std::function<void()>& f) {
  Timing best;
  for (int i = 0; i < rounds; ++i) {
    const double cpuStart = processCpuSeconds();
    const Clock::time_point start = Clock::now();
    f();
    best.wall = std::min(best.wall, secondsSince(start));
    best.cpu = std::min(best.cpu, processCpuSeconds() - cpuStart);
  }
  return best;
}

// Modes.

struct Options {
  std::string modulePath;
  int repeat = 1;
  std::vector<std::string> args;
};

std::size_t countArgument(const std::string& text) {
  std::size_t count = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), count);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size() || count == 0 ||
      count % 8 != 0)
    throw std::invalid_argument("entity count must be a positive multiple of 8, not '" + text +
                                "'");
  return count;
}

void save(const std::string& path, OdDbDatabase* db) {
  OdString error;
  if (odDbWriteDxf(db, OdString::fromUtf8(path), &error) != eOk)
    throw std::runtime_error("saving " + path + " failed: " + error.toUtf8());
}

std::string runBaseline() {
  return JsonLine().add("mode", "baseline").add("peak_rss_kib", peakRssKiB()).str();
}

std::string runSave(const Options& options, std::size_t count, const std::string& path) {
  Clock::time_point start = Clock::now();
  OdDbDatabasePtr db = buildDrawing(count, false);
  const double buildSeconds = secondsSince(start);
  // The peak of building alone, before the writer adds its own.
  const long buildPeak = peakRssKiB();
  const Timing saving = fastest(options.repeat, [&] { save(path, db); });
  const long savePeak = peakRssKiB();

  const std::string file = readFile(path);
  const NumberTexts texts = numberTextsOf(file);
  NumberValues values;
  const Timing parsing = fastest(3, [&] { parseNumbers(texts, values); });
  const Timing decoding = fastest(3, [&] { parseBinaries(texts, values); });
  std::vector<char> buffer(file.size() + 64);
  std::size_t formatted = 0, encoded = 0;
  const Timing formatting = fastest(3, [&] { formatted = formatNumbers(values, buffer); });
  unsigned long checksum = 0;
  // The checksums keep the formatted text observable.
  for (std::size_t i = 0; i < formatted; ++i)
    checksum = checksum * 31 + static_cast<unsigned char>(buffer[i]);
  const Timing encoding = fastest(3, [&] { encoded = formatBinaries(values, buffer); });
  for (std::size_t i = 0; i < encoded; ++i)
    checksum = checksum * 31 + static_cast<unsigned char>(buffer[i]);

  return JsonLine()
      .add("mode", "save")
      .add("entities", count)
      .add("build_s", buildSeconds)
      .add("save_s", saving.wall)
      .add("save_cpu_s", saving.cpu)
      .add("bytes", file.size())
      .add("groups", texts.groups)
      .add("reals", texts.reals.size())
      .add("integers", texts.integers.size())
      .add("handles", texts.handles.size())
      .add("binary_chunks", texts.binaries.size())
      .add("binary_bytes", texts.binaryBytes())
      .add("to_chars_s", formatting.wall)
      .add("from_chars_s", parsing.wall)
      .add("hex_encode_s", encoding.wall)
      .add("hex_decode_s", decoding.wall)
      .add("formatted_chars", formatted + encoded)
      .add("checksum", checksum % 1000000)
      .add("peak_build_rss_kib", buildPeak)
      .add("peak_save_rss_kib", savePeak)
      .str();
}

std::string runLoad(const Options& options, const std::string& path) {
  OdDbDatabasePtr db;
  const Timing loading = fastest(options.repeat, [&] {
    db = nullptr; // the previous round's drawing goes before the next is read
    OdString error;
    std::vector<OdString> notes;
    if (odDbReadDxf(OdString::fromUtf8(path), db, &error, &notes) != eOk)
      throw std::runtime_error("loading " + path + " failed: " + error.toUtf8());
    if (!notes.empty())
      throw std::runtime_error("loading " + path + " left out: " + notes.front().toUtf8());
  });
  const long loadPeak = peakRssKiB();
  const std::map<std::string, std::size_t> counts = classCounts(db);
  std::size_t entities = 0;
  for (const auto& entry : counts)
    entities += entry.second;
  const auto countOf = [&counts](const char* name) {
    const auto it = counts.find(name);
    return it == counts.end() ? std::size_t(0) : it->second;
  };
  if (countOf("OdDbProxyEntity") != 0)
    throw std::runtime_error(std::to_string(countOf("OdDbProxyEntity")) +
                             " entities stayed proxies (is the module loaded?)");
  return JsonLine()
      .add("mode", "load")
      .add("entities", entities)
      .add("load_s", loading.wall)
      .add("load_cpu_s", loading.cpu)
      .add("bytes", readFile(path).size())
      .add("peak_load_rss_kib", loadPeak)
      .add("geo_rect", countOf("OdDbGeoRect"))
      .add("geo_3d_rect", countOf("OdDbGeo3dRect"))
      .add("geo_triangle", countOf("OdDbGeoTriangle"))
      .add("geo_polygon", countOf("OdDbGeoPolygon"))
      .add("lines", countOf("OdDbLine"))
      .add("polylines", countOf("OdDbPolyline"))
      .str();
}

std::string runPlain(std::size_t count, const std::string& path) {
  OdDbDatabasePtr db = buildDrawing(count, true);
  save(path, db);
  const std::map<std::string, std::size_t> counts = classCounts(db);
  std::size_t entities = 0;
  for (const auto& entry : counts)
    entities += entry.second;
  return JsonLine()
      .add("mode", "plain")
      .add("entities", entities)
      .add("bytes", readFile(path).size())
      .str();
}

Options parseOptions(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--module" && i + 1 < argc)
      options.modulePath = argv[++i];
    else if (arg == "--repeat" && i + 1 < argc)
      options.repeat = std::max(1, std::atoi(argv[++i]));
    else
      options.args.push_back(arg);
  }
  return options;
}

const char kUsage[] = "usage: bench_files [--module PATH] [--repeat R] baseline\n"
                      "       bench_files [--module PATH] [--repeat R] save N FILE\n"
                      "       bench_files [--module PATH] [--repeat R] load FILE\n"
                      "       bench_files [--module PATH] plain N FILE\n"
                      "N is the number of entities, a multiple of 8.\n";

} // namespace

int main(int argc, char** argv) {
  const Options options = parseOptions(argc, argv);
  const std::vector<std::string>& args = options.args;
  const std::string mode = args.empty() ? std::string() : args[0];
  const bool known = (mode == "baseline" && args.size() == 1) ||
                     (mode == "save" && args.size() == 3) || (mode == "load" && args.size() == 2) ||
                     (mode == "plain" && args.size() == 3);
  if (!known) {
    std::cerr << kUsage;
    return 2;
  }
  try {
    ModuleSession session(options.modulePath.empty() ? defaultModulePath() : options.modulePath);
    std::string result;
    if (mode == "baseline")
      result = runBaseline();
    else if (mode == "save")
      result = runSave(options, countArgument(args[1]), args[2]);
    else if (mode == "load")
      result = runLoad(options, args[1]);
    else
      result = runPlain(countArgument(args[1]), args[2]);
    std::cout << result << '\n';
    return 0;
  } catch (const OdError& error) {
    std::cerr << "bench_files: " << error.description().toUtf8() << '\n';
  } catch (const std::exception& error) {
    std::cerr << "bench_files: " << error.what() << '\n';
  }
  return 1;
}
