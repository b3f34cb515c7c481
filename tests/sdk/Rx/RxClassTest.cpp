#include "OdError.h"
#include "RxDictionary.h"
#include "RxObject.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <vector>

namespace rx_class_test {

// ---------------------------------------------------------------------------------------------
// The class dictionary, driven through newOdRxClass/deleteOdRxClass.

/// Registers classes for one test and removes whatever of them is still registered at the
/// end, children first, so that a failing test leaves the dictionary as it found it.
class ScopedClasses {
public:
  ScopedClasses() = default;
  ScopedClasses(const ScopedClasses&) = delete;
  ScopedClasses& operator=(const ScopedClasses&) = delete;
  ~ScopedClasses() {
    for (auto it = m_names.rbegin(); it != m_names.rend(); ++it)
      if (OdRxClass* cls = odrxGetClass(*it))
        deleteOdRxClass(cls);
  }
  OdRxClass* add(const OdString& name, OdRxClass* parent,
                 const OdString& dxfName = OdString::kEmpty) {
    m_names.push_back(name);
    return newOdRxClass(name, parent, nullptr, 0, 0, 0, dxfName);
  }

private:
  std::vector<OdString> m_names;
};

/// The registered classes among `names`, in dictionary order.
std::vector<OdString> registeredAmong(std::initializer_list<const char16_t*> names) {
  std::vector<OdString> result;
  for (OdRxClass* cls : odrxRegisteredClasses())
    for (const char16_t* name : names)
      if (cls->name() == name)
        result.push_back(cls->name());
  return result;
}

OdRxObjectPtr noConstructor() {
  return OdRxObjectPtr();
}
void renameForSave(const OdRxClass*, OdString&, int) {}

TEST(RxDictionaryTest, NewClassKeepsItsRecordUntilDeleted) {
  const unsigned before = odrxRegisteredClasses().size();
  OdRxClass* cls =
      newOdRxClass(OD_T("RxDictRecord"), OdRxObject::desc(), &noConstructor, 33, 55, 3071,
                   OD_T("RXDICTRECORD"), OD_T("RxDictRecord|Description:"), &renameForSave, 7);
  ASSERT_NE(nullptr, cls);
  EXPECT_EQ(cls, odrxGetClass(OD_T("RxDictRecord")));
  EXPECT_EQ(cls, odrxClassByDxfName(OD_T("RXDICTRECORD")));
  EXPECT_EQ(before + 1, odrxRegisteredClasses().size());
  EXPECT_EQ(OdRxObject::desc(), cls->myParent());
  int maint = 0;
  EXPECT_EQ(33, cls->getClassVersion(&maint));
  EXPECT_EQ(55, maint);
  EXPECT_EQ(3071u, cls->proxyFlags());
  EXPECT_EQ(7, cls->customFlags());
  EXPECT_EQ(OdString(OD_T("RxDictRecord|Description:")), cls->appName());
  EXPECT_EQ(&renameForSave, cls->appNameCallbackPtr());
  EXPECT_EQ(&noConstructor, cls->constructor());
  EXPECT_EQ(nullptr, cls->module()) << "no module was being initialised";
  EXPECT_EQ(OdRxClass::desc(), cls->isA());

  deleteOdRxClass(cls);
  EXPECT_EQ(nullptr, odrxGetClass(OD_T("RxDictRecord")));
  EXPECT_EQ(nullptr, odrxClassByDxfName(OD_T("RXDICTRECORD")));
  EXPECT_EQ(before, odrxRegisteredClasses().size());
}

TEST(RxDictionaryTest, RegistrationOrderSurvivesRemovals) {
  ScopedClasses classes;
  classes.add(OD_T("RxOrderA"), OdRxObject::desc());
  classes.add(OD_T("RxOrderB"), OdRxObject::desc());
  classes.add(OD_T("RxOrderC"), OdRxObject::desc());
  const auto names = {u"RxOrderA", u"RxOrderB", u"RxOrderC"};
  EXPECT_EQ((std::vector<OdString>{OD_T("RxOrderA"), OD_T("RxOrderB"), OD_T("RxOrderC")}),
            registeredAmong(names));

  deleteOdRxClass(odrxGetClass(OD_T("RxOrderB")));
  EXPECT_EQ((std::vector<OdString>{OD_T("RxOrderA"), OD_T("RxOrderC")}), registeredAmong(names));

  classes.add(OD_T("RxOrderB"), OdRxObject::desc());
  EXPECT_EQ((std::vector<OdString>{OD_T("RxOrderA"), OD_T("RxOrderC"), OD_T("RxOrderB")}),
            registeredAmong(names));
  // The platform's own classes come first: they were registered before any test ran.
  EXPECT_EQ(OdRxObject::desc(), odrxRegisteredClasses()[0]);
}

TEST(RxDictionaryTest, DuplicateOrEmptyNameIsRefused) {
  ScopedClasses classes;
  OdRxClass* first = classes.add(OD_T("RxDuplicate"), OdRxObject::desc());
  const unsigned count = odrxRegisteredClasses().size();
  struct Case {
    const char16_t* name;
    OdResult expected;
  } cases[] = {{u"RxDuplicate", eDuplicateKey}, {u"", eInvalidInput}};
  for (const Case& c : cases) {
    SCOPED_TRACE(OdString(c.name).toUtf8());
    try {
      newOdRxClass(c.name, OdRxClass::desc());
      ADD_FAILURE() << "registered";
    } catch (const OdError& err) {
      EXPECT_EQ(c.expected, err.code());
    }
  }
  EXPECT_EQ(first, odrxGetClass(OD_T("RxDuplicate")));
  EXPECT_EQ(OdRxObject::desc(), first->myParent());
  EXPECT_EQ(count, odrxRegisteredClasses().size());
  // Names are compared exactly: another letter case is another class.
  EXPECT_NO_THROW(classes.add(OD_T("RXDUPLICATE"), OdRxObject::desc()));
}

TEST(RxDictionaryTest, SharedDxfNameResolvesToTheEarliestStillRegistered) {
  ScopedClasses classes;
  OdRxClass* first = classes.add(OD_T("RxDxfFirst"), OdRxObject::desc(), OD_T("RXSHAREDDXF"));
  OdRxClass* second = classes.add(OD_T("RxDxfSecond"), OdRxObject::desc(), OD_T("RXSHAREDDXF"));
  EXPECT_EQ(first, odrxGetClass(OD_T("RxDxfFirst")));
  EXPECT_EQ(second, odrxGetClass(OD_T("RxDxfSecond")));
  EXPECT_EQ(first, odrxClassByDxfName(OD_T("RXSHAREDDXF")));
  OdArray<OdRxClass*> both = odrxClassesByDxfName(OD_T("RXSHAREDDXF"));
  ASSERT_EQ(2u, both.size());
  EXPECT_EQ(first, both[0]);
  EXPECT_EQ(second, both[1]);
  // DXF names are compared with their letter case.
  EXPECT_EQ(nullptr, odrxClassByDxfName(OD_T("RxSharedDxf")));

  deleteOdRxClass(first);
  EXPECT_EQ(second, odrxClassByDxfName(OD_T("RXSHAREDDXF")));
  EXPECT_EQ(1u, odrxClassesByDxfName(OD_T("RXSHAREDDXF")).size());

  // Registered again, the first now comes after the second.
  OdRxClass* again = classes.add(OD_T("RxDxfFirst"), OdRxObject::desc(), OD_T("RXSHAREDDXF"));
  EXPECT_EQ(second, odrxClassByDxfName(OD_T("RXSHAREDDXF")));
  deleteOdRxClass(second);
  EXPECT_EQ(again, odrxClassByDxfName(OD_T("RXSHAREDDXF")));
  deleteOdRxClass(again);
  EXPECT_EQ(nullptr, odrxClassByDxfName(OD_T("RXSHAREDDXF")));
  EXPECT_EQ(0u, odrxClassesByDxfName(OD_T("RXSHAREDDXF")).size());
}

TEST(RxDictionaryTest, DeletingAStaleDescriptorIsRefused) {
  ScopedClasses classes;
  OdRxClassPtr stale = classes.add(OD_T("RxStale"), OdRxObject::desc());
  deleteOdRxClass(stale.get());
  // The held reference keeps the descriptor; the dictionary no longer knows it.
  EXPECT_EQ(OdString(OD_T("RxStale")), stale->name());
  OdRxClass* replacement = classes.add(OD_T("RxStale"), OdRxObject::desc());
  try {
    deleteOdRxClass(stale.get());
    ADD_FAILURE() << "a stale descriptor removed a class";
  } catch (const OdError& err) {
    EXPECT_EQ(eKeyNotFound, err.code());
  }
  EXPECT_EQ(replacement, odrxGetClass(OD_T("RxStale")));
  EXPECT_NO_THROW(deleteOdRxClass(nullptr));
}

TEST(RxDictionaryTest, ParentChainAnswersIsDerivedFrom) {
  ScopedClasses classes;
  OdRxClass* base = classes.add(OD_T("RxChainBase"), OdRxObject::desc());
  OdRxClass* middle = classes.add(OD_T("RxChainMiddle"), base);
  OdRxClass* leaf = classes.add(OD_T("RxChainLeaf"), middle);
  OdRxClass* other = classes.add(OD_T("RxChainOther"), OdRxObject::desc());
  struct Case {
    OdRxClass* cls;
    OdRxClass* ancestor;
    bool expected;
  } cases[] = {
      {leaf, leaf, true},     {leaf, middle, true},
      {leaf, base, true},     {leaf, OdRxObject::desc(), true},
      {base, leaf, false},    {middle, leaf, false},
      {leaf, other, false},   {other, base, false},
      {leaf, nullptr, false}, {OdRxObject::desc(), base, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.cls->name().toUtf8() + " from " +
                 (c.ancestor ? c.ancestor->name().toUtf8() : std::string("null")));
    EXPECT_EQ(c.expected, c.cls->isDerivedFrom(c.ancestor));
  }
  EXPECT_EQ(middle, leaf->myParent());
  EXPECT_EQ(nullptr, OdRxObject::desc()->myParent());
}

TEST(RxDictionaryTest, ParentRemovedBeforeItsChildStaysUsableThroughTheChild) {
  ScopedClasses classes;
  OdRxClass* parent = classes.add(OD_T("RxEarlyParent"), OdRxObject::desc());
  OdRxClass* child = classes.add(OD_T("RxLateChild"), parent);
  deleteOdRxClass(parent);
  EXPECT_EQ(nullptr, odrxGetClass(OD_T("RxEarlyParent")));
  ASSERT_NE(nullptr, child->myParent());
  EXPECT_EQ(OdString(OD_T("RxEarlyParent")), child->myParent()->name());
  EXPECT_TRUE(child->isDerivedFrom(child->myParent()));
  EXPECT_TRUE(child->isDerivedFrom(OdRxObject::desc()));

  // A new class of the old name is another class: the child does not derive from it.
  OdRxClass* newcomer = classes.add(OD_T("RxEarlyParent"), OdRxObject::desc());
  EXPECT_NE(newcomer, child->myParent());
  EXPECT_FALSE(child->isDerivedFrom(newcomer));
}

TEST(RxDictionaryTest, PlatformClassesFormTheDatabaseTree) {
  OdRxClass* line = odrxGetClass(OD_T("OdDbLine"));
  ASSERT_NE(nullptr, line);
  for (const char16_t* ancestor : {u"OdDbCurve", u"OdDbEntity", u"OdDbObject", u"OdRxObject"}) {
    SCOPED_TRACE(OdString(ancestor).toUtf8());
    OdRxClass* cls = odrxGetClass(ancestor);
    ASSERT_NE(nullptr, cls);
    EXPECT_TRUE(line->isDerivedFrom(cls));
  }
  EXPECT_FALSE(line->isDerivedFrom(odrxGetClass(OD_T("OdDbPoint"))));
  EXPECT_EQ(OdRxObject::desc(), OdRxClass::desc()->myParent());
}

TEST(RxDictionaryTest, ClassWithoutConstructorRefusesToCreate) {
  ScopedClasses classes;
  OdRxClass* cls = classes.add(OD_T("RxNoConstructor"), OdRxObject::desc());
  try {
    cls->create();
    ADD_FAILURE() << "created";
  } catch (const OdError& err) {
    EXPECT_EQ(eNotApplicable, err.code());
  }
}

// ---------------------------------------------------------------------------------------------
// The run-time type members that the ODRX macros give a class.

class RxMacroShape : public OdRxObject {
  ODRX_DECLARE_MEMBERS(RxMacroShape);

public:
  RxMacroShape() { ++s_live; }
  ~RxMacroShape() override { --s_live; }
  static int s_live;
};
int RxMacroShape::s_live = 0;

class RxMacroSquare : public RxMacroShape {
  ODRX_DECLARE_MEMBERS(RxMacroSquare);
};

/// A class without a pseudo-constructor, unrelated to the shapes.
class RxMacroTag : public OdRxObject {
  ODRX_DECLARE_MEMBERS(RxMacroTag);
};

ODRX_DEFINE_RTTI_MEMBERS(RxMacroShape, OdRxObject)
ODRX_DEFINE_INIT_MEMBERS(RxMacroShape, OdRxObject::desc(), &RxMacroShape::pseudoConstructor, 33, 55,
                         3071, OD_T("RXMACROSHAPE"), OD_T("RxMacroShape|Description:"))
OdRxObjectPtr RxMacroShape::pseudoConstructor() {
  return OdRxObjectImpl<RxMacroShape>::createObject();
}
ODRX_DEFINE_RTTI_MEMBERS(RxMacroSquare, RxMacroShape)
ODRX_DEFINE_INIT_MEMBERS(RxMacroSquare, RxMacroShape::desc(), &RxMacroSquare::pseudoConstructor, 33,
                         55, 3071, OD_T("RXMACROSQUARE"), OD_T("RxMacroSquare|Description:"))
OdRxObjectPtr RxMacroSquare::pseudoConstructor() {
  return OdRxObjectImpl<RxMacroSquare>::createObject();
}
ODRX_NO_CONS_DEFINE_MEMBERS(RxMacroTag, OdRxObject)

class RxMacroTest : public ::testing::Test {
protected:
  void SetUp() override {
    RxMacroShape::rxInit();
    RxMacroSquare::rxInit();
    RxMacroTag::rxInit();
  }
  void TearDown() override {
    for (void (*uninit)() :
         {&RxMacroTag::rxUninit, &RxMacroSquare::rxUninit, &RxMacroShape::rxUninit}) {
      try {
        uninit();
      } catch (const OdError&) {
        // A test that unregistered a class itself.
      }
    }
    EXPECT_EQ(0, RxMacroShape::s_live) << "objects leaked";
  }

