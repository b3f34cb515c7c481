// The drawing-file commands of the built application: demo, convert, render, info, props on a
// file, explode, and how each one fails.

#include "DrawingFile.h"
#include "tools/ToolRunner.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

namespace {

bool exists(const std::string& path) {
  return std::ifstream(path).good();
}

std::string replaceAll(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

std::map<std::string, unsigned> typeCounts(const rapidjson::Value& space) {
  std::map<std::string, unsigned> counts;
  for (const auto& entry : space["byType"].GetArray())
    counts[entry["type"].GetString()] = entry["count"].GetUint();
  return counts;
}

/// One demo drawing for all tests, written into a folder the command creates, and a copy whose
/// rectangle class no module knows (its objects stay proxies): the class names are swapped for
/// ones of the same length.
class DrawingCommands : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    base = new std::string(makeTempDir());
    dir = new std::string(*base + "/nested/out");
    demo = new ToolRun(runCustents({"demo", "--out", *dir, "--width", "200", "--height", "100"}));
    ASSERT_EQ(demo->exitCode, 0) << demo->err;
    std::string foreign = readFile(path("demo.dxf"));
    foreign = replaceAll(foreign, "OdDbGeoRect", "AcmeGeoRect");
    foreign = replaceAll(foreign, "ODDBGEORECT", "ACMEGEORECT");
    std::ofstream(path("foreign.dxf"), std::ios::binary) << foreign;
  }
  static void TearDownTestSuite() {
    std::error_code ignored;
    std::filesystem::remove_all(*base, ignored);
    delete base;
    delete dir;
    delete demo;
  }
  static std::string path(const std::string& name) { return *dir + "/" + name; }
  static std::string *base, *dir;
  static ToolRun* demo;
};
std::string *DrawingCommands::base = nullptr, *DrawingCommands::dir = nullptr;
ToolRun* DrawingCommands::demo = nullptr;

TEST_F(DrawingCommands, DemoWritesTheDrawingAndBothPicturesAtTheRequestedSize) {
  EXPECT_EQ(demo->err, "");
  for (const char* name : {"demo.svg", "demo.png", "demo.dxf"})
    EXPECT_NE(demo->out.find("Wrote " + path(name)), std::string::npos) << demo->out;
  EXPECT_NE(demo->out.find("demo.png (200 x 100 px)"), std::string::npos) << demo->out;
  EXPECT_NE(readFile(path("demo.svg")).find("width=\"200\" height=\"100\""), std::string::npos);
  EXPECT_EQ(readFile(path("demo.png")).compare(0, 8, std::string("\x89PNG\r\n\x1a\n", 8)), 0);
  EXPECT_EQ(readFile(path("demo.dxf")).compare(0, 16, "  0\nSECTION\n  2\n"), 0);
}

TEST_F(DrawingCommands, ConvertOfTheDemoDrawingIsByteIdentical) {
  const ToolRun once = runCustents({"convert", path("demo.dxf"), "-o", path("once.dxf")});
  ASSERT_EQ(once.exitCode, 0) << once.err;
  EXPECT_EQ(once.err, "");
  const std::string original = readFile(path("demo.dxf"));
  ASSERT_GT(original.size(), 1000u);
  EXPECT_EQ(readFile(path("once.dxf")), original);
  // Over the input itself: written aside and renamed, so reading and writing one file is safe.
  const ToolRun inPlace = runCustents({"convert", path("once.dxf"), "-o", path("once.dxf")});
  ASSERT_EQ(inPlace.exitCode, 0) << inPlace.err;
  EXPECT_EQ(readFile(path("once.dxf")), original);
}

