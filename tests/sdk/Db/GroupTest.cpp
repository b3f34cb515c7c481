#include "DbGroup.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDictionary.h"
#include "DbDwgStreamFiler.h"
#include "DbDxfItemFiler.h"
#include "DbPoint.h"
#include "OdError.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

typedef OdStaticRxObject<OdDbDwgStreamFiler> DwgFiler;
typedef OdStaticRxObject<OdDbDxfItemFiler> DxfFiler;

OdResult codeOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const OdError& err) {
    return err.code();
  }
  return eOk;
}

class GroupTest : public ::testing::Test {
protected:
  void SetUp() override {
    m_db = OdDbDatabase::createObject();
    OdDbDictionaryPtr groups = m_db->getGroupDictionaryId().safeOpenObject(OdDb::kForWrite);
    m_group = OdDbGroup::createObject();
    m_groupId = groups->setAt(OD_T("Doors"), m_group);
    for (int i = 0; i < 4; ++i)
      m_points.push_back(addPoint(m_db));
  }

  static OdDbObjectId addPoint(OdDbDatabase* db) {
    OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
    return space->appendOdDbEntity(OdDbPoint::createObject());
  }

  OdDbObjectIdArray ids() const {
    OdDbObjectIdArray result;
    m_group->allEntityIds(result);
    return result;
  }

  OdDbDatabasePtr m_db;
  OdDbGroupPtr m_group;
  OdDbObjectId m_groupId;
  std::vector<OdDbObjectId> m_points;
};

TEST_F(GroupTest, RegisteredAndKeptInTheGroupDictionary) {
  OdRxClass* cls = odrxGetClass(OD_T("OdDbGroup"));
  ASSERT_NE(nullptr, cls);
  EXPECT_EQ(OdDbObject::desc(), cls->myParent());
  EXPECT_EQ(OdString(OD_T("GROUP")), cls->dxfName());
  EXPECT_EQ(m_db->getGroupDictionaryId(), m_group->ownerId());
  OdDbGroupPtr fresh = OdDbGroup::createObject();
  EXPECT_TRUE(fresh->description().isEmpty());
  EXPECT_TRUE(fresh->isSelectable());
  EXPECT_FALSE(fresh->isAnonymous());
  EXPECT_EQ(0u, fresh->numEntities());
}

TEST_F(GroupTest, EntityListKeepsOrder) {
  const OdDbObjectId& p0 = m_points[0];
  const OdDbObjectId& p1 = m_points[1];
  const OdDbObjectId& p2 = m_points[2];
  const OdDbObjectId& p3 = m_points[3];
  m_group->append(p1);
  m_group->prepend(p0);
  m_group->append(OdDbObjectIdArray{p3});
  m_group->insertAt(2, p2);
  EXPECT_EQ((OdDbObjectIdArray{p0, p1, p2, p3}), ids());
  EXPECT_EQ(4u, m_group->numEntities());
  EXPECT_EQ(2, m_group->indexOf(p2));
  EXPECT_TRUE(m_group->has(p3));
  OdDbPointPtr entity = p3.safeOpenObject();
  EXPECT_TRUE(m_group->has(entity.get()));

  EXPECT_TRUE(m_group->remove(p1));
  EXPECT_FALSE(m_group->remove(p1));
  m_group->removeAt(0);
  EXPECT_EQ((OdDbObjectIdArray{p2, p3}), ids());
  EXPECT_FALSE(m_group->has(p0));
  EXPECT_EQ(-1, m_group->indexOf(p0));
  m_group->clear();
  EXPECT_EQ(0u, m_group->numEntities());
}

TEST_F(GroupTest, RefusalsChangeNothing) {
  m_group->append(m_points[0]);
  OdDbDatabasePtr other = OdDbDatabase::createObject();
  const OdDbObjectId foreign = addPoint(other);
  const struct {
    const char* what;
    std::function<void()> call;
    OdResult expected;
  } cases[] = {
      {"null id", [&] { m_group->append(OdDbObjectId()); }, eNullObjectId},
      {"id held already", [&] { m_group->append(m_points[0]); }, eInvalidInput},
      {"not an entity", [&] { m_group->append(m_db->getLayerZeroId()); }, eWrongObjectType},
      {"entity of another drawing", [&] { m_group->append(foreign); }, eWrongDatabase},
      {"index past the end", [&] { m_group->insertAt(2, m_points[1]); }, eInvalidIndex},
      {"remove past the end", [&] { m_group->removeAt(1); }, eInvalidIndex},
      {"list repeating an id",
       [&] {
         m_group->append(OdDbObjectIdArray{m_points[1], m_points[2], m_points[1]});
       },
       eInvalidInput},
      {"description on two lines", [&] { m_group->setDescription(OD_T("a\nb")); }, eInvalidInput},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.expected, codeOf(c.call));
    EXPECT_EQ((OdDbObjectIdArray{m_points[0]}), ids());
    EXPECT_TRUE(m_group->description().isEmpty());
  }
}

