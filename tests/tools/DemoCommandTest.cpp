// The sample drawing behind `custents demo`: refused shapes and records, and property texts
// set through the grid. What the command writes is DrawingCommandsTest's.

#include "ModuleSession.h"
#include "SampleDrawing.h"

#include "DbDwgStreamFiler.h"
#include "OdError.h"
#include "RxDictionary.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using namespace custents::sample;

/// Keeps the module loaded around an in-process test.
class SampleDrawingTest : public ::testing::Test {
protected:
  ModuleSession session{std::string(CUSTENTS_BIN_DIR) + "/CustEnts.tx"};
};

TEST(SampleGeometry, DegenerateShapesAreRefused) {
  const OdGePoint3d o(0, 0, 0);
  EXPECT_THROW(rectangleFromDiagonal(o, OdGePoint3d(0, 5, 0)), std::invalid_argument);
  EXPECT_THROW(rectangleFromDiagonal(o, OdGePoint3d(5, 0, 0)), std::invalid_argument);
  EXPECT_THROW(triangleThrough(o, OdGePoint3d(1, 1, 0), OdGePoint3d(3, 3, 0)),
               std::invalid_argument);
  EXPECT_THROW(equilateralTriangle(o, o), std::invalid_argument);
  EXPECT_THROW(regularPolygonVertices(o, o, 5), std::invalid_argument);
  for (int sides : {-1, 0, 2, 32768})
    EXPECT_THROW(regularPolygonVertices(o, OdGePoint3d(1, 0, 0), sides), std::invalid_argument)
        << sides;
  EXPECT_THROW(polygonRecord(o, OdGePoint3d(1, 0, 0), 2), std::invalid_argument);
}

TEST_F(SampleDrawingTest, RecordsOfUnknownClassesAndWrongLayoutsAreRefused) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  EntityRecord unknown = measurementRecord(OD_T("x"));
  unknown.className = OD_T("OdDbNoSuchShape");
  EXPECT_THROW(createFromRecord(db.get(), unknown, 1), std::runtime_error);

  // A rectangle record claiming a newer version is refused by the class's reader.
  EntityRecord newer =
      rectangleRecord(rectangleFromDiagonal(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 1, 0)));
  newer.writeFields = [](OdDbDwgFiler& filer) { filer.wrInt16(2); };
  EXPECT_THROW(createFromRecord(db.get(), newer, 1), OdError);

  // Extra bytes after the class's fields mean the layout written is not the class's.
  EntityRecord longer = measurementRecord(OD_T("x"));
  const auto fields = longer.writeFields;
  longer.writeFields = [fields](OdDbDwgFiler& filer) {
    fields(filer);
    filer.wrDouble(1.0);
  };
  EXPECT_THROW(createFromRecord(db.get(), longer, 1), std::runtime_error);
}

TEST_F(SampleDrawingTest, PropertyTextGoesThroughTheGridRowOfThatLabel) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbEntityPtr rect = createFromRecord(
      db.get(), rectangleRecord(rectangleFromDiagonal(OdGePoint3d(0, 0, 0), OdGePoint3d(10, 4, 0))),
      1);
  setPropertyText(rect.get(), OD_T("长"), OD_T("25"));
  // A read-only row, a refused value and a label no row has change nothing.
  EXPECT_THROW(setPropertyText(rect.get(), OD_T("周长"), OD_T("3")), std::runtime_error);
  EXPECT_THROW(setPropertyText(rect.get(), OD_T("长"), OD_T("0")), std::runtime_error);
  EXPECT_THROW(setPropertyText(rect.get(), OD_T("没有"), OD_T("3")), std::runtime_error);
  OdGePoint3dArray corners;
  ASSERT_EQ(rect->getStretchPoints(corners), eOk);
  ASSERT_EQ(corners.size(), 4u);
  EXPECT_NEAR(corners[0].distanceTo(corners[1]), 25.0, 1e-9);
  EXPECT_NEAR(corners[0].distanceTo(corners[3]), 4.0, 1e-9);
}

} // namespace
