#include "PropertyPE.h"

#include "HostTestSupport.h"
#include "PropertyGridName.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <vector>

namespace {

// The base extension with its protected common-row setter opened up for the tests.
class CommonRows : public PropertyPE {
public:
  using PropertyPE::setComPropAtt;
};

/// Everything the common group shows, read straight from the entity.
struct CommonState {
  OdUInt32 color;
  OdString layer;
  OdString linetype;
  double linetypeScale;
  int lineWeight;

  static CommonState of(const OdDbEntity* entity) {
    return {entity->color().color(), entity->layer(), entity->linetype(), entity->linetypeScale(),
            static_cast<int>(entity->lineWeight())};
  }
  bool operator==(const CommonState& other) const {
    return color == other.color && layer == other.layer && linetype == other.linetype &&
           linetypeScale == other.linetypeScale && lineWeight == other.lineWeight;
  }
};

std::ostream& operator<<(std::ostream& out, const CommonState& s) {
  return out << std::hex << s.color << std::dec << " " << s.layer.toUtf8() << " "
             << s.linetype.toUtf8() << " " << s.linetypeScale << " " << s.lineWeight;
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
  } const expected[] = {{"颜色", "修改颜色", 1},
                        {"图层", "修改图层", 0},
                        {"线型", "修改线型", 0},
                        {"线型比例", "修改线型比例", 0},
                        {"线宽", "修改线宽", 0}};
  for (int row = 0; row < 5; ++row) {
    SCOPED_TRACE(row);
    const propAttribute attribute = pe.getPropAttributeByeId(entity, 0, row);
    EXPECT_EQ(row, attribute.index);
    EXPECT_EQ(OdString(expected[row].name), attribute.name);
    EXPECT_EQ(OdString(expected[row].tip), attribute.tip);
    EXPECT_TRUE(attribute.editable);
    EXPECT_FALSE(attribute.reserved);
    EXPECT_EQ(expected[row].editorKind, attribute.editorKind);
  }

  const OdVariant color = pe.getComPropAtt(entity, 0).value;
  ASSERT_EQ(OdVariant::kUInt32, color.type());
  EXPECT_EQ(0xC3000001u, color.getUInt32());
  const OdVariant layer = pe.getComPropAtt(entity, 1).value;
  ASSERT_EQ(OdVariant::kString, layer.type());
  EXPECT_EQ(OdString("Wall"), layer.getString());
  EXPECT_EQ(OdString("DASHED"), pe.getComPropAtt(entity, 2).value.getString());
  const OdVariant scale = pe.getComPropAtt(entity, 3).value;
  ASSERT_EQ(OdVariant::kDouble, scale.type());
  EXPECT_DOUBLE_EQ(2.5, scale.getDouble());
  const OdVariant lineWeight = pe.getComPropAtt(entity, 4).value;
  ASSERT_EQ(OdVariant::kInt32, lineWeight.type());
  EXPECT_EQ(25, lineWeight.getInt32());
}

TEST_F(PropertyPETest, SettingACommonRowChangesTheEntity) {
  // Each set goes through the public entry the grid uses; the next row reads it back.
  ASSERT_TRUE(pe.setPropAttributeByeId(entity, intValue(static_cast<OdInt32>(0xC2102030u)), 0, 0));
  EXPECT_EQ(0xC2102030u, entity->color().color());
  EXPECT_EQ(0xC2102030u, pe.getComPropAtt(entity, 0).value.getUInt32());

  ASSERT_TRUE(pe.setPropAttributeByeId(entity, textValue("Wall"), 0, 1));
  EXPECT_EQ(OdString("Wall"), entity->layer());
  // Layer names are found without regard to letter case; the table's spelling is kept.
  ASSERT_TRUE(pe.setPropAttributeByeId(entity, textValue("0"), 0, 1));
  ASSERT_TRUE(pe.setPropAttributeByeId(entity, textValue("WALL"), 0, 1));
  EXPECT_EQ(OdString("Wall"), entity->layer());

  ASSERT_TRUE(pe.setPropAttributeByeId(entity, textValue("dashed"), 0, 2));
  EXPECT_EQ(OdString("DASHED"), entity->linetype());
  ASSERT_TRUE(pe.setPropAttributeByeId(entity, textValue("Continuous"), 0, 2));
  EXPECT_EQ(OdString("Continuous"), entity->linetype());

  ASSERT_TRUE(pe.setPropAttributeByeId(entity, doubleValue(0.75), 0, 3));
  EXPECT_DOUBLE_EQ(0.75, entity->linetypeScale());
  ASSERT_TRUE(pe.setPropAttributeByeId(entity, textValue(" 3.5 "), 0, 3));
  EXPECT_DOUBLE_EQ(3.5, entity->linetypeScale());
  ASSERT_TRUE(pe.setPropAttributeByeId(entity, textValue("1e1"), 0, 3));
  EXPECT_DOUBLE_EQ(10.0, entity->linetypeScale());

  ASSERT_TRUE(pe.setPropAttributeByeId(entity, intValue(50), 0, 4));
  EXPECT_EQ(OdDb::kLnWt050, entity->lineWeight());
  ASSERT_TRUE(pe.setPropAttributeByeId(entity, intValue(-2), 0, 4));
  EXPECT_EQ(OdDb::kLnWtByBlock, entity->lineWeight());
  ASSERT_TRUE(pe.setComPropAtt(entity, intValue(-3), 4));
  EXPECT_EQ(OdDb::kLnWtByLwDefault, entity->lineWeight());

  // kInt32 and kUInt32 are one type code; a colour stored unsigned is taken as well.
  ASSERT_TRUE(pe.setComPropAtt(entity, OdVariant().setUInt32(0xC3000005u), 0));
  EXPECT_EQ(0xC3000005u, entity->color().color());
  OdInt32 byReference = static_cast<OdInt32>(0xC1000000u);
  ASSERT_TRUE(pe.setComPropAtt(entity, OdVariant().setInt32Ptr(&byReference), 0));
  EXPECT_TRUE(entity->color().isByBlock());
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
  const CommonState before = CommonState::of(entity);
  for (int row = 0; row < 5; ++row)
    for (std::size_t i = 0; i < refused[row].size(); ++i) {
      SCOPED_TRACE(testing::Message() << "row " << row << " value " << i);
      EXPECT_FALSE(pe.setPropAttributeByeId(entity, refused[row][i], 0, row));
      EXPECT_EQ(before, CommonState::of(entity));
    }
}

