// The passes of the copy of one configuration onto another, one by one; ConfigCopyOrderTest has their order.

#include "CopyFixture.h"

namespace {

class ConfigCopyTest : public CopyTest {};
using ConfigCopyDeathTest = ConfigCopyTest;

TEST_F(ConfigCopyDeathTest, EndsTheProcessForWhatIsNoConfiguration) {
  constexpr char const* kText = "Pbr/PbrCopy:[0-9]+: assertion failed: sconfig && dconfig";
  EXPECT_DEATH(handler->handleEntity(ec, nullptr, src, ""), kText);
  EXPECT_DEATH(handler->handleEntity(ec, dest, nullptr, ""), kText);
  EXPECT_DEATH(handler->handleEntity(ec, dest->pmapType(), src, ""), kText);
  EXPECT_DEATH(handler->handleEntity(ec, dest, src->pmapType(), ""), kText);
}

TEST_F(ConfigCopyTest, KeepsNothingBetweenCalls) {
  addForward(*src, *addPolicyMap(*src, "edge"), "web", 1, {"10.0.0.1"});
  auto const held = [&] { return dest->references() + src->references() + ec->references(); };
  auto const before = held();
  copy();
  EXPECT_EQ(before, held());
}

TEST_F(ConfigCopyTest, FillsTheDestinationsContainerAndLeavesTheSourceAlone) {
  addForward(*src, *addPolicyMap(*src, "edge"), "web", 1, {"10.0.0.1"});
  std::string const before = contentOf(*src);
  EXPECT_TRUE(copy());
  EXPECT_EQ(before, contentOf(*src));
  EXPECT_EQ(before, contentOf(*dest));
  EXPECT_TRUE(dest->pbrActions()->fwdAction(idOf(1)));
  EXPECT_THAT(strayActions(*dest), IsEmpty());
}

TEST_F(ConfigCopyTest, ContainerIsNotCopiedForItsOwnSake) {
  src->pbrActions()->fwdActionIs("web", idOf(1), Pbr::dropAction);
  dest->pbrActions()->dscpActionIs("web", idOf(2), 10);
  EXPECT_FALSE(copy());
  EXPECT_EQ(0U, dest->pbrActions()->fwdActions());
  EXPECT_EQ(1U, dest->pbrActions()->dscpActions());
}

TEST_F(ConfigCopyTest, EachDifferingSwitchIsWrittenAndCounts) {
  src->bgpPbrRedirectIs(true);
  EXPECT_THAT(heardOfCopy(), ElementsAre("bgpPbrRedirect"));
  src->pbrEnableNonAgingMacAddrIs(false);
  EXPECT_TRUE(copy());
  EXPECT_FALSE(dest->pbrEnableNonAgingMacAddr());
  src->pbrUnresolvedNexthopActionDropIs(true);
  EXPECT_TRUE(copy());
  EXPECT_TRUE(dest->pbrUnresolvedNexthopActionDrop());
  EXPECT_TRUE(dest->bgpPbrRedirect());
  EXPECT_FALSE(copy());
}

TEST_F(ConfigCopyTest, SwitchesAreWrittenInTheirOrder) {
  src->pbrEnableNonAgingMacAddrIs(false);
  src->bgpPbrRedirectIs(true);
  src->pbrUnresolvedNexthopActionDropIs(true);
  EXPECT_THAT(heardOfCopy(),
              ElementsAre("pbrUnresolvedNexthopActionDrop", "bgpPbrRedirect", "pbrEnableNonAgingMacAddr"));
}

TEST_F(ConfigCopyTest, EqualConfigurationsStayUntouched) {
  addRules(*addClassMap(*src, "web"), {"ip any any"});
  addForward(*src, *addPolicyMap(*src, "edge"), "web", 1, {"10.0.0.1"});
  src->pmapType()->intfIs("et1", "edge");
  src->pmapType()->intfFallbackIs("et2", "edge");
  EXPECT_TRUE(copy());
  TreeRecorder recorder(dest);
  EXPECT_FALSE(copy());
  EXPECT_THAT(recorder.take(), IsEmpty());
}

TEST_F(ConfigCopyTest, ConfigurationCopiedOntoItselfStaysUntouched) {
  addForward(*src, *addPolicyMap(*src, "edge"), "web", 1, {"10.0.0.1"});
  addRules(*addClassMap(*src, "web"), {"ip any any"});
  src->pmapType()->intfIs("et1", "edge");
  TreeRecorder recorder(src);
  EXPECT_FALSE(handler->handleEntity(ec, src, src, ""));
  EXPECT_THAT(recorder.take(), IsEmpty());
}

TEST_F(ConfigCopyTest, ClassMapThatTheSourceHasNotLeavesAndCounts) {
  addClassMap(*dest, "old");
  EXPECT_TRUE(copy());
  EXPECT_EQ(0U, dest->cmapType()->cmaps());
}

TEST_F(ConfigCopyTest, ClassMapsLeaveInHashOrder) {
  for (char const* name : {"a", "b", "c", "d", "e", "f", "g"}) addClassMap(*dest, name);
  Lines expected;
  for (auto at = dest->cmapType()->cmapIteratorConst(); at; ++at)
    expected.push_back(std::string("cmapType.cmap[") + at.key().charPtr() + "]-");
  EXPECT_THAT(heardOfCopy(), ElementsAreArray(expected));
  EXPECT_EQ(7U, expected.size());
}

TEST_F(ConfigCopyTest, DynamicClassMapStaysAndDoesNotCount) {
  addClassMap(*dest, "learned")->dynamicIs(true);
  TreeRecorder recorder(dest);
  EXPECT_FALSE(copy());
  EXPECT_THAT(recorder.take(), IsEmpty());
}

TEST_F(ConfigCopyTest, MapWithoutCurrentContentIsNotDynamic) {
  addClassMap(*dest, "bare")->dynamicIs(true);
  dest->cmapType()->cmap("bare")->currentSubConfigIs(nullptr);
  addPolicyMap(*dest, "bare")->dynamicIs(true);
  dest->pmapType()->pmap("bare")->currentSubConfigIs(nullptr);
  EXPECT_TRUE(copy());
  EXPECT_FALSE(dest->cmapType()->cmap("bare"));
  EXPECT_FALSE(dest->pmapType()->pmap("bare"));
}

TEST_F(ConfigCopyTest, OnlyTheCurrentVersionMakesAMapDynamic) {
  addPolicyMap(*dest, "edge", 1)->dynamicIs(true);
  addPolicyMap(*dest, "edge", 2);
  EXPECT_TRUE(copy());
  EXPECT_FALSE(dest->pmapType()->pmap("edge"));
}

TEST_F(ConfigCopyTest, DynamicClassMapOfTheSameNameIsCopiedOver) {
  addClassMap(*dest, "web")->dynamicIs(true);
  addRules(*addClassMap(*src, "web"), {"ip 10.0.0.0/8 any"});
  EXPECT_TRUE(copy());
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
  EXPECT_FALSE(dest->cmapType()->cmap("web")->currentSubConfig()->dynamic());
}

TEST_F(ConfigCopyTest, DynamicClassMapOfTheSourceIsCopiedLikeAny) {
  addClassMap(*src, "learned")->dynamicIs(true);
  EXPECT_TRUE(copy());
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
}

TEST_F(ConfigCopyTest, MakingAMapDoesNotCountByItself) {
  src->cmapType()->cmapIs("empty");
  src->pmapType()->pmapIs("empty");
  EXPECT_FALSE(copy());
  EXPECT_TRUE(dest->cmapType()->cmap("empty"));
  EXPECT_TRUE(dest->pmapType()->pmap("empty"));
}

TEST_F(ConfigCopyTest, ClassMapsAreCopiedInHashOrderWithTheCallersPath) {
  for (char const* name : {"a", "b", "c", "d", "e"}) addClassMap(*src, name);
  Lines expected;
  for (auto at = src->cmapType()->cmapIteratorConst(); at; ++at)
    expected.push_back(std::string("cmapType.cmap[") + at.key().charPtr() + "]+");
  Lines const heard = heardOfCopy();
  Lines made;
  for (std::string const& line : linesOf(heard, "cmapType.cmap["))
    if (line.ends_with("]+") && line.find("subconfig") == std::string::npos) made.push_back(line);
  EXPECT_THAT(made, ElementsAreArray(expected));
  EXPECT_THAT(ec->calls, ElementsAreArray(Lines(5, "ClassMapConfig 'session'")));
}

TEST_F(ConfigCopyTest, AnswerForAClassMapCounts) {
  src->cmapType()->cmapIs("a");
  ec->answer = true;
  EXPECT_TRUE(copy());
  ec->answer = false;
  EXPECT_FALSE(copy());
}

TEST_F(ConfigCopyTest, EveryPassRunsAlsoAfterAChange) {
  src->bgpPbrRedirectIs(true);
  for (char const* name : {"a", "b"}) {
    addRules(*addClassMap(*src, name), {"ip any any"});
    addForward(*src, *addPolicyMap(*src, name), name, *name == 'a' ? 1 : 2, {"10.0.0.1"});
  }
  EXPECT_TRUE(copy());
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
}

TEST_F(ConfigCopyTest, PolicyMapThatTheSourceHasNotLeavesAfterItsActions) {
  auto const old = addPolicyMap(*dest, "old");
  addForward(*dest, *old, "web", 1);
  addSetDscp(*dest, *old, "web", 2, 10);
  auto const kept = addPolicyMap(*dest, "kept");
  addForward(*dest, *kept, "web", 3);
  addForward(*src, *addPolicyMap(*src, "kept"), "web", 3);
  EXPECT_THAT(heardOfCopy(),
              ElementsAre("pbrActions.fwdAction[00000001-0000-0000]-",
                          "pbrActions.dscpAction[00000002-0000-0000]-", "pmapType.pmap[old]-"));
  EXPECT_THAT(strayActions(*dest), IsEmpty());
}

TEST_F(ConfigCopyTest, ActionsOfEveryVersionLeaveInHashOrder) {
  std::uint32_t action = 100;
  for (std::uint32_t version : {1U, 2U, 3U, 4U, 5U})
    addForward(*dest, *addPolicyMap(*dest, "old", version), "web", ++action);
  Lines expected;
  for (auto at = dest->pmapType()->pmap("old")->subconfigIteratorConst(); at; ++at)
    expected.push_back(std::string("pbrActions.fwdAction[") +
                       valueToStrep(idOf(at->id().a() + 100)).charPtr() + "]-");
  expected.push_back("pmapType.pmap[old]-");
  EXPECT_THAT(heardOfCopy(), ElementsAreArray(expected));
}

TEST_F(ConfigCopyTest, PolicyMapsLeaveInNameOrderAndCount) {
  for (char const* name : {"c", "a", "d", "b"}) addPolicyMap(*dest, name);
  TreeRecorder recorder(dest);
  EXPECT_TRUE(copy());
  EXPECT_THAT(recorder.take(), ElementsAre("pmapType.pmap[a]-", "pmapType.pmap[b]-", "pmapType.pmap[c]-",
                                           "pmapType.pmap[d]-"));
}

TEST_F(ConfigCopyTest, DynamicPolicyMapStaysWithItsActions) {
  auto const learned = addPolicyMap(*dest, "learned");
  learned->dynamicIs(true);
  addForward(*dest, *learned, "web", 1, {"10.0.0.1"});
  addPolicyMap(*dest, "zoo");
  EXPECT_THAT(heardOfCopy(), ElementsAre("pmapType.pmap[zoo]-"));
  EXPECT_FALSE(copy());
}

TEST_F(ConfigCopyTest, DynamicPolicyMapOfTheSameNameIsCopiedOver) {
  auto const learned = addPolicyMap(*dest, "edge");
  learned->dynamicIs(true);
  addForward(*dest, *learned, "old", 1);
  addForward(*src, *addPolicyMap(*src, "edge"), "web", 2);
  EXPECT_TRUE(copy());
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
  EXPECT_THAT(strayActions(*dest), IsEmpty());
}

TEST_F(ConfigCopyTest, PolicyMapWithoutVersionLeavesAndTouchesNoAction) {
  dest->pmapType()->pmapIs("bare");
  dest->pbrActions()->fwdActionIs("web", idOf(1), Pbr::dropAction);
  EXPECT_THAT(heardOfCopy(), ElementsAre("pmapType.pmap[bare]-"));
}

TEST_F(ConfigCopyTest, EmptySourceLeavesNothingButWhatIsDynamic) {
  addClassMap(*dest, "web");
  addClassMap(*dest, "learned")->dynamicIs(true);
  addForward(*dest, *addPolicyMap(*dest, "edge"), "web", 1);
  addPolicyMap(*dest, "learned")->dynamicIs(true);
  dest->pmapType()->intfIs("et1", "edge");
  dest->pmapType()->intfIs("et2", "learned");
  EXPECT_TRUE(copy());
  addClassMap(*src, "learned")->dynamicIs(true);
  addPolicyMap(*src, "learned")->dynamicIs(true);
  src->pmapType()->intfIs("et2", "learned");
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
  EXPECT_EQ(0U, dest->pbrActions()->fwdActions());
}

TEST_F(ConfigCopyTest, PolicyMapsAreCopiedInNameOrderUnderTheirOwnPath) {
  for (char const* name : {"b%d", "c", "a"}) addPolicyMap(*src, name);
  copy("ignored");
  Lines const each = {"PolicyMapSubConfig 'pbr/config.pmapType.pmap.NAME' filtered",
                      "PolicyMapConfig 'pbr/config.pmapType.pmap.NAME' filtered"};
  Lines expected;
  for (std::string const name : {"a", "b%d", "c"})
    for (std::string line : each) expected.push_back(line.replace(line.find("NAME"), 4, name));
  EXPECT_THAT(ec->calls, ElementsAreArray(expected));
}

TEST_F(ConfigCopyTest, ChangeInAPolicyMapCounts) {
  addForward(*src, *addPolicyMap(*src, "edge"), "web", 1, {"10.0.0.1"});
  copy();
  src->pbrActions()->fwdAction(idOf(1))->nexthopIs("10.0.0.2", true);
  EXPECT_TRUE(copy());
  EXPECT_TRUE(dest->pbrActions()->fwdAction(idOf(1))->nexthop("10.0.0.2"));
  EXPECT_FALSE(copy());
}

TEST_F(ConfigCopyTest, MapGoneBecauseOfAChangeOfClassNamesTakesItsActions) {
  addForward(*dest, *addPolicyMap(*dest, "edge"), "web", 1);
  addForward(*src, *addPolicyMap(*src, "edge"), "mail", 2);
  EXPECT_TRUE(copy());
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
  EXPECT_THAT(strayActions(*dest), IsEmpty());
}

TEST_F(ConfigCopyTest, ActionThatHadLeftTheContainerIsMadeAgainAndCounts) {
  addSetDscp(*src, *addPolicyMap(*src, "edge"), "web", 1, 10);
  copy();
  dest->pbrActions()->dscpActionDel(idOf(1));
  EXPECT_TRUE(copy());
  EXPECT_FALSE(copy());
}

TEST_F(ConfigCopyTest, SessionReachesTheHandlerByTheNameOfTheType) {
  addForward(*src, *addPolicyMap(*src, "edge"), "web", 1, {"10.0.0.1"});
  auto const table = Cli::Session::entityCopyCustomHandlerTableFactory("handlers");
  table->entryIs("Pbr::Config")->handlerIs(handler);
  ec->handlerTableIs(table);
  EXPECT_TRUE(ec->copyEntity(dest, src, "", nullptr));
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
  EXPECT_FALSE(ec->copyEntity(dest, src, "", nullptr));
}

TEST_F(ConfigCopyTest, HooksCopyPolicyMapsThatAreMetByAttributes) {
  addForward(*src, *addPolicyMap(*src, "edge"), "web", 1, {"10.0.0.1"});
  auto const hooks = Pbr::policyMapCopyHandlerFactory();
  hooks->configIs(dest);
  auto const table = Cli::Session::entityCopyCustomHandlerTableFactory("handlers");
  table->entryIs("PolicyMap::PolicyMapConfig")->handlerIs(hooks);
  ec->handlerTableIs(table);
  EXPECT_TRUE(ec->copyEntity(dest->pmapType(), src->pmapType(), "", nullptr));
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
  EXPECT_FALSE(ec->copyEntity(dest->pmapType(), src->pmapType(), "", nullptr));
}

TEST_F(ConfigCopyTest, FailureLeavesTheStepsBeforeDone) {
  src->bgpPbrRedirectIs(true);
  addClassMap(*src, "web");
  src->pmapType()->intfIs("et1", "b");
  addForward(*src, *addPolicyMap(*src, "a"), "web", 1, {"10.0.0.1"});
  addForward(*src, *addPolicyMap(*src, "b"), "web", 2, {"10.0.0.1"});
  addPolicyMap(*src, "c");
  dest->pbrActions()->fwdActionIs("web", idOf(2), Pbr::dropAction);
  EXPECT_EQ("Reinstantiating the entity with name web where constructor parameter attribute _fwdActionType "
            "has a different value of 'nexthopAction' than the current value of 'dropAction' not allowed",
            messageOf<Vyx::NameInUseException>([&] { copy(); }));
  EXPECT_TRUE(dest->bgpPbrRedirect());
  EXPECT_TRUE(dest->cmapType()->cmap("web"));
  EXPECT_EQ("b", dest->pmapType()->intf("et1"));
  EXPECT_TRUE(dest->pbrActions()->fwdAction(idOf(1))->nexthop("10.0.0.1"));
  EXPECT_FALSE(dest->pmapType()->pmap("c"));
  EXPECT_EQ(1U, dest->references());
}

TEST_F(ConfigCopyTest, RunsToItsEndWhenTheCauseOfAFailureIsGone) {
  addForward(*src, *addPolicyMap(*src, "b"), "web", 2, {"10.0.0.1"});
  dest->pbrActions()->fwdActionIs("web", idOf(2), Pbr::dropAction);
  EXPECT_THROW(copy(), Vyx::NameInUseException);
  dest->pbrActions()->fwdActionDel(idOf(2));
  EXPECT_TRUE(copy());
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
}

} // namespace
