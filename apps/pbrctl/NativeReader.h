// The native statements of the text form: `class-map`, `policy-map`, `nexthop-group`, `interface`, the three
// switches, and what stands inside their blocks.

#pragma once

#include "pbrctl/Reading.h"

#include <vector>

namespace Pbrctl {

std::vector<StatementRule> const& nativeStatements();

} // namespace Pbrctl
