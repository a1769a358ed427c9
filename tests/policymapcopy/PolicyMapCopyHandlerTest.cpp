// The base's copy of a policy map, and when it asks the owner of the actions.

#include "Cli/Session.h"
#include "PolicyMap/PolicyMap.h"
#include "PolicyMap/PolicyMapCopy.h"
#include "support/Heard.h"
#include "support/Invariants.h"

#include <map>

namespace {

using namespace PolicyMap;
using Cli::Session::EntityCopy;

Kest::UniqueId idOf(std::uint32_t number) { return {number, 0, 0}; }

// Owns the actions of the destination: one for each of the source's, found by id.
class Owner final : public PolicyMapCopyHandler {
public:
  void updateActionPtrs(Vyx::Ptr<EntityCopy> const& ec, Vyx::Ptr<PolicyMapSubConfig> const& dest,
                        Vyx::Ptr<PolicyMapSubConfig const> const& src) override {
    asked.note("update " + std::to_string(dest->id().a()));
    if (during) during(ec);
    for (auto at = src->classActionIteratorConst(); at; ++at)
      for (auto action = at->policyActionIteratorConst(); action; ++action)
        dest->classAction(at.key())->policyActionIs(own(*action.value()));
  }
  void subConfigDelete(Vyx::Ptr<PolicyMapConfig> const& dest, Kest::UniqueId const& id) override {
    asked.note("delete " + std::to_string(id.a()));
    auto const sub = dest->subconfig(id);
    for (auto at = sub->classActionIteratorConst(); at; ++at)
      for (auto action = at->policyActionIteratorConst(); action; ++action) owned.erase(action.value()->id());
    PolicyMapCopyHandler::subConfigDelete(dest, id);
  }
  Vyx::Ptr<Action> own(Action const& like) {
    Vyx::Ptr<Action>& action = owned[like.id()];
    if (!action) action = actionFactory(like.className(), like.type(), like.id());
    return action;
  }
  std::map<Kest::UniqueId, Vyx::Ptr<Action>> owned;
  Heard asked;
  std::function<void(Vyx::Ptr<EntityCopy> const&)> during; // Runs in updateActionPtrs.
};

class PolicyMapCopyHandlerTest : public testing::Test {
protected:
  bool copy() { return owner->handleEntity(ec, dest, src, "path"); }
  // A class action of the source's version, with an action of that id.
  void sourceHas(std::uint32_t version, char const* name, std::uint32_t action,
                 ActionType type = actionPbrForward) {
    src->subconfigIs(idOf(version))
        ->classActionIs(name)
        ->policyActionIs(actionFactory(name, type, idOf(action)));
  }
  std::string asked() { return owner->asked.take(); }
  std::string ownedIds() {
    std::string ids;
    for (auto const& [id, action] : owner->owned) ids += (ids.empty() ? "" : " ") + std::to_string(id.a());
    return ids;
  }
  void TearDown() override { checkInvariants(*dest); }

