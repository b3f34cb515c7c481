// What sets the 3D rectangle apart from the flat one: its identity and its drawing. Everything
// else is shared and tested for both classes in GeoRectTest.cpp.

#include "survey/OdDbGeo3dRect.h"
#include "survey/OdDbGeoRect.h"

#include "GeoPolygonTestSupport.h"

#include <cstdlib>

namespace {

/// Corners at four different heights: P0 and P2 as given, P1 and P3 raised by the centre grip.
OdDbGeo3dRectPtr tilted() {
  OdDbGeo3dRectPtr rect = OdDbGeo3dRect::createObject();
  rect->setPts(OdGePoint3d(0, 0, 1), OdGePoint3d(4, 2, 3));
  polygontest::moveGrips(rect, {4}, OdGeVector3d(0, 0, 2));
  return rect;
}

TEST(Geo3dRect, DrawsFourEdgesAtTheCornersHeights) {
  OdDbGeo3dRectPtr rect = tilted();
  // Registered beside the flat rectangle, not under it: drawings carry that parent.
  EXPECT_FALSE(rect->isKindOf(OdDbGeoRect::desc()));
  const OdGePoint3dArray corners = rect->getPts();
  ASSERT_EQ(corners[1].z, 2.0);
  const std::vector<OdGiRecord> records = polygontest::drawn(rect);
  ASSERT_EQ(records.size(), 4u);
  for (unsigned i = 0; i < 4; ++i) {
    EXPECT_EQ(records[i].kind, OdGiRecord::kPolyline);
    polygontest::expectPoints(records[i].points, {corners[i], corners[(i + 1) % 4]});
  }
}

TEST(Geo3dRect, DrawsNothingWithoutTheLineClass) {
  // Unregistering a platform class would disturb later tests, so it happens in a child process.
  GTEST_FLAG_SET(death_test_style, "fast");
  EXPECT_EXIT(
      {
        OdDbGeo3dRectPtr rect = tilted();
        OdDbLine::rxUninit();
        OdGiRecorder recorder;
        const bool drawn = rect->worldDraw(&recorder);
        std::_Exit(drawn && recorder.records().empty() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

} // namespace
