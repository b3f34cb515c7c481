// `custents demo` and the sample drawing behind it: refused shapes and records, and the
// pictures the built application writes.

#include "DemoCommand.h"
#include "ModuleSession.h"
#include "SampleDrawing.h"
#include "tools/ToolRunner.h"

#include "DbDwgStreamFiler.h"
#include "OdError.h"
#include "RxDictionary.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace custents::sample;

const std::string kModulePath = std::string(CUSTENTS_BIN_DIR) + "/CustEnts.tx";

/// Width and height from a PNG's IHDR chunk, or {0, 0} when the bytes are not a PNG.
std::pair<unsigned, unsigned> pngSize(const std::string& png) {
  static const std::string kSignature("\x89PNG\r\n\x1a\n", 8);
  if (png.size() < 24 || png.compare(0, 8, kSignature) != 0 || png.compare(12, 4, "IHDR") != 0)
    return {0, 0};
  const auto u32 = [&](std::size_t at) {
    unsigned value = 0;
    for (std::size_t i = 0; i < 4; ++i)
      value = (value << 8) | static_cast<unsigned char>(png[at + i]);
    return value;
  };
  return {u32(16), u32(20)};
}

/// Keeps the module loaded around an in-process test.
class SampleDrawingTest : public ::testing::Test {
protected:
  void SetUp() override { session = std::make_unique<ModuleSession>(kModulePath); }
  void TearDown() override { session.reset(); }
  std::unique_ptr<ModuleSession> session;
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

// --- Entities from records ------------------------------------------------------------------

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
  OdGePoint3dArray corners;
  ASSERT_EQ(rect->getStretchPoints(corners), eOk);
  ASSERT_EQ(corners.size(), 4u);
  EXPECT_NEAR(corners[0].distanceTo(corners[1]), 25.0, 1e-9);
  EXPECT_NEAR(corners[0].distanceTo(corners[3]), 4.0, 1e-9);

  EXPECT_THROW(setPropertyText(rect.get(), OD_T("周长"), OD_T("3")), std::runtime_error);
  EXPECT_THROW(setPropertyText(rect.get(), OD_T("长"), OD_T("0")), std::runtime_error);
  EXPECT_THROW(setPropertyText(rect.get(), OD_T("没有"), OD_T("3")), std::runtime_error);
  OdGePoint3dArray unchanged;
  ASSERT_EQ(rect->getStretchPoints(unchanged), eOk);
  EXPECT_NEAR(unchanged[0].distanceTo(unchanged[1]), 25.0, 1e-9) << "refused values change nothing";
}

// --- The command ----------------------------------------------------------------------------

TEST(DemoCommand, WritesBothPicturesAtTheRequestedSize) {
  const std::string dir = makeTempDir() + "/nested/out";
  const ToolRun run = runCustents({"demo", "--out", dir, "--width", "640", "--height", "480"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find(dir + "/demo.svg"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(dir + "/demo.png"), std::string::npos) << run.out;
  EXPECT_EQ(pngSize(readFile(dir + "/demo.png")), std::make_pair(640u, 480u));
  const std::string svg = readFile(dir + "/demo.svg");
  EXPECT_NE(svg.find("width=\"640\" height=\"480\""), std::string::npos);
  EXPECT_NE(run.out.find(dir + "/demo.dxf"), std::string::npos) << run.out;
  EXPECT_EQ(readFile(dir + "/demo.dxf").compare(0, 16, "  0\nSECTION\n  2\n"), 0);
  std::remove((dir + "/demo.svg").c_str());
  std::remove((dir + "/demo.png").c_str());
  std::remove((dir + "/demo.dxf").c_str());
}

} // namespace
