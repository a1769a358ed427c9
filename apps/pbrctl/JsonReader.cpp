#include "pbrctl/JsonReader.h"

#include "pbrctl/JsonCursor.h"

namespace Pbrctl {

namespace {

// Enters what an object of an array is about under its name. RETURNS null when the name is missing, wrong or
// taken.
template <class Thing>
Thing* named(JsonObject& object, JsonCursor const& at, std::map<std::string, Thing>& things) {
  auto const member = object.required("name");
  auto const name = member ? member->name() : std::nullopt;
  if (!name) return nullptr;
  auto const [found, fresh] = things.try_emplace(*name);
  if (!fresh) {
    member->error("duplicate name " + inQuotes(*name));
    return nullptr;
  }
  Thing& thing = found->second;
  if constexpr (requires { thing.place; }) thing.place = at.place();
  return &thing;
}

NexthopSet readNexthops(JsonCursor const& list) {
  NexthopSet nexthops;
  for (JsonCursor const& item : list.items())
    if (auto const address = item.field(readAddress))
      if (!nexthops.insert(*address).second) item.error("duplicate next hop " + inQuotes(item.value().text));
  return nexthops;
}

void readCriteria(JsonObject& object, PolicyMap::MatchRule& rule) {
  if (auto const at = object.member("source"))
    if (auto const prefix = at->field(readPrefix)) rule.sourceIs(*prefix);
  if (auto const at = object.member("destination"))
    if (auto const prefix = at->field(readPrefix)) rule.destinationIs(*prefix);
  if (auto const at = object.member("protocol"))
    if (auto const protocol = at->field(readProtocol, true)) rule.protocolIs(*protocol);
  if (auto const at = object.member("sourcePort"))
    if (auto const ports = at->field(readPorts, true)) rule.sourcePortIs(*ports);
  if (auto const at = object.member("destinationPort"))
    if (auto const ports = at->field(readPorts, true)) rule.destinationPortIs(*ports);
  if (auto const at = object.member("dscp"))
    if (auto const dscp = at->field(readDscp, true)) rule.dscpIs(*dscp);
  if (auto const at = object.member("accessList"))
    if (auto const name = at->name()) rule.aclIs(*name);
}

void readRule(JsonCursor const& at, ClassMapAst& map) {
  JsonObject object(at);
  RuleAst rule;
  rule.place = at.place();
  auto const sequence = object.required("sequence");
  readCriteria(object, rule.rule);
  object.refuseOthers();
  if (!rule.rule.valid()) at.error(rule.rule.fault().charPtr());
  auto const number = sequence ? sequence->number() : std::nullopt;
  if (number && !map.rules.emplace(*number, rule).second)
    sequence->error("duplicate sequence number " + std::to_string(*number));
}

void readClassMap(JsonCursor const& at, ConfigAst& config) {
  JsonObject object(at);
  ClassMapAst spare;
  ClassMapAst* const found = named(object, at, config.classMaps);
  ClassMapAst& map = found ? *found : spare;
  object.boolean("dynamic", map.dynamic);
  for (JsonCursor const& rule : object.array("rules")) readRule(rule, map);
  object.refuseOthers();
}

// A class forwards to next hops, to a group, or nowhere: one of the three members says which.
std::optional<ForwardAst> readForward(JsonObject& object, JsonCursor const& at) {
  ForwardAst forward;
  forward.place = at.place();
  bool drop = false;
  object.boolean("drop", drop);
  object.boolean("recursive", forward.recursive);
  auto const group = object.member("nexthopGroup");
  auto const nexthops = object.member("nexthops");
  if (nexthops) forward.nexthops = readNexthops(*nexthops);
  if (drop && (group || nexthops || forward.recursive)) at.error("a class that drops forwards nowhere");
  if (forward.recursive && !group && !nexthops) at.error("'recursive' needs next hops or a group");
  if (group) {
    forward.kind = ForwardKind::group;
    forward.ownNexthops = nexthops.has_value();
    if (auto const name = group->name()) forward.group = *name;
  } else if (nexthops) {
    forward.kind = ForwardKind::nexthops;
  } else if (!drop) {
    return std::nullopt;
  }
  return forward;
}

// Enters the class; what is wrong with its name or number is told already when one is missing.
void enterClass(JsonCursor const& nameAt, JsonCursor const& sequenceAt, ClassAst read, PolicyMapAst& map) {
  auto const name = nameAt.name();
  auto const sequence = sequenceAt.number();
  if (!name || !sequence) return;
  read.sequence = *sequence;
  if (map.classes.count(*name) != 0) return nameAt.error("duplicate class " + inQuotes(*name));
  auto const taken = map.order.find(read.sequence);
  if (taken != map.order.end())
    return sequenceAt.error("duplicate sequence number " + std::to_string(read.sequence) + ": class " +
                            inQuotes(taken->second) + " has it");
  map.classIs(*name, read.sequence, read.place) = read;
}

void readClass(JsonCursor const& at, PolicyMapAst& map) {
  JsonObject object(at);
  auto const name = object.required("name");
  auto const sequence = object.required("sequence");
  ClassAst read;
  read.place = at.place();
  read.forward = readForward(object, at);
  if (auto const dscp = object.member("setDscp")) read.dscp = dscp->field(readDscp, true);
  object.refuseOthers();
  if (name && sequence) enterClass(*name, *sequence, std::move(read), map);
}

void readPolicyMap(JsonCursor const& at, ConfigAst& config) {
  JsonObject object(at);
  PolicyMapAst spare;
  PolicyMapAst* const found = named(object, at, config.policyMaps);
  PolicyMapAst& map = found ? *found : spare;
  object.boolean("dynamic", map.dynamic);
  for (JsonCursor const& item : object.array("classes")) readClass(item, map);
  object.refuseOthers();
}

void readGroup(JsonCursor const& at, ConfigAst& config) {
  JsonObject object(at);
  GroupAst* const group = named(object, at, config.groups);
  auto const list = object.member("nexthops");
  NexthopSet nexthops = list ? readNexthops(*list) : NexthopSet();
  if (group) group->nexthops = std::move(nexthops);
  object.refuseOthers();
}

std::optional<NamedPolicy> readBinding(JsonObject& object, char const* member) {
  auto const at = object.member(member);
  auto const name = at ? at->name() : std::nullopt;
  return name ? std::optional(NamedPolicy{*name, at->place()}) : std::nullopt;
}

void readInterface(JsonCursor const& at, ConfigAst& config) {
  JsonObject object(at);
  InterfaceAst spare;
  InterfaceAst* const found = named(object, at, config.interfaces);
  InterfaceAst& interface = found ? *found : spare;
  interface.policy = readBinding(object, "policy");
  interface.fallback = readBinding(object, "fallback");
  object.refuseOthers();
}

void readVersion(JsonObject& object) {
  auto const at = object.required("version");
  auto const version = at ? at->number() : std::nullopt;
  if (version && *version != kJsonVersion)
    at->error("version " + std::to_string(*version) + " is unknown here; this is version " +
              std::to_string(kJsonVersion));
}

} // namespace

ConfigAst readJsonConfig(SourceText const& source, Diagnostics& diagnostics) {
  ConfigAst config;
  std::unique_ptr<JsonValue> const document = readJson(source, diagnostics);
  if (!document) return config;
  JsonCursor const root(*document, "", source, diagnostics);
  JsonObject object(root);
  readVersion(object);
  object.boolean("unresolvedNexthopDrop", config.unresolvedNexthopDrop);
  object.boolean("bgpRedirect", config.bgpRedirect);
  object.boolean("nonAgingMac", config.nonAgingMac);
  for (JsonCursor const& item : object.array("classMaps")) readClassMap(item, config);
  for (JsonCursor const& item : object.array("policyMaps")) readPolicyMap(item, config);
  for (JsonCursor const& item : object.array("nexthopGroups")) readGroup(item, config);
  for (JsonCursor const& item : object.array("interfaces")) readInterface(item, config);
  object.refuseOthers();
  return config;
}

} // namespace Pbrctl
