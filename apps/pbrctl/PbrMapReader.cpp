#include "pbrctl/PbrMapReader.h"

#include "pbrctl/ForwardReader.h"
#include "pbrctl/SourceText.h"

namespace Pbrctl {

namespace {

void undoPbrMap(Reading& r, Statement& s) {
  std::string const name = s.takeName("pbr-map name");
  auto const map = r.pbrMaps.find(name);
  if (map == r.pbrMaps.end()) nothingToUndo(s, "pbr-map " + inQuotes(name));
  if (s.takeIf("seq")) {
    std::uint32_t const sequence = s.takeNumber("sequence number", 1, UINT32_MAX);
    s.expectEnd();
    if (map->second.erase(sequence) == 0) nothingToUndo(s, "such sequence of pbr-map " + inQuotes(name));
    if (!map->second.empty()) return;
  }
  s.expectEnd();
  r.pbrMaps.erase(map);
}

void readPbrMap(Reading& r, Statement& s) {
  if (s.undo()) return undoPbrMap(r, s);
  r.block = Block::pbrSequence;
  r.sparePbrSequence = std::make_unique<PbrSequence>();
  r.pbrSequence = r.sparePbrSequence.get();
  std::string const name = s.takeName("pbr-map name");
  Word const seq = s.take("word 'seq'");
  if (seq.text != "seq") Statement::failAt(seq, inQuotes(seq.text) + " is not 'seq'");
  std::uint32_t const sequence = s.takeNumber("sequence number", 1, UINT32_MAX);
  s.expectEnd();
  r.blockName = pbrClassName(name, sequence);
  if (auto const problem = nameProblem(r.blockName)) s.fail(*problem);
  auto const [at, fresh] = r.pbrMaps[name].try_emplace(sequence);
  if (!fresh)
    s.fail("duplicate sequence number " + std::to_string(sequence) + " of pbr-map " + inQuotes(name));
  at->second.place = s.place();
  r.pbrSequence = &at->second;
}

// One criterion of a sequence: said, said again in the same words, or undone.
template <class T, class Read> void readCriterion(Statement& s, std::optional<T>& field, Read read) {
  std::optional<T> value;
  if (!s.undo() || !s.atEnd()) value = inStatement(s.take("value"), read);
  s.expectEnd();
  if (s.undo()) {
    if (!field || (value && !(*value == *field))) nothingToUndo(s, "such match");
    return field.reset();
  }
  if (field && !(*field == *value)) s.fail("the sequence has another such match already");
  field = value;
}

unsigned readPort(std::string_view word) {
  auto const number = numberOf(word);
  if (!number || *number < 1 || *number > 65535) throw FieldError{inQuotes(word) + " is no port, 1 to 65535"};
  return *number;
}

void readPbrMatch(Reading& r, Statement& s) {
  PbrSequence& sequence = *r.pbrSequence;
  Word const what = s.take("word behind 'match'");
  if (what.text == "src-ip")
    readCriterion(s, sequence.source, readPrefixClearingHostBits);
  else if (what.text == "dst-ip")
    readCriterion(s, sequence.destination, readPrefixClearingHostBits);
  else if (what.text == "ip-protocol")
    readCriterion(s, sequence.protocol, readProtocol);
  else if (what.text == "src-port")
    readCriterion(s, sequence.sourcePort, readPort);
  else if (what.text == "dst-port")
    readCriterion(s, sequence.destinationPort, readPort);
  else if (what.text == "dscp")
    readCriterion(s, sequence.matchDscp, readDscp);
  else
    Statement::failAt(what, "no class map can match by " + inQuotes(what.text));
}

// set nexthop (ADDRESS | blackhole | drop)
void readPbrNexthop(Statement& s, std::optional<ForwardAst>& forward) {
  std::optional<ForwardAst> value;
  if (!s.undo() || !s.atEnd()) {
    Word const word = s.take("next hop");
    value = ForwardAst{ForwardKind::drop, {}, false, false, {}, s.place()};
    if (word.text != "blackhole" && word.text != "drop") {
      value->kind = ForwardKind::nexthops;
      value->nexthops.insert(inStatement(word, readAddress));
    }
    if (!s.atEnd())
      Statement::failAt(s.peek(),
                        inQuotes(s.peek().text) + ": a next hop takes no interface, VRF or other word");
  }
  if (!s.undo()) return enterForward(s, forward, *value);
  if (!forward || forward->kind == ForwardKind::group || (value && !(*value == *forward)))
    nothingToUndo(s, "such 'set nexthop'");
  forward.reset();
}

void readPbrGroup(Statement& s, std::optional<ForwardAst>& forward) {
  std::string const name = s.undo() && s.atEnd() ? "" : s.takeName("nexthop-group name");
  s.expectEnd();
  if (!s.undo()) return enterForward(s, forward, {ForwardKind::group, {}, false, false, name, s.place()});
  if (!forward || forward->kind != ForwardKind::group || (!name.empty() && forward->group != name))
    nothingToUndo(s, "such 'set nexthop-group'");
  forward.reset();
}

void readPbrSet(Reading& r, Statement& s) {
  Word const what = s.take("word behind 'set'");
  if (what.text == "nexthop")
    readPbrNexthop(s, r.pbrSequence->forward);
  else if (what.text == "nexthop-group")
    readPbrGroup(s, r.pbrSequence->forward);
  else if (what.text == "dscp")
    readSetDscp(s, r.pbrSequence->setDscp);
  else
    Statement::failAt(what, "no action can set " + inQuotes(what.text));
}

PolicyMap::PortRange onePort(unsigned port) {
  return {static_cast<std::uint16_t>(port), static_cast<std::uint16_t>(port)};
}

// RETURNS nothing when the sequence has no criterion.
std::optional<PolicyMap::MatchRule> ruleOf(PbrSequence const& sequence) {
  PolicyMap::MatchRule rule;
  if (sequence.source) rule.sourceIs(*sequence.source);
  if (sequence.destination) rule.destinationIs(*sequence.destination);
  if (sequence.protocol) rule.protocolIs(*sequence.protocol);
  if (sequence.sourcePort) rule.sourcePortIs(onePort(*sequence.sourcePort));
  if (sequence.destinationPort) rule.destinationPortIs(onePort(*sequence.destinationPort));
  if (sequence.matchDscp) rule.dscpIs(*sequence.matchDscp);
  bool const any = sequence.source || sequence.destination || sequence.protocol || sequence.sourcePort ||
                   sequence.destinationPort || sequence.matchDscp;
  return any ? std::optional(rule) : std::nullopt;
}

void finishSequence(Reading& r, std::string const& mapName, PolicyMapAst& map, std::uint32_t number,
                    PbrSequence const& sequence) {
  std::string const name = pbrClassName(mapName, number);
  auto const [at, fresh] = r.config.classMaps.try_emplace(name);
  if (!fresh)
    return r.diagnostics.error(sequence.place, "there is a class-map " + inQuotes(name) + " already");
  at->second.place = sequence.place;
  if (auto const rule = ruleOf(sequence)) {
    if (!rule->valid()) r.diagnostics.error(sequence.place, rule->fault().charPtr());
    at->second.rules.emplace(number, RuleAst{*rule, sequence.place});
  }
  if (!sequence.forward && !sequence.setDscp) return;
  if (map.order.count(number) != 0 || map.classes.count(name) != 0)
    return r.diagnostics.error(sequence.place, "duplicate sequence number " + std::to_string(number) +
                                                   " in policy-map " + inQuotes(mapName));
  ClassAst& made = map.classIs(name, number, sequence.place);
  made.forward = sequence.forward;
  made.dscp = sequence.setDscp;
}

} // namespace

std::vector<StatementRule> const& pbrMapStatements() {
  static std::vector<StatementRule> const rules = {
      {Block::pbrSequence, "match", readPbrMatch},
      {Block::pbrSequence, "set", readPbrSet},
      {Block::top, "pbr-map", readPbrMap},
  };
  return rules;
}

void finishPbrMaps(Reading& r) {
  for (auto const& [name, sequences] : r.pbrMaps) {
    auto const [map, fresh] = r.config.policyMaps.try_emplace(name);
    if (fresh) map->second.place = sequences.begin()->second.place;
    for (auto const& [number, sequence] : sequences) finishSequence(r, name, map->second, number, sequence);
  }
}

} // namespace Pbrctl
