#include "pbrctl/ForwardReader.h"

#include "pbrctl/Reading.h"

namespace Pbrctl {

namespace {

NexthopSet readNexthops(Statement& s) {
  NexthopSet nexthops;
  if (s.takeIf("none")) return nexthops;
  do {
    Word const word = s.take("next hop");
    if (!nexthops.insert(inStatement(word, readAddress)).second)
      Statement::failAt(word, "duplicate next hop " + inQuotes(word.text));
  } while (!s.atEnd() && !s.nextIs("recursive"));
  return nexthops;
}

bool readRecursive(Statement& s) {
  bool const recursive = s.takeIf("recursive");
  s.expectEnd();
  return recursive;
}

void undoNexthops(Statement& s, std::optional<ForwardAst>& forward) {
  if (!forward || forward->kind != ForwardKind::nexthops) nothingToUndo(s, "'set nexthop'");
  if (s.atEnd()) return forward.reset();
  if (s.takeIf("recursive")) {
    s.expectEnd();
    if (!forward->recursive) nothingToUndo(s, "'recursive'");
    forward->recursive = false;
    return;
  }
  NexthopSet const nexthops = readNexthops(s);
  readRecursive(s);
  for (Lomu::IpGenAddr const& a : nexthops)
    if (forward->nexthops.count(a) == 0) nothingToUndo(s, "next hop " + inQuotes(addressText(a)));
  for (Lomu::IpGenAddr const& a : nexthops) forward->nexthops.erase(a);
  if (forward->nexthops.empty()) forward.reset();
}

void readSetNexthop(Statement& s, std::optional<ForwardAst>& forward) {
  if (s.undo()) return undoNexthops(s, forward);
  ForwardAst value{ForwardKind::nexthops, readNexthops(s), false, false, {}, s.place()};
  value.recursive = readRecursive(s);
  enterForward(s, forward, std::move(value));
}

void readSetGroup(Statement& s, std::optional<ForwardAst>& forward) {
  if (s.undo()) {
    std::string const name = s.atEnd() ? "" : s.takeName("nexthop-group name");
    s.expectEnd();
    if (!forward || forward->kind != ForwardKind::group || (!name.empty() && name != forward->group))
      nothingToUndo(s, "'set nexthop-group'");
    return forward.reset();
  }
  ForwardAst value{ForwardKind::group, {}, false, false, s.takeName("nexthop-group name"), s.place()};
  value.ownNexthops = s.takeIf("nexthop");
  if (value.ownNexthops) value.nexthops = readNexthops(s);
  value.recursive = readRecursive(s);
  enterForward(s, forward, std::move(value));
}

} // namespace

void enterForward(Statement const& statement, std::optional<ForwardAst>& forward, ForwardAst value) {
  if (forward)
    statement.fail("the class says where to forward already, in line " + std::to_string(forward->place.line));
  forward = std::move(value);
}

void readSetDscp(Statement& s, std::optional<unsigned>& dscp) {
  std::optional<unsigned> value;
  if (!s.undo() || !s.atEnd()) value = inStatement(s.take("code point"), readDscp);
  s.expectEnd();
  if (s.undo()) {
    if (!dscp || (value && *value != *dscp)) nothingToUndo(s, "such 'set dscp'");
    return dscp.reset();
  }
  if (dscp && *dscp != *value) s.fail("the class sets the code point " + std::to_string(*dscp) + " already");
  dscp = value;
}

void readSetStatement(Statement& s, std::optional<ForwardAst>& forward, std::optional<unsigned>& dscp) {
  Word const what = s.take("word behind 'set'");
  if (what.text == "nexthop")
    readSetNexthop(s, forward);
  else if (what.text == "nexthop-group")
    readSetGroup(s, forward);
  else if (what.text == "dscp")
    readSetDscp(s, dscp);
  else
    Statement::failAt(what, "unknown statement 'set " + std::string(inQuotes(what.text)).substr(1));
}

} // namespace Pbrctl
