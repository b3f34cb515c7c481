#include "Gi/GiProxyGraphicsWriter.h"

#include "DbDatabase.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
#include "Ge/GeMatrix3d.h"
#include "Ge/GeScale3d.h"

#include "sdk/SdkTestSupport.h"

#include <cstring>
#include <limits>
#include <map>
#include <unistd.h>
#include <vector>

namespace proxy_graphics_writer_test {

typedef OdGiProxyGraphicsWriter Writer;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// ---------------------------------------------------------------------------------------------
// Reading and building metafile bytes.

OdUInt32 u32At(const std::vector<OdUInt8>& bytes, std::size_t at) {
  OdUInt32 value = 0;
  for (int i = 3; i >= 0; --i)
    value = (value << 8) | bytes.at(at + i);
  return value;
}

double f64At(const std::vector<OdUInt8>& bytes, std::size_t at) {
  const OdUInt64 bits = u32At(bytes, at) | (OdUInt64(u32At(bytes, at + 4)) << 32);
  double value = 0.0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

/// Little-endian bytes as the metafile holds them.
struct Bytes {
  std::vector<OdUInt8> b;
  Bytes& u32(OdUInt32 value) {
    for (int shift = 0; shift < 32; shift += 8)
      b.push_back(static_cast<OdUInt8>(value >> shift));
    return *this;
  }
  Bytes& f64(double value) {
    OdUInt64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return u32(static_cast<OdUInt32>(bits)).u32(static_cast<OdUInt32>(bits >> 32));
  }
  Bytes& xyz(double x, double y, double z) { return f64(x).f64(y).f64(z); }
  Bytes& raw(std::initializer_list<OdUInt8> bytes) {
    b.insert(b.end(), bytes);
    return *this;
  }
};

struct Command {
  OdUInt32 opcode = 0;
  std::vector<OdUInt8> payload;
};

/// Splits a metafile into commands, checking the header and every command's framing.
std::vector<Command> commandsOf(const OdUInt8Array& data) {
  std::vector<OdUInt8> bytes(data.begin(), data.end());
  std::vector<Command> commands;
  if (bytes.empty())
    return commands;
  EXPECT_GE(bytes.size(), 8u);
  EXPECT_EQ(u32At(bytes, 0), bytes.size()) << "header size";
  const OdUInt32 count = u32At(bytes, 4);
  std::size_t at = 8;
  while (at < bytes.size()) {
    const OdUInt32 size = u32At(bytes, at);
    EXPECT_GE(size, 8u);
    EXPECT_EQ(size % 4, 0u) << "command at " << at << " is not padded to 4";
    if (size < 8 || at + size > bytes.size()) {
      ADD_FAILURE() << "command at " << at << " runs past the end";
      break;
    }
    Command command;
    command.opcode = u32At(bytes, at + 4);
    command.payload.assign(bytes.begin() + at + 8, bytes.begin() + at + size);
    commands.push_back(command);
    at += size;
  }
  EXPECT_EQ(count, commands.size()) << "header command count";
  return commands;
}

// ---------------------------------------------------------------------------------------------
// Layout of each primitive.

struct LayoutCase {
  const char* name;
  std::function<void(Writer&)> draw;
  OdUInt32 opcode;
  Bytes payload;
  /// The payload is all doubles computed by the writer: compared with a tolerance.
  bool computed = false;
};

TEST(GiProxyGraphicsWriter, PrimitiveCommandsHaveTheirExactLayout) {
  const OdGePoint3d square[3] = {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}};
  const std::vector<LayoutCase> cases = {
      {"circle", [](Writer& w) { w.circle(OdGePoint3d(1, 2, 3), 4.5, OdGeVector3d::kZAxis); },
       Writer::kCircle, Bytes().xyz(1, 2, 3).f64(4.5).xyz(0, 0, 1)},
      {"three-point circle",
       [](Writer& w) {
         w.circle(OdGePoint3d(2, 0, 0), OdGePoint3d(0, 2, 0), OdGePoint3d(-2, 0, 0));
       },
       Writer::kCircle, Bytes().xyz(0, 0, 0).f64(2).xyz(0, 0, 1), true},
      {"arc",
       [](Writer& w) {
         w.circularArc(OdGePoint3d(1, 1, 0), 2, OdGeVector3d::kZAxis, OdGeVector3d(0, 5, 0),
                       OdaPI / 2, kOdGiArcChord);
       },
       Writer::kCircularArc,
       Bytes().xyz(1, 1, 0).f64(2).xyz(0, 0, 1).xyz(0, 1, 0).f64(OdaPI / 2).u32(kOdGiArcChord)},
      {"polyline", [&](Writer& w) { w.polyline(3, square); }, Writer::kPolyline,
       Bytes().u32(3).xyz(0, 0, 0).xyz(4, 0, 0).xyz(4, 3, 0)},
      {"polyline with normal",
       [&](Writer& w) {
         const OdGeVector3d normal(0, 0, 2);
         w.polyline(2, square, &normal);
       },
       Writer::kPolylineWithNormal, Bytes().u32(2).xyz(0, 0, 0).xyz(4, 0, 0).xyz(0, 0, 1)},
      {"polygon", [&](Writer& w) { w.polygon(3, square); }, Writer::kPolygon,
       Bytes().u32(3).xyz(0, 0, 0).xyz(4, 0, 0).xyz(4, 3, 0)},
      {"xline", [](Writer& w) { w.xline(OdGePoint3d(1, 0, 0), OdGePoint3d(1, 5, 0)); },
       Writer::kXline, Bytes().xyz(1, 0, 0).xyz(1, 5, 0)},
      {"ray", [](Writer& w) { w.ray(OdGePoint3d(0, 0, 0), OdGePoint3d(3, 3, 0)); }, Writer::kRay,
       Bytes().xyz(0, 0, 0).xyz(3, 3, 0)},
      {"text",
       [](Writer& w) {
         w.text(OdGePoint3d(5, 6, 0), OdGeVector3d::kZAxis, OdGeVector3d(0, 2, 0), 2.5, 0.8, 0.25,
                OdString(u"AB"));
       },
       Writer::kUnicodeText,
       Bytes().xyz(5, 6, 0).xyz(0, 0, 1).xyz(0, 1, 0).f64(2.5).f64(0.8).f64(0.25).raw(
           {'A', 0, 'B', 0, 0, 0, 0, 0})},
  };
  for (const LayoutCase& c : cases) {
    SCOPED_TRACE(c.name);
    Writer writer;
    c.draw(writer);
    const OdUInt8Array data = writer.data();
    const std::vector<Command> commands = commandsOf(data);
    ASSERT_EQ(commands.size(), 3u);
    EXPECT_EQ(writer.numCommands(), 3u);
    EXPECT_EQ(u32At(std::vector<OdUInt8>(data.begin(), data.end()), 0),
              8 + 56 + 12 + 8 + c.payload.b.size());
    EXPECT_EQ(commands[0].opcode, Writer::kExtents);
    EXPECT_EQ(commands[0].payload.size(), 48u);
    // By layer, sent explicitly before the first primitive.
    EXPECT_EQ(commands[1].opcode, Writer::kColor);
    EXPECT_EQ(commands[1].payload, Bytes().u32(256).b);
    EXPECT_EQ(commands[2].opcode, c.opcode);
    ASSERT_EQ(commands[2].payload.size(), c.payload.b.size());
    if (!c.computed) {
      EXPECT_EQ(commands[2].payload, c.payload.b);
    } else {
      for (std::size_t at = 0; at < c.payload.b.size(); at += 8)
        EXPECT_NEAR(f64At(commands[2].payload, at), f64At(c.payload.b, at), 1e-12) << "at " << at;
    }
    EXPECT_EQ(writer.skippedPrimitives(), 0u);
  }
}

class ProxyWriterTablesTest : public ::testing::Test {
protected:
  void SetUp() override {
    m_db = OdDbDatabase::createObject();
    m_defpoints = addLayer(OD_T("Defpoints"));
    m_survey = addLayer(OD_T("Survey"));
    OdDbLinetypeTablePtr linetypes = m_db->getLinetypeTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLinetypeTableRecordPtr dashed = OdDbLinetypeTableRecord::createObject();
    dashed->setName(OD_T("DASHDOT"));
    m_dashdot = linetypes->add(dashed);
  }
  OdDbObjectId addLayer(const OdString& name) {
    OdDbLayerTablePtr layers = m_db->getLayerTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLayerTableRecordPtr record = OdDbLayerTableRecord::createObject();
    record->setName(name);
    return layers->add(record);
  }

