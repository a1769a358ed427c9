#include "CopyFixture.h"
#include "SubConfigActions.h"
#include "support/Heard.h"

namespace {

class SubConfigDeleteTest : public testing::Test {
protected:
  void SetUp() override { hooks->configIs(config); }
  void remove(std::uint32_t version) { hooks->subConfigDelete(policy(), idOf(version)); }
  Vyx::Ptr<PolicyMap::PolicyMapConfig> policy() { return config->pmapType()->pmap("edge"); }
  Lines heardOfRemove(std::uint32_t version) {
    TreeRecorder recorder(config);
    remove(version);
    return recorder.take();
  }
  void TearDown() override { EXPECT_THAT(invariantFaults(*config), IsEmpty()); }

  ConfigPtr const config = Pbr::configFactory("dest");
  Vyx::Ptr<Pbr::PolicyMapCopyHandler> const hooks = Pbr::policyMapCopyHandlerFactory();
  PolicyContent const content = addPolicyMap(*config, "edge");
};

TEST_F(SubConfigDeleteTest, ActionsLeaveTheContainerThenTheSubConfigGoes) {
  addSetDscp(*config, *content, "web", 2, 10);
  addForward(*config, *content, "web", 1);
  EXPECT_THAT(heardOfRemove(1), ElementsAre("pbrActions.fwdAction[00000001-0000-0000]-",
                                            "pbrActions.dscpAction[00000002-0000-0000]-",
                                            "pmapType.pmap[edge].subconfig[00000001-0000-0000]-"));
}

TEST_F(SubConfigDeleteTest, ClassesAreTakenInHashOrderForwardFirst) {
  std::uint32_t id = 0;
  for (char const* name : {"a", "b", "c", "d", "e"}) {
    addForward(*config, *content, name, ++id);
    addSetDscp(*config, *content, name, ++id, 10);
  }
  Lines expected;
  for (auto at = content->classActionIteratorConst(); at; ++at) {
    auto const line = [&](char const* kind, PolicyMap::ActionType type) {
      expected.push_back(std::string("pbrActions.") + kind + "[" +
                         valueToStrep(at->policyAction(type)->id()).charPtr() + "]-");
    };
    line("fwdAction", PolicyMap::actionPbrForward);
    line("dscpAction", PolicyMap::actionPbrSetDscp);
  }
  expected.push_back("pmapType.pmap[edge].subconfig[00000001-0000-0000]-");
  EXPECT_THAT(heardOfRemove(1), ElementsAreArray(expected));
}

TEST_F(SubConfigDeleteTest, UnknownIdTouchesNothing) {
  addForward(*config, *content, "web", 1);
  EXPECT_THAT(heardOfRemove(9), IsEmpty());
  EXPECT_EQ(content, policy()->subconfig(idOf(1)));
}

TEST_F(SubConfigDeleteTest, OnlyTheVersionOfThatIdGoes) {
  addForward(*config, *content, "web", 1);
  addForward(*config, *addPolicyMap(*config, "edge", 2), "web", 2);
  remove(2);
  EXPECT_TRUE(policy()->subconfig(idOf(1)));
  EXPECT_FALSE(policy()->subconfig(idOf(2)));
  EXPECT_TRUE(config->pbrActions()->fwdAction(idOf(1)));
  EXPECT_FALSE(config->pbrActions()->fwdAction(idOf(2)));
}

TEST_F(SubConfigDeleteTest, ActionThatAnotherVersionNamesLeavesAllTheSame) {
  auto const action = addForward(*config, *content, "web", 1);
  auto const other = addPolicyMap(*config, "edge", 2);
  other->classActionIs("web")->policyActionIs(action);
  remove(1);
  EXPECT_EQ(0U, config->pbrActions()->fwdActions());
  EXPECT_EQ(action, other->classAction("web")->policyAction(PolicyMap::actionPbrForward));
}

TEST_F(SubConfigDeleteTest, ActionThatIsNoLongerInTheContainerIsNoFailure) {
  addForward(*config, *content, "web", 1);
  addSetDscp(*config, *content, "web", 2, 10);
  config->pbrActions()->fwdActionDelAll();
  config->pbrActions()->dscpActionDelAll();
  EXPECT_THAT(heardOfRemove(1), ElementsAre("pmapType.pmap[edge].subconfig[00000001-0000-0000]-"));
}

TEST_F(SubConfigDeleteTest, TheKindsAreRemovedApart) {
  addForward(*config, *content, "web", 1);
  config->pbrActions()->dscpActionIs("web", idOf(1), 10);
  remove(1);
  EXPECT_EQ(0U, config->pbrActions()->fwdActions());
  EXPECT_EQ(1U, config->pbrActions()->dscpActions());
}

TEST_F(SubConfigDeleteTest, ActionsGoByIdFromTheHandlersConfiguration) {
  ConfigPtr const other = Pbr::configFactory("other");
  addForward(*config, *content, "web", 1);
  other->pbrActions()->fwdActionIs("mail", idOf(1), Pbr::dropAction);
  hooks->configIs(other);
  remove(1);
  EXPECT_EQ(1U, config->pbrActions()->fwdActions());
  EXPECT_EQ(0U, other->pbrActions()->fwdActions());
}

TEST_F(SubConfigDeleteTest, DeletingActionsLeavesTheClassActionsPointers) {
  auto const action = addForward(*config, *content, "web", 1);
  Pbr::deleteSubConfigActions(config, content);
  EXPECT_EQ(0U, config->pbrActions()->fwdActions());
  EXPECT_EQ(action, content->classAction("web")->policyAction(PolicyMap::actionPbrForward));
  EXPECT_EQ(nullptr, action->parent());
  EXPECT_EQ(content, policy()->subconfig(idOf(1)));
}

TEST_F(SubConfigDeleteTest, NoSubConfigIsNoFailure) {
  addForward(*config, *content, "web", 1);
  Pbr::deleteSubConfigActions(config, nullptr);
  EXPECT_EQ(1U, config->pbrActions()->fwdActions());
}

TEST_F(SubConfigDeleteTest, ForeignActionUnderTheTypeIsLeftAlone) {
  class Foreign final : public PolicyMap::Action {
  public:
    Foreign() : Action("web", PolicyMap::actionPbrForward, idOf(1)) {}
  };
  config->pbrActions()->fwdActionIs("web", idOf(1), Pbr::dropAction);
  content->classActionIs("web")->policyActionIs(Vyx::make<Foreign>());
  remove(1);
  EXPECT_EQ(1U, config->pbrActions()->fwdActions());
}

class HooksListener final : public Recorder<Pbr::PolicyMapCopyHandler> {
public:
  using Recorder::Recorder;
  void onConfig() override {
    hear(notifier()->config() ? "config " + std::string(notifier()->config()->name().view()) : "none");
  }
};

TEST(PolicyMapCopyHandlerConfig, IsNullAtFirstThenCountedAndTold) {
  auto const hooks = Pbr::policyMapCopyHandlerFactory();
  EXPECT_EQ(nullptr, hooks->config());
  Heard heard;
  auto const listener = listen<HooksListener>(hooks, heard);
  ConfigPtr const config = Pbr::configFactory("dest");
  hooks->configIs(config);
  EXPECT_EQ(2U, config->references());
  hooks->configIs(config);
  EXPECT_EQ("config dest", heard.take());
  hooks->configIs(nullptr);
  EXPECT_EQ(1U, config->references());
  EXPECT_EQ("none", heard.take());
}

TEST(PolicyMapCopyHandlerConfig, ReactorsExceptionComesBackWithTheId) {
  auto const hooks = Pbr::policyMapCopyHandlerFactory();
  Heard heard;
  auto const listener = listen<HooksListener>(hooks, heard);
  listener->during = [] { throw 1; };
  hooks->configIs(Pbr::configFactory("dest"));
  EXPECT_EQ("config dest !642", heard.take());
  EXPECT_TRUE(hooks->config());
}

TEST(PolicyMapCopyHandlerConfig, ReactorOfABaseAloneIsPassedOver) {
  using Base = Cli::Session::EntityCopyHandler;
  auto const hooks = Pbr::policyMapCopyHandlerFactory();
  Heard heard;
  auto const listener = listen<Recorder<Base>>(Vyx::Ptr<Base>(hooks), heard);
  hooks->configIs(Pbr::configFactory("dest"));
  EXPECT_EQ("", heard.take());
  hooks->isNondestructingIs(true);
  hooks->isNondestructingIs(false);
  EXPECT_EQ("isNondestructing isNondestructing", heard.take());
}

} // namespace
