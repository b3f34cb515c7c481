// `custents props`: the property pages the entities' extensions give for the sample drawing,
// as text and as JSON, and the value formatting behind them.

#include "ModuleSession.h"
#include "PropsCommand.h"
#include "SampleDrawing.h"
#include "tools/ToolRunner.h"

#include "OdVariant.h"
#include "PropertyPE.h"

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

  static rapidjson::Document pages;
};

rapidjson::Document PropsJson::pages;

/// One row or group header as text, so that a page reads as a list of lines.
std::string line(int index, const std::string& label, const std::string& tip,
                 const std::string& type, bool editable, int editorKind) {
  return std::to_string(index) + " " + label + " " + tip + " " + type + " editor " +
         std::to_string(editorKind) + (editable ? " editable" : "");
}

TEST_F(PropsJson, ListsEveryEntityOfTheSampleDrawingWithItsExtensionsPage) {
  // The same drawing built here, its pages read straight from the entities' own extensions.
  std::vector<std::string> expected, listed;
  {
    ModuleSession session(kModulePath);
    OdDbDatabasePtr db = custents::sample::buildSampleDrawing();
    for (const OdDbEntityPtr& entity : custents::sample::modelSpaceEntities(db.get())) {
      expected.push_back(entity->isA()->name().toUtf8() + " " +
                         entity->getDbHandle().ascii().toUtf8());
      const PropertyPEPtr pe = PropertyPE::cast(entity->isA()->getX(PropertyPE::desc()));
      for (int g = 0; !pe.isNull() && g < pe->getPropertyCount(); ++g) {
        const entityProperty group = pe->getPropertyByeId(entity, g);
        expected.push_back(line(group.flag, group.name.toUtf8(), "", "", false, group.count));
        for (int r = 0; r < group.count; ++r) {
          const propAttribute row = pe->getPropAttributeByeId(entity, g, r);
          expected.push_back(line(row.index, row.name.toUtf8(), row.tip.toUtf8(),
                                  OdVariant::typeName(row.value.varType()).toUtf8(), row.editable,
                                  row.editorKind));
        }
      }
    }
  }
  for (const auto& page : pages.GetArray()) {
    EXPECT_FALSE(page.HasMember("error")) << str(page["error"]);
    listed.push_back(str(page["class"]) + " " + str(page["handle"]));
    if (str(page["extension"]) == "PropertyPE")
      continue; // the host's common page, below
    for (const auto& group : page["groups"].GetArray()) {
      listed.push_back(line(group["flag"].GetInt(), str(group["caption"]), "", "", false,
                            group["count"].GetInt()));
      for (const auto& row : group["rows"].GetArray())
        listed.push_back(line(row["index"].GetInt(), str(row["label"]), str(row["tip"]),
                              str(row["valueType"]), row["editable"].GetBool(),
                              row["editorKind"].GetInt()));
    }
  }
  EXPECT_EQ(listed, expected);
}

TEST_F(PropsJson, EntitiesWithoutAnExtensionGetTheHostsCommonGroup) {
  std::vector<std::string> plain;
  for (const auto& page : pages.GetArray()) {
    if (str(page["extension"]) != "PropertyPE")
      continue;
    plain.push_back(str(page["class"]));
    EXPECT_EQ(str(page["name"]), str(page["class"]));
    const auto& groups = page["groups"];
    ASSERT_EQ(groups.Size(), 1u);
    ASSERT_EQ(groups[0]["rows"].Size(), 5u);
    const auto& color = groups[0]["rows"][0];
    EXPECT_EQ(color["editorKind"].GetInt(), 1);
    EXPECT_TRUE(color["value"].IsInt64());
  }
  EXPECT_EQ(plain,
            (std::vector<std::string>{"OdDbHatch", "OdDbHatch", "OdDbMesuarData", "OdDbMText"}));
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
  EXPECT_EQ(formatDouble(0.00001), "0.00001");
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
