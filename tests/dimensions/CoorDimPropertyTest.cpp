// The property pages, menus and list text of the two coordinate dimensions: their own rows and
// what setting them does. The host contract every page keeps is the class contract suite's.

#include "dimensions/CoorDimExtensions.h"

#include "DbLine.h"
#include "OdError.h"

#include "common/EntityTestSupport.h"

#include <string>

namespace {

template <class Entity> PropertyPEPtr pageOf() {
  return PropertyPE::cast(Entity::desc()->getX(PropertyPE::desc()));
}

OdVariant int32(OdInt32 value) {
  OdVariant v;
  v.setInt32(value);
  return v;
}

OdVariant text(const char16_t* value) {
  return OdVariant(OdString(value));
}

struct Row {
  OdVariant value;
  OdInt32 editorKind;
};

/// The page's groups and its rows of group 1, all editable, with their values. The rows' labels
/// and tips are constants, and the display name is checked with the other classes' in
/// tests/module.
void expectRows(PropertyPE* pe, const OdDbEntity* entity, const std::vector<Row>& rows) {
  ASSERT_NE(pe, nullptr);
  EXPECT_EQ(pe->getPropertyCount(), 2);
  EXPECT_EQ(pe->getPropertyByeId(entity, 0).flag, 1);
  EXPECT_EQ(pe->getPropertyByeId(entity, 1).flag, 1);
  EXPECT_EQ(pe->getPropertyByeId(entity, 1).count, static_cast<OdInt32>(rows.size()));
  for (unsigned int i = 0; i < rows.size(); ++i) {
    const propAttribute record = pe->getPropAttributeByeId(entity, 1, static_cast<int>(i));
    EXPECT_TRUE(record.value == rows[i].value) << i;
    EXPECT_TRUE(record.editable) << i;
    EXPECT_EQ(record.editorKind, rows[i].editorKind) << i;
  }
}

OdDbDimCoorPtr oldDim() {
  OdDbDimCoorPtr dim = OdDbDimCoor::createObject();
  dim->setStartPt(OdGePoint3d(1.5, -2.25, 0.125));
  dim->setDimPt(OdGePoint3d(10, 20, 30));
  dim->setXText(u"X=north");
  dim->setYText(u"Y=east");
  return dim;
}

TEST(CoorDimPropertyPE, ShowsAndSetsBothTexts) {
  PropertyPEPtr pe = pageOf<OdDbDimCoor>();
  OdDbDimCoorPtr dim = oldDim();
  expectRows(pe, dim, {{text(u"X=north"), 0}, {text(u"Y=east"), 0}});
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, text(u"X=8"), 1, 0));
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, text(u"Y=9"), 1, 1));
  EXPECT_EQ(dim->getXText(), OdString(u"X=8"));
  EXPECT_EQ(dim->getYText(), OdString(u"Y=9"));
  // Rows and groups the page does not have are answered with true and change nothing.
  const std::string before = enttest::wholeRecord(dim);
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, text(u"?"), 1, 2));
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, text(u"?"), 2, 0));
  EXPECT_EQ(enttest::wholeRecord(dim), before);
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, int32(static_cast<OdInt32>(0xC3000003)), 0, 0));
  EXPECT_EQ(dim->getDimColor().colorIndex(), 3) << "the common colour row colours the lines";
}

TEST(CoorDimPropertyPE, ListTextFollowsTheHostsOwnWithTypeAndPoints) {
  PropertyPEPtr pe = pageOf<OdDbDimCoor>();
  OdDbDimCoorPtr dim = oldDim();
  const OdString expected = OdString(u"坐标标注:") + pe->PropertyPE::GetListInfo(dim) +
                            OdString(u"\n类型:坐标"
                                     u"\n定义点:X=10.0000 Y=20.0000 Z=30.0000"
                                     u"\n起始点:X=1.5000 Y=-2.2500 Z=0.1250");
  EXPECT_EQ(pe->GetListInfo(dim), expected);
  EXPECT_NE(pe->PropertyPE::GetListInfo(dim).find(u"类名:坐标标注"), -1);
  EXPECT_TRUE(pe->GetListInfo(nullptr).isEmpty());
  EXPECT_THROW(pe->GetListInfo(OdDbLine::createObject()), OdError_NotThatKindOfClass);
}

