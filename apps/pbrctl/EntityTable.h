// A tree of entities for people.

#pragma once

#include <iosfwd>
#include <nlohmann/json.hpp>

namespace Pbrctl {

// Shows a document of EntityJson.h: of each entity first its single values, below them its collections, each
// as a table where its members have nothing but single values.
void printEntityTable(nlohmann::json const& document, std::ostream& out);

} // namespace Pbrctl
