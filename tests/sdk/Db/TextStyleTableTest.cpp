#include "DbTextStyleTable.h"

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbLayerTable.h"
#include "OdError.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace {

typedef OdStaticRxObject<OdDbDwgStreamFiler> Filer;

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

OdResult codeOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const OdError& err) {
    return err.code();
  }
  return eOk;
}

class TextStyleTableTest : public ::testing::Test {
protected:
  void SetUp() override { m_db = OdDbDatabase::createObject(); }

  OdDbTextStyleTablePtr styles(OdDb::OpenMode mode = OdDb::kForWrite) {
    return m_db->getTextStyleTableId().safeOpenObject(mode);
  }
  OdDbObjectId addStyle(const OdString& name) {
    OdDbTextStyleTableRecordPtr record = OdDbTextStyleTableRecord::createObject();
    record->setName(name);
    return styles()->add(record);
  }

  OdDbDatabasePtr m_db;
};

TEST_F(TextStyleTableTest, RegisteredWithTheirDxfNames) {
  OdRxClass* record = odrxGetClass(OD_T("OdDbTextStyleTableRecord"));
  ASSERT_NE(nullptr, record);
  EXPECT_EQ(OdDbSymbolTableRecord::desc(), record->myParent());
  EXPECT_EQ(OdString(OD_T("STYLE")), record->dxfName());
  OdRxClass* table = odrxGetClass(OD_T("OdDbTextStyleTable"));
  ASSERT_NE(nullptr, table);
  EXPECT_EQ(OdDbSymbolTable::desc(), table->myParent());
}

TEST_F(TextStyleTableTest, NewDrawingHasStandardAsCurrentStyle) {
  OdDbTextStyleTablePtr table = styles(OdDb::kForRead);
  EXPECT_EQ(1u, table->numRecords());
  const OdDbObjectId standard = table->getAt(OD_T("STANDARD"));
  ASSERT_FALSE(standard.isNull());
  EXPECT_EQ(m_db->getTextStyleStandardId(), standard);
  EXPECT_EQ(standard, m_db->getTEXTSTYLE());
  OdDbTextStyleTableRecordPtr record = standard.safeOpenObject();
  EXPECT_EQ(OdString(OD_T("Standard")), record->getName());
  EXPECT_EQ(OdString(OD_T("txt")), record->fileName());
  EXPECT_EQ(0.0, record->textSize());
  EXPECT_EQ(1.0, record->xScale());
}

TEST_F(TextStyleTableTest, LookupIgnoresLetterCaseAndFindsChineseNames) {
  const OdDbObjectId hz = addStyle(OD_T("hztxt_txtstyle_0_0"));
  const OdDbObjectId song = addStyle(OD_T("宋体_txtstyle_1_0"));
  OdDbTextStyleTablePtr table = styles(OdDb::kForRead);
  EXPECT_EQ(hz, table->getAt(OD_T("HZTXT_TXTSTYLE_0_0")));
  EXPECT_EQ(song, table->getAt(OD_T("宋体_txtstyle_1_0")));
  EXPECT_TRUE(table->getAt(OD_T("宋体_txtstyle_0_0")).isNull());
  OdDbTextStyleTableRecordPtr opened = table->getAt(OD_T("hztxt_TXTstyle_0_0"), OdDb::kForRead);
  ASSERT_FALSE(opened.isNull());
  EXPECT_EQ(hz, opened->objectId());
  // The table takes only text styles, and no name twice.
  OdDbLayerTableRecordPtr layer = OdDbLayerTableRecord::createObject();
  layer->setName(OD_T("notAStyle"));
  EXPECT_EQ(eWrongObjectType, codeOf([&] { styles()->add(layer); }));
  EXPECT_EQ(eDuplicateKey, codeOf([&] { addStyle(OD_T("HzTxt_txtstyle_0_0")); }));
}

