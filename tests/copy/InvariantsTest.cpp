// The checkers of trees, on broken trees.

#include "CopyFixture.h"

#include <set>

namespace {

class InvariantsTest : public testing::Test {
protected:
  void SetUp() override {
    addRules(*addClassMap(*config, "web"), {"ip any any", "ip 10.0.0.0/8 any"});
    auto const edge = addPolicyMap(*config, "edge");
    action = addForward(*config, *edge, "web", 1, {"10.0.0.1"});
    addSetDscp(*config, *edge, "web", 2, 10);
  }
  Lines faults() { return invariantFaults(*config); }

  ConfigPtr const config = Pbr::configFactory("config");
  Vyx::Ptr<Pbr::PbrFwdAction> action;
};

TEST_F(InvariantsTest, HoldInAWholeTree) {
  EXPECT_THAT(configFaults(*config), IsEmpty());
  EXPECT_THAT(strayActions(*config), IsEmpty());
}

TEST_F(InvariantsTest, TellAChildOfAnotherParent) {
  action->parentIs(config);
  config->cmapType()->parentIs(nullptr);
  EXPECT_THAT(faults(), ElementsAre("pbrActions.fwdAction[00000001-0000-0000] has another parent",
                                    "cmapType has another parent"));
}

TEST_F(InvariantsTest, TellAChildUnderAnotherAttribute) {
  config->pmapType()->pmap("edge")->parentAttrIdIs(1);
  EXPECT_THAT(faults(), ElementsAre("pmapType.pmap[edge] stands under another attribute"));
}

TEST_F(InvariantsTest, TellAKeyThatIsThereTwice) {
  config->pbrActions()->newFwdAction("web", idOf(1), Pbr::dropAction);
  EXPECT_THAT(faults(), ElementsAre("pbrActions.fwdAction[00000001-0000-0000] is not what its key finds"));
}

TEST_F(InvariantsTest, TellAMemberThatIsLost) {
  config->pbrActions()->fwdActionIs("mail", idOf(2), Pbr::dropAction);
  config->pbrActions()->fwdActionIs("mail", idOf(3), Pbr::dropAction);
  auto at = config->pbrActions()->fwdActionIterator();
  Vyx::HashLink const lost = std::exchange(at->fwkHmNext_, nullptr);
  EXPECT_THAT(faults(), ElementsAre("pbrActions.fwdAction has another count than members"));
  at->fwkHmNext_ = lost;
}

TEST_F(InvariantsTest, TellACurrentVersionOfAnotherMap) {
  auto const core = addPolicyMap(*config, "core", 2);
  config->pmapType()->pmap("edge")->currentSubConfigIs(core);
  EXPECT_THAT(faults(), IsEmpty());
  EXPECT_THAT(configFaults(*config), ElementsAre("edge has a current version that isn't its own"));
}

TEST_F(InvariantsTest, TellAnActionUnderAnotherType) {
  auto const web = config->pmapType()->pmap("edge")->currentSubConfig()->classAction("web");
  web->newPolicyAction(PolicyMap::actionNone, action);
  EXPECT_THAT(configFaults(*config),
              testing::Contains("edge 00000001-0000-0000 web holds an action under another type"));
}

TEST_F(InvariantsTest, TellAnActionOfAnotherContainer) {
  ConfigPtr const other = Pbr::configFactory("other");
  auto const web = config->pmapType()->pmap("edge")->currentSubConfig()->classAction("web");
  web->policyActionIs(other->pbrActions()->fwdActionIs("web", idOf(1), Pbr::nexthopAction));
  EXPECT_THAT(configFaults(*config),
              ElementsAre("edge 00000001-0000-0000 web names an action that isn't the container's"));
  EXPECT_THAT(strayActions(*config), ElementsAre("00000001-0000-0000"));
}

TEST_F(InvariantsTest, TellAnActionThatNobodyNames) {
  config->pbrActions()->dscpActionIs("mail", idOf(7), 10);
  EXPECT_THAT(strayActions(*config), ElementsAre("00000007-0000-0000"));
}

TEST_F(InvariantsTest, ContentTellsEveryDifference) {
  Lines contents = {contentOf(*config)};
  auto const changed = [&] { contents.push_back(contentOf(*config)); };
  auto const edge = config->pmapType()->pmap("edge");
  action->nexthopIs("10.0.0.1", false), changed();
  action->recursiveIs(true), changed();
  action->nexthopGroupIs("exit"), changed();
  edge->currentSubConfig()->classAction("web")->sequenceIs(3), changed();
  edge->currentSubConfig()->dynamicIs(true), changed();
  edge->currentSubConfigIs(nullptr), changed();
  config->cmapType()->cmap("web")->currentSubConfig()->matchDel(10), changed();
  config->pmapType()->intfIs("et1", "edge"), changed();
  config->pmapType()->intfFallbackIs("et1", "edge"), changed();
  config->bgpPbrRedirectIs(true), changed();
  EXPECT_EQ(contents.size(), std::set<std::string>(contents.begin(), contents.end()).size());
}

} // namespace
