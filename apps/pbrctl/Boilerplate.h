// The lines of a routing daemon's configuration file that say nothing about policies and lose nothing by
// being passed over: its version and name, its log, its terminals.

#pragma once

#include "pbrctl/Reading.h"

#include <vector>

namespace Pbrctl {

std::vector<StatementRule> const& boilerplateStatements();

} // namespace Pbrctl
