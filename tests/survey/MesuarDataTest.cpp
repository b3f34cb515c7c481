// The invisible measurement-data carrier: only its text is filed, nothing is drawn or edited.
// What every class must do is checked once by the class contract suite (tests/contract).

#include "survey/OdDbMesuarData.h"

#include "GeoPolygonTestSupport.h"

#include <string>

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

TEST(MesuarData, OffersNoGripsOrSnapsAndEditsChangeNothing) {
  OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
  EXPECT_TRUE(data->data.isEmpty());
  data->data = OdString(u"高程 12.5");
  const std::string before = polygontest::dwgHex(data);

  OdDbGripDataPtrArray grips;
  EXPECT_EQ(data->getGripPoints(grips, 1.0, 3, OdGeVector3d::kZAxis, 0), eOk);
  OdGePoint3dArray points;
  EXPECT_EQ(data->getGripPoints(points), eOk);
  EXPECT_EQ(data->getStretchPoints(points), eOk);
  EXPECT_EQ(data->getOsnapPoints(OdDb::kOsModeCen, 0, OdGePoint3d(), OdGePoint3d(),
                                 OdGeMatrix3d::kIdentity, points),
            eOk);
  EXPECT_EQ(data->intersectWith(OdDbMesuarData::createObject(), OdDb::kOnBothOperands, points),
            eOk);
  EXPECT_TRUE(grips.isEmpty());
  EXPECT_TRUE(polygontest::drawn(data).empty());
  EXPECT_TRUE(points.isEmpty());

  EXPECT_EQ(data->transformBy(OdGeMatrix3d::scaling(3.0)), eOk);
  OdDbVoidPtrArray tags;
  tags.append(nullptr);
  EXPECT_EQ(data->moveGripPointsAt(tags, OdGeVector3d(1, 0, 0), 0), eOk);
  EXPECT_EQ(data->moveGripPointsAt(OdIntArray{0}, OdGeVector3d(1, 0, 0)), eOk);
  EXPECT_EQ(data->moveStretchPointsAt(OdIntArray{0}, OdGeVector3d(1, 0, 0)), eOk);
  EXPECT_EQ(polygontest::dwgHex(data), before);
  EXPECT_TRUE(data->data == OdString(u"高程 12.5"));
}

TEST(MesuarData, WritesVersionFiveThenTheText) {
  OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
  data->data = OdString(u"A");
  polygontest::Filer own, base;
  own.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  data->dwgOutFields(&own);
  base.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  data->OdDbEntity::dwgOutFields(&base);
  // Stored reference: version 5 as BS ("01 00000101"); the text as TU, a BS count 1
  // ("01 00000001") and 'A' as two bytes little-endian.
  EXPECT_EQ(own.dataBitSize() - base.dataBitSize(), 10u);
  EXPECT_EQ(hexOfBits(own.dataBuffer(), own.dataBitSize(), base.dataBitSize()), "4140");
  EXPECT_EQ(own.stringBitSize() - base.stringBitSize(), 26u);
  EXPECT_EQ(hexOfBits(own.stringBuffer(), own.stringBitSize(), base.stringBitSize()), "40504000");
}

TEST(MesuarData, OtherVersionsAreReadButDropTheText) {
  const struct {
    OdInt16 version;
    const char16_t* expected;
  } cases[] = {{5, u"A"}, {4, u""}, {6, u""}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "version " << c.version);
    polygontest::Filer filer;
    writeRecord(filer, c.version, OdString(u"A"));
    OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
    data->data = OdString(u"old");
    EXPECT_EQ(data->dwgInFields(&filer), eOk);
    EXPECT_TRUE(data->data == OdString(c.expected));
    // Read through to the end either way.
    EXPECT_EQ(filer.remainingStringBits(), 0u);
  }
}

} // namespace
