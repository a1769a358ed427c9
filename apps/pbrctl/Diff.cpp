#include "pbrctl/Diff.h"

#include "pbrctl/JsonReader.h"

#include <algorithm>
#include <ostream>
#include <unordered_map>

namespace Pbrctl {

namespace {

using Nodes = std::vector<OutlineNode>;

class Comparer {
public:
  std::vector<Difference> take() { return std::move(differences_); }

  // Walks both lists at once. A member that the other list has elsewhere is compared in the place of the
  // first.
  void compare(Nodes const& first, Nodes const& second) {
    std::unordered_map<std::string, OutlineNode const*> inFirst = byKey(first);
    std::unordered_map<std::string, OutlineNode const*> inSecond = byKey(second);
    auto j = second.begin();
    auto const addUpToCommon = [&] {
      for (; j != second.end() && inFirst.count(j->key) == 0; ++j) whole(*j, &Difference::added);
    };
    for (OutlineNode const& node : first) {
      addUpToCommon();
      auto const other = inSecond.find(node.key);
      if (other == inSecond.end()) {
        whole(node, &Difference::removed);
        continue;
      }
      if (j != second.end() && j->key == node.key) ++j;
      both(node, *other->second);
    }
    // What is left of the second and also in the first was compared above.
    for (; j != second.end(); ++j)
      if (inFirst.count(j->key) == 0) whole(*j, &Difference::added);
  }

private:
  static std::unordered_map<std::string, OutlineNode const*> byKey(Nodes const& nodes) {
    std::unordered_map<std::string, OutlineNode const*> index;
    for (OutlineNode const& node : nodes) index.emplace(node.key, &node);
    return index;
  }

  void whole(OutlineNode const& node, std::string Difference::*side) {
    Difference difference{in_, {}, {}};
    difference.*side = node.text;
    differences_.push_back(std::move(difference));
    in_.push_back(node.text);
    for (OutlineNode const& child : node.children) whole(child, side);
    in_.pop_back();
  }

  void both(OutlineNode const& first, OutlineNode const& second) {
    if (first.text != second.text) differences_.push_back({in_, first.text, second.text});
    in_.push_back(second.text);
    compare(first.children, second.children);
    in_.pop_back();
  }

  std::vector<std::string> in_;
  std::vector<Difference> differences_;
};

void printLine(char sign, std::size_t depth, std::string const& text, std::ostream& out) {
  out << sign << ' ' << std::string(2 * depth, ' ') << text << '\n';
}

} // namespace

std::vector<Difference> diff(ConfigAst const& first, ConfigAst const& second) {
  Comparer comparer;
  comparer.compare(outlineOf(first), outlineOf(second));
  return comparer.take();
}

void printDiff(std::vector<Difference> const& differences, std::ostream& out) {
  std::vector<std::string> shown; // The heads that stand above the line just printed.
  for (Difference const& d : differences) {
    std::size_t const common = static_cast<std::size_t>(
        std::mismatch(shown.begin(), shown.end(), d.in.begin(), d.in.end()).first - shown.begin());
    for (std::size_t depth = common; depth < d.in.size(); ++depth) printLine(' ', depth, d.in[depth], out);
    if (!d.removed.empty()) printLine('-', d.in.size(), d.removed, out);
    if (!d.added.empty()) printLine('+', d.in.size(), d.added, out);
    shown = d.in;
    shown.push_back(d.added.empty() ? d.removed : d.added);
  }
}

nlohmann::json diffJson(std::vector<Difference> const& differences) {
  nlohmann::json out = {{"version", kJsonVersion}, {"equal", differences.empty()}};
  nlohmann::json& list = out["differences"] = nlohmann::json::array();
  for (Difference const& d : differences) {
    nlohmann::json entry = {{"in", d.in}};
    if (!d.removed.empty()) entry["removed"] = d.removed;
    if (!d.added.empty()) entry["added"] = d.added;
    list.push_back(std::move(entry));
  }
  return out;
}

} // namespace Pbrctl
