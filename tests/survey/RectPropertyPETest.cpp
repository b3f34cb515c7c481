// The rectangles' property pages: each extension answers for its own class only, with the
// length and width taken as text and the perimeter and area computed.

#include "survey/RectExtensions.h"

#include "DbDatabase.h"
#include "DbLine.h"
#include "MenuTables.h"
#include "OdError.h"
#include "PropertyGridName.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <string>

namespace {

template <class Extension, class Rect, class OtherRect> struct PageOf {
  using ExtensionClass = Extension;
  using RectClass = Rect;
  using OtherRectClass = OtherRect;
};

template <class Page> class RectPropertyPage : public testing::Test {
protected:
  using Rect = typename Page::RectClass;
  using RectPtr = OdSmartPtr<Rect>;

  /// 10 long along X, 4 wide along Y, P0 at (1, 2).
  static RectPtr axisAligned() {
    RectPtr rect = Rect::createObject();
    rect->setPts(OdGePoint3d(1, 2, 0), OdGePoint3d(11, 6, 0));
    return rect;
  }
  /// The extension the module attaches to the class.
  static PropertyPEPtr attached() {
    return PropertyPE::cast(Rect::desc()->getX(PropertyPE::desc()).get());
  }

  OdStaticRxObject<typename Page::ExtensionClass> pe;
};

using Pages = testing::Types<PageOf<OdDbRectPropertyPE, OdDbGeoRect, OdDbGeo3dRect>,
                             PageOf<OdDb3dRectPropertyPE, OdDbGeo3dRect, OdDbGeoRect>>;
TYPED_TEST_SUITE(RectPropertyPage, Pages);

TYPED_TEST(RectPropertyPage, IsAttachedAndHasTheCommonAndTheGeometryGroup) {
  EXPECT_NE(dynamic_cast<typename TypeParam::ExtensionClass*>(TestFixture::attached().get()),
            nullptr);
  typename TestFixture::RectPtr rect = TestFixture::axisAligned();
  EXPECT_TRUE(this->pe.getEntityName(rect) == OdString(u"矩形"));
  EXPECT_EQ(this->pe.getPropertyCount(), 2);
  const entityProperty common = this->pe.getPropertyByeId(rect, 0);
  EXPECT_EQ(common.flag, 1);
  EXPECT_TRUE(common.name == PropertyGridName::_propertycommonyname);
  EXPECT_EQ(common.count, 5);
  const entityProperty geometry = this->pe.getPropertyByeId(rect, 1);
  EXPECT_EQ(geometry.flag, 1);
  EXPECT_TRUE(geometry.name == PropertyGridName::_propertygraphyname);
  EXPECT_EQ(geometry.count, 4);
  EXPECT_TRUE(this->pe.getPropertyByeId(rect, 2).name.isEmpty());
}

TYPED_TEST(RectPropertyPage, GeometryRowsReportLengthWidthPerimeterAndArea) {
  struct Row {
    const char16_t* label;
    const char16_t* tip;
    double value;
    bool editable;
  };
  const Row rows[] = {{u"长", u"修改矩形的长", 10, true},
                      {u"宽", u"修改矩形的宽", 4, true},
                      {u"周长", u"查看矩形的周长", 28, false},
                      {u"面积", u"查看矩形的面积", 40, false}};
  typename TestFixture::RectPtr rect = TestFixture::axisAligned();
  for (int i = 0; i < 4; ++i) {
    SCOPED_TRACE(testing::Message() << "row " << i);
    const propAttribute row = this->pe.getPropAttributeByeId(rect, 1, i);
    EXPECT_EQ(row.index, i);
    EXPECT_TRUE(row.name == OdString(rows[i].label));
    EXPECT_TRUE(row.tip == OdString(rows[i].tip));
    ASSERT_EQ(row.value.type(), OdVariant::kDouble);
    EXPECT_DOUBLE_EQ(row.value.getDouble(), rows[i].value);
    EXPECT_EQ(row.editable, rows[i].editable);
    EXPECT_FALSE(row.reserved);
    EXPECT_EQ(row.editorKind, 0);
  }
}

TYPED_TEST(RectPropertyPage, CommonRowsComeFromTheHostAndUnknownRowsAreEmpty) {
  typename TestFixture::RectPtr rect = TestFixture::axisAligned();
  rect->setColorIndex(3);
  const propAttribute colour = this->pe.getPropAttributeByeId(rect, 0, 0);
  const propAttribute host = this->pe.getComPropAtt(rect, 0);
  EXPECT_TRUE(colour.name == host.name);
  EXPECT_EQ(colour.value.getUInt32(), rect->color().color());
  EXPECT_EQ(colour.editorKind, 1);
  for (const std::pair<int, int>& unknown :
       {std::pair<int, int>{0, 5}, {1, 4}, {1, -1}, {2, 0}, {-1, 0}}) {
    SCOPED_TRACE(testing::Message() << "group " << unknown.first << " row " << unknown.second);
    const propAttribute row = this->pe.getPropAttributeByeId(rect, unknown.first, unknown.second);
    EXPECT_TRUE(row.name.isEmpty());
    EXPECT_TRUE(row.tip.isEmpty());
    EXPECT_EQ(row.value.type(), OdVariant::kVoid);
  }
  // A null entity reads as an empty record.
  EXPECT_TRUE(this->pe.getPropAttributeByeId(nullptr, 1, 0).name.isEmpty());
}

TYPED_TEST(RectPropertyPage, OnlyItsOwnClassIsAccepted) {
  using Other = typename TypeParam::OtherRectClass;
  OdSmartPtr<Other> other = Other::createObject();
  OdDbLinePtr line = OdDbLine::createObject();
  for (OdDbEntity* entity :
       {static_cast<OdDbEntity*>(other.get()), static_cast<OdDbEntity*>(line.get())}) {
    SCOPED_TRACE(std::string(entity->isA()->name().toUtf8()));
    try {
      this->pe.getPropAttributeByeId(entity, 1, 0);
      ADD_FAILURE() << "read accepted";
    } catch (const OdError_NotThatKindOfClass& error) {
      EXPECT_EQ(error.objectClass(), entity->isA());
      EXPECT_EQ(error.wantedClass(), TestFixture::Rect::desc());
    }
    EXPECT_THROW(this->pe.setPropAttributeByeId(entity, OdVariant(OdString(u"5")), 1, 0),
                 OdError_NotThatKindOfClass);
    EXPECT_THROW(this->pe.setPropAttributeByeId(entity, OdVariant(OdString(u"5")), 0, 3),
                 OdError_NotThatKindOfClass);
  }
  EXPECT_FALSE(this->pe.setPropAttributeByeId(nullptr, OdVariant(OdString(u"5")), 1, 0));
}

TYPED_TEST(RectPropertyPage, SetsAcceptUsableLengthsAsTextAndRefuseEverythingElse) {
  struct Case {
    const char* name;
    int group;
    int row;
    OdVariant value;
    bool accepted;
    double length; // signed, along +X from P0; the rectangle starts 10 long, 4 wide
    double width;
  };
  OdString byReference(u"6");
  OdVariant referenced;
  referenced.setStringPtr(&byReference);
  const Case cases[] = {
      {"length", 1, 0, OdVariant(OdString(u"5")), true, 5, 4},
      // A negative length flips the rectangle through the width edge.
      {"negative length", 1, 0, OdVariant(OdString(u"-3")), true, -3, 4},
      {"width", 1, 1, OdVariant(OdString(u"2.5")), true, 10, 2.5},
      {"numeric prefix", 1, 1, OdVariant(OdString(u"  7abc")), true, 10, 7},
      {"string by reference", 1, 0, referenced, true, 6, 4},
      {"zero", 1, 0, OdVariant(OdString(u"0")), false, 10, 4},
      {"almost zero", 1, 1, OdVariant(OdString(u"1e-11")), false, 10, 4},
      {"not a number", 1, 0, OdVariant(OdString(u"abc")), false, 10, 4},
      {"empty", 1, 1, OdVariant(OdString(u"")), false, 10, 4},
      {"nan", 1, 0, OdVariant(OdString(u"nan")), false, 10, 4},
      {"inf", 1, 1, OdVariant(OdString(u"inf")), false, 10, 4},
      {"overflow", 1, 0, OdVariant(OdString(u"1e999")), false, 10, 4},
      {"double instead of text", 1, 0, OdVariant(5.0), false, 10, 4},
      {"integer instead of text", 1, 1, OdVariant(OdInt32(5)), false, 10, 4},
      // The computed rows change nothing, but only a usable length is answered with true.
      {"perimeter", 1, 2, OdVariant(OdString(u"5")), true, 10, 4},
      {"area", 1, 3, OdVariant(OdString(u"5")), true, 10, 4},
      {"area as double", 1, 3, OdVariant(5.0), false, 10, 4},
      {"row past the group", 1, 4, OdVariant(OdString(u"5")), true, 10, 4},
      {"group past the page", 2, 0, OdVariant(5.0), true, 10, 4},
      {"common row past the five", 0, 5, OdVariant(5.0), true, 10, 4},
      {"negative common row", 0, -1, OdVariant(OdString(u"5")), false, 10, 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    typename TestFixture::RectPtr rect = TestFixture::axisAligned();
    EXPECT_EQ(this->pe.setPropAttributeByeId(rect, c.value, c.group, c.row), c.accepted);
    EXPECT_DOUBLE_EQ(rect->getPts()[1].x - 1, c.length);
    EXPECT_DOUBLE_EQ(rect->height(), c.width);
    // P0, where the length and the width edge meet, never moves.
    EXPECT_TRUE(rect->getPts()[0] == OdGePoint3d(1, 2, 0));
  }
}

TYPED_TEST(RectPropertyPage, CommonRowsAreWrittenThroughTheHost) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  typename TestFixture::RectPtr rect = TestFixture::axisAligned();
  rect->setDatabaseDefaults(db);
  EXPECT_TRUE(this->pe.setPropAttributeByeId(rect, OdVariant(OdString(u"2.5")), 0, 3));
  EXPECT_EQ(rect->linetypeScale(), 2.5);
  EXPECT_FALSE(this->pe.setPropAttributeByeId(rect, OdVariant(OdString(u"-1")), 0, 3));
  EXPECT_EQ(rect->linetypeScale(), 2.5);
}

/// The host's menu tables, restored after each test that changes them.
class RectMenus : public testing::Test {
protected:
  void SetUp() override {
    savedIds = votherBaseDrawing;
    savedMap = g_mapAllRMenu;
  }
  void TearDown() override {
    votherBaseDrawing = savedIds;
    g_mapAllRMenu = savedMap;
  }