  OdDbDatabasePtr m_db;
  OdDbObjectId m_defpoints, m_survey, m_dashdot;
};

// ---------------------------------------------------------------------------------------------
// What ezdxf, an independent reader, makes of the bytes.

/// The checker's "key value" lines, keyed by their dotted path.
typedef std::map<std::string, std::string> Fields;

Fields fieldsOf(const std::string& output) {
  Fields fields;
  std::istringstream lines(output);
  std::string line;
  while (std::getline(lines, line)) {
    const std::size_t space = line.find(' ');
    fields[line.substr(0, space)] = space == std::string::npos ? "" : line.substr(space + 1);
  }
  return fields;
}

const char* const kPython = "/usr/bin/python3";

std::string checkerPath() {
  const std::string self = __FILE__;
  const std::size_t slash = self.find_last_of('/');
  return (slash == std::string::npos ? std::string(".") : self.substr(0, slash)) +
         "/proxy_graphics_check.py";
}

/// Runs the checker on the bytes; the exit status and its standard output.
int runChecker(const OdUInt8Array& data, const std::string& options, std::string& output) {
  char path[] = "/tmp/proxy_graphics_XXXXXX";
  const int fd = mkstemp(path);
  if (fd < 0)
    return -1;
  const std::vector<OdUInt8> bytes(data.begin(), data.end());
  const bool written = write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  close(fd);
  if (!written) {
    std::remove(path);
    return -1;
  }
  const int status = runCommand(std::string(kPython) + " " + checkerPath() + " " + path + " " +
                                    options + " 2>/dev/null",
                                output);
  std::remove(path);
  return status;
}

TEST_F(ProxyWriterTablesTest, EzdxfDecodesWhatWasDrawn) {
  if (!haveEzdxf())
    GTEST_SKIP() << "/usr/bin/python3 cannot import ezdxf";

  Writer writer(m_db.get());
  writer.setLayer(m_survey);
  writer.setColor(1);
  const OdGePoint3d track[3] = {{0, 0, 0}, {10, 0, 0}, {10, 5, 0}};
  writer.polyline(3, track);
  writer.setTrueColor(OdCmEntityColor(10, 200, 30));
  writer.setLineWeight(OdDb::kLnWt050);
  writer.circle(OdGePoint3d(3, 4, 0), 2.5, OdGeVector3d::kZAxis);
  writer.setColor(5);
  writer.setLineType(m_dashdot);
  writer.circularArc(OdGePoint3d(10, 0, 0), 2, OdGeVector3d::kZAxis, OdGeVector3d::kXAxis,
                     -OdaPI / 2);
  writer.setFillType(kOdGiFillAlways);
  const OdGePoint3d tri[3] = {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}};
  writer.polygon(3, tri);
  writer.setFillType(kOdGiFillNever);
  writer.polygon(3, tri);
  writer.pushModelTransform(OdGeMatrix3d::translation(OdGeVector3d(100, 50, 0)) *
                            OdGeMatrix3d::rotation(OdaPI / 6, OdGeVector3d::kZAxis));
  writer.setColor(256);
  writer.text(OdGePoint3d(1, 0, 0), OdGeVector3d::kZAxis, OdGeVector3d::kXAxis, 2.5, 0.8, 0,
              OdString(u"北坐标"));
  writer.circle(OdGePoint3d(), 1, OdGeVector3d::kZAxis);
  writer.popModelTransform();
  writer.pushModelTransform(OdGeMatrix3d::scaling(OdGeScale3d(2, 1, 1)));
  writer.circle(OdGePoint3d(), 1, OdGeVector3d::kZAxis);
  writer.popModelTransform();

