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
  // As a document writes it; nothing where the tree has no such value. An entity has the empty text.
  std::optional<std::string> removed;
  std::optional<std::string> added;
};

// ORDER: by path. Both are documents of EntityJson.h, of one type.
std::vector<EntityDifference> diffEntities(nlohmann::json const& first, nlohmann::json const& second);

// A line a side: "- path = value", "+ path = value".
void printEntityDiff(std::vector<EntityDifference> const& differences, std::ostream& out);
nlohmann::json entityDiffJson(std::vector<EntityDifference> const& differences);

} // namespace Pbrctl
