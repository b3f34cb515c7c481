#include "BrevantApp.h"

#include "DbDatabase.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(DrawingSettingsTest, OneObjectPerDrawingWhoseScaleIsItsDimscale) {
  OdDbDatabasePtr first = OdDbDatabase::createObject();
  OdDbDatabasePtr second = OdDbDatabase::createObject();
  CDrawingSettings* settings = TheApp()->GetDrawingSettings(first.get());
  ASSERT_NE(nullptr, settings);
  EXPECT_EQ(settings, TheApp()->GetDrawingSettings(first.get()));
  EXPECT_NE(settings, TheApp()->GetDrawingSettings(second.get()));
  EXPECT_EQ(nullptr, TheApp()->GetDrawingSettings(nullptr));

  // The scale is the drawing's DIMSCALE.
  EXPECT_EQ(1.0, settings->GetCurrentScale());
  first->setDIMSCALE(100.0);
  EXPECT_EQ(100.0, settings->GetCurrentScale());
  EXPECT_TRUE(settings->SetCurrentScale(50.0));
  EXPECT_EQ(50.0, first->getDIMSCALE());
  EXPECT_EQ(1.0, second->getDIMSCALE());

  const double refused[] = {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(),
                            std::numeric_limits<double>::infinity()};
  for (double scale : refused) {
    SCOPED_TRACE(scale);
    EXPECT_FALSE(settings->SetCurrentScale(scale));
    EXPECT_EQ(50.0, first->getDIMSCALE());
  }

  CDrawingSettings detached(nullptr);
  EXPECT_EQ(1.0, detached.GetCurrentScale());
  EXPECT_FALSE(detached.SetCurrentScale(2.0));
}

} // namespace
