// The triangle's property page and right-click menu.

#include "survey/TriangleExtensions.h"

#include "DbLine.h"
#include "MenuTables.h"
#include "OdError.h"
#include "PropertyGridName.h"

#include "GeoPolygonTestSupport.h"

#include <cmath>

namespace {

PropertyPEPtr trianglePage() {
  return PropertyPE::cast(OdDbGeoTriangle::desc()->getX(PropertyPE::desc()));
}

OdDbGeoTrianglePtr rightTriangle() {
  return OdDbGeoTrianglePtr(new OdDbGeoTriangle({0, 0, 0}, {3, 0, 0}, {0, 4, 0}));
}

TEST(TrianglePropertyPE, HasTheCommonAndTheGeometryGroup) {
  PropertyPEPtr pe = trianglePage();
  ASSERT_FALSE(pe.isNull());
  OdDbGeoTrianglePtr t = rightTriangle();
  EXPECT_EQ(pe->getEntityName(t), OdString(u"三角形"));
  EXPECT_EQ(pe->getPropertyCount(), 2);
  const entityProperty common = pe->getPropertyByeId(t, 0);
  EXPECT_EQ(common.flag, 1);
  EXPECT_EQ(common.name, PropertyGridName::_propertycommonyname);
  EXPECT_EQ(common.count, 5);
  const entityProperty geometry = pe->getPropertyByeId(t, 1);
  EXPECT_EQ(geometry.flag, 1);
  EXPECT_EQ(geometry.name, PropertyGridName::_propertygraphyname);
  EXPECT_EQ(geometry.count, 2);
  EXPECT_TRUE(pe->getPropertyByeId(t, 2).name.isEmpty());
}

TEST(TrianglePropertyPE, ShowsPerimeterAndAreaReadOnly) {
  PropertyPEPtr pe = trianglePage();
  OdDbGeoTrianglePtr t = rightTriangle();
  struct Row {
    int row;
    const char16_t* label;
    const char16_t* tip;
    double value;
  } rows[] = {{0, u"周长", u"查看三角形的周长", 12.0}, {1, u"面积", u"查看三角形的面积", 6.0}};
  for (const Row& r : rows) {
    const propAttribute record = pe->getPropAttributeByeId(t, 1, r.row);
    EXPECT_EQ(record.index, r.row);
    EXPECT_EQ(record.name, OdString(r.label));
    EXPECT_EQ(record.tip, OdString(r.tip));
    ASSERT_EQ(record.value.type(), OdVariant::kDouble);
    EXPECT_NEAR(record.value.getDouble(), r.value, 1e-12);
    EXPECT_FALSE(record.editable);
    EXPECT_FALSE(record.reserved);
    EXPECT_EQ(record.editorKind, 0);
  }
  // The values follow the shape.
  t->setPts(OdGePoint3d::kOrigin, OdGePoint3d(0, 2, 0));
  EXPECT_NEAR(pe->getPropAttributeByeId(t, 1, 0).value.getDouble(), 6 * std::sqrt(3.0), 1e-9);
  // Rows and groups it does not have read empty; the common rows are the host's.
  EXPECT_TRUE(pe->getPropAttributeByeId(t, 1, 2).name.isEmpty());
  EXPECT_TRUE(pe->getPropAttributeByeId(t, 2, 0).name.isEmpty());
  EXPECT_TRUE(pe->getPropAttributeByeId(t, 0, 5).name.isEmpty());
  EXPECT_EQ(pe->getPropAttributeByeId(t, 0, 3).name, pe->getComPropAtt(t, 3).name);
}

TEST(TrianglePropertyPE, OnlyTheCommonRowsCanBeSet) {
  PropertyPEPtr pe = trianglePage();
  OdDbGeoTrianglePtr t = rightTriangle();
  OdVariant blue;
  blue.setInt32(static_cast<OdInt32>(0xC3000005));
  EXPECT_TRUE(pe->setPropAttributeByeId(t, blue, 0, 0));
  EXPECT_EQ(t->colorIndex(), 5);

  struct Case {
    int group;
    int row;
    OdVariant value;
  } refused[] = {{0, 5, blue},
                 {0, -1, blue},
                 {1, 0, OdVariant(20.0)},
                 {1, 1, OdVariant(OdString(u"20"))},
                 {1, 2, blue},
                 {2, 0, blue},
                 {0, 0, OdVariant(OdString(u"1"))}};
  for (const Case& c : refused) {
    EXPECT_FALSE(pe->setPropAttributeByeId(t, c.value, c.group, c.row)) << c.group << "/" << c.row;
    EXPECT_EQ(t->colorIndex(), 5);
    EXPECT_EQ(t->area(), 6.0);
  }
}

TEST(TrianglePropertyPE, RefusesOtherClassesAndReadsNothingWithoutAnEntity) {
  PropertyPEPtr pe = trianglePage();
  OdDbLinePtr line = OdDbLine::createObject();
  EXPECT_THROW(pe->getPropAttributeByeId(line, 1, 0), OdError_NotThatKindOfClass);
  EXPECT_THROW(pe->setPropAttributeByeId(line, OdVariant(OdInt32(1)), 0, 0),
               OdError_NotThatKindOfClass);
  EXPECT_TRUE(pe->getPropAttributeByeId(nullptr, 1, 0).name.isEmpty());
  EXPECT_FALSE(pe->setPropAttributeByeId(nullptr, OdVariant(OdInt32(1)), 0, 0));
}

/// The host's entry for `id`, or the default one.
EntMenuData entryOf(int id) {
  return g_mapAllRMenu.count(id) ? g_mapAllRMenu.at(id) : EntMenuData();
}

void expectSameEntry(const EntMenuData& actual, const EntMenuData& expected) {
  EXPECT_EQ(actual.id, expected.id);
  EXPECT_EQ(actual.text, expected.text);
  EXPECT_EQ(actual.flag1, expected.flag1);
  EXPECT_EQ(actual.flag2, expected.flag2);
  EXPECT_EQ(actual.data, expected.data);
  EXPECT_EQ(actual.extra, expected.extra);
}

TEST(TrianglePropertyPE, MenuGreysOutPropertiesAndAddsStatisticsBehindIt) {
  const std::vector<int> saved = votherBaseDrawing;
  const int missing = 987655;
  ASSERT_EQ(g_mapAllRMenu.count(missing), 0u);
  votherBaseDrawing.insert(votherBaseDrawing.begin() + 1, missing);
  const std::size_t hostEntries = g_mapAllRMenu.size();

  std::vector<EntMenuData> menus;
  const bool answered = trianglePage()->GetRMenus(menus);
  std::vector<EntMenuData> expected;
  for (int id : votherBaseDrawing) {
    EntMenuData entry = entryOf(id);
    if (id != kMenuProperties) {
      expected.push_back(entry);
      continue;
    }
    entry.flag1 = false;
    expected.push_back(entry);
    EntMenuData separator, statistics;
    separator.id = kMenuSeparator;
    statistics.id = kMenuDrawingStatistics;
    statistics.text = OdString(u"图形统计");
    expected.push_back(separator);
    expected.push_back(statistics);
    expected.push_back(separator);
  }
  votherBaseDrawing = saved;

  EXPECT_TRUE(answered);
  ASSERT_EQ(menus.size(), expected.size());
  ASSERT_EQ(menus.size(), saved.size() + 4);
  for (std::size_t i = 0; i < menus.size(); ++i) {
    SCOPED_TRACE(i);
    expectSameEntry(menus[i], expected[i]);
  }
  // The missing id gets a default entry; the host's table stays as it was.
  EXPECT_EQ(menus[1].id, 0);
  EXPECT_TRUE(menus[1].flag1);
  EXPECT_EQ(g_mapAllRMenu.size(), hostEntries);
}

TEST(TrianglePropertyPE, EmptyHostMenuGivesNoEntries) {
  const std::vector<int> saved = votherBaseDrawing;
  votherBaseDrawing.clear();
  std::vector<EntMenuData> menus;
  const bool answered = trianglePage()->GetRMenus(menus);
  votherBaseDrawing = saved;
  EXPECT_TRUE(answered);
  EXPECT_TRUE(menus.empty());
}

} // namespace
