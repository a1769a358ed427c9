#include "ConfigTree.h"

#include "support/Invariants.h"

#include <set>
#include <sstream>

namespace {

using Pbr::Config;
using PolicyMap::ClassAction;

template <class Map> auto currentContent(Map& map, std::uint32_t version) {
  auto const content = map.subconfigIs(idOf(version));
  map.currentSubConfigIs(content);
  return content;
}

// Calls visit(place, class action) for every class action.
template <class Visit> void eachClassAction(Config const& config, Visit const& visit) {
  for (auto pmap = config.pmapType()->pmapIteratorConst(); pmap; ++pmap)
    for (auto sub = pmap->subconfigIteratorConst(); sub; ++sub)
      for (auto at = sub->classActionIteratorConst(); at; ++at) {
        std::ostringstream place;
        place << pmap->name() << ' ' << sub->id() << ' ' << at->name();
        visit(place.str(), *at);
      }
}

class Writer {
public:
  explicit Writer(std::ostream& out) : out_(out) {}

  void config(Config const& of) {
    out_ << "switches " << of.pbrUnresolvedNexthopActionDrop() << of.bgpPbrRedirect()
         << of.pbrEnableNonAgingMacAddr() << '\n';
    for (auto at = of.cmapType()->cmapIteratorConst(); at; ++at) map("class-map", *at);
    for (auto at = of.pmapType()->pmapIteratorConst(); at; ++at) map("policy-map", *at);
    for (auto at = of.pmapType()->intfIteratorConst(); at; ++at)
      out_ << "policy " << at.key() << ' ' << at.value() << '\n';
    for (auto at = of.pmapType()->intfFallbackIteratorConst(); at; ++at)
      out_ << "fallback " << at.key() << ' ' << at.value() << '\n';
  }

private:
  template <class Map> void map(char const* kind, Map const& of) {
    out_ << kind << ' ' << of.name();
    if (of.currentSubConfig()) out_ << " current " << of.currentSubConfig()->id();
    out_ << '\n';
    for (auto at = of.subconfigIteratorConst(); at; ++at) {
      out_ << "  version " << at->id() << (at->dynamic() ? " dynamic\n" : "\n");
      content(*at);
    }
  }
  void content(PolicyMap::ClassMapSubConfig const& of) {
    for (auto at = of.matchIteratorConst(); at; ++at) out_ << "    " << at.key() << ' ' << at.value() << '\n';
  }
  void content(PolicyMap::PolicyMapSubConfig const& of) {
    for (auto at = of.classActionIteratorConst(); at; ++at) {
      out_ << "    class " << at->name() << " sequence " << at->sequence() << '\n';
      for (auto action = at->policyActionIteratorConst(); action; ++action) this->action(*action.value());
    }
  }
  void action(PolicyMap::Action const& of) {
    out_ << "      action " << of.id() << " of " << of.className();
    if (auto const* forward = dynamic_cast<Pbr::PbrFwdAction const*>(&of)) {
      out_ << ' ' << forward->fwdActionType() << (forward->recursive() ? " recursive" : "") << " group "
           << forward->nexthopGroup();
      for (auto at = forward->nexthopIteratorConst(); at; ++at) out_ << ' ' << at.key() << '=' << at.value();
    } else if (auto const* setDscp = dynamic_cast<Pbr::PbrActionSetDscp const*>(&of)) {
      out_ << " dscp " << setDscp->dscp();
    }
    out_ << '\n';
  }

  std::ostream& out_;
};

class Faults {
public:
  explicit Faults(Config const& of) : of_(of), faults_(invariantFaults(of)) {
    for (auto at = of.cmapType()->cmapIteratorConst(); at; ++at) current(*at);
    for (auto at = of.pmapType()->pmapIteratorConst(); at; ++at) current(*at);
    eachClassAction(of, [this](std::string const& place, ClassAction const& at) { actions(place, at); });
  }
  std::vector<std::string> const& all() const { return faults_; }

private:
  template <class Map> void current(Map const& of) {
    auto const content = of.currentSubConfig();
    if (content && of.subconfig(content->id()) != content)
      faults_.push_back(std::string(of.name().view()) + " has a current version that isn't its own");
  }
  void actions(std::string const& place, ClassAction const& of) {
    for (auto at = of.policyActionIteratorConst(); at; ++at) {
      if (at.value()->type() != at.key()) faults_.push_back(place + " holds an action under another type");
      Vyx::Ptr<PolicyMap::Action> const owned =
          at.key() == PolicyMap::actionPbrForward
              ? Vyx::Ptr<PolicyMap::Action>(of_.pbrActions()->fwdAction(at.value()->id()))
              : Vyx::Ptr<PolicyMap::Action>(of_.pbrActions()->dscpAction(at.value()->id()));
      if (owned != at.value()) faults_.push_back(place + " names an action that isn't the container's");
    }
  }

  Config const& of_;
  std::vector<std::string> faults_;
};

} // namespace

ClassContent addClassMap(Config& to, Vyx::Name const& name, std::uint32_t version) {
  return currentContent(*to.cmapType()->cmapIs(name), version);
}

PolicyContent addPolicyMap(Config& to, Vyx::Name const& name, std::uint32_t version) {
  return currentContent(*to.pmapType()->pmapIs(name), version);
}

void addRules(PolicyMap::ClassMapSubConfig& to, std::vector<char const*> const& rules) {
  for (unsigned i = 0; i < rules.size(); ++i)
    to.matchIs(10 * (i + 1), Vyx::strepToValue<PolicyMap::MatchRule>(rules[i]));
}

Vyx::Ptr<Pbr::PbrFwdAction> addForward(Config& in, PolicyMap::PolicyMapSubConfig& to,
                                       Vyx::Name const& className, std::uint32_t id,
                                       std::vector<char const*> const& nexthops, Pbr::PbrActionType type) {
  auto const action = in.pbrActions()->fwdActionIs(className, idOf(id), type);
  for (char const* nexthop : nexthops) action->nexthopIs(nexthop, true);
  to.classActionIs(className)->policyActionIs(action);
  return action;
}

Vyx::Ptr<Pbr::PbrActionSetDscp> addSetDscp(Config& in, PolicyMap::PolicyMapSubConfig& to,
                                           Vyx::Name const& className, std::uint32_t id, unsigned char dscp) {
  auto const action = in.pbrActions()->dscpActionIs(className, idOf(id), dscp);
  to.classActionIs(className)->policyActionIs(action);
  return action;
}

std::string contentOf(Config const& config) {
  std::ostringstream out;
  Writer(out).config(config);
  return out.str();
}

std::vector<std::string> configFaults(Config const& config) { return Faults(config).all(); }

std::vector<std::string> strayActions(Config const& config) {
  std::set<Vyx::Entity const*> named;
  eachClassAction(config, [&](std::string const&, ClassAction const& of) {
    for (auto at = of.policyActionIteratorConst(); at; ++at) named.insert(at.value().ptr());
  });
  std::vector<std::string> strays;
  auto const unlessNamed = [&](auto at) {
    for (; at; ++at)
      if (!named.count(&*at)) strays.push_back(valueToStrep(at->id()).charPtr());
  };
  unlessNamed(config.pbrActions()->fwdActionIteratorConst());
  unlessNamed(config.pbrActions()->dscpActionIteratorConst());
  return strays;
}