TEST_F(TextStyleTableTest, FieldsRoundTripThroughSettersAndFont) {
  OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
  style->setFileName(OD_T("tssdeng.shx"));
  style->setBigFontFileName(OD_T("HZTXT.SHX"));
  style->setIsShapeFile(false);
  style->setIsVertical(true);
  style->setTextSize(3.5);
  style->setPriorSize(22.45);
  style->setXScale(0.7);
  style->setObliquingAngle(0.25);
  style->setFont(OD_T("宋体"), true, false, 134, 2);
  EXPECT_EQ(OdString(OD_T("tssdeng.shx")), style->fileName());
  EXPECT_EQ(OdString(OD_T("HZTXT.SHX")), style->bigFontFileName());
  EXPECT_TRUE(style->isVertical());
  EXPECT_EQ(3.5, style->textSize());
  EXPECT_EQ(22.45, style->priorSize());
  EXPECT_EQ(0.7, style->xScale());
  EXPECT_EQ(0.25, style->obliquingAngle());
  OdString face;
  bool bold = false;
  bool italic = true;
  int charset = 0;
  int pitch = 0;
  style->font(face, bold, italic, charset, pitch);
  EXPECT_EQ(OdString(OD_T("宋体")), face);
  EXPECT_TRUE(bold);
  EXPECT_FALSE(italic);
  EXPECT_EQ(134, charset);
  EXPECT_EQ(2, pitch);
}

TEST_F(TextStyleTableTest, RefusesBadSizesAndFactorsKeepingTheOldValue) {
  OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
  const struct {
    const char* what;
    std::function<void()> call;
  } cases[] = {
      {"xScale 0", [&] { style->setXScale(0.0); }},
      {"xScale negative", [&] { style->setXScale(-1.0); }},
      {"xScale NaN", [&] { style->setXScale(kNaN); }},
      {"text size negative", [&] { style->setTextSize(-0.5); }},
      {"text size infinite", [&] { style->setTextSize(kInf); }},
      {"prior size negative", [&] { style->setPriorSize(-2.5); }},
      {"oblique NaN", [&] { style->setObliquingAngle(kNaN); }},
  };
  for (const auto& c : cases)
    EXPECT_EQ(eInvalidInput, codeOf(c.call)) << c.what;
  EXPECT_EQ(1.0, style->xScale());
  EXPECT_EQ(0.0, style->textSize());
  EXPECT_EQ(2.5, style->priorSize());
  EXPECT_EQ(0.0, style->obliquingAngle());
  style->setTextSize(0.0); // zero means "not fixed" and is allowed
  EXPECT_EQ(0.0, style->textSize());
}

TEST_F(TextStyleTableTest, DwgRoundTripAndShortStream) {
  OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
  style->setName(OD_T("华文仿宋_txtstyle_0_1"));
  style->setFileName(OD_T("STFANGSO.TTF"));
  style->setIsShapeFile(true);
  style->setTextSize(1.5);
  style->setPriorSize(12.0);
  style->setXScale(0.8);
  style->setObliquingAngle(-0.2);
  style->setFont(OD_T("华文仿宋"), false, true, 1, 34);
  Filer filer;
  filer.openForWrite();
  style->dwgOutFields(&filer);
  filer.rewind();
  OdDbTextStyleTableRecordPtr copy = OdDbTextStyleTableRecord::createObject();
  ASSERT_EQ(eOk, copy->dwgInFields(&filer));
  EXPECT_EQ(style->getName(), copy->getName());
  EXPECT_EQ(OdString(OD_T("STFANGSO.TTF")), copy->fileName());
  EXPECT_TRUE(copy->isShapeFile());
  EXPECT_EQ(1.5, copy->textSize());
  EXPECT_EQ(12.0, copy->priorSize());
  EXPECT_EQ(0.8, copy->xScale());
  EXPECT_EQ(-0.2, copy->obliquingAngle());
  OdString face;
  bool bold = true;
  bool italic = false;
  int charset = 0;
  int pitch = 0;
  copy->font(face, bold, italic, charset, pitch);
  EXPECT_EQ(OdString(OD_T("华文仿宋")), face);
  EXPECT_FALSE(bold);
  EXPECT_TRUE(italic);
  EXPECT_EQ(1, charset);
  EXPECT_EQ(34, pitch);
  EXPECT_EQ(0u, filer.remainingDataBits());

  for (OdUInt64 bits = 0; bits < filer.dataBitSize(); bits += 3) {
    Filer reader;
    reader.openForRead(filer.dataBuffer(), bits, filer.stringBuffer(), filer.stringBitSize(),
                       filer.handleBuffer(), filer.handleBitSize());
    OdDbTextStyleTableRecordPtr fresh = OdDbTextStyleTableRecord::createObject();
    EXPECT_NE(eOk, fresh->dwgInFields(&reader)) << "cut at bit " << bits;
    EXPECT_EQ(1.0, fresh->xScale()) << "cut at bit " << bits;
  }
}

