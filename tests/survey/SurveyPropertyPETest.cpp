// The survey shapes' property pages and right-click menus: each page's own rows, their values
// and what setting them does, and how each page builds its menu from the host's list. The host
// contract every page keeps (common rows, tips, refusals of other classes and wrong types) is
// checked once by the class contract suite (tests/contract).

#include "survey/RectExtensions.h"
#include "survey/TriangleExtensions.h"

#include "DbDatabase.h"
#include "MenuTables.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <vector>

namespace {

PropertyPEPtr pageOf(OdRxClass* cls) {
  return PropertyPE::cast(cls->getX(PropertyPE::desc()));
}

OdVariant text(const char16_t* value) {
  return OdVariant(OdString(value));
}

struct Row {
  double value;
  bool editable;
};

/// The page's groups and the values of its rows of group 1. The rows' labels and tips are
/// constants, and the display name is checked with the other classes' in tests/module.
void expectPage(PropertyPE* pe, const OdDbEntity* entity, OdInt32 commonFlag,
                const std::vector<Row>& rows) {
  ASSERT_NE(pe, nullptr);
  EXPECT_EQ(pe->getPropertyCount(), 2);
  EXPECT_EQ(pe->getPropertyByeId(entity, 0).flag, commonFlag);
  EXPECT_EQ(pe->getPropertyByeId(entity, 1).flag, 1);
  EXPECT_EQ(pe->getPropertyByeId(entity, 1).count, static_cast<OdInt32>(rows.size()));
  for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
    const propAttribute record = pe->getPropAttributeByeId(entity, 1, i);
    ASSERT_EQ(record.value.type(), OdVariant::kDouble) << i;
    EXPECT_NEAR(record.value.getDouble(), rows[i].value, 1e-9) << i;
    EXPECT_EQ(record.editable, rows[i].editable) << i;
    EXPECT_EQ(record.editorKind, 0) << i;
  }
}

TEST(TrianglePropertyPE, ShowsPerimeterAndAreaAndSetsOnlyTheCommonRows) {
  PropertyPEPtr pe = pageOf(OdDbGeoTriangle::desc());
  OdDbGeoTrianglePtr t(new OdDbGeoTriangle({0, 0, 0}, {3, 0, 0}, {0, 4, 0}));
  expectPage(pe, t, 1, {{12.0, false}, {6.0, false}}); // perimeter, area
  t->setPts(OdGePoint3d::kOrigin, OdGePoint3d(0, 2, 0));
  EXPECT_NEAR(pe->getPropAttributeByeId(t, 1, 0).value.getDouble(), 6 * std::sqrt(3.0), 1e-9);

  OdVariant blue;
  blue.setInt32(static_cast<OdInt32>(0xC3000005));
  EXPECT_TRUE(pe->setPropAttributeByeId(t, blue, 0, 0));
  EXPECT_EQ(t->colorIndex(), 5);
  // Everything else is refused, even rows and groups the page does not have.
  const struct {
    int group, row;
    OdVariant value;
  } refused[] = {{0, 5, blue},        {0, -1, blue}, {1, 0, OdVariant(20.0)},
                 {1, 1, text(u"20")}, {1, 2, blue},  {2, 0, blue}};
  for (const auto& c : refused) {
    EXPECT_FALSE(pe->setPropAttributeByeId(t, c.value, c.group, c.row)) << c.group << "/" << c.row;
    EXPECT_EQ(t->colorIndex(), 5);
  }
  EXPECT_FALSE(pe->setPropAttributeByeId(nullptr, blue, 0, 0));
}

