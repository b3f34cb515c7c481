#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
#include "DbPoint.h"
#include "OdError.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace {

OdResult codeOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const OdError& err) {
    return err.code();
  }
  return eOk;
}

/// The names of a table's records in iteration order.
std::vector<OdString> recordNames(OdDbObjectId tableId) {
  OdDbSymbolTablePtr table = tableId.safeOpenObject();
  std::vector<OdString> names;
  OdDbSymbolTableIteratorPtr it = table->newIterator();
  for (it->start(); !it->done(); it->step())
    names.push_back(it->getRecord()->getName());
  return names;
}

OdDbObjectId appendToModelSpace(OdDbDatabase* db, OdDbEntity* entity) {
  OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
  return space->appendOdDbEntity(entity);
}

TEST(DatabaseTest, NewDatabaseHoldsTheStandardRecords) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  EXPECT_EQ(std::vector<OdString>{OD_T("0")}, recordNames(db->getLayerTableId()));
  EXPECT_EQ((std::vector<OdString>{OD_T("ByBlock"), OD_T("ByLayer"), OD_T("Continuous")}),
            recordNames(db->getLinetypeTableId()));
  EXPECT_EQ((std::vector<OdString>{OD_T("*Model_Space"), OD_T("*Paper_Space")}),
            recordNames(db->getBlockTableId()));

  struct Case {
    OdDbObjectId tableId;
    const char16_t* name;
    OdDbObjectId expected;
  } cases[] = {
      {db->getLayerTableId(), u"0", db->getLayerZeroId()},
      {db->getLinetypeTableId(), u"ByBlock", db->getLinetypeByBlockId()},
      {db->getLinetypeTableId(), u"ByLayer", db->getLinetypeByLayerId()},
      {db->getLinetypeTableId(), u"Continuous", db->getLinetypeContinuousId()},
      {db->getBlockTableId(), u"*Model_Space", db->getModelSpaceId()},
      {db->getBlockTableId(), u"*Paper_Space", db->getPaperSpaceId()},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(OdString(c.name).toUtf8());
    OdDbSymbolTablePtr table = c.tableId.safeOpenObject();
    EXPECT_EQ(c.expected, table->getAt(c.name));
    EXPECT_EQ(c.tableId, c.expected.safeOpenObject()->ownerId());
    EXPECT_EQ(db.get(), c.expected.database());
  }
  OdDbLayerTableRecordPtr zero = db->getLayerZeroId().safeOpenObject();
  EXPECT_EQ(7, zero->color().colorIndex());
  EXPECT_EQ(db->getLinetypeContinuousId(), zero->linetypeObjectId());
  EXPECT_EQ(db->getLayerZeroId(), db->getCLAYER());
  EXPECT_EQ(db->getLinetypeByLayerId(), db->getCELTYPE());
  EXPECT_EQ(OdDbBlockTableRecord::desc(), db->getModelSpaceId().objectClass());
}

TEST(DatabaseTest, HandlesIncreaseAndLeadBackToTheirObjects) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const unsigned objects = db->numObjects();
  OdDbHandle previous = db->getModelSpaceId().getHandle();
  for (int i = 0; i < 3; ++i) {
    const OdDbHandle seed = db->handseed();
    OdDbPointPtr point = OdDbPoint::createObject();
    const OdDbObjectId id = appendToModelSpace(db, point);
    EXPECT_EQ(static_cast<OdUInt64>(seed), static_cast<OdUInt64>(id.getHandle()));
    EXPECT_GT(static_cast<OdUInt64>(id.getHandle()), static_cast<OdUInt64>(previous));
    EXPECT_EQ(id.getHandle(), point->getDbHandle());
    EXPECT_EQ(id, db->getOdDbObjectId(id.getHandle()));
    EXPECT_EQ(OdDbPoint::desc(), id.objectClass());
    previous = id.getHandle();
  }
  EXPECT_EQ(static_cast<OdUInt64>(previous) + 1, static_cast<OdUInt64>(db->handseed()));
  EXPECT_EQ(objects + 3, db->numObjects());
  EXPECT_TRUE(db->getOdDbObjectId(OdDbHandle(), true).isNull()) << "the null handle names nothing";
  EXPECT_TRUE(OdDbObjectId().getHandle().isNull());
}

TEST(DatabaseTest, ForwardReferenceGetsItsObjectLater) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const unsigned objects = db->numObjects();
  const OdDbHandle later = static_cast<OdUInt64>(db->handseed()) + 100;
  EXPECT_TRUE(db->getOdDbObjectId(later).isNull());
  const OdDbObjectId forward = db->getOdDbObjectId(later, true);
  ASSERT_FALSE(forward.isNull());
  EXPECT_TRUE(forward.isValid());
  EXPECT_EQ(later, forward.getHandle());
  EXPECT_EQ(forward, db->getOdDbObjectId(later, true)) << "one id per handle";
  EXPECT_EQ(forward, db->getOdDbObjectId(later));
  EXPECT_GT(static_cast<OdUInt64>(db->handseed()), static_cast<OdUInt64>(later))
      << "new objects must not be given the referenced handle";
  EXPECT_EQ(objects, db->numObjects());

  OdDbPointPtr point = OdDbPoint::createObject();
  const OdDbObjectId id = db->addOdDbObject(point, OdDbObjectId::kNull, later);
  EXPECT_EQ(forward, id);
  EXPECT_EQ(static_cast<OdDbObject*>(point.get()), forward.openObject().get());
  EXPECT_EQ(objects + 1, db->numObjects());
}

