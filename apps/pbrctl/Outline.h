// A configuration as nested statements, in the one order in which they are written. The writer of the text
// form prints it, the differencer compares two of them.

#pragma once

#include "pbrctl/ConfigAst.h"

#include <string>
#include <vector>

namespace Pbrctl {

struct OutlineNode {
  // What the statement is about, whatever it says of it: two configurations' nodes with one key belong
  // together.
  std::string key;
  std::string text;
  std::vector<OutlineNode> children;
};

// ORDER: switches, class maps, groups, policy maps, interfaces, each by name; what stands inside by sequence.
std::vector<OutlineNode> outlineOf(ConfigAst const& config);

} // namespace Pbrctl
