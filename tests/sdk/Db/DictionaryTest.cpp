#include "DbDictionary.h"

#include "DbDatabase.h"
#include "DbGroup.h"

#include <gtest/gtest.h>

namespace {

// An entry set to another object erases the object the dictionary owned under that name.
TEST(DictionaryTest, SetAtErasesTheOwnedObjectItReplaces) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbDictionaryPtr named = db->getNamedObjectsDictionaryId().safeOpenObject(OdDb::kForWrite);
  const OdDbObjectId owned = named->setAt(OD_T("A"), OdDbGroup::createObject());
  OdDbGroupPtr loose = OdDbGroup::createObject();
  const OdDbObjectId looseId = db->addOdDbObject(loose);
  EXPECT_EQ(looseId, named->setAt(OD_T("a"), loose));
  EXPECT_TRUE(owned.isErased());
  EXPECT_EQ(named->objectId(), loose->ownerId());
  EXPECT_EQ(looseId, named->setAt(OD_T("A"), loose)); // the same object again changes nothing
  EXPECT_FALSE(looseId.isErased());
}

} // namespace