OdDbNewDimCoorPtr newDim() {
  OdDbNewDimCoorPtr dim = OdDbNewDimCoor::createObject();
  dim->setXtext(u"X=north");
  dim->setYtext(u"Y=east");
  dim->setTextHeight(3.0);
  return dim;
}

std::vector<OdDbMTextPtr> textsOf(const OdDbNewDimCoor* dim) {
  return {dim->getXTextObj(), dim->getYTextObj(), dim->getThirdTextObj()};
}

TEST(NewCoorDimPropertyPE, ShowsAndSetsTextContentsSizeAndColour) {
  PropertyPEPtr pe = pageOf<OdDbNewDimCoor>();
  OdDbNewDimCoorPtr dim = newDim();
  OdVariant green;
  green.setUInt32(0xC200FF00u);
  // Text colour, X and Y texts, text size.
  expectRows(pe, dim,
             {{green, 1}, {text(u"X=north"), 0}, {text(u"Y=east"), 0}, {OdVariant(3.0), 0}});
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, text(u"X=1"), 1, 1));
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, text(u"Y=123456789"), 1, 2));
  EXPECT_EQ(dim->getXTextObj()->contents(), OdString(u"X=1"));
  EXPECT_EQ(dim->getYTextObj()->contents(), OdString(u"Y=123456789"));
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, OdVariant(5.0), 1, 3));
  for (const OdDbMTextPtr& t : textsOf(dim))
    EXPECT_EQ(t->textHeight(), 5.0);
  // The shoulder follows: (11 + 1) * 5 * 0.75.
  EXPECT_NEAR(dim->getEndPt().x, 45.0, 1e-9);

  // One colour for all texts, pure white as ACI 7; the lines keep theirs.
  for (const OdUInt32 packed : {0xC2102030u, 0xC3000005u, 0xC2FFFFFFu}) {
    SCOPED_TRACE(packed);
    const OdUInt32 applied = packed == 0xC2FFFFFFu ? 0xC3000007u : packed;
    EXPECT_TRUE(pe->setPropAttributeByeId(dim, int32(static_cast<OdInt32>(packed)), 1, 0));
    for (const OdDbMTextPtr& t : textsOf(dim))
      EXPECT_EQ(t->color().color(), applied);
    EXPECT_EQ(pe->getPropAttributeByeId(dim, 1, 0).value.getUInt32(), applied);
    EXPECT_EQ(dim->dimColor().color(), 0xC200FF00u);
  }
}

TEST(NewCoorDimPropertyPE, UnusableColoursAndHeightsChangeNothing) {
  PropertyPEPtr pe = pageOf<OdDbNewDimCoor>();
  struct Case {
    int row;
    OdVariant value;
  } cases[] = {{0, text(u"1")}, {0, OdVariant(1.0)}, {0, int32(0x7F000000)}, // no colour method
               {3, text(u"4")}, {3, OdVariant(0.0)}, {3, OdVariant(5e-9)},   {3, OdVariant(-1.0)}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.row);
    OdDbNewDimCoorPtr dim = newDim();
    const std::string before = enttest::wholeRecord(dim);
    EXPECT_FALSE(pe->setPropAttributeByeId(dim, c.value, 1, c.row));
    EXPECT_EQ(enttest::wholeRecord(dim), before);
  }
  OdDbNewDimCoorPtr dim = newDim();
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, OdVariant(1e-8), 1, 3)) << "just above the limit";
  EXPECT_EQ(dim->getXTextObj()->textHeight(), 1e-8);
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, text(u"?"), 1, 4));
  EXPECT_TRUE(pe->setPropAttributeByeId(dim, text(u"?"), 2, 0));
}

} // namespace