TEST(PolygonPropertyPE, ShowsTheCentralAngleAndRefusesEverySideCount) {
  PropertyPEPtr pe = pageOf(OdDbGeoPolygon::desc());
  for (OdInt32 sides : {3, 6, 12}) {
    SCOPED_TRACE(sides);
    OdDbGeoPolygonPtr p = OdDbGeoPolygon::createObject();
    p->init(OdGePoint3d(1, 1, 0), sides);
    p->setValue(OdGePoint3d(4, 1, 0));
    // The common group's flag is 0 on this page.
    expectPage(pe, p, 0, {{360.0 / sides, false}, {static_cast<double>(sides), true}});
    // Shown as editable, but the grid has never changed a polygon's sides.
    for (const OdVariant& value : {text(u"8"), OdVariant(8.0), OdVariant(OdInt32(8))}) {
      for (int row : {0, 1, 2})
        EXPECT_FALSE(pe->setPropAttributeByeId(p, value, 1, row)) << row;
      EXPECT_EQ(p->GetVertexNub(), sides);
    }
  }
  EXPECT_FALSE(pe->setPropAttributeByeId(nullptr, text(u"3"), 1, 1));
  // The page reads a polygon opened for read.
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbGeoPolygonPtr square = OdDbGeoPolygon::createObject();
  square->init(OdGePoint3d::kOrigin, 4);
  const OdDbObjectId id = db->addOdDbObject(square);
  square = nullptr;
  OdDbGeoPolygonPtr readOnly = OdDbGeoPolygon::cast(id.openObject(OdDb::kForRead));
  EXPECT_NEAR(pe->getPropAttributeByeId(readOnly, 1, 0).value.getDouble(), 90.0, 1e-9);
}

template <class Rect> OdSmartPtr<Rect> axisAligned() {
  OdSmartPtr<Rect> rect = Rect::createObject();
  rect->setPts(OdGePoint3d(1, 2, 0), OdGePoint3d(11, 6, 0)); // 10 along X, 4 along Y
  return rect;
}

template <class Rect> void expectRectanglePage(PropertyPE* pe) {
  // Length, width, perimeter and area.
  expectPage(pe, axisAligned<Rect>(), 1, {{10, true}, {4, true}, {28, false}, {40, false}});

  OdString byReference(u"6");
  OdVariant referenced;
  referenced.setStringPtr(&byReference);
  const struct {
    const char* name;
    int group, row;
    OdVariant value;
    bool accepted;
    double length, width; // signed length along +X from P0; it starts 10 long, 4 wide
  } cases[] = {
      {"length", 1, 0, text(u"5"), true, 5, 4},
      // A negative length flips the rectangle through the width edge.
      {"negative length", 1, 0, text(u"-3"), true, -3, 4},
      {"width", 1, 1, text(u"2.5"), true, 10, 2.5},
      {"numeric prefix", 1, 1, text(u"  7abc"), true, 10, 7},
      {"string by reference", 1, 0, referenced, true, 6, 4},
      {"zero", 1, 0, text(u"0"), false, 10, 4},
      {"almost zero", 1, 1, text(u"1e-11"), false, 10, 4},
      {"overflow", 1, 0, text(u"1e999"), false, 10, 4},
      {"double instead of text", 1, 0, OdVariant(5.0), false, 10, 4},
      {"integer instead of text", 1, 1, OdVariant(OdInt32(5)), false, 10, 4},
      // The computed rows change nothing, but only a usable length is answered with true.
      {"perimeter", 1, 2, text(u"5"), true, 10, 4},
      {"area", 1, 3, text(u"5"), true, 10, 4},
      {"area as double", 1, 3, OdVariant(5.0), false, 10, 4},
      {"row past the group", 1, 4, text(u"5"), true, 10, 4},
      {"group past the page", 2, 0, OdVariant(5.0), true, 10, 4},
      {"common row past the five", 0, 5, OdVariant(5.0), true, 10, 4},
      {"negative common row", 0, -1, text(u"5"), false, 10, 4},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    OdSmartPtr<Rect> rect = axisAligned<Rect>();
    EXPECT_EQ(pe->setPropAttributeByeId(rect, c.value, c.group, c.row), c.accepted);
    EXPECT_DOUBLE_EQ(rect->getPts()[1].x - 1, c.length);
    EXPECT_DOUBLE_EQ(rect->height(), c.width);
    // P0, where the length and the width edge meet, never moves.
    EXPECT_TRUE(rect->getPts()[0] == OdGePoint3d(1, 2, 0));
  }
  EXPECT_FALSE(pe->setPropAttributeByeId(nullptr, text(u"5"), 1, 0));
  // The common rows are written through the host.
  OdSmartPtr<Rect> rect = axisAligned<Rect>();
  EXPECT_TRUE(pe->setPropAttributeByeId(rect, text(u"2.5"), 0, 3));
  EXPECT_FALSE(pe->setPropAttributeByeId(rect, text(u"-1"), 0, 3));
  EXPECT_EQ(rect->linetypeScale(), 2.5);
}

