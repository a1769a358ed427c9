// What differs between two trees of entities, value by value.

#pragma once

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace Pbrctl {

struct EntityDifference {
  std::string path;
  // As a document writes it; nothing where the tree has no such value. A child has the empty text, a
  // reference the type of what it leads to.
  std::optional<std::string> removed;
  std::optional<std::string> added;
};

// What a reference leads to is compared in the place of the reference; its number, which depends on what else
// the tree holds, isn't looked at. Where it is one entity with what stands under another path is told, if
// only one of the trees has it so. ORDER: by path. Both are documents of EntityJson.h, of one type.
std::vector<EntityDifference> diffEntities(nlohmann::json const& first, nlohmann::json const& second);

// A line a side: "- path = value", "+ path = value".
void printEntityDiff(std::vector<EntityDifference> const& differences, std::ostream& out);
nlohmann::json entityDiffJson(std::vector<EntityDifference> const& differences);

} // namespace Pbrctl
