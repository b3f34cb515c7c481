// The common entity data in DXF (subclass AcDbEntity), filed through a line, whose own
// dxfOutFields/dxfInFields call the entity's first.

#include "DbLine.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDxfItemFiler.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

typedef OdStaticRxObject<OdDbDxfItemFiler> Filer;
typedef OdDbDxfItemFiler::Item Item;
typedef OdDbDxfItemFiler::ItemArray Items;

/// The six common properties, compared as a whole.
struct Properties {
  OdCmColor color;
  std::string layer;
  std::string linetype;
  double linetypeScale;
  OdDb::LineWeight lineWeight;
  OdDb::Visibility visibility;

  explicit Properties(const OdDbEntity* entity)
      : color(entity->color()), layer(entity->layer().toUtf8()),
        linetype(entity->linetype().toUtf8()), linetypeScale(entity->linetypeScale()),
        lineWeight(entity->lineWeight()), visibility(entity->visibility()) {}

  bool operator==(const Properties& o) const {
    return color == o.color && layer == o.layer && linetype == o.linetype &&
           linetypeScale == o.linetypeScale && lineWeight == o.lineWeight &&
           visibility == o.visibility;
  }
};

std::ostream& operator<<(std::ostream& os, const Properties& p) {
  return os << "colour " << std::hex << p.color.color() << std::dec << ", layer " << p.layer
            << ", linetype " << p.linetype << ", scale " << p.linetypeScale << ", lineweight "
            << p.lineWeight << ", visibility " << p.visibility;
}

class EntityDxfTest : public ::testing::Test {
protected:
  void SetUp() override {
    db = OdDbDatabase::createObject();
    OdDbLayerTablePtr layers = db->getLayerTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLayerTableRecordPtr walls = OdDbLayerTableRecord::createObject();
    walls->setName(OD_T("Walls"));
    layers->add(walls);
    OdDbLinetypeTablePtr linetypes = db->getLinetypeTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLinetypeTableRecordPtr dashed = OdDbLinetypeTableRecord::createObject();
    dashed->setName(OD_T("DASHED"));
    linetypes->add(dashed);
  }

  OdDbLinePtr addLine() {
    OdDbBlockTableRecordPtr modelSpace = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
    OdDbLinePtr line = OdDbLine::createObject();
    line->setStartPoint(OdGePoint3d(1, 2, 3));
    line->setEndPoint(OdGePoint3d(4, 5, 6));
    modelSpace->appendOdDbEntity(line);
    return line;
  }

  OdDbLinePtr addFullLine() {
    OdDbLinePtr line = addLine();
    line->setLayer(OD_T("Walls"));
    line->setLinetype(OD_T("DASHED"));
    OdCmColor color;
    color.setRGB(10, 200, 30);
    line->setColor(color);
    line->setLineWeight(OdDb::kLnWt035);
    line->setLinetypeScale(2.5);
    line->setVisibility(OdDb::kInvisible);
    return line;
  }

  Items write(const OdDbEntity* entity, bool includeDefaults = false) {
    Filer filer;
    filer.openForWrite(db.get());
    filer.setIncludesDefaultValues(includeDefaults);
    entity->dxfOutFields(&filer);
    EXPECT_EQ(eOk, filer.filerStatus());
    return filer.items();
  }

  OdResult read(OdDbEntity* entity, const Items& items, OdDbDatabase* filerDb) {
    Filer filer;
    filer.openForRead(items, filerDb);
    return entity->dxfInFields(&filer);
  }

  /// The items of the AcDbEntity block: from its marker up to the next marker.
  static Items entityBlock(const Items& items) {
    auto begin = std::find_if(items.begin(), items.end(), [](const Item& item) {
      return item.code == 100 && item.value == OdString(OD_T("AcDbEntity"));
    });
    if (begin == items.end())
      return Items();
    auto end = std::find_if(begin + 1, items.end(), [](const Item& i) { return i.code == 100; });
    return Items(begin, end);
  }

  static std::vector<std::pair<int, std::string>> pairs(const Items& items) {
    std::vector<std::pair<int, std::string>> result;
    for (const Item& item : items)
      result.emplace_back(item.code, item.value.toUtf8());
    return result;
  }

