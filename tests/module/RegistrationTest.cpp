// What a host finds in the class tree once the module is loaded.

#include "ModuleFixture.h"

#include "DbEntity.h"
#include "DbLine.h"
#include "DbPoint.h"
#include "DbPolyline.h"
#include "ExtendPE.h"
#include "PropertyPE.h"

namespace {

using RegistrationTest = LoadedModule;

TEST_F(RegistrationTest, RegistersFiftySevenClassesWithVersionAndProxyFlags) {
  const OdArray<OdRxClass*> classes = moduleClasses();
  ASSERT_EQ(classes.size(), 57u);
  for (OdRxClass* cls : classes) {
    SCOPED_TRACE(utf8(cls->name()));
    int maint = 0;
    EXPECT_EQ(cls->getClassVersion(&maint), 33);
    EXPECT_EQ(maint, 55);
    const bool isKV = cls->name().left(2) == OdString(OD_T("KV"));
    EXPECT_EQ(cls->proxyFlags(), isKV ? 0u : 3071u);
    ASSERT_NE(cls->myParent(), nullptr);
    // Each class is constructible and its instances are of its class.
    OdRxObjectPtr instance = cls->create();
    ASSERT_FALSE(instance.isNull());
    EXPECT_EQ(instance->isA(), cls);
  }
  // The first and last rows, and the dimension base right after the bar-code entity.
  EXPECT_EQ(classes[0]->name(), OD_T("KVDb2DBarEntity"));
  EXPECT_EQ(classes[1]->name(), OD_T("OdDbCustomDimensionBase"));
  EXPECT_EQ(classes[56]->name(), OD_T("OdDb3dArrow"));
}

TEST_F(RegistrationTest, KeepsTheIrregularNamesAndParentsThatDrawingsCarry) {
  struct Row {
    const char16_t* name;
    const char16_t* parent;
    const char16_t* dxfName;
    const char16_t* appName;
  } rows[] = {
      {u"OdDbDimCoor", u"OdDbEntity", u"ODDBDIMCOOR", u"OdDbDimCoor|Description:"},
      {u"OdDbNewDimCoor", u"OdDbCustomDimensionBase", u"ODDBNEWDIMCOOR",
       u"OdDbNewDimCoor | Description:"},
      {u"OdDbDimExtraction", u"OdDbCustomDimensionBase", u"ODDBDIMEXTRACTION",
       u"OdDbSeekMap|Description:"},
      {u"OdDbPracticeLabel", u"OdDbCustomDimensionBase", u"ODDBPRACTICELABEL",
       u"OdDbIndexicalSigns | Description:"},
      {u"OdDbDoubleLineCableTray", u"DecorationPipe", u"ODDBDOUBLELINECABLETRAY",
       u"OdDbDoubleLineCableTray |Description:"},
      {u"GeoQuantityTable", u"OdDbObject", u"GeoQuantityTable", u"GeoQuantityTable|Description:"},
      {u"DbPipeWireway", u"OdDbPolyline", u"DBPIPEWIREWAY", u"DbPipeWireway|Description:"},
      {u"OdDbDivPoint", u"OdDbPoint", u"OdDbDIVPOINTNEW", u"OdDbDivPoint|Description:"},
      {u"OdDbPipeLine", u"OdDbLine", u"ODDBPIPELINE", u"OdDbPipeLine|Description:"},
      {u"DbCoverPolyLine", u"OdDbPolyline", u"DbCOVERPOLYLINE", u"DbCoverPolyLine|Description:"},
      {u"OdDbGeoTag", u"OdDbEntity", u"OdDbGEOTAG", u"OdDbGeoTag | Description:"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(utf8(row.name));
    OdRxClass* cls = odrxGetClass(row.name);
    ASSERT_NE(cls, nullptr);
    EXPECT_EQ(cls->myParent()->name(), OdString(row.parent));
    EXPECT_EQ(cls->dxfName(), OdString(row.dxfName));
    EXPECT_EQ(cls->appName(), OdString(row.appName));
  }
  EXPECT_EQ(odrxGetClass(OD_T("OdDbRevCloud"))->appName().left(25),
            OdString(OD_T("OdDbRevCloud|Description:")));
}

TEST_F(RegistrationTest, SharedDxfNamesKeepBothClassesAndResolveToTheFirstRegistered) {
  struct Row {
    const char16_t* dxfName;
    const char16_t* first;
    const char16_t* second;
  } rows[] = {{u"ODDBPRACTICELABEL", u"OdDbDimCableTray", u"OdDbPracticeLabel"},
              {u"OdDbDIVPOINTNEW", u"OdDbDivPointNew", u"OdDbDivPoint"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(utf8(row.dxfName));
    const OdArray<OdRxClass*> all = odrxClassesByDxfName(row.dxfName);
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0]->name(), OdString(row.first));
    EXPECT_EQ(all[1]->name(), OdString(row.second));
    EXPECT_EQ(odrxClassByDxfName(row.dxfName)->name(), OdString(row.first));
  }
  // DXF names are compared exactly: the upper-case spelling is no class's name.
  EXPECT_EQ(odrxClassByDxfName(OD_T("ODDBDIVPOINTNEW")), nullptr);
}

TEST_F(RegistrationTest, RunTimeParentOfTheQuantityTableIsTheObjectWhileItIsAnEntity) {
  OdRxObjectPtr table = odrxGetClass(OD_T("GeoQuantityTable"))->create();
  EXPECT_TRUE(table->isKindOf(OdDbObject::desc()));
  EXPECT_FALSE(table->isKindOf(OdDbEntity::desc()));
  EXPECT_FALSE(OdDbEntity::cast(table).isNull());
}

TEST_F(RegistrationTest, AttachesEachExtensionToItsClassOnly) {
  struct Row {
    const char16_t* name;
    bool property;
    bool shape;
  } rows[] = {
      {u"OdDbGeoRect", true, true},       {u"OdDbGeoTriangle", true, true},
      {u"OdDbGeoPolygon", true, true},    {u"OdDbGeo3dRect", true, false},
      {u"OdDbDimCoor", true, false},      {u"OdDbFreePen", true, false},
      {u"KVDb2DBarEntity", false, false}, {u"OdDbCustomDimensionBase", false, false},
      {u"OdDbNewDimText", false, false},  {u"OdDbMesuarData", false, false},
      {u"OdDbDivPointNew", false, false}, {u"GeosymTable", false, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(utf8(row.name));
    OdRxClass* cls = odrxGetClass(row.name);
    ASSERT_NE(cls, nullptr);
    EXPECT_EQ(!cls->getX(PropertyPE::desc()).isNull(), row.property);
    EXPECT_EQ(!cls->getX(ExtendPE::desc()).isNull(), row.shape);
  }
  int withProperty = 0, withShape = 0;
  for (OdRxClass* cls : moduleClasses()) {
    withProperty += cls->extensionClasses().contains(PropertyPE::desc()) ? 1 : 0;
    withShape += cls->extensionClasses().contains(ExtendPE::desc()) ? 1 : 0;
  }
  EXPECT_EQ(withProperty, 41);
  EXPECT_EQ(withShape, 3);
}

TEST_F(RegistrationTest, FurtherPipeKindsAreDefinedButNotRegistered) {
  for (const char16_t* name :
       {u"DecorationDuct", u"DecorationDuctSmoke", u"DecorationPipeAirConditionWater",
        u"DecorationPipeDirty", u"DecorationPipeGas", u"DecorationWireAirConditionPower",
        u"DecorationWireLight", u"DecorationWireNET", u"DecorationWireTEL", u"DecorationWireTV"})
    EXPECT_EQ(odrxGetClass(name), nullptr) << utf8(name);
  EXPECT_EQ(odrxClassByDxfName(OD_T("DECORATIONDUCT")), nullptr);
}

} // namespace
