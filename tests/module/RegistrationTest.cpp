// What a host finds in the class tree once the module is loaded.

#include "ModuleFixture.h"

#include "DbEntity.h"

namespace {

using RegistrationTest = LoadedModule;

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

} // namespace
