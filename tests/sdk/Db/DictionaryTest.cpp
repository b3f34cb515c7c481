#include "DbDictionary.h"

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbDxfItemFiler.h"
#include "DbGroup.h"
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

class DictionaryTest : public ::testing::Test {
protected:
  void SetUp() override {
    m_db = OdDbDatabase::createObject();
    OdDbDictionaryPtr root = m_db->getNamedObjectsDictionaryId().safeOpenObject(OdDb::kForWrite);
    m_dict = OdDbDictionary::createObject();
    m_dictId = root->setAt(OD_T("TEST_DICTIONARY"), m_dict);
  }

  OdDbObjectId add(const OdString& name) { return m_dict->setAt(name, OdDbGroup::createObject()); }

  std::vector<std::string> names(const OdDbDictionary* dict) const {
    std::vector<std::string> result;
    OdDbDictionaryIteratorPtr it = dict->newIterator();
    for (it->start(); !it->done(); it->next())
      result.push_back(it->name().toUtf8());
    return result;
  }

  OdDbDatabasePtr m_db;
  OdDbDictionaryPtr m_dict;
  OdDbObjectId m_dictId;
};

TEST_F(DictionaryTest, RegisteredWithDxfName) {
  OdRxClass* cls = odrxGetClass(OD_T("OdDbDictionary"));
  ASSERT_NE(nullptr, cls);
  EXPECT_EQ(OdDbObject::desc(), cls->myParent());
  EXPECT_EQ(OdString(OD_T("DICTIONARY")), cls->dxfName());
}

TEST_F(DictionaryTest, NewDatabaseHasNamedObjectsAndGroupDictionaries) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbDictionaryPtr root = OdDbDictionary::cast(db->getNamedObjectsDictionaryId().openObject());
  ASSERT_FALSE(root.isNull());
  EXPECT_TRUE(root->ownerId().isNull());
  EXPECT_EQ(1u, root->numEntries());
  const OdDbObjectId groups = root->getAt(OD_T("acad_group"));
  EXPECT_EQ(db->getGroupDictionaryId(), groups);
  EXPECT_EQ(OdDbDictionary::desc(), groups.objectClass());
  EXPECT_EQ(db->getNamedObjectsDictionaryId(), groups.openObject()->ownerId());
}

TEST_F(DictionaryTest, NamesIgnoreCaseAndKeepInsertionOrder) {
  const OdDbObjectId zeta = add(OD_T("Zeta"));
  const OdDbObjectId alpha = add(OD_T("alpha"));
  const OdDbObjectId mid = add(OD_T("Mid"));
  EXPECT_EQ((std::vector<std::string>{"Zeta", "alpha", "Mid"}), names(m_dict));
  EXPECT_EQ(3u, m_dict->numEntries());
  for (const char16_t* spelling : {u"ZETA", u"zeta", u"Zeta", u"zEtA"})
    EXPECT_EQ(zeta, m_dict->getAt(spelling)) << OdString(spelling).toUtf8();
  EXPECT_EQ(alpha, m_dict->getAt(OD_T("ALPHA"), OdDb::kForRead)->objectId());
  OdResult status = eOk;
  EXPECT_TRUE(m_dict->getAt(OD_T("Zet"), &status).isNull());
  EXPECT_EQ(eKeyNotFound, status);
  EXPECT_TRUE(m_dict->getAt(OD_T("Zeta "), OdDb::kForRead).isNull());
  EXPECT_TRUE(m_dict->has(OD_T("mid")));
  EXPECT_TRUE(m_dict->has(mid));
  EXPECT_FALSE(m_dict->has(m_db->getLayerZeroId()));
  EXPECT_EQ(OdString(OD_T("Mid")), m_dict->nameAt(mid));
  EXPECT_TRUE(m_dict->nameAt(m_dictId).isEmpty());
  EXPECT_EQ(m_dictId, zeta.openObject()->ownerId());
}

