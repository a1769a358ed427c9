// How notifications are shown, for people and for programs.

#pragma once

#include "pbrctl/TreeWatch.h"

#include <iosfwd>
#include <nlohmann/json.hpp>

namespace Pbrctl {

void printChange(Change const& change, std::ostream& out);
// As the documents of `copy` and `load` list it.
nlohmann::json changesJson(std::vector<Change> const& changes);

} // namespace Pbrctl
