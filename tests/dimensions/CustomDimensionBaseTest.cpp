// The text operations every dimension-like entity inherits from the dimension base.

#include "dimensions/OdDbCustomDimensionBase.h"

#include "BrevantApp.h"
#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbTextStyleTable.h"
#include "OdError.h"

#include "common/EntityTestSupport.h"

#include <functional>
#include <limits>

namespace {

using enttest::trueColor;

OdCmColor aciColor(OdUInt16 index) {
  OdCmColor color;
  color.setColorIndex(index);
  return color;
}

/// A dimension base in a new drawing's model space, held open for write.
OdDbCustomDimensionBasePtr addDimension(OdDbDatabase* database) {
  OdDbBlockTableRecordPtr modelSpace = database->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
  OdDbCustomDimensionBasePtr dimension = OdDbCustomDimensionBase::createObject();
  modelSpace->appendOdDbEntity(dimension);
  return dimension;
}

TEST(CustomDimensionBase, PureWhiteTextBecomesAci7AndTooSmallAFontHeightIsIgnored) {
  struct Case {
    const char* what;
    OdCmColor given;
    OdCmColor applied;
  } const cases[] = {
      {"true white", trueColor(255, 255, 255), aciColor(7)},
      {"almost white stays", trueColor(255, 255, 254), trueColor(255, 255, 254)},
      {"ACI 7 stays", aciColor(7), aciColor(7)},
  };
  OdDbCustomDimensionBasePtr dimension = OdDbCustomDimensionBase::createObject();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    OdDbMTextPtr text = OdDbMText::createObject();
    OdCmColor color = c.given;
    dimension->setColorText(text, color);
    EXPECT_EQ(c.applied, text->color());
    EXPECT_EQ(c.applied, color); // the caller sees what was applied
  }
  // Without a text only the colour is mapped.
  OdDbMTextPtr none;
  OdCmColor white = trueColor(255, 255, 255);
  dimension->setColorText(none, white);
  EXPECT_TRUE(white.isByACI());
  EXPECT_EQ(7, white.colorIndex());

  // A font height below 1e-8 is ignored.
  const struct {
    double height;
    double expected;
  } heights[] = {
      {0.0, 2.5},   {5e-9, 2.5}, {-3.0, 2.5}, {std::numeric_limits<double>::quiet_NaN(), 2.5},
      {1e-8, 1e-8}, {7.5, 7.5},
  };
  for (const auto& c : heights) {
    SCOPED_TRACE(c.height);
    OdDbMTextPtr text = OdDbMText::createObject();
    text->setHeight(11.0);
    dimension->setFontHeight(text, c.height);
    EXPECT_EQ(c.expected, text->textHeight());
    EXPECT_EQ(11.0, text->height()); // the box height is not the font height
  }
  EXPECT_NO_THROW(dimension->setFontHeight(none, 3.0));
}

TEST(CustomDimensionBase, DefaultTextHeightFollowsTheCurrentStyle) {
  struct Case {
    const char* what;
    const char16_t* styleName;
    double fixedSize;
    double priorSize;
    double scale;
    double expected;
  } const cases[] = {
      {"annotation style at 1:100", u"BREVANT_AISTYLE", 0.0, 3.0, 100.0, 1600.0},
      {"annotation style ignores its sizes", u"BREVANT_AISTYLE", 4.0, 3.0, 2.0, 32.0},
      {"fixed size", u"DIM", 4.0, 3.0, 100.0, 4.0},
      {"neither: TEXTSIZE", u"DIM", 0.0, 0.0, 100.0, 7.0},
      {"name compared in its case", u"brevant_aistyle", 0.0, 3.0, 100.0, 3.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    OdDbDatabasePtr database = OdDbDatabase::createObject();
    database->setTEXTSIZE(7.0);
    database->setDIMSCALE(c.scale);
    {
      OdDbTextStyleTablePtr table = database->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
      OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
      style->setName(c.styleName);
      style->setTextSize(c.fixedSize);
      style->setPriorSize(c.priorSize);
      database->setTEXTSTYLE(table->add(style));
    }
    EXPECT_EQ(c.expected, addDimension(database.get())->GetTextHeight());
  }

  // The new drawing's "Standard" has prior size 2.5; an entity in no drawing takes 2.5 too.
  OdDbDatabasePtr plain = OdDbDatabase::createObject();
  plain->setTEXTSIZE(9.0);
  EXPECT_EQ(2.5, addDimension(plain.get())->GetTextHeight());
  EXPECT_EQ(2.5, OdDbCustomDimensionBase::createObject()->GetTextHeight());
}

TEST(CustomDimensionBase, SettersNeedWriteAccessAndTheBaseFilesOnlyTheEntityData) {
  OdDbDatabasePtr database = OdDbDatabase::createObject();
  OdDbCustomDimensionBasePtr dimension = addDimension(database.get());
  dimension->setColor(trueColor(10, 20, 30));
  EXPECT_EQ(enttest::ownRecord(dimension), "|");
  OdDbMTextPtr text = OdDbMText::createObject();
  text->setContents(u"12.50");
  EXPECT_TRUE(dimension->setDimensionText(u"99", text));
  EXPECT_TRUE(dimension->editDimensionText(text, OdDbMText::createObject()));
  EXPECT_EQ(OdString(u"12.50"), text->contents());

  dimension->downgradeOpen();
  OdCmColor color = trueColor(1, 2, 3);
  const std::function<void()> setters[] = {
      [&] { dimension->setDimensionText(u"99", text); },
      [&] { dimension->editDimensionText(text, OdDbMTextPtr()); },
      [&] { dimension->setTxtStyleId(database->getTextStyleStandardId()); },
      [&] { dimension->setColorText(text, color); },
      [&] { dimension->setFontHeight(text, 5.0); },
  };
  for (const auto& setter : setters) {
    try {
      setter();
      ADD_FAILURE() << "no write-access error";
    } catch (const OdError& error) {
      EXPECT_EQ(eNotOpenForWrite, error.code());
    }
  }
  EXPECT_TRUE(text->color().isByLayer());
  OdArray<OdRxObjectPtr> pieces;
  EXPECT_EQ(eOk, dimension->subSuperExplode(pieces));
  EXPECT_TRUE(pieces.isEmpty());
}

} // namespace
