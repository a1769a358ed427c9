// What is particular to a level, and the tree as a whole.

#include "CheckpointListeners.h"

#include "support/Invariants.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

class CheckpointTree : public testing::Test {
protected:
  ~CheckpointTree() override { checkInvariants(*root); }

  Heard heard;
  Vyx::Ptr<Pbr::CheckpointStatus> const root = Pbr::checkpointStatusFactory("pbr/checkpoint");
  Vyx::Ptr<Pbr::CheckpointAgentStatus> const agent = root->checkpointAgentStatusIs("Linecard 3");
  Vyx::Ptr<Pbr::PolicyMapCheckpointStatus> const pmap = agent->pmapCkptStatusIs("SERVERS");
  Vyx::Ptr<Pbr::ClassMapCheckpointStatus> const cmap = pmap->cmapCkptStatusIs("web");
  Vyx::Ptr<Pbr::PbrAclTypeCheckpointStatus> const aclType = cmap->aclTypeCkptStatusIs(Acl::ipv6);
  Vyx::Ptr<Pbr::PbrAclCheckpointStatus> const acl = aclType->aclIs("web in");

  std::string told() { return heard.take(); }
};

TEST_F(CheckpointTree, FactoriesMakeOrphansOfTheirNames) {
  EXPECT_EQ("pbr/checkpoint", root->name());
  EXPECT_FALSE(root->parent());
  auto const orphan = Pbr::checkpointAgentStatusFactory("alone");
  EXPECT_EQ("alone", orphan->name());
  EXPECT_FALSE(orphan->parent());
}

TEST_F(CheckpointTree, EachLevelKnowsItsPlace) {
  EXPECT_EQ("pbr/checkpoint.checkpointAgentStatus[Linecard 3].pmapCkptStatus[SERVERS].cmapCkptStatus[web]"
            ".aclTypeCkptStatus['ipv6'].acl[web in]",
            acl->fullName());
}

TEST_F(CheckpointTree, KindOfAclGivesTheNameByItsTextForm) {
  EXPECT_EQ("'ipv6'", aclType->name());
  EXPECT_EQ(Acl::ipv6, aclType->type());
  EXPECT_EQ(valueToStrep(Acl::mac), cmap->newAclTypeCkptStatus(Acl::mac)->name());
}

TEST_F(CheckpointTree, KindThatIsNoEnumeratorIsOneMoreKey) {
  auto const kind = static_cast<Acl::AclType>(77);
  auto const member = cmap->aclTypeCkptStatusIs(kind);
  EXPECT_EQ("'AclType(77)'", member->name());
  EXPECT_EQ(kind, member->type());
  EXPECT_EQ(member, cmap->aclTypeCkptStatus(kind));
  EXPECT_EQ(2U, cmap->aclTypeCkptStatuses());
}

TEST_F(CheckpointTree, KindsAreWalkedByTheirReversedNumbers) {
  for (auto kind : {Acl::mac, Acl::ip}) cmap->aclTypeCkptStatusIs(kind);
  std::string kinds;
  for (auto at = cmap->aclTypeCkptStatusIterator(); at; ++at) kinds += std::string(at->name().view());
  EXPECT_EQ("'ip''mac''ipv6'", kinds);
}

TEST_F(CheckpointTree, ClassMapStartsWithZeroPacketsAndTheDefaultVersion) {
  auto const listener = listen<CmapListener>(cmap, heard);
  EXPECT_EQ(0U, cmap->pktMatch());
  EXPECT_EQ(Kest::UniqueId(0xffffffffU, 0xffff, 0xffff), cmap->version());
  cmap->pktMatchIs(0);
  cmap->versionIs({});
  EXPECT_EQ("", told());
}

