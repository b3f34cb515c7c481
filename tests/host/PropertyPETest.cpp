#include "PropertyPE.h"

#include "HostTestSupport.h"
#include "PropertyGridName.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

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

TEST_F(PropertyPETest, CommonRowsOfANewEntityFollowItsLayer) {
  EXPECT_EQ(0xC0000100u, pe.getComPropAtt(entity, 0).value.getUInt32());
  EXPECT_EQ(OdString("0"), pe.getComPropAtt(entity, 1).value.getString());
  EXPECT_EQ(-1, pe.getComPropAtt(entity, 4).value.getInt32());
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
}

TEST_F(PropertyPETest, ColourArrivesAsUnsignedOrSignedInteger) {
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

  struct Case {
    const char* what;
    int row;
    OdVariant value;
  } const cases[] = {
      {"colour as text", 0, textValue("1")},
      {"colour as double", 0, doubleValue(1.0)},
      {"colour with no colour method", 0, intValue(5)},
      {"colour as 64-bit integer", 0, OdVariant().setInt64(0xC3000001)},
      {"empty colour", 0, OdVariant()},
      {"layer as integer", 1, intValue(0)},
      {"unknown layer", 1, textValue("NoSuchLayer")},
      {"empty layer name", 1, textValue("")},
      {"linetype as bool", 2, OdVariant().setBool(true)},
      {"unknown linetype", 2, textValue("DASHDOTX")},
      {"scale as integer", 3, intValue(2)},
      {"zero scale", 3, doubleValue(0.0)},
      {"negative scale", 3, doubleValue(-1.5)},
      {"NaN scale", 3, doubleValue(nan)},
      {"infinite scale", 3, doubleValue(inf)},
      {"zero scale text", 3, textValue("0")},
      {"negative scale text", 3, textValue("-2")},
      {"NaN scale text", 3, textValue("nan")},
      {"infinite scale text", 3, textValue("inf")},
      {"scale text with trailing junk", 3, textValue("1.5x")},
      {"scale text of two numbers", 3, textValue("1.5 2")},
      {"empty scale text", 3, textValue("")},
      {"blank scale text", 3, textValue("   ")},
      {"lineweight as double", 4, doubleValue(25.0)},
      {"lineweight as text", 4, textValue("25")},
      {"lineweight that is no width", 4, intValue(7)},
      {"lineweight above the widest", 4, intValue(212)},
      {"lineweight below default", 4, intValue(-4)},
      {"lineweight as array", 4, OdVariant().setInt32Array(lineWeights)},
  };
  const CommonState before = CommonState::of(entity);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_FALSE(pe.setPropAttributeByeId(entity, c.value, 0, c.row));
    EXPECT_EQ(before, CommonState::of(entity));
  }
}

TEST_F(PropertyPETest, RowsAndGroupsOutsideTheCommonOnes) {
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
}

TEST_F(PropertyPETest, NullEntityGivesEmptyRecordsAndRefusals) {
  for (int row = 0; row < 5; ++row) {
    SCOPED_TRACE(row);
    const propAttribute attribute = pe.getPropAttributeByeId(nullptr, 0, row);
    EXPECT_TRUE(attribute.name.isEmpty());
    EXPECT_EQ(OdVariant::kVoid, attribute.value.type());
    EXPECT_FALSE(pe.setPropAttributeByeId(nullptr, intValue(25), 0, row));
  }
  EXPECT_TRUE(pe.getEntityName(nullptr).isEmpty());
  EXPECT_TRUE(pe.GetListInfo(nullptr).isEmpty());
}

TEST_F(PropertyPETest, EntityOpenForReadIsNotChanged) {
  const OdDbObjectId id = entity->objectId();
  entity = nullptr;
  OdDbEntityPtr reader = id.safeOpenObject(OdDb::kForRead);
  const CommonState before = CommonState::of(reader);
  EXPECT_FALSE(pe.setPropAttributeByeId(reader, doubleValue(4.0), 0, 3));
  EXPECT_FALSE(pe.setPropAttributeByeId(reader, textValue("Wall"), 0, 1));
  EXPECT_EQ(before, CommonState::of(reader));
  EXPECT_EQ(OdString("0"), pe.getComPropAtt(reader, 1).value.getString());
}

TEST_F(PropertyPETest, FreeStandingEntityTakesAllButNamedRows) {
  HostTestEntityPtr loose = HostTestEntity::createObject();
  EXPECT_TRUE(pe.setComPropAtt(loose, doubleValue(2.0), 3));
  EXPECT_DOUBLE_EQ(2.0, loose->linetypeScale());
  EXPECT_TRUE(pe.setComPropAtt(loose, intValue(13), 4));
  EXPECT_EQ(OdDb::kLnWt013, loose->lineWeight());
  // Layer and linetype names mean something only within a drawing.
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

TEST(PropertyGridNameTest, CaptionsOfTheSharedGroups) {
  EXPECT_EQ(OdString("常规"), PropertyGridName::_propertycommonyname);
  EXPECT_EQ(OdString("几何图形"), PropertyGridName::_propertygraphyname);
}

TEST(PropertyRecordsTest, DefaultRecordsAreEmpty) {
  const propAttribute attribute;
  EXPECT_EQ(0, attribute.index);
  EXPECT_TRUE(attribute.name.isEmpty() && attribute.tip.isEmpty());
  EXPECT_EQ(OdVariant::kVoid, attribute.value.type());
  EXPECT_FALSE(attribute.editable || attribute.reserved);
  EXPECT_EQ(0, attribute.editorKind);

  const EntMenuData entry;
  EXPECT_EQ(0, entry.id);
  EXPECT_TRUE(entry.text.isEmpty());
  EXPECT_TRUE(entry.flag1);
  EXPECT_FALSE(entry.flag2);
  EXPECT_EQ(0u, entry.data);
  EXPECT_EQ(0, entry.extra);
}

} // namespace
