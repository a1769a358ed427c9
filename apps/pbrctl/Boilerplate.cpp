#include "pbrctl/Boilerplate.h"

namespace Pbrctl {

namespace {

void takeAll(Reading&, Statement&) {}

// frr version TEXT | frr defaults TEXT
void readFrr(Reading&, Statement& s) {
  Word const what = s.take("word behind 'frr'");
  if (what.text != "version" && what.text != "defaults")
    Statement::failAt(what, "unknown statement 'frr " + inQuotes(what.text).substr(1));
  s.take("value");
}

// enable password TEXT
void readEnable(Reading&, Statement& s) {
  Word const what = s.take("word behind 'enable'");
  if (what.text != "password")
    Statement::failAt(what, "unknown statement 'enable " + inQuotes(what.text).substr(1));
}

void readLine(Reading& r, Statement& s) {
  Word const what = s.take("word behind 'line'");
  if (what.text != "vty") Statement::failAt(what, inQuotes(what.text) + " is not 'vty'");
  s.expectEnd();
  r.block = Block::lineVty;
  r.blockName.clear();
}

} // namespace

std::vector<StatementRule> const& boilerplateStatements() {
  static std::vector<StatementRule> const rules = {
      {Block::top, "frr", readFrr},
      {Block::top, "hostname", takeAll},
      {Block::top, "log", takeAll},
      {Block::top, "service", takeAll},
      {Block::top, "password", takeAll},
      {Block::top, "enable", readEnable},
      {Block::top, "debug", takeAll},
      {Block::top, "line", readLine},
      {Block::lineVty, "exec-timeout", takeAll},
      {Block::lineVty, "login", takeAll},
  };
  return rules;
}

} // namespace Pbrctl