TEST_F(PropertyPETest, RowsGroupsAndEntitiesOutsideTheCommonOnes) {
  const CommonState before = CommonState::of(entity);
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
  EXPECT_EQ(before, CommonState::of(entity));
  // Without an entity: empty records and refusals.
  for (int row = 0; row < 5; ++row) {
    EXPECT_EQ(OdVariant::kVoid, pe.getPropAttributeByeId(nullptr, 0, row).value.type()) << row;
    EXPECT_FALSE(pe.setPropAttributeByeId(nullptr, intValue(25), 0, row)) << row;
  }
  EXPECT_TRUE(pe.getEntityName(nullptr).isEmpty());
  EXPECT_TRUE(pe.GetListInfo(nullptr).isEmpty());
}

TEST_F(PropertyPETest, ReadOnlyAndFreeStandingEntities) {
  const OdDbObjectId id = entity->objectId();
  entity = nullptr;
  OdDbEntityPtr reader = id.safeOpenObject(OdDb::kForRead);
  const CommonState before = CommonState::of(reader);
  EXPECT_FALSE(pe.setPropAttributeByeId(reader, doubleValue(4.0), 0, 3));
  EXPECT_FALSE(pe.setPropAttributeByeId(reader, textValue("Wall"), 0, 1));
  EXPECT_EQ(before, CommonState::of(reader));
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

TEST_F(PropertyPETest, GroupsAndNeutralOperations) {
  EXPECT_EQ(1, pe.getPropertyCount());
  const entityProperty common = pe.getPropertyByeId(entity, 0);
  EXPECT_EQ(1, common.flag);
  EXPECT_EQ(PropertyGridName::_propertycommonyname, common.name);
  EXPECT_EQ(5, common.count);
  const entityProperty none = pe.getPropertyByeId(entity, 1);
  EXPECT_EQ(0, none.flag);
  EXPECT_TRUE(none.name.isEmpty());
  EXPECT_EQ(0, none.count);

  EXPECT_EQ(0, pe.getAttributeCount(entity, 0));
  std::vector<MenuMap> items;
  EXPECT_FALSE(pe.GetEntityMenuItemMap(items));
  EXPECT_TRUE(items.empty());
  EXPECT_TRUE(pe.getZCMXName(entity).isEmpty());
  OdArray<OdString> operations;
  pe.GetOperationItem(operations);
  EXPECT_TRUE(operations.isEmpty());
  std::vector<EntMenuData> menus;
  EXPECT_TRUE(pe.GetRMenus(menus));
  EXPECT_TRUE(menus.empty());
  EXPECT_EQ(0, pe.Reset(intValue(1)));
  EXPECT_EQ(OdString("HostTestEntity"), pe.getEntityName(entity));
}

TEST_F(PropertyPETest, ListTextNamesClassHandleAndCommonProperties) {
  OdCmColor color;
  color.setRGB(255, 128, 0);
  entity->setColor(color);
  entity->setLayer(OD_T("Wall"));
  entity->setLinetype(OD_T("DASHED"));
  entity->setLinetypeScale(2.5);
  entity->setLineWeight(OdDb::kLnWt025);
  const OdString expected = OdString("类名:HostTestEntity\n句柄:") + entity->getDbHandle().ascii() +
                            OdString("\n颜色:RGB(255,128,0)\n图层:Wall\n线型:DASHED\n"
                                     "线型比例:2.5000\n线宽:0.25mm");
  EXPECT_EQ(expected.toUtf8(), pe.GetListInfo(entity).toUtf8());
  EXPECT_FALSE(entity->getDbHandle().isNull());

  HostTestEntityPtr loose = HostTestEntity::createObject();
  OdCmColor index;
  index.setColorIndex(3);
  loose->setColor(index);
  EXPECT_EQ(std::string("类名:HostTestEntity\n句柄:0\n颜色:索引3\n图层:0\n线型:ByLayer\n"
                        "线型比例:1.0000\n线宽:ByLayer"),
            pe.GetListInfo(loose).toUtf8());
}

} // namespace
