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

TEST_F(PropertyPETest, CommonRowsDescribeTheEntitysCurrentProperties) {
  // A new entity follows its layer.
  EXPECT_EQ(0xC0000100u, pe.getComPropAtt(entity, 0).value.getUInt32());
  EXPECT_EQ(OdString("0"), pe.getComPropAtt(entity, 1).value.getString());
  EXPECT_EQ(-1, pe.getComPropAtt(entity, 4).value.getInt32());

  OdCmColor red;
  ASSERT_EQ(eOk, red.setColorIndex(1));
  entity->setColor(red);
  entity->setLayer(OD_T("Wall"));
  entity->setLinetype(OD_T("DASHED"));
  entity->setLinetypeScale(2.5);
  entity->setLineWeight(OdDb::kLnWt025);

  struct Expected {
    const char* name;
    const char* tip;
    OdInt32 editorKind;
    OdVariant value;
  } const expected[] = {{"颜色", "修改颜色", 1, OdVariant().setUInt32(0xC3000001u)},
                        {"图层", "修改图层", 0, textValue("Wall")},
                        {"线型", "修改线型", 0, textValue("DASHED")},
                        {"线型比例", "修改线型比例", 0, doubleValue(2.5)},
                        {"线宽", "修改线宽", 0, intValue(25)}};
  for (int row = 0; row < 5; ++row) {
    SCOPED_TRACE(row);
    const propAttribute attribute = pe.getPropAttributeByeId(entity, 0, row);
    EXPECT_EQ(row, attribute.index);
    EXPECT_EQ(OdString(expected[row].name), attribute.name);
    EXPECT_EQ(OdString(expected[row].tip), attribute.tip);
    EXPECT_TRUE(attribute.editable);
    EXPECT_FALSE(attribute.reserved);
    EXPECT_EQ(expected[row].editorKind, attribute.editorKind);
    const OdVariant& want = expected[row].value;
    const OdVariant got = pe.getComPropAtt(entity, row).value;
    ASSERT_EQ(want.type(), got.type());
    if (want.type() == OdVariant::kString)
      EXPECT_EQ(want.getString(), got.getString());
    else if (want.type() == OdVariant::kDouble)
      EXPECT_DOUBLE_EQ(want.getDouble(), got.getDouble());
    else
      EXPECT_EQ(want.getInt32(), got.getInt32());
  }

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
  for (int row : {5, 6, 100}) {
    SCOPED_TRACE(row);
    const propAttribute attribute = pe.getComPropAtt(entity, row);
    EXPECT_TRUE(attribute.name.isEmpty());
    EXPECT_TRUE(attribute.tip.isEmpty());
    EXPECT_EQ(OdVariant::kVoid, attribute.value.type());
    EXPECT_FALSE(attribute.editable);
    EXPECT_TRUE(pe.getPropAttributeByeId(entity, 0, row).name.isEmpty());
    EXPECT_FALSE(pe.setComPropAtt(entity, intValue(25), row));
    // The grid's entry accepts rows it does not know and changes nothing.
    EXPECT_TRUE(pe.setPropAttributeByeId(entity, intValue(25), 0, row));
  }
  EXPECT_TRUE(pe.getComPropAtt(entity, -1).name.isEmpty());
  EXPECT_FALSE(pe.setComPropAtt(entity, intValue(25), -1));
  for (int group : {1, 2, -1}) {
    SCOPED_TRACE(group);
    EXPECT_TRUE(pe.getPropAttributeByeId(entity, group, 0).name.isEmpty());
    EXPECT_TRUE(pe.setPropAttributeByeId(entity, intValue(25), group, 4));
  }
  EXPECT_EQ(before, stateOf(entity));
  // Without an entity: empty records and refusals.
  for (int row = 0; row < 5; ++row) {
    EXPECT_EQ(OdVariant::kVoid, pe.getPropAttributeByeId(nullptr, 0, row).value.type()) << row;
    EXPECT_FALSE(pe.setPropAttributeByeId(nullptr, intValue(25), 0, row)) << row;
  }
  EXPECT_TRUE(pe.getEntityName(nullptr).isEmpty());
  EXPECT_TRUE(pe.GetListInfo(nullptr).isEmpty());

  // One group, the common one.
  EXPECT_EQ(1, pe.getPropertyCount());
  const entityProperty common = pe.getPropertyByeId(entity, 0);
  EXPECT_EQ(1, common.flag);
  EXPECT_EQ(PropertyGridName::_propertycommonyname, common.name);
  EXPECT_EQ(5, common.count);
  const entityProperty none = pe.getPropertyByeId(entity, 1);
  EXPECT_EQ(0, none.flag);
  EXPECT_TRUE(none.name.isEmpty());
  EXPECT_EQ(0, none.count);

  EXPECT_EQ(0, pe.Reset(intValue(1)));
  EXPECT_EQ(OdString("HostTestEntity"), pe.getEntityName(entity));
}

TEST_F(PropertyPETest, ReadOnlyAndFreeStandingEntities) {
  const OdDbObjectId id = entity->objectId();
  entity = nullptr;
  OdDbEntityPtr reader = id.safeOpenObject(OdDb::kForRead);
  const std::string before = stateOf(reader);
  EXPECT_FALSE(pe.setPropAttributeByeId(reader, doubleValue(4.0), 0, 3));
  EXPECT_FALSE(pe.setPropAttributeByeId(reader, textValue("Wall"), 0, 1));
  EXPECT_EQ(before, stateOf(reader));
  EXPECT_EQ(OdString("0"), pe.getComPropAtt(reader, 1).value.getString());

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