  template <class Fn> static OdResult codeOf(Fn fn) {
    try {
      fn();
    } catch (const OdError& err) {
      return err.code();
    }
    return eOk;
  }
};

TEST_F(RxMacroTest, RegistersUnderTheGivenParentWithItsRecord) {
  OdRxClass* square = RxMacroSquare::desc();
  ASSERT_NE(nullptr, square);
  EXPECT_EQ(square, odrxGetClass(OD_T("RxMacroSquare")));
  EXPECT_EQ(RxMacroShape::desc(), square->myParent());
  EXPECT_EQ(square, odrxClassByDxfName(OD_T("RXMACROSQUARE")));
  int maint = 0;
  EXPECT_EQ(33, square->getClassVersion(&maint));
  EXPECT_EQ(55, maint);
  EXPECT_EQ(3071u, square->proxyFlags());
  EXPECT_EQ(OdString(OD_T("RxMacroSquare|Description:")), square->appName());
  EXPECT_EQ(nullptr, square->appNameCallbackPtr());
}

TEST_F(RxMacroTest, SecondRxInitThrows313AndKeepsTheClass) {
  OdRxClass* before = RxMacroSquare::desc();
  const unsigned count = odrxRegisteredClasses().size();
  EXPECT_EQ(313, static_cast<int>(codeOf([] { RxMacroSquare::rxInit(); })));
  EXPECT_EQ(eExtendedError, codeOf([] { RxMacroSquare::rxInit(nullptr); }));
  EXPECT_EQ(before, RxMacroSquare::desc());
  EXPECT_EQ(before, odrxGetClass(OD_T("RxMacroSquare")));
  EXPECT_EQ(count, odrxRegisteredClasses().size());
}

TEST_F(RxMacroTest, RxUninitOfAnUnregisteredClassThrows255) {
  RxMacroTag::rxUninit();
  EXPECT_EQ(nullptr, RxMacroTag::desc());
  EXPECT_EQ(nullptr, odrxGetClass(OD_T("RxMacroTag")));
  EXPECT_EQ(255, static_cast<int>(codeOf([] { RxMacroTag::rxUninit(); })));
  EXPECT_EQ(eNotInitializedYet, codeOf([] { RxMacroTag::createObject(); }));

  // The application-name callback of the second rxInit reaches the class.
  RxMacroTag::rxInit(&renameForSave);
  EXPECT_EQ(&renameForSave, RxMacroTag::desc()->appNameCallbackPtr());
}

TEST_F(RxMacroTest, CreateObjectAndPseudoConstructorMakeFreshCountedInstances) {
  OdSmartPtr<RxMacroSquare> a = RxMacroSquare::createObject();
  ASSERT_FALSE(a.isNull());
  EXPECT_EQ(RxMacroSquare::desc(), a->isA());
  EXPECT_EQ(1, a->numRefs());
  OdRxObjectPtr b = RxMacroSquare::pseudoConstructor();
  OdRxObjectPtr c = RxMacroSquare::desc()->create();
  EXPECT_NE(a.get(), b.get());
  EXPECT_NE(b.get(), c.get());
  EXPECT_EQ(RxMacroSquare::desc(), c->isA());
  EXPECT_EQ(3, RxMacroShape::s_live);
  EXPECT_EQ(eNotApplicable, codeOf([] { RxMacroTag::createObject(); }));
}

TEST_F(RxMacroTest, QueryXAnswersForOwnAndBaseClassesOnly) {
  OdSmartPtr<RxMacroSquare> square = RxMacroSquare::createObject();
  struct Case {
    const char* what;
    OdRxClass* protocol;
    bool isThis;
  } cases[] = {
      {"own class", RxMacroSquare::desc(), true},   {"C++ parent", RxMacroShape::desc(), true},
      {"root", OdRxObject::desc(), true},           {"unrelated", RxMacroTag::desc(), false},
      {"platform class", OdRxClass::desc(), false}, {"null", nullptr, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    OdRxObject* result = square->queryX(c.protocol);
    if (c.isThis) {
      EXPECT_EQ(static_cast<OdRxObject*>(square.get()), result);
      EXPECT_EQ(2, square->numRefs()) << "queryX hands out a reference";
      if (result)
        result->release();
    } else {
      EXPECT_EQ(nullptr, result);
    }
    EXPECT_EQ(1, square->numRefs());
  }
  EXPECT_TRUE(square->isKindOf(RxMacroShape::desc()));
  EXPECT_FALSE(square->isKindOf(RxMacroTag::desc()));
  EXPECT_FALSE(square->isKindOf(nullptr));

  OdSmartPtr<RxMacroShape> shape = RxMacroShape::createObject();
  EXPECT_FALSE(RxMacroShape::cast(square).isNull());
  EXPECT_TRUE(RxMacroSquare::cast(shape).isNull()) << "a plain shape is no square";
  EXPECT_TRUE(RxMacroSquare::cast(nullptr).isNull());
  EXPECT_EQ(1, shape->numRefs());
}

TEST_F(RxMacroTest, XThrowsNotThatKindOfClassForAnUnrelatedProtocol) {
  OdSmartPtr<RxMacroSquare> square = RxMacroSquare::createObject();
  OdRxObject* same = square->x(RxMacroShape::desc());
  EXPECT_EQ(static_cast<OdRxObject*>(square.get()), same);
  same->release();
  try {
    square->x(RxMacroTag::desc());
    ADD_FAILURE() << "no exception";
  } catch (const OdError_NotThatKindOfClass& err) {
    EXPECT_EQ(eNotThatKindOfClass, err.code());
    EXPECT_EQ(RxMacroSquare::desc(), err.objectClass());
    EXPECT_EQ(RxMacroTag::desc(), err.wantedClass());
  }
  EXPECT_EQ(1, square->numRefs());
}

} // namespace rx_class_test
