#include "DbGroup.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDictionary.h"
#include "DbPoint.h"
#include "sdk/SdkTestSupport.h"

namespace {

OdDbObjectId addPoint(OdDbDatabase* db) {
  OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
  return space->appendOdDbEntity(OdDbPoint::createObject());
}

// Each refused edit throws its result and leaves the group as it was.
TEST(GroupTest, RefusalsChangeNothing) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbDictionaryPtr groups = db->getGroupDictionaryId().safeOpenObject(OdDb::kForWrite);
  OdDbGroupPtr group = OdDbGroup::createObject();
  groups->setAt(OD_T("Doors"), group);
  const OdDbObjectId first = addPoint(db), second = addPoint(db);
  group->append(first);
  OdDbDatabasePtr other = OdDbDatabase::createObject();
  const OdDbObjectId foreign = addPoint(other);
  const OdDbObjectIdArray repeating{second, second};
  const struct {
    const char* what;
    std::function<void()> call;
    OdResult expected;
  } cases[] = {
      {"null id", [&] { group->append(OdDbObjectId()); }, eNullObjectId},
      {"id held already", [&] { group->append(first); }, eInvalidInput},
      {"not an entity", [&] { group->append(db->getLayerZeroId()); }, eWrongObjectType},
      {"entity of another drawing", [&] { group->append(foreign); }, eWrongDatabase},
      {"index past the end", [&] { group->insertAt(2, second); }, eInvalidIndex},
      {"list repeating an id", [&] { group->append(repeating); }, eInvalidInput},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.expected, resultOf(c.call));
    OdDbObjectIdArray ids;
    group->allEntityIds(ids);
    EXPECT_EQ(OdDbObjectIdArray{first}, ids);
  }
}

} // namespace
