#ifndef CUSTENTS_TESTS_TEXT_DXF_FIXTURE_H
#define CUSTENTS_TESTS_TEXT_DXF_FIXTURE_H

// What the DXF tests of the two text entities share: a drawing with a Chinese text style, and
// writing, reading and listing an entity's groups.

#include "DbDatabase.h"
#include "DbDxfItemFiler.h"
#include "DbEntity.h"
#include "DbTextStyleTable.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

class TextDxfFixture : public ::testing::Test {
protected:
  typedef OdStaticRxObject<OdDbDxfItemFiler> Filer;

  void SetUp() override {
    db = OdDbDatabase::createObject();
    OdDbTextStyleTablePtr styles = db->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
    OdDbTextStyleTableRecordPtr hz = OdDbTextStyleTableRecord::createObject();
    hz->setName(OD_T("hztxt_txtstyle_0_0"));
    hzStyle = styles->add(hz);
  }

  OdDbDxfItemFiler::ItemArray write(const OdDbEntity* entity) {
    Filer filer;
    filer.openForWrite(db.get());
    entity->dxfOutFields(&filer);
    EXPECT_EQ(eOk, filer.filerStatus());
    return filer.items();
  }

  OdResult read(const OdDbDxfItemFiler::ItemArray& items, OdDbEntity* entity) {
    Filer filer;
    filer.openForRead(items, db.get());
    return entity->dxfInFields(&filer);
  }

  /// The groups from the first subclass marker named marker on, as code and text.
  static std::vector<std::pair<int, std::string>>
  itemsFrom(const OdDbDxfItemFiler::ItemArray& items, const OdChar* marker) {
    std::vector<std::pair<int, std::string>> result;
    bool in = false;
    for (const auto& item : items) {
      in = in || (item.code == 100 && item.value == OdString(marker));
      if (in)
        result.emplace_back(item.code, item.value.toUtf8());
    }
    return result;
  }

  OdDbDatabasePtr db;
  OdDbObjectId hzStyle;
};

#endif
