// One and the same configuration in three forms: n policy maps with two class actions each, n class maps with
// two rules each, 2n actions with two next hops and the name of a group each.

#pragma once

#include "Pbr/Pbr.h"
#include "policy.pb.h"

#include <array>
#include <compare>
#include <cstdint>
#include <map>
#include <string>

namespace Bench {

// What is written by hand where nobody needs to be told of changes.
namespace plain {

using Id = std::uint64_t;

struct Address {
  std::uint32_t family;
  std::array<unsigned char, 16> bytes;
  auto operator<=>(Address const&) const = default;
};
struct Prefix {
  Address address;
  std::uint32_t length;
  bool operator==(Prefix const&) const = default;
};
struct Ports {
  std::uint16_t low = 0;
  std::uint16_t high = 0xffff;
  bool operator==(Ports const&) const = default;
};
struct Rule {
  std::string acl;
  Prefix source;
  Prefix destination;
  Ports sourcePorts;
  Ports destinationPorts;
  std::uint16_t protocol;
  std::uint8_t dscp;
  bool operator==(Rule const&) const = default;
};
struct ClassMap {
  Id id;
  bool dynamic;
  std::map<unsigned, Rule> rules;
  bool operator==(ClassMap const&) const = default;
};
struct ClassAction {
  unsigned sequence;
  std::map<int, Id> actions;
  bool operator==(ClassAction const&) const = default;
};
struct PolicyMap {
  Id id;
  bool dynamic;
  std::map<std::string, ClassAction> classActions;
  bool operator==(PolicyMap const&) const = default;
};
struct Action {
  std::string className;
  int type;
  std::map<Address, bool> nexthops;
  bool recursive;
  std::string nexthopGroup;
  bool operator==(Action const&) const = default;
};
struct Configuration {
  std::map<std::string, ClassMap> classMaps;
  std::map<std::string, PolicyMap> policyMaps;
  std::map<Id, Action> actions;
  bool operator==(Configuration const&) const = default;
};

} // namespace plain

Vyx::Ptr<Pbr::Config> modelOf(std::uint32_t n);
plain::Configuration plainOf(std::uint32_t n);
bench_pb::Configuration messageOf(std::uint32_t n);

// The identifier of an action: `which` is 0 or 1 in the policy map of that number.
Kest::UniqueId actionId(std::uint32_t policyMap, std::uint32_t which);

} // namespace Bench
