// What sets the 3D rectangle apart from the flat one: its identity and its drawing. Everything
// else is shared and tested for both classes in GeoRectTest.cpp.

#include "survey/OdDbGeo3dRect.h"
#include "survey/OdDbGeoRect.h"

#include "DbLine.h"
#include "Gi/GiRecorder.h"

#include "GeoPolygonTestSupport.h"

#include <cstdlib>

namespace {

using polygontest::samePoint;

/// Corners at four different heights: P0 and P2 as given, P1 and P3 raised by a grip drag.
template <class Rect> OdSmartPtr<Rect> tilted() {
  OdSmartPtr<Rect> rect = Rect::createObject();
  rect->setPts(OdGePoint3d(0, 0, 1), OdGePoint3d(4, 2, 3));
  OdDbVoidPtrArray centreGrip;
  centreGrip.append(reinterpret_cast<void*>(4));
  rect->moveGripPointsAt(centreGrip, OdGeVector3d(0, 0, 2), 0);
  return rect;
}

TEST(Geo3dRect, DrawsFourEdgesAtTheCornersHeights) {
  OdDbGeo3dRectPtr rect = tilted<OdDbGeo3dRect>();
  // Registered beside the flat rectangle, not under it: drawings carry that parent.
  EXPECT_FALSE(rect->isKindOf(OdDbGeoRect::desc()));
  const OdGePoint3dArray corners = rect->getPts();
  ASSERT_EQ(corners[1].z, 2.0);
  OdGiRecorder recorder;
  EXPECT_TRUE(rect->worldDraw(&recorder));
  ASSERT_EQ(recorder.records().size(), 4u);
  for (unsigned i = 0; i < 4; ++i) {
    SCOPED_TRACE(i);
    const OdGiRecord& edge = recorder.records()[i];
    EXPECT_EQ(edge.kind, OdGiRecord::kPolyline);
    ASSERT_EQ(edge.points.size(), 2u);
    EXPECT_TRUE(samePoint(edge.points[0], corners[i]));
    EXPECT_TRUE(samePoint(edge.points[1], corners[(i + 1) % 4]));
  }
}

TEST(Geo3dRect, TheSameCornersDrawFlatInTheFlatRectangle) {
  OdDbGeoRectPtr rect = tilted<OdDbGeoRect>();
  OdGiRecorder recorder;
  EXPECT_TRUE(rect->worldDraw(&recorder));
  ASSERT_EQ(recorder.records().size(), 1u);
  for (const OdGePoint3d& point : recorder.records()[0].points)
    EXPECT_EQ(point.z, 0.0);
}

TEST(Geo3dRect, DrawsNothingWithoutTheLineClass) {
  // Unregistering a platform class would disturb later tests, so it happens in a child process.
  GTEST_FLAG_SET(death_test_style, "fast");
  EXPECT_EXIT(
      {
        OdDbGeo3dRectPtr rect = tilted<OdDbGeo3dRect>();
        OdDbLine::rxUninit();
        OdGiRecorder recorder;
        const bool drawn = rect->worldDraw(&recorder);
        std::_Exit(drawn && recorder.records().empty() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

} // namespace
