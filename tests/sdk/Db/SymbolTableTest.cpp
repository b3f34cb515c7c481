#include "DbTextStyleTable.h"

#include "OdError.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

// A text style refuses sizes and factors that no text can have, keeping the old value.
TEST(TextStyleTest, RefusesBadSizesAndFactorsKeepingTheOldValue) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
  const struct {
    const char* what;
    std::function<void()> call;
  } cases[] = {
      {"xScale 0", [&] { style->setXScale(0.0); }},
      {"xScale NaN", [&] { style->setXScale(nan); }},
      {"text size negative", [&] { style->setTextSize(-0.5); }},
      {"text size infinite", [&] { style->setTextSize(HUGE_VAL); }},
      {"prior size negative", [&] { style->setPriorSize(-2.5); }},
      {"oblique NaN", [&] { style->setObliquingAngle(nan); }},
  };
  for (const auto& c : cases) {
    OdResult result = eOk;
    try {
      c.call();
    } catch (const OdError& error) {
      result = error.code();
    }
    EXPECT_EQ(eInvalidInput, result) << c.what;
  }
  EXPECT_EQ(1.0, style->xScale());
  EXPECT_EQ(0.0, style->textSize());
  EXPECT_EQ(0.0, style->obliquingAngle());
  style->setTextSize(0.0); // zero means "not fixed" and is allowed
  EXPECT_EQ(0.0, style->textSize());
}

} // namespace
