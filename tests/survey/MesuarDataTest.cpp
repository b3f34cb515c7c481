// The invisible measurement-data carrier: only its text is filed, nothing is drawn or edited.

#include "survey/OdDbMesuarData.h"

#include "DbDatabase.h"
#include "Gi/GiRecorder.h"

#include "GeoPolygonTestSupport.h"

#include <vector>

namespace {

using polygontest::hexOfBits;

/// A record as the class writes it, but with the given version.
void writeRecord(OdDbDwgStreamFiler& filer, OdInt16 version, const OdString& text) {
  OdDbMesuarDataPtr base = OdDbMesuarData::createObject();
  filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  base->OdDbEntity::dwgOutFields(&filer);
  filer.wrInt16(version);
  filer.wrString(text);
  filer.rewind();
}

TEST(MesuarData, IsRegisteredUnderTheEntityClassWithoutExtensions) {
  EXPECT_EQ(OdDbMesuarData::desc()->myParent(), OdDbEntity::desc());
  EXPECT_TRUE(OdDbMesuarData::desc()->dxfName() == OdString(u"ODDBMESUARDATA"));
  EXPECT_TRUE(OdDbMesuarData::desc()->extensionClasses().isEmpty());
}

TEST(MesuarData, ShowsOffersAndChangesNothing) {
  OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
  EXPECT_TRUE(data->data.isEmpty());
  data->data = OdString(u"高程 12.5");
  OdStaticRxObject<OdDbDwgStreamFiler> before, after;
  before.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  data->dwgOutFields(&before);

  OdGiRecorder recorder;
  EXPECT_TRUE(data->worldDraw(&recorder));
  EXPECT_TRUE(recorder.records().empty());

  OdDbGripDataPtrArray grips;
  EXPECT_EQ(data->getGripPoints(grips, 1.0, 3, OdGeVector3d::kZAxis, 0), eOk);
  OdGePoint3dArray points;
  EXPECT_EQ(data->getGripPoints(points), eOk);
  EXPECT_EQ(data->getStretchPoints(points), eOk);
  EXPECT_EQ(data->getOsnapPoints(OdDb::kOsModeCen, 0, OdGePoint3d(), OdGePoint3d(),
                                 OdGeMatrix3d::kIdentity, points),
            eOk);
  OdDbMesuarDataPtr other = OdDbMesuarData::createObject();
  EXPECT_EQ(data->intersectWith(other, OdDb::kOnBothOperands, points), eOk);
  OdRxObjectPtrArray pieces;
  EXPECT_EQ(data->explode(pieces), eOk);
  EXPECT_TRUE(grips.isEmpty());
  EXPECT_TRUE(points.isEmpty());
  EXPECT_TRUE(pieces.isEmpty());

  EXPECT_EQ(data->transformBy(OdGeMatrix3d::scaling(3.0)), eOk);
  OdDbVoidPtrArray tags;
  tags.append(nullptr);
  EXPECT_EQ(data->moveGripPointsAt(tags, OdGeVector3d(1, 0, 0), 0), eOk);
  EXPECT_EQ(data->moveGripPointsAt(OdIntArray{0}, OdGeVector3d(1, 0, 0)), eOk);
  EXPECT_EQ(data->moveStretchPointsAt(OdIntArray{0}, OdGeVector3d(1, 0, 0)), eOk);

  after.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  data->dwgOutFields(&after);
  EXPECT_TRUE(after.dataBuffer() == before.dataBuffer());
  EXPECT_TRUE(after.stringBuffer() == before.stringBuffer());
}

TEST(MesuarData, WritesVersionFiveThenTheText) {
  OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
  data->data = OdString(u"A");
  OdStaticRxObject<OdDbDwgStreamFiler> own, expected;
  own.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  data->dwgOutFields(&own);
  writeRecord(expected, 5, OdString(u"A"));
  EXPECT_EQ(own.dataBitSize(), expected.dataBitSize());
  EXPECT_TRUE(own.dataBuffer() == expected.dataBuffer());
  EXPECT_TRUE(own.stringBuffer() == expected.stringBuffer());
  // Stored reference: version 5 as BS ("01 00000101"); the text as TU, a BS count 1
  // ("01 00000001") and 'A' as two bytes little-endian.
  OdStaticRxObject<OdDbDwgStreamFiler> base;
  base.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  data->OdDbEntity::dwgOutFields(&base);
  EXPECT_EQ(hexOfBits(own.dataBuffer(), own.dataBitSize(), base.dataBitSize()), "4140");
  EXPECT_EQ(own.stringBitSize() - base.stringBitSize(), 26u);
  EXPECT_EQ(hexOfBits(own.stringBuffer(), own.stringBitSize(), base.stringBitSize()), "40504000");
}

TEST(MesuarData, OtherVersionsAreReadButDropTheText) {
  struct Case {
    OdInt16 version;
    const char16_t* expected;
  };
  const Case cases[] = {{5, u"A"}, {4, u""}, {6, u""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "version " << c.version);
    OdStaticRxObject<OdDbDwgStreamFiler> filer;
    writeRecord(filer, c.version, OdString(u"A"));
    OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
    data->data = OdString(u"old");
    EXPECT_EQ(data->dwgInFields(&filer), eOk);
    EXPECT_TRUE(data->data == OdString(c.expected));
    // Read through to the end either way.
    EXPECT_EQ(filer.remainingStringBits(), 0u);
  }
}

TEST(MesuarData, DxfInputIsRefusedWithoutReading) {
  OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
  data->data = OdString(u"kept");
  EXPECT_EQ(static_cast<int>(data->dxfInFields(nullptr)), 1);
  EXPECT_TRUE(data->data == OdString(u"kept"));
}

TEST(MesuarData, StreamsCutShortFailAndKeepTheText) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbMesuarDataPtr source = OdDbMesuarData::createObject();
  source->setDatabaseDefaults(db);
  source->data = OdString(u"测量数据");
  OdStaticRxObject<OdDbDwgStreamFiler> writer;
  writer.openForWrite(db, OdDbFiler::kFileFiler);
  source->dwgOutFields(&writer);
  struct Cut {
    OdUInt64 dataBits;
    OdUInt64 stringBits;
  };
  std::vector<Cut> cuts;
  for (OdUInt64 bits = 0; bits < writer.dataBitSize(); bits += 8)
    cuts.push_back({bits, writer.stringBitSize()});
  for (OdUInt64 bits = 0; bits < writer.stringBitSize(); bits += 8)
    cuts.push_back({writer.dataBitSize(), bits});
  for (const Cut& cut : cuts) {
    SCOPED_TRACE(testing::Message()
                 << "data bits " << cut.dataBits << ", string bits " << cut.stringBits);
    OdStaticRxObject<OdDbDwgStreamFiler> reader;
    reader.openForRead(writer.dataBuffer(), cut.dataBits, writer.stringBuffer(), cut.stringBits,
                       writer.handleBuffer(), writer.handleBitSize(), db);
    OdDbMesuarDataPtr target = OdDbMesuarData::createObject();
    target->data = OdString(u"old");
    EXPECT_NE(target->dwgInFields(&reader), eOk);
    EXPECT_TRUE(target->data == OdString(u"old"));
    OdStaticRxObject<OdDbDwgStreamFiler> again;
    again.openForWrite(db);
    target->dwgOutFields(&again);
    EXPECT_GT(again.stringBitSize(), 0u);
  }
}

} // namespace
