#include "pbrctl/RuleReader.h"

#include "pbrctl/Diagnostics.h"
#include "pbrctl/ForwardReader.h"

#include <utility>

namespace Pbrctl {

namespace {

struct Option {
  std::string_view keyword;
  void (*read)(PolicyMap::MatchRule&, Word const&);
};

constexpr Option kOptions[] = {
    {"protocol", [](PolicyMap::MatchRule& r, Word const& w) { r.protocolIs(inStatement(w, readProtocol)); }},
    {"source-port",
     [](PolicyMap::MatchRule& r, Word const& w) { r.sourcePortIs(inStatement(w, readPorts)); }},
    {"destination-port",
     [](PolicyMap::MatchRule& r, Word const& w) { r.destinationPortIs(inStatement(w, readPorts)); }},
    {"dscp", [](PolicyMap::MatchRule& r, Word const& w) { r.dscpIs(inStatement(w, readDscp)); }},
};

void readOptions(Statement& s, PolicyMap::MatchRule& rule) {
  bool seen[std::size(kOptions)] = {};
  while (!s.atEnd()) {
    Word const keyword = s.take("criterion");
    std::size_t i = 0;
    while (i < std::size(kOptions) && kOptions[i].keyword != keyword.text) ++i;
    if (i == std::size(kOptions)) Statement::failAt(keyword, "unknown criterion " + inQuotes(keyword.text));
    if (std::exchange(seen[i], true)) Statement::failAt(keyword, inQuotes(keyword.text) + " stands twice");
    kOptions[i].read(rule, s.take(kOptions[i].keyword.data()));
  }
}

} // namespace

PolicyMap::MatchRule readRule(Statement& s) {
  PolicyMap::MatchRule rule;
  Word const kind = s.take("word 'ip' or 'access-list'");
  if (kind.text == "access-list") {
    rule.aclIs(s.takeName("access-list name"));
    s.expectEnd();
    return rule;
  }
  if (kind.text != "ip") Statement::failAt(kind, inQuotes(kind.text) + " is neither 'ip' nor 'access-list'");
  rule.sourceIs(inStatement(s.take("source prefix"), readPrefix));
  rule.destinationIs(inStatement(s.take("destination prefix"), readPrefix));
  readOptions(s, rule);
  if (!rule.valid()) Statement::failAt(kind, rule.fault().charPtr());
  return rule;
}

} // namespace Pbrctl
