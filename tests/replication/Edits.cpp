#include "Edits.h"

#include "Vyx/EntityStrep.h"
#include "support/TreeText.h"

namespace replication_test {

using Vyx::Name;
using Vyx::Ptr;

Trees newTrees() {
  return {Pbr::configFactory("pbr"), Pbr::statusFactory("pbr"), Pbr::checkpointStatusFactory("pbr")};
}

namespace {

// References print as ways from the root, so that those of two trees compare.
std::string textOf(char const* name, Ptr<Vyx::Entity> const& root) {
  if (!root) return std::string(name) + " is not there\n";
  Vyx::entityRootIs(name, root);
  std::string const text = support::treeText(*root);
  Vyx::entityRootIs(name, nullptr);
  return name + text;
}

} // namespace

std::string textOf(Trees const& trees) {
  std::string text = textOf("config", trees.config) + textOf("status", trees.status) +
                     textOf("checkpoint", trees.checkpoint);
  if (!trees.status) return text;
  std::map<Kest::UniqueId, std::string> shared;
  for (auto at = trees.status->pbrClassMapStatusIteratorConst(); at; ++at)
    if (auto const to = at.member()->nexthopIndexAndL2AdjKey()) shared[at.key()] = support::treeText(*to);
  for (auto const& [id, one] : shared) text += "shared: " + one;
  return text;
}

Edits::Edits(Random& random, Trees const& trees) : random_(random), trees_(trees) {}

Name Edits::name() { return Name(std::string(1, static_cast<char>('a' + random_.below(5)))); }

Lomu::IpGenAddr Edits::address() {
  std::string const last = std::to_string(random_.below(8));
  return Lomu::IpGenAddr(toss() ? ("10.0.0." + last).c_str() : ("2001:db8::" + last).c_str());
}

Lomu::IntfId Edits::interface() { return Lomu::IntfId("Ethernet" + std::to_string(random_.below(5))); }

// Some are longer than one piece.
Vyx::String8 Edits::text() {
  std::size_t const length = random_.oneIn(8) ? random_.below(9000) : random_.below(12);
  return Vyx::String8(std::string(length, static_cast<char>('a' + random_.below(26))));
}

void Edits::one() {
  switch (random_.below(8)) {
  case 0:
  case 1:
    return editActions();
  case 2:
    return editClassMaps();
  case 3:
  case 4:
    return editPolicyMaps();
  case 5:
    return editStatus();
  case 6:
    return editCheckpoint();
  default:
    return editConfig();
  }
}

void Edits::editConfig() {
  auto& config = *trees_.config;
  switch (random_.below(24)) {
  case 0:
    config.pmapTypeDel();
    return;
  case 1:
    config.cmapTypeDel();
    return;
  case 2:
    config.pbrActionsDel();
    return;
  case 3:
    config.pbrEnableNonAgingMacAddrIs(toss());
    return;
  case 4:
    config.bgpPbrRedirectIs(toss());
    return;
  case 5:
    if (config.pmapType()) config.pmapType()->intfFallbackIs(interface(), name());
    return;
  case 6:
    if (config.pmapType()) config.pmapType()->intfFallbackDel(interface());
    return;
  default:
    config.pbrUnresolvedNexthopActionDropIs(toss());
  }
}

void Edits::editActions() {
  auto const actions = trees_.config->pbrActionsIs("Pbr");
  auto const id = this->id();
  switch (random_.below(8)) {
  case 0:
    actions->fwdActionDel(id);
    return;
  case 1:
    actions->dscpActionDel(id);
    return;
  case 2:
    if (!actions->dscpAction(id))
      actions->dscpActionIs(name(), id, Pbr::Dscp(static_cast<unsigned char>(random_.below(64))));
    return;
  case 3:
    if (!actions->fwdAction(id)) actions->fwdActionIs(name(), id, oneOf<Pbr::PbrActionType>(4));
    return;
  default:
    break;
  }
  auto const action = actions->fwdAction(id);
  if (!action) return;
  switch (random_.below(4)) {
  case 0:
    action->nexthopDel(address());
    return;
  case 1:
    action->recursiveIs(toss());
    return;
  case 2:
    action->nexthopGroupIs(name());
    return;
  default:
    action->nexthopIs(address(), toss());
  }
}

void Edits::editClassMaps() {
  auto const maps = trees_.config->cmapTypeIs("Pbr");
  if (random_.oneIn(10))
    maps->cmapDel(name());
  else
    editClassMap(maps->cmapIs(name()));
}

void Edits::editClassMap(Ptr<PolicyMap::ClassMapConfig> const& map) {
  auto const id = this->id();
  if (random_.oneIn(10)) {
    map->subconfigDel(id);
    return;
  }
  auto const sub = map->subconfigIs(id);
  switch (random_.below(4)) {
  case 0:
    return map->currentSubConfigIs(toss() ? map->subconfig(this->id()) : sub);
  case 1:
    return sub->dynamicIs(toss());
  case 2:
    sub->matchDel(random_.below(20));
    return;
  default:
    PolicyMap::MatchRule rule;
    rule.aclIs(name());
    sub->matchIs(random_.below(20), rule);
  }
}

void Edits::editPolicyMaps() {
  auto const maps = trees_.config->pmapTypeIs("Pbr", PolicyMap::mapPbr);
  switch (random_.below(12)) {
  case 0:
    maps->pmapDel(name());
    return;
  case 1:
    maps->intfDel(interface());
    return;
  case 2:
    return maps->intfIs(interface(), name());
  default:
    break;
  }
  auto const map = maps->pmapIs(name());
  auto const id = this->id();
  switch (random_.below(10)) {
  case 0:
    map->subconfigDel(id);
    return;
  case 1:
    return map->currentSubConfigIs(map->subconfig(id));
  default:
    editSubConfig(map->subconfigIs(id));
  }
}

void Edits::editSubConfig(Ptr<PolicyMap::PolicyMapSubConfig> const& sub) {
  if (random_.oneIn(8)) {
    sub->classActionDel(name());
    return;
  }
  auto const action = sub->classActionIs(name());
  auto const actions = trees_.config->pbrActions();
  switch (random_.below(4)) {
  case 0:
    return action->sequenceIs(random_.below(100));
  case 1:
    action->policyActionDel(toss() ? PolicyMap::actionPbrForward : PolicyMap::actionPbrSetDscp);
    return;
  default:
    break;
  }
  if (!actions) return;
  if (auto const forward = actions->fwdAction(id())) action->policyActionIs(forward);
  if (auto const mark = actions->dscpAction(id())) action->policyActionIs(mark);
}

void Edits::dropDangling() {
  auto const dropCurrent = [](auto& map) {
    if (map.currentSubConfig() && !map.currentSubConfig()->parent()) map.currentSubConfigIs(nullptr);
  };
  auto const dropActions = [](PolicyMap::ClassAction& of) {
    for (auto type : {PolicyMap::actionPbrForward, PolicyMap::actionPbrSetDscp})
      if (auto const action = of.policyAction(type);
          action && (!action->parent() || !action->parent()->parent()))
        of.policyActionDel(type);
  };
  if (auto const maps = trees_.config->cmapType())
    for (auto map = maps->cmapIterator(); map; ++map) dropCurrent(*map.member());
  auto const maps = trees_.config->pmapType();
  if (!maps) return;
  for (auto map = maps->pmapIterator(); map; ++map) {
    dropCurrent(*map.member());
    for (auto sub = map.member()->subconfigIterator(); sub; ++sub)
      for (auto action = sub.member()->classActionIterator(); action; ++action) dropActions(*action.member());
  }
}

void Edits::editStatus() {
  auto& status = *trees_.status;
  switch (random_.below(10)) {
  case 0:
    return status.typeIs(oneOf<PolicyMap::MapType>(3));
  case 1:
    return status.countersPerRuleIs(toss());
  case 2:
    return status.intfDisallowedIs({interface(), oneOf<PolicyMap::IntfError>(4)}, text());
  case 3:
    status.intfDisallowedDel({interface(), oneOf<PolicyMap::IntfError>(4)});
    return;
  case 4:
    return status.resultIs(id(), oneOf<PolicyMap::ApplyState>(4));
  case 5:
    return editPolicyMapStatus();
  default:
    return editClassMapStatus();
  }
}

void Edits::editPolicyMapStatus() {
  if (random_.oneIn(8)) {
    trees_.status->statusDel(name());
    return;
  }
  auto const map = trees_.status->statusIs(name());
  map->stateIs(oneOf<PolicyMap::ApplyState>(4));
  if (toss()) map->messageIs(text());
  if (toss()) map->intfIs(interface(), toss());
  if (toss()) map->intfDel(interface());
}

void Edits::editClassMapStatus() {
  auto const id = this->id();
  if (random_.oneIn(8)) {
    trees_.status->pbrClassMapStatusDel(id);
    return;
  }
  auto map = trees_.status->pbrClassMapStatus(id);
  if (!map) map = trees_.status->pbrClassMapStatusIs(name(), id);
  switch (random_.below(6)) {
  case 0:
    return map->actionTypeIs(oneOf<Pbr::PbrActionType>(4));
  case 1:
    return map->nexthopGroupIs(text());
  case 2:
    map->matchIs(oneOf<PolicyMap::ClassMapMatchOption>(3))->rulesIs(random_.bits());
    return;
  case 3:
    return map->nexthopIndexAndL2AdjKeyIs(nullptr);
  default:
    break;
  }
  auto& shared = shared_[random_.below(static_cast<std::uint32_t>(shared_.size()))];
  editNexthops(shared);
  map->nexthopIndexAndL2AdjKeyIs(shared);
}

// Now and then another one takes its place, and the old one goes when nothing refers to it any more.
void Edits::editNexthops(Ptr<Pbr::NexthopIndexAndL2AdjKey>& shared) {
  if (!shared || random_.oneIn(6)) {
    Pbr::NexthopSet set(++sets_, L3::VrfName("default"));
    set.nexthopIs(address(), true);
    shared = Pbr::nexthopIndexAndL2AdjKeyFactory(set);
  }
  if (toss()) shared->l2AdjKeyIs(random_.bits());
  if (toss()) shared->viasUsedIs(address(), toss());
  if (toss()) shared->viasUsedDel(address());
}

void Edits::editCheckpoint() {
  auto& root = *trees_.checkpoint;
  if (random_.oneIn(12)) {
    root.checkpointAgentStatusDel(name());
    return;
  }
  auto const agent = root.checkpointAgentStatusIs(name());
  if (random_.oneIn(10)) {
    agent->pmapCkptStatusDel(name());
    return;
  }
  auto const map = agent->pmapCkptStatusIs(name());
  if (random_.oneIn(6)) map->ckptTimestampIs(random_.below(10) / 2.0);
  editClassMapCheckpoint(map->cmapCkptStatusIs(name()));
}

void Edits::editClassMapCheckpoint(Ptr<Pbr::ClassMapCheckpointStatus> const& map) {
  if (toss()) return map->pktMatchIs(random_.bits());
  auto const type = map->aclTypeCkptStatusIs(oneOf<Acl::AclType>(3));
  if (random_.oneIn(8)) {
    type->aclDel(name());
    return;
  }
  auto const acl = type->aclIs(name());
  Acl::UniqueId const rule(random_.below(8), 1, 1);
  if (random_.oneIn(4))
    acl->ruleStatusDel(rule);
  else
    acl->ruleStatusIs(rule, {0, random_.below(4)});
  if (random_.oneIn(6)) acl->timestampIs(random_.below(10));
}

} // namespace replication_test