TEST(DatabaseTest, AddRefusesWhatCannotBeAdded) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbDatabasePtr other = OdDbDatabase::createObject();
  OdDbPointPtr resident = OdDbPoint::createObject();
  appendToModelSpace(db, resident);
  OdDbPointPtr ofOther = OdDbPoint::createObject();
  ofOther->setDatabaseDefaults(other);
  OdDbPointPtr loose = OdDbPoint::createObject();
  const OdDbHandle used = resident->getDbHandle();
  const unsigned objects = db->numObjects();

  struct Case {
    const char* what;
    std::function<void()> add;
    OdResult expected;
  } cases[] = {
      {"null", [&] { db->addOdDbObject(nullptr); }, eNullObjectPointer},
      {"resident", [&] { db->addOdDbObject(resident); }, eAlreadyInDb},
      {"resident elsewhere", [&] { other->addOdDbObject(resident); }, eAlreadyInDb},
      {"handle in use", [&] { db->addOdDbObject(loose, OdDbObjectId::kNull, used); }, eHandleInUse},
      {"other database's object", [&] { db->addOdDbObject(ofOther); }, eWrongDatabase},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.expected, codeOf(c.add));
    EXPECT_EQ(objects, db->numObjects());
  }
  EXPECT_FALSE(loose->isDBRO()) << "a refused object stays free-standing";
  EXPECT_EQ(db.get(), resident->database());
  const OdDbObjectId id = db->addOdDbObject(loose);
  EXPECT_NE(used, id.getHandle());
}

TEST(DatabaseTest, ObjectsOutlivingTheirDatabaseBecomeFreeStanding) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbPointPtr point = OdDbPoint::createObject();
  const OdDbObjectId id = appendToModelSpace(db, point);
  point->setColorIndex(4);
  db.release();

  EXPECT_FALSE(point->isDBRO());
  EXPECT_TRUE(point->objectId().isNull());
  EXPECT_EQ(nullptr, point->database());
  EXPECT_TRUE(point->isWriteEnabled());
  EXPECT_EQ(4, point->colorIndex());
  point->setColorIndex(5);
  EXPECT_EQ(5, point->colorIndex());
  // Ids of the gone database lead nowhere, also those the object keeps.
  EXPECT_FALSE(point->layerId().isValid());
  EXPECT_TRUE(point->layerId().openObject().isNull());
  EXPECT_EQ(nullptr, point->layerId().database());
  EXPECT_FALSE(id.isValid());

  // It can move into another drawing.
  OdDbDatabasePtr next = OdDbDatabase::createObject();
  point->setLayer(next->getLayerZeroId());
  point->setLinetype(next->getLinetypeByLayerId());
  appendToModelSpace(next, point);
  EXPECT_EQ(next.get(), point->database());
  EXPECT_EQ(OdString(OD_T("0")), point->layer());
}

TEST(DatabaseTest, CurrentPropertiesRefuseWrongValues) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbDatabasePtr other = OdDbDatabase::createObject();
  const double inf = std::numeric_limits<double>::infinity();
  struct Case {
    const char* what;
    std::function<void()> set;
    OdResult expected;
  } cases[] = {
      {"CLAYER a linetype", [&] { db->setCLAYER(db->getLinetypeContinuousId()); },
       eWrongObjectType},
      {"CLAYER of another drawing", [&] { db->setCLAYER(other->getLayerZeroId()); },
       eWrongObjectType},
      {"CLAYER null", [&] { db->setCLAYER(OdDbObjectId()); }, eWrongObjectType},
      {"CELTYPE a layer", [&] { db->setCELTYPE(db->getLayerZeroId()); }, eWrongObjectType},
      {"CELTSCALE 0", [&] { db->setCELTSCALE(0.0); }, eInvalidInput},
      {"CELTSCALE -1", [&] { db->setCELTSCALE(-1.0); }, eInvalidInput},
      {"CELTSCALE NaN", [&] { db->setCELTSCALE(std::nan("")); }, eInvalidInput},
      {"LTSCALE inf", [&] { db->setLTSCALE(inf); }, eInvalidInput},
      {"CELWEIGHT 7", [&] { db->setCELWEIGHT(static_cast<OdDb::LineWeight>(7)); }, eInvalidInput},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.expected, codeOf(c.set));
  }
  EXPECT_EQ(db->getLayerZeroId(), db->getCLAYER());
  EXPECT_EQ(db->getLinetypeByLayerId(), db->getCELTYPE());
  EXPECT_EQ(1.0, db->getCELTSCALE());
  EXPECT_EQ(1.0, db->getLTSCALE());
  EXPECT_EQ(OdDb::kLnWtByLayer, db->getCELWEIGHT());
}

TEST(DatabaseTest, BlockAppendNeedsAResidentBlock) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbBlockTableRecordPtr loose = OdDbBlockTableRecord::createObject();
  OdDbPointPtr point = OdDbPoint::createObject();
  EXPECT_EQ(eNotInDatabase, codeOf([&] { loose->appendOdDbEntity(point); }));
  EXPECT_FALSE(point->isDBRO());
  OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
  EXPECT_EQ(eNullEntityPointer, codeOf([&] { space->appendOdDbEntity(nullptr); }));
  const OdDbObjectId first = space->appendOdDbEntity(point);
  OdDbPointPtr second = OdDbPoint::createObject();
  const OdDbObjectId next = space->appendOdDbEntity(second);
  EXPECT_EQ(eAlreadyInDb, codeOf([&] { space->appendOdDbEntity(point); }));
  const OdDbObjectIdArray ids = space->entityIds();
  ASSERT_EQ(2u, ids.size());
  EXPECT_EQ(first, ids[0]);
  EXPECT_EQ(next, ids[1]);
  EXPECT_EQ(space->objectId(), point->blockId());
}

} // namespace
