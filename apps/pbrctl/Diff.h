// What differs between two configurations, statement by statement.

#pragma once

#include "pbrctl/Outline.h"

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace Pbrctl {

struct Difference {
  // The blocks around the statement, outermost first.
  std::vector<std::string> in;
  std::string removed; // Empty when the statement is only in the second.
  std::string added;   // Empty when it is only in the first.
};

// ORDER: that of writing. A block that is in one of the two alone gives its head and each of its statements.
std::vector<Difference> diff(ConfigAst const& first, ConfigAst const& second);

// Unchanged heads of blocks, then each statement behind "-" or "+".
void printDiff(std::vector<Difference> const& differences, std::ostream& out);
nlohmann::json diffJson(std::vector<Difference> const& differences);

} // namespace Pbrctl
