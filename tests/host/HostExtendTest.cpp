#include "HostExtend.h"

#include "ExtendPE.h"
#include "OdError.h"
#include "PropertyPE.h"
#include "RxDictionary.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

TEST(HostExtendTest, ExtensionClassesAreRegisteredWithoutConstructorsAndNest) {
  // Extensions are static singletons of a module's own classes, never made by the registry.
  EXPECT_THROW(PropertyPE::createObject(), OdError);

  // Initialisation nests.
  OdRxClass* const registered = PropertyPE::desc();
  odHostExtendInitialize();
  odHostExtendUninitialize();
  EXPECT_EQ(registered, PropertyPE::desc());
  EXPECT_NE(nullptr, odrxGetClass(OD_T("ExtendPE")));

  // The environment's own registration is the outermost; undo it and restore it.
  odHostExtendUninitialize();
  EXPECT_EQ(nullptr, PropertyPE::desc());
  EXPECT_EQ(nullptr, odrxGetClass(OD_T("PropertyPE")));
  EXPECT_EQ(nullptr, odrxGetClass(OD_T("ExtendPE")));
  odHostExtendUninitialize(); // unmatched: ignored
  odHostExtendInitialize();
  EXPECT_NE(nullptr, PropertyPE::desc());
  EXPECT_NE(nullptr, ExtendPE::desc());
}

#if defined(__GXX_ABI_VERSION)
// Modules are built against the host's class layout, so the order of the virtual operations is
// part of the host's interface. Under the Itanium C++ ABI a pointer to a virtual member
// function holds 1 + the function's byte offset in the virtual table.
template <class MemberPointer> std::ptrdiff_t slotOf(MemberPointer member) {
  struct Representation {
    std::uintptr_t pointer;
    std::ptrdiff_t adjustment;
  } representation;
  static_assert(sizeof(member) == sizeof(representation), "Itanium member pointer");
  std::memcpy(&representation, &member, sizeof(representation));
  EXPECT_EQ(1u, representation.pointer % sizeof(void*)) << "not a virtual function";
  return static_cast<std::ptrdiff_t>((representation.pointer - 1) / sizeof(void*));
}

TEST(HostExtendTest, VirtualOperationsKeepTheirSlots) {
  const std::ptrdiff_t last = slotOf(&OdRxObject::isEqualTo);
  EXPECT_EQ(last + 1, slotOf(&PropertyPE::getPropertyCount));
  EXPECT_EQ(last + 2, slotOf(&PropertyPE::getAttributeCount));
  EXPECT_EQ(last + 3, slotOf(&PropertyPE::getPropertyByeId));
  EXPECT_EQ(last + 4, slotOf(&PropertyPE::getPropAttributeByeId));
  EXPECT_EQ(last + 5, slotOf(&PropertyPE::getEntityName));
  EXPECT_EQ(last + 6, slotOf(&PropertyPE::GetEntityMenuItemMap));
  EXPECT_EQ(last + 7, slotOf(&PropertyPE::getZCMXName));
  EXPECT_EQ(last + 8, slotOf(&PropertyPE::GetOperationItem));
  EXPECT_EQ(last + 9, slotOf(&PropertyPE::GetListInfo));
  // last + 10 is the private id-based setter.
  EXPECT_EQ(last + 11,
            slotOf(static_cast<bool (PropertyPE::*)(OdDbEntity*, const OdVariant&, int, int)>(
                &PropertyPE::setPropAttributeByeId)));
  EXPECT_EQ(last + 12, slotOf(&PropertyPE::GetRMenus));
  EXPECT_EQ(last + 13, slotOf(&PropertyPE::Reset));

  EXPECT_EQ(last + 1, slotOf(&ExtendPE::FillColor));
  EXPECT_EQ(last + 2, slotOf(&ExtendPE::FillPattern));
}
#endif

} // namespace
