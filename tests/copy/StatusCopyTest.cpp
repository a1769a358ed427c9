// Trees of the status and of the checkpoint, copied attribute by attribute as any other.

#include "Cli/Session.h"
#include "Pbr/Pbr.h"

#include "support/Invariants.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

bool copy(Vyx::Ptr<Vyx::Entity> const& dest, Vyx::Ptr<Vyx::Entity const> const& src) {
  bool const changed = Cli::Session::entityCopyFactory()->doCopyEntityAttrs(dest, src, "", nullptr);
  checkInvariants(*dest);
  return changed;
}

Vyx::Ptr<Pbr::CheckpointStatus> checkpoint() {
  auto root = Pbr::checkpointStatusFactory("checkpoint");
  auto const pmap = root->checkpointAgentStatusIs("Linecard 3")->pmapCkptStatusIs("SERVERS");
  pmap->ckptTimestampIs(1.5);
  auto const cmap = pmap->cmapCkptStatusIs("web");
  cmap->pktMatchIs(7);
  cmap->versionIs({1, 2, 3});
  auto const acl = cmap->aclTypeCkptStatusIs(Acl::ipv6)->aclIs("web in");
  acl->timestampIs(2.5);
  acl->versionIs({4, 5, 6});
  acl->ruleStatusIs({7, 0, 0}, {0, 9});
  return root;
}

Vyx::Ptr<Pbr::PbrAclCheckpointStatus> aclOf(Pbr::CheckpointStatus const& root) {
  return root.checkpointAgentStatus("Linecard 3")
      ->pmapCkptStatus("SERVERS")
      ->cmapCkptStatus("web")
      ->aclTypeCkptStatus(Acl::ipv6)
      ->acl("web in");
}

TEST(CheckpointCopy, TakesEveryLevel) {
  auto const src = checkpoint();
  auto const dest = Pbr::checkpointStatusFactory("copy");
  EXPECT_TRUE(copy(dest, src));
  auto const acl = aclOf(*dest);
  EXPECT_NE(aclOf(*src), acl);
  EXPECT_EQ(2.5, acl->timestamp());
  EXPECT_EQ(Acl::UniqueId(4, 5, 6), acl->version());
  EXPECT_EQ(Acl::RuleCheckpointStatus(0, 9), acl->ruleStatus({7, 0, 0}));
  EXPECT_EQ("'ipv6'", acl->parent()->name());
  EXPECT_FALSE(copy(dest, src));
}

TEST(CheckpointCopy, RemovesWhatTheSourceLacks) {
  auto const src = checkpoint();
  auto const dest = checkpoint();
  dest->checkpointAgentStatusIs("Linecard 4");
  aclOf(*dest)->ruleStatusIs({8, 0, 0}, {});
  auto const kept = aclOf(*dest);
  EXPECT_TRUE(copy(dest, src));
  EXPECT_EQ(1U, dest->checkpointAgentStatuses());
  EXPECT_EQ(kept, aclOf(*dest));
  EXPECT_EQ(1U, kept->ruleStatuses());
}

TEST(CheckpointCopy, TimeThatIsNoNumberIsAChangeEachTime) {
  auto const src = checkpoint();
  auto const dest = checkpoint();
  aclOf(*src)->timestampIs(std::nan(""));
  EXPECT_TRUE(copy(dest, src));
  EXPECT_TRUE(std::isnan(aclOf(*dest)->timestamp()));
  EXPECT_TRUE(copy(dest, src));
}

TEST(StatusCopy, PointsAtTheSameNextHops) {
  auto const src = Pbr::statusFactory("status");
  auto const dest = Pbr::statusFactory("copy");
  auto const member = src->pbrClassMapStatusIs("web", {1, 0, 0});
  auto const key = Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet(1, "blue"));
  member->actionTypeIs(Pbr::nexthopAction);
  member->nexthopIndexAndL2AdjKeyIs(key);
  member->matchIs(PolicyMap::matchMacAccessGroup)->rulesIs(12);
  src->intfDisallowedIs({"Ethernet1", PolicyMap::intfNotRouted}, "no address");
  EXPECT_TRUE(copy(dest, src));
  auto const copied = dest->pbrClassMapStatus({1, 0, 0});
  EXPECT_EQ(Pbr::nexthopAction, copied->actionType());
  EXPECT_EQ(key, copied->nexthopIndexAndL2AdjKey());
  EXPECT_EQ(12U, copied->match(PolicyMap::matchMacAccessGroup)->rules());
  EXPECT_EQ("no address", dest->intfDisallowed({"Ethernet1", PolicyMap::intfNotRouted}));
  EXPECT_FALSE(copy(dest, src));
}

TEST(StatusCopy, ClassMapOfAnotherNameIsMadeAnew) {
  auto const src = Pbr::statusFactory("status");
  auto const dest = Pbr::statusFactory("copy");
  src->pbrClassMapStatusIs("web", {1, 0, 0});
  auto const old = dest->pbrClassMapStatusIs("voice", {1, 0, 0});
  EXPECT_TRUE(copy(dest, src));
  EXPECT_EQ("web", dest->pbrClassMapStatus({1, 0, 0})->className());
  EXPECT_FALSE(old->parent());
}

} // namespace
