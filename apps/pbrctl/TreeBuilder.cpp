#include "pbrctl/TreeBuilder.h"

#include <set>

namespace Pbrctl {

namespace {

constexpr char const* kConfigName = "config";

Pbr::PbrActionType actionType(ForwardKind kind) {
  switch (kind) {
  case ForwardKind::nexthops:
    return Pbr::nexthopAction;
  case ForwardKind::group:
    return Pbr::nexthopGroupAction;
  case ForwardKind::drop:
    break;
  }
  return Pbr::dropAction;
}

class Builder {
public:
  Builder(ConfigAst const& from, Diagnostics& diagnostics, IdFunction id)
      : from_(from), diagnostics_(diagnostics), id_(id), to_(Pbr::configFactory(kConfigName)) {}

  Vyx::Ptr<Pbr::Config> build() {
    to_->pbrUnresolvedNexthopActionDropIs(from_.unresolvedNexthopDrop);
    to_->bgpPbrRedirectIs(from_.bgpRedirect);
    to_->pbrEnableNonAgingMacAddrIs(from_.nonAgingMac);
    for (auto const& [name, map] : from_.classMaps) buildClassMap(name, map);
    for (auto const& [name, map] : from_.policyMaps) buildPolicyMap(name, map);
    for (auto const& [name, group] : from_.groups)
      if (used_.count(name) == 0) buildGroup(name, group);
    for (auto const& [name, interface] : from_.interfaces) buildInterface(name, interface);
    return diagnostics_.ok() ? to_ : nullptr;
  }

private:
  // The identifier of an action; tells the error when another action has it.
  Kest::UniqueId claim(Place place, std::initializer_list<std::string_view> parts) {
    Kest::UniqueId const id = id_(parts);
    if (id == Kest::UniqueId() || !claimed_.insert(id).second)
      diagnostics_.error(place, std::string("the identifier ") + valueToStrep(id).charPtr() +
                                    " belongs to another action already; rename the class");
    return id;
  }

  void buildClassMap(std::string const& name, ClassMapAst const& map) {
    auto const cmap = to_->cmapType()->cmapIs(name);
    auto const content = cmap->subconfigIs(id_({"cmap", name}));
    content->dynamicIs(map.dynamic);
    for (auto const& [sequence, rule] : map.rules) content->matchIs(sequence, rule.rule);
    cmap->currentSubConfigIs(content);
  }

  void buildPolicyMap(std::string const& name, PolicyMapAst const& map) {
    auto const pmap = to_->pmapType()->pmapIs(name);
    auto const content = pmap->subconfigIs(id_({"pmap", name}));
    content->dynamicIs(map.dynamic);
    for (auto const& [className, classAst] : map.classes) {
      auto const classAction = content->classActionIs(className);
      classAction->sequenceIs(classAst.sequence);
      if (classAst.forward) buildForward(*classAction, name, className, *classAst.forward);
      if (classAst.dscp) buildDscp(*classAction, name, className, *classAst.dscp, classAst.place);
    }
    pmap->currentSubConfigIs(content);
  }

  NexthopSet const& nexthopsOf(ForwardAst const& forward) {
    if (forward.kind != ForwardKind::group) return forward.nexthops;
    auto const block = from_.groups.find(forward.group);
    bool const fromBlock = block != from_.groups.end() && !forward.ownNexthops;
    NexthopSet const& nexthops = fromBlock ? block->second.nexthops : forward.nexthops;
    if (block != from_.groups.end() && nexthops == block->second.nexthops) used_.insert(forward.group);
    return nexthops;
  }

  void buildForward(PolicyMap::ClassAction& classAction, std::string const& map, std::string const& className,
                    ForwardAst const& forward) {
    Pbr::PbrActionType const type = actionType(forward.kind);
    Kest::UniqueId const id = claim(forward.place, {"fwd", map, className, Pbr::stringValue(type).view()});
    if (!diagnostics_.ok()) return;
    auto const action = to_->pbrActions()->fwdActionIs(className, id, type);
    for (Lomu::IpGenAddr const& address : nexthopsOf(forward)) action->nexthopIs(address, true);
    action->recursiveIs(forward.recursive);
    action->nexthopGroupIs(forward.group);
    classAction.policyActionIs(action);
  }

  void buildDscp(PolicyMap::ClassAction& classAction, std::string const& map, std::string const& className,
                 unsigned dscp, Place place) {
    Kest::UniqueId const id = claim(place, {"dscp", map, className, std::to_string(dscp)});
    if (!diagnostics_.ok()) return;
    classAction.policyActionIs(
        to_->pbrActions()->dscpActionIs(className, id, Pbr::Dscp(static_cast<unsigned char>(dscp))));
  }

  void buildGroup(std::string const& name, GroupAst const& group) {
    Kest::UniqueId const id = claim(group.place, {"group", name});
    if (!diagnostics_.ok()) return;
    auto const action = to_->pbrActions()->fwdActionIs(name, id, Pbr::nexthopGroupAction);
    for (Lomu::IpGenAddr const& address : group.nexthops) action->nexthopIs(address, true);
    action->nexthopGroupIs(name);
  }

  void buildInterface(std::string const& name, InterfaceAst const& interface) {
    Lomu::IntfId const intf{Vyx::String8(name)};
    if (interface.policy) to_->pmapType()->intfIs(intf, interface.policy->name);
    if (interface.fallback) to_->pmapType()->intfFallbackIs(intf, interface.fallback->name);
  }

  ConfigAst const& from_;
  Diagnostics& diagnostics_;
  IdFunction id_;
  Vyx::Ptr<Pbr::Config> to_;
  std::set<Kest::UniqueId> claimed_;
  std::set<std::string> used_; // Groups that some class has the block's next hops of.
};

} // namespace

Kest::UniqueId groupId(std::string_view name, IdFunction id) { return id({"group", name}); }

Vyx::Ptr<Pbr::Config> buildTree(ConfigAst const& config, Diagnostics& diagnostics, IdFunction id) {
  return Builder(config, diagnostics, id).build();
}

} // namespace Pbrctl
