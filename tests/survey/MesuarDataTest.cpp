// The invisible measurement-data carrier: only its text is filed, nothing is drawn or edited.
// What every class must do is checked once by the class contract suite (tests/contract).

#include "survey/OdDbMesuarData.h"

#include "common/EntityTestSupport.h"

#include <string>

namespace {

TEST(MesuarData, OffersNoGripsOrSnapsAndEditsChangeNothing) {
  OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
  data->data = OdString(u"高程 12.5");
  const std::string before = enttest::wholeRecord(data);
  OdDbGripDataPtrArray grips;
  OdGePoint3dArray points;
  EXPECT_EQ(data->getGripPoints(grips, 1.0, 3, OdGeVector3d::kZAxis, 0), eOk);
  EXPECT_EQ(data->getGripPoints(points), eOk);
  EXPECT_EQ(data->getStretchPoints(points), eOk);
  EXPECT_EQ(data->getOsnapPoints(OdDb::kOsModeCen, 0, OdGePoint3d(), OdGePoint3d(),
                                 OdGeMatrix3d::kIdentity, points),
            eOk);
  EXPECT_EQ(data->intersectWith(OdDbMesuarData::createObject(), OdDb::kOnBothOperands, points),
            eOk);
  EXPECT_TRUE(grips.isEmpty());
  EXPECT_TRUE(points.isEmpty());
  EXPECT_TRUE(enttest::drawn(data).empty()); // and worldDraw says it is done

  EXPECT_EQ(data->transformBy(OdGeMatrix3d::scaling(3.0)), eOk);
  EXPECT_EQ(enttest::moveGrips(data, {0}, OdGeVector3d(1, 0, 0)), eOk);
  EXPECT_EQ(data->moveGripPointsAt(OdIntArray{0}, OdGeVector3d(1, 0, 0)), eOk);
  EXPECT_EQ(data->moveStretchPointsAt(OdIntArray{0}, OdGeVector3d(1, 0, 0)), eOk);
  EXPECT_EQ(enttest::wholeRecord(data), before);
}

TEST(MesuarData, WritesVersionFiveThenTheText) {
  OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
  data->data = OdString(u"A");
  // Stored reference: version 5 as BS ("01 00000101"); the text as TU, a BS count 1
  // ("01 00000001") and 'A' as two bytes little-endian.
  EXPECT_EQ(enttest::ownRecord(data), "4140|40504000");
}

TEST(MesuarData, OtherVersionsAreReadButDropTheText) {
  const struct {
    OdInt16 version;
    const char16_t* expected;
  } cases[] = {{5, u"A"}, {4, u""}, {6, u""}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "version " << c.version);
    OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
    enttest::Filer filer;
    filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
    data->OdDbEntity::dwgOutFields(&filer);
    filer.wrInt16(c.version);
    filer.wrString(OdString(u"A"));
    filer.rewind();
    data->data = OdString(u"old");
    EXPECT_EQ(data->dwgInFields(&filer), eOk);
    EXPECT_TRUE(data->data == OdString(c.expected));
    // Read through to the end either way.
    EXPECT_EQ(filer.remainingStringBits(), 0u);
  }
}

} // namespace
