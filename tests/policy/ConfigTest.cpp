#include "PolicyListeners.h"

#include "support/Invariants.h"

namespace {

class Config : public testing::Test {
protected:
  ~Config() override {
    if (config) checkInvariants(*config);
  }

  Heard heard;
  Vyx::Ptr<Pbr::Config> config = Pbr::configFactory("running");
  Vyx::Ptr<ConfigListener> const listener = listen<ConfigListener>(config, heard);

  std::string told() { return heard.take(); }
};

TEST_F(Config, IsWholeFromTheStart) {
  EXPECT_EQ("running", config->name());
  EXPECT_EQ("Pbr", config->pbrActions()->name());
  EXPECT_EQ("Pbr", config->cmapType()->name());
  EXPECT_EQ("Pbr", config->pmapType()->name());
  EXPECT_EQ(1U, static_cast<unsigned>(config->pmapType()->type()));
}

TEST_F(Config, ChildrenStandInTheirPlaces) {
  EXPECT_EQ(config, config->pbrActions()->parent());
  EXPECT_EQ(config, config->cmapType()->parent());
  EXPECT_EQ(config, config->pmapType()->parent());
  EXPECT_EQ(261, config->pbrActions()->parentAttrId());
  EXPECT_EQ(262, config->cmapType()->parentAttrId());
  EXPECT_EQ(263, config->pmapType()->parentAttrId());
}

TEST_F(Config, IsMadeAsAnOrphanHeldOnce) {
  auto const fresh = Pbr::configFactory("fresh");
  EXPECT_EQ(1U, fresh->references());
  EXPECT_FALSE(fresh->parent());
}

TEST_F(Config, OnlyTheLastSwitchStartsOn) {
  EXPECT_FALSE(config->pbrUnresolvedNexthopActionDrop());
  EXPECT_FALSE(config->bgpPbrRedirect());
  EXPECT_TRUE(config->pbrEnableNonAgingMacAddr());
}

TEST_F(Config, SwitchAtItsDefaultStartsNoRound) {
  config->pbrUnresolvedNexthopActionDropIs(false);
  config->bgpPbrRedirectIs(false);
  config->pbrEnableNonAgingMacAddrIs(true);
  EXPECT_EQ("", told());
}

TEST_F(Config, EachSwitchIsToldOncePerChange) {
  for (int i = 0; i < 2; ++i) {
    config->pbrUnresolvedNexthopActionDropIs(true);
    config->bgpPbrRedirectIs(true);
    config->pbrEnableNonAgingMacAddrIs(false);
  }
  EXPECT_EQ("pbrUnresolvedNexthopActionDrop bgpPbrRedirect pbrEnableNonAgingMacAddr", told());
}

TEST_F(Config, ExceptionsComeBackWithTheAttributesId) {
  listener->during = [] { throw 1; };
  config->pbrUnresolvedNexthopActionDropIs(true);
  config->bgpPbrRedirectIs(true);
  config->pbrEnableNonAgingMacAddrIs(false);
  EXPECT_EQ("pbrUnresolvedNexthopActionDrop !258 bgpPbrRedirect !259 pbrEnableNonAgingMacAddr !260", told());
  config->pbrActionsDel();
  config->cmapTypeDel();
  config->pmapTypeDel();
  EXPECT_EQ("pbrActions !261 cmapType !262 pmapType !263", told());
}

TEST_F(Config, OwnNamesKeepTheChildren) {
  auto const actions = config->pbrActions();
  auto const cmaps = config->cmapType();
  auto const pmaps = config->pmapType();
  EXPECT_EQ(actions, config->pbrActionsIs("Pbr"));
  EXPECT_EQ(cmaps, config->cmapTypeIs("Pbr"));
  EXPECT_EQ(pmaps, config->pmapTypeIs("Pbr", PolicyMap::mapPbr));
  EXPECT_EQ("", told());
}

TEST_F(Config, OtherNameReplacesTheContainerByAnEmptyOne) {
  auto const old = config->pbrActions();
  old->dscpActionIs("web", actionId(1), 46);
  bool orphan = false;
  listener->during = [&] { orphan = !old->parent(); };
  auto const fresh = config->pbrActionsIs("x");
  EXPECT_EQ("pbrActions", told());
  EXPECT_TRUE(orphan);
  EXPECT_EQ(fresh, config->pbrActions());
  EXPECT_EQ(0U, fresh->dscpActions());
  EXPECT_EQ(1U, old->references());
}

TEST_F(Config, ActionsOfADroppedContainerLeaveOneByOne) {
  Heard below;
  config->pbrActions()->dscpActionIs("web", actionId(1), 46);
  auto const weak = Vyx::ptrFromNew(new ContainerListener(below));
  weak->isWeakReferenceIs(true);
  attach(weak, config->pbrActions());
  config->pbrActionsIs("x");
  EXPECT_EQ("dscpAction 00000001-0000-0000", below.take());
  EXPECT_FALSE(weak->notifier());
}

TEST_F(Config, OtherNameReplacesTheClassMaps) {
  auto const old = config->cmapType();
  EXPECT_NE(old, config->cmapTypeIs("x"));
  EXPECT_EQ("cmapType", told());
  EXPECT_FALSE(old->parent());
}

TEST_F(Config, OtherTypeReplacesThePolicyMapsOfTheSameName) {
  auto const old = config->pmapType();
  auto const fresh = config->pmapTypeIs("Pbr", static_cast<PolicyMap::MapType>(2));
  EXPECT_EQ("pmapType", told());
  EXPECT_NE(old, fresh);
  EXPECT_EQ(2U, static_cast<unsigned>(fresh->type()));
  EXPECT_FALSE(old->parent());
}

TEST_F(Config, OtherNameReplacesThePolicyMapsOfTheSameType) {
  auto const old = config->pmapType();
  EXPECT_NE(old, config->pmapTypeIs("x", PolicyMap::mapPbr));
  EXPECT_EQ("pmapType", told());
}

TEST_F(Config, NewChildIsAttachedButNeitherStoredNorTold) {
  auto const actions = config->newPbrActions("x");
  auto const cmaps = config->newCmapType("x");
  auto const pmaps = config->newPmapType("x", PolicyMap::mapQos);
  EXPECT_EQ("", told());
  EXPECT_EQ("Pbr", config->pbrActions()->name());
  EXPECT_EQ(config, actions->parent());
  EXPECT_EQ(261, actions->parentAttrId());
  EXPECT_EQ(262, cmaps->parentAttrId());
  EXPECT_EQ(263, pmaps->parentAttrId());
  for (Vyx::Entity* stray : std::initializer_list<Vyx::Entity*>{actions.ptr(), cmaps.ptr(), pmaps.ptr()})
    stray->parentIs(nullptr);
}

TEST_F(Config, RemovedChildIsReturnedDetachedAndToldOnce) {
  auto const cmaps = config->cmapType();
  EXPECT_EQ(cmaps, config->cmapTypeDel());
  EXPECT_EQ("cmapType", told());
  EXPECT_FALSE(cmaps->parent());
  EXPECT_FALSE(config->cmapType());
  EXPECT_FALSE(config->cmapTypeDel());
  EXPECT_EQ("", told());
}

TEST_F(Config, RemovedChildMayComeBack) {
  config->pbrActionsDel();
  EXPECT_TRUE(config->pbrActionsIs("Pbr"));
  EXPECT_EQ("pbrActions pbrActions", told());
}

TEST_F(Config, FrameRoundsComeBackWithTheirIds) {
  listener->during = [] { throw 1; };
  config->isNondestructingIs(true);
  config->isNondestructingIs(true);
  config->zeroReferencesIs(true);
  EXPECT_EQ("isNondestructing !6 zeroReferences !5", told());
  config->isNondestructingIs(false);
}

class ConfigEnd : public Config {
protected:
  ConfigEnd() { listener->isWeakReferenceIs(true); }
};

TEST_F(ConfigEnd, ChildrenLeaveInOrderAndAreTold) {
  auto const pmaps = config->pmapType();
  config = nullptr;
  EXPECT_EQ("pbrActions cmapType pmapType", told());
  EXPECT_FALSE(listener->notifier());
  EXPECT_FALSE(pmaps->parent());
}

TEST_F(ConfigEnd, ChildThatWasRemovedIsNotToldAgain) {
  config->cmapTypeDel();
  told();
  config = nullptr;
  EXPECT_EQ("pbrActions pmapType", told());
}

TEST_F(ConfigEnd, ExceptionOfAReactorDoesNotStopIt) {
  listener->during = [] { throw 1; };
  config = nullptr;
  EXPECT_EQ("pbrActions !261 cmapType !262 pmapType !263", told());
}

TEST_F(ConfigEnd, ActionsThatSomebodyHoldsOutliveItWithoutAParent) {
  auto const action = config->pbrActions()->fwdActionIs("web", actionId(1), Pbr::nexthopAction);
  config = nullptr;
  EXPECT_FALSE(action->parent());
  EXPECT_EQ(1U, action->references());
}

} // namespace
