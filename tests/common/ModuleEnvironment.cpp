// The module's classes registered once for the unit tests of its code, as the module's start-up
// registers them.

#include "HostExtend.h"
#include "RxDictionary.h"
#include "module/Registration.h"

#include <gtest/gtest.h>

namespace {

class ModuleEnvironment : public ::testing::Environment {
public:
  void SetUp() override {
    odInitialize();
    odHostExtendInitialize();
    custents::registerClasses();
  }
  void TearDown() override {
    custents::unregisterClasses();
    odHostExtendUninitialize();
    odUninitialize();
  }
};

} // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::AddGlobalTestEnvironment(new ModuleEnvironment);
  return RUN_ALL_TESTS();
}