TEST(RectPropertyPE, LengthAndWidthAreSetAsTextAndTheMeasuresComputed) {
  expectRectanglePage<OdDbGeoRect>(pageOf(OdDbGeoRect::desc()));
  expectRectanglePage<OdDbGeo3dRect>(pageOf(OdDbGeo3dRect::desc()));
}

/// The host's menu tables, restored after each test.
class SurveyMenus : public testing::Test {
protected:
  void SetUp() override {
    savedIds = votherBaseDrawing;
    savedMap = g_mapAllRMenu;
  }
  void TearDown() override {
    votherBaseDrawing = savedIds;
    g_mapAllRMenu = savedMap;
  }
  std::vector<int> savedIds;
  std::map<int, EntMenuData> savedMap;
};

TEST_F(SurveyMenus, EachPageBuildsItsMenuFromTheHostList) {
  const int missing = 987655, del = kMenuDelete, props = kMenuProperties, ex = kMenuExplode;
  const int sep = kMenuSeparator, stats = kMenuDrawingStatistics;
  const struct {
    OdRxClass* cls;
    std::vector<int> ids;
    bool propertiesGreyed;
    bool missingAddedToTheHostMap; // looked up by inserting
  } cases[] = {{OdDbGeoTriangle::desc(), {del, props, sep, stats, sep, 0, ex}, true, false},
               {OdDbGeoPolygon::desc(), {del, props, 0, ex}, true, false},
               {OdDbGeoRect::desc(), {del, props, sep, stats, 0, ex}, false, true},
               {OdDbGeo3dRect::desc(), {del, props, sep, stats, 0, ex}, false, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.cls->name().toUtf8());
    g_mapAllRMenu = savedMap;
    votherBaseDrawing = {del, props, missing, ex};
    std::vector<EntMenuData> menus;
    ASSERT_TRUE(pageOf(c.cls)->GetRMenus(menus));
    std::vector<int> ids;
    for (const EntMenuData& entry : menus)
      ids.push_back(entry.id);
    ASSERT_EQ(ids, c.ids);
    // Host entries are copied whole, the properties entry greyed out by some pages.
    for (std::size_t i : {std::size_t(0), ids.size() - 1}) {
      const EntMenuData& host = savedMap.at(ids[i]);
      EXPECT_EQ(menus[i].text, host.text);
      EXPECT_EQ(menus[i].extra, host.extra);
      EXPECT_EQ(menus[i].data, host.data);
      EXPECT_EQ(menus[i].flag1, host.flag1);
    }
    EXPECT_EQ(menus[1].text, savedMap.at(props).text);
    EXPECT_EQ(menus[1].flag1, !c.propertiesGreyed);
    for (std::size_t i = 2; i + 1 < ids.size(); ++i) {
      EXPECT_EQ(menus[i].text, OdString(ids[i] == stats ? u"图形统计" : u""));
      EXPECT_TRUE(menus[i].flag1);
      EXPECT_FALSE(menus[i].flag2);
    }
    EXPECT_EQ(g_mapAllRMenu.count(missing), c.missingAddedToTheHostMap ? 1u : 0u);
  }
}

} // namespace
