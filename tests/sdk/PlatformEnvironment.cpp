// One initialised platform for the whole test program: the class dictionary and the database
// classes are registered once before the first test and removed after the last. Suites that
// call odInitialize themselves only nest inside this.

#include "RxDictionary.h"

#include <gtest/gtest.h>

namespace {

class PlatformEnvironment : public ::testing::Environment {
public:
  void SetUp() override { odInitialize(); }
  void TearDown() override { odUninitialize(); }
};

::testing::Environment* const g_platformEnvironment =
    ::testing::AddGlobalTestEnvironment(new PlatformEnvironment);

} // namespace