TEST_F(DictionaryTest, SetAtRepointsAnEntryInPlace) {
  const OdDbObjectId first = add(OD_T("A"));
  add(OD_T("B"));
  const OdDbObjectId second = add(OD_T("a"));
  EXPECT_NE(first, second);
  EXPECT_EQ(second, m_dict->getAt(OD_T("A")));
  EXPECT_EQ((std::vector<std::string>{"A", "B"}), names(m_dict));
  // The dictionary owned the object it no longer lists.
  EXPECT_TRUE(first.isErased());

  // An object of the drawing that lives elsewhere moves under the dictionary.
  OdDbGroupPtr loose = OdDbGroup::createObject();
  const OdDbObjectId looseId = m_db->addOdDbObject(loose);
  EXPECT_EQ(looseId, m_dict->setAt(OD_T("B"), loose));
  EXPECT_EQ(m_dictId, loose->ownerId());
  // Setting an entry to what it holds already changes nothing.
  EXPECT_EQ(looseId, m_dict->setAt(OD_T("b"), loose));
  EXPECT_FALSE(looseId.isErased());
  EXPECT_EQ(2u, m_dict->numEntries());
}

TEST_F(DictionaryTest, SetAtRefusesAndChangesNothing) {
  const OdDbObjectId kept = add(OD_T("Kept"));
  OdDbDatabasePtr other = OdDbDatabase::createObject();
  OdDbGroupPtr foreign = OdDbGroup::createObject();
  other->addOdDbObject(foreign);
  OdDbDictionaryPtr looseDictionary = OdDbDictionary::createObject();
  OdDbGroupPtr listed = OdDbGroup::createObject();
  const OdDbObjectId listedId = m_dict->setAt(OD_T("Listed"), listed);

  const struct {
    const char* what;
    std::function<void()> call;
    OdResult expected;
  } cases[] = {
      {"null object", [&] { m_dict->setAt(OD_T("X"), nullptr); }, eNullObjectPointer},
      {"empty name", [&] { m_dict->setAt(OD_T(""), OdDbGroup::createObject()); }, eInvalidInput},
      {"free-standing dictionary",
       [&] { looseDictionary->setAt(OD_T("X"), OdDbGroup::createObject()); }, eNotInDatabase},
      {"object of another drawing", [&] { m_dict->setAt(OD_T("X"), foreign); }, eWrongDatabase},
      {"object listed under another name", [&] { m_dict->setAt(OD_T("Kept"), listed); },
       eInvalidInput},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.expected, codeOf(c.call));
    EXPECT_EQ((std::vector<std::string>{"Kept", "Listed"}), names(m_dict));
    EXPECT_EQ(kept, m_dict->getAt(OD_T("Kept")));
    EXPECT_EQ(listedId, m_dict->getAt(OD_T("Listed")));
  }
  EXPECT_EQ(0u, looseDictionary->numEntries());
}

TEST_F(DictionaryTest, RemoveAndRenameKeepTheObject) {
  add(OD_T("One"));
  const OdDbObjectId two = add(OD_T("Two"));
  const OdDbObjectId three = add(OD_T("Three"));
  EXPECT_EQ(two, m_dict->remove(OD_T("TWO")));
  EXPECT_EQ((std::vector<std::string>{"One", "Three"}), names(m_dict));
  EXPECT_FALSE(two.isErased());
  EXPECT_TRUE(two.openObject()->ownerId().isNull());
  EXPECT_TRUE(m_dict->remove(OD_T("Two")).isNull());
  EXPECT_TRUE(m_dict->remove(three));
  EXPECT_FALSE(m_dict->remove(three));
  EXPECT_EQ(1u, m_dict->numEntries());

  EXPECT_TRUE(m_dict->setName(OD_T("one"), OD_T("First")));
  EXPECT_EQ((std::vector<std::string>{"First"}), names(m_dict));
  add(OD_T("Second"));
  EXPECT_FALSE(m_dict->setName(OD_T("First"), OD_T("SECOND")));
  EXPECT_FALSE(m_dict->setName(OD_T("First"), OD_T("")));
  EXPECT_FALSE(m_dict->setName(OD_T("Missing"), OD_T("Other")));
  EXPECT_EQ((std::vector<std::string>{"First", "Second"}), names(m_dict));
}

