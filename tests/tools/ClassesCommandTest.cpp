// `custents classes`: the built application loads the built module, and what it reads back
// from the class dictionary is compared with the registration table kept in
// tests/data/registration_table.json.

#include "tools/ToolRunner.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>
#include <vector>

namespace {

TEST(ClassesCommand, ListsTheRegistrationTableInOrderAsJsonAndAsATable) {
  const rapidjson::Document expected =
      parseJson(readFile(std::string(CUSTENTS_TEST_DATA_DIR) + "/registration_table.json"));
  ASSERT_TRUE(expected.IsArray());
  ASSERT_EQ(expected.Size(), 57u);
  const ToolRun json = runCustents({"classes", "--json"});
  ASSERT_EQ(json.exitCode, 0) << json.err;
  EXPECT_EQ(json.err, "");
  const rapidjson::Document actual = parseJson(json.out);
  ASSERT_TRUE(actual.IsArray());
  ASSERT_EQ(actual.Size(), expected.Size());

  const ToolRun table = runCustents({"classes"});
  ASSERT_EQ(table.exitCode, 0) << table.err;
  EXPECT_EQ(table.err, "");
  const std::vector<std::string> lines = splitLines(table.out);
  // A header, its underline, then the classes.
  ASSERT_EQ(lines.size(), expected.Size() + 2) << table.out;
  const std::string::size_type classColumn = lines[0].find("Class");
  const std::string::size_type dxfColumn = lines[0].find("DXF name");
  ASSERT_NE(classColumn, std::string::npos);
  ASSERT_NE(dxfColumn, std::string::npos);

  for (rapidjson::SizeType i = 0; i < expected.Size(); ++i) {
    const rapidjson::Value& want = expected[i];
    const rapidjson::Value& got = actual[i];
    const std::string name = str(want["name"]);
    SCOPED_TRACE("row " + std::to_string(i + 1) + " " + name);
    ASSERT_TRUE(got.IsObject());
    EXPECT_EQ(got.MemberCount(), want.MemberCount());
    for (const auto& member : want.GetObject()) {
      const char* key = member.name.GetString();
      ASSERT_TRUE(got.HasMember(key)) << key;
      // A null application name is one whose text is the implementer's choice.
      if (!member.value.IsNull()) {
        EXPECT_TRUE(got[key] == member.value) << key << " is " << str(got[key]);
      }
    }
    EXPECT_FALSE(str(got["appName"]).empty());

    // Everything left of the application name is ASCII, so byte offsets are columns.
    const std::string& line = lines[i + 2];
    EXPECT_EQ(std::stoul(line), i + 1) << line;
    EXPECT_EQ(line.compare(classColumn, name.size() + 1, name + " "), 0) << line;
    EXPECT_TRUE(startsWith(line.substr(dxfColumn), str(want["dxfName"]) + " ")) << line;
  }
}

TEST(ClassesCommand, HelpAndVersionSucceed) {
  const ToolRun help = runCustents({"--help"});
  EXPECT_EQ(help.exitCode, 0) << help.err;
  EXPECT_NE(help.out.find("classes"), std::string::npos) << help.out;

  const ToolRun version = runCustents({"--version"});
  EXPECT_EQ(version.exitCode, 0) << version.err;
  EXPECT_EQ(version.out, std::string("custents ") + CUSTENTS_VERSION + "\n");
}

} // namespace
