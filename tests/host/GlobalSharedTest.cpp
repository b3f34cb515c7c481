#include "GlobalShared.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace {

TEST(GlobalSharedTest, RemoveZeroTrimsFixedDecimals) {
  const char* const texts[] = {"1.500000", "100", "-0.250", "0.000", ".500", "3.", "",
                               "1.50e+3", "1.5.0", " 1.50", "."};
  const char* const trimmed[] = {"1.5", "100", "-0.25", "0", ".5", "3", "",
                                 "1.50e+3", "1.5.0", " 1.50", "."};
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
  const std::tuple<const char*, const char*, Parts> cases[] = {
      {"a,b,c", ",", {"a", "b", "c"}},
      {",a,", ",", {"", "a", ""}},
      {",", ",", {"", ""}},
      {"", ",", {}},
      {"a,b", "", {"a,b"}},
      {"钢管||DN50||12.5", "||", {"钢管", "DN50", "12.5"}},
      {"|||", "||", {"", "|"}}};
  for (const auto& [text, separator, parts] : cases)
    EXPECT_EQ(parts, separate(text, separator)) << text << " by " << separator;
}

} // namespace
