#include "pbrctl/NativeReader.h"

#include "pbrctl/ForwardReader.h"
#include "pbrctl/RuleReader.h"

namespace Pbrctl {

namespace {

constexpr std::uint32_t kSequenceStep = 10;

// Opens the block of a named thing, or with `no` removes the thing.
// The block is open even when its head is refused, over the spare structure.
template <class Thing>
void openNamed(Reading& r, Statement& s, Block block, Thing*& open, std::unique_ptr<Thing>& spare,
               std::map<std::string, Thing>& things, char const* what) {
  r.block = s.undo() ? Block::top : block;
  r.blockName.clear();
  spare = std::make_unique<Thing>();
  open = spare.get();
  std::string const name = s.takeName("name");
  s.expectEnd();
  if (s.undo()) {
    if (things.erase(name) == 0) nothingToUndo(s, std::string(what) + " " + inQuotes(name));
    return;
  }
  r.blockName = name;
  auto const [at, fresh] = things.try_emplace(name);
  open = &at->second;
  if constexpr (requires { open->place; })
    if (fresh) open->place = s.place();
}

void readClassMap(Reading& r, Statement& s) {
  openNamed(r, s, Block::classMap, r.classMap, r.spareClassMap, r.config.classMaps, "class-map");
}

void readPolicyMap(Reading& r, Statement& s) {
  openNamed(r, s, Block::policyMap, r.policyMap, r.sparePolicyMap, r.config.policyMaps, "policy-map");
}

void readGroup(Reading& r, Statement& s) {
  openNamed(r, s, Block::group, r.group, r.spareGroup, r.config.groups, "nexthop-group");
}

void readInterface(Reading& r, Statement& s) {
  openNamed(r, s, Block::interface, r.interface, r.spareInterface, r.config.interfaces, "interface");
}

// A statement that is either said or not.
void readFlag(Statement& s, bool& flag) {
  s.expectEnd();
  if (s.undo() && !flag) nothingToUndo(s, inQuotes(s.keyword()));
  flag = !s.undo();
}

void readClassMapDynamic(Reading& r, Statement& s) { readFlag(s, r.classMap->dynamic); }
void readPolicyMapDynamic(Reading& r, Statement& s) { readFlag(s, r.policyMap->dynamic); }
void readBgpRedirect(Reading& r, Statement& s) { readFlag(s, r.config.bgpRedirect); }
void readNonAgingMac(Reading& r, Statement& s) { readFlag(s, r.config.nonAgingMac); }

void readUnresolvedNexthop(Reading& r, Statement& s) {
  if (!s.undo() || !s.atEnd()) {
    Word const what = s.take("word 'drop'");
    if (what.text != "drop") Statement::failAt(what, inQuotes(what.text) + " is not 'drop'");
  }
  readFlag(s, r.config.unresolvedNexthopDrop);
}

// The next free sequence number behind the highest.
template <class Map> std::uint32_t nextSequence(Map const& bySequence, Statement const& s) {
  if (bySequence.empty()) return kSequenceStep;
  std::uint32_t const last = bySequence.rbegin()->first;
  if (last > UINT32_MAX - kSequenceStep) s.fail("no sequence number is left behind " + std::to_string(last));
  return last + kSequenceStep;
}

void undoMatch(Reading& r, Statement& s) {
  auto& rules = r.classMap->rules;
  auto found = s.sequence() ? rules.find(*s.sequence()) : rules.begin();
  if (!s.sequence() || !s.atEnd()) {
    PolicyMap::MatchRule const rule = readRule(s);
    if (s.sequence()) {
      if (found != rules.end() && !(found->second.rule == rule)) found = rules.end();
    } else {
      while (found != rules.end() && !(found->second.rule == rule)) ++found;
    }
  }
  if (found == rules.end()) nothingToUndo(s, "such match in class-map " + inQuotes(r.blockName));
  rules.erase(found);
}

void readMatch(Reading& r, Statement& s) {
  if (s.undo()) return undoMatch(r, s);
  auto& rules = r.classMap->rules;
  RuleAst const rule{readRule(s), s.place()};
  std::uint32_t const sequence = s.sequence() ? *s.sequence() : nextSequence(rules, s);
  if (!rules.emplace(sequence, rule).second)
    s.fail("duplicate sequence number " + std::to_string(sequence) + " in class-map " +
           inQuotes(r.blockName));
}

void undoClass(Reading& r, Statement& s) {
  std::string const name = s.takeName("class name");
  s.expectEnd();
  auto const found = r.policyMap->classes.find(name);
  if (found == r.policyMap->classes.end() || (s.sequence() && *s.sequence() != found->second.sequence))
    nothingToUndo(s, "class " + inQuotes(name));
  r.policyMap->classDel(name);
}

void readClass(Reading& r, Statement& s) {
  if (s.undo()) return undoClass(r, s);
  r.block = Block::classAction;
  r.spareClass = std::make_unique<ClassAst>();
  r.classAction = r.spareClass.get();
  r.className.clear();
  std::string const name = s.takeName("class name");
  s.expectEnd();
  r.className = name;
  PolicyMapAst& map = *r.policyMap;
  if (s.sequence() && map.order.count(*s.sequence()) != 0)
    s.fail("duplicate sequence number " + std::to_string(*s.sequence()) + ": class " +
           inQuotes(map.order[*s.sequence()]) + " has it");
  auto const found = map.classes.find(name);
  if (found != map.classes.end() && s.sequence())
    s.fail("class " + inQuotes(name) + " already has the sequence number " +
           std::to_string(found->second.sequence));
  if (found != map.classes.end())
    r.classAction = &found->second;
  else
    r.classAction = &map.classIs(name, s.sequence() ? *s.sequence() : nextSequence(map.order, s), s.place());
}

void readSet(Reading& r, Statement& s) { readSetStatement(s, r.classAction->forward, r.classAction->dscp); }

void readDrop(Reading& r, Statement& s) {
  s.expectEnd();
  auto& forward = r.classAction->forward;
  if (!s.undo()) {
    enterForward(s, forward, {ForwardKind::drop, {}, false, false, {}, s.place()});
  } else {
    if (!forward || forward->kind != ForwardKind::drop) nothingToUndo(s, "'drop'");
    forward.reset();
  }
}

void readGroupMember(Reading& r, Statement& s) {
  Word const word = s.take("address");
  Lomu::IpGenAddr const address = inStatement(word, readAddress);
  if (!s.atEnd())
    Statement::failAt(s.peek(),
                      inQuotes(s.peek().text) + ": a next hop takes no interface, VRF, label or weight");
  auto& nexthops = r.group->nexthops;
  if (s.undo() && nexthops.erase(address) == 0) nothingToUndo(s, "next hop " + inQuotes(word.text));
  if (!s.undo() && !nexthops.insert(address).second)
    Statement::failAt(word, "duplicate next hop " + inQuotes(word.text));
}

void bind(Statement& s, std::optional<NamedPolicy>& binding, char const* what) {
  if (s.undo() && s.atEnd()) {
    if (!binding) nothingToUndo(s, what);
    binding.reset();
    return;
  }
  std::string const name = s.takeName("policy-map name");
  s.expectEnd();
  if (s.undo()) {
    if (!binding || binding->name != name) nothingToUndo(s, std::string(what) + " " + inQuotes(name));
    binding.reset();
  } else if (binding && binding->name != name) {
    s.fail(std::string("the interface already has the ") + what + " " + inQuotes(binding->name));
  } else {
    binding = NamedPolicy{name, s.place()};
  }
}

// `policy fallback` alone binds, or unbinds, the policy map of that name.
void readPolicy(Reading& r, Statement& s) {
  bool const namedFallback = r.interface->policy && r.interface->policy->name == "fallback";
  bool const fallback = s.nextIs("fallback") && (s.left() > 1 || (s.undo() && !namedFallback));
  if (fallback) s.takeIf("fallback");
  bind(s, fallback ? r.interface->fallback : r.interface->policy, fallback ? "fallback policy" : "policy");
}

void readPbrPolicy(Reading& r, Statement& s) { bind(s, r.interface->policy, "policy"); }

} // namespace

std::vector<StatementRule> const& nativeStatements() {
  static std::vector<StatementRule> const rules = {
      {Block::classMap, "match", readMatch, true},
      {Block::classMap, "dynamic", readClassMapDynamic},
      {Block::classAction, "set", readSet},
      {Block::classAction, "drop", readDrop},
      {Block::policyMap, "class", readClass, true},
      {Block::policyMap, "dynamic", readPolicyMapDynamic},
      {Block::group, "nexthop", readGroupMember},
      {Block::interface, "policy", readPolicy},
      {Block::interface, "pbr-policy", readPbrPolicy},
      {Block::top, "class-map", readClassMap},
      {Block::top, "policy-map", readPolicyMap},
      {Block::top, "nexthop-group", readGroup},
      {Block::top, "interface", readInterface},
      {Block::top, "unresolved-nexthop", readUnresolvedNexthop},
      {Block::top, "bgp-redirect", readBgpRedirect},
      {Block::top, "non-aging-mac", readNonAgingMac},
  };
  return rules;
}

} // namespace Pbrctl