TEST_F(TextStyleTableTest, TextSizeAndTextStyleVariablesValidate) {
  EXPECT_EQ(2.5, m_db->getTEXTSIZE());
  m_db->setTEXTSIZE(3.5);
  EXPECT_EQ(3.5, m_db->getTEXTSIZE());
  for (double bad : {0.0, -1.0, kNaN, kInf})
    EXPECT_EQ(eInvalidInput, codeOf([&] { m_db->setTEXTSIZE(bad); })) << bad;
  EXPECT_EQ(3.5, m_db->getTEXTSIZE());

  const OdDbObjectId own = addStyle(OD_T("hztxt_txtstyle_0_0"));
  m_db->setTEXTSTYLE(own);
  EXPECT_EQ(own, m_db->getTEXTSTYLE());
  OdDbDatabasePtr other = OdDbDatabase::createObject();
  const OdDbObjectId wrong[] = {OdDbObjectId(), m_db->getLayerZeroId(),
                                other->getTextStyleStandardId()};
  for (const OdDbObjectId& id : wrong)
    EXPECT_EQ(eWrongObjectType, codeOf([&] { m_db->setTEXTSTYLE(id); }));
  EXPECT_EQ(own, m_db->getTEXTSTYLE());
}

TEST_F(TextStyleTableTest, UcsValidatesAndMapsToWorld) {
  EXPECT_EQ(OdGePoint3d::kOrigin, m_db->getUCSORG());
  EXPECT_EQ(OdGeVector3d::kXAxis, m_db->getUCSXDIR());
  EXPECT_EQ(OdGeVector3d::kYAxis, m_db->getUCSYDIR());

  m_db->setUcs(OdGePoint3d(10, 20, 0), OdGeVector3d(0, 2, 0), OdGeVector3d(-3, 0, 0));
  EXPECT_EQ(OdGeVector3d::kYAxis, m_db->getUCSXDIR()); // stored as unit vectors
  EXPECT_EQ(-OdGeVector3d::kXAxis, m_db->getUCSYDIR());
  const OdGeMatrix3d toWorld = m_db->getUcsToWorldMatrix();
  EXPECT_TRUE(OdGePoint3d(10, 21, 0).isEqualTo(toWorld * OdGePoint3d(1, 0, 0)));
  EXPECT_TRUE(OdGePoint3d(8, 20, 0).isEqualTo(toWorld * OdGePoint3d(0, 2, 0)));
  EXPECT_TRUE(OdGePoint3d(1, 0, 0).isEqualTo(toWorld.inverse() * OdGePoint3d(10, 21, 0)));

  const struct {
    const char* what;
    OdGePoint3d origin;
    OdGeVector3d xAxis;
    OdGeVector3d yAxis;
  } bad[] = {
      {"zero x axis", OdGePoint3d(), OdGeVector3d(), OdGeVector3d::kYAxis},
      {"zero y axis", OdGePoint3d(), OdGeVector3d::kXAxis, OdGeVector3d()},
      {"parallel axes", OdGePoint3d(), OdGeVector3d::kXAxis, OdGeVector3d(2, 0, 0)},
      {"oblique axes", OdGePoint3d(), OdGeVector3d::kXAxis, OdGeVector3d(1, 1, 0)},
      {"NaN origin", OdGePoint3d(kNaN, 0, 0), OdGeVector3d::kXAxis, OdGeVector3d::kYAxis},
      {"infinite axis", OdGePoint3d(), OdGeVector3d(kInf, 0, 0), OdGeVector3d::kYAxis},
  };
  for (const auto& c : bad)
    EXPECT_EQ(eInvalidInput, codeOf([&] { m_db->setUcs(c.origin, c.xAxis, c.yAxis); })) << c.what;
  EXPECT_EQ(OdGePoint3d(10, 20, 0), m_db->getUCSORG());
  EXPECT_EQ(OdGeVector3d::kYAxis, m_db->getUCSXDIR());
}

} // namespace
