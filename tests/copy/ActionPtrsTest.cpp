// How class actions of the destination come to point at the destination's own actions.

#include "CopyFixture.h"
#include "Traces.h"

namespace {

using PolicyMap::ClassAction;
using PolicyMap::PolicyMapSubConfig;

// An action under the key of forwarding actions that isn't one.
class ForeignAction final : public PolicyMap::Action {
public:
  ForeignAction(Vyx::Name name, PolicyMap::ActionType type) : Action(std::move(name), type, idOf(77)) {}
};

// Counts how often it is pointed at an action.
class SpyClassAction final : public ClassAction {
public:
  using ClassAction::ClassAction;
  void policyActionIs(Vyx::Ptr<PolicyMap::Action> const& value) override {
    ++bindings;
    ClassAction::policyActionIs(value);
  }
  int bindings = 0;
};

class ActionPtrsTest : public testing::Test {
protected:
  void SetUp() override { hooks->configIs(dest); }
  void update() { hooks->updateActionPtrs(ec, to, from); }
  void toHas(char const* className) { to->classActionIs(className); }
  Lines heardOfUpdate() {
    TreeRecorder recorder(dest);
    update();
    return recorder.take();
  }
  Vyx::Ptr<PolicyMap::Action> bound(char const* className, PolicyMap::ActionType type) {
    return to->classAction(className)->policyAction(type);
  }
  void TearDown() override { EXPECT_THAT(invariantFaults(*dest), IsEmpty()); }

