#include "RandomTree.h"

namespace {

constexpr std::uint32_t kMaps = 5;
constexpr std::uint32_t kClasses = 4;
constexpr char const* kRules[] = {"ip any any", "ip 10.0.0.0/8 any protocol tcp destination-port 80",
                                  "ip 2001:db8::/32 any dscp ef", "access-list web-in"};
constexpr char const* kNexthops[] = {"10.0.0.1", "10.0.0.2", "192.0.2.7", "2001:db8::1"};

std::string named(char const* kind, std::uint32_t number) { return kind + std::to_string(number); }

// A number tells map, class, kind and what is fixed in the action: no two actions that differ in that share
// one, and no two maps. Forwarding actions are below kFirstDscp.
constexpr std::uint32_t kFirstDscp = 1000;
std::uint32_t forwardNumber(std::uint32_t map, std::uint32_t in, std::uint32_t type) {
  return 1 + (map * kClasses + in) * 4 + type;
}
std::uint32_t dscpNumber(std::uint32_t map, std::uint32_t in, std::uint32_t dscp) {
  return kFirstDscp + (map * kClasses + in) * 64 + dscp;
}

class Generator {
public:
  explicit Generator(Random& random) : random_(random) {}

  ConfigPlan plan() {
    ConfigPlan plan;
    for (bool& value : plan.switches) value = random_.oneIn(2);
    for (std::uint32_t map = 0; map < kMaps; ++map) {
      if (!random_.oneIn(3))
        plan.classMaps[named("c", map)] = versions<ClassMapVersion>([&] { return rules(); });
      if (!random_.oneIn(3))
        plan.policyMaps[named("p", map)] = versions<PolicyMapVersion>([&] { return classes(map); });
    }
    for (auto& bindings : plan.bindings)
      for (std::uint32_t intf = 0; intf < 6; ++intf)
        if (!random_.oneIn(3)) bindings[named("et", intf)] = named("p", random_.below(kMaps + 1));
    eachClass(plan, [&](ClassPlan const& of) {
      if (of.forward) plan.actions[of.forward] = action();
    });
    return plan;
  }

  template <class Visit> static void eachClass(ConfigPlan const& plan, Visit const& visit) {
    for (auto const& [map, of] : plan.policyMaps)
      for (auto const& [number, version] : of.versions)
        for (auto const& [name, in] : version.classes) visit(in);
  }

private:
  // One to three versions, of which one may be the current one.
  template <class Version, class Make> MapPlan<Version> versions(Make const& make) {
    MapPlan<Version> map;
    for (std::uint32_t left = 1 + random_.below(3); left != 0; --left) {
      std::uint32_t const number = 1 + random_.below(3);
      map.versions[number] = make();
      map.versions[number].dynamic = random_.oneIn(3);
      if (!random_.oneIn(4)) map.current = number;
    }
    return map;
  }
  ClassMapVersion rules() {
    ClassMapVersion version;
    for (std::uint32_t left = random_.below(4); left != 0; --left)
      version.rules[10 * random_.below(5)] = kRules[random_.below(std::size(kRules))];
    return version;
  }
  PolicyMapVersion classes(std::uint32_t map) {
    PolicyMapVersion version;
    for (std::uint32_t in = 0; in < kClasses; ++in) {
      if (random_.oneIn(3)) continue;
      ClassPlan& plan = version.classes[named("c", in)];
      plan.sequence = random_.below(3);
      if (!random_.oneIn(3)) plan.forward = forwardNumber(map, in, random_.below(4));
      if (random_.oneIn(2)) plan.setDscp = dscpNumber(map, in, random_.below(3));
    }
    return version;
  }
  ActionPlan action() {
    ActionPlan plan;
    plan.recursive = random_.oneIn(2);
    if (random_.oneIn(2)) plan.group = "exit";
    for (char const* nexthop : kNexthops)
      if (random_.oneIn(3)) plan.nexthops[nexthop] = random_.oneIn(2);
    return plan;
  }

  Random& random_;
};

class Builder {
public:
  explicit Builder(ConfigPlan const& plan) : plan_(plan) {}

