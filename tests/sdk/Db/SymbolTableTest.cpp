#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
#include "OdError.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace {

typedef OdStaticRxObject<OdDbDwgStreamFiler> Filer;

OdResult codeOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const OdError& err) {
    return err.code();
  }
  return eOk;
}

class SymbolTableTest : public ::testing::Test {
protected:
  void SetUp() override { m_db = OdDbDatabase::createObject(); }

  OdDbLayerTablePtr layers(OdDb::OpenMode mode = OdDb::kForWrite) {
    return m_db->getLayerTableId().safeOpenObject(mode);
  }
  OdDbObjectId addLayer(const OdString& name) {
    OdDbLayerTableRecordPtr record = OdDbLayerTableRecord::createObject();
    record->setName(name);
    return layers()->add(record);
  }
  std::vector<OdString> layerNames() {
    std::vector<OdString> names;
    OdDbSymbolTableIteratorPtr it = layers(OdDb::kForRead)->newIterator();
    for (it->start(); !it->done(); it->step())
      names.push_back(it->getRecord()->getName());
    return names;
  }

  OdDbDatabasePtr m_db;
};

TEST_F(SymbolTableTest, LookupIgnoresLetterCase) {
  const OdDbObjectId walls = addLayer(OD_T("Walls"));
  OdDbLayerTablePtr table = layers(OdDb::kForRead);
  for (const char16_t* spelling : {u"Walls", u"WALLS", u"walls", u"wALLs"}) {
    SCOPED_TRACE(OdString(spelling).toUtf8());
    EXPECT_EQ(walls, table->getAt(spelling));
    EXPECT_TRUE(table->has(spelling));
  }
  for (const char16_t* other : {u"Wall", u"Walls ", u"", u"Wälls"})
    EXPECT_TRUE(table->getAt(other).isNull()) << OdString(other).toUtf8();
  EXPECT_TRUE(table->has(walls));
  EXPECT_FALSE(table->has(m_db->getLinetypeContinuousId()));
  OdDbSymbolTableRecordPtr opened = table->getAt(OD_T("WALLS"), OdDb::kForWrite);
  ASSERT_FALSE(opened.isNull());
  EXPECT_EQ(walls, opened->objectId());
  EXPECT_TRUE(opened->isWriteEnabled());
}

TEST_F(SymbolTableTest, AddRefusesDuplicatesForeignRecordsAndMissingNames) {
  addLayer(OD_T("Walls"));
  OdDbLayerTablePtr looseTable = OdDbLayerTable::createObject();
  const unsigned count = layers()->numRecords();

  auto named = [](const OdString& name) {
    OdDbLayerTableRecordPtr record = OdDbLayerTableRecord::createObject();
    if (!name.isEmpty())
      record->setName(name);
    return record;
  };
  OdDbLinetypeTableRecordPtr linetype = OdDbLinetypeTableRecord::createObject();
  linetype->setName(OD_T("Dots"));

  struct Case {
    const char* what;
    OdDbSymbolTableRecordPtr record;
    std::function<OdDbSymbolTable*()> table;
    OdResult expected;
  } cases[] = {
      {"same name", named(OD_T("Walls")), [&] { return layers().get(); }, eDuplicateKey},
      {"other case", named(OD_T("WALLS")), [&] { return layers().get(); }, eDuplicateKey},
      {"layer 0", named(OD_T("0")), [&] { return layers().get(); }, eDuplicateKey},
      {"no name", named(OdString()), [&] { return layers().get(); }, eInvalidSymbolTableName},
      {"linetype record", linetype, [&] { return layers().get(); }, eWrongObjectType},
      {"null record", OdDbSymbolTableRecordPtr(), [&] { return layers().get(); },
       eNullObjectPointer},
      {"table not in a database", named(OD_T("Roof")), [&] { return looseTable.get(); },
       eNotInDatabase},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    OdDbLayerTablePtr keepOpen = layers(); // the table stays open while add runs
    EXPECT_EQ(c.expected, codeOf([&] { c.table()->add(c.record); }));
    if (!c.record.isNull()) {
      EXPECT_FALSE(c.record->isDBRO());
    }
  }
  EXPECT_EQ(count, layers()->numRecords());

  // A table opened for read takes nothing.
  OdDbLayerTableRecordPtr roof = named(OD_T("Roof"));
  EXPECT_EQ(eNotOpenForWrite, codeOf([&] { layers(OdDb::kForRead)->add(roof); }));
  EXPECT_FALSE(roof->isDBRO());
}

