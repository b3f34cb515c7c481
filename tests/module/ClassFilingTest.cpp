// DWG filing of the module's classes before their own fields exist: the base class's data,
// then a 16-bit format version.

#include "ModuleFixture.h"

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbDxfItemFiler.h"
#include "DbLine.h"
#include "DbPoint.h"
#include "DbPolyline.h"
#include "RxObjectImpl.h"

namespace {

using ClassFiling = LoadedModule;

OdDbObjectPtr newInstance(OdRxClass* cls) { return OdDbObject::cast(cls->create()); }

/// Writes what the parent of `object`'s class files: a parent of the module through an instance
/// of it, a platform class through its own routine.
void writeBaseData(const OdDbObject* object, OdDbDwgFiler* filer) {
  OdRxClass* parent = object->isA()->myParent();
  if (parent->module() == object->isA()->module() && parent->constructor()) {
    OdDbObject::cast(parent->create())->dwgOutFields(filer);
    return;
  }
  if (OdDbPolylinePtr polyline = OdDbPolyline::cast(object))
    polyline->OdDbPolyline::dwgOutFields(filer);
  else if (OdDbLinePtr line = OdDbLine::cast(object))
    line->OdDbLine::dwgOutFields(filer);
  else if (OdDbPointPtr point = OdDbPoint::cast(object))
    point->OdDbPoint::dwgOutFields(filer);
  else if (OdDbEntityPtr entity = OdDbEntity::cast(object))
    entity->OdDbEntity::dwgOutFields(filer);
  else
    object->OdDbObject::dwgOutFields(filer);
}

OdResult readWithVersion(OdRxClass* cls, OdInt16 version) {
  OdDbObjectPtr writer = newInstance(cls);
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  writeBaseData(writer, &filer);
  filer.wrInt16(version);
  filer.rewind();
  return newInstance(cls)->dwgInFields(&filer);
}

/// Classes that file fields of their own; their own tests check their records. The dimension
/// base has no data and no version of its own.
bool hasOwnRecord(const OdString& name) {
  for (const char16_t* own :
       {u"OdDbCustomDimensionBase", u"OdDbGeoRect", u"OdDbGeo3dRect", u"OdDbGeoTriangle",
        u"OdDbGeoPolygon", u"OdDbMesuarData", u"OdDbDimCoor", u"OdDbNewDimCoor"})
    if (name == own)
      return true;
  return false;
}

TEST_F(ClassFiling, ClassesWithoutFieldsWriteTheirBaseThenVersionOneAndRefuseNewerVersions) {
  for (OdRxClass* cls : moduleClasses()) {
    if (hasOwnRecord(cls->name()))
      continue;
    SCOPED_TRACE(utf8(cls->name()));
    EXPECT_EQ(readWithVersion(cls, 1), eOk);
    EXPECT_EQ(readWithVersion(cls, 0), eOk);
    EXPECT_EQ(static_cast<int>(readWithVersion(cls, 2)), 1);

    // The class's own output is exactly the base data plus version 1.
    OdDbObjectPtr object = newInstance(cls);
    OdStaticRxObject<OdDbDwgStreamFiler> own, expected;
    own.openForWrite(nullptr, OdDbFiler::kCopyFiler);
    object->dwgOutFields(&own);
    expected.openForWrite(nullptr, OdDbFiler::kCopyFiler);
    writeBaseData(object, &expected);
    expected.wrInt16(1);
    EXPECT_EQ(own.dataBitSize(), expected.dataBitSize());
    EXPECT_TRUE(own.dataBuffer() == expected.dataBuffer());
  }
}

TEST_F(ClassFiling, CopiesKeepTheCommonProperties) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  for (const char16_t* name : {u"OdDbGeoRect", u"DecorationPipe", u"OdDbPipeLine", u"OdDbDivPoint"}) {
    SCOPED_TRACE(utf8(name));
    OdDbEntityPtr entity = OdDbEntity::cast(odrxGetClass(name)->create());
    entity->setDatabaseDefaults(db);
    entity->setColorIndex(3);
    entity->setLinetypeScale(2.5);
    entity->setLineWeight(OdDb::kLnWt050);
    OdDbEntityPtr copy = OdDbEntity::cast(entity->clone());
    ASSERT_FALSE(copy.isNull());
    EXPECT_EQ(copy->isA(), entity->isA());
    EXPECT_EQ(copy->colorIndex(), 3);
    EXPECT_EQ(copy->linetypeScale(), 2.5);
    EXPECT_EQ(copy->lineWeight(), OdDb::kLnWt050);
    EXPECT_EQ(copy->layerId(), db->getLayerZeroId());
  }
}

