// The error for a standard class that is not registered.

#include "common/NotLoaded.h"

#include <gtest/gtest.h>

namespace {

TEST(NotLoaded, TextRunsTheDoubledPrefixClassNameAndSuffixTogether) {
  const OdError error = custents::notLoadedError(u"MText");
  EXPECT_EQ(error.description().toUtf8(), "OdDbOdDbMTextis not loaded");
  EXPECT_EQ(error.code(), eExtendedError);
}

} // namespace