TEST_F(SymbolTableTest, NamesAreValidated) {
  struct Case {
    OdString name;
    bool valid;
  } cases[] = {
      {OD_T("A"), true},
      {OD_T("Walls 2"), true},
      {OD_T("墙体-1_$"), true},
      {OD_T("*Model_Space"), true},
      {OD_T("*"), true},
      {OdString(OD_T('x'), 255), true},
      {OdString(), false},
      {OdString(OD_T('x'), 256), false},
      {OD_T("Model*Space"), false},
      {OD_T("**"), false},
      {OD_T("a<b"), false},
      {OD_T("a>b"), false},
      {OD_T("a/b"), false},
      {OD_T("a\\b"), false},
      {OD_T("a\"b"), false},
      {OD_T("a:b"), false},
      {OD_T("a;b"), false},
      {OD_T("a?b"), false},
      {OD_T("a|b"), false},
      {OD_T("a,b"), false},
      {OD_T("a=b"), false},
      {OD_T("a`b"), false},
      {OD_T("a\tb"), false},
      {OD_T("a\nb"), false},
      {OD_T("\x01"), false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name.toUtf8());
    EXPECT_EQ(c.valid, OdDbSymbolTableRecord::isValidName(c.name));
    OdDbLayerTableRecordPtr record = OdDbLayerTableRecord::createObject();
    record->setName(OD_T("Before"));
    EXPECT_EQ(c.valid ? eOk : eInvalidSymbolTableName, codeOf([&] { record->setName(c.name); }));
    EXPECT_EQ(c.valid ? c.name : OdString(OD_T("Before")), record->getName());
  }
}

TEST_F(SymbolTableTest, RenamingARecordOfATableKeepsNamesUnique) {
  addLayer(OD_T("Alpha"));
  const OdDbObjectId beta = addLayer(OD_T("Beta"));
  OdDbSymbolTableRecordPtr record = beta.safeOpenObject(OdDb::kForWrite);
  for (const char16_t* taken : {u"Alpha", u"ALPHA", u"0"}) {
    SCOPED_TRACE(OdString(taken).toUtf8());
    EXPECT_EQ(eDuplicateKey, codeOf([&] { record->setName(taken); }));
    EXPECT_EQ(OdString(OD_T("Beta")), record->getName());
  }
  record->setName(OD_T("BETA")); // its own name in another case
  EXPECT_EQ(OdString(OD_T("BETA")), record->getName());
  record->setName(OD_T("Gamma"));
  EXPECT_EQ(beta, layers()->getAt(OD_T("gamma")));
  EXPECT_TRUE(layers()->getAt(OD_T("Beta")).isNull());

  // A record in no table may take any valid name.
  OdDbLayerTableRecordPtr loose = OdDbLayerTableRecord::createObject();
  EXPECT_NO_THROW(loose->setName(OD_T("Alpha")));
}