  static std::vector<int> idsOf(const std::vector<EntMenuData>& menus) {
    std::vector<int> ids;
    for (const EntMenuData& entry : menus)
      ids.push_back(entry.id);
    return ids;
  }

  std::vector<int> savedIds;
  std::map<int, EntMenuData> savedMap;
};

TEST_F(RectMenus, FollowTheHostListWithStatisticsAfterProperties) {
  votherBaseDrawing = {kMenuDelete, kMenuProperties, kMenuExplode};
  OdStaticRxObject<OdDbRectPropertyPE> flat;
  OdStaticRxObject<OdDb3dRectPropertyPE> raised;
  for (PropertyPE* pe : {static_cast<PropertyPE*>(&flat), static_cast<PropertyPE*>(&raised)}) {
    std::vector<EntMenuData> menus;
    menus.push_back(EntMenuData());
    ASSERT_TRUE(pe->GetRMenus(menus));
    const std::vector<int> expected = {
        0, kMenuDelete, kMenuProperties, kMenuSeparator, kMenuDrawingStatistics, kMenuExplode};
    EXPECT_EQ(idsOf(menus), expected);
    // Host entries are copied whole.
    EXPECT_TRUE(menus[1].text == g_mapAllRMenu[kMenuDelete].text);
    EXPECT_EQ(menus[1].extra, g_mapAllRMenu[kMenuDelete].extra);
    // The two added entries: a separator and "图形统计", enabled and unchecked.
    EXPECT_TRUE(menus[3].text.isEmpty());
    EXPECT_TRUE(menus[4].text == OdString(u"图形统计"));
    for (int added : {3, 4}) {
      EXPECT_TRUE(menus[added].flag1);
      EXPECT_FALSE(menus[added].flag2);
      EXPECT_EQ(menus[added].data, 0u);
    }
  }
}

TEST_F(RectMenus, AnIdTheHostLacksGivesADefaultEntryInItsPlace) {
  votherBaseDrawing = {kMenuDelete, 12345, kMenuMove};
  g_mapAllRMenu.erase(12345);
  OdStaticRxObject<OdDbRectPropertyPE> pe;
  std::vector<EntMenuData> menus;
  ASSERT_TRUE(pe.GetRMenus(menus));
  ASSERT_EQ(menus.size(), 3u);
  EXPECT_EQ(idsOf(menus), std::vector<int>({kMenuDelete, 0, kMenuMove}));
  EXPECT_TRUE(menus[1].text.isEmpty());
  EXPECT_TRUE(menus[1].flag1);
  // Looked up by inserting: the host's map now holds the default entry too.
  EXPECT_EQ(g_mapAllRMenu.count(12345), 1u);
}

TEST_F(RectMenus, AnEmptyHostListGivesNoEntries) {
  votherBaseDrawing.clear();
  OdStaticRxObject<OdDb3dRectPropertyPE> pe;
  std::vector<EntMenuData> menus;
  EXPECT_TRUE(pe.GetRMenus(menus));
  EXPECT_TRUE(menus.empty());
}

} // namespace