  std::string output;
  const int status =
      runChecker(writer.data(), "--layers Defpoints,Survey --linetypes DASHDOT", output);
  ASSERT_EQ(status, 0) << output;
  const Fields fields = fieldsOf(output);
  auto field = [&](const std::string& key) {
    const auto it = fields.find(key);
    EXPECT_NE(it, fields.end()) << "no " << key << " in " << output;
    return it == fields.end() ? std::string() : it->second;
  };
  auto number = [&](const std::string& key) { return std::atof(field(key).c_str()); };
  auto expectPoint = [&](const std::string& key, double x, double y, double z) {
    std::istringstream in(field(key));
    double got[3] = {kNaN, kNaN, kNaN};
    in >> got[0] >> got[1] >> got[2];
    EXPECT_NEAR(got[0], x, 1e-9) << key;
    EXPECT_NEAR(got[1], y, 1e-9) << key;
    EXPECT_NEAR(got[2], z, 1e-9) << key;
  };
  // The checker's drawing numbers its tables as our database does.
  EXPECT_EQ(field("layers.count"), "3");
  EXPECT_EQ(field("layers.2"), "Survey");
  EXPECT_EQ(field("linetypes.count"), "4");
  EXPECT_EQ(field("linetypes.3"), "DASHDOT");

  ASSERT_EQ(field("entities.count"), "8") << output;
  for (int i = 0; i < 8; ++i)
    EXPECT_EQ(field("entities." + std::to_string(i) + ".layer"), "Survey");

