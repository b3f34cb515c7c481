#include "OdError.h"
#include "RxObject.h"
#include "RxObjectImpl.h"

#include "sdk/SdkTestSupport.h"

namespace rx_protocol_extension_test {

/// A protocol: extension objects of this class answer `tag` for the class they are attached to.
class RxPeProtocol : public OdRxObject {
  ODRX_DECLARE_MEMBERS(RxPeProtocol);

public:
  explicit RxPeProtocol(int tag = 0) : m_tag(tag) { ++s_live; }
  ~RxPeProtocol() override { --s_live; }
  int tag() const { return m_tag; }
  static int s_live;

private:
  int m_tag;
};
int RxPeProtocol::s_live = 0;
ODRX_NO_CONS_DEFINE_MEMBERS(RxPeProtocol, OdRxObject)

/// A second, unrelated protocol.
class RxPeOther : public OdRxObject {
  ODRX_DECLARE_MEMBERS(RxPeOther);
};
ODRX_NO_CONS_DEFINE_MEMBERS(RxPeOther, OdRxObject)

/// The classes extended: an animal and a dog derived from it.
class RxPeAnimal : public OdRxObject {
  ODRX_DECLARE_MEMBERS(RxPeAnimal);
};
ODRX_DEFINE_RTTI_MEMBERS(RxPeAnimal, OdRxObject)
ODRX_DEFINE_INIT_MEMBERS(RxPeAnimal, OdRxObject::desc(), &RxPeAnimal::pseudoConstructor, 0, 0, 0,
                         OdString::kEmpty, OdString::kEmpty)
OdRxObjectPtr RxPeAnimal::pseudoConstructor() {
  return OdRxObjectImpl<RxPeAnimal>::createObject();
}

class RxPeDog : public RxPeAnimal {
  ODRX_DECLARE_MEMBERS(RxPeDog);
};
ODRX_DEFINE_RTTI_MEMBERS(RxPeDog, RxPeAnimal)
ODRX_DEFINE_INIT_MEMBERS(RxPeDog, RxPeAnimal::desc(), &RxPeDog::pseudoConstructor, 0, 0, 0,
                         OdString::kEmpty, OdString::kEmpty)
OdRxObjectPtr RxPeDog::pseudoConstructor() {
  return OdRxObjectImpl<RxPeDog>::createObject();
}

typedef OdSmartPtr<RxPeProtocol> ProtocolPtr;

class RxProtocolExtensionTest : public ::testing::Test {
protected:
  void SetUp() override {
    m_liveAtStart = RxPeProtocol::s_live;
    RxPeProtocol::rxInit();
    RxPeOther::rxInit();
    RxPeAnimal::rxInit();
    RxPeDog::rxInit();
  }
  void TearDown() override {
    for (void (*uninit)() : {&RxPeDog::rxUninit, &RxPeAnimal::rxUninit, &RxPeOther::rxUninit,
                             &RxPeProtocol::rxUninit}) {
      try {
        uninit();
      } catch (const OdError&) {
        // Unregistered by the test itself.
      }
    }
    EXPECT_EQ(m_liveAtStart, RxPeProtocol::s_live) << "extension objects leaked";
  }

  static ProtocolPtr extension(int tag) {
    return ProtocolPtr(new OdRxObjectImpl<RxPeProtocol>(tag));
  }
  static int tagOf(const OdRxObjectPtr& object) {
    return object.isNull() ? -1 : static_cast<const RxPeProtocol*>(object.get())->tag();
  }

