// The module's shared filing rules.

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "RxObjectImpl.h"
#include "common/CustFiling.h"
#include "dimensions/DimensionClasses.h"

#include <gtest/gtest.h>

namespace {

TEST(CustFiling, PlainClassesFileTheirVersionAfterTheBaseAndRefuseNewerOnes) {
  struct Case {
    OdInt16 version;
    int expected;
  } cases[] = {{-3, eOk}, {0, eOk}, {1, eOk}, {2, 1}, {32767, 1}};
  for (const Case& c : cases) {
    OdStaticRxObject<OdDbDwgStreamFiler> filer;
    filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
    OdSmartPtr<OdDbDimCircle> source = OdDbDimCircle::createObject();
    source->setColorIndex(5);
    source->OdDbEntity::dwgOutFields(&filer);
    filer.wrInt16(c.version);
    filer.rewind();
    OdSmartPtr<OdDbDimCircle> target = OdDbDimCircle::createObject();
    EXPECT_EQ(static_cast<int>(target->dwgInFields(&filer)), c.expected) << c.version;
    // The base data is read before the version is judged.
    EXPECT_EQ(target->colorIndex(), 5);
  }
}

TEST(CustFiling, SharedDxfRoutineRefusesWithOneAndNeedsWriteAccess) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdSmartPtr<OdDbDimCircle> dimension = OdDbDimCircle::createObject();
  EXPECT_EQ(static_cast<int>(custents::refuseDxfIn(dimension, nullptr)), 1);
  const OdDbObjectId id = db->addOdDbObject(dimension);
  dimension = nullptr;
  OdDbObjectPtr closed = id.openObject(OdDb::kForRead);
  EXPECT_THROW(custents::refuseDxfIn(closed, nullptr), OdError);
}

} // namespace
