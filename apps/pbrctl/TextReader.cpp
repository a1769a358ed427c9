#include "pbrctl/TextReader.h"

#include "pbrctl/Boilerplate.h"
#include "pbrctl/NativeReader.h"
#include "pbrctl/PbrMapReader.h"

namespace Pbrctl {

namespace {

constexpr std::size_t kMostLineBytes = 65536;

struct BlockAbout {
  char const* title;
  Block parent;
};

BlockAbout about(Block block) {
  switch (block) {
  case Block::top:
    break;
  case Block::classMap:
    return {"class-map", Block::top};
  case Block::policyMap:
    return {"policy-map", Block::top};
  case Block::classAction:
    return {"class", Block::policyMap};
  case Block::group:
    return {"nexthop-group", Block::top};
  case Block::interface:
    return {"interface", Block::top};
  case Block::pbrSequence:
    return {"pbr-map", Block::top};
  case Block::lineVty:
    return {"line vty", Block::top};
  }
  return {"the file", Block::top};
}

StatementRule const* findIn(std::vector<StatementRule> const& rules, Block block, std::string_view keyword) {
  for (StatementRule const& rule : rules)
    if (rule.block == block && rule.keyword == keyword) return &rule;
  return nullptr;
}

// RETURNS the statement's rule in the innermost open block that has it, and ends the blocks inside that one.
StatementRule const* findRule(Reading& r, std::string_view keyword) {
  for (Block block = r.block;; block = about(block).parent) {
    for (auto const* rules : {&nativeStatements(), &pbrMapStatements(), &boilerplateStatements()})
      if (StatementRule const* const rule = findIn(*rules, block, keyword)) {
        r.block = block;
        return rule;
      }
    if (block == Block::top) return nullptr;
  }
}

// `exit` leaves the innermost block, `end` all of them.
bool leavesBlock(Reading& r, Statement& s) {
  if (s.undo() || s.sequence() || (s.keyword() != "exit" && s.keyword() != "end")) return false;
  s.expectEnd();
  r.block = s.keyword() == "end" ? Block::top : about(r.block).parent;
  return true;
}

void unknown(Reading const& r, Statement const& s) {
  std::string const& name = r.block == Block::classAction ? r.className : r.blockName;
  std::string const place =
      name.empty() ? "" : std::string(" in ") + about(r.block).title + " " + inQuotes(name);
  s.fail("unknown statement " + inQuotes(s.keyword()) + (r.block == Block::top ? "" : place));
}

void readLine(Reading& r, Statement& s, std::string_view line, std::uint32_t number) {
  if (line.size() > kMostLineBytes)
    throw StatementError{1, "the line has " + std::to_string(line.size()) + " bytes, more than 65536"};
  if (auto const bad = findBadByte(line))
    throw StatementError{static_cast<std::uint32_t>(bad->offset + 1), bad->text};
  s.lineIs(line, number);
  if (s.empty() || leavesBlock(r, s)) return;
  if (s.keyword().empty()) s.fail("the statement is missing");
  StatementRule const* const rule = findRule(r, s.keyword());
  if (!rule) unknown(r, s);
  if (s.sequence() && !rule->takesSequence)
    s.fail("no sequence number belongs in front of " + inQuotes(s.keyword()));
  rule->read(r, s);
}

} // namespace

void nothingToUndo(Statement const& statement, std::string const& what) {
  statement.fail("there is no " + what + " to undo");
}

ConfigAst readText(SourceText const& source, Diagnostics& diagnostics) {
  ConfigAst config;
  Reading reading(config, diagnostics);
  Statement statement;
  for (std::size_t i = 0; i < source.lines(); ++i) {
    auto const number = static_cast<std::uint32_t>(i + 1);
    try {
      readLine(reading, statement, source.line(i), number);
    } catch (StatementError const& e) {
      diagnostics.error({number, e.column}, e.text);
    }
  }
  finishPbrMaps(reading);
  return config;
}

} // namespace Pbrctl