TEST_F(DrawingCommands, InfoCountsClassesAndEntities) {
  const ToolRun run = runCustents({"info", path("demo.dxf"), "--json"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const rapidjson::Document info = parseJson(run.out);
  EXPECT_EQ(info["fileSize"].GetUint64(), readFile(path("demo.dxf")).size());
  const std::map<std::string, unsigned> expected = {
      {"OdDbGeoRect", 4}, {"OdDbGeo3dRect", 1},  {"OdDbGeoTriangle", 2},
      {"OdDbHatch", 2},   {"OdDbMesuarData", 1}, {"OdDbGeoPolygon", 4},
      {"OdDbDimCoor", 2}, {"OdDbNewDimCoor", 2}, {"OdDbMText", 1}};
  EXPECT_EQ(typeCounts(info["modelSpace"]), expected);
  EXPECT_EQ(info["modelSpace"]["total"].GetUint(), 19u);
  EXPECT_EQ(info["paperSpace"]["total"].GetUint(), 0u);
  std::map<std::string, unsigned> classes;
  for (const auto& cls : info["classes"].GetArray()) {
    EXPECT_TRUE(cls["live"].GetBool()) << cls["cppClassName"].GetString();
    classes[cls["cppClassName"].GetString()] = cls["instances"].GetUint();
  }
  std::map<std::string, unsigned> custom = expected;
  custom.erase("OdDbHatch");
  custom.erase("OdDbMText");
  EXPECT_EQ(classes, custom);

  const ToolRun foreign = runCustents({"info", path("foreign.dxf"), "--json"});
  ASSERT_EQ(foreign.exitCode, 0) << foreign.err;
  const rapidjson::Document kept = parseJson(foreign.out);
  EXPECT_EQ(typeCounts(kept["modelSpace"])["AcmeGeoRect (proxy)"], 4u);
  for (const auto& cls : kept["classes"].GetArray())
    EXPECT_EQ(cls["live"].GetBool(), cls["cppClassName"].GetString() != std::string("AcmeGeoRect"))
        << cls["cppClassName"].GetString();

  const ToolRun text = runCustents({"info", path("foreign.dxf")});
  ASSERT_EQ(text.exitCode, 0) << text.err;
  EXPECT_NE(text.out.find("ACMEGEORECT      AcmeGeoRect            4         3071  kept as proxy"),
            std::string::npos)
      << text.out;
  EXPECT_NE(text.out.find("Model space: 19 entities"), std::string::npos) << text.out;
}

TEST_F(DrawingCommands, ExplodeWritesThePlainDrawingAndSumsUpAsJson) {
  for (const char* input : {"demo.dxf", "foreign.dxf"}) {
    SCOPED_TRACE(input);
    const std::string output = path(std::string("plain-") + input);
    const ToolRun run = runCustents({"explode", path(input), "-o", output, "--json"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const rapidjson::Document summary = parseJson(run.out);
    EXPECT_TRUE(summary["written"].GetBool());
    EXPECT_EQ(summary["customEntities"].GetUint(), 16u);
    EXPECT_EQ(summary["keptProxies"].GetUint(), input == std::string("foreign.dxf") ? 4u : 0u);
    EXPECT_EQ(summary["failures"].Size(), 0u);

    // What the file holds is the ezdxf audit's to check (tests/CMakeLists.txt) and the plain
    // export's tests'.
    EXPECT_TRUE(exists(output));
  }
}

TEST_F(DrawingCommands, ExplodeFailureWritesNothingUnlessKeepGoing) {
  // The first proxy's graphics: the command after the extents claims to run past the end.
  std::vector<std::string> lines = splitLines(readFile(path("foreign.dxf")));
  std::size_t at = 0;
  while (at < lines.size() && lines[at] != "ACAD_PROXY_ENTITY")
    ++at;
  while (at < lines.size() && lines[at] != "160")
    ++at;
  ASSERT_LT(at + 3, lines.size());
  std::string& graphics = lines[at + 3];
  ASSERT_GT(graphics.size(), 136u);
  graphics.replace(128, 8, "FFFFFF7F");
  std::ofstream damaged(path("damaged.dxf"), std::ios::binary);
  for (const std::string& line : lines)
    damaged << line << '\n';
  damaged.close();

  const ToolRun stop = runCustents({"explode", path("damaged.dxf"), "-o", path("stop.dxf")});
  EXPECT_EQ(stop.exitCode, 1);
  EXPECT_NE(stop.err.find("cannot explode AcmeGeoRect"), std::string::npos) << stop.err;
  EXPECT_NE(stop.err.find("damaged"), std::string::npos) << stop.err;
  EXPECT_FALSE(exists(path("stop.dxf")));

  const ToolRun go =
      runCustents({"explode", path("damaged.dxf"), "-o", path("go.dxf"), "--keep-going"});
  EXPECT_EQ(go.exitCode, 0) << go.err;
  EXPECT_NE(go.err.find("cannot explode AcmeGeoRect"), std::string::npos) << go.err;
  EXPECT_TRUE(exists(path("go.dxf")));
}

TEST_F(DrawingCommands, RenderChoosesTheFormatByExtension) {
  const ToolRun svg = runCustents({"render", path("demo.dxf"), "-o", path("pic.svg"), "--width",
                                   "320", "--height", "240", "--background", "dark"});
  ASSERT_EQ(svg.exitCode, 0) << svg.err;
  const std::string svgText = readFile(path("pic.svg"));
  EXPECT_NE(svgText.find("<svg"), std::string::npos);
  EXPECT_NE(svgText.find("width=\"320\" height=\"240\""), std::string::npos);

  const ToolRun png = runCustents({"render", path("foreign.dxf"), "-o", path("PIC.PNG")});
  ASSERT_EQ(png.exitCode, 0) << png.err;
  EXPECT_EQ(readFile(path("PIC.PNG")).compare(0, 8, std::string("\x89PNG\r\n\x1a\n", 8)), 0);
  EXPECT_NE(png.out.find("19 entities drawn"), std::string::npos) << png.out;
}

TEST_F(DrawingCommands, PropsOfAFileDescribeItsEntities) {
  const ToolRun run = runCustents({"props", path("demo.dxf"), "--json"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const ToolRun sample = runCustents({"props", "--json"});
  ASSERT_EQ(sample.exitCode, 0) << sample.err;
  // The file holds the sample drawing, so its pages are the sample's, handles included.
  EXPECT_EQ(run.out, sample.out);
  EXPECT_EQ(parseJson(run.out).Size(), 19u);
}

TEST_F(DrawingCommands, FailuresExitWithTheCause) {
  std::ofstream(path("malformed.dxf")) << "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\n"
                                          "AC1032\nabc\nfoo\n";
  std::ofstream(path("plain-file")) << "not a folder\n";
  const std::string missing = path("missing.dxf");
  const std::string failingInit = std::string(CUSTENTS_FIXTURE_DIR) + "/RxFixtureFailingInit.tx";
  struct Case {
    std::vector<std::string> args;
    int exitCode;
    std::string message;
  };
  const std::vector<Case> cases = {
      {{"info", missing}, 1, "No such file"},
      {{"convert", missing, "-o", path("x.dxf")}, 1, "No such file"},
      {{"render", missing, "-o", path("x.svg")}, 1, "No such file"},
      {{"explode", missing, "-o", path("x.dxf")}, 1, "No such file"},
      {{"props", missing}, 1, "No such file"},
      {{"info", path("malformed.dxf")}, 1, "line 9: "},
      {{"convert", path("malformed.dxf"), "-o", path("x.dxf")}, 1, "line 9: "},
      {{"info", *dir}, 1, "it is a folder"},
      {{"render", path("demo.dxf"), "-o", path("x.bmp")}, 2, "must be a .svg or .png file"},
      {{"render", path("demo.dxf"), "-o", path("noextension")}, 2, "must be a .svg or .png"},
      {{"explode", path("demo.dxf"), "-o", path("x.txt")}, 2, "must be a .dxf file"},
      {{"convert", path("demo.dxf")}, 2, "--output is required"},
      {{"render", path("demo.dxf")}, 2, "--output is required"},
      {{"explode", path("demo.dxf")}, 2, "--output is required"},
      {{"info"}, 2, "input is required"},
      {{"render", path("demo.dxf"), "-o", path("x.svg"), "--background", "green"}, 2, "green"},
      {{"convert", path("demo.dxf"), "-o", path("x.dxf"), "--module", missing}, 1, missing},
      {{"demo", "--out", path("plain-file/sub")}, 1, "cannot create the output folder"},
      {{"demo", "--out", path("x"), "--module", path("none.tx")}, 1, "none.tx"},
      {{"classes", "--module", path("malformed.dxf")}, 1, "Not a loadable module"},
      {{"classes", "--json", "--module", failingInit}, 1, "fixture refuses to start"},
      {{"demo", "--out", path("x"), "--width", "0"}, 2, ""},
      // Usage errors.
      {{}, 2, ""},
      {{"no-such-command"}, 2, ""},
      {{"classes", "--no-such-option"}, 2, ""},
      {{"classes", "--module"}, 2, ""},
  };
  for (const Case& c : cases) {
    std::string line;
    for (const std::string& arg : c.args)
      line += arg + " ";
    SCOPED_TRACE(line);
    const ToolRun run = runCustents(c.args);
    EXPECT_EQ(run.exitCode, c.exitCode) << run.err;
    EXPECT_NE(run.err.find(c.message), std::string::npos) << run.err;
    EXPECT_NE(run.err, "");
    EXPECT_EQ(run.out, "");
    // A failed command says why in one line of its own; a usage error is CLI11's.
    if (c.exitCode == 1) {
      EXPECT_TRUE(startsWith(run.err, "custents: ") && splitLines(run.err).size() == 1) << run.err;
    }
  }
  for (const char* name : {"x.dxf", "x.svg", "x.bmp", "x.txt", "noextension", "x/demo.svg"})
    EXPECT_FALSE(exists(path(name))) << name;
}

TEST(ProgressReporter, PrintsEachTenthOnlyForLongWork) {
  struct Case {
    std::size_t total;
    std::size_t threshold;
    std::size_t lines;
  };
  for (const Case& c : {Case{50, 10, 10}, Case{9, 10, 0}, Case{5, 5, 5}, Case{0, 0, 0}}) {
    SCOPED_TRACE(std::to_string(c.total) + " of threshold " + std::to_string(c.threshold));
    std::ostringstream out;
    ProgressReporter progress("Work", c.total, out, c.threshold);
    for (std::size_t done = 1; done <= c.total; ++done)
      progress.update(done);
    const std::vector<std::string> lines = splitLines(out.str());
    EXPECT_EQ(lines.size(), c.lines);
    if (!lines.empty()) {
      EXPECT_EQ(lines.back(),
                "Work: " + std::to_string(c.total) + " / " + std::to_string(c.total) + " (100%)");
    }
  }
}

} // namespace
