// Reading a class descriptor back into a printable record, and naming extension objects by
// their C++ class.

#include "ClassReport.h"

#include "DbEntity.h"
#include "RxDictionary.h"
#include "RxModule.h"
#include "RxObject.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace reporttest {

class ProbeExtension : public OdRxObject {};
class OtherExtension : public OdRxObject {};
template <class T> class Holder : public OdRxObject {};

} // namespace reporttest

namespace {

using reporttest::Holder;
using reporttest::OtherExtension;
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
  // An object is named by its most derived class.
  static OdStaticRxObject<ProbeExtension> extension;
  const OdRxObject& asBase = extension;
  EXPECT_EQ(dynamicClassName(asBase), "reporttest::ProbeExtension");
}

/// A protocol class and two classes registered for the test, with extensions attached.
class DescribeClassTest : public ::testing::Test {
protected:
  void SetUp() override {
    odInitialize();
    m_protocol = newOdRxClass(OD_T("ReportTestProtocol"), OdRxObject::desc());
    m_other = newOdRxClass(OD_T("ReportTestOtherProtocol"), OdRxObject::desc());
    m_parent = newOdRxClass(OD_T("ReportTestBase"), OdDbEntity::desc());
    m_class = newOdRxClass(OD_T("ReportTestEntity"), m_parent, nullptr, 33, 55, 3071,
                           OD_T("REPORTTESTENTITY"), OD_T("ReportTestEntity|说明:"));
  }
  void TearDown() override {
    deleteOdRxClass(m_class);
    deleteOdRxClass(m_parent);
    deleteOdRxClass(m_other);
    deleteOdRxClass(m_protocol);
    odUninitialize();
  }

  OdRxClass* m_protocol = nullptr;
  OdRxClass* m_other = nullptr;
  OdRxClass* m_parent = nullptr;
  OdRxClass* m_class = nullptr;
};

TEST_F(DescribeClassTest, ReadsTheDescriptorAndItsOwnExtensions) {
  static OdStaticRxObject<ProbeExtension> probe;
  static OdStaticRxObject<OtherExtension> other;
  static OdStaticRxObject<ProbeExtension> inherited;
  // Attach order is kept: the other protocol first.
  m_class->addX(m_other, &other);
  m_class->addX(m_protocol, &probe);
  // An extension of the parent is only inherited, not attached to the class itself.
  m_parent->addX(m_protocol, &inherited);

  const ClassRecord record = describeClass(*m_class);
  EXPECT_EQ(record.name, "ReportTestEntity");
  EXPECT_EQ(record.parent, "ReportTestBase");
  EXPECT_EQ(record.dxfName, "REPORTTESTENTITY");
  EXPECT_EQ(record.appName, "ReportTestEntity|说明:");
  EXPECT_EQ(record.proxyFlags, 3071u);
  EXPECT_EQ(record.dwgVersion, 33);
  EXPECT_EQ(record.maintVersion, 55);
  EXPECT_EQ(record.extensions,
            (std::vector<std::string>{"reporttest::OtherExtension", "reporttest::ProbeExtension"}));

  const ClassRecord parent = describeClass(*m_parent);
  EXPECT_EQ(parent.parent, "OdDbEntity");
  EXPECT_EQ(parent.extensions, std::vector<std::string>{"reporttest::ProbeExtension"});
  EXPECT_EQ(parent.proxyFlags, 0u);
  EXPECT_EQ(describeClass(*OdRxObject::desc()).parent, "") << "the root has no parent";
}

/// Stands in for a loaded module: only its identity matters here.
class FakeModule : public OdRxModule {
public:
  void* sysData() override { return nullptr; }
  void initApp() override {}
  void uninitApp() override {}
  OdString fileName() const override { return OdString(); }
  void deleteModuleObject() override {}
};

TEST_F(DescribeClassTest, ModuleClassesAreThoseCreatedDuringItsInit) {
  static OdStaticRxObject<FakeModule> module;
  static OdStaticRxObject<FakeModule> otherModule;
  OdRxModule* previous = odrxSetCurrentInitModule(&module);
  OdRxClass* first = newOdRxClass(OD_T("ReportTestModuleFirst"), OdRxObject::desc());
  OdRxClass* second = newOdRxClass(OD_T("ReportTestModuleSecond"), first);
  odrxSetCurrentInitModule(&otherModule);
  OdRxClass* foreign = newOdRxClass(OD_T("ReportTestForeign"), OdRxObject::desc());
  odrxSetCurrentInitModule(previous);

  const std::vector<ClassRecord> records = describeModuleClasses(&module);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].name, "ReportTestModuleFirst");
  EXPECT_EQ(records[1].name, "ReportTestModuleSecond");
  EXPECT_EQ(records[1].parent, "ReportTestModuleFirst");
  EXPECT_EQ(describeModuleClasses(&otherModule).size(), 1u);

  deleteOdRxClass(foreign);
  deleteOdRxClass(second);
  deleteOdRxClass(first);
}

} // namespace
