#include "EntEditTextOper.h"

#include "Ge/GePoint3d.h"
#include "HostTestSupport.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// What the callbacks saw, in call order.
std::string g_calls;
OdDbEntity* g_pickedText = nullptr;
OdString g_committedText;
bool g_lastEditing = false;

// Picks told apart by the kind they answer: 0 finds nothing, 7 finds the test's text only left
// of x = 0, 9 finds the entity itself anywhere.
template <int Kind>
bool pick(OdSmartPtr<OdDbEntity> entity, const OdGePoint3d& point,
          OdSmartPtr<OdDbEntity>& textToEdit, int& kind) {
  g_calls += (Kind == 0 ? "pickNothing " : Kind == 7 ? "pickLeft " : "pickAll ");
  if (Kind == 0 || (Kind == 7 && point.x >= 0.0))
    return false;
  textToEdit = Kind == 7 ? OdSmartPtr<OdDbEntity>(g_pickedText) : entity;
  kind = Kind;
  return true;
}
constexpr auto pickNothing = &pick<0>;
constexpr auto pickLeft = &pick<7>;
constexpr auto pickAll = &pick<9>;

template <bool Accept>
bool commit(OdSmartPtr<OdDbEntity>, OdSmartPtr<OdDbEntity> editedText, OdString newText,
            OdSmartPtr<OdDbEntity>) {
  g_calls += Accept ? "commitAccept " : "commitRefuse ";
  if (Accept)
    g_committedText = newText;
  return Accept && !editedText.isNull();
}
constexpr auto commitRefuse = &commit<false>;
constexpr auto commitAccept = &commit<true>;

template <char Name> void show(OdSmartPtr<OdDbEntity>, OdSmartPtr<OdDbEntity>, bool editing) {
  g_calls += std::string("show") + Name + " ";
  g_lastEditing = editing;
}
constexpr auto showA = &show<'A'>;
constexpr auto showB = &show<'B'>;

// A module that unloads while the host walks the callbacks.
bool pickAndUnregister(OdSmartPtr<OdDbEntity>, const OdGePoint3d&, OdSmartPtr<OdDbEntity>&, int&) {
  g_calls += "pickAndUnregister ";
  EntEditTextOper::removeEditTextOper(&pickAndUnregister, commitRefuse);
  return false;
}

class EntEditTextOperTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_EQ(0, EntEditTextOper::count());
    g_calls.clear();
    g_pickedText = nullptr;
    g_committedText = OdString();
    entity = HostTestEntity::createObject();
  }
  void TearDown() override {
    for (auto pickOf : {pickNothing, pickLeft, pickAll, &pickAndUnregister})
      for (auto commitOf : {commitRefuse, commitAccept})
        EntEditTextOper::removeEditTextOper(pickOf, commitOf, nullptr);
  }

  HostTestEntityPtr entity;
};

TEST_F(EntEditTextOperTest, RegistrationAndRemovalKeyOnThePickCommitPair) {
  EXPECT_TRUE(EntEditTextOper::addEditTextOper(pickLeft, commitAccept, showA));
  EXPECT_FALSE(EntEditTextOper::addEditTextOper(pickLeft, commitAccept, showB));
  // Another commit with the same pick is another registration.
  EXPECT_TRUE(EntEditTextOper::addEditTextOper(pickLeft, commitRefuse, nullptr));
  EXPECT_FALSE(EntEditTextOper::addEditTextOper(nullptr, commitAccept, showA));
  EXPECT_FALSE(EntEditTextOper::addEditTextOper(pickAll, nullptr, showA));
  EXPECT_EQ(2, EntEditTextOper::count());
  // The show callback of the first registration stayed.
  EntEditTextOper::showText(entity, nullptr, true);
  EXPECT_EQ("showA ", g_calls);

  // Removal matches pick and commit only, whatever show is given.
  EXPECT_FALSE(EntEditTextOper::removeEditTextOper(pickAll, commitRefuse, showA));
  EXPECT_FALSE(EntEditTextOper::removeEditTextOper(pickNothing, commitAccept, showA));
  EXPECT_EQ(2, EntEditTextOper::count());
  EXPECT_TRUE(EntEditTextOper::removeEditTextOper(pickLeft, commitAccept, showB));
  EXPECT_TRUE(EntEditTextOper::removeEditTextOper(pickLeft, commitRefuse, nullptr));
  EXPECT_EQ(0, EntEditTextOper::count());
  EXPECT_FALSE(EntEditTextOper::removeEditTextOper(pickLeft, commitAccept, nullptr));
}

