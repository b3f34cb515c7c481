#include "PropertyPE.h"

#include "HostTestSupport.h"
#include "PropertyGridName.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <iomanip>
#include <sstream>
#include <vector>

namespace {

// The base extension with its protected common-row setter opened up for the tests.
class CommonRows : public PropertyPE {
public:
  using PropertyPE::setComPropAtt;
};

/// Everything the common group shows, read straight from the entity: colour (hex), layer,
/// linetype, linetype scale, lineweight.
std::string stateOf(const OdDbEntity* entity) {
  std::ostringstream out;
  out << std::hex << entity->color().color() << std::dec << std::setprecision(17) << " "
      << entity->layer().toUtf8() << " " << entity->linetype().toUtf8() << " "
      << entity->linetypeScale() << " " << static_cast<int>(entity->lineWeight());
  return out.str();
}

OdVariant intValue(OdInt32 value) {
  return OdVariant().setInt32(value);
}
OdVariant textValue(const char* utf8) {
  return OdVariant().setString(OdString(utf8));
}
OdVariant doubleValue(double value) {
  return OdVariant().setDouble(value);
}

class PropertyPETest : public ::testing::Test {
protected:
  void SetUp() override {
    database = newTestDatabase();
    entity = addTestEntity(database);
  }

  OdStaticRxObject<CommonRows> pe;
  OdDbDatabasePtr database;
  HostTestEntityPtr entity;
};

TEST_F(PropertyPETest, CommonRowsShowTheEntitysCurrentProperties) {
  // Each row editable with a tip saying so, numbered, of its value's type, the colour row alone
  // with the colour picker, and showing what the entity holds.
  const auto rows = [this] {
    std::ostringstream out;
    for (int row = 0; row < 5; ++row) {
      const propAttribute attribute = pe.getPropAttributeByeId(entity, 0, row);
      const OdVariant& value = attribute.value;
      if (attribute.index != row || !attribute.editable || attribute.reserved ||
          attribute.tip.left(2) != OdString(u"修改") || attribute.editorKind != (row == 0 ? 1 : 0))
        out << "[row " << row << " not an editable row] ";
      if (value.type() == OdVariant::kInt32)
        out << (row == 0 ? std::hex : std::dec) << value.getInt32() << std::dec << " ";
      else if (value.type() == OdVariant::kString)
        out << value.getString().toUtf8() << " ";
      else if (value.type() == OdVariant::kDouble)
        out << std::setprecision(17) << value.getDouble() << " ";
    }
    return out.str();
  };
  // A new entity follows its layer.
  EXPECT_EQ("c0000100 0 ByLayer 1 -1 ", rows());
  OdCmColor red;
  ASSERT_EQ(eOk, red.setColorIndex(1));
  entity->setColor(red);
  entity->setLayer(OD_T("Wall"));
  entity->setLinetype(OD_T("DASHED"));
  entity->setLinetypeScale(2.5);
  entity->setLineWeight(OdDb::kLnWt025);
  EXPECT_EQ("c3000001 Wall DASHED 2.5 25 ", rows());

  // The list text names class, handle and the common properties.
  EXPECT_FALSE(entity->getDbHandle().isNull());
  EXPECT_EQ((OdString("类名:HostTestEntity\n句柄:") + entity->getDbHandle().ascii() +
             OdString("\n颜色:索引1\n图层:Wall\n线型:DASHED\n线型比例:2.5000\n线宽:0.25mm"))
                .toUtf8(),
            pe.GetListInfo(entity).toUtf8());
  HostTestEntityPtr loose = HostTestEntity::createObject();
  OdCmColor orange;
  orange.setRGB(255, 128, 0);
  loose->setColor(orange);
  EXPECT_EQ(std::string("类名:HostTestEntity\n句柄:0\n颜色:RGB(255,128,0)\n图层:0\n线型:ByLayer\n"
                        "线型比例:1.0000\n线宽:ByLayer"),
            pe.GetListInfo(loose).toUtf8());
}

TEST_F(PropertyPETest, SettingACommonRowChangesTheEntity) {
  // Each set goes through the public entry the grid uses; the entity is then as stated.
  OdInt32 byReference = static_cast<OdInt32>(0xC1000000u);
  struct Step {
    int row;
    OdVariant value;
    const char* state; // colour layer linetype scale lineweight
  } const steps[] = {
      {0, intValue(static_cast<OdInt32>(0xC2102030u)), "c2102030 0 ByLayer 1 -1"},
      {1, textValue("Wall"), "c2102030 Wall ByLayer 1 -1"},
      // Layer and linetype names are found without regard to letter case; the table's
      // spelling is kept.
      {1, textValue("WALL"), "c2102030 Wall ByLayer 1 -1"},
      {2, textValue("dashed"), "c2102030 Wall DASHED 1 -1"},
      {2, textValue("Continuous"), "c2102030 Wall Continuous 1 -1"},
      {3, doubleValue(0.75), "c2102030 Wall Continuous 0.75 -1"},
      {3, textValue(" 3.5 "), "c2102030 Wall Continuous 3.5 -1"},
      {3, textValue("1e1"), "c2102030 Wall Continuous 10 -1"},
      {4, intValue(50), "c2102030 Wall Continuous 10 50"},
      {4, intValue(-2), "c2102030 Wall Continuous 10 -2"},
      // kInt32 and kUInt32 are one type code; a colour stored unsigned is taken as well.
      {0, OdVariant().setUInt32(0xC3000005u), "c3000005 Wall Continuous 10 -2"},
      {0, OdVariant().setInt32Ptr(&byReference), "c1000000 Wall Continuous 10 -2"},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(step.state);
    ASSERT_TRUE(pe.setPropAttributeByeId(entity, step.value, 0, step.row));
    EXPECT_EQ(step.state, stateOf(entity));
  }
  EXPECT_EQ(0xC1000000u, pe.getComPropAtt(entity, 0).value.getUInt32());
}

TEST_F(PropertyPETest, RefusedValuesLeaveTheEntityUnchanged) {
  entity->setLayer(OD_T("Wall"));
  entity->setLinetypeScale(2.0);
  entity->setLineWeight(OdDb::kLnWt030);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  OdIntArray lineWeights;
  lineWeights.append(25);

  // Per row: values of the wrong kind, names the drawing lacks, sizes no lineweight or scale has.
  const std::vector<OdVariant> refused[5] = {
      {textValue("1"), doubleValue(1.0), intValue(5), OdVariant().setInt64(0xC3000001),
       OdVariant()},
      {intValue(0), textValue("NoSuchLayer"), textValue("")},
      {OdVariant().setBool(true), textValue("DASHDOTX")},
      {intValue(2), doubleValue(0.0), doubleValue(-1.5), doubleValue(nan), doubleValue(inf),
       textValue("0"), textValue("-2"), textValue("nan"), textValue("inf"), textValue("1.5x"),
       textValue("1.5 2"), textValue(""), textValue("   ")},
      {doubleValue(25.0), textValue("25"), intValue(7), intValue(212), intValue(-4),
       OdVariant().setInt32Array(lineWeights)},
  };
  const std::string before = stateOf(entity);
  for (int row = 0; row < 5; ++row)
    for (std::size_t i = 0; i < refused[row].size(); ++i) {
      SCOPED_TRACE(testing::Message() << "row " << row << " value " << i);
      EXPECT_FALSE(pe.setPropAttributeByeId(entity, refused[row][i], 0, row));
      EXPECT_EQ(before, stateOf(entity));
    }
}

TEST_F(PropertyPETest, OnlyTheCommonGroupAndItsRowsExist) {
  const std::string before = stateOf(entity);
  // Other rows and groups are empty records; the grid's entry accepts them and changes nothing.
  for (const auto& [group, row] : {std::pair{0, 5}, {0, 100}, {1, 0}, {2, 4}, {-1, 4}}) {
    SCOPED_TRACE(testing::Message() << "group " << group << " row " << row);
    const propAttribute attribute = pe.getPropAttributeByeId(entity, group, row);
    EXPECT_TRUE(attribute.name.isEmpty() && attribute.tip.isEmpty() && !attribute.editable);
    EXPECT_EQ(OdVariant::kVoid, attribute.value.type());
    EXPECT_TRUE(pe.setPropAttributeByeId(entity, intValue(25), group, row));
  }
  for (int row : {5, -1}) {
    EXPECT_TRUE(pe.getComPropAtt(entity, row).name.isEmpty()) << row;
    EXPECT_FALSE(pe.setComPropAtt(entity, intValue(25), row)) << row;
  }
  EXPECT_EQ(before, stateOf(entity));
  // Without an entity: empty records and refusals.
  for (int row = 0; row < 5; ++row) {
    EXPECT_EQ(OdVariant::kVoid, pe.getPropAttributeByeId(nullptr, 0, row).value.type()) << row;
    EXPECT_FALSE(pe.setPropAttributeByeId(nullptr, intValue(25), 0, row)) << row;
  }
  EXPECT_TRUE(pe.getEntityName(nullptr).isEmpty());
  EXPECT_TRUE(pe.GetListInfo(nullptr).isEmpty());

  EXPECT_EQ(1, pe.getPropertyCount());
  const entityProperty common = pe.getPropertyByeId(entity, 0);
  EXPECT_EQ(1, common.flag);
  EXPECT_EQ(PropertyGridName::_propertycommonyname, common.name);
  EXPECT_EQ(5, common.count);
  const entityProperty none = pe.getPropertyByeId(entity, 1);
  EXPECT_TRUE(none.flag == 0 && none.name.isEmpty() && none.count == 0);
}

TEST_F(PropertyPETest, ReadOnlyAndFreeStandingEntities) {
  const OdDbObjectId id = entity->objectId();
  entity = nullptr;
  OdDbEntityPtr reader = id.safeOpenObject(OdDb::kForRead);
  EXPECT_FALSE(pe.setPropAttributeByeId(reader, doubleValue(4.0), 0, 3));
  EXPECT_FALSE(pe.setPropAttributeByeId(reader, textValue("Wall"), 0, 1));
  EXPECT_EQ("c0000100 0 ByLayer 1 -1", stateOf(reader));

  // A free-standing entity takes all but the named rows, which mean something only in a drawing.
  HostTestEntityPtr loose = HostTestEntity::createObject();
  EXPECT_TRUE(pe.setComPropAtt(loose, doubleValue(2.0), 3));
  EXPECT_DOUBLE_EQ(2.0, loose->linetypeScale());
  EXPECT_TRUE(pe.setComPropAtt(loose, intValue(13), 4));
  EXPECT_EQ(OdDb::kLnWt013, loose->lineWeight());
  EXPECT_FALSE(pe.setComPropAtt(loose, textValue("0"), 1));
  EXPECT_FALSE(pe.setComPropAtt(loose, textValue("Continuous"), 2));
}

} // namespace
