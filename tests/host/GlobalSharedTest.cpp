#include "GlobalShared.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(GlobalSharedTest, RemoveZeroTrimsFixedDecimals) {
  const char* const texts[] = {"1.500000", "2.000",  "100",   "100.0", "10.10", "-0.250",
                               "0.000",    ".500",   ".000",  "3.",    "1200",  "",
                               "1.50e+3",  "长1.50", "1.5.0", " 1.50", "."};
  const char* const trimmed[] = {"1.5",     "2",      "100",   "100",   "10.1", "-0.25",
                                 "0",       ".5",     "0",     "3",     "1200", "",
                                 "1.50e+3", "长1.50", "1.5.0", " 1.50", "."};
  for (std::size_t i = 0; i < sizeof texts / sizeof texts[0]; ++i)
    EXPECT_EQ(std::string(trimmed[i]), GlobalShared::CStringRemoveZero(OdString(texts[i])).toUtf8())
        << texts[i];
}

std::vector<std::string> separate(const char* text, const char* separator) {
  OdArray<OdString> parts;
  parts.append(OdString("left over"));
  GlobalShared::StrSeparate(OdString(text), OdString(separator), parts);
  std::vector<std::string> result;
  for (const OdString& part : parts)
    result.push_back(part.toUtf8());
  return result;
}

TEST(GlobalSharedTest, SeparateKeepsEmptyParts) {
  typedef std::vector<std::string> Parts;
  EXPECT_EQ(Parts({"a", "b", "c"}), separate("a,b,c", ","));
  EXPECT_EQ(Parts({"a", "", "b"}), separate("a,,b", ","));
  EXPECT_EQ(Parts({"", "a", ""}), separate(",a,", ","));
  EXPECT_EQ(Parts({"", ""}), separate(",", ","));
  EXPECT_EQ(Parts({"abc"}), separate("abc", ","));
  EXPECT_EQ(Parts(), separate("", ","));
  EXPECT_EQ(Parts({"a,b"}), separate("a,b", ""));
  EXPECT_EQ(Parts({"钢管", "DN50", "12.5"}), separate("钢管||DN50||12.5", "||"));
  EXPECT_EQ(Parts({"", "|"}), separate("|||", "||"));
}

} // namespace
