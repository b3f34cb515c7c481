// End-to-end tests of `custents classes`: the built application loads the built module, and
// what it reads back from the class dictionary is compared with the registration table kept
// in tests/data/registration_table.json.

#include "tools/ToolRunner.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> stringArray(const rapidjson::Value& value) {
  std::vector<std::string> items;
  for (const auto& item : value.GetArray())
    items.emplace_back(item.GetString(), item.GetStringLength());
  return items;
}

/// The classes listed by `custents classes --json`, or an empty document on failure.
rapidjson::Document listedClasses() {
  const ToolRun run = runCustents({"classes", "--json"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err, "");
  return parseJson(run.out);
}

TEST(ClassesCommand, JsonListsTheRegistrationTableInOrder) {
  const rapidjson::Document expected =
      parseJson(readFile(std::string(CUSTENTS_TEST_DATA_DIR) + "/registration_table.json"));
  const rapidjson::Document actual = listedClasses();
  ASSERT_TRUE(expected.IsArray());
  ASSERT_EQ(expected.Size(), 57u);
  ASSERT_TRUE(actual.IsArray());
  ASSERT_EQ(actual.Size(), expected.Size());

  for (rapidjson::SizeType i = 0; i < expected.Size(); ++i) {
    const rapidjson::Value& want = expected[i];
    const rapidjson::Value& got = actual[i];
    const std::string name = str(want["name"]);
    SCOPED_TRACE("row " + std::to_string(i + 1) + " " + name);
    ASSERT_TRUE(got.IsObject());
    for (const char* key : {"name", "parent", "dxfName", "appName", "proxyFlags", "dwgVersion",
                            "maintVersion", "extensions"})
      ASSERT_TRUE(got.HasMember(key)) << key;

    EXPECT_EQ(str(got["name"]), name);
    EXPECT_EQ(str(got["parent"]), str(want["parent"]));
    EXPECT_EQ(str(got["dxfName"]), str(want["dxfName"]));
    EXPECT_EQ(got["proxyFlags"].GetUint(), want["proxyFlags"].GetUint());
    EXPECT_EQ(got["dwgVersion"].GetInt(), want["dwgVersion"].GetInt());
    EXPECT_EQ(got["maintVersion"].GetInt(), want["maintVersion"].GetInt());
    EXPECT_EQ(stringArray(got["extensions"]), stringArray(want["extensions"]));

    // A null application name is one whose text is the implementer's choice.
    if (want["appName"].IsNull()) {
      EXPECT_FALSE(str(got["appName"]).empty());
      if (name == "OdDbRevCloud") {
        EXPECT_TRUE(startsWith(str(got["appName"]), "OdDbRevCloud|Description:"))
            << str(got["appName"]);
      }
    } else {
      EXPECT_EQ(str(got["appName"]), str(want["appName"]));
    }
  }
}

TEST(ClassesCommand, TableHasOneAlignedRowPerClass) {
  const rapidjson::Document classes = listedClasses();
  ASSERT_TRUE(classes.IsArray());
  ASSERT_GT(classes.Size(), 0u);

  const ToolRun run = runCustents({"classes"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const std::vector<std::string> lines = splitLines(run.out);
  // A header, its underline, then the classes.
  ASSERT_EQ(lines.size(), classes.Size() + 2) << run.out;

  const std::string& header = lines[0];
  const std::string::size_type classColumn = header.find("Class");
  const std::string::size_type dxfColumn = header.find("DXF name");
  ASSERT_NE(classColumn, std::string::npos);
  ASSERT_NE(dxfColumn, std::string::npos);
  for (rapidjson::SizeType i = 0; i < classes.Size(); ++i) {
    const std::string& line = lines[i + 2];
    const std::string name = str(classes[i]["name"]);
    SCOPED_TRACE(line);
    // Everything left of the application name is ASCII, so byte offsets are columns.
    EXPECT_EQ(line.compare(classColumn, name.size() + 1, name + " "), 0);
    EXPECT_TRUE(startsWith(line.substr(dxfColumn), str(classes[i]["dxfName"]) + " "));
    EXPECT_EQ(std::stoul(line), i + 1);
  }
}

struct BadModuleCase {
  const char* label;
  std::string path;
  /// A text that the message must contain to name the cause.
  const char* cause;
};

TEST(ClassesCommand, RefusedModulesFailWithTheCause) {
  const std::string tempDir = makeTempDir();
  const std::string textFile = tempDir + "/notes.tx";
  std::ofstream(textFile) << "This is a text file, not a module.\n";
  const std::string fixtures = CUSTENTS_FIXTURE_DIR;

  const std::vector<BadModuleCase> cases = {
      {"missing file", tempDir + "/NoSuchModule.tx", "not found"},
      {"text file", textFile, "Not a loadable module"},
      {"no entry points", fixtures + "/RxFixtureNoEntry.tx", "odrxGetAPIVersion"},
      {"unaccepted API version", fixtures + "/RxFixtureApi2.tx", "API version 2"},
      {"initApp throws", fixtures + "/RxFixtureFailingInit.tx", "fixture refuses to start"},
  };
  for (const BadModuleCase& c : cases) {
    SCOPED_TRACE(c.label);
    for (const bool json : {false, true}) {
      std::vector<std::string> args = {"classes", "--module", c.path};
      if (json)
        args.push_back("--json");
      const ToolRun run = runCustents(args);
      EXPECT_EQ(run.exitCode, 1);
      EXPECT_EQ(run.out, "");
      const std::vector<std::string> lines = splitLines(run.err);
      ASSERT_EQ(lines.size(), 1u) << run.err;
      EXPECT_NE(lines[0].find(c.cause), std::string::npos) << lines[0];
      EXPECT_TRUE(startsWith(lines[0], "custents: ")) << lines[0];
    }
  }
  std::remove(textFile.c_str());
  std::remove(tempDir.c_str());
}

TEST(ClassesCommand, HelpAndVersionSucceed) {
  const ToolRun help = runCustents({"--help"});
  EXPECT_EQ(help.exitCode, 0) << help.err;
  EXPECT_NE(help.out.find("classes"), std::string::npos) << help.out;

  const ToolRun classesHelp = runCustents({"classes", "--help"});
  EXPECT_EQ(classesHelp.exitCode, 0) << classesHelp.err;
  EXPECT_NE(classesHelp.out.find("--module"), std::string::npos) << classesHelp.out;
  EXPECT_NE(classesHelp.out.find("--json"), std::string::npos) << classesHelp.out;

  const ToolRun version = runCustents({"--version"});
  EXPECT_EQ(version.exitCode, 0) << version.err;
  EXPECT_EQ(version.out, std::string("custents ") + CUSTENTS_VERSION + "\n");
}

} // namespace
