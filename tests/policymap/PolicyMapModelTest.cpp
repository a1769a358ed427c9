// The generic policy-map model as its users see it.

#include "PolicyMap/PolicyMap.h"
#include "support/Heard.h"
#include "support/Invariants.h"
#include "support/SlotOf.h"
#include "support/Walks.h"

#include <algorithm>

namespace {

using namespace PolicyMap;

Kest::UniqueId idOf(std::uint32_t number) { return {number, 0, 0}; }
MatchRule rule(char const* text) { return Vyx::strepToValue<MatchRule>(text); }

TEST(PolicyAction, IsNamedByItsClass) {
  auto const action = actionFactory("web", actionPbrForward, idOf(1));
  EXPECT_EQ("web", action->name());
  EXPECT_EQ("web", action->className());
  EXPECT_EQ(actionPbrForward, action->type());
  EXPECT_EQ(idOf(1), action->id());
}

TEST(PolicyAction, OfUnknownContentEqualsItselfAlone) {
  auto const one = actionFactory("web", actionPbrForward, idOf(1));
  auto const other = actionFactory("web", actionPbrForward, idOf(1));
  EXPECT_TRUE(one->equalTo(one));
  EXPECT_FALSE(one->equalTo(other));
  EXPECT_FALSE(one->equalTo(nullptr));
}

TEST(PolicyAction, AddsOneSlotToTheEntitys) {
  expectSlotsFrom(slotCount<Vyx::Entity>(), {slotOf(&Action::equalTo), slotCount<Action>()});
}

TEST(PolicyEnumerations, HaveTheirValues) {
  EXPECT_EQ(0, actionNone);
  EXPECT_EQ(4, actionPbrForward);
  EXPECT_EQ(5, actionPbrSetDscp);
  EXPECT_EQ(1, mapPbr);
}

TEST(ClassMap, StartsWithoutContent) {
  auto const cmap = classMapConfigFactory("web");
  EXPECT_EQ(0U, cmap->subconfigs());
  EXPECT_EQ(nullptr, cmap->currentSubConfig());
  EXPECT_FALSE(cmap->subconfigIs(idOf(1))->dynamic());
}

TEST(ClassMap, VersionsAreFoundOrMadeById) {
  auto const cmap = classMapConfigFactory("web");
  auto const version = cmap->subconfigIs(idOf(1));
  EXPECT_EQ(version, cmap->subconfigIs(idOf(1)));
  EXPECT_EQ(idOf(1), version->id());
  EXPECT_EQ("", version->name());
  EXPECT_EQ(cmap.ptr(), version->parent().ptr());
  checkInvariants(*cmap);
}

TEST(ClassMap, RulesWalkBySequence) {
  auto const content = classMapSubConfigFactory(idOf(1));
  for (unsigned sequence : {30U, 10U, 20U}) content->matchIs(sequence, rule("ip any any"));
  EXPECT_EQ("10 20 30", keysFrom(content->matchIteratorConst()));
  EXPECT_EQ(rule("ip any any"), content->match(20));
  EXPECT_EQ(MatchRule(), content->match(99));
}

class RuleListener final : public Recorder<ClassMapSubConfig> {
public:
  using ClassMapSubConfig::NotifieeConst::onMatch;
  using Recorder::Recorder;
  void onDynamic() override { hear("dynamic"); }
  void onMatch(unsigned sequence) override { hear("match", sequence); }
};

TEST(ClassMap, RulesTellWhenTheyChange) {
  auto const content = classMapSubConfigFactory(idOf(1));
  Heard heard;
  auto const listener = listen<RuleListener>(content, heard);
  content->matchIs(10, rule("ip any any"));
  content->matchIs(10, rule("ip any any"));
  content->matchIs(10, rule("access-list web-in"));
  content->dynamicIs(true);
  content->matchDel(10);
  EXPECT_EQ("match 10 match 10 dynamic match 10", heard.take());
}

TEST(ClassAction, HoldsOneActionOfEachType) {
  auto const web = classActionFactory("web");
  auto const first = actionFactory("web", actionPbrForward, idOf(1));
  auto const second = actionFactory("web", actionPbrForward, idOf(2));
  auto const dscp = actionFactory("web", actionPbrSetDscp, idOf(3));
  for (auto const& action : {first, dscp, second}) web->policyActionIs(action);
  EXPECT_EQ(2U, web->policyActions());
  EXPECT_EQ(second, web->policyAction(actionPbrForward));
  EXPECT_EQ(dscp, web->policyAction(actionPbrSetDscp));
  EXPECT_EQ(nullptr, web->policyAction(actionNone));
  EXPECT_EQ(nullptr, second->parent()) << "the class action owns none";
}

class ActionListener final : public Recorder<ClassAction> {
public:
  using ClassAction::NotifieeConst::onPolicyAction;
  using Recorder::Recorder;
  void onSequence() override { hear("sequence"); }
  void onPolicyAction(ActionType type) override { hear("policyAction", type); }
};

TEST(ClassAction, TellsOfItsActionsByType) {
  auto const web = classActionFactory("web");
  Heard heard;
  auto const listener = listen<ActionListener>(web, heard);
  auto const action = actionFactory("web", actionPbrForward, idOf(1));
  web->policyActionIs(action);
  web->policyActionIs(action);
  EXPECT_EQ(action, web->policyActionDel(actionPbrForward));
  web->sequenceIs(10);
  EXPECT_EQ("policyAction 'actionPbrForward' policyAction 'actionPbrForward' sequence", heard.take());
}

TEST(ClassAction, BindingAnActionIsVirtual) {
  expectSlotsFrom(slotCount<Vyx::Entity>(), {slotOf(&ClassAction::policyActionIs), slotCount<ClassAction>()});
}

TEST(PolicyMaps, WalkByName) {
  auto const type = policyMapTypeConfigFactory("Pbr", mapPbr);
  for (char const* name : {"b", "c", "a"}) type->pmapIs(name);
  EXPECT_EQ("a b c", keysFrom(type->pmapIteratorConst()));
  EXPECT_EQ(mapPbr, type->type());
  checkInvariants(*type);
}

TEST(PolicyMaps, ClassMapsAndClassActionsWalkInHashOrder) {
  auto const type = classMapTypeConfigFactory("Pbr");
  auto const content = policyMapSubConfigFactory(idOf(1));
  std::vector<Vyx::Name> names = {"a", "b", "c", "d", "e"};
  for (Vyx::Name const& name : names) {
    type->cmapIs(name);
    content->classActionIs(name);
  }
  std::sort(names.begin(), names.end(), TableOrder());
  std::string expected;
  for (Vyx::Name const& name : names) expected += (expected.empty() ? "" : " ") + std::string(name.view());
  EXPECT_EQ(expected, keysFrom(type->cmapIteratorConst()));
  EXPECT_EQ(expected, keysFrom(content->classActionIteratorConst()));
}

TEST(PolicyMaps, BindingsAreNamesByInterface) {
  auto const type = policyMapTypeConfigFactory("Pbr", mapPbr);
  type->intfIs("et1", "edge");
  type->intfFallbackIs("et1", "core");
  EXPECT_EQ("edge", type->intf("et1"));
  EXPECT_EQ("core", type->intfFallback("et1"));
  EXPECT_EQ("", type->intf("et2"));
  EXPECT_EQ("edge", type->intfDel("et1"));
  EXPECT_EQ(0U, type->intfs());
  EXPECT_EQ(1U, type->intfFallbacks());
}

TEST(PolicyMaps, AttributesHaveTheirIds) {
  auto const type = policyMapTypeConfigFactory("Pbr", mapPbr);
  EXPECT_EQ(259, type->pmapIs("edge")->parentAttrId());
  EXPECT_EQ(258, type->pmap("edge")->subconfigIs(idOf(1))->parentAttrId());
  EXPECT_EQ(260, type->pmap("edge")->subconfig(idOf(1))->classActionIs("web")->parentAttrId());
  EXPECT_EQ("intf", type->attributeString(260));
  EXPECT_EQ("intfFallback", type->attributeString(261));
  EXPECT_EQ("currentSubConfig", type->pmap("edge")->attributeString(259));
}

} // namespace
