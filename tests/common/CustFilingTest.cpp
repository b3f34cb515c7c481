// The module's shared filing rules.

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "RxObjectImpl.h"
#include "common/CustFiling.h"
#include "dimensions/DimensionClasses.h"

#include <gtest/gtest.h>

namespace {

TEST(CustFiling, PlainClassesReadOlderAndNegativeVersionsAndRefuseTheNewest) {
  // Version 2, the next one, is refused for every class by the class contract suite.
  const struct {
    OdInt16 version;
    int expected;
  } cases[] = {{-3, eOk}, {0, eOk}, {1, eOk}, {32767, 1}};
  for (const auto& c : cases) {
    OdStaticRxObject<OdDbDwgStreamFiler> filer;
    filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
    OdSmartPtr<OdDbDimCircle> source = OdDbDimCircle::createObject();
    source->setColorIndex(5);
    source->OdDbEntity::dwgOutFields(&filer);
    filer.wrInt16(c.version);
    filer.rewind();
    OdSmartPtr<OdDbDimCircle> target = OdDbDimCircle::createObject();
    EXPECT_EQ(static_cast<int>(target->dwgInFields(&filer)), c.expected) << c.version;
    EXPECT_EQ(target->colorIndex(), 5); // the base data is read before the version is judged
  }
}

TEST(CustFiling, SharedDxfRoutineNeedsWriteAccess) {
  // That it refuses with 1 is the class contract suite's check.
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const OdDbObjectId id = db->addOdDbObject(OdDbDimCircle::createObject());
  OdDbObjectPtr closed = id.openObject(OdDb::kForRead);
  EXPECT_THROW(custents::refuseDxfIn(closed, nullptr), OdError);
}

} // namespace
