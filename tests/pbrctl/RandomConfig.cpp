#include "RandomConfig.h"

#include <algorithm>

namespace Pbrctl {

namespace {

// What names may hold beside letters and digits.
constexpr char const* kOddities[] = {"", "-", ".", "]", "\"", "\\", "{", "\xc3\xbc", "no", "'", "%2f"};

} // namespace

std::string RandomConfig::name(char const* kind, std::uint32_t most) {
  std::uint32_t const number = random_.below(most);
  return std::string(kind) + kOddities[number % std::size(kOddities)] + std::to_string(number);
}

Lomu::IpGenAddr RandomConfig::address() { return prefix(random_.oneIn(2) ? 4 : 6).address(); }

Lomu::IpGenPrefix RandomConfig::prefix(unsigned family) {
  unsigned char bytes[Lomu::Ip6Addr::kBytes] = {};
  unsigned const length = 1 + random_.below(family == 4 ? 32 : 128);
  for (unsigned bit = 0; bit < length; ++bit)
    if (random_.oneIn(2)) bytes[bit / 8] |= static_cast<unsigned char>(0x80u >> bit % 8);
  return Lomu::IpGenPrefix(Lomu::IpGenAddr(family, Lomu::Ip6Addr(bytes)), length);
}

NexthopSet RandomConfig::nexthops() {
  NexthopSet set;
  for (std::uint32_t left = random_.below(4); left != 0; --left) set.insert(address());
  return set;
}

PolicyMap::PortRange RandomConfig::ports() {
  auto const a = static_cast<std::uint16_t>(random_.bits());
  auto const b = static_cast<std::uint16_t>(random_.oneIn(2) ? a : random_.bits());
  return {std::min(a, b), std::max(a, b)};
}

PolicyMap::MatchRule RandomConfig::rule() {
  PolicyMap::MatchRule rule;
  if (random_.oneIn(5)) {
    rule.aclIs(name("acl", 9));
    return rule;
  }
  unsigned const family = random_.oneIn(2) ? 4 : 6;
  if (random_.oneIn(2)) rule.sourceIs(prefix(family));
  if (random_.oneIn(2)) rule.destinationIs(prefix(family));
  if (random_.oneIn(3)) rule.dscpIs(random_.below(64));
  if (random_.oneIn(3)) rule.protocolIs(random_.below(256));
  if (random_.oneIn(3)) {
    rule.protocolIs(random_.oneIn(2) ? 6 : 17);
    if (random_.oneIn(2)) rule.sourcePortIs(ports());
    rule.destinationPortIs(ports());
  }
  return rule;
}

ForwardAst RandomConfig::forward() {
  ForwardAst forward;
  switch (random_.below(3)) {
  case 0:
    return forward;
  case 1:
    forward.kind = ForwardKind::nexthops;
    break;
  default:
    forward.kind = ForwardKind::group;
    forward.group = name("group", 4);
    forward.ownNexthops = random_.oneIn(4);
  }
  forward.recursive = random_.oneIn(2);
  if (forward.kind == ForwardKind::nexthops || forward.ownNexthops) forward.nexthops = nexthops();
  return forward;
}

ClassMapAst RandomConfig::classMap() {
  ClassMapAst map;
  map.dynamic = random_.oneIn(4);
  for (std::uint32_t left = random_.below(4); left != 0; --left) map.rules[random_.bits()].rule = rule();
  return map;
}

PolicyMapAst RandomConfig::policyMap(ConfigAst const& config) {
  PolicyMapAst map;
  map.dynamic = random_.oneIn(4);
  for (auto const& entry : config.classMaps) {
    std::uint32_t const sequence = random_.below(1000);
    if (random_.oneIn(2) || map.order.count(sequence) != 0) continue;
    ClassAst& made = map.classIs(entry.first, sequence, {});
    if (!random_.oneIn(4)) made.forward = forward();
    if (random_.oneIn(3)) made.dscp = random_.below(64);
  }
  return map;
}

ConfigAst RandomConfig::make() {
  ConfigAst config;
  config.unresolvedNexthopDrop = random_.oneIn(2);
  config.bgpRedirect = random_.oneIn(2);
  config.nonAgingMac = random_.oneIn(2);
  for (std::uint32_t left = random_.below(8); left != 0; --left)
    config.classMaps[name("class", 30)] = classMap();
  for (std::uint32_t left = random_.below(4); left != 0; --left)
    config.groups[name("group", 4)].nexthops = nexthops();
  for (std::uint32_t left = random_.below(5); left != 0; --left)
    config.policyMaps[name("policy", 30)] = policyMap(config);
  for (auto const& entry : config.policyMaps) {
    if (random_.oneIn(2)) config.interfaces[name("eth", 4)].policy = NamedPolicy{entry.first, {}};
    if (random_.oneIn(3)) config.interfaces[name("eth", 4)].fallback = NamedPolicy{entry.first, {}};
  }
  return config;
}

} // namespace Pbrctl
