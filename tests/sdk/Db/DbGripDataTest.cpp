#include "DbGripData.h"

#include <gtest/gtest.h>

namespace {

OdString tip(OdDbGripData*) {
  return OdString("tip");
}

} // namespace

TEST(DbGripData, FlagAccessorsTouchOnlyTheirOwnBit) {
  OdDbGripData grip;
  EXPECT_EQ(grip.bitFlags(), 0u);
  grip.setBitFlags(OdDbGripOperations::kGripIsPerpendicular | OdDbGripOperations::kTriggerGrip);
  grip.setSkipWhenShared(true);
  grip.setTriggerGrip(false);
  EXPECT_TRUE(grip.skipWhenShared());
  EXPECT_FALSE(grip.triggerGrip());
  EXPECT_TRUE(grip.gripIsPerpendicular());
  EXPECT_EQ(grip.bitFlags(), static_cast<OdUInt32>(OdDbGripOperations::kGripIsPerpendicular |
                                                   OdDbGripOperations::kSkipWhenShared));
  grip.setSkipWhenShared(false);
  EXPECT_EQ(grip.bitFlags(), static_cast<OdUInt32>(OdDbGripOperations::kGripIsPerpendicular));
}

TEST(DbGripData, StoresPointDataAndCallbacksAsGiven) {
  int tag = 0;
  OdGePoint3d base(4, 5, 6);
  auto grip = std::make_shared<OdDbGripData>();
  EXPECT_EQ(grip->appData(), nullptr);
  EXPECT_EQ(grip->toolTipFunc(), nullptr);
  EXPECT_EQ(grip->worldDraw(), nullptr);
  grip->setGripPoint(OdGePoint3d(1, 2, 3));
  grip->setAppData(&tag);
  grip->setAlternateBasePoint(&base);
  grip->setToolTipFunc(&tip);

  OdDbGripDataPtrArray grips;
  grips.append(grip);
  const OdDbGripDataPtr& stored = grips[0];
  EXPECT_EQ(stored->gripPoint(), OdGePoint3d(1, 2, 3));
  EXPECT_EQ(stored->appData(), &tag);
  EXPECT_EQ(stored->alternateBasePoint(), &base);
  ASSERT_NE(stored->toolTipFunc(), nullptr);
  EXPECT_EQ(stored->toolTipFunc()(stored.get()), OdString("tip"));
}
