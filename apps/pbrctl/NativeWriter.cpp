#include "pbrctl/NativeWriter.h"

#include "pbrctl/Outline.h"

#include <ostream>

namespace Pbrctl {

namespace {

void write(OutlineNode const& node, unsigned depth, std::ostream& out) {
  out << std::string(2 * depth, ' ') << node.text << '\n';
  for (OutlineNode const& child : node.children) write(child, depth + 1, out);
}

} // namespace

void writeNative(ConfigAst const& config, std::ostream& out) {
  out << "! policy-based routing\n";
  bool afterBlock = true;
  for (OutlineNode const& node : outlineOf(config)) {
    bool const isBlock = !node.children.empty() || node.text.find("-map ") != std::string::npos;
    if (isBlock || afterBlock) out << "!\n";
    write(node, 0, out);
    afterBlock = isBlock;
  }
}

} // namespace Pbrctl
