// The bar-code and signature entities: unlike the module's other classes they file a DXF block
// of their own after the entity's data.

#include "markup/KVClasses.h"

#include "DbDatabase.h"
#include "DbDxfItemFiler.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

namespace {

template <class Entity> class KVEntity : public testing::Test {};
using KVClasses = testing::Types<KVDb2DBarEntity, KVDbSignEntity>;
TYPED_TEST_SUITE(KVEntity, KVClasses);

TYPED_TEST(KVEntity, FilesItsOwnDxfBlockAndRefusesNewerOrMissingOnes) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdSmartPtr<TypeParam> entity = TypeParam::createObject();
  entity->setDatabaseDefaults(db);
  entity->setColorIndex(4);
  OdStaticRxObject<OdDbDxfItemFiler> writer;
  writer.openForWrite(db);
  entity->dxfOutFields(&writer);
  OdDbDxfItemFiler::ItemArray items = writer.items();
  ASSERT_GE(items.size(), 2u);
  EXPECT_EQ(items[items.size() - 2].code, 100);
  EXPECT_EQ(items[items.size() - 2].value, TypeParam::desc()->name());
  EXPECT_EQ(items.back().code, 70);
  EXPECT_EQ(items.back().value, OD_T("1"));

  const auto readBack = [&](const OdDbDxfItemFiler::ItemArray& groups, int expected) {
    OdStaticRxObject<OdDbDxfItemFiler> reader;
    reader.openForRead(groups, db);
    OdSmartPtr<TypeParam> copy = TypeParam::createObject();
    copy->setDatabaseDefaults(db);
    EXPECT_EQ(static_cast<int>(copy->dxfInFields(&reader)), expected);
    return copy;
  };
  EXPECT_EQ(readBack(items, eOk)->colorIndex(), 4);
  // A newer version is refused with the module's refusal value; a missing block is an error.
  items.back().value = OD_T("2");
  readBack(items, 1);
  items.resize(items.size() - 2);
  readBack(items, eInvalidDxfCode);
}

} // namespace
