// Column alignment of the application's tables in a terminal.

#include "TextTable.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace {

TEST(DisplayWidth, CountsTerminalColumns) {
  struct Case {
    const char* text;
    std::size_t width;
  };
  const Case cases[] = {
      {"", 0},
      {"OdDbGeoRect", 11},
      {"坐标标注", 8},                 // CJK ideographs are wide
      {"修改 颜色", 9},                // mixed with a blank
      {"\xEF\xBC\xA1\xEF\xBC\xA2", 4}, // full-width Latin "ＡＢ"
      {"\xEF\xAB\xBF", 2},             // U+FAFF, the last compatibility ideograph
      {"\xC3\xA9", 1},                 // é precomposed
      {"e\xCC\x81", 1},                // e + combining acute accent
      {"\xF0\x9F\x98\x80", 2},         // an emoji
      {"\xFF", 1},                     // a byte that starts nothing
      {"\xE5\x9D", 2},                 // a sequence cut short: one column per byte
      {"\xE5"
       "a",
       2}, // a lead byte followed by a non-continuation byte
  };
  for (const Case& c : cases)
    EXPECT_EQ(displayWidth(c.text), c.width) << c.text;
}

TEST(TextTable, AlignsColumnsByDisplayWidth) {
  TextTable table({"#", "Name", "Label"});
  table.setAlign(0, TextTable::Align::Right);
  table.addRow({"1", "坐标", "x"});
  table.addRow({"10", "Rect", "长度"});
  table.addRow({"2"});
  std::ostringstream out;
  table.print(out);
  EXPECT_EQ(out.str(), " #  Name  Label\n"
                       "───────────────\n"
                       " 1  坐标  x\n"
                       "10  Rect  长度\n"
                       " 2\n");
  EXPECT_EQ(table.rowCount(), 3u);
}

TEST(TextTable, RefusesRowsWiderThanTheHeader) {
  TextTable table({"a", "b"});
  EXPECT_THROW(table.addRow({"1", "2", "3"}), std::invalid_argument);
  EXPECT_EQ(table.rowCount(), 0u);
  EXPECT_THROW(table.setAlign(2, TextTable::Align::Right), std::out_of_range);
}

} // namespace