TEST_F(GroupTest, DwgRoundTripKeepsEverything) {
  m_group->setDescription(OD_T("Front doors 前门"));
  m_group->setSelectable(false);
  m_group->setAnonymous();
  m_group->append(OdDbObjectIdArray{m_points[2], m_points[0], m_points[3]});
  for (OdDbFiler::FilerType type : {OdDbFiler::kFileFiler, OdDbFiler::kCopyFiler}) {
    DwgFiler filer;
    filer.openForWrite(m_db, type);
    m_group->dwgOutFields(&filer);
    filer.rewind();
    OdDbGroupPtr copy = OdDbGroup::createObject();
    ASSERT_EQ(eOk, copy->dwgInFields(&filer));
    EXPECT_EQ(m_group->description(), copy->description());
    EXPECT_FALSE(copy->isSelectable());
    EXPECT_TRUE(copy->isAnonymous());
    OdDbObjectIdArray copied;
    copy->allEntityIds(copied);
    EXPECT_EQ(ids(), copied);
  }
  // A clone is a whole copy as well.
  OdDbGroupPtr clone = OdDbGroup::cast(m_group->clone());
  ASSERT_FALSE(clone.isNull());
  EXPECT_EQ(3u, clone->numEntities());
}

TEST_F(GroupTest, DwgReadRefusesBadStreams) {
  const struct {
    const char* what;
    OdInt16 anonymous;
    OdInt16 selectable;
    OdInt32 count;
    std::vector<OdDbObjectId> entities;
    OdResult expected;
  } cases[] = {
      {"well formed", 0, 1, 2, {m_points[0], m_points[1]}, eOk},
      {"anonymous flag 2", 2, 1, 0, {}, eDwgObjectImproperlyRead},
      {"selectable flag -1", 0, -1, 0, {}, eDwgObjectImproperlyRead},
      {"negative count", 0, 1, -4, {}, eDwgObjectImproperlyRead},
      {"count beyond the stream", 0, 1, 1 << 20, {m_points[0]}, eDwgObjectImproperlyRead},
      {"repeated id", 0, 1, 2, {m_points[0], m_points[0]}, eDwgObjectImproperlyRead},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DwgFiler filer;
    filer.openForWrite(m_db, OdDbFiler::kCopyFiler);
    filer.wrString(OD_T("d"));
    filer.wrInt16(c.anonymous);
    filer.wrInt16(c.selectable);
    filer.wrInt32(c.count);
    for (const OdDbObjectId& id : c.entities)
      filer.wrHardPointerId(id);
    filer.rewind();
    OdDbGroupPtr group = OdDbGroup::createObject();
    EXPECT_EQ(c.expected, group->dwgInFields(&filer));
    EXPECT_EQ(c.expected == eOk ? 2u : 0u, group->numEntities());
    EXPECT_EQ(c.expected == eOk, group->description() == OD_T("d"));
  }
}

TEST_F(GroupTest, DxfOutputAndRoundTrip) {
  m_group->setDescription(OD_T("Doors"));
  m_group->append(OdDbObjectIdArray{m_points[1], m_points[0]});
  DxfFiler filer;
  filer.openForWrite(m_db);
  m_group->dxfOutFields(&filer);
  std::vector<std::pair<int, std::string>> items;
  for (const OdDbDxfItemFiler::Item& item : filer.items())
    items.emplace_back(item.code, item.value.toUtf8());
  const std::vector<std::pair<int, std::string>> expected = {
      {100, "AcDbGroup"},
      {300, "Doors"},
      {70, "0"},
      {71, "1"},
      {340, m_points[1].getHandle().ascii().toUtf8()},
      {340, m_points[0].getHandle().ascii().toUtf8()}};
  EXPECT_EQ(expected, items);

  filer.rewind();
  OdDbGroupPtr copy = OdDbGroup::createObject();
  ASSERT_EQ(eOk, copy->dxfInFields(&filer));
  OdDbObjectIdArray copied;
  copy->allEntityIds(copied);
  EXPECT_EQ(ids(), copied);
  EXPECT_EQ(OdString(OD_T("Doors")), copy->description());

  const OdString h = m_points[0].getHandle().ascii();
  for (const OdDbDxfItemFiler::ItemArray& bad :
       {OdDbDxfItemFiler::ItemArray{{100, OD_T("AcDbGroup")}, {70, OD_T("3")}},
        OdDbDxfItemFiler::ItemArray{{100, OD_T("AcDbGroup")}, {340, h}, {340, h}},
        OdDbDxfItemFiler::ItemArray{{300, OD_T("no marker")}}}) {
    filer.openForRead(bad, m_db);
    OdDbGroupPtr group = OdDbGroup::createObject();
    EXPECT_EQ(eInvalidDxfCode, group->dxfInFields(&filer));
    EXPECT_EQ(0u, group->numEntities());
  }
}

} // namespace