TEST_F(SymbolTableTest, IteratorWalksInAddOrderAndSkipsErasedRecords) {
  addLayer(OD_T("L1"));
  const OdDbObjectId second = addLayer(OD_T("L2"));
  addLayer(OD_T("L3"));
  EXPECT_EQ((std::vector<OdString>{OD_T("0"), OD_T("L1"), OD_T("L2"), OD_T("L3")}), layerNames());

  second.safeOpenObject(OdDb::kForWrite)->erase();
  EXPECT_EQ((std::vector<OdString>{OD_T("0"), OD_T("L1"), OD_T("L3")}), layerNames());
  OdDbLayerTablePtr table = layers(OdDb::kForRead);
  EXPECT_TRUE(table->getAt(OD_T("L2")).isNull());
  EXPECT_EQ(second, table->getAt(OD_T("L2"), true));
  EXPECT_FALSE(table->has(second));

  OdDbSymbolTableIteratorPtr it = table->newIterator();
  it->start();
  EXPECT_EQ(m_db->getLayerZeroId(), it->getRecordId());
  for (int i = 0; i < 3; ++i)
    it->step();
  EXPECT_TRUE(it->done());
  EXPECT_TRUE(it->getRecordId().isNull());
  EXPECT_TRUE(it->getRecord().isNull());
}

TEST_F(SymbolTableTest, LinetypeDashesAndTheirRefusals) {
  OdDbLinetypeTableRecordPtr dashed = OdDbLinetypeTableRecord::createObject();
  dashed->setNumDashes(3);
  EXPECT_EQ(0.0, dashed->dashLengthAt(2)) << "new dashes are dots";
  dashed->setDashLengthAt(0, 0.5);
  dashed->setDashLengthAt(1, -0.25);
  dashed->setDashLengthAt(2, 0.0);
  EXPECT_EQ(3, dashed->numDashes());
  EXPECT_DOUBLE_EQ(0.75, dashed->patternLength());

  const double inf = std::numeric_limits<double>::infinity();
  struct Case {
    const char* what;
    std::function<void()> call;
    OdResult expected;
  } cases[] = {
      {"read at -1", [&] { dashed->dashLengthAt(-1); }, eInvalidIndex},
      {"read at 3", [&] { dashed->dashLengthAt(3); }, eInvalidIndex},
      {"write at -1", [&] { dashed->setDashLengthAt(-1, 1.0); }, eInvalidIndex},
      {"write at 3", [&] { dashed->setDashLengthAt(3, 1.0); }, eInvalidIndex},
      {"NaN length", [&] { dashed->setDashLengthAt(0, std::nan("")); }, eInvalidInput},
      {"infinite length", [&] { dashed->setDashLengthAt(0, -inf); }, eInvalidInput},
      {"negative count", [&] { dashed->setNumDashes(-1); }, eInvalidInput},
      {"count 256", [&] { dashed->setNumDashes(256); }, eInvalidInput},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.expected, codeOf(c.call));
    EXPECT_EQ(3, dashed->numDashes());
    EXPECT_DOUBLE_EQ(0.75, dashed->patternLength());
  }
  dashed->setNumDashes(1);
  EXPECT_DOUBLE_EQ(0.5, dashed->patternLength());
  dashed->setNumDashes(255);
  EXPECT_EQ(255, dashed->numDashes());
}

TEST_F(SymbolTableTest, LinetypeRoundTripsThroughDwg) {
  OdDbLinetypeTableRecordPtr source = OdDbLinetypeTableRecord::createObject();
  source->setName(OD_T("DashDot"));
  source->setComments(OD_T("__ . __ . 点划线"));
  source->setIsScaledToFit(true);
  source->setNumDashes(4);
  const double lengths[] = {0.5, -0.25, 0.0, -0.25};
  for (int i = 0; i < 4; ++i)
    source->setDashLengthAt(i, lengths[i]);
  Filer filer;
  filer.openForWrite(m_db, OdDbFiler::kFileFiler);
  source->dwgOutFields(&filer);
  filer.rewind();
  OdDbLinetypeTableRecordPtr copy = OdDbLinetypeTableRecord::createObject();
  ASSERT_EQ(eOk, copy->dwgInFields(&filer));
  EXPECT_EQ(source->getName(), copy->getName());
  EXPECT_EQ(source->comments(), copy->comments());
  EXPECT_TRUE(copy->isScaledToFit());
  ASSERT_EQ(4, copy->numDashes());
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(lengths[i], copy->dashLengthAt(i));
}

