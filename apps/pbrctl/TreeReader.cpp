#include "pbrctl/TreeReader.h"

#include "pbrctl/Diagnostics.h"
#include "pbrctl/SourceText.h"
#include "pbrctl/TreeBuilder.h"

#include <algorithm>

namespace Pbrctl {

namespace {

class Reader {
public:
  Reader(Pbr::Config const& from, std::vector<std::string>& problems) : from_(from), problems_(problems) {}

  ConfigAst read() {
    to_.unresolvedNexthopDrop = from_.pbrUnresolvedNexthopActionDrop();
    to_.bgpRedirect = from_.bgpPbrRedirect();
    to_.nonAgingMac = from_.pbrEnableNonAgingMacAddr();
    if (auto const cmapType = from_.cmapType())
      for (auto it = cmapType->cmapIteratorConst(); it; ++it) readClassMap(*it);
    if (auto const pmapType = from_.pmapType()) {
      for (auto it = pmapType->pmapIteratorConst(); it; ++it) readPolicyMap(*it);
      for (auto it = pmapType->intfIteratorConst(); it; ++it)
        to_.interfaces[nameOf(it.key().stringValue())].policy = NamedPolicy{nameOf(it.value()), {}};
      for (auto it = pmapType->intfFallbackIteratorConst(); it; ++it)
        to_.interfaces[nameOf(it.key().stringValue())].fallback = NamedPolicy{nameOf(it.value()), {}};
    }
    readGroups();
    return std::move(to_);
  }

private:
  void problem(std::string text) { problems_.push_back(std::move(text)); }

  std::string nameOf(Vyx::StringN<unsigned char> const& name) {
    std::string text(name.view());
    if (auto const why = nameProblem(text)) problem(*why);
    return text;
  }

  // The one version of a map's content that a file can say. RETURNS null when there is none.
  template <class Map> auto contentOf(Map const& map, char const* what, std::string const& name) {
    auto const content = map.currentSubConfig();
    if (map.subconfigs() != (content ? 1u : 0u))
      problem(std::string(what) + " " + inQuotes(name) + " holds versions that are not the current one");
    if (!content) problem(std::string(what) + " " + inQuotes(name) + " has no current version");
    return content;
  }

  void readClassMap(PolicyMap::ClassMapConfig const& map) {
    std::string const name = nameOf(map.name());
    ClassMapAst& ast = to_.classMaps[name];
    auto const content = contentOf(map, "class-map", name);
    if (!content) return;
    ast.dynamic = content->dynamic();
    for (auto it = content->matchIteratorConst(); it; ++it) {
      if (!it.value().valid()) problem("class-map " + inQuotes(name) + ": " + it.value().fault().charPtr());
      if (!it.value().acl().empty()) nameOf(it.value().acl());
      ast.rules.emplace(it.key(), RuleAst{it.value(), {}});
    }
  }

  void readPolicyMap(PolicyMap::PolicyMapConfig const& map) {
    std::string const name = nameOf(map.name());
    PolicyMapAst& ast = to_.policyMaps[name];
    auto const content = contentOf(map, "policy-map", name);
    if (!content) return;
    ast.dynamic = content->dynamic();
    for (auto it = content->classActionIteratorConst(); it; ++it) readClass(name, ast, *it);
  }

  void readClass(std::string const& map, PolicyMapAst& ast, PolicyMap::ClassAction const& from) {
    std::string const name = nameOf(from.name());
    std::string const where = "class " + inQuotes(name) + " of policy-map " + inQuotes(map);
    auto const taken = ast.order.find(from.sequence());
    if (taken != ast.order.end())
      return problem(where + " has the sequence number " + std::to_string(from.sequence()) + " of class " +
                     inQuotes(taken->second));
    ClassAst& classAst = ast.classIs(name, from.sequence(), {});
    auto const forward = dynamicCast<Pbr::PbrFwdAction>(from.policyAction(PolicyMap::actionPbrForward));
    auto const dscp = dynamicCast<Pbr::PbrActionSetDscp>(from.policyAction(PolicyMap::actionPbrSetDscp));
    if (from.policyActions() != (forward ? 1u : 0u) + (dscp ? 1u : 0u))
      problem(where + " holds an action that is neither forwarding nor marking");
    if (forward) readForward(where, classAst, *forward);
    if (!dscp) return;
    classAst.dscp = dscp->dscp().value();
    if (*classAst.dscp > Pbr::Dscp::max) problem(where + " sets an invalid code point");
  }

