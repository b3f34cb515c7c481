// `custents props`: the property pages the entities' extensions give for the sample drawing,
// as text and as JSON, and the value formatting behind them.

#include "ModuleSession.h"
#include "PropsCommand.h"
#include "SampleDrawing.h"
#include "tools/ToolRunner.h"

#include "OdVariant.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

namespace {

const std::string kModulePath = std::string(CUSTENTS_BIN_DIR) + "/CustEnts.tx";

/// The pages printed by `custents props --json`.
class PropsJson : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    const ToolRun run = runCustents({"props", "--json"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    ASSERT_EQ(run.err, "");
    pages = parseJson(run.out);
    ASSERT_TRUE(pages.IsArray());
  }

  /// The pages of one class, in drawing order.
  static std::vector<const rapidjson::Value*> pagesOf(const std::string& cls) {
    std::vector<const rapidjson::Value*> found;
    for (const auto& page : pages.GetArray())
      if (str(page["class"]) == cls)
        found.push_back(&page);
    return found;
  }

  static rapidjson::Document pages;
};

rapidjson::Document PropsJson::pages;

TEST_F(PropsJson, ListsEveryEntityOfTheSampleDrawingInOrder) {
  // The same drawing built here, read back through the platform alone.
  std::vector<std::pair<std::string, std::string>> expected;
  {
    ModuleSession session(kModulePath);
    OdDbDatabasePtr db = custents::sample::buildSampleDrawing();
    for (const OdDbEntityPtr& entity : custents::sample::modelSpaceEntities(db.get()))
      expected.emplace_back(entity->isA()->name().toUtf8(), entity->getDbHandle().ascii().toUtf8());
  }
  ASSERT_EQ(pages.Size(), expected.size());
  for (rapidjson::SizeType i = 0; i < pages.Size(); ++i) {
    EXPECT_EQ(str(pages[i]["class"]), expected[i].first) << i;
    EXPECT_EQ(str(pages[i]["handle"]), expected[i].second) << i;
    EXPECT_FALSE(pages[i].HasMember("error")) << str(pages[i]["error"]);
  }
}

TEST_F(PropsJson, GroupsAndRowsCarryEveryFieldOfThePage) {
  const std::vector<const rapidjson::Value*> rects = pagesOf("OdDbGeoRect");
  ASSERT_FALSE(rects.empty());
  const rapidjson::Value& groups = (*rects[0])["groups"];
  ASSERT_EQ(groups.Size(), 2u);
  EXPECT_EQ(str(groups[0]["caption"]), "常规");
  EXPECT_EQ(groups[0]["count"].GetInt(), 5);
  EXPECT_EQ(str(groups[1]["caption"]), "几何图形");
  EXPECT_EQ(groups[1]["flag"].GetInt(), 1);
  EXPECT_EQ(groups[1]["count"].GetInt(), 4);
  const rapidjson::Value& rows = groups[1]["rows"];
  ASSERT_EQ(rows.Size(), 4u);
  const char* labels[] = {"长", "宽", "周长", "面积"};
  for (rapidjson::SizeType i = 0; i < 4; ++i) {
    EXPECT_EQ(str(rows[i]["label"]), labels[i]);
    EXPECT_EQ(rows[i]["index"].GetInt(), static_cast<int>(i));
    EXPECT_EQ(rows[i]["editable"].GetBool(), i < 2) << labels[i];
    EXPECT_EQ(str(rows[i]["tip"]), std::string(i < 2 ? "修改矩形的" : "查看矩形的") + labels[i]);
    EXPECT_EQ(str(rows[i]["valueType"]), "Double");
    EXPECT_EQ(rows[i]["editorKind"].GetInt(), 0);
    EXPECT_TRUE(rows[i]["value"].IsNumber());
  }
}

TEST_F(PropsJson, EntitiesWithoutAnExtensionGetTheCommonGroup) {
  std::vector<const rapidjson::Value*> plain = pagesOf("OdDbMesuarData");
  const std::vector<const rapidjson::Value*> hatches = pagesOf("OdDbHatch");
  ASSERT_EQ(plain.size(), 1u);
  ASSERT_EQ(hatches.size(), 2u);
  plain.insert(plain.end(), hatches.begin(), hatches.end());
  for (const rapidjson::Value* page : plain) {
    EXPECT_EQ(str((*page)["extension"]), "PropertyPE");
    EXPECT_EQ(str((*page)["name"]), str((*page)["class"]));
    const auto& groups = (*page)["groups"];
    ASSERT_EQ(groups.Size(), 1u);
    ASSERT_EQ(groups[0]["rows"].Size(), 5u);
    const auto& color = groups[0]["rows"][0];
    EXPECT_EQ(color["editorKind"].GetInt(), 1);
    EXPECT_TRUE(color["value"].IsInt64());
  }
}

TEST_F(PropsJson, TextOutputShowsEveryEntityAndItsRows) {
  const ToolRun text = runCustents({"props"});
  ASSERT_EQ(text.exitCode, 0) << text.err;
  EXPECT_EQ(text.err, "");
  for (const auto& page : pages.GetArray()) {
    const std::string heading =
        str(page["class"]) + "  handle " + str(page["handle"]) + "  " + str(page["name"]);
    EXPECT_NE(text.out.find(heading), std::string::npos) << heading;
  }
  for (const char* label : {"长", "宽", "周长", "面积", "角度", "边数", "ACI 1", "修改矩形的长"})
    EXPECT_NE(text.out.find(label), std::string::npos) << label;
  EXPECT_NE(text.out.find("Group 1: 几何图形"), std::string::npos);
}

// --- Value formatting -----------------------------------------------------------------------

TEST(PropertyValues, DoublesPrintWithTheDigitsThatGiveThemBack) {
  for (double value : {0.0, 0.1, 1.0 / 3.0, 120.0, -2.5, 1e-300, 8400.000000000002,
                       std::numeric_limits<double>::max()}) {
    const std::string text = formatDouble(value);
    EXPECT_EQ(std::strtod(text.c_str(), nullptr), value) << text;
  }
  EXPECT_EQ(formatDouble(120.0), "120");
  EXPECT_EQ(formatDouble(0.1), "0.1");
  EXPECT_EQ(formatDouble(std::nan("")), "nan");
  EXPECT_EQ(formatDouble(-std::numeric_limits<double>::infinity()), "-inf");
}

TEST(PropertyValues, ColoursShowTheirPackedValueAndMeaning) {
  const struct {
    OdUInt32 packed;
    const char* text;
  } cases[] = {
      {0xC0000100u, "0xC0000100 ByLayer"},      {0xC1000000u, "0xC1000000 ByBlock"},
      {0xC3000005u, "0xC3000005 ACI 5"},        {0xC2FFC850u, "0xC2FFC850 RGB(255,200,80)"},
      {0xC5000007u, "0xC5000007 Foreground"},   {0xC8000000u, "0xC8000000 None"},
      {0x12345678u, "0x12345678 not a colour"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(describeColor(c.packed), c.text);
}

TEST(PropertyValues, EachVariantTypeIsReadAsItsKind) {
  using Kind = PropertyValue::Kind;
  OdIntArray ints;
  ints.append(1);
  ints.append(-2);
  const struct {
    OdVariant value;
    int editorKind;
    Kind kind;
    const char* text;
    const char* type;
  } cases[] = {
      {OdVariant(), 0, Kind::kEmpty, "", "Void"},
      {OdVariant(OdString(OD_T("图层1"))), 0, Kind::kString, "图层1", "String"},
      {OdVariant(true), 3, Kind::kBool, "yes", "Bool"},
      {OdVariant(2.25), 0, Kind::kDouble, "2.25", "Double"},
      {OdVariant(static_cast<OdUInt32>(0xC3000001u)), 1, Kind::kColor, "0xC3000001 ACI 1", "Int32"},
      {OdVariant(static_cast<OdInt32>(-1)), 0, Kind::kInteger, "-1", "Int32"},
      {OdVariant(ints), 0, Kind::kOther, "[1, -2]", "Int32 array"},
  };
  for (const auto& c : cases) {
    const PropertyValue v = describePropertyValue(c.value, c.editorKind);
    EXPECT_EQ(v.kind, c.kind) << c.text;
    EXPECT_EQ(v.text, c.text);
    EXPECT_EQ(v.typeName, c.type);
  }
  EXPECT_EQ(describePropertyValue(OdVariant(static_cast<OdUInt32>(0xC3000001u)), 1).integer,
            0xC3000001LL);
}

} // namespace
