#include "Configurations.h"

#include <cstdio>
#include <cstring>

namespace Bench {

namespace {

constexpr std::uint16_t kHttps = 443;
constexpr unsigned kTcp = 6;

std::string numbered(char const* prefix, std::uint32_t i) {
  char text[32];
  std::snprintf(text, sizeof text, "%s-%05u", prefix, i);
  return text;
}

std::string className(std::uint32_t i) { return numbered("class", i); }
std::string policyName(std::uint32_t i) { return numbered("policy", i); }
std::string groupName(std::uint32_t i) { return numbered("group", i % 100); }

Kest::UniqueId mapId(std::uint32_t i, std::uint16_t kind) { return {i * 2654435761U, kind, 0}; }

plain::Id word(Kest::UniqueId const& id) {
  plain::Id bits;
  std::memcpy(&bits, &id, sizeof bits);
  return bits;
}

// Ten networks of addresses.
Lomu::IpGenAddr address(std::uint32_t network, std::uint32_t host) {
  unsigned char const bytes[Lomu::Ip6Addr::kBytes] = {10, static_cast<unsigned char>(network),
                                                      static_cast<unsigned char>(host >> 8),
                                                      static_cast<unsigned char>(host)};
  return {4, Lomu::Ip6Addr(bytes)};
}

std::string bytesOf(Lomu::IpGenAddr const& a) { return {reinterpret_cast<char const*>(a.bytes()), 4}; }

plain::Address plainOf(Lomu::IpGenAddr const& a) {
  plain::Address same{a.family(), {}};
  std::memcpy(same.bytes.data(), a.bytes(), same.bytes.size());
  return same;
}

// What differs between one rule and another, one action and another.
Lomu::IpGenAddr ruleSource(std::uint32_t i, unsigned which) { return address(which, i); }
Lomu::IpGenAddr ruleDestination(std::uint32_t i, unsigned which) { return address(2 + which, i); }
Lomu::IpGenAddr nexthop(std::uint32_t i, unsigned which, unsigned hop) {
  return address(4 + 2 * which + hop, i);
}
// The class of a policy map's first or second class action.
std::uint32_t classOf(std::uint32_t i, unsigned which, std::uint32_t n) { return (i + which) % n; }

constexpr unsigned sequence(unsigned which) { return 10 * (which + 1); }

} // namespace

Kest::UniqueId actionId(std::uint32_t policyMap, std::uint32_t which) {
  return mapId(2 * policyMap + which, 3);
}

Vyx::Ptr<Pbr::Config> modelOf(std::uint32_t n) {
  auto const config = Pbr::configFactory("bench");
  for (std::uint32_t i = 0; i < n; ++i) {
    auto const cmap = config->cmapType()->cmapIs(className(i));
    auto const content = cmap->subconfigIs(mapId(i, 1));
    for (unsigned which : {0, 1}) {
      PolicyMap::MatchRule rule;
      rule.sourceIs(Lomu::IpGenPrefix(ruleSource(i, which), 32));
      rule.destinationIs(Lomu::IpGenPrefix(ruleDestination(i, which), 32));
      rule.protocolIs(kTcp);
      rule.destinationPortIs(PolicyMap::PortRange(kHttps, kHttps));
      content->matchIs(sequence(which), rule);
    }
    cmap->currentSubConfigIs(content);
  }
  for (std::uint32_t i = 0; i < n; ++i) {
    auto const pmap = config->pmapType()->pmapIs(policyName(i));
    auto const content = pmap->subconfigIs(mapId(i, 2));
    Vyx::Name const group = groupName(i);
    for (unsigned which : {0, 1}) {
      Vyx::Name const name = className(classOf(i, which, n));
      auto const action = config->pbrActions()->fwdActionIs(name, actionId(i, which), Pbr::nexthopAction);
      for (unsigned hop : {0, 1}) action->nexthopIs(nexthop(i, which, hop), true);
      action->nexthopGroupIs(group);
      auto const classAction = content->classActionIs(name);
      classAction->sequenceIs(sequence(which));
      classAction->policyActionIs(action);
    }
    pmap->currentSubConfigIs(content);
  }
  return config;
}

plain::Configuration plainOf(std::uint32_t n) {
  plain::Configuration config;
  for (std::uint32_t i = 0; i < n; ++i) {
    plain::ClassMap& cmap = config.classMaps[className(i)];
    cmap.id = word(mapId(i, 1));
    cmap.dynamic = false;
    plain::PolicyMap& pmap = config.policyMaps[policyName(i)];
    pmap.id = word(mapId(i, 2));
    pmap.dynamic = false;
    for (unsigned which : {0, 1}) {
      cmap.rules[sequence(which)] = {{},
                                     {plainOf(ruleSource(i, which)), 32},
                                     {plainOf(ruleDestination(i, which)), 32},
                                     {},
                                     {kHttps, kHttps},
                                     kTcp,
                                     64};
      std::string const name = className(classOf(i, which, n));
      plain::Id const id = word(actionId(i, which));
      plain::Action action{name, Pbr::nexthopAction, {}, false, groupName(i)};
      for (unsigned hop : {0, 1}) action.nexthops[plainOf(nexthop(i, which, hop))] = true;
      config.actions[id] = std::move(action);
      pmap.classActions[name] = {sequence(which), {{PolicyMap::actionPbrForward, id}}};
    }
  }
  return config;
}

bench_pb::Configuration messageOf(std::uint32_t n) {
  bench_pb::Configuration config;
  for (std::uint32_t i = 0; i < n; ++i) {
    auto& cmap = *config.add_class_map();
    cmap.set_name(className(i));
    cmap.set_id(word(mapId(i, 1)));
    auto& pmap = *config.add_policy_map();
    pmap.set_name(policyName(i));
    pmap.set_id(word(mapId(i, 2)));
    for (unsigned which : {0, 1}) {
      auto& rule = *cmap.add_rule();
      rule.set_sequence(sequence(which));
      rule.set_source(bytesOf(ruleSource(i, which)));
      rule.set_source_length(32);
      rule.set_destination(bytesOf(ruleDestination(i, which)));
      rule.set_destination_length(32);
      rule.set_protocol(kTcp);
      rule.set_source_port_high(0xffff);
      rule.set_destination_port_low(kHttps);
      rule.set_destination_port_high(kHttps);
      rule.set_dscp(64);
      std::string const name = className(classOf(i, which, n));
      auto& action = *config.add_action();
      action.set_id(word(actionId(i, which)));
      action.set_class_name(name);
      action.set_type(Pbr::nexthopAction);
      for (unsigned hop : {0, 1}) {
        auto& to = *action.add_nexthop();
        to.set_address(bytesOf(nexthop(i, which, hop)));
        to.set_usable(true);
      }
      action.set_nexthop_group(groupName(i));
      auto& classAction = *pmap.add_class_action();
      classAction.set_name(name);
      classAction.set_sequence(sequence(which));
      auto& reference = *classAction.add_action();
      reference.set_type(PolicyMap::actionPbrForward);
      reference.set_action(word(actionId(i, which)));
    }
  }
  return config;
}

} // namespace Bench