TEST_F(DictionaryTest, ErasedEntriesAreAbsentUntilReplaced) {
  const OdDbObjectId gone = add(OD_T("Gone"));
  add(OD_T("Stays"));
  gone.openObject(OdDb::kForWrite)->erase();
  EXPECT_FALSE(m_dict->has(OD_T("Gone")));
  EXPECT_FALSE(m_dict->has(gone));
  EXPECT_EQ(1u, m_dict->numEntries());
  EXPECT_EQ((std::vector<std::string>{"Stays"}), names(m_dict));
  EXPECT_TRUE(m_dict->remove(OD_T("Gone")).isNull());
  const OdDbObjectId back = add(OD_T("gone"));
  EXPECT_EQ(back, m_dict->getAt(OD_T("Gone")));
  EXPECT_EQ(2u, m_dict->numEntries());
}

TEST_F(DictionaryTest, DwgRoundTripKeepsEntriesAndFlags) {
  const OdDbObjectId a = add(OD_T("Alpha"));
  const OdDbObjectId b = add(OD_T("Beta"));
  m_dict->setMergeStyle(OdDb::kDrcMangleName);
  m_dict->setTreatElementsAsHard(true);
  for (OdDbFiler::FilerType type : {OdDbFiler::kFileFiler, OdDbFiler::kCopyFiler}) {
    DwgFiler filer;
    filer.openForWrite(m_db, type);
    m_dict->dwgOutFields(&filer);
    filer.rewind();
    OdDbDictionaryPtr copy = OdDbDictionary::createObject();
    ASSERT_EQ(eOk, copy->dwgInFields(&filer));
    EXPECT_EQ((std::vector<std::string>{"Alpha", "Beta"}), names(copy));
    EXPECT_EQ(a, copy->getAt(OD_T("alpha")));
    EXPECT_EQ(b, copy->getAt(OD_T("BETA")));
    EXPECT_EQ(OdDb::kDrcMangleName, copy->mergeStyle());
    EXPECT_TRUE(copy->isTreatElementsAsHard());
    EXPECT_EQ(type == OdDbFiler::kFileFiler ? m_db->getNamedObjectsDictionaryId() : OdDbObjectId(),
              copy->ownerId());
  }
}

TEST_F(DictionaryTest, DwgReadRefusesBadStreams) {
  const OdDbObjectId target = m_db->getLayerZeroId();
  auto entry = [&](const OdString& name) {
    return [=](OdDbDwgFiler& f) {
      f.wrString(name);
      f.wrSoftOwnershipId(target);
    };
  };
  typedef std::function<void(OdDbDwgFiler&)> Writer;
  const struct {
    const char* what;
    OdInt32 count;
    OdInt16 style;
    std::vector<Writer> entries;
    OdResult expected;
  } cases[] = {
      {"well formed", 2, 1, {entry(OD_T("a")), entry(OD_T("b"))}, eOk},
      {"negative count", -1, 1, {}, eDwgObjectImproperlyRead},
      {"count beyond the stream", 1000000, 1, {entry(OD_T("a"))}, eDwgObjectImproperlyRead},
      {"count beyond the entries", 3, 1, {entry(OD_T("a")), entry(OD_T("b"))}, eEndOfFile},
      {"empty name", 1, 1, {entry(OD_T(""))}, eDwgObjectImproperlyRead},
      {"repeated name", 2, 1, {entry(OD_T("Name")), entry(OD_T("NAME"))}, eDuplicateKey},
      {"cloning flag out of range", 0, 9, {}, eDwgObjectImproperlyRead},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DwgFiler filer;
    filer.openForWrite(m_db, OdDbFiler::kCopyFiler);
    filer.wrInt32(c.count);
    filer.wrInt16(c.style);
    filer.wrUInt8(0);
    for (const Writer& write : c.entries)
      write(filer);
    filer.rewind();
    OdDbDictionaryPtr dict = OdDbDictionary::createObject();
    EXPECT_EQ(c.expected, dict->dwgInFields(&filer));
    EXPECT_EQ(c.expected == eOk ? static_cast<OdUInt32>(c.count) : 0u, dict->numEntries());
  }
}