TEST_F(CheckpointTree, ClassMapsChangesAreToldOnce) {
  auto const listener = listen<CmapListener>(cmap, heard);
  for (int twice : {1, 2}) {
    SCOPED_TRACE(twice);
    cmap->pktMatchIs(0x100000000ULL);
    cmap->versionIs({1, 2, 3});
  }
  EXPECT_EQ("pktMatch version", told());
  EXPECT_EQ(0x100000000ULL, cmap->pktMatch());
  EXPECT_EQ(Kest::UniqueId(1, 2, 3), cmap->version());
}

TEST_F(CheckpointTree, EitherHalfOfThePacketCountIsAChange) {
  auto const listener = listen<CmapListener>(cmap, heard);
  cmap->pktMatchIs(0x0000000100000001ULL);
  cmap->pktMatchIs(0x0000000200000001ULL);
  cmap->pktMatchIs(0x0000000200000002ULL);
  EXPECT_EQ("pktMatch pktMatch pktMatch", told());
}

TEST_F(CheckpointTree, ExceptionsComeBackWithTheAttributesIds) {
  auto const ofClass = listen<CmapListener>(cmap, heard);
  auto const ofPolicy = listen<PmapListener>(pmap, heard);
  ofClass->during = ofPolicy->during = [] { throw 1; };
  cmap->pktMatchIs(1);
  cmap->versionIs({1, 2, 3});
  pmap->ckptTimestampIs(1);
  EXPECT_EQ("pktMatch !258 version !259 ckptTimestamp !259", told());
}

TEST_F(CheckpointTree, PolicyMapsTimeIsComparedAsANumber) {
  auto const listener = listen<PmapListener>(pmap, heard);
  EXPECT_EQ(0.0, pmap->ckptTimestamp());
  pmap->ckptTimestampIs(-0.0);
  EXPECT_EQ("", told());
  EXPECT_FALSE(std::signbit(pmap->ckptTimestamp()));
  pmap->ckptTimestampIs(kNoNumber);
  pmap->ckptTimestampIs(kNoNumber);
  pmap->ckptTimestampIs(1.5);
  pmap->ckptTimestampIs(1.5);
  EXPECT_EQ("ckptTimestamp ckptTimestamp ckptTimestamp", told());
}

TEST_F(CheckpointTree, RemovedLevelKeepsItsChildrenAttached) {
  acl->ruleStatusIs(ruleId(1), {0, 1});
  auto const removed = agent->pmapCkptStatusDel("SERVERS");
  EXPECT_EQ(pmap, removed);
  EXPECT_FALSE(pmap->parent());
  EXPECT_EQ(pmap, cmap->parent());
  EXPECT_EQ(cmap, aclType->parent());
  EXPECT_EQ(aclType, acl->parent());
  EXPECT_EQ(cmap, pmap->cmapCkptStatus("web"));
  EXPECT_EQ(1U, acl->ruleStatuses());
}

TEST_F(CheckpointTree, OnlyTheParentIsToldOfARemoval) {
  auto const ofRoot = listen<RootListener>(root, heard, "root");
  auto const ofAgent = listen<AgentListener>(agent, heard, "agent");
  auto const ofPolicy = listen<PmapListener>(pmap, heard, "pmap");
  agent->pmapCkptStatusDel("SERVERS");
  EXPECT_EQ("agent.pmap SERVERS", told());
}

TEST_F(CheckpointTree, RemovedNameMayComeBackAsAnotherEntity) {
  pmap->cmapCkptStatusDel("web");
  auto const again = pmap->cmapCkptStatusIs("web");
  EXPECT_NE(cmap, again);
  EXPECT_EQ(0U, again->aclTypeCkptStatuses());
}

TEST_F(CheckpointTree, NamesOfAnyBytesAreKeys) {
  for (char const* name : {"", " ", "two words", "a/b", "'quoted'", "\xc3\xa9"}) {
    auto const member = aclType->aclIs(name);
    EXPECT_EQ(member, aclType->acl(name)) << name;
    EXPECT_EQ(name, member->name());
  }
  EXPECT_EQ(7U, aclType->acls());
  EXPECT_FALSE(aclType->acl("two"));
}

} // namespace