  ConfigPtr const src = Pbr::configFactory("src");
  ConfigPtr const dest = Pbr::configFactory("dest");
  Vyx::Ptr<SpyCopy> const ec = Vyx::make<SpyCopy>();
  Vyx::Ptr<Pbr::PolicyMapCopyHandler> const hooks = Pbr::policyMapCopyHandlerFactory();
  PolicyContent const from = addPolicyMap(*src, "edge");
  PolicyContent const to = addPolicyMap(*dest, "edge");
};
using ActionPtrsDeathTest = ActionPtrsTest;

TEST_F(ActionPtrsTest, NullSubConfigsChangeNothing) {
  addForward(*src, *from, "web", 1);
  toHas("web");
  TreeRecorder recorder(dest);
  hooks->updateActionPtrs(ec, nullptr, from);
  hooks->updateActionPtrs(ec, to, nullptr);
  hooks->updateActionPtrs(ec, nullptr, nullptr);
  EXPECT_THAT(recorder.take(), IsEmpty());
}

TEST_F(ActionPtrsTest, ForwardActionIsMadeCopiedAndBoundInThisOrder) {
  auto const action = addForward(*src, *from, "web", 1, {"10.0.0.1"});
  action->recursiveIs(true);
  action->nexthopGroupIs("exit");
  toHas("web");
  std::string const made = "pbrActions.fwdAction[00000001-0000-0000]";
  EXPECT_THAT(heardOfUpdate(),
              ElementsAre(made + "+", made + ".nexthop[10.0.0.1]+", made + ".recursive",
                          made + ".nexthopGroup",
                          "pmapType.pmap[edge].subconfig[00000001-0000-0000].classAction[web]."
                          "policyAction[actionPbrForward]+"));
  EXPECT_EQ(bound("web", PolicyMap::actionPbrForward), dest->pbrActions()->fwdAction(idOf(1)));
  EXPECT_EQ(contentOf(*src), contentOf(*dest));
}

TEST_F(ActionPtrsTest, ActionKeepsIdClassNameAndKind) {
  addForward(*src, *from, "web", 1, {}, Pbr::nexthopGroupAction);
  toHas("web");
  update();
  auto const action = dest->pbrActions()->fwdAction(idOf(1));
  ASSERT_TRUE(action);
  EXPECT_EQ("web", action->className());
  EXPECT_EQ(Pbr::nexthopGroupAction, action->fwdActionType());
  EXPECT_NE(src->pbrActions()->fwdAction(idOf(1)), action);
}

TEST_F(ActionPtrsTest, SetDscpAloneMakesAndBindsOnlyThat) {
  addSetDscp(*src, *from, "web", 2, 46);
  toHas("web");
  EXPECT_THAT(heardOfUpdate(),
              ElementsAre("pbrActions.dscpAction[00000002-0000-0000]+",
                          "pmapType.pmap[edge].subconfig[00000001-0000-0000].classAction[web]."
                          "policyAction[actionPbrSetDscp]+"));
  EXPECT_EQ(Pbr::Dscp(46), dest->pbrActions()->dscpAction(idOf(2))->dscp());
  EXPECT_THAT(ec->calls, ElementsAre("PbrActionSetDscp ''"));
}

TEST_F(ActionPtrsTest, ForwardComesBeforeSetDscp) {
  addSetDscp(*src, *from, "web", 1, 46);
  addForward(*src, *from, "web", 1);
  toHas("web");
  update();
  EXPECT_THAT(ec->calls, ElementsAre("PbrFwdAction ''", "PbrActionSetDscp ''"));
  EXPECT_TRUE(bound("web", PolicyMap::actionPbrForward));
  EXPECT_TRUE(bound("web", PolicyMap::actionPbrSetDscp));
}

TEST_F(ActionPtrsTest, ClassWithoutActionChangesNothing) {
  from->classActionIs("web");
  toHas("web");
  EXPECT_THAT(heardOfUpdate(), IsEmpty());
  EXPECT_THAT(ec->calls, IsEmpty());
}

TEST_F(ActionPtrsTest, ClassesAreTakenInHashOrder) {
  std::uint32_t id = 0;
  for (char const* name : {"a", "b", "c", "d", "e", "f"}) {
    addForward(*src, *from, name, ++id);
    toHas(name);
  }
  Lines expected;
  for (auto at = from->classActionIteratorConst(); at; ++at)
    expected.push_back("PbrCopy 0: FwdAction pointer change" +
                       std::string(valueToStrep(at->policyAction(PolicyMap::actionPbrForward)->id()).view()));
  Traces traces({0});
  update();
  EXPECT_EQ(6U, expected.size());
  EXPECT_THAT(traces.take(), ElementsAreArray(expected));
}

TEST_F(ActionPtrsTest, ClassThatTheDestinationHasNotIsPassedOver) {
  addForward(*src, *from, "absent", 1);
  addForward(*src, *from, "web", 2);
  addForward(*src, *from, "zoo", 3);
  toHas("web");
  toHas("zoo");
  update();
  EXPECT_FALSE(dest->pbrActions()->fwdAction(idOf(1)));
  EXPECT_TRUE(dest->pbrActions()->fwdAction(idOf(2)));
  EXPECT_TRUE(dest->pbrActions()->fwdAction(idOf(3)));
  EXPECT_FALSE(to->classAction("absent"));
}

TEST_F(ActionPtrsTest, ClassPassedOverMayHoldForeignActions) {
  from->classActionIs("absent")->policyActionIs(
      Vyx::make<ForeignAction>("absent", PolicyMap::actionPbrForward));
  EXPECT_THAT(heardOfUpdate(), IsEmpty());
}

TEST_F(ActionPtrsDeathTest, ForeignActionOfTheForwardTypeEndsTheProcess) {
  from->classActionIs("web")->policyActionIs(Vyx::make<ForeignAction>("web", PolicyMap::actionPbrForward));
  toHas("web");
  EXPECT_DEATH(update(),
               "Pbr/PbrCopy:[0-9]+: assertion failed: iterClassAction->policyActions\\(\\) == count");
}

TEST_F(ActionPtrsDeathTest, ActionOfAnotherTypeEndsTheProcessAfterTheOthersWereBound) {
  addForward(*src, *from, "web", 1);
  addSetDscp(*src, *from, "web", 2, 10);
  from->classAction("web")->policyActionIs(Vyx::make<ForeignAction>("web", PolicyMap::actionNone));
  toHas("web");
  Vyx::traceLevelIs("PbrCopy", 0, true);
  EXPECT_DEATH(update(),
               "FwdAction pointer change00000001-0000-0000.*setDscp pointer change00000002-0000-0000.*"
               "assertion failed: iterClassAction->policyActions\\(\\) == count");
  Vyx::traceLevelIs("PbrCopy", 0, false);
}

TEST_F(ActionPtrsTest, BothActionsAreLookedUpBeforeAnyChange) {
  class Replacer final : public PolicyMap::ClassAction::Notifiee {
  public:
    using PolicyMap::ClassAction::NotifieeConst::onPolicyAction;
    void onPolicyAction(PolicyMap::ActionType type) override {
      if (type == PolicyMap::actionPbrForward) addSetDscp(*config, *content, "web", 3, 20);
    }
    ConfigPtr config;
    PolicyContent content;
  };
  addForward(*src, *from, "web", 1);
  addSetDscp(*src, *from, "web", 2, 10);
  toHas("web");
  auto const replacer = Vyx::make<Replacer>();
  replacer->config = src;
  replacer->content = from;
  replacer->isRegisteredNotifieeIs(true);
  replacer->notifierIs(to->classAction("web"));
  update();
  EXPECT_TRUE(dest->pbrActions()->dscpAction(idOf(2)));
  EXPECT_FALSE(dest->pbrActions()->dscpAction(idOf(3)));
}

TEST_F(ActionPtrsTest, ActionsOfOtherTypesStayInTheDestination) {
  addForward(*src, *from, "web", 1);
  addSetDscp(*dest, *to, "web", 2, 10);
  update();
  EXPECT_TRUE(bound("web", PolicyMap::actionPbrForward));
  EXPECT_EQ(dest->pbrActions()->dscpAction(idOf(2)), bound("web", PolicyMap::actionPbrSetDscp));
}

TEST_F(ActionPtrsTest, PointerAtTheSourcesActionIsTurned) {
  auto const theirs = addForward(*src, *from, "web", 1);
  to->classActionIs("web")->policyActionIs(theirs);
  update();
  EXPECT_EQ(dest->pbrActions()->fwdAction(idOf(1)), bound("web", PolicyMap::actionPbrForward));
  EXPECT_NE(theirs, bound("web", PolicyMap::actionPbrForward));
}

TEST_F(ActionPtrsTest, SecondRunFindsCopiesAndBindsAgainThoughNothingDiffers) {
  addForward(*src, *from, "web", 1, {"10.0.0.1"});
  addSetDscp(*src, *from, "web", 2, 10);
  auto const spy = Vyx::make<SpyClassAction>("web");
  PolicyMapSubConfig::VyxAttrClassAction::field(*to).newMember(spy);
  spy->parentAttrIdIs(PolicyMapSubConfig::VyxAttrClassAction::id);
  spy->parentIs(to);
  update();
  EXPECT_EQ(2, spy->bindings);
  Traces traces({0});
  EXPECT_THAT(heardOfUpdate(), IsEmpty());
  EXPECT_EQ(4, spy->bindings);
  EXPECT_EQ(4U, ec->calls.size());
  EXPECT_THAT(traces.take(), ElementsAre("PbrCopy 0: FwdAction pointer change00000001-0000-0000",
                                         "PbrCopy 0: setDscp pointer change00000002-0000-0000"));
}

TEST_F(ActionPtrsTest, WorksOnTheContainerOfItsConfiguration) {
  ConfigPtr const other = Pbr::configFactory("other");
  hooks->configIs(other);
  addForward(*src, *from, "web", 1);
  toHas("web");
  update();
  EXPECT_EQ(0U, dest->pbrActions()->fwdActions());
  EXPECT_EQ(other->pbrActions()->fwdAction(idOf(1)), bound("web", PolicyMap::actionPbrForward));
}

TEST_F(ActionPtrsTest, OtherClassNameUnderTheIdIsRefused) {
  addForward(*src, *from, "web", 1);
  toHas("web");
  dest->pbrActions()->fwdActionIs("mail", idOf(1), Pbr::nexthopAction);
  EXPECT_EQ(
      "Reinstantiating the entity with name mail where constructor parameter attribute _className has a "
      "different value of web than the current value of mail not allowed",
      messageOf<Vyx::NameInUseException>([&] { update(); }));
  EXPECT_EQ(0U, to->classAction("web")->policyActions());
}

TEST_F(ActionPtrsTest, ClassesBeforeARefusalStayBound) {
  std::uint32_t id = 0;
  for (char const* name : {"a", "b", "c"}) {
    addForward(*src, *from, name, ++id);
    toHas(name);
  }
  auto at = from->classActionIteratorConst();
  char const* const first = at->name().charPtr();
  ++at;
  auto const second = at->policyAction(PolicyMap::actionPbrForward);
  dest->pbrActions()->fwdActionIs(second->className(), second->id(), Pbr::dropAction);
  EXPECT_THROW(update(), Vyx::NameInUseException);
  EXPECT_TRUE(bound(first, PolicyMap::actionPbrForward));
  EXPECT_EQ(2U, dest->pbrActions()->fwdActions());
  EXPECT_EQ(0U, to->classAction(second->className())->policyActions());
}

} // namespace
