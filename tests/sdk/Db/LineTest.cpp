#include "DbLine.h"

#include <gtest/gtest.h>

namespace {

// The grips are the ends and the midpoint; the midpoint moves the whole line, once, whatever
// else is selected with it.
TEST(LineTest, GripsMoveAnEndOrTheWholeLine) {
  OdDbLinePtr line = OdDbLine::createObject();
  line->setEndPoint(OdGePoint3d(4.0, 2.0, 0.0));
  const OdGeVector3d offset(1.0, 1.0, 0.0);
  ASSERT_EQ(eOk, line->moveGripPointsAt(OdIntArray{2}, offset));
  EXPECT_EQ(OdGePoint3d(0.0, 0.0, 0.0), line->startPoint());
  EXPECT_EQ(OdGePoint3d(5.0, 3.0, 0.0), line->endPoint());
  ASSERT_EQ(eOk, line->moveGripPointsAt(OdIntArray{0, 1}, offset));
  EXPECT_EQ(OdGePoint3d(1.0, 1.0, 0.0), line->startPoint());
  EXPECT_EQ(OdGePoint3d(6.0, 4.0, 0.0), line->endPoint());
  EXPECT_EQ(eInvalidIndex, line->moveGripPointsAt(OdIntArray{0, 3}, offset));
  EXPECT_EQ(OdGePoint3d(1.0, 1.0, 0.0), line->startPoint());
  // Stretch points are the two ends only.
  EXPECT_EQ(eInvalidIndex, line->moveStretchPointsAt(OdIntArray{2}, offset));
}

} // namespace
