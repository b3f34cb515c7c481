// The error for a standard class that is not registered.

#include "common/NotLoaded.h"

#include <gtest/gtest.h>

namespace {

TEST(NotLoaded, TextRunsTheDoubledPrefixClassNameAndSuffixTogether) {
  struct Case {
    const char16_t* name;
    const char* text;
  } cases[] = {{u"MText", "OdDbOdDbMTextis not loaded"},
               {u"Line", "OdDbOdDbLineis not loaded"},
               {u"Hatch", "OdDbOdDbHatchis not loaded"}};
  for (const Case& c : cases) {
    const OdError error = custents::notLoadedError(c.name);
    EXPECT_EQ(error.description().toUtf8(), c.text);
    EXPECT_EQ(error.code(), eExtendedError);
  }
}

} // namespace