  int m_liveAtStart = 0;
};

TEST_F(RxProtocolExtensionTest, AddXReplacesAndReturnsThePrevious) {
  OdRxClass* animal = RxPeAnimal::desc();
  ProtocolPtr first = extension(1);
  ProtocolPtr second = extension(2);
  EXPECT_TRUE(animal->addX(RxPeProtocol::desc(), first).isNull());
  EXPECT_EQ(2, first->numRefs()) << "the class holds a reference";
  EXPECT_EQ(1, tagOf(animal->addX(RxPeProtocol::desc(), second)));
  EXPECT_EQ(1, first->numRefs()) << "the replaced extension is let go";
  EXPECT_EQ(2, tagOf(animal->getX(RxPeProtocol::desc())));
  EXPECT_EQ(1u, animal->extensionClasses().size());

  // Adding null detaches, also returning the previous.
  EXPECT_EQ(2, tagOf(animal->addX(RxPeProtocol::desc(), nullptr)));
  EXPECT_TRUE(animal->getX(RxPeProtocol::desc()).isNull());
  EXPECT_EQ(0u, animal->extensionClasses().size());

  EXPECT_EQ(eInvalidInput, resultOf([&] { animal->addX(nullptr, first); })) << "no protocol";
}

TEST_F(RxProtocolExtensionTest, GetXLooksUpTheParentChainAndOwnExtensionsShadow) {
  OdRxClass* animal = RxPeAnimal::desc();
  OdRxClass* dog = RxPeDog::desc();
  animal->addX(RxPeProtocol::desc(), extension(1));
  EXPECT_EQ(1, tagOf(dog->getX(RxPeProtocol::desc()))) << "inherited from the parent";
  EXPECT_EQ(0u, dog->extensionClasses().size()) << "getX does not copy it down";
  EXPECT_TRUE(dog->getX(RxPeOther::desc()).isNull());
  EXPECT_TRUE(OdRxObject::desc()->getX(RxPeProtocol::desc()).isNull()) << "not upwards";

  dog->addX(RxPeProtocol::desc(), extension(2));
  EXPECT_EQ(2, tagOf(dog->getX(RxPeProtocol::desc())));
  EXPECT_EQ(1, tagOf(animal->getX(RxPeProtocol::desc())));

  // Objects find the extension of their class through queryX, with a reference.
  OdRxObjectPtr someDog = RxPeDog::createObject();
  OdRxObjectPtr someAnimal = RxPeAnimal::createObject();
  ProtocolPtr forDog = someDog; // checked conversion through queryX
  ProtocolPtr forAnimal = RxPeProtocol::cast(someAnimal);
  EXPECT_EQ(2, forDog->tag());
  EXPECT_EQ(1, forAnimal->tag());
  EXPECT_EQ(nullptr, someDog->queryX(RxPeOther::desc()));
  EXPECT_THROW(someDog->x(RxPeOther::desc()), OdError_NotThatKindOfClass);

  // Removing the dog's own extension uncovers the parent's again.
  EXPECT_EQ(2, tagOf(dog->delX(RxPeProtocol::desc())));
  EXPECT_EQ(1, tagOf(dog->getX(RxPeProtocol::desc())));
}

TEST_F(RxProtocolExtensionTest, DelXReturnsAndRemovesOnlyOwnExtensions) {
  OdRxClass* animal = RxPeAnimal::desc();
  OdRxClass* dog = RxPeDog::desc();
  animal->addX(RxPeProtocol::desc(), extension(1));
  animal->addX(RxPeOther::desc(), new OdRxObjectImpl<RxPeProtocol>(3));
  OdArray<const OdRxClass*> attached = animal->extensionClasses();
  ASSERT_EQ(2u, attached.size());
  EXPECT_EQ(RxPeProtocol::desc(), attached[0]);
  EXPECT_EQ(RxPeOther::desc(), attached[1]);

  EXPECT_TRUE(dog->delX(RxPeProtocol::desc()).isNull()) << "the dog has none of its own";
  EXPECT_EQ(1, tagOf(animal->getX(RxPeProtocol::desc())));

  OdRxObjectPtr removed = animal->delX(RxPeProtocol::desc());
  EXPECT_EQ(1, tagOf(removed));
  EXPECT_EQ(1, removed->numRefs()) << "the caller holds the only reference";
  EXPECT_TRUE(animal->getX(RxPeProtocol::desc()).isNull());
  EXPECT_TRUE(animal->delX(RxPeProtocol::desc()).isNull());
  EXPECT_EQ(3, tagOf(animal->getX(RxPeOther::desc())));
  animal->delX(RxPeOther::desc());
}

} // namespace rx_protocol_extension_test
