// Naming extension objects by their C++ class. What `custents classes` reads from the class
// descriptors, the extensions' names among it, is checked against the registration table in
// ClassesCommandTest.

#include "ClassReport.h"

#include "RxObject.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace reporttest {

class ProbeExtension : public OdRxObject {};
template <class T> class Holder : public OdRxObject {};

} // namespace reporttest

namespace {

using reporttest::Holder;
using reporttest::ProbeExtension;

TEST(ReadableTypeName, DemanglesAndStripsTheStaticWrapper) {
  struct Case {
    const char* mangled;
    const char* expected;
  };
  const Case cases[] = {
      {typeid(ProbeExtension).name(), "reporttest::ProbeExtension"},
      {typeid(OdStaticRxObject<ProbeExtension>).name(), "reporttest::ProbeExtension"},
      {typeid(OdStaticRxObject<Holder<Holder<int>>>).name(),
       "reporttest::Holder<reporttest::Holder<int> >"},
      // Only the outer static wrapper goes; other wrappers say something about the object.
      {typeid(OdRxObjectImpl<ProbeExtension>).name(),
       "OdRxObjectImpl<reporttest::ProbeExtension, reporttest::ProbeExtension>"},
      {typeid(Holder<OdStaticRxObject<ProbeExtension>>).name(),
       "reporttest::Holder<OdStaticRxObject<reporttest::ProbeExtension> >"},
      // Not a mangled name: given back as it came.
      {"not a mangled name", "not a mangled name"},
      {"", ""},
  };
  for (const Case& c : cases)
    EXPECT_EQ(readableTypeName(c.mangled), c.expected) << c.mangled;
  EXPECT_EQ(readableTypeName(nullptr), "");
}

} // namespace
