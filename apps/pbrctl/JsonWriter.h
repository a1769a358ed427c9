// The JSON form of a configuration.

#pragma once

#include "pbrctl/ConfigAst.h"

#include <iosfwd>
#include <nlohmann/json.hpp>

namespace Pbrctl {

// Members sorted by name, arrays by name or sequence; what is absent or default in a rule isn't there.
nlohmann::json jsonOf(ConfigAst const& config);
void writeJson(ConfigAst const& config, std::ostream& out);

// How every command of the tool writes a JSON document: indented, with a line end.
void writeDocument(nlohmann::json const& document, std::ostream& out);

} // namespace Pbrctl
