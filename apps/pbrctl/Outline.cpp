#include "pbrctl/Outline.h"

#include "pbrctl/Fields.h"

namespace Pbrctl {

namespace {

using Nodes = std::vector<OutlineNode>;

void addLine(Nodes& to, std::string key, std::string text) {
  to.push_back({std::move(key), std::move(text), {}});
}
// A statement that is there or not.
void addLine(Nodes& to, std::string const& text) { addLine(to, text, text); }

Nodes& addBlock(Nodes& to, std::string const& text) {
  to.push_back({text, text, {}});
  return to.back().children;
}

void addSwitches(Nodes& to, ConfigAst const& config) {
  if (config.unresolvedNexthopDrop) addLine(to, "unresolved-nexthop drop");
  if (config.bgpRedirect) addLine(to, "bgp-redirect");
  if (!config.nonAgingMac) addLine(to, "no non-aging-mac");
}

void addClassMap(Nodes& to, std::string const& name, ClassMapAst const& map) {
  Nodes& lines = addBlock(to, "class-map " + name);
  if (map.dynamic) addLine(lines, "dynamic");
  for (auto const& [sequence, rule] : map.rules) {
    std::string const number = std::to_string(sequence);
    addLine(lines, "match " + number, number + " match " + valueToStrep(rule.rule).charPtr());
  }
}

std::string nexthopsText(NexthopSet const& nexthops) {
  if (nexthops.empty()) return " none";
  std::string text;
  for (Lomu::IpGenAddr const& address : nexthops) (text += ' ') += addressText(address);
  return text;
}

std::string forwardText(ForwardAst const& forward) {
  std::string text;
  switch (forward.kind) {
  case ForwardKind::drop:
    return "drop";
  case ForwardKind::nexthops:
    text = "set nexthop" + nexthopsText(forward.nexthops);
    break;
  case ForwardKind::group:
    text = "set nexthop-group " + forward.group;
    if (forward.ownNexthops) text += " nexthop" + nexthopsText(forward.nexthops);
    break;
  }
  return forward.recursive ? text + " recursive" : text;
}

void addPolicyMap(Nodes& to, std::string const& name, PolicyMapAst const& map) {
  Nodes& lines = addBlock(to, "policy-map " + name);
  if (map.dynamic) addLine(lines, "dynamic");
  for (auto const& [sequence, className] : map.order) {
    ClassAst const& classAst = map.classes.at(className);
    std::string const statement = "class " + className;
    lines.push_back({statement, std::to_string(sequence) + " " + statement, {}});
    Nodes& actions = lines.back().children;
    if (classAst.forward) addLine(actions, "forward", forwardText(*classAst.forward));
    if (classAst.dscp) addLine(actions, "dscp", "set dscp " + dscpText(*classAst.dscp));
  }
}

void addInterface(Nodes& to, std::string const& name, InterfaceAst const& interface) {
  if (!interface.policy && !interface.fallback) return;
  Nodes& lines = addBlock(to, "interface " + name);
  if (interface.policy) addLine(lines, "policy", "policy " + interface.policy->name);
  if (interface.fallback) addLine(lines, "fallback", "policy fallback " + interface.fallback->name);
}

} // namespace

std::vector<OutlineNode> outlineOf(ConfigAst const& config) {
  Nodes outline;
  addSwitches(outline, config);
  for (auto const& [name, map] : config.classMaps) addClassMap(outline, name, map);
  for (auto const& [name, group] : config.groups) {
    Nodes& lines = addBlock(outline, "nexthop-group " + name);
    for (Lomu::IpGenAddr const& address : group.nexthops) addLine(lines, "nexthop " + addressText(address));
  }
  for (auto const& [name, map] : config.policyMaps) addPolicyMap(outline, name, map);
  for (auto const& [name, interface] : config.interfaces) addInterface(outline, name, interface);
  return outline;
}

} // namespace Pbrctl