TEST_F(ClassFiling, StreamsCutShortFailCleanlyAndLeaveTheObjectUsable) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  for (OdRxClass* cls : moduleClasses()) {
    SCOPED_TRACE(utf8(cls->name()));
    OdDbObjectPtr object = newInstance(cls);
    if (OdDbEntityPtr entity = OdDbEntity::cast(object))
      entity->setDatabaseDefaults(db);
    OdStaticRxObject<OdDbDwgStreamFiler> writer;
    writer.openForWrite(db, OdDbFiler::kFileFiler);
    object->dwgOutFields(&writer);
    const OdUInt64 dataBits = writer.dataBitSize();
    for (OdUInt64 cut = 0; cut < dataBits; cut += 8) {
      OdStaticRxObject<OdDbDwgStreamFiler> reader;
      reader.openForRead(writer.dataBuffer(), cut, writer.stringBuffer(), writer.stringBitSize(),
                         writer.handleBuffer(), writer.handleBitSize(), db);
      OdDbObjectPtr target = newInstance(cls);
      EXPECT_NE(target->dwgInFields(&reader), eOk) << "cut at bit " << cut;
      // Still usable: it files out again.
      OdStaticRxObject<OdDbDwgStreamFiler> again;
      again.openForWrite(db);
      target->dwgOutFields(&again);
    }
    for (OdUInt64 cut = 0; cut < writer.handleBitSize(); cut += 8) {
      OdStaticRxObject<OdDbDwgStreamFiler> reader;
      reader.openForRead(writer.dataBuffer(), dataBits, writer.stringBuffer(),
                         writer.stringBitSize(), writer.handleBuffer(), cut, db);
      EXPECT_NE(newInstance(cls)->dwgInFields(&reader), eOk) << "handles cut at bit " << cut;
    }
  }
}

TEST_F(ClassFiling, DxfReadingIsRefusedWithoutReadingForTheSharedRoutine) {
  for (OdRxClass* cls : moduleClasses()) {
    const OdString name = cls->name();
    // The bar-code and signature entities read DXF data of their own; the dimension base keeps
    // the platform's routine.
    if (name.left(2) == OdString(OD_T("KV")) || name == OD_T("OdDbCustomDimensionBase"))
      continue;
    EXPECT_EQ(static_cast<int>(newInstance(cls)->dxfInFields(nullptr)), 1) << utf8(name);
  }
}

TEST_F(ClassFiling, BarCodeAndSignatureEntitiesFileADxfBlockOfTheirOwn) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  for (const char16_t* name : {u"KVDb2DBarEntity", u"KVDbSignEntity"}) {
    SCOPED_TRACE(utf8(name));
    OdRxClass* cls = odrxGetClass(name);
    OdDbEntityPtr entity = OdDbEntity::cast(cls->create());
    entity->setDatabaseDefaults(db);
    entity->setColorIndex(4);
    OdStaticRxObject<OdDbDxfItemFiler> writer;
    writer.openForWrite(db);
    entity->dxfOutFields(&writer);
    OdDbDxfItemFiler::ItemArray items = writer.items();
    ASSERT_GE(items.size(), 2u);
    EXPECT_EQ(items[items.size() - 2].code, 100);
    EXPECT_EQ(items[items.size() - 2].value, OdString(name));
    EXPECT_EQ(items.back().code, 70);
    EXPECT_EQ(items.back().value, OD_T("1"));

    OdStaticRxObject<OdDbDxfItemFiler> reader;
    reader.openForRead(items, db);
    OdDbEntityPtr copy = OdDbEntity::cast(cls->create());
    copy->setDatabaseDefaults(db);
    EXPECT_EQ(copy->dxfInFields(&reader), eOk);
    EXPECT_EQ(copy->colorIndex(), 4);

    // A newer version is refused with the module's refusal value; a missing block is an error.
    items.back().value = OD_T("2");
    OdStaticRxObject<OdDbDxfItemFiler> newer;
    newer.openForRead(items, db);
    EXPECT_EQ(static_cast<int>(OdDbEntity::cast(cls->create())->dxfInFields(&newer)), 1);
    items.resize(items.size() - 2);
    OdStaticRxObject<OdDbDxfItemFiler> missing;
    missing.openForRead(items, db);
    EXPECT_EQ(OdDbEntity::cast(cls->create())->dxfInFields(&missing), eInvalidDxfCode);
  }
}

} // namespace