  /// items with the first item of `code` given a new value (or removed when value is null).
  static Items with(Items items, int code, const char* value) {
    for (auto it = items.begin(); it != items.end(); ++it) {
      if (it->code != code)
        continue;
      if (value)
        it->value = OdString(value);
      else
        items.erase(it);
      return items;
    }
    // Absent: insert after the AcDbEntity marker.
    auto marker = std::find_if(items.begin(), items.end(), [](const Item& item) {
      return item.code == 100 && item.value == OdString(OD_T("AcDbEntity"));
    });
    if (value && marker != items.end())
      items.insert(marker + 1, Item{code, OdString(value)});
    return items;
  }

  OdDbDatabasePtr db;
};

TEST_F(EntityDxfTest, DefaultsWriteLayerAndLineweightOnly) {
  OdDbLinePtr line = addLine();
  const std::vector<std::pair<int, std::string>> expected = {
      {100, "AcDbEntity"}, {8, "0"}, {370, "-1"}};
  EXPECT_EQ(expected, pairs(entityBlock(write(line.get()))));
}

TEST_F(EntityDxfTest, AllSixPropertiesRoundTrip) {
  OdDbLinePtr line = addFullLine();
  const Items items = write(line.get());
  const OdUInt8 nearest = OdCmEntityColor::lookUpACI(10, 200, 30);
  const std::vector<std::pair<int, std::string>> expected = {
      {100, "AcDbEntity"},
      {8, "Walls"},
      {6, "DASHED"},
      {62, std::to_string(nearest)},
      {420, std::to_string((10 << 16) | (200 << 8) | 30)},
      {370, "35"},
      {48, "2.5"},
      {60, "1"}};
  EXPECT_EQ(expected, pairs(entityBlock(items)));
  // The entity's block comes before the line's own.
  ASSERT_FALSE(items.empty());
  EXPECT_EQ(OdString(OD_T("AcDbEntity")), items.front().value);

  OdDbLinePtr copy = addLine();
  copy->setEndPoint(OdGePoint3d(0, 0, 0));
  ASSERT_EQ(eOk, read(copy.get(), items, db.get()));
  EXPECT_EQ(Properties(line.get()), Properties(copy.get()));
  EXPECT_EQ(line->layerId(), copy->layerId());
  EXPECT_EQ(line->linetypeId(), copy->linetypeId());
  EXPECT_EQ(OdGePoint3d(4, 5, 6), copy->endPoint()); // the line's block was read after it
}