  template <class To, class From> static Vyx::Ptr<To const> dynamicCast(From const& action) {
    return Vyx::Ptr<To const>(dynamic_cast<To const*>(action.ptr()));
  }

  NexthopSet nexthopsOf(std::string const& where, Pbr::PbrFwdAction const& action) {
    NexthopSet nexthops;
    for (auto it = action.nexthopIteratorConst(); it; ++it) {
      if (!it.value()) problem(where + " holds a next hop with the value false");
      if (it.key().family() == 0) problem(where + " holds a next hop without an address");
      nexthops.insert(it.key());
    }
    return nexthops;
  }

  void readForward(std::string const& where, ClassAst& classAst, Pbr::PbrFwdAction const& action) {
    ForwardAst forward;
    forward.nexthops = nexthopsOf(where, action);
    forward.recursive = action.recursive();
    if (!action.nexthopGroup().empty()) forward.group = nameOf(action.nexthopGroup());
    switch (action.fwdActionType()) {
    case Pbr::dropAction:
      forward.kind = ForwardKind::drop;
      break;
    case Pbr::nexthopAction:
      forward.kind = ForwardKind::nexthops;
      break;
    case Pbr::nexthopGroupAction:
      forward.kind = ForwardKind::group;
      break;
    default:
      return problem(where + " holds a forwarding action of no kind");
    }
    if ((forward.kind == ForwardKind::group) == forward.group.empty())
      problem(where + (forward.group.empty() ? " names no group" : " names a group that it does not use"));
    if (forward.kind == ForwardKind::drop && (!forward.nexthops.empty() || forward.recursive))
      problem(where + " drops and has next hops");
    classAst.forward = std::move(forward);
    if (classAst.forward->kind == ForwardKind::group)
      users_[classAst.forward->group].push_back(&*classAst.forward);
  }

  // The block of a group that no class has its next hops from stands in the container under its own
  // identifier.
  void readGroups() {
    if (auto const actions = from_.pbrActions())
      for (auto it = actions->fwdActionIteratorConst(); it; ++it)
        if (it->fwdActionType() == Pbr::nexthopGroupAction && it->id() == groupId(it->className().view())) {
          std::string const name = nameOf(it->className());
          to_.groups[name].nexthops = nexthopsOf("nexthop-group " + inQuotes(name), *it);
        }
    for (auto const& [name, users] : users_) readUsers(name, users);
  }

  void readUsers(std::string const& name, std::vector<ForwardAst*> const& users) {
    NexthopSet const& first = users.front()->nexthops;
    bool const agree = std::all_of(users.begin(), users.end(), [&](auto* u) { return u->nexthops == first; });
    if (to_.groups.count(name) == 0 && agree && !first.empty()) to_.groups[name].nexthops = first;
    auto const block = to_.groups.find(name);
    for (ForwardAst* const user : users) {
      user->ownNexthops =
          block == to_.groups.end() ? !user->nexthops.empty() : user->nexthops != block->second.nexthops;
      if (!user->ownNexthops) user->nexthops.clear();
    }
  }

  Pbr::Config const& from_;
  std::vector<std::string>& problems_;
  ConfigAst to_;
  std::map<std::string, std::vector<ForwardAst*>> users_; // By group.
};

} // namespace

ConfigAst readTree(Pbr::Config const& config, std::vector<std::string>& problems) {
  return Reader(config, problems).read();
}

} // namespace Pbrctl
