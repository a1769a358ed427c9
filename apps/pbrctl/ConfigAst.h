// What a configuration file says, whatever its form: the one structure between all readers, all writers and
// the tree. Everything is kept sorted, so that equal content is written alike.

#pragma once

#include "Lomu/IpGenAddr.h"
#include "PolicyMap/MatchRule.h"
#include "pbrctl/Place.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace Pbrctl {

using NexthopSet = std::set<Lomu::IpGenAddr>;

struct RuleAst {
  PolicyMap::MatchRule rule;
  Place place;

  bool operator==(RuleAst const& o) const { return rule == o.rule; }
};

struct ClassMapAst {
  bool dynamic = false;
  std::map<std::uint32_t, RuleAst> rules; // By sequence.
  Place place;

  bool operator==(ClassMapAst const&) const = default;
};

enum class ForwardKind { drop, nexthops, group };

// Where a class sends its packets. A group that is named without next hops of its own has those of the file's
// group block of that name, if there is one.
struct ForwardAst {
  ForwardKind kind = ForwardKind::drop;
  NexthopSet nexthops;
  bool ownNexthops = false; // Only of a group: it has `nexthops` instead of the block's.
  bool recursive = false;
  std::string group;
  Place place;

  bool operator==(ForwardAst const&) const = default;
};

struct ClassAst {
  std::uint32_t sequence = 0;
  std::optional<ForwardAst> forward;
  std::optional<unsigned> dscp;
  Place place;

  bool operator==(ClassAst const&) const = default;
};

// Invariant: `order` holds the sequence of each member of `classes`, and no other.
struct PolicyMapAst {
  bool dynamic = false;
  std::map<std::string, ClassAst, std::less<>> classes;
  std::map<std::uint32_t, std::string> order;
  Place place;

  bool operator==(PolicyMapAst const&) const = default;

  // REQUIRES: neither the name nor the sequence is taken.
  ClassAst& classIs(std::string const& name, std::uint32_t sequence, Place where) {
    order.emplace(sequence, name);
    ClassAst& made = classes[name];
    made.sequence = sequence;
    made.place = where;
    return made;
  }
  // REQUIRES: the class is there.
  void classDel(std::string const& name) {
    auto const found = classes.find(name);
    order.erase(found->second.sequence);
    classes.erase(found);
  }
};

struct GroupAst {
  NexthopSet nexthops;
  Place place;

  bool operator==(GroupAst const&) const = default;
};

struct NamedPolicy {
  std::string name;
  Place place;

  bool operator==(NamedPolicy const&) const = default;
};

struct InterfaceAst {
  std::optional<NamedPolicy> policy;
  std::optional<NamedPolicy> fallback;

  bool operator==(InterfaceAst const&) const = default;
};

struct ConfigAst {
  bool unresolvedNexthopDrop = false;
  bool bgpRedirect = false;
  bool nonAgingMac = true;
  std::map<std::string, ClassMapAst> classMaps;
  std::map<std::string, PolicyMapAst> policyMaps;
  std::map<std::string, GroupAst> groups;
  std::map<std::string, InterfaceAst> interfaces;

  bool operator==(ConfigAst const&) const = default;
};

} // namespace Pbrctl