TEST_F(EntEditTextOperTest, HostAsksTheCallbacksInRegistrationOrder) {
  EntEditTextOper::addEditTextOper(pickNothing, commitRefuse, showA);
  EntEditTextOper::addEditTextOper(pickLeft, commitAccept, nullptr);
  EntEditTextOper::addEditTextOper(pickAll, commitRefuse, showB);
  HostTestEntityPtr text = HostTestEntity::createObject();
  g_pickedText = text;
  const auto calls = [] {
    const std::string seen = g_calls;
    g_calls.clear();
    return seen;
  };

  // Pick and commit stop at the first callback that answers.
  OdSmartPtr<OdDbEntity> found;
  int kind = 0;
  EXPECT_TRUE(EntEditTextOper::pickText(entity, OdGePoint3d(-1, 0, 0), found, kind));
  EXPECT_EQ("pickNothing pickLeft ", calls());
  EXPECT_EQ(text.get(), found.get());
  EXPECT_EQ(7, kind);
  EXPECT_TRUE(EntEditTextOper::pickText(entity, OdGePoint3d(1, 0, 0), found, kind));
  EXPECT_EQ("pickNothing pickLeft pickAll ", calls());
  EXPECT_EQ(entity.get(), found.get());
  EXPECT_EQ(9, kind);
  EXPECT_TRUE(EntEditTextOper::commitText(entity, text, OD_T("新文字"), nullptr));
  EXPECT_EQ("commitRefuse commitAccept ", calls());
  EXPECT_EQ(OdString("新文字"), g_committedText);
  EXPECT_FALSE(EntEditTextOper::commitText(entity, nullptr, OD_T("x"), nullptr));
  EXPECT_EQ("commitRefuse commitAccept commitRefuse ", calls());

  // Show reaches every show callback there is.
  EntEditTextOper::showText(entity, nullptr, true);
  EXPECT_EQ("showA showB ", calls());
  EXPECT_TRUE(g_lastEditing);
  EntEditTextOper::showText(entity, nullptr, false);
  EXPECT_EQ("showA showB ", calls());
  EXPECT_FALSE(g_lastEditing);

  // A null entity is no callback's business.
  EXPECT_FALSE(EntEditTextOper::pickText(nullptr, OdGePoint3d(), found, kind));
  EXPECT_FALSE(EntEditTextOper::commitText(nullptr, entity, OD_T("x"), nullptr));
  EntEditTextOper::showText(nullptr, entity, true);
  EXPECT_EQ("", calls());

  // When none answers, nothing is filled in.
  EntEditTextOper::removeEditTextOper(pickAll, commitRefuse);
  found = nullptr;
  kind = 0;
  EXPECT_FALSE(EntEditTextOper::pickText(entity, OdGePoint3d(1, 0, 0), found, kind));
  EXPECT_TRUE(found.isNull());
  EXPECT_EQ(0, kind);
}

TEST_F(EntEditTextOperTest, CallbackMayUnregisterWhileTheHostAsks) {
  EntEditTextOper::addEditTextOper(&pickAndUnregister, commitRefuse, nullptr);
  EntEditTextOper::addEditTextOper(pickAll, commitAccept, nullptr);
  OdSmartPtr<OdDbEntity> found;
  int kind = 0;
  EXPECT_TRUE(EntEditTextOper::pickText(entity, OdGePoint3d(), found, kind));
  EXPECT_EQ("pickAndUnregister pickAll ", g_calls);
  EXPECT_EQ(1, EntEditTextOper::count());
}

} // namespace