  ConfigPtr build() {
    config_->pbrUnresolvedNexthopActionDropIs(plan_.switches[0]);
    config_->bgpPbrRedirectIs(plan_.switches[1]);
    config_->pbrEnableNonAgingMacAddrIs(plan_.switches[2]);
    for (auto const& [name, map] : plan_.classMaps) fill(*config_->cmapType()->cmapIs(name), map);
    for (auto const& [name, map] : plan_.policyMaps) fill(*config_->pmapType()->pmapIs(name), map);
    for (auto const& [intf, policy] : plan_.bindings[0])
      config_->pmapType()->intfIs(Vyx::String8(intf), policy);
    for (auto const& [intf, policy] : plan_.bindings[1])
      config_->pmapType()->intfFallbackIs(Vyx::String8(intf), policy);
    return config_;
  }

private:
  template <class Map, class Version> void fill(Map& to, MapPlan<Version> const& map) {
    for (auto const& [number, version] : map.versions) {
      auto const content = to.subconfigIs(idOf(number));
      content->dynamicIs(version.dynamic);
      fill(*content, version);
    }
    if (map.current) to.currentSubConfigIs(to.subconfig(idOf(map.current)));
  }
  void fill(PolicyMap::ClassMapSubConfig& to, ClassMapVersion const& version) {
    for (auto const& [sequence, rule] : version.rules)
      to.matchIs(sequence, Vyx::strepToValue<PolicyMap::MatchRule>(rule));
  }
  void fill(PolicyMap::PolicyMapSubConfig& to, PolicyMapVersion const& version) {
    for (auto const& [name, plan] : version.classes) {
      to.classActionIs(name)->sequenceIs(plan.sequence);
      if (plan.forward) forward(to, name, plan.forward);
      if (plan.setDscp)
        addSetDscp(*config_, to, name, plan.setDscp,
                   static_cast<unsigned char>((plan.setDscp - kFirstDscp) % 64));
    }
  }
  void forward(PolicyMap::PolicyMapSubConfig& to, std::string const& className, std::uint32_t number) {
    ActionPlan const& plan = plan_.actions.at(number);
    auto const type = static_cast<Pbr::PbrActionType>((number - 1) % 4);
    auto const action = addForward(*config_, to, className, number, {}, type);
    action->recursiveIs(plan.recursive);
    action->nexthopGroupIs(plan.group);
    for (auto const& [nexthop, value] : plan.nexthops) action->nexthopIs(Vyx::String8(nexthop), value);
  }

  ConfigPlan const& plan_;
  ConfigPtr config_ = Pbr::configFactory("config");
};

// What only the destination has and what is dynamic there stays.
template <class Maps> void keepDynamic(Maps& into, Maps const& dest) {
  for (auto const& [name, map] : dest)
    if (map.dynamic()) into.insert({name, map});
}

// Takes each entry of the other map, or drops the own one, one time in four.
template <class Map> void mixIn(Random& random, Map& into, Map const& other) {
  Map both = into;
  both.insert(other.begin(), other.end());
  for (auto const& [key, unused] : both) {
    if (!random.oneIn(4)) continue;
    into.erase(key);
    if (auto const found = other.find(key); found != other.end()) into.insert(*found);
  }
}

} // namespace

ConfigPlan randomPlan(Random& random) { return Generator(random).plan(); }

ConfigPlan changedPlan(Random& random, ConfigPlan plan) {
  ConfigPlan const other = randomPlan(random);
  if (random.oneIn(4)) plan.switches[random.below(3)] ^= true;
  mixIn(random, plan.classMaps, other.classMaps);
  mixIn(random, plan.policyMaps, other.policyMaps);
  for (auto& [name, map] : plan.policyMaps)
    if (auto const found = other.policyMaps.find(name); found != other.policyMaps.end())
      for (auto& [number, version] : map.versions)
        if (auto const same = found->second.versions.find(number); same != found->second.versions.end())
          mixIn(random, version.classes, same->second.classes);
  for (int i : {0, 1}) mixIn(random, plan.bindings[i], other.bindings[i]);
  ConfigPlan const before = plan;
  mixIn(random, plan.actions, other.actions);
  for (auto const* actions : {&before.actions, &other.actions})
    plan.actions.insert(actions->begin(), actions->end());
  return plan;
}

ConfigPtr built(ConfigPlan const& plan) { return Builder(plan).build(); }

ConfigPlan copiedPlan(ConfigPlan const& src, ConfigPlan const& dest) {
  ConfigPlan result = src;
  keepDynamic(result.classMaps, dest.classMaps);
  keepDynamic(result.policyMaps, dest.policyMaps);
  for (int i : {0, 1})
    for (auto const& [intf, policy] : dest.bindings[i]) {
      auto const map = dest.policyMaps.find(policy);
      if (map != dest.policyMaps.end() && map->second.dynamic()) result.bindings[i].insert({intf, policy});
    }
  for (auto const& [name, map] : result.policyMaps) {
    if (src.policyMaps.count(name)) continue;
    for (auto const& [number, version] : map.versions)
      for (auto const& [className, plan] : version.classes)
        if (plan.forward) result.actions[plan.forward] = dest.actions.at(plan.forward);
  }
  return result;
}
