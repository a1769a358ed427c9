#include "pbrctl/JsonWriter.h"

#include "pbrctl/Fields.h"
#include "pbrctl/JsonReader.h"

#include <ostream>

namespace Pbrctl {

namespace {

using nlohmann::json;

// A number where the word is one, else the name.
json numberOrName(std::string const& word) {
  bool const number = word.find_first_not_of("0123456789") == std::string::npos;
  return number ? json(std::stoul(word)) : json(word);
}

json ruleJson(std::uint32_t sequence, PolicyMap::MatchRule const& rule) {
  json out = {{"sequence", sequence}};
  if (!rule.acl().empty()) out["accessList"] = rule.acl().charPtr();
  if (!rule.source().isAny()) out["source"] = prefixText(rule.source());
  if (!rule.destination().isAny()) out["destination"] = prefixText(rule.destination());
  if (rule.protocol() != PolicyMap::MatchRule::kAnyProtocol)
    out["protocol"] = numberOrName(protocolText(rule.protocol()));
  if (!rule.sourcePort().isAny()) out["sourcePort"] = numberOrName(portsText(rule.sourcePort()));
  if (!rule.destinationPort().isAny())
    out["destinationPort"] = numberOrName(portsText(rule.destinationPort()));
  if (rule.dscp() != PolicyMap::MatchRule::kAnyDscp) out["dscp"] = rule.dscp();
  return out;
}

json nexthopsJson(NexthopSet const& nexthops) {
  json out = json::array();
  for (Lomu::IpGenAddr const& address : nexthops) out.push_back(addressText(address));
  return out;
}

json classMapJson(std::string const& name, ClassMapAst const& map) {
  json out = {{"name", name}, {"rules", json::array()}};
  if (map.dynamic) out["dynamic"] = true;
  for (auto const& [sequence, rule] : map.rules) out["rules"].push_back(ruleJson(sequence, rule.rule));
  return out;
}

json classJson(std::string const& name, ClassAst const& classAst) {
  json out = {{"name", name}, {"sequence", classAst.sequence}};
  if (classAst.dscp) out["setDscp"] = *classAst.dscp;
  if (!classAst.forward) return out;
  ForwardAst const& forward = *classAst.forward;
  if (forward.kind == ForwardKind::drop) out["drop"] = true;
  if (forward.kind == ForwardKind::group) out["nexthopGroup"] = forward.group;
  if (forward.kind == ForwardKind::nexthops || forward.ownNexthops)
    out["nexthops"] = nexthopsJson(forward.nexthops);
  if (forward.recursive) out["recursive"] = true;
  return out;
}

json policyMapJson(std::string const& name, PolicyMapAst const& map) {
  json out = {{"name", name}, {"classes", json::array()}};
  if (map.dynamic) out["dynamic"] = true;
  for (auto const& entry : map.order)
    out["classes"].push_back(classJson(entry.second, map.classes.at(entry.second)));
  return out;
}

json interfaceJson(std::string const& name, InterfaceAst const& interface) {
  json out = {{"name", name}};
  if (interface.policy) out["policy"] = interface.policy->name;
  if (interface.fallback) out["fallback"] = interface.fallback->name;
  return out;
}

} // namespace

json jsonOf(ConfigAst const& config) {
  json out = {{"version", kJsonVersion},           {"unresolvedNexthopDrop", config.unresolvedNexthopDrop},
              {"bgpRedirect", config.bgpRedirect}, {"nonAgingMac", config.nonAgingMac},
              {"classMaps", json::array()},        {"policyMaps", json::array()},
              {"nexthopGroups", json::array()},    {"interfaces", json::array()}};
  for (auto const& [name, map] : config.classMaps) out["classMaps"].push_back(classMapJson(name, map));
  for (auto const& [name, map] : config.policyMaps) out["policyMaps"].push_back(policyMapJson(name, map));
  for (auto const& [name, group] : config.groups)
    out["nexthopGroups"].push_back({{"name", name}, {"nexthops", nexthopsJson(group.nexthops)}});
  for (auto const& [name, interface] : config.interfaces)
    if (interface.policy || interface.fallback) out["interfaces"].push_back(interfaceJson(name, interface));
  return out;
}

void writeJson(ConfigAst const& config, std::ostream& out) { writeDocument(jsonOf(config), out); }

void writeDocument(json const& document, std::ostream& out) { out << document.dump(2) << '\n'; }

} // namespace Pbrctl