TEST_F(DictionaryTest, DxfOutputAndRoundTrip) {
  const OdDbObjectId a = add(OD_T("Alpha"));
  const OdDbObjectId b = add(OD_T("Beta"));
  DxfFiler filer;
  filer.openForWrite(m_db);
  m_dict->dxfOutFields(&filer);
  std::vector<std::pair<int, std::string>> items;
  for (const OdDbDxfItemFiler::Item& item : filer.items())
    items.emplace_back(item.code, item.value.toUtf8());
  const std::vector<std::pair<int, std::string>> expected = {{100, "AcDbDictionary"},
                                                             {281, "1"},
                                                             {3, "Alpha"},
                                                             {350, a.getHandle().ascii().toUtf8()},
                                                             {3, "Beta"},
                                                             {350, b.getHandle().ascii().toUtf8()}};
  EXPECT_EQ(expected, items);

  filer.rewind();
  OdDbDictionaryPtr copy = OdDbDictionary::createObject();
  ASSERT_EQ(eOk, copy->dxfInFields(&filer));
  EXPECT_EQ((std::vector<std::string>{"Alpha", "Beta"}), names(copy));
  EXPECT_EQ(b, copy->getAt(OD_T("beta")));

  // A hard-owning dictionary says so and lists its entries as hard owners.
  m_dict->setTreatElementsAsHard(true);
  filer.openForWrite(m_db);
  m_dict->dxfOutFields(&filer);
  EXPECT_EQ(280, filer.items()[1].code);
  EXPECT_EQ(360, filer.items()[4].code);
  filer.rewind();
  ASSERT_EQ(eOk, copy->dxfInFields(&filer));
  EXPECT_TRUE(copy->isTreatElementsAsHard());
  EXPECT_EQ(a, copy->getAt(OD_T("Alpha")));
}

TEST_F(DictionaryTest, DxfReadRefusesBadItems) {
  const std::string h = m_db->getLayerZeroId().getHandle().ascii().toUtf8();
  typedef std::vector<std::pair<int, std::string>> Items;
  const struct {
    const char* what;
    Items items;
    OdResult expected;
    bool marker;
  } cases[] = {
      {"name without an id", {{3, "a"}, {3, "b"}, {350, h}}, eInvalidDxfCode, true},
      {"name at the end", {{3, "a"}, {350, h}, {3, "b"}}, eInvalidDxfCode, true},
      {"id without a name", {{350, h}}, eInvalidDxfCode, true},
      {"empty name", {{3, ""}, {350, h}}, eInvalidDxfCode, true},
      {"repeated name", {{3, "Key"}, {350, h}, {3, "key"}, {350, h}}, eDuplicateKey, true},
      {"cloning flag out of range", {{281, "7"}}, eInvalidDxfCode, true},
      {"no subclass marker", {{3, "a"}, {350, h}}, eInvalidDxfCode, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    OdDbDxfItemFiler::ItemArray items;
    if (c.marker)
      items.push_back({100, OD_T("AcDbDictionary")});
    for (const auto& item : c.items)
      items.push_back({item.first, OdString(item.second.c_str())});
    DxfFiler filer;
    filer.openForRead(items, m_db);
    OdDbDictionaryPtr dict = OdDbDictionary::createObject();
    EXPECT_EQ(c.expected, dict->dxfInFields(&filer));
    EXPECT_EQ(0u, dict->numEntries());
  }
}

} // namespace