TEST_F(SymbolTableTest, LayerFlagsRoundTripThroughDwg) {
  const OdDbObjectId layerId = addLayer(OD_T("Flags"));
  OdDbLayerTableRecordPtr layer = layerId.safeOpenObject(OdDb::kForWrite);
  OdCmColor color;
  color.setRGB(200, 100, 50);
  layer->setColor(color);
  layer->setLineWeight(OdDb::kLnWt070);
  layer->setLinetypeObjectId(m_db->getLinetypeContinuousId());
  for (int flags = 0; flags < 16; ++flags) {
    SCOPED_TRACE(flags);
    layer->setIsFrozen(flags & 1);
    layer->setIsOff(flags & 2);
    layer->setIsLocked(flags & 4);
    layer->setIsPlottable(!(flags & 8));
    Filer filer;
    filer.openForWrite(m_db, OdDbFiler::kFileFiler);
    layer->dwgOutFields(&filer);
    filer.rewind();
    OdDbLayerTableRecordPtr copy = OdDbLayerTableRecord::createObject();
    ASSERT_EQ(eOk, copy->dwgInFields(&filer));
    EXPECT_EQ(layer->isFrozen(), copy->isFrozen());
    EXPECT_EQ(layer->isOff(), copy->isOff());
    EXPECT_EQ(layer->isLocked(), copy->isLocked());
    EXPECT_EQ(layer->isPlottable(), copy->isPlottable());
    EXPECT_TRUE(copy->color() == color);
    EXPECT_EQ(OdDb::kLnWt070, copy->lineWeight());
    EXPECT_EQ(m_db->getLinetypeContinuousId(), copy->linetypeObjectId());
    EXPECT_EQ(m_db->getLayerTableId(), copy->ownerId());
    EXPECT_EQ(OdString(OD_T("Flags")), copy->getName());
  }
}

TEST_F(SymbolTableTest, LayerRecordWithImpossibleFieldsIsRefused) {
  struct Case {
    const char* what;
    OdString name;
    OdInt16 flags;
    OdUInt8 lineWeightIndex;
    OdResult expected;
  } cases[] = {
      {"valid", OD_T("Good"), 5, 7, eOk},
      {"unknown flag bit", OD_T("Good"), 0x10, 7, eDwgObjectImproperlyRead},
      {"negative flags", OD_T("Good"), -1, 7, eDwgObjectImproperlyRead},
      {"bad lineweight index", OD_T("Good"), 0, 26, eDwgObjectImproperlyRead},
      {"invalid name", OD_T("a|b"), 0, 7, eDwgObjectImproperlyRead},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Filer filer;
    filer.openForWrite(m_db, OdDbFiler::kFileFiler);
    filer.wrSoftPointerId(m_db->getLayerTableId());
    filer.wrString(c.name);
    filer.wrInt16(c.flags);
    filer.wrCmColor(OdCmColor());
    filer.wrUInt8(c.lineWeightIndex);
    filer.wrHardPointerId(m_db->getLinetypeContinuousId());
    filer.rewind();
    OdDbLayerTableRecordPtr record = OdDbLayerTableRecord::createObject();
    record->setName(OD_T("Before"));
    EXPECT_EQ(c.expected, record->dwgInFields(&filer));
    if (c.expected == eOk) {
      EXPECT_TRUE(record->isFrozen() && record->isLocked() && !record->isOff());
      EXPECT_EQ(OdDb::kLnWt025, record->lineWeight());
    } else {
      EXPECT_FALSE(record->isFrozen());
      EXPECT_EQ(OdDb::kLnWtByLwDefault, record->lineWeight());
    }
  }
}

} // namespace
