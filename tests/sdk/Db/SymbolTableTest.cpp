#include "DbTextStyleTable.h"

#include "sdk/SdkTestSupport.h"

#include <cmath>
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
    EXPECT_EQ(eInvalidInput, resultOf(c.call)) << c.what;
  }
  EXPECT_EQ(1.0, style->xScale());
  EXPECT_EQ(0.0, style->textSize());
  EXPECT_EQ(0.0, style->obliquingAngle());
  style->setTextSize(0.0); // zero means "not fixed" and is allowed
  EXPECT_EQ(0.0, style->textSize());
}

/// Writes the n-th double of a stream as another value.
class SpoilingFiler : public DwgFiler {
public:
  SpoilingFiler(int spoiled, double value) : m_spoiled(spoiled), m_value(value) {}
  void wrDouble(double value) override {
    OdDbDwgStreamFiler::wrDouble(m_written++ == m_spoiled ? m_value : value);
  }

private:
  int m_spoiled;
  double m_value;
  int m_written = 0;
};

// The same values read from a stream refuse the stream. Doubles in filing order: text size,
// width factor, obliquing angle, prior size.
TEST(TextStyleTest, StreamsWithBadSizesOrFactorsAreRefused) {
  OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
  style->setName(OD_T("Survey"));
  const struct {
    int field;
    double value;
    bool accepted;
  } cases[] = {{0, 0.0, true},   {0, -0.5, false},     {1, 0.8, true},  {1, 0.0, false},
               {1, -1.0, false}, {1, HUGE_VAL, false}, {2, -0.3, true}, {2, NAN, false},
               {3, 0.0, true},   {3, -2.5, false}};
  for (const auto& c : cases) {
    SpoilingFiler writer(c.field, c.value);
    writer.openForWrite();
    style->dwgOutFields(&writer);
    writer.rewind();
    OdDbTextStyleTableRecordPtr read = OdDbTextStyleTableRecord::createObject();
    EXPECT_EQ(read->dwgInFields(&writer) == eOk, c.accepted) << c.field << ": " << c.value;
  }
}

} // namespace
