// Feeds arbitrary bytes to the dwgInFields of every database class the platform can create, as
// the three DWG streams of one object, and files each object that reads successfully out
// again. Input layout and rules: ObjectStreamFuzzing.h.

#include "ObjectStreamFuzzing.h"

#include "RxDictionary.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

const std::vector<OdRxClass*>& platformClasses() {
  static const std::vector<OdRxClass*> classes = [] {
    odInitialize();
    return objectfuzz::readableClasses();
  }();
  return classes;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  if (objectfuzz::writeSeedsIfAsked(platformClasses()))
    std::exit(0);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  objectfuzz::checkInput(platformClasses(), bytes, size);
  return 0;
}
