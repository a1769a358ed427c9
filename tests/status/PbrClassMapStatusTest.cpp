#include "Sets.h"
#include "StatusListeners.h"

#include "support/Invariants.h"

namespace {

class ClassMapStatus : public testing::Test {
protected:
  ~ClassMapStatus() override { checkInvariants(*status); }

  Heard heard;
  Vyx::Ptr<Pbr::PbrClassMapStatus> const status = Pbr::pbrClassMapStatusFactory("web", classMapId(7));
  Vyx::Ptr<ClassMapStatusListener> const listener = listen<ClassMapStatusListener>(status, heard);

  std::string told() { return heard.take(); }
  static Vyx::Ptr<Pbr::NexthopIndexAndL2AdjKey> adjKey() {
    return Pbr::nexthopIndexAndL2AdjKeyFactory(setOf({{"10.0.0.1", true}}));
  }
};

TEST_F(ClassMapStatus, StartsWithoutRouting) {
  EXPECT_EQ(Pbr::noAction, status->actionType());
  EXPECT_EQ("", status->nexthopGroup());
  EXPECT_FALSE(status->nexthopIndexAndL2AdjKey());
}

TEST_F(ClassMapStatus, PassesItsParametersToTheBase) {
  EXPECT_EQ("web", status->className());
  EXPECT_EQ(classMapId(7), status->id());
  EXPECT_EQ("web", status->name());
  EXPECT_FALSE(status->parent());
}

TEST_F(ClassMapStatus, DefaultsStartNoRound) {
  status->actionTypeIs(Pbr::noAction);
  status->nexthopGroupIs("");
  status->nexthopIndexAndL2AdjKeyIs(nullptr);
  EXPECT_EQ("", told());
}

TEST_F(ClassMapStatus, ChangesAreToldOnce) {
  auto const key = adjKey();
  for (int twice : {1, 2}) {
    SCOPED_TRACE(twice);
    status->actionTypeIs(Pbr::nexthopGroupAction);
    status->nexthopGroupIs("gold");
    status->nexthopIndexAndL2AdjKeyIs(key);
  }
  EXPECT_EQ("actionType nexthopGroup adjKey", told());
  EXPECT_EQ(Pbr::nexthopGroupAction, status->actionType());
  EXPECT_EQ("gold", status->nexthopGroup());
  EXPECT_EQ(key, status->nexthopIndexAndL2AdjKey());
}

TEST_F(ClassMapStatus, NumberThatIsNoEnumeratorIsStoredAsItIs) {
  status->actionTypeIs(static_cast<Pbr::PbrActionType>(77));
  EXPECT_EQ("actionType", told());
  EXPECT_EQ("PbrActionType(77)", Pbr::stringValue(status->actionType()));
}

TEST_F(ClassMapStatus, EqualTextOfAnotherStorageStartsNoRound) {
  status->nexthopGroupIs(Vyx::String8("gold") + "en");
  told();
  status->nexthopGroupIs(Vyx::String8("go") + "lden");
  EXPECT_EQ("", told());
}

TEST_F(ClassMapStatus, AttributesAreIndependent) {
  status->actionTypeIs(Pbr::dropAction);
  status->nexthopGroupIs("gold");
  EXPECT_EQ("actionType nexthopGroup", told());
  status->actionTypeIs(Pbr::noAction);
  EXPECT_EQ("gold", status->nexthopGroup());
}

TEST_F(ClassMapStatus, AnotherEntityOfAnEqualSetIsAChange) {
  auto const one = adjKey();
  auto const other = adjKey();
  status->nexthopIndexAndL2AdjKeyIs(one);
  told();
  status->nexthopIndexAndL2AdjKeyIs(other);
  EXPECT_EQ("adjKey", told());
  EXPECT_EQ(1U, one->references());
  EXPECT_EQ(2U, other->references());
}

TEST_F(ClassMapStatus, NullReleasesTheEntityAndIsTold) {
  auto const key = adjKey();
  status->nexthopIndexAndL2AdjKeyIs(key);
  EXPECT_EQ(2U, key->references());
  told();
  status->nexthopIndexAndL2AdjKeyIs(nullptr);
  EXPECT_EQ("adjKey", told());
  EXPECT_EQ(1U, key->references());
}

TEST_F(ClassMapStatus, PointsAtTheEntityWithoutOwningIt) {
  auto key = adjKey();
  {
    auto const other = Pbr::pbrClassMapStatusFactory("voice", classMapId(8));
    other->nexthopIndexAndL2AdjKeyIs(key);
    status->nexthopIndexAndL2AdjKeyIs(key);
    EXPECT_EQ(other->nexthopIndexAndL2AdjKey(), status->nexthopIndexAndL2AdjKey());
    EXPECT_EQ(3U, key->references());
  }
  EXPECT_EQ(2U, key->references());
  EXPECT_FALSE(key->parent());
  key = nullptr;
  EXPECT_EQ(1U, status->nexthopIndexAndL2AdjKey()->nexthopSet().nexthops());
}

TEST_F(ClassMapStatus, ExceptionsComeBackWithTheAttributesIds) {
  listener->during = [] { throw 1; };
  status->actionTypeIs(Pbr::dropAction);
  status->nexthopGroupIs("gold");
  status->nexthopIndexAndL2AdjKeyIs(adjKey());
  EXPECT_EQ("actionType !386 nexthopGroup !387 adjKey !388", told());
  EXPECT_EQ(Pbr::dropAction, status->actionType());
}

TEST_F(ClassMapStatus, ReactorOfTheBaseIsPassedOverAndTheRoundGoesOn) {
  auto const base = listen<BaseClassMapStatusListener>(status, heard, "base");
  auto const last = listen<ClassMapStatusListener>(status, heard, "last");
  status->actionTypeIs(Pbr::dropAction);
  EXPECT_EQ("actionType last.actionType", told());
  status->nexthopGroupIs("gold");
  status->nexthopIndexAndL2AdjKeyIs(adjKey());
  EXPECT_EQ("nexthopGroup last.nexthopGroup adjKey last.adjKey", told());
}

TEST_F(ClassMapStatus, BasesAttributesAreToldToAll) {
  auto const base = listen<BaseClassMapStatusListener>(status, heard, "base");
  status->ruleStatusIs(PolicyMap::applied);
  auto const match = status->matchIs(PolicyMap::matchIpAccessGroup);
  EXPECT_EQ("ruleStatus base.ruleStatus match 'matchIpAccessGroup' base.match 'matchIpAccessGroup'", told());
  EXPECT_EQ(status, match->parent());
  EXPECT_EQ(260, match->parentAttrId());
}

} // namespace