  EXPECT_EQ(field("entities.0.type"), "POLYLINE");
  EXPECT_EQ(number("entities.0.color"), 1);
  EXPECT_EQ(field("entities.0.vertices.count"), "3");
  for (int i = 0; i < 3; ++i)
    expectPoint("entities.0.vertices." + std::to_string(i), track[i].x, track[i].y, track[i].z);
  EXPECT_EQ(field("entities.0.closed"), "0");

  EXPECT_EQ(field("entities.1.type"), "CIRCLE");
  expectPoint("entities.1.center", 3, 4, 0);
  EXPECT_NEAR(number("entities.1.radius"), 2.5, 1e-12);
  EXPECT_EQ(number("entities.1.true_color"), 0x0AC81E);
  EXPECT_EQ(number("entities.1.lineweight"), 50);

  EXPECT_EQ(field("entities.2.type"), "ARC");
  EXPECT_EQ(number("entities.2.color"), 5);
  EXPECT_EQ(field("entities.2.linetype"), "DASHDOT");
  expectPoint("entities.2.start_point", 10, -2, 0);
  expectPoint("entities.2.end_point", 12, 0, 0);

  EXPECT_EQ(field("entities.3.type"), "HATCH");
  EXPECT_EQ(field("entities.3.vertices.count"), "3");
  expectPoint("entities.3.vertices.1", 2, 0, 0);
  EXPECT_EQ(field("entities.4.type"), "POLYLINE");
  EXPECT_EQ(field("entities.4.closed"), "1");

  EXPECT_EQ(field("entities.5.type"), "TEXT");
  EXPECT_EQ(field("entities.5.text"), OdString(u"北坐标").toUtf8());
  expectPoint("entities.5.insert", 100 + std::cos(OdaPI / 6), 50 + std::sin(OdaPI / 6), 0);
  EXPECT_NEAR(number("entities.5.height"), 2.5, 1e-12);
  EXPECT_NEAR(number("entities.5.width"), 0.8, 1e-12);
  EXPECT_NEAR(number("entities.5.rotation"), 30, 1e-9);
  EXPECT_EQ(number("entities.5.color"), 256);

  EXPECT_EQ(field("entities.6.type"), "CIRCLE");
  expectPoint("entities.6.center", 100, 50, 0);

  EXPECT_EQ(field("entities.7.type"), "POLYLINE");
  EXPECT_EQ(field("entities.7.vertices.count"), std::to_string(Writer::kSegmentsPerTurn + 1));
  expectPoint("entities.7.vertices.0", 2, 0, 0);
  expectPoint("entities.7.vertices." + std::to_string(Writer::kSegmentsPerTurn / 4), 0, 1, 0);
}

} // namespace proxy_graphics_writer_test
