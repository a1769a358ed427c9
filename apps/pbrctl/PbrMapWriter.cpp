#include "pbrctl/PbrMapWriter.h"

#include "pbrctl/Diagnostics.h"
#include "pbrctl/Fields.h"
#include "pbrctl/PbrMap.h"
#include "pbrctl/Statement.h"

#include <set>

namespace Pbrctl {

namespace {

using PolicyMap::MatchRule;

class Writer {
public:
  Writer(ConfigAst const& from, std::vector<std::string>& problems) : from_(from), problems_(problems) {}

  std::string write() {
    if (from_.unresolvedNexthopDrop) problem("'unresolved-nexthop drop'");
    if (from_.bgpRedirect) problem("'bgp-redirect'");
    if (!from_.nonAgingMac) problem("'no non-aging-mac'");
    for (auto const& [name, group] : from_.groups) writeGroup(name, group);
    for (auto const& [name, map] : from_.policyMaps) writeMap(name, map);
    for (auto const& [name, interface] : from_.interfaces) writeInterface(name, interface);
    for (auto const& entry : from_.classMaps)
      if (written_.count(entry.first) == 0)
        problem("class-map " + inQuotes(entry.first) + ", which is the sequence of no policy-map");
    return text_;
  }

private:
  void problem(std::string const& what) { problems_.push_back("a pbr-map cannot say " + what); }
  void line(std::string const& text) { text_ += text + "\n"; }

  void writeGroup(std::string const& name, GroupAst const& group) {
    line("nexthop-group " + name);
    for (Lomu::IpGenAddr const& address : group.nexthops) line(" nexthop " + addressText(address));
    line("exit\n!");
  }

  // The sequences of a map: its classes, and class maps of that name pattern that are no class.
  std::set<std::uint32_t> sequencesOf(std::string const& name, PolicyMapAst const& map) {
    std::set<std::uint32_t> sequences;
    for (auto const& entry : map.order) sequences.insert(entry.first);
    std::string const prefix = name + "-";
    for (auto at = from_.classMaps.lower_bound(prefix); at != from_.classMaps.end(); ++at) {
      if (at->first.compare(0, prefix.size(), prefix) != 0) break;
      auto const number = numberOf(std::string_view(at->first).substr(prefix.size()));
      if (number && *number > 0 && at->first == pbrClassName(name, *number)) sequences.insert(*number);
    }
    return sequences;
  }

  void writeMap(std::string const& name, PolicyMapAst const& map) {
    if (map.dynamic) problem("that policy-map " + inQuotes(name) + " is dynamic");
    std::set<std::uint32_t> const sequences = sequencesOf(name, map);
    if (sequences.empty()) problem("a policy-map without classes, such as " + inQuotes(name));
    for (std::uint32_t sequence : sequences) {
      std::string const expected = pbrClassName(name, sequence);
      auto const entry = map.order.find(sequence);
      if (entry != map.order.end() && (entry->second != expected || sequence == 0)) {
        problem("class " + inQuotes(entry->second) + " of policy-map " + inQuotes(name) +
                "; its name would have to be " + inQuotes(expected));
        continue;
      }
      line("pbr-map " + name + " seq " + std::to_string(sequence));
      writeMatches(expected, sequence);
      if (entry != map.order.end()) writeSets(expected, map.classes.at(expected));
      line("exit\n!");
    }
  }

  void writeMatches(std::string const& name, std::uint32_t sequence) {
    written_.insert(name);
    auto const found = from_.classMaps.find(name);
    if (found == from_.classMaps.end()) return problem("class " + inQuotes(name) + " without its class-map");
    if (found->second.dynamic) problem("that class-map " + inQuotes(name) + " is dynamic");
    if (found->second.rules.empty()) return;
    if (found->second.rules.size() > 1 || found->second.rules.begin()->first != sequence)
      problem("the sequences of class-map " + inQuotes(name) + "; there may be one, number " +
              std::to_string(sequence));
    writeRule(name, found->second.rules.begin()->second.rule);
  }

  void writeRule(std::string const& name, MatchRule const& rule) {
    if (rule == MatchRule()) problem("'match ip any any' of class-map " + inQuotes(name));
    if (!rule.acl().empty()) problem("'match access-list' of class-map " + inQuotes(name));
    if (!rule.source().isAny()) line(" match src-ip " + prefixText(rule.source()));
    if (!rule.destination().isAny()) line(" match dst-ip " + prefixText(rule.destination()));
    if (rule.protocol() != MatchRule::kAnyProtocol) {
      std::string const protocol = protocolText(rule.protocol());
      if (numberOf(protocol))
        problem("protocol " + protocol + " of class-map " + inQuotes(name) + " by a name");
      line(" match ip-protocol " + protocol);
    }
    writePort(name, " match src-port ", rule.sourcePort());
    writePort(name, " match dst-port ", rule.destinationPort());
    if (rule.dscp() != MatchRule::kAnyDscp) line(" match dscp " + std::to_string(rule.dscp()));
  }

  void writePort(std::string const& name, char const* statement, PolicyMap::PortRange const& ports) {
    if (ports.isAny()) return;
    if (ports.low() != ports.high() || ports.low() == 0)
      problem("the ports " + portsText(ports) + " of class-map " + inQuotes(name));
    line(statement + portsText(ports));
  }

  void writeSets(std::string const& name, ClassAst const& classAst) {
    if (!classAst.forward && !classAst.dscp) problem("class " + inQuotes(name) + " without an action");
    if (classAst.dscp) line(" set dscp " + std::to_string(*classAst.dscp));
    if (!classAst.forward) return;
    ForwardAst const& forward = *classAst.forward;
    if (forward.recursive) problem("'recursive' of class " + inQuotes(name));
    if (forward.ownNexthops)
      problem("the next hops that class " + inQuotes(name) + " has for its group alone");
    if (forward.kind == ForwardKind::drop) {
      line(" set nexthop blackhole");
    } else if (forward.kind == ForwardKind::group) {
      line(" set nexthop-group " + forward.group);
    } else if (forward.nexthops.size() != 1) {
      problem(std::to_string(forward.nexthops.size()) + " next hops of class " + inQuotes(name) +
              " without a group");
    } else {
      line(" set nexthop " + addressText(*forward.nexthops.begin()));
    }
  }

  void writeInterface(std::string const& name, InterfaceAst const& interface) {
    if (interface.fallback) problem("the fallback policy of interface " + inQuotes(name));
    if (!interface.policy) return;
    line("interface " + name);
    line(" pbr-policy " + interface.policy->name);
    line("exit\n!");
  }

  ConfigAst const& from_;
  std::vector<std::string>& problems_;
  std::string text_ = "! policy-based routing\n!\n";
  std::set<std::string> written_; // Class maps that stand in some sequence.
};

} // namespace

std::string pbrMapText(ConfigAst const& config, std::vector<std::string>& problems) {
  return Writer(config, problems).write();
}

} // namespace Pbrctl
