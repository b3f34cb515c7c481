#include "OdError.h"
#include "RxObject.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <utility>

namespace rx_smart_ptr_test {

class RxSpAnimal : public OdRxObject {
  ODRX_DECLARE_MEMBERS(RxSpAnimal);

public:
  RxSpAnimal() { ++s_live; }
  ~RxSpAnimal() override { --s_live; }
  static int s_live;
};
int RxSpAnimal::s_live = 0;

class RxSpDog : public RxSpAnimal {
  ODRX_DECLARE_MEMBERS(RxSpDog);
};

class RxSpStone : public OdRxObject {
  ODRX_DECLARE_MEMBERS(RxSpStone);
};

ODRX_DEFINE_RTTI_MEMBERS(RxSpAnimal, OdRxObject)
ODRX_DEFINE_INIT_MEMBERS(RxSpAnimal, OdRxObject::desc(), &RxSpAnimal::pseudoConstructor, 0, 0, 0,
                         OdString::kEmpty, OdString::kEmpty)
OdRxObjectPtr RxSpAnimal::pseudoConstructor() {
  return OdRxObjectImpl<RxSpAnimal>::createObject();
}
ODRX_DEFINE_RTTI_MEMBERS(RxSpDog, RxSpAnimal)
ODRX_DEFINE_INIT_MEMBERS(RxSpDog, RxSpAnimal::desc(), &RxSpDog::pseudoConstructor, 0, 0, 0,
                         OdString::kEmpty, OdString::kEmpty)
OdRxObjectPtr RxSpDog::pseudoConstructor() {
  return OdRxObjectImpl<RxSpDog>::createObject();
}
ODRX_DEFINE_RTTI_MEMBERS(RxSpStone, OdRxObject)
ODRX_DEFINE_INIT_MEMBERS(RxSpStone, OdRxObject::desc(), &RxSpStone::pseudoConstructor, 0, 0, 0,
                         OdString::kEmpty, OdString::kEmpty)
OdRxObjectPtr RxSpStone::pseudoConstructor() {
  return OdRxObjectImpl<RxSpStone>::createObject();
}

/// A process-wide object, as a module's protocol extensions are.
OdStaticRxObject<RxSpDog> g_fixedDog;

typedef OdSmartPtr<RxSpAnimal> AnimalPtr;
typedef OdSmartPtr<RxSpDog> DogPtr;
typedef OdSmartPtr<RxSpStone> StonePtr;

class SmartPtrTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    RxSpAnimal::rxInit();
    RxSpDog::rxInit();
    RxSpStone::rxInit();
  }
  static void TearDownTestSuite() {
    RxSpStone::rxUninit();
    RxSpDog::rxUninit();
    RxSpAnimal::rxUninit();
  }
  void SetUp() override { m_liveAtStart = RxSpAnimal::s_live; }
  void TearDown() override { EXPECT_EQ(m_liveAtStart, RxSpAnimal::s_live) << "objects leaked"; }

  int m_liveAtStart = 0;
};

TEST_F(SmartPtrTest, ImplObjectIsDeletedWhenTheLastReferenceGoes) {
  DogPtr dog = RxSpDog::createObject();
  EXPECT_EQ(1, dog->numRefs());
  {
    DogPtr copy = dog;
    AnimalPtr base = dog; // derived to base: a plain conversion
    EXPECT_EQ(3, dog->numRefs());
    OdRxObjectPtr root = base;
    EXPECT_EQ(4, dog->numRefs());
  }
  EXPECT_EQ(1, dog->numRefs());

  DogPtr moved = std::move(dog);
  EXPECT_TRUE(dog.isNull());
  EXPECT_EQ(1, moved->numRefs());

  RxSpDog* raw = moved.detach();
  EXPECT_TRUE(moved.isNull());
  EXPECT_EQ(1, raw->numRefs()) << "detach hands the reference over";
  DogPtr attached(raw, kOdRxObjAttach);
  EXPECT_EQ(1, attached->numRefs());
  EXPECT_EQ(m_liveAtStart + 1, RxSpAnimal::s_live);
  attached = nullptr;
  EXPECT_EQ(m_liveAtStart, RxSpAnimal::s_live);
}

TEST_F(SmartPtrTest, AssignmentKeepsCountsRight) {
  DogPtr a = RxSpDog::createObject();
  DogPtr b = RxSpDog::createObject();
  RxSpDog* first = a.get();
  DogPtr& alias = a;
  a = alias; // self-assignment must not drop the object
  EXPECT_EQ(1, first->numRefs());
  a = b;
  EXPECT_EQ(2, b->numRefs());
  EXPECT_EQ(m_liveAtStart + 1, RxSpAnimal::s_live)
      << "the first object went with its last reference";
  b.release();
  EXPECT_EQ(1, a->numRefs());
  a = static_cast<const RxSpDog*>(nullptr);
  EXPECT_EQ(m_liveAtStart, RxSpAnimal::s_live);
}

TEST_F(SmartPtrTest, StaticObjectIsNeverDeleted) {
  OdStaticRxObject<RxSpDog>& fixed = g_fixedDog;
  const int live = RxSpAnimal::s_live;
  {
    DogPtr one(&fixed);
    DogPtr two = one;
    EXPECT_EQ(1, fixed.numRefs());
  }
  fixed.release();
  fixed.release();
  EXPECT_EQ(live, RxSpAnimal::s_live);
  EXPECT_EQ(RxSpDog::desc(), fixed.isA());
}

TEST_F(SmartPtrTest, ConversionFromABasePointerChecksTheClass) {
  DogPtr dog = RxSpDog::createObject();
  OdRxObjectPtr asRoot = dog;
  DogPtr back = asRoot; // base to derived: a checked cast through queryX
  EXPECT_EQ(dog.get(), back.get());
  EXPECT_EQ(3, dog->numRefs());

  AnimalPtr plainAnimal = RxSpAnimal::createObject();
  OdRxObjectPtr animalAsRoot = plainAnimal;
  try {
    DogPtr wrong = animalAsRoot;
    ADD_FAILURE() << "an animal became a dog";
  } catch (const OdError_NotThatKindOfClass& err) {
    EXPECT_EQ(RxSpAnimal::desc(), err.objectClass());
    EXPECT_EQ(RxSpDog::desc(), err.wantedClass());
  }
  EXPECT_EQ(2, plainAnimal->numRefs()) << "a refused conversion takes no reference";
}

TEST_F(SmartPtrTest, ConversionToAnUnrelatedClassThrows) {
  DogPtr dog = RxSpDog::createObject();
  try {
    StonePtr stone = dog;
    ADD_FAILURE() << "a dog became a stone";
  } catch (const OdError& err) {
    EXPECT_EQ(eNotThatKindOfClass, err.code());
  }
  try {
    StonePtr stone(static_cast<const RxSpAnimal*>(dog.get()));
    ADD_FAILURE() << "a dog became a stone";
  } catch (const OdError_NotThatKindOfClass& err) {
    EXPECT_EQ(RxSpStone::desc(), err.wantedClass());
  }
  EXPECT_EQ(1, dog->numRefs());

  // A null pointer converts to null without asking anything.
  OdRxObjectPtr none;
  EXPECT_NO_THROW({
    StonePtr stone = none;
    EXPECT_TRUE(stone.isNull());
  });
}

} // namespace rx_smart_ptr_test
