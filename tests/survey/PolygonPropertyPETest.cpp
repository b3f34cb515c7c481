// The polygon's property page and right-click menu.

#include "survey/TriangleExtensions.h"

#include "DbDatabase.h"
#include "DbLine.h"
#include "MenuTables.h"
#include "OdError.h"
#include "PropertyGridName.h"

#include "GeoPolygonTestSupport.h"

namespace {

PropertyPEPtr polygonPage() {
  return PropertyPE::cast(OdDbGeoPolygon::desc()->getX(PropertyPE::desc()));
}

OdDbGeoPolygonPtr polygonOf(OdInt32 sides) {
  OdDbGeoPolygonPtr polygon = OdDbGeoPolygon::createObject();
  polygon->init(OdGePoint3d(1, 1, 0), sides);
  polygon->setValue(OdGePoint3d(4, 1, 0));
  return polygon;
}

TEST(PolygonPropertyPE, CommonGroupLeadsWithZeroAndGeometryWithOne) {
  PropertyPEPtr pe = polygonPage();
  ASSERT_FALSE(pe.isNull());
  OdDbGeoPolygonPtr p = polygonOf(6);
  EXPECT_EQ(pe->getEntityName(p), OdString(u"多边形"));
  EXPECT_EQ(pe->getPropertyCount(), 2);
  const entityProperty common = pe->getPropertyByeId(p, 0);
  EXPECT_EQ(common.flag, 0);
  EXPECT_EQ(common.name, PropertyGridName::_propertycommonyname);
  EXPECT_EQ(common.count, 5);
  const entityProperty geometry = pe->getPropertyByeId(p, 1);
  EXPECT_EQ(geometry.flag, 1);
  EXPECT_EQ(geometry.name, PropertyGridName::_propertygraphyname);
  EXPECT_EQ(geometry.count, 2);
  EXPECT_TRUE(pe->getPropertyByeId(p, 2).name.isEmpty());
}

TEST(PolygonPropertyPE, ShowsTheCentralAngleAndTheSideCount) {
  PropertyPEPtr pe = polygonPage();
  struct Case {
    OdInt32 sides;
    double degrees;
  } cases[] = {{3, 120.0}, {6, 60.0}, {12, 30.0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.sides);
    OdDbGeoPolygonPtr p = polygonOf(c.sides);
    const propAttribute angle = pe->getPropAttributeByeId(p, 1, 0);
    EXPECT_EQ(angle.index, 0);
    EXPECT_EQ(angle.name, OdString(u"角度"));
    EXPECT_EQ(angle.tip, OdString(u"查看角度"));
    ASSERT_EQ(angle.value.type(), OdVariant::kDouble);
    EXPECT_NEAR(angle.value.getDouble(), c.degrees, 1e-9);
    EXPECT_FALSE(angle.editable);

    const propAttribute sides = pe->getPropAttributeByeId(p, 1, 1);
    EXPECT_EQ(sides.index, 1);
    EXPECT_EQ(sides.name, OdString(u"边数"));
    EXPECT_EQ(sides.tip, OdString(u"修改边数"));
    ASSERT_EQ(sides.value.type(), OdVariant::kDouble);
    EXPECT_EQ(sides.value.getDouble(), c.sides);
    EXPECT_TRUE(sides.editable);
    EXPECT_FALSE(sides.reserved);
    EXPECT_EQ(sides.editorKind, 0);
  }
  OdDbGeoPolygonPtr p = polygonOf(6);
  EXPECT_TRUE(pe->getPropAttributeByeId(p, 1, 2).name.isEmpty());
  EXPECT_TRUE(pe->getPropAttributeByeId(p, 0, 5).name.isEmpty());
}

TEST(PolygonPropertyPE, PageOfAPolygonOpenedForReadShowsTheAngle) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const OdDbObjectId id = db->addOdDbObject(polygonOf(4));
  OdDbGeoPolygonPtr readOnly = OdDbGeoPolygon::cast(id.openObject(OdDb::kForRead));
  ASSERT_FALSE(readOnly.isNull());
  EXPECT_NEAR(polygonPage()->getPropAttributeByeId(readOnly, 1, 0).value.getDouble(), 90.0, 1e-9);
}

