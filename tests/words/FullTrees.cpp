#include "FullTrees.h"

namespace words_test {

namespace {

using Vyx::Ptr;

constexpr unsigned kMany = 40; // So that a table grows and its order shows.

Kest::UniqueId const kVoice(1, 2, 3), kWeb(0xfffffffe, 0xffff, 0x8000), kMail(0x80000000, 0, 1);
Lomu::IpGenAddr const kFirst("10.0.0.1"), kSecond("255.255.255.254"), kThird("2001:db8::ffff:1");

Lomu::IntfId interface(unsigned number) {
  return Lomu::IntfId(Vyx::String8("Ethernet" + std::to_string(number)));
}

Pbr::NexthopSet setOf(unsigned recursive, char const* vrf, std::initializer_list<Lomu::IpGenAddr> addresses) {
  Pbr::NexthopSet set(recursive, L3::VrfName(vrf));
  for (Lomu::IpGenAddr const& address : addresses) set.nexthopIs(address, address.family() == 4);
  return set;
}

// The hardware knows it by an index.
Ptr<Pbr::NexthopIndexAndL2AdjKey> indexed() {
  auto const nexthops = Pbr::nexthopIndexAndL2AdjKeyFactory(setOf(1, "blue", {kFirst, kSecond, kThird}));
  nexthops->nexthopIndexIs(0x100000001);
  nexthops->nexthopIndexPublishCounterIs(0xffffffff);
  nexthops->nexthopIndexDelCounterIs(0x80000000);
  nexthops->viasUsedIs(kFirst, true);
  nexthops->viasUsedIs(kThird, false);
  return nexthops;
}

// By an adjacency key.
Ptr<Pbr::NexthopIndexAndL2AdjKey> adjacent() {
  auto const nexthops = Pbr::nexthopIndexAndL2AdjKeyFactory(setOf(0, "default", {kThird}));
  nexthops->l2AdjKeyIs(0xfedcba9876543210);
  return nexthops;
}

// By both.
Ptr<Pbr::NexthopIndexAndL2AdjKey> known() {
  auto const nexthops = Pbr::nexthopIndexAndL2AdjKeyFactory(setOf(0xffffffff, "", {kSecond}));
  nexthops->nexthopIndexIs(0x7fffffffffffffff);
  nexthops->l2AdjKeyIs(0xffffffff);
  return nexthops;
}

// By neither, and it has no address.
Ptr<Pbr::NexthopIndexAndL2AdjKey> unknown() {
  return Pbr::nexthopIndexAndL2AdjKeyFactory(setOf(0, "nowhere", {}));
}

void addClassMap(Pbr::Status& status, char const* name, Kest::UniqueId const& id,
                 Ptr<Pbr::NexthopIndexAndL2AdjKey> const& nexthops) {
  auto const map = status.pbrClassMapStatusIs(name, id);
  map->actionTypeIs(nexthops ? Pbr::nexthopGroupAction : Pbr::dropAction);
  map->nexthopGroupIs(Vyx::String8(std::string("group of ") + name));
  map->nexthopIndexAndL2AdjKeyIs(nexthops);
  map->ruleStatusIs(PolicyMap::applyFailed);
  for (auto option :
       {PolicyMap::matchIpAccessGroup, PolicyMap::matchIpv6AccessGroup, PolicyMap::matchMacAccessGroup}) {
    map->matchIs(option)->rulesIs(0x80000000 + static_cast<unsigned>(option));
    map->match(option)->stateIs(PolicyMap::applying);
  }
}

Ptr<Pbr::ClassMapCheckpointStatus> classMap(Pbr::CheckpointStatus& checkpoint) {
  return checkpoint.checkpointAgentStatusIs("agent")->pmapCkptStatusIs("edge")->cmapCkptStatusIs("web");
}

void addAcl(Pbr::ClassMapCheckpointStatus& map, Acl::AclType type, char const* name, double timestamp) {
  auto const acl = map.aclTypeCkptStatusIs(type)->aclIs(name);
  acl->timestampIs(timestamp);
  acl->versionIs(Acl::UniqueId(0xffffffff, 0x8000, 7));
  for (unsigned i = 0; i < kMany; ++i)
    acl->ruleStatusIs(Acl::UniqueId(i * 0x01234567, 1, 2), {0xffffffff - i, 0x80000000 + i});
}

} // namespace

Ptr<Pbr::Status> fullStatus() {
  auto const status = Pbr::statusFactory("pbr");
  auto const shared = indexed();
  addClassMap(*status, "voice", kVoice, shared);
  addClassMap(*status, "web", kWeb, shared);
  addClassMap(*status, "mail", kMail, adjacent());
  addClassMap(*status, "news", Kest::UniqueId(4, 5, 6), known());
  addClassMap(*status, "talk", Kest::UniqueId(7, 8, 9), unknown());
  addClassMap(*status, "junk", Kest::UniqueId(), nullptr);
  status->typeIs(PolicyMap::mapQos);
  status->countersPerRuleIs(true);
  status->initializedIs(true);
  auto const edge = status->statusIs("edge");
  edge->stateIs(PolicyMap::applied);
  edge->messageIs(Vyx::String8("\xc3\xbc" + std::string(3000, 'm'))); // In several pieces.
  for (unsigned i = 0; i < kMany; ++i) {
    edge->intfIs(interface(i), i % 2 == 0);
    status->intfDisallowedIs({interface(i), PolicyMap::intfNoResources}, "no room");
    status->resultIs(Kest::UniqueId(i * 0x01234567, 1, 2), PolicyMap::applying);
  }
  status->classMapStatusIs("generic", kWeb)->ruleStatusIs(PolicyMap::applied);
  status->classMapStatus(kWeb)->matchIs(PolicyMap::matchMacAccessGroup)->rulesIs(1);
  return status;
}

Ptr<Pbr::CheckpointStatus> fullCheckpoint() {
  auto const checkpoint = Pbr::checkpointStatusFactory("pbr");
  auto const map = classMap(*checkpoint);
  map->pktMatchIs(0xfedcba9876543210);
  map->versionIs(kWeb);
  addAcl(*map, Acl::ip, "four", 1700000000.25);
  addAcl(*map, Acl::ipv6, "six", -1e300);
  addAcl(*map, Acl::mac, "address", 5e-324);
  checkpoint->checkpointAgentStatus("agent")->pmapCkptStatus("edge")->ckptTimestampIs(0.1);
  checkpoint->checkpointAgentStatusIs("empty");
  return checkpoint;
}

void change(Pbr::Status& status) {
  auto const voice = status.pbrClassMapStatus(kVoice);
  voice->nexthopIndexAndL2AdjKeyIs(status.pbrClassMapStatus(kMail)->nexthopIndexAndL2AdjKey());
  status.pbrClassMapStatus(kMail)->nexthopIndexAndL2AdjKeyIs(nullptr);
  voice->nexthopGroupIs("");
  voice->matchDel(PolicyMap::matchIpAccessGroup);
  status.pbrClassMapStatusDel(kWeb);
  status.statusIs("edge")->intfDel(interface(3));
  status.intfDisallowedIs({interface(5), PolicyMap::intfNoResources}, "less room");
  status.resultDel(Kest::UniqueId(7 * 0x01234567u, 1, 2));
  status.initializedIs(false);
  status.statusIs("last");
}

void change(Pbr::CheckpointStatus& checkpoint) {
  auto const map = classMap(checkpoint);
  map->pktMatchIs(0x8000000000000000);
  map->aclTypeCkptStatusDel(Acl::mac);
  auto const acl = map->aclTypeCkptStatus(Acl::ip)->acl("four");
  acl->timestampIs(1e-300);
  acl->ruleStatusDel(Acl::UniqueId(3 * 0x01234567u, 1, 2));
  acl->ruleStatusIs(Acl::UniqueId(4 * 0x01234567u, 1, 2), {1, 0});
  checkpoint.checkpointAgentStatusDel("empty");
  checkpoint.checkpointAgentStatusIs("last");
}

} // namespace words_test
