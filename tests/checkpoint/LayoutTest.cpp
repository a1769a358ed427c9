// The order of fields, seen in the objects' own bytes; see support/Fields.h.

#include "CheckpointListeners.h"

#include "support/Fields.h"

namespace {

struct Acl {
  fields::Entity entity;
  fields::Table<Pbr::PbrAclCheckpointStatus::VyxRuleStatusMap> ruleStatus;
  double timestamp;
  std::uint32_t version[2];
  void const* fwkHmNext;
  fields::List reactors;
};
struct Rule {
  void* operations;
  std::uint32_t word;
  std::uint32_t key[2];
  std::uint32_t value[2];
  void const* fwkHmNext;
};
struct AclType {
  fields::Entity entity;
  std::uint32_t type;
  fields::Table<Pbr::PbrAclTypeCheckpointStatus::VyxAclMap> acl;
  void const* fwkHmNext;
  fields::List reactors;
};
struct ClassMap {
  fields::Entity entity;
  std::uint64_t pktMatch;
  std::uint32_t version[2];
  fields::Table<Pbr::ClassMapCheckpointStatus::VyxAclTypeCkptStatusMap> aclType;
  void const* fwkHmNext;
  fields::List reactors;
};
struct PolicyMap {
  fields::Entity entity;
  fields::Table<Pbr::PolicyMapCheckpointStatus::VyxCmapCkptStatusMap> cmap;
  double timestamp;
  void const* fwkHmNext;
  fields::List reactors;
};
struct Agent {
  fields::Entity entity;
  fields::Table<Pbr::CheckpointAgentStatus::VyxPmapCkptStatusMap> pmap;
  void const* fwkHmNext;
  fields::List reactors;
};
struct Root {
  fields::Entity entity;
  fields::Table<Pbr::CheckpointStatus::VyxCheckpointAgentStatusMap> agent;
  fields::List reactors;
};

TEST(Layout, AclHasRulesTimeVersionLinkThenItsList) {
  Heard heard;
  auto const parent = Vyx::make<Pbr::PbrAclTypeCheckpointStatus>("t", ::Acl::ip);
  for (char const* name : {"a", "b"}) parent->aclIs(name);
  auto const acl = parent->aclIterator().member();
  acl->ruleStatusIs(ruleId(1), {3, 4});
  acl->timestampIs(1.5);
  acl->versionIs({7, 0, 0});
  auto const reactor = listen<AclListener>(acl, heard);
  auto const laid = fields::over<Acl>(*acl);
  EXPECT_EQ(1U, laid.ruleStatus.count);
  EXPECT_EQ(1.5, laid.timestamp);
  EXPECT_EQ(7U, laid.version[0]);
  EXPECT_EQ((++parent->aclIterator()).member().ptr(), laid.fwkHmNext);
  EXPECT_EQ(reactor.ptr(), laid.reactors.head);
}

TEST(Layout, RuleHasKeyValueAndLink) {
  auto const acl = Vyx::make<Pbr::PbrAclCheckpointStatus>("acl");
  auto const laid = fields::over<Rule>(*acl->newRuleStatus(ruleId(7), {3, 4}));
  EXPECT_EQ(7U, laid.key[0]);
  EXPECT_EQ(3U, laid.value[0]);
  EXPECT_EQ(4U, laid.value[1]);
  EXPECT_EQ(nullptr, laid.fwkHmNext);
}

TEST(Layout, KindHasItsTypeThenItsTable) {
  auto const cmap = Vyx::make<Pbr::ClassMapCheckpointStatus>("c");
  auto const kind = cmap->aclTypeCkptStatusIs(::Acl::mac);
  cmap->aclTypeCkptStatusIs(::Acl::ipv6);
  kind->aclIs("a");
  auto const laid = fields::over<AclType>(*kind);
  EXPECT_EQ(2U, laid.type);
  EXPECT_EQ(1U, laid.acl.count);
  EXPECT_EQ(cmap->aclTypeCkptStatus(::Acl::ipv6).ptr(), laid.fwkHmNext);
}

TEST(Layout, ClassMapHasPacketsAndVersionBeforeItsTable) {
  Heard heard;
  auto const cmap = Vyx::make<Pbr::ClassMapCheckpointStatus>("c");
  cmap->pktMatchIs(0x1122334455667788ULL);
  cmap->versionIs({7, 0, 0});
  cmap->aclTypeCkptStatusIs(::Acl::ip);
  auto const reactor = listen<CmapListener>(cmap, heard);
  auto const laid = fields::over<ClassMap>(*cmap);
  EXPECT_EQ(0x1122334455667788ULL, laid.pktMatch);
  EXPECT_EQ(7U, laid.version[0]);
  EXPECT_EQ(1U, laid.aclType.count);
  EXPECT_EQ(nullptr, laid.fwkHmNext);
  EXPECT_EQ(reactor.ptr(), laid.reactors.head);
}

TEST(Layout, PolicyMapHasItsTableBeforeItsTime) {
  Heard heard;
  auto const pmap = Vyx::make<Pbr::PolicyMapCheckpointStatus>("p");
  pmap->cmapCkptStatusIs("c");
  pmap->ckptTimestampIs(2.5);
  auto const reactor = listen<PmapListener>(pmap, heard);
  auto const laid = fields::over<PolicyMap>(*pmap);
  EXPECT_EQ(1U, laid.cmap.count);
  EXPECT_EQ(2.5, laid.timestamp);
  EXPECT_EQ(reactor.ptr(), laid.reactors.head);
}

TEST(Layout, AgentHasTableLinkAndList) {
  auto const root = Pbr::checkpointStatusFactory("r");
  for (char const* name : {"a", "b"}) root->checkpointAgentStatusIs(name)->pmapCkptStatusIs("p");
  auto const laid = fields::over<Agent>(*root->checkpointAgentStatusIterator());
  EXPECT_EQ(1U, laid.pmap.count);
  EXPECT_EQ((++root->checkpointAgentStatusIterator()).member().ptr(), laid.fwkHmNext);
}

TEST(Layout, RootHasNoLink) {
  Heard heard;
  auto const root = Pbr::checkpointStatusFactory("r");
  root->checkpointAgentStatusIs("a");
  auto const reactor = listen<RootListener>(root, heard);
  auto const laid = fields::over<Root>(*root);
  EXPECT_EQ(1U, laid.agent.count);
  EXPECT_EQ(reactor.ptr(), laid.reactors.head);
}

} // namespace