TEST(PolygonPropertyPE, SideCountFromTheGridIsRefusedAndTheSidesStay) {
  PropertyPEPtr pe = polygonPage();
  const OdVariant refused[] = {OdVariant(OdString(u"8")),   OdVariant(OdString(u"0")),
                               OdVariant(OdString(u"nan")), OdVariant(OdString(u"1e999")),
                               OdVariant(OdString(u"abc")), OdVariant(8.0),
                               OdVariant(OdInt32(8))};
  for (int row : {0, 1, 2}) {
    for (const OdVariant& value : refused) {
      OdDbGeoPolygonPtr p = polygonOf(6);
      EXPECT_FALSE(pe->setPropAttributeByeId(p, value, 1, row)) << row;
      EXPECT_EQ(p->GetVertexNub(), 6.0);
      EXPECT_EQ(p->getPts().size(), 6u);
    }
  }
}

TEST(PolygonPropertyPE, CommonRowsAreSetAndUnknownPlacesAcceptedWithoutChange) {
  PropertyPEPtr pe = polygonPage();
  OdDbGeoPolygonPtr p = polygonOf(5);
  OdVariant green;
  green.setInt32(static_cast<OdInt32>(0xC3000003));
  EXPECT_TRUE(pe->setPropAttributeByeId(p, green, 0, 0));
  EXPECT_EQ(p->colorIndex(), 3);
  EXPECT_FALSE(pe->setPropAttributeByeId(p, OdVariant(OdString(u"1")), 0, 0));

  OdVariant red;
  red.setInt32(static_cast<OdInt32>(0xC3000001));
  for (int group : {0, 2, 5}) {
    EXPECT_TRUE(pe->setPropAttributeByeId(p, red, group, 7)) << group;
    EXPECT_EQ(p->colorIndex(), 3);
  }
}

TEST(PolygonPropertyPE, RefusesOtherClasses) {
  PropertyPEPtr pe = polygonPage();
  OdDbLinePtr line = OdDbLine::createObject();
  EXPECT_THROW(pe->getPropAttributeByeId(line, 1, 1), OdError_NotThatKindOfClass);
  for (int group : {0, 1})
    EXPECT_THROW(pe->setPropAttributeByeId(line, OdVariant(OdString(u"3")), group, 1),
                 OdError_NotThatKindOfClass);
  EXPECT_FALSE(pe->setPropAttributeByeId(nullptr, OdVariant(OdString(u"3")), 1, 1));
}

TEST(PolygonPropertyPE, MenuIsTheHostsWithPropertiesGreyedOut) {
  const std::vector<int> saved = votherBaseDrawing;
  const int missing = 987656;
  ASSERT_EQ(g_mapAllRMenu.count(missing), 0u);
  votherBaseDrawing.push_back(missing);

  std::vector<EntMenuData> menus;
  const bool answered = polygonPage()->GetRMenus(menus);
  const std::vector<int> ids = votherBaseDrawing;
  votherBaseDrawing = saved;

  EXPECT_TRUE(answered);
  ASSERT_EQ(menus.size(), ids.size());
  bool sawProperties = false;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    SCOPED_TRACE(ids[i]);
    const EntMenuData expected =
        g_mapAllRMenu.count(ids[i]) ? g_mapAllRMenu.at(ids[i]) : EntMenuData();
    EXPECT_EQ(menus[i].id, expected.id);
    EXPECT_EQ(menus[i].text, expected.text);
    EXPECT_EQ(menus[i].data, expected.data);
    EXPECT_EQ(menus[i].extra, expected.extra);
    EXPECT_EQ(menus[i].flag1, ids[i] == kMenuProperties ? false : expected.flag1);
    sawProperties |= ids[i] == kMenuProperties;
  }
  EXPECT_TRUE(sawProperties);
  EXPECT_EQ(menus.back().id, 0); // the missing id's default entry
}

} // namespace