  Vyx::Ptr<EntityCopy> const ec = Cli::Session::entityCopyFactory();
  Vyx::Ptr<Owner> const owner = Vyx::make<Owner>();
  Vyx::Ptr<PolicyMapConfig> const src = policyMapConfigFactory("edge");
  Vyx::Ptr<PolicyMapConfig> const dest = policyMapConfigFactory("edge");
};

TEST_F(PolicyMapCopyHandlerTest, WhatIsNoPolicyMapChangesNothing) {
  sourceHas(1, "web", 1);
  EXPECT_FALSE(owner->handleEntity(ec, src->subconfig(idOf(1)), src, ""));
  EXPECT_FALSE(owner->handleEntity(ec, dest, src->subconfig(idOf(1)), ""));
  EXPECT_FALSE(owner->handleEntity(ec, nullptr, src, ""));
  EXPECT_FALSE(owner->handleEntity(ec, dest, nullptr, ""));
  EXPECT_EQ("", asked());
}

TEST_F(PolicyMapCopyHandlerTest, SubConfigIsCopiedThenItsOwnerAsked) {
  sourceHas(1, "web", 7);
  src->subconfig(idOf(1))->classAction("web")->sequenceIs(10);
  src->subconfig(idOf(1))->dynamicIs(true);
  src->currentSubConfigIs(src->subconfig(idOf(1)));
  EXPECT_TRUE(copy());
  EXPECT_EQ("update 1", asked());
  auto const sub = dest->subconfig(idOf(1));
  EXPECT_EQ(sub, dest->currentSubConfig());
  EXPECT_TRUE(sub->dynamic());
  EXPECT_EQ(10U, sub->classAction("web")->sequence());
  EXPECT_EQ(owner->owned[idOf(7)], sub->classAction("web")->policyAction(actionPbrForward));
}

TEST_F(PolicyMapCopyHandlerTest, ContentIsThereWhenTheOwnerIsAskedButNoActionOfTheSource) {
  sourceHas(1, "web", 7);
  owner->during = [&](auto const&) {
    ASSERT_TRUE(dest->subconfig(idOf(1))->classAction("web"));
    EXPECT_EQ(0U, dest->subconfig(idOf(1))->classAction("web")->policyActions());
  };
  copy();
  EXPECT_EQ("update 1", asked());
}

TEST_F(PolicyMapCopyHandlerTest, OwnerIsAskedForEqualContentTooAndNothingChanges) {
  sourceHas(1, "web", 7);
  src->currentSubConfigIs(src->subconfig(idOf(1)));
  copy();
  asked();
  EXPECT_FALSE(copy());
  EXPECT_EQ("update 1", asked());
}

TEST_F(PolicyMapCopyHandlerTest, SubConfigThatTheSourceHasNotIsDeletedByTheOwnerFirst) {
  sourceHas(1, "web", 7);
  copy();
  asked();
  src->subconfigDelAll();
  sourceHas(2, "web", 8);
  EXPECT_TRUE(copy());
  EXPECT_EQ("delete 1 update 2", asked());
  EXPECT_EQ("8", ownedIds());
  EXPECT_EQ(1U, dest->subconfigs());
}

TEST_F(PolicyMapCopyHandlerTest, ActionThatMovesToAnotherVersionIsNotLost) {
  sourceHas(1, "web", 7);
  copy();
  src->subconfigDelAll();
  sourceHas(2, "web", 7);
  copy();
  EXPECT_EQ("7", ownedIds());
  EXPECT_EQ(owner->owned[idOf(7)],
            dest->subconfig(idOf(2))->classAction("web")->policyAction(actionPbrForward));
}

TEST_F(PolicyMapCopyHandlerTest, SubConfigThatWouldLoseAClassIsReplacedWhole) {
  sourceHas(1, "web", 7);
  sourceHas(1, "mail", 8);
  copy();
  asked();
  auto const old = dest->subconfig(idOf(1));
  src->subconfig(idOf(1))->classActionDel("mail");
  EXPECT_TRUE(copy());
  EXPECT_EQ("delete 1 update 1", asked());
  EXPECT_NE(old, dest->subconfig(idOf(1)));
  EXPECT_EQ("7", ownedIds());
}

TEST_F(PolicyMapCopyHandlerTest, SubConfigThatWouldLoseAnActionIsReplacedWhole) {
  sourceHas(1, "web", 7);
  sourceHas(1, "web", 8, actionPbrSetDscp);
  copy();
  asked();
  src->subconfig(idOf(1))->classAction("web")->policyActionDel(actionPbrSetDscp);
  EXPECT_TRUE(copy());
  EXPECT_EQ("delete 1 update 1", asked());
  EXPECT_EQ("7", ownedIds());
}

TEST_F(PolicyMapCopyHandlerTest, ActionOfAnotherIdReplacesTheSubConfigToo) {
  sourceHas(1, "web", 7);
  copy();
  asked();
  sourceHas(1, "web", 9);
  EXPECT_TRUE(copy());
  EXPECT_EQ("delete 1 update 1", asked());
  EXPECT_EQ("9", ownedIds());
}

TEST_F(PolicyMapCopyHandlerTest, FurtherClassesAndActionsAreAddedInPlace) {
  sourceHas(1, "web", 7);
  copy();
  asked();
  auto const kept = dest->subconfig(idOf(1));
  sourceHas(1, "web", 8, actionPbrSetDscp);
  EXPECT_TRUE(copy());
  sourceHas(1, "mail", 9);
  EXPECT_TRUE(copy());
  EXPECT_EQ("update 1 update 1", asked());
  EXPECT_EQ(kept, dest->subconfig(idOf(1)));
  EXPECT_EQ("7 8 9", ownedIds());
}

TEST_F(PolicyMapCopyHandlerTest, ReplacedCurrentVersionIsTheCurrentOneAgain) {
  sourceHas(1, "web", 7);
  src->currentSubConfigIs(src->subconfig(idOf(1)));
  copy();
  sourceHas(1, "web", 9);
  copy();
  EXPECT_EQ(dest->subconfig(idOf(1)), dest->currentSubConfig());
  src->currentSubConfigIs(nullptr);
  EXPECT_TRUE(copy());
  EXPECT_EQ(nullptr, dest->currentSubConfig());
}

TEST_F(PolicyMapCopyHandlerTest, ChangeInsideAnActionCountsThoughItLivesElsewhere) {
  sourceHas(1, "web", 7);
  copy();
  auto const here = classActionFactory("x");
  auto const there = classActionFactory("x");
  there->sequenceIs(1);
  owner->during = [&](auto const& by) { by->doCopyEntityAttrs(here, there, "", nullptr); };
  EXPECT_TRUE(copy());
  EXPECT_FALSE(copy());
}

TEST_F(PolicyMapCopyHandlerTest, EmptySubConfigCounts) {
  src->subconfigIs(idOf(1));
  EXPECT_TRUE(copy());
  EXPECT_FALSE(copy());
}

TEST_F(PolicyMapCopyHandlerTest, WithoutOwnerTheSourcesActionsAreShared) {
  auto const plain = policyMapCopyHandlerFactory();
  sourceHas(1, "web", 7);
  EXPECT_TRUE(plain->handleEntity(ec, dest, src, ""));
  EXPECT_EQ(src->subconfig(idOf(1))->classAction("web")->policyAction(actionPbrForward),
            dest->subconfig(idOf(1))->classAction("web")->policyAction(actionPbrForward));
  EXPECT_FALSE(plain->handleEntity(ec, dest, src, ""));
  plain->updateActionPtrs(ec, nullptr, src->subconfig(idOf(1)));
  plain->updateActionPtrs(ec, dest->subconfig(idOf(1)), nullptr);
}

TEST_F(PolicyMapCopyHandlerTest, PathReachesTheCopyOfAttributes) {
  class Spy final : public EntityCopy {
  public:
    bool doCopyEntityAttrs(Vyx::Ptr<Vyx::Entity> const& dest, Vyx::Ptr<Vyx::Entity const> const& src,
                           Vyx::String8 path,
                           Vyx::Ptr<Cli::Session::AttributeFilter const> const& filter) override {
      EXPECT_EQ("path", path);
      EXPECT_TRUE(filter);
      ++calls;
      return EntityCopy::doCopyEntityAttrs(dest, src, path, filter);
    }
    int calls = 0;
  };
  auto const spy = Vyx::make<Spy>();
  sourceHas(1, "web", 7);
  owner->handleEntity(spy, dest, src, "path");
  EXPECT_EQ(2, spy->calls);
}

} // namespace