TEST_F(EntityDxfTest, ColourNumbersRoundTrip) {
  const struct {
    const char* what;
    OdUInt16 index;
    std::vector<std::pair<int, std::string>> colourItems;
  } cases[] = {
      {"by layer", 256, {}},
      {"by block", 0, {{62, "0"}}},
      {"red", 1, {{62, "1"}}},
      {"last palette entry", 255, {{62, "255"}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    OdDbLinePtr line = addLine();
    line->setColorIndex(c.index);
    const Items block = entityBlock(write(line.get()));
    std::vector<std::pair<int, std::string>> colourItems;
    for (const auto& item : pairs(block))
      if (item.first == 62 || item.first == 420)
        colourItems.push_back(item);
    EXPECT_EQ(c.colourItems, colourItems);

    OdDbLinePtr copy = addFullLine();
    ASSERT_EQ(eOk, read(copy.get(), write(line.get()), db.get()));
    EXPECT_EQ(line->color(), copy->color());
  }
}

TEST_F(EntityDxfTest, TrueColourOverridesTheColourNumber) {
  OdDbLinePtr line = addLine();
  const Items items = with(with(write(line.get()), 62, "1"), 420, "255");
  ASSERT_EQ(eOk, read(line.get(), items, db.get()));
  EXPECT_TRUE(line->color().isByColor());
  EXPECT_EQ(0, line->color().red());
  EXPECT_EQ(0, line->color().green());
  EXPECT_EQ(255, line->color().blue());
}

TEST_F(EntityDxfTest, IncludingDefaultsWritesEveryGroup) {
  OdDbLinePtr line = addLine();
  const std::vector<std::pair<int, std::string>> expected = {
      {100, "AcDbEntity"}, {8, "0"},    {6, "ByLayer"}, {62, "256"},
      {370, "-1"},         {48, "1.0"}, {60, "0"}};
  const Items items = write(line.get(), true);
  EXPECT_EQ(expected, pairs(entityBlock(items)));
  OdDbLinePtr copy = addFullLine();
  ASSERT_EQ(eOk, read(copy.get(), items, db.get()));
  EXPECT_EQ(Properties(line.get()), Properties(copy.get()));
}

TEST_F(EntityDxfTest, AbsentGroupsTakeTheirDefaults) {
  OdDbLinePtr plain = addLine();
  OdDbLinePtr full = addFullLine();
  // Only the markers: everything falls back to the DXF defaults.
  ASSERT_EQ(eOk, read(full.get(), {{100, "AcDbEntity"}, {100, "AcDbLine"}}, db.get()));
  EXPECT_EQ(Properties(plain.get()), Properties(full.get()));
  EXPECT_EQ(db->getLayerZeroId(), full->layerId());
}

TEST_F(EntityDxfTest, ReadingStopsAtTheNextSubclassAndSkipsOtherGroups) {
  OdDbLinePtr line = addLine();
  Filer filer;
  filer.openForRead({{100, "AcDbEntity"},
                     {67, "0"},
                     {8, "Walls"},
                     {999, "a comment"},
                     {100, "AcDbLine"},
                     {8, "NoSuchLayer"}},
                    db.get());
  ASSERT_EQ(eOk, line->OdDbEntity::dxfInFields(&filer));
  EXPECT_EQ("Walls", line->layer().toUtf8());
  EXPECT_TRUE(filer.atSubclassData(OD_T("AcDbLine")));
}

TEST_F(EntityDxfTest, BadBlocksAreRefusedAndChangeNothing) {
  OdDbLinePtr source = addFullLine();
  const Items good = write(source.get());
  const struct {
    const char* what;
    Items items;
    OdResult expected;
  } cases[] = {
      {"unknown layer", with(good, 8, "NoSuchLayer"), eKeyNotFound},
      {"unknown linetype", with(good, 6, "NoSuchType"), eKeyNotFound},
      {"colour 257", with(good, 62, "257"), eInvalidDxfCode},
      {"negative colour", with(good, 62, "-1"), eInvalidDxfCode},
      {"colour not a number", with(good, 62, "12x"), eInvalidDxfCode},
      {"true colour beyond 24 bits", with(good, 420, "16777216"), eInvalidDxfCode},
      {"lineweight 7", with(good, 370, "7"), eInvalidDxfCode},
      {"scale 0", with(good, 48, "0"), eInvalidDxfCode},
      {"scale -1", with(good, 48, "-1"), eInvalidDxfCode},
      {"scale nan", with(good, 48, "nan"), eInvalidDxfCode},
      {"visibility 2", with(good, 60, "2"), eInvalidDxfCode},
      {"missing AcDbEntity marker", with(good, 100, nullptr), eInvalidDxfCode},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    // A target whose every property differs from the source's, so that any partial change
    // shows.
    OdDbLinePtr target = addLine();
    target->setColorIndex(5);
    target->setLineWeight(OdDb::kLnWt013);
    target->setLinetypeScale(0.5);
    const Properties before(target.get());
    EXPECT_EQ(c.expected, read(target.get(), c.items, db.get()));
    EXPECT_EQ(before, Properties(target.get()));
  }
}

TEST_F(EntityDxfTest, WithoutADatabaseOnlyTheDefaultNamesResolve) {
  OdDbLinePtr freeStanding = OdDbLine::createObject();
  const Items items = write(freeStanding.get());
  OdDbLinePtr copy = OdDbLine::createObject();
  copy->setColorIndex(3);
  ASSERT_EQ(eOk, read(copy.get(), items, nullptr));
  EXPECT_EQ(Properties(freeStanding.get()), Properties(copy.get()));
  EXPECT_TRUE(copy->layerId().isNull());

  EXPECT_EQ(eKeyNotFound, read(copy.get(), with(items, 8, "Walls"), nullptr));
  EXPECT_EQ(eKeyNotFound, read(copy.get(), with(items, 6, "DASHED"), nullptr));
  EXPECT_TRUE(copy->layerId().isNull());

  // A free-standing entity takes its names from the filer's database.
  ASSERT_EQ(eOk, read(copy.get(), with(items, 8, "Walls"), db.get()));
  EXPECT_EQ("Walls", copy->layer().toUtf8());
}

} // namespace
