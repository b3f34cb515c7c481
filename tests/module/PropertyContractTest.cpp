// The module's property extensions as the host's property grid drives them, as far as each
// does more than the common contract (checked for every class in tests/contract).

#include "ModuleFixture.h"

#include "DbLine.h"
#include "EntEditTextOper.h"
#include "MenuTables.h"
#include "PropertyGridName.h"
#include "PropertyPE.h"

namespace {

class PropertyContract : public LoadedModule {
protected:
  /// A new entity of the class, made through the class dictionary as a host makes it.
  static OdDbEntityPtr newEntity(const OdString& className) {
    return OdDbEntity::cast(odrxGetClass(className)->create());
  }
  static PropertyPEPtr extensionOf(const OdString& className) {
    return PropertyPE::cast(odrxGetClass(className)->getX(PropertyPE::desc()));
  }
};

TEST_F(PropertyContract, DisplayNamesOfTheEntities) {
  struct Row {
    const char16_t* className;
    const char16_t* displayName;
  } rows[] = {{u"OdDbDimCoor", u"坐标标注"},    {u"OdDbNewDimCoor", u"坐标标注"},
              {u"OdDbGeoRect", u"矩形"},        {u"OdDbGeo3dRect", u"矩形"},
              {u"OdDbGeoTriangle", u"三角形"},  {u"OdDbGeoPolygon", u"多边形"},
              {u"DecorationPipe", u"水管"},     {u"DecorationPipeHot", u"热水管"},
              {u"DbPipeWireway", u"管线"},      {u"DbCoverPolyLine", u"多段线"},
              {u"OdDbPipeLine", u"防护管线"},   {u"OdDbFreePen", u"手绘线"},
              {u"OdDbCompass", u"指北针"},      {u"OdDbBuildHeight", u"标高标注"},
              {u"OdDbSymmetryAxis", u"对称轴"}, {u"OdDb3dArrow", u"箭头"},
              {u"OdDbDivPoint", u"点"}};
  for (const Row& row : rows) {
    OdDbEntityPtr entity = newEntity(row.className);
    EXPECT_EQ(extensionOf(row.className)->getEntityName(entity), OdString(row.displayName))
        << utf8(row.className);
  }
}

TEST_F(PropertyContract, ClassesDerivedFromTheExtensionsClassAreAccepted) {
  // The hot pipe on the pipe's page; other classes are refused (each page's own tests).
  OdDbEntityPtr hot = newEntity(OD_T("DecorationPipeHot"));
  EXPECT_NO_THROW(extensionOf(OD_T("DecorationPipe"))->getPropAttributeByeId(hot, 0, 0));
  EXPECT_THROW(extensionOf(OD_T("OdDbGeoRect"))->getPropAttributeByeId(hot, 0, 0),
               OdError_NotThatKindOfClass);
}

TEST_F(PropertyContract, DimensionMenusCopyTheHostEntriesInOrderAndSkipMissingIds) {
  const std::vector<int> saved = vdimMenus;
  const int missing = 987654;
  ASSERT_EQ(g_mapAllRMenu.count(missing), 0u);
  vdimMenus.insert(vdimMenus.begin() + static_cast<long>(vdimMenus.size() / 2), missing);
  std::vector<int> expected;
  for (int id : saved)
    if (g_mapAllRMenu.count(id))
      expected.push_back(id);
  EXPECT_FALSE(expected.empty());
  for (const char16_t* name : {u"OdDbDimCoor", u"OdDbNewDimCoor"}) {
    std::vector<EntMenuData> menus;
    EXPECT_TRUE(extensionOf(name)->GetRMenus(menus));
    std::vector<int> got;
    for (const EntMenuData& entry : menus) {
      got.push_back(entry.id);
      EXPECT_EQ(entry.text, g_mapAllRMenu.at(entry.id).text);
    }
    EXPECT_EQ(got, expected) << utf8(name);
  }
  vdimMenus = saved;

  // An extension without a menu of its own offers none.
  std::vector<EntMenuData> none;
  EXPECT_TRUE(extensionOf(OD_T("DecorationPipe"))->GetRMenus(none));
  EXPECT_TRUE(none.empty());
}

TEST_F(PropertyContract, TextEditingCallbacksClaimNoEntityYet) {
  // The module's one pair of callbacks answers the same for every class.
  OdDbEntityPtr entity = newEntity(OD_T("OdDbDimCoor"));
  OdSmartPtr<OdDbEntity> text;
  int kind = 7;
  EXPECT_FALSE(EntEditTextOper::pickText(entity, OdGePoint3d(), text, kind));
  EXPECT_TRUE(text.isNull());
  EXPECT_EQ(kind, 7);
  EXPECT_FALSE(EntEditTextOper::commitText(entity, entity, OD_T("x"), OdDbEntityPtr()));
}

} // namespace
